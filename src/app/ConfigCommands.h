#pragma once
// The machine configuration commands of the window: "Machine Setup..." at the head of the
// configuration menu opens the Machine Configuration dialog on the configuration in force.
// The menu's list of configuration files is the window's own (Plot::RebuildConfigMenu).
#include <QObject>

#include "app/MachineSetupDialog.h"

namespace zemtra {

class Plot;

// What the dialog reaches in the window: the variable store, applying the edited record (the
// views, the menu check and the picture follow), the isometric view and the configuration list.
MachineSetupLinks MachineSetupLinksFor(Plot& plot);

class ConfigCommands : public QObject {
  Q_OBJECT
 public:
  explicit ConfigCommands(Plot& plot);

  // mnuMachineSetup: the dialog, on a fresh copy of the configuration in force.
  void ShowMachineSetup();

 private:
  Plot& plot_;
};

}  // namespace zemtra
