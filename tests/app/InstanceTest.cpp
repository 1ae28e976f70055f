// One program per user and folder: a second start hands its command line to the first, which
// opens the file; with "Multi Instance" on the second runs but keeps its hands off the settings.
#include <QProcess>
#include <QTest>

#include "app/AppTestSupport.h"
#include "app/PlotActions.h"
#include "app/QtSettingsStore.h"
#include "app/SingleInstance.h"
#include "app/Workspace.h"
#include "core/SettingsStore.h"

namespace zemtra::test {

static std::string CurrentFile(StartedPlot& plot) {
  return plot->Engine().Editor.Document.CurrentFile();
}

class InstanceTest : public QObject {
  Q_OBJECT
 private slots:
  void SecondStartHandsOverItsFile() {
    const Scratch scratch;
    const std::string path = scratch.Write("dir with blank/part 1.nc", "G0 X1\nG1 X2\n");
    StartedPlot first(scratch);
    QVERIFY(first->Instance().IsListening());
    StartedPlot second(scratch, path);
    QCOMPARE(second.outcome(), StartUp::Outcome::HandedOver);
    QTRY_COMPARE(CurrentFile(first), path);
    QCOMPARE(first->Engine().Driver.EntityCount(), 1);
  }

  // A file that arrives while the first is busy is still opened.
  void FileArrivesWhileBusy() {
    const Scratch scratch;
    const std::string path = scratch.Write("busy.nc", "G0 X1\n");
    StartedPlot first(scratch);
    first->Busy = true;
    SingleInstance other(scratch.Channel());
    QVERIFY(other.HandOver("\"" + QString::fromStdString(path) + "\""));
    QTRY_COMPARE(CurrentFile(first), path);
    first->Busy = false;
  }

  // The real program started a second time with a file: it hands it over and ends.
  void SecondProgramProcessHandsOver() {
    const Scratch scratch;
    const std::string path = scratch.Write("proc.nc", "G0 X1\nG1 Y1\n");
    StartedPlot first(scratch);
    QProcess second;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert("ZEMTRA_HOME", QString::fromStdString(scratch.Folder().string()));
    environment.insert("XDG_CONFIG_HOME", QString::fromStdString(scratch.Folder().string()));
    environment.insert("QT_QPA_PLATFORM", "offscreen");
    second.setProcessEnvironment(environment);
    second.start(ZEMTRA_APP_BINARY, {QString::fromStdString(path)});
    QVERIFY(second.waitForFinished(15000));
    QCOMPARE(second.exitCode(), 0);
    QTRY_COMPARE(CurrentFile(first), path);
  }

  // Allowed a second window, that one saves nothing at exit: the first's settings stand.
  void SecondInstanceSavesNothing() {
    const Scratch scratch;
    {
      QtSettingsStore store(scratch.SettingsFile());
      store.SaveSetting("General", "Multi Instance", "-1");
      QVERIFY(store.Sync());
    }
    StartedPlot first(scratch);
    StartedPlot second(scratch);
    QCOMPARE(second.outcome(), StartUp::Outcome::Ready);
    QVERIFY(second->PreviousInstance);
    second->Actions().Find("mnuShowTicks")->trigger();
    QVERIFY(second.close());
    QtSettingsStore store(scratch.SettingsFile());
    QCOMPARE(store.GetSetting("General", "ShowTicks", "absent"), std::string("absent"));
    QVERIFY(first.close());
    QtSettingsStore after(scratch.SettingsFile());
    QCOMPARE(after.GetSetting("General", "ShowTicks"), std::string("True"));
  }

  // No configuration anywhere and none chosen: the program does not start.
  void StartEndsWithoutConfiguration() {
    const Scratch scratch;
    std::filesystem::remove(scratch.Folder() / "CONFIG" / "default.zmt");
    StartedPlot plot(scratch);
    QCOMPARE(plot.outcome(), StartUp::Outcome::NoConfiguration);
    QVERIFY(!plot.prompts.empty());
  }

  void ConfigurationOfTheCommandLineIsUsed() {
    const Scratch scratch;
    const std::string lathe = scratch.Read((SourceData() / "CONFIG" / "default.zmt").string());
    std::string text = lathe;
    text.replace(text.find("Machine Type = 0"), 16, "Machine Type = 1");
    scratch.Write("CONFIG/Lathe 2.zmt", text);
    StartedPlot plot(scratch, "CONFIG=\"lathe 2\"");
    QCOMPARE(plot->Engine().Session.ActiveConfig.MachineType, std::int16_t(1));
    QVERIFY(!plot->Actions().Find("mnuViewTop")->isVisible());
    QVERIFY(plot->Actions().Find("mnuViewLatheBack")->isChecked());
    QCOMPARE(plot->Engine().View.View.CurrentView, std::int16_t(9));
  }
};

ZEMTRA_TEST_CLASS(InstanceTest)

}  // namespace zemtra::test

#include "InstanceTest.moc"
