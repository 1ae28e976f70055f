#include <gtest/gtest.h>

#include "FilterTestSupport.h"
#include "editor/RenumberProgram.h"

namespace zemtra {
namespace {

using Lines = std::vector<std::string>;

Lines Renumber(const Lines& input, RenumberOptions options, MachineConfig config = {}) {
  RecordingHost host;
  return test::SplitOutput(RenumberProgram(test::JoinLines(input), options, config, host).text);
}

RenumberOptions Options(int start, int increment, int mode, bool addSpace = true) {
  RenumberOptions options;
  options.Start = start;
  options.Increment = increment;
  options.Mode = mode;
  options.AddSpace = addSpace;
  return options;
}

const Lines kTwoPrograms = {"%",
                            "O1000",
                            "N5 G0 X0 (N100 GOTO 5)",
                            "N10 #1=1",
                            "",
                            "IF [#1 GT 2] GOTO30",
                            "/N20 G1 X1",
                            "N30 M98 P2000 H10",
                            "GOTO#100",
                            "M99 P30",
                            "O2000",
                            "N10 X5",
                            "N30 GOTO 10",
                            "M99"};

TEST(RenumberProgram, ReferencesFollowTheirBlocksWithinEachProgram) {
  EXPECT_EQ(
      Renumber(kTwoPrograms, Options(100, 5, 1)),
      (Lines{"%", "O1000", "N100 G0 X0 (N100 GOTO 5)", "N105 #1=1", "N110",
             "N115 IF [#1 GT 2] GOTO 125", "/N120 G1 X1", "N125 M98 P2000 H105", "N130 GOTO#100",
             "N135 M99 P125", "O2000", "N140 X5", "N145 GOTO 140", "N150 M99"}));
}

TEST(RenumberProgram, ModesDecideWhichBlocksCarryNumbers) {
  EXPECT_EQ(
      Renumber(kTwoPrograms, Options(10, 10, 3)),
      (Lines{"%", "O1000", "G0 X0 (N100 GOTO 5)", "N10 #1=1", "", "IF [#1 GT 2] GOTO 20", "/G1 X1",
             "N20 M98 P2000 H10", "GOTO#100", "M99 P20", "O2000", "N30 X5", "GOTO 30", "M99"}));
  EXPECT_EQ(Renumber({"N5 (comment only)", "", "N7 G1 X1", "(note)"}, Options(1, 1, 2)),
            (Lines{"(comment only)", "", "N1 G1 X1", "(note)"}));
  EXPECT_EQ(Renumber({"N5 G1", "/N6 X1", "X2", "GOTO5"}, Options(1, 1, 0)),
            (Lines{"G1", "/X1", "X2", "GOTO5"}));
}

TEST(RenumberProgram, NumberFormAndWrapAround) {
  EXPECT_EQ(Renumber({"/N20 G1 X1"}, Options(5, 1, 1, false)), (Lines{"/N5 G1 X1"}));
  EXPECT_EQ(Renumber({"/N20 G1 X1"}, Options(5, 1, 1, true)), (Lines{"/N5 G1 X1"}));
  EXPECT_EQ(Renumber({"G1 X1"}, Options(5, 1, 1, false)), (Lines{"N5G1 X1"}));
  RenumberOptions wrap = Options(9990, 10, 1);
  wrap.MaxDigits = 4;
  EXPECT_EQ(Renumber({"X1", "X2", "X3"}, wrap), (Lines{"N9990 X1", "N9990 X2", "N9990 X3"}));
  EXPECT_EQ(Renumber({"X1", "X2"}, Options(0, 0, 1)), (Lines{"N1 X1", "N2 X2"}));
}

TEST(RenumberProgram, LatheCyclesAndLocalLabels) {
  MachineConfig lathe;
  lathe.MachineType = 1;
  lathe.M98Format = 3;
  EXPECT_EQ(Renumber({"N1 G71 P2 Q3 U0.1", "N2 X1", "N3 Z1", "M98 P2"}, Options(10, 10, 1), lathe),
            (Lines{"N10 G71 P20 Q30 U0.1", "N20 X1", "N30 Z1", "N40 M98 P20"}));
}

TEST(AddressValues, ReadAndWriteOutsideComments) {
  EXPECT_EQ(GetAddressValue("(P5) M99 P30", 'P'), "30");
  EXPECT_EQ(GetAddressValue("M99", 'P'), "");
  EXPECT_EQ(SetAddressValue("(P5) M99 P30", 'p', "40"), "(P5) M99 P40");
  EXPECT_EQ(SetAddressValue("M98P30L2", 'P', "7"), "M98P7L2");
  EXPECT_EQ(SetAddressValue("M98 P30  L2", 'P', "7"), "M98 P7 L2");
}

TEST(RenumberProgram, CancelGivesNoText) {
  RecordingHost host;
  host.abort = true;
  const FilterResult result =
      RenumberProgram(test::JoinLines(Lines(200, "G1 X1")), Options(10, 10, 1), {}, host);
  EXPECT_TRUE(result.cancelled);
  EXPECT_EQ(result.text, "");
}

}  // namespace
}  // namespace zemtra
