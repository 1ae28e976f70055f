#include "view/Viewport.h"

#include <gtest/gtest.h>

#include <map>

#include "config/ConfigFile.h"
#include "config/ConfigText.h"
#include "config/MachineConfig.h"
#include "core/SettingsStore.h"
#include "view/ViewSettings.h"
#include "view/ViewTestSupport.h"

namespace zemtra {
namespace {

using test::Arc;
using test::Fill;
using test::Line;
using test::P;

using Status = std::pair<std::string, std::string>;

// The "msg" entries of the status bar.
std::vector<Status> MsgStatuses(const RecordingHost& host) {
  std::vector<Status> found;
  for (const Status& status : host.statuses) {
    if (status.first == "msg") found.push_back(status);
  }
  return found;
}

TEST(ZoomToExtents, FitsTheDrawnPartWithAMarginAndSaysSo) {
  test::ViewportRig f;
  f.LoadTable({Line(kRapid, P(0, 0, 5), P(0, 0, 0)), Line(kFeed, P(0, 0), P(10, 5))});
  const ViewState& view = f.viewport.View;
  // 10 by 5 grown by 5 percent is 10.5 by 5.25: the picture's 2:1 exactly.
  EXPECT_FLOAT_EQ(view.ScaleLeft, -0.25f);
  EXPECT_FLOAT_EQ(view.ScaleTop, -0.125f);
  EXPECT_FLOAT_EQ(view.ScaleWidth, 10.5f);
  EXPECT_FLOAT_EQ(view.ScaleHeight, 5.25f);
  float u = 0, v = 0;
  view.ProjectPoint(P(10, 5), u, v);
  const PixelPoint corner = view.ToPixel(u, v);
  EXPECT_NEAR(corner.x, 200 * 10.25 / 10.5, 1e-3);
  EXPECT_NEAR(corner.y, 100 * 0.125 / 5.25, 1e-3);
  EXPECT_EQ(MsgStatuses(f.host),
            (std::vector<Status>{{"msg", "Zooming to part extents..."}, {"msg", ""}}));
  EXPECT_EQ(f.viewport.DrawFirst, 1);
  EXPECT_EQ(f.viewport.DrawLast, 2);
  EXPECT_EQ(view.IsoZReference, 0);
  EXPECT_EQ(view.PartMax, P(10, 5, 5));
}

TEST(ZoomToExtents, EveryViewFramesThePart) {
  test::ViewportRig f;
  f.LoadTable({Arc(kArcCCW, P(30, 20, -3), P(30, 20, -3), P(25, 20, -3), 5),
               Line(kFeed, P(30, 20, -3), P(30, 20, 4))});
  for (int viewIndex = 0; viewIndex < kViewCount; ++viewIndex) {
    f.viewport.SetView(viewIndex, true);
    const ViewState& view = f.viewport.View;
    for (const GeoPoint& p : {P(20, 20, -3), P(30, 20, 4), P(25, 25, -3), P(25, 15, -3)}) {
      float u = 0, v = 0;
      view.ProjectPoint(p, u, v);
      const PixelPoint px = view.ToPixel(u, v);
      EXPECT_GE(px.x, -0.01) << "view " << viewIndex;
      EXPECT_LE(px.x, 200.01) << "view " << viewIndex;
      EXPECT_GE(px.y, -0.01) << "view " << viewIndex;
      EXPECT_LE(px.y, 100.01) << "view " << viewIndex;
    }
  }
}

TEST(ZoomToExtents, EmptyTableGivesTheDefaultWindow) {
  test::ViewportRig f(100, 100);
  f.viewport.View.SetViewport(3, 3, 1, 1);
  f.LoadTable({});
  EXPECT_EQ(f.viewport.View.ScaleLeft, -10);
  EXPECT_EQ(f.viewport.View.ScaleTop, -10);
  EXPECT_EQ(f.viewport.View.ScaleWidth, 20);
  f.viewport.View.SetViewport(3, 3, 1, 1);
  f.viewport.ZoomToSelected();
  EXPECT_EQ(f.viewport.View.ScaleWidth, 20);
  EXPECT_TRUE(MsgStatuses(f.host).empty());
}

TEST(ZoomToSelected, FitsTheSelectionOrFallsBackToExtents) {
  test::ViewportRig f;
  f.LoadTable({Line(kFeed, P(0, 0), P(10, 5)), Line(kFeed, P(10, 5), P(12, 6))});
  f.host.statuses.clear();
  f.viewport.ZoomToSelected();  // nothing selected
  EXPECT_EQ(MsgStatuses(f.host).front().second, "Zooming to part extents...");
  EXPECT_FLOAT_EQ(f.viewport.View.ScaleWidth, 12.6f);
  f.table[2].Selected = 255;
  f.host.statuses.clear();
  f.viewport.ZoomToSelected();
  EXPECT_EQ(MsgStatuses(f.host).front().second, "Zooming to selected objects...");
  EXPECT_FLOAT_EQ(f.viewport.View.ScaleWidth, 2.1f);
  EXPECT_NEAR(f.viewport.View.ViewCenterX, 11, 1e-5);
}

TEST(ZoomAll, LeavesRapidsOutOfTheFitAndShowsThemAgain) {
  test::ViewportRig f;
  f.LoadTable({Line(kRapid, P(-100, 0), P(0, 0)), Line(kFeed, P(0, 0), P(10, 5))});
  EXPECT_GT(f.viewport.View.ScaleWidth, 100);
  f.viewport.ZoomAll();
  EXPECT_FLOAT_EQ(f.viewport.View.ScaleWidth, 10.5f);
  EXPECT_TRUE(f.viewport.Switches.ShowRapid);
}

TEST(Viewport, WheelAndMenuZoomAboutTheMiddle) {
  test::ViewportRig f;
  f.LoadTable({Line(kFeed, P(0, 0), P(100, 50))});
  const float width = f.viewport.View.ScaleWidth;
  f.viewport.MouseWheelRolled(1);  // exactly 1 zooms in
  EXPECT_FLOAT_EQ(f.viewport.View.ScaleWidth, static_cast<float>(width / 1.333));
  f.viewport.MouseWheelRolled(0);
  EXPECT_FLOAT_EQ(f.viewport.View.ScaleWidth, static_cast<float>(width / 1.333 / 0.75));
  f.viewport.ZoomIn();
  EXPECT_FLOAT_EQ(f.viewport.View.ScaleWidth, static_cast<float>(width / 1.333 / 0.75 / 1.2));
  f.viewport.RepaintBlocked = true;  // a plot is being computed
  f.viewport.MouseWheelRolled(1);
  EXPECT_FLOAT_EQ(f.viewport.View.ScaleWidth, static_cast<float>(width / 1.333 / 0.75 / 1.2));
}

TEST(Viewport, AxisLinesRunFiveTimesThePartBeyondTheChosenZero) {
  test::ViewportRig f;
  Fill(f.table, {Line(kFeed, P(0, 0, -1), P(10, 4, 0))});
  std::map<int, double> variables{{5241, 1}, {5242, 2}, {5243, 3}};
  f.viewport.ReadVariable = [&](int n) { return variables.count(n) ? variables[n] : 0.0; };
  f.viewport.RefreshGeometry(1);
  const auto& ends = f.viewport.AxisLineEnds;
  EXPECT_EQ(ends[0][0], P(-50, 0, 0));
  EXPECT_EQ(ends[0][1], P(60, 0, 0));
  EXPECT_EQ(ends[1][0], P(0, -20, 0));
  EXPECT_EQ(ends[1][1], P(0, 24, 0));
  EXPECT_EQ(ends[2][0], P(0, 0, -6));  // at least five beyond the zero
  EXPECT_EQ(ends[2][1], P(0, 0, 5));
  // Work zero G55 (entry 3): through #5241 to #5243; a lathe takes X and Z from #5241, #5242.
  f.viewport.Switches.ShowAxisLines = 3;
  f.viewport.ComputeAxisLines();
  EXPECT_EQ(ends[0][0], P(-50, 2, 3));
  EXPECT_EQ(ends[2][1], P(1, 2, 8));
  f.viewport.MachineType = 1;
  EXPECT_EQ(f.viewport.AxisZero(), P(1, 0, 2));
}

TEST(Viewport, ConfigurationSetsColoursTopViewAndRotaryAxis) {
  MachineConfig config;
  ReadConfigRecord(ConfigText("[COLORS]\nG00 Color = 255\nColor by G-Code = 0\n"
                              "Tool Color 01 = 65280\n[OPTIONS]\nTop View Orientation = 2\n"
                              "Rapid Type = 1\n[ROTARY AXIS]\nRotary Axis Plane = 19\n"
                              "Rotary Axis Centerline Z = 4\n"),
                   config);
  test::ViewportRig f;
  Viewport& viewport = f.viewport;
  viewport.ApplyConfig(config);
  EXPECT_EQ(viewport.Colors.Rapid, 255);
  EXPECT_FALSE(viewport.Colors.ColorByMotion);
  EXPECT_EQ(viewport.Colors.ToolColor(1), 65280);
  EXPECT_EQ(viewport.Colors.RapidStyle, 1);
  EXPECT_EQ(viewport.View.TopViewOrientation, 2);
  EXPECT_EQ(viewport.View.RotaryPlane, 19);
  EXPECT_EQ(viewport.View.RotaryCenterZ, 4);
  EXPECT_EQ(ForeColorFor(0x800000), 0xFFFFFF);
  EXPECT_EQ(ForeColorFor(0x800001), 0);
}

TEST(ViewSettings, RoundTripAndDefaults) {
  MemorySettingsStore settings;
  ViewState view;
  DrawSwitches switches;
  view.CurrentView = 99;
  switches.ShowRapid = false;
  LoadViewSettings(settings, view, switches);
  EXPECT_EQ(view.CurrentView, 0);
  EXPECT_EQ(view.ViewAngle, 30);
  EXPECT_EQ(view.TipAngle, 30);
  EXPECT_TRUE(switches.ShowRapid);
  EXPECT_EQ(switches.ShowAxisLines, 1);
  EXPECT_FALSE(view.LockVertRotate);

  view.CurrentView = kViewIsoMill;
  view.SetViewAngle(-12.5);
  view.SetTipAngle(60);
  view.LockVertRotate = true;
  switches.ShowTicks = false;
  switches.ShowAxisLines = 4;
  SaveViewSettings(settings, view, switches);
  EXPECT_EQ(settings.GetSetting("General", "ViewAngle"), "-12.5");
  EXPECT_EQ(settings.GetSetting("General", "ShowTicks"), "False");
  ViewState loaded;
  DrawSwitches loadedSwitches;
  LoadViewSettings(settings, loaded, loadedSwitches);
  EXPECT_EQ(loaded.CurrentView, kViewIsoMill);
  EXPECT_EQ(loaded.ViewAngle, -12.5);
  EXPECT_DOUBLE_EQ(loaded.ViewSinT, view.ViewSinT);
  EXPECT_TRUE(loaded.LockVertRotate);
  EXPECT_FALSE(loadedSwitches.ShowTicks);
  EXPECT_EQ(loadedSwitches.ShowAxisLines, 4);
  // Only "True" is true.
  settings.SaveSetting("General", "ShowRapid", "true");
  LoadViewSettings(settings, loaded, loadedSwitches);
  EXPECT_FALSE(loadedSwitches.ShowRapid);
}

}  // namespace
}  // namespace zemtra
