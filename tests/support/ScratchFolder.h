#pragma once
// Test helpers for files: a scratch folder of its own, removed afterwards, and an environment
// variable set for the length of a scope.
#include <stdlib.h>

#include <filesystem>
#include <fstream>
#include <optional>
#include <string>
#include <string_view>

namespace zemtra::test {

// Writes `bytes` to `file`, creating its folders.
inline void WriteText(const std::filesystem::path& file, std::string_view bytes) {
  std::filesystem::create_directories(file.parent_path());
  std::ofstream(file, std::ios::binary).write(bytes.data(), std::streamsize(bytes.size()));
}

// A fresh folder under the temporary folder (unique per process and object), removed with
// everything in it when the object goes.
class ScratchFolder {
 public:
  ScratchFolder() {
    std::string pattern = (std::filesystem::temp_directory_path() / "zemtra-test-XXXXXX").string();
    if (::mkdtemp(pattern.data())) path_ = pattern;
  }
  ~ScratchFolder() {
    std::error_code error;
    if (!path_.empty()) std::filesystem::remove_all(path_, error);
  }
  ScratchFolder(const ScratchFolder&) = delete;
  ScratchFolder& operator=(const ScratchFolder&) = delete;

  const std::filesystem::path& path() const { return path_; }
  std::filesystem::path operator/(const std::string& name) const { return path_ / name; }

  // Writes `bytes` to `relative` (folders created) and returns the full path.
  std::string Write(const std::string& relative, std::string_view bytes) const {
    const std::filesystem::path file = path_ / relative;
    WriteText(file, bytes);
    return file.string();
  }

 private:
  std::filesystem::path path_;
};

class ScopedEnv {
 public:
  ScopedEnv(const char* name, const std::optional<std::string>& value) : name_(name) {
    if (const char* old = ::getenv(name)) old_ = old;
    Set(value);
  }
  ~ScopedEnv() { Set(old_); }
  ScopedEnv(const ScopedEnv&) = delete;
  ScopedEnv& operator=(const ScopedEnv&) = delete;

 private:
  void Set(const std::optional<std::string>& value) {
    if (value) {
      ::setenv(name_.c_str(), value->c_str(), 1);
    } else {
      ::unsetenv(name_.c_str());
    }
  }

  std::string name_;
  std::optional<std::string> old_;
};

}  // namespace zemtra::test
