#include "app/Features.h"

#include <QAction>
#include <QMenu>
#include <QMenuBar>

#include "app/Plot.h"
#include "app/PlotActions.h"

namespace zemtra {

namespace {

void HideEmptyMenus(Plot& window) {
  for (QAction* entry : window.menuBar()->actions()) {
    QMenu* menu = entry->menu();
    if (menu != nullptr) entry->setVisible(!menu->actions().isEmpty());
  }
}

}  // namespace

void InstallFeatures(Plot& window) {
  // One line per command set, in menu order.
  HideEmptyMenus(window);
}

}  // namespace zemtra
