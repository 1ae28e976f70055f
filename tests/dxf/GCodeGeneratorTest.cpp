#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "dxf/GCodeGenerator.h"

namespace zemtra {
namespace {

GeoEntity Move(int type, float x1, float y1, float x2, float y2, float cx = 0, float cy = 0,
               std::int32_t chain = 0) {
  GeoEntity e;
  e.EntityType = static_cast<std::uint8_t>(type);
  e.StartPoint = {x1, y1, 0, 0};
  e.EndPoint = {x2, y2, 0, 0};
  e.CenterPoint = {cx, cy, 0, 0};
  e.Plane = 17;
  e.LineNumber = chain;
  return e;
}

GeometryTable TableOf(const std::vector<GeoEntity>& entities) {
  GeometryTable table;
  table.Begin();
  for (const GeoEntity& e : entities) table.Add(e);
  table.End();
  return table;
}

ConvertParams Params(const GeometryTable& table) {
  ConvertParams p;
  p.FirstEntity = 1;
  p.LastEntity = table.HighestIndex();
  p.ZRetract = 1;
  p.ZApproach = 0.1;
  p.ZDepth = -0.5;
  p.FeedRate = 20;
  p.PlungeRate = 5;
  p.ZTop = 0;
  p.ZIncrement = 0.25;
  return p;
}

std::string Lines(std::initializer_list<const char*> lines) {
  std::string text;
  for (const char* line : lines) text += std::string(line) + "\r\n";
  return text;
}

TEST(MillGCode, OneCutWithModalWordsAndArcCentresRelativeToStart) {
  const GeometryTable table =
      TableOf({Move(1, 0, 0, 2, 0), Move(3, 2, 0, 3, 1, 2, 1), Move(3, 3, 1, 2, 2, 2, 1),
               Move(0, 2, 2, 9, 9), Move(1, 2, 2, 0, 0)});
  ConvertParams p = Params(table);
  p.Header = "(HEAD)\r\n\r\nG90\r\n";
  p.Footer = "M30\r\n";
  EXPECT_EQ(GeometryToGCode(table, p, false, GCodeOptions{}),
            Lines({"(HEAD)", "G90", "G00Z1.0", "X0.0Y0.0", "Z0.1", "G01Z-0.5F5.0", "X2.0Y0.0F20.0",
                   "G03X3.0Y1.0I0.0J1.0", "X2.0Y2.0I-1.0J0.0", "G01X0.0Y0.0", "G00Z1.0", "M30"}));
}

TEST(MillGCode, GapsRetractApproachIsSkippedOutsideItsRangeAndAbsoluteCentres) {
  const GeometryTable table =
      TableOf({Move(1, 0, 0, 1, 0), Move(2, 1.002f, 0, 2, 1, 2, 0), Move(1, 5, 5, 6, 5)});
  ConvertParams p = Params(table);
  p.ZApproach = p.ZRetract;   // no approach line
  p.FeedRate = p.PlungeRate;  // F only on the plunge
  GCodeOptions options;
  options.absoluteCenters = true;
  EXPECT_EQ(GeometryToGCode(table, p, false, options),
            Lines({"G00Z1.0", "X0.0Y0.0", "G01Z-0.5F5.0", "X1.0Y0.0", "G02X2.0Y1.0I2.0J0.0",
                   "G00Z1.0", "X5.0Y5.0", "G01Z-0.5F5.0", "X6.0Y5.0", "G00Z1.0"}));
  options.joinDistance = 0;  // every entity begins a new cut: the test is a strict greater
  const std::string text = GeometryToGCode(table, p, false, options);
  EXPECT_EQ(std::count(text.begin(), text.end(), 'Z'), 3 * 2 + 1);
}

TEST(MillGCode, PointsArePositionedAndMoreFollowsLeavesTheLastRetract) {
  const GeometryTable table = TableOf({Move(4, 1, 1, 1, 1), Move(4, 2, 3, 2, 3)});
  const ConvertParams p = Params(table);
  EXPECT_EQ(GeometryToGCode(table, p, false, GCodeOptions{}),
            Lines({"Z1.0", "X1.0Y1.0", "X2.0Y3.0", "G00Z1.0"}));
  const GeometryTable cut = TableOf({Move(1, 0, 0, 1, 0)});
  EXPECT_EQ(
      GeometryToGCode(cut, Params(cut), true, GCodeOptions{}),
      Lines({"G00Z1.0", "X0.0Y0.0", "Z0.1", "G01Z-0.5F5.0", "G00X0.0Y0.0", "G01X1.0Y0.0F20.0"}));
}

TEST(MillGCode, DepthStepsChainByChainDownToTheDepth) {
  // A closed square chain and an open chain.
  const GeometryTable table = TableOf(
      {Move(1, 0, 0, 1, 0, 0, 0, 1), Move(1, 1, 0, 0, 0, 0, 0, 1), Move(1, 5, 5, 6, 5, 0, 0, 2)});
  ConvertParams p = Params(table);
  p.EnableZIncrement = -1;
  p.ZIncrement = -0.3;  // its size counts: passes at -0.3 and -0.5
  p.ZApproach = 1;
  EXPECT_EQ(GeometryToGCode(table, p, false, GCodeOptions{}),
            Lines({"G00Z1.0", "X0.0Y0.0", "G01Z-0.3F5.0", "X1.0Y0.0F20.0", "X0.0Y0.0", "G00Z1.0",
                   "X0.0Y0.0", "G01Z-0.5F5.0", "X1.0Y0.0F20.0", "X0.0Y0.0", "G00Z1.0", "X5.0Y5.0",
                   "G01Z-0.3F5.0", "X6.0Y5.0F20.0", "G00Z1.0", "X5.0Y5.0", "G01Z-0.5F5.0",
                   "X6.0Y5.0F20.0", "G00Z1.0"}));
  p.ZTop = -2;  // top below the depth: one pass at the depth
  p.LastEntity = 1;
  EXPECT_EQ(GeometryToGCode(table, p, false, GCodeOptions{}),
            Lines({"G00Z1.0", "X0.0Y0.0", "G01Z-0.5F5.0", "X1.0Y0.0F20.0", "G00Z1.0"}));
}

TEST(LatheGCode, PositionsThenCutsInXAndZWithDiameters) {
  GeoEntity line = Move(1, 0, 0, 0, 0);
  line.StartPoint = {1, 0, 0, 0};
  line.EndPoint = {1, 0, -5, 0};
  GeoEntity arc = Move(3, 0, 0, 0, 0);
  arc.StartPoint = {1, 0, -5, 0};
  arc.EndPoint = {2, 0, -6, 0};
  arc.CenterPoint = {2, 0, -5, 0};
  arc.Plane = 18;
  const GeometryTable table = TableOf({line, arc});
  GCodeOptions options;
  options.lathe = true;
  options.diameter = true;
  EXPECT_EQ(GeometryToGCode(table, Params(table), false, options),
            Lines({"X2.0Z0.0", "G01X2.0Z-5.0", "G03X4.0Z-6.0I1.0K0.0"}));
}

}  // namespace
}  // namespace zemtra
