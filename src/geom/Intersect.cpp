#include "geom/Intersect.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <utility>

#include "geom/Arcs.h"
#include "geom/Nearest.h"

namespace zemtra {

namespace {

// A line as a u + b v = c in the plane.
struct LineEquation {
  double a, b, c;
};

LineEquation EquationOf(const LineRec& line, int plane) {
  const PlaneCoords s = ToPlane(line.Start, plane);
  const PlaneCoords e = ToPlane(line.End, plane);
  const double a = e.Second - s.Second;
  const double b = s.First - e.First;
  return {a, b, a * s.First + b * s.Second};
}

GeoPoint WithInPlane(GeoPoint point, int plane, double first, double second) {
  SetInPlane(point, plane, first, second);
  return point;
}

struct Box {
  double minX, minY, maxX, maxY;
};

Box BoxOf(const SelectRect& rect) {
  return {std::min(rect.X1, rect.X2), std::min(rect.Y1, rect.Y2), std::max(rect.X1, rect.X2),
          std::max(rect.Y1, rect.Y2)};
}

// Crossing of the segment with the horizontal edge y = level between minX and maxX.
bool CrossHorizontal(const GeoPoint& p0, const GeoPoint& p1, double level, double lo, double hi,
                     GeoPoint& hit) {
  const double y0 = p0.Y, y1 = p1.Y;
  if (y0 == y1 || (y0 - level) * (y1 - level) > 0) return false;
  const double t = (level - y0) / (y1 - y0);
  const double x = p0.X + t * (double(p1.X) - p0.X);
  if (x < lo || x > hi) return false;
  hit = p0;
  hit.X = static_cast<float>(x);
  hit.Y = static_cast<float>(level);
  return true;
}

// Crossing of the segment with the vertical edge x = level between minY and maxY.
bool CrossVertical(const GeoPoint& p0, const GeoPoint& p1, double level, double lo, double hi,
                   GeoPoint& hit) {
  const double x0 = p0.X, x1 = p1.X;
  if (x0 == x1 || (x0 - level) * (x1 - level) > 0) return false;
  const double t = (level - x0) / (x1 - x0);
  const double y = p0.Y + t * (double(p1.Y) - p0.Y);
  if (y < lo || y > hi) return false;
  hit = p0;
  hit.X = static_cast<float>(level);
  hit.Y = static_cast<float>(y);
  return true;
}

// Distinct crossings of the segment with the edges, in the order bottom, right, top, left.
int EdgeCrossings(const GeoPoint& p0, const GeoPoint& p1, const Box& box,
                  std::array<GeoPoint, 4>& hits) {
  int count = 0;
  auto keep = [&](bool found, const GeoPoint& hit) {
    if (!found) return;
    for (int i = 0; i < count; ++i) {
      if (hits[i].X == hit.X && hits[i].Y == hit.Y) return;  // a corner meets two edges
    }
    hits[count++] = hit;
  };
  GeoPoint hit;
  keep(CrossHorizontal(p0, p1, box.minY, box.minX, box.maxX, hit), hit);
  keep(CrossVertical(p0, p1, box.maxX, box.minY, box.maxY, hit), hit);
  keep(CrossHorizontal(p0, p1, box.maxY, box.minX, box.maxX, hit), hit);
  keep(CrossVertical(p0, p1, box.minX, box.minY, box.maxY, hit), hit);
  return count;
}

}  // namespace

int IntersectLines(const LineRec& l1, const LineRec& l2, GeoPoint& p, int plane) {
  const LineEquation e1 = EquationOf(l1, plane);
  const LineEquation e2 = EquationOf(l2, plane);
  if (e1.a * e2.b == e2.a * e1.b) return 0;
  const double det = e1.a * e2.b - e2.a * e1.b;
  p = WithInPlane(l1.End, plane, (e1.c * e2.b - e2.c * e1.b) / det,
                  (e1.a * e2.c - e2.a * e1.c) / det);
  return -1;
}

int IntersectLineArc(const LineRec& line, const ArcRec& arc, GeoPoint& p1, GeoPoint& p2) {
  const int plane = arc.Plane;
  const PlaneCoords foot = FootInPlane(line, arc.Center, plane);
  const PlaneCoords c = ToPlane(arc.Center, plane);
  const double d = std::hypot(foot.First - c.First, foot.Second - c.Second);
  const double r = std::fabs(arc.Radius);
  if (d > r + kTouchTolerance) return kNoHit;
  const GeoPoint footPoint = WithInPlane(line.End, plane, foot.First, foot.Second);
  if (std::fabs(d - r) < kTouchTolerance) {
    p1 = footPoint;
    return kTangentHit;
  }
  const double k = std::sqrt(std::fabs(r * r - d * d));
  const double angle = AngleTo(line.Start, line.End, plane);
  const double du = k * std::cos(angle);
  const double dv = k * std::sin(angle);
  p1 = WithInPlane(footPoint, plane, foot.First + du, foot.Second + dv);
  p2 = WithInPlane(footPoint, plane, foot.First - du, foot.Second - dv);
  return kTwoHits;
}

int IntersectArcs(const ArcRec& a1, const ArcRec& a2, GeoPoint& p1, GeoPoint& p2) {
  const int plane = a1.Plane;
  const double d = DistPlane(a1.Center, a2.Center, plane);
  const double r1 = std::fabs(a1.Radius);
  const double r2 = std::fabs(a2.Radius);
  if (d == 0 || r1 == 0 || r2 == 0) return kNoHit;
  ArcRec first = a1;
  first.Radius = r1;
  const double base = AngleTo(a1.Center, a2.Center, plane);
  const bool touchOutside = std::fabs(d - (r1 + r2)) < kTouchTolerance;
  const bool touchInside = std::fabs(d - std::fabs(r1 - r2)) < kTouchTolerance;
  if (touchOutside || touchInside) {
    // A smaller first circle inside the second touches it on the side away from the second centre.
    const bool away = !touchOutside && r1 < r2;
    p1 = PointOnCircle(first, away ? base + kPi : base);
    return kTangentHit;
  }
  if (d > r1 + r2 || d < std::fabs(r1 - r2)) return kNoHit;
  const double cosine = (r1 * r1 + d * d - r2 * r2) / (2 * r1 * d);
  const double spread = std::acos(std::clamp(cosine, -1.0, 1.0));
  p1 = PointOnCircle(first, base + spread);
  p2 = PointOnCircle(first, base - spread);
  return kTwoHits;
}

bool PointInRect(const GeoPoint& p, const SelectRect& rect) {
  const Box box = BoxOf(rect);
  return p.X >= box.minX && p.X <= box.maxX && p.Y >= box.minY && p.Y <= box.maxY;
}

int ClipSegmentToRect(const GeoPoint& p0, const GeoPoint& p1, const SelectRect& rect, GeoPoint& a,
                      GeoPoint& b) {
  const bool in0 = PointInRect(p0, rect);
  const bool in1 = PointInRect(p1, rect);
  if (in0 && in1) {
    a = p0;
    b = p1;
    return kClipInside;
  }
  std::array<GeoPoint, 4> hits;
  const int count = EdgeCrossings(p0, p1, BoxOf(rect), hits);
  if (in0 || in1) {
    a = in0 ? p0 : p1;
    b = a;
    for (int i = 0; i < count; ++i) {
      if (!(hits[i].X == a.X && hits[i].Y == a.Y)) b = hits[i];
    }
    return kClipOneCrossing;
  }
  if (count == 0) return kClipOutside;
  a = hits[0];
  b = count > 1 ? hits[1] : hits[0];
  auto fromStart = [&](const GeoPoint& q) {
    return std::hypot(double(q.X) - p0.X, double(q.Y) - p0.Y);
  };
  if (fromStart(b) < fromStart(a)) std::swap(a, b);  // in the segment's direction
  return count > 1 ? kClipTwoCrossings : kClipOneCrossing;
}

}  // namespace zemtra
