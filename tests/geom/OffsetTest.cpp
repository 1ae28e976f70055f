#include <gtest/gtest.h>

#include <cmath>
#include <vector>

#include "core/RecordingHost.h"
#include "geom/GeomTestSupport.h"
#include "geom/Offset.h"

namespace zemtra {
namespace {

using test::Line;

// The counter-clockwise square (0,0)-(10,10) as four lines.
std::vector<GeoEntity> Square() {
  return {Line(0, 0, 10, 0), Line(10, 0, 10, 10), Line(10, 10, 0, 10), Line(0, 10, 0, 0)};
}

void ExpectNear(const GeoPoint& p, double x, double y) {
  EXPECT_NEAR(p.X, x, 1e-4);
  EXPECT_NEAR(p.Y, y, 1e-4);
}

TEST(Offset, SingleLineMovesToTheLeftOfTravel) {
  RecordingHost host;
  std::vector<GeoEntity> result;
  ASSERT_TRUE(PathOffsetter(2, host).OffsetPath({Line(0, 0, 10, 0)}, result));
  ASSERT_EQ(result.size(), 1u);
  ExpectNear(result[0].StartPoint, 0, 2);
  ExpectNear(result[0].EndPoint, 10, 2);
  ASSERT_TRUE(PathOffsetter(0, host).OffsetPath({Line(0, 0, 10, 0)}, result));
  ExpectNear(result[0].EndPoint, 10, 0);  // an offset of 0 copies the path
}

TEST(Offset, ClosedSquareInsideIsTrimmedOutsideGetsCornerArcs) {
  RecordingHost host;
  std::vector<GeoEntity> inside;
  ASSERT_TRUE(PathOffsetter(1, host).OffsetPath(Square(), inside));
  ASSERT_EQ(inside.size(), 4u);
  ExpectNear(inside[0].StartPoint, 1, 1);
  ExpectNear(inside[0].EndPoint, 9, 1);
  ExpectNear(inside[3].EndPoint, 1, 1);

  std::vector<GeoEntity> outside;
  ASSERT_TRUE(PathOffsetter(-1, host).OffsetPath(Square(), outside));
  ASSERT_EQ(outside.size(), 8u);
  ExpectNear(outside[0].StartPoint, 0, -1);
  ExpectNear(outside[0].EndPoint, 10, -1);
  EXPECT_EQ(outside[1].EntityType, kArcCCW);
  ExpectNear(outside[1].CenterPoint, 10, 0);
  EXPECT_FLOAT_EQ(outside[1].RadiusOrTurns, 1);
  ExpectNear(outside[1].EndPoint, 11, 0);
  EXPECT_EQ(outside[7].EntityType, kArcCCW);  // the closing corner
}

TEST(Offset, NearlyStraightNeighboursNeverGetACornerArc) {
  RecordingHost host;
  std::vector<GeoEntity> result;
  ASSERT_TRUE(PathOffsetter(-1, host).OffsetPath({Line(0, 0, 10, 0), Line(10, 0, 20, 1)}, result));
  EXPECT_EQ(result.size(), 2u);
  ExpectNear(result[0].EndPoint, result[1].StartPoint.X, result[1].StartPoint.Y);
}

// A counter-clockwise arc from (1, 0) of radius 1 whose start tangent turns `turnDegrees` from +X.
GeoEntity ArcLeavingAt(double turnDegrees) {
  const double a = turnDegrees * 3.14159265358979 / 180;
  GeoEntity arc;
  arc.EntityType = kArcCCW;
  arc.StartPoint = {1, 0, 0, 0};
  arc.CenterPoint = {static_cast<float>(1 - std::sin(a)), static_cast<float>(std::cos(a)), 0, 0};
  arc.EndPoint = {arc.CenterPoint.X + 1, arc.CenterPoint.Y, 0, 0};
  arc.RadiusOrTurns = 1;
  arc.Plane = 17;
  return arc;
}

TEST(Offset, LineAndArcAreTangentOnlyAtARightAngleToTheRadius) {
  RecordingHost host;
  PathOffsetter tangent(0.1, host);
  std::vector<GeoEntity> result;
  ASSERT_TRUE(tangent.OffsetPath({Line(0, 0, 1, 0), ArcLeavingAt(0)}, result));
  ASSERT_EQ(result.size(), 2u);  // no corner arc
  ExpectNear(result[0].EndPoint, 1, 0.1);
  ExpectNear(result[1].StartPoint, 1, 0.1);
  // Two degrees to the right is a real corner: outside it, the offset gets a corner arc.
  ASSERT_TRUE(PathOffsetter(0.1, host).OffsetPath({Line(0, 0, 1, 0), ArcLeavingAt(-2)}, result));
  ASSERT_EQ(result.size(), 3u);
  EXPECT_EQ(result[1].EntityType, kArcCW);
}

TEST(Offset, CircleOffsetInwardByItsRadiusCannotBeBuilt) {
  const GeoEntity circle = test::Entity(kArcCCW, test::P(2, 0), test::P(2, 0), {}, 2);
  RecordingHost host;
  std::vector<GeoEntity> result;
  EXPECT_FALSE(PathOffsetter(2, host).OffsetPath({circle}, result));
  EXPECT_EQ(host.lastText(), "Can't create offset arc");
  ASSERT_TRUE(PathOffsetter(-1, host).OffsetPath({circle}, result));
  EXPECT_FLOAT_EQ(result[0].RadiusOrTurns, 3);
}

TEST(RemoveLoops, CutsTheCrossingAndWhatLiesBetween) {
  // A path that crosses itself: the middle two lines form the loop.
  std::vector<GeoEntity> path = {Line(0, 0, 10, 0), Line(10, 0, 10, 2), Line(10, 2, 6, 2),
                                 Line(6, 2, 6, -3), Line(6, -3, 6, -8)};
  RemoveLoops(path);
  ASSERT_EQ(path.size(), 3u);
  ExpectNear(path[0].EndPoint, 6, 0);
  ExpectNear(path[1].StartPoint, 6, 0);
  ExpectNear(path[1].EndPoint, 6, -3);
}

TEST(OffsetSelected, SeparateRunsGiveSeparateResults) {
  GeometryTable table = test::TableOf({Line(0, 0, 10, 0), Line(50, 50, 60, 50), Line(0, 5, 10, 5)});
  table[1].Selected = table[3].Selected = 1;
  RecordingHost host;
  EXPECT_EQ(OffsetSelected(table, 1, host), 2);
  ASSERT_EQ(table.HighestIndex(), 5);
  ExpectNear(table[4].StartPoint, 0, 1);
  ExpectNear(table[5].StartPoint, 0, 6);
}

}  // namespace
}  // namespace zemtra
