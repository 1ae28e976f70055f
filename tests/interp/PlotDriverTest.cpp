#include <gtest/gtest.h>

#include <cstring>
#include <string>

#include "PlotFixture.h"

namespace zemtra {
namespace {

using test::PlotFixture;

TEST(PlotDriver, FirstMotionOnlyPlacesTheStartOfAnUnbrokenChain) {
  PlotFixture fx;
  EXPECT_EQ(fx.Plot("(nothing)|%|G90 G17"), 0);
  EXPECT_EQ(fx.table.GeoLast, 0);
  EXPECT_EQ(fx.Plot("G0 X1. Y1."), 0);
  EXPECT_EQ(fx.table.GeoLast, 0);
  ASSERT_EQ(fx.Plot("G0 X1. Y1.|G1 X2."), 1);
  const GeoEntity& e = fx.table[1];
  EXPECT_EQ(e.EntityType, kFeed);
  EXPECT_EQ(e.StartPoint, (GeoPoint{1, 1, 0, 0}));
  EXPECT_EQ(e.EndPoint, (GeoPoint{2, 1, 0, 0}));
  EXPECT_EQ(e.LineNumber, 2);
  EXPECT_EQ(e.Plane, 17);
  EXPECT_EQ(fx.table.GeoLast, 1);
  EXPECT_TRUE(fx.host.shown.empty());
  // Blocks without motion between moves leave no gap.
  ASSERT_EQ(fx.Plot("G0X0Y0|G1X1.1Y.3F10.|G0Z5.|T2M6|G1X-3.3|Y7.77"), 4);
  for (int i = 2; i <= 4; ++i) {
    EXPECT_EQ(std::memcmp(&fx.table[i].StartPoint, &fx.table[i - 1].EndPoint, sizeof(GeoPoint)), 0);
  }
}

TEST(PlotDriverTotals, DistancesAndRunTime) {
  PlotFixture fx;
  // 3-4-5 rapid, then 10 at F600 (1 s), then 6 at F120 per revolution of S60 (0.05 s).
  ASSERT_EQ(fx.Plot("G0X0Y0|X3.Y4.|G1X13.F600.|G95X19.F2.S60"), 3);
  EXPECT_DOUBLE_EQ(fx.table.RapidDistance, 5);
  EXPECT_DOUBLE_EQ(fx.table.FeedDistance, 16);
  EXPECT_NEAR(fx.table.RunTime, 1.0 + 6 / (2.0 * 60 / 60), 1e-12);
  fx.driver.MoveRate = 2;
  fx.Plot("G0X0Y0|G1X10.F600.");
  EXPECT_DOUBLE_EQ(fx.table.RunTime, 0.5);
}

TEST(PlotDriverTotals, ElapsedTimeIsTheLastStatus) {
  PlotFixture fx;
  fx.Plot("G0X0|G1X1.F1.");
  ASSERT_FALSE(fx.host.statuses.empty());
  EXPECT_EQ(fx.host.statuses.front(), (std::pair<std::string, std::string>{"msg", ""}));
  EXPECT_EQ(fx.host.statuses[1].second, "Plotting...");
  const std::string& last = fx.host.statuses.back().second;
  EXPECT_EQ(last.rfind("Elapsed Time = ", 0), 0u) << last;
  EXPECT_EQ(last.substr(last.size() - 8), " seconds");
  EXPECT_FALSE(fx.driver.PlotBusy);
}

TEST(PlotDriverWarnings, TextsIconsAndOrder) {
  PlotFixture fx;
  fx.driver.Warnings = {true, true, true};
  ASSERT_EQ(fx.Plot("G0X0|G1X1."), 1);
  EXPECT_EQ(fx.MessageTexts(), (std::vector<std::string>{"Feed motion while commanded feedrate = 0",
                                                         "Feed motion while spindle speed = 0",
                                                         "Feed motion while spindle OFF"}));
  for (const auto& shown : fx.host.shown) {
    EXPECT_EQ(shown.prompt.title, "Zemtra");
    EXPECT_EQ(shown.prompt.icon, MsgIcon::Exclamation);
    EXPECT_EQ(shown.prompt.buttons, MsgButtons::OkCancel);
  }
  EXPECT_EQ(fx.host.caretLines, (std::vector<int>{2, 2, 2}));

  fx.host.shown.clear();
  ASSERT_EQ(fx.Plot("G0X0|G95G1X1.F1.M3|S100X2."), 2);
  EXPECT_EQ(fx.MessageTexts(),
            (std::vector<std::string>{"Spindle RPM = 0 while Feed per Revolution is active",
                                      "Feed motion while spindle speed = 0"}));
}

TEST(PlotDriverWarnings, EachSwitchSilencesItsOwn) {
  PlotFixture fx;
  fx.driver.Warnings = {false, false, true};
  ASSERT_EQ(fx.Plot("G0X0|G1X1.|M3|X2.|M0|X3."), 3);
  // Spindle off at the first line, on at the second, off again after M00.
  EXPECT_EQ(fx.MessageTexts(),
            (std::vector<std::string>{"Feed motion while spindle OFF", "M00 Program Stop",
                                      "Feed motion while spindle OFF"}));
}

TEST(PlotDriverWarnings, CancelKeepsTheEntityAndEndsThePlot) {
  PlotFixture fx;
  fx.driver.Warnings = {true, false, false};
  fx.host.queueAnswer(MsgAnswer::Cancel);
  ASSERT_EQ(fx.Plot("G0X0|G1X1.|X2.|X3."), 1);
  EXPECT_EQ(fx.table[1].EndPoint.X, 1.0f);
  EXPECT_EQ(fx.host.shown.size(), 1u);
  EXPECT_TRUE(fx.driver.PlotCancel);
  EXPECT_FALSE(fx.interpreter.StoppedByError);
}

TEST(PlotDriverWarnings, QuietPlotShowsNothing) {
  PlotFixture fx;
  fx.driver.Warnings = {true, true, true};
  fx.driver.QuietPlot = true;
  ASSERT_EQ(fx.Plot("G0X0|G1X1.|M0|X2.|G1XY|X5."), 2);
  EXPECT_TRUE(fx.host.shown.empty());
  EXPECT_TRUE(fx.interpreter.StoppedByError);
}

TEST(PlotDriverSpecialMoves, ReferenceReturnAddsAnEntityToMachineZero) {
  PlotFixture fx;
  fx.variables.WriteNumber(5221, 100);  // G54 X
  fx.variables.WriteNumber(5222, 50);   // G54 Y
  ASSERT_EQ(fx.Plot("G0X0Y0Z0|G28X5.|G1Y1.F10."), 3);
  EXPECT_EQ(fx.table[1].EndPoint, (GeoPoint{105, 50, 0, 0}));  // through the point in the block
  EXPECT_EQ(fx.table[2].EntityType, kRapid);
  EXPECT_EQ(fx.table[2].EndPoint, (GeoPoint{0, 50, 0, 0}));  // X to machine zero
  EXPECT_EQ(fx.table[2].LineNumber, 2);
  EXPECT_EQ(fx.interpreter.CurrentPos.X, -100.0f);
  EXPECT_EQ(fx.table[3].EndPoint, (GeoPoint{0, 51, 0, 0}));
  EXPECT_DOUBLE_EQ(fx.table.RapidDistance, 5 + 105);
  EXPECT_DOUBLE_EQ(fx.variables.ReadNumber(5021), 0);
}

TEST(PlotDriverSpecialMoves, MachineCoordinateMove) {
  PlotFixture fx;
  fx.variables.WriteNumber(5221, 100);
  ASSERT_EQ(fx.Plot("G0X0Y0|G53X7.Y8.|G1X1.F10."), 3);
  EXPECT_EQ(fx.table[1].EndPoint, fx.table[1].StartPoint);  // the ordinary entity has no length
  EXPECT_EQ(fx.table[2].EndPoint, (GeoPoint{7, 8, 0, 0}));
  EXPECT_EQ(fx.interpreter.CurrentPos.Y, 8.0f);
  EXPECT_EQ(fx.table[3].EndPoint, (GeoPoint{101, 8, 0, 0}));
}

TEST(PlotDriverCorners, ChamferAndTheCommaForm) {
  PlotFixture fx;
  ASSERT_EQ(fx.Plot("G0X0Y0|G1X10.,C3.F100.|Y10."), 3);
  const GeoEntity& chamfer = fx.table[2];
  EXPECT_EQ(chamfer.EntityType, kFeed);
  EXPECT_EQ(chamfer.StartPoint, (GeoPoint{7, 0, 0, 0}));
  EXPECT_EQ(chamfer.EndPoint, (GeoPoint{10, 3, 0, 0}));
  // A corner value only acts between two feed lines.
  ASSERT_EQ(fx.Plot("G0X0Y0|G1X10.R2.F100.|G0Y10."), 2);
}

TEST(PlotDriverFailure, ExpressionTooLongEndsThePlotWithWhatItHas) {
  PlotFixture fx;
  std::string longExpression = "G0X0|G1X1.F10.|X[1";
  for (int i = 0; i < 120; ++i) longExpression += "+1";
  longExpression += "]|X5.";
  fx.Plot(longExpression);
  EXPECT_TRUE(fx.driver.Failed);
  EXPECT_FALSE(fx.driver.PlotBusy);
  ASSERT_EQ(fx.host.shown.size(), 1u);
  EXPECT_EQ(fx.host.shown[0].prompt.text, "Error in Plot_GCodeToGeometry\r\nExpression too long");
  EXPECT_EQ(fx.host.shown[0].prompt.icon, MsgIcon::Stop);
  EXPECT_EQ(fx.driver.EntityCount(), 1);
  EXPECT_EQ(fx.table[1].EndPoint.X, 1.0f);
}

TEST(PlotDriverFailure, BadBytesNeverCrashOrHang) {
  std::string binary;
  for (int i = 0; i < 20000; ++i) binary += static_cast<char>((i * 7919) % 256);
  const std::string longLine = "G1X1." + std::string(10 * 1024 * 1024, '5');
  const std::string manyWords = [] {
    std::string s = "G0";
    for (int i = 0; i < 400000; ++i) s += "X1.Y2.";
    return s;
  }();
  const std::string inputs[] = {binary,
                                std::string("G0X1.\0\0G1X2.\r\nG1X3.", 18),
                                longLine,
                                manyWords,
                                std::string(100000, '\n'),
                                "\r\r\r\n\n"};
  for (const std::string& input : inputs) {
    PlotFixture fx;
    fx.program = ProgramText(input, "bad.nc");
    fx.driver.RefreshGeometry(fx.program);
    EXPECT_FALSE(fx.driver.PlotBusy);
    EXPECT_LE(fx.host.shown.size(), 1u);
  }
}

TEST(PlotDriverFlow, BusyOrBlockedPlotsAreIgnored) {
  PlotFixture fx;
  fx.Plot("G0X0|G1X1.");
  fx.driver.PlotBusy = true;
  fx.Plot("G0X0|G1X1.|X2.|X3.");
  EXPECT_EQ(fx.table.HighestIndex(), 1);
  fx.driver.PlotBusy = false;
  fx.driver.PlotBlocked = true;
  fx.Plot("G0X0|G1X1.|X2.|X3.");
  EXPECT_EQ(fx.table.HighestIndex(), 1);
}

TEST(PlotDriverFlow, ProgressAndEscape) {
  PlotFixture fx;
  fx.driver.ProgressInterval = std::chrono::milliseconds(0);
  std::string program = "G0X0";
  for (int i = 0; i < 2000; ++i) program += "|G1X" + std::to_string(i) + ".F100.";
  fx.Plot(program);
  EXPECT_GT(fx.host.pumpCount, 0);
  bool sawPercent = false;
  for (const auto& [panel, text] : fx.host.statuses) {
    sawPercent =
        sawPercent || (panel == "msg" && text.rfind("Plotting... ", 0) == 0 && text.back() == '%');
  }
  EXPECT_TRUE(sawPercent);
  fx.host.abort = true;
  fx.Plot(program);
  EXPECT_TRUE(fx.driver.PlotCancel);
  EXPECT_LT(fx.table.HighestIndex(), 1999);
}

TEST(PlotDriverEntities, WorkOffsetAndColours) {
  MachineConfig config = test::DefaultMill();
  config.ColorByGCode = 0;
  config.ToolColors = {0, 11, 22};
  PlotFixture fx(config);
  fx.variables.WriteNumber(5241, 10);  // G55 X
  ASSERT_EQ(fx.Plot("G0X0Y0|G1X1.F1.|T1M6|G55X2.|T2M6|X3.|T3M6|X4."), 4);
  EXPECT_EQ(fx.table[1].ColorIndex, 0);
  EXPECT_EQ(fx.table[2].ColorIndex, 1);
  EXPECT_EQ(fx.table[2].EndPoint.X, 12.0f);
  EXPECT_EQ(fx.table[2].WorkOffset.X, 10.0f);
  EXPECT_EQ(fx.table[3].ColorIndex, 2);
  EXPECT_EQ(fx.table[4].ColorIndex, 0);  // beyond the configured tool colours
}

TEST(PlotDriverEntities, FirstPointHoldsTheWorkOffsetAndRotation) {
  PlotFixture fx;
  fx.variables.WriteNumber(5221, 10);
  fx.config.InitialState = "G68";  // rotation on, about the origin
  fx.interpreter.RotationAngle = 0;
  ASSERT_EQ(fx.Plot("G0X1.Y0|G1X2.F1."), 1);
  EXPECT_EQ(fx.table[1].StartPoint, (GeoPoint{11, 0, 0, 0}));
  EXPECT_EQ(fx.interpreter.LineMove.Start, (GeoPoint{2, 0, 0, 0}));
}

TEST(PlotDriverEntities, MirrorFlipsAboutItsCentre) {
  PlotFixture fx;
  // Mirror X about 1: the state the mirror codes set.
  fx.config.InitialState = "G51.1";
  fx.program = ProgramText(test::Lines("G0X0Y0|G1X3.Y2.F1.|M89|X4."), "m.nc");
  fx.driver.ModalLine = 1;  // runs after the first motion, before the second block
  fx.driver.ModalReport = [&] {
    fx.interpreter.MirrorOn[0] = true;
    fx.interpreter.MirrorCenter[0] = 1;
  };
  fx.driver.RefreshGeometry(fx.program);
  ASSERT_EQ(fx.table.HighestIndex(), 2);
  EXPECT_EQ(fx.table[1].EndPoint, (GeoPoint{-1, 2, 0, 0}));
  EXPECT_DOUBLE_EQ(fx.variables.ReadNumber(5021), 4);  // mirror off again
  EXPECT_EQ(fx.table[2].EndPoint, (GeoPoint{4, 2, 0, 0}));
}

// Whatever a configuration file holds, a plot ends without a crash and with at most one error.
TEST(PlotDriverFailure, NonsenseConfigurationValues) {
  MachineConfig config = test::DefaultMill();
  config.CoordinateResolution = 0;
  config.RotaryAxisResolution = -1e300;
  config.RotaryAxisIdentifier = "#";
  config.DwellAddress = "";
  std::string longState = "G0X[1";  // longer than an expression may be
  for (int i = 0; i < 200; ++i) longState += "+1";
  config.ExternalGCodeMacros = {0, -5, 32767, 1000, 371};
  config.ToolColors = {};
  config.MCodeXMirrorOn = 0;
  config.MCodeYMirrorOn = 0;
  config.MCodeMirrorOff = 0;
  config.LatheGCodeFormat = 7;
  for (int machineType : {0, 1, 5}) {
    config.MachineType = static_cast<std::int16_t>(machineType);
    config.InitialState = machineType == 1 ? longState + "]" : "G1XY;&[(";
    PlotFixture fx(config);
    fx.Plot("G0X0Y0Z0|G1X100Y2.F10|G4X1|T1M6|G28X0|X1.|M30");
    EXPECT_FALSE(fx.driver.Failed) << machineType;
    EXPECT_FALSE(fx.driver.PlotBusy) << machineType;
    EXPECT_LE(fx.host.shown.size(), 1u) << machineType;
  }
}

}  // namespace
}  // namespace zemtra
