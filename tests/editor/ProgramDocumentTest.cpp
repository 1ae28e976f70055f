#include <gtest/gtest.h>

#include <random>
#include <string>
#include <vector>

#include "editor/LineIndex.h"
#include "editor/ProgramDocument.h"

namespace zemtra {
namespace {

// Records what a window mirroring the document would be told.
class Mirror : public DocumentObserver {
 public:
  void TextReplaced(std::size_t start, std::size_t removed, std::string_view inserted) override {
    text.replace(start, removed, inserted);
  }
  void SelectionChanged(std::size_t start, std::size_t length) override {
    selection = {start, length};
  }
  void ModifiedChanged(bool value) override { modified.push_back(value); }
  std::string text;
  std::pair<std::size_t, std::size_t> selection{0, 0};
  std::vector<bool> modified;
};

TEST(ProgramDocument, LinesAreThoseOfTheEditor) {
  ProgramDocument document;
  document.SetText("N10 G0\r\nN20 G1\r\n\r\nN30\r\n");
  EXPECT_EQ(document.LineCount(), 5);  // a final line end opens an empty last line
  const std::vector<std::string> lines = {"N10 G0", "N20 G1", "", "N30", ""};
  for (int i = 0; i < 5; ++i) EXPECT_EQ(document.GetProgramLine(i), lines[i]) << i;
  EXPECT_EQ(document.GetProgramLine(5), "");
  EXPECT_EQ(document.GetProgramLine(-1), "");
  EXPECT_EQ(document.LineStart(1), 8u);
  EXPECT_EQ(document.LineLength(1), 6u);
  EXPECT_EQ(document.LineStart(9), document.Size());
  EXPECT_EQ(document.LineFromChar(6), 0);  // the CR of line 0
  EXPECT_EQ(document.LineFromChar(7), 0);  // its LF
  EXPECT_EQ(document.LineFromChar(8), 1);
  EXPECT_EQ(document.LineFromChar(1000), 4);

  ASSERT_TRUE(document.SelectProgramLine(1));  // with its line break
  EXPECT_EQ(document.SelText(), "N20 G1\r\n");
  EXPECT_EQ(document.CurrentLineIndex(), 1);
  EXPECT_FALSE(document.SelectProgramLine(5));

  // Lone CR and LF count as line breaks too.
  document.SetText("A\nB\rC\r\nD");
  EXPECT_EQ(document.LineCount(), 4);
  EXPECT_EQ(document.GetProgramLine(1), "B");
  EXPECT_EQ(document.GetProgramLine(2), "C");
  EXPECT_EQ(document.GetProgramLine(3), "D");

  ProgramDocument empty;
  EXPECT_EQ(empty.LineCount(), 1);
  EXPECT_EQ(empty.GetProgramLine(0), "");
}

TEST(ProgramDocument, ObserversMirrorEveryChangeButTheirOwn) {
  ProgramDocument document;
  Mirror window, other;
  document.AddObserver(&window);
  document.AddObserver(&other);
  document.SetText("G0 X1\r\nG1 Y2\r\n");
  document.SetSelection(3, 2);
  document.ReplaceSelection("X10");  // caret behind the new text
  EXPECT_EQ(document.Text(), "G0 X10\r\nG1 Y2\r\n");
  EXPECT_EQ(document.SelStart(), 6u);
  EXPECT_EQ(document.SelLength(), 0u);
  // A change the window made itself is not echoed back to it.
  window.text.insert(0, "%\r\n");
  document.ReplaceRange(0, 0, "%\r\n", &window);
  EXPECT_EQ(window.text, document.Text());
  EXPECT_EQ(other.text, document.Text());
  EXPECT_EQ(document.SelStart(), 9u);  // the caret moved with the text behind the change
  EXPECT_EQ(other.selection.first, 9u);
  document.SetDocumentModified(true);
  document.SetDocumentModified(true);
  document.SetDocumentModified(false);
  EXPECT_EQ(other.modified, (std::vector<bool>{true, false}));
  document.RemoveObserver(&other);
  document.ReplaceRange(0, 1, "");
  EXPECT_NE(other.text, document.Text());
}

TEST(ProgramDocument, RangesAndSelectionsClampToTheText) {
  ProgramDocument document;
  document.SetText("ABC");
  document.SetSelection(2, 50);
  EXPECT_EQ(document.SelText(), "C");
  document.ReplaceRange(10, 5, "D");  // past the end: appended
  EXPECT_EQ(document.Text(), "ABCD");
  document.ReplaceRange(1, 100, "");
  EXPECT_EQ(document.Text(), "A");
  EXPECT_EQ(document.SelStart(), 1u);
}

// Random edits, including ones that join or split CR LF pairs, keep the incremental line index
// equal to one built from scratch.
TEST(LineIndex, IncrementalUpdateMatchesRebuild) {
  std::mt19937 random(7);
  const std::string pieces[] = {"\r\n", "\r", "\n", "G1", "X", "", "\r\n\r\n", "Y2\n"};
  std::string text = "N1\r\nN2\r\nN3";
  LineIndex index;
  index.Rebuild(text);
  for (int step = 0; step < 3000; ++step) {
    const std::size_t start = random() % (text.size() + 1);
    const std::size_t removed = std::min<std::size_t>(random() % 4, text.size() - start);
    const std::string& inserted = pieces[random() % std::size(pieces)];
    text.replace(start, removed, inserted);
    index.Replaced(text, start, removed, inserted.size());
    LineIndex fresh;
    fresh.Rebuild(text);
    ASSERT_EQ(index.LineCount(), fresh.LineCount()) << "step " << step;
    for (int line = 0; line < fresh.LineCount(); ++line) {
      ASSERT_EQ(index.LineStart(line), fresh.LineStart(line)) << "step " << step;
    }
  }
}

}  // namespace
}  // namespace zemtra
