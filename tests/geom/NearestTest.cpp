#include "geom/Nearest.h"

#include <gtest/gtest.h>

#include <cmath>

#include "geom/GeomTestSupport.h"

namespace zemtra {
namespace {

using test::Arc;
using test::P;
using test::Seg;

TEST(PointOnSegment, ToleranceAtTheEndsAndOffTheLine) {
  const LineRec line = Seg(P(0, 0, 0), P(1, 0, 0));
  EXPECT_TRUE(PointOnSegment(line, P(0.5f, 0)));
  EXPECT_TRUE(PointOnSegment(line, P(1.00005f, 0)));  // just past the end
  EXPECT_TRUE(PointOnSegment(line, P(-0.00005f, 0)));
  EXPECT_FALSE(PointOnSegment(line, P(1.0003f, 0)));
  EXPECT_FALSE(PointOnSegment(line, P(0.5f, 0.05f)));
  // Out of the plane only the 3-D test notices.
  EXPECT_FALSE(PointOnSegment(line, P(0.5f, 0, 2)));
  EXPECT_TRUE(PointOnSegmentPlane(line, P(0.5f, 0, 2), 17));
  EXPECT_FALSE(PointOnSegmentPlane(line, P(0.5f, 0, 2), 18));
}

TEST(PointInArcSweep, DirectionAndWrapPastZero) {
  // Quarter from +Y to +X: clockwise through the first quadrant, counter-clockwise the long way.
  const ArcRec cw = Arc(P(0, 1), P(1, 0), P(0, 0), 1, kArcCW);
  ArcRec ccw = cw;
  ccw.Direction = kArcCCW;
  struct Case {
    GeoPoint p;
    bool inCw;
  };
  const Case cases[] = {{P(1, 1), true}, {P(-1, -1), false}, {P(2, 0), true},
                        {P(0, 3), true}, {P(-1, 1), false},  {P(1, -1), false}};
  for (const Case& c : cases) {
    SCOPED_TRACE(testing::Message() << c.p.X << "," << c.p.Y);
    EXPECT_EQ(PointInArcSweep(cw, c.p), c.inCw);
    const bool onEnd = c.p.X == 0 || c.p.Y == 0;
    EXPECT_EQ(PointInArcSweep(ccw, c.p), onEnd || !c.inCw);
  }
  EXPECT_TRUE(PointInArcSweep(Arc(P(1, 0), P(1, 0), P(0, 0), 1, kArcCW), P(-5, -3)));
}

TEST(Nearest, FootAndDistancesToSegmentsAndArcs) {
  const LineRec line = Seg(P(0, 0, 1, 2), P(10, 0, 3, 4));
  EXPECT_EQ(FootOnLine(line, P(4, 7)), P(4, 0, 3, 4));
  EXPECT_EQ(FootOnLine(line, P(-6, 1)), P(-6, 0, 3, 4));  // beyond the start: infinite line
  EXPECT_EQ(FootOnLine(Seg(P(2, 2), P(2, 2)), P(9, 9)), P(2, 2));
  EXPECT_EQ(FootOnLine(Seg(P(0, 0, 0), P(0, 0, 10), 18), P(5, 0, 4), 18), P(0, 0, 4));

  EXPECT_DOUBLE_EQ(DistPointToSegment(line, P(5, 3)), 3.0);
  EXPECT_DOUBLE_EQ(DistPointToSegment(line, P(13, 4)), 5.0);
  EXPECT_DOUBLE_EQ(DistPointToSegment(line, P(-3, -4)), 5.0);

  const ArcRec quarter = Arc(P(0, 1), P(1, 0), P(0, 0), 1, kArcCW);
  EXPECT_NEAR(DistPointToArc(quarter, P(2, 2)), 2 * std::sqrt(2.0) - 1, 1e-12);
  EXPECT_NEAR(DistPointToArc(quarter, P(0.3f, 0.4f)), 0.5, 1e-7);
  EXPECT_NEAR(DistPointToArc(quarter, P(-3, 0)), std::sqrt(10.0), 1e-12);  // nearer end: start
}

}  // namespace
}  // namespace zemtra
