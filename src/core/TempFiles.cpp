#include "core/TempFiles.h"

#include <unistd.h>

#include <cstdlib>
#include <system_error>

#include "core/TextUtil.h"

namespace zemtra {

namespace {

constexpr std::string_view kPrefix = "zmt";
constexpr std::string_view kSuffix = ".tmp";

bool IsTempFileName(std::string_view name) {
  return name.size() >= kPrefix.size() + kSuffix.size() && StartsWithNoCase(name, kPrefix) &&
         EndsWithNoCase(name, kSuffix);
}

}  // namespace

std::filesystem::path TempFolder() {
  std::error_code error;
  std::filesystem::path folder = std::filesystem::temp_directory_path(error);
  if (error || folder.empty()) return "/tmp";
  return folder;
}

std::string TempFileName() {
  std::string pattern = (TempFolder() / "zmtXXXXXX.tmp").string();
  const int descriptor = ::mkstemps(pattern.data(), static_cast<int>(kSuffix.size()));
  if (descriptor < 0) return {};
  ::close(descriptor);
  return pattern;
}

void RemoveTempFiles(const std::filesystem::path& folder) {
  std::error_code error;
  std::filesystem::directory_iterator entries(folder, error);
  for (; !error && entries != std::filesystem::directory_iterator(); entries.increment(error)) {
    const std::filesystem::directory_entry& entry = *entries;
    if (!IsTempFileName(entry.path().filename().string())) continue;
    std::error_code statusError;
    if (entry.is_directory(statusError) && !entry.is_symlink(statusError)) continue;
    std::error_code removeError;
    std::filesystem::remove(entry.path(), removeError);
  }
}

void RemoveTempFiles() {
  RemoveTempFiles(TempFolder());
}

}  // namespace zemtra
