#include <gtest/gtest.h>

#include <cmath>
#include <string>

#include "PlotFixture.h"
#include "interp/BlockReader.h"
#include "interp/ModalTables.h"

namespace zemtra {
namespace {

struct CleanCase {
  std::string_view line;
  bool blockSkip;
  const char* cleaned;
  std::int32_t blockNumber;  // -1: left as it was
};

TEST(CleanBlock, StripsBlanksCommentsAndLeadingWords) {
  const CleanCase cases[] = {
      {"N10", false, "", 10},
      {"/N10 G1 X1", false, "G1X1", 10},
      {"/N10 G1 X1", true, "", -1},
      {"(X1)G1X2", false, "G1X2", -1},
      {"G1X2[note", false, "G1X2[NOTE", -1},
      {"[note] G1 X3", false, "G1X3", -1},
      {"g1 x1\ty2", false, "G1X1Y2", -1},
      {"G1 X1 ;comment", false, "G1X1;COMMENT", -1},
      {"; whole line", false, "", -1},
      {"& whole line", false, "", -1},
      {"%", false, "%", -1},
      {"G1 (a] not comment) X5", false, "G1NOTCOMMENT)X5", -1},
      {"G1 [a) closes] X6", false, "G1[A)CLOSES]X6", -1},
      {"G0 X1 N20 Y2", false, "G0X1N20Y2", -1},
      {"n005 g0", false, "G0", 5},
      {std::string_view("G1\0X1\x01Y2", 8), false, "G1X1Y2", -1},  // NULs and controls vanish
  };
  for (const CleanCase& c : cases) {
    std::string result = "stale";
    std::int32_t blockNumber = -1;
    CleanBlock(c.line, c.blockSkip, result, blockNumber);
    EXPECT_EQ(result, c.cleaned) << c.line;
    EXPECT_EQ(blockNumber, c.blockNumber) << c.line;
  }
}

class DecodeTest : public ::testing::Test {
 protected:
  void SetUp() override { fx.Start(""); }
  // Decodes `text` and writes the variables it changed, as a reader from outside would.
  int Decode(std::string_view text) {
    const int code = fx.interpreter.DecodeBlock(text);
    fx.interpreter.FlushVariables();
    return code;
  }
  double Value(char c) const { return fx.interpreter.AddrValue[Letter(c)]; }
  bool Seen(char c) const { return fx.interpreter.AddrSeen[Letter(c)] != 0; }
  test::PlotFixture fx;
};

TEST_F(DecodeTest, ErrorCodesOfBadBlocks) {
  const std::pair<const char*, int> cases[] = {
      {"G1X1;COMMENT", 9}, {"G1XY1", 10},   {"G1X1,Q1", 9},  {"G54.1P301", 17},
      {"G54.1", 16},       {"G54.1X1", 16}, {"G54.1P0", 17}, {"G1X1*", 1},
      {"G1X1$Y2", 9},      {"G1X", 0},      {"%", 0},        {"G1X[1+", 2},
  };
  for (const auto& [text, code] : cases) {
    fx.Start("");
    EXPECT_EQ(Decode(text), code) << text;
  }
}

TEST_F(DecodeTest, LastCharacterIsNeverReadAsALetter) {
  EXPECT_EQ(Decode("G1X"), 0);
  EXPECT_FALSE(Seen('X'));
  EXPECT_EQ(fx.interpreter.ModalG[1], 1.0f);
}

TEST_F(DecodeTest, BracketOutsideAValueEndsTheBlock) {
  EXPECT_EQ(Decode("G1X2.[NOTE"), 0);
  EXPECT_EQ(fx.interpreter.CurrentPos.X, 2.0f);
}

TEST_F(DecodeTest, IntegerFormatValuesAreScaledByTheResolution) {
  fx.config.CoordinateResolution = 0.1;
  fx.Start("");
  ASSERT_EQ(Decode("G1X15Y1.5Z[15]F100"), 0);
  EXPECT_DOUBLE_EQ(Value('X'), 1.5);
  EXPECT_DOUBLE_EQ(Value('Y'), 1.5);
  EXPECT_DOUBLE_EQ(Value('Z'), 15);
  EXPECT_DOUBLE_EQ(Value('F'), 10);
  EXPECT_EQ(fx.interpreter.CurrentPos.X, 1.5f);
  // Letters outside the list keep their value; the argument variable is written unscaled.
  ASSERT_EQ(Decode("S1000M3"), 0);
  EXPECT_DOUBLE_EQ(Value('S'), 1000);
  ASSERT_EQ(Decode("F25"), 0);
  EXPECT_DOUBLE_EQ(fx.variables.ReadNumber(4309), 25);
}

TEST_F(DecodeTest, PlainNumbersAndExpressionsReadAlike) {
  const std::pair<const char*, double> cases[] = {
      {"X-0.", 0},     {"X-.5", -0.5}, {"X+2.25", 2.25},   {"X1+2.", 3},  {"X3.*2.", 6}, {"X#0", 0},
      {"X[2.+3.]", 5}, {"X1.2", 1.2},  {"X10.5EQ10.5", 1}, {"X0.1", 0.1}, {"X-0", 0},
  };
  for (const auto& [text, x] : cases) {
    fx.Start("");
    ASSERT_EQ(Decode(std::string(text) + "Y"), 0) << text;
    EXPECT_DOUBLE_EQ(Value('X'), x) << text;
    if (x == 0) {
      EXPECT_FALSE(std::signbit(Value('X'))) << text;
    }
  }
}

TEST_F(DecodeTest, OffsetNumbers) {
  ASSERT_EQ(Decode("G54.1P1"), 0);
  EXPECT_EQ(fx.interpreter.ModalG[12], 54.1f);
  EXPECT_EQ(fx.interpreter.ExtendedOffset, 1);
  ASSERT_EQ(Decode("G54P2"), 0);
  EXPECT_EQ(fx.interpreter.ModalG[12], 54.1f);
  EXPECT_EQ(fx.interpreter.ExtendedOffset, 2);
}

TEST_F(DecodeTest, PlaneCannotChangeUnderRotation) {
  fx.interpreter.ModalG[16] = 68;
  EXPECT_EQ(Decode("G18"), 14);
  EXPECT_EQ(Decode("G17"), 0);  // the same plane again is allowed
}

TEST_F(DecodeTest, GroupZeroCodesDoNotMoveThePosition) {
  ASSERT_EQ(Decode("G4X1"), 0);
  EXPECT_EQ(fx.interpreter.CurrentPos.X, 0.0f);
  ASSERT_EQ(Decode("G9X1."), 0);  // G09 leaves no mark in group 0
  EXPECT_EQ(fx.interpreter.ModalG[0], 0.0f);
  EXPECT_EQ(fx.interpreter.CurrentPos.X, 1.0f);
  ASSERT_EQ(Decode("G28X5."), 0);
  EXPECT_EQ(fx.interpreter.CurrentPos.X, 5.0f);
}

TEST_F(DecodeTest, MotionCodeCancelsAModalCycleAndWritesModalVariables) {
  fx.interpreter.ModalG[9] = 81;
  ASSERT_EQ(Decode("G1"), 0);
  EXPECT_EQ(fx.interpreter.ModalG[9], 80.0f);
  EXPECT_DOUBLE_EQ(fx.variables.ReadNumber(4201), 1);
  ASSERT_EQ(Decode("G91"), 0);
  EXPECT_DOUBLE_EQ(fx.variables.ReadNumber(4203), 91);
}

TEST_F(DecodeTest, PositionVariablesFollowTheAxes) {
  ASSERT_EQ(Decode("G0X1.Y2.Z3."), 0);
  ASSERT_EQ(Decode("X0.1"), 0);
  EXPECT_DOUBLE_EQ(fx.variables.ReadNumber(5001), 1);    // previous block
  EXPECT_DOUBLE_EQ(fx.variables.ReadNumber(5041), 0.1);  // work position, as its text reads
  EXPECT_DOUBLE_EQ(fx.variables.ReadNumber(5021), 0.1);  // machine position, offset 0
  EXPECT_DOUBLE_EQ(fx.variables.ReadNumber(5042), 2);
  EXPECT_DOUBLE_EQ(fx.variables.ReadNumber(5103), 3);
  ASSERT_EQ(Decode("G91X1.Z-1."), 0);
  EXPECT_EQ(fx.interpreter.CurrentPos.X, 1.1f);
  EXPECT_DOUBLE_EQ(fx.variables.ReadNumber(5043), 2);
}

TEST_F(DecodeTest, ZAndRUnderAModalCycleAreParameters) {
  ASSERT_EQ(Decode("G0Z5."), 0);
  fx.interpreter.ModalG[9] = 81;
  ASSERT_EQ(Decode("X1.Z-1.R.1"), 0);
  EXPECT_EQ(fx.interpreter.CurrentPos.Z, 5.0f);
  EXPECT_EQ(fx.interpreter.CurrentPos.X, 1.0f);
  EXPECT_DOUBLE_EQ(fx.variables.ReadNumber(5101), -1);
  EXPECT_DOUBLE_EQ(fx.variables.ReadNumber(5102), 0.1);
  EXPECT_DOUBLE_EQ(fx.variables.ReadNumber(5103), 5);
  fx.interpreter.ModalG[3] = 91;
  ASSERT_EQ(Decode("Z-2."), 0);
  EXPECT_DOUBLE_EQ(fx.variables.ReadNumber(5101), 3);
}

TEST_F(DecodeTest, WorkOffsetIsTakenPerAxisWhenTheAxisIsProgrammed) {
  fx.variables.WriteNumber(5241, 10);  // G55 X
  fx.variables.WriteNumber(5242, 20);  // G55 Y
  ASSERT_EQ(Decode("G55"), 0);
  EXPECT_EQ(fx.interpreter.WorkOffset.X, 0.0f);
  ASSERT_EQ(Decode("X0."), 0);
  EXPECT_EQ(fx.interpreter.WorkOffset.X, 10.0f);
  EXPECT_EQ(fx.interpreter.WorkOffset.Y, 0.0f);
  EXPECT_DOUBLE_EQ(fx.variables.ReadNumber(5021), 10);
  ASSERT_EQ(Decode("Y1."), 0);
  EXPECT_EQ(fx.interpreter.WorkOffset.Y, 20.0f);
}

TEST_F(DecodeTest, RotaryLetterMovesAAndMarksRotaryUse) {
  ASSERT_EQ(Decode("G0B90"), 0);  // rotary resolution 0.001
  EXPECT_EQ(fx.interpreter.CurrentPos.A, 0.09f);
  EXPECT_TRUE(fx.interpreter.RotaryUsed);
}

TEST(LatheDecode, XIsADiameterAndUWAlwaysAdd) {
  MachineConfig lathe = test::DefaultMill();
  lathe.MachineType = 1;
  lathe.LatheXDiameter = -1;
  test::PlotFixture fx(lathe);
  fx.Start("");
  ASSERT_EQ(fx.interpreter.DecodeBlock("G0X2.Z1."), 0);
  fx.interpreter.FlushVariables();
  EXPECT_EQ(fx.interpreter.CurrentPos.X, 1.0f);
  EXPECT_EQ(fx.interpreter.CurrentPos.Z, 1.0f);
  EXPECT_DOUBLE_EQ(fx.variables.ReadNumber(5041), 2);  // shown as a diameter
  EXPECT_DOUBLE_EQ(fx.variables.ReadNumber(5042), 1);  // Z uses the second variable
  ASSERT_EQ(fx.interpreter.DecodeBlock("U1.W-.5"), 0);
  EXPECT_EQ(fx.interpreter.CurrentPos.X, 1.5f);
  EXPECT_EQ(fx.interpreter.CurrentPos.Z, 0.5f);
  EXPECT_EQ(fx.interpreter.CurrentPos.Y, 0.0f);
  EXPECT_EQ(fx.interpreter.DecodeBlock("G1X1,C1"), 9);  // no comma rule on a lathe
  EXPECT_DOUBLE_EQ(fx.variables.ReadNumber(5100), 2);
}

TEST(ModalTables, GroupsDifferByDialect) {
  struct Case {
    int code;
    int mill, latheA, latheB;
  } cases[] = {
      {0, 1, 1, 1},   {16, 18, 0, 0},   {18, 2, 2, 2},  {43, 8, 8, 8},   {49, 8, 8, 8},
      {50, 11, 0, 0}, {55, 12, 12, 12}, {68, 16, 0, 0}, {80, 9, 9, 9},   {90, 3, 9, 3},
      {91, 3, 0, 3},  {92, 0, 9, 0},    {94, 5, 9, 5},  {96, 0, 17, 17}, {99, 10, 5, 10},
      {4, 0, 0, 0},   {65, 0, 0, 0},    {45, 0, 0, 0},
  };
  for (const Case& c : cases) {
    EXPECT_EQ(BaseGroupTable(Dialect::Mill)[c.code], c.mill) << c.code;
    EXPECT_EQ(BaseGroupTable(Dialect::LatheA)[c.code], c.latheA) << c.code;
    EXPECT_EQ(BaseGroupTable(Dialect::LatheB)[c.code], c.latheB) << c.code;
  }
  EXPECT_EQ(ModalStartValues(Dialect::LatheA)[5], 98.0f);
  EXPECT_EQ(ModalStartValues(Dialect::LatheB)[5], 94.0f);
  EXPECT_EQ(ModalStartValues(Dialect::Mill)[19], 50.1f);
}

// Lathe format 2 is unknown: it names nothing.
TEST(ModalTables, CodeNamesPerDialect) {
  struct Case {
    float code;
    int machineType, latheFormat;
    const char* name;
  } cases[] = {
      {0, 0, 0, "Rapid Move"},
      {90, 0, 0, "Absolute Coordinates"},
      {90, 1, 0, "Turning Cycle"},
      {91, 1, 0, ""},
      {54.1f, 1, 1, "Extended Work Offset"},
      {50, 1, 0, "Coordinate System/Clamp RPM Set"},
      {50, 1, 1, "Spindle RPM clamp"},
      {92, 1, 1, "Coordinate System/Clamp RPM Set"},
      {83, 0, 0, "Canned Cycle Active"},
      {37.1f, 0, 0, "Grid Pattern Cycle"},
      {37.1f, 1, 0, ""},
      {12, 1, 0, ""},
      {96, 0, 0, ""},
      {999, 0, 0, ""},
      {1, 1, 2, ""},
  };
  for (const Case& c : cases) {
    EXPECT_EQ(GCodeName(c.code, c.machineType, c.latheFormat), c.name)
        << c.code << " " << c.machineType << " " << c.latheFormat;
  }
}

}  // namespace
}  // namespace zemtra
