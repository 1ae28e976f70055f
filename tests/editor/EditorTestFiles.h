#pragma once
// Scratch files for the editor tests: a folder removed afterwards, files written and read as
// bytes.
#include <stdlib.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>

namespace zemtra::test {

class EditorScratch {
 public:
  EditorScratch() {
    std::string pattern = (std::filesystem::temp_directory_path() / "editortestXXXXXX").string();
    if (::mkdtemp(pattern.data())) path_ = pattern;
  }
  ~EditorScratch() {
    std::error_code error;
    std::filesystem::remove_all(path_, error);
  }
  EditorScratch(const EditorScratch&) = delete;
  EditorScratch& operator=(const EditorScratch&) = delete;

  std::filesystem::path operator/(const std::string& name) const { return path_ / name; }
  const std::filesystem::path& path() const { return path_; }

 private:
  std::filesystem::path path_;
};

inline void WriteBytes(const std::filesystem::path& path, const std::string& bytes) {
  std::ofstream(path, std::ios::binary) << bytes;
}

inline std::string ReadBytes(const std::filesystem::path& path) {
  std::ifstream in(path, std::ios::binary);
  return std::string(std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>());
}

}  // namespace zemtra::test
