#include "view/EntityChords.h"

#include <gtest/gtest.h>

#include <cmath>
#include <vector>

#include "view/ViewTestSupport.h"

namespace zemtra {
namespace {

using test::Arc;
using test::Line;
using test::P;

struct PointSink {
  std::vector<GeoPoint> points;  // every point, the path's start included
  int moves = 0;
  void MoveTo(const GeoPoint& p) {
    ++moves;
    points.push_back(p);
  }
  void LineTo(const GeoPoint& p) { points.push_back(p); }
};

TEST(RapidChords, EachStyleFollowsItsMachinePath) {
  struct Case {
    const char* name;
    int style;
    GeoPoint from, to;
    std::vector<GeoPoint> path;
  };
  // Styles: 0 straight, 1 every axis at equal speed, 2 XY and Z in the safe order.
  const Case cases[] = {
      {"straight", 0, P(0, 0, 0), P(10, 4, 2), {P(0, 0, 0), P(10, 4, 2)}},
      {"45 degrees first", 1, P(0, 0), P(10, 4), {P(0, 0), P(4, 4), P(10, 4)}},
      {"negative directions", 1, P(10, 10), P(0, 7), {P(10, 10), P(7, 7), P(0, 7)}},
      {"3 axes, then 2", 1, P(0, 0), P(10, 4, 2), {P(0, 0), P(2, 2, 2), P(4, 4, 2), P(10, 4, 2)}},
      {"X and Z", 1, P(0, 0), P(3, 0, -5), {P(0, 0), P(3, 0, -3), P(3, 0, -5)}},
      {"one axis", 1, P(0, 0), P(0, 0, -5), {P(0, 0), P(0, 0, -5)}},
      {"down: XY first", 2, P(0, 0, 5), P(10, 4, 0), {P(0, 0, 5), P(10, 4, 5), P(10, 4, 0)}},
      {"up: Z first", 2, P(0, 0, 0), P(10, 4, 5), {P(0, 0, 0), P(0, 0, 5), P(10, 4, 5)}},
      {"level", 2, P(0, 0, 1), P(10, 4, 1), {P(0, 0, 1), P(10, 4, 1)}},
  };
  for (const Case& c : cases) {
    PointSink sink;
    RapidChords(Line(kRapid, c.from, c.to), c.style, sink);
    EXPECT_EQ(sink.points, c.path) << c.name;
    EXPECT_EQ(sink.moves, 1) << c.name;
  }
}

TEST(FeedChords, RotaryTravelIsCutEveryFiveDegrees) {
  PointSink small;
  FeedChords(Line(kFeed, P(0, 0, 0, 0), P(10, 0, 0, 4)), small);
  EXPECT_EQ(small.points, (std::vector<GeoPoint>{P(0, 0, 0, 0), P(10, 0, 0, 4)}));
  PointSink turning;
  FeedChords(Line(kFeed, P(0, 0, 0, 0), P(12, 0, 0, -12)), turning);
  EXPECT_EQ(turning.points, (std::vector<GeoPoint>{P(0, 0, 0, 0), P(5, 0, 0, -5), P(10, 0, 0, -10),
                                                   P(12, 0, 0, -12)}));
}

double Radius(const GeoPoint& p, const GeoPoint& c) {
  return std::hypot(double(p.X) - c.X, double(p.Y) - c.Y);
}

TEST(ArcChords, EndsAtTheSameAngleMakeAWholeCircle) {
  const GeoPoint c = P(0, 0);
  for (int type : {kArcCW, kArcCCW}) {
    PointSink sink;
    ArcChords(Arc(type, P(1, 0), P(1, 0), c, 1), 1000, kPaintArcSteps, sink);
    // Start, the first angle again, 25 steps of 0.26 around, and the exact end.
    ASSERT_EQ(sink.points.size(), 28u) << type;
    double turned = 0;
    for (std::size_t i = 1; i < sink.points.size(); ++i) {
      EXPECT_NEAR(Radius(sink.points[i], c), 1, 1e-6);
      const double a = std::atan2(sink.points[i - 1].Y, sink.points[i - 1].X);
      const double b = std::atan2(sink.points[i].Y, sink.points[i].X);
      turned += std::remainder(b - a, 2 * M_PI);
    }
    EXPECT_NEAR(std::fabs(turned), 2 * M_PI, 1e-6) << type;
    EXPECT_EQ(turned < 0, type == kArcCW);
    EXPECT_EQ(sink.points.back(), P(1, 0));
  }
}

TEST(ArcChords, QuarterArcsRunTheirOwnWayAndTheStepFollowsTheZoom) {
  PointSink ccw;
  ArcChords(Arc(kArcCCW, P(1, 0), P(0, 1), P(0, 0), 1), 1000, kPaintArcSteps, ccw);
  ASSERT_EQ(ccw.points.size(), 9u);  // start, angles 0 to 1.56, end
  for (std::size_t i = 1; i < ccw.points.size(); ++i) {
    EXPECT_GE(ccw.points[i].Y, ccw.points[i - 1].Y);
  }
  PointSink cw;
  ArcChords(Arc(kArcCW, P(0, 1), P(1, 0), P(0, 0), 1), 1000, kPaintArcSteps, cw);
  ASSERT_EQ(cw.points.size(), 9u);
  EXPECT_GT(cw.points[3].X, 0);  // the short way, through the first quadrant
  // Zoomed far in the step falls to its floor of 0.05: about 126 chords a circle.
  PointSink fine;
  ArcChords(Arc(kArcCW, P(10, 0), P(10, 0), P(0, 0), 10), 1, kPaintArcSteps, fine);
  EXPECT_EQ(fine.points.size(), 1u + 1u + 126u + 1u);
  // A zero radius does not stall.
  PointSink none;
  ArcChords(Arc(kArcCW, P(0, 0), P(0, 0), P(0, 0), 0), 1, kPaintArcSteps, none);
  EXPECT_LT(none.points.size(), 200u);
}

TEST(ArcChords, OtherPlanesKeepTheNormalAxisOfTheStart) {
  // Plane 18 (Z, X): Z = cz + r cos a, X = cx + r sin a; Y stays.
  PointSink sink;
  ArcChords(Arc(kArcCCW, P(0, 7, 2), P(2, 7, 0), P(0, 7, 0), 2, 18), 1000, kPaintArcSteps, sink);
  for (const GeoPoint& p : sink.points) {
    EXPECT_EQ(p.Y, 7);
    EXPECT_NEAR(std::hypot(p.Z, p.X), 2, 1e-6);
  }
  EXPECT_EQ(sink.points.back(), P(2, 7, 0));
}

TEST(HelixChords, TurnsAreCountedAndTheDepthTravelsLinearly) {
  // Two turns down three units, counter-clockwise, from and to angle 0.
  GeoEntity helix = Arc(kHelixCCW, P(1, 0, 0), P(1, 0, -3), P(0, 0, 0), 2);
  PointSink sink;
  HelixChords(helix, 1000, kPaintArcSteps, sink);
  // 4 pi at 0.26 a step: 49 points, plus the start and the exact end.
  ASSERT_EQ(sink.points.size(), 51u);
  for (std::size_t i = 1; i < sink.points.size(); ++i) {
    EXPECT_LE(sink.points[i].Z, sink.points[i - 1].Z);
    EXPECT_NEAR(Radius(sink.points[i], P(0, 0)), 1, 1e-6);
  }
  EXPECT_NEAR(sink.points[25].Z, -3.0 * 24 * 0.26 / (4 * M_PI), 1e-6);
  EXPECT_EQ(sink.points.back(), P(1, 0, -3));
  // Without a turn count a helix whose ends meet in the plane makes one turn.
  helix.RadiusOrTurns = -1;
  PointSink once;
  HelixChords(helix, 1000, kPaintArcSteps, once);
  EXPECT_EQ(once.points.size(), 1u + 25u + 1u);
  // A clockwise helix from angle 0 walks down from a full turn.
  helix.EntityType = kHelixCW;
  helix.EndPoint = P(0, -1, -1);  // a quarter turn clockwise
  PointSink cw;
  HelixChords(helix, 1000, kPaintArcSteps, cw);
  EXPECT_EQ(cw.points.size(), 1u + 7u + 1u);
  EXPECT_LT(cw.points[2].Y, 0);
}

TEST(EntityVisibility, HiddenRapidsAndDownwardPlunges) {
  DrawSwitches switches;
  switches.ShowRapid = false;
  switches.ShowPlunge = false;
  EXPECT_FALSE(IsEntityShown(Line(kRapid, P(0, 0), P(1, 1)), switches));
  EXPECT_FALSE(IsEntityShown(Line(kFeed, P(1, 1, 5), P(1, 1, 0)), switches));
  EXPECT_TRUE(IsEntityShown(Line(kFeed, P(1, 1, 0), P(1, 1, 5)), switches));
  EXPECT_TRUE(IsEntityShown(Line(kFeed, P(1, 1, 5), P(1.001f, 1, 0)), switches));
  EXPECT_TRUE(IsEntityShown(Arc(kArcCW, P(1, 0), P(1, 0), P(0, 0), 1), switches));
  switches = DrawSwitches{};
  EXPECT_TRUE(IsEntityShown(Line(kRapid, P(0, 0), P(1, 1)), switches));
  EXPECT_TRUE(IsEntityShown(Line(kFeed, P(1, 1, 5), P(1, 1, 0)), switches));
}

}  // namespace
}  // namespace zemtra
