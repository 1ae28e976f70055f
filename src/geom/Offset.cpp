#include "geom/Offset.h"

#include <cmath>

#include "core/Host.h"
#include "core/Version.h"
#include "geom/CalcTools.h"
#include "geom/Corners.h"
#include "geom/Intersect.h"
#include "geom/Nearest.h"
#include "geom/Primitives.h"

namespace zemtra {

namespace {

constexpr double kCoincident = 0.000001;
constexpr double kDegenerateArc = 0.001;
constexpr double kTangentDegrees = 5;  // two arcs meeting at less than this are tangent
// A line and an arc are tangent when the radius meets the line at 90 degrees within this.
constexpr double kLineArcTangentDegrees = 0.0001;
constexpr double kAtEnd = 0.001;

bool IsArc(const GeoEntity& e) {
  return e.EntityType == kArcCW || e.EntityType == kArcCCW;
}

bool IsPathEntity(const GeoEntity& e) {
  return e.EntityType == kFeed || e.EntityType == kRapid || IsArc(e);
}

// Direction of travel (X, Y) at the start or the end of a line or arc.
void Tangent(const GeoEntity& e, bool atEnd, double& tx, double& ty) {
  if (!IsArc(e)) {
    tx = double(e.EndPoint.X) - e.StartPoint.X;
    ty = double(e.EndPoint.Y) - e.StartPoint.Y;
  } else {
    const GeoPoint& p = atEnd ? e.EndPoint : e.StartPoint;
    const double rx = double(p.X) - e.CenterPoint.X;
    const double ry = double(p.Y) - e.CenterPoint.Y;
    const bool ccw = e.EntityType == kArcCCW;
    tx = ccw ? -ry : ry;
    ty = ccw ? rx : -rx;
  }
  const double length = std::hypot(tx, ty);
  if (length > 0) tx /= length, ty /= length;
}

// Turn at the corner from a into b, in degrees: positive to the left, in (-180, 180].
double TurnDegrees(const GeoEntity& a, const GeoEntity& b) {
  double ax = 0, ay = 0, bx = 0, by = 0;
  Tangent(a, true, ax, ay);
  Tangent(b, false, bx, by);
  return std::atan2(ax * by - ay * bx, ax * bx + ay * by) / kDegree;
}

GeoPoint Nearer(const GeoPoint& p1, const GeoPoint& p2, const GeoPoint& to) {
  return DistPlane(p1, to, 17) <= DistPlane(p2, to, 17) ? p1 : p2;
}

// A point where two entities' lines or circles meet, nearest to `corner`. False when none.
bool MeetingPoint(const GeoEntity& a, const GeoEntity& b, const GeoPoint& corner, GeoPoint& p) {
  GeoPoint p1, p2;
  if (!IsArc(a) && !IsArc(b)) return IntersectLines(LineFromEntity(a), LineFromEntity(b), p, 17);
  int hit = kNoHit;
  if (!IsArc(a)) {
    hit = IntersectLineArc(LineFromEntity(a), ArcFromEntity(b), p1, p2);
  } else if (!IsArc(b)) {
    hit = IntersectLineArc(LineFromEntity(b), ArcFromEntity(a), p1, p2);
  } else {
    hit = IntersectArcs(ArcFromEntity(a), ArcFromEntity(b), p1, p2);
  }
  if (hit == kNoHit) return false;
  p = hit == kTangentHit ? p1 : Nearer(p1, p2, corner);
  return true;
}

// True when the trimmed line still runs the way its source does.
bool SameDirection(const GeoEntity& source, const GeoEntity& trimmed) {
  if (IsArc(source)) return true;
  const double sx = double(source.EndPoint.X) - source.StartPoint.X;
  const double sy = double(source.EndPoint.Y) - source.StartPoint.Y;
  const double tx = double(trimmed.EndPoint.X) - trimmed.StartPoint.X;
  const double ty = double(trimmed.EndPoint.Y) - trimmed.StartPoint.Y;
  return sx * tx + sy * ty > 0;
}

}  // namespace

void PathOffsetter::SetCornerArc(const GeoEntity& a, double turnDegrees) {
  CornerPending = true;
  CornerArc = GeoEntity{};
  CornerArc.EntityType = turnDegrees <= 0 ? kArcCW : kArcCCW;
  CornerArc.StartPoint = OffsetA.EndPoint;
  CornerArc.EndPoint = OffsetB.StartPoint;
  CornerArc.CenterPoint = a.EndPoint;
  CornerArc.RadiusOrTurns = static_cast<float>(std::fabs(distance_));
  CornerArc.Plane = 17;
}

bool PathOffsetter::JoinLineLine(const GeoEntity& a, const GeoEntity& b) {
  CornerPending = false;
  // Turn of AngleDegrees between 170 and 190: the lines go on nearly straight and just meet.
  const double turn = TurnDegrees(a, b);
  const bool inside = (distance_ > 0) == (turn > 0);
  if (std::fabs(turn) < 10 || inside) {
    GeoPoint p;
    if (!IntersectLines(LineFromEntity(OffsetA), LineFromEntity(OffsetB), p, 17)) {
      OffsetB.StartPoint = OffsetA.EndPoint;  // collinear: the ends already meet
      return true;
    }
    GeoEntity trimmedA = OffsetA, trimmedB = OffsetB;
    trimmedA.EndPoint = trimmedB.StartPoint = p;
    if (!SameDirection(a, trimmedA) || !SameDirection(b, trimmedB)) return false;
    OffsetA = trimmedA;
    OffsetB = trimmedB;
    return true;
  }
  SetCornerArc(a, turn);
  return true;
}

bool PathOffsetter::JoinLineArc(const GeoEntity& a, const GeoEntity& b) {
  return JoinCurves(a, b, kLineArcTangentDegrees);
}

bool PathOffsetter::JoinArcLine(const GeoEntity& a, const GeoEntity& b) {
  return JoinCurves(a, b, kLineArcTangentDegrees);
}

bool PathOffsetter::JoinArcArc(const GeoEntity& a, const GeoEntity& b) {
  return JoinCurves(a, b, kTangentDegrees);
}

// Tangent neighbours: their offsets touch. Beside a line the shared point is the foot of the
// perpendicular from the arc's centre on the offset line.
void PathOffsetter::JoinTangent() {
  GeoPoint p = OffsetA.EndPoint;
  if (!IsArc(OffsetA)) p = FootOnLine(LineFromEntity(OffsetA), OffsetB.CenterPoint);
  if (!IsArc(OffsetB)) p = FootOnLine(LineFromEntity(OffsetB), OffsetA.CenterPoint);
  OffsetA.EndPoint = OffsetB.StartPoint = p;
}

bool PathOffsetter::JoinCurves(const GeoEntity& a, const GeoEntity& b, double tangentDegrees) {
  CornerPending = false;
  const double turn = TurnDegrees(a, b);
  if (DistPlane(OffsetA.EndPoint, OffsetB.StartPoint, 17) < kCoincident) return true;
  if (std::fabs(turn) < tangentDegrees) {
    JoinTangent();
    return true;
  }
  const bool inside = (distance_ > 0) == (turn > 0);
  if (!inside) {
    SetCornerArc(a, turn);
    return true;
  }
  GeoPoint p;
  if (!MeetingPoint(OffsetA, OffsetB, a.EndPoint, p)) return false;
  GeoEntity trimmedA = OffsetA, trimmedB = OffsetB;
  trimmedA.EndPoint = trimmedB.StartPoint = p;
  if (!SameDirection(a, trimmedA) || !SameDirection(b, trimmedB)) return false;
  OffsetA = trimmedA;
  OffsetB = trimmedB;
  return true;
}

bool PathOffsetter::Join(const GeoEntity& a, const GeoEntity& b) {
  if (!IsArc(a) && !IsArc(b)) return JoinLineLine(a, b);
  if (!IsArc(a)) return JoinLineArc(a, b);
  if (!IsArc(b)) return JoinArcLine(a, b);
  return JoinArcArc(a, b);
}

bool PathOffsetter::OffsetOne(const GeoEntity& source, GeoEntity& offset) {
  offset = OffsetEntity(source, distance_);
  if (!IsArc(source)) return true;
  const bool fullCircle = source.StartPoint == source.EndPoint;
  const bool ok =
      offset.RadiusOrTurns > 0 &&
      (fullCircle || DistPlane(offset.StartPoint, offset.EndPoint, 17) >= kDegenerateArc);
  if (!ok) {
    host_.ask(
        Prompt{"Can't create offset arc", kProductName, MsgIcon::Exclamation, MsgButtons::Ok});
  }
  return ok;
}

bool PathOffsetter::OffsetPath(const std::vector<GeoEntity>& run, std::vector<GeoEntity>& result) {
  result.clear();
  if (run.empty()) return true;
  GeoEntity current;
  if (!OffsetOne(run[0], current)) return false;
  for (std::size_t k = 1; k < run.size(); ++k) {
    GeoEntity next;
    if (!OffsetOne(run[k], next)) {
      result.push_back(current);
      return false;
    }
    OffsetA = current;
    OffsetB = next;
    if (!Join(run[k - 1], run[k])) {
      result.push_back(current);
      return false;
    }
    result.push_back(OffsetA);
    if (CornerPending) result.push_back(CornerArc);
    current = OffsetB;
  }
  result.push_back(current);
  const bool closed =
      run.size() > 1 && DistPlane(run.front().StartPoint, run.back().EndPoint, 17) < GeomTolerance;
  if (closed) {
    OffsetA = result.back();
    OffsetB = result.front();
    if (!Join(run.back(), run.front())) return false;
    result.back() = OffsetA;
    result.front() = OffsetB;
    if (CornerPending) result.push_back(CornerArc);
  }
  return true;
}

namespace {

// First crossing of a and b strictly inside both (arcs within their sweep).
bool Crossing(const GeoEntity& a, const GeoEntity& b, GeoPoint& p) {
  GeoPoint p1, p2;
  int hits = 0;
  if (!IsArc(a) && !IsArc(b)) {
    if (!IntersectLines(LineFromEntity(a), LineFromEntity(b), p1, 17)) return false;
    hits = 1;
  } else if (!IsArc(a) || !IsArc(b)) {
    const GeoEntity& line = IsArc(a) ? b : a;
    const GeoEntity& arc = IsArc(a) ? a : b;
    const int hit = IntersectLineArc(LineFromEntity(line), ArcFromEntity(arc), p1, p2);
    hits = hit == kTwoHits ? 2 : hit == kTangentHit ? 1 : 0;
  } else {
    const int hit = IntersectArcs(ArcFromEntity(a), ArcFromEntity(b), p1, p2);
    hits = hit == kTwoHits ? 2 : hit == kTangentHit ? 1 : 0;
  }
  const auto lies = [](const GeoEntity& e, const GeoPoint& q) {
    return IsArc(e) ? PointInArcSweep(ArcFromEntity(e), q) : PointOnSegment(LineFromEntity(e), q);
  };
  for (int k = 0; k < hits; ++k) {
    const GeoPoint& q = k == 0 ? p1 : p2;
    if (!lies(a, q) || !lies(b, q)) continue;
    // Meeting at the path's own ends is no loop.
    if (DistPlane(q, a.StartPoint, 17) < kAtEnd && DistPlane(q, b.EndPoint, 17) < kAtEnd) continue;
    p = q;
    return true;
  }
  return false;
}

}  // namespace

void RemoveLoops(std::vector<GeoEntity>& result) {
  if (result.size() < 3) return;
  bool found = true;
  while (found) {
    found = false;
    for (std::size_t i = 0; i + 2 < result.size() && !found; ++i) {
      for (std::size_t j = i + 2; j < result.size() && !found; ++j) {
        GeoPoint p;
        if (!Crossing(result[i], result[j], p)) continue;
        if (DistPlane(p, result[i].EndPoint, 17) >= kAtEnd) result[i].EndPoint = p;
        if (DistPlane(p, result[j].StartPoint, 17) >= kAtEnd) result[j].StartPoint = p;
        result.erase(result.begin() + std::ptrdiff_t(i + 1), result.begin() + std::ptrdiff_t(j));
        found = true;
      }
    }
  }
}

int OffsetSelected(GeometryTable& table, double distance, Host& host) {
  std::vector<GeoEntity> appended;
  const std::int32_t last = table.HighestIndex();
  for (std::int32_t i = 1; i <= last;) {
    if (table[i].Selected == 0) {
      ++i;
      continue;
    }
    std::vector<GeoEntity> run;
    for (; i <= last && table[i].Selected != 0; ++i) {
      if (IsPathEntity(table[i])) run.push_back(table[i]);
    }
    std::vector<GeoEntity> result;
    PathOffsetter offsetter(distance, host);
    offsetter.OffsetPath(run, result);
    RemoveLoops(result);
    appended.insert(appended.end(), result.begin(), result.end());
  }
  for (GeoEntity e : appended) {
    e.Selected = 0;
    AppendEntity(table, e);
  }
  return static_cast<int>(appended.size());
}

}  // namespace zemtra
