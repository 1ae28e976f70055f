#include "core/TextUtil.h"

#include <algorithm>

namespace zemtra {

namespace {

char UpperAscii(char c) {
  return c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c;
}
char LowerAscii(char c) {
  return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
}
bool IsTrimBlank(char c) {
  return c == ' ' || c == '\t';
}
bool IsPathSeparator(char c) {
  return c == '/' || c == '\\';
}

// A letter for ProperCase: ASCII letters and every byte of a non-ASCII character.
bool IsWordLetter(char c) {
  const auto byte = static_cast<unsigned char>(c);
  return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || byte >= 0x80;
}
bool IsDigitChar(char c) {
  return c >= '0' && c <= '9';
}

bool IsBlankPath(std::string_view path) {
  return std::all_of(path.begin(), path.end(), IsTrimBlank);
}

// Index of the last separator, or npos.
std::size_t LastSeparator(std::string_view path) {
  for (std::size_t i = path.size(); i-- > 0;) {
    if (IsPathSeparator(path[i])) return i;
  }
  return std::string_view::npos;
}

}  // namespace

std::string ToUpperAscii(std::string_view text) {
  std::string out(text);
  std::transform(out.begin(), out.end(), out.begin(), UpperAscii);
  return out;
}

std::string ToLowerAscii(std::string_view text) {
  std::string out(text);
  std::transform(out.begin(), out.end(), out.begin(), LowerAscii);
  return out;
}

std::string TrimText(std::string_view text) {
  std::size_t first = 0, last = text.size();
  while (first < last && IsTrimBlank(text[first])) ++first;
  while (last > first && IsTrimBlank(text[last - 1])) --last;
  return std::string(text.substr(first, last - first));
}

bool EqualsNoCase(std::string_view a, std::string_view b) {
  return a.size() == b.size() && std::equal(a.begin(), a.end(), b.begin(), [](char x, char y) {
           return UpperAscii(x) == UpperAscii(y);
         });
}

bool StartsWithNoCase(std::string_view text, std::string_view prefix) {
  return text.size() >= prefix.size() && EqualsNoCase(text.substr(0, prefix.size()), prefix);
}

bool EndsWithNoCase(std::string_view text, std::string_view suffix) {
  return text.size() >= suffix.size() &&
         EqualsNoCase(text.substr(text.size() - suffix.size()), suffix);
}

std::string ProperCase(std::string_view text) {
  std::string out = ToLowerAscii(text);
  bool startsWord = true;
  for (char& c : out) {
    if (startsWord) c = UpperAscii(c);
    startsWord = !IsWordLetter(c) && !IsDigitChar(c);
  }
  return out;
}

std::string FolderOf(std::string_view path) {
  if (IsBlankPath(path)) return {};
  const std::size_t separator = LastSeparator(path);
  return separator == std::string_view::npos ? std::string()
                                             : std::string(path.substr(0, separator + 1));
}

std::string FileNameOf(std::string_view path) {
  if (IsBlankPath(path)) return {};
  const std::size_t separator = LastSeparator(path);
  return std::string(separator == std::string_view::npos ? path : path.substr(separator + 1));
}

std::string PathWithoutExtension(std::string_view path) {
  if (IsBlankPath(path)) return {};
  const std::size_t separator = LastSeparator(path);
  const std::size_t nameStart = separator == std::string_view::npos ? 0 : separator + 1;
  const std::size_t point = path.rfind('.');
  if (point == std::string_view::npos || point <= nameStart) return std::string(path);
  return std::string(path.substr(0, point));
}

}  // namespace zemtra
