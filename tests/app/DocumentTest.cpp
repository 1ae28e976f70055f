// The program document in the window: opening, editing with undo, the save prompt, saving
// without loss, find and replace, and the settings the window keeps between starts.
#include <QAction>
#include <QCheckBox>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QPushButton>
#include <QTest>

#include "app/AppTestSupport.h"
#include "app/DocumentCommands.h"
#include "app/OptionsDialog.h"
#include "app/PictureBox.h"
#include "app/PlotActions.h"
#include "app/ProgramTextView.h"
#include "app/QtSettingsStore.h"
#include "app/SearchWindow.h"
#include "app/StatusPanels.h"
#include "app/Workspace.h"
#include "core/SettingsStore.h"

namespace zemtra::test {

constexpr const char* kProgram =
    "%\nO1000 (SQUARE)\nG90 G17 G21\nG0 X0. Y0. Z5.\nG1 Z-1. F100.\nX10.\nY10.\nX0.\nY0.\nG0 "
    "Z5.\nM30\n%\n";

static QAction* Action(StartedPlot& plot, const char* name) {
  return plot->Actions().Find(name);
}

// Pixels of the picture that are not its background.
static int DrawnPixels(StartedPlot& plot) {
  const QImage image = plot->Picture()->Picture();
  const QRgb background = image.pixel(image.width() - 1, image.height() / 2);
  int drawn = 0;
  for (int y = 0; y < image.height(); y += 2) {
    for (int x = 0; x < image.width(); x += 2) drawn += image.pixel(x, y) != background;
  }
  return drawn;
}

class DocumentTest : public QObject {
  Q_OBJECT
 private slots:
  void OpenedFileIsShownColouredAndPlotted() {
    const Scratch scratch;
    const std::string path = scratch.Write("square.nc", kProgram);
    StartedPlot plot(scratch);
    const int emptyPicture = DrawnPixels(plot);
    plot->OpenPassedFile(path);
    QCOMPARE(plot.prompts.size(), std::size_t(0));
    QVERIFY(DocumentText(plot).find("O1000 (SQUARE)\r\nG90") != std::string::npos);  // CR LF ends
    QCOMPARE(plot->windowTitle().toStdString(), "Zemtra v1.00 - " + path);
    QVERIFY(plot->Editor()->ColoringActive());
    QCOMPARE(plot->Engine().Driver.EntityCount(), 6);  // the first motion only starts
    QVERIFY(DrawnPixels(plot) > emptyPicture);
    QCOMPARE(plot->Settings().Recent.At(0), path);
    QCOMPARE(plot->Actions().RecentMenu()->actions().size(), 1);
    QCOMPARE(plot->Actions().RecentMenu()->actions()[0]->objectName(), QString("RF0"));
    QCOMPARE(plot->Panels().Text("edit"), QString());
  }

  void MissingFileIsReported() {
    const Scratch scratch;
    StartedPlot plot(scratch);
    plot->OpenPassedFile("/nowhere/x.nc");
    QCOMPARE(plot.prompts.size(), std::size_t(1));
    QCOMPARE(plot.prompts[0].text, std::string("File does not exist:\r\n/nowhere/x.nc"));
    QCOMPARE(plot.prompts[0].icon, MsgIcon::Exclamation);
  }

  // Typing is one undo step until a blank or a pause; undo and redo walk the steps and the
  // menu names what can be done.
  void TypingUndoAndRedo() {
    OpenedProgram opened("a.nc", "G0 X1\n");
    StartedPlot& plot = opened.plot;
    QVERIFY(!Action(plot, "mnuEditUndo")->isEnabled());
    QCOMPARE(Action(plot, "mnuEditUndo")->text(), QString("Can't Undo"));
    ProgramTextView* editor = plot->Editor();
    editor->setFocus();
    QTest::keyClick(editor, Qt::Key_End, Qt::ControlModifier);
    QTest::keyClicks(editor, "g1 y2");  // Always Caps is on by default
    QCOMPARE(DocumentText(plot), std::string("G0 X1\r\nG1 Y2"));
    QCOMPARE(plot->Panels().Text("edit"), QString("Modified"));
    Action(plot, "mnuEditUndo")->trigger();
    QCOMPARE(DocumentText(plot), std::string("G0 X1\r\nG1"));  // the blank ended the first step
    QVERIFY(Action(plot, "mnuEditRedo")->isEnabled());
    QCOMPARE(Action(plot, "mnuEditRedo")->text(), QString("&Redo"));
    Action(plot, "mnuEditUndo")->trigger();
    QCOMPARE(DocumentText(plot), std::string("G0 X1\r\n"));
    Action(plot, "mnuEditRedo")->trigger();
    Action(plot, "mnuEditRedo")->trigger();
    QCOMPARE(DocumentText(plot), std::string("G0 X1\r\nG1 Y2"));
    QTest::keyClick(editor, Qt::Key_Backspace);
    QTest::qWait(400);  // the pause ends the step: a new edit ends redo
    QCOMPARE(DocumentText(plot), std::string("G0 X1\r\nG1 Y"));
    QVERIFY(!Action(plot, "mnuEditRedo")->isEnabled());
  }

  void EditingKeysMoveAndDeleteWholeCharacters() {
    OpenedProgram opened("u.nc", "(\xC3\xA9)\nX1\n");  // é in a comment
    StartedPlot& plot = opened.plot;
    ProgramTextView* editor = plot->Editor();
    QTest::keyClick(editor, Qt::Key_Home, Qt::ControlModifier);
    QTest::keyClick(editor, Qt::Key_Right);
    QTest::keyClick(editor, Qt::Key_Delete);  // the two bytes of é go together
    QCOMPARE(DocumentText(plot), std::string("()\r\nX1\r\n"));
    QTest::keyClick(editor, Qt::Key_Down);
    QTest::keyClick(editor, Qt::Key_Home);
    QTest::keyClick(editor, Qt::Key_Backspace);  // the line end goes as one
    QCOMPARE(DocumentText(plot), std::string("()X1\r\n"));
    QTest::keyClick(editor, Qt::Key_Return);
    QCOMPARE(DocumentText(plot), std::string("()\r\nX1\r\n"));
    QCOMPARE(plot->Panels().Text("line"), QString("2"));
  }

  // Closing with unsaved text asks first; Cancel keeps the window and the text.
  void ClosingWithChangesAsks() {
    OpenedProgram opened("p.nc", "G0 X1\n");
    auto& [scratch, path, plot] = opened;
    plot->Editor()->InsertText("N5 ");
    plot.answers = {MsgAnswer::Cancel};
    QVERIFY(!plot.close());
    QCOMPARE(plot.prompts.back().text, "Save Changes to:\r\n" + path);
    QCOMPARE(plot.prompts.back().buttons, MsgButtons::YesNoCancel);
    QCOMPARE(plot.prompts.back().icon, MsgIcon::Exclamation);
    QCOMPARE(plot.prompts.back().title, std::string("Zemtra"));
    QVERIFY(plot->isVisible());
    plot.answers = {MsgAnswer::Yes};
    QVERIFY(plot.close());
    QCOMPARE(scratch.Read(path), std::string("N5 G0 X1\r\n"));
  }

  void UntitledTextIsSavedThroughSaveAs() {
    const Scratch scratch;
    StartedPlot plot(scratch);
    const std::string target = (scratch.Folder() / "new.nc").string();
    plot->Documents().Dialogs.SaveFile = [&](const QString&, const QString&, const QString&,
                                             QString& filter) {
      filter.clear();
      return QString::fromStdString(target);
    };
    plot->Editor()->InsertText("G1 X2\n");
    plot.answers = {MsgAnswer::Yes};
    QVERIFY(plot.close());
    QCOMPARE(plot.prompts.back().text, std::string("Save Changes to:\r\nUntitled"));
    QCOMPARE(scratch.Read(target), std::string("G1 X2\r\n"));
  }

  // Every character survives a load and a save; only line ends become CR LF.
  void SaveKeepsEveryCharacter() {
    // Not UTF-8, and no line end at the end.
    OpenedProgram opened("l.nc", "(caf\xE9 \xB0)\tX1  \nG0\n\n\nG1 Y2\t");
    auto& [scratch, path, plot] = opened;
    plot->Editor()->SetSelection(0, 0);
    plot->Editor()->InsertText("N1");
    QVERIFY(plot->Documents().Save());
    QCOMPARE(QByteArray::fromStdString(scratch.Read(path)),
             QByteArray("N1(caf\xE9 \xB0)\tX1  \r\nG0\r\n\r\n\r\nG1 Y2\t"));
    QCOMPARE(plot->Panels().Text("edit"), QString());
  }

  void ReplaceAllIsOneUndoStep() {
    OpenedProgram opened("r.nc", "X1 Y1\nX1\nx1\n");
    StartedPlot& plot = opened.plot;
    Action(plot, "mnuReplace")->trigger();
    auto* search = plot->findChild<SearchWindow*>("Search");
    QVERIFY(search != nullptr && search->isVisible());
    search->findChild<QLineEdit*>("txtFind")->setText("X1");
    search->findChild<QLineEdit*>("txtReplace")->setText("X1X1");
    search->findChild<QPushButton*>("cmdReplaceAll")->click();
    QCOMPARE(DocumentText(plot), std::string("X1X1 Y1\r\nX1X1\r\nX1X1\r\n"));
    QCOMPARE(plot.prompts.back().text, std::string("Replaced 3 matches"));
    QCOMPARE(plot.prompts.back().title, std::string("Finished"));
    QCOMPARE(plot.prompts.back().icon, MsgIcon::Information);
    Action(plot, "mnuEditUndo")->trigger();
    QCOMPARE(QByteArray::fromStdString(DocumentText(plot)), QByteArray("X1 Y1\r\nX1\r\nx1\r\n"));
  }

  void FindNextSelectsAndWraps() {
    OpenedProgram opened("f.nc", "G0 X1\nG1 X2\n");
    StartedPlot& plot = opened.plot;
    Action(plot, "mnuFind")->trigger();
    auto* search = plot->findChild<SearchWindow*>("Search");
    search->findChild<QLineEdit*>("txtFind")->setText("g1");
    search->findChild<QPushButton*>("cmdFindNext")->click();
    QCOMPARE(plot->Engine().Editor.Document.SelText(), std::string("G1"));
    QCOMPARE(plot->Panels().Text("line"), QString("2"));
    plot.answers = {MsgAnswer::Yes, MsgAnswer::No};
    Action(plot, "mnuFindNext")->trigger();  // past the last: asks, and starts again
    QCOMPARE(plot.prompts.back().text,
             std::string("Search text is not found, search again from the beginning?"));
    QCOMPARE(plot->Engine().Editor.Document.SelStart(), std::size_t(7));
  }

  void CloseEmptiesDocumentAndPicture() {
    OpenedProgram opened("c.nc", kProgram);
    StartedPlot& plot = opened.plot;
    Action(plot, "mnuNew")->trigger();
    QCOMPARE(DocumentText(plot), std::string());
    QCOMPARE(plot->windowTitle(), QString("Zemtra v1.00 - Untitled"));
    QCOMPARE(plot->Engine().View.EntityCount(), 0);
  }

  // What the user changed is written at exit and is there at the next start.
  void SettingsWrittenAtExitAreReadAtStart() {
    const Scratch scratch;
    const std::string path = scratch.Write("s.nc", kProgram);
    {
      StartedPlot plot(scratch);
      plot->OpenPassedFile(path);
      Action(plot, "mnuShowRapid")->trigger();
      Action(plot, "mnuViewISO")->trigger();
      Action(plot, "mnuToolsPrecision5")->trigger();
      Action(plot, "mnuAutoRefresh")->trigger();
      plot->Settings().Preferences.EditorColor = 0x202020;
      QVERIFY(plot.close());
    }
    QtSettingsStore store(scratch.SettingsFile());
    QCOMPARE(store.GetSetting("General", "ShowRapid"), std::string("False"));
    QCOMPARE(store.GetSetting("General", "CurrentView"), std::string("6"));
    QCOMPARE(store.GetSetting("Preferences", "Display Precision"), std::string("5"));
    QCOMPARE(store.GetSetting("Recent Files", "File00"), path);
    QVERIFY(store.GetSetting("StartUp", "Config").find("default.zmt") != std::string::npos);
    QVERIFY(!store.GetSetting("StartUp", "Width").empty());
    QCOMPARE(store.GetSetting("Toolbars", "Band 0 Visible"), std::string("-1"));

    StartedPlot again(scratch);
    QVERIFY(!Action(again, "mnuShowRapid")->isChecked());
    QVERIFY(Action(again, "mnuViewISO")->isChecked());
    QVERIFY(Action(again, "mnuToolsPrecision5")->isChecked());
    QVERIFY(Action(again, "mnuAutoRefresh")->isChecked());
    QCOMPARE(again->Engine().View.View.CurrentView, std::int16_t(6));
    QCOMPARE(again->Settings().Preferences.EditorColor, 0x202020);
    QCOMPARE(again->Actions().RecentMenu()->actions().size(), 1);
  }

  // "Multi Instance" is stored the moment it is changed; the other preferences at exit.
  void MultiInstanceIsWrittenAtOnce() {
    const Scratch scratch;
    StartedPlot plot(scratch);
    OptionsDialog dialog(plot->Settings(), plot->Panes, plot->Store(), &plot.window());
    dialog.findChild<QCheckBox*>("chkMultiInstance")->click();
    dialog.findChild<QCheckBox*>("chkAutoPlot")->click();
    QCOMPARE(plot->Store().GetSetting("General", "Multi Instance"), std::string("-1"));
    QCOMPARE(plot->Store().GetSetting("Preferences", "Plot When File Loaded", "absent"),
             std::string("absent"));
    QCOMPARE(plot->Settings().Preferences.PlotWhenFileLoaded, false);
  }

  void AutoRefreshPlotsAfterAnEdit() {
    const Scratch scratch;
    const std::string path = scratch.Write("ar.nc", "G0 X0 Y0\nG1 X5\n");
    StartedPlot plot(scratch);
    Action(plot, "mnuAutoRefresh")->trigger();
    plot->Settings().Preferences.AutoRefreshDelay = 50;
    plot->ApplySettingsToWindow();
    plot->OpenPassedFile(path);
    QCOMPARE(plot->Engine().Driver.EntityCount(), 1);
    plot->Editor()->SetSelection(DocumentText(plot).size(), DocumentText(plot).size());
    plot->Editor()->InsertText("Y5\n");
    QTRY_COMPARE_WITH_TIMEOUT(plot->Engine().Driver.EntityCount(), 2, 3000);
  }
};

ZEMTRA_TEST_CLASS(DocumentTest)

}  // namespace zemtra::test

#include "DocumentTest.moc"
