#pragma once
// Helpers of the window tests: a scratch application folder with the shipped configuration, a
// settings file of its own, a started main window whose message boxes are answered by script,
// and file and dialog helpers.
#include <QApplication>
#include <QString>
#include <QTemporaryDir>
#include <QTest>
#include <QTimer>
#include <deque>
#include <filesystem>
#include <functional>
#include <memory>
#include <string>
#include <type_traits>
#include <vector>

#include "app/Plot.h"
#include "app/StartUp.h"
#include "core/Host.h"

class QObject;

namespace zemtra::test {

// The shipped data folder (ZEMTRA_SOURCE_DATA).
std::filesystem::path SourceData();

// A folder that lives as long as the object: CONFIG/default.zmt, a settings file, programs.
class Scratch {
 public:
  Scratch();
  std::filesystem::path Folder() const;
  QString SettingsFile() const;
  // Writes `bytes` to `name` in the folder and returns the full path.
  std::string Write(const std::string& name, const std::string& bytes) const;
  std::string Read(const std::string& path) const;
  // The single-instance channel of this folder's program: its own, so that tests never meet
  // each other or the user's program.
  QString Channel() const;

 private:
  QTemporaryDir dir_;
  QString channel_;
};

// A main window made and started as the program does it, on a scratch folder. Messages are
// recorded and answered from `answers` (then with the button set's default).
class StartedPlot {
 public:
  StartedPlot(const Scratch& scratch, const std::string& commandLine = "",
              std::shared_ptr<SettingsStore> settings = nullptr);
  ~StartedPlot();

  Plot& window() { return *plot_; }
  Plot* operator->() { return plot_.get(); }
  StartUp::Outcome outcome() const { return outcome_; }
  // Closes the window as the user would; true when it closed.
  bool close();

  std::vector<Prompt> prompts;
  std::deque<MsgAnswer> answers;

 private:
  std::unique_ptr<Plot> plot_;
  StartUp::Outcome outcome_;
};

// A window started on a scratch folder of its own, with `program` written there as `name` and
// opened.
struct OpenedProgram {
  OpenedProgram(const std::string& name, const std::string& program,
                std::shared_ptr<SettingsStore> settings = nullptr);
  Scratch scratch;
  std::string path;
  StartedPlot plot;
};

// The text of the window's document.
const std::string& DocumentText(StartedPlot& plot);

// Sets the text of the line edit `name` inside `parent`.
void SetText(QWidget& parent, const char* name, const QString& text);

// With ZEMTRA_SHOTS set to a folder, saves a picture of `widget` there to be looked at.
void SaveShot(QWidget& widget, const char* name);

// Runs `work` on the modal dialog `name` as soon as it shows; call what opens it next. Another
// window shown instead is closed and the test fails, so that it never hangs on it.
template <typename Dialog = QWidget>
void WhenDialogShows(const char* name, std::type_identity_t<std::function<void(Dialog&)>> work) {
  QTimer::singleShot(0, [name, work] {
    QWidget* shown = QApplication::activeModalWidget();
    auto* dialog = qobject_cast<Dialog*>(shown);
    if (dialog == nullptr || dialog->objectName() != name) {
      if (shown != nullptr) shown->close();
      QFAIL(qPrintable(QString("dialog %1 did not show").arg(name)));
    }
    work(*dialog);
  });
}

// The test classes of one test program (each *Test.cpp file is a program of its own).
std::vector<std::unique_ptr<QObject>> MakeTests();

}  // namespace zemtra::test

// Makes `Class` the one test class of this program; written inside namespace zemtra::test.
#define ZEMTRA_TEST_CLASS(Class)                      \
  std::vector<std::unique_ptr<QObject>> MakeTests() { \
    std::vector<std::unique_ptr<QObject>> tests;      \
    tests.push_back(std::make_unique<Class>());       \
    return tests;                                     \
  }
