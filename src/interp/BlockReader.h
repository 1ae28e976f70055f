#pragma once
// The first step of reading a block: the raw line stripped to the text that counts.
#include <cstdint>
#include <string>
#include <string_view>

namespace zemtra {

// Upper-cases `line` and drops blanks and control characters and comments "( )", a leading
// "[ ]" comment, a leading block number (stored in `blockNumber`) and a leading "/" (with
// `blockSkip` on the whole block is skipped). A leading ";" or "&" skips the block. The
// result goes into `result`, whose storage is reused; an empty result means "skip".
void CleanBlock(std::string_view line, bool blockSkip, std::string& result,
                std::int32_t& blockNumber);

// Letters whose values written without a decimal point count in units of the coordinate
// resolution (X10 is 0.001 at a resolution of 0.0001).
constexpr bool IsResolutionLetter(char letter) {
  switch (letter) {
    case 'X':
    case 'Y':
    case 'Z':
    case 'R':
    case 'I':
    case 'J':
    case 'K':
    case 'F':
    case 'Q':
      return true;
    default:
      return false;
  }
}

}  // namespace zemtra
