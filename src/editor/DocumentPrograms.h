#pragma once
// One file can hold several programs, each beginning at a line whose first character is "O"
// (any case) or ":". These list them and split them into files of their own.
#include <string>
#include <string_view>

#include "editor/TextEncoding.h"

namespace zemtra {

class Host;

// True when `line` begins a program.
bool IsProgramStart(std::string_view line);

// The text of "Programs in active file": a heading, then one row per program: its number
// right-aligned in 10 places, its size in characters (line ends not counted) in 7, two blanks
// and the comment of its first line.
std::string ProgramsListing(std::string_view text);

// Writes each program of `text` to "<folder>/O<number>.TXT" (the first number of its first
// line), starting with "%" and the line, and ending each file but the last with "%". Lines
// before the first program are left out. Files are written in `encoding` with CR LF line ends.
// Returns the number of files written; a failure shows "Error in SaveSeparate!" and stops.
int SaveSeparatePrograms(std::string_view text, const std::string& folder, TextEncoding encoding,
                         Host& host);

}  // namespace zemtra
