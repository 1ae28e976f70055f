#pragma once
// Program files on disk: reading one into editor text without loss, and writing text back
// safely (a temporary file beside the target, then a rename, so a failed save leaves the old
// file as it was).
#include <filesystem>
#include <functional>
#include <string>
#include <string_view>

#include "editor/TextEncoding.h"

namespace zemtra {

// Why a file operation failed: the system's error number (0 when there is none) and its text.
struct FileError {
  int code = 0;
  std::string text;
};

// A program file as the editor takes it in.
struct ProgramFileText {
  std::string text;  // UTF-8, every line end CR LF
  TextEncoding encoding = TextEncoding::Utf8;
  std::string eol = "\r\n";  // the file's own line end (GetEOLSequence)
  bool richText = false;     // the file was a rich text document; `text` is its plain text
};

// Reads `path` whole: a rich text document gives its plain text, any other file its bytes,
// decoded (DecodeProgramBytes) and with its line ends made CR LF. False, with `error`, when the
// file cannot be read.
// `between` runs between the steps (read, decode, line ends) so a window can serve its events.
bool ReadProgramFile(const std::filesystem::path& path, ProgramFileText& out, FileError& error,
                     const std::function<void()>& between = {});

// Reads the whole file as bytes. False, with `error`, when it cannot be read.
bool ReadFileBytes(const std::filesystem::path& path, std::string& bytes, FileError& error);

// Writes `bytes` as the whole content of `path` through a temporary file in the same folder,
// renamed over the target; an existing target keeps its permissions. On failure the target is
// untouched and the temporary file removed.
bool WriteFileAtomically(const std::filesystem::path& path, std::string_view bytes,
                         FileError& error);

// True when `path` exists and is marked read-only (no write permission for anyone) or this user
// may not write it.
bool IsReadOnlyFile(const std::filesystem::path& path);

// True when the error means the path or the file could not be reached or written (missing
// folder, no permission, read-only medium, file busy), as opposed to a failure while writing.
bool IsFileAccessError(const FileError& error);

// True when `bytes` are a rich text document ("{\rtf").
bool IsRichText(std::string_view bytes);
// The plain text of a rich text document: paragraphs become CR LF, "\tab" a tab, escaped and
// "\'hh" / "\uN" characters their characters (as UTF-8); destinations such as the font and
// colour tables are skipped.
std::string RichTextToPlain(std::string_view rtf);

// The text Insert File puts into the program for a file of `bytes`: decoded, CR CR LF taken
// as one line end, every line end CR LF, and a line end behind it.
std::string InsertFileText(std::string_view bytes);

}  // namespace zemtra
