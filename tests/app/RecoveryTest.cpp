// Crash recovery: unsaved text reaches the recovery file, a save and a normal exit remove it,
// and after a process is killed the next start offers the text back.
#include <signal.h>

#include <QCoreApplication>
#include <QProcess>
#include <QProcessEnvironment>
#include <QSignalSpy>
#include <QTest>
#include <QTimer>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <string>

#include "app/AppTestSupport.h"
#include "app/DocumentCommands.h"
#include "app/ProgramTextView.h"
#include "app/QtSettingsStore.h"
#include "app/Recovery.h"
#include "app/SingleInstance.h"
#include "app/Workspace.h"
#include "core/AppFolder.h"
#include "editor/RecoveryFile.h"

namespace zemtra::test {

namespace {

namespace fs = std::filesystem;

constexpr const char* kChildVariable = "ZEMTRA_RECOVERY_TEST_CHILD";
constexpr const char* kOriginal = "G0 X0 Y0\r\nM30\r\n";
constexpr const char* kTyped = "G1 X5 Y5";

Recovery& RecoveryOf(Plot& plot) {
  return *plot.findChild<Recovery*>("Recovery");
}

std::size_t RecoveryFileCount(const fs::path& folder) {
  std::size_t count = 0;
  std::error_code code;
  for (const auto& entry : fs::directory_iterator(folder, code)) {
    count += entry.path().extension() == ".recovery";
  }
  return count;
}

// The child: the program started on $ZEMTRA_HOME with part.nc, an edit typed into the editor,
// then "READY" once the recovery file is written, and waiting to be killed.
[[noreturn]] void RunEditingChild() {
  QTimer::singleShot(120000, [] { std::_Exit(3); });  // never outlive a lost parent
  PlotEnvironment environment;
  environment.ApplicationFolder = ApplicationFolder();
  environment.Settings = std::make_shared<QtSettingsStore>();
  environment.InstanceChannel =
      SingleInstance::DefaultServerName(QString::fromStdString(environment.ApplicationFolder));
  environment.CommandLine = (environment.ApplicationFolder / "part.nc").string();
  Plot window(environment);
  QSignalSpy started(&window, &Plot::startUpFinished);
  auto* startUp = new StartUp(window);
  if (startUp->Run() != StartUp::Outcome::Ready) std::_Exit(4);
  window.show();
  if (started.isEmpty() && !started.wait(60000)) std::_Exit(5);
  QTest::keyClicks(window.Editor(), kTyped);
  const fs::path file = RecoveryOf(window).File();
  while (!fs::exists(file)) QTest::qWait(20);
  std::printf("READY\n");
  std::fflush(stdout);
  for (;;) QTest::qWait(1000);
}

}  // namespace

class RecoveryTest : public QObject {
  Q_OBJECT
 private slots:
  void initTestCase() { qputenv("ZEMTRA_RECOVERY_INTERVAL_MS", "100"); }

  // The acceptance case: a real process killed with SIGKILL after an edit; the next start
  // asks, and Yes brings the edited text back as an unsaved document of the same file.
  void KilledInstanceOffersItsTextAtTheNextStart() {
    const Scratch scratch;
    const std::string part = scratch.Write("part.nc", kOriginal);
    const fs::path home = scratch.Folder() / "home";
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(kChildVariable, "1");
    environment.insert("ZEMTRA_HOME", QString::fromStdString(scratch.Folder().string()));
    environment.insert("HOME", QString::fromStdString(home.string()));
    environment.insert("XDG_CONFIG_HOME", QString::fromStdString((home / "config").string()));
    environment.insert("XDG_STATE_HOME", QString::fromStdString((home / "state").string()));
    environment.insert("XDG_DATA_HOME", QString::fromStdString((home / "data").string()));
    environment.insert("QT_QPA_PLATFORM", "offscreen");
    QProcess child;
    child.setProcessEnvironment(environment);
    child.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    child.start(QCoreApplication::applicationFilePath(), {});
    QVERIFY(child.waitForStarted(30000));
    QByteArray output;
    while (!output.contains("READY") && child.state() == QProcess::Running) {
      child.waitForReadyRead(1000);
      output += child.readAllStandardOutput();
    }
    QVERIFY2(output.contains("READY"), output.constData());
    ::kill(static_cast<pid_t>(child.processId()), SIGKILL);
    QVERIFY(child.waitForFinished(30000));
    QCOMPARE(child.exitStatus(), QProcess::CrashExit);
    const fs::path folder = Recovery::FolderFor(scratch.Folder());
    QCOMPARE(RecoveryFileCount(folder), std::size_t(1));

    StartedPlot plot(scratch);
    plot.answers.push_back(MsgAnswer::Yes);
    QTRY_COMPARE_WITH_TIMEOUT(plot.prompts.size(), std::size_t(1), 10000);
    const Prompt& asked = plot.prompts.front();
    QVERIFY2(asked.text.starts_with("Recover unsaved changes to part.nc from ") &&
                 asked.text.ends_with("?"),
             asked.text.c_str());
    QCOMPARE(asked.buttons, MsgButtons::YesNo);
    const ProgramDocument& document = plot->Engine().Editor.Document;
    QCOMPARE(document.Text(), std::string(kTyped) + kOriginal);
    QCOMPARE(document.CurrentFile(), part);
    QVERIFY(document.DocumentModified());
    QCOMPARE(scratch.Read(part), std::string(kOriginal));  // nothing was saved behind the user
    // The dead instance's file is gone; this instance keeps the text safe in its own.
    QCOMPARE(RecoveryFileCount(folder), std::size_t(1));
    QVERIFY(fs::exists(RecoveryOf(plot.window()).File()));
  }

  // Unsaved text is written while the window runs; a save removes it, and so does a normal
  // exit that gives the changes up.
  void SaveAndNormalExitRemoveTheFile() {
    const Scratch scratch;
    const std::string part = scratch.Write("part.nc", kOriginal);
    fs::path file;
    {
      StartedPlot plot(scratch, part);
      file = RecoveryOf(plot.window()).File();
      ProgramDocument& document = plot->Engine().Editor.Document;
      document.ReplaceSelection("G1 X1\r\n");
      QTRY_VERIFY_WITH_TIMEOUT(fs::exists(file), 5000);
      RecoveryRecord record;
      std::string bytes = scratch.Read(file.string());
      QVERIFY(ParseRecoveryFile(bytes, record));
      QCOMPARE(record.Text, document.Text());
      QCOMPARE(record.DocumentPath, part);
      QVERIFY(plot->Documents().Save());
      QVERIFY(!fs::exists(file));
      document.ReplaceSelection("G1 X2\r\n");
      QTRY_VERIFY_WITH_TIMEOUT(fs::exists(file), 5000);
      plot.answers.push_back(MsgAnswer::No);  // "Save Changes to:"
      QVERIFY(plot.close());
    }
    QVERIFY(!fs::exists(file));
    QCOMPARE(RecoveryFileCount(Recovery::FolderFor(scratch.Folder())), std::size_t(0));
  }

  // No deletes the offered file and leaves the document alone.
  void DeclinedRecoveryIsDeleted() {
    const Scratch scratch;
    const fs::path folder = Recovery::FolderFor(scratch.Folder());
    {
      RecoveryWriter ended(folder, "ended");
      RecoveryRecord record;
      record.Text = "G1 X9\r\n";
      FileError error;
      QVERIFY(ended.Write(record, error));
    }
    StartedPlot plot(scratch);
    plot.answers.push_back(MsgAnswer::No);
    QTRY_COMPARE_WITH_TIMEOUT(plot.prompts.size(), std::size_t(1), 10000);
    QVERIFY(plot.prompts.front().text.starts_with("Recover unsaved changes to Untitled from "));
    QCOMPARE(plot->Engine().Editor.Document.Text(), std::string());
    QCOMPARE(RecoveryFileCount(folder), std::size_t(0));
  }
};

std::vector<std::unique_ptr<QObject>> MakeTests() {
  if (qEnvironmentVariableIsSet(kChildVariable)) RunEditingChild();
  std::vector<std::unique_ptr<QObject>> tests;
  tests.push_back(std::make_unique<RecoveryTest>());
  return tests;
}

}  // namespace zemtra::test

#include "RecoveryTest.moc"
