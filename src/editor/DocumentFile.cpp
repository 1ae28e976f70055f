#include "editor/DocumentFile.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <system_error>
#include <vector>

#include "editor/LineEnds.h"

namespace zemtra {

namespace {

FileError ErrorOf(int code) {
  return {code, std::generic_category().message(code)};
}

// Closes a descriptor when it goes out of scope.
class Descriptor {
 public:
  explicit Descriptor(int fd) : fd_(fd) {}
  ~Descriptor() {
    if (fd_ >= 0) ::close(fd_);
  }
  Descriptor(const Descriptor&) = delete;
  Descriptor& operator=(const Descriptor&) = delete;
  int get() const { return fd_; }
  // Closes now, reporting a failure of the close itself (a write the system deferred).
  int Close() {
    const int result = ::close(fd_);
    fd_ = -1;
    return result;
  }

 private:
  int fd_;
};

bool ReadBytes(const std::filesystem::path& path, std::string& bytes, FileError& error) {
  Descriptor file(::open(path.c_str(), O_RDONLY | O_CLOEXEC));
  if (file.get() < 0) {
    error = ErrorOf(errno);
    return false;
  }
  struct stat info {};
  if (::fstat(file.get(), &info) != 0) {
    error = ErrorOf(errno);
    return false;
  }
  if (S_ISDIR(info.st_mode)) {
    error = ErrorOf(EISDIR);
    return false;
  }
  bytes.clear();
  if (info.st_size > 0) bytes.reserve(static_cast<std::size_t>(info.st_size));
  char buffer[1 << 16];
  while (true) {
    const ssize_t count = ::read(file.get(), buffer, sizeof buffer);
    if (count == 0) return true;
    if (count < 0) {
      if (errno == EINTR) continue;
      error = ErrorOf(errno);
      return false;
    }
    bytes.append(buffer, static_cast<std::size_t>(count));
  }
}

bool WriteAll(int fd, std::string_view bytes) {
  while (!bytes.empty()) {
    const ssize_t count = ::write(fd, bytes.data(), bytes.size());
    if (count < 0) {
      if (errno == EINTR) continue;
      return false;
    }
    bytes.remove_prefix(static_cast<std::size_t>(count));
  }
  return true;
}

// The file a save really replaces: a link is followed, so the link stays a link.
std::filesystem::path SaveTarget(const std::filesystem::path& path) {
  std::error_code error;
  if (std::filesystem::is_symlink(path, error)) {
    const std::filesystem::path resolved = std::filesystem::weakly_canonical(path, error);
    if (!error) return resolved;
  }
  return path;
}

// ---- Rich text ------------------------------------------------------------------------------

void AppendUtf8(char32_t code, std::string& out) {
  if (code < 0x80) {
    out += static_cast<char>(code);
  } else if (code < 0x800) {
    out += static_cast<char>(0xC0 | (code >> 6));
    out += static_cast<char>(0x80 | (code & 0x3F));
  } else if (code < 0x10000) {
    out += static_cast<char>(0xE0 | (code >> 12));
    out += static_cast<char>(0x80 | ((code >> 6) & 0x3F));
    out += static_cast<char>(0x80 | (code & 0x3F));
  } else {
    out += static_cast<char>(0xF0 | (code >> 18));
    out += static_cast<char>(0x80 | ((code >> 12) & 0x3F));
    out += static_cast<char>(0x80 | ((code >> 6) & 0x3F));
    out += static_cast<char>(0x80 | (code & 0x3F));
  }
}

// Characters 0x80 to 0x9F of the Windows code page rich text declares (\ansicpg1252).
constexpr char16_t kCp1252High[32] = {
    0x20AC, 0x0081, 0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021, 0x02C6, 0x2030, 0x0160,
    0x2039, 0x0152, 0x008D, 0x017D, 0x008F, 0x0090, 0x2018, 0x2019, 0x201C, 0x201D, 0x2022,
    0x2013, 0x2014, 0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0x009D, 0x017E, 0x0178};

char32_t FromCp1252(unsigned char byte) {
  return (byte >= 0x80 && byte < 0xA0) ? kCp1252High[byte - 0x80] : byte;
}

int HexValue(char c) {
  if (c >= '0' && c <= '9') return c - '0';
  if (c >= 'a' && c <= 'f') return c - 'a' + 10;
  if (c >= 'A' && c <= 'F') return c - 'A' + 10;
  return -1;
}

bool IsAsciiLetter(char c) {
  return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z');
}
bool IsDigit(char c) {
  return c >= '0' && c <= '9';
}

// Groups whose content is no text of the document.
constexpr std::string_view kDestinations[] = {
    "fonttbl", "colortbl",  "stylesheet", "info",        "pict",
    "header",  "footer",    "headerl",    "headerr",     "footerl",
    "footerr", "footnote",  "object",     "listtable",   "listoverridetable",
    "rsidtbl", "generator", "themedata",  "latentstyles"};

bool IsDestination(std::string_view word) {
  for (const std::string_view name : kDestinations) {
    if (word == name) return true;
  }
  return false;
}

// Reads a rich text document into plain text.
class RtfReader {
 public:
  explicit RtfReader(std::string_view rtf) : rtf_(rtf) {}

  std::string Read() {
    while (i_ < rtf_.size()) Step();
    // The document's own last paragraph mark ends the text rather than opening a line.
    if (endsWithPar_ && out_.size() >= 2) out_.resize(out_.size() - 2);
    return std::move(out_);
  }

 private:
  struct Group {
    bool skip = false;
    int fallbackWidth = 1;  // \ucN: characters standing in for each \uN
  };

  void Step() {
    const char c = rtf_[i_];
    if (c == '{') {
      groups_.push_back(group_);
      fallback_ = 0;
      ++i_;
    } else if (c == '}') {
      if (!groups_.empty()) {
        group_ = groups_.back();
        groups_.pop_back();
      }
      fallback_ = 0;
      ++i_;
    } else if (c == '\r' || c == '\n') {
      ++i_;
    } else if (c == '\\') {
      Control();
    } else {
      Emit(FromCp1252(static_cast<unsigned char>(c)));
      ++i_;
    }
  }

  void Control() {
    if (i_ + 1 >= rtf_.size()) {
      i_ = rtf_.size();
      return;
    }
    const char symbol = rtf_[i_ + 1];
    if (symbol == '\\' || symbol == '{' || symbol == '}') {
      Emit(static_cast<unsigned char>(symbol));
      i_ += 2;
    } else if (symbol == '\'') {
      const int high = i_ + 2 < rtf_.size() ? HexValue(rtf_[i_ + 2]) : -1;
      const int low = i_ + 3 < rtf_.size() ? HexValue(rtf_[i_ + 3]) : -1;
      if (high >= 0 && low >= 0) Emit(FromCp1252(static_cast<unsigned char>(high * 16 + low)));
      i_ += 4;
    } else if (symbol == '*') {
      group_.skip = true;
      i_ += 2;
    } else if (symbol == '~') {
      Emit(0xA0);
      i_ += 2;
    } else if (IsAsciiLetter(symbol)) {
      Word();
    } else {
      i_ += 2;  // other control symbols carry no text
    }
  }

  void Word() {
    std::size_t j = i_ + 1;
    while (j < rtf_.size() && IsAsciiLetter(rtf_[j])) ++j;
    const std::string_view word = rtf_.substr(i_ + 1, j - i_ - 1);
    long parameter = 0;
    bool negative = false;
    if (j + 1 < rtf_.size() && rtf_[j] == '-' && IsDigit(rtf_[j + 1])) {
      negative = true;
      ++j;
    }
    while (j < rtf_.size() && IsDigit(rtf_[j])) {
      if (parameter < 10000000) parameter = parameter * 10 + (rtf_[j] - '0');
      ++j;
    }
    if (negative) parameter = -parameter;
    if (j < rtf_.size() && rtf_[j] == ' ') ++j;  // the delimiter belongs to the word
    i_ = j;
    Apply(word, parameter);
  }

  void Apply(std::string_view word, long parameter) {
    if (word == "par" || word == "line") {
      EmitText("\r\n");
      endsWithPar_ = !group_.skip;
      return;
    }
    if (word == "tab") {
      Emit('\t');
    } else if (word == "u") {
      Emit(static_cast<char32_t>(parameter < 0 ? parameter + 65536 : parameter));
      fallback_ = group_.fallbackWidth;
    } else if (word == "uc") {
      group_.fallbackWidth = static_cast<int>(parameter);
    } else if (IsDestination(word)) {
      group_.skip = true;
    }
  }

  void Emit(char32_t code) {
    if (fallback_ > 0) {  // the stand-in of a \uN character
      --fallback_;
      return;
    }
    if (group_.skip) return;
    endsWithPar_ = false;
    if (code >= 0xD800 && code < 0xDC00) {
      highSurrogate_ = code;
      return;
    }
    if (code >= 0xDC00 && code < 0xE000 && highSurrogate_) {
      code = 0x10000 + ((highSurrogate_ - 0xD800) << 10) + (code - 0xDC00);
    }
    highSurrogate_ = 0;
    AppendUtf8(code, out_);
  }

  void EmitText(std::string_view text) {
    if (group_.skip) return;
    out_ += text;
  }

  std::string_view rtf_;
  std::size_t i_ = 0;
  Group group_;
  std::vector<Group> groups_;
  int fallback_ = 0;
  char32_t highSurrogate_ = 0;
  bool endsWithPar_ = false;
  std::string out_;
};

}  // namespace

bool ReadFileBytes(const std::filesystem::path& path, std::string& bytes, FileError& error) {
  return ReadBytes(path, bytes, error);
}

bool IsRichText(std::string_view bytes) {
  return bytes.starts_with("{\\rtf");
}

std::string RichTextToPlain(std::string_view rtf) {
  return RtfReader(rtf).Read();
}

bool ReadProgramFile(const std::filesystem::path& path, ProgramFileText& out, FileError& error,
                     const std::function<void()>& between) {
  const auto pause = [&between] {
    if (between) between();
  };
  std::string bytes;
  if (!ReadFileBytes(path, bytes, error)) return false;
  pause();
  out.richText = IsRichText(bytes);
  if (out.richText) {
    out.text = RichTextToPlain(bytes);
    out.encoding = TextEncoding::Utf8;
    out.eol = std::string(kCrLf);
  } else {
    out.eol = GetEOLSequence(bytes);
    out.text = DecodeProgramBytes(bytes, out.encoding);
  }
  pause();
  NormalizeLineEnds(out.text, out.eol);
  return true;
}

bool WriteFileAtomically(const std::filesystem::path& path, std::string_view bytes,
                         FileError& error) {
  const std::filesystem::path target = SaveTarget(path);
  std::filesystem::path folder = target.parent_path();
  if (folder.empty()) folder = ".";
  std::string temporary =
      (folder / ("." + target.filename().string() + ".zemtra-save-XXXXXX")).string();
  struct stat existing {};
  const bool replacing = ::stat(target.c_str(), &existing) == 0;
  int fd = ::mkostemp(temporary.data(), O_CLOEXEC);
  if (fd >= 0 && !replacing) {
    // A new file gets the permissions the user's umask gives any new file: make it again
    // under the name just reserved, with the ordinary creation mode.
    ::close(fd);
    ::unlink(temporary.c_str());
    fd = ::open(temporary.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0666);
  }
  Descriptor file(fd);
  if (file.get() < 0) {
    error = ErrorOf(errno);
    return false;
  }
  bool written = WriteAll(file.get(), bytes) &&
                 (!replacing || ::fchmod(file.get(), existing.st_mode & 07777) == 0) &&
                 ::fsync(file.get()) == 0;
  int code = written ? 0 : errno;
  if (file.Close() != 0 && written) {
    written = false;
    code = errno;
  }
  if (written && ::rename(temporary.c_str(), target.c_str()) != 0) {
    written = false;
    code = errno;
  }
  if (!written) {
    ::unlink(temporary.c_str());
    error = ErrorOf(code);
    return false;
  }
  // Make the rename itself durable.
  Descriptor directory(::open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
  if (directory.get() >= 0) ::fsync(directory.get());
  return true;
}

bool IsReadOnlyFile(const std::filesystem::path& path) {
  struct stat info {};
  if (::stat(path.c_str(), &info) != 0) return false;
  // Marked read-only (no write permission for anyone) counts even for a user who could
  // override it.
  if ((info.st_mode & (S_IWUSR | S_IWGRP | S_IWOTH)) == 0) return true;
  return ::access(path.c_str(), W_OK) != 0;
}

bool IsFileAccessError(const FileError& error) {
  switch (error.code) {
    case EACCES:
    case EPERM:
    case EROFS:
    case ETXTBSY:
    case EBUSY:
    case ENOENT:
    case ENOTDIR:
    case EISDIR:
    case ENAMETOOLONG:
    case ELOOP:
      return true;
    default:
      return false;
  }
}

std::string InsertFileText(std::string_view bytes) {
  TextEncoding encoding;
  std::string text = DecodeProgramBytes(bytes, encoding);
  NormalizeLineEnds(text, "\r\r\n");
  text += kCrLf;
  return text;
}

}  // namespace zemtra
