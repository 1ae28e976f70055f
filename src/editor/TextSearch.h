#pragma once
// Find and replace in the program document: the engine behind the Search window.
#include <cstddef>
#include <string>
#include <string_view>

namespace zemtra {

class Host;
class ProgramDocument;

// Flags of SearchOptions, combined with "|".
inline constexpr int kSearchWholeWord = 2;
inline constexpr int kSearchMatchCase = 4;
inline constexpr std::size_t kNotFound = std::string_view::npos;

// Position of the first match of `what` in text[start, end), or kNotFound. Without
// kSearchMatchCase ASCII letters match in either case. With kSearchWholeWord the match must not
// touch a letter, digit, "_" or non-ASCII character on either side. An empty `what` is never found.
std::size_t FindText(std::string_view text, std::string_view what, std::size_t start,
                     std::size_t end, int options);

// Replaces every occurrence of `what` in `text` by `with` in one pass from the start, so a
// replacement holding `what` is not searched again; ASCII case is ignored unless `matchCase`.
// Returns the number replaced.
std::size_t ReplaceEveryMatch(std::string& text, std::string_view what, std::string_view with,
                              bool matchCase);

class TextSearch {
 public:
  std::string SearchText;   // what to find (txtFind)
  std::string ReplaceWith;  // its replacement (txtReplace)
  int SearchOptions = 0;    // kSearchWholeWord | kSearchMatchCase
  // Byte offset where the next search starts.
  std::size_t SearchPosition = 0;

  // Selects the next match from SearchPosition and moves SearchPosition behind it. At the end
  // of the text asks "Search text is not found, search again from the beginning?" (Yes and No,
  // title "Zemtra"); Yes starts again from the top. False when nothing was selected, also for an
  // empty SearchText.
  bool FindNext(ProgramDocument& document, Host& host);

  // Replaces the match the last FindNext selected, if it is still selected, then finds the
  // next one. Returns whether a next match was selected.
  bool Replace(ProgramDocument& document, Host& host);

  // Counts the matches (whole word and case as set), then, if there are any, replaces them all
  // in one edit, so that the whole replacement is a single undo step. The replace itself knows
  // no whole-word mode, so it can change more places than were counted. Says "Replaced N
  // matches" (title "Finished", information icon) and returns the count.
  std::size_t ReplaceAll(ProgramDocument& document, Host& host);

 private:
  // The match FindNext selected last; Replace acts only while it is still the selection.
  std::size_t matchStart_ = kNotFound;
  std::size_t matchLength_ = 0;
};

}  // namespace zemtra
