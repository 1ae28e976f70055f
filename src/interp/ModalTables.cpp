#include "interp/ModalTables.h"

namespace zemtra {

namespace {

// A run of G-codes that share a group in each dialect.
struct GroupRange {
  int first, last;
  std::uint8_t mill, latheA, latheB;
};

constexpr GroupRange kGroupRanges[] = {
    {0, 3, 1, 1, 1},      {15, 16, 18, 0, 0},   {17, 19, 2, 2, 2},    {20, 21, 6, 6, 6},
    {40, 42, 7, 7, 7},    {43, 44, 8, 8, 8},    {49, 49, 8, 8, 8},    {50, 51, 11, 0, 0},
    {54, 59, 12, 12, 12}, {61, 64, 13, 13, 13}, {66, 67, 14, 14, 14}, {68, 69, 16, 0, 0},
    {70, 89, 9, 9, 9},    {90, 90, 3, 9, 3},    {91, 91, 3, 0, 3},    {92, 92, 0, 9, 0},
    {94, 94, 5, 9, 5},    {95, 95, 5, 0, 5},    {96, 97, 0, 17, 17},  {98, 99, 10, 5, 10},
};

constexpr GroupTable MakeGroupTable(Dialect dialect) {
  GroupTable table{};
  for (const GroupRange& range : kGroupRanges) {
    const std::uint8_t group = dialect == Dialect::Mill     ? range.mill
                               : dialect == Dialect::LatheA ? range.latheA
                                                            : range.latheB;
    for (int code = range.first; code <= range.last; ++code) table[code] = group;
  }
  return table;
}

constexpr GroupTable kMillGroups = MakeGroupTable(Dialect::Mill);
constexpr GroupTable kLatheAGroups = MakeGroupTable(Dialect::LatheA);
constexpr GroupTable kLatheBGroups = MakeGroupTable(Dialect::LatheB);

using StartValues = std::array<float, kModalGroupCount>;
// clang-format off
// Group:                           0  1  2   3   4  5   6   7   8   9   10  11  12  13 14  15 16  17  18  19     20
constexpr StartValues kMillStart = {0, 0, 17, 90, 0, 94, 20, 40, 49, 80, 98, 50, 54, 0, 67, 0, 69, 0,  15, 50.1f, 0};
constexpr StartValues kLatheAStart = {0, 0, 18, 90, 0, 98, 20, 40, 49, 80, 98, 50, 54, 0, 67, 0, 0, 97, 0, 0, 0};
constexpr StartValues kLatheBStart = {0, 0, 18, 90, 0, 94, 20, 40, 49, 80, 98, 50, 54, 0, 67, 0, 0, 97, 0, 0, 0};
// clang-format on

// Names of the modal report. nullptr in a lathe column means "as on the mill"; "" means the
// dialect has no name for the code.
struct CodeName {
  float code;
  const char* mill;
  const char* latheA;
  const char* latheB;
};

constexpr const char* kSame = nullptr;

constexpr CodeName kCodeNames[] = {
    {0, "Rapid Move", kSame, kSame},
    {1, "Linear Interpolation", kSame, kSame},
    {2, "Clockwise Arc Interpolation", kSame, kSame},
    {3, "Counterclockwise Arc Interpolation", kSame, kSame},
    {4, "Dwell", kSame, kSame},
    {9, "Exact Stop Check", kSame, kSame},
    {10, "Program Offset Input", kSame, kSame},
    {11, "Program Offset Input Cancel", kSame, kSame},
    {12, "Clockwise Circle Cutting", "", ""},
    {13, "Counterclockwise Circle Cutting", "", ""},
    {15, "Polar Coordinate System Off", "", ""},
    {16, "Polar Coordinate System Command", "", ""},
    {17, "XY Plane Selection", kSame, kSame},
    {18, "ZX Plane Selection", kSame, kSame},
    {19, "YZ Plane Selection", kSame, kSame},
    {20, "Inch Mode", kSame, kSame},
    {21, "Millimeter Mode", kSame, kSame},
    {28, "Reference Point Return", kSame, kSame},
    {34, "Bolt Circle Cycle", "", ""},
    {35, "Line at Angle Cycle", "", ""},
    {36, "Holes on Arc Cycle", "", ""},
    {37.1f, "Grid Pattern Cycle", "", ""},
    {40, "Cutter Radius Comp Cancel", kSame, kSame},
    {41, "Cutter Radius Comp Left", kSame, kSame},
    {42, "Cutter Radius Comp Right", kSame, kSame},
    {43, "Tool Length Offset +", kSame, kSame},
    {44, "Tool Length Offset -", kSame, kSame},
    {49, "Tool Length Offset Cancel", kSame, kSame},
    {50, "Coordinate System Scaling Off", "Coordinate System/Clamp RPM Set", "Spindle RPM clamp"},
    {50.1f, "Mirror Image Off", "", ""},
    {51, "Coordinate System Scaling On", "", ""},
    {51.1f, "Mirror Image On", "", ""},
    {52, "Local Coordinate System Set", kSame, kSame},
    {53, "Position Relative to Machine Coordinates", kSame, kSame},
    {54, "Work Offset 1", kSame, kSame},
    {54.1f, "Extended Work Offset", kSame, kSame},
    {55, "Work Offset 2", kSame, kSame},
    {56, "Work Offset 3", kSame, kSame},
    {57, "Work Offset 4", kSame, kSame},
    {58, "Work Offset 5", kSame, kSame},
    {59, "Work Offset 6", kSame, kSame},
    {65, "Macro Program Call", kSame, kSame},
    {66, "Macro Program Modal Call 1", kSame, kSame},
    {66.1f, "Macro Program Modal Call 2", kSame, kSame},
    {67, "Macro Program Modal Call Cancel", kSame, kSame},
    {68, "Coordinate System Rotation", "", ""},
    {69, "Coordinate System Rotation Cancel", "", ""},
    {80, "Canned Cycle Cancel", kSame, kSame},
    {90, "Absolute Coordinates", "Turning Cycle", kSame},
    {91, "Incremental Coordinates", "", kSame},
    {92, "Coordinate System Set", "Thread Cutting Cycle", "Coordinate System/Clamp RPM Set"},
    {94, "Feed per Minute Mode", "Facing Cycle", kSame},
    {95, "Feed per Revolution Mode", "", kSame},
    {96, "", "Spindle CSS Mode", "Spindle CSS Mode"},
    {97, "", "Spindle RPM Mode", "Spindle RPM Mode"},
    {98, "Canned Cycle Initial Point Return", "Feed per Minute Mode", kSame},
    {99, "Canned Cycle R Point Return", "Feed per Revolution Mode", kSame},
};

constexpr std::string_view kCycleActive = "Canned Cycle Active";

bool IsCannedCycleCode(float code) {
  return (code >= 70 && code <= 89 && code != 80) &&
         code == static_cast<float>(static_cast<int>(code));
}

}  // namespace

Dialect DialectOf(int machineType, int latheGCodeFormat) {
  if (machineType != 1) return Dialect::Mill;
  return latheGCodeFormat == 1 ? Dialect::LatheB : Dialect::LatheA;
}

const GroupTable& BaseGroupTable(Dialect dialect) {
  switch (dialect) {
    case Dialect::LatheA:
      return kLatheAGroups;
    case Dialect::LatheB:
      return kLatheBGroups;
    case Dialect::Mill:
      break;
  }
  return kMillGroups;
}

const std::array<float, kModalGroupCount>& ModalStartValues(Dialect dialect) {
  switch (dialect) {
    case Dialect::LatheA:
      return kLatheAStart;
    case Dialect::LatheB:
      return kLatheBStart;
    case Dialect::Mill:
      break;
  }
  return kMillStart;
}

std::string_view GCodeName(float code, int machineType, int latheFormat) {
  if (machineType == 1 && latheFormat != 0 && latheFormat != 1) return {};
  if (IsCannedCycleCode(code)) return kCycleActive;
  const Dialect dialect = DialectOf(machineType, latheFormat);
  for (const CodeName& entry : kCodeNames) {
    if (entry.code != code) continue;
    const char* name = dialect == Dialect::Mill     ? entry.mill
                       : dialect == Dialect::LatheA ? entry.latheA
                                                    : entry.latheB;
    return name ? name : entry.mill;
  }
  return {};
}

}  // namespace zemtra
