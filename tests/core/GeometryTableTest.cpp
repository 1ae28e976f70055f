#include "core/GeometryTable.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstring>

namespace zemtra {
namespace {

GeoEntity Line(float x0, float x1) {
  GeoEntity e;
  e.EntityType = kFeed;
  e.StartPoint.X = x0;
  e.EndPoint.X = x1;
  return e;
}

TEST(GeometryTable, EndsEmptyOrWithEveryStartOnThePreviousEnd) {
  GeometryTable table;
  table.Begin();
  table.End();  // nothing added: an empty table
  EXPECT_EQ(table.HighestIndex(), 0);
  EXPECT_EQ(table.GeoLast, 0);
  table.Begin();
  for (int i = 0; i < 1200; ++i) {
    table.Current().EntityType = kFeed;
    table.Current().EndPoint.X = float(i) + 0.1f;
    table.Advance();
  }
  table.End();
  ASSERT_EQ(table.HighestIndex(), 1200);
  EXPECT_EQ(table.GeoLast, 1200);
  for (int i = 2; i <= 1200; ++i) {
    EXPECT_EQ(std::memcmp(&table[i].StartPoint, &table[i - 1].EndPoint, sizeof(GeoPoint)), 0);
  }
}

TEST(GeometryTable, ReservedRoomIsFilledWithoutMovingTheTable) {
  GeometryTable table;
  table.Begin();
  table.Reserve(1500);
  const GeoEntity* const first = table.data();
  for (int i = 0; i < 1500; ++i) {
    table.Current().EntityType = kFeed;
    table.Current().EndPoint.X = float(i);
    table.Advance();
  }
  EXPECT_EQ(table.data(), first);
  table.End();
  ASSERT_EQ(table.HighestIndex(), 1500);
  EXPECT_EQ(table[1500].StartPoint.X, 1498.0f);
  EXPECT_EQ(table[1500].EndPoint.X, 1499.0f);
}

TEST(GeometryTable, InsertBeforeLastRepairsTheChain) {
  GeometryTable table;
  table.Begin();
  table.Add(Line(0, 10));
  table.Current() = Line(10, 20);  // being filled, not yet advanced past
  GeoEntity corner = Line(9, 11);
  table.InsertBeforeLast(corner);
  table.Advance();
  table.End();
  ASSERT_EQ(table.HighestIndex(), 3);
  EXPECT_EQ(table[1].EndPoint.X, 9.0f);
  EXPECT_EQ(table[2].StartPoint.X, 9.0f);
  EXPECT_EQ(table[2].EndPoint.X, 11.0f);
  EXPECT_EQ(table[3].StartPoint.X, 11.0f);
  EXPECT_EQ(table[3].EndPoint.X, 20.0f);
}

TEST(EntityLength, LinesArcsAndHelixes) {
  GeoEntity line = Line(0, 3);
  line.EndPoint.Y = 4;
  EXPECT_DOUBLE_EQ(EntityLength(line), 5.0);

  GeoEntity quarter;  // clockwise from (0,1) to (1,0) about the origin
  quarter.EntityType = kArcCW;
  quarter.Plane = 17;
  quarter.StartPoint.Y = 1;
  quarter.EndPoint.X = 1;
  quarter.RadiusOrTurns = 1;
  EXPECT_NEAR(EntityLength(quarter), 6.28318530717959 / 4, 1e-12);

  GeoEntity full = quarter;  // start equals end: a full circle
  full.EndPoint = full.StartPoint;
  full.EntityType = kArcCCW;
  EXPECT_NEAR(EntityLength(full), 6.28318530717959, 1e-12);

  GeoEntity helix = full;  // two turns, 3 units of travel
  helix.EntityType = kHelixCCW;
  helix.RadiusOrTurns = 2;
  helix.EndPoint.Z = 3;
  const double sweep = 6.28318530717959 + 6.28318530717959;
  EXPECT_NEAR(EntityLength(helix), std::sqrt(sweep * sweep + 9.0), 1e-9);
}

}  // namespace
}  // namespace zemtra
