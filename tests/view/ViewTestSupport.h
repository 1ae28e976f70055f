#pragma once
// Small builders for the viewport's tests: points, entities and tables.
#include <initializer_list>

#include "core/GeoTypes.h"
#include "core/GeometryTable.h"

namespace zemtra::test {

inline GeoPoint P(float x, float y, float z = 0, float a = 0) {
  return GeoPoint{x, y, z, a};
}

inline GeoEntity Line(int type, GeoPoint from, GeoPoint to, int colorIndex = 1) {
  GeoEntity e;
  e.EntityType = static_cast<std::uint8_t>(type);
  e.StartPoint = from;
  e.EndPoint = to;
  e.Plane = 17;
  e.ColorIndex = static_cast<std::uint8_t>(colorIndex);
  return e;
}

inline GeoEntity Arc(int type, GeoPoint from, GeoPoint to, GeoPoint center, float radiusOrTurns,
                     int plane = 17) {
  GeoEntity e = Line(type, from, to, type);
  e.CenterPoint = center;
  e.RadiusOrTurns = radiusOrTurns;
  e.Plane = static_cast<std::uint8_t>(plane);
  return e;
}

inline void Fill(GeometryTable& table, std::initializer_list<GeoEntity> entities) {
  table.Begin();
  for (const GeoEntity& e : entities) table.Add(e);
  table.End();
}

}  // namespace zemtra::test
