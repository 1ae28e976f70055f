#pragma once
// The DXF menu of the main window and the drawing it shows: importing a drawing into the
// geometry table by layer, exporting the table (or its selection) as DXF, converting selected
// entities to G-code, and the layer work of the layer manager (chain, sort, reverse, convert).
// While a drawing is on show the viewport draws its layers; a plot of the program replaces it.
#include <QObject>
#include <QString>
#include <functional>
#include <optional>
#include <set>
#include <string>
#include <vector>

#include "config/ConvertParams.h"
#include "dxf/DxfLayers.h"
#include "geom/GeoSort.h"

namespace zemtra {

class DXFOptions;
class Plot;
struct GCodeOptions;

class DxfCommands : public QObject {
  Q_OBJECT
 public:
  // Adds the DXF menu's commands and the drawing door of the Open dialog to `plot`.
  explicit DxfCommands(Plot& plot);
  ~DxfCommands() override;

  // Asks for one line of text (title, prompt); nullopt when cancelled. Tests replace it.
  std::function<std::optional<std::string>(const QString& title, const QString& prompt)> InputBox;

  // --- The drawing ---
  // Reads the drawing at `path` into the table, layer by layer, with the saved settings of
  // same-named layers; shows it zoomed to its extents and opens the layer manager. False when
  // the file cannot be read (after a message).
  bool LoadDXF(const std::string& path);
  // mnuImportDXF: the file dialog, then LoadDXF.
  void ImportDXF();
  // mnuExportDXF / mnuExportSelectedDXF: the save dialog, then the table (or the selected
  // entities) as a DXF file. "Nothing to export!" or "Nothing is selected!" when empty.
  void ExportDXF(bool selectedOnly);
  // mnuSelectedToGCode: the selected entities, chained, converted with the values of the
  // "Convert to G-Code" dialog and put in place of the program's selection.
  void SelectedToGCode();
  // mnuDXFLayerSetup: shows the layer manager.
  void ShowLayerSetup();
  // The viewport draws the visible layers and whatever was appended behind them, and repaints.
  void ShowLayers();
  // True while a drawing (not a plotted program) fills the table.
  bool DrawingShown() const;

  // --- Layer work (1-based layer indices, in list order) ---
  // Chains the layer's entities with the join distance of the preferences. False if cancelled.
  bool ChainLayer(std::int32_t index);
  void SortLayer(std::int32_t index);
  bool IsChained(std::int32_t index) const;
  // Reverses the selected entities' chains; "Entity is not part of a chain" when one has none.
  void ReverseSelectedChain();
  // Converts the layers in the order given and puts the text at the program's caret as one
  // undo step. Layers with depth steps must be chained first (a message says so). False when
  // refused.
  bool ConvertLayers(const std::vector<std::int32_t>& indices);
  // Converts the chain of the first selected entity. False when refused.
  bool ConvertSelectedChain();
  // Writes the visible layers as BGnd.dxf in the application folder; false on failure.
  bool SaveAsBackground();
  // Puts `text` in place of the program's selection as one undo step, and recolours.
  void InsertProgramText(const std::string& text);

  // The configuration's defaults for new layers.
  const ConvertParams& LayerDefaults() const;
  Plot& Window() { return plot_; }
  DXFOptions* LayerManager() const { return options_; }

  DxfLayerTable Layers;
  std::vector<ConvertParams> SavedLayers;  // the manager's saved list, kept in the settings
  GeoSort Sorter;
  std::string DrawingFile;  // the drawing on show, "" for none

 private:
  void AddCommands();
  GCodeOptions ConversionOptions() const;
  bool RefuseWhileBusy() const;
  void Tell(const std::string& text);
  bool CheckChained(std::int32_t index);

  Plot& plot_;
  DXFOptions* options_ = nullptr;
  std::set<std::string> chained_;  // names of the layers chained since the load
};

}  // namespace zemtra
