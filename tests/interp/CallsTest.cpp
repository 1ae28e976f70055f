// Macro statements, subprogram and macro calls, canned cycles and the lathe's contour cycles,
// run through the interpreter and the plot driver.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "PlotFixture.h"
#include "interp/InterpMessages.h"
#include "support/ScratchFolder.h"

namespace zemtra {
namespace {

using test::PlotFixture;

struct Point {
  float x, y, z;
  bool operator==(const Point&) const = default;
};

Point End(const PlotFixture& fx, int i) {
  const GeoPoint& p = fx.table[i].EndPoint;
  return {p.X, p.Y, p.Z};
}

std::vector<Point> Ends(const PlotFixture& fx) {
  std::vector<Point> ends;
  for (int i = 1; i <= fx.table.HighestIndex(); ++i) ends.push_back(End(fx, i));
  return ends;
}

std::vector<int> LineNumbers(const PlotFixture& fx) {
  std::vector<int> lines;
  for (int i = 1; i <= fx.table.HighestIndex(); ++i) lines.push_back(fx.table[i].LineNumber);
  return lines;
}

// --- Macro statements ------------------------------------------------------------------------

TEST(Statements, LoopsJumpsAndConditionsDrawAndKeepTheLineCounter) {
  PlotFixture fx;
  // A WHILE loop of three passes, then a GOTO over a block. (The first motion only places
  // the start of the first entity.)
  EXPECT_EQ(fx.Plot("G0X0Y0|#1=0|WHILE[#1LT3]DO1|#1=#1+1|G1X#1|END1|GOTO20|G1Y5.|N20G1Y1.|M30"), 4);
  EXPECT_EQ(Ends(fx), (std::vector<Point>{{1, 0, 0}, {2, 0, 0}, {3, 0, 0}, {3, 1, 0}}));
  // Entities made after a jump carry the line they were read from.
  EXPECT_EQ(LineNumbers(fx), (std::vector<int>{5, 5, 5, 9}));
  // IF ... THEN runs the rest of its block.
  EXPECT_EQ(fx.Plot("G0X0|#1=2|IF[#1EQ2]THENG1X5.|IF[#1EQ3]THENG1X9.|M30"), 1);
  EXPECT_EQ(End(fx, 1), (Point{5, 0, 0}));
  EXPECT_TRUE(fx.host.shown.empty());
}

TEST(Statements, MessagesAndErrorsStopTheRun) {
  struct Case {
    const char* program;
    std::string text;
  } cases[] = {
      {"G0X1.|#3000=7(TOOL BROKEN)|G0X2.", "Macro Message:\r\n\r\nTOOL BROKEN"},
      {"G0X1.|GOTO99|G0X2.", "Error:\r\n\r\n" + InterpreterErrorText(103)},
      {"G0X1.|END1", "Error:\r\n\r\n" + InterpreterErrorText(107)},
  };
  for (const Case& c : cases) {
    PlotFixture fx;
    EXPECT_EQ(fx.Plot("G0X0|" + std::string(c.program)), 1) << c.program;
    EXPECT_EQ(fx.MessageTexts(), (std::vector<std::string>{c.text})) << c.program;
    EXPECT_TRUE(fx.interpreter.StoppedByError);
  }
}

// --- Subprograms and macros ------------------------------------------------------------------

// O100 adds 1 to X once per run.
constexpr const char* kSub100 = "|M30|O100|G91G1X1.|G90|M99";

TEST(Subprograms, RepeatCountsOfEveryFormat) {
  struct Case {
    int format;
    const char* call;
    int runs;
  } cases[] = {
      {0, "M98P100L3", 3}, {0, "M98P100L0", 0}, {0, "M98P100", 1},   {1, "M98P100K2.", 2},
      {2, "M98P30100", 3}, {2, "M98P100", 1},   {3, "M98P100L2", 2},
  };
  for (const Case& c : cases) {
    PlotFixture fx;
    fx.config.M98Format = static_cast<std::int16_t>(c.format);
    fx.Plot(std::string("G0X0|") + c.call + "|G0Y1." + kSub100);
    EXPECT_EQ(fx.table.HighestIndex(), c.runs + 1) << c.call;
    EXPECT_EQ(End(fx, fx.table.HighestIndex()), (Point{float(c.runs), 1, 0})) << c.call;
    EXPECT_TRUE(fx.host.shown.empty()) << c.call << fx.host.lastText();
  }
}

TEST(Subprograms, LinesOfACalledProgramInTheMainText) {
  PlotFixture fx;
  fx.Plot(std::string("G0X0|M98P100L2|G0Y1.") + kSub100);
  EXPECT_EQ(LineNumbers(fx), (std::vector<int>{6, 6, 3}));
}

TEST(Subprograms, LocalsAndArgumentsOfEachCall) {
  PlotFixture fx;
  // M98 passes #1-#26 down and nothing back; G65 starts with its letters only.
  fx.Plot(
      "#1=5|#2=6|M98P200|#101=#1|G65P300A1.X2.|M30|O200|#100=#2|#1=9|M99|"
      "O300|#102=#1|#103=#24|#104=#16|#105=#2|M99");
  EXPECT_TRUE(fx.host.shown.empty()) << fx.host.lastText();
  const auto read = [&](int n) { return fx.variables.ReadVariable(n); };
  EXPECT_EQ(read(100), "6");
  EXPECT_EQ(read(101), "5");
  EXPECT_EQ(read(102), "1");
  EXPECT_EQ(read(103), "2");
  EXPECT_EQ(read(104), "300");
  EXPECT_EQ(read(105), "");
}

TEST(Subprograms, ReturnsLocalBlocksAndEnds) {
  PlotFixture fx;
  // M99 P20 returns to N20 of the caller; M97 P50 runs N50 of the same text.
  fx.Plot("G0X0|M98P100|G0X7.|N20G0Y2.|M97P50|M30|N50G0Z3.|M99|O100|G0X1.|M99P20");
  EXPECT_EQ(Ends(fx), (std::vector<Point>{{1, 0, 0}, {1, 2, 0}, {1, 2, 3}}));
  EXPECT_TRUE(fx.host.shown.empty()) << fx.host.lastText();
  // M30 in a subprogram ends the whole run.
  fx.Plot("G0X0|M98P100|G0X7.|M30|O100|G0X1.|M30");
  EXPECT_EQ(Ends(fx), (std::vector<Point>{{1, 0, 0}}));
}

TEST(Subprograms, CallErrorsNameTheMistake) {
  struct Case {
    int ignoreM98;
    const char* program;
    std::string text;
  } cases[] = {
      {1, "G0X1.|M98P123", "Sub program not found:\r\n123"},
      {1, "G0X1.|M98L2", "No program number designated"},
      {1, "G0X1.|M97P77", "Referenced block number not found:\r\n77"},
      {1, "G0X1.|M99P77", "Referenced block number not found:\r\nN77"},
      {1, "G0X1.|G65A1.", "No program number designated"},
      {1, "G0X1.|M98P1|M30|O1|M98P1", "Subprogram exceeds 6 levels"},
  };
  for (const Case& c : cases) {
    PlotFixture fx;
    InterpreterOptions options;
    options.IgnoreM98 = c.ignoreM98;
    fx.interpreter.SetOptions(options);
    fx.Plot(c.program);
    EXPECT_EQ(fx.MessageTexts(), (std::vector<std::string>{c.text})) << c.program;
    ASSERT_FALSE(fx.host.shown.empty());
    EXPECT_EQ(fx.host.shown[0].prompt.icon, MsgIcon::Exclamation);
    EXPECT_TRUE(fx.interpreter.StoppedByError);
  }
}

TEST(Subprograms, IgnoreSettings) {
  // 2: a missing program is skipped in silence; 3: M98 is not looked at.
  for (const int ignore : {2, 3}) {
    PlotFixture fx;
    InterpreterOptions options;
    options.IgnoreM98 = ignore;
    options.IgnoreG65 = ignore;
    fx.interpreter.SetOptions(options);
    EXPECT_EQ(fx.Plot("G0X1.|M98P123|G65P9|G0X2.|M30"), 1) << ignore;
    EXPECT_TRUE(fx.host.shown.empty()) << ignore << fx.host.lastText();
  }
}

TEST(Subprograms, ErrorsInsideACalledFileNameTheFile) {
  PlotFixture fx;
  const test::ScratchFolder folder;
  const std::string file = folder.Write("O4321.nc", "G0 X1.\r\nG1 X2. Y#[1/0]\r\nM99\r\n");
  SubprogramSettings settings;
  settings.DefaultSubPath = folder.path().string();
  fx.interpreter.SetSubprogramSettings(settings);
  fx.Plot("G0X0|M98P4321|M30");
  ASSERT_EQ(fx.host.shown.size(), 1u);
  const std::string& text = fx.host.shown[0].prompt.text;
  EXPECT_EQ(text.rfind("Error in subprogram:\r\n" + file + "\r\n\r\nG1 X2. Y#[1/0]\r\n", 0), 0u)
      << text;
}

// --- Canned cycles and external macros -------------------------------------------------------

TEST(CannedCycles, RepeatsSuppressionAndCancel) {
  PlotFixture fx;
  // L3 in G91 drills three holes one apart; L0 moves without drilling; G0 cancels the cycle.
  fx.Plot("G0X0Y0Z1.|G91G98G81X1.Z-1.R-.9L3|G90|X9.L0|G0X10.|M30");
  std::vector<float> drilledAt;
  for (int i = 1; i <= fx.table.HighestIndex(); ++i) {
    if (fx.table[i].EntityType == 1) drilledAt.push_back(End(fx, i).x);
  }
  EXPECT_EQ(drilledAt, (std::vector<float>{1, 2, 3}));
  EXPECT_EQ(End(fx, fx.table.HighestIndex()), (Point{10, 0, 1}));
  EXPECT_TRUE(fx.host.shown.empty()) << fx.host.lastText();
}

// Without a folder of its own the interpreter finds the macro files beside the configuration
// file's folder: <application folder>/CONFIG/<name>.zmt and <application folder>/CONFIG/<name>/.
TEST(CannedCycles, MacroFilesAreFoundFromTheConfigurationPath) {
  PlotFixture fx;
  fx.interpreter.SetMachineFolder("");
  fx.config.ConfigPath = (test::SourceDataDir() / "CONFIG" / "default.zmt").string();
  EXPECT_EQ(fx.Plot("G0X0Z1.|G81X1.Z-1.R.1|G80|M30"), 4);
  EXPECT_TRUE(fx.host.shown.empty()) << fx.host.lastText();
}

TEST(CannedCycles, MissingFilesStopAtTheFirstMove) {
  PlotFixture fx;
  fx.config.ConfigName = "NoSuchMachine";
  fx.config.ExternalGCodeMacros = {0, 120};
  EXPECT_EQ(fx.Plot("G0X0Z1.|G81X1.Z-1.R.1|X2."), 1);
  ASSERT_EQ(fx.host.shown.size(), 1u);
  EXPECT_EQ(fx.host.shown[0].prompt.text.rfind("Canned cycle not found:\r\n", 0), 0u);
  EXPECT_TRUE(fx.host.shown[0].prompt.text.ends_with("G810.PRG"));

  PlotFixture macro;
  macro.config.ConfigName = "NoSuchMachine";
  macro.config.ExternalGCodeMacros = {0, 120};
  macro.Plot("G0X0|G12I1.");
  ASSERT_EQ(macro.host.shown.size(), 1u);
  EXPECT_EQ(macro.host.shown[0].prompt.text.rfind("Cycle not found:\r\n", 0), 0u);
  EXPECT_TRUE(macro.host.shown[0].prompt.text.ends_with("G120.PRG"));
}

// A machine folder of the test's own, with the macro files each case needs.
class MachineFolder {
 public:
  void Write(const std::string& name, const std::string& text) const {
    folder_.Write("CONFIG/default/" + name, text);
  }
  std::string Path(const std::string& name) const {
    return (folder_ / "CONFIG" / "default" / name).string();
  }
  std::string Root() const { return folder_.path().string(); }

 private:
  test::ScratchFolder folder_;
};

TEST(CannedCycles, ErrorsInACycleFileNameTheFileAndLine) {
  MachineFolder folder;
  folder.Write("G810.PRG", "G0 Z#5102\r\nGOTO 77\r\nM99\r\n");
  PlotFixture fx;
  fx.interpreter.SetMachineFolder(folder.Root());
  fx.Plot("G0X0Z1.|G81X1.Z-1.R.1|X2.");
  ASSERT_EQ(fx.host.shown.size(), 1u);
  const std::string& text = fx.host.shown[0].prompt.text;
  EXPECT_EQ(text.rfind("Error in canned cycle:\r\n" + folder.Path("G810.PRG") +
                           "\r\n\r\nGOTO 77\r\nBlock Number not Found",
                       0),
            0u)
      << text;
}

TEST(CannedCycles, ExternalMacrosNestedTooDeepAreARunTimeFailure) {
  MachineFolder folder;
  folder.Write("G120.PRG", "G91 G1 X1.\r\nG12\r\nM99\r\n");
  PlotFixture fx;
  fx.config.ExternalGCodeMacros = {0, 120};
  fx.interpreter.SetMachineFolder(folder.Root());
  fx.Plot("G0X0|G12");
  EXPECT_TRUE(fx.driver.Failed);
  EXPECT_EQ(fx.host.lastText(),
            "Error in Plot_GCodeToGeometry\r\nCalls nested deeper than 9 levels");
}

// --- Lathe ------------------------------------------------------------------------------------

TEST(LatheCycles, ContourRunsOnceAndReturnsByARapid) {
  PlotFixture fx(test::ShippedConfig("Lathe"));
  fx.Plot(
      "G0X20.Z2.|G71U1.R.5|G71P10Q20U.2W.1F.2|G0X30.|M30|"
      "N10G0X10.|G1Z-5.|N20X20.|M30");
  EXPECT_TRUE(fx.host.shown.empty()) << fx.host.lastText();
  // Radii on a diameter machine: the start, the contour, the rapid back, then X30 once.
  EXPECT_EQ(Ends(fx),
            (std::vector<Point>{{5, 0, 2}, {5, 0, -5}, {10, 0, -5}, {10, 0, 2}, {15, 0, 2}}));
  EXPECT_EQ(fx.table[4].EntityType, 0);
  EXPECT_EQ(LineNumbers(fx), (std::vector<int>{6, 7, 8, 3, 4}));
}

TEST(LatheCycles, ContourErrors) {
  struct Case {
    const char* program;
    std::string text;
  } cases[] = {
      {"G0X20.Z2.|G70P10", "Error:\r\n\r\n" + std::string(kBothPAndQ)},
      {"G0X20.Z2.|G70P10Q20", "Referenced block number not found:\r\n10"},
  };
  for (const Case& c : cases) {
    PlotFixture fx(test::ShippedConfig("Lathe"));
    fx.Plot(c.program);
    EXPECT_EQ(fx.MessageTexts(), (std::vector<std::string>{c.text})) << c.program;
  }
}

TEST(LatheCycles, G50ClampsOrSetsCoordinatesWithoutMoving) {
  MachineConfig radiusLathe = test::ShippedConfig("Lathe");
  radiusLathe.LatheXDiameter = 0;
  PlotFixture fx(radiusLathe);
  fx.Plot("G0X20.Z2.|G50S2000|G50X10.Z5.|G96S200|G0X20.|M30");
  EXPECT_EQ(fx.table.HighestIndex(), 1);
  EXPECT_EQ(fx.interpreter.SpindleMaxRPM, 2000);
  EXPECT_EQ(fx.interpreter.SurfaceSpeed, 200);
  // The tool at X20 became X10: X20 is 10 further out.
  EXPECT_FLOAT_EQ(fx.table[1].EndPoint.X - fx.table[1].StartPoint.X, 10);
  EXPECT_FLOAT_EQ(fx.table[1].WorkOffset.X, 10);
}

TEST(LatheCycles, ConstantSurfaceSpeedTimesFeedMoves) {
  struct Case {
    const char* clamp;
    double seconds;
    double maxRPM;
  } cases[] = {
      // 100 m/min at radius 10 mm: 1591.5 rpm, 0.1 mm a turn: 10 mm take 3.77 s.
      {"", 10 / (0.1 * (100 / (2 * 3.14159265358979 / 1000 * 10)) / 60), 10000},
      // Clamped at 500 rpm: 12 s.
      {"G50S500.|", 12, 500},
  };
  for (const Case& c : cases) {
    PlotFixture fx(test::ShippedConfig("Lathe"));
    fx.Plot(std::string("G21G99|") + c.clamp + "G0X20.Z0|G96S100.M3|G1Z-10.F.1|M30");
    EXPECT_NEAR(fx.table.RunTime, c.seconds, 1e-6) << c.clamp;
    EXPECT_EQ(fx.interpreter.SpindleMaxRPM, c.maxRPM) << c.clamp;
  }
  // Facing from radius 10 to the centre: the spindle reaches its clamp, the time stays finite.
  PlotFixture fx(test::ShippedConfig("Lathe"));
  fx.Plot("G21G99|G50S2000.|G0X20.Z0|G96S100.M3|G1X0F.1|M30");
  EXPECT_GT(fx.table.RunTime, 10 / (0.1 * 2000 / 60));
  EXPECT_LT(fx.table.RunTime, 10 / (0.1 * 100 / (2 * 3.14159265358979 / 1000 * 10) / 60));
}

TEST(LatheCycles, TurningCycleFileRunsFromARapidApproach) {
  PlotFixture fx(test::ShippedConfig("Lathe"));
  fx.Plot("G0X30.Z2.|G90X20.Z-10.F.2|G80|M30");
  EXPECT_TRUE(fx.host.shown.empty()) << fx.host.lastText();
  EXPECT_GE(fx.table.HighestIndex(), 4);
  bool reachedCut = false;
  for (int i = 1; i <= fx.table.HighestIndex(); ++i) {
    reachedCut = reachedCut || (End(fx, i).x == 10 && End(fx, i).z == -10);
  }
  EXPECT_TRUE(reachedCut);
}

}  // namespace
}  // namespace zemtra
