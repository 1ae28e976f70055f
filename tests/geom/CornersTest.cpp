#include "geom/Corners.h"

#include <gtest/gtest.h>

#include "geom/GeomTestSupport.h"

namespace zemtra {
namespace {

using test::Entity;
using test::P;
using test::Seg;

TEST(OffsetEntity, MovesLinesAndArcsToTheLeftOfTravel) {
  const GeoEntity line = Entity(kFeed, P(0, 0, 5), P(10, 0, 5));
  const GeoEntity movedLine = OffsetEntity(line, 2);
  EXPECT_POINT_NEAR(movedLine.StartPoint, P(0, 2, 5), 1e-6);
  EXPECT_POINT_NEAR(movedLine.EndPoint, P(10, 2, 5), 1e-6);
  EXPECT_POINT_NEAR(OffsetLine(LineFromEntity(line), -2, 17).End, P(10, -2, 5), 1e-6);

  // Clockwise quarter about the origin: left of travel is outwards.
  const GeoEntity cw = Entity(kArcCW, P(0, 1), P(1, 0), P(0, 0), 1);
  const GeoEntity bigger = OffsetEntity(cw, 1);
  EXPECT_EQ(bigger.RadiusOrTurns, 2.0f);
  EXPECT_POINT_NEAR(bigger.StartPoint, P(0, 2), 1e-6);
  EXPECT_POINT_NEAR(bigger.EndPoint, P(2, 0), 1e-6);
  EXPECT_EQ(bigger.CenterPoint, cw.CenterPoint);

  // Counter-clockwise by its own radius collapses onto the centre.
  const GeoEntity ccw = Entity(kArcCCW, P(4, 3, 1), P(3, 4, 1), P(3, 3, 1), 1);
  const GeoEntity collapsed = OffsetEntity(ccw, 1);
  EXPECT_EQ(collapsed.RadiusOrTurns, 0.0f);
  EXPECT_EQ(collapsed.StartPoint, P(3, 3, 1));
  EXPECT_EQ(collapsed.EndPoint, P(3, 3, 1));

  const GeoEntity helix = Entity(kHelixCW, P(1, 0, 0), P(0, 1, 1), P(0, 0, 0), 2);
  const GeoEntity same = OffsetEntity(helix, 1);
  EXPECT_EQ(same.StartPoint, helix.StartPoint);
  EXPECT_EQ(same.RadiusOrTurns, helix.RadiusOrTurns);
}

TEST(FilletLines, TangentArcOnTheInsideOfEachTurn) {
  struct Case {
    const char* name;
    LineRec first, second;
    int plane;
    int direction;
    GeoPoint start, end, center;
  };
  const Case cases[] = {
      {"left turn", Seg(P(0, 0), P(10, 0)), Seg(P(10, 0), P(10, 10)), 17, kArcCCW, P(8, 0),
       P(10, 2), P(8, 2)},
      {"right turn", Seg(P(0, 0), P(10, 0)), Seg(P(10, 0), P(10, -10)), 17, kArcCW, P(8, 0),
       P(10, -2), P(8, -2)},
      {"obtuse", Seg(P(0, 0), P(10, 0)), Seg(P(10, 0), P(20, 10)), 17, kArcCCW, P(9.171573f, 0),
       P(10.585786f, 0.585786f), P(9.171573f, 2)},
      // Plane 18: +Z then +X turns left; Y is kept.
      {"plane 18", Seg(P(0, 3, 0), P(0, 3, 10)), Seg(P(0, 3, 10), P(10, 3, 10)), 18, kArcCCW,
       P(0, 3, 8), P(2, 3, 10), P(2, 3, 8)},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.name);
    ArcRec arc;
    ASSERT_TRUE(FilletLines(c.first, c.second, 2, c.plane, arc));
    EXPECT_EQ(arc.Direction, c.direction);
    EXPECT_EQ(arc.Radius, 2.0);
    EXPECT_EQ(arc.Plane, c.plane);
    EXPECT_POINT_NEAR(arc.Start, c.start, 1e-5);
    EXPECT_POINT_NEAR(arc.End, c.end, 1e-5);
    EXPECT_POINT_NEAR(arc.Center, c.center, 1e-5);
  }
  ArcRec untouched;
  untouched.Radius = 99;
  EXPECT_FALSE(FilletLines(Seg(P(0, 0), P(10, 0)), Seg(P(10, 0), P(20, 0)), 2, 17, untouched));
  EXPECT_FALSE(FilletLines(Seg(P(0, 0), P(10, 0)), Seg(P(10, 0), P(10, 0)), 2, 17, untouched));
  EXPECT_EQ(untouched.Radius, 99);
}

TEST(ChamferLines, CutsBothLinesBackAlongThemselves) {
  LineRec chamfer;
  ASSERT_TRUE(ChamferLines(Seg(P(0, 0, 0, 0), P(10, 0, 0, 10)), Seg(P(10, 0), P(10, 0, -10)), 2, 19,
                           chamfer));
  EXPECT_POINT_NEAR(chamfer.Start, P(8, 0, 0, 8), 1e-6);
  EXPECT_POINT_NEAR(chamfer.End, P(10, 0, -2), 1e-6);
  EXPECT_EQ(chamfer.Plane, 19);
  EXPECT_FALSE(ChamferLines(Seg(P(1, 1), P(1, 1)), Seg(P(1, 1), P(5, 1)), 2, 17, chamfer));
}

}  // namespace
}  // namespace zemtra
