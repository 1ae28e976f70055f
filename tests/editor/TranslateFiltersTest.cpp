#include <gtest/gtest.h>

#include "FilterTestSupport.h"

namespace zemtra {
namespace {

using test::FilterRunner;
using Lines = std::vector<std::string>;

const Lines kPath = {"(part)",      "G90 G0 X0 Y0", "G1 X1 Y0 F100", "G3 X2 Y1 I0 J1",
                     "G2 X3 Y2 R1", "G91 G1 X1",    "G90 G92 X0 Y0", "#1=X2"};

TEST(Mirror, FlipsWordsAndArcDirections) {
  FilterRunner run;
  run.parameters.Mirror = {true, false, true};
  run.parameters.MirrorPoint = {1, 0, 0};
  EXPECT_EQ(run.Translate(TranslateCode::kMirror, kPath),
            (Lines{"(part)", "G90 G0 X2.0 Y0", "G1 X1.0 Y0 F100", "G02 X0.0 Y1 I0.0 J1",
                   "G03 X-1.0 Y2 R1", "G91 G1 X-1.0", "G90 G92 X0 Y0", "#1=X2"}));
  run.parameters.Mirror = {true, true, false};
  EXPECT_EQ(run.Translate(TranslateCode::kMirror, {"G0 X0 Y0", "G3 X1 Y1 I1 J0"}),
            (Lines{"G0 X2.0 Y0.0", "G3 X1.0 Y-1.0 I-1.0 J0.0"}));
}

TEST(Mirror, ZOnlyOnFeedMoves) {
  FilterRunner run;
  run.parameters.Mirror = {false, false, true};
  EXPECT_EQ(run.Translate(TranslateCode::kMirror, {"G0 Z5", "G1 Z-1", "G0 Z5."}),
            (Lines{"G0 Z5", "G1 Z1.0", "G0 Z5."}));
}

TEST(Rotate, WritesBothWordsOfAPair) {
  FilterRunner run;
  run.parameters.RotAngle = 90;
  run.parameters.RotCenterX = 1;
  EXPECT_EQ(run.Translate(TranslateCode::kRotate, kPath),
            (Lines{"(part)", "G90 G0 X1.0 Y-1.0", "G1 X1.0 Y0.0 F100", "G3 X0.0 Y1.0 I-1.0 J0.0",
                   "G2 X-1.0 Y2.0 R1", "G91 G1 X0.0 Y1.0", "G90 G92 X0 Y0", "#1=X2"}));
}

TEST(Shift, LeavesIncrementalAndAbsentWordsAlone) {
  FilterRunner run;
  run.parameters.Shift = {0.5f, 0, 0};
  EXPECT_EQ(run.Translate(TranslateCode::kShift, kPath),
            (Lines{"(part)", "G90 G0 X0.5 Y0", "G1 X1.5 Y0 F100", "G3 X2.5 Y1 I0 J1",
                   "G2 X3.5 Y2 R1", "G91 G1 X1", "G90 G92 X0 Y0", "#1=X2"}));
  run.parameters.Shift = {0, 1, 0};
  EXPECT_EQ(run.Translate(TranslateCode::kShift, {"G1 X1"}), (Lines{"G1 X1"}));
  run.config.AbsoluteArcCenter = kFlagTrue;
  EXPECT_EQ(run.Translate(TranslateCode::kShift, {"G0 X1 Y0", "G3 X2 Y1 I1 J1"}),
            (Lines{"G0 X1 Y1.0", "G3 X2 Y2.0 I1 J2.0"}));
}

TEST(Scale, ScalesPointsRadiiAndConvertsFeeds) {
  FilterRunner run;
  run.parameters.SclFactor = 2;
  EXPECT_EQ(run.Translate(TranslateCode::kScale, {"G0 X1 Y1 Z1", "G2 X3 Y3 R2 F5"}),
            (Lines{"G0 X2.0 Y2.0 Z2.0", "G2 X6.0 Y6.0 R4.0 F5"}));
  run.parameters.SclFactor = 25.4;
  run.parameters.FeedFactor = 25.4;
  EXPECT_EQ(run.Translate(TranslateCode::kScale, {"G1 X1 F100", "G91 X1"}),
            (Lines{"G1 X25.4 F2540.0", "G91 X25.4"}));
}

TEST(Translate, LatheDiametersStayDiameters) {
  FilterRunner run;
  run.config.MachineType = 1;
  run.config.LatheXDiameter = kFlagTrue;
  run.parameters.Shift = {0.5f, 0, 1};
  EXPECT_EQ(run.Translate(TranslateCode::kShift, {"G0 X4. Z1.", "G1 U-1. W-2."}),
            (Lines{"G0 X5.0 Z2.0", "G1 U-1. W-2."}));
}

TEST(Translate, RewritesInTheDisplayPrecision) {
  FilterRunner run;
  run.parameters.Shift = {1, 0, 0};
  EXPECT_EQ(run.Translate(TranslateCode::kShift, {"X1", "X0.23456", "X1.25"}),
            (Lines{"X2.0", "X1.2346", "X2.25"}));
  run.parameters.ShortFormat = "###0.0#####";
  EXPECT_EQ(run.Translate(TranslateCode::kShift, {"X0.23456"}), (Lines{"X1.23456"}));
}

TEST(Translate, KeepsWordsThatReadVariables) {
  FilterRunner run;
  run.parameters.SclFactor = 2;
  EXPECT_EQ(run.Translate(TranslateCode::kScale, {"g0 z#3", "G1 X[#1 + #6] Y2."}),
            (Lines{"g0 z#3", "G1 X[#1 + #6] Y4.0"}));
}

TEST(Translate, CycleHolesAfterAnArcAreNotArcs) {
  FilterRunner run;
  run.parameters.SclFactor = 2;
  EXPECT_EQ(run.Translate(TranslateCode::kScale,
                          {"G0 X2 Y1", "G3 X2.5 Y1.5 R0.5", "G81 X3. Y1. Z-1. R0.1", "G80"}),
            (Lines{"G0 X4.0 Y2.0", "G3 X5.0 Y3.0 R1.0", "G81 X6.0 Y2.0 Z-2.0 R0.1", "G80"}));
  EXPECT_EQ(run.failedArcs, 0);
}

TEST(Translate, ArcsWithoutAKnownStartAreCountedAndKept) {
  FilterRunner run;
  run.parameters.Shift = {1, 0, 0};
  EXPECT_EQ(run.Translate(TranslateCode::kShift, {"G2 X1 Y1 R1", "G2 X2 Y0 R0.1"}),
            (Lines{"G2 X1 Y1 R1", "G2 X2 Y0 R0.1"}));
  EXPECT_EQ(run.failedArcs, 2);
  EXPECT_EQ(run.host.lastText(), "2 arcs could not be converted");
}

TEST(ArcRewriting, ConvertsBetweenRadiusAndCentreForms) {
  FilterRunner run;
  // Half circle: R positive; 270 degrees: R negative; a full circle has no R form.
  EXPECT_EQ(run.Translate(TranslateCode::kArcsToR,
                          {"G0 X0 Y0", "G2 X2 Y0 I1 J0", "G2 X3 Y-1 I1 J0", "G2 X3 Y-1 I0 J1"}),
            (Lines{"G0 X0 Y0", "G2 X2 Y0 R1.0", "G2 X3 Y-1 R-1.0", "G2 X3 Y-1 I0 J1"}));
  EXPECT_EQ(run.failedArcs, 1);
  EXPECT_EQ(run.Translate(TranslateCode::kArcsToIJK, {"G0 X0 Y0", "G2 X2 Y0 R1", "G3X3Y-1R-1"}),
            (Lines{"G0 X0 Y0", "G2 X2 Y0 I1.0 J0.0", "G3X3Y-1I0.0J-1.0"}));
  EXPECT_EQ(run.Translate(TranslateCode::kArcsToIJK, {"G18 G0 X0 Z0", "G2 X2 Z0 R1"}),
            (Lines{"G18 G0 X0 Z0", "G2 X2 Z0 I1.0 K0.0"}));
  EXPECT_EQ(run.Translate(TranslateCode::kArcsAbsolute, {"G0 X1 Y1", "G2 X3 Y1 I1 J0"}),
            (Lines{"G0 X1 Y1", "G2 X3 Y1 I2.0 J1.0"}));
  run.config.AbsoluteArcCenter = kFlagTrue;
  EXPECT_EQ(run.Translate(TranslateCode::kArcsIncremental, {"G0 X1 Y1", "G2 X3 Y1 I2 J1"}),
            (Lines{"G0 X1 Y1", "G2 X3 Y1 I1.0 J0.0"}));
}

TEST(BreakArcs, ChordsStayWithinTheTolerance) {
  FilterRunner run;
  const Lines out = run.Format(FormatCode::kBreakArcs, {"G0 X0 Y1", "N5 G2 X1 Y0 I0 J-1 F10"});
  ASSERT_EQ(out.size(), 1u + 18u);  // a quarter circle of radius 1 at 0.001: 18 chords
  EXPECT_EQ(out[1], "N5 G01 X0.0872 Y0.9962 F10");
  EXPECT_EQ(out.back(), "X1.0 Y0.0");
  EXPECT_EQ(out[2].substr(0, 1), "X");

  run.parameters.BreakTolerance = 5;  // beyond the radius: one chord
  EXPECT_EQ(run.Format(FormatCode::kBreakArcs, {"G0 X0 Y1", "G2 X1 Y0 R1"}),
            (Lines{"G0 X0 Y1", "G01 X1.0 Y0.0"}));
  run.parameters.BreakTolerance = 0.3;  // a helix climbs in equal parts
  EXPECT_EQ(run.Format(FormatCode::kBreakArcs, {"G0 X0 Y1 Z0", "G3 X0 Y-1 Z-1 I0 J-1"}),
            (Lines{"G0 X0 Y1 Z0", "G01 X-1.0 Y0.0 Z-0.5", "X0.0 Y-1.0 Z-1.0"}));
}

}  // namespace
}  // namespace zemtra
