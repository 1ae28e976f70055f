#pragma once
// Renumbering: new sequence numbers for the blocks of a program, or none, with every reference
// to a number (GOTO, the P of M99 and M97, the H or P of M98, the P and Q of the lathe cycles
// G70 to G73) pointing at the same block afterwards.
#include <cstdint>
#include <string>
#include <string_view>

#include "config/MachineConfig.h"
#include "core/Host.h"
#include "editor/FormatProgram.h"

namespace zemtra {

struct RenumberOptions {
  std::int32_t Start = 10;      // first number; 0 counts as 1
  std::int32_t Increment = 10;  // 0 counts as 1
  int MaxDigits = 5;            // 2 to 6; numbers start again at Start when they reach 10^MaxDigits
  int Mode = 1;                 // 0 remove numbers, 1 all, 2 all but blank lines, 3 referenced only
  bool AddSpace = true;         // a blank behind each new number
};

// Renumbers `text` (lines ended by CR LF or LF) in three passes: references, numbers,
// references rewritten. Progress and cancel through `host`; a cancelled run returns no text.
FilterResult RenumberProgram(std::string_view text, const RenumberOptions& options,
                             const MachineConfig& config, Host& host);

// The value text of the first `letter` word outside comments, or "".
std::string GetAddressValue(std::string_view line, char letter);
// Replaces the value of the first `letter` word outside comments and right-trims the line; a
// line with a blank in it gets a blank behind the new value. The line is unchanged when it has
// no such word.
std::string SetAddressValue(std::string_view line, char letter, std::string_view newValue);

}  // namespace zemtra
