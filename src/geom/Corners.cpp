#include "geom/Corners.h"

#include <cmath>

#include "geom/Intersect.h"
#include "geom/Nearest.h"

namespace zemtra {

namespace {

// Point at fraction t of the way from a to b, on all four axes.
GeoPoint Between(const GeoPoint& a, const GeoPoint& b, double t) {
  auto mix = [t](float from, float to) {
    return static_cast<float>(from + t * (double(to) - from));
  };
  return {mix(a.X, b.X), mix(a.Y, b.Y), mix(a.Z, b.Z), mix(a.A, b.A)};
}

// `point` moved in its plane to radius `radius` about `center`, keeping its direction.
GeoPoint AtRadius(const GeoPoint& point, const GeoPoint& center, double radius, int plane) {
  const double angle = AngleTo(center, point, plane);
  const PlaneCoords c = ToPlane(center, plane);
  GeoPoint moved = point;
  SetInPlane(moved, plane, c.First + radius * std::cos(angle), c.Second + radius * std::sin(angle));
  return moved;
}

GeoEntity OffsetArc(const GeoEntity& entity, double distance) {
  const double radius = std::fabs(double(entity.RadiusOrTurns));
  const double newRadius = entity.EntityType == kArcCW ? radius + distance : radius - distance;
  GeoEntity result = entity;
  result.RadiusOrTurns = static_cast<float>(newRadius);
  result.StartPoint = AtRadius(entity.StartPoint, entity.CenterPoint, newRadius, entity.Plane);
  result.EndPoint = AtRadius(entity.EndPoint, entity.CenterPoint, newRadius, entity.Plane);
  return result;
}

}  // namespace

LineRec OffsetLine(const LineRec& line, double distance, int plane) {
  const double normal = AngleTo(line.Start, line.End, plane) + kHalfPi;
  const double du = distance * std::cos(normal);
  const double dv = distance * std::sin(normal);
  LineRec result = line;
  const PlaneCoords s = ToPlane(line.Start, plane);
  const PlaneCoords e = ToPlane(line.End, plane);
  SetInPlane(result.Start, plane, s.First + du, s.Second + dv);
  SetInPlane(result.End, plane, e.First + du, e.Second + dv);
  return result;
}

GeoEntity OffsetEntity(const GeoEntity& entity, double distance) {
  if (IsLineCode(entity.EntityType)) {
    const LineRec moved = OffsetLine(LineFromEntity(entity), distance, entity.Plane);
    GeoEntity result = entity;
    result.StartPoint = moved.Start;
    result.EndPoint = moved.End;
    return result;
  }
  if (entity.EntityType == kArcCW || entity.EntityType == kArcCCW) {
    return OffsetArc(entity, distance);
  }
  return entity;
}

bool FilletLines(const LineRec& first, const LineRec& second, double radius, int plane,
                 ArcRec& arc) {
  const double r = std::fabs(radius);
  const bool turnsLeft = IsTurnFlat(first.Start, first.End, second.End, plane);
  // The centre lies on both lines moved by r towards the inside of the corner.
  const double side = turnsLeft ? r : -r;
  GeoPoint center;
  if (IntersectLines(OffsetLine(first, side, plane), OffsetLine(second, side, plane), center,
                     plane) == 0) {
    return false;
  }
  arc.Start = FootOnLine(first, center, plane);
  arc.End = FootOnLine(second, center, plane);
  arc.Center = center;
  arc.Radius = r;
  arc.Direction = turnsLeft ? kArcCCW : kArcCW;
  arc.Plane = static_cast<std::uint8_t>(plane);
  return true;
}

bool ChamferLines(const LineRec& first, const LineRec& second, double distance, int plane,
                  LineRec& chamfer) {
  const double firstLength = Dist3(first.Start, first.End);
  const double secondLength = Dist3(second.Start, second.End);
  if (firstLength == 0 || secondLength == 0) return false;
  chamfer.Start = Between(first.End, first.Start, distance / firstLength);
  chamfer.End = Between(second.Start, second.End, distance / secondLength);
  chamfer.Plane = static_cast<std::uint8_t>(plane);
  return true;
}

}  // namespace zemtra
