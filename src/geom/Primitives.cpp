#include "geom/Primitives.h"

#include <cmath>

namespace zemtra {

namespace {
constexpr double kFlatTurnDegrees = 179.999;
}  // namespace

bool IsKnownPlane(int plane) {
  const int p = NormalPlane(plane);
  return p == 17 || p == 18 || p == 19;
}

PlaneCoords ToPlane(const GeoPoint& point, int plane) {
  switch (NormalPlane(plane)) {
    case 17:
      return {point.X, point.Y, point.Z};
    case 18:
      return {point.Z, point.X, point.Y};
    case 19:
      return {point.Y, point.Z, point.X};
    default:
      return {};
  }
}

void SetInPlane(GeoPoint& point, int plane, double first, double second) {
  const float f = static_cast<float>(first);
  const float s = static_cast<float>(second);
  switch (NormalPlane(plane)) {
    case 17:
      point.X = f, point.Y = s;
      break;
    case 18:
      point.Z = f, point.X = s;
      break;
    case 19:
      point.Y = f, point.Z = s;
      break;
    default:
      break;
  }
}

void SetNormal(GeoPoint& point, int plane, double normal) {
  const float n = static_cast<float>(normal);
  switch (NormalPlane(plane)) {
    case 17:
      point.Z = n;
      break;
    case 18:
      point.Y = n;
      break;
    case 19:
      point.X = n;
      break;
    default:
      break;
  }
}

LineRec LineFromEntity(const GeoEntity& entity) {
  return {entity.StartPoint, entity.EndPoint, entity.Plane};
}

ArcRec ArcFromEntity(const GeoEntity& entity) {
  ArcRec arc;
  arc.Start = entity.StartPoint;
  arc.End = entity.EndPoint;
  arc.Center = entity.CenterPoint;
  arc.Direction = static_cast<std::int16_t>(entity.EntityType % 10);
  arc.Plane = entity.Plane;
  arc.Radius = IsHelixCode(entity.EntityType)
                   ? DistPlane(entity.CenterPoint, entity.StartPoint, entity.Plane)
                   : entity.RadiusOrTurns;
  return arc;
}

GeoEntity EntityFromArc(const ArcRec& arc) {
  GeoEntity entity;
  entity.EntityType = static_cast<std::uint8_t>(arc.Direction);
  entity.StartPoint = arc.Start;
  entity.EndPoint = arc.End;
  entity.CenterPoint = arc.Center;
  entity.RadiusOrTurns = static_cast<float>(arc.Radius);
  entity.Plane = arc.Plane;
  return entity;
}

GeoEntity EntityFromLine(const LineRec& line) {
  GeoEntity entity;
  entity.EntityType = kFeed;
  entity.StartPoint = line.Start;
  entity.EndPoint = line.End;
  entity.Plane = line.Plane;
  return entity;
}

double Dist3(const GeoPoint& a, const GeoPoint& b) {
  const double dx = double(b.X) - a.X;
  const double dy = double(b.Y) - a.Y;
  const double dz = double(b.Z) - a.Z;
  return std::sqrt(dx * dx + dy * dy + dz * dz);
}

double DistPlane(const GeoPoint& a, const GeoPoint& b, int plane) {
  if (!IsKnownPlane(plane)) return 0;
  const PlaneCoords pa = ToPlane(a, plane);
  const PlaneCoords pb = ToPlane(b, plane);
  const double d1 = pb.First - pa.First;
  const double d2 = pb.Second - pa.Second;
  return std::sqrt(d1 * d1 + d2 * d2);
}

double AngleTo(const GeoPoint& center, const GeoPoint& point, int plane) {
  const PlaneCoords c = ToPlane(center, plane);
  const PlaneCoords p = ToPlane(point, plane);
  const double dx = p.First - c.First;
  const double dy = p.Second - c.Second;
  // Axis directions are returned as the exact constants, so that Octant can compare them.
  if (dy == 0) return dx < 0 ? kPi : 0;
  if (dx == 0) return dy > 0 ? kHalfPi : kThreeHalfPi;
  const double q = std::atan(std::fabs(dy / dx));
  if (dx > 0) return dy > 0 ? q : kTwoPi - q;
  return dy > 0 ? kPi - q : kPi + q;
}

double EntityAngle(const GeoEntity& entity) {
  return AngleTo(entity.StartPoint, entity.EndPoint, entity.Plane);
}

double EntityAngle(const LineRec& line) {
  return AngleTo(line.Start, line.End, line.Plane);
}

double Arccos(double x) {
  if (x == 1) return 0;
  return std::atan(-x / std::sqrt(1 - x * x)) + kHalfPi;
}

double AngleDegrees(const GeoPoint& p0, const GeoPoint& p1, const GeoPoint& p2, int plane) {
  const double turn = (AngleTo(p1, p2, plane) - AngleTo(p1, p0, plane)) / kDegree;
  return turn < 0 ? turn + 360 : turn;
}

bool IsTurnFlat(const GeoPoint& p0, const GeoPoint& p1, const GeoPoint& p2, int plane) {
  return AngleDegrees(p0, p1, p2, plane) >= kFlatTurnDegrees;
}

int Octant(const GeoPoint& center, const GeoPoint& point, int plane) {
  const double a = AngleTo(center, point, plane);
  if (a == 0) return 0;
  if (a < kHalfPi) return 1;
  if (a == kHalfPi) return 2;
  if (a < kPi) return 3;
  if (a == kPi) return 4;
  if (a < kThreeHalfPi) return 5;
  if (a == kThreeHalfPi) return 6;
  return 7;
}

GeoPoint RotatePoint(const GeoPoint& point, const GeoPoint& center, double angleDegrees) {
  const double radians = angleDegrees * kDegree;
  const double c = std::cos(radians);
  const double s = std::sin(radians);
  const double dx = double(point.X) - center.X;
  const double dy = double(point.Y) - center.Y;
  GeoPoint result = point;
  result.X = static_cast<float>(dx * c - dy * s + center.X);
  result.Y = static_cast<float>(dx * s + dy * c + center.Y);
  return result;
}

GeoPoint ScalePoint(const GeoPoint& point, const GeoPoint& center, double factor) {
  GeoPoint result;
  result.X = static_cast<float>((double(point.X) - center.X) * factor + center.X);
  result.Y = static_cast<float>((double(point.Y) - center.Y) * factor + center.Y);
  result.Z = static_cast<float>((double(point.Z) - center.Z) * factor + center.Z);
  return result;
}

}  // namespace zemtra
