#pragma once
// Points and records of the geometry table. Coordinates are 32-bit floats (machine units);
// arithmetic elsewhere is 64-bit and narrowed when stored here.
#include <cstdint>

namespace zemtra {

struct GeoPoint {
  float X = 0, Y = 0, Z = 0, A = 0;
  friend bool operator==(const GeoPoint&, const GeoPoint&) = default;
};
static_assert(sizeof(GeoPoint) == 16);

// Motion codes held in GeoEntity::EntityType. A helix is an arc code plus 10.
enum EntityCode : std::uint8_t {
  kRapid = 0,
  kFeed = 1,
  kArcCW = 2,
  kArcCCW = 3,
  kPoint = 4,  // a drawing's point (DXF), never made by the interpreter
  kHelixCW = 12,
  kHelixCCW = 13,
};

inline bool IsLineCode(int code) { return code == kRapid || code == kFeed; }
inline bool IsHelixCode(int code) { return code >= 10; }

// Plane byte: 17 XY, 18 ZX, 19 YZ; 0 counts as 17.
inline int NormalPlane(int plane) { return plane == 0 ? 17 : plane; }

// One record of the geometry table: exactly 84 bytes, copied byte for byte. The explicit pad
// bytes keep every field at its natural alignment, so no packing is needed.
struct GeoEntity {
  std::uint8_t EntityType = 0;
  std::uint8_t Pad1[3] = {0, 0, 0};
  GeoPoint StartPoint;
  GeoPoint EndPoint;
  GeoPoint CenterPoint;
  float RadiusOrTurns = 0;  // arcs: radius > 0; helixes: turns, or -1 when none given
  std::uint8_t Plane = 0;
  std::uint8_t Pad2[3] = {0, 0, 0};
  std::int32_t LineNumber = 0;  // 1-based line of the main program
  std::uint8_t ColorIndex = 0;
  std::uint8_t Selected = 0;
  std::uint8_t Pad3[2] = {0, 0};
  GeoPoint WorkOffset;
};
static_assert(sizeof(GeoEntity) == 84, "GeoEntity is a fixed 84-byte record");
static_assert(alignof(GeoEntity) == 4);

}  // namespace zemtra
