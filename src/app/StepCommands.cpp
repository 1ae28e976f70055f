#include "app/StepCommands.h"

#include <QAction>
#include <QMenu>

#include "app/AnimationCommands.h"
#include "app/ModalStateWindow.h"
#include "app/PartInfoDialog.h"
#include "app/Plot.h"
#include "app/PlotActions.h"
#include "app/QtHost.h"
#include "app/VariableDisplayWindow.h"
#include "app/Workspace.h"
#include "interp/ModalReport.h"
#include "view/Picking.h"

namespace zemtra {

namespace {

struct CommandRow {
  const char* menu;
  const char* name;
  const char* caption;
  void (StepCommands::*handler)();
  bool separatorBefore;
};

constexpr CommandRow kCommands[] = {
    {"mnuPlotMenu", "mnuPlotToCursor", "Plot &To Cursor", &StepCommands::PlotToCursor, true},
    {"mnuPlotMenu", "mnuPlotFromCursor", "Plot &From Cursor", &StepCommands::PlotFromCursor, false},
    {"mnuPlotMenu", "mnuStartAtCursor", "&Start at Cursor", &StepCommands::StartAtCursor, false},
    {"mnuPlotMenu", "mnuPlotSelected", "Plot Se&lected Blocks", &StepCommands::PlotSelectedBlocks,
     false},
    {"mnuPlotMenu", "mnuShowModal", "Show &Modal State", &StepCommands::ShowModalState, true},
    {"mnuPlotMenu", "mnuVariableDisplay", "&Variable Display (Macro Step)",
     &StepCommands::ShowVariableDisplay, false},
    {"mnuTools", "mnuPartInfo", "Part &Information", &StepCommands::ShowPartInformation, true},
};

}  // namespace

StepCommands::StepCommands(Plot& plot)
    : QObject(&plot),
      plot_(plot),
      stepper_(plot.Engine().Driver, plot.Engine().Table, plot.Engine().Interp,
               plot.Engine().Expressions, plot.GetHost()),
      display_(plot.Engine().Variables, plot.Engine().Expressions, plot.GetHost(), plot.Store()) {
  setObjectName("StepCommands");
  AddActions();
  connect(&plot, &Plot::plotFinished, this, &StepCommands::PlotFinished);
}

StepCommands::~StepCommands() {
  delete vDsp_.data();
  delete modal_.data();
  delete info_.data();
}

void StepCommands::AddActions() {
  PlotActions& actions = plot_.Actions();
  for (const CommandRow& row : kCommands) {
    QMenu* menu = actions.Menu(row.menu);
    if (menu == nullptr) continue;
    if (row.separatorBefore) menu->addSeparator();
    QAction* action = actions.AddCommand(menu, row.name, row.caption);
    connect(action, &QAction::triggered, this, row.handler);
  }
}

// --- Windows -------------------------------------------------------------------------------

vDsp& StepCommands::VariableWindow() {
  if (vDsp_ == nullptr) {
    vDsp_ = new vDsp(plot_, stepper_, display_);
    connect(vDsp_, &vDsp::stepped, this, [this] {
      if (modal_ != nullptr && modal_->isVisible()) {
        ShowModalReport(QString("at line %1").arg(plot_.Engine().Interp.LineCounter));
      }
    });
  }
  return *vDsp_;
}

ModalStateWindow& StepCommands::ModalWindow() {
  if (modal_ == nullptr) modal_ = new ModalStateWindow(&plot_);
  return *modal_;
}

Info& StepCommands::InfoDialog() {
  if (info_ == nullptr) {
    Workspace& engine = plot_.Engine();
    info_ = new Info([&engine] { return PartFiguresOf(engine.Table, engine.Interp); },
                     plot_.Store(), &plot_);
  }
  return *info_;
}

void StepCommands::ShowVariableDisplay() {
  vDsp& window = VariableWindow();
  window.UpdateVarDisplay();
  window.show();
  window.raise();
}

void StepCommands::ShowPartInformation() {
  Info& dialog = InfoDialog();
  dialog.UpdateDisplay();
  dialog.show();
  dialog.raise();
}

// The open windows show what the new plot left; a step session of the old text is over.
void StepCommands::PlotFinished() {
  if (vDsp_ != nullptr && vDsp_->isVisible()) vDsp_->UpdateVarDisplay();
  if (info_ != nullptr && info_->isVisible()) info_->UpdateDisplay();
}

void StepCommands::ShowModalReport(const QString& where) {
  Interpreter& interpreter = plot_.Engine().Interp;
  interpreter.FlushVariables();
  ModalWindow().ShowReport(GetModalState(interpreter), where);
}

void StepCommands::ShowModalState() {
  if (plot_.Busy || plot_.Engine().Driver.PlotBusy) return;
  PlotDriver& driver = plot_.Engine().Driver;
  const int line = CaretLine();
  bool reported = false;
  driver.ModalLine = line;
  driver.ModalReport = [this, line, &reported] {
    ShowModalReport(QString("at line %1").arg(line));
    reported = true;
  };
  plot_.RefreshGeometry(false);
  driver.ModalReport = nullptr;
  driver.ModalLine = 0;
  if (!reported) ShowModalReport("at the end of the program");
  ModalWindow().show();
  ModalWindow().raise();
}

// --- Plot ranges ---------------------------------------------------------------------------

// A range needs a whole table of the program (not a drawing): one left half-made by stepping is
// plotted again first.
bool StepCommands::TableStands() {
  const Workspace& engine = plot_.Engine();
  if (plot_.Busy || engine.Driver.PlotBusy || engine.View.DXFMode) return false;
  if (stepper_.StepSession()) plot_.RefreshGeometry(false);
  return !plot_.Busy && !stepper_.StepSession();
}

int StepCommands::CaretLine() const {
  return plot_.Engine().Editor.Document.CurrentLineIndex() + 1;
}

std::int32_t StepCommands::EntityOfCaretLine() const {
  return FindEntityOfLine(plot_.Engine().Table, CaretLine());
}

void StepCommands::ApplyRange(const PlotRange& range) {
  Workspace& engine = plot_.Engine();
  ApplyPlotRange(engine.Table, range);
  engine.Driver.PlotRangeActive = range.Active;
  Viewport& view = engine.View;
  view.DrawFirst = range.First;
  view.DrawLast = range.Last;
  view.Marker.CurrentPosition = range.EndPoint;
  view.Marker.CurrentOffset = range.WorkOffset;
  view.DrawGeometryTable();
}

void StepCommands::PlotToCursor() {
  if (!TableStands()) return;
  ApplyRange(zemtra::PlotToCursor(plot_.Engine().Table, EntityOfCaretLine()));
}

void StepCommands::PlotFromCursor() {
  if (!TableStands()) return;
  const Workspace& engine = plot_.Engine();
  PlotRange current;
  current.First = engine.Table.GeoFirst;
  current.Last = engine.Table.GeoLast;
  current.Active = engine.Driver.PlotRangeActive;
  ApplyRange(zemtra::PlotFromCursor(engine.Table, EntityOfCaretLine(), current));
}

// An empty picture up to the cursor's entity; the replay's stepping goes on from there.
void StepCommands::StartAtCursor() {
  if (!TableStands()) return;
  ApplyRange(zemtra::StartAtCursor(plot_.Engine().Table, EntityOfCaretLine()));
  if (auto* replay = plot_.findChild<AnimationCommands*>()) {
    replay->Replay().AnimationPaused = true;
    replay->StepForward();
  }
}

void StepCommands::PlotSelectedBlocks() {
  if (!TableStands()) return;
  const Workspace& engine = plot_.Engine();
  const ProgramDocument& document = engine.Editor.Document;
  const std::size_t start = document.SelStart();
  const std::size_t length = document.SelLength();
  const int first = document.LineFromChar(start) + 1;
  const int last = length > 0 ? document.LineFromChar(start + length - 1) + 1 : first;
  ApplyRange(zemtra::PlotSelectedBlocks(engine.Table, FindEntityOfLine(engine.Table, first - 1),
                                        FindEntityOfLine(engine.Table, last)));
}

}  // namespace zemtra
