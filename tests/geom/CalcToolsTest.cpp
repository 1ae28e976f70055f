#include <gtest/gtest.h>

#include <vector>

#include "core/RecordingHost.h"
#include "geom/CalcTools.h"

namespace zemtra {
namespace {

GeoEntity Entity(int type, GeoPoint start, GeoPoint end, GeoPoint center = {}, float r = 0) {
  GeoEntity e;
  e.EntityType = static_cast<std::uint8_t>(type);
  e.StartPoint = start;
  e.EndPoint = end;
  e.CenterPoint = center;
  e.RadiusOrTurns = r;
  e.Plane = 17;
  e.Selected = 1;
  return e;
}

GeometryTable TableOf(const std::vector<GeoEntity>& entities) {
  GeometryTable table;
  table.Begin();
  for (const GeoEntity& e : entities) table.Add(e);
  table.End();
  return table;
}

std::string LastMsg(const RecordingHost& host) {
  return host.statuses.empty() ? "" : host.statuses.back().second;
}

TEST(CalcIntersect, MessagesAndPointsForEachPair) {
  const GeoEntity horizontal = Entity(kFeed, {-5, 0, 0, 0}, {5, 0, 0, 0});
  const GeoEntity vertical = Entity(kFeed, {1, -5, 0, 0}, {1, 5, 0, 0});
  const GeoEntity parallel = Entity(kFeed, {-5, 2, 0, 0}, {5, 2, 0, 0});
  const GeoEntity circle = Entity(kArcCCW, {2, 0, 0, 0}, {2, 0, 0, 0}, {0, 0, 0, 0}, 2);
  const GeoEntity touching = Entity(kArcCCW, {0, 4, 0, 0}, {0, 4, 0, 0}, {0, 3, 0, 0}, 1);
  const GeoEntity rapid = Entity(kRapid, {1, -5, 0, 0}, {1, 5, 0, 0});
  struct Case {
    GeoEntity a, b;
    const char* message;
    int points;
  };
  const Case cases[] = {
      {horizontal, vertical, "Intersects at 1.0, 0.0", 1},
      {horizontal, parallel, "No intersection", 0},
      {circle, horizontal, "Intersects at 2.0, 0.0 and -2.0, 0.0", 2},
      {parallel, circle, "Tangent at 0.0, 2.0", 1},
      {circle, touching, "Tangent at 0.0, 2.0", 1},
      {horizontal, rapid, "Select 2 entities to intersect", 0},
  };
  for (const Case& c : cases) {
    GeometryTable table = TableOf({c.a, c.b});
    RecordingHost host;
    EXPECT_EQ(CalcIntersect(table, host, "0.0###"), c.points) << c.message;
    EXPECT_EQ(LastMsg(host), c.message);
    EXPECT_EQ(table.HighestIndex(), 2 + c.points);
    if (c.points > 0) {
      EXPECT_EQ(table[3].EntityType, kPoint);
    }
  }
}

TEST(CalcTools, TwoEntityCommandsRefuseThree) {
  const GeoEntity line = Entity(kFeed, {0, 0, 0, 0}, {1, 0, 0, 0});
  GeometryTable table = TableOf({line, line, line});
  RecordingHost host;
  CalcMeasure(table, host, "0.0");
  EXPECT_EQ(LastMsg(host), "Select 2 entities to measure");
  CalcIntersect(table, host, "0.0");
  EXPECT_EQ(LastMsg(host), "Select 2 entities to intersect");
  CalcBlendRadius(table, 1, host);
  EXPECT_EQ(LastMsg(host), "Select 2 lines to create blend radius");
  EXPECT_EQ(table.HighestIndex(), 3);
  EXPECT_TRUE(host.shown.empty());
}

TEST(CalcMeasure, DistancesFromFirstEndToSecondStartCountRapids) {
  GeometryTable table = TableOf(
      {Entity(kRapid, {0, 0, 0, 0}, {1, 1, 1, 0}), Entity(kFeed, {4, 5, 1, 0}, {9, 9, 9, 0})});
  RecordingHost host;
  CalcMeasure(table, host, "0.0###");
  ASSERT_EQ(host.shown.size(), 1u);
  EXPECT_EQ(host.lastText(),
            "X Distance:  3.0\r\nY Distance:  4.0\r\nZ Distance:  0.0\r\nOverall Distance:  5.0");
}

TEST(CalcBlendRadius, LeftTurnGivesACounterClockwiseTangentArc) {
  GeometryTable table = TableOf(
      {Entity(kFeed, {0, 0, 0, 0}, {10, 0, 0, 0}), Entity(kFeed, {10, 0, 0, 0}, {10, 10, 0, 0})});
  RecordingHost host;
  ASSERT_TRUE(CalcBlendRadius(table, 2, host));
  const GeoEntity& arc = table[3];
  EXPECT_EQ(arc.EntityType, kArcCCW);
  EXPECT_NEAR(arc.CenterPoint.X, 8, 1e-5);
  EXPECT_NEAR(arc.CenterPoint.Y, 2, 1e-5);
  EXPECT_NEAR(arc.StartPoint.X, 8, 1e-5);
  EXPECT_NEAR(arc.EndPoint.Y, 2, 1e-5);

  GeometryTable parallel = TableOf(
      {Entity(kFeed, {0, 0, 0, 0}, {10, 0, 0, 0}), Entity(kFeed, {0, 5, 0, 0}, {10, 5, 0, 0})});
  EXPECT_FALSE(CalcBlendRadius(parallel, 2, host));
  EXPECT_EQ(LastMsg(host), "No intersection");
}

TEST(CalcPointAtCenter, MiddlesOfLinesCentresOfArcsNothingForPoints) {
  GeometryTable table = TableOf({Entity(kFeed, {0, 0, 0, 0}, {4, 2, 2, 0}),
                                 Entity(kArcCW, {1, 0, 0, 0}, {0, 1, 0, 0}, {7, 8, 0, 0}, 1),
                                 Entity(kPoint, {3, 3, 0, 0}, {3, 3, 0, 0})});
  RecordingHost host;
  EXPECT_EQ(CalcPointAtCenter(table, host), 2);
  ASSERT_EQ(table.HighestIndex(), 5);
  EXPECT_EQ(table[4].EndPoint, (GeoPoint{2, 1, 1, 0}));
  EXPECT_EQ(table[5].EndPoint, (GeoPoint{7, 8, 0, 0}));
  for (std::int32_t i = 1; i <= 3; ++i) EXPECT_EQ(table[i].Selected, 0);
  EXPECT_EQ(CalcPointAtCenter(table, host), 0);
  EXPECT_EQ(LastMsg(host), "Select at least 1 entity");
}

}  // namespace
}  // namespace zemtra
