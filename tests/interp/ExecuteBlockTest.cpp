#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "PlotFixture.h"
#include "interp/InterpMessages.h"

namespace zemtra {
namespace {

using test::PlotFixture;

TEST(ExecuteBlock, WhichBlocksMove) {
  PlotFixture fx;
  using V = std::vector<int>;
  // G1 alone makes no move and stays modal; X1 then moves.
  EXPECT_EQ(fx.Execute("G1|X1.|Y2.|M30|X3."), (V{0, 1, 1, 2}));
  EXPECT_EQ(fx.interpreter.MotionCode, 1);
  // Before any motion code an axis moves as a rapid.
  EXPECT_EQ(fx.Execute("X1."), (V{1, 2}));
  EXPECT_EQ(fx.interpreter.MotionCode, 0);
  // End of the text stops; a "%" line and comments do nothing.
  EXPECT_EQ(fx.Execute("%|(comment)|O1234|"), (V{0, 0, 0, 2}));
  EXPECT_EQ(fx.interpreter.Calls().Frame(0).ProgramNumber, 1234);
  // G04 X1 is a dwell, not a move; G2 with no address is harmless.
  EXPECT_EQ(fx.Execute("G4X1.|G2|M2"), (V{0, 0, 2}));
  EXPECT_EQ(fx.interpreter.CurrentPos.X, 0.0f);
  // Assignments run and feed the decoder; output statements do nothing.
  EXPECT_EQ(fx.Execute("#100=2.5|G0X#100|POPEN|DPRNT[X]|M30"), (V{0, 1, 0, 0, 2}));
  EXPECT_EQ(fx.interpreter.CurrentPos.X, 2.5f);
  // M99 at the main level ends the run, without a word.
  EXPECT_EQ(fx.Execute("G0X1.|M99|G0X2."), (V{1, 2}));
  EXPECT_TRUE(fx.host.shown.empty());
}

TEST(ExecuteBlock, LinesAreCountedAcrossLineEnds) {
  PlotFixture fx;
  fx.Start("G0X1.\rG1X2.\nG1X3.\r\n\r\nG1X4.");
  std::vector<int> lines;
  while (fx.interpreter.ExecuteBlock() != Interpreter::kStop) {
    lines.push_back(fx.interpreter.LineCounter);
  }
  EXPECT_EQ(lines, (std::vector<int>{1, 2, 3, 4, 5}));
}

TEST(ExecuteBlock, ToolChangesStepTheColour) {
  struct Case {
    int colorChangeCode;
    const char* program;
    int toolColor;
  } cases[] = {
      {0, "T1M6", 1}, {1, "T1M6", 1}, {0, "T1|T2", 0}, {1, "T1|T2", 2}, {0, "M6|M6", 2},
  };
  for (const Case& c : cases) {
    PlotFixture fx;
    fx.config.ColorChangeCode = static_cast<std::int16_t>(c.colorChangeCode);
    fx.Execute(c.program);
    EXPECT_EQ(fx.interpreter.ToolColor, c.toolColor) << c.program << " " << c.colorChangeCode;
  }
}

TEST(ExecuteBlock, FeedAndSpeedResetOnToolChange) {
  struct Case {
    int warningReset;
    const char* program;
    double feed;
  } cases[] = {
      {0, "F100.S500|T2M6", 100}, {1, "F100.S500|T2M6", 0}, {1, "F100.S500|T2", 100},
      {2, "F100.S500|T2", 0},     {2, "F100.S500|M6", 100},
  };
  for (const Case& c : cases) {
    PlotFixture fx;
    InterpreterOptions options;
    options.WarningReset = c.warningReset;
    fx.interpreter.SetOptions(options);
    fx.Execute(c.program);
    EXPECT_EQ(fx.interpreter.AddrValue[Letter('F')], c.feed) << c.program << " " << c.warningReset;
    EXPECT_EQ(fx.interpreter.AddrValue[Letter('S')], c.feed == 0 ? 0 : 500) << c.program;
  }
}

TEST(ExecuteBlock, SpindleStateFollowsMCodes) {
  PlotFixture fx;
  InterpreterOptions options;
  options.StopOnM00 = false;
  fx.interpreter.SetOptions(options);
  const std::pair<const char*, bool> cases[] = {
      {"M3", true},     {"M4", true},     {"M13", true},    {"M3|M5", false},
      {"M3|M0", false}, {"M3|M6", false}, {"M14|M8", true},
  };
  for (const auto& [program, on] : cases) {
    fx.Execute(program);
    EXPECT_EQ(fx.interpreter.SpindleOn, on) << program;
  }
}

TEST(ExecuteBlock, M00AsksAndCancelStops) {
  PlotFixture fx;
  fx.host.queueAnswer(MsgAnswer::Cancel);
  EXPECT_EQ(fx.Execute("M0|G0X1."), (std::vector<int>{2}));
  ASSERT_EQ(fx.host.shown.size(), 1u);
  EXPECT_EQ(fx.host.shown[0].prompt.text, "M00 Program Stop");
  EXPECT_EQ(fx.host.shown[0].prompt.title, "Zemtra");
  EXPECT_EQ(fx.host.shown[0].prompt.icon, MsgIcon::Information);
  EXPECT_EQ(fx.host.shown[0].prompt.buttons, MsgButtons::OkCancel);
  // OK goes on.
  EXPECT_EQ(fx.Execute("M0|G0X1."), (std::vector<int>{0, 1, 2}));
}

TEST(ExecuteBlock, ErrorsAreShownAndStop) {
  PlotFixture fx;
  EXPECT_EQ(fx.Execute("G0X1.|G1 X1 ;note|G1X5."), (std::vector<int>{1, 2}));
  EXPECT_EQ(fx.MessageTexts(), (std::vector<std::string>{"Error:\r\n\r\nInvalid Character"}));
  EXPECT_EQ(fx.host.caretLines, (std::vector<int>{2}));
  EXPECT_TRUE(fx.interpreter.StoppedByError);
}

TEST(ExecuteBlock, QuietRunShowsNothingButStillStops) {
  PlotFixture fx;
  fx.interpreter.QuietPlot = true;
  EXPECT_EQ(fx.Execute("M0|G1XY1.|G0X1."), (std::vector<int>{0, 2}));
  EXPECT_TRUE(fx.host.shown.empty());
  EXPECT_TRUE(fx.host.caretLines.empty());
}

TEST(ExecuteBlock, BlockRepeatReadsTheLineAgain) {
  PlotFixture fx;
  fx.Start("G91G0X1.L3|X10.|M30");
  std::vector<float> xs;
  std::vector<int> lines;
  while (fx.interpreter.ExecuteBlock() == Interpreter::kMotion) {
    xs.push_back(fx.interpreter.CurrentPos.X);
    lines.push_back(fx.interpreter.LineCounter);
  }
  EXPECT_EQ(xs, (std::vector<float>{1, 2, 3, 13}));
  EXPECT_EQ(lines, (std::vector<int>{1, 1, 1, 2}));
}

TEST(ExecuteBlock, BlockSkipOption) {
  PlotFixture fx;
  InterpreterOptions options;
  options.BlockSkip = true;
  fx.interpreter.SetOptions(options);
  EXPECT_EQ(fx.Execute("/G0X1.|G0Y1."), (std::vector<int>{0, 1, 2}));
  EXPECT_EQ(fx.interpreter.CurrentPos.X, 0.0f);
  options.BlockSkip = false;
  fx.interpreter.SetOptions(options);
  EXPECT_EQ(fx.Execute("/G0X1.|G0Y1."), (std::vector<int>{1, 1, 2}));
  EXPECT_EQ(fx.interpreter.CurrentPos.X, 1.0f);
}

// LinuxCNC's O-word statements are another dialect: the run stops and says so.
TEST(ExecuteBlock, LinuxCncOWordsStopWithAMessage) {
  for (const char* block : {"O100SUB", "O<CIRCLE>CALL[1]", "O101IF[#1GT0]", "O102WHILE[1]"}) {
    PlotFixture fx;
    EXPECT_EQ(fx.Execute(std::string("G0X1.|") + block), (std::vector<int>{1, 2})) << block;
    ASSERT_EQ(fx.host.shown.size(), 1u) << block;
    EXPECT_EQ(fx.host.shown[0].prompt.text,
              "Error:\r\n\r\n" + InterpreterErrorText(kOWordStatement));
  }
  PlotFixture fx;
  EXPECT_EQ(fx.Execute("O1000|G0X1.|M30"), (std::vector<int>{0, 1, 2}));
}

TEST(ExecuteBlock, LatheStartsOnlyWhenBothAxesHaveAValue) {
  MachineConfig lathe = test::DefaultMill();
  lathe.MachineType = 1;
  PlotFixture fx(lathe);
  EXPECT_EQ(fx.Execute("G1X1.|G0Z1.|G1X2.|M30"), (std::vector<int>{0, 1, 1, 2}));
  EXPECT_FALSE(fx.interpreter.BlockMoved);  // only a rapid sets it on a lathe
  EXPECT_EQ(fx.interpreter.ModalG[2], 18.0f);
}

TEST(InitInterpreter, StartValuesInitialStateAndWorkOffset) {
  PlotFixture fx;
  fx.config.InitialState = "G91 G18 G21";
  fx.variables.WriteNumber(5221, 1.5);
  fx.variables.WriteNumber(5223, -3);
  fx.Start("");
  const auto& g = fx.interpreter.ModalG;
  EXPECT_EQ(g[1], 0.0f);
  EXPECT_EQ(g[2], 18.0f);
  EXPECT_EQ(g[3], 91.0f);
  EXPECT_EQ(g[6], 21.0f);
  EXPECT_EQ(g[9], 80.0f);
  EXPECT_EQ(g[12], 54.0f);
  EXPECT_EQ(g[19], 50.1f);
  EXPECT_DOUBLE_EQ(fx.variables.ReadNumber(4219), 50.1);
  EXPECT_DOUBLE_EQ(fx.variables.ReadNumber(5100), 0);
  // External macro codes leave their groups.
  EXPECT_EQ(fx.interpreter.Groups[12], 0);
  EXPECT_EQ(fx.interpreter.Groups[37], 0);
  EXPECT_EQ(fx.interpreter.Groups[54], 12);
  // The work offset of the starting system, to be taken by each axis.
  EXPECT_EQ(fx.interpreter.WorkOffset, (GeoPoint{1.5f, 0, -3, 0}));
  EXPECT_EQ(fx.interpreter.OffsetPending, (std::array<bool, 4>{true, true, true, true}));
}

// Position variables are written lazily: whatever reads them (an assignment, an expression in
// an address, G92, the end of a run) must see what the blocks before wrote.
TEST(ExecuteBlock, VariablesAreCurrentWheneverTheyAreRead) {
  PlotFixture fx;
  fx.variables.WriteNumber(5241, 10);  // G55 X
  const std::string program =
      "G0X1.Y2.|X3.|X4.|#100=#5001|#101=#5041|#102=#5021|G55X5.Y#5041|#103=#5022|#104=#4310|"
      "G1F7.|#105=#4309|#106=#4201|Z-1.5|M30";
  fx.Execute(program);
  fx.interpreter.FlushVariables();
  EXPECT_DOUBLE_EQ(fx.variables.ReadNumber(100), 3);  // previous block's X
  EXPECT_DOUBLE_EQ(fx.variables.ReadNumber(101), 4);
  EXPECT_DOUBLE_EQ(fx.variables.ReadNumber(102), 4);
  EXPECT_DOUBLE_EQ(fx.variables.ReadNumber(103), 5);   // Y took X's work position of 5
  EXPECT_DOUBLE_EQ(fx.variables.ReadNumber(104), 55);  // G of the block, as an argument
  EXPECT_DOUBLE_EQ(fx.variables.ReadNumber(105), 7);   // F
  EXPECT_DOUBLE_EQ(fx.variables.ReadNumber(106), 1);   // group 1
  EXPECT_DOUBLE_EQ(fx.variables.ReadNumber(5021), 15);
  EXPECT_DOUBLE_EQ(fx.variables.ReadNumber(5001), 4);
  EXPECT_DOUBLE_EQ(fx.variables.ReadNumber(5103), -1.5);
  EXPECT_DOUBLE_EQ(fx.variables.ReadNumber(5043), -1.5);
  EXPECT_TRUE(fx.variables.IsNull(5003));  // Z had no position before
  // The plot driver leaves them written when the plot ends.
  fx.Plot("G0X1.|G1X2.|X3.");
  EXPECT_DOUBLE_EQ(fx.variables.ReadNumber(5041), 3);
  EXPECT_DOUBLE_EQ(fx.variables.ReadNumber(5001), 2);
}

}  // namespace
}  // namespace zemtra
