#include <gtest/gtest.h>

#include <string>

#include "core/RecordingHost.h"
#include "editor/ProgramDocument.h"
#include "editor/TextSearch.h"
#include "editor/UndoHistory.h"

namespace zemtra {
namespace {

TEST(FindText, OptionsDecideWhatMatches) {
  const std::string text = "G1 X10 x1 X1Y2 (X1) _X1 X1";
  const struct {
    const char* what;
    std::size_t start;
    int options;
    std::size_t expected;
  } cases[] = {
      {"X1", 0, 0, 3},
      {"x1", 0, kSearchMatchCase, 7},
      {"X1", 4, 0, 7},  // any case without the option
      {"X1", 0, kSearchWholeWord, 7},
      {"X1", 0, kSearchWholeWord | kSearchMatchCase, 16},
      {"x1", 0, kSearchWholeWord | kSearchMatchCase, 7},
      {"X1", 17, kSearchWholeWord, 24},  // "_" is part of a word
      {"X1", 25, 0, kNotFound},
      {"X1", 1000, 0, kNotFound},
      {"", 0, 0, kNotFound},
      {"Z", 0, 0, kNotFound},
  };
  for (const auto& c : cases) {
    EXPECT_EQ(FindText(text, c.what, c.start, kNotFound, c.options), c.expected)
        << c.what << " from " << c.start << " options " << c.options;
  }
  EXPECT_EQ(FindText(text, "X1", 0, 4, 0), kNotFound);  // the end limits the match
  EXPECT_EQ(FindText("(caf\xC3\xA9)", "caf", 0, kNotFound, kSearchWholeWord), kNotFound);
}

TEST(ReplaceEveryMatch, OnePassThatNeverLoops) {
  const struct {
    std::string text, what, with;
    bool matchCase;
    std::string expected;
    std::size_t count;
  } cases[] = {
      {"X1 X1 X1", "X1", "X1X1", true, "X1X1 X1X1 X1X1", 3},
      {"aaa", "aa", "b", true, "ba", 1},
      {"G1 g1", "G1", "G01", false, "G01 G01", 2},
      {"G1 g1", "G1", "G01", true, "G01 g1", 1},
      {"G1", "", "X", false, "G1", 0},
  };
  for (const auto& c : cases) {
    std::string text = c.text;
    EXPECT_EQ(ReplaceEveryMatch(text, c.what, c.with, c.matchCase), c.count) << c.text;
    EXPECT_EQ(text, c.expected) << c.text;
  }
}

class SearchTest : public ::testing::Test {
 protected:
  void SetUp() override { undo.Attach(document); }
  ProgramDocument document;
  UndoHistory undo;
  RecordingHost host;
  TextSearch search;
  const std::string wrapQuestion = "Search text is not found, search again from the beginning?";
};

TEST_F(SearchTest, FindNextSelectsAndWrapsOnYes) {
  document.SetText("N1 X1\r\nN2 X1\r\n");
  search.SearchText = "x1";
  ASSERT_TRUE(search.FindNext(document, host));
  EXPECT_EQ(document.SelStart(), 3u);
  EXPECT_EQ(document.SelLength(), 2u);
  ASSERT_TRUE(search.FindNext(document, host));
  EXPECT_EQ(document.SelStart(), 10u);
  host.queueAnswer(MsgAnswer::Yes);
  ASSERT_TRUE(search.FindNext(document, host));  // from the top again
  EXPECT_EQ(document.SelStart(), 3u);
  ASSERT_EQ(host.shown.size(), 1u);
  EXPECT_EQ(host.shown[0].prompt.text, wrapQuestion);
  EXPECT_EQ(host.shown[0].prompt.title, "Zemtra");
  EXPECT_EQ(host.shown[0].prompt.buttons, MsgButtons::YesNo);
}

TEST_F(SearchTest, NotFoundAsksOnceForEveryTry) {
  search.SearchText = "X";
  host.queueAnswer(MsgAnswer::Yes);
  host.queueAnswer(MsgAnswer::Yes);
  EXPECT_FALSE(search.FindNext(document, host));  // empty document: the third answer is No
  EXPECT_EQ(host.shown.size(), 3u);
  search.SearchText.clear();
  EXPECT_FALSE(search.FindNext(document, host));
  EXPECT_EQ(host.shown.size(), 3u);  // an empty search text asks nothing
}

TEST_F(SearchTest, ReplaceActsOnTheFoundMatchOnly) {
  document.SetText("X1 X1 X1");
  search.SearchText = "X1";
  search.ReplaceWith = "X1X1";
  document.SetSelection(0, 2);  // selected by hand, not found: nothing is replaced
  ASSERT_TRUE(search.Replace(document, host));
  EXPECT_EQ(document.Text(), "X1 X1 X1");
  ASSERT_TRUE(search.Replace(document, host));  // replaces the first, selects the second
  EXPECT_EQ(document.Text(), "X1X1 X1 X1");
  EXPECT_EQ(document.SelStart(), 5u);
  ASSERT_TRUE(search.Replace(document, host));
  EXPECT_EQ(document.Text(), "X1X1 X1X1 X1");
  EXPECT_EQ(document.SelStart(), 10u);
}

TEST_F(SearchTest, ReplaceAllIsOneStepAndReportsTheCount) {
  const std::string original = "N1 G1 X1\r\nN2 g1 Y1\r\nN3 G10\r\n";
  document.SetText(original);
  undo.Reset();
  search.SearchText = "G1";
  search.ReplaceWith = "G01";
  search.SearchOptions = kSearchWholeWord;
  // The count honours whole word; the replace itself does not.
  EXPECT_EQ(search.ReplaceAll(document, host), 2u);
  EXPECT_EQ(document.Text(), "N1 G01 X1\r\nN2 G01 Y1\r\nN3 G010\r\n");
  ASSERT_EQ(host.shown.size(), 1u);
  EXPECT_EQ(host.shown[0].prompt.text, "Replaced 2 matches");
  EXPECT_EQ(host.shown[0].prompt.title, "Finished");
  EXPECT_EQ(host.shown[0].prompt.icon, MsgIcon::Information);
  undo.Snapshot();
  EXPECT_EQ(undo.UndoCount(), 1);
  ASSERT_TRUE(undo.Undo());
  EXPECT_EQ(document.Text(), original);

  search.SearchText = "Q";
  EXPECT_EQ(search.ReplaceAll(document, host), 0u);
  EXPECT_EQ(host.lastText(), "Replaced 0 matches");
  EXPECT_EQ(document.Text(), original);
}

}  // namespace
}  // namespace zemtra
