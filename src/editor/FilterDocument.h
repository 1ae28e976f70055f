#pragma once
// Running a text filter on the program document: the selection or the whole text, replaced in
// one edit so that one undo step takes it back.
#include <functional>
#include <string_view>

#include "core/Host.h"
#include "editor/FormatProgram.h"
#include "editor/ProgramDocument.h"

namespace zemtra {

using TextFilter = std::function<FilterResult(std::string_view text)>;

// Runs `filter` over the selected text or the whole document, asking first when the user made a
// selection (AskFilterScope). A cancelled question or run leaves the document untouched and
// returns false. A whole-text run keeps the caret position; a selection is replaced by the
// filtered lines, each ended by a line break.
bool ApplyFilterToDocument(ProgramDocument& document, Host& host, bool selectedByProgram,
                           bool translation, const TextFilter& filter);

}  // namespace zemtra
