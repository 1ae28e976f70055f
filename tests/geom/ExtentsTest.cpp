#include "geom/Extents.h"

#include <gtest/gtest.h>

#include "geom/GeomTestSupport.h"

namespace zemtra {
namespace {

using test::Entity;
using test::P;

TEST(ComputeExtents, EmptyTableGivesTheZeroBox) {
  GeometryTable table = test::TableOf({});
  table.GeoMin = P(5, 5, 5, 5);
  table.GeoMax = P(6, 6, 6, 6);
  ComputeExtents(table);
  EXPECT_EQ(table.GeoMin, GeoPoint{});
  EXPECT_EQ(table.GeoMax, GeoPoint{});
}

TEST(ComputeExtents, CoversLinesArcsHelixesAndPointsButNotUnknownTypes) {
  GeometryTable table = test::TableOf({
      Entity(kRapid, P(-1, 2, 3, 0), P(4, 5, 6, 90)),
      Entity(kArcCW, P(12, 0, 0), P(12, 0, 0), P(10, 0, 0), 2),  // full circle
      Entity(9, P(-500, -500, -500), P(500, 500, 500)),          // never drawn
      Entity(kPoint, P(-100, -100, -100), P(0, 0, 40)),          // only its end counts
  });
  ComputeExtents(table);
  EXPECT_EQ(table.GeoMin, P(-1, -2, 0, 0));
  EXPECT_EQ(table.GeoMax, P(12, 5, 40, 90));
}

TEST(EntityExtents, HelixSpansTheWholeCircleOnceItTurns) {
  const GeoPoint o;
  GeoPoint low, high;
  // A quarter turn down in Z stays in the first quadrant.
  ASSERT_TRUE(EntityExtents(Entity(kHelixCCW, P(1, 0, 0), P(0, 1, -2), o, -1), low, high));
  EXPECT_POINT_NEAR(low, P(0, 0, -2), 1e-6);
  EXPECT_POINT_NEAR(high, P(1, 1, 0), 1e-6);
  // With one more turn it covers the circle.
  ASSERT_TRUE(EntityExtents(Entity(kHelixCCW, P(1, 0, 0), P(0, 1, -2), o, 1), low, high));
  EXPECT_POINT_NEAR(low, P(-1, -1, -2), 1e-6);
  EXPECT_POINT_NEAR(high, P(1, 1, 0), 1e-6);
  // Plane 19 helix travelling along X, radius from centre to start (Y 0, Z 3).
  ASSERT_TRUE(EntityExtents(Entity(kHelixCW, P(0, 0, 3), P(5, 0, 3), o, -1, 19), low, high));
  EXPECT_POINT_NEAR(low, P(0, -3, -3), 1e-6);
  EXPECT_POINT_NEAR(high, P(5, 3, 3), 1e-6);
}

}  // namespace
}  // namespace zemtra
