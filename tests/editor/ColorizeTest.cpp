#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "core/RecordingHost.h"
#include "core/SettingsStore.h"
#include "editor/Colorize.h"
#include "editor/DocumentFile.h"
#include "editor/ProgramDocument.h"

namespace zemtra {
namespace {

std::string Rtf(std::string_view line) {
  std::string out;
  ColorizeLineRtf(line, out);
  return out;
}

TEST(ColorizeLine, ColourChangesAreThoseOfTheTokenizer) {
  const struct {
    const char* line;
    const char* expected;
  } cases[] = {
      {"/N10 G1", "\\cf29 /\\cf14 N10 \\cf7 G1"},
      {"N10 G1 X1 M30", "\\cf14 N10 \\cf7 G1 \\cf24 X1 \\cf13 M30"},
      {"g1 x2", "\\cf7 g1 \\cf24 x2"},    // case is kept, decisions are upper case
      {"X1X2", "\\cf24 X1X2"},            // one run for two addresses of one letter
      {"G1 /X1", "\\cf7 G1 /\\cf24 X1"},  // only a leading slash is block delete
      {"(ABC", "\\cf27 (ABC"},            // a comment without ")" runs to the end
      {";comment", "\\cf27 ;comment"},
      {"G1 ;comment", "\\cf7 G1 ;\\cf3 c\\cf15 o\\cf13 mm\\cf5 e\\cf14 n\\cf20 t"},
      {"X1.(A)X2.", "\\cf24 X1.\\cf27 (A)X2."},  // the second X keeps the comment colour
      {"X1 SIN X2", "\\cf24 X1 \\cf29 SIN X2"},  // keywords leave the letter colour alone
      {"SINGLE", "\\cf29 SIN\\cf7 G\\cf28 LE"},  // keywords inside words
      {"G01 X1. DO", "\\cf7 G01 \\cf24 X1. \\cf29 DO"},
      {"X1.OR2.", "\\cf24 X1.\\cf29 OR2."},
      {"SQRT", "\\cf29 SQR\\cf20 T"},  // three letters are tried before four
      {"ATAN[1]", "\\cf29 ATAN\\cf28 [1\\cf28 ]"},
      {"#1=[#2+1]", "\\cf28 #1=\\cf28 [\\cf28 #2+1\\cf28 ]"},
      {"IF [#1 EQ 2] GOTO10", "\\cf29 IF \\cf28 [\\cf28 #1 \\cf28 EQ 2\\cf28 ] \\cf29 GOTO10"},
      {"WHILE [#1 LT 10] DO1", "\\cf29 WHILE \\cf28 [\\cf28 #1 \\cf28 LT 10\\cf28 ] \\cf29 DO1"},
      {"#1=ROUND[#2]", "\\cf28 #1=\\cf29 ROUND\\cf28 [\\cf28 #2\\cf28 ]"},
      {"POPEN", "\\cf29 POPEN"},
      {"E", "\\cf5 E"},  // a keyword's first letter at the end of the line
      {"", ""},
      {"(a\\b{c}\xC3\xA9)", "\\cf27 (a\\\\b\\{c\\}\\u233?)"},  // escaped for rich text
  };
  for (const auto& c : cases) EXPECT_EQ(Rtf(c.line), c.expected) << c.line;
}

TEST(ColorizeLine, RunsCoverTheLineInMaximalStretches) {
  using Runs = std::vector<ColorRun>;
  const struct {
    const char* line;
    int carried;
    Runs expected;
    int last;
  } cases[] = {
      {"/N10 G1", 0, {{0, 1, 29}, {1, 4, 14}, {5, 2, 7}}, 7},
      {"X1.(A)X2.", 0, {{0, 3, 24}, {3, 6, 27}}, 27},
      {"#1=[#2+1]", 0, {{0, 9, 28}}, 28},
      {"X1X2", 24, {{0, 4, 24}}, 24},  // the carried colour merges with the first run
      {"100", 24, {{0, 3, 24}}, 24},   // no colour of its own: the previous line's
      {" G1", 5, {{0, 1, 5}, {1, 2, 7}}, 7},
      {"", 9, {}, 9},
      {"%", 0, {{0, 1, 0}}, 0},
  };
  std::vector<ColorRun> runs;
  for (const auto& c : cases) {
    EXPECT_EQ(ColorizeLine(c.line, runs, c.carried), c.last) << c.line;
    EXPECT_EQ(runs, c.expected) << c.line;
  }
}

TEST(ColorizeLine, RunsCanBeCountedInUtf16Units) {
  const std::string line = "(\xC3\xA9\xF0\x9F\x98\x80)X1";  // (é😀)X1
  std::vector<ColorRun> runs;
  ColorizeLine(line, runs);
  ASSERT_EQ(runs.size(), 2u);
  RunsToUtf16(line, runs);
  EXPECT_EQ(runs[0], (ColorRun{0, 5, kCommentColor}));
  EXPECT_EQ(runs[1], (ColorRun{5, 2, 24}));
}

TEST(ColorizeProgram, BracesBecomeBracketsAndEveryLineIsColoured) {
  ProgramDocument document;
  std::string text = "(SETUP {A})\r\n";
  for (int i = 0; i < 399; ++i) text += "X1\r\n100\r\n";
  document.SetText(text);
  document.SetSelection(5, 3);
  RecordingHost host;
  std::vector<int> lines;
  std::vector<int> colours;
  ColorizeProgram(document, host, [&](int line, std::span<const ColorRun> runs) {
    lines.push_back(line);
    colours.push_back(runs.empty() ? -1 : runs.back().colorIndex);
  });
  EXPECT_EQ(document.Text().substr(0, 11), "(SETUP [A])");
  EXPECT_EQ(document.SelStart(), 5u);
  EXPECT_EQ(document.SelLength(), 0u);  // the selection collapses
  ASSERT_EQ(static_cast<int>(lines.size()), document.LineCount());
  EXPECT_EQ(colours[0], kCommentColor);
  EXPECT_EQ(colours[2], 24);  // "100" carries the X colour
  EXPECT_EQ(colours.back(), -1);
  ASSERT_GE(host.statuses.size(), 4u);
  EXPECT_EQ(host.statuses.front().second, "Formatting Program...  0%");
  EXPECT_EQ(host.statuses[1].second, "Formatting Program...  25%");  // 908 of 3604 bytes
  EXPECT_EQ(host.statuses[host.statuses.size() - 2].second, "Formatting Program... 100%");
  EXPECT_EQ(host.statuses.back(), (std::pair<std::string, std::string>{"msg", ""}));
  EXPECT_EQ(host.pumpCount, 4);  // every 200 lines of 800
}

TEST(ProgramRtfDocument, EmptyProgramHasHeaderAndClosingOnly) {
  AddressColors colors{};
  colors[1] = 0x0000FF;  // red
  colors[30] = 0x123456;
  EditorFont font;
  font.bold = true;
  const std::string rtf = ProgramRtfDocument("", colors, font);
  const std::string header =
      "{\\rtf1\\ansi\\ansicpg1252\\deff0\\deflang1033{\\fonttbl{\\f0\\fnil\\fcharset0 Courier "
      "New;}{\\f1\\fnil\\fcharset0 Courier New;}}{\\colortbl ;\\red255\\green0\\blue0;";
  EXPECT_EQ(rtf.substr(0, header.size()), header);
  EXPECT_NE(rtf.find("\\red86\\green52\\blue18;}\\viewkind4\\uc1\\pard\\b\\f0\\fs20\r\n"),
            std::string::npos);
  EXPECT_TRUE(rtf.ends_with("\\fs20\r\n\\f1\\fs20\\cf0\\par\r\n}"));
}

TEST(ProgramRtfDocument, ReadsBackAsTheSameText) {
  const std::string texts[] = {
      "",
      "G1 X1\r\nG2",
      "G1 X1\r\n",
      "%\r\n\r\n100 (digits first)\r\n  indented\r\n\ttab\r\n",
      "(back\\slash {brace} caf\xC3\xA9 \xF0\x9F\x98\x80 \xE2\x82\xAC)\r\nM30",
  };
  for (const std::string& text : texts) {
    const std::string rtf = ProgramRtfDocument(text, AddressColors{}, EditorFont{});
    EXPECT_EQ(RichTextToPlain(rtf), text) << rtf;
  }
}

TEST(RichTextToPlain, ReadsForeignDocuments) {
  const std::string rtf =
      "{\\rtf1\\ansi{\\fonttbl{\\f0 Arial;}}{\\*\\generator Writer;}"
      "{\\colortbl;\\red0\\green0\\blue0;}\\pard G1 X1\\par\n"
      "\\cf1 (caf\\'e9 \\'80)\\tab N2\\par\r\n{\\b O100}\\u8364?\\par}";
  EXPECT_EQ(RichTextToPlain(rtf), "G1 X1\r\n(caf\xC3\xA9 \xE2\x82\xAC)\tN2\r\nO100\xE2\x82\xAC");
}

TEST(AddressColors, SettingsKeepUnreadableEntries) {
  MemorySettingsStore store;
  store.SaveSetting("Preferences", "Address Color 1", "255");
  store.SaveSetting("Preferences", "Address Color 2", "blue");
  AddressColors colors{};
  colors[2] = 7;
  colors[3] = 9;
  LoadAddressColors(store, colors);
  EXPECT_EQ(colors[1], 255u);
  EXPECT_EQ(colors[2], 7u);  // no number: keeps its value
  EXPECT_EQ(colors[3], 9u);  // never stored
  colors[30] = 16777215;
  SaveAddressColors(store, colors);
  EXPECT_EQ(store.GetSetting("Preferences", "Address Color 30"), "16777215");
  EXPECT_EQ(store.GetSetting("Preferences", "Address Color 2"), "7");
}

}  // namespace
}  // namespace zemtra
