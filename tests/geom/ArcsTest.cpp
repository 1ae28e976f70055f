#include "geom/Arcs.h"

#include <gtest/gtest.h>

#include <cmath>

#include "geom/GeomTestSupport.h"

namespace zemtra {
namespace {

using test::Arc;
using test::Entity;
using test::P;

TEST(ArcSweep, DirectionWrapFullCirclesAndHelixTurns) {
  struct Case {
    const char* name;
    GeoEntity entity;
    double sweep;
  };
  const GeoPoint o;
  const Case cases[] = {
      {"cw quarter", Entity(kArcCW, P(0, 1), P(1, 0), o, 1), kHalfPi},
      {"ccw three quarters", Entity(kArcCCW, P(0, 1), P(1, 0), o, 1), kThreeHalfPi},
      {"cw coincident ends", Entity(kArcCW, P(1, 0), P(1, 0), o, 1), kTwoPi},
      {"ccw coincident ends", Entity(kArcCCW, P(0, 1), P(0, 1), o, 1), kTwoPi},
      {"plane 18 cw", Entity(kArcCW, P(1, 0, 0), P(0, 0, 1), o, 1, 18), kHalfPi},
      {"helix without turns", Entity(kHelixCCW, P(1, 0, 0), P(0, 1, -2), o, -1), kHalfPi},
      {"helix with 2 turns", Entity(kHelixCCW, P(1, 0, 0), P(0, 1, -2), o, 2),
       2 * kTwoPi + kHalfPi},
      {"closed helix, 2 turns", Entity(kHelixCW, P(1, 0, 0), P(1, 0, -2), o, 2), 2 * kTwoPi},
      {"line", Entity(kFeed, P(0, 0), P(1, 0)), 0},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.name);
    EXPECT_NEAR(ArcSweep(c.entity), c.sweep, 1e-12);
  }
  EXPECT_NEAR(ArcLength(Arc(P(0, 2), P(2, 0), P(0, 0), -2, kArcCW)), kPi, 1e-12);
}

TEST(PointOnCircle, FollowsEachPlanesAxes) {
  const GeoPoint c = P(1, 2, 3, 4);
  EXPECT_POINT_NEAR(PointOnCircle(Arc({}, {}, c, 2, kArcCW, 17), kHalfPi), P(1, 4, 3, 4), 1e-6);
  EXPECT_POINT_NEAR(PointOnCircle(Arc({}, {}, c, 2, kArcCW, 18), kHalfPi), P(3, 2, 3, 4), 1e-6);
  EXPECT_POINT_NEAR(PointOnCircle(Arc({}, {}, c, 2, kArcCW, 19), kHalfPi), P(1, 2, 5, 4), 1e-6);
  EXPECT_EQ(PointOnCircle(Arc({}, {}, c, 2, kArcCW, 7), 1.0), GeoPoint{});
}

TEST(ArcExtents, WidensOnEveryAxisTheSweepPasses) {
  struct Case {
    const char* name;
    ArcRec arc;
    GeoPoint low, high;
  };
  const GeoPoint o;
  const Case cases[] = {
      {"between two axes", Arc(P(1, 0), P(0, 1), o, 1, kArcCCW), P(0, 0), P(1, 1)},
      {"over +Y", Arc(P(0.6f, 0.8f), P(-0.6f, 0.8f), o, 1, kArcCCW), P(-0.6f, 0.8f), P(0.6f, 1)},
      {"cw the long way", Arc(P(0.6f, 0.8f), P(-0.6f, 0.8f), o, 1, kArcCW), P(-1, -1), P(1, 0.8f)},
      {"cw round within one octant", Arc(P(0.8f, 0.6f), P(0.6f, 0.8f), o, 1, kArcCW), P(-1, -1),
       P(1, 1)},
      {"full circle keeps start Z", Arc(P(12, 0, 5), P(12, 0, 5), P(10, 0, 0), 2, kArcCW),
       P(8, -2, 5), P(12, 2, 5)},
      // Plane 18: first axis Z, second X; over +X.
      {"plane 18", Arc(P(0, 0, 1), P(0, 0, -1), o, 1, kArcCCW, 18), P(0, 0, -1), P(1, 0, 1)},
      // Plane 19: first axis Y, second Z; clockwise from +Y over -Z.
      {"plane 19", Arc(P(0, 1, 0), P(0, -1, 0), o, 1, kArcCW, 19), P(0, -1, -1), P(0, 1, 0)},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.name);
    GeoPoint low, high;
    ArcExtents(c.arc, low, high);
    EXPECT_POINT_NEAR(low, c.low, 1e-6);
    EXPECT_POINT_NEAR(high, c.high, 1e-6);
  }
}

TEST(CenterFromRadius, SignAndDirectionChooseTheSide) {
  const double root3 = std::sqrt(3.0);
  struct Case {
    double radius;
    int direction;
    int plane;
    GeoPoint start, end, center;
  };
  const Case cases[] = {
      // A half circle has its centre on the chord whatever the sign.
      {0.5, kArcCW, 17, P(0, 0), P(1, 0), P(0.5f, 0)},
      {-0.5, kArcCW, 17, P(0, 0), P(1, 0), P(0.5f, 0)},
      {0.5, kArcCCW, 17, P(0, 0), P(1, 0), P(0.5f, 0)},
      {-0.5, kArcCCW, 17, P(0, 0), P(1, 0), P(0.5f, 0)},
      // Positive R clockwise is the minor arc, centre to the right of the chord.
      {2, kArcCW, 17, P(0, 0, 3), P(2, 0, 3), P(1, float(-root3), 3)},
      {2, kArcCCW, 17, P(0, 0), P(2, 0), P(1, float(root3))},
      {-2, kArcCW, 17, P(0, 0), P(2, 0), P(1, float(root3))},
      {-2, kArcCCW, 17, P(0, 0), P(2, 0), P(1, float(-root3))},
      // Plane 18 along +Z: right of the chord is -X. Plane 19 along +Y: right is -Z.
      {2, kArcCW, 18, P(0, 4, 0), P(0, 4, 2), P(float(-root3), 4, 1)},
      {2, kArcCW, 19, P(4, 0, 0), P(4, 2, 0), P(4, 1, float(-root3))},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(testing::Message()
                 << "R " << c.radius << " G" << c.direction << " plane " << c.plane);
    EXPECT_POINT_NEAR(CenterFromRadius(c.start, c.end, c.radius, c.direction, c.plane), c.center,
                      1e-6);
    ArcRec arc = Arc(c.start, c.end, c.start, c.radius, c.direction, c.plane);
    ArcCenterFromRadius(arc);
    EXPECT_POINT_NEAR(arc.Center, c.center, 1e-6);
    EXPECT_EQ(arc.Radius, std::fabs(c.radius));
  }
}

TEST(CenterFromRadius, DegenerateChords) {
  // Coincident ends: the centre is the start and nothing else is touched.
  ArcRec arc = Arc(P(1, 1, 5), P(1, 1, 7), P(9, 9, 9), -1, kArcCW);
  ArcCenterFromRadius(arc);
  EXPECT_EQ(arc.Center, P(1, 1, 5));
  EXPECT_EQ(arc.Radius, -1);
  // A radius a little short of half the chord still yields a centre, at r from the start.
  const GeoPoint center = CenterFromRadius(P(0, 0), P(2, 0), 0.999, kArcCW, 17);
  EXPECT_NEAR(DistPlane(P(0, 0), center, 17), 0.999, 1e-6);
}

}  // namespace
}  // namespace zemtra
