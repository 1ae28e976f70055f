#include "app/ConfigCommands.h"

#include <QAction>
#include <QMenu>

#include "app/Plot.h"
#include "app/PlotActions.h"
#include "app/QtHost.h"
#include "app/Workspace.h"
#include "view/Views.h"

namespace zemtra {

namespace {

// ApplyConfig with the edited record, then the machine type's views and a fresh picture.
void ApplyEditedConfig(Plot& plot) {
  Workspace& engine = plot.Engine();
  plot.ApplyConfiguration(engine.Session.EditConfig);
  plot.SetMachineType(engine.Session.ActiveConfig.MachineType);
  engine.View.DrawGeometryTable();
  plot.RebuildConfigMenu();
}

// A horizontal mill shows its isometric view standing up.
void FollowMillType(Plot& plot, int millType) {
  const int view = plot.Engine().View.View.CurrentView;
  if (IsIsoView(view)) plot.SetView(millType == 1 ? kViewIsoLathe : kViewIsoMill);
}

}  // namespace

MachineSetupLinks MachineSetupLinksFor(Plot& plot) {
  Workspace& engine = plot.Engine();
  MachineSetupLinks links;
  links.ApplicationFolder = plot.Environment().ApplicationFolder;
  links.ReadVariable = [&engine](int number) { return engine.Variables.ReadVariable(number); };
  links.WriteVariable = [&engine](int number, double value) {
    engine.Variables.WriteNumber(number, value);
  };
  links.Apply = [&plot] { ApplyEditedConfig(plot); };
  links.MillTypeChanged = [&plot](int millType) { FollowMillType(plot, millType); };
  links.FilesChanged = [&plot] { plot.RebuildConfigMenu(); };
  return links;
}

ConfigCommands::ConfigCommands(Plot& plot) : QObject(&plot), plot_(plot) {
  PlotActions& actions = plot.Actions();
  QMenu* menu = actions.Menu("mnuConfig");
  QAction* setup = actions.AddCommand(menu, "mnuMachineSetup", "&Machine Setup...");
  menu->addSeparator();
  connect(setup, &QAction::triggered, this, &ConfigCommands::ShowMachineSetup);
}

void ConfigCommands::ShowMachineSetup() {
  if (plot_.Busy) return;
  Workspace& engine = plot_.Engine();
  engine.Session.EditConfig = engine.Session.ActiveConfig;
  MachineSetupDialog dialog(engine.Session.EditConfig, plot_.GetHost(), MachineSetupLinksFor(plot_),
                            &plot_);
  dialog.exec();
}

}  // namespace zemtra
