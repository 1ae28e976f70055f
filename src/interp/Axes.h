#pragma once
// Axis access of a GeoPoint by number: 0 X, 1 Y, 2 Z, 3 the rotary axis A.

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
  return AxisRef(const_cast<GeoPoint&>(point), axis);
}

// The value a 32-bit float reads back as from its 7-significant-digit text, which is how
// variables hold coordinates and modal codes (0.1f reads back as 0.1, not 0.100000001490116).
double CoordinateReadBack(float value);

}  // namespace zemtra
