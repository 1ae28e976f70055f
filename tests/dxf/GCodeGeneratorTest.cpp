#include <gtest/gtest.h>

#include <algorithm>
#include <string>

#include "dxf/GCodeGenerator.h"
#include "geom/GeomTestSupport.h"

namespace zemtra {
namespace {

using test::CrLfLines;
using test::TableOf;

// A move in plane 17; arcs take their centre from cx, cy; `chain` is the chain number.
GeoEntity Move(int type, float x1, float y1, float x2, float y2, float cx = 0, float cy = 0,
               std::int32_t chain = 0) {
  GeoEntity e = test::Entity(type, test::P(x1, y1), test::P(x2, y2), test::P(cx, cy));
  e.LineNumber = chain;
  return e;
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

TEST(MillGCode, OneCutWithModalWordsAndArcCentresRelativeToStart) {
  const GeometryTable table =
      TableOf({Move(1, 0, 0, 2, 0), Move(3, 2, 0, 3, 1, 2, 1), Move(3, 3, 1, 2, 2, 2, 1),
               Move(0, 2, 2, 9, 9), Move(1, 2, 2, 0, 0)});
  ConvertParams p = Params(table);
  p.Header = "(HEAD)\r\n\r\nG90\r\n";
  p.Footer = "M30\r\n";
  EXPECT_EQ(
      GeometryToGCode(table, p, false, GCodeOptions{}),
      CrLfLines({"(HEAD)", "G90", "G00Z1.0", "X0.0Y0.0", "Z0.1", "G01Z-0.5F5.0", "X2.0Y0.0F20.0",
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
            CrLfLines({"G00Z1.0", "X0.0Y0.0", "G01Z-0.5F5.0", "X1.0Y0.0", "G02X2.0Y1.0I2.0J0.0",
                       "G00Z1.0", "X5.0Y5.0", "G01Z-0.5F5.0", "X6.0Y5.0", "G00Z1.0"}));
  options.joinDistance = 0;  // every entity begins a new cut: the test is a strict greater
  const std::string text = GeometryToGCode(table, p, false, options);
  EXPECT_EQ(std::count(text.begin(), text.end(), 'Z'), 3 * 2 + 1);
}

TEST(MillGCode, PointsArePositionedAndMoreFollowsLeavesTheLastRetract) {
  const GeometryTable table = TableOf({Move(4, 1, 1, 1, 1), Move(4, 2, 3, 2, 3)});
  const ConvertParams p = Params(table);
  EXPECT_EQ(GeometryToGCode(table, p, false, GCodeOptions{}),
            CrLfLines({"Z1.0", "X1.0Y1.0", "X2.0Y3.0", "G00Z1.0"}));
  const GeometryTable cut = TableOf({Move(1, 0, 0, 1, 0)});
  EXPECT_EQ(GeometryToGCode(cut, Params(cut), true, GCodeOptions{}),
            CrLfLines({"G00Z1.0", "X0.0Y0.0", "Z0.1", "G01Z-0.5F5.0", "G00X0.0Y0.0",
                       "G01X1.0Y0.0F20.0"}));
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
            CrLfLines({"G00Z1.0", "X0.0Y0.0", "G01Z-0.3F5.0", "X1.0Y0.0F20.0", "X0.0Y0.0",
                       "G00Z1.0", "X0.0Y0.0", "G01Z-0.5F5.0", "X1.0Y0.0F20.0", "X0.0Y0.0",
                       "G00Z1.0", "X5.0Y5.0", "G01Z-0.3F5.0", "X6.0Y5.0F20.0", "G00Z1.0",
                       "X5.0Y5.0", "G01Z-0.5F5.0", "X6.0Y5.0F20.0", "G00Z1.0"}));
  p.ZTop = -2;  // top below the depth: one pass at the depth
  p.LastEntity = 1;
  EXPECT_EQ(GeometryToGCode(table, p, false, GCodeOptions{}),
            CrLfLines({"G00Z1.0", "X0.0Y0.0", "G01Z-0.5F5.0", "X1.0Y0.0F20.0", "G00Z1.0"}));
}

TEST(LatheGCode, PositionsThenCutsInXAndZWithDiameters) {
  const GeoEntity line = test::Entity(kFeed, test::P(1, 0, 0), test::P(1, 0, -5));
  const GeoEntity arc =
      test::Entity(kArcCCW, test::P(1, 0, -5), test::P(2, 0, -6), test::P(2, 0, -5), 0, 18);
  const GeometryTable table = TableOf({line, arc});
  GCodeOptions options;
  options.lathe = true;
  options.diameter = true;
  EXPECT_EQ(GeometryToGCode(table, Params(table), false, options),
            CrLfLines({"X2.0Z0.0", "G01X2.0Z-5.0", "G03X4.0Z-6.0I1.0K0.0"}));
}

}  // namespace
}  // namespace zemtra
