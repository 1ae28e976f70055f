// The Machine Configuration dialog and the configuration menu: each control writes its field,
// the work offsets go to the variable store, Save As makes a machine of its own, and choosing
// the lathe or the mill from the menu changes the views, the tool bars and the picture.
#include <QAction>
#include <QCheckBox>
#include <QComboBox>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QMenu>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QTableWidget>
#include <QTest>
#include <QToolBar>
#include <map>

#include "app/AppTestSupport.h"
#include "app/MachineSetupDialog.h"
#include "app/PlotActions.h"
#include "app/StatusPanels.h"
#include "app/Workspace.h"
#include "core/RecordingHost.h"

namespace zemtra::test {

namespace fs = std::filesystem;

// A dialog on a record of its own, with a variable store held in a map.
struct LoneDialog {
  LoneDialog() : dialog(record, host, Links()) {
    dialog.ChooseColor = [](const QColor&) { return QColor(1, 2, 3); };
  }
  MachineSetupLinks Links() {
    MachineSetupLinks links;
    links.ReadVariable = [this](int n) {
      return store.count(n) ? QString::number(store[n]).toStdString() : std::string();
    };
    links.WriteVariable = [this](int n, double value) { store[n] = value; };
    links.Apply = [this] { ++applied; };
    return links;
  }
  template <typename T>
  T* Find(std::string_view name) {
    return dialog.findChild<T*>(QString::fromUtf8(name.data(), qsizetype(name.size())));
  }

  MachineConfig record;
  RecordingHost host;
  std::map<int, double> store;
  int applied = 0;
  MachineSetupDialog dialog;
};

// The entries of the configuration menu that name files, by caption.
static QMap<QString, QAction*> ConfigEntries(Plot& window) {
  QMap<QString, QAction*> entries;
  for (QAction* action : window.Actions().Menu("mnuConfig")->actions()) {
    if (action->property("zmtConfigEntry").toBool()) entries.insert(action->text(), action);
  }
  return entries;
}

class MachineSetupTest : public QObject {
  Q_OBJECT
 private slots:
  // Every bound control, operated as a user would, writes its field of the edited record.
  void EachControlWritesItsField() {
    LoneDialog d;
    d.dialog.show();
    for (const OptionBinding& b : OptionBindings()) {
      b.Field.Set(d.record, b.Value == 0 ? 1 : 0);
      d.dialog.Refill();
      // Set as a click would, also where the frame is disabled for this machine type.
      if (auto* frame = d.Find<QGroupBox>(b.Control)) {
        frame->setChecked(true);
      } else {
        d.Find<QRadioButton>(b.Control)->setChecked(true);
      }
      QVERIFY2(b.Field.Get(d.record) == b.Value, b.Control.data());
    }
    for (const CheckBinding& b : CheckBindings()) {
      d.dialog.ShowPage(b.Place.Page);
      if (auto* frame = d.Find<QGroupBox>(b.Control)) {
        frame->setChecked(true);
      } else {
        d.Find<QCheckBox>(b.Control)->setChecked(true);
      }
      QVERIFY2(b.Field.Get(d.record) == kFlagTrue, b.Control.data());
    }
    for (const NumberBinding& b : NumberBindings()) {
      auto* box = d.Find<QLineEdit>(b.Control);
      box->setText("7.5");
      emit box->editingFinished();
      // Whole-number fields round 7.5 to 8.
      const double value = b.Field.Get(d.record);
      QVERIFY2(value == 7.5 || value == 8.0, b.Control.data());
      QCOMPARE(box->text().toStdString(), b.Field.Text(d.record));
    }
    for (const ChoiceBinding& b : ChoiceBindings()) {
      d.Find<QComboBox>(b.Control)->setCurrentIndex(1);
      QCOMPARE(b.Field.Get(d.record), 0.1);
    }
    for (const TextBinding& b : TextBindings()) {
      d.dialog.ShowPage(b.Place.Page);
      QWidget* control = d.Find<QWidget>(b.Control);
      if (auto* list = qobject_cast<QComboBox*>(control)) control = list->lineEdit();
      if (auto* box = qobject_cast<QLineEdit*>(control)) box->clear();
      if (auto* box = qobject_cast<QPlainTextEdit*>(control)) box->clear();
      QTest::keyClicks(control, "c");
      const std::string expected = b.Rule == TextRule::Letter       ? "C"
                                   : b.Rule == TextRule::LayerLines ? "c\r\n"
                                                                    : "c";
      QCOMPARE(b.Field.Get(d.record), expected);
    }
    d.dialog.ShowPage(ConfigPageId::Viewport);
    for (const ColorBinding& b : ColorBindings()) {
      emit d.Find<QPushButton>(b.Control)->clicked();
      QVERIFY2(b.Field.Get(d.record) == 0x030201, b.Control.data());
    }
    QCOMPARE(d.record.ToolColors[0], 0x030201);  // the unspecified tool's colour is element 0
  }

  // Nothing typed is refused: a bad entry reads as 0, and Enter moves on without closing.
  void NumberBoxReadsAbcAsZero() {
    LoneDialog d;
    d.record.ArcTolerance = 0.001;
    d.dialog.Refill();
    d.dialog.show();
    d.dialog.ShowPage(ConfigPageId::ControlSettings);
    d.dialog.activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(&d.dialog));
    auto* box = d.Find<QLineEdit>("txtArcTolerance");
    box->setFocus();
    QCoreApplication::processEvents();
    QCOMPARE(box->selectedText(), QString("0.001"));  // the whole text is selected
    QTest::keyClicks(box, "abc");
    QTest::keyClick(box, Qt::Key_Return);
    QCOMPARE(d.record.ArcTolerance, 0.0);
    QCOMPARE(box->text(), QString("0"));
    QVERIFY(!box->hasFocus());
    QVERIFY(d.dialog.isVisible());
  }

  void PagesShowTheRecordAndFollowTheMachineType() {
    LoneDialog d;
    d.record.MachineType = 1;
    d.record.LatheGCodeFormat = 1;
    d.record.ExternalGCodeMacros = {0, 810, 371};
    d.record.ToolColors = {0, 255, 65280};
    d.record.CoordinateResolution = 0.25;  // not on the list: shown and kept
    d.store[5262] = -4.5;
    d.dialog.Refill();
    QVERIFY(d.Find<QRadioButton>("optTypeLathe")->isChecked());
    QVERIFY(d.Find<QGroupBox>("frmLathe")->isEnabled());
    QVERIFY(!d.Find<QGroupBox>("frmMillType")->isEnabled());
    QVERIFY(d.Find<QLabel>("lblFormat")->text().startsWith("G90 Absolute\nG91 Incremental"));
    QCOMPARE(d.Find<QComboBox>("cmbCoordRes")->currentText(), QString("0.25"));
    QCOMPARE(d.Find<QListWidget>("lvExternalSubs")->item(1)->text(), QString("G371"));
    QCOMPARE(d.Find<QTableWidget>("flxColors")->verticalHeaderItem(1)->text(), QString("02"));
    QCOMPARE(d.Find<QTableWidget>("flxWShift")->item(2, 1)->text(), QString("-4.5"));
    d.Find<QRadioButton>("optTypeMill")->click();
    QVERIFY(!d.Find<QGroupBox>("frmLathe")->isEnabled());
    QCOMPARE(d.record.CoordinateResolution, 0.25);
    d.dialog.ShowPage(ConfigPageId::Dxf);
    QCOMPARE(d.dialog.windowTitle(), QString("Machine Configuration - DXF Options"));
  }

  void MacroGCodeAddedTwiceIsListedOnce() {
    LoneDialog d;
    d.record.ExternalGCodeMacros = {0};
    d.dialog.Refill();
    d.dialog.show();
    auto* box = d.Find<QLineEdit>("txtAddGMacro");
    for (int i = 0; i < 2; ++i) {
      QTest::keyClicks(box, "12");
      QTest::keyClick(box, Qt::Key_Return);
    }
    auto* list = d.Find<QListWidget>("lvExternalSubs");
    QCOMPARE(list->count(), 1);
    QCOMPARE(list->item(0)->text(), QString("G120"));
    QCOMPARE(d.record.ExternalGCodeMacros, (std::vector<std::int16_t>{0, 120}));
    QVERIFY(d.dialog.isVisible());  // Enter did not close the dialog
    list->setCurrentRow(0);
    d.Find<QPushButton>("cmdRemoveGMacro")->click();
    QCOMPARE(d.record.ExternalGCodeMacros, (std::vector<std::int16_t>{0}));
  }

  // A work offset goes to the store at once and stays there when the dialog is cancelled.
  void CancelKeepsAChangedWorkOffset() {
    const Scratch scratch;
    StartedPlot plot(scratch);
    const MachineConfig before = plot->Engine().Session.ActiveConfig;
    WhenDialogShows<MachineSetupDialog>("frmMSetup", [](MachineSetupDialog& dialog) {
      dialog.findChild<QRadioButton*>("optTypeLathe")->click();
      dialog.findChild<QTableWidget*>("flxWShift")->item(0, 0)->setText("12.5");
      dialog.findChild<QPushButton*>("cmdCancel")->click();
    });
    plot->Actions().Find("mnuMachineSetup")->trigger();
    QCOMPARE(plot->Engine().Variables.ReadNumber(5221), 12.5);
    QVERIFY(plot->Engine().Session.ActiveConfig == before);
  }

  // Save As a new name writes the file and a macro folder with copies of the macros, and the
  // menu lists the new machine.
  void SaveAsMakesANewMachineWithItsMacros() {
    const Scratch scratch;
    fs::copy(SourceData() / "CONFIG" / "default", scratch.Folder() / "CONFIG" / "default");
    StartedPlot plot(scratch);
    const std::string target = (scratch.Folder() / "CONFIG" / "Router").string();
    WhenDialogShows<MachineSetupDialog>("frmMSetup", [&target](MachineSetupDialog& dialog) {
      dialog.Dialogs.SaveFile = [&target](const QString&, const QString&, const QString&,
                                          QString&) { return QString::fromStdString(target); };
      dialog.findChild<QTableWidget*>("flxWShift")->item(1, 2)->setText("-3");
      dialog.findChild<QPushButton*>("cmdSaveAs")->click();
      dialog.findChild<QPushButton*>("cmdOK")->click();
    });
    plot->Actions().Find("mnuMachineSetup")->trigger();
    const std::string saved = scratch.Read(target + ".zmt");
    QVERIFY(saved.find("G55 = #5241=0 #5242=0 #5243=-3 #5244=0\r\n") != std::string::npos);
    QCOMPARE(scratch.Read((scratch.Folder() / "CONFIG" / "Router" / "G810.PRG").string()),
             scratch.Read((scratch.Folder() / "CONFIG" / "default" / "G810.PRG").string()));
    // OK applied the new machine: it is the one checked, and its offset survived the apply.
    QVERIFY(ConfigEntries(plot.window()).value("Router")->isChecked());
    QCOMPARE(plot->Engine().Variables.ReadNumber(5243), -3.0);
    QCOMPARE(plot->Panels().Text("cfg"), QString("  Router  "));
  }

  // The shipped mill and lathe, chosen from the menu: views, tool bars and the picture follow.
  void MenuSwitchesBetweenMillAndLathe() {
    const Scratch scratch;
    fs::copy_file(SourceData() / "CONFIG" / "Lathe.zmt", scratch.Folder() / "CONFIG" / "Lathe.zmt");
    const std::string program = scratch.Write("turn.nc", "G0 X0. Z0.\nG1 X2. Z-1.\n");
    StartedPlot plot(scratch);
    Plot& window = plot.window();
    window.RebuildConfigMenu();
    window.OpenPassedFile(program);
    window.LoadGeometry();
    const auto entries = ConfigEntries(window);
    QCOMPARE(entries.keys(), (QList<QString>{"Default", "Lathe"}));
    QVERIFY(entries["Default"]->isChecked());
    const GeometryTable& table = window.Engine().Table;
    const auto lastEnd = [&window, &table] {
      const GeoPoint& end = table[window.Engine().Driver.EntityCount()].EndPoint;
      return std::make_pair(end.X, end.Z);
    };
    QCOMPARE(lastEnd(), std::make_pair(2.0f, -1.0f));

    entries["Lathe"]->trigger();
    PlotActions& actions = window.Actions();
    QCOMPARE(window.Panels().Text("cfg"), QString("  Lathe  "));
    QVERIFY(ConfigEntries(window).value("Lathe")->isChecked());
    QVERIFY(!actions.Find("mnuViewTop")->isVisible());
    QVERIFY(!actions.Find("mnuViewISO")->isVisible());
    QVERIFY(actions.Find("mnuViewLatheFront")->isVisible());
    QVERIFY(actions.ToolBar("tlbView")->isHidden());
    QVERIFY(!actions.ToolBar("tlbLathe")->isHidden());
    QCOMPARE(window.Engine().View.View.CurrentView, std::int16_t(9));
    QCOMPARE(lastEnd(), std::make_pair(1.0f, -1.0f));  // X words are diameters on this lathe

    ConfigEntries(window).value("Default")->trigger();
    QVERIFY(actions.Find("mnuViewTop")->isVisible());
    QVERIFY(!actions.Find("mnuViewLatheFront")->isVisible());
    QVERIFY(!actions.ToolBar("tlbView")->isHidden());
    QVERIFY(actions.ToolBar("tlbLathe")->isHidden());
    QCOMPARE(window.Engine().View.View.CurrentView, std::int16_t(0));
    QCOMPARE(lastEnd(), std::make_pair(2.0f, -1.0f));
  }
};

ZEMTRA_TEST_CLASS(MachineSetupTest)

}  // namespace zemtra::test

#include "MachineSetupTest.moc"
