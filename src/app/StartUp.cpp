#include "app/StartUp.h"

#include <QAction>
#include <QGuiApplication>
#include <QScreen>
#include <QTimer>
#include <filesystem>
#include <system_error>

#include "app/AppSettings.h"
#include "app/CommandLine.h"
#include "app/DocumentCommands.h"
#include "app/Plot.h"
#include "app/PlotActions.h"
#include "app/ProgramTextView.h"
#include "app/QtHost.h"
#include "app/SingleInstance.h"
#include "app/StatusPanels.h"
#include "app/Workspace.h"
#include "config/ConfigFile.h"
#include "core/SettingsStore.h"
#include "core/TextUtil.h"

namespace zemtra {

namespace {

constexpr int kTimer1Ms = 10;
constexpr int kFirstPositionVariable = 5001;
constexpr int kLastPositionVariable = 5060;

bool FileExists(const std::string& path) {
  std::error_code error;
  return !path.empty() && std::filesystem::is_regular_file(path, error);
}

}  // namespace

StartUp::StartUp(Plot& plot) : QObject(&plot), plot_(plot) {}

StartUp::Outcome StartUp::Run() {
  TakeCommandLine();
  ReadMultiInstance();
  if (HandOverToRunningInstance()) return Outcome::HandedOver;
  AttachUndo();
  ResetGeometry();
  // The locale's decimal separator needs no step: FormatNumberText always writes ".".
  ReadPaneLayout();
  if (!LoadConfiguration()) return Outcome::NoConfiguration;
  ApplyConfiguration();
  ReadSettings();
  ListenForOtherStarts();
  PlaceWindow();
  plot_.LayOutPanes();
  ResetView();
  ShowUntitled();
  PrepareInterpreter();
  CheckScriptHost();
  StartTimer1();
  return Outcome::Ready;
}

void StartUp::TakeCommandLine() {
  plot_.CommandArgument = TrimText(plot_.Environment().CommandLine);
}

void StartUp::ReadMultiInstance() {
  plot_.MultiInstance = LoadMultiInstance(plot_.Store());
}

// With "Multi Instance" off a second start gives its command line, untrimmed, to the first and
// ends, touching no setting. With it on, the second runs but will save nothing at exit.
bool StartUp::HandOverToRunningInstance() {
  SingleInstance& instance = plot_.Instance();
  plot_.PreviousInstance = instance.OtherInstanceRunning();
  if (!plot_.PreviousInstance || plot_.MultiInstance) return false;
  const QString commandLine = QString::fromStdString(plot_.Environment().CommandLine);
  if (instance.HandOver(commandLine)) return true;
  plot_.PreviousInstance = false;  // it went away meanwhile: this one takes over
  return false;
}

void StartUp::AttachUndo() {
  ProgramEditor& editor = plot_.Engine().Editor;
  if (!editor.Undo.Attached()) editor.Undo.Attach(editor.Document);
}

void StartUp::ResetGeometry() {
  Workspace& engine = plot_.Engine();
  engine.Table.Clear();
  engine.View.DrawFirst = 0;
  engine.View.DrawLast = 1;
  plot_.Settings().Subprograms.SubProgramFiles.clear();
}

void StartUp::ReadPaneLayout() {
  const int scaleWidth = plot_.width() * kTwipsPerPixel;
  plot_.Panes = LoadPaneLayout(plot_.Store(), (scaleWidth - 100) / 2);
}

// The configuration named on the command line, else the one of the settings; LoadConfig falls
// back to CONFIG/default.zmt and asks for another file when even that is missing.
bool StartUp::LoadConfiguration() {
  std::string path =
      ParseConfigArgument(plot_.CommandArgument, plot_.Environment().ApplicationFolder);
  if (path.empty()) path = plot_.Store().GetSetting("StartUp", "Config", "");
  Workspace& engine = plot_.Engine();
  std::vector<std::string> warnings;
  if (!LoadConfig(path, engine.Session.EditConfig, plot_.GetHost(),
                  plot_.Environment().ApplicationFolder, &warnings)) {
    return false;
  }
  plot_.ConfigFile = path;
  plot_.ConfigLoaded = true;
  if (!warnings.empty()) {
    plot_.Panels().Set("msg", QString("%1: %2 value(s) could not be read")
                                  .arg(QString::fromStdString(FileNameOf(path)))
                                  .arg(warnings.size()));
  }
  return true;
}

void StartUp::ApplyConfiguration() {
  plot_.ApplyConfiguration(plot_.Engine().Session.EditConfig);
  plot_.RebuildConfigMenu();
}

void StartUp::ReadSettings() {
  Workspace& engine = plot_.Engine();
  LoadSettings(plot_.Store(), plot_.Settings(), FileExists, engine.View.View, engine.View.Switches);
  plot_.ApplySettingsToWindow();
}

void StartUp::ListenForOtherStarts() {
  if (!plot_.PreviousInstance) plot_.Instance().Listen();
}

// The saved placement, or the design size in the middle of the screen.
void StartUp::PlaceWindow() {
  const QRect screen = QGuiApplication::primaryScreen()->availableGeometry();
  WindowPlacement defaults;
  defaults.Width = static_cast<float>(plot_.width() * kTwipsPerPixel);
  defaults.Height = static_cast<float>(plot_.height() * kTwipsPerPixel);
  defaults.Top = (screen.height() * kTwipsPerPixel - defaults.Height) / 2;
  defaults.Left = (screen.width() * kTwipsPerPixel - defaults.Width) / 2;
  const WindowPlacement placement = LoadWindowPlacement(plot_.Store(), defaults);
  plot_.SavedPlacement = placement;
  plot_.setGeometry(static_cast<int>(placement.Left / kTwipsPerPixel),
                    static_cast<int>(placement.Top / kTwipsPerPixel),
                    static_cast<int>(placement.Width / kTwipsPerPixel),
                    static_cast<int>(placement.Height / kTwipsPerPixel));
  showMaximized_ = placement.WindowState == 2;
}

void StartUp::ResetView() {
  Viewport& view = plot_.Engine().View;
  view.View.ZoomFactor = 1.2f;
  view.View.SetViewAngle(view.View.ViewAngle);
  view.View.SetTipAngle(view.View.TipAngle);
  view.ZoomDefault();
}

void StartUp::ShowUntitled() {
  plot_.SetCaption("");
  plot_.Panels().Set("line", "1");
}

void StartUp::PrepareInterpreter() {
  plot_.Engine().Interp.InitInterpreter();
}

// The script host comes with the window's script commands; without it the script commands are
// disabled and the "script" panel says so.
void StartUp::CheckScriptHost() {
  if (plot_.HeaderDirectiveRunner) return;
  if (QAction* run = plot_.Actions().Find("mnuExecScript")) run->setEnabled(false);
  plot_.Panels().Set("script", "Scripts Disabled");
}

void StartUp::StartTimer1() {
  timer1_ = new QTimer(this);
  timer1_->setObjectName("Timer1");
  timer1_->setSingleShot(true);
  timer1_->setInterval(kTimer1Ms);
  connect(timer1_, &QTimer::timeout, this, &StartUp::FinishStart);
  if (showMaximized_) plot_.setWindowState(plot_.windowState() | Qt::WindowMaximized);
  timer1_->start();
}

// --- Timer1 -------------------------------------------------------------------------------------

void StartUp::FinishStart() {
  plot_.LayOutPanes();  // again, now that the window has its size
  plot_.Engine().View.RepaintBlocked = false;
  ApplyMachineType();
  RestoreVariables();
  OpenCommandLineFile();
  SettleDocument();
  emit plot_.startUpFinished();
}

void StartUp::ApplyMachineType() {
  Workspace& engine = plot_.Engine();
  plot_.SetMachineType(engine.Session.ActiveConfig.MachineType);
  plot_.SetView(engine.View.View.CurrentView);
  plot_.LoadRebarState();
}

void StartUp::RestoreVariables() {
  VariableStore& variables = plot_.Engine().Variables;
  if (plot_.Settings().Preferences.SaveVariablesOnExit) {
    variables.RestoreVariableState(plot_.Store());
  }
  for (int n = kFirstPositionVariable; n <= kLastPositionVariable; ++n) variables.WriteNumber(n, 0);
}

// What remains of the command line is one path; blanks in it need no quotes. A name that does
// not exist is passed over without a word.
void StartUp::OpenCommandLineFile() {
  const std::string path = PassedFileName(plot_.CommandArgument);
  if (FileExists(path)) plot_.OpenPassedFile(path);
}

void StartUp::SettleDocument() {
  Workspace& engine = plot_.Engine();
  engine.Editor.ResetUndo();
  plot_.RefreshEditState();
  engine.View.DrawGeometryTable();
}

}  // namespace zemtra
