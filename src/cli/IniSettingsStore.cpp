#include "cli/IniSettingsStore.h"

#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <sstream>
#include <system_error>

#include <unistd.h>

namespace zemtra {

namespace {

constexpr char kHex[] = "0123456789ABCDEF";
// A group named "General" is written under this name: Qt keeps [General] for keys of no group.
constexpr std::string_view kGeneral = "General";
constexpr std::string_view kEscapedGeneral = "%General";
// Where the keys of no group ([General] in the file) are kept, apart from the group "General".
constexpr std::string_view kUngrouped = "\x01General";

bool IsPlainKeyChar(unsigned char c) {
  return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') || c == '_' ||
         c == '-' || c == '.';
}

int HexValue(char c) {
  if (c >= '0' && c <= '9') return c - '0';
  if (c >= 'a' && c <= 'f') return c - 'a' + 10;
  if (c >= 'A' && c <= 'F') return c - 'A' + 10;
  return -1;
}

std::string_view Trim(std::string_view text) {
  const auto first = text.find_first_not_of(" \t");
  if (first == std::string_view::npos) return {};
  const auto last = text.find_last_not_of(" \t\r");
  return text.substr(first, last - first + 1);
}

// The escape sequence of a quoted or unquoted value at `text[i]` (a backslash); appends the
// character and leaves `i` on its last character.
void Unescape(std::string_view text, std::size_t& i, std::string& out) {
  if (i + 1 >= text.size()) return;
  const char c = text[++i];
  switch (c) {
    case 'a':
      out += '\a';
      break;
    case 'b':
      out += '\b';
      break;
    case 'f':
      out += '\f';
      break;
    case 'n':
      out += '\n';
      break;
    case 'r':
      out += '\r';
      break;
    case 't':
      out += '\t';
      break;
    case 'v':
      out += '\v';
      break;
    case '0':
      out += '\0';
      break;
    case 'x': {
      unsigned value = 0;
      while (i + 1 < text.size() && HexValue(text[i + 1]) >= 0) {
        value = value * 16 + static_cast<unsigned>(HexValue(text[++i]));
      }
      out += static_cast<char>(value & 0xFF);
      break;
    }
    default:
      out += c;
      break;  // \" \\ and anything else stand for themselves
  }
}

}  // namespace

std::string EscapeIniKey(std::string_view name) {
  std::string result;
  for (const char ch : name) {
    const auto c = static_cast<unsigned char>(ch);
    if (c == '/') {
      result += '\\';
    } else if (IsPlainKeyChar(c)) {
      result += ch;
    } else {
      result += '%';
      result += kHex[c / 16];
      result += kHex[c % 16];
    }
  }
  return result;
}

std::string UnescapeIniKey(std::string_view escaped) {
  std::string result;
  for (std::size_t i = 0; i < escaped.size(); ++i) {
    const char c = escaped[i];
    if (c == '\\') {
      result += '/';
    } else if (c == '%' && i + 2 < escaped.size() && HexValue(escaped[i + 1]) >= 0 &&
               HexValue(escaped[i + 2]) >= 0) {
      result += static_cast<char>(HexValue(escaped[i + 1]) * 16 + HexValue(escaped[i + 2]));
      i += 2;
    } else {
      result += c;
    }
  }
  return result;
}

std::string EscapeIniValue(std::string_view value) {
  std::string result;
  bool needsQuotes = false;
  bool escapeNextIfHex = false;
  if (!value.empty() && value.front() == '@') result += '@';  // "@" opens Qt's typed values
  for (const char ch : value) {
    const auto c = static_cast<unsigned char>(ch);
    if (c == ';' || c == ',' || c == '=') needsQuotes = true;
    if (escapeNextIfHex && HexValue(ch) >= 0) {
      result += "\\x";
      result += kHex[c / 16];
      result += kHex[c % 16];
      continue;
    }
    escapeNextIfHex = false;
    switch (c) {
      case '\0':
        result += "\\0";
        escapeNextIfHex = true;
        break;
      case '\a':
        result += "\\a";
        break;
      case '\b':
        result += "\\b";
        break;
      case '\f':
        result += "\\f";
        break;
      case '\n':
        result += "\\n";
        break;
      case '\r':
        result += "\\r";
        break;
      case '\t':
        result += "\\t";
        break;
      case '\v':
        result += "\\v";
        break;
      case '"':
        result += "\\\"";
        break;
      case '\\':
        result += "\\\\";
        break;
      default:
        if (c <= 0x1F || c == 0x7F) {
          result += "\\x";
          result += kHex[c / 16];
          result += kHex[c % 16];
          escapeNextIfHex = true;
        } else {
          result += ch;
        }
    }
  }
  if (needsQuotes || (!result.empty() && (result.front() == ' ' || result.back() == ' '))) {
    result = '"' + result + '"';
  }
  return result;
}

std::string UnescapeIniValue(std::string_view escaped) {
  std::string result;
  const std::string_view text = Trim(escaped);
  bool inQuotes = false;
  for (std::size_t i = 0; i < text.size(); ++i) {
    const char c = text[i];
    if (c == '"') {
      inQuotes = !inQuotes;
    } else if (c == '\\') {
      Unescape(text, i, result);
    } else if (c == ',' && !inQuotes) {
      result += ", ";  // an unquoted list: its items joined as one text
      while (i + 1 < text.size() && text[i + 1] == ' ') ++i;
    } else {
      result += c;
    }
  }
  if (result.size() >= 2 && result[0] == '@' && result[1] == '@') result.erase(0, 1);
  return result;
}

std::filesystem::path IniSettingsStore::DefaultPath() {
  const char* config = std::getenv("XDG_CONFIG_HOME");
  if (config != nullptr && config[0] == '/')
    return std::filesystem::path(config) / "Zemtra" / "Zemtra.conf";
  const char* home = std::getenv("HOME");
  if (home == nullptr || home[0] == '\0') return {};
  return std::filesystem::path(home) / ".config" / "Zemtra" / "Zemtra.conf";
}

bool IniSettingsStore::Load(std::string* error) {
  Sections().clear();
  std::error_code code;
  if (!std::filesystem::exists(file_, code)) return true;
  std::ifstream in(file_, std::ios::binary);
  if (!in) {
    if (error != nullptr) *error = "cannot read " + file_.string();
    return false;
  }
  std::ostringstream text;
  text << in.rdbuf();
  ParseText(text.str());
  return true;
}

void IniSettingsStore::ParseText(std::string_view text) {
  std::string section(kUngrouped);
  std::size_t start = 0;
  while (start < text.size()) {
    std::size_t end = text.find('\n', start);
    if (end == std::string_view::npos) end = text.size();
    const std::string_view line = Trim(text.substr(start, end - start));
    start = end + 1;
    if (line.empty() || line[0] == ';' || line[0] == '#') continue;
    if (line.front() == '[' && line.back() == ']') {
      const std::string_view name = line.substr(1, line.size() - 2);
      section = name == kGeneral          ? std::string(kUngrouped)
                : name == kEscapedGeneral ? std::string(kGeneral)
                                          : UnescapeIniKey(name);
      continue;
    }
    const std::size_t equals = line.find('=');
    if (equals == std::string_view::npos) continue;
    const std::string key = UnescapeIniKey(Trim(line.substr(0, equals)));
    if (!key.empty()) Sections()[section][key] = UnescapeIniValue(line.substr(equals + 1));
  }
}

std::string IniSettingsStore::Text() const {
  std::string text;
  for (const auto& [section, keys] : Sections()) {
    if (keys.empty()) continue;
    if (!text.empty()) text += '\n';
    const bool ungrouped = section == kUngrouped;
    text += '[';
    text += ungrouped             ? std::string(kGeneral)
            : section == kGeneral ? std::string(kEscapedGeneral)
                                  : EscapeIniKey(section);
    text += "]\n";
    for (const auto& [key, value] : keys) {
      text += EscapeIniKey(key) + '=' + EscapeIniValue(value) + '\n';
    }
  }
  return text;
}

bool IniSettingsStore::Save(std::string* error) const {
  std::error_code code;
  std::filesystem::create_directories(file_.parent_path(), code);
  const std::filesystem::path temporary =
      file_.string() + ".tmp" + std::to_string(static_cast<long>(::getpid()));
  {
    std::ofstream out(temporary, std::ios::binary | std::ios::trunc);
    out << Text();
    if (!out.flush()) {
      if (error != nullptr) *error = "cannot write " + temporary.string();
      std::filesystem::remove(temporary, code);
      return false;
    }
  }
  std::filesystem::rename(temporary, file_, code);
  if (code) {
    if (error != nullptr) *error = "cannot replace " + file_.string() + ": " + code.message();
    std::filesystem::remove(temporary, code);
    return false;
  }
  return true;
}

}  // namespace zemtra
