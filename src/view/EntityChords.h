#pragma once
// Entities reduced to the chords the viewport draws: feeds split by their rotary travel, rapids
// along the path of the configured rapid style, arcs and helixes flattened at a step that
// follows the zoom. The painter, the zoom-to-extents sweep and picking all walk these same
// chords, so what is seen is what is measured and hit.
//
// A sink receives machine points (not yet projected):
//   void MoveTo(const GeoPoint& p);   // starts a path at p
//   void LineTo(const GeoPoint& p);   // a chord from the previous point to p
#include <cmath>
#include <cstdlib>

#include "core/GeoTypes.h"
#include "geom/Primitives.h"
#include "view/DrawSettings.h"

namespace zemtra {

// Limits of the angular step of arc flattening, in radians, and the radius a zero one becomes.
struct ArcStepLimits {
  double Min;
  double Max;
  float ZeroRadius;
};
inline constexpr ArcStepLimits kPaintArcSteps{0.05, 0.26, 0.00001f};
inline constexpr ArcStepLimits kPickArcSteps{0.1, 0.26, 0.0001f};
inline constexpr double kMaxHelixChords = 1000000;

// One degree of arc per `scaleWidth` of radius, kept within the limits.
inline double ArcStep(double scaleWidth, double radius, const ArcStepLimits& limits) {
  double step = scaleWidth / radius * kDegree;
  if (step < limits.Min) step = limits.Min;
  if (step > limits.Max) step = limits.Max;
  return step;
}

// False for an entity the painters hide: a rapid with rapids off, or with plunges off a feed
// that only goes down in Z.
inline bool IsEntityShown(const GeoEntity& e, const DrawSwitches& switches) {
  if (e.EntityType == kRapid) return switches.ShowRapid;
  if (e.EntityType == kFeed && !switches.ShowPlunge) {
    const bool plunge = e.StartPoint.X == e.EndPoint.X && e.StartPoint.Y == e.EndPoint.Y &&
                        e.EndPoint.Z < e.StartPoint.Z;
    return !plunge;
  }
  return true;
}

// A feed line: one chord, or with rotary travel one chord per 5 degrees and the rest.
template <class Sink>
void FeedChords(const GeoEntity& e, Sink& sink) {
  const GeoPoint& s = e.StartPoint;
  const GeoPoint& t = e.EndPoint;
  sink.MoveTo(s);
  const double travel = static_cast<double>(t.A) - s.A;
  const int steps = static_cast<int>(std::fabs(travel) / 5.0);
  for (int i = 1; i <= steps; ++i) {
    const double f = i * 5.0 / std::fabs(travel);
    sink.LineTo(GeoPoint{static_cast<float>(s.X + (static_cast<double>(t.X) - s.X) * f),
                         static_cast<float>(s.Y + (static_cast<double>(t.Y) - s.Y) * f),
                         static_cast<float>(s.Z + (static_cast<double>(t.Z) - s.Z) * f),
                         static_cast<float>(s.A + travel * f)});
  }
  sink.LineTo(t);
}

namespace chords_detail {

// One leg of an equal-speed rapid: every moving axis travels `s` in its own direction; an axis
// whose whole travel is `s` lands exactly on the end.
inline GeoPoint EqualSpeedLeg(const GeoPoint& from, const GeoPoint& end, double s, bool moveX,
                              bool moveY, bool moveZ) {
  auto leg = [s](float a, float b, bool moving) {
    if (!moving) return a;
    const double d = static_cast<double>(b) - a;
    if (std::fabs(d) == s) return b;
    return static_cast<float>(a + (d < 0 ? -s : s));
  };
  GeoPoint p = from;
  p.X = leg(from.X, end.X, moveX);
  p.Y = leg(from.Y, end.Y, moveY);
  p.Z = leg(from.Z, end.Z, moveZ);
  return p;
}

}  // namespace chords_detail

// A rapid along the path of `rapidStyle`: 0 straight, 1 axes at equal speed, 2 XY before a
// descent and after a rise.
template <class Sink>
void RapidChords(const GeoEntity& e, int rapidStyle, Sink& sink) {
  const GeoPoint& s = e.StartPoint;
  const GeoPoint& t = e.EndPoint;
  sink.MoveTo(s);
  if (rapidStyle == 1) {
    GeoPoint at = s;
    double dx = std::fabs(static_cast<double>(t.X) - at.X);
    double dy = std::fabs(static_cast<double>(t.Y) - at.Y);
    double dz = std::fabs(static_cast<double>(t.Z) - at.Z);
    if (dx != 0 && dy != 0 && dz != 0) {
      at = chords_detail::EqualSpeedLeg(at, t, std::fmin(dx, std::fmin(dy, dz)), true, true, true);
      sink.LineTo(at);
      dx = std::fabs(static_cast<double>(t.X) - at.X);
      dy = std::fabs(static_cast<double>(t.Y) - at.Y);
      dz = std::fabs(static_cast<double>(t.Z) - at.Z);
    }
    if (dx != 0 && dy != 0 && dz == 0) {
      at = chords_detail::EqualSpeedLeg(at, t, std::fmin(dx, dy), true, true, false);
      sink.LineTo(at);
    } else if (dx != 0 && dz != 0 && dy == 0) {
      at = chords_detail::EqualSpeedLeg(at, t, std::fmin(dx, dz), true, false, true);
      sink.LineTo(at);
    } else if (dy != 0 && dz != 0 && dx == 0) {
      at = chords_detail::EqualSpeedLeg(at, t, std::fmin(dy, dz), false, true, true);
      sink.LineTo(at);
    }
  } else if (rapidStyle == 2 && t.Z != s.Z) {
    GeoPoint corner = s;
    if (t.Z < s.Z) {
      corner.X = t.X, corner.Y = t.Y;
    } else {
      corner.Z = t.Z;
    }
    sink.LineTo(corner);
  }
  sink.LineTo(t);
}

// A circular arc (types 2 and 3) from its start angle to its end angle about the centre;
// ends at the same angle make a whole circle. The normal axis and A keep the start's values
// until the last chord, which goes to the exact end.
template <class Sink>
void ArcChords(const GeoEntity& e, double scaleWidth, const ArcStepLimits& limits, Sink& sink) {
  const int plane = NormalPlane(e.Plane);
  const double a0 = AngleTo(e.CenterPoint, e.StartPoint, plane);
  const double a1 = AngleTo(e.CenterPoint, e.EndPoint, plane);
  const double r = e.RadiusOrTurns == 0 ? limits.ZeroRadius : e.RadiusOrTurns;
  const double step = ArcStep(scaleWidth, r, limits);
  sink.MoveTo(e.StartPoint);
  if (IsKnownPlane(plane)) {
    const PlaneCoords c = ToPlane(e.CenterPoint, plane);
    GeoPoint p = e.StartPoint;
    const bool clockwise = e.EntityType == kArcCW;
    // Walks from angle `a` while it stays within `limit`, a step at a time; the cosine and sine
    // follow by turning the previous pair, which saves two library calls per chord.
    const double turnCos = std::cos(step), turnSin = clockwise ? -std::sin(step) : std::sin(step);
    auto walk = [&](double a, double limit) {
      double cosA = std::cos(a), sinA = std::sin(a);
      for (; clockwise ? a >= limit : a <= limit; a += clockwise ? -step : step) {
        SetInPlane(p, plane, c.First + r * cosA, c.Second + r * sinA);
        sink.LineTo(p);
        const double nextCos = cosA * turnCos - sinA * turnSin;
        sinA = sinA * turnCos + cosA * turnSin;
        cosA = nextCos;
      }
    };
    if (clockwise) {
      if (a0 <= a1) {
        walk(a0, 0);
        walk(kTwoPi, a1);
      } else {
        walk(a0, a1);
      }
    } else {
      if (a0 >= a1) {
        walk(a0, kTwoPi);
        walk(0, a1);
      } else {
        walk(a0, a1);
      }
    }
  }
  sink.LineTo(e.EndPoint);
}

// The included angle of a helix record (types 12 and 13) in radians, its turns counted in.
inline double HelixSweep(const GeoEntity& e, double a0, double a1) {
  double sweep;
  if (e.EntityType == kHelixCW) {
    if (a0 == 0) a0 = kTwoPi;
    sweep = a0 <= a1 ? kTwoPi - (a1 - a0) : a0 - a1;
  } else {
    sweep = a0 >= a1 ? kTwoPi - (a0 - a1) : a1 - a0;
  }
  const double turns = e.RadiusOrTurns;
  if (turns > 0) sweep = sweep == kTwoPi ? (turns - 1) * kTwoPi + sweep : turns * kTwoPi + sweep;
  return sweep;
}

// A helix: the arc's rule in its plane while the normal axis travels linearly to the end.
template <class Sink>
void HelixChords(const GeoEntity& e, double scaleWidth, const ArcStepLimits& limits, Sink& sink) {
  const int plane = NormalPlane(e.Plane);
  sink.MoveTo(e.StartPoint);
  if (IsKnownPlane(plane)) {
    double r = DistPlane(e.CenterPoint, e.StartPoint, plane);
    if (r == 0) r = limits.ZeroRadius;
    double step = ArcStep(scaleWidth, r, limits);
    double a0 = AngleTo(e.CenterPoint, e.StartPoint, plane);
    const double a1 = AngleTo(e.CenterPoint, e.EndPoint, plane);
    const double sweep = HelixSweep(e, a0, a1);
    // A turn count beyond reason must not stall the picture.
    if (sweep / step > kMaxHelixChords) step = sweep / kMaxHelixChords;
    if (e.EntityType == kHelixCW && a0 == 0) a0 = kTwoPi;
    const double sign = e.EntityType == kHelixCW ? -1.0 : 1.0;
    const PlaneCoords c = ToPlane(e.CenterPoint, plane);
    const double n0 = ToPlane(e.StartPoint, plane).Normal;
    const double travel = ToPlane(e.EndPoint, plane).Normal - n0;
    GeoPoint p = e.StartPoint;
    for (double t = 0; t < sweep; t += step) {
      const double a = a0 + sign * t;
      SetInPlane(p, plane, c.First + r * std::cos(a), c.Second + r * std::sin(a));
      SetNormal(p, plane, n0 + t / sweep * travel);
      sink.LineTo(p);
    }
  }
  sink.LineTo(e.EndPoint);
}

// The chords of any drawable line, arc or helix; false (nothing sent) for points and unknown
// types, which have no chords.
template <class Sink>
bool EntityChords(const GeoEntity& e, int rapidStyle, double scaleWidth,
                  const ArcStepLimits& arcLimits, Sink& sink) {
  switch (e.EntityType) {
    case kRapid:
      RapidChords(e, rapidStyle, sink);
      return true;
    case kFeed:
      FeedChords(e, sink);
      return true;
    case kArcCW:
    case kArcCCW:
      ArcChords(e, scaleWidth, arcLimits, sink);
      return true;
    case kHelixCW:
    case kHelixCCW:
      HelixChords(e, scaleWidth, kPaintArcSteps, sink);
      return true;
    default:
      return false;
  }
}

}  // namespace zemtra
