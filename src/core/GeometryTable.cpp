#include "core/GeometryTable.h"

#include <cmath>

namespace zemtra {

namespace {
constexpr std::int32_t kGrowStep = 500;
constexpr double kTwoPi = 6.28318530717959;

// In-plane coordinates (u, v) and the normal coordinate of a point.
struct PlaneCoords {
  double u, v, w;
};

PlaneCoords InPlane(const GeoPoint& p, int plane) {
  switch (NormalPlane(plane)) {
    case 18:
      return {p.Z, p.X, p.Y};
    case 19:
      return {p.Y, p.Z, p.X};
    default:
      return {p.X, p.Y, p.Z};
  }
}

double SweepOf(const GeoEntity& e) {
  const PlaneCoords c = InPlane(e.CenterPoint, e.Plane);
  const PlaneCoords s = InPlane(e.StartPoint, e.Plane);
  const PlaneCoords t = InPlane(e.EndPoint, e.Plane);
  const double a = std::atan2(s.v - c.v, s.u - c.u);
  const double b = std::atan2(t.v - c.v, t.u - c.u);
  if (a == b) return kTwoPi;
  const bool clockwise = (e.EntityType % 10) == kArcCW;
  if (clockwise) return a > b ? a - b : kTwoPi - (b - a);
  return a < b ? b - a : kTwoPi - (a - b);
}
}  // namespace

void GeometryTable::Resize(std::int32_t highestIndex) {
  slots_.resize(static_cast<std::size_t>(highestIndex) + 1);
}

void GeometryTable::Begin() {
  slots_.assign(2, GeoEntity{});
  GeoIndex = 1;
  GeoFirst = 1;
  GeoLast = 0;
}

void GeometryTable::Clear() {
  slots_.assign(1, GeoEntity{});
}

void GeometryTable::Add(const GeoEntity& entity) {
  if (GeoIndex > HighestIndex()) Resize(GeoIndex);
  (*this)[GeoIndex] = entity;
  Advance();
}

void GeometryTable::Advance() {
  ++GeoIndex;
  if (GeoIndex > HighestIndex()) {
    // Steps of 500 while reserved room lasts; beyond it geometric growth keeps very long plots
    // linear. The final End() trims the spare slots.
    const std::size_t room = slots_.capacity() - slots_.size();
    const std::int32_t step =
        room > 0 ? static_cast<std::int32_t>(std::min<std::size_t>(room - 1, kGrowStep))
                 : std::max(kGrowStep, HighestIndex() / 2);
    Resize(GeoIndex + step);
  }
  (*this)[GeoIndex].StartPoint = (*this)[GeoIndex - 1].EndPoint;
}

void GeometryTable::Reserve(std::int32_t entities) {
  // Slot 0, the entities, and the open slot behind the last one.
  if (entities > 0) slots_.reserve(static_cast<std::size_t>(entities) + 2);
}

void GeometryTable::End() {
  const std::int32_t last = std::max(0, GeoIndex - 1);
  Resize(last);
  // Give back spare room worth the copy; a table close to its size stays where it is.
  if (slots_.capacity() - slots_.size() > slots_.size() / 8 + kGrowStep) slots_.shrink_to_fit();
  GeoLast = last;
}

void GeometryTable::InsertBeforeLast(const GeoEntity& entity) {
  // GeoIndex is the entity just filled and not yet advanced past: it moves up one slot and
  // `entity` takes its place.
  ++GeoIndex;
  if (GeoIndex > HighestIndex()) Resize(GeoIndex);
  GeometryTable& t = *this;
  t[GeoIndex] = t[GeoIndex - 1];
  t[GeoIndex - 1] = entity;
  t[GeoIndex].StartPoint = entity.EndPoint;
  if (GeoIndex - 2 >= 1) t[GeoIndex - 2].EndPoint = entity.StartPoint;
}

double EntityLength(const GeoEntity& e) {
  if (IsLineCode(e.EntityType)) {
    const double dx = double(e.EndPoint.X) - e.StartPoint.X;
    const double dy = double(e.EndPoint.Y) - e.StartPoint.Y;
    const double dz = double(e.EndPoint.Z) - e.StartPoint.Z;
    return std::sqrt(dx * dx + dy * dy + dz * dz);
  }
  double sweep = SweepOf(e);
  if (!IsHelixCode(e.EntityType)) return e.RadiusOrTurns * sweep;
  const PlaneCoords c = InPlane(e.CenterPoint, e.Plane);
  const PlaneCoords s = InPlane(e.StartPoint, e.Plane);
  const PlaneCoords t = InPlane(e.EndPoint, e.Plane);
  const double radius = std::hypot(s.u - c.u, s.v - c.v);
  if (e.RadiusOrTurns > 1) sweep += (e.RadiusOrTurns - 1) * kTwoPi;
  const double arc = sweep * radius;
  const double travel = t.w - s.w;
  return std::sqrt(arc * arc + travel * travel);
}

}  // namespace zemtra
