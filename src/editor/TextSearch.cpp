#include "editor/TextSearch.h"

#include <algorithm>
#include <functional>

#include "core/Host.h"
#include "core/NumberText.h"
#include "editor/ProgramDocument.h"

namespace zemtra {

namespace {

constexpr unsigned char FoldCase(char c) {
  const auto byte = static_cast<unsigned char>(c);
  return (byte >= 'a' && byte <= 'z') ? static_cast<unsigned char>(byte - 32) : byte;
}

struct FoldedHash {
  std::size_t operator()(char c) const { return FoldCase(c); }
};
struct FoldedEqual {
  bool operator()(char a, char b) const { return FoldCase(a) == FoldCase(b); }
};

bool IsWordChar(char c) {
  const auto byte = static_cast<unsigned char>(c);
  return (byte >= '0' && byte <= '9') || (byte >= 'A' && byte <= 'Z') ||
         (byte >= 'a' && byte <= 'z') || byte == '_' || byte >= 0x80;
}

bool IsWholeWord(std::string_view text, std::size_t start, std::size_t length) {
  if (start > 0 && IsWordChar(text[start - 1])) return false;
  const std::size_t end = start + length;
  return end >= text.size() || !IsWordChar(text[end]);
}

// First occurrence of `what` in text[start, end), any case unless `matchCase`.
std::size_t FindRaw(std::string_view text, std::string_view what, std::size_t start,
                    std::size_t end, bool matchCase) {
  if (what.empty() || start > end || end - start < what.size()) return kNotFound;
  const char* first = text.data() + start;
  const char* last = text.data() + end;
  const char* found;
  if (matchCase) {
    found = std::search(first, last, std::boyer_moore_horspool_searcher(what.begin(), what.end()));
  } else {
    found = std::search(
        first, last,
        std::boyer_moore_horspool_searcher(what.begin(), what.end(), FoldedHash(), FoldedEqual()));
  }
  return found == last ? kNotFound : static_cast<std::size_t>(found - text.data());
}

// The occurrences of `what` between the first one's start and the last one's end, replaced.
struct Replacement {
  std::size_t first = 0;
  std::size_t last = 0;
  std::size_t count = 0;
  std::string text;
};

Replacement ReplaceMatches(std::string_view text, std::string_view what, std::string_view with,
                           bool matchCase) {
  Replacement replacement;
  std::size_t found = FindRaw(text, what, 0, text.size(), matchCase);
  if (found == kNotFound) return replacement;
  replacement.first = found;
  std::size_t copied = found;
  while (found != kNotFound) {
    replacement.text.append(text.substr(copied, found - copied));
    replacement.text += with;
    copied = found + what.size();
    ++replacement.count;
    found = FindRaw(text, what, copied, text.size(), matchCase);
  }
  replacement.last = copied;
  return replacement;
}

std::string CountMessage(std::size_t count) {
  return "Replaced " + FormatNumberText(static_cast<double>(count), "") + " matches";
}

}  // namespace

std::size_t FindText(std::string_view text, std::string_view what, std::size_t start,
                     std::size_t end, int options) {
  end = std::min(end, text.size());
  const bool matchCase = (options & kSearchMatchCase) != 0;
  const bool wholeWord = (options & kSearchWholeWord) != 0;
  while (true) {
    const std::size_t found = FindRaw(text, what, start, end, matchCase);
    if (found == kNotFound || !wholeWord || IsWholeWord(text, found, what.size())) return found;
    start = found + 1;
  }
}

std::size_t ReplaceEveryMatch(std::string& text, std::string_view what, std::string_view with,
                              bool matchCase) {
  const Replacement replacement = ReplaceMatches(text, what, with, matchCase);
  if (replacement.count > 0) {
    text.replace(replacement.first, replacement.last - replacement.first, replacement.text);
  }
  return replacement.count;
}

bool TextSearch::FindNext(ProgramDocument& document, Host& host) {
  matchStart_ = kNotFound;
  if (SearchText.empty()) return false;
  while (true) {
    const std::size_t found =
        FindText(document.Text(), SearchText, SearchPosition, kNotFound, SearchOptions);
    if (found != kNotFound) {
      document.SetSelection(found, SearchText.size());
      SearchPosition = found + SearchText.size();
      matchStart_ = found;
      matchLength_ = SearchText.size();
      return true;
    }
    const Prompt again{"Search text is not found, search again from the beginning?", "Zemtra",
                       MsgIcon::Question, MsgButtons::YesNo};
    if (host.ask(again) != MsgAnswer::Yes) return false;
    SearchPosition = 0;
  }
}

bool TextSearch::Replace(ProgramDocument& document, Host& host) {
  if (matchStart_ != kNotFound && document.SelStart() == matchStart_ &&
      document.SelLength() == matchLength_ && matchLength_ > 0) {
    document.ReplaceSelection(ReplaceWith);
    // Go on behind the replacement, so that a replacement holding the search text is not
    // found again.
    SearchPosition = matchStart_ + ReplaceWith.size();
  }
  return FindNext(document, host);
}

std::size_t TextSearch::ReplaceAll(ProgramDocument& document, Host& host) {
  matchStart_ = kNotFound;
  if (SearchText.empty()) return 0;
  const std::string& text = document.Text();
  std::size_t count = 0;
  for (std::size_t at = FindText(text, SearchText, 0, kNotFound, SearchOptions); at != kNotFound;
       at = FindText(text, SearchText, at + SearchText.size(), kNotFound, SearchOptions)) {
    ++count;
  }
  if (count > 0) {
    // One edit over the stretch that holds the occurrences, so the whole replacement is a
    // single step.
    const bool matchCase = (SearchOptions & kSearchMatchCase) != 0;
    const Replacement replacement = ReplaceMatches(text, SearchText, ReplaceWith, matchCase);
    document.ReplaceRange(replacement.first, replacement.last - replacement.first,
                          replacement.text);
  }
  host.ask({CountMessage(count), "Finished", MsgIcon::Information, MsgButtons::Ok});
  return count;
}

}  // namespace zemtra
