#pragma once
// Small builders shared by the geometry and drawing-exchange tests.
#include <initializer_list>
#include <string>
#include <vector>

#include "core/GeoTypes.h"
#include "core/GeometryTable.h"
#include "geom/Primitives.h"

namespace zemtra::test {

inline GeoPoint P(float x, float y, float z = 0, float a = 0) {
  return {x, y, z, a};
}

inline LineRec Seg(GeoPoint start, GeoPoint end, int plane = 17) {
  return {start, end, static_cast<std::uint8_t>(plane)};
}

inline ArcRec Arc(GeoPoint start, GeoPoint end, GeoPoint center, double radius, int direction,
                  int plane = 17) {
  ArcRec arc;
  arc.Start = start;
  arc.End = end;
  arc.Center = center;
  arc.Radius = radius;
  arc.Direction = static_cast<std::int16_t>(direction);
  arc.Plane = static_cast<std::uint8_t>(plane);
  return arc;
}

inline GeoEntity Entity(int type, GeoPoint start, GeoPoint end, GeoPoint center = {},
                        float radiusOrTurns = 0, int plane = 17) {
  GeoEntity e;
  e.EntityType = static_cast<std::uint8_t>(type);
  e.StartPoint = start;
  e.EndPoint = end;
  e.CenterPoint = center;
  e.RadiusOrTurns = radiusOrTurns;
  e.Plane = static_cast<std::uint8_t>(plane);
  return e;
}

// A feed line in plane 17 at height z.
inline GeoEntity Line(float x1, float y1, float x2, float y2, float z = 0) {
  return Entity(kFeed, P(x1, y1, z), P(x2, y2, z));
}

// Makes `table` hold `entities` from index 1 on.
inline void Fill(GeometryTable& table, const std::vector<GeoEntity>& entities) {
  table.Begin();
  for (const GeoEntity& e : entities) table.Add(e);
  table.End();
}

// A table holding `entities` from index 1 on.
inline GeometryTable TableOf(const std::vector<GeoEntity>& entities) {
  GeometryTable table;
  Fill(table, entities);
  return table;
}

// `lines`, each ended by CR LF as the writers end them.
inline std::string CrLfLines(std::initializer_list<const char*> lines) {
  std::string text;
  for (const char* line : lines) text += std::string(line) + "\r\n";
  return text;
}

}  // namespace zemtra::test

// Compares X, Y, Z, A of two points within `tol`.
#define EXPECT_POINT_NEAR(actual, expected, tol) \
  do {                                           \
    const ::zemtra::GeoPoint a_ = (actual);      \
    const ::zemtra::GeoPoint e_ = (expected);    \
    EXPECT_NEAR(a_.X, e_.X, tol) << "X";         \
    EXPECT_NEAR(a_.Y, e_.Y, tol) << "Y";         \
    EXPECT_NEAR(a_.Z, e_.Z, tol) << "Z";         \
    EXPECT_NEAR(a_.A, e_.A, tol) << "A";         \
  } while (0)
