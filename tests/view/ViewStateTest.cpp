#include "view/ViewState.h"

#include <gtest/gtest.h>

#include <cmath>

#include "view/ViewTestSupport.h"
#include "view/Views.h"

namespace zemtra {
namespace {

using test::P;

// A picture of `pixelWidth` by `pixelHeight` showing the rectangle at x, y of w by h.
ViewState ViewOf(int pixelWidth, int pixelHeight, double x, double y, double w, double h) {
  ViewState view;
  view.PixelWidth = pixelWidth;
  view.PixelHeight = pixelHeight;
  view.SetViewport(x, y, w, h);
  return view;
}

// A view whose middle is (1, 2): the reflections 2cx - s and 2cy - s are 2 - s and 4 - s.
ViewState CenteredAt1And2() {
  return ViewOf(100, 100, -9, -8, 20, 20);
}

// The point (3, 5, 7) with cx = 1, cy = 2 in each flat view: its view point, and its display
// frame pair, the plane's two coordinates (swapped for top orientations 1 and 3).
TEST(ProjectPoint, EveryFlatViewMapsByItsFormulaAndMouseToDisplayUndoesIt) {
  struct Case {
    int view, orientation;
    float u, v, fx, fy;
  };
  const Case cases[] = {
      {0, 0, 3, -1, 3, 5},  {0, 1, -3, 1, 5, 3}, {0, 2, -1, 5, 3, 5},  {0, 3, 5, 3, 5, 3},
      {1, 0, -1, -1, 3, 5}, {2, 0, 3, -3, 3, 7}, {3, 0, -1, -3, 3, 7}, {4, 0, 5, -3, 5, 7},
      {5, 0, -3, -3, 5, 7}, {8, 0, 7, 3, 7, 3},  {9, 0, 7, 1, 7, 3},   {10, 0, -1, -3, 3, 7},
      {11, 0, 3, -3, 3, 7},
  };
  ViewState view = CenteredAt1And2();
  ASSERT_EQ(view.ViewCenterX, 1);
  ASSERT_EQ(view.ViewCenterY, 2);
  for (const Case& c : cases) {
    SCOPED_TRACE(testing::Message() << "view " << c.view << " orientation " << c.orientation);
    view.CurrentView = static_cast<std::int16_t>(c.view);
    view.TopViewOrientation = static_cast<std::int16_t>(c.orientation);
    float u = 0, v = 0, fx = 0, fy = 0;
    view.ProjectPoint(P(3, 5, 7), u, v);
    EXPECT_EQ(u, c.u);
    EXPECT_EQ(v, c.v);
    view.MouseToDisplay(u, v, fx, fy);
    EXPECT_EQ(fx, c.fx);
    EXPECT_EQ(fy, c.fy);
  }
}

TEST(ProjectPoint, UnknownViewOrOrientationLeavesTheOutputsAlone) {
  ViewState view = CenteredAt1And2();
  for (const auto& [viewIndex, orientation] : {std::pair{12, 0}, {-1, 0}, {0, 4}}) {
    view.CurrentView = static_cast<std::int16_t>(viewIndex);
    view.TopViewOrientation = static_cast<std::int16_t>(orientation);
    float u = 42, v = 43;
    view.ProjectPoint(P(3, 5, 7), u, v);
    EXPECT_EQ(u, 42);
    EXPECT_EQ(v, 43);
  }
}

TEST(ProjectPoint, IsometricViewsTiltAboutTheCentreAndTheirReferenceHeight) {
  ViewState view = CenteredAt1And2();
  float u = 0, v = 0;
  // Mill, turned a quarter and tipped flat: X runs up the screen, Y to the left, Z vanishes.
  view.CurrentView = kViewIsoMill;
  view.SetViewAngle(90);
  view.SetTipAngle(90);
  view.ProjectPoint(P(3, 5, 7), u, v);
  EXPECT_NEAR(u, -2, 1e-6);
  EXPECT_NEAR(v, 0, 1e-6);
  // Untipped it is a front view, shifted by the reference height.
  view.SetViewAngle(0);
  view.SetTipAngle(0);
  view.IsoZReference = 1;
  view.ProjectPoint(P(3, 5, 7), u, v);
  EXPECT_NEAR(u, 3, 1e-6);
  EXPECT_NEAR(v, -4, 1e-6);
  // Lathe: the part stands on its lowest Y; -Z takes the place of Y.
  view.CurrentView = kViewIsoLathe;
  view.PartMin = P(0, 1, 0);
  view.ProjectPoint(P(3, 5, 7), u, v);
  EXPECT_NEAR(u, 3, 1e-6);
  EXPECT_NEAR(v, -2, 1e-6);
  view.SetTipAngle(90);
  view.ProjectPoint(P(3, 5, 7), u, v);
  EXPECT_NEAR(v, 11, 1e-6);
}

TEST(ProjectPoint, RotaryAngleTurnsThePointInItsPlaneAndKeepsTheAxis) {
  ViewState view = CenteredAt1And2();
  float u = 0, v = 0;
  // About Y (plane 18): X goes to Z, Y stays. Top view shows X' and Y.
  view.RotaryPlane = 18;
  view.ProjectPoint(P(1, 5, 0, 90), u, v);
  EXPECT_NEAR(u, 0, 1e-6);
  EXPECT_EQ(v, 4 - 5);
  view.CurrentView = kViewFront;
  view.ProjectPoint(P(1, 5, 0, 90), u, v);
  EXPECT_NEAR(v, 4 - 1, 1e-6);  // Z' = 1
  // About X (plane 19): Y goes to Z, X stays.
  view.RotaryPlane = 19;
  view.ProjectPoint(P(5, 1, 0, 90), u, v);
  EXPECT_EQ(u, 5);
  EXPECT_NEAR(v, 4 + 1, 1e-6);  // Z' = -1
  // About a centre off the origin: the centre itself does not move.
  view.RotaryPlane = 18;
  view.RotaryCenterX = 2;
  view.RotaryCenterZ = 3;
  view.ProjectPoint(P(2, 0, 3, 37), u, v);
  EXPECT_NEAR(u, 2, 1e-6);
  EXPECT_NEAR(v, 4 - 3, 1e-6);
}

TEST(UnprojectIso, RecoversXAndYOfPointsAtTheReferenceHeight) {
  ViewState view = ViewOf(640, 480, -3, 7, 50, 30);
  view.IsoZReference = -2;
  view.CurrentView = kViewIsoMill;
  for (double angle : {0.0, 30.0, 135.0, 300.0}) {
    for (double tip : {15.0, 30.0, 89.0, 200.0}) {
      view.SetViewAngle(angle);
      view.SetTipAngle(tip);
      for (const GeoPoint& p : {P(0, 0, -2), P(12.5, -4, -2), P(-30, 17.25, -2)}) {
        float u = 0, v = 0, x = 0, y = 0;
        view.ProjectPoint(p, u, v);
        view.UnprojectIso(u, v, x, y);
        EXPECT_NEAR(x, p.X, 2e-4) << angle << " " << tip;
        EXPECT_NEAR(y, p.Y, 2e-4) << angle << " " << tip;
      }
    }
  }
}

TEST(UnprojectIso, FlatTipGivesTheRotatedZeroReflected) {
  ViewState view = CenteredAt1And2();
  view.SetViewAngle(0);
  view.SetTipAngle(0);
  float x = 0, y = 0;
  view.UnprojectIso(7, 9, x, y);
  EXPECT_EQ(x, 7);
  EXPECT_EQ(y, 4);  // 2cy - 0
}

TEST(PositionText, NamesThePlaneAxesAndShowsLatheDiameters) {
  struct Case {
    int view, orientation;
    bool diameter;
    const char* text;
  };
  const Case cases[] = {
      {0, 0, false, "X1.5, Y-2.25"}, {0, 1, false, "X1.5, Y-2.25"}, {0, 3, false, "X1.5, Y-2.25"},
      {1, 0, false, "X1.5, Y-2.25"}, {2, 0, false, "X1.5, Z3.0"},   {5, 0, false, "Y-2.25, Z3.0"},
      {8, 0, false, "Z3.0, X1.5"},   {8, 0, true, "Z3.0, X3.0"},    {9, 0, true, "Z3.0, X3.0"},
      {2, 0, true, "X1.5, Z3.0"},
  };
  ViewState view = CenteredAt1And2();
  for (const Case& c : cases) {
    view.CurrentView = static_cast<std::int16_t>(c.view);
    view.TopViewOrientation = static_cast<std::int16_t>(c.orientation);
    float u = 0, v = 0;
    view.ProjectPoint(P(1.5f, -2.25f, 3), u, v);
    EXPECT_EQ(view.PositionText(u, v, "###0.0###", c.diameter), c.text) << "view " << c.view;
  }
}

TEST(SetViewport, FitsTheRectangleAndCentresTheOtherSide) {
  ViewState view;
  view.PixelWidth = 200, view.PixelHeight = 100;
  // Too tall for the picture: the height fits, the width is centred.
  view.SetViewport(0, 0, 10, 10);
  EXPECT_EQ(view.ScaleLeft, -5);
  EXPECT_EQ(view.ScaleTop, 0);
  EXPECT_EQ(view.ScaleWidth, 20);
  EXPECT_EQ(view.ScaleHeight, 10);
  EXPECT_EQ(view.ViewCenterX, 5);
  EXPECT_EQ(view.ViewCenterY, 5);
  EXPECT_DOUBLE_EQ(view.UnitsPerPixel, 0.1);
  // Too wide: the width fits, the height is centred.
  view.SetViewport(0, 0, 40, 10);
  EXPECT_EQ(view.ScaleLeft, 0);
  EXPECT_EQ(view.ScaleTop, -5);
  EXPECT_EQ(view.ScaleHeight, 20);
  // Both sides zero: nothing; one zero side counts as 0.001.
  view.SetViewport(7, 7, 0, 0);
  EXPECT_EQ(view.ScaleLeft, 0);
  view.SetViewport(1, 1, 0, 4);
  EXPECT_EQ(view.ScaleHeight, 4);
  EXPECT_EQ(view.ScaleWidth, 8);
  EXPECT_FLOAT_EQ(view.ScaleLeft, static_cast<float>(1 - (8 - 0.001) / 2));
}

TEST(CenterView, MovesTheMiddleButNeverBeyondTheScaleLimit) {
  ViewState view = ViewOf(100, 100, -10, -10, 20, 20);
  EXPECT_TRUE(view.CenterView(3, -4));
  EXPECT_EQ(view.ViewCenterX, 3);
  EXPECT_EQ(view.ViewCenterY, -4);
  EXPECT_EQ(view.ScaleWidth, 20);
  EXPECT_TRUE(view.CenterView(-65525, 0));  // left -65535 is allowed
  EXPECT_FALSE(view.CenterView(65545, 0));  // left 65535 is not
  EXPECT_FALSE(view.CenterView(0, 70000));
  EXPECT_EQ(view.ViewCenterX, -65525);
  EXPECT_EQ(view.ViewCenterY, 0);
}

TEST(ZoomBy, ZoomsAboutTheMiddleWithinLimitsFromThePartSize) {
  ViewState view;
  view.PixelWidth = view.PixelHeight = 100;
  view.PartMin = P(0, 0, 0);
  view.PartMax = P(3, 4, 0);  // diagonal 5: from 0.1 to 100 units
  struct Case {
    double factor;
    float size;
  };
  for (const Case& c : {Case{2, 10}, Case{0.5, 40}, Case{1000, 0.1f}, Case{0.001, 100}}) {
    view.SetViewport(-10, -10, 20, 20);
    view.CenterView(1, 1);
    ASSERT_TRUE(view.ZoomBy(c.factor));
    EXPECT_FLOAT_EQ(view.ScaleWidth, c.size) << c.factor;
    EXPECT_FLOAT_EQ(view.ScaleHeight, c.size) << c.factor;
    EXPECT_FLOAT_EQ(view.ViewCenterX, 1) << c.factor;
    EXPECT_FLOAT_EQ(view.ViewCenterY, 1) << c.factor;
  }
  // A huge part is capped at 16383 units; a one-point part ends at the 0.02 floor.
  view.PartMax = P(100000, 0, 0);
  view.SetViewport(-10, -10, 20, 20);
  view.ZoomBy(1e-9);
  EXPECT_FLOAT_EQ(view.ScaleWidth, 16383);
  view.PartMax = view.PartMin;
  view.SetViewport(-10, -10, 20, 20);
  view.ZoomBy(1.2);
  EXPECT_FLOAT_EQ(view.ScaleWidth, 0.02f);
  EXPECT_FLOAT_EQ(view.ScaleHeight, 0.02f);
  EXPECT_DOUBLE_EQ(view.UnitsPerPixel, view.ScaleWidth / 100.0);
}

TEST(ZoomBy, ArithmeticFaultsLeaveTheScale) {
  ViewState view;
  view.PartMax = P(10, 10, 10);
  view.SetViewport(-10, -10, 20, 20);
  for (double factor : {0.0, -2.0, std::nan(""), double(INFINITY)}) {
    EXPECT_FALSE(view.ZoomBy(factor)) << factor;
    EXPECT_EQ(view.ScaleWidth, 20);
    EXPECT_EQ(view.ScaleLeft, -10);
  }
}

TEST(ZoomWindow, FlatViewsFitTheDraggedBoxAndIgnoreAClick) {
  ViewState view = ViewOf(200, 100, -10, -5, 20, 10);  // middle (0, 0)
  view.ZoomWindow(3, 3, 3, 3);
  EXPECT_EQ(view.ScaleWidth, 20);
  // Raw corners (2, -1) and (6, 1): X 2 to 6, and Y (reflected about 0) -1 to 1.
  view.ZoomWindow(6, -1, 2, 1);
  EXPECT_EQ(view.ScaleLeft, 2);
  EXPECT_EQ(view.ScaleTop, -1);
  EXPECT_EQ(view.ScaleWidth, 4);
  EXPECT_EQ(view.ScaleHeight, 2);
  // A box without height proceeds with 0.0001.
  view.ZoomWindow(2, 0, 12, 0);
  EXPECT_EQ(view.ScaleWidth, 10);
  EXPECT_EQ(view.ScaleHeight, 5);
}

TEST(ZoomWindow, IsometricViewCentresOnTheBoxAndZoomsToFitIt) {
  ViewState view;
  view.PixelWidth = view.PixelHeight = 100;
  view.PartMax = P(100, 100, 100);
  view.CurrentView = kViewIsoMill;
  view.SetViewport(-10, -10, 20, 20);
  GeoPoint target = P(4, 2, 0);
  float u = 0, v = 0;
  view.ProjectPoint(target, u, v);
  view.ZoomWindow(u - 2, v - 1, u + 2, v + 1);  // 4 by 2: a fifth of the width fits
  EXPECT_NEAR(view.ScaleWidth, 4, 1e-4);
  view.ProjectPoint(target, u, v);
  EXPECT_NEAR(u, view.ViewCenterX, 1e-4);
  EXPECT_NEAR(v, view.ViewCenterY, 1e-4);
}

TEST(RotateDrag, AnglesFollowThePointerAndStayWithinOneTurn) {
  ViewState view = ViewOf(100, 100, 0, 0, 100, 100);
  view.SetViewAngle(30);
  view.SetTipAngle(30);
  view.BeginRotate(50, 50);
  view.RotateTo(100, 25, false);  // half the width: +90; a quarter up: -45
  EXPECT_DOUBLE_EQ(view.ViewAngle, 120);
  EXPECT_DOUBLE_EQ(view.TipAngle, 345);
  EXPECT_DOUBLE_EQ(view.ViewSinT, std::sin(345 * 0.0174532925199433));
  view.RotateTo(-1950, 50, false);  // -3570: brought back by the added turn
  EXPECT_DOUBLE_EQ(view.ViewAngle, 30);
  // With the lock on only Shift tilts.
  view.LockVertRotate = true;
  view.RotateTo(50, 100, false);
  EXPECT_DOUBLE_EQ(view.TipAngle, 30);
  view.RotateTo(50, 100, true);
  EXPECT_DOUBLE_EQ(view.TipAngle, 120);
  EXPECT_DOUBLE_EQ(ReduceDegrees(-720), 0);
  EXPECT_DOUBLE_EQ(ReduceDegrees(725), 5);
}

TEST(PanDrag, ThePointUnderThePointerStaysUnderIt) {
  for (int viewIndex : {kViewTop, kViewBack, kViewIsoMill, kViewFrontTurret}) {
    ViewState view;
    view.PixelWidth = 200, view.PixelHeight = 100;
    view.CurrentView = static_cast<std::int16_t>(viewIndex);
    view.SetViewport(-10, -5, 20, 10);
    const GeoPoint p = P(2, 1, 0);
    float u = 0, v = 0;
    view.ProjectPoint(p, u, v);
    view.BeginPan(u, v);
    // Three moves of the pointer; raw coordinates are read through the scale as it moves.
    for (const PixelPoint to : {PixelPoint{30, 20}, PixelPoint{150, 90}, PixelPoint{110, 60}}) {
      double mu = 0, mv = 0;
      view.PixelToView(to.x, to.y, mu, mv);
      ASSERT_TRUE(view.PanTo(mu, mv));
      view.ProjectPoint(p, u, v);
      const PixelPoint now = view.ToPixel(u, v);
      EXPECT_NEAR(now.x, to.x, 0.01) << "view " << viewIndex;
      EXPECT_NEAR(now.y, to.y, 0.01) << "view " << viewIndex;
    }
  }
}

TEST(Views, CommandLineNamesAndNumbers) {
  EXPECT_EQ(ViewFromCommandName("top", 0), kViewTop);
  EXPECT_EQ(ViewFromCommandName("Bottom", 0), kViewBottom);
  EXPECT_EQ(ViewFromCommandName("iso", 0), kViewIsoMill);
  EXPECT_EQ(ViewFromCommandName("iso", 1), kViewIsoLathe);
  EXPECT_EQ(ViewFromCommandName("isometric", 1), kViewIsoLathe);
  EXPECT_EQ(ViewFromCommandName("iso-lathe", 0), kViewIsoLathe);
  EXPECT_EQ(ViewFromCommandName("front-turret", 0), kViewFrontTurret);
  EXPECT_EQ(ViewFromCommandName("vertical-right", 0), kViewVerticalRight);
  EXPECT_EQ(ViewFromCommandName("11", 0), 11);
  EXPECT_EQ(ViewFromCommandName("12", 0), -1);
  EXPECT_EQ(ViewFromCommandName("sideways", 0), -1);
  EXPECT_EQ(ViewFromCommandName("", 0), -1);
}

}  // namespace
}  // namespace zemtra
