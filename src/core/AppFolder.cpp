#include "core/AppFolder.h"

#include <cstdlib>
#include <fstream>
#include <iterator>
#include <optional>
#include <system_error>
#include <vector>

#include "core/TextUtil.h"

namespace zemtra {

namespace fs = std::filesystem;

namespace {

constexpr const char* kFolderName = "Zemtra";
// Deep enough for any shipped tree, shallow enough to stop a loop of linked folders.
constexpr int kMaxSeedDepth = 16;
// The shipped documentation: kept in step with the program, so its files are replaced when the
// shipped text differs (users do not edit it).
constexpr std::string_view kDocumentationFolder = "Manuals";

std::string EnvironmentText(const char* name) {
  const char* value = std::getenv(name);
  return value ? std::string(value) : std::string();
}

void Report(std::string* error, const std::string& message) {
  if (error && error->empty()) *error = message;
}

std::string Quoted(const fs::path& path) {
  return "\"" + path.string() + "\"";
}

std::vector<std::string_view> SplitComponents(std::string_view relative) {
  std::vector<std::string_view> parts;
  std::size_t start = 0;
  for (std::size_t i = 0; i <= relative.size(); ++i) {
    if (i < relative.size() && relative[i] != '/' && relative[i] != '\\') continue;
    if (i > start) parts.push_back(relative.substr(start, i - start));
    start = i + 1;
  }
  return parts;
}

// The entry of `folder` named `name` in any case: an exact match first, else the first
// case-blind match in name order, so the choice does not depend on directory order.
std::optional<std::string> FindEntryNoCase(const fs::path& folder, std::string_view name) {
  std::error_code error;
  if (fs::exists(fs::symlink_status(folder / name, error))) return std::string(name);
  std::optional<std::string> best;
  fs::directory_iterator entries(folder, error);
  for (; !error && entries != fs::directory_iterator(); entries.increment(error)) {
    std::string candidate = entries->path().filename().string();
    if (EqualsNoCase(candidate, name) && (!best || candidate < *best)) best = std::move(candidate);
  }
  return best;
}

bool IsSameFolder(const fs::path& a, const fs::path& b) {
  std::error_code error;
  return fs::equivalent(a, b, error) && !error;
}

// A file's bytes; "" when it cannot be read.
std::string ReadWholeFile(const fs::path& path) {
  std::ifstream in(path, std::ios::binary);
  return std::string(std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>());
}

class FolderSeeder {
 public:
  FolderSeeder(const fs::path& root, std::string* error) : root_(root), error_(error) {}

  void CopyMissing(const fs::path& from, const fs::path& to, int depth, bool refresh = false) {
    if (depth > kMaxSeedDepth) return;
    std::error_code error;
    fs::directory_iterator entries(from, error);
    if (error) return Fail("Cannot read the folder " + Quoted(from) + ": " + error.message());
    for (; !error && entries != fs::directory_iterator(); entries.increment(error)) {
      CopyEntry(*entries, to, depth, refresh);
    }
  }

  bool Succeeded() const { return ok_; }

 private:
  void CopyEntry(const fs::directory_entry& entry, const fs::path& to, int depth, bool refresh) {
    std::error_code error;
    if (IsSameFolder(entry.path(), root_)) return;  // the target lies inside the source
    const std::string name = entry.path().filename().string();
    const fs::path target = to / FindEntryNoCase(to, name).value_or(name);
    if (entry.is_directory(error)) {
      if (!MakeFolder(target)) return;
      const bool documentation = depth == 0 && EqualsNoCase(name, kDocumentationFolder);
      CopyMissing(entry.path(), target, depth + 1, refresh || documentation);
    } else if (entry.is_regular_file(error)) {
      const bool missing = !fs::exists(fs::symlink_status(target, error));
      if (missing || (refresh && ReadWholeFile(entry.path()) != ReadWholeFile(target))) {
        CopyFile(entry.path(), target, !missing);
      }
    }
  }

  bool MakeFolder(const fs::path& folder) {
    std::error_code error;
    if (fs::is_directory(folder, error)) return true;
    if (fs::create_directory(folder, error) || fs::is_directory(folder, error)) return true;
    Fail("Cannot create the folder " + Quoted(folder) + ": " + error.message());
    return false;
  }

  void CopyFile(const fs::path& from, const fs::path& to, bool replace) {
    std::error_code error;
    const auto how =
        replace ? fs::copy_options::overwrite_existing : fs::copy_options::skip_existing;
    if (!fs::copy_file(from, to, how, error) && error) {
      return Fail("Cannot copy " + Quoted(from) + " to " + Quoted(to) + ": " + error.message());
    }
    // Shipped files may be read-only; the user's copy is theirs to edit.
    fs::permissions(to, fs::perms::owner_write, fs::perm_options::add, error);
  }

  void Fail(const std::string& message) {
    ok_ = false;
    Report(error_, message);
  }

  fs::path root_;
  std::string* error_;
  bool ok_ = true;
};

bool IsMissingOrEmptyFolder(const fs::path& folder) {
  std::error_code error;
  if (!fs::exists(folder, error)) return true;
  return fs::is_directory(folder, error) && fs::is_empty(folder, error);
}

}  // namespace

fs::path FindPathNoCase(const fs::path& base, std::string_view relative) {
  fs::path found = base;
  bool searching = true;
  for (std::string_view part : SplitComponents(relative)) {
    if (searching) {
      if (auto match = FindEntryNoCase(found, part)) {
        found /= *match;
        continue;
      }
      searching = false;
    }
    found /= std::string(part);
  }
  return found;
}

fs::path ApplicationFolderPath(std::string* error) {
  if (std::string home = EnvironmentText("ZEMTRA_HOME"); !home.empty()) return home;
  if (fs::path data = EnvironmentText("XDG_DATA_HOME"); data.is_absolute()) {
    return data / kFolderName;
  }
  if (std::string home = EnvironmentText("HOME"); !home.empty()) {
    return fs::path(home) / ".local" / "share" / kFolderName;
  }
  Report(error, "Cannot find the home folder: HOME is not set");
  return {};
}

fs::path ShippedDataFolder() {
  std::error_code error;
  const fs::path candidates[] = {
      ZEMTRA_BUILD_DATA_DIR,
      fs::read_symlink("/proc/self/exe", error).parent_path().parent_path() / "share" / "zemtra",
      ZEMTRA_INSTALL_DATA_DIR,
  };
  for (const fs::path& candidate : candidates) {
    if (candidate.is_absolute() && fs::is_directory(candidate, error)) return candidate;
  }
  return {};
}

bool SeedFolder(const fs::path& from, const fs::path& to, std::string* error) {
  std::error_code status;
  if (!fs::is_directory(from, status)) {
    Report(error, "The data folder " + Quoted(from) + " does not exist");
    return false;
  }
  if (IsSameFolder(from, to)) return true;
  fs::create_directories(to, status);
  if (!fs::is_directory(to, status)) {
    Report(error, "Cannot create the folder " + Quoted(to) + ": " + status.message());
    return false;
  }
  FolderSeeder seeder(to, error);
  seeder.CopyMissing(from, to, 0);
  return seeder.Succeeded();
}

fs::path ApplicationFolder(std::string* error) {
  if (error) error->clear();
  const fs::path folder = ApplicationFolderPath(error);
  if (folder.empty()) return folder;
  const bool explicitHome = !EnvironmentText("ZEMTRA_HOME").empty();
  if (explicitHome && !IsMissingOrEmptyFolder(folder)) return folder;
  const fs::path data = ShippedDataFolder();
  if (data.empty()) {
    std::error_code status;
    fs::create_directories(folder, status);
    Report(error, "Cannot find the data shipped with Zemtra to fill " + Quoted(folder));
    return folder;
  }
  SeedFolder(data, folder, error);
  return folder;
}

}  // namespace zemtra
