// The Format and Translate menus on the program document: a run is one undo step, Esc leaves
// the text alone, and the dialogs check their boxes and keep their values.
#include <QAction>
#include <QCheckBox>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QTest>
#include <QTimer>
#include <algorithm>
#include <optional>

#include "app/AppTestSupport.h"
#include "app/FilterCommands.h"
#include "app/PlotActions.h"
#include "app/RenumberDialog.h"
#include "app/TranslateDialog.h"
#include "app/Workspace.h"
#include "core/SettingsStore.h"
#include "editor/FilterSession.h"

namespace zemtra::test {

static void Click(QWidget& dialog, const char* name) {
  dialog.findChild<QAbstractButton*>(name)->click();
}

class FiltersTest : public QObject {
  Q_OBJECT
 private slots:
  // A Format command rewrites the program as one undo step; a selection is asked about.
  void FormatCommandIsOneUndoStep() {
    OpenedProgram opened("spaces.nc", "G1X1.Y2.\nG0X0\n\nM30\n");
    StartedPlot& plot = opened.plot;
    const std::string before = DocumentText(plot);
    plot->Actions().Find("mnuAddSpaces")->trigger();
    QCOMPARE(DocumentText(plot), std::string("G1 X1. Y2.\r\nG0 X0\r\n\r\nM30\r\n"));
    QVERIFY(plot.prompts.empty());
    QVERIFY(plot->Engine().Editor.Undo.Undo(1));
    QCOMPARE(DocumentText(plot), before);

    // Only the first line selected, and "Yes" to the question: the rest stays.
    plot->Engine().Editor.Document.SetSelection(0, 10);
    plot.answers.push_back(MsgAnswer::Yes);
    plot->Actions().Find("mnuCommentBlocks")->trigger();
    QCOMPARE(plot.prompts.back().text, std::string("Format only selected text?"));
    QCOMPARE(DocumentText(plot), std::string("(G1X1.Y2.)\r\nG0X0\r\n\r\nM30\r\n"));
  }

  // Esc during a run, or a plot running, leaves the text and the undo steps as they were.
  void CancelledOrRefusedRunLeavesTheText() {
    std::string program;
    for (int i = 0; i < 200; ++i) program += "g1 x" + std::to_string(i) + ".\n";
    OpenedProgram opened("long.nc", program);
    StartedPlot& plot = opened.plot;
    const std::string before = DocumentText(plot);
    QTimer::singleShot(0, [&plot] { plot->RequestAbort(); });  // runs at the first event pump
    plot->Actions().Find("mnuUCase")->trigger();
    QCOMPARE(DocumentText(plot), before);
    QVERIFY(!plot->Engine().Editor.Undo.CanUndo());

    plot->Busy = true;
    plot->Actions().Find("mnuUCase")->trigger();
    plot->Busy = false;
    QCOMPARE(DocumentText(plot), before);
  }

  // Mirror X through the Translate dialog: G2 becomes G3, X changes sign, one undo step, and
  // the dialog's values are kept in section "Translate".
  void MirrorThroughTheDialog() {
    auto store = std::make_shared<MemorySettingsStore>();
    OpenedProgram opened("arc.nc", "G0 X0. Y0.\nG2 X2. Y0. I1. J0.\n(X5 stays)\nM30\n", store);
    StartedPlot& plot = opened.plot;
    const std::string before = DocumentText(plot);
    WhenDialogShows("Translate", [](QWidget& dialog) {
      dialog.findChild<QCheckBox*>("chkMirrX")->setChecked(true);
      SetText(dialog, "txtMirrXPoint", "1");
      SaveShot(dialog, "translate.png");
      Click(dialog, "cmdMirror");
    });
    plot->Actions().Find("mnuMirror")->trigger();
    QCOMPARE(DocumentText(plot),
             std::string("G0 X2.0 Y0.\r\nG03 X0.0 Y0. I-1.0 J0.\r\n(X5 stays)\r\nM30\r\n"));
    QCOMPARE(store->GetSetting("Translate", "Mirror X"), std::string("True"));
    QCOMPARE(store->GetSetting("Translate", "X Mirror Point"), std::string("1"));
    QVERIFY(plot->Engine().Editor.Undo.Undo(1));
    QCOMPARE(DocumentText(plot), before);
  }

  // Break Arcs asks for the tolerance: no answer, no run; 0 or less takes 0.001, which makes
  // 18 chords of a quarter circle of radius 1.
  void BreakArcsAsksForTheTolerance() {
    OpenedProgram opened("arc.nc", "G0 X0. Y0.\nG3 X1. Y1. I0. J1.\n");
    StartedPlot& plot = opened.plot;
    const std::string before = DocumentText(plot);
    auto* commands = plot->findChild<FilterCommands*>("FilterCommands");
    QVERIFY(commands != nullptr);
    QString asked;
    QString answer;
    commands->AskText = [&](const QString& prompt, const QString& title, const QString& value) {
      asked = prompt + "|" + title + "|" + value;
      return answer.isNull() ? std::nullopt : std::optional<QString>(answer);
    };
    plot->Actions().Find("mnuBreakArcs")->trigger();
    QCOMPARE(asked, QString("Enter maximum path deviation distance:|Zemtra|0.001"));
    QCOMPARE(DocumentText(plot), before);
    answer = "0";
    plot->Actions().Find("mnuBreakArcs")->trigger();
    const std::string& text = DocumentText(plot);
    QCOMPARE(std::count(text.begin(), text.end(), '\n'), 19);
    QVERIFY2(text.rfind("G0 X0. Y0.\r\nG01 X", 0) == 0, text.c_str());
    QVERIFY2(text.find("X1.0 Y1.0\r\n") == text.size() - 11, text.c_str());
  }

  // Each dialog shows again what it was closed with.
  void DialogValuesRoundTrip() {
    MemorySettingsStore store;
    FilterParameters parameters;
    {
      TranslateDialog dialog(parameters, store);
      dialog.findChild<QLineEdit*>("txtRotAngle")->setText("12.5");
      dialog.findChild<QRadioButton*>("optSclMetric")->setChecked(true);
    }
    {
      TranslateDialog dialog(parameters, store);
      QCOMPARE(dialog.findChild<QLineEdit*>("txtRotAngle")->text(), QString("12.5"));
      QVERIFY(dialog.findChild<QRadioButton*>("optSclMetric")->isChecked());
      QVERIFY(!dialog.findChild<QLineEdit*>("txtSclFactor")->isEnabled());
      QCOMPARE(dialog.findChild<QLineEdit*>("txtSclFactor")->text(), QString("1"));
    }
    QCOMPARE(LoadRenumberOptions(store).Start, 1);  // the defaults before any use
    {
      RenumberDialog dialog(store);
      dialog.findChild<QRadioButton*>("optRenGoto")->setChecked(true);
      dialog.findChild<QLineEdit*>("txtStartBlock")->setText("100");
      dialog.findChild<QLineEdit*>("txtMaxDigits")->setText("9");
      dialog.findChild<QCheckBox*>("chkAddSpc")->setChecked(true);
    }
    QCOMPARE(store.GetSetting("Renumber", "optGotoOnly"), std::string("True"));
    QCOMPARE(store.GetSetting("Renumber", "optAll"), std::string("False"));
    const RenumberOptions options = LoadRenumberOptions(store);
    QCOMPARE(options.Mode, 3);
    QCOMPARE(options.Start, 100);
    QCOMPARE(options.Increment, 1);
    QCOMPARE(options.MaxDigits, 6);  // clamped
    QVERIFY(options.AddSpace);
  }

  // Renumber from the dialog keeps GOTO pointing at its block; Remove Block Numbers takes
  // them all off.
  void RenumberAndRemoveNumbers() {
    OpenedProgram opened("loop.nc", "N5 G0 X0.\nN7 G1 X1.\nIF [#100 GT 0] GOTO 7\n");
    StartedPlot& plot = opened.plot;
    WhenDialogShows("Renumber", [](QWidget& dialog) {
      dialog.findChild<QRadioButton*>("optRenumberAll")->setChecked(true);
      SetText(dialog, "txtStartBlock", "10");
      SetText(dialog, "txtIncrement", "10");
      dialog.findChild<QCheckBox*>("chkAddSpc")->setChecked(true);
      Click(dialog, "cmdOK");
    });
    plot->Actions().Find("mnuRenumber")->trigger();
    QCOMPARE(DocumentText(plot),
             std::string("N10 G0 X0.\r\nN20 G1 X1.\r\nN30 IF [#100 GT 0] GOTO 20\r\n"));
    plot->Actions().Find("mnuRmvBlockNumbers")->trigger();
    QCOMPARE(DocumentText(plot), std::string("G0 X0.\r\nG1 X1.\r\nIF [#100 GT 0] GOTO 20\r\n"));
  }

  // frmAddr refuses missing or equal letters with its messages, and swaps through the menu.
  void AddressOperationsCheckTheirBoxes() {
    OpenedProgram opened("swap.nc", "G1 X1. Y2. (X3)\n");
    StartedPlot& plot = opened.plot;
    struct Case {
      const char* button;
      const char* box1;
      const char* box2;
      const char* message;
    };
    const Case cases[] = {
        {"cmdGo", "txtAddresses", "txtOperand",
         "You must enter the addresses you want to modify,\r\nan adjustment amount and a format "
         "string"},
        {"cmdGoRemove", "", "", "You must enter the addresses you want to remove"},
        {"cmdGoReplace", "txtFind", "",
         "You must enter the addresses you want to find and replace"},
        {"cmdGoSwap", "txtSwap1", "txtSwap2", "The swap addresses are the same"},
    };
    WhenDialogShows("frmAddr", [&plot, &cases](QWidget& dialog) {
      for (const Case& c : cases) {
        if (*c.box1 != '\0') SetText(dialog, c.box1, "x");
        if (*c.box2 != '\0') SetText(dialog, c.box2, "X");
        Click(dialog, c.button);
        QCOMPARE(plot.prompts.back().text, std::string(c.message));
      }
      SetText(dialog, "txtSwap2", "y");
      Click(dialog, "cmdGoSwap");
    });
    plot->Actions().Find("mnuAddrSwap")->trigger();
    QCOMPARE(plot.prompts.size(), std::size_t(4));
    QCOMPARE(DocumentText(plot), std::string("G1 Y1. X2. (X3)\r\n"));
  }
};

ZEMTRA_TEST_CLASS(FiltersTest)

}  // namespace zemtra::test

#include "FiltersTest.moc"
