// The cycle and pattern macros shipped in data/CONFIG: every block reads, and each macro draws
// what a machinist expects from its arguments.
#include <gtest/gtest.h>

#include <cmath>
#include <filesystem>
#include <set>

#include "MacroRunner.h"
#include "core/NumberText.h"
#include "core/TextUtil.h"
#include "macro/CallStack.h"
#include "macro/Evaluator.h"
#include "macro/MacroStatement.h"
#include "macro/ProgramText.h"
#include "support/TestSupport.h"

namespace zemtra {
namespace {

namespace fs = std::filesystem;
using test::MacroRun;
using test::Move;

TEST(ShippedMacroTest, EveryBlockOfEveryMacroFileReads) {
  // Codes that can only come from a mistake in the file, whatever the arguments.
  const std::set<int> mistakes = {1, 2, 3, 4, 9, 10, 11, 12, 13, 15, 102, 103, 104, 105, 106};
  const fs::path root = test::SourceDataDir() / "CONFIG";
  ASSERT_TRUE(fs::is_directory(root)) << root;
  int files = 0;
  for (const auto& entry : fs::recursive_directory_iterator(root)) {
    const std::string path = entry.path().string();
    if (!EndsWithNoCase(path, ".PRG")) continue;
    ++files;
    ProgramText text;
    std::string error;
    ASSERT_TRUE(ProgramText::LoadFile(path, text, error)) << path << ": " << error;
    VariableStore store;
    Evaluator evaluator(store);
    MacroStatements statements(evaluator, store);
    CallFrame frame;
    frame.Open(text, path);
    bool saysWhatItReads = false;
    std::string lastBlock;
    for (int line = 1; line <= text.LineCount(); ++line) {
      std::size_t at = text.LineStart(line);
      std::string_view raw;
      text.ReadLineAt(at, raw);
      saysWhatItReads = saysWhatItReads || raw.find("(Reads:") != std::string_view::npos;
      std::string block = test::CleanTestBlock(raw);
      if (block.empty()) continue;
      lastBlock = block;
      frame.LinePosition = text.LineStart(line);
      frame.ResumePosition = at;
      frame.ClearLoops();  // an END out of its loop says 107, which is no mistake here
      bool jumped = false;
      int code = 0;
      try {
        code = statements.RunBlock(block, raw, frame, jumped);
      } catch (const ExpressionFault&) {
        continue;  // arithmetic on empty arguments
      }
      EXPECT_EQ(mistakes.count(code), 0u) << path << ":" << line << ": " << raw << " -> " << code;
      if (!jumped && (code == 0 || code == StatementCode::kNotAStatement)) {
        EXPECT_EQ(test::ReadAddressWords(block, evaluator, [](char, double) {}), 0)
            << path << ":" << line << ": " << raw;
      }
    }
    EXPECT_TRUE(saysWhatItReads) << path;
    EXPECT_EQ(lastBlock, "M99") << path;
  }
  EXPECT_EQ(files, 24);
}

// Runs one shipped macro with its arguments on a small stand-in for the interpreter.
class MacroFileTest : public ::testing::Test {
 protected:
  MacroFileTest() {
    store.WriteNumber(4201, 0);
    store.WriteNumber(4202, 17);
    store.WriteNumber(4203, 90);
    store.WriteNumber(4206, 20);
    store.WriteNumber(4210, 98);
  }

  MacroRun RunFile(const std::string& relative) {
    std::string error;
    const fs::path path = test::SourceDataDir() / "CONFIG" / relative;
    EXPECT_TRUE(ProgramText::LoadFile(path, text, error)) << path << ": " << error;
    frame.Open(text, path.string());
    MacroRun run = runner.Run(frame);
    EXPECT_TRUE(run.returned) << relative << " stopped at " << run.stoppedAt << " with "
                              << run.code;
    return run;
  }

  // The argument words of the calling block, as the only locals of the call.
  void Args(std::string_view words) {
    test::Letters letters;
    EXPECT_EQ(test::ReadAddressWords(words, evaluator,
                                     [&](char letter, double v) { letters.Set(letter, v); }),
              0)
        << words;
    store.Locals(0).Clear();
    StoreArguments(letters.View(), store.Locals(0));
  }

  // Drilling: the tool over the hole at (2, 3) and Z `z`; Z, R and the initial level of the cycle.
  void Drill(double z, double bottom, double r, double initial = 1) {
    runner.x = 2;
    runner.y = 3;
    runner.z = z;
    runner.PublishPosition();
    store.WriteNumber(5101, bottom);
    store.WriteNumber(5102, r);
    store.WriteNumber(5103, initial);
  }

  // Lathe: the block brought X from `startX` to `x` (as written) at Z `z`.
  void Turn(double startX, double x, double z) {
    runner.lathe = true;
    runner.x = x;
    runner.z = z;
    runner.PublishPosition();
    store.WriteNumber(5001, startX);
    store.WriteNumber(5100, 2);
  }

  static std::string Num(double value) {
    return FormatNumberText(std::round(value * 1e6) / 1e6, "");
  }
  // "code:z" of every move.
  static std::string ZPath(const MacroRun& run) {
    std::string path;
    for (const Move& move : run.moves) {
      path += (path.empty() ? "" : " ") + std::to_string(move.code) + ":" + Num(move.z);
    }
    return path;
  }
  // "code:x,y", or "code:x,z" on a lathe.
  static std::string Point(const Move& move, bool lathe = false) {
    return std::to_string(move.code) + ":" + Num(move.x) + "," + Num(lathe ? move.z : move.y);
  }
  static std::string Path(const MacroRun& run, bool lathe = false) {
    std::string path;
    for (const Move& move : run.moves) path += (path.empty() ? "" : " ") + Point(move, lathe);
    return path;
  }

  VariableStore store;
  Evaluator evaluator{store};
  test::MacroRunner runner{store, evaluator};
  ProgramText text;
  CallFrame frame;
};

TEST_F(MacroFileTest, DrillingCyclesReturnToTheLevelOfG98OrG99) {
  struct Case {
    const char* file;
    int returnCode;
    double startZ;
    const char* path;
  } cases[] = {
      {"default/G810.PRG", 98, 1, "0:0.1 1:-0.5 0:1"},
      {"default/G810.PRG", 99, 1, "0:0.1 1:-0.5 0:0.1"},
      {"default/G810.PRG", 99, 0.1, "1:-0.5 0:0.1"},  // the next hole starts at R
      {"default/G820.PRG", 98, 1, "0:0.1 1:-0.5 0:1"},
      {"default/G840.PRG", 98, 1, "0:0.1 1:-0.5 1:0.1 0:1"},
      {"default/G740.PRG", 99, 1, "0:0.1 1:-0.5 1:0.1"},
      {"default/G850.PRG", 98, 1, "0:0.1 1:-0.5 1:0.1 0:1"},
      {"default/G860.PRG", 98, 1, "0:0.1 1:-0.5 0:0.1 0:1"},
      {"default/G880.PRG", 99, 1, "0:0.1 1:-0.5 0:0.1"},
      {"default/G890.PRG", 98, 1, "0:0.1 1:-0.5 1:0.1 0:1"},
  };
  for (const Case& c : cases) {
    Drill(c.startZ, -0.5, 0.1);
    store.WriteNumber(4210, c.returnCode);
    EXPECT_EQ(ZPath(RunFile(c.file)), c.path) << c.file << " G" << c.returnCode;
    EXPECT_EQ(runner.motion, 0) << c.file;  // the next hole is reached by a rapid
  }
}

TEST_F(MacroFileTest, PeckDrillingGoesDownInSteps) {
  Args("Q.2");
  Drill(1, -0.5, 0.1);
  EXPECT_EQ(ZPath(RunFile("default/G830.PRG")),
            "0:0.1 1:-0.1 0:0.1 0:-0.09 1:-0.3 0:0.1 0:-0.29 1:-0.5 0:0.1 0:1");
  Drill(1, -0.5, 0.1);
  EXPECT_EQ(ZPath(RunFile("default/G730.PRG")), "0:0.1 1:-0.1 0:-0.09 1:-0.3 0:-0.29 1:-0.5 0:1");
  Args("");  // without Q the hole is drilled at once
  Drill(1, -0.5, 0.1);
  EXPECT_EQ(ZPath(RunFile("default/G830.PRG")), "0:0.1 1:-0.5 0:0.1 0:1");
  store.WriteNumber(4206, 21);  // millimetres: 0.25 clearance
  Args("Q5.");
  Drill(10, -10, 2, 10);
  EXPECT_EQ(ZPath(RunFile("default/G830.PRG")),
            "0:2 1:-3 0:2 0:-2.75 1:-8 0:2 0:-7.75 1:-10 0:2 0:10");
}

TEST_F(MacroFileTest, CyclesKeepIncrementalModeAndShiftOutOfTheBore) {
  Args("Q.05");
  Drill(1, -0.5, 0.1);
  store.WriteNumber(4203, 91);
  EXPECT_EQ(Path(RunFile("default/G760.PRG")), "0:2,3 1:2,3 0:2.05,3 0:2.05,3 0:2,3");
  EXPECT_TRUE(runner.incremental);
  EXPECT_EQ(store.ReadNumber(4203), 91);

  Drill(1, 0.5, -1);  // back boring: R below the part, Z above it
  store.WriteNumber(4203, 90);
  EXPECT_EQ(ZPath(RunFile("default/G870.PRG")), "0:1 0:-1 0:-1 1:0.5 0:0.5 0:1 0:1");
}

TEST_F(MacroFileTest, HolePatternsPlaceEachHole) {
  Args("X10.Y20.I2.J0K.0004");  // K4 written without a point, at the default resolution
  EXPECT_EQ(Path(RunFile("default/G340.PRG")), "0:12,20 0:10,22 0:8,20 0:10,18");
  Args("X10.Y20.I2.J0K-4.");  // clockwise
  EXPECT_EQ(Path(RunFile("default/G340.PRG")), "0:12,20 0:10,18 0:8,20 0:10,22");
  Args("X10.Y20.I2.J90.K3.");  // a line at 90 degrees, holes 2 apart
  EXPECT_EQ(Path(RunFile("default/G350.PRG")), "0:10,20 0:10,22 0:10,24");
  Args("X10.Y20.I2.J0K3.P90.");  // an arc from 0 degrees in steps of 90
  EXPECT_EQ(Path(RunFile("default/G360.PRG")), "0:12,20 0:10,22 0:8,20");
  Args("X10.Y20.I1.J5.P3.K2.");  // a grid: 3 columns 1 apart, 2 rows 5 apart, back and forth
  EXPECT_EQ(Path(RunFile("default/G371.PRG")), "0:10,20 0:11,20 0:12,20 0:12,25 0:11,25 0:10,25");
  EXPECT_FALSE(runner.incremental);
}

TEST_F(MacroFileTest, CircleCuttingRunsInCutsAndComesBack) {
  Args("I1.");
  runner.x = 5;
  runner.y = 5;
  runner.z = -1;
  runner.PublishPosition();
  EXPECT_EQ(Path(RunFile("default/G120.PRG")),
            "2:5.5,5.5 2:6,5 2:5,4 2:4,5 2:5,6 2:6,5 2:5.5,4.5 2:5,5");
  EXPECT_EQ(runner.motion, 0);
  EXPECT_EQ(Path(RunFile("default/G130.PRG")),
            "3:5.5,4.5 3:6,5 3:5,6 3:4,5 3:5,4 3:6,5 3:5.5,5.5 3:5,5");

  Args("I1.K2.Q.5Z-2.");  // out to radius 2 in steps of 0.5, at depth Z-2
  const MacroRun run = RunFile("default/G120.PRG");
  ASSERT_EQ(run.moves.size(), 1u + 2 + 3 * 4 + 2 + 2 + 1);
  EXPECT_EQ(run.moves.front().z, -2);
  EXPECT_EQ(Num(run.moves[3 + 4].x), "6.5");  // the step out to the second circle
  EXPECT_EQ(run.moves.back().z, -1);
}

TEST_F(MacroFileTest, LatheTurningFacingAndThreadingPasses) {
  store.WriteNumber(5101, -30);
  Args("X40.Z-30.");
  Turn(50, 40, 2);
  EXPECT_EQ(Path(RunFile("Lathe/G900.PRG"), true), "1:40,-30 1:50,-30 0:50,2");
  Turn(50, 50, 2);  // a later block without X: the tool is back at the start
  EXPECT_EQ(Path(RunFile("Lathe/G900.PRG"), true), "0:40,2 1:40,-30 1:50,-30 0:50,2");
  Args("X40.Z-30.R-1.");  // taper: 1 smaller in radius at the start of the cut
  Turn(50, 40, 2);
  EXPECT_EQ(Path(RunFile("Lathe/G900.PRG"), true), "0:38,2 1:40,-30 1:50,-30 0:50,2");
  Args("X40.Z-30.");
  Turn(50, 40, 2);
  EXPECT_EQ(Path(RunFile("Lathe/G920.PRG"), true), "1:40,-30 0:50,-30 0:50,2");

  Args("U-5.W-32.");  // U-10 W-32: the block moved both axes already
  Turn(50, 40, -30);
  store.WriteNumber(5002, 2);
  EXPECT_EQ(Path(RunFile("Lathe/G900.PRG"), true), "1:40,-30 1:50,-30 0:50,2");

  Args("X20.Z-2.");  // facing to X20 at Z-2
  store.WriteNumber(5101, -2);
  Turn(50, 20, 2);
  EXPECT_EQ(Path(RunFile("Lathe/G940.PRG"), true), "0:50,2 0:50,-2 1:20,-2 1:20,2 0:50,2");
}

TEST_F(MacroFileTest, LatheThreadCutsDeeperEachPassDownToTheRoot) {
  Args("X.4069Z-1.57K.043075D.01076875");  // G76, F.0769, from X.6 Z.1
  store.WriteNumber(5101, -1.57);
  Turn(0.6, 0.4069, 0.1);
  const MacroRun run = RunFile("Lathe/G760.PRG");
  ASSERT_EQ(run.moves.size(), 16u * 4);
  EXPECT_EQ(Num(run.moves[0].x), Num(0.4069 + 2 * (0.043075 - 0.01076875)));
  EXPECT_EQ(Num(run.moves[60].x), "0.4069");  // the last pass reaches the root
  EXPECT_EQ(run.moves[61].code, 1);
  EXPECT_EQ(Num(run.moves[61].z), "-1.57");
  EXPECT_EQ(Point(run.moves.back(), true), "0:0.6,0.1");
}

TEST_F(MacroFileTest, LatheGroovesAndPecks) {
  Args("X0I.005");  // parting off from X1.4 at Z-2.097, diameters
  Turn(1.4, 0, -2.097);
  MacroRun run = RunFile("Lathe/G750.PRG");
  ASSERT_FALSE(run.moves.empty());
  EXPECT_EQ(Point(run.moves.front(), true), "0:1.4,-2.097");
  EXPECT_EQ(run.moves.size(), 1u + 140 * 2 - 1 + 1);
  EXPECT_EQ(Num(run.moves[run.moves.size() - 2].x), "0");
  EXPECT_EQ(Point(run.moves.back(), true), "0:1.4,-2.097");

  Args("X1.Z-3.K.5");  // two grooves 0.5 apart in Z, each in one plunge
  store.WriteNumber(5101, -3);
  Turn(1.4, 1, -2.5);
  run = RunFile("Lathe/G750.PRG");
  EXPECT_EQ(Path(run, true), "0:1.4,-2.5 1:1,-2.5 0:1.4,-2.5 0:1.4,-3 1:1,-3 0:1.4,-3 0:1.4,-2.5");

  Args("Z-1.K.4");  // peck drilling on the centre line: Z-1 in pecks of 0.4 from Z0.1
  store.WriteNumber(5101, -1);
  Turn(0, 0, 0.1);
  run = RunFile("Lathe/G740.PRG");
  EXPECT_EQ(Path(run, true), "1:0,-0.3 0:0,-0.1 1:0,-0.7 0:0,-0.5 1:0,-1 0:0,0.1");
}

}  // namespace
}  // namespace zemtra
