#include "app/TextCommands.h"

#include <QAction>
#include <QMenu>
#include <string>

#include "app/Plot.h"
#include "app/PlotActions.h"
#include "app/ProgramTextView.h"
#include "app/QtHost.h"
#include "app/TextToGCodeDialog.h"
#include "app/Workspace.h"

namespace zemtra {

TextCommands::TextCommands(Plot& plot) : QObject(&plot), plot_(plot) {
  setObjectName("TextCommands");
  PlotActions& actions = plot.Actions();
  QMenu* tools = actions.Menu("mnuTools");
  QAction* font = actions.AddCommand(tools, "mnuFont", "&Text to G-Code...");
  connect(font, &QAction::triggered, this, &TextCommands::ShowTextToGCode);
  const auto followMachine = [this, font] {
    font->setVisible(plot_.Engine().Session.ActiveConfig.MachineType != 1);
  };
  connect(tools, &QMenu::aboutToShow, this, followMachine);
  followMachine();
}

void TextCommands::ShowTextToGCode() {
  if (plot_.Busy || plot_.Engine().Driver.PlotBusy) return;
  TextToGCodeDialog dialog(plot_.Settings().TextToGCode, plot_.GetHost(),
                           plot_.Settings().Formats().Short, &plot_);
  if (dialog.exec() == QDialog::Accepted && !dialog.Program().empty()) {
    InsertProgram(dialog.Program());
  }
}

void TextCommands::InsertProgram(const std::string& program) {
  Workspace& engine = plot_.Engine();
  engine.Editor.Undo.Snapshot();  // typing before stays a step of its own
  engine.Editor.Document.ReplaceSelection(program);
  engine.Editor.Undo.Snapshot();
  plot_.StopAutoRefresh();
  if (plot_.Settings().General.Colorize) plot_.ColorizeProgram();
  plot_.Editor()->EnsureCaretVisible();
  plot_.RefreshGeometry(false);
}

}  // namespace zemtra
