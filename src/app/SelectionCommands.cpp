#include "app/SelectionCommands.h"

#include <QAction>
#include <QInputDialog>
#include <QMenu>

#include "app/EntityInfoWindow.h"
#include "app/PictureBox.h"
#include "app/Plot.h"
#include "app/PlotActions.h"
#include "app/QtHost.h"
#include "app/StatusPanels.h"
#include "app/Workspace.h"
#include "core/NumberText.h"
#include "core/Version.h"
#include "view/EntityReport.h"
#include "view/Picking.h"
#include "view/Selection.h"

namespace zemtra {

namespace {

struct CommandRow {
  const char* name;
  const char* caption;
  void (SelectionCommands::*handler)();
};

constexpr CommandRow kViewCommands[] = {
    {"mnuZoomSelected", "Zoom &Selected", &SelectionCommands::ZoomSelected},
    {"mnuHighlightSelected", "&Highlight Selected Blocks", &SelectionCommands::HighlightSelected},
    {"mnuHighlightAndZoom", "Highlight and Zoom to Selected &Blocks",
     &SelectionCommands::HighlightAndZoom},
};

constexpr CommandRow kSelectCommands[] = {
    {"mnuSelectChain", "Select &Chain", &SelectionCommands::SelectChain},
    {"mnuSelectByZ", "Select by &Z...", &SelectionCommands::SelectByZ},
    {"mnuSelectByRadius", "Select by &Radius...", &SelectionCommands::SelectByRadius},
    {"mnuDeleteSelected", "&Delete Selected Entities", &SelectionCommands::DeleteSelected},
};

constexpr CommandRow kToolCommands[] = {
    {"mnuMeasurePoints", "&Measure Point to Point", &SelectionCommands::Measure},
    {"mnuEntityInfo", "Entity &Info", &SelectionCommands::ShowEntityInfo},
};

// The viewport's pop-up menu: the commands of the pointer's neighbourhood ("" a separator).
constexpr const char* kPopupEntries[] = {
    "mnuZoomExtents",
    "mnuZoomAll",
    "mnuZoomSelected",
    "mnuZoomWindow",
    "mnuPan",
    "",
    "mnuHighlightSelected",
    "mnuSelectChain",
    "mnuSelectByZ",
    "mnuSelectByRadius",
    "mnuDeleteSelected",
    "",
    "mnuMeasurePoints",
    "mnuEntityInfo",
    "",
    "mnuAnimate",
    "mnuStepForward",
    "mnuStepBackward",
    "mnuRewind",
    "mnuFastForward",
};

// Colour of the circle that marks the snap point.
constexpr ColorValue kSnapColor = 0xFFFFFF;

}  // namespace

SelectionCommands::SelectionCommands(Plot& plot) : QObject(&plot), plot_(plot) {
  setObjectName("SelectionCommands");
  InputBox = [&plot](const QString& title, const QString& prompt) -> std::optional<std::string> {
    bool ok = false;
    const QString text = QInputDialog::getText(&plot, title, prompt, QLineEdit::Normal, "", &ok);
    if (!ok || text.trimmed().isEmpty()) return std::nullopt;
    return text.toStdString();
  };
  AddActions();
  ConnectPicture();
}

void SelectionCommands::AddActions() {
  PlotActions& actions = plot_.Actions();
  QMenu* view = actions.Menu("mnuView");
  view->addSeparator();
  const auto add = [&](QMenu* menu, const CommandRow& row) {
    connect(actions.AddCommand(menu, row.name, row.caption), &QAction::triggered, this,
            row.handler);
  };
  for (const CommandRow& row : kViewCommands) add(view, row);
  QMenu* select = actions.AddSubmenu(view, "mnuSelection", "S&election");
  for (const CommandRow& row : kSelectCommands) add(select, row);
  for (const CommandRow& row : kToolCommands) add(view, row);
}

void SelectionCommands::ConnectPicture() {
  PictureBox* picture = plot_.Picture();
  connect(picture, &PictureBox::clicked, this, &SelectionCommands::Click);
  connect(picture, &PictureBox::boxSelected, this, &SelectionCommands::SelectBox);
  connect(picture, &PictureBox::pointerHovered, this, &SelectionCommands::Hover);
  connect(picture, &PictureBox::pickPressed, this, &SelectionCommands::TakePoint);
  connect(picture, &PictureBox::deletePressed, this, &SelectionCommands::DeleteSelected);
  connect(picture, &PictureBox::contextMenuRequested, this, &SelectionCommands::ShowPopup);
  connect(picture, &PictureBox::keyCommand, this, [this](QChar key) {
    if (key == 'F') ZoomSelected();
    if (key == 'M') Measure();
  });
  connect(&plot_, &Plot::abortRequested, this, [this] {
    if (measure_.PickMode) EndMeasuring();
  });
}

// --- The pointer -----------------------------------------------------------------------------

void SelectionCommands::Click(double u, double v, int mode) {
  Workspace& engine = plot_.Engine();
  if (plot_.Busy || engine.Table.HighestIndex() < 1) return;
  const std::int32_t found = SelectAtPoint(engine.Table, engine.View, u, v, mode);
  if (found > 0) {
    ShowPicked(found);
  } else if (eInfo_ != nullptr && plot_.Settings().Preferences.AutoShowEntityInfo) {
    eInfo_->hide();
  }
  Repaint();
}

void SelectionCommands::SelectBox(double startU, double startV, double u, double v, bool shift) {
  Workspace& engine = plot_.Engine();
  if (plot_.Busy) return;
  if (!shift) ClearSelection(engine.Table);
  const std::int32_t before = CountSelected(engine.Table);
  const std::int32_t last = SelectWindow(engine.Table, engine.View, startU, startV, u, v);
  const std::int32_t added = CountSelected(engine.Table) - before;
  Added(added);
  if (added == 1) ShowPicked(last);
  Repaint();
}

void SelectionCommands::ShowPicked(std::int32_t index) {
  Workspace& engine = plot_.Engine();
  if (!engine.View.DXFMode) plot_.GetHost().moveCaret(engine.Table[index].LineNumber);
  if (plot_.Settings().Preferences.AutoShowEntityInfo) ShowEntityInfo();
  FillReport(index);
}

void SelectionCommands::FillReport(std::int32_t index) {
  reported_ = index;
  if (eInfo_ == nullptr) return;
  Workspace& engine = plot_.Engine();
  if (index < 1 || index > engine.Table.HighestIndex()) return;
  const std::string format = plot_.Settings().Formats().Short;
  EntityReportStyle style;
  style.NumberFormat = format;
  style.Lathe = engine.View.MachineType == 1;
  style.FourthAxisLetter = engine.View.Marker.FourthAxisLetter;
  const ChainPlace chain = ChainPlaceOf(engine.Table, index);
  eInfo_->ShowReport(EntityReport(engine.Table[index], style,
                                  engine.View.DXFMode && chain.Chain > 0 ? &chain : nullptr));
}

void SelectionCommands::Added(std::int32_t count) {
  plot_.Panels().Set("msg", AddedToSelectionText(count));
}

void SelectionCommands::Repaint() {
  plot_.Engine().View.DrawGeometryTable();
}

// --- Commands --------------------------------------------------------------------------------

void SelectionCommands::HighlightSelected() {
  if (plot_.Busy) return;
  Workspace& engine = plot_.Engine();
  const ProgramDocument& text = engine.Editor.Document;
  const std::int32_t first = text.CurrentLineIndex() + 1;
  const std::int32_t last =
      text.SelLength() > 0 ? text.LineFromChar(text.SelStart() + text.SelLength() - 1) + 1 : first;
  SelectLines(engine.Table, first, last);
  Repaint();
}

void SelectionCommands::HighlightAndZoom() {
  if (plot_.Busy) return;
  HighlightSelected();
  plot_.Engine().View.ZoomToSelected();
}

void SelectionCommands::SelectChain() {
  if (plot_.Busy) return;
  Workspace& engine = plot_.Engine();
  Added(SelectChains(engine.Table, engine.View.MachineType == 1));
  Repaint();
}

// The candidate as a number, or the user's answer to `prompt` when there is none.
std::optional<float> SelectionCommands::AskNumber(const std::string& candidate,
                                                  const char* prompt) {
  if (!candidate.empty()) return static_cast<float>(NumericTextValue(candidate));
  const std::optional<std::string> typed = InputBox(kProductName, prompt);
  if (!typed) return std::nullopt;
  return static_cast<float>(NumericTextValue(*typed));
}

void SelectionCommands::SelectByZ() {
  if (plot_.Busy) return;
  Workspace& engine = plot_.Engine();
  const std::optional<float> z =
      AskNumber(FlatZCandidate(engine.Table, engine.View), "Enter Z Location:");
  if (!z) return;
  Added(zemtra::SelectByZ(engine.Table, engine.View, *z));
  Repaint();
}

void SelectionCommands::SelectByRadius() {
  if (plot_.Busy) return;
  Workspace& engine = plot_.Engine();
  const std::optional<float> radius =
      AskNumber(RadiusCandidate(engine.Table, engine.View), "Enter Arc Radius:");
  if (!radius) return;
  Added(zemtra::SelectByRadius(engine.Table, engine.View, *radius));
  Repaint();
}

void SelectionCommands::DeleteSelected() {
  if (plot_.Busy) return;
  Workspace& engine = plot_.Engine();
  if (zemtra::DeleteSelected(engine.Table) == 0) return;
  engine.View.RefreshGeometry(engine.Table.HighestIndex());
}

void SelectionCommands::ZoomSelected() {
  if (plot_.Busy) return;
  plot_.Engine().View.ZoomToSelected();
}

void SelectionCommands::ShowEntityInfo() {
  if (eInfo_ == nullptr) {
    eInfo_ = new EntityInfoWindow(plot_.Store(), &plot_);
    FillReport(reported_);
  }
  eInfo_->show();
}

void SelectionCommands::ShowPopup(const QPoint& globalPosition) {
  if (plot_.Busy || !plot_.Settings().Preferences.EnableRightClickMenu) return;
  if (popup_ == nullptr) {
    // Made on first use: the command sets added after this one have their actions by then.
    popup_ = new QMenu(&plot_);
    popup_->setObjectName("mnuViewportPopup");
    for (const char* name : kPopupEntries) {
      if (*name == '\0') {
        popup_->addSeparator();
      } else if (QAction* action = plot_.Actions().Find(name)) {
        popup_->addAction(action);
      }
    }
  }
  popup_->popup(globalPosition);
}

// --- Measuring -------------------------------------------------------------------------------

void SelectionCommands::Measure() {
  if (measure_.PickMode) {
    EndMeasuring();
    return;
  }
  if (plot_.Busy) return;
  plot_.Panels().Set("msg", measure_.Begin());
  plot_.Picture()->SetPickMode(true);
  plot_.Picture()->setCursor(Qt::CrossCursor);
}

void SelectionCommands::EndMeasuring() {
  measure_.End();
  plot_.Picture()->SetPickMode(false);
  plot_.Picture()->setCursor(Qt::ArrowCursor);
  plot_.Panels().Set("msg", "");
  plot_.Engine().View.DrawMarker();
  plot_.Picture()->Present();
}

// The snap search under the pointer, marked with a small circle on the overlay.
void SelectionCommands::Hover(double u, double v) {
  Workspace& engine = plot_.Engine();
  Viewport& view = engine.View;
  const bool wasShown = measure_.SnapShown;
  if (!measure_.FindSnap(engine.Table, view, u, v) && !wasShown) return;
  view.DrawMarker();  // clears the overlay, keeping the marker
  if (measure_.SnapShown) {
    float su = 0, sv = 0;
    view.View.ProjectPoint(measure_.SnapPoint, su, sv);
    Surface* surface = view.AttachedSurface();
    if (surface == nullptr) return;
    surface->SetLayer(SurfaceLayer::Overlay);
    surface->Circle(view.View.ToPixel(su, sv), static_cast<float>(kSnapMarkPixels),
                    SurfacePen{kSnapColor, 1, LineStyle::Solid});
    surface->SetLayer(SurfaceLayer::Retained);
  }
  plot_.Picture()->Present();
}

void SelectionCommands::TakePoint() {
  const PointMeasure::Press press = measure_.TakePoint();
  if (press == PointMeasure::Press::Ignored) return;
  plot_.Panels().Set("msg", std::string(PointMeasure::StatusAfter(press)));
  if (press != PointMeasure::Press::Done) return;
  EndMeasuring();
  plot_.GetHost().ask(Prompt{measure_.Report(plot_.Settings().Formats().Short), kProductName,
                             MsgIcon::Information, MsgButtons::Ok});
}

}  // namespace zemtra
