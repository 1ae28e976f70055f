#include "geom/Intersect.h"

#include <gtest/gtest.h>

#include "geom/GeomTestSupport.h"

namespace zemtra {
namespace {

using test::Arc;
using test::P;
using test::Seg;

const GeoPoint kUntouched = P(-777, -777, -777, -777);

TEST(IntersectLines, CrossingParallelAndDegenerate) {
  GeoPoint p = kUntouched;
  EXPECT_EQ(IntersectLines(Seg(P(0, 0), P(2, 2, 3, 9)), Seg(P(0, 2, 8), P(2, 0, 8)), p, 17), -1);
  EXPECT_EQ(p, P(1, 1, 3, 9));  // Z and A from the first line's end
  // The lines are infinite: segments that stop short still meet.
  EXPECT_EQ(IntersectLines(Seg(P(0, 0), P(1, 0)), Seg(P(5, 5), P(5, 4)), p, 17), -1);
  EXPECT_EQ(p, P(5, 0));
  // Plane 19 works in Y, Z; X comes from the first line's end.
  EXPECT_EQ(IntersectLines(Seg(P(7, 0, 0), P(7, 4, 0)), Seg(P(0, 2, -1), P(0, 2, 1)), p, 19), -1);
  EXPECT_EQ(p, P(7, 2, 0));

  p = kUntouched;
  EXPECT_EQ(IntersectLines(Seg(P(0, 0), P(1, 0)), Seg(P(0, 1), P(5, 1)), p, 17), 0);
  EXPECT_EQ(IntersectLines(Seg(P(0, 0), P(1, 1)), Seg(P(2, 2), P(3, 3)), p, 17), 0);
  EXPECT_EQ(IntersectLines(Seg(P(1, 1), P(1, 1)), Seg(P(0, 2), P(5, 1)), p, 17), 0);
  EXPECT_EQ(p, kUntouched);
}

TEST(IntersectLineArc, SecantTangentAndMiss) {
  const ArcRec circle = Arc(P(2, 0), P(2, 0), P(0, 0), 2, kArcCCW);
  GeoPoint p1 = kUntouched, p2 = kUntouched;
  EXPECT_EQ(IntersectLineArc(Seg(P(-5, 0), P(5, 0)), circle, p1, p2), kTwoHits);
  EXPECT_POINT_NEAR(p1, P(2, 0), 1e-6);  // ahead along the line first
  EXPECT_POINT_NEAR(p2, P(-2, 0), 1e-6);

  for (float y : {2.00005f, 1.99995f}) {
    SCOPED_TRACE(y);
    p1 = p2 = kUntouched;
    EXPECT_EQ(IntersectLineArc(Seg(P(-5, y), P(5, y)), circle, p1, p2), kTangentHit);
    EXPECT_POINT_NEAR(p1, P(0, y), 1e-6);
    EXPECT_EQ(p2, kUntouched);
  }
  EXPECT_EQ(IntersectLineArc(Seg(P(-5, 3), P(5, 3)), circle, p1, p2), kNoHit);

  // Plane 18: the line runs along Z at X = 1 through a unit-2 circle about the origin.
  const ArcRec zx = Arc(P(0, 0, 2), P(0, 0, 2), P(0, 0, 0), 2, kArcCW, 18);
  EXPECT_EQ(IntersectLineArc(Seg(P(1, 0, -5), P(1, 0, 5)), zx, p1, p2), kTwoHits);
  EXPECT_POINT_NEAR(p1, P(1, 0, 1.7320508f), 1e-6);
  EXPECT_POINT_NEAR(p2, P(1, 0, -1.7320508f), 1e-6);
}

TEST(IntersectArcs, CrossingTouchingConcentricAndApart) {
  struct Case {
    const char* name;
    GeoPoint c2;
    double r1, r2;
    int result;
    GeoPoint p1, p2;
  };
  const Case cases[] = {
      {"crossing", P(8, 0), 5, 5, kTwoHits, P(4, 3), P(4, -3)},
      {"touching outside", P(10, 0), 5, 5, kTangentHit, P(5, 0), kUntouched},
      {"small first inside", P(3, 0), 2, 5, kTangentHit, P(-2, 0), kUntouched},
      {"small second inside", P(-3, 0), 5, 2, kTangentHit, P(-5, 0), kUntouched},
      {"concentric", P(0, 0), 5, 5, kNoHit, kUntouched, kUntouched},
      {"apart", P(20, 0), 5, 5, kNoHit, kUntouched, kUntouched},
      {"nested", P(1, 0), 5, 1, kNoHit, kUntouched, kUntouched},
      {"zero radius", P(5, 0), 5, 0, kNoHit, kUntouched, kUntouched},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.name);
    GeoPoint p1 = kUntouched, p2 = kUntouched;
    const ArcRec a1 = Arc(P(0, 0), P(0, 0), P(0, 0), c.r1, kArcCW);
    const ArcRec a2 = Arc(P(0, 0), P(0, 0), c.c2, -c.r2, kArcCCW);
    EXPECT_EQ(IntersectArcs(a1, a2, p1, p2), c.result);
    EXPECT_POINT_NEAR(p1, c.p1, 1e-5);
    EXPECT_POINT_NEAR(p2, c.p2, 1e-5);
  }
}

TEST(ClipSegmentToRect, InsideOutsideAndCrossings) {
  const SelectRect rect{10, 10, 0, 0};  // corners in either order
  struct Case {
    const char* name;
    GeoPoint p0, p1;
    int result;
    GeoPoint a, b;
  };
  const Case cases[] = {
      {"inside", P(1, 1), P(2, 2), kClipInside, P(1, 1), P(2, 2)},
      {"on the edges", P(0, 0), P(10, 10), kClipInside, P(0, 0), P(10, 10)},
      {"outside", P(20, 20), P(30, 30), kClipOutside, {}, {}},
      {"passing by", P(-5, 12), P(15, 12), kClipOutside, {}, {}},
      {"one end in", P(5, 5), P(15, 5), kClipOneCrossing, P(5, 5), P(10, 5)},
      {"other end in", P(5, -5), P(5, 5), kClipOneCrossing, P(5, 5), P(5, 0)},
      {"through", P(-5, 5), P(15, 5), kClipTwoCrossings, P(0, 5), P(10, 5)},
      {"through backwards", P(15, 5), P(-5, 5), kClipTwoCrossings, P(10, 5), P(0, 5)},
      {"through two corners", P(-1, -1), P(11, 11), kClipTwoCrossings, P(0, 0), P(10, 10)},
      {"touching a corner", P(-1, 1), P(1, -1), kClipOneCrossing, P(0, 0), P(0, 0)},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.name);
    GeoPoint a, b;
    EXPECT_EQ(ClipSegmentToRect(c.p0, c.p1, rect, a, b), c.result);
    if (c.result == kClipOutside) continue;
    EXPECT_POINT_NEAR(a, c.a, 1e-6);
    EXPECT_POINT_NEAR(b, c.b, 1e-6);
  }
  EXPECT_TRUE(PointInRect(P(10, 0), rect));
  EXPECT_FALSE(PointInRect(P(10.001f, 5), rect));
}

}  // namespace
}  // namespace zemtra
