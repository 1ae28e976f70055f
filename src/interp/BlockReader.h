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

}  // namespace zemtra
