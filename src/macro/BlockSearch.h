#pragma once
// Finding a block in a program text: the target of a GOTO, the END of a WHILE loop, the N block
// of M97, M99 P and a lathe contour, the O or ":" line of a subprogram in the main text.
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace zemtra {

class ProgramText;

// Where FindBlock looks, relative to `position`, and which hit it takes.
enum class SearchMode : int {
  kBeforeFirst = 0,  // lines that start before the position, first hit
  kAfterFirst = 1,   // lines from the position to the end, first hit
  kBeforeLast = 2,   // lines that start before the position, last hit
  kAfterLast = 3,    // lines from the position to the end, last hit
};

// `program` of FindBlock when the search may cross O programs.
constexpr std::int32_t kAnyProgram = -1;

// A line as the block search compares it: upper case, blanks, control characters and comments
// out (as the block reader drops them), the block number and any "/" kept, and the leading zeros
// of every number dropped ("N0010" gives "N10", "X0.5" stays). A line that begins with ";" or
// "&" gives "". `result`'s storage is reused.
void CleanSearchLine(std::string_view line, std::string& result);

// Searches `text` for the line holding `target` (compared without regard to case) in the part
// that `mode` names. Only lines of O program `program` count (kAnyProgram for all): the search
// starts in that program and follows the O and ":" lines it passes. In an O or ":" line the
// target must stand at column 1; in any other line anywhere. The character behind it must be
// neither a digit nor ".", so "N12" does not find "N123". Returns the byte offset where the
// found line starts, or nothing (always nothing for an empty target, for kBeforeFirst from 0 and
// for kAfterFirst from beyond the end).
std::optional<std::size_t> FindBlock(const ProgramText& text, std::string_view target,
                                     SearchMode mode, std::size_t position, std::int32_t program);

// Forward from `position` to the end, then from the start up to it: the search of M97, M99 P,
// M98 H and lathe contours.
std::optional<std::size_t> FindBlockAround(const ProgramText& text, std::string_view target,
                                           std::size_t position, std::int32_t program);

// The target of a block number for the call searches: "N" and the number formatted "#####0".
std::string BlockNumberTarget(double number);

}  // namespace zemtra
