#pragma once
// A program held in memory: the bytes of its text, read line by line like an open file.
// Lines end with CR LF, LF or CR. A position is the 0-based byte offset of a line start (the
// first line starts at 0); saving and restoring a position is how loops and jumps return to
// a line.
#include <cstddef>
#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

namespace zemtra {

class ProgramText {
 public:
  ProgramText() = default;
  // `fileName` names the text in messages and tells the main program from called files.
  explicit ProgramText(std::string bytes, std::string fileName = {});

  // Reads a whole file. Returns false, with a reason in `error`, when it cannot be read.
  static bool LoadFile(const std::filesystem::path& path, ProgramText& out, std::string& error);

  const std::string& FileName() const { return fileName_; }
  std::string_view Bytes() const { return bytes_; }
  std::size_t Size() const { return bytes_.size(); }

  // Byte offset of the next line to read.
  std::size_t Position() const { return position_; }
  // Moves the read position; a position past the end is taken as the end.
  void Seek(std::size_t position) {
    position_ = position < bytes_.size() ? position : bytes_.size();
  }
  bool AtEnd() const { return position_ >= bytes_.size(); }

  // Reads the line at the read position, without its line end, and moves behind it.
  // False at the end of the text. The view stays valid while the text is unchanged.
  bool ReadLine(std::string_view& line) { return ReadLineAt(position_, line); }
  // The same from a position of the caller's own (several readers can share one text).
  bool ReadLineAt(std::size_t& position, std::string_view& line) const {
    if (position >= bytes_.size()) return false;
    const char* begin = bytes_.data() + position;
    const std::size_t rest = bytes_.size() - position;
    std::size_t length = LineLength(begin, rest);
    line = std::string_view(begin, length);
    if (length < rest) {
      const bool crLf = begin[length] == '\r' && length + 1 < rest && begin[length + 1] == '\n';
      length += crLf ? 2 : 1;
    }
    position += length;
    return true;
  }

  // Number of line starts before `position`: the line that starts there is that number + 1.
  int LineFromPosition(std::size_t position) const;
  // Byte offset where 1-based `line` starts; Size() for a line behind the last one.
  std::size_t LineStart(int line) const;
  // Number of lines (a final line end does not open another line).
  int LineCount() const;

 private:
  // Length of the line at `begin` up to its first CR or LF (or `rest` when it has none).
  static std::size_t LineLength(const char* begin, std::size_t rest);
  void IndexLines() const;

  std::string bytes_;
  std::string fileName_;
  std::size_t position_ = 0;
  // Offsets of every line start, built on first use; jumps need it, plain runs do not.
  mutable std::vector<std::size_t> lineStarts_;
  mutable bool indexed_ = false;
};

}  // namespace zemtra
