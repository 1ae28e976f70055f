#include "view/Viewport.h"

#include <algorithm>
#include <chrono>
#include <cmath>
#include <exception>

#include "config/MachineConfig.h"
#include "core/GeometryTable.h"
#include "core/Host.h"
#include "core/NumberText.h"
#include "core/Version.h"
#include "geom/Extents.h"
#include "view/EntityPainter.h"
#include "view/ProjectedSweep.h"

namespace zemtra {

namespace {

constexpr double kYieldSeconds = 0.1;
constexpr std::int32_t kClockCheckEvery = 512;  // entities between looks at the clock
constexpr ColorValue kTitleGrey = 0x808080;
constexpr float kTitleInset = 4.0f;

double ClockSeconds() {
  using namespace std::chrono;
  return duration<double>(steady_clock::now().time_since_epoch()).count();
}

double AxisOf(const GeoPoint& p, int axis) {
  return axis == 0 ? p.X : axis == 1 ? p.Y : p.Z;
}

void SetAxis(GeoPoint& p, int axis, double value) {
  float& slot = axis == 0 ? p.X : axis == 1 ? p.Y : p.Z;
  slot = static_cast<float>(value);
}

// The triad's arms: colour and label of X, Y and Z.
struct TriadArm {
  ColorValue color;
  const char* label;
};
constexpr TriadArm kTriadArms[3] = {{0x0000FF, "X+"}, {0x00FF00, "Y+"}, {0xFF0000, "Z+"}};

}  // namespace

Viewport::Viewport(const GeometryTable& table, Host& host) : table_(table), host_(host) {}

Viewport::~Viewport() = default;

// --- Surface and machine --------------------------------------------------------------------

void Viewport::AttachSurface(Surface* surface) {
  livePainter_.reset();
  surface_ = surface;
  if (surface_ != nullptr) View.Resize(surface_->PixelWidth(), surface_->PixelHeight());
}

void Viewport::Resize(int pixelWidth, int pixelHeight) {
  View.Resize(pixelWidth, pixelHeight);
  Repaint();
}

void Viewport::ApplyConfig(const MachineConfig& config) {
  Colors = DrawColorsFromConfig(config);
  View.TopViewOrientation = config.TopViewOrientation;
  View.RotaryPlane = config.RotaryAxisPlane;
  View.RotaryCenterX = config.RotaryCenterX;
  View.RotaryCenterY = config.RotaryCenterY;
  View.RotaryCenterZ = config.RotaryCenterZ;
  MachineType = config.MachineType;
  Marker.Lathe = config.MachineType == 1;
  Marker.Diameter = Marker.Lathe && config.LatheXDiameter != 0;
}

// --- After a plot ---------------------------------------------------------------------------

void Viewport::TakeExtents(std::int32_t entityCount) {
  entityCount_ = std::clamp(entityCount, 0, table_.HighestIndex());
  GeoPoint low, high;
  bool any = false;
  for (std::int32_t i = 1; i <= entityCount_; ++i) {
    GeoPoint boxLow, boxHigh;
    if (!EntityExtents(table_[i], boxLow, boxHigh)) continue;
    if (!any) {
      low = boxLow, high = boxHigh, any = true;
      continue;
    }
    low = GeoPoint{std::min(low.X, boxLow.X), std::min(low.Y, boxLow.Y), std::min(low.Z, boxLow.Z),
                   std::min(low.A, boxLow.A)};
    high = GeoPoint{std::max(high.X, boxHigh.X), std::max(high.Y, boxHigh.Y),
                    std::max(high.Z, boxHigh.Z), std::max(high.A, boxHigh.A)};
  }
  View.PartMin = low;
  View.PartMax = high;
  View.IsoZReference = low.Z;
  DrawFirst = 1;
  DrawLast = entityCount_;
  if (entityCount_ > 0) {
    Marker.CurrentPosition = table_[entityCount_].EndPoint;
    Marker.CurrentOffset = table_[entityCount_].WorkOffset;
  }
  ComputeAxisLines();
}

void Viewport::LoadGeometry(std::int32_t entityCount) {
  TakeExtents(entityCount);
  host_.pumpEvents();  // each pass over a large table takes a while: let the window answer
  if (entityCount_ > 0) {
    ZoomToExtents();
  } else {
    ZoomDefault();
  }
}

void Viewport::RefreshGeometry(std::int32_t entityCount) {
  TakeExtents(entityCount);
  Repaint();
}

GeoPoint Viewport::AxisZero() const {
  if (Switches.ShowAxisLines < 2 || Switches.ShowAxisLines > 7 || !ReadVariable) return {};
  const int base = 5221 + 20 * (Switches.ShowAxisLines - 2);
  if (MachineType == 1) {
    return GeoPoint{static_cast<float>(ReadVariable(base)), 0,
                    static_cast<float>(ReadVariable(base + 1)), 0};
  }
  return GeoPoint{static_cast<float>(ReadVariable(base)),
                  static_cast<float>(ReadVariable(base + 1)),
                  static_cast<float>(ReadVariable(base + 2)), 0};
}

void Viewport::ComputeAxisLines() {
  const GeoPoint zero = AxisZero();
  for (int axis = 0; axis < 3; ++axis) {
    const double low = AxisOf(View.PartMin, axis), high = AxisOf(View.PartMax, axis);
    const double size = high - low, at = AxisOf(zero, axis);
    GeoPoint& from = AxisLineEnds[axis][0];
    GeoPoint& to = AxisLineEnds[axis][1];
    from = to = zero;
    SetAxis(from, axis, std::min(low - 5 * size, at - 5));
    SetAxis(to, axis, std::max(high + 5 * size, at + 5));
  }
}

// --- Commands -------------------------------------------------------------------------------

void Viewport::SetView(int view, bool zoomOnViewChange) {
  View.CurrentView = static_cast<std::int16_t>(view);
  if (zoomOnViewChange) {
    ZoomToExtents();
  } else {
    Repaint();
  }
}

void Viewport::ZoomBy(double factor) {
  View.ZoomBy(factor);
  Repaint();
}

void Viewport::ZoomIn() {
  QuickRedrawFlag = true;
  ZoomBy(View.ZoomFactor);
}

void Viewport::ZoomOut() {
  QuickRedrawFlag = true;
  ZoomBy(1.0 / View.ZoomFactor);
}

void Viewport::MouseWheelRolled(int direction) {
  if (RepaintBlocked) return;
  QuickRedrawFlag = true;
  ZoomBy(direction < 1 ? 0.75 : 1.333);
}

void Viewport::ZoomWindow(double x1, double y1, double x2, double y2) {
  View.ZoomWindow(x1, y1, x2, y2);
  Repaint();
}

void Viewport::ZoomToSweep(bool selectedOnly, const char* message) {
  host_.status("msg", message);
  ViewBox box;
  const auto sweep = [&](std::int32_t first, std::int32_t last) {
    const ViewBox part =
        ProjectedBox(table_, first, last, selectedOnly, View, Switches, Colors.RapidStyle);
    if (part.Empty()) return;
    box.Add(part.LowU, part.LowV);
    box.Add(part.HighU, part.HighV);
  };
  if (DXFMode) {
    for (const LayerRange& layer : Layers) {
      if (layer.Visible) sweep(layer.First, layer.Last);
    }
  } else {
    sweep(DrawFirst, std::min(DrawLast, entityCount_));
  }
  if (box.Empty()) {
    View.SetViewport(-10, -10, 20, 20);
  } else {
    const double middleU = (static_cast<double>(box.LowU) + box.HighU) / 2;
    const double middleV = (static_cast<double>(box.LowV) + box.HighV) / 2;
    const double halfU = (static_cast<double>(box.HighU) - box.LowU) / 2 * 1.05;
    const double halfV = (static_cast<double>(box.HighV) - box.LowV) / 2 * 1.05;
    View.ZoomWindow(middleU - halfU, middleV - halfV, middleU + halfU, middleV + halfV);
  }
  host_.status("msg", "");
}

void Viewport::ZoomToExtents() {
  if (entityCount_ == 0 && !DXFMode) {
    ZoomDefault();
    return;
  }
  ZoomToSweep(false, "Zooming to part extents...");
  host_.pumpEvents();
  Repaint();
}

void Viewport::ZoomToSelected() {
  if (entityCount_ == 0 && !DXFMode) {
    ZoomDefault();
    return;
  }
  bool anySelected = false;
  for (std::int32_t i = 1; i <= table_.HighestIndex() && !anySelected; ++i) {
    anySelected = table_[i].Selected != 0;
  }
  if (!anySelected) {
    ZoomToExtents();
    return;
  }
  ZoomToSweep(true, "Zooming to selected objects...");
  Repaint();
}

void Viewport::ZoomAll() {
  if (!Switches.ShowRapid) {
    ZoomToExtents();
    return;
  }
  Switches.ShowRapid = false;
  if (entityCount_ == 0 && !DXFMode) {
    View.ZoomDefault();
  } else {
    ZoomToSweep(false, "Zooming to part extents...");
  }
  Switches.ShowRapid = true;
  Repaint();
}

void Viewport::ZoomDefault() {
  View.ZoomDefault();
  Repaint();
}

void Viewport::RotateTo(double mouseX, double mouseY, bool shiftHeld) {
  View.RotateTo(mouseX, mouseY, shiftHeld);
  QuickRedrawFlag = true;
  Repaint();
}

void Viewport::PanTo(double mouseX, double mouseY) {
  View.PanTo(mouseX, mouseY);
  QuickRedrawFlag = true;
  Repaint();
}

std::string Viewport::PositionText(double mouseX, double mouseY) const {
  return View.PositionText(mouseX, mouseY, NumberFormat, Marker.Diameter);
}

// --- Painting -------------------------------------------------------------------------------

void Viewport::Repaint() {
  livePainter_.reset();
  DrawGeometryTable(false);
}

bool Viewport::DrawGeometryTable(bool noYield) {
  if (surface_ == nullptr || RepaintBlocked || Painting) return false;
  livePainter_.reset();
  Painting = true;
  try {
    while (!PaintPass(noYield)) {
    }
  } catch (const std::exception& fault) {
    ReportPaintFault(fault.what());
    return true;
  } catch (...) {
    ReportPaintFault("Unknown error");
    return true;
  }
  Painting = false;
  surface_->Present();
  if (!noYield) host_.pumpEvents();
  return true;
}

void Viewport::ReportPaintFault(const char* description) {
  Painting = false;
  host_.ask(Prompt{std::string("Error in DrawGeometryTable!\r\n") + description, kProductName,
                   MsgIcon::Stop, MsgButtons::Ok});
}

// One pass of the repaint; false when a newer view asked it to start over.
bool Viewport::PaintPass(bool noYield) {
  lastYield_ = ClockSeconds();
  surface_->SetLayer(SurfaceLayer::Retained);
  surface_->Clear(Colors.Background);
  DrawAxisLines();
  DrawTitle();
  DrawTriad();
  if (entityCount_ > 0 || DXFMode) {
    QuickRedrawFlag = false;
    EntityPainter painter(*surface_, View, Switches, Colors);
    const bool complete = PaintEntities(painter, noYield);
    painter.Flush();
    if (!complete) return false;
  }
  DrawMarker();
  return true;
}

bool Viewport::PaintEntities(EntityPainter& painter, bool noYield) {
  if (!DXFMode) return PaintRange(painter, DrawFirst, std::min(DrawLast, entityCount_), noYield);
  for (const LayerRange& layer : Layers) {
    if (!layer.Visible) continue;
    if (!PaintRange(painter, layer.First, layer.Last, noYield)) return false;
  }
  return true;
}

bool Viewport::PaintRange(EntityPainter& painter, std::int32_t first, std::int32_t last,
                          bool noYield) {
  first = std::max(first, 1);
  last = std::min(last, table_.HighestIndex());
  const GeoEntity* entities = table_.data();
  for (std::int32_t i = first; i <= last; ++i) {
    painter.DrawEntity(entities[i]);
    if (noYield || (i - first) % kClockCheckEvery != kClockCheckEvery - 1) continue;
    if (ClockSeconds() - lastYield_ < kYieldSeconds) continue;
    painter.Flush();
    if (YieldAndCheckRestart()) return false;
  }
  return true;
}

bool Viewport::YieldAndCheckRestart() {
  surface_->Present();
  host_.pumpEvents();
  lastYield_ = ClockSeconds();
  return QuickRedrawFlag;
}

void Viewport::DrawAxisLines() {
  if (Switches.ShowAxisLines <= 0) return;
  EntityPainter painter(*surface_, View, Switches, Colors);
  const SurfacePen pen{ForeColorFor(Colors.Background), 1, LineStyle::DashDotDot};
  for (const auto& ends : AxisLineEnds) {
    painter.DrawSegment(ends[0], ends[1], pen);
    painter.Flush();
  }
}

void Viewport::DrawTitle() {
  const ColorValue color = PointerPressed ? ForeColorFor(Colors.Background) : kTitleGrey;
  surface_->Text(PixelPoint{kTitleInset, kTitleInset}, View.Title(), color);
}

// A small axis cross at a fixed place of the picture: each arm points the way its positive
// axis goes on screen, and an axis seen end-on is left out.
void Viewport::DrawTriad() {
  const double unitsPerPixel = View.UnitsPerPixel;
  double arm = 0.05 * View.ScaleWidth, label = 0.07 * View.ScaleWidth;
  if (arm / unitsPerPixel < 25) {
    arm = 25 * unitsPerPixel;
    label = 35 * unitsPerPixel;
  }
  const PixelPoint origin =
      View.ToPixel(View.ScaleLeft + 0.1 * View.ScaleWidth, View.ScaleTop + 0.85 * View.ScaleHeight);
  const double pixelsX = View.PixelWidth / static_cast<double>(View.ScaleWidth);
  const double pixelsY = View.PixelHeight / static_cast<double>(View.ScaleHeight);
  ViewProjector projector = View.Projector();
  double u0 = 0, v0 = 0;
  if (!projector.ProjectCorrected(0, 0, 0, u0, v0)) return;
  for (int axis = 0; axis < 3; ++axis) {
    double u = 0, v = 0;
    projector.ProjectCorrected(axis == 0, axis == 1, axis == 2, u, v);
    const double du = u - u0, dv = v - v0;
    if (std::fabs(du) < 1e-9 && std::fabs(dv) < 1e-9) continue;
    const PixelPoint arms[2] = {origin,
                                {static_cast<float>(origin.x + arm * du * pixelsX),
                                 static_cast<float>(origin.y + arm * dv * pixelsY)}};
    surface_->Polyline(arms, 2, SurfacePen{kTriadArms[axis].color, 2, LineStyle::Solid});
    const char* text = kTriadArms[axis].label;
    const PixelPoint at{
        static_cast<float>(origin.x + label * du * pixelsX - surface_->TextWidth(text) / 2),
        static_cast<float>(origin.y + label * dv * pixelsY - surface_->TextHeight() / 2)};
    surface_->Text(at, text, kTriadArms[axis].color);
  }
}

std::string Viewport::MarkerText() const {
  const double x = static_cast<double>(Marker.CurrentPosition.X) - Marker.CurrentOffset.X;
  const double y = static_cast<double>(Marker.CurrentPosition.Y) - Marker.CurrentOffset.Y;
  const double z = static_cast<double>(Marker.CurrentPosition.Z) - Marker.CurrentOffset.Z;
  const double a = static_cast<double>(Marker.CurrentPosition.A) - Marker.CurrentOffset.A;
  if (Marker.Lathe) {
    return "X" + FormatNumberText(Marker.Diameter ? 2 * x : x, NumberFormat) + ", Z" +
           FormatNumberText(z, NumberFormat);
  }
  std::string text = "X" + FormatNumberText(x, NumberFormat) + ", Y" +
                     FormatNumberText(y, NumberFormat) + ", Z" + FormatNumberText(z, NumberFormat);
  if (!Marker.FourthAxisLetter.empty()) {
    text += ", " + Marker.FourthAxisLetter + FormatNumberText(a, NumberFormat);
  }
  return text;
}

// A leader up and to the right of the current position, and the position beside it.
void Viewport::DrawMarker() {
  if (surface_ == nullptr) return;
  surface_->SetLayer(SurfaceLayer::Overlay);
  surface_->Clear(Colors.Background);
  if (Switches.ShowMarker && entityCount_ > 0) {
    float u = 0, v = 0;
    View.ProjectPoint(Marker.CurrentPosition, u, v);
    const PixelPoint p = View.ToPixel(u, v);
    if (std::isfinite(p.x) && std::isfinite(p.y)) {
      const PixelPoint leader[3] = {p, {p.x + 18, p.y - 18}, {p.x + 30, p.y - 18}};
      surface_->Polyline(leader, 3, SurfacePen{Colors.Marker, 1, LineStyle::Solid});
      surface_->Text(PixelPoint{p.x + 33, p.y - 18 - surface_->TextHeight() / 2}, MarkerText(),
                     Colors.Marker);
    }
  }
  surface_->SetLayer(SurfaceLayer::Retained);
}

bool Viewport::StartPicture() {
  if (surface_ == nullptr || Painting) return false;
  livePainter_.reset();
  surface_->SetLayer(SurfaceLayer::Retained);
  surface_->Clear(Colors.Background);
  DrawAxisLines();
  DrawTitle();
  DrawTriad();
  return true;
}

void Viewport::DrawEntityNow(std::int32_t index) {
  if (surface_ == nullptr || index < 1 || index > table_.HighestIndex()) return;
  if (!livePainter_) {
    surface_->SetLayer(SurfaceLayer::Retained);
    livePainter_ = std::make_unique<EntityPainter>(*surface_, View, Switches, Colors);
  }
  livePainter_->DrawEntity(table_[index]);
}

void Viewport::FlushEntities() {
  if (!livePainter_) return;
  livePainter_->Flush();
  surface_->Present();
}

}  // namespace zemtra
