#pragma once
// A scratch folder for the configuration tests, removed when the test ends.
#include <stdlib.h>

#include <filesystem>
#include <fstream>
#include <string>
#include <string_view>

namespace zemtra::test {

class ConfigTestFolder {
 public:
  ConfigTestFolder() {
    std::string pattern =
        (std::filesystem::temp_directory_path() / "zemtra-config-XXXXXX").string();
    if (::mkdtemp(pattern.data())) path_ = pattern;
  }
  ~ConfigTestFolder() {
    std::error_code error;
    if (!path_.empty()) std::filesystem::remove_all(path_, error);
  }
  ConfigTestFolder(const ConfigTestFolder&) = delete;
  ConfigTestFolder& operator=(const ConfigTestFolder&) = delete;

  const std::filesystem::path& path() const { return path_; }

  // Writes `bytes` to `relative` (folders created) and returns the full path.
  std::string Write(const std::string& relative, std::string_view bytes) const {
    const std::filesystem::path file = path_ / relative;
    std::filesystem::create_directories(file.parent_path());
    std::ofstream(file, std::ios::binary).write(bytes.data(), std::streamsize(bytes.size()));
    return file.string();
  }

 private:
  std::filesystem::path path_;
};

}  // namespace zemtra::test
