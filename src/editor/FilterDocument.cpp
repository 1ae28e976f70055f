#include "editor/FilterDocument.h"

#include <algorithm>
#include <string>

namespace zemtra {

bool ApplyFilterToDocument(ProgramDocument& document, Host& host, bool selectedByProgram,
                           bool translation, const TextFilter& filter) {
  const FilterScope scope =
      AskFilterScope(host, document.SelLength() > 0, selectedByProgram, translation);
  if (scope == FilterScope::Cancel) return false;
  if (scope == FilterScope::Selection) {
    const FilterResult result = filter(document.SelText());
    if (result.cancelled) return false;
    document.ReplaceSelection(result.text);
    return true;
  }
  const std::size_t caret = document.SelStart();
  const FilterResult result = filter(document.Text());
  if (result.cancelled) return false;
  document.ReplaceRange(0, document.Size(), result.text);
  document.SetSelStart(std::min(caret, document.Size()));
  return true;
}

}  // namespace zemtra
