#pragma once
// Where each line of a text starts. A line break is CR LF, or a CR or LF standing alone; a
// final line break opens an empty last line, as in the editor, so a text of n breaks has n + 1
// lines and the empty text has one.
#include <cstddef>
#include <string_view>
#include <vector>

namespace zemtra {

class LineIndex {
 public:
  // Indexes `text` from scratch.
  void Rebuild(std::string_view text);
  // Brings the index up to date after [start, start + removed) of the old text was replaced by
  // `insertedLength` bytes; `text` is the new text. Costs a pass over the inserted bytes and a
  // shift of the later line starts.
  void Replaced(std::string_view text, std::size_t start, std::size_t removed,
                std::size_t insertedLength);

  int LineCount() const { return static_cast<int>(starts_.size()); }
  // 0-based line holding byte `position`; a position on a line break belongs to the line it
  // ends. Positions past the end give the last line.
  int LineFromPosition(std::size_t position) const;
  // First byte of `line` (0-based); lines outside the text clamp to the first or last one.
  std::size_t LineStart(int line) const;

 private:
  // Line starts of text[from, to] (both ends included) appended to `out`.
  static void CollectStarts(std::string_view text, std::size_t from, std::size_t to,
                            std::vector<std::size_t>& out);

  std::vector<std::size_t> starts_{0};
};

}  // namespace zemtra
