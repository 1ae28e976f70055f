#pragma once
// Points, distances and angles per machining plane. Points are stored as 32-bit floats; every
// calculation here is 64-bit and narrowed only when a result is stored in a GeoPoint.
//
// Plane bytes: 17 (first axis X, second Y, normal Z), 18 (Z, X, normal Y), 19 (Y, Z, normal X);
// 0 counts as 17. Angles run from the first in-plane axis towards the second, in radians unless a
// name says degrees.
#include <cstdint>

#include "core/GeoTypes.h"

namespace zemtra {

// Tolerance of the "point lies on" tests, in machine units.
inline constexpr double GeomTolerance = 0.0002;

inline constexpr double kPi = 3.14159265358979;
inline constexpr double kTwoPi = 6.28318530717959;
inline constexpr double kHalfPi = 1.5707963267949;
inline constexpr double kThreeHalfPi = 4.71238898038469;
inline constexpr double kDegree = 0.0174532925199433;  // radians per degree

// A straight move: the form the line operations work on.
struct LineRec {
  GeoPoint Start;
  GeoPoint End;
  std::uint8_t Plane = 17;
};

// A circular move. Direction 2 is clockwise, 3 counter-clockwise. Radius is in machine units; it
// is signed only before ArcCenterFromRadius has chosen the centre.
struct ArcRec {
  GeoPoint Start;
  GeoPoint End;
  GeoPoint Center;
  double Radius = 0;
  std::int16_t Direction = 2;
  std::uint8_t Plane = 17;
};

// A point seen in a plane: its first and second in-plane coordinates and the normal one.
struct PlaneCoords {
  double First = 0;
  double Second = 0;
  double Normal = 0;
};

// True for 0, 17, 18 and 19.
bool IsKnownPlane(int plane);
// The point's coordinates in `plane`; all zero for an unknown plane.
PlaneCoords ToPlane(const GeoPoint& point, int plane);
// Stores the two in-plane coordinates into `point`, leaving its other axes; no-op for an unknown
// plane.
void SetInPlane(GeoPoint& point, int plane, double first, double second);
// Stores the normal coordinate into `point`; no-op for an unknown plane.
void SetNormal(GeoPoint& point, int plane, double normal);

// Plain copies between the table record and the line and arc forms. An arc taken from a helix
// gets its radius from centre and start, since a helix record holds turns.
LineRec LineFromEntity(const GeoEntity& entity);
ArcRec ArcFromEntity(const GeoEntity& entity);
GeoEntity EntityFromArc(const ArcRec& arc);
// A feed line (code 1) from `line`.
GeoEntity EntityFromLine(const LineRec& line);

// 3-D distance over X, Y, Z.
double Dist3(const GeoPoint& a, const GeoPoint& b);
// Distance over the two in-plane axes; 0 for an unknown plane.
double DistPlane(const GeoPoint& a, const GeoPoint& b, int plane);
inline double PlaneDistance(const GeoPoint& a, const GeoPoint& b, int plane) {
  return DistPlane(a, b, plane);
}

// Direction from `center` to `point` in [0, 2 pi); 0 when the points coincide in the plane.
double AngleTo(const GeoPoint& center, const GeoPoint& point, int plane);
inline double PlaneAngle(const GeoPoint& center, const GeoPoint& point, int plane) {
  return AngleTo(center, point, plane);
}
// Direction of travel of a line or of the chord of an arc, in [0, 2 pi).
double EntityAngle(const GeoEntity& entity);
double EntityAngle(const LineRec& line);

// Arc cosine in radians for x in (-1, 1]; -1 and values beyond are not guarded (pi and NaN).
double Arccos(double x);
// Turn in degrees, in [0, 360), from the direction p1->p0 to the direction p1->p2. Above 180 the
// path p0, p1, p2 turns left, below it turns right.
double AngleDegrees(const GeoPoint& p0, const GeoPoint& p1, const GeoPoint& p2, int plane);
// True when the path p0, p1, p2 goes straight on or turns left (AngleDegrees >= 179.999).
bool IsTurnFlat(const GeoPoint& p0, const GeoPoint& p1, const GeoPoint& p2, int plane);
// Direction code of `point` from `center`: 0 +first axis, 1 first quadrant, 2 +second axis, 3,
// 4 -first axis, 5, 6 -second axis, 7. Even codes are exactly on an axis.
int Octant(const GeoPoint& center, const GeoPoint& point, int plane);

// Turns `point` about `center` in X and Y by `angleDegrees` (counter-clockwise positive); Z and A
// are copied.
GeoPoint RotatePoint(const GeoPoint& point, const GeoPoint& center, double angleDegrees);
// (point - center) * factor + center on X, Y, Z; A becomes 0.
GeoPoint ScalePoint(const GeoPoint& point, const GeoPoint& center, double factor);

}  // namespace zemtra
