#include "geom/Primitives.h"

#include <gtest/gtest.h>

#include "geom/GeomTestSupport.h"

namespace zemtra {
namespace {

using test::Entity;
using test::P;

constexpr double kQuarterPi = 0.785398163397448;

TEST(AngleTo, DirectionsAndOctantsInEveryPlane) {
  struct Case {
    GeoPoint point;
    int plane;
    double angle;
    int octant;
  };
  const Case cases[] = {
      {P(0, 0), 17, 0, 0},  // a point seen from itself
      {P(1, 0), 17, 0, 0},
      {P(1, 1), 17, kQuarterPi, 1},
      {P(0, 1), 17, kHalfPi, 2},
      {P(-1, 1), 17, kPi - kQuarterPi, 3},
      {P(-1, 0), 17, kPi, 4},
      {P(-1, -1), 17, kPi + kQuarterPi, 5},
      {P(0, -1), 17, kThreeHalfPi, 6},
      {P(1, -1), 17, kTwoPi - kQuarterPi, 7},
      {P(0, 0, 5), 0, 0, 0},   // plane 0 is X, Y
      {P(0, 9, 1), 18, 0, 0},  // Z is the first axis of plane 18, Y its normal
      {P(1, 9, 0), 18, kHalfPi, 2},
      {P(9, 0, -1), 19, kThreeHalfPi, 6},  // Y first, Z second
      {P(9, -1, 0), 19, kPi, 4},
      {P(3, 4, 5), 5, 0, 0},  // unknown plane: no in-plane axes
  };
  const GeoPoint origin;
  for (const Case& c : cases) {
    SCOPED_TRACE(testing::Message() << "plane " << c.plane << " point " << c.point.X << ","
                                    << c.point.Y << "," << c.point.Z);
    const double angle = AngleTo(origin, c.point, c.plane);
    EXPECT_NEAR(angle, c.angle, 1e-13);
    EXPECT_EQ(Octant(origin, c.point, c.plane), c.octant);
  }
  // Axis directions are the exact constants, which Octant relies on.
  EXPECT_EQ(AngleTo(P(2, 2), P(2, 7), 17), kHalfPi);
  EXPECT_EQ(AngleTo(P(2, 2), P(-3, 2), 17), kPi);
}

TEST(Distances, ThreeDimensionalInPlaneAndArccos) {
  EXPECT_DOUBLE_EQ(Dist3(P(1, 2, 3), P(4, 6, 15)), 13.0);
  EXPECT_DOUBLE_EQ(DistPlane(P(1, 2, 3), P(4, 6, 15), 17), 5.0);
  EXPECT_DOUBLE_EQ(DistPlane(P(1, 2, 3), P(4, 6, 15), 0), 5.0);
  EXPECT_DOUBLE_EQ(DistPlane(P(0, 7, 0), P(3, 9, 4), 18), 5.0);
  EXPECT_DOUBLE_EQ(DistPlane(P(7, 0, 0), P(9, 3, 4), 19), 5.0);
  EXPECT_EQ(DistPlane(P(0, 0), P(3, 4), 20), 0.0);
  EXPECT_EQ(PlaneDistance(P(0, 0), P(3, 4), 17), 5.0);
  EXPECT_EQ(Arccos(1), 0.0);
  EXPECT_NEAR(Arccos(-0.5), 2.0943951023932, 1e-13);
}

TEST(AngleDegrees, LeftTurnsAreAboveHalfAndCountAsFlat) {
  struct Case {
    GeoPoint p2;
    double degrees;
    bool flat;
  };
  // Travel along +X to (10, 0), then on to p2.
  const Case cases[] = {
      {P(10, 10), 270, true},               // left
      {P(10, -10), 90, false},              // right
      {P(20, 0), 180, true},                // straight on
      {P(20, -0.0001f), 179.999427, true},  // a hair to the right still counts as straight
      {P(20, -0.001f), 179.994270, false},
      {P(0, 0), 0, false},  // straight back
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(testing::Message() << c.p2.X << "," << c.p2.Y);
    EXPECT_NEAR(AngleDegrees(P(0, 0), P(10, 0), c.p2, 17), c.degrees, 1e-4);
    EXPECT_EQ(IsTurnFlat(P(0, 0), P(10, 0), c.p2, 17), c.flat);
  }
  // Plane 18: from +Z turning towards +X is a left turn.
  EXPECT_TRUE(IsTurnFlat(P(0, 0, 0), P(0, 0, 10), P(10, 0, 10), 18));
  EXPECT_FALSE(IsTurnFlat(P(0, 0, 0), P(0, 0, 10), P(-10, 0, 10), 18));
}

TEST(Transformations, RotateAndScaleKeepOrDropTheOtherAxes) {
  EXPECT_POINT_NEAR(RotatePoint(P(1, 0, 5, 7), P(0, 0), 90), P(0, 1, 5, 7), 1e-7);
  EXPECT_POINT_NEAR(RotatePoint(P(0, 0, 1, 2), P(1, 1, 9, 9), 180), P(2, 2, 1, 2), 1e-6);
  EXPECT_POINT_NEAR(RotatePoint(P(3, 1), P(1, 1), -90), P(1, -1), 1e-6);
  EXPECT_POINT_NEAR(ScalePoint(P(3, 5, 7, 45), P(1, 1, 1, 1), 2), P(5, 9, 13, 0), 0);
}

TEST(EntityConversion, HelixRadiusComesFromCentreAndStart) {
  const GeoEntity helix = Entity(kHelixCCW, P(0, 3, 4), P(0, -3, 2), P(0, 0, 0), /*turns*/ -1, 19);
  const ArcRec arc = ArcFromEntity(helix);
  EXPECT_EQ(arc.Direction, kArcCCW);
  EXPECT_DOUBLE_EQ(arc.Radius, 5.0);  // Y 3, Z 4 in plane 19
}

}  // namespace
}  // namespace zemtra
