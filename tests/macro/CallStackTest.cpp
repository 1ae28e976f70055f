#include "macro/CallStack.h"

#include <gtest/gtest.h>

#include <array>
#include <filesystem>

#include "MacroRunner.h"
#include "core/NumberText.h"
#include "core/SettingsStore.h"
#include "macro/Evaluator.h"
#include "macro/MacroStatement.h"
#include "macro/ProgramText.h"
#include "support/ScratchFolder.h"

namespace zemtra {
namespace {

namespace fs = std::filesystem;

using test::Letters;
using test::ScratchFolder;

// Runs a program with calls the way the interpreter does, recording the X of every block
// that has one (not of G65 blocks, whose X is an argument).
class CallStackTest : public ::testing::Test {
 protected:
  void Load(std::string text, std::string documentPath = "") {
    program = ProgramText(std::move(text), "main.tmp");
    calls.Reset(program, documentPath);
  }

  std::string Run(int m98Format = 0) {
    std::string path;
    message.clear();
    std::string_view line;
    for (int blocks = 0; blocks < 10000; ++blocks) {
      CallFrame& frame = calls.Current();
      if (!frame.ReadLine(line)) break;
      std::string block = test::CleanTestBlock(line);
      if (block.empty()) continue;
      if (block[0] == 'O' || block[0] == ':') {
        frame.ProgramNumber = static_cast<std::int32_t>(std::stod(block.substr(1)));
        continue;
      }
      bool jumped = false;
      const int code = statements.RunBlock(block, line, frame, jumped);
      if (jumped || code == StatementCode::kComplete) continue;
      if (code != 0 && code != StatementCode::kNotAStatement) {
        message = ErrorMessage(code);
        break;
      }
      const Letters letters = Decode(block);
      const BlockAddresses words = letters.View();
      CallResult result;
      const bool g65 = words.Has('G') && words.Get('G') == 65;
      if (g65) {
        result = calls.CallMacro(words);
      } else if (words.Has('M') && words.Get('M') == 97) {
        result = calls.CallLocalBlock(words);
      } else if (words.Has('M') && words.Get('M') == 98) {
        result = calls.CallSubprogram(words, m98Format);
      } else if (words.Has('M') && words.Get('M') == 99) {
        result = calls.Return(words);
      } else if (words.Has('M') && words.Get('M') == 30) {
        break;
      }
      if (result.Status == CallStatus::kFailed) {
        message = result.Message;
        break;
      }
      if (result.Status == CallStatus::kEndOfProgram) break;
      if (result.Status != CallStatus::kContinue) continue;
      if (!g65 && words.Has('X')) {
        path += (path.empty() ? "" : " ") + FormatNumberText(words.Get('X'), "");
      }
    }
    return path;
  }

  Letters Decode(std::string_view block) {
    Letters letters;
    EXPECT_EQ(test::ReadAddressWords(
                  block, evaluator, [&](char letter, double value) { letters.Set(letter, value); }),
              0)
        << block;
    return letters;
  }

  VariableStore store;
  Evaluator evaluator{store};
  MacroStatements statements{evaluator, store};
  CallStack calls{store};
  ProgramText program;
  std::string message;
};

constexpr const char* kSubprogram100 = "M30\nO100\nX9\nM99\n";

TEST_F(CallStackTest, M98FormatsCallAndRepeat) {
  struct Case {
    int format;
    const char* call;
    const char* path;
  } cases[] = {
      {0, "M98 P100 L3", "1 9 9 9 2"},  {0, "M98 P100 L0", "1 2"},
      {0, "M98 P100 L-2.7", "1 9 9 2"}, {0, "M98 P100", "1 9 2"},
      {1, "M98 P100 K2", "1 9 9 2"},    {1, "M98 P100 L2", "1 9 2"},
      {2, "M98 P30100", "1 9 9 9 2"},   {2, "M98 P100", "1 9 2"},
      {2, "M98 P00100", "1 9 2"},       {3, "M98 P100 L2", "1 9 9 2"},
      {3, "M98 H20", "1 20 2"},         {3, "M98 H20 L2", "1 20 20 2"},
      {4, "M98 O20", "1 20 2"},
  };
  for (const Case& c : cases) {
    Load(std::string("X1\n") + c.call + "\nX2\nM30\nN20 X20\nM99\nO100\nX9\nM99\n");
    EXPECT_EQ(Run(c.format), c.path) << c.format << " " << c.call;
    EXPECT_EQ(message, "") << c.format << " " << c.call;
    EXPECT_EQ(calls.CallLevel(), 0) << c.format << " " << c.call;
  }
}

TEST_F(CallStackTest, CallsThatCannotBeMadeSayWhy) {
  struct Case {
    int format;
    const char* call;
    const char* message;
  } cases[] = {
      {0, "M98 L2", "No program number designated"},
      {2, "M98 H2", "No program number designated"},
      {3, "M98 L2", "No program or block number designated"},
      {4, "M98 P100", "No program number designated"},
      {0, "M98 P555", "Sub program not found:\r\n555"},
      {3, "M98 H21", "Referenced block number not found:\r\n21"},
      {0, "M97 P51", "Referenced block number not found:\r\n51"},
      {0, "M99 P77", "Referenced block number not found:\r\nN77"},
      {0, "G65 A1", "No program number designated"},
      {0, "G65 P9001", "Sub program not found:\r\n9001"},
  };
  for (const Case& c : cases) {
    Load(std::string("X1\n") + c.call + "\nX2\nM30\n" + kSubprogram100);
    EXPECT_EQ(Run(c.format), "1") << c.call;
    EXPECT_EQ(message, c.message) << c.call;
  }
}

TEST_F(CallStackTest, IgnoreSettingsSkipMissingProgramsOrAllCalls) {
  SubprogramSettings settings;
  settings.IgnoreM98 = SubprogramMode::kSkipIfMissing;
  settings.IgnoreG65 = SubprogramMode::kSkipIfMissing;
  calls.SetSettings(settings);
  Load("X1\nM98 P555\nG65 P556\nM98 P100\nX2\nM30\nO100\nX9\nM99\n");
  EXPECT_EQ(Run(), "1 9 2");
  EXPECT_EQ(message, "");

  settings.IgnoreM98 = SubprogramMode::kIgnoreAll;
  settings.IgnoreG65 = SubprogramMode::kIgnoreAll;
  calls.SetSettings(settings);
  Load("X1\nM98 P100\nG65 P100\nM97 P5\nM99\nX2\nM30\nO100\nX9\nM99\n");
  EXPECT_EQ(Run(), "1 2");  // M99 at the main level does not end the program either
  EXPECT_EQ(message, "");
}

TEST_F(CallStackTest, SeventhLevelIsRefused) {
  Load("M98 P100\nM30\nO100\nX1\nM98 P100\nM99\n");
  EXPECT_EQ(Run(), "1 1 1 1 1 1");
  EXPECT_EQ(message, "Subprogram exceeds 6 levels");
  EXPECT_EQ(calls.CallLevel(), 6);
}

TEST_F(CallStackTest, LocalsReturnsAndJumpsByBlockNumber) {
  struct Case {
    const char* program;
    const char* path;
  } cases[] = {
      // M98 passes the caller's #1-#26 down and nothing back.
      {"#1=5\n#2=6\n#27=7\nM98 P100\nX#1\nM30\nO100\nX#2\nX[#27+0]\n#1=99\nM99\n", "6 0 5"},
      // G65 starts with its arguments only; its P is no argument.
      {"#1=7\n#2=8\nG65 P9000 A1 X2\nX#1\nM30\nO9000\nX#1\nX#24\nX#16\nX[#2+0]\nM99\n",
       "1 2 9000 0 7"},
      {"M98 P100\nX1\nN20 X2\nM30\nO100\nX9\nM99 P20\n", "9 2"},
      {"X1\nM99 P5\nX2\nN5 X3\nM30\n", "1 3"},
      {"X1\nM99\nX2\n", "1"},
      {"M97 P50\nX1\nM30\nN50 X5\nM99\n", "5 1"},
      {"M97 P50\nX1\nM30\nO7\nN50 X7\nM99\nO8\nN50 X8\nM99\n", "7 1"},
  };
  for (const Case& c : cases) {
    Load(c.program);
    EXPECT_EQ(Run(), c.path) << c.program;
    EXPECT_EQ(message, "") << c.program;
  }
}

TEST_F(CallStackTest, ReadingTheMainTextIsTrackedForTheLineCounter) {
  Load("X1\nM98 P100\nX2\nM30\nO100\nX9\nM99\n");
  std::string_view line;
  calls.Current().ReadLine(line);
  calls.Current().ReadLine(line);
  EXPECT_TRUE(calls.ReadingMainText());
  EXPECT_EQ(calls.CallSubprogram(Letters().Set('M', 98).Set('P', 100).View(), 0).Status,
            CallStatus::kEntered);
  EXPECT_TRUE(calls.ReadingMainText());        // O100 stands in the main text
  EXPECT_EQ(calls.MainLineFromPosition(), 4);  // the O100 line is read next
  EXPECT_EQ(calls.Return(Letters().View()).Status, CallStatus::kEntered);
  EXPECT_EQ(calls.MainLineFromPosition(), 2);
  EXPECT_EQ(calls.Return(Letters().View()).Status, CallStatus::kEndOfProgram);
}

TEST_F(CallStackTest, SubprogramsAreFoundInTheirSearchOrder) {
  ScratchFolder folder;
  const std::string assigned = folder.Write("assigned/sub.nc", "X1\nM99\n");
  folder.Write("default/O0200.nc", "X2\nM99\n");
  folder.Write("default/O300", "X30\nM99\n");
  folder.Write("work/o300.tap", "X3\nM99\n");
  folder.Write("work/O400.nc", "M98 P500\nM99\n");
  folder.Write("work/lib/O500", "X5\nM99\n");
  folder.Write("work/O600.nc", "M98 P700\nM99\n");
  folder.Write("work/O700.nc", "X7\nM99\n");
  const std::string document = (folder.path() / "work" / "part.nc").string();

  SubprogramSettings settings;
  settings.SubProgramFiles = {{100, assigned}, {200, (folder.path() / "none.nc").string()}};
  settings.DefaultSubPath = (folder.path() / "default/").string();
  calls.SetSettings(settings);
  Load("M98 P100\nM98 P200\nM98 P300\nM98 P100\nM30\n", document);
  EXPECT_EQ(Run(), "1 2 30 1");

  settings.DefaultSubPath.clear();
  calls.SetSettings(settings);
  Load("M98 P300\nM98 P400\nM30\n", document);
  EXPECT_EQ(Run(), "3");
  // From O400 (level 1, in work/) program 500 is looked for beside O400: only in work/lib/.
  EXPECT_EQ(message, "Sub program not found:\r\n500");

  Load("M98 P600\nM30\n", document);
  EXPECT_EQ(Run(), "7");
  Load("M98 P300\nM30\n", "");  // an untitled document has no folder to search
  EXPECT_EQ(Run(), "");
  EXPECT_EQ(message, "Sub program not found:\r\n300");
}

TEST_F(CallStackTest, LocatedProgramsAreKeptForTheRun) {
  Load("M30\n:100\nX1\nM99\nO100\nX2\nM99\n");
  CallFrame frame;
  ASSERT_TRUE(calls.LocateSubProgram(100, frame));
  EXPECT_EQ(frame.Text, &program);
  EXPECT_EQ(frame.ProgramNumber, 100);
  EXPECT_EQ(frame.ResumePosition, program.LineStart(2));  // ":" is looked for first
  EXPECT_FALSE(calls.LocateSubProgram(555, frame));
  ASSERT_EQ(calls.SubCache().size(), 2u);
  EXPECT_TRUE(calls.SubCache()[0].Found);
  EXPECT_TRUE(calls.SubCache()[0].InMainText);
  EXPECT_FALSE(calls.SubCache()[1].Found);
  calls.Reset(program, "");
  EXPECT_TRUE(calls.SubCache().empty());
}

TEST(FindProgramFileTest, TakesTheNamesOfOneProgramNumber) {
  ScratchFolder folder;
  for (const char* name :
       {"o1000.nc", "O1000", "O10000.nc", "O1000A.nc", "Q1000", "O0042.tap", "O.nc", "O7x"}) {
    folder.Write(name, "M99\n");
  }
  fs::create_directories(folder.path() / "O55");
  const std::string base = folder.path().string();
  EXPECT_EQ(CallStack::FindProgramFile(1000, base), base + "/O1000");
  EXPECT_EQ(CallStack::FindProgramFile(1000, base + "/"), base + "/O1000");
  EXPECT_EQ(CallStack::FindProgramFile(10000, base), base + "/O10000.nc");
  EXPECT_EQ(CallStack::FindProgramFile(42, base), base + "/O0042.tap");
  EXPECT_EQ(CallStack::FindProgramFile(7, base), "");
  EXPECT_EQ(CallStack::FindProgramFile(55, base), "");  // a folder is no program
  EXPECT_EQ(CallStack::FindProgramFile(1000, base + "/missing"), "");
  EXPECT_EQ(CallStack::FindProgramFile(1000, ""), "");
}

TEST_F(CallStackTest, MachineMacroFilesAreFoundWithoutRegardToCase) {
  ScratchFolder folder;
  folder.Write("config/mill/g120.prg", "X#24\nX[#1+0]\nM99\n");
  folder.Write("config/mill/G810.PRG", "M99\n");
  calls.SetMachineFolder(folder.path(), "Mill");
  EXPECT_EQ(calls.MacroFilePath(73.1f).filename().string(), "G731.PRG");
  EXPECT_EQ(calls.MacroFilePath(81).string(), (folder.path() / "config/mill/G810.PRG").string());

  const std::int16_t list[] = {120, 130, 371};
  EXPECT_TRUE(CallStack::IsExternalMacro(12, list));
  EXPECT_TRUE(CallStack::IsExternalMacro(37.1f, list));
  EXPECT_FALSE(CallStack::IsExternalMacro(37, list));
  EXPECT_FALSE(CallStack::IsExternalMacro(0, std::span<const std::int16_t>(list, 0)));

  // G12 X1 from the main level: the caller's #1 and the block's X.
  Load("#1=3\nM30\n");
  std::string_view line;
  calls.Current().ReadLine(line);
  statements.ExecuteAssignments(line);
  ASSERT_EQ(calls.CallExternalMacro(12, Letters().Set('G', 12).Set('X', 1).View()).Status,
            CallStatus::kEntered);
  EXPECT_EQ(calls.CallLevel(), 1);
  EXPECT_EQ(Run(), "1 3");

  Load("M30\n");
  const CallResult missing = calls.CallExternalMacro(13, Letters().Set('G', 13).View());
  EXPECT_EQ(missing.Status, CallStatus::kFailed);
  EXPECT_EQ(missing.Message,
            "Cycle not found:\r\n" + (folder.path() / "config/mill/G130.PRG").string());
  EXPECT_EQ(calls.CallLevel(), 1);  // the level stays raised: the plot ends anyway
}

TEST_F(CallStackTest, CycleMacroRunsInItsOwnFrameWithModalArguments) {
  ScratchFolder folder;
  folder.Write("CONFIG/Mill/G810.PRG", "X[#24+100]\nM99\n");
  calls.SetMachineFolder(folder.path(), "Mill");
  Load("X1\nX2\nM30\n");
  store.WriteNumber(24, 5);  // main level's #24 is not the cycle's
  StoreArguments(Letters().Set('X', 1).Set('Z', -1).View(), calls.CycleArguments());
  ASSERT_EQ(calls.StartCycleMacro(81).Status, CallStatus::kEntered);
  EXPECT_TRUE(calls.InCycleMacro());
  EXPECT_TRUE(store.InCycleMacro());
  EXPECT_FALSE(calls.ReadingMainText());
  EXPECT_EQ(&calls.Current(), &calls.CycleFrame());
  std::string_view line;
  calls.Current().ReadLine(line);
  std::string block = test::CleanTestBlock(line);
  bool jumped = false;
  statements.RunBlock(block, line, calls.Current(), jumped);
  EXPECT_EQ(Decode(block).value[24], 101);
  EXPECT_EQ(calls.Return(Letters().Set('M', 99).View()).Status, CallStatus::kEntered);
  EXPECT_FALSE(calls.InCycleMacro());
  EXPECT_TRUE(calls.ReadingMainText());
  EXPECT_EQ(store.ReadNumber(24), 5);
  EXPECT_EQ(calls.CycleArguments()[26].Number(), -1);  // kept for the next hole
  calls.ClearCycleCall();
  EXPECT_TRUE(calls.CycleArguments()[26].IsNull());

  const CallResult missing = calls.StartCycleMacro(83);
  EXPECT_EQ(missing.Status, CallStatus::kFailed);
  EXPECT_EQ(missing.Message,
            "Canned cycle not found:\r\n" + (folder.path() / "CONFIG/Mill/G830.PRG").string());
  EXPECT_FALSE(calls.InCycleMacro());
}

TEST_F(CallStackTest, ContourRunsItsBlocksAtALevelOfItsOwn) {
  Load("G71 P10 Q20\nX1\nN10 X10\nN20 X20\nM30\n");
  std::string_view line;
  calls.Current().ReadLine(line);
  store.WriteNumber(50, 5);
  ASSERT_EQ(calls.EnterContour(10).Status, CallStatus::kEntered);
  EXPECT_EQ(calls.CallLevel(), 1);
  EXPECT_EQ(store.ReadNumber(50), 5);  // all the caller's locals
  EXPECT_EQ(calls.Current().ResumePosition, program.LineStart(3));
  EXPECT_TRUE(calls.ReadingMainText());
  calls.LeaveContour();
  EXPECT_EQ(calls.CallLevel(), 0);
  EXPECT_EQ(calls.Current().ResumePosition, program.LineStart(2));
  EXPECT_EQ(calls.EnterContour(30).Message, "Referenced block number not found:\r\n30");

  Load("M30\n");
  for (int level = 1; level < CallStack::kFrameCount; ++level) {
    ASSERT_EQ(calls.EnterContour(0).Status, CallStatus::kFailed);  // pushed, block not found
  }
  EXPECT_EQ(calls.EnterContour(0).Message, "Maximum Subprogram nesting level exceeded");
}

TEST_F(CallStackTest, ExternalMacrosBeyondTheLastFrameAreAFault) {
  Load("M30\n");
  for (int level = 1; level < CallStack::kFrameCount; ++level) {
    calls.CallExternalMacro(12, Letters().View());
  }
  EXPECT_EQ(calls.CallLevel(), 8);
  EXPECT_THROW(calls.CallExternalMacro(12, Letters().View()), CallNestingFault);
}

TEST(SubprogramSettingsTest, SettingsSurviveASaveAndALoad) {
  MemorySettingsStore store;
  store.SaveSetting("Subprograms", "Program 99", "stale.nc");
  SubprogramSettings settings;
  settings.DefaultSubPath = "/cnc/subs";
  settings.IgnoreM98 = 2;
  settings.IgnoreG65 = 3;
  settings.SubProgramFiles = {{1000, "/cnc/a.nc"}, {0, "/cnc/zero.nc"}, {7, "/cnc/b.nc"}};
  SaveSubprogramSettings(store, settings);
  EXPECT_EQ(store.GetSetting("Subprograms", "Program 1000"), "/cnc/a.nc");
  EXPECT_EQ(store.GetSetting("Subprograms", "Program 99", "gone"), "gone");

  const SubprogramSettings loaded = LoadSubprogramSettings(store);
  EXPECT_EQ(loaded.DefaultSubPath, "/cnc/subs");
  EXPECT_EQ(loaded.IgnoreM98, 2);
  EXPECT_EQ(loaded.IgnoreG65, 3);
  ASSERT_EQ(loaded.SubProgramFiles.size(), 2u);

  MemorySettingsStore bad;
  bad.SaveSetting("Subprograms", "Ignore M98", "9");
  bad.SaveSetting("Subprograms", "Ignore G65", "x");
  EXPECT_EQ(LoadSubprogramSettings(bad).IgnoreM98, 1);
  EXPECT_EQ(LoadSubprogramSettings(bad).IgnoreG65, 1);
}

}  // namespace
}  // namespace zemtra
