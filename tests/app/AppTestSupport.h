#pragma once
// Helpers of the window tests: a scratch application folder with the shipped configuration, a
// settings file of its own, a started main window whose message boxes are answered by script,
// and file helpers.
#include <QString>
#include <QTemporaryDir>
#include <deque>
#include <filesystem>
#include <memory>
#include <string>
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

// The test classes of one test program (each *Test.cpp file is a program of its own).
std::vector<std::unique_ptr<QObject>> MakeTests();

}  // namespace zemtra::test
