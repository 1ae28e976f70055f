#include "editor/TextEncoding.h"

#include <cstdint>

namespace zemtra {

namespace {

inline unsigned char Byte(std::string_view text, std::size_t i) {
  return static_cast<unsigned char>(text[i]);
}

inline bool IsContinuation(unsigned char byte) {
  return (byte & 0xC0) == 0x80;
}

// Length of the well-formed UTF-8 character at `i`, or 0 when it is not one.
std::size_t Utf8CharLength(std::string_view text, std::size_t i) {
  const unsigned char lead = Byte(text, i);
  if (lead < 0x80) return 1;
  std::size_t length;
  unsigned char low = 0x80, high = 0xBF;  // allowed range of the second byte
  if (lead >= 0xC2 && lead <= 0xDF) {
    length = 2;
  } else if (lead >= 0xE0 && lead <= 0xEF) {
    length = 3;
    if (lead == 0xE0) low = 0xA0;   // overlong
    if (lead == 0xED) high = 0x9F;  // surrogates
  } else if (lead >= 0xF0 && lead <= 0xF4) {
    length = 4;
    if (lead == 0xF0) low = 0x90;   // overlong
    if (lead == 0xF4) high = 0x8F;  // past U+10FFFF
  } else {
    return 0;
  }
  if (i + length > text.size()) return 0;
  const unsigned char second = Byte(text, i + 1);
  if (second < low || second > high) return 0;
  for (std::size_t k = 2; k < length; ++k) {
    if (!IsContinuation(Byte(text, i + k))) return 0;
  }
  return length;
}

// Length of the character starting at `i` for offset counting; never 0, never past the end.
std::size_t StepLength(std::string_view text, std::size_t i) {
  const unsigned char lead = Byte(text, i);
  std::size_t length = lead < 0x80 ? 1 : lead >= 0xF0 ? 4 : lead >= 0xE0 ? 3 : lead >= 0xC0 ? 2 : 1;
  if (i + length > text.size()) length = text.size() - i;
  return length;
}

}  // namespace

bool IsAsciiText(std::string_view text) {
  // Eight bytes at a time: the common case is a long ASCII text.
  std::size_t i = 0;
  for (; i + 8 <= text.size(); i += 8) {
    std::uint64_t word = 0;
    for (int k = 0; k < 8; ++k) word |= static_cast<std::uint64_t>(Byte(text, i + k)) << (8 * k);
    if (word & 0x8080808080808080ULL) return false;
  }
  for (; i < text.size(); ++i) {
    if (Byte(text, i) >= 0x80) return false;
  }
  return true;
}

bool IsValidUtf8(std::string_view bytes) {
  std::size_t i = 0;
  while (i < bytes.size()) {
    if (Byte(bytes, i) < 0x80) {
      ++i;
      continue;
    }
    const std::size_t length = Utf8CharLength(bytes, i);
    if (length == 0) return false;
    i += length;
  }
  return true;
}

std::string DecodeProgramBytes(std::string_view bytes, TextEncoding& encoding) {
  if (IsValidUtf8(bytes)) {
    encoding = TextEncoding::Utf8;
    return std::string(bytes);
  }
  encoding = TextEncoding::Latin1;
  std::string text;
  text.reserve(bytes.size() + bytes.size() / 8);
  for (const char c : bytes) {
    const auto byte = static_cast<unsigned char>(c);
    if (byte < 0x80) {
      text += c;
    } else {
      text += static_cast<char>(0xC0 | (byte >> 6));
      text += static_cast<char>(0x80 | (byte & 0x3F));
    }
  }
  return text;
}

std::string EncodeProgramText(std::string_view text, TextEncoding& encoding) {
  if (encoding == TextEncoding::Utf8 || IsAsciiText(text)) return std::string(text);
  std::string bytes;
  bytes.reserve(text.size());
  for (std::size_t i = 0; i < text.size(); ++i) {
    const unsigned char lead = Byte(text, i);
    if (lead < 0x80) {
      bytes += static_cast<char>(lead);
    } else if ((lead == 0xC2 || lead == 0xC3) && i + 1 < text.size() &&
               IsContinuation(Byte(text, i + 1))) {
      bytes += static_cast<char>(((lead & 0x03) << 6) | (Byte(text, i + 1) & 0x3F));
      ++i;
    } else {
      // A character Latin-1 cannot hold: keep the document whole in UTF-8 instead.
      encoding = TextEncoding::Utf8;
      return std::string(text);
    }
  }
  return bytes;
}

std::size_t Utf16OffsetOf(std::string_view text, std::size_t byteOffset) {
  if (byteOffset > text.size()) byteOffset = text.size();
  std::size_t units = 0;
  std::size_t i = 0;
  while (i < byteOffset) {
    const std::size_t length = StepLength(text, i);
    if (i + length > byteOffset) break;  // inside a character: count its start
    units += length == 4 ? 2 : 1;
    i += length;
  }
  return units;
}

std::size_t ByteOffsetOf(std::string_view text, std::size_t utf16Offset) {
  std::size_t units = 0;
  std::size_t i = 0;
  while (i < text.size()) {
    const std::size_t length = StepLength(text, i);
    const std::size_t width = length == 4 ? 2 : 1;
    if (units + width > utf16Offset) break;
    units += width;
    i += length;
  }
  return i;
}

}  // namespace zemtra
