#include "editor/RecoveryFile.h"

#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <charconv>
#include <chrono>
#include <cstdlib>
#include <cstring>
#include <system_error>
#include <utility>

namespace zemtra {

namespace {

namespace fs = std::filesystem;

constexpr std::string_view kMagic = "ZEMTRA RECOVERY 1";
constexpr std::string_view kRecoveryExtension = ".recovery";
constexpr std::string_view kLockExtension = ".lock";

struct LineEndName {
  std::string_view eol;
  std::string_view name;
};
constexpr std::array kLineEndNames = {LineEndName{"\r\n", "CRLF"}, LineEndName{"\n", "LF"},
                                      LineEndName{"\r", "CR"}};

// A path on one header line: "%", CR and LF as %25, %0D and %0A.
std::string EscapePath(std::string_view path) {
  std::string escaped;
  for (const char c : path) {
    if (c == '%') {
      escaped += "%25";
    } else if (c == '\n') {
      escaped += "%0A";
    } else if (c == '\r') {
      escaped += "%0D";
    } else {
      escaped += c;
    }
  }
  return escaped;
}

std::string UnescapePath(std::string_view text) {
  std::string path;
  for (std::size_t i = 0; i < text.size(); ++i) {
    unsigned value = 0;
    if (text[i] == '%' && i + 2 < text.size() &&
        std::from_chars(text.data() + i + 1, text.data() + i + 3, value, 16).ptr ==
            text.data() + i + 3) {
      path += static_cast<char>(value);
      i += 2;
    } else {
      path += text[i];
    }
  }
  return path;
}

// Takes the next "\n"-ended line of `rest`; false when there is none.
bool TakeLine(std::string_view& rest, std::string_view& line) {
  const std::size_t end = rest.find('\n');
  if (end == std::string_view::npos) return false;
  line = rest.substr(0, end);
  rest.remove_prefix(end + 1);
  return true;
}

// The value of header line `line` when it is "key=value".
bool HeaderValue(std::string_view line, std::string_view key, std::string_view& value) {
  if (line.size() <= key.size() || line.substr(0, key.size()) != key || line[key.size()] != '=') {
    return false;
  }
  value = line.substr(key.size() + 1);
  return true;
}

std::string DefaultInstanceId() {
  const auto now = std::chrono::system_clock::now().time_since_epoch();
  return std::to_string(::getpid()) + "-" +
         std::to_string(std::chrono::duration_cast<std::chrono::milliseconds>(now).count());
}

// Opens (creating) `path` and takes its lock without waiting. Returns the descriptor, or -1
// when the lock is held elsewhere or the file cannot be opened.
int TryLock(const fs::path& path) {
  const int fd = ::open(path.c_str(), O_RDWR | O_CREAT | O_CLOEXEC, 0600);
  if (fd < 0) return -1;
  if (::flock(fd, LOCK_EX | LOCK_NB) != 0) {
    ::close(fd);
    return -1;
  }
  return fd;
}

fs::path WithExtension(fs::path path, std::string_view extension) {
  return path.replace_extension(std::string(extension));
}

// Reads a claimed recovery file; false when it is not one.
bool ReadRecovery(const fs::path& file, RecoveryRecord& record) {
  std::string bytes;
  FileError error;
  return ReadFileBytes(file, bytes, error) && ParseRecoveryFile(bytes, record);
}

// Lock files whose recovery file is gone and whose instance has ended.
void ClearStaleLocks(const fs::path& folder) {
  std::error_code code;
  for (const auto& entry : fs::directory_iterator(folder, code)) {
    const fs::path& path = entry.path();
    if (path.extension() != kLockExtension) continue;
    if (fs::exists(WithExtension(path, kRecoveryExtension), code)) continue;
    const int fd = TryLock(path);
    if (fd < 0) continue;
    ::unlink(path.c_str());
    ::close(fd);
  }
}

}  // namespace

std::string RecoveryFileText(const RecoveryRecord& record) {
  std::string_view lineEnd = "CRLF";
  for (const LineEndName& entry : kLineEndNames) {
    if (entry.eol == record.FileLineEnd) lineEnd = entry.name;
  }
  std::string text(kMagic);
  text += "\nfile=" + EscapePath(record.DocumentPath);
  text += "\nsaved=" + std::to_string(record.SavedAt);
  text += record.Encoding == TextEncoding::Latin1 ? "\nencoding=latin-1" : "\nencoding=utf-8";
  text += "\nline-end=";
  text += lineEnd;
  text += "\nlength=" + std::to_string(record.Text.size());
  text += "\n\n";
  text += record.Text;
  return text;
}

bool ParseRecoveryFile(std::string_view bytes, RecoveryRecord& record) {
  std::string_view rest = bytes;
  std::string_view magic, file, saved, encoding, lineEnd, length, blank;
  if (!TakeLine(rest, magic) || magic != kMagic) return false;
  std::string_view line;
  if (!TakeLine(rest, line) || !HeaderValue(line, "file", file)) return false;
  if (!TakeLine(rest, line) || !HeaderValue(line, "saved", saved)) return false;
  if (!TakeLine(rest, line) || !HeaderValue(line, "encoding", encoding)) return false;
  if (!TakeLine(rest, line) || !HeaderValue(line, "line-end", lineEnd)) return false;
  if (!TakeLine(rest, line) || !HeaderValue(line, "length", length)) return false;
  if (!TakeLine(rest, blank) || !blank.empty()) return false;
  RecoveryRecord parsed;
  std::size_t size = 0;
  const auto number = [](std::string_view text, auto& value) {
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
    return error == std::errc() && end == text.data() + text.size();
  };
  // A file cut short (a full disk) is damaged: the length says how much text there must be.
  if (!number(saved, parsed.SavedAt) || !number(length, size) || size != rest.size()) {
    return false;
  }
  if (encoding != "utf-8" && encoding != "latin-1") return false;
  parsed.Encoding = encoding == "latin-1" ? TextEncoding::Latin1 : TextEncoding::Utf8;
  const auto eol = std::find_if(kLineEndNames.begin(), kLineEndNames.end(),
                                [&](const LineEndName& entry) { return entry.name == lineEnd; });
  if (eol == kLineEndNames.end()) return false;
  parsed.FileLineEnd = std::string(eol->eol);
  parsed.DocumentPath = UnescapePath(file);
  parsed.Text = std::string(rest);
  record = std::move(parsed);
  return true;
}

fs::path DefaultRecoveryFolder() {
  const char* state = std::getenv("XDG_STATE_HOME");
  if (state != nullptr && *state == '/') return fs::path(state) / "zemtra" / "recovery";
  const char* home = std::getenv("HOME");
  if (home != nullptr && *home != '\0') {
    return fs::path(home) / ".local" / "state" / "zemtra" / "recovery";
  }
  return {};
}

std::string RecoveryDocumentName(const RecoveryRecord& record) {
  if (record.DocumentPath.empty()) return "Untitled";
  const std::string name = fs::path(record.DocumentPath).filename().string();
  return name.empty() ? record.DocumentPath : name;
}

// --- RecoveryWriter ------------------------------------------------------------------------------

RecoveryWriter::RecoveryWriter(fs::path folder, std::string instanceId)
    : folder_(std::move(folder)) {
  if (instanceId.empty()) instanceId = DefaultInstanceId();
  file_ = folder_ / (instanceId + std::string(kRecoveryExtension));
  lockFile_ = folder_ / (instanceId + std::string(kLockExtension));
}

RecoveryWriter::~RecoveryWriter() {
  if (lock_ < 0) return;
  if (!written_) ::unlink(lockFile_.c_str());
  ::close(lock_);
}

bool RecoveryWriter::Claim(FileError& error) {
  if (lock_ >= 0) return true;
  std::error_code code;
  fs::create_directories(folder_, code);
  lock_ = TryLock(lockFile_);
  if (lock_ < 0) {
    error = FileError{errno, std::strerror(errno)};
    return false;
  }
  return true;
}

bool RecoveryWriter::Write(const RecoveryRecord& record, FileError& error) {
  if (folder_.empty()) {
    error = FileError{ENOENT, "no folder for recovery files"};
    return false;
  }
  if (!Claim(error) || !WriteFileAtomically(file_, RecoveryFileText(record), error)) return false;
  written_ = true;
  return true;
}

void RecoveryWriter::Remove() {
  if (!written_) return;
  ::unlink(file_.c_str());
  written_ = false;
}

// --- OrphanedRecovery ----------------------------------------------------------------------------

OrphanedRecovery::OrphanedRecovery(fs::path file, fs::path lockFile, int lock,
                                   RecoveryRecord record)
    : file_(std::move(file)),
      lockFile_(std::move(lockFile)),
      lock_(lock),
      record_(std::move(record)) {}

OrphanedRecovery::OrphanedRecovery(OrphanedRecovery&& other) noexcept
    : file_(std::move(other.file_)),
      lockFile_(std::move(other.lockFile_)),
      lock_(std::exchange(other.lock_, -1)),
      record_(std::move(other.record_)) {}

OrphanedRecovery& OrphanedRecovery::operator=(OrphanedRecovery&& other) noexcept {
  if (this != &other) {
    Release();
    file_ = std::move(other.file_);
    lockFile_ = std::move(other.lockFile_);
    lock_ = std::exchange(other.lock_, -1);
    record_ = std::move(other.record_);
  }
  return *this;
}

OrphanedRecovery::~OrphanedRecovery() {
  Release();
}

void OrphanedRecovery::Release() {
  if (lock_ >= 0) ::close(lock_);
  lock_ = -1;
}

void OrphanedRecovery::Discard() {
  if (lock_ < 0) return;
  ::unlink(file_.c_str());
  ::unlink(lockFile_.c_str());
  Release();
}

std::vector<OrphanedRecovery> FindOrphanedRecoveries(const fs::path& folder) {
  std::vector<OrphanedRecovery> found;
  std::error_code code;
  if (folder.empty() || !fs::is_directory(folder, code)) return found;
  for (const auto& entry : fs::directory_iterator(folder, code)) {
    const fs::path& file = entry.path();
    if (file.extension() != kRecoveryExtension || !entry.is_regular_file(code)) continue;
    const fs::path lockFile = WithExtension(file, kLockExtension);
    const int lock = TryLock(lockFile);
    if (lock < 0) continue;  // its instance is running (or the folder is not ours to write)
    RecoveryRecord record;
    if (!ReadRecovery(file, record)) {
      ::close(lock);
      continue;
    }
    found.emplace_back(file, lockFile, lock, std::move(record));
  }
  ClearStaleLocks(folder);
  std::stable_sort(found.begin(), found.end(), [](const auto& a, const auto& b) {
    return a.Record().SavedAt > b.Record().SavedAt;
  });
  return found;
}

}  // namespace zemtra
