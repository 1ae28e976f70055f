#pragma once
// The viewport without its window: the view state, the display switches and colours, the range
// of entities to draw, and the commands of the picture (set a view, zoom, pan, rotate, repaint)
// over the geometry table and an attached Surface. The window owns one, attaches its surface,
// forwards its pointer and menu commands, and reads PositionText for the status bar; the
// command line attaches a picture file's surface.
//
// Raw picture coordinates (the pointer's) are view units: ViewState::PixelToView converts a
// pixel of the surface to them.
#include <array>
#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "core/GeoTypes.h"
#include "view/DrawSettings.h"
#include "view/Surface.h"
#include "view/ViewState.h"

namespace zemtra {

class EntityPainter;
class GeometryTable;
class Host;
struct MachineConfig;

// One layer of a drawing: its visible flag and its entity range.
struct LayerRange {
  bool Visible = true;
  std::int32_t First = 1;
  std::int32_t Last = 0;
};

// What the position marker shows: the current position relative to the current work offset.
struct MarkerInfo {
  GeoPoint CurrentPosition;
  GeoPoint CurrentOffset;
  bool Lathe = false;            // "X..., Z..." instead of "X..., Y..., Z..."
  bool Diameter = false;         // lathe X shown doubled (here and in the status bar)
  std::string FourthAxisLetter;  // appended with its value when not empty
};

class Viewport {
 public:
  // The table must outlive the viewport; messages and the status bar go to `host`.
  Viewport(const GeometryTable& table, Host& host);
  ~Viewport();
  Viewport(const Viewport&) = delete;
  Viewport& operator=(const Viewport&) = delete;

  // --- Surface and machine ---
  // The surface the commands repaint (null: they only change the state). Takes its size.
  void AttachSurface(Surface* surface);
  Surface* AttachedSurface() const { return surface_; }
  // The picture was resized: keeps its middle and scale, then repaints.
  void Resize(int pixelWidth, int pixelHeight);
  // Colours, rapid style, top view orientation, rotary axis and machine type of `config`.
  void ApplyConfig(const MachineConfig& config);

  // --- After a plot ---
  // A new table of `entityCount` entities: extents, axis lines, the marker at the last
  // entity, the whole range drawn; then zoom to extents (or the default window when empty).
  void LoadGeometry(std::int32_t entityCount);
  // The same without touching the zoom: only a repaint.
  void RefreshGeometry(std::int32_t entityCount);

  // --- Commands of the picture; each repaints ---
  // CurrentView := view; zooms to extents when `zoomOnViewChange`.
  void SetView(int view, bool zoomOnViewChange);
  void ZoomBy(double factor);
  // The menu's zoom in and out by ZoomFactor; a repaint in progress gives way.
  void ZoomIn();
  void ZoomOut();
  // The wheel: a direction below 1 zooms out by 0.75, any other in by 1.333. Ignored while a
  // plot is being computed (RepaintBlocked).
  void MouseWheelRolled(int direction);
  void ZoomWindow(double x1, double y1, double x2, double y2);
  // Fits what would be drawn, grown by 5 percent; the default window for an empty table.
  void ZoomToExtents();
  // Fits the selected entities; ZoomToExtents when none is selected.
  void ZoomToSelected();
  // Fits the cutting moves alone: rapids are left out of the fit.
  void ZoomAll();
  void ZoomDefault();
  void BeginRotate(double mouseX, double mouseY) { View.BeginRotate(mouseX, mouseY); }
  void RotateTo(double mouseX, double mouseY, bool shiftHeld);
  void BeginPan(double mouseX, double mouseY) { View.BeginPan(mouseX, mouseY); }
  void PanTo(double mouseX, double mouseY);
  // Text of the status panel "pos" for the pointer at raw picture coordinates.
  std::string PositionText(double mouseX, double mouseY) const;

  // --- Painting ---
  // Repaints the whole picture: clear, axis lines, title, triad, entities DrawFirst to
  // DrawLast (or the visible layers in DXFMode), marker. Unless `noYield`, lets events run
  // every 0.1 s and starts over when QuickRedrawFlag was set meanwhile. False when it could
  // not start (no surface, RepaintBlocked or a repaint already running).
  bool DrawGeometryTable(bool noYield = false);
  // Draws the position marker on the overlay (or only clears the overlay with it off).
  void DrawMarker();
  // Starts an empty picture: clear, axis lines, title and triad, no entity (the start of an
  // animation). False without a surface or while a repaint runs.
  bool StartPicture();
  // Adds one entity to the picture without a repaint (drawing while plotting or stepping).
  // What is gathered reaches the surface on FlushEntities() or the next repaint. A chord already
  // drawn on the same pixels in the same pen since the picture was started is not sent again.
  void DrawEntityNow(std::int32_t index);
  void FlushEntities();

  // --- State ---
  ViewState View;
  DrawSwitches Switches;
  DrawColors Colors;
  MarkerInfo Marker;
  std::string NumberFormat = "###0.0###";  // the display precision's short format
  std::int16_t MachineType = 0;            // 0 mill, 1 lathe
  std::int32_t DrawFirst = 1;
  std::int32_t DrawLast = 0;
  bool DXFMode = false;
  std::vector<LayerRange> Layers;  // drawn instead of the range in DXFMode
  bool QuickRedrawFlag = false;    // a newer view arrived: a running repaint starts over
  bool Painting = false;           // a repaint is running
  bool RepaintBlocked = false;     // a plot or modal command runs, or the window is hidden
  bool PointerPressed = false;     // the title is drawn in the fore colour
  // Reads a macro variable as a number, for the work zero of the axis lines; null reads 0.
  std::function<double(int)> ReadVariable;
  // Ends of the three axis lines (X, Y, Z), from the extents and the chosen zero.
  std::array<std::array<GeoPoint, 2>, 3> AxisLineEnds{};

  // Recomputes AxisLineEnds for ShowAxisLines from PartMin and PartMax.
  void ComputeAxisLines();
  // The zero the axis lines run through for ShowAxisLines (machine or G54 to G59 zero).
  GeoPoint AxisZero() const;
  // The text of the marker, such as "X1.0, Y2.0, Z-0.5".
  std::string MarkerText() const;
  // Entities to draw: 0 when the table is empty.
  std::int32_t EntityCount() const { return entityCount_; }

 private:
  void TakeExtents(std::int32_t entityCount);
  void Repaint();
  bool PaintPass(bool noYield);
  bool PaintEntities(EntityPainter& painter, bool noYield);
  bool PaintRange(EntityPainter& painter, std::int32_t first, std::int32_t last, bool noYield);
  bool YieldAndCheckRestart();
  void ReportPaintFault(const char* description);
  void DrawAxisLines();
  void DrawTitle();
  void DrawTriad();
  void ZoomToSweep(bool selectedOnly, const char* message);

  const GeometryTable& table_;
  Host& host_;
  Surface* surface_ = nullptr;
  std::int32_t entityCount_ = 0;
  std::unique_ptr<EntityPainter> livePainter_;
  double lastYield_ = 0;  // seconds of the steady clock
};

}  // namespace zemtra
