// Running scripts: the error report of a failing script, stopping a runaway one, script files
// and the header directives of a program.
#include <gtest/gtest.h>

#include <chrono>

#include "script/ScriptRunner.h"
#include "script/ScriptTestSupport.h"

namespace zemtra::test {
namespace {

using namespace std::chrono_literals;

// Runs the script file at `path` ("" for the user's choice) in the bench's workspace.
ScriptOutcome RunFile(ScriptBench& bench, const std::string& path) {
  return RunScript(path, bench.work->Scripts, bench.host, bench.work->Editor.Document,
                   bench.Folder());
}

struct ErrorCase {
  const char* name;
  const char* script;
  const char* report;
};

TEST(ScriptHost, FailuresAreReportedWithTheScriptsLine) {
  const ErrorCase cases[] = {
      {"syntax", "var a = 1;\nvar b = (;\n", "Line 2: SyntaxError: Expected token `)'"},
      {"run time", "ZMTGetLine(0);\n\nnoSuchFunction();\n",
       "Line 3: ReferenceError: noSuchFunction is not defined"},
      {"in a function", "function f() {\n  return undefinedName + 1;\n}\nf();\n",
       "Line 2: ReferenceError: undefinedName is not defined"},
      {"thrown text", "\nthrow 'no tool list';\n", "Line 2: no tool list"},
  };
  for (const ErrorCase& c : cases) {
    ScriptBench bench("G0 X1\r\n");
    const std::string path = bench.Write("bad.js", c.script);
    const ScriptOutcome outcome = RunFile(bench, path);
    EXPECT_EQ(outcome.kind, ScriptOutcome::Kind::Failed) << c.name;
    ASSERT_EQ(bench.host.shown.size(), 1u) << c.name;
    const Prompt& prompt = bench.host.shown[0].prompt;
    EXPECT_EQ(prompt.text, std::string("Error in Script:\r\n") + c.report) << c.name;
    EXPECT_EQ(prompt.title, "Zemtra");
    EXPECT_EQ(prompt.icon, MsgIcon::Stop);
    EXPECT_EQ(bench.Text(), "G0 X1\r\n") << c.name;  // the document is left as it was
  }
}

TEST(ScriptHost, AMissingScriptFileIsNamed) {
  ScriptBench bench;
  RunFile(bench, "/nowhere/x.js");
  EXPECT_EQ(bench.host.lastText(), "Path not found:\r\n/nowhere/x.js");
}

TEST(ScriptHost, WithoutAPathTheUserPicksTheScript) {
  ScriptBench bench("G0 X1\r\n");
  bench.host.chosenFile = bench.Write("SCRIPTS/caps.js", "ZMTReplaceAll('X', 'Y');");
  bench.work->Editor.Document.SetSelection(0, 3);  // dropped: no prompt about it
  EXPECT_TRUE(RunFile(bench, "").ok());
  EXPECT_EQ(bench.Text(), "G0 Y1\r\n");
  EXPECT_TRUE(bench.host.shown.empty());

  bench.host.chosenFile = "";  // cancelled: nothing runs
  EXPECT_EQ(RunFile(bench, "").kind, ScriptOutcome::Kind::Refused);
}

TEST(ScriptHost, ARunawayScriptIsStoppedByTheTimeLimit) {
  ScriptBench bench;
  bench.work->Scripts.SetTimeLimit(200ms);
  const auto start = std::chrono::steady_clock::now();
  const ScriptOutcome outcome = bench.Run("var i = 0;\nwhile (true) { i++; }\n");
  EXPECT_LT(std::chrono::steady_clock::now() - start, 5s);
  EXPECT_EQ(outcome.kind, ScriptOutcome::Kind::TimedOut);
  EXPECT_EQ(outcome.message, "Script stopped: it ran longer than 0.2 s");
}

TEST(ScriptHost, ARunawayScriptIsStoppedByEscape) {
  ScriptBench bench("G0 X1\r\n");
  bench.host.abort = true;  // Esc, as the host reads it while the script runs
  // A loop of ZMT calls and a loop of plain script both end.
  EXPECT_EQ(bench.Run("while (true) { ZMTGetLine(0); }").kind, ScriptOutcome::Kind::StoppedByUser);
  const ScriptOutcome outcome = bench.Run("for (;;) {}");
  EXPECT_EQ(outcome.kind, ScriptOutcome::Kind::StoppedByUser);
  EXPECT_NE(outcome.Report().find("Script stopped by the user"), std::string::npos);
  EXPECT_GT(bench.host.pumpCount, 0);
}

struct CallFormCase {
  const char* statement;
  const char* call;
};

TEST(ScriptHost, DirectivesInTheCallFormBecomeCalls) {
  const CallFormCase cases[] = {
      {"ZMTSetConfig \"Lathe\"", "ZMTSetConfig(\"Lathe\")"},
      {"ZMTSetConfig(\"Lathe\")", "ZMTSetConfig(\"Lathe\")"},
      {"ZMTSetConfig (\"Lathe\")", "ZMTSetConfig(\"Lathe\")"},
      {"  zmtsetconfig \"Lathe\"  ", "ZMTSetConfig(\"Lathe\")"},
      {"ZMTFileNew", "ZMTFileNew()"},
      {"ZMTMirror \"\", \"\", \"\"", "ZMTMirror(\"\", \"\", \"\")"},
      {"ZMTShift 1, 0, 0;", "ZMTShift(1, 0, 0)"},
      {"var x = ZMTGetNumLines()", "var x = ZMTGetNumLines()"},
      {"Other \"a\"", "Other \"a\""},
  };
  for (const CallFormCase& c : cases) EXPECT_EQ(StatementAsCall(c.statement), c.call);
}

TEST(ScriptHost, HeaderDirectivesRunInBothCallForms) {
  ScriptBench bench;
  RunHeaderDirectives({"ZMTSetConfig \"Lathe\""}, bench.work->Scripts, bench.host);
  EXPECT_EQ(bench.work->Session.ActiveConfig.MachineType, 1);
  RunHeaderDirectives({"ZMTSetConfig(\"default\")"}, bench.work->Scripts, bench.host);
  EXPECT_EQ(bench.work->Session.ActiveConfig.MachineType, 0);
  EXPECT_TRUE(bench.host.shown.empty());

  // A failing directive is reported, and the next one still runs.
  RunHeaderDirectives({"ZMTSetConfig(", "ZMTSetConfig \"Lathe\""}, bench.work->Scripts, bench.host);
  ASSERT_EQ(bench.host.shown.size(), 1u);
  EXPECT_EQ(bench.host.lastText().rfind("Error in Script:\r\nLine 1: SyntaxError", 0), 0u);
  EXPECT_EQ(bench.work->Session.ActiveConfig.MachineType, 1);
}

}  // namespace
}  // namespace zemtra::test
