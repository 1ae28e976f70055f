#include <gtest/gtest.h>

#include <vector>

#include "core/RecordingHost.h"
#include "geom/CalcTools.h"
#include "geom/GeomTestSupport.h"

namespace zemtra {
namespace {

using test::Entity;
using test::P;

// A table of `entities`, all selected: the commands work on the selection.
GeometryTable SelectedTable(const std::vector<GeoEntity>& entities) {
  GeometryTable table = test::TableOf(entities);
  for (std::int32_t i = 1; i <= table.HighestIndex(); ++i) table[i].Selected = 1;
  return table;
}

std::string LastMsg(const RecordingHost& host) {
  return host.statuses.empty() ? "" : host.statuses.back().second;
}

TEST(CalcIntersect, MessagesAndPointsForEachPair) {
  const GeoEntity horizontal = Entity(kFeed, P(-5, 0), P(5, 0));
  const GeoEntity vertical = Entity(kFeed, P(1, -5), P(1, 5));
  const GeoEntity parallel = Entity(kFeed, P(-5, 2), P(5, 2));
  const GeoEntity circle = Entity(kArcCCW, P(2, 0), P(2, 0), P(0, 0), 2);
  const GeoEntity touching = Entity(kArcCCW, P(0, 4), P(0, 4), P(0, 3), 1);
  const GeoEntity rapid = Entity(kRapid, P(1, -5), P(1, 5));
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
    GeometryTable table = SelectedTable({c.a, c.b});
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
  const GeoEntity line = Entity(kFeed, P(0, 0), P(1, 0));
  GeometryTable table = SelectedTable({line, line, line});
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
  GeometryTable table =
      SelectedTable({Entity(kRapid, P(0, 0), P(1, 1, 1)), Entity(kFeed, P(4, 5, 1), P(9, 9, 9))});
  RecordingHost host;
  CalcMeasure(table, host, "0.0###");
  ASSERT_EQ(host.shown.size(), 1u);
  EXPECT_EQ(host.lastText(),
            "X Distance:  3.0\r\nY Distance:  4.0\r\nZ Distance:  0.0\r\nOverall Distance:  5.0");
}

TEST(CalcBlendRadius, LeftTurnGivesACounterClockwiseTangentArc) {
  GeometryTable table =
      SelectedTable({Entity(kFeed, P(0, 0), P(10, 0)), Entity(kFeed, P(10, 0), P(10, 10))});
  RecordingHost host;
  ASSERT_TRUE(CalcBlendRadius(table, 2, host));
  const GeoEntity& arc = table[3];
  EXPECT_EQ(arc.EntityType, kArcCCW);
  EXPECT_NEAR(arc.CenterPoint.X, 8, 1e-5);
  EXPECT_NEAR(arc.CenterPoint.Y, 2, 1e-5);
  EXPECT_NEAR(arc.StartPoint.X, 8, 1e-5);
  EXPECT_NEAR(arc.EndPoint.Y, 2, 1e-5);

  GeometryTable parallel =
      SelectedTable({Entity(kFeed, P(0, 0), P(10, 0)), Entity(kFeed, P(0, 5), P(10, 5))});
  EXPECT_FALSE(CalcBlendRadius(parallel, 2, host));
  EXPECT_EQ(LastMsg(host), "No intersection");
}

TEST(CalcPointAtCenter, MiddlesOfLinesCentresOfArcsNothingForPoints) {
  GeometryTable table = SelectedTable({Entity(kFeed, P(0, 0), P(4, 2, 2)),
                                       Entity(kArcCW, P(1, 0), P(0, 1), P(7, 8), 1),
                                       Entity(kPoint, P(3, 3), P(3, 3))});
  RecordingHost host;
  EXPECT_EQ(CalcPointAtCenter(table, host), 2);
  ASSERT_EQ(table.HighestIndex(), 5);
  EXPECT_EQ(table[4].EndPoint, P(2, 1, 1));
  EXPECT_EQ(table[5].EndPoint, P(7, 8));
  for (std::int32_t i = 1; i <= 3; ++i) EXPECT_EQ(table[i].Selected, 0);
  EXPECT_EQ(CalcPointAtCenter(table, host), 0);
  EXPECT_EQ(LastMsg(host), "Select at least 1 entity");
}

}  // namespace
}  // namespace zemtra
