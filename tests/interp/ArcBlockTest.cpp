#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "PlotFixture.h"

namespace zemtra {
namespace {

using test::PlotFixture;

const std::string kIgnore = "\r\n\r\nIgnore further errors?";
const std::string kRadiiDiffer = "Start radius and end radius are different by more than 0.001";

void ExpectPoint(const GeoPoint& actual, GeoPoint expected, const std::string& where) {
  EXPECT_FLOAT_EQ(actual.X, expected.X) << where;
  EXPECT_FLOAT_EQ(actual.Y, expected.Y) << where;
  EXPECT_FLOAT_EQ(actual.Z, expected.Z) << where;
}

// The centre of an R arc lies on the side its direction and sign choose, in each plane: a 3-4-5
// triangle over a chord of 8, so the centre is 3 off the chord's middle.
TEST(ArcRadiusForm, SideOfTheCentreByDirectionAndSign) {
  struct Case {
    const char* program;
    int code;
    GeoPoint center;
  } cases[] = {
      {"G0X0Y0|G2X8.Y0R5.", kArcCW, {4, -3, 0, 0}},
      {"G0X0Y0|G3X8.Y0R5.", kArcCCW, {4, 3, 0, 0}},
      {"G0X0Y0|G2X8.Y0R-5.", kArcCW, {4, 3, 0, 0}},
      {"G0X0Y0|G3X8.Y0R-5.", kArcCCW, {4, -3, 0, 0}},
      // ZX plane: Z is the first axis, X the second.
      {"G0X0Y0Z0|G18G2X8.Z0R5.", kArcCW, {4, 0, 3, 0}},
      {"G0X0Y0Z0|G18G3X8.Z0R5.", kArcCCW, {4, 0, -3, 0}},
      // YZ plane: Y first, Z second.
      {"G0X0Y0Z0|G19G2Y8.Z0R5.", kArcCW, {0, 4, -3, 0}},
      {"G0X0Y0Z0|G19G3Y8.Z0R-5.", kArcCCW, {0, 4, -3, 0}},
      // Half a circle: the centre on the chord, whatever the sign.
      {"G0X0Y0|G2X1.Y0R.5", kArcCW, {0.5f, 0, 0, 0}},
      {"G0X0Y0|G2X1.Y0R-.5", kArcCW, {0.5f, 0, 0, 0}},
  };
  for (const Case& c : cases) {
    PlotFixture fx;
    ASSERT_EQ(fx.Plot(c.program), 1) << c.program;
    const GeoEntity& arc = fx.table[1];
    EXPECT_EQ(arc.EntityType, c.code) << c.program;
    ExpectPoint(arc.CenterPoint, c.center, c.program);
    EXPECT_GT(arc.RadiusOrTurns, 0) << c.program;
    EXPECT_TRUE(fx.host.shown.empty()) << c.program << ": " << fx.host.lastText();
    EXPECT_EQ(fx.interpreter.ArcErrorCount, 0);
  }
}

TEST(ArcRadiusForm, FullCircleAndTooSmallRadiusAreCountedAndDrawnUnlessCancelled) {
  PlotFixture fx;
  ASSERT_EQ(fx.Plot("G0X0Y0|G2X0Y0R-1.|G2X4.Y0R1.|G3X8.Y0R1.9995"), 3);
  // Full circle: the centre stays on the start and the radius as given.
  EXPECT_EQ(fx.table[1].CenterPoint, (GeoPoint{0, 0, 0, 0}));
  EXPECT_FLOAT_EQ(fx.table[1].RadiusOrTurns, -1);
  // Too small: raised to half the chord, the centre on the chord.
  ExpectPoint(fx.table[2].CenterPoint, {2, 0, 0, 0}, "raised");
  EXPECT_FLOAT_EQ(fx.table[2].RadiusOrTurns, 2);
  // Within the tolerance the radius stands, and the centre is close to the chord.
  EXPECT_FLOAT_EQ(fx.table[3].RadiusOrTurns, 1.9995f);
  EXPECT_NEAR(fx.table[3].CenterPoint.Y, 0, 0.05);
  EXPECT_EQ(fx.MessageTexts(),
            (std::vector<std::string>{"Cannot create full circle with R specified arc\r\n",
                                      "R value is too small\r\nMinimum R value is 2.0"}));
  EXPECT_EQ(fx.host.caretLines, (std::vector<int>{2, 3}));
  EXPECT_EQ(fx.interpreter.ArcErrorCount, 2);
  EXPECT_FALSE(fx.interpreter.StoppedByError);
  // Cancel stops before the arc is stored.
  fx.host.queueAnswer(MsgAnswer::Cancel);
  EXPECT_EQ(fx.Plot("G0X0Y0|G1X1.|G2X1.Y0R1.|G1X5."), 1);
  EXPECT_TRUE(fx.interpreter.StoppedByError);
}

TEST(ArcRadiusForm, HelixTurnsCannotBeGivenWithR) {
  PlotFixture fx;
  ASSERT_EQ(fx.Plot("G0X0Y0Z0|G2X8.Y0Z-1.R5.|G2X16.Y0Z-2.R5.P2"), 2);
  EXPECT_EQ(fx.table[1].EntityType, kHelixCW);
  EXPECT_FLOAT_EQ(fx.table[1].RadiusOrTurns, -1);
  // With P: a message, and the radius stands where the turns would be.
  EXPECT_EQ(fx.table[2].EntityType, kHelixCW);
  EXPECT_FLOAT_EQ(fx.table[2].RadiusOrTurns, 5);
  ASSERT_EQ(fx.host.shown.size(), 1u);
  EXPECT_EQ(fx.host.shown[0].prompt.text,
            "Cannot specify multiple turns for R specified helical arcs");
  EXPECT_EQ(fx.host.shown[0].prompt.buttons, MsgButtons::Ok);
  EXPECT_EQ(fx.interpreter.ArcErrorCount, 0);
}

TEST(ArcCenterForm, CentresAreRelativeAbsoluteOrRetained) {
  struct Case {
    const char* program;
    bool absolute, modal;
    int code;
    GeoPoint center;
  } cases[] = {
      // Relative to the start; a missing letter means 0; the normal axis keeps the start's.
      {"G0X1.Y1.Z2.|G2X3.Y1.I1.", false, false, kArcCW, {2, 1, 2, 0}},
      {"G0X1.Y1.Z2.|G18G3X3.Z2.I1.", false, false, kArcCCW, {2, 1, 2, 0}},
      {"G0X0Y1.Z1.|G19G2Y0Z0J-1.", false, false, kArcCW, {0, 0, 1, 0}},
      // Absolute centres.
      {"G0X1.Y1.|G2X3.Y1.I2.J1.", true, false, kArcCW, {2, 1, 0, 0}},
      // Absolute and modal: the last I and J stand in for missing ones.
      {"G0X0Y0|G2X2.Y0I1.J0|G2X0Y0", true, true, kArcCW, {1, 0, 0, 0}},
  };
  for (const Case& c : cases) {
    PlotFixture fx;
    fx.config.AbsoluteArcCenter = ToFlag(c.absolute);
    fx.config.ModalIJK = ToFlag(c.modal);
    const int count = fx.Plot(c.program);
    ASSERT_GE(count, 1) << c.program;
    const GeoEntity& arc = fx.table[count];
    ExpectPoint(arc.CenterPoint, c.center, c.program);
    EXPECT_FLOAT_EQ(arc.RadiusOrTurns, 1) << c.program;
    EXPECT_EQ(arc.EntityType, c.code) << c.program;
    EXPECT_TRUE(fx.host.shown.empty()) << c.program << ": " << fx.host.lastText();
  }
}

TEST(ArcCenterForm, MissingCentre) {
  PlotFixture fx;
  fx.config.AbsoluteArcCenter = kFlagTrue;
  // No centre and no axis: nothing happens. An axis without a centre is asked about.
  EXPECT_EQ(fx.Plot("G0X0Y0|G2|G2F100.|G2X1.Y1.|G1X2."), 1);
  ASSERT_EQ(fx.host.shown.size(), 1u);
  EXPECT_EQ(fx.host.shown[0].prompt.text, "No arc center specified");
  EXPECT_EQ(fx.host.shown[0].prompt.buttons, MsgButtons::OkCancel);
  EXPECT_EQ(fx.host.caretLines, (std::vector<int>{4}));
  EXPECT_EQ(fx.interpreter.ArcErrorCount, 0);
  fx.host.queueAnswer(MsgAnswer::Cancel);
  EXPECT_EQ(fx.Plot("G0X0Y0|G2X1.Y1.|G1X2."), 0);
  EXPECT_TRUE(fx.interpreter.StoppedByError);
}

TEST(ArcCenterForm, RadiusChecksAskAndYesIgnoresTheRest) {
  PlotFixture fx;
  ASSERT_EQ(fx.Plot("G0X0Y0|G2X0Y0I0J0|G2X2.Y0I1.1J0"), 2);
  EXPECT_EQ(fx.MessageTexts(),
            (std::vector<std::string>{"Arc radius is zero" + kIgnore, kRadiiDiffer + kIgnore}));
  EXPECT_EQ(fx.host.shown[1].prompt.buttons, MsgButtons::YesNoCancel);
  EXPECT_EQ(fx.host.shown[1].prompt.icon, MsgIcon::Exclamation);
  // Drawn through the given centre, with its start radius.
  ExpectPoint(fx.table[2].CenterPoint, {1.1f, 0, 0, 0}, "bad radii");
  EXPECT_FLOAT_EQ(fx.table[2].RadiusOrTurns, 1.1f);
  EXPECT_EQ(fx.interpreter.ArcErrorCount, 2);
  EXPECT_NEAR(fx.interpreter.MaxArcDeviation, 0.2, 1e-6);

  fx.host.shown.clear();
  fx.host.queueAnswer(MsgAnswer::Yes);
  ASSERT_EQ(fx.Plot("G0X0Y0|G2X2.Y0I1.1J0|G2X4.Y0I1.1J0|G2X4.Y0I0J0"), 3);
  EXPECT_EQ(fx.host.shown.size(), 1u);
  EXPECT_TRUE(fx.interpreter.IgnoreArcErrors);
  EXPECT_EQ(fx.interpreter.ArcErrorCount, 1);

  fx.host.shown.clear();
  fx.host.queueAnswer(MsgAnswer::Cancel);
  EXPECT_EQ(fx.Plot("G0X0Y0|G1X1.|G2X3.Y0I1.1J0|G1X9."), 1);
  EXPECT_TRUE(fx.interpreter.StoppedByError);
  EXPECT_FALSE(fx.interpreter.IgnoreArcErrors);  // a new plot clears it
}

TEST(ArcCenterForm, FiftyArcErrorsStopThePlot) {
  PlotFixture fx;
  std::string program = "G0X0Y0";
  for (int i = 0; i < 60; ++i) program += i % 2 ? "|G2X0Y0I1.J0" : "|G2X2.Y0I1.1J0";
  EXPECT_EQ(fx.Plot(program), 49);
  EXPECT_EQ(fx.interpreter.ArcErrorCount, 50);
  EXPECT_EQ(fx.host.shown.size(), 50u);
  EXPECT_TRUE(fx.interpreter.StoppedByError);
  // A quiet plot counts the same errors without a word.
  fx.driver.QuietPlot = true;
  fx.host.shown.clear();
  EXPECT_EQ(fx.Plot(program), 49);
  EXPECT_TRUE(fx.host.shown.empty());
}

TEST(ArcCenterForm, HelixTurns) {
  struct Case {
    const char* block;
    int code;
    float turns;
    const char* message;
  } cases[] = {
      {"G2X0Y0Z-1.I1.J0P3", kHelixCW, 3, ""},
      {"G3X0Y0Z-1.I1.J0", kHelixCCW, -1, ""},
      {"G2X0Y0Z-1.I1.J0P-2.7", kHelixCW, 2, ""},
      {"G2X0Y0Z-1.I1.J0P100", kHelixCW, 100, "Maximum number of helical turns is 99"},
      {"G2X0Y0Z-1.I1.J0P0", kHelixCW, 0, "Arc radius is zero\r\n\r\nIgnore further errors?"},
      // A helix along Y in the ZX plane, along X in the YZ plane.
      {"G18G2X0Y1.Z0K1.P2", kHelixCW, 2, ""},
      {"G19G3X1.Y0Z0K1.", kHelixCCW, -1, ""},
  };
  for (const Case& c : cases) {
    PlotFixture fx;
    ASSERT_EQ(fx.Plot(std::string("G0X0Y0Z0|") + c.block), 1) << c.block;
    EXPECT_EQ(fx.table[1].EntityType, c.code) << c.block;
    EXPECT_FLOAT_EQ(fx.table[1].RadiusOrTurns, c.turns) << c.block;
    EXPECT_EQ(fx.host.lastText(), c.message) << c.block;
  }
}

TEST(LatheArcs, PlaneReverseArcsAndRadiusCentres) {
  MachineConfig lathe = test::DefaultMill();
  lathe.MachineType = 1;
  lathe.LatheXDiameter = kFlagTrue;
  {
    // X is a diameter, I a radius that is never halved.
    PlotFixture fx(lathe);
    ASSERT_EQ(fx.Plot("G0X10.Z0|G2X10.Z-4.I2.K-2."), 1);
    ExpectPoint(fx.table[1].CenterPoint, {7, 0, -2, 0}, "lathe");
    EXPECT_EQ(fx.table[1].EntityType, kArcCW);
    EXPECT_EQ(fx.table[1].Plane, 18);
    // J has no part in saying where the centre is.
    EXPECT_EQ(fx.Plot("G0X10.Z0|G2X10.Z-4.J2."), 0);
    EXPECT_EQ(fx.host.lastText(), "No arc center specified");
  }
  {
    lathe.LatheReverseArcs = kFlagTrue;
    PlotFixture fx(lathe);
    ASSERT_EQ(fx.Plot("G0X10.Z0|G2X10.Z-4.I2.K-2.|G3X10.Z-8.R2."), 2);
    EXPECT_EQ(fx.table[1].EntityType, kArcCCW);
    EXPECT_EQ(fx.table[2].EntityType, kArcCW);
  }
  {
    PlotFixture fx(lathe);
    ASSERT_EQ(fx.Plot("G0X10.Z0|G17G2X14.Z0I1."), 1);
    EXPECT_EQ(fx.table[1].Plane, 17);  // drawn all the same, in the wrong plane
    EXPECT_TRUE(fx.host.lastText().starts_with("Illegal arc plane selected\r\n"))
        << fx.host.lastText();
    fx.host.queueAnswer(MsgAnswer::Cancel);
    EXPECT_EQ(fx.Plot("G0X10.Z0|G17G2X14.Z0I1."), 0);
  }
}

}  // namespace
}  // namespace zemtra
