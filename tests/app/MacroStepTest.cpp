// Macro stepping in the Variable Display, the modal state window, part information and the
// plot range commands, driven through the main window's menus.
#include <QAction>
#include <QComboBox>
#include <QImage>
#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QTest>
#include <QTimer>
#include <QTreeWidget>
#include <algorithm>

#include "app/AppTestSupport.h"
#include "app/ModalStateWindow.h"
#include "app/PartInfoDialog.h"
#include "app/PictureBox.h"
#include "app/PlotActions.h"
#include "app/ProgramTextView.h"
#include "app/VariableDisplayWindow.h"
#include "app/Workspace.h"
#include "core/SettingsStore.h"

namespace zemtra::test {

namespace {

constexpr const char* kLoop = "G0X0Y0\n#1=0\nWHILE[#1LT3]DO1\n#1=#1+1\nG1X#1F10.\nEND1\nM30\n";

vDsp& OpenVariableDisplay(StartedPlot& plot) {
  plot->Actions().Find("mnuVariableDisplay")->trigger();
  auto* window = plot->findChild<vDsp*>("vDsp");
  Q_ASSERT(window != nullptr);
  return *window;
}

void Press(vDsp& window, const char* button) {
  window.findChild<QAction*>(button)->trigger();
}

// The value column of the row named `name` ("#1 (A)"); "" when there is no such row.
QString ValueOf(vDsp& window, const QString& name) {
  auto* list = window.findChild<QTreeWidget*>("lvVar");
  for (int i = 0; i < list->topLevelItemCount(); ++i) {
    if (list->topLevelItem(i)->text(0) == name) return list->topLevelItem(i)->text(1);
  }
  return {};
}

QString TextOf(QWidget& window, const char* name) {
  if (auto* box = window.findChild<QLineEdit*>(name)) return box->text();
  return window.findChild<QLabel*>(name)->text();
}

int Count(const std::vector<Prompt>& prompts, const std::string& text) {
  return static_cast<int>(std::count_if(prompts.begin(), prompts.end(),
                                        [&](const Prompt& p) { return p.text == text; }));
}

// Puts the caret at the start of 1-based `line` of the program.
void PutCaretOnLine(StartedPlot& plot, int line) {
  ProgramDocument& document = plot->Engine().Editor.Document;
  document.SetSelection(document.LineStart(line - 1), 0);
}

// Pixels of the picture that are not the background.
int DrawnPixels(StartedPlot& plot) {
  const QImage image = plot->Picture()->Picture();
  const QRgb background = image.pixel(1, 1);
  int count = 0;
  for (int y = 0; y < image.height(); ++y) {
    for (int x = 0; x < image.width(); ++x) count += image.pixel(x, y) != background;
  }
  return count;
}

}  // namespace

class MacroStepTest : public QObject {
  Q_OBJECT
 private slots:
  // Step by step through a counting loop: the block, its evaluated form, the caret and the
  // variable follow; a break expression, then an animation to the end.
  void SteppingShowsTheVariableChange() {
    OpenedProgram opened("loop.nc", kLoop);
    StartedPlot& plot = opened.plot;
    vDsp& window = OpenVariableDisplay(plot);
    QVERIFY(window.isVisible());
    QCOMPARE(window.windowTitle(), QString("Variable Display"));
    Press(window, "step");  // G0X0Y0
    Press(window, "step");  // #1=0
    QCOMPARE(ValueOf(window, "#1 (A)"), QString("0.0"));
    Press(window, "step");  // WHILE
    Press(window, "step");  // #1=#1+1
    QCOMPARE(ValueOf(window, "#1 (A)"), QString("1.0"));
    QCOMPARE(TextOf(window, "txtCurBlock"), QString("#1=#1+1"));
    QCOMPARE(TextOf(window, "txtEvalBlock"), QString("#1=1"));
    QCOMPARE(TextOf(window, "lblPLevel"), QString("Program Level: Main"));
    QCOMPARE(plot->Engine().Editor.Document.CurrentLineIndex(), 3);  // the line just run
    Press(window, "step");                                           // G1X#1
    QCOMPARE(TextOf(window, "txtEvalBlock"), QString("G1X1F10."));

    window.findChild<QComboBox*>("cmbBreakPoint")->setEditText("#1 GT 2");
    Press(window, "steptobreak");
    QCOMPARE(ValueOf(window, "#1 (A)"), QString("3.0"));

    Press(window, "animate");
    QTRY_COMPARE(Count(plot.prompts, "Program Finished"), 1);
    QTRY_VERIFY(!window.findChild<QTimer*>("stepTimer")->isActive());
    QCOMPARE(plot->Engine().View.EntityCount(), 3);
    QTest::qWait(300);  // the timer is stopped: no second session, no second message
    QCOMPARE(Count(plot.prompts, "Program Finished"), 1);
  }

  void StepToCursorStopsBeforeTheCaretLine() {
    OpenedProgram opened("loop.nc", kLoop);
    StartedPlot& plot = opened.plot;
    vDsp& window = OpenVariableDisplay(plot);
    PutCaretOnLine(plot, 5);
    Press(window, "stepto");
    QCOMPARE(TextOf(window, "txtCurBlock"), QString("#1=#1+1"));
    QCOMPARE(plot->Engine().Interp.LineCounter, 4);
    QCOMPARE(ValueOf(window, "#1 (A)"), QString("1.0"));
    QVERIFY(!plot->Busy);
  }

  // A macro file called with G65: its level, its locals and its text with the line run.
  void AMacroFileShowsItsLevelAndText() {
    const Scratch scratch;
    scratch.Write("O1000.nc", "#100=#1*2\r\n#2=5\r\nM99\r\n");
    const std::string path = scratch.Write("main.nc", "#1=1\nG65P1000A4.\nM30\n");
    StartedPlot plot(scratch);
    plot->OpenPassedFile(path);
    vDsp& window = OpenVariableDisplay(plot);
    Press(window, "step");
    Press(window, "step");  // G65: level 1
    QCOMPARE(TextOf(window, "lblPLevel"), QString("Program Level: Sub 1"));
    QCOMPARE(TextOf(window, "lblDLevel"), QString("Display Level: Sub 1"));
    Press(window, "step");
    QCOMPARE(ValueOf(window, "#100"), QString("8.0"));
    QCOMPARE(ValueOf(window, "#1 (A)"), QString("4.0"));
    auto* text = window.findChild<QPlainTextEdit*>("rtSub");
    QVERIFY2(text->toPlainText().contains("#2=5"), qPrintable(text->toPlainText()));
    QCOMPARE(text->textCursor().blockNumber(), 0);
    window.findChild<QWidget*>("cmdDown")->setFocus();
    window.LevelDown();
    QCOMPARE(TextOf(window, "lblDLevel"), QString("Display Level: Main"));
    QCOMPARE(ValueOf(window, "#1 (A)"), QString("1.0"));
  }

  void VariablesAreEditedAndWatched() {
    OpenedProgram opened("loop.nc", kLoop);
    StartedPlot& plot = opened.plot;
    vDsp& window = OpenVariableDisplay(plot);
    QStringList answers{"#5021", "#999", "2*3"};
    QStringList asked;
    window.InputBox = [&](const QString& prompt, const QString&) -> std::optional<QString> {
      asked << prompt;
      return answers.takeFirst();
    };
    window.findChild<QAction*>("mnuAddVar")->trigger();
    QVERIFY(!ValueOf(window, "#5021").isEmpty());
    window.findChild<QAction*>("mnuAddVar")->trigger();
    QCOMPARE(plot.prompts.back().text, std::string("Invalid system variable number"));
    QCOMPARE(plot->Store().GetSetting("General", "System Variable List"), std::string("5021"));

    Press(window, "step");
    Press(window, "step");  // #1=0
    auto* list = window.findChild<QTreeWidget*>("lvVar");
    QTreeWidgetItem* row = list->findItems("#1 (A)", Qt::MatchExactly).value(0);
    QVERIFY(row != nullptr);
    window.EditVariable(row);
    QCOMPARE(asked.back(), QString("Enter new value for variable #1 (A)"));
    QCOMPARE(ValueOf(window, "#1 (A)"), QString("6.0"));
  }

  void PlotToCursorDrawsOnlyUpToTheCaret() {
    OpenedProgram opened("square.nc", "G0X0Y0\nG1X10.F10.\nG1Y10.\nG1X0\nG1Y0\nM30\n");
    StartedPlot& plot = opened.plot;
    Viewport& view = plot->Engine().View;
    QCOMPARE(view.EntityCount(), 4);
    const int whole = DrawnPixels(plot);
    PutCaretOnLine(plot, 3);
    plot->Actions().Find("mnuPlotToCursor")->trigger();
    QCOMPARE(view.DrawFirst, 1);
    QCOMPARE(view.DrawLast, 2);
    QCOMPARE(plot->Engine().Table.GeoLast, 2);
    QVERIFY(plot->Engine().Driver.PlotRangeActive);
    QTRY_VERIFY(DrawnPixels(plot) < whole);

    plot->Actions().Find("mnuPlotFromCursor")->trigger();  // from the end of the range
    QCOMPARE(view.DrawFirst, 2);
    QCOMPARE(view.DrawLast, 4);

    ProgramDocument& document = plot->Engine().Editor.Document;
    document.SetSelection(document.LineStart(3), document.LineStart(5) - document.LineStart(3));
    plot->Actions().Find("mnuPlotSelected")->trigger();  // lines 4 and 5
    QCOMPARE(view.DrawFirst, 3);
    QCOMPARE(view.DrawLast, 4);

    PutCaretOnLine(plot, 3);
    plot->Actions().Find("mnuStartAtCursor")->trigger();
    QCOMPARE(view.DrawFirst, 2);
    QCOMPARE(view.DrawLast, 2);  // the replay's step forward has drawn the cursor's entity

    plot->Actions().Find("mnuPlot")->trigger();  // a new plot shows everything again
    QCOMPARE(view.DrawLast, 4);
    QVERIFY(!plot->Engine().Driver.PlotRangeActive);
  }

  void ModalStateIsTakenAtTheCaretLine() {
    OpenedProgram opened("modal.nc", "G0X0Y0\nG1X1.F10.\nG0X5.\nM30\n");
    StartedPlot& plot = opened.plot;
    PutCaretOnLine(plot, 2);
    plot->Actions().Find("mnuShowModal")->trigger();
    auto* window = plot->findChild<ModalStateWindow*>("frmModal");
    QVERIFY(window != nullptr && window->isVisible());
    QVERIFY2(window->ReportText().contains("G01 Linear Interpolation"),
             qPrintable(window->ReportText()));
    QVERIFY(window->ReportText().contains("F10.0"));
    PutCaretOnLine(plot, 3);
    plot->Actions().Find("mnuShowModal")->trigger();
    QVERIFY(window->ReportText().contains("G00 Rapid Move"));
    QCOMPARE(plot->Engine().Driver.ModalLine, 0);
  }

  void PartInformationShowsTimesAndKeepsTheRates() {
    OpenedProgram opened("part.nc", "G0X0Y0Z1.\nG1Z-1.F60.\nG1X60.\nT2M6\nG0Z1.\nX100.\nM30\n");
    StartedPlot& plot = opened.plot;
    plot->Actions().Find("mnuPartInfo")->trigger();
    auto* dialog = plot->findChild<Info*>("Info");
    QVERIFY(dialog != nullptr && dialog->isVisible());
    QCOMPARE(TextOf(*dialog, "txtFeedL"), QString("62.0"));
    QCOMPARE(TextOf(*dialog, "txtTotalFeed"), QString("1m:02s"));
    QCOMPARE(TextOf(*dialog, "txtXWidth"), QString("100.0"));
    QCOMPARE(TextOf(*dialog, "txtToolC"), QString("1"));
    QCOMPARE(TextOf(*dialog, "txtTotalTC"), QString("0m:05s"));
    auto* rate = dialog->findChild<QLineEdit*>("txtRapidR");
    QCOMPARE(rate->text(), QString("100"));
    rate->selectAll();
    QTest::keyClicks(rate, "0");
    QCOMPARE(TextOf(*dialog, "txtTotalRapid"), QString("0m:00s"));
    dialog->close();
    QCOMPARE(plot->Store().GetSetting("General", "Rapid Rate"), std::string("0"));
  }
};

ZEMTRA_TEST_CLASS(MacroStepTest)

}  // namespace zemtra::test

#include "MacroStepTest.moc"
