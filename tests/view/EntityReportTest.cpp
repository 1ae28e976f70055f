// The entity window's reports, mill and lathe, and point-to-point measuring.
#include "view/EntityReport.h"

#include <gtest/gtest.h>

#include "view/PointMeasure.h"
#include "view/ViewTestSupport.h"

namespace zemtra {
namespace {

using test::Arc;
using test::Line;
using test::P;

TEST(EntityReport, MillLineAndArc) {
  const EntityReportStyle mill;
  EXPECT_EQ(EntityReport(Line(kFeed, P(0, 0, 0), P(3, 4, -1)), mill),
            "LINE AT FEED\r\n\r\n"
            "Start       X0.0 Y0.0 Z0.0\r\n"
            "End         X3.0 Y4.0 Z-1.0\r\n"
            "Length      5.099\r\n"
            "Delta X     3.0\r\n"
            "Delta Y     4.0\r\n"
            "Delta Z     -1.0\r\n"
            "XY Angle    53.1301\r\n"
            "ZX Angle    108.4349\r\n"
            "YZ Angle    345.9638");
  EXPECT_EQ(EntityReport(Arc(kArcCW, P(0, 0), P(2, 0), P(1, 0), 1), mill),
            "ARC CW\r\n\r\n"
            "Start       X0.0 Y0.0 Z0.0\r\n"
            "End         X2.0 Y0.0 Z0.0\r\n"
            "Center      X1.0 Y0.0 Z0.0\r\n"
            "Radius      1.0\r\n"
            "Arc Length  3.1416\r\n"
            "Plane       G17 - XY\r\n"
            "Start Angle 180.0\r\n"
            "End Angle   0.0\r\n"
            "GCode       G02 X2.0 Y0.0 I1.0 J0.0");
}

TEST(EntityReport, PlanesFourthAxisRapidAndPoint) {
  const EntityReportStyle withA{"###0.0###", false, "B"};
  EXPECT_EQ(EntityReport(Line(kRapid, P(0, 0, 0, 0), P(0, 0, 1, 90)), withA).substr(0, 84),
            "LINE AT RAPID\r\n\r\n"
            "Start       X0.0 Y0.0 Z0.0 B0.0\r\n"
            "End         X0.0 Y0.0 Z1.0 B90.0\r\n");
  const std::string zx =
      EntityReport(Arc(kArcCCW, P(0, 0, 1), P(0, 0, -1), P(0, 0, 0), 1, 18), EntityReportStyle{});
  EXPECT_NE(zx.find("Plane       G18 - ZX"), std::string::npos) << zx;
  EXPECT_NE(zx.find("GCode       G03 X0.0 Z-1.0 I0.0 K-1.0"), std::string::npos) << zx;
  GeoEntity point = Line(kPoint, P(1, 2, 3), P(1, 2, 3));
  const ChainPlace chain{4, 2};
  EXPECT_EQ(EntityReport(point, EntityReportStyle{}, &chain),
            "POINT, Chain #4, Index #2\r\n\r\nX1.0 Y2.0 Z3.0");
}

TEST(EntityReport, HelixCountsItsTurns) {
  GeoEntity helix = Arc(kHelixCCW, P(1, 0, 0), P(1, 0, -2), P(0, 0, 0), 2);
  const std::string text = EntityReport(helix, EntityReportStyle{});
  EXPECT_EQ(text.substr(0, 19), "HELICAL ARC CCW\r\n\r\n");
  EXPECT_NE(text.find("Radius      1.0\r\nTurns       2.0\r\n"), std::string::npos) << text;
}

TEST(EntityReport, LatheHasZBeforeXAndOneAngle) {
  const EntityReportStyle lathe{"###0.0###", true, ""};
  EXPECT_EQ(EntityReport(Line(kFeed, P(1, 0, 0), P(2, 0, -1)), lathe),
            "LINE AT FEED\r\n\r\n"
            "Start       Z0.0 X1.0\r\n"
            "End         Z-1.0 X2.0\r\n"
            "Length      1.4142\r\n"
            "Delta Z     -1.0\r\n"
            "Delta X     1.0\r\n"
            "Angle       135.0");
  EXPECT_EQ(EntityReport(Arc(kArcCW, P(1, 0, 0), P(1, 0, -2), P(1, 0, -1), 1, 18), lathe),
            "ARC CW\r\n\r\n"
            "Start       Z0.0 X1.0\r\n"
            "End         Z-2.0 X1.0\r\n"
            "Center      Z-1.0 X1.0\r\n"
            "Radius      1.0\r\n"
            "Arc Length  3.1416\r\n"
            "Start Angle 0.0\r\n"
            "End Angle   180.0");
}

TEST(EntityReport, ChainPlaceCountsTheMembersBefore) {
  GeometryTable table;
  GeoEntity e = Line(kFeed, P(0, 0), P(1, 0));
  table.Begin();
  for (int chain : {1, 1, 2, 2, 2}) {
    e.LineNumber = chain;
    table.Add(e);
  }
  table.End();
  const ChainPlace place = ChainPlaceOf(table, 5);
  EXPECT_EQ(place.Chain, 2);
  EXPECT_EQ(place.Index, 3);
}

TEST(PointMeasure, SnapsToEndsAndReportsTheDistances) {
  test::ViewportRig rig(400, 300);
  rig.LoadTable({Line(kFeed, P(0, 0, 0), P(3, 0, 0)), Line(kFeed, P(3, 0, 0), P(3, 4, -2))});
  const GeometryTable& table = rig.table;
  const Viewport& viewport = rig.viewport;
  PointMeasure measure;
  EXPECT_EQ(measure.TakePoint(), PointMeasure::Press::Ignored);
  EXPECT_EQ(measure.Begin(), "Select 1st Point");
  const double near = 9 * viewport.View.UnitsPerPixel;
  auto [u, v] = rig.At(P(0, 0));
  EXPECT_FALSE(measure.FindSnap(table, viewport, u + near, v + near));
  EXPECT_EQ(measure.TakePoint(), PointMeasure::Press::Ignored);
  EXPECT_TRUE(measure.FindSnap(table, viewport, u + near, v));
  EXPECT_EQ(measure.TakePoint(), PointMeasure::Press::FirstTaken);
  EXPECT_EQ(PointMeasure::StatusAfter(PointMeasure::Press::FirstTaken), "Select 2nd Point");
  std::tie(u, v) = rig.At(P(3, 4));
  EXPECT_TRUE(measure.FindSnap(table, viewport, u, v));
  EXPECT_EQ(measure.SnapPoint, P(3, 4, -2));
  EXPECT_EQ(measure.TakePoint(), PointMeasure::Press::Done);
  EXPECT_FALSE(measure.PickMode);
  EXPECT_EQ(measure.Report("###0.0###"),
            "X Distance:  3.0\r\nY Distance:  4.0\r\nZ Distance:  2.0\r\n"
            "Overall Distance:  5.3852");
}

}  // namespace
}  // namespace zemtra
