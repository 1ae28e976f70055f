#include "macro/MacroStatement.h"

#include <gtest/gtest.h>

#include <string>

#include "MacroRunner.h"
#include "macro/Evaluator.h"
#include "macro/ProgramText.h"

namespace zemtra {
namespace {

using test::CleanTestBlock;
using test::MacroRunner;

class MacroStatementTest : public ::testing::Test {
 protected:
  // Makes `text` the frame's program, read from its start.
  void Load(std::string text) {
    program = ProgramText(std::move(text), "test.nc");
    frame.Open(program, "test.nc");
  }
  // Puts the frame's read position behind 1-based `line`, as if that line was just read.
  void After(int line) {
    frame.LinePosition = program.LineStart(line);
    frame.ResumePosition = program.LineStart(line + 1);
  }
  int Run(std::string_view block, std::string_view source = {}) {
    return statements.MacroStatement(block, rest, jumped, frame, source);
  }
  // Runs the loaded program and gives the X of every move.
  std::string Path(int maxBlocks = 1000) {
    MacroRunner runner(store, evaluator);
    run = runner.Run(frame, maxBlocks);
    std::string path;
    for (const test::Move& move : run.moves) {
      path += (path.empty() ? "" : " ") + std::to_string(static_cast<int>(move.x));
    }
    return path;
  }

  VariableStore store;
  Evaluator evaluator{store};
  MacroStatements statements{evaluator, store};
  ProgramText program;
  CallFrame frame;
  std::string rest;
  bool jumped = false;
  test::MacroRun run;
};

// The assignment rows stand for every assignment error: AssignmentTest has their variants.
TEST_F(MacroStatementTest, CodesAndMessagesOfEachStatement) {
  struct Case {
    const char* block;
    int code;
    const char* message;
  } cases[] = {
      {"G1X#1", 100, ""},
      {"X1", 100, ""},
      {"M98P#1", 100, ""},
      {"", 101, ""},
      {"POPEN", 101, ""},
      {"PCLOS", 101, ""},
      {"DPRNT[X#1]", 101, ""},
      {"BPRNT[#1]", 101, ""},
      {"IF[1EQ2]GOTO100", 101, ""},
      {"IF[1EQ1]", 102, "Expected GOTO or THEN"},
      {"IF[1EQ1]G1X1", 102, "Expected GOTO or THEN"},
      {"IF", 10, "Invalid Character in Expression"},
      {"IFGOTO5", 10, "Invalid Character in Expression"},
      {"IF[1EQ1", 2, "Grouping Mismatch"},
      {"IF[1/0]GOTO1", 7, "Division by Zero"},
      {"GOTO", 10, "Invalid Character in Expression"},
      {"GOTO100", 103, "Block Number not Found"},
      {"GOTO[1", 2, "Grouping Mismatch"},
      {"WHILE[#1LT3]DO31", 105, "Invalid Loop Number"},
      {"WHILE[#1LT3]DO0", 105, "Invalid Loop Number"},
      {"WHILE[#1LT3]", 104, "Expected DO"},
      {"WHILE[#1LT3]END1", 104, "Expected DO"},
      {"WHILE", 10, "Invalid Character in Expression"},
      {"WHILE[0]DO1", 106, "Loop END not Found"},
      {"DO", 105, "Invalid Loop Number"},
      {"DO31", 105, "Invalid Loop Number"},
      {"END", 105, "Invalid Loop Number"},
      {"END2", 107, "END Without DO"},
      {"#[#0]=1", 11, "Cannot Assign Variable #0"},
      {"#0=1", 4, "Invalid Variable Number"},
      {"#6=", 13, "Expected Expression"},
      {"#", 12, "Expected Variable Number"},
      {"#1=SIN30", 1, "Expression Syntax Error"},
      {"#1=[1][2]", 3, "Missing Operator"},
      {"#1=SQRT[0-1]", 5, "Sqr Operand Is Negative"},
  };
  Load("M30\n");
  for (const Case& c : cases) {
    frame.ClearLoops();
    const int code = Run(c.block);
    EXPECT_EQ(code, c.code) << c.block;
    EXPECT_EQ(ErrorMessage(code), c.message) << c.block;
    EXPECT_FALSE(jumped) << c.block;
  }
}

TEST_F(MacroStatementTest, LocalsWrittenOnALineAreSeenOnlyBehindIt) {
  Load("");
  store.WriteNumber(1, 1);
  EXPECT_EQ(Run("#1=5#2=#1#101=5#102=#101"), 101);
  EXPECT_EQ(store.ReadNumber(1), 5);
  EXPECT_EQ(store.ReadNumber(2), 1);
  EXPECT_EQ(store.ReadNumber(102), 5);
  // Level 2's locals are its own.
  store.SetCallLevel(2);
  EXPECT_EQ(Run("#1=7"), 101);
  EXPECT_EQ(store.ReadNumber(1), 7);
  store.SetCallLevel(0);
  EXPECT_EQ(store.ReadNumber(1), 5);
}

// Which endings of a walk write the frame copy back: locals, an opened loop and a jump reach
// the frame only then; #100 and above always stand.
TEST_F(MacroStatementTest, FrameIsWrittenBackOnlyByEndingsThatKeepIt) {
  struct Case {
    const char* block;
    int code;
    bool kept;  // #1 took 2 and loop 3 was opened
  } cases[] = {
      {"#1=2#100=2DO3", 101, true},           {"#1=2#100=2", 101, true},
      {"#1=2#100=2DPRNT[#1]", 101, true},     {"#1=2#100=2#3000=5", 3000, true},
      {"#1=2#100=2IF[1EQ1]THENDO3", 0, true}, {"#1=2#100=2GOTO7", 101, true},
      {"#1=2#100=2G1X3", 100, false},         {"#1=2#100=2IF[1EQ2]GOTO7", 101, false},
      {"#1=2#100=2#0=1", 4, false},           {"#1=2#100=2IF[1EQ1]", 102, false},
      {"#1=2#100=2WHILE[0]DO3", 106, false},
  };
  Load("N7 X1\nM30\nX2\n");
  for (const Case& c : cases) {
    After(2);
    frame.ClearLoops();
    store.WriteNumber(1, 1);
    store.WriteNull(100);
    ASSERT_EQ(Run(c.block), c.code) << c.block;
    if (c.code == 0) {  // the IF's rest is a statement of its own
      const std::string again = rest;
      ASSERT_EQ(Run(again), 101) << c.block;
    }
    const std::string_view block(c.block);
    const bool jumps = block.find("GOTO7") != std::string_view::npos && c.kept;
    const bool opensLoop = block.find("DO3") != std::string_view::npos && c.kept;
    EXPECT_EQ(store.ReadNumber(1), c.kept ? 2 : 1) << c.block;
    EXPECT_EQ(store.ReadNumber(100), 2) << c.block;
    EXPECT_EQ(jumped, jumps) << c.block;
    EXPECT_EQ(frame.ResumePosition, program.LineStart(jumps ? 1 : 3)) << c.block;
    EXPECT_EQ(!frame.LoopCondition[3].empty(), opensLoop) << c.block;
  }
  // A loop whose END is missing is not opened: its END has nothing to go back to.
  frame.ClearLoops();
  EXPECT_EQ(Run("WHILE[0]DO3"), 106);
  EXPECT_EQ(Run("END3"), 107);
  EXPECT_EQ(Run("DO3"), 101);
  EXPECT_EQ(frame.LoopCondition[3], "1");
}

TEST_F(MacroStatementTest, IfHandsTheRestOfTheBlockOn) {
  Load("");
  std::string block = "IF[#1GT0]THENG1X1";
  store.WriteNumber(1, 1);
  EXPECT_EQ(statements.RunBlock(block, "", frame, jumped), 100);
  EXPECT_EQ(block, "G1X1");

  block = "IF[#1GT0]THEN#2=1";
  EXPECT_EQ(statements.RunBlock(block, "", frame, jumped), 101);
  EXPECT_EQ(store.ReadNumber(2), 1);

  block = "IF[1]THEN";
  EXPECT_EQ(statements.RunBlock(block, "", frame, jumped), 0);
  EXPECT_EQ(block, "");

  store.WriteNumber(1, 0);
  block = "IF[#1GT0]THENG1X1";
  EXPECT_EQ(statements.RunBlock(block, "", frame, jumped), 101);

  EXPECT_EQ(Run("IF[#1EQ0]GOTO5"), 0);
  EXPECT_EQ(rest, "GOTO5");
}

TEST_F(MacroStatementTest, GotoFindsItsBlockInSearchOrder) {
  Load("N5 X1\nGOTO 5\nN5 X2\nM30\n");
  After(2);
  EXPECT_EQ(Run("GOTO5"), 101);
  EXPECT_TRUE(jumped);
  EXPECT_EQ(frame.ResumePosition, program.LineStart(3));  // the one behind comes first
  EXPECT_EQ(statements.JumpTarget(), "N5");
  EXPECT_EQ(statements.JumpPosition(), program.LineStart(3));
  After(2);
  EXPECT_EQ(Run("GOTO-5"), 101);
  EXPECT_EQ(frame.ResumePosition, program.LineStart(1));  // the nearest one before
  After(3);
  EXPECT_EQ(Run("GOTO[2+3]"), 101);
  EXPECT_EQ(frame.ResumePosition, program.LineStart(1));  // none behind: from the start

  Load("M30\nN123 X1\nN12 X2\n/N0007 X3\n");
  EXPECT_EQ(Run("GOTO12"), 101);
  EXPECT_EQ(frame.ResumePosition, program.LineStart(3));
  EXPECT_EQ(Run("GOTO7"), 101);
  EXPECT_EQ(frame.ResumePosition, program.LineStart(4));
  EXPECT_EQ(Run("GOTO1"), 103);
}

TEST_F(MacroStatementTest, GotoStaysInsideItsProgram) {
  Load("O1\nGOTO 5\nM30\nO2\nN5 X1\nM99\n");
  After(2);
  frame.ProgramNumber = 1;
  EXPECT_EQ(Run("GOTO5"), 103);
  EXPECT_FALSE(jumped);
  EXPECT_EQ(frame.ResumePosition, program.LineStart(3));
  frame.ProgramNumber = -1;  // a frame that runs the whole file
  EXPECT_EQ(Run("GOTO5"), 101);
  EXPECT_EQ(frame.ResumePosition, program.LineStart(5));
}

TEST_F(MacroStatementTest, ProgramsLoopJumpOrStopOnAnError) {
  struct Case {
    const char* name;
    const char* program;
    const char* path;
    int code = 0;  // what stopped the run at `stoppedAt`, when it did not return
    const char* stoppedAt = "";
  } cases[] = {
      {"goto loop", "#1=0\nN5 X#1\n#1=#1+1\nIF [#1 LT 3] GOTO 5\nM30\n", "0 1 2"},
      {"nested loops",
       "#1=0\nWHILE [#1 LT 2] DO1\n#2=0\nWHILE [#2 LT 2] DO2\nX[#1*10+#2]\n#2=#2+1\nEND2\n"
       "#1=#1+1\nEND1\nM30\n",
       "0 1 10 11"},
      {"loops nested in any number order",
       "#1=0\nWHILE [#1 LT 2] DO2\n#2=0\nWHILE [#2 LT 2] DO1\nX[#1*10+#2]\n#2=#2+1\nEND1\n"
       "#1=#1+1\nEND2\nM30\n",
       "0 1 10 11"},
      {"false WHILE skips its body", "#1=5\nWHILE [#1 LT 3] DO1\nX1\nEND1\nX2\nM30\n", "2"},
      {"jump out of DO", "#1=0\nDO1\n#1=#1+1\nIF [#1 GE 3] GOTO 9\nX#1\nEND1\nN9 X9\nM30\n",
       "1 2 9"},
      {"a second END loops back",
       "#1=0\n#2=0\nWHILE [#1 LT 2] DO1\n#1=#1+1\nX[#1+#2*10]\nEND1\n#2=#2+1\n#1=#2\n"
       "IF [#2 LT 2] THEN END1\nM30\n",
       "1 2 12"},
      {"loop numbers reused",
       "#1=0\nWHILE [#1 LT 1] DO1\nX1\n#1=1\nEND1\n"
       "WHILE [#1 LT 2] DO1\nX2\n#1=2\nEND1\nM30\n",
       "1 2"},
      {"END without DO", "X1\nEND1\nX2\n", "1", 107, "END1"},
      {"GOTO to no block", "IF [1] GOTO 77\nX2\n", "", 103, "IF [1] GOTO 77"},
  };
  for (const Case& c : cases) {
    Load(c.program);
    store.ClearVariables();
    EXPECT_EQ(Path(), c.path) << c.name;
    EXPECT_EQ(run.code, c.code) << c.name << ": " << run.stoppedAt;
    EXPECT_EQ(run.stoppedAt, c.stoppedAt) << c.name;
    EXPECT_EQ(run.returned, c.code == 0) << c.name;
  }
}

TEST_F(MacroStatementTest, DoWithoutWhileRunsUntilStopped) {
  Load("DO1\nX1\nEND1\nM30\n");
  Path(100);
  EXPECT_EQ(run.blockCount, 100);
  EXPECT_FALSE(run.returned);
  EXPECT_EQ(run.code, 0);
}

TEST_F(MacroStatementTest, MessageComesFromTheLineAsWritten) {
  struct Case {
    const char* line;
    const char* message;
  } cases[] = {
      {"#3000=7 (TOOL BROKEN)", "TOOL BROKEN"},
      {"#3000=7", "Message #7"},
      {"#3000=1.5", "Message #1.5"},
      {"#3000=#0", "Message #"},
      {"#3000=2 (tool broken)", "tool broken"},
      {"#3000=1 (NO END", "NO END"},
      {"#3000=1 (", " "},
      {"#3000=1 ()", " "},
      {"#3000=3 (A) (B)", "A) (B"},
      {"#3000=4 (\xC3\xA9t\xC3\xA9)", "\xC3\xA9t\xC3\xA9"},
  };
  Load("");
  for (const Case& c : cases) {
    EXPECT_EQ(Run(CleanTestBlock(c.line), c.line), 3000) << c.line;
    EXPECT_EQ(statements.MacroMessageText(), c.message) << c.line;
  }
  store.WriteNull(2);
  EXPECT_EQ(Run("#1=1#3000=9#2=2", "#1=1 #3000=9 (DONE) #2=2"), 3000);
  EXPECT_EQ(statements.MacroMessageText(), "DONE) #2=");  // one character off each end
  EXPECT_EQ(store.ReadNumber(3000), 9);
  EXPECT_EQ(store.ReadNumber(1), 1);
  EXPECT_TRUE(store.IsNull(2));  // the message ends the block
}

}  // namespace
}  // namespace zemtra
