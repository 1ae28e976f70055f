// The program text control: caret moves and selections in bytes of the document, edits as
// typed, the clipboard's line ends, the mouse, and the colours a line is shown in.
#include <QApplication>
#include <QClipboard>
#include <QTest>

#include "app/AppTestSupport.h"
#include "app/ProgramTextView.h"
#include "editor/Colorize.h"
#include "editor/ProgramDocument.h"

namespace zemtra::test {

class TextViewTest : public QObject {
  Q_OBJECT
 private:
  std::unique_ptr<ProgramDocument> document_;
  std::unique_ptr<ProgramTextView> view_;

  void Show(const std::string& text) {
    document_->SetText(text);
    view_->SetSelection(0, 0);
  }
  std::string Text() const { return document_->Text(); }
  std::string Selected() const { return document_->SelText(); }

 private slots:
  void init() {
    document_ = std::make_unique<ProgramDocument>();
    view_ = std::make_unique<ProgramTextView>(*document_);
    view_->resize(400, 300);
    view_->show();
    view_->setFocus();
  }
  void cleanup() {
    view_.reset();
    document_.reset();
  }

  void ShiftWithArrowsSelectsAndTypingReplaces() {
    Show("G0 X1\r\nG1 Y2\r\n");
    QTest::keyClick(view_.get(), Qt::Key_Right, Qt::ShiftModifier);
    QTest::keyClick(view_.get(), Qt::Key_Right, Qt::ShiftModifier);
    QCOMPARE(Selected(), std::string("G0"));
    QTest::keyClicks(view_.get(), "G2");
    QCOMPARE(Text(), std::string("G2 X1\r\nG1 Y2\r\n"));
    QTest::keyClick(view_.get(), Qt::Key_Down, Qt::ShiftModifier);
    QCOMPARE(Selected(), std::string(" X1\r\nG1"));  // down keeps the column
  }

  void WordMovesStepOverAddresses() {
    Show("G1 X-1.5 Y2\r\nM30");
    QTest::keyClick(view_.get(), Qt::Key_Right, Qt::ControlModifier);
    QCOMPARE(view_->CaretPosition(), std::size_t(3));
    QTest::keyClick(view_.get(), Qt::Key_Right, Qt::ControlModifier | Qt::ShiftModifier);
    QCOMPARE(Selected(), std::string("X-1.5 "));
    QTest::keyClick(view_.get(), Qt::Key_End);
    QTest::keyClick(view_.get(), Qt::Key_Right, Qt::ControlModifier);  // over the line end
    QCOMPARE(view_->CaretPosition(), std::size_t(13));
    QTest::keyClick(view_.get(), Qt::Key_Backspace, Qt::ControlModifier);
    QCOMPARE(Text(), std::string("G1 X-1.5 Y2M30"));
  }

  void TypingCanBeCapitalised() {
    Show("");
    view_->SetAlwaysCaps(true);
    QTest::keyClicks(view_.get(), "g1 x2 (note)");
    QCOMPARE(Text(), std::string("G1 X2 (NOTE)"));
    view_->SetAlwaysCaps(false);
    QTest::keyClicks(view_.get(), "x");
    QCOMPARE(Text(), std::string("G1 X2 (NOTE)x"));
  }

  // The clipboard has the desktop's line ends; the document keeps CR LF.
  void ClipboardConvertsLineEnds() {
    Show("A\r\nB\r\n");
    view_->SelectAll();
    view_->Copy();
    QCOMPARE(QApplication::clipboard()->text(), QString("A\nB\n"));
    QApplication::clipboard()->setText("X1\nY2\rZ3");
    view_->Paste();
    QCOMPARE(Text(), std::string("X1\r\nY2\r\nZ3"));
    QCOMPARE(view_->CaretLine(), 2);
  }

  void ClickPutsTheCaretOnTheLineClicked() {
    Show("N10 G0\r\nN20 G1\r\nN30 G2\r\n");
    const QFontMetrics metrics(view_->EditorFont());
    const int y = static_cast<int>(2 + 2.5 * std::ceil(metrics.lineSpacing()));
    QTest::mouseClick(view_->viewport(), Qt::LeftButton, Qt::NoModifier, QPoint(2, y));
    QCOMPARE(view_->CaretLine(), 2);
    QCOMPARE(view_->CaretPosition(), document_->LineStart(2));
    QTest::mouseDClick(view_->viewport(), Qt::LeftButton, Qt::NoModifier, QPoint(6, y));
    QCOMPARE(Selected(), std::string("N30"));
  }

  // A selection made by the document (a find, an undo) is shown and followed by the caret.
  void DocumentSelectionIsFollowed() {
    std::string text;
    for (int i = 0; i < 500; ++i) text += "N" + std::to_string(i) + "\r\n";
    Show(text);
    document_->SelectProgramLine(400);
    QCOMPARE(view_->CaretLine(), 401);  // behind the selected line's break
    view_->EnsureCaretVisible();
    QVERIFY(view_->FirstVisibleLine() > 300);
  }

  // A colour stays in force across a line end, and an edit above a line changes what it
  // starts in.
  void LinesTakeUpTheColourAboveThem() {
    Show("G1 X1.\r\n2.5\r\n");
    ColorizeProgram(*document_, host_, view_->Colorizer());
    QVERIFY(view_->ColoringActive());
    std::vector<ColorRun> runs = view_->ColorRunsOf(1);
    QCOMPARE(runs.size(), std::size_t(1));
    QCOMPARE(runs[0].colorIndex, 'X' - 64);
    document_->ReplaceRange(3, 1, "Y");  // X1. becomes Y1.
    runs = view_->ColorRunsOf(1);
    QCOMPARE(runs[0].colorIndex, 'Y' - 64);
    view_->SetColoringActive(false);
    QVERIFY(view_->ColorRunsOf(1).empty());
  }

 private:
  class NullHost : public Host {
   public:
    MsgAnswer ask(const Prompt& prompt) override { return DefaultAnswer(prompt.buttons); }
  } host_;
};

ZEMTRA_TEST_CLASS(TextViewTest)

}  // namespace zemtra::test

#include "TextViewTest.moc"
