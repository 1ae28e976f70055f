#pragma once
// Axis access of a GeoPoint by number: 0 X, 1 Y, 2 Z, 3 the rotary axis A.
#include <bit>
#include <cstdint>

#include "core/GeoTypes.h"

namespace zemtra {

inline float& AxisRef(GeoPoint& point, int axis) {
  switch (axis) {
    case 0:
      return point.X;
    case 1:
      return point.Y;
    case 2:
      return point.Z;
    default:
      return point.A;
  }
}

inline float AxisValue(const GeoPoint& point, int axis) {
  switch (axis) {
    case 0:
      return point.X;
    case 1:
      return point.Y;
    case 2:
      return point.Z;
    default:
      return point.A;
  }
}

// The value a 32-bit float reads back as from its 7-significant-digit text, which is how
// variables hold coordinates and modal codes (0.1f reads back as 0.1, not 0.100000001490116).
double CoordinateReadBack(float value);

// CoordinateReadBack of the value last asked for, kept: an axis that did not move costs nothing.
class CoordinateReadBackCache {
 public:
  double Get(float value) {
    const std::uint32_t bits = std::bit_cast<std::uint32_t>(value);
    if (bits != bits_) {
      bits_ = bits;
      value_ = CoordinateReadBack(value);
    }
    return value_;
  }

 private:
  std::uint32_t bits_ = 0x7FC00001u;  // a NaN no coordinate holds
  double value_ = 0;
};

}  // namespace zemtra
