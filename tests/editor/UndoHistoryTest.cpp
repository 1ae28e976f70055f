#include <gtest/gtest.h>

#include <random>
#include <string>
#include <vector>

#include "editor/ProgramDocument.h"
#include "editor/UndoHistory.h"

namespace zemtra {
namespace {

TEST(MatchingChars, CommonPrefixAndSuffixLengths) {
  const struct {
    std::string a, b;
    std::size_t left, right;
  } cases[] = {
      {"", "", 0, 0},
      {"abc", "", 0, 0},
      {"abc", "abc", 3, 3},
      {"aaaa", "aaa", 3, 3},
      {"abcdef", "abXdef", 2, 3},
      {"xbc", "ybc", 0, 2},
      {"abcde", "abcdeXYZ", 5, 0},
      {std::string(1000, 'a') + "b", std::string(1000, 'a') + "c", 1000, 0},
      {"b" + std::string(999, 'a'), "c" + std::string(999, 'a'), 0, 999},
  };
  for (const auto& c : cases) {
    EXPECT_EQ(MatchingChars(c.a, c.b, false), c.left) << c.a << " / " << c.b;
    EXPECT_EQ(MatchingChars(c.a, c.b, true), c.right) << c.a << " / " << c.b;
  }
  // Every mismatch position in a text of odd length.
  const std::string base(257, 'q');
  for (std::size_t at = 0; at < base.size(); ++at) {
    std::string other = base;
    other[at] = 'r';
    ASSERT_EQ(MatchingChars(base, other, false), at);
    ASSERT_EQ(MatchingChars(base, other, true), base.size() - at - 1);
  }
}

class UndoTest : public ::testing::Test {
 protected:
  void SetUp() override {
    undo.StateChanged = [this] { ++stateChanges; };
    undo.TimerChanged = [this](bool run) { timerRequests.push_back(run); };
    undo.Attach(document);
  }
  // Replaces the whole text as a filter would, and ends the step.
  void Step(const std::string& text) {
    document.SetText(text);
    ASSERT_TRUE(undo.Snapshot());
  }

  ProgramDocument document;
  UndoHistory undo;
  int stateChanges = 0;
  std::vector<bool> timerRequests;
};

TEST_F(UndoTest, StepsStoreOnlyTheDifferingMiddle) {
  document.SetText("aaaa");
  undo.Reset();
  Step("aaa");
  const UndoElement& shorter = undo.UndoStack().back();
  EXPECT_EQ(shorter.MatchingCharsFromLeft, 3u);
  EXPECT_EQ(shorter.MatchingCharsFromRight, 0u);
  EXPECT_EQ(shorter.TextBlock_BeforeChange, "a");
  EXPECT_EQ(shorter.TextBlock_AfterChange, "");

  document.SetText("abab");
  undo.Reset();
  Step("ab");
  EXPECT_EQ(undo.UndoStack().back().MatchingCharsFromLeft, 2u);
  EXPECT_EQ(undo.UndoStack().back().MatchingCharsFromRight, 0u);
  ASSERT_TRUE(undo.Undo());
  EXPECT_EQ(document.Text(), "abab");

  // A change at both ends keeps nearly the whole text, and still undoes exactly.
  document.SetText("G1 X1\r\nG1 X2\r\nG1 X3");
  undo.Reset();
  Step("G0 X1\r\nG1 X2\r\nG1 X4");
  EXPECT_EQ(undo.UndoStack().back().TextBlock_AfterChange, "0 X1\r\nG1 X2\r\nG1 X4");
  ASSERT_TRUE(undo.Undo());
  EXPECT_EQ(document.Text(), "G1 X1\r\nG1 X2\r\nG1 X3");
}

TEST_F(UndoTest, StepsNeverCutCharactersOrLineEnds) {
  document.SetText("(caf\xC3\xA9)\r\nX1");
  undo.Reset();
  Step("(caf\xC3\xA8)\r\nX1");  // é becomes è: they share their first byte
  EXPECT_EQ(undo.UndoStack().back().TextBlock_BeforeChange, "\xC3\xA9");
  Step("(caf\xC3\xA8)\r\r\nX1");
  EXPECT_EQ(undo.UndoStack().back().MatchingCharsFromLeft, 7u);  // not between CR and LF
  Step("(caf\xC3\xA8)\nX1");
  EXPECT_EQ(undo.UndoStack().back().TextBlock_BeforeChange, "\r\r\n");  // the CR LF whole
  EXPECT_EQ(undo.UndoStack().back().TextBlock_AfterChange, "\n");
  ASSERT_TRUE(undo.Undo(3));
  EXPECT_EQ(document.Text(), "(caf\xC3\xA9)\r\nX1");
}

TEST_F(UndoTest, UndoAndRedoRoundTripManyRandomSteps) {
  std::mt19937 random(11);
  std::string text;
  for (int i = 0; i < 20000; ++i)
    text += "N" + std::to_string(i) + " G1 X" + std::to_string(i % 97) + "\r\n";
  document.SetText(text);
  undo.Reset();
  std::vector<std::string> states = {text};
  for (int step = 0; step < 60; ++step) {
    const std::size_t start = random() % document.Size();
    const std::size_t length = random() % 40;
    document.SetSelection(start, length);
    document.ReplaceSelection(step % 3 == 0 ? "" : "X" + std::to_string(step) + "\r\n");
    ASSERT_TRUE(undo.Snapshot());
    states.push_back(document.Text());
  }
  EXPECT_EQ(undo.UndoCount(), 60);
  for (int step = 59; step >= 0; --step) {
    ASSERT_TRUE(undo.Undo());
    ASSERT_EQ(document.Text(), states[static_cast<std::size_t>(step)]);
  }
  EXPECT_FALSE(undo.CanUndo());
  ASSERT_TRUE(undo.Redo(100));  // clamped to what there is
  EXPECT_EQ(document.Text(), states.back());
  ASSERT_TRUE(undo.Undo(30));
  EXPECT_EQ(document.Text(), states[30]);
  EXPECT_EQ(undo.RedoCount(), 30);
}

TEST_F(UndoTest, UndoRestoresTheSelectionAndTopLine) {
  document.SetText("G1 X1\r\nG1 X2\r\n");
  undo.Reset();
  document.SetSelection(3, 2);
  document.SetFirstVisibleLine(1);
  document.ReplaceSelection("Y9");
  undo.Snapshot();
  document.SetSelection(0, 0);
  document.SetFirstVisibleLine(0);
  ASSERT_TRUE(undo.Undo());
  EXPECT_EQ(document.SelStart(), 3u);
  EXPECT_EQ(document.SelLength(), 2u);
  EXPECT_EQ(document.FirstVisibleLine(), 1);
  ASSERT_TRUE(undo.Redo());
  EXPECT_EQ(document.SelStart(), 5u);  // behind the typed text
  EXPECT_EQ(document.SelLength(), 0u);
}

TEST_F(UndoTest, NothingToUndoAfterResetAndNothingToRedoAfterAnEdit) {
  document.SetText("G1");
  undo.Reset();
  EXPECT_FALSE(undo.CanUndo());
  EXPECT_FALSE(undo.Undo());
  EXPECT_FALSE(document.DocumentModified());
  Step("G2");
  EXPECT_TRUE(document.DocumentModified());
  ASSERT_TRUE(undo.Undo());
  EXPECT_TRUE(undo.CanRedo());
  document.ReplaceRange(0, 0, "N1 ");  // a new edit, not yet a step
  EXPECT_FALSE(undo.Redo());
  EXPECT_FALSE(undo.CanRedo());
  EXPECT_EQ(document.Text(), "N1 G1");
  ASSERT_TRUE(undo.Undo());
  EXPECT_EQ(document.Text(), "G1");
}

TEST_F(UndoTest, TypingWithinTheDelayIsOneStep) {
  document.SetText("G1 ");
  undo.Reset();
  timerRequests.clear();
  for (const char c : std::string("X10")) document.ReplaceRange(document.Size(), 0, {&c, 1});
  EXPECT_TRUE(undo.TimerRunning());
  EXPECT_EQ(timerRequests, (std::vector<bool>{true, true, true}));  // restarted by each key
  undo.TimerElapsed();
  EXPECT_FALSE(undo.TimerRunning());
  EXPECT_EQ(undo.UndoCount(), 1);
  EXPECT_EQ(undo.UndoStack().back().TextBlock_AfterChange, "X10");

  // A blank ends the step at once: the key comes before its character.
  document.ReplaceRange(document.Size(), 0, "Y");
  EXPECT_FALSE(undo.KeyDown(undo_keys::kSpace, false));
  EXPECT_EQ(undo.UndoCount(), 2);
  // A mouse click ends a pending step; without one it does nothing.
  document.ReplaceRange(document.Size(), 0, "5");
  undo.MouseDown();
  undo.MouseDown();
  EXPECT_EQ(undo.UndoCount(), 3);
  // Other keys leave the step open.
  document.ReplaceRange(document.Size(), 0, "6");
  undo.KeyDown('A', false);
  undo.KeyDown(45, false);
  EXPECT_TRUE(undo.TimerRunning());
  undo.KeyDown(undo_keys::kF1 + 4, false);
  EXPECT_EQ(undo.UndoCount(), 4);
}

TEST_F(UndoTest, ControlZAndControlYAreUndoAndRedo) {
  document.SetText("A");
  undo.Reset();
  document.ReplaceRange(1, 0, "B");  // pending: Ctrl+Z makes it a step and undoes it
  EXPECT_TRUE(undo.KeyDown(undo_keys::kZ, true));
  EXPECT_EQ(document.Text(), "A");
  EXPECT_TRUE(undo.KeyDown(undo_keys::kY, true));
  EXPECT_EQ(document.Text(), "AB");
  EXPECT_FALSE(undo.KeyDown(undo_keys::kZ, false));
}

TEST_F(UndoTest, SuspendedRecordingMakesNoStep) {
  document.SetText("G1");
  undo.Reset();
  Step("G2");
  undo.SetTracking(false);
  EXPECT_FALSE(undo.CanUndo());
  document.SetText("loaded text");
  EXPECT_FALSE(undo.TimerRunning());
  undo.TimerElapsed();  // a tick while off does nothing
  undo.SetTracking(true);
  EXPECT_FALSE(undo.CanUndo());  // the old step does not fit the new text
  EXPECT_FALSE(undo.Undo());
  EXPECT_EQ(document.Text(), "loaded text");
  // Text set while the timer is off becomes one step at the next trigger.
  document.SetText("filtered");
  EXPECT_TRUE(undo.TimerRunning());
  undo.TimerElapsed();
  ASSERT_TRUE(undo.Undo());
  EXPECT_EQ(document.Text(), "loaded text");
}

}  // namespace
}  // namespace zemtra
