#include "geom/Arcs.h"

#include <algorithm>
#include <cmath>

namespace zemtra {

namespace {

// Sweep from angle a0 to angle a1 in the given direction; equal angles make a full circle.
double SweepBetween(double a0, double a1, bool clockwise) {
  if (a0 == a1) return kTwoPi;
  if (clockwise) return a0 > a1 ? a0 - a1 : kTwoPi - (a1 - a0);
  return a1 > a0 ? a1 - a0 : kTwoPi - (a0 - a1);
}

double SweepOfEnds(const GeoPoint& start, const GeoPoint& end, const GeoPoint& center,
                   bool clockwise, int plane) {
  return SweepBetween(AngleTo(center, start, plane), AngleTo(center, end, plane), clockwise);
}

void BoxOfEnds(const GeoPoint& a, const GeoPoint& b, GeoPoint& low, GeoPoint& high) {
  low = {std::min(a.X, b.X), std::min(a.Y, b.Y), std::min(a.Z, b.Z), std::min(a.A, b.A)};
  high = {std::max(a.X, b.X), std::max(a.Y, b.Y), std::max(a.Z, b.Z), std::max(a.A, b.A)};
}

// Widens the box on one in-plane axis direction: 0 +first, 1 +second, 2 -first, 3 -second.
void WidenToAxis(int axis, const ArcRec& arc, GeoPoint& low, GeoPoint& high) {
  const PlaneCoords c = ToPlane(arc.Center, arc.Plane);
  const double r = std::fabs(arc.Radius);
  PlaneCoords lo = ToPlane(low, arc.Plane);
  PlaneCoords hi = ToPlane(high, arc.Plane);
  switch (axis) {
    case 0:
      hi.First = std::max(hi.First, c.First + r);
      break;
    case 1:
      hi.Second = std::max(hi.Second, c.Second + r);
      break;
    case 2:
      lo.First = std::min(lo.First, c.First - r);
      break;
    default:
      lo.Second = std::min(lo.Second, c.Second - r);
      break;
  }
  SetInPlane(low, arc.Plane, lo.First, lo.Second);
  SetInPlane(high, arc.Plane, hi.First, hi.Second);
}

}  // namespace

GeoPoint PointOnCircle(const ArcRec& arc, double angle) {
  if (!IsKnownPlane(arc.Plane)) return {};
  const PlaneCoords c = ToPlane(arc.Center, arc.Plane);
  GeoPoint point = arc.Center;
  SetInPlane(point, arc.Plane, c.First + arc.Radius * std::cos(angle),
             c.Second + arc.Radius * std::sin(angle));
  return point;
}

void ArcEndsFromAngles(double startDegrees, double endDegrees, ArcRec& arc) {
  const double cx = arc.Center.X;
  const double cy = arc.Center.Y;
  const double r = arc.Radius;
  arc.Start.X = static_cast<float>(cx + r * std::cos(startDegrees * kDegree));
  arc.Start.Y = static_cast<float>(cy + r * std::sin(startDegrees * kDegree));
  arc.End.X = static_cast<float>(cx + r * std::cos(endDegrees * kDegree));
  arc.End.Y = static_cast<float>(cy + r * std::sin(endDegrees * kDegree));
}

double ArcSweep(const ArcRec& arc) {
  return SweepOfEnds(arc.Start, arc.End, arc.Center, arc.Direction == kArcCW, arc.Plane);
}

double ArcSweep(const GeoEntity& entity) {
  const int code = entity.EntityType;
  if (code != kArcCW && code != kArcCCW && code != kHelixCW && code != kHelixCCW) return 0;
  const bool clockwise = code % 10 == kArcCW;
  const double sweep =
      SweepOfEnds(entity.StartPoint, entity.EndPoint, entity.CenterPoint, clockwise, entity.Plane);
  const double turns = entity.RadiusOrTurns;
  if (!IsHelixCode(code) || !(turns > 0)) return sweep;
  // A helix whose ends already close the circle has its first turn in the sweep.
  const double extraTurns = sweep == kTwoPi ? turns - 1 : turns;
  return extraTurns * kTwoPi + sweep;
}

double ArcLength(const ArcRec& arc) {
  return ArcSweep(arc) * std::fabs(arc.Radius);
}

void SweepExtents(const ArcRec& arc, double sweep, GeoPoint& low, GeoPoint& high) {
  BoxOfEnds(arc.Start, arc.End, low, high);
  if (!IsKnownPlane(arc.Plane)) return;
  const double a0 = AngleTo(arc.Center, arc.Start, arc.Plane);
  const bool clockwise = arc.Direction % 10 == kArcCW;
  constexpr double kAxisAngles[4] = {0, kHalfPi, kPi, kThreeHalfPi};
  for (int axis = 0; axis < 4; ++axis) {
    double delta = clockwise ? a0 - kAxisAngles[axis] : kAxisAngles[axis] - a0;
    if (delta < 0) delta += kTwoPi;
    if (sweep >= kTwoPi || (delta > 0 && delta < sweep)) WidenToAxis(axis, arc, low, high);
  }
}

void ArcExtents(const ArcRec& arc, GeoPoint& low, GeoPoint& high) {
  if (!(arc.Start == arc.End)) {
    SweepExtents(arc, ArcSweep(arc), low, high);
    return;
  }
  low = high = arc.Start;
  if (!IsKnownPlane(arc.Plane)) return;
  const PlaneCoords c = ToPlane(arc.Center, arc.Plane);
  const double r = std::fabs(arc.Radius);
  SetInPlane(low, arc.Plane, c.First - r, c.Second - r);
  SetInPlane(high, arc.Plane, c.First + r, c.Second + r);
}

GeoPoint CenterFromRadius(const GeoPoint& start, const GeoPoint& end, double signedRadius,
                          int direction, int plane) {
  const double h = DistPlane(start, end, plane) / 2;
  if (h == 0) return start;
  const double r = std::fabs(signedRadius);
  const double b = std::sqrt(std::fabs(r * r - h * h));  // centre's distance from the chord
  const double a = std::fabs(std::atan(b / h)) - AngleTo(start, end, plane);
  const bool minorSide =
      (signedRadius > 0 && direction == kArcCW) || (signedRadius < 0 && direction == kArcCCW);
  GeoPoint center = start;
  if (minorSide) {
    const PlaneCoords s = ToPlane(start, plane);
    SetInPlane(center, plane, s.First + r * std::cos(a), s.Second - r * std::sin(a));
  } else {
    const PlaneCoords e = ToPlane(end, plane);
    SetInPlane(center, plane, e.First - r * std::cos(a), e.Second + r * std::sin(a));
  }
  return center;
}

void ArcCenterFromRadius(ArcRec& arc) {
  if (DistPlane(arc.Start, arc.End, arc.Plane) == 0) {
    arc.Center = arc.Start;
    return;
  }
  const GeoPoint center =
      CenterFromRadius(arc.Start, arc.End, arc.Radius, arc.Direction, arc.Plane);
  const PlaneCoords c = ToPlane(center, arc.Plane);
  SetInPlane(arc.Center, arc.Plane, c.First, c.Second);
  arc.Radius = std::fabs(arc.Radius);
}

}  // namespace zemtra
