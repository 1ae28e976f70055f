#include "view/ViewState.h"

#include <algorithm>
#include <cmath>

#include "core/NumberText.h"
#include "geom/Primitives.h"

namespace zemtra {

namespace {

constexpr double kScaleLimit = 65535.0;  // the picture's scale stays within +- this
constexpr double kMaxZoomSize = 16383.0;
constexpr double kMinZoomSize = 0.02;

bool Finite(double value) {
  return std::isfinite(value);
}

}  // namespace

double ReduceDegrees(double degrees) {
  double reduced = degrees - std::trunc(degrees / 360.0) * 360.0;
  if (reduced < 0) reduced += 360.0;
  return reduced;
}

ViewState::ViewState() {
  SetViewAngle(ViewAngle);
  SetTipAngle(TipAngle);
  UpdateViewMetrics();
}

void ViewState::SetViewAngle(double degrees) {
  ViewAngle = degrees;
  ViewCosV = std::cos(degrees * kDegree);
  ViewSinV = std::sin(degrees * kDegree);
}

void ViewState::SetTipAngle(double degrees) {
  TipAngle = degrees;
  ViewSinT = std::sin(degrees * kDegree);
  ViewCosT = std::cos(degrees * kDegree);
}

ViewProjector ViewState::Projector() const {
  ViewProjector p;
  p.View = CurrentView;
  p.TopViewOrientation = TopViewOrientation;
  p.CenterX = ViewCenterX;
  p.CenterY = ViewCenterY;
  p.CosV = ViewCosV;
  p.SinV = ViewSinV;
  p.SinT = ViewSinT;
  p.CosT = ViewCosT;
  p.IsoZReference = IsoZReference;
  p.PartMinY = PartMin.Y;
  p.RotaryPlane = RotaryPlane;
  p.RotaryCenterX = RotaryCenterX;
  p.RotaryCenterY = RotaryCenterY;
  p.RotaryCenterZ = RotaryCenterZ;
  return p;
}

void ViewState::ProjectPoint(const GeoPoint& point, float& u, float& v) const {
  Projector().Project(point, u, v);
}

void ViewState::UnprojectIso(double u, double v, float& x, float& y) const {
  const double cy = ViewCenterY;
  double q = 0;
  if (ViewSinT != 0) q = cy + (v - cy) / ViewSinT;
  GeoPoint turned = RotatePoint(GeoPoint{static_cast<float>(u), static_cast<float>(q), 0, 0},
                                GeoPoint{ViewCenterX, ViewCenterY, 0, 0}, ViewAngle);
  x = turned.X;
  y = static_cast<float>(2.0 * cy - turned.Y);
}

void ViewState::MouseToDisplay(double mx, double my, float& fx, float& fy) const {
  if (IsIso()) {
    UnprojectIso(mx, my, fx, fy);
    return;
  }
  const double twoCx = 2.0 * ViewCenterX, twoCy = 2.0 * ViewCenterY;
  const int orientation = TopViewOrientation;
  const int view = CurrentView;
  double x = mx, y = twoCy - my;
  if (view == 1 || view == 3 || view == 5 || view == 10 || (view == 0 && orientation == 1)) {
    x = twoCx - mx, y = twoCy - my;
  } else if (view == 0 && orientation == 2) {
    x = twoCx - mx, y = my;
  } else if ((view == 0 && orientation == 3) || view == 8) {
    x = mx, y = my;
  }
  fx = static_cast<float>(x);
  fy = static_cast<float>(y);
}

PixelPoint ViewState::ToPixel(double u, double v) const {
  return PixelPoint{static_cast<float>((u - ScaleLeft) / ScaleWidth * PixelWidth),
                    static_cast<float>((v - ScaleTop) / ScaleHeight * PixelHeight)};
}

void ViewState::PixelToView(double px, double py, double& u, double& v) const {
  u = ScaleLeft + px * ScaleWidth / PixelWidth;
  v = ScaleTop + py * ScaleHeight / PixelHeight;
}

void ViewState::Resize(int pixelWidth, int pixelHeight) {
  PixelWidth = std::max(1, pixelWidth);
  PixelHeight = std::max(1, pixelHeight);
  const double units = UnitsPerPixel;
  if (!(units > 0) || !Finite(units)) {
    SetViewport(ScaleLeft, ScaleTop, ScaleWidth, ScaleHeight);
    return;
  }
  const double width = PixelWidth * units, height = PixelHeight * units;
  ScaleLeft = static_cast<float>(ViewCenterX - width / 2);
  ScaleTop = static_cast<float>(ViewCenterY - height / 2);
  ScaleWidth = static_cast<float>(width);
  ScaleHeight = static_cast<float>(height);
  UpdateViewMetrics();
}

void ViewState::SetViewport(double x, double y, double w, double h) {
  if (w == 0 && h == 0) return;
  if (w == 0) w = 0.001;
  if (h == 0) h = 0.001;
  const double r = static_cast<double>(PixelWidth) / PixelHeight;
  ScaleWidth = static_cast<float>(w);
  ScaleHeight = static_cast<float>(w / r);
  ScaleLeft = static_cast<float>(x);
  ScaleTop = static_cast<float>(y - (w / r - h) / 2);
  if (ScaleHeight < h) {
    const double r2 = static_cast<double>(PixelHeight) / PixelWidth;
    ScaleHeight = static_cast<float>(h);
    ScaleWidth = static_cast<float>(h / r2);
    ScaleLeft = static_cast<float>(x - (h / r2 - w) / 2);
    ScaleTop = static_cast<float>(y);
  }
  UpdateViewMetrics();
}

bool ViewState::CenterView(double x, double y) {
  const float middleX = static_cast<float>(ScaleWidth / 2.0 + ScaleLeft);
  const float middleY = static_cast<float>(ScaleHeight / 2.0 + ScaleTop);
  const double left = ScaleLeft - (middleX - x);
  const double top = ScaleTop - (middleY - y);
  const auto inRange = [](double value) { return value >= -kScaleLimit && value < kScaleLimit; };
  if (!inRange(left) || !inRange(top)) return false;
  ScaleLeft = static_cast<float>(left);
  ScaleTop = static_cast<float>(top);
  UpdateViewMetrics();
  return true;
}

void ViewState::SetScale(float left, float top, float width, float height) {
  ScaleLeft = left;
  ScaleTop = top;
  ScaleWidth = width;
  ScaleHeight = height;
  UpdateViewMetrics();
}

void ViewState::UpdateViewMetrics() {
  ViewCenterX = static_cast<float>(ScaleWidth / 2.0 + ScaleLeft);
  ViewCenterY = static_cast<float>(ScaleHeight / 2.0 + ScaleTop);
  UnitsPerPixel = static_cast<double>(ScaleWidth) / PixelWidth;
}

bool ViewState::ZoomBy(double factor) {
  if (!(factor > 0) || !Finite(factor)) return false;
  const double oldWidth = ScaleWidth, oldHeight = ScaleHeight;
  double w = oldWidth / factor;
  double h = oldHeight / factor;
  const double d = Dist3(PartMin, PartMax);
  const double maxSize = std::min(20 * d, kMaxZoomSize);
  const double minSize = std::max(d / 50, kMinZoomSize);
  // Width first, then height; of a floor and a ceiling that cross (a part of one point) the
  // floor is applied last and wins.
  if (w < minSize) {
    w = minSize, h = oldHeight / oldWidth * minSize;
  } else if (w >= maxSize) {
    w = maxSize, h = oldHeight / oldWidth * maxSize;
  }
  if (h < minSize) {
    h = minSize, w = oldWidth / oldHeight * minSize;
  } else if (h > maxSize) {
    h = maxSize, w = oldWidth / oldHeight * maxSize;
  }
  UpdateViewMetrics();
  const double left = ViewCenterX - w / 2, top = ViewCenterY - h / 2;
  const bool usable = Finite(w) && Finite(h) && w > 0 && h > 0 && Finite(left) && Finite(top) &&
                      std::fabs(left) < 3e38 && std::fabs(top) < 3e38 && w < 3e38 && h < 3e38;
  if (!usable) return false;
  SetScale(static_cast<float>(left), static_cast<float>(top), static_cast<float>(w),
           static_cast<float>(h));
  return true;
}

void ViewState::ZoomWindow(double x1, double y1, double x2, double y2) {
  float dx = static_cast<float>(std::fabs(x1 - x2));
  float dy = static_cast<float>(std::fabs(y1 - y2));
  if (dx == 0 && dy == 0) return;
  if (dx == 0) dx = 0.0001f;
  if (dy == 0) dy = 0.0001f;
  float ax = 0, ay = 0, bx = 0, by = 0;
  if (!IsIso()) {
    MouseToDisplay(x1, y1, ax, ay);
    MouseToDisplay(x2, y2, bx, by);
    SetViewport(std::min(ax, bx), std::min(ay, by), dx, dy);
    return;
  }
  UnprojectIso(x1, y1, ax, ay);
  UnprojectIso(x2, y2, bx, by);
  CenterView((static_cast<double>(ax) + bx) / 2, (static_cast<double>(ay) + by) / 2);
  const double fitWidth = ScaleWidth / dx, fitHeight = ScaleHeight / dy;
  ZoomBy(std::min(fitWidth, fitHeight));
}

void ViewState::ZoomDefault() {
  PartMin = GeoPoint{};
  PartMax = GeoPoint{};
  SetViewport(-10, -10, 20, 20);
}

void ViewState::BeginRotate(double mouseX, double mouseY) {
  rotateStartX_ = mouseX;
  rotateStartY_ = mouseY;
  rotateStartView_ = ViewAngle;
  rotateStartTip_ = TipAngle;
}

void ViewState::RotateTo(double mouseX, double mouseY, bool shiftHeld) {
  const double view = rotateStartView_ + (mouseX - rotateStartX_) / ScaleWidth * 180;
  const double tip = rotateStartTip_ + (mouseY - rotateStartY_) / ScaleHeight * 180;
  SetViewAngle(ReduceDegrees(view));
  if (!LockVertRotate || shiftHeld) SetTipAngle(ReduceDegrees(tip));
}

void ViewState::BeginPan(double mouseX, double mouseY) {
  MouseToDisplay(mouseX, mouseY, panAnchorX_, panAnchorY_);
}

bool ViewState::PanTo(double mouseX, double mouseY) {
  float fx = 0, fy = 0;
  MouseToDisplay(mouseX, mouseY, fx, fy);
  const float x = static_cast<float>(ViewCenterX - (static_cast<double>(fx) - panAnchorX_));
  const float y = static_cast<float>(ViewCenterY - (static_cast<double>(fy) - panAnchorY_));
  return CenterView(x, y);
}

std::string ViewState::PositionText(double mouseX, double mouseY, std::string_view numberFormat,
                                    bool diameter) const {
  float fx = 0, fy = 0;
  MouseToDisplay(mouseX, mouseY, fx, fy);
  double first = fx, second = fy;
  if (CurrentView == kViewTop && (TopViewOrientation == 1 || TopViewOrientation == 3)) {
    std::swap(first, second);
  }
  if (diameter && CurrentView >= kViewFrontTurret && CurrentView <= kViewVerticalRight) {
    second *= 2;
  }
  const std::string_view plane = PlaneName();
  std::string text(1, plane.front());
  text += FormatNumberText(first, numberFormat);
  text += ", ";
  text += plane.back();
  text += FormatNumberText(second, numberFormat);
  return text;
}

}  // namespace zemtra
