#include <gtest/gtest.h>

#include <cstring>
#include <string>

#include "PlotFixture.h"
#include "core/SettingsStore.h"
#include "interp/MacroStepper.h"
#include "interp/VariableDisplay.h"

namespace zemtra {
namespace {

using test::Lines;
using test::PlotFixture;

struct StepFixture : PlotFixture {
  StepFixture() : stepper(driver, table, interpreter, evaluator, host) {}

  // The program the session reads when it starts.
  void Use(std::string_view text) {
    source = [bytes = Lines(text)] { return ProgramText(bytes, "step.nc"); };
  }
  int Step() { return stepper.MacroStep(source); }
  double Number(int n) {
    interpreter.FlushVariables();
    return variables.ReadNumber(n);
  }
  int Finished() const {
    int count = 0;
    for (const auto& shown : host.shown) count += shown.prompt.text == kProgramFinished;
    return count;
  }

  MacroStepper stepper;
  MacroStepper::ProgramSource source;
};

constexpr std::string_view kCountingLoop = "#1=0|WHILE[#1LT3]DO1|#1=#1+1|END1|G0X0Y0|G1X1.|M30";

TEST(MacroStep, OneBlockPerStepUntilTheProgramFinishesOnce) {
  StepFixture fx;
  fx.Use(kCountingLoop);
  EXPECT_FALSE(fx.stepper.StepSession());
  EXPECT_EQ(fx.Step(), Interpreter::kNoMotion);  // #1=0
  EXPECT_TRUE(fx.stepper.StepSession());
  EXPECT_EQ(fx.stepper.CurrentBlock(), "#1=0");
  EXPECT_EQ(fx.Number(1), 0);
  fx.Step();  // WHILE
  fx.Step();  // #1=#1+1
  EXPECT_EQ(fx.Number(1), 1);
  EXPECT_EQ(fx.stepper.EvaluatedBlock(), "#1=1");
  int steps = 3;
  while (fx.stepper.StepSession() && steps < 100) {
    fx.Step();
    ++steps;
  }
  EXPECT_EQ(fx.Number(1), 3);
  EXPECT_EQ(fx.Finished(), 1);
  EXPECT_EQ(fx.host.lastText(), "Program Finished");
  EXPECT_EQ(fx.host.shown.back().prompt.title, "Zemtra");
  EXPECT_EQ(fx.stepper.EntityCount(), 1);
  EXPECT_EQ(fx.host.caretLines.back(), 7);
  // The next step starts again from the top.
  fx.Step();
  EXPECT_TRUE(fx.stepper.StepSession());
  EXPECT_EQ(fx.stepper.CurrentBlock(), "#1=0");
  EXPECT_EQ(fx.Finished(), 1);
}

TEST(MacroStep, StoresTheSameEntitiesAsThePlot) {
  const std::string_view program = "G0X0Y0Z0|G1X1.F10.|G3X2.Y1.I0J1.|G0G28X5.|G1Y3.|M30";
  PlotFixture plotted;
  const int count = plotted.Plot(program);
  ASSERT_EQ(count, 5);
  ASSERT_TRUE(plotted.host.shown.empty());
  StepFixture fx;
  fx.Use(program);
  while (fx.Step() != Interpreter::kStop) {
  }
  ASSERT_EQ(fx.table.HighestIndex(), count);
  for (int i = 1; i <= count; ++i) {
    EXPECT_EQ(std::memcmp(&fx.table[i], &plotted.table[i], sizeof(GeoEntity)), 0) << i;
  }
  EXPECT_EQ(fx.table.FeedDistance, plotted.table.FeedDistance);
}

TEST(MacroStep, AnEmptyProgramFinishesAtTheFirstStep) {
  StepFixture fx;
  fx.Plot("G0X0|G1X1.");
  fx.Use("");
  EXPECT_EQ(fx.Step(), Interpreter::kStop);
  EXPECT_EQ(fx.stepper.CurrentBlock(), "");
  EXPECT_EQ(fx.Finished(), 1);
  EXPECT_EQ(fx.stepper.EntityCount(), 0);
}

TEST(MacroStep, APlotInBetweenEndsTheSession) {
  StepFixture fx;
  fx.Use(kCountingLoop);
  fx.Step();
  fx.Step();
  fx.Plot("G0X0|G1X1.");
  EXPECT_FALSE(fx.stepper.StepSession());
  fx.Step();
  EXPECT_EQ(fx.stepper.CurrentBlock(), "#1=0");
}

TEST(MacroStep, UnguardedArithmeticEndsTheSessionWithTheFailure) {
  StepFixture fx;
  fx.Use("#1=1|#2=LN[0]|#3=3");
  fx.Step();
  EXPECT_EQ(fx.Step(), Interpreter::kStop);
  EXPECT_FALSE(fx.stepper.StepSession());
  EXPECT_EQ(fx.host.lastText().rfind("Error in Plot_MacroStep\r\n", 0), 0u) << fx.host.lastText();
  EXPECT_EQ(fx.Finished(), 0);
  EXPECT_EQ(fx.stepper.EntityCount(), 0);  // the spare slots of the unended table are not counted
}

TEST(MacroStep, StepToLineStopsBeforeTheLineAtTheMainLevelOnly) {
  StepFixture fx;
  fx.Use("G0X0Y0|M98P100|G1X1.|G1X2.|M30|O100|G1Y1.|G1Y2.|M99");
  fx.stepper.StepToLine(fx.source, 3);
  EXPECT_TRUE(fx.stepper.StepSession());
  EXPECT_EQ(fx.stepper.CallLevel(), 0);
  EXPECT_EQ(fx.interpreter.LineCounter, 2);
  EXPECT_EQ(fx.stepper.EntityCount(), 2);  // the subprogram has run, line 3 has not
  fx.stepper.StepToLine(fx.source, 5);
  EXPECT_EQ(fx.interpreter.LineCounter, 4);
  EXPECT_EQ(fx.stepper.EntityCount(), 4);
  // A line never reached runs to the end.
  fx.stepper.StepToLine(fx.source, 50);
  EXPECT_FALSE(fx.stepper.StepSession());
  EXPECT_EQ(fx.Finished(), 1);
}

TEST(MacroStep, PauseEndsARunningLoop) {
  StepFixture fx;
  fx.Use("#1=0|WHILE[1EQ1]DO1|#1=#1+1|END1");
  fx.stepper.RefreshInterval = std::chrono::milliseconds(0);
  int refreshes = 0;
  fx.stepper.Refresh = [&] {
    if (++refreshes == 20) fx.host.abort = true;  // Esc, or "pause", while it runs
  };
  fx.stepper.StepToLine(fx.source, 100);
  EXPECT_TRUE(fx.stepper.StepSession());
  EXPECT_TRUE(fx.stepper.StopRun);
  EXPECT_GT(fx.Number(1), 0);
}

TEST(MacroStep, StepToBreakStopsWhenTheExpressionTurnsTrue) {
  StepFixture fx;
  fx.Use("#100=5|#100=6|#100=1|#100=2|#100=9|#100=10|M30");
  fx.stepper.BreakExpression = "#100 GT 3";
  fx.stepper.StepToBreak(fx.source);  // true at once: BreakWasTrue starts false
  EXPECT_EQ(fx.Number(100), 5);
  // Already true: it must turn false before it breaks again.
  fx.stepper.StepToBreak(fx.source);
  EXPECT_EQ(fx.Number(100), 9);
  EXPECT_TRUE(fx.stepper.StepSession());
}

TEST(MacroStep, StepToBreakCountsALoop) {
  StepFixture fx;
  fx.Use("#1=0|WHILE[#1LT10]DO1|#1=#1+1|END1|M30");
  fx.stepper.BreakExpression = "#1 GT 3";
  fx.stepper.StepToBreak(fx.source);
  EXPECT_EQ(fx.Number(1), 4);
}

TEST(MacroStep, AnEmptyBreakExpressionRunsToTheEnd) {
  StepFixture fx;
  fx.Use(kCountingLoop);
  fx.stepper.StepToBreak(fx.source);
  EXPECT_FALSE(fx.stepper.StepSession());
  EXPECT_EQ(fx.Finished(), 1);
}

TEST(MacroStep, BreakExpressionValues) {
  StepFixture fx;
  const struct {
    const char* expression;
    bool expected;
  } cases[] = {
      {"", false},   {"  ", false},  {"0", false},     {"1", true},     {"0.4", false},
      {"0.6", true}, {"0.5", false}, {"1.5", true},    {"-2", true},    {"[1", true},
      {"1/0", true}, {"#1", false},  {"3 GT 2", true}, {"LN[0]", true},
  };
  for (const auto& c : cases) {
    fx.stepper.BreakExpression = c.expression;
    EXPECT_EQ(fx.stepper.EvaluateBreak(), c.expected) << c.expression;
  }
}

TEST(MacroStep, EvaluatedBlockText) {
  StepFixture fx;
  fx.variables.WriteNumber(1, 1);
  fx.variables.WriteNumber(100, 2.5);
  const struct {
    const char* block;
    const char* expected;
  } cases[] = {
      {"G1X[#1+1]Y2.F#100", "G1X2Y2.F2.5"},
      {"G0X#7", "G0X"},               // an empty variable leaves the address empty
      {"#100=[#100*2]", "#100=2.5"},  // the value the variable holds now
      {"#7=3", "#7="},
      {"IF[#1EQ1]GOTO10", "IF[#1EQ1]GOTO10"},
      {"G1X1.,R.5", "G1X1.,R.5"},
      {"", ""},
  };
  for (const auto& c : cases) {
    EXPECT_EQ(EvaluateBlockText(c.block, fx.evaluator, fx.variables), c.expected) << c.block;
  }
}

TEST(MacroStep, LevelsAndTheLineOfASubprogram) {
  StepFixture fx;
  fx.Use("#1=7|G65P100A2.|M30|O100|#2=#1+1|M99");
  fx.Step();
  fx.Step();  // G65: level 1 with A as #1
  EXPECT_EQ(fx.stepper.LevelBefore(), 0);
  EXPECT_EQ(fx.stepper.CallLevel(), 1);
  fx.Step();  // O100
  fx.Step();
  EXPECT_EQ(fx.variables.Locals(1)[2].Number(), 3);
  EXPECT_EQ(fx.variables.Locals(0)[1].Number(), 7);
  const CallFrame& frame = fx.interpreter.Calls().Frame(1);
  ASSERT_NE(frame.Text, nullptr);
  EXPECT_EQ(SubGetLNFromFilePos(*frame.Text, frame.LinePosition), 4);
}

// ---------------------------------------------------------------------------------------------
// The variable display

struct DisplayFixture : StepFixture {
  std::vector<std::string> RowTexts() const {
    std::vector<std::string> texts;
    for (const VariableRow& row : display.Rows()) texts.push_back(row.Name + "=" + row.Value);
    return texts;
  }
  MemorySettingsStore settings;
  VariableDisplay display{variables, evaluator, host, settings};
};

TEST(VariableDisplay, RowsOfTheShownLevelCommonAndWatchedVariables) {
  DisplayFixture fx;
  fx.settings.SaveSetting("General", "System Variable List", "5021 1000 999 5021");
  fx.display.LoadSystemVariableList();
  fx.variables.Locals(0)[1].SetNumber(1);
  fx.variables.Locals(0)[4].SetNumber(-0.25);
  fx.variables.Locals(0)[30].SetNumber(123456789.125);
  fx.variables.Locals(1)[2].SetNumber(2);
  fx.variables.WriteNumber(100, 0);
  fx.variables.WriteNumber(5021, 3.5);
  EXPECT_EQ(fx.RowTexts(),
            (std::vector<std::string>{"#1 (A)=1.0", "#4 (I)=-0.25", "#30=123456789.125", "#100=0.0",
                                      "#1000=<empty>", "#5021=3.5"}));
  EXPECT_EQ(fx.display.Rows()[0].Key, "00001");
  fx.display.LevelUp(1);
  fx.display.LevelUp(1);  // not past the running level
  EXPECT_EQ(fx.display.ShownLevel, 1);
  EXPECT_EQ(fx.display.DisplayLevelText(), "Display Level: Sub 1");
  EXPECT_EQ(fx.RowTexts()[0], "#2 (B)=2.0");
  fx.display.LevelDown();
  fx.display.LevelDown();
  EXPECT_EQ(fx.display.ShownLevel, 0);
  EXPECT_EQ(VariableDisplay::ProgramLevelText(0), "Program Level: Main");
  EXPECT_EQ(VariableDisplay::ProgramLevelText(3), "Program Level: Sub 3");
  EXPECT_EQ(fx.display.RowsText().substr(0, 14), "#1 (A)\t1.0\r\n#4");
}

TEST(VariableDisplay, AddingAndRemovingSystemVariables) {
  DisplayFixture fx;
  const struct {
    const char* text;
    bool valid;
  } cases[] = {
      {"#999", false}, {"50001", false}, {"abc", false},  {"", false},    {"1000.5", false},
      {"#5021", true}, {" 1000", true},  {"50000", true}, {"5021", true},
  };
  for (const auto& c : cases) {
    const std::size_t before = fx.host.shown.size();
    EXPECT_EQ(fx.display.AddSystemVariable(c.text), c.valid) << c.text;
    EXPECT_EQ(fx.host.shown.size() - before, c.valid ? 0u : 1u) << c.text;
    if (!c.valid) {
      EXPECT_EQ(fx.host.lastText(), "Invalid system variable number");
    }
  }
  EXPECT_EQ(fx.settings.GetSetting("General", "System Variable List"), "5021 1000 50000");
  fx.display.RemoveSystemVariable(1000);
  fx.display.RemoveSystemVariable(1234);
  EXPECT_EQ(fx.settings.GetSetting("General", "System Variable List"), "5021 50000");
}

TEST(VariableDisplay, EditingAVariable) {
  DisplayFixture fx;
  fx.display.ShownLevel = 2;
  EXPECT_TRUE(fx.display.EditVariable(1, "3*2"));
  EXPECT_EQ(fx.variables.Locals(2)[1].Number(), 6);
  EXPECT_TRUE(fx.variables.Locals(0)[1].IsNull());
  EXPECT_TRUE(fx.display.EditVariable(1, " "));
  EXPECT_TRUE(fx.variables.Locals(2)[1].IsNull());
  EXPECT_TRUE(fx.display.EditVariable(500, "#1+1"));
  EXPECT_EQ(fx.variables.ReadNumber(500), 1);
  EXPECT_TRUE(fx.display.EditVariable(500, "#33"));  // an empty result
  EXPECT_TRUE(fx.variables.IsNull(500));
  EXPECT_FALSE(fx.display.EditVariable(500, "1/0"));
  EXPECT_EQ(fx.host.lastText(), ErrorMessage(ErrorCode::kDivisionByZero));
  EXPECT_FALSE(fx.display.EditVariable(500, "[1"));
  EXPECT_EQ(fx.host.lastText(), ErrorMessage(ErrorCode::kGroupingMismatch));
  EXPECT_TRUE(fx.variables.IsNull(500));
}

TEST(VariableDisplay, ClearingAsksFirst) {
  DisplayFixture fx;
  fx.variables.WriteNumber(100, 1);
  fx.variables.WriteNumber(1000, 2);
  fx.host.queueAnswer(MsgAnswer::No);
  EXPECT_FALSE(fx.display.ClearVariables());
  EXPECT_EQ(fx.variables.ReadNumber(100), 1);
  EXPECT_EQ(fx.host.shown.back().prompt.text, "Clear all Local and Common variables?");
  EXPECT_EQ(fx.host.shown.back().prompt.buttons, MsgButtons::YesNo);
  fx.host.queueAnswer(MsgAnswer::Yes);
  EXPECT_TRUE(fx.display.ClearVariables());
  EXPECT_TRUE(fx.variables.IsNull(100));
  EXPECT_EQ(fx.variables.ReadNumber(1000), 2);
}

}  // namespace
}  // namespace zemtra
