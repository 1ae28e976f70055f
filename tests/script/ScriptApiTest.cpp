// The ZMT functions as a script calls them: text and selection, filters, files, plot and
// configuration.
#include <gtest/gtest.h>

#include <filesystem>

#include "script/ScriptApi.h"
#include "script/ScriptTestSupport.h"
#include "support/TestSupport.h"

namespace zemtra::test {
namespace {

constexpr const char* kProgram = "G0 X1\r\nG1 Y2\r\nM30\r\n";

struct ValueCase {
  const char* script;
  const char* expected;
};

TEST(ScriptApi, TextFunctionsReadAndSelectThroughTheLineTable) {
  const ValueCase cases[] = {
      {"ZMTGetNumLines()", "4"},  // a final line break opens an empty last line
      {"ZMTGetLine(1)", "G1 Y2"},
      {"ZMTGetLine('1 abc')", "G1 Y2"},  // numbers that come as text are converted
      {"ZMTGetLine(ZMTGetNumLines())", ""},
      {"ZMTGetLine(-1)", ""},
      {"ZMTGetLineIndex(2)", "14"},
      {"ZMTGetLineIndex(9)", "-1"},
      {"ZMTGetAll()", kProgram},
      {"ZMTSelectLines(1, 1); ZMTGetSelected()", "G1 Y2\r\n"},
      {"ZMTSelectLines(-5, 1); ZMTGetSelected()", "G0 X1\r\n"},
      {"ZMTSelectLines(1, 99); ZMTGetSelected()", "G1 Y2\r\nM30\r\n"},
      {"ZMTSelectAll(); ZMTGetSelected()", kProgram},
      {"ZMTSetSelection(3, 2); ZMTGetSelected()", "X1"},
      {"ZMTSetSelection(0, 0); ZMTInsertText('N5 '); ZMTGetLine(0)", "N5 G0 X1"},
      {"ZMTSetSelection(3, 2); ZMTInsertText('X7\\nY8'); ZMTGetAll()",
       "G0 X7\r\nY8\r\nG1 Y2\r\nM30\r\n"},
      {"ZMTSetSelection(0, 0); ZMTInsertLine('%'); ZMTGetAll()", "%\r\nG0 X1\r\nG1 Y2\r\nM30\r\n"},
      {"ZMTReplaceAll('G', 'N'); ZMTGetAll()", "N0 X1\r\nN1 Y2\r\nM30\r\n"},
      {"ZMTReplaceAll('x', 'Q'); ZMTGetAll()", kProgram},  // case sensitive
      {"ZMTReplaceAll('', 'Q'); ZMTGetAll()", kProgram},
  };
  for (const ValueCase& c : cases) {
    ScriptBench bench(kProgram);
    const ScriptOutcome outcome = bench.Run(c.script);
    EXPECT_TRUE(outcome.ok()) << c.script << ": " << outcome.Report();
    EXPECT_EQ(outcome.value, c.expected) << c.script;
  }
}

struct FilterCase {
  const char* script;
  const char* program;
  const char* expected;
  const char* message = "";   // the one message the filter shows, if any
  bool absoluteArcs = false;  // arc centres given absolute by the configuration
};

TEST(ScriptApi, FiltersRewriteTheWholeProgram) {
  const FilterCase cases[] = {
      {"ZMTRemoveSpaces()", "G0 X1 Y2\r\n", "G0X1Y2\r\n"},
      {"ZMTAddSpaces()", "G0X1Y2\r\n", "G0 X1 Y2\r\n"},
      {"ZMTAllCaps()", "g0 x1 (abc)\r\n", "G0 X1 (ABC)\r\n"},
      {"ZMTRemoveBlankLines()", "G0\r\n\r\nG1\r\n", "G0\r\nG1\r\n"},
      {"ZMTRemoveComments()", "G0 X1(hi)\r\n", "G0 X1\r\n"},
      {"ZMTRemoveTrailingSpaces()", "G0 X1   \r\n", "G0 X1\r\n"},
      {"ZMTRemoveGarbage()", "G0\tX1{a}\r\nM30", "G0 X1[a]\r\nM30"},
      {"ZMTRenumber(10, 5, 4, 1, true)", "G0 X1\r\nM30\r\n", "N10 G0 X1\r\nN15 M30\r\n"},
      {"ZMTRenumber(10, 5, 4, 4, true)", "G0 X1\r\n", "G0 X1\r\n"},  // option above 3 refused
      {"ZMTRenumber(1, 1, 4, 0, false)", "N10 G0 X1\r\n", "G0 X1\r\n"},
      {"ZMTShift(1, '', '')", "G90 G0 X1. Y1.\r\n", "G90 G0 X2.0 Y1.\r\n"},
      {"ZMTShift('', '', '')", "G90 G0 X1. Y1.\r\n", "G90 G0 X1. Y1.\r\n"},
      {"ZMTMirror('', '', '')", "G90 G0 X1. Y1.\r\n", "G90 G0 X1. Y1.\r\n"},
      {"ZMTMirror(0, '', '')", "G90 G0 X1. Y1.\r\n", "G90 G0 X-1.0 Y1.\r\n"},
      {"ZMTRotate(0, 0, 90)", "G90 G0 X1. Y0.\r\n", "G90 G0 X0.0 Y1.0\r\n"},
      {"ZMTScale(0, 0, 2)", "G90 G1 X1. Y1. F10.\r\n", "G90 G1 X2.0 Y2.0 F10.\r\n"},
      {"ZMTAddressAdjust('z', 2, 2, '0.0')", "G0 Z1.5\r\n", "G0 Z3.0\r\n"},
      {"ZMTAddressAdjust('x', 3, 0, '0.0')", "G0 X1\r\n", "G0 X1\r\n",
       "Address Adjust - Can't divide by zero"},
      {"ZMTAddressReplace('xa', 'q')", "G0 X1\r\n", "G0 Q1\r\n"},
      {"ZMTAddressRemove('y')", "G0 X1 Y2\r\n", "G0 X1\r\n"},
      {"ZMTAddressSwap('xa', 'yb')", "G0 X1 Y2\r\n", "G0 Y1 X2\r\n"},
      {"ZMTConvertArcsToR()", "G90 G17 G0 X0 Y0\r\nG2 X2. Y0 I1. J0\r\n",
       "G90 G17 G0 X0 Y0\r\nG2 X2. Y0 R1.0\r\n"},
      {"ZMTConvertArcsToIJK()", "G90 G17 G0 X0 Y0\r\nG2 X2. Y0 R1.\r\n",
       "G90 G17 G0 X0 Y0\r\nG2 X2. Y0 I1.0 J0.0\r\n"},
      {"ZMTConvertArcsToAbsolute()", "G90 G17 G0 X1. Y0\r\nG2 X3. Y0 I1. J0\r\n",
       "G90 G17 G0 X1. Y0\r\nG2 X3. Y0 I2.0 J0.0\r\n"},
      {"ZMTConvertArcsToIncremental()", "G90 G17 G0 X1. Y0\r\nG2 X3. Y0 I2. J0\r\n",
       "G90 G17 G0 X1. Y0\r\nG2 X3. Y0 I1.0 J0.0\r\n", "", true},
  };
  for (const FilterCase& c : cases) {
    ScriptBench bench(c.program);
    if (c.absoluteArcs) bench.work->Session.ActiveConfig.AbsoluteArcCenter = -1;
    const ScriptOutcome outcome = bench.Run(c.script);
    EXPECT_TRUE(outcome.ok()) << c.script << ": " << outcome.Report();
    EXPECT_EQ(bench.Text(), c.expected) << c.script;
    EXPECT_EQ(bench.host.shown.size(), *c.message ? 1u : 0u) << c.script;
    EXPECT_EQ(bench.host.lastText(), c.message) << c.script;
  }
}

TEST(ScriptApi, CustomFiltersRunWithTheScriptsParameters) {
  ScriptBench bench("G0 X1\r\n");
  EXPECT_TRUE(bench.Run("ZMTCustomFilter1(); ZMTCustomFilter2('0.25', 0.5)").ok());
  EXPECT_EQ(bench.work->Filters.Approach, 0.25);
  EXPECT_EQ(bench.work->Filters.FeedMult, 0.5);
}

TEST(ScriptApi, AFilterAsksAboutASelectionTheScriptMade) {
  ScriptBench bench("g0 x1\r\ng1 y2\r\n");
  bench.host.queueAnswer(MsgAnswer::Yes);
  EXPECT_TRUE(bench.Run("ZMTSelectLines(0, 1); ZMTAllCaps()").ok());
  ASSERT_EQ(bench.host.shown.size(), 1u);
  EXPECT_EQ(bench.host.lastText(), "Format only selected text?");
  EXPECT_EQ(bench.Text(), "G0 X1\r\ng1 y2\r\n");
}

TEST(ScriptApi, FilesLoadSaveAndClear) {
  ScriptBench bench("G0 X1\r\n");
  const std::string path = bench.Write("part.nc", "G1 X5\nM30\n");
  const std::string missing = (bench.Folder() / "none.nc").string();
  EXPECT_TRUE(bench.Run("ZMTFileLoad('" + missing + "')").ok());  // silently nothing
  EXPECT_TRUE(bench.host.shown.empty());
  EXPECT_EQ(bench.Text(), "G0 X1\r\n");

  EXPECT_TRUE(bench.Run("ZMTPlot(); ZMTFileLoad('" + path + "')").ok());
  EXPECT_EQ(bench.Text(), "G1 X5\r\nM30\r\n");
  EXPECT_EQ(bench.work->Editor.Document.CurrentFile(), path);
  EXPECT_EQ(bench.work->Table.GeoLast, 0);  // emptied

  EXPECT_TRUE(bench.Run("ZMTSetSelection(0, 0); ZMTInsertLine('%'); ZMTFileSave()").ok());
  EXPECT_EQ(ReadFileBytes(path), "%\r\nG1 X5\r\nM30\r\n");  // the editor's line ends

  EXPECT_TRUE(bench.Run("ZMTFileNew()").ok());
  EXPECT_EQ(bench.Text(), "");
  EXPECT_EQ(bench.work->Editor.Document.CurrentFile(), "");
}

TEST(ScriptApi, PlotAndExportDxf) {
  ScriptBench bench("G90 G0 X0 Y0\r\nG1 X1. Y0 F10\r\nG1 X1. Y1.\r\nM30\r\n");
  const std::string dxf = (bench.Folder() / "out.dxf").string();
  EXPECT_TRUE(bench.Run("ZMTExportDXF(''); ZMTPlot(); ZMTExportDXF('" + dxf + "')").ok());
  EXPECT_EQ(bench.work->Table.GeoLast, 2);  // the first motion only places the start
  const std::string text = ReadFileBytes(dxf);
  EXPECT_NE(text.find("LINE"), std::string::npos);
  EXPECT_NE(text.find("EOF"), std::string::npos);
}

TEST(ScriptApi, SetConfigLoadsAnExistingConfigurationOnly) {
  ScriptBench bench;
  EXPECT_TRUE(bench.Run("ZMTSetConfig('nothing-like-it')").ok());
  EXPECT_TRUE(bench.host.shown.empty());
  EXPECT_EQ(bench.work->Session.ActiveConfig.MachineType, 0);
  EXPECT_TRUE(bench.Run("ZMTSetConfig('lathe')").ok());  // names are found regardless of case
  EXPECT_EQ(bench.work->Session.ActiveConfig.MachineType, 1);
  EXPECT_EQ(bench.work->Session.ActiveConfig.ConfigName, "Lathe");
}

TEST(ScriptApi, FileDialogsAndFileSearches) {
  ScriptBench bench;
  bench.host.chosenFile = "/tmp/picked.nc";
  EXPECT_EQ(bench.Run("ZMTBrowseForFile()").value, "/tmp/picked.nc");
  EXPECT_EQ(bench.Run("ZMTBrowseForFolder()").value, "");  // no window: no folder dialog

  bench.Write("progs/b.nc", "");
  bench.Write("progs/A.NC", "");
  bench.Write("progs/c.txt", "");
  const std::string folder = (bench.Folder() / "progs").string() + "/";
  const ScriptOutcome outcome =
      bench.Run("var names = [ZMTGetFirstMatchingFile('" + folder +
                "', '*.nc')]; var n; while ((n = ZMTGetNextMatchingFile()) != '') names.push(n); "
                "names.join(',') + '|' + ZMTGetNextMatchingFile()");
  EXPECT_EQ(outcome.value, "A.NC,b.nc|");
  EXPECT_EQ(bench.Run("ZMTGetFirstMatchingFile('" + folder + "', '*.dxf')").value, "");
}

TEST(ScriptApi, EveryFunctionIsGlobal) {
  ScriptBench bench;
  std::string check = "var missing = [];";
  for (std::string_view name : ScriptApi::FunctionNames()) {
    check += "if (typeof " + std::string(name) + " !== 'function') missing.push('" +
             std::string(name) + "');";
  }
  check += "missing.join(',')";
  const ScriptOutcome outcome = bench.Run(check);
  EXPECT_EQ(outcome.value, "");
  EXPECT_EQ(ScriptApi::FunctionNames().size(), 45u);
}

}  // namespace
}  // namespace zemtra::test
