#include "app/Features.h"

#include <QAction>
#include <QMenu>
#include <QMenuBar>

#include "app/AnimationCommands.h"
#include "app/CalcCommands.h"
#include "app/ConfigCommands.h"
#include "app/DncCommands.h"
#include "app/DxfCommands.h"
#include "app/FilterCommands.h"
#include "app/Plot.h"
#include "app/PlotActions.h"
#include "app/Recovery.h"
#include "app/ScriptCommands.h"
#include "app/SelectionCommands.h"
#include "app/StepCommands.h"
#include "app/TextCommands.h"

namespace zemtra {

namespace {

void HideEmptyMenus(Plot& window) {
  for (QAction* entry : window.menuBar()->actions()) {
    QMenu* menu = entry->menu();
    if (menu != nullptr) entry->setVisible(!menu->actions().isEmpty());
  }
}

}  // namespace

std::vector<QObject*> InstallFeatures(Plot& window) {
  // One line per command set, in menu order.
  std::vector<QObject*> sets = {
      new FilterCommands(window),    new TextCommands(window), new CalcCommands(window),
      new DxfCommands(window),       new DncCommands(window),  new ScriptCommands(window),
      new ConfigCommands(window),    new Recovery(window),     new SelectionCommands(window),
      new AnimationCommands(window), new StepCommands(window),
  };
  HideEmptyMenus(window);
  return sets;
}

}  // namespace zemtra
