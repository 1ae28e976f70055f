#include "app/DxfCommands.h"

#include <QAction>
#include <QInputDialog>
#include <QMenu>
#include <algorithm>
#include <climits>
#include <exception>
#include <filesystem>

#include "app/DXFOptions.h"
#include "app/DocumentCommands.h"
#include "app/DxfLayerSettings.h"
#include "app/Plot.h"
#include "app/PlotActions.h"
#include "app/ProgramTextView.h"
#include "app/QtHost.h"
#include "app/StatusPanels.h"
#include "app/Workspace.h"
#include "app/frmConvertSettings.h"
#include "core/TextUtil.h"
#include "core/Version.h"
#include "dxf/DxfReader.h"
#include "dxf/DxfWriter.h"
#include "dxf/GCodeGenerator.h"
#include "geom/CalcTools.h"

namespace zemtra {

namespace {

constexpr const char* kDrawingFilter = "DXF Drawing Files (*.dxf *.DXF)";

bool AnySelected(const GeometryTable& table) {
  for (std::int32_t i = 1; i <= table.HighestIndex(); ++i) {
    if (table[i].Selected != 0) return true;
  }
  return false;
}

std::int32_t FirstSelected(const GeometryTable& table) {
  for (std::int32_t i = 1; i <= table.HighestIndex(); ++i) {
    if (table[i].Selected != 0) return i;
  }
  return 0;
}

// A name typed without an extension gets ".dxf".
std::string WithDrawingExtension(const std::string& path) {
  return std::filesystem::path(path).has_extension() ? path : path + ".dxf";
}

}  // namespace

DxfCommands::DxfCommands(Plot& plot) : QObject(&plot), Sorter(plot.GetHost()), plot_(plot) {
  setObjectName("DxfCommands");
  InputBox = [&plot](const QString& title, const QString& prompt) -> std::optional<std::string> {
    bool ok = false;
    const QString text = QInputDialog::getText(&plot, title, prompt, QLineEdit::Normal, "", &ok);
    if (!ok) return std::nullopt;
    return text.toStdString();
  };
  AddCommands();
  plot.Documents().DrawingDoor = [this](const std::string& path) { LoadDXF(path); };
}

// The window lets its document commands (and with them the door) go before its children.
DxfCommands::~DxfCommands() = default;

void DxfCommands::AddCommands() {
  PlotActions& actions = plot_.Actions();
  QMenu* menu = actions.Menu("mnuDXF");
  const auto add = [&](const char* name, const char* caption, auto handler) {
    connect(actions.AddCommand(menu, name, caption), &QAction::triggered, this, handler);
  };
  add("mnuImportDXF", "&Import DXF...", [this] { ImportDXF(); });
  add("mnuDXFLayerSetup", "&Layer Setup...", [this] { ShowLayerSetup(); });
  menu->addSeparator();
  add("mnuExportDXF", "&Export DXF...", [this] { ExportDXF(false); });
  add("mnuExportSelectedDXF", "Export &Selected DXF...", [this] { ExportDXF(true); });
  menu->addSeparator();
  add("mnuSelectedToGCode", "Selected to &G-Code...", [this] { SelectedToGCode(); });
}

bool DxfCommands::RefuseWhileBusy() const {
  return plot_.Busy;
}

void DxfCommands::Tell(const std::string& text) {
  plot_.GetHost().ask(Prompt{text, kProductName, MsgIcon::Exclamation, MsgButtons::Ok});
}

const ConvertParams& DxfCommands::LayerDefaults() const {
  return plot_.Engine().Session.ActiveConfig.DXFDefaults;
}

GCodeOptions DxfCommands::ConversionOptions() const {
  return GCodeOptionsFor(plot_.Engine().Session.ActiveConfig,
                         plot_.Settings().Preferences.DXFMaxJoinDistance);
}

bool DxfCommands::DrawingShown() const {
  return plot_.Engine().View.DXFMode;
}

// --- The drawing --------------------------------------------------------------------------------

bool DxfCommands::LoadDXF(const std::string& path) {
  if (RefuseWhileBusy()) return false;
  Workspace& engine = plot_.Engine();
  QtHost& host = plot_.GetHost();
  host.setAbortRequested(false);
  plot_.Panels().Set("msg", "Loading...  " + path);
  plot_.Busy = true;
  std::string error;
  bool read = false;
  try {
    read = zemtra::LoadDXF(path, engine.Session.ActiveConfig, engine.Table, Layers, host, error);
  } catch (const std::exception& failure) {
    error = failure.what();
  }
  plot_.Busy = false;
  plot_.Panels().Set("msg", "");
  if (!read) {
    host.ask(
        Prompt{"Error in LoadDXFLayer!\r\n" + error, kProductName, MsgIcon::Stop, MsgButtons::Ok});
    return false;
  }
  SavedLayers = LoadSavedLayers(plot_.Store(), LayerDefaults());
  ApplySavedLayers(SavedLayers, Layers);
  chained_.clear();
  Sorter.ChainCount = 1;  // chain number 0 marks an entity of no chain
  DrawingFile = path;
  plot_.Settings().General.LastPath = FolderOf(path);
  engine.View.DXFMode = true;
  ShowLayers();
  engine.View.LoadGeometry(engine.Table.HighestIndex());
  if (engine.Table.HighestIndex() == 0) {
    Tell("No entities were found in the drawing:\r\n" + path);
  } else {
    plot_.Panels().Set("msg", QString(Layers.Count() == 1 ? "%1 entities on %2 layer from %3"
                                                          : "%1 entities on %2 layers from %3")
                                  .arg(engine.Table.HighestIndex())
                                  .arg(Layers.Count())
                                  .arg(QString::fromStdString(path)));
  }
  ShowLayerSetup();
  return true;
}

void DxfCommands::ShowLayers() {
  Viewport& view = plot_.Engine().View;
  if (!view.DXFMode) Layers.Clear();  // a plot has replaced the drawing
  view.Layers.clear();
  std::int32_t end = 0;
  for (std::int32_t i = 1; i <= Layers.Count(); ++i) {
    view.Layers.push_back(
        LayerRange{Layers[i].Visible != 0, Layers[i].FirstEntity, Layers[i].LastEntity});
    end = std::max(end, Layers[i].LastEntity);
  }
  // Points, blends and offsets the tools append behind the drawing.
  view.Layers.push_back(LayerRange{true, end + 1, INT_MAX});
  view.RefreshGeometry(plot_.Engine().Table.HighestIndex());
}

void DxfCommands::ImportDXF() {
  if (RefuseWhileBusy()) return;
  const QString chosen = plot_.Documents().Dialogs.OpenFile(
      "Select DXF File", QString::fromStdString(plot_.Settings().General.LastPath),
      QString(kDrawingFilter) + ";;All Files (*)");
  if (!chosen.isEmpty()) LoadDXF(chosen.toStdString());
}

void DxfCommands::ExportDXF(bool selectedOnly) {
  if (RefuseWhileBusy()) return;
  const Workspace& engine = plot_.Engine();
  const GeometryTable& table = engine.Table;
  if (table.HighestIndex() < 1) {
    Tell("Nothing to export!");
    return;
  }
  if (selectedOnly && !AnySelected(table)) {
    Tell("Nothing is selected!");
    return;
  }
  QString filter;
  const QString chosen = plot_.Documents().Dialogs.SaveFile(
      "Export to DXF File", QString::fromStdString(plot_.Settings().General.LastPath),
      kDrawingFilter, filter);
  if (chosen.isEmpty()) return;
  const std::string path = WithDrawingExtension(chosen.toStdString());
  DxfWriteOptions options;
  options.lathe = engine.Session.ActiveConfig.MachineType == 1;
  options.selectedOnly = selectedOnly;
  plot_.Panels().Set("msg",
                     selectedOnly ? "Exporting selection as DXF..." : "Exporting G-Code as DXF...");
  std::string error;
  const bool written =
      WriteDxfFile(path, ExportGeometryAsDXF(table, 1, table.HighestIndex(), options), error);
  plot_.Panels().Set("msg", written ? "Exported to " + path : std::string());
  if (!written) {
    plot_.GetHost().ask(Prompt{"Error in ExportGeometryAsDXF!\r\n" + error, kProductName,
                               MsgIcon::Stop, MsgButtons::Ok});
  }
}

void DxfCommands::SelectedToGCode() {
  if (RefuseWhileBusy()) return;
  GeometryTable& table = plot_.Engine().Table;
  const std::int32_t before = table.HighestIndex();
  std::vector<GeoEntity> copies;
  for (std::int32_t i = 1; i <= before; ++i) {
    if (table[i].Selected == 0) continue;
    copies.push_back(table[i]);
    copies.back().Selected = 0;
  }
  if (copies.empty()) {
    plot_.Panels().Set("msg", "Nothing is selected");
    return;
  }
  for (const GeoEntity& copy : copies) AppendEntity(table, copy);
  const std::int32_t drawingChains = Sorter.ChainCount;
  Sorter.ChainCount = 1;
  Sorter.DXFMaxJoinDistance = plot_.Settings().Preferences.DXFMaxJoinDistance;
  plot_.GetHost().setAbortRequested(false);
  const bool chained = Sorter.ChainGeometry(table, before + 1, table.HighestIndex());
  Sorter.ChainCount = drawingChains;
  frmConvertSettings dialog(plot_.Store(), LayerDefaults(), &plot_);
  if (chained && dialog.exec() == QDialog::Accepted) {
    ConvertParams params = dialog.Values();
    params.FirstEntity = before + 1;
    params.LastEntity = table.HighestIndex();
    InsertProgramText(GeometryToGCode(table, params, false, ConversionOptions()));
  }
  table.GeoIndex = before + 1;  // the copies go again
  table.End();
}

void DxfCommands::ShowLayerSetup() {
  if (options_ == nullptr) options_ = new DXFOptions(*this, plot_);
  options_->Refresh();
  options_->show();
  options_->raise();
  options_->activateWindow();
}

void DxfCommands::InsertProgramText(const std::string& text) {
  ProgramEditor& editor = plot_.Engine().Editor;
  editor.Undo.Snapshot();
  editor.Document.ReplaceSelection(text);
  editor.Undo.Snapshot();
  if (plot_.Settings().General.Colorize) plot_.ColorizeProgram();
  plot_.Editor()->EnsureCaretVisible();
  plot_.RefreshEditState();
}

// --- Layer work ---------------------------------------------------------------------------------

bool DxfCommands::IsChained(std::int32_t index) const {
  return index >= 1 && index <= Layers.Count() && chained_.count(Layers[index].LayerName) > 0;
}

bool DxfCommands::ChainLayer(std::int32_t index) {
  if (index < 1 || index > Layers.Count()) return false;
  GeometryTable& table = plot_.Engine().Table;
  const ConvertParams& layer = Layers[index];
  Sorter.DXFMaxJoinDistance = plot_.Settings().Preferences.DXFMaxJoinDistance;
  plot_.GetHost().setAbortRequested(false);
  plot_.Panels().Set("msg", "Chaining layer " + layer.LayerName + "...");
  bool done = false;
  try {
    done = Sorter.ChainGeometry(table, layer.FirstEntity, layer.LastEntity);
    // A layer of one entity is a chain of its own.
    if (done && layer.FirstEntity == layer.LastEntity && layer.FirstEntity >= 1) {
      table[layer.FirstEntity].LineNumber = Sorter.ChainCount++;
    }
  } catch (const std::exception& failure) {
    plot_.GetHost().ask(Prompt{std::string("Error in ChainGeometry!\r\n") + failure.what(),
                               kProductName, MsgIcon::Stop, MsgButtons::Ok});
  }
  plot_.Panels().Set("msg", "");
  if (done) chained_.insert(layer.LayerName);
  return done;
}

void DxfCommands::SortLayer(std::int32_t index) {
  if (index < 1 || index > Layers.Count()) return;
  const ConvertParams& layer = Layers[index];
  plot_.GetHost().setAbortRequested(false);
  try {
    Sorter.SortGeometry(plot_.Engine().Table, layer.FirstEntity, layer.LastEntity, GeoPoint{},
                        false);
  } catch (const std::exception& failure) {
    plot_.GetHost().ask(Prompt{std::string("Error in SortGeometry!\r\n") + failure.what(),
                               kProductName, MsgIcon::Stop, MsgButtons::Ok});
  }
}

void DxfCommands::ReverseSelectedChain() {
  GeometryTable& table = plot_.Engine().Table;
  if (FirstSelected(table) == 0) {
    plot_.Panels().Set("msg", "Nothing is selected");
    return;
  }
  for (std::int32_t i = 1; i <= table.HighestIndex(); ++i) {
    if (table[i].Selected == 0) continue;
    if (table[i].LineNumber == 0 || Layers.LayerOfEntity(i) == 0) {
      Tell("Entity is not part of a chain");
      return;
    }
  }
  Sorter.ReverseChain(table, 1, table.HighestIndex());
}

bool DxfCommands::CheckChained(std::int32_t index) {
  const ConvertParams& layer = Layers[index];
  if (layer.EnableZIncrement == 0 || IsChained(index)) return true;
  Tell("Z Increment is enabled on layer " + layer.LayerName +
       "\r\nThe layer must be chained before converting to G-Code");
  return false;
}

bool DxfCommands::ConvertLayers(const std::vector<std::int32_t>& indices) {
  if (indices.empty()) return false;
  for (std::int32_t index : indices) {
    if (!CheckChained(index)) return false;
  }
  const GCodeOptions options = ConversionOptions();
  const GeometryTable& table = plot_.Engine().Table;
  std::string text;
  for (std::size_t k = 0; k < indices.size(); ++k) {
    const ConvertParams& layer = Layers[indices[k]];
    text += "(" + layer.LayerName + ")" + options.eol;
    text += GeometryToGCode(table, layer, k + 1 < indices.size(), options);
  }
  InsertProgramText(text);
  return true;
}

bool DxfCommands::ConvertSelectedChain() {
  const GeometryTable& table = plot_.Engine().Table;
  const std::int32_t selected = FirstSelected(table);
  if (selected == 0) {
    plot_.Panels().Set("msg", "Nothing is selected");
    return false;
  }
  const std::int32_t layerIndex = Layers.LayerOfEntity(selected);
  const std::int32_t chain = table[selected].LineNumber;
  if (layerIndex == 0 || chain == 0) {
    Tell("Entity is not part of a chain");
    return false;
  }
  ConvertParams params = Layers[layerIndex];
  params.FirstEntity = params.LastEntity = selected;
  for (std::int32_t i = Layers[layerIndex].FirstEntity; i <= Layers[layerIndex].LastEntity; ++i) {
    if (table[i].LineNumber != chain) continue;
    params.FirstEntity = std::min(params.FirstEntity, i);
    params.LastEntity = std::max(params.LastEntity, i);
  }
  const GCodeOptions options = ConversionOptions();
  InsertProgramText("(" + params.LayerName + ")" + options.eol +
                    GeometryToGCode(table, params, false, options));
  return true;
}

bool DxfCommands::SaveAsBackground() {
  const Workspace& engine = plot_.Engine();
  DxfWriteOptions options;
  options.lathe = engine.Session.ActiveConfig.MachineType == 1;
  std::string text = " 0\r\nSECTION\r\n 2\r\nENTITIES\r\n";
  std::uint32_t handle = 0x100;
  for (std::int32_t i = 1; i <= Layers.Count(); ++i) {
    if (Layers[i].Visible == 0 || Layers[i].FirstEntity < 1) continue;
    text +=
        DxfEntitiesText(engine.Table, Layers[i].FirstEntity, Layers[i].LastEntity, options, handle);
  }
  text += " 0\r\nENDSEC\r\n 0\r\nEOF\r\n";
  const std::string path = (plot_.Environment().ApplicationFolder / "BGnd.dxf").string();
  std::string error;
  if (!WriteDxfFile(path, text, error)) {
    plot_.GetHost().ask(Prompt{"Error in SaveAsBackground!\r\n" + error, kProductName,
                               MsgIcon::Stop, MsgButtons::Ok});
    return false;
  }
  plot_.Panels().Set("msg", "Background saved to " + path);
  return true;
}

}  // namespace zemtra
