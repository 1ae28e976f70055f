#include <gtest/gtest.h>

#include <cmath>
#include <string>
#include <vector>

#include "PlotFixture.h"

namespace zemtra {
namespace {

using test::PlotFixture;

void ExpectPoint(const GeoPoint& actual, GeoPoint expected, const std::string& where = "") {
  EXPECT_NEAR(actual.X, expected.X, 1e-5) << where;
  EXPECT_NEAR(actual.Y, expected.Y, 1e-5) << where;
  EXPECT_NEAR(actual.Z, expected.Z, 1e-5) << where;
}

TEST(WorkOffsets, EachAxisTakesTheNewSystemWhenItIsNextProgrammed) {
  PlotFixture fx;
  fx.variables.WriteNumber(5241, 10);     // G55 X
  fx.variables.WriteNumber(5242, 20);     // G55 Y
  fx.variables.WriteNumber(14021, 300);   // G54.1 P2 X
  fx.variables.WriteNumber(14022, -300);  // G54.1 P2 Y
  ASSERT_EQ(fx.Plot("G0X0Y0|G55|G1X0|Y0|G54.1P2X1.|G54X0Y0"), 4);
  ExpectPoint(fx.table[1].EndPoint, {10, 0, 0, 0}, "G55 X0");
  ExpectPoint(fx.table[2].EndPoint, {10, 20, 0, 0}, "then Y0");
  ExpectPoint(fx.table[3].EndPoint, {301, 20, 0, 0}, "G54.1 P2 X1.");
  ExpectPoint(fx.table[4].EndPoint, {0, 0, 0, 0}, "back to G54");
  EXPECT_EQ(fx.table[3].WorkOffset, (GeoPoint{300, 20, 0, 0}));
}

TEST(WorkOffsets, G92WritesEveryAxisIntoTheXOffset) {
  PlotFixture fx;
  fx.variables.WriteNumber(5221, 100);
  ASSERT_EQ(fx.Plot("G0X5.Y7.|G92Y2.|G1X6.|G92X1.|G1X2."), 4);
  const Interpreter& in = fx.interpreter;
  // #5022 is 7, so G92 Y2. puts 5 into the X offset; the Y offset stays 0.
  EXPECT_EQ(fx.table[1].EndPoint, (GeoPoint{10, 2, 0, 0}));
  EXPECT_EQ(fx.table[1].WorkOffset, (GeoPoint{5, 0, 0, 0}));
  EXPECT_EQ(fx.table[2].EndPoint, (GeoPoint{11, 2, 0, 0}));
  // #5021 is 11 now: G92 X1. gives a correct X offset of 10, and its line has no length.
  EXPECT_EQ(fx.table[3].WorkOffset.X, 10.0f);
  EXPECT_EQ(fx.table[3].EndPoint, (GeoPoint{11, 2, 0, 0}));
  EXPECT_EQ(fx.table[4].EndPoint, (GeoPoint{12, 2, 0, 0}));
  EXPECT_EQ(in.WorkOffset.Y, 0.0f);
}

TEST(WorkOffsets, LocalShiftMovesTheProgramNotTheTool) {
  PlotFixture fx;
  fx.variables.WriteNumber(5221, 100);
  ASSERT_EQ(fx.Plot("G0X2.Y0|G52X1.|G1X2.|G52X0|G1Y1."), 2);
  const Interpreter& in = fx.interpreter;
  // G52 X1. alone moves nothing: X2. becomes X1. in the shifted system.
  EXPECT_EQ(fx.table[1].EndPoint, (GeoPoint{103, 0, 0, 0}));
  EXPECT_EQ(fx.table[1].WorkOffset.X, 101.0f);
  EXPECT_EQ(fx.table[2].EndPoint, (GeoPoint{103, 1, 0, 0}));
  EXPECT_EQ(in.WorkOffset.X, 100.0f);
  EXPECT_EQ(in.CurrentPos.X, 3.0f);
  EXPECT_EQ(in.LocalOffset, (GeoPoint{}));
}

TEST(Rotation, EndsAndCentresTurnAboutTheRotationCentre) {
  PlotFixture fx;
  fx.variables.WriteNumber(5221, 10);  // the centre is not shifted by the offset
  ASSERT_EQ(fx.Plot("G0X0Y0|G68X10.Y0R90.|G1X1.Y0|G2X1.Y2.J1."), 2);
  ExpectPoint(fx.table[1].EndPoint, {10, 1, 0, 0});
  EXPECT_EQ(fx.table[2].EntityType, kArcCW);
  ExpectPoint(fx.table[2].EndPoint, {8, 1, 0, 0});
  ExpectPoint(fx.table[2].CenterPoint, {9, 1, 0, 0});
  EXPECT_DOUBLE_EQ(fx.variables.ReadNumber(5021), 8);
  EXPECT_DOUBLE_EQ(fx.variables.ReadNumber(5022), 1);
  ASSERT_EQ(fx.Plot("G0X0Y0|G68X10.Y0R90.|G1X1.Y0|G69G1X0"), 2);
  ExpectPoint(fx.table[2].EndPoint, {10, 0, 0, 0});  // G69: no rotation
}

TEST(Rotation, IncrementalAngleAddsAndResolutionScalesR) {
  PlotFixture fx;
  fx.Execute("G68R30.|G91G68R15.|G90G68R45");
  EXPECT_DOUBLE_EQ(fx.interpreter.RotationAngle, 45 * 0.0001);
  fx.Execute("G68R30.|G91G68R15.");
  EXPECT_DOUBLE_EQ(fx.interpreter.RotationAngle, 45);
  EXPECT_NEAR(fx.interpreter.RotationSin, std::sqrt(0.5), 1e-12);
  EXPECT_EQ(fx.interpreter.ModalG[16], 68.0f);
  // The plane cannot change while the rotation is on.
  fx.Plot("G0X0|G68R1.|G18|G1X1.");
  EXPECT_EQ(fx.host.lastText(), "Error:\r\n\r\nCannot change active plane while G68 is active");
}

TEST(Mirror, AboutItsCentreWithTheArcDirectionFlipped) {
  struct Case {
    const char* mirror;
    GeoPoint end;
    GeoPoint center;
    int code;
  } cases[] = {
      {"G51.1X1.", {-1, 2, 0, 0}, {0, 1, 0, 0}, kArcCCW},
      {"G51.1X1.Y1.", {-1, 0, 0, 0}, {0, 1, 0, 0}, kArcCW},  // flipped twice
      {"G51.1Z1.", {3, 2, 2, 0}, {2, 1, 2, 0}, kArcCW},      // Z does not flip
      {"M87", {-3, 2, 0, 0}, {-2, 1, 0, 0}, kArcCCW},        // the X mirror code
      {"M88", {3, -2, 0, 0}, {2, -1, 0, 0}, kArcCCW},
      {"G51.1X1.|G50.1X0", {3, 2, 0, 0}, {2, 1, 0, 0}, kArcCW},        // every mirror goes
      {"G51.1X1.Z1.|M89", {3, 2, 0, 0}, {2, 1, 0, 0}, kArcCW},         // mirror image off
      {"G51.1X1.Z1.|M89|M87", {-3, 2, 2, 0}, {-2, 1, 2, 0}, kArcCCW},  // but Z kept its own
  };
  for (const Case& c : cases) {
    PlotFixture fx;
    const std::string program = std::string("G0X1.Y0|") + c.mirror + "|G2X3.Y2.I1.J1.";
    ASSERT_EQ(fx.Plot(program), 1) << program;
    ExpectPoint(fx.table[1].EndPoint, c.end, program);
    ExpectPoint(fx.table[1].CenterPoint, c.center, program);
    EXPECT_EQ(fx.table[1].EntityType, c.code) << program;
    EXPECT_DOUBLE_EQ(fx.variables.ReadNumber(5021), c.end.X) << program;
  }
}

TEST(Scaling, FactorCentresAndTheirLifeAcrossPlots) {
  PlotFixture fx;
  // No P ever given: the factor is 0 and everything goes to the centre.
  ASSERT_EQ(fx.Plot("G0X0Y0|G51X1.Y1.|G1X5.Y5."), 1);
  ExpectPoint(fx.table[1].EndPoint, {1, 1, 0, 0});
  // The factor and the centres stay for the next plot; G50 only makes them inactive.
  ASSERT_EQ(fx.Plot("G0X0Y0|G51P2.|G2X2.Y0I1.J0|G50|G1X3."), 2);
  ExpectPoint(fx.table[1].EndPoint, {3, -1, 0, 0});
  ExpectPoint(fx.table[1].CenterPoint, {1, -1, 0, 0});
  EXPECT_FLOAT_EQ(fx.table[1].RadiusOrTurns, 2);
  ExpectPoint(fx.table[2].EndPoint, {3, 0, 0, 0});
  EXPECT_DOUBLE_EQ(fx.interpreter.ScaleFactor, 2);
  // I stands in for X; on an axis with a mirror too, the scale wins.
  ASSERT_EQ(fx.Plot("G0X0Y0|G51.1X5.|G51I0J0P3.|G1X1.Y1."), 1);
  ExpectPoint(fx.table[1].EndPoint, {3, 3, 0, 0});
  // A helix's turns are scaled as if they were a radius.
  ASSERT_EQ(fx.Plot("G0X0Y0Z0|G51P2.|G2X0Y0Z-1.I1.P3"), 1);
  EXPECT_FLOAT_EQ(fx.table[1].RadiusOrTurns, 6);
}

TEST(Transforms, FirstPointIsRotatedButNotMirroredOrScaled) {
  PlotFixture fx;
  ASSERT_EQ(fx.Plot("G68X0Y0R90.|G51.1X5.|G0X1.Y0|G1X2."), 1);
  ExpectPoint(fx.table[1].StartPoint, {0, 1, 0, 0});
  ExpectPoint(fx.table[1].EndPoint, {0, 8, 0, 0});  // mirrored to 8, then turned
}

}  // namespace
}  // namespace zemtra
