#include "app/CalcCommands.h"

#include <QAction>
#include <QInputDialog>
#include <QMenu>

#include "app/Plot.h"
#include "app/PlotActions.h"
#include "app/QtHost.h"
#include "app/StatusPanels.h"
#include "app/Workspace.h"
#include "core/NumberText.h"
#include "geom/CalcTools.h"
#include "geom/Offset.h"

namespace zemtra {

namespace {

int SelectedCount(const GeometryTable& table) {
  int count = 0;
  for (std::int32_t i = 1; i <= table.HighestIndex(); ++i) count += table[i].Selected != 0;
  return count;
}

// Exactly two selected entities, both feed lines.
bool TwoLinesSelected(const GeometryTable& table) {
  int lines = 0;
  for (std::int32_t i = 1; i <= table.HighestIndex(); ++i) {
    if (table[i].Selected == 0) continue;
    if (table[i].EntityType != kFeed) return false;
    ++lines;
  }
  return lines == 2;
}

}  // namespace

CalcCommands::CalcCommands(Plot& plot) : QObject(&plot), plot_(plot) {
  setObjectName("CalcCommands");
  InputBox = [&plot](const QString& title, const QString& prompt) -> std::optional<std::string> {
    bool ok = false;
    const QString text = QInputDialog::getText(&plot, title, prompt, QLineEdit::Normal, "", &ok);
    if (!ok) return std::nullopt;
    return text.toStdString();
  };
  PlotActions& actions = plot.Actions();
  QMenu* menu = actions.AddSubmenu(actions.Menu("mnuTools"), "mnuCalc", "&Calc");
  const auto add = [&](const char* name, const char* caption, void (CalcCommands::*handler)()) {
    connect(actions.AddCommand(menu, name, caption), &QAction::triggered, this, handler);
  };
  add("mnuCalcMeasure", "&Measure", &CalcCommands::Measure);
  add("mnuCalcIntersect", "&Intersect", &CalcCommands::Intersect);
  add("mnuCalcBlendRadius", "&Blend Radius...", &CalcCommands::BlendRadius);
  add("mnuCalcPointAtCenter", "&Point at Center", &CalcCommands::PointAtCenter);
  add("mnuCalcOffset", "&Offset...", &CalcCommands::Offset);
}

std::string CalcCommands::NumberFormat() const {
  return plot_.Settings().Formats().Short;
}

void CalcCommands::ShowAppended() {
  Workspace& engine = plot_.Engine();
  engine.View.RefreshGeometry(engine.Table.HighestIndex());
}

void CalcCommands::Measure() {
  if (plot_.Busy) return;
  CalcMeasure(plot_.Engine().Table, plot_.GetHost(), NumberFormat());
}

void CalcCommands::Intersect() {
  if (plot_.Busy) return;
  if (CalcIntersect(plot_.Engine().Table, plot_.GetHost(), NumberFormat()) > 0) ShowAppended();
}

void CalcCommands::BlendRadius() {
  if (plot_.Busy) return;
  GeometryTable& table = plot_.Engine().Table;
  if (!TwoLinesSelected(table)) {
    plot_.Panels().Set("msg", "Select 2 lines to create blend radius");
    return;
  }
  const std::optional<std::string> typed = InputBox("Blend Radius", "Enter Blend Radius");
  if (!typed) return;
  if (CalcBlendRadius(table, NumericTextValue(*typed), plot_.GetHost())) ShowAppended();
}

void CalcCommands::PointAtCenter() {
  if (plot_.Busy) return;
  GeometryTable& table = plot_.Engine().Table;
  const int before = SelectedCount(table);
  const int added = CalcPointAtCenter(table, plot_.GetHost());
  if (added > 0 || before > 0) ShowAppended();  // the selection was cleared too
}

void CalcCommands::Offset() {
  if (plot_.Busy) return;
  GeometryTable& table = plot_.Engine().Table;
  if (SelectedCount(table) == 0) {
    plot_.Panels().Set("msg", "Select at least 1 entity");
    return;
  }
  const std::optional<std::string> typed = InputBox("Offset", "Enter Offset Distance");
  if (!typed || typed->empty()) return;
  if (OffsetSelected(table, NumericTextValue(*typed), plot_.GetHost()) > 0) ShowAppended();
}

}  // namespace zemtra
