#include "app/ScriptCommands.h"

#include <QAction>
#include <QFileDialog>
#include <QMenu>

#include "app/DocumentCommands.h"
#include "app/Plot.h"
#include "app/PlotActions.h"
#include "app/QtHost.h"
#include "app/StatusPanels.h"
#include "app/Workspace.h"
#include "core/AppFolder.h"
#include "script/ScriptApi.h"
#include "script/ScriptContext.h"
#include "script/ScriptHost.h"
#include "script/ScriptRunner.h"

namespace zemtra {

ScriptCommands::ScriptCommands(Plot& plot) : QObject(&plot), plot_(plot) {
  Workspace& engine = plot.Engine();
  context_ = std::make_unique<ScriptContext>(ScriptContext{engine.Editor,
                                                           engine.Session,
                                                           engine.Table,
                                                           plot.GetHost(),
                                                           plot.Environment().ApplicationFolder,
                                                           filters_,
                                                           {}});
  FillFrontEnd();
  api_ = std::make_unique<ScriptApi>(*context_);
  scripts_ = std::make_unique<ScriptHost>(*api_, plot.GetHost());
  ChooseFolder = [this] { return QFileDialog::getExistingDirectory(&plot_, "Select Folder"); };

  QMenu* menu = plot.Actions().Menu("mnuScripts");
  QAction* run = plot.Actions().AddCommand(menu, "mnuExecScript", "&Run Script...");
  connect(run, &QAction::triggered, this, [this] { RunScript(""); });
  separator_ = menu->addSeparator();
  connect(menu, &QMenu::aboutToShow, this, &ScriptCommands::RebuildScriptMenu);
  RebuildScriptMenu();

  plot.HeaderDirectiveRunner = [this](const std::vector<std::string>& directives) {
    RunHeaderDirectives(directives);
  };
}

ScriptCommands::~ScriptCommands() {
  plot_.HeaderDirectiveRunner = nullptr;
}

void ScriptCommands::FillFrontEnd() {
  ScriptFrontEnd& front = context_->FrontEnd;
  front.ApplyConfiguration = [this](const MachineConfig& record) {
    AsCommand([&] {
      plot_.ApplyConfiguration(record);
      plot_.SetMachineType(plot_.Engine().Session.ActiveConfig.MachineType);
      plot_.Engine().View.DrawGeometryTable();
      plot_.RebuildConfigMenu();
    });
  };
  front.LoadFile = [this](const std::string& path) {
    return plot_.Documents().LoadSourceFile(path);
  };
  front.Plot = [this] { AsCommand([this] { plot_.LoadGeometry(); }); };
  front.DocumentCleared = [this] {
    plot_.SetCaption("");
    plot_.RefreshEditState();
  };
  front.GeometryCleared = [this] { plot_.Engine().View.RefreshGeometry(0); };
  front.SaveAs = [this] { return plot_.Documents().SaveAs(); };
  front.ChooseFolder = [this] { return ChooseFolder ? ChooseFolder().toStdString() : ""; };
  front.Colorize = [this] { plot_.ColorizeProgram(); };
}

void ScriptCommands::WhileRunning(const std::function<void()>& run) {
  plot_.Busy = true;
  plot_.GetHost().setAbortRequested(false);
  filters_.ShortFormat = plot_.Settings().Formats().Short;
  run();
  plot_.Busy = false;
  plot_.RefreshEditState();
}

void ScriptCommands::AsCommand(const std::function<void()>& command) {
  const bool busy = plot_.Busy;
  plot_.Busy = false;
  command();
  plot_.Busy = busy;
}

std::string ScriptCommands::ScriptFolder() const {
  return FindPathNoCase(plot_.Environment().ApplicationFolder, "SCRIPTS").string();
}

void ScriptCommands::RunScript(const std::string& path) {
  if (plot_.Busy || scripts_->Running()) return;
  WhileRunning([&] {
    zemtra::RunScript(path, *scripts_, plot_.GetHost(), plot_.Engine().Editor.Document,
                      ScriptFolder());
  });
}

void ScriptCommands::RunHeaderDirectives(const std::vector<std::string>& directives) {
  plot_.Panels().Set("script", "");
  if (directives.empty() || plot_.Busy || scripts_->Running()) return;
  WhileRunning([&] { zemtra::RunHeaderDirectives(directives, *scripts_, plot_.GetHost()); });
}

void ScriptCommands::RebuildScriptMenu() {
  QMenu* menu = plot_.Actions().Menu("mnuScripts");
  for (QAction* item : scriptItems_) {
    menu->removeAction(item);
    item->deleteLater();
  }
  scriptItems_.clear();
  const std::vector<std::filesystem::path> scripts = ListScripts(ScriptFolder());
  separator_->setVisible(!scripts.empty());
  for (std::size_t i = 0; i < scripts.size(); ++i) {
    auto* item = new QAction(QString::fromStdString(ScriptCaption(scripts[i])), menu);
    item->setObjectName(QString("mnuScript%1").arg(i));
    const std::string path = scripts[i].string();
    connect(item, &QAction::triggered, this, [this, path] { RunScript(path); });
    menu->addAction(item);
    scriptItems_.push_back(item);
  }
}

}  // namespace zemtra
