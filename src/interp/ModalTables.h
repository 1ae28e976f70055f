#pragma once
// The fixed vocabulary of the interpreter: which modal group each G-code belongs to, the
// start-up value of every group, and the names of the codes, for the three dialects
// (mill, lathe format A, lathe format B).
#include <array>
#include <cstdint>
#include <string_view>

namespace zemtra {

inline constexpr int kModalGroupCount = 21;  // groups 0 to 20

enum class Dialect : std::uint8_t { Mill, LatheA, LatheB };

// Group of every integer G-code 0 to 99; 0 for a code no group holds.
using GroupTable = std::array<std::uint8_t, 100>;

// The dialect of a machine type (0 mill, 1 lathe) and lathe G-code format (0 A, 1 B).
Dialect DialectOf(int machineType, int latheGCodeFormat);

// The built-in group table of a dialect (before external macro codes are taken out).
const GroupTable& BaseGroupTable(Dialect dialect);

// Start value of each modal group before the Initial State is applied.
const std::array<float, kModalGroupCount>& ModalStartValues(Dialect dialect);

// Name of a G-code in the modal report; "" when the dialect does not name it. `code` is
// compared as a 32-bit float, so 54.1 means the float nearest to 54.1. `latheFormat` other
// than 0 or 1 on a lathe names nothing.
std::string_view GCodeName(float code, int machineType, int latheFormat);

}  // namespace zemtra
