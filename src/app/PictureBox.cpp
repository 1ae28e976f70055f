#include "app/PictureBox.h"

#include <QFontDatabase>
#include <QFontMetricsF>
#include <QMouseEvent>
#include <QPaintEvent>
#include <QTimer>
#include <QWheelEvent>
#include <algorithm>
#include <array>

#include "view/DrawSettings.h"
#include "view/Picking.h"
#include "view/Viewport.h"

namespace zemtra {

namespace {

QColor ToQColor(ColorValue color) {
  return QColor(color & 0xFF, (color >> 8) & 0xFF, (color >> 16) & 0xFF);
}

Qt::PenStyle ToQtStyle(LineStyle style) {
  switch (style) {
    case LineStyle::Dot:
      return Qt::DotLine;
    case LineStyle::DashDotDot:
      return Qt::DashDotDotLine;
    case LineStyle::Solid:
      break;
  }
  return Qt::SolidLine;
}

QPen ToQPen(const SurfacePen& pen) {
  QPen result(ToQColor(pen.color), pen.width, ToQtStyle(pen.style), Qt::FlatCap, Qt::RoundJoin);
  result.setCosmetic(true);
  return result;
}

QString ToQString(std::string_view text) {
  return QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()));
}

constexpr int kResizeDelayMs = 60;
// A right press released within this time and distance is a click, not a drag.
constexpr qint64 kRightClickMs = 250;
constexpr double kRightClickPixels = 4;

}  // namespace

PictureBox::PictureBox(QWidget* parent) : QWidget(parent) {
  setObjectName("Pic1");
  setAttribute(Qt::WA_OpaquePaintEvent);
  setMouseTracking(true);
  setFocusPolicy(Qt::ClickFocus);
  setMinimumSize(120, 120);
  textFont_ = QFontDatabase::systemFont(QFontDatabase::GeneralFont);
  textFont_.setPointSizeF(8.5);
  timResize_ = new QTimer(this);
  timResize_->setObjectName("timResize");
  timResize_->setSingleShot(true);
  timResize_->setInterval(kResizeDelayMs);
  connect(timResize_, &QTimer::timeout, this, &PictureBox::ApplyResize);
  MakeImages();
}

PictureBox::~PictureBox() {
  EndPainting();
  if (viewport_ != nullptr) viewport_->AttachSurface(nullptr);
}

void PictureBox::SetViewport(Viewport* viewport) {
  if (viewport_ != nullptr) viewport_->AttachSurface(nullptr);
  viewport_ = viewport;
  if (viewport_ != nullptr) viewport_->AttachSurface(this);
}

// --- Surface ----------------------------------------------------------------------------------

int PictureBox::PixelWidth() const {
  return retained_.width();
}

int PictureBox::PixelHeight() const {
  return retained_.height();
}

void PictureBox::SetLayer(SurfaceLayer layer) {
  onOverlay_ = layer == SurfaceLayer::Overlay;
}

void PictureBox::Clear(ColorValue background) {
  // An image cannot be filled while a painter works on it.
  if (onOverlay_) {
    if (overlayPainter_.isActive()) overlayPainter_.end();
    overlay_.fill(Qt::transparent);
  } else {
    if (retainedPainter_.isActive()) retainedPainter_.end();
    retained_.fill(ToQColor(background));
  }
  update();
}

void PictureBox::Polyline(const PixelPoint* points, std::size_t count, const SurfacePen& pen) {
  if (count < 2) return;
  QPainter& painter = PainterFor(CurrentImage());
  painter.setPen(ToQPen(pen));
  // PixelPoint is two floats, as QPointF is two doubles: convert in slices.
  constexpr std::size_t kSlice = 4096;
  std::array<QPointF, kSlice> slice;
  std::size_t done = 0;
  while (done + 1 < count) {
    const std::size_t n = std::min(kSlice, count - done);
    for (std::size_t i = 0; i < n; ++i) slice[i] = QPointF(points[done + i].x, points[done + i].y);
    painter.drawPolyline(slice.data(), static_cast<int>(n));
    done += n - 1;  // the next slice starts where this one ended
  }
}

void PictureBox::Rectangle(PixelPoint a, PixelPoint b, const SurfacePen& pen) {
  QPainter& painter = PainterFor(CurrentImage());
  painter.setPen(ToQPen(pen));
  painter.setBrush(Qt::NoBrush);
  painter.drawRect(QRectF(QPointF(a.x, a.y), QPointF(b.x, b.y)).normalized());
}

void PictureBox::Circle(PixelPoint center, float radius, const SurfacePen& pen) {
  QPainter& painter = PainterFor(CurrentImage());
  painter.setPen(ToQPen(pen));
  painter.setBrush(Qt::NoBrush);
  painter.drawEllipse(QPointF(center.x, center.y), radius, radius);
}

void PictureBox::Text(PixelPoint topLeft, std::string_view text, ColorValue color) {
  QPainter& painter = PainterFor(CurrentImage());
  painter.setPen(ToQColor(color));
  painter.setFont(textFont_);
  const QFontMetricsF metrics(textFont_);
  painter.drawText(QPointF(topLeft.x, topLeft.y + metrics.ascent()), ToQString(text));
}

float PictureBox::TextWidth(std::string_view text) const {
  return static_cast<float>(QFontMetricsF(textFont_).horizontalAdvance(ToQString(text)));
}

float PictureBox::TextHeight() const {
  return static_cast<float>(QFontMetricsF(textFont_).height());
}

void PictureBox::Present() {
  EndPainting();
  update();
}

QImage& PictureBox::CurrentImage() {
  return onOverlay_ ? overlay_ : retained_;
}

QPainter& PictureBox::PainterFor(QImage& image) {
  QPainter& painter = &image == &overlay_ ? overlayPainter_ : retainedPainter_;
  if (!painter.isActive()) {
    painter.begin(&image);
    painter.setRenderHint(QPainter::Antialiasing, true);
  }
  return painter;
}

void PictureBox::EndPainting() {
  if (retainedPainter_.isActive()) retainedPainter_.end();
  if (overlayPainter_.isActive()) overlayPainter_.end();
}

void PictureBox::MakeImages() {
  EndPainting();
  const QSize size(std::max(1, width()), std::max(1, height()));
  const QColor background =
      viewport_ != nullptr ? ToQColor(viewport_->Colors.Background) : QColor(Qt::black);
  QImage retained(size, QImage::Format_RGB32);
  retained.fill(background);
  // Keep what was drawn until the repaint at the new size.
  if (!retained_.isNull()) {
    QPainter copy(&retained);
    copy.drawImage(0, 0, retained_);
  }
  retained_ = std::move(retained);
  overlay_ = QImage(size, QImage::Format_ARGB32_Premultiplied);
  overlay_.fill(Qt::transparent);
}

QImage PictureBox::Picture() const {
  QImage shown = retained_.copy();
  QPainter painter(&shown);
  painter.drawImage(0, 0, overlay_);
  return shown;
}

// --- Widget -------------------------------------------------------------------------------------

void PictureBox::paintEvent(QPaintEvent* event) {
  EndPainting();
  QPainter painter(this);
  const QRect area = event->rect();
  painter.drawImage(area, retained_, area);
  painter.drawImage(area, overlay_, area);
}

void PictureBox::resizeEvent(QResizeEvent* /*event*/) {
  // The first size is taken at once, so that a program plotted at start fits the real picture.
  // Later sizes change in bursts while the user drags a window edge: redraw once it settles.
  if (!sized_) {
    sized_ = true;
    ApplyResize();
    return;
  }
  timResize_->start();
}

void PictureBox::ApplyResize() {
  if (retained_.size() == size()) return;
  MakeImages();
  if (viewport_ != nullptr) viewport_->Resize(retained_.width(), retained_.height());
  update();
}

void PictureBox::SetPanArmed(bool armed) {
  panArmed_ = armed;
  if (armed) zoomWindowArmed_ = false;
  setCursor(armed ? Qt::OpenHandCursor : Qt::ArrowCursor);
}

void PictureBox::SetZoomWindowArmed(bool armed) {
  zoomWindowArmed_ = armed;
  if (armed) panArmed_ = false;
  setCursor(armed ? Qt::CrossCursor : Qt::ArrowCursor);
}

void PictureBox::ViewPoint(const QPointF& pixel, double& u, double& v) const {
  viewport_->View.PixelToView(pixel.x(), pixel.y(), u, v);
}

void PictureBox::ShowPosition(const QPointF& pixel) {
  if (viewport_ == nullptr) return;
  double u = 0, v = 0;
  ViewPoint(pixel, u, v);
  emit positionChanged(QString::fromStdString(viewport_->PositionText(u, v)));
}

bool PictureBox::StartDrag(QMouseEvent* event) {
  const Qt::MouseButton button = event->button();
  const Qt::KeyboardModifiers keys = event->modifiers();
  double u = 0, v = 0;
  ViewPoint(event->position(), u, v);
  if (button == Qt::LeftButton && zoomWindowArmed_) {
    drag_ = Drag::ZoomWindow;
    return true;
  }
  if (button == Qt::LeftButton && pickMode_) {
    emit pickPressed();
    return false;
  }
  if (button == Qt::LeftButton && !panArmed_) {
    drag_ = Drag::Box;
    return true;
  }
  const bool panButton = button == Qt::MiddleButton || (button == Qt::LeftButton && panArmed_);
  const bool rotate = button == Qt::RightButton && viewport_->View.IsIso() &&
                      !(keys & (Qt::ShiftModifier | Qt::AltModifier));
  if (rotate) {
    drag_ = Drag::Rotate;
    viewport_->BeginRotate(u, v);
    emit dragMessage("Drag the mouse to rotate the view");
  } else if (panButton || button == Qt::RightButton) {
    drag_ = Drag::Pan;
    viewport_->BeginPan(u, v);
    emit dragMessage("Drag the mouse to pan");
  } else {
    return false;
  }
  setCursor(Qt::SizeAllCursor);
  return true;
}

void PictureBox::mousePressEvent(QMouseEvent* event) {
  if (pointerBlocked_ || viewport_ == nullptr || drag_ != Drag::None) return;
  dragStart_ = event->position();
  if (event->button() == Qt::RightButton) rightPress_.start();
  if (StartDrag(event)) viewport_->PointerPressed = true;
}

void PictureBox::mouseMoveEvent(QMouseEvent* event) {
  if (viewport_ == nullptr) return;
  if (!pointerBlocked_ && drag_ != Drag::None) {
    double u = 0, v = 0;
    ViewPoint(event->position(), u, v);
    if (drag_ == Drag::Pan) viewport_->PanTo(u, v);
    if (drag_ == Drag::Rotate) {
      viewport_->RotateTo(u, v, event->modifiers() & Qt::ShiftModifier);
    }
    if (drag_ == Drag::ZoomWindow) DrawZoomBox(event->position());
    if (drag_ == Drag::Box) DrawSelectionBox(event->position());
  } else if (!pointerBlocked_ && pickMode_ && event->buttons() == Qt::NoButton) {
    double u = 0, v = 0;
    ViewPoint(event->position(), u, v);
    emit pointerHovered(u, v);
  }
  ShowPosition(event->position());
}

void PictureBox::mouseReleaseEvent(QMouseEvent* event) {
  if (viewport_ == nullptr || drag_ == Drag::None) return;
  const Drag ended = drag_;
  drag_ = Drag::None;
  viewport_->PointerPressed = false;
  if (ended == Drag::Box) {
    EndSelectionBox(event);
    return;
  }
  if (ended == Drag::ZoomWindow) {
    SetLayer(SurfaceLayer::Overlay);
    Clear(viewport_->Colors.Background);
    SetLayer(SurfaceLayer::Retained);
    double x1 = 0, y1 = 0, x2 = 0, y2 = 0;
    ViewPoint(dragStart_, x1, y1);
    ViewPoint(event->position(), x2, y2);
    SetZoomWindowArmed(false);
    viewport_->ZoomWindow(x1, y1, x2, y2);
  } else {
    viewport_->QuickRedrawFlag = false;
    viewport_->DrawGeometryTable();
    if (panArmed_) SetPanArmed(false);
  }
  setCursor(Qt::ArrowCursor);
  emit dragMessage("");
  const QPointF moved = event->position() - dragStart_;
  if (event->button() == Qt::RightButton && rightPress_.isValid() &&
      rightPress_.elapsed() < kRightClickMs && qAbs(moved.x()) <= kRightClickPixels &&
      qAbs(moved.y()) <= kRightClickPixels) {
    emit contextMenuRequested(event->globalPosition().toPoint());
  }
}

void PictureBox::DrawZoomBox(const QPointF& to) {
  SetLayer(SurfaceLayer::Overlay);
  Clear(viewport_->Colors.Background);
  const ColorValue fore = ForeColorFor(viewport_->Colors.Background);
  Rectangle(PixelPoint{static_cast<float>(dragStart_.x()), static_cast<float>(dragStart_.y())},
            PixelPoint{static_cast<float>(to.x()), static_cast<float>(to.y())},
            SurfacePen{fore, 1, LineStyle::Solid});
  SetLayer(SurfaceLayer::Retained);
  Present();
}

// The rubber box of a selection: dotted while the pointer is at or left of the start, which
// tells that the release will take everything the box touches.
void PictureBox::DrawSelectionBox(const QPointF& to) {
  SetLayer(SurfaceLayer::Overlay);
  Clear(viewport_->Colors.Background);
  const LineStyle style = to.x() <= dragStart_.x() ? LineStyle::Dot : LineStyle::Solid;
  Rectangle(PixelPoint{static_cast<float>(dragStart_.x()), static_cast<float>(dragStart_.y())},
            PixelPoint{static_cast<float>(to.x()), static_cast<float>(to.y())},
            SurfacePen{viewport_->Colors.Selected, 1, style});
  SetLayer(SurfaceLayer::Retained);
  Present();
}

// Takes the rubber box off the overlay (the marker is all that stays there).
void PictureBox::ClearOverlay() {
  viewport_->DrawMarker();
  Present();
}

void PictureBox::EndSelectionBox(QMouseEvent* event) {
  ClearOverlay();
  double startU = 0, startV = 0, u = 0, v = 0;
  ViewPoint(dragStart_, startU, startV);
  ViewPoint(event->position(), u, v);
  const Qt::KeyboardModifiers keys = event->modifiers();
  const bool shift = keys & Qt::ShiftModifier;
  const bool control = keys & Qt::ControlModifier;
  if (IsSelectionBox(startU, startV, u, v, viewport_->View.UnitsPerPixel)) {
    emit boxSelected(startU, startV, u, v, shift);
  } else if (!(shift && control)) {
    emit clicked(u, v, control ? 2 : shift ? 1 : 0);
  }
}

void PictureBox::wheelEvent(QWheelEvent* event) {
  const int delta = event->angleDelta().y();
  if (viewport_ == nullptr || pointerBlocked_ || delta == 0) return;
  viewport_->MouseWheelRolled(delta > 0 ? 1 : 0);
  ShowPosition(event->position());
  event->accept();
}

void PictureBox::keyPressEvent(QKeyEvent* event) {
  if (event->key() == Qt::Key_Delete && (event->modifiers() & ~Qt::KeypadModifier) == 0) {
    emit deletePressed();
    return;
  }
  const QString text = event->text().toUpper();
  if (text.size() == 1 && QStringLiteral("XCVZAPSBFM").contains(text[0]) &&
      !(event->modifiers() & (Qt::ControlModifier | Qt::AltModifier))) {
    emit keyCommand(text[0]);
    return;
  }
  QWidget::keyPressEvent(event);
}

}  // namespace zemtra
