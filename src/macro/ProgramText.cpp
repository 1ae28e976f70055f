#include "macro/ProgramText.h"

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <memory>

namespace zemtra {

ProgramText::ProgramText(std::string bytes, std::string fileName)
    : bytes_(std::move(bytes)), fileName_(std::move(fileName)) {}

bool ProgramText::LoadFile(const std::filesystem::path& path, ProgramText& out,
                           std::string& error) {
  std::error_code code;
  if (std::filesystem::is_directory(path, code)) {
    error = "is a folder";
    return false;
  }
  std::unique_ptr<std::FILE, int (*)(std::FILE*)> file(std::fopen(path.c_str(), "rb"),
                                                       &std::fclose);
  if (!file) {
    error = std::strerror(errno);
    return false;
  }
  // Read straight into the text; a file that grows while it is read is read to its end.
  std::string bytes;
  std::size_t used = 0;
  const auto size = std::filesystem::file_size(path, code);
  bytes.resize(code ? std::size_t{1} << 16 : static_cast<std::size_t>(size) + 1);
  for (;;) {
    used += std::fread(bytes.data() + used, 1, bytes.size() - used, file.get());
    if (used < bytes.size()) break;
    bytes.resize(bytes.size() * 2);
  }
  bytes.resize(used);
  if (std::ferror(file.get())) {
    error = "read error";
    return false;
  }
  out = ProgramText(std::move(bytes), path.string());
  return true;
}

std::size_t ProgramText::LineLength(const char* begin, std::size_t rest) {
  const void* lf = std::memchr(begin, '\n', rest);
  const std::size_t toLf =
      lf ? static_cast<std::size_t>(static_cast<const char*>(lf) - begin) : rest;
  const void* cr = std::memchr(begin, '\r', toLf);
  return cr ? static_cast<std::size_t>(static_cast<const char*>(cr) - begin) : toLf;
}

void ProgramText::IndexLines() const {
  if (indexed_) return;
  lineStarts_.clear();
  lineStarts_.push_back(0);
  const char* data = bytes_.data();
  const std::size_t size = bytes_.size();
  std::size_t at = 0;
  while (at < size) {
    std::size_t length = LineLength(data + at, size - at);
    at += length;
    if (at >= size) break;
    at += (data[at] == '\r' && at + 1 < size && data[at + 1] == '\n') ? 2 : 1;
    lineStarts_.push_back(at);
  }
  indexed_ = true;
}

int ProgramText::LineFromPosition(std::size_t position) const {
  IndexLines();
  const auto before = std::lower_bound(lineStarts_.begin(), lineStarts_.end(), position);
  return static_cast<int>(before - lineStarts_.begin());
}

std::size_t ProgramText::LineStart(int line) const {
  IndexLines();
  if (line < 1) return 0;
  if (static_cast<std::size_t>(line) > lineStarts_.size()) return bytes_.size();
  return lineStarts_[static_cast<std::size_t>(line) - 1];
}

int ProgramText::LineCount() const {
  IndexLines();
  int count = static_cast<int>(lineStarts_.size());
  if (lineStarts_.back() >= bytes_.size()) --count;  // nothing behind the final line end
  return count;
}

}  // namespace zemtra
