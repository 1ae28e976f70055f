#include "geom/Nearest.h"

#include <algorithm>
#include <cmath>

namespace zemtra {

bool PointOnSegment(const LineRec& line, const GeoPoint& p, double tolerance) {
  const double around = Dist3(line.Start, p) + Dist3(line.End, p);
  return std::fabs(Dist3(line.Start, line.End) - around) < tolerance;
}

bool PointOnSegmentPlane(const LineRec& line, const GeoPoint& p, int plane, double tolerance) {
  const double around = DistPlane(line.Start, p, plane) + DistPlane(line.End, p, plane);
  return std::fabs(DistPlane(line.Start, line.End, plane) - around) < tolerance;
}

bool PointInArcSweep(const ArcRec& arc, const GeoPoint& p) {
  const double a0 = AngleTo(arc.Center, arc.Start, arc.Plane);
  const double a1 = AngleTo(arc.Center, arc.End, arc.Plane);
  if (a0 == a1) return true;
  const double a = AngleTo(arc.Center, p, arc.Plane);
  // Seen counter-clockwise the arc runs from `from` to `to`, possibly wrapping past 0.
  const bool clockwise = arc.Direction % 10 == kArcCW;
  const double from = clockwise ? a1 : a0;
  const double to = clockwise ? a0 : a1;
  if (from < to) return a >= from && a <= to;
  return a >= from || a <= to;
}

PlaneCoords FootInPlane(const LineRec& line, const GeoPoint& p, int plane) {
  const PlaneCoords s = ToPlane(line.Start, plane);
  const PlaneCoords e = ToPlane(line.End, plane);
  const PlaneCoords q = ToPlane(p, plane);
  const double d1 = e.First - s.First;
  const double d2 = e.Second - s.Second;
  const double lengthSquared = d1 * d1 + d2 * d2;
  if (lengthSquared == 0) return s;
  const double t = ((q.First - s.First) * d1 + (q.Second - s.Second) * d2) / lengthSquared;
  return {s.First + t * d1, s.Second + t * d2, e.Normal};
}

GeoPoint FootOnLine(const LineRec& line, const GeoPoint& p, int plane) {
  if (DistPlane(line.Start, line.End, plane) == 0) return line.Start;
  const PlaneCoords foot = FootInPlane(line, p, plane);
  GeoPoint result = line.End;
  SetInPlane(result, plane, foot.First, foot.Second);
  return result;
}

double DistPointToSegment(const LineRec& line, const GeoPoint& p, int plane) {
  const GeoPoint foot = FootOnLine(line, p, plane);
  if (PointOnSegmentPlane(line, foot, plane)) return DistPlane(p, foot, plane);
  return std::min(DistPlane(p, line.Start, plane), DistPlane(p, line.End, plane));
}

double DistPointToArc(const ArcRec& arc, const GeoPoint& p) {
  if (PointInArcSweep(arc, p)) {
    return std::fabs(DistPlane(p, arc.Center, arc.Plane) - std::fabs(arc.Radius));
  }
  return std::min(DistPlane(p, arc.Start, arc.Plane), DistPlane(p, arc.End, arc.Plane));
}

}  // namespace zemtra
