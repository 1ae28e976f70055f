#include <gtest/gtest.h>

#include "FilterTestSupport.h"
#include "editor/FilterDocument.h"
#include "editor/LineFilters.h"

namespace zemtra {
namespace {

using test::FilterRunner;
using Lines = std::vector<std::string>;

struct LineCase {
  std::string (*function)(std::string_view);
  std::string input;
  std::string expected;
};

TEST(LineFilters, RewriteOneLineKeepingComments) {
  const LineCase cases[] = {
      {AddSpaces, "G1X1.Y2.", "G1 X1. Y2."},
      {AddSpaces, "#100=#101+1", "#100=#101+1"},
      {AddSpaces, "N10G1X1(MOVE X1)", "N10 G1 X1 (MOVE X1)"},
      {AddSpaces, "IF[#1GT2]GOTO10", "IF[#1GT2] GOTO10"},
      {AddSpaces, "#1=SIN[#2]*ABS[#3]", "#1=SIN[#2]*ABS[#3]"},
      {AddSpaces, "G65P9010A1#5=2", "G65 P9010 A1 #5=2"},
      {AddSpaces, "X", "X"},
      {AddSpaces, "[bracket note]G1X1", "[bracket note] G1 X1"},
      {RemoveSpaces, "G1 X1 (keep  this) Y2", "G1X1(keep  this)Y2"},
      {RemoveSpaces, "; a semicolon comment", "; a semicolon comment"},
      {RemoveSpaces, "N10 [ a note ] G1", "N10[ a note ]G1"},
      {RemoveSpaces, "#1 = [#2 + 1]", "#1=[#2+1]"},
      {RemoveComments, "G1 (A(B)C) X1", "G1  X1"},
      {RemoveComments, "(only a comment)", ""},
      {RemoveComments, "; semicolon stays", "; semicolon stays"},
      {RemoveComments, "[note] G1 X1", " G1 X1"},
      {RemoveComments, "#1=[#2+1]", "#1=[#2+1]"},
      {RemoveCommentChars, "(G1 X1)", "G1 X1"},
      {RemoveCommentChars, "(G1 X1", "G1 X1"},
      {RemoveCommentChars, "G1 X1)", "G1 X1"},
      {RemoveCommentChars, "(", ""},
      {RemoveCommentChars, "X", "X"},
      {RemoveBlockSkip, "/G1 X1", "G1 X1"},
      {RemoveBlockSkip, "/", ""},
      {RemoveBlockSkip, " /G1", " /G1"},
      {RemoveControlChars, "G1\tX1\x01(\x02)", "G1 X1(\x02)"},
  };
  for (const LineCase& c : cases) EXPECT_EQ(c.function(c.input), c.expected) << c.input;
}

TEST(LineFilters, BlockPrefixTellsBracketCommentsFromExpressions) {
  EXPECT_EQ(BlockPrefix("  N10 N20 G1"), "");
  EXPECT_EQ(BlockPrefix("/N10 [note]"), "/");
  EXPECT_TRUE(IsBracketComment("N10 [note]", 4));
  EXPECT_TRUE(IsBracketComment("/[note]", 1));
  EXPECT_FALSE(IsBracketComment("X[#1+2]", 1));
  EXPECT_EQ(StripBlockNumber("/N20 G1 X1"), "/G1 X1");
}

TEST(FormatProgram, BlankLinesSurviveEveryFilterButRemoveBlankLines) {
  FilterRunner run;
  const Lines input = {"G1 X1", "", "  ", "G1 X2"};
  EXPECT_EQ(run.Format(FormatCode::kAddCommentChars, input),
            (Lines{"(G1 X1)", "", "  ", "(G1 X2)"}));
  EXPECT_EQ(run.Format(FormatCode::kAddBlockSkip, input), (Lines{"/G1 X1", "", "  ", "/G1 X2"}));
  EXPECT_EQ(run.Format(FormatCode::kRemoveBlankLines, input), (Lines{"G1 X1", "G1 X2"}));
  EXPECT_EQ(run.Format(FormatCode::kRemoveComments, Lines{"(title)", "G1 X1"}),
            (Lines{"", "G1 X1"}));
}

TEST(FormatProgram, KeepsTheLineEndOfTheText) {
  FilterRunner run;
  FilterSession session(run.config, run.parameters);
  EXPECT_EQ(FormatProgram(FormatCode::kCaps, "g1 x1\r\ng0", session, run.host).text,
            "G1 X1\r\nG0\r\n");
  EXPECT_EQ(FormatProgram(FormatCode::kCaps, "g1\nx1\n", session, run.host).text, "G1\nX1\n");
}

TEST(FormatProgram, CancelGivesNoText) {
  FilterRunner run;
  run.host.abort = true;
  FilterSession session(run.config, run.parameters);
  const Lines input(120, "G1 X1");
  const FilterResult result =
      FormatProgram(FormatCode::kCaps, test::JoinLines(input), session, run.host);
  EXPECT_TRUE(result.cancelled);
  EXPECT_EQ(result.text, "");
  EXPECT_GT(run.host.pumpCount, 0);
}

TEST(RemoveRedundantEndpoints, DropsAxisWordsThatDoNotMove) {
  FilterRunner run;
  EXPECT_EQ(
      run.Format(FormatCode::kRemoveRedundant,
                 {"G90 X-999999", "G1 X1. Y2. (first)", "X1. Y3. F10 (X1. again)", "X1.",
                  "G91 X1. Y0", "G92 X0 Y0"}),
      (Lines{"G90", "G1 X1. Y2. (first)", "Y3. F10 (X1. again)", "", "G91 X1.", "G92 X0 Y0"}));
}

TEST(RemoveColinearBlocks, HoldsBackMidpointsOfStraightRuns) {
  FilterRunner run;
  EXPECT_EQ(run.Format(FormatCode::kRemoveColinear,
                       {"G90 G1 X0 Y0", "X1 Y0", "X2 Y0", "X3 Y0", "X3 Y1", "M5", "G1 X9"}),
            (Lines{"G90 G1 X0 Y0", "", "", "", "X3 Y0", "X3 Y1", "M5", "G1 X9"}));
}

TEST(AddressOperations, RewriteChosenLettersOutsideComments) {
  FilterRunner run;
  run.parameters.AdjustAddresses = "XYGN";
  run.parameters.AdjustOperand = 1;
  run.parameters.AdjustFormat = "0.000";
  EXPECT_EQ(run.Format(FormatCode::kAdjustAddresses,
                       {"N10 G1 X1 Y2 (X1)", "X1Y2", "X#1 Y[2+1]", "#1=X2"}),
            (Lines{"N10 G1 X2.000 Y3.000 (X1)", "X2.000Y3.000", "X#1 Y[2+1]", "#1=X2"}));
  run.parameters.AdjustOperator = 3;
  run.parameters.AdjustOperand = 2;
  EXPECT_EQ(run.Format(FormatCode::kAdjustAddresses, {"X3"}), (Lines{"X1.500"}));
  run.parameters.AdjustOperand = 0;
  EXPECT_EQ(run.Format(FormatCode::kAdjustAddresses, {"X3"}), Lines{});
  EXPECT_EQ(run.host.lastText(), "Address Adjust - Can't divide by zero");

  run.parameters.ReplaceFind = "X";
  run.parameters.ReplaceWith = "U";
  EXPECT_EQ(run.Format(FormatCode::kReplaceAddress, {"G1 X1 (X2)", "x3"}),
            (Lines{"G1 U1 (X2)", "U3"}));

  run.parameters.RemoveAddresses = "FS";
  EXPECT_EQ(run.Format(FormatCode::kRemoveAddresses, {"G1 X1 F100 S2000 (F1)", "G1X1F[#1*2]"}),
            (Lines{"G1 X1 (F1)", "G1X1"}));

  run.parameters.SwapFirst = "X";
  run.parameters.SwapSecond = "Y";
  EXPECT_EQ(run.Format(FormatCode::kSwapAddresses, {"G1 X1 Y2 (X)", "G1 X5", "#1=X2"}),
            (Lines{"G1 Y1 X2 (X)", "G1 Y5", "#1=X2"}));
}

TEST(CustomFilters, ToolChangeAndPlungeRewrites) {
  FilterRunner run;
  EXPECT_EQ(run.Format(FormatCode::kCustomFilter1, {"T1 M6 Z1.", "G81 Z-1. R0.1", "G80"}),
            (Lines{"M06 T1 Z1.", "G43 H1 Z1.0", "G81 Z-0.9 R0.2", "G80"}));
  run.parameters.Approach = 0.1;
  run.parameters.FeedMult = 0.5;
  EXPECT_EQ(run.Format(FormatCode::kCustomFilter2, {"G1 X0 Z1. F10", "G1 Z-1. F10"}),
            (Lines{"G1 X0 Z1. F10", "G1 Z-0.9 F10", "Z-1.0F5.0", "F10.0"}));
}

TEST(RemoveGarbage, KeepsSevenBitTextAndFoldsLineEnds) {
  RecordingHost host;
  EXPECT_EQ(RemoveGarbage("G1\tX{1}\x01\xC1\r\nA\rB\nC\r\n\r\nD\n\n\nE", host).text,
            "G1 X[1]A\r\nA\r\nB\r\nC\r\n\r\nD\r\nE");
  EXPECT_EQ(RemoveGarbage("G1\r\n", host).text, "G1\r\n\r\n");
}

TEST(FilterScope, AsksOnlyForASelectionTheUserMade) {
  RecordingHost host;
  EXPECT_EQ(AskFilterScope(host, false, false, false), FilterScope::Whole);
  EXPECT_EQ(AskFilterScope(host, true, true, false), FilterScope::Selection);
  EXPECT_TRUE(host.shown.empty());
  host.queueAnswer(MsgAnswer::Cancel);
  EXPECT_EQ(AskFilterScope(host, true, false, true), FilterScope::Cancel);
  EXPECT_EQ(host.lastText(), "Translate only selected text?");
  host.queueAnswer(MsgAnswer::Yes);
  EXPECT_EQ(AskFilterScope(host, true, false, false), FilterScope::Selection);
  EXPECT_EQ(host.lastText(), "Format only selected text?");
  EXPECT_EQ(AskFilterScope(host, true, false, false), FilterScope::Whole);
}

TEST(FilterDocument, FiltersTheSelectionOrTheWholeTextInOneEdit) {
  FilterRunner run;
  const auto caps = [&run](std::string_view text) {
    FilterSession session(run.config, run.parameters);
    return FormatProgram(FormatCode::kCaps, text, session, run.host);
  };
  ProgramDocument document;
  document.SetText("g1 x1\r\ng1 x2\r\ng1 x3\r\n");
  document.SetSelection(7, 7);
  run.host.queueAnswer(MsgAnswer::Yes);
  EXPECT_TRUE(ApplyFilterToDocument(document, run.host, false, false, caps));
  EXPECT_EQ(document.Text(), "g1 x1\r\nG1 X2\r\ng1 x3\r\n");

  document.SetSelection(0, 3);
  run.host.queueAnswer(MsgAnswer::Cancel);
  EXPECT_FALSE(ApplyFilterToDocument(document, run.host, false, false, caps));
  EXPECT_EQ(document.Text(), "g1 x1\r\nG1 X2\r\ng1 x3\r\n");

  document.SetSelStart(9);
  EXPECT_TRUE(ApplyFilterToDocument(document, run.host, false, false, caps));
  EXPECT_EQ(document.Text(), "G1 X1\r\nG1 X2\r\nG1 X3\r\n");
  EXPECT_EQ(document.SelStart(), 9u);

  run.host.abort = true;
  std::string lines;
  for (int i = 0; i < 60; ++i) lines += "x\r\n";
  document.SetText(lines);
  EXPECT_FALSE(ApplyFilterToDocument(document, run.host, false, false, caps));
  EXPECT_EQ(document.Text(), lines);
}

}  // namespace
}  // namespace zemtra
