#pragma once
// How the bytes of a program file become the editor's text and back. The editor holds UTF-8; a
// file that is not valid UTF-8 is read as Latin-1 (every byte one character) and written back
// in Latin-1, so every byte of it survives a load and a save.
#include <cstddef>
#include <string>
#include <string_view>

namespace zemtra {

enum class TextEncoding { Utf8, Latin1 };

// True when `bytes` is well-formed UTF-8 (no overlong forms, surrogates or values past U+10FFFF).
bool IsValidUtf8(std::string_view bytes);

// The file's bytes as editor text: unchanged when they are valid UTF-8, otherwise each byte
// becomes its Latin-1 character. `encoding` receives which of the two it was.
std::string DecodeProgramBytes(std::string_view bytes, TextEncoding& encoding);

// The editor text as file bytes in `encoding`. A Latin-1 document that has gained a character
// beyond U+00FF cannot be written so: it is written as UTF-8 and `encoding` becomes Utf8.
std::string EncodeProgramText(std::string_view text, TextEncoding& encoding);

// Offsets between the editor text (UTF-8 bytes) and the UTF-16 units of the same text in a Qt
// string, counted from the start of `text` (usually one line). Both clamp to the end of `text`;
// an offset inside a character counts as that character's start.
std::size_t Utf16OffsetOf(std::string_view text, std::size_t byteOffset);
std::size_t ByteOffsetOf(std::string_view text, std::size_t utf16Offset);

// True when every byte of `text` is ASCII, so that byte and UTF-16 offsets agree.
bool IsAsciiText(std::string_view text);

}  // namespace zemtra
