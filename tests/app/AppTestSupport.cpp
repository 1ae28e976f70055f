#include "app/AppTestSupport.h"

#include <QCoreApplication>
#include <QLineEdit>
#include <QSignalSpy>
#include <QTest>
#include <fstream>
#include <sstream>

#include "app/QtHost.h"
#include "app/QtSettingsStore.h"
#include "app/SingleInstance.h"
#include "app/StartUp.h"
#include "app/Workspace.h"

namespace zemtra::test {

std::filesystem::path SourceData() {
  const QByteArray value = qgetenv("ZEMTRA_SOURCE_DATA");
  return value.isEmpty() ? std::filesystem::path(ZEMTRA_SOURCE_DATA_DIR)
                         : std::filesystem::path(value.toStdString());
}

Scratch::Scratch() : channel_(SingleInstance::DefaultServerName(dir_.path())) {
  std::filesystem::create_directories(Folder() / "CONFIG");
  std::filesystem::copy_file(SourceData() / "CONFIG" / "default.zmt",
                             Folder() / "CONFIG" / "default.zmt");
}

std::filesystem::path Scratch::Folder() const {
  return std::filesystem::path(dir_.path().toStdString());
}

QString Scratch::SettingsFile() const {
  return dir_.filePath("Zemtra.conf");
}

std::string Scratch::Write(const std::string& name, const std::string& bytes) const {
  const std::filesystem::path path = Folder() / name;
  std::filesystem::create_directories(path.parent_path());
  std::ofstream(path, std::ios::binary) << bytes;
  return path.string();
}

std::string Scratch::Read(const std::string& path) const {
  std::ifstream in(path, std::ios::binary);
  std::ostringstream bytes;
  bytes << in.rdbuf();
  return bytes.str();
}

QString Scratch::Channel() const {
  return channel_;
}

StartedPlot::StartedPlot(const Scratch& scratch, const std::string& commandLine,
                         std::shared_ptr<SettingsStore> settings) {
  PlotEnvironment environment;
  environment.ApplicationFolder = scratch.Folder();
  environment.Settings =
      settings ? settings : std::make_shared<QtSettingsStore>(scratch.SettingsFile());
  environment.InstanceChannel = scratch.Channel();
  environment.CommandLine = commandLine;
  plot_ = std::make_unique<Plot>(environment);
  plot_->GetHost().setPromptHandler([this](const Prompt& prompt) {
    prompts.push_back(prompt);
    if (answers.empty()) return DefaultAnswer(prompt.buttons);
    const MsgAnswer answer = answers.front();
    answers.pop_front();
    return answer;
  });
  plot_->GetHost().setFileChooser(
      [this](std::string_view title, std::string_view, std::string_view) {
        prompts.push_back(Prompt{"choose file", std::string(title), MsgIcon::None, MsgButtons::Ok});
        return std::string();
      });
  auto* startUp = new StartUp(*plot_);
  QSignalSpy started(plot_.get(), &Plot::startUpFinished);
  outcome_ = startUp->Run();
  if (outcome_ != StartUp::Outcome::Ready) return;
  plot_->show();
  if (started.isEmpty()) started.wait(5000);
}

StartedPlot::~StartedPlot() {
  if (plot_ && plot_->isVisible()) {
    answers.assign(4, MsgAnswer::No);
    plot_->close();
  }
}

bool StartedPlot::close() {
  return plot_->close();
}

OpenedProgram::OpenedProgram(const std::string& name, const std::string& program,
                             std::shared_ptr<SettingsStore> settings)
    : path(scratch.Write(name, program)), plot(scratch, "", std::move(settings)) {
  plot->OpenPassedFile(path);
}

const std::string& DocumentText(StartedPlot& plot) {
  return plot->Engine().Editor.Document.Text();
}

void SetText(QWidget& parent, const char* name, const QString& text) {
  parent.findChild<QLineEdit*>(name)->setText(text);
}

void SaveShot(QWidget& widget, const char* name) {
  const QString folder = qEnvironmentVariable("ZEMTRA_SHOTS");
  if (!folder.isEmpty()) widget.grab().save(folder + "/" + name);
}

}  // namespace zemtra::test
