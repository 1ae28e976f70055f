#include <gtest/gtest.h>

#include <cmath>
#include <string>
#include <vector>

#include "dxf/DxfWriter.h"
#include "geom/Primitives.h"

namespace zemtra {
namespace {

GeoEntity Arc(int type, GeoPoint start, GeoPoint end, GeoPoint center, int plane = 17) {
  GeoEntity e;
  e.EntityType = static_cast<std::uint8_t>(type);
  e.StartPoint = start;
  e.EndPoint = end;
  e.CenterPoint = center;
  e.RadiusOrTurns = static_cast<float>(DistPlane(start, center, plane));
  e.Plane = static_cast<std::uint8_t>(plane);
  return e;
}

GeoEntity Line(int type, GeoPoint start, GeoPoint end) {
  GeoEntity e;
  e.EntityType = static_cast<std::uint8_t>(type);
  e.StartPoint = start;
  e.EndPoint = end;
  e.Plane = 17;
  return e;
}

GeometryTable TableOf(const std::vector<GeoEntity>& entities) {
  GeometryTable table;
  table.Begin();
  for (const GeoEntity& e : entities) table.Add(e);
  table.End();
  return table;
}

std::string Pairs(std::initializer_list<const char*> lines) {
  std::string text;
  for (const char* line : lines) text += std::string(line) + "\r\n";
  return text;
}

TEST(DxfWriter, EntityPairsOfEachKind) {
  const GeometryTable table = TableOf({Line(kRapid, {0, 0, 5, 0}, {1, 1, 5, 0}),
                                       Line(kFeed, {1, 1, 0, 0}, {2.5f, 1, -1, 0}),
                                       Arc(kArcCW, {0, 1, 0, 0}, {1, 0, 0, 0}, {0, 0, 0, 0}),
                                       Arc(kArcCCW, {1, 0, 0, 0}, {1, 0, 0, 0}, {0, 0, 0, 0}),
                                       Arc(kArcCCW, {0, 0, 1, 0}, {1, 0, 0, 0}, {0, 0, 0, 0}, 18)});
  std::uint32_t handle = 0x20;
  EXPECT_EQ(
      DxfEntitiesText(table, 1, table.HighestIndex(), DxfWriteOptions{}, handle),
      Pairs({" 0", "LINE", " 8", "DEFAULT", " 5", "20", " 10", "1.0", " 20", "1.0", " 30", "0.0",
             " 11", "2.5", " 21", "1.0", " 31", "-1.0",
             // the clockwise quarter from 90 to 0 degrees
             " 0", "ARC", " 8", "DEFAULT", " 5", "21", " 10", "0.0", " 20", "0.0", " 30", "0.0",
             " 40", "1.0", " 50", "0.0", " 51", "90.0",
             // ends together: a circle
             " 0", "CIRCLE", " 8", "DEFAULT", " 5", "22", " 10", "0.0", " 20", "0.0", " 30", "0.0",
             " 40", "1.0",
             // the ZX plane: angles turned by 90 degrees, normal +Y
             " 0", "ARC", " 8", "DEFAULT", " 5", "23", " 10", "0.0", " 20", "0.0", " 30", "0.0",
             " 40", "1.0", " 50", "90.0", " 51", "180.0", "210", " 0", "220", " 1", "230", " 0"}));
  EXPECT_EQ(handle, 0x24u);
}

TEST(DxfWriter, LatheLinesCarryZAsDrawingX) {
  const GeometryTable table = TableOf({Line(kFeed, {1, 0, 2, 0}, {3, 0, 4, 0})});
  std::uint32_t handle = 1;
  DxfWriteOptions options;
  options.lathe = true;
  EXPECT_EQ(DxfEntitiesText(table, 1, 1, options, handle),
            Pairs({" 0", "LINE", " 8", "DEFAULT", " 5", "1", " 10", "2.0", " 20", "1.0", " 30",
                   " 0", " 11", "4.0", " 21", "3.0", " 31", " 0"}));
}

}  // namespace
}  // namespace zemtra
