#include "cli/ImageSurface.h"

#include <QFontMetricsF>
#include <QGuiApplication>
#include <QPen>
#include <QString>
#include <algorithm>
#include <cstdio>

namespace zemtra {

namespace {

QColor ToQColor(ColorValue color) {
  const unsigned value = static_cast<unsigned>(color);
  return QColor(value & 0xFF, (value >> 8) & 0xFF, (value >> 16) & 0xFF);
}

Qt::PenStyle ToQtStyle(LineStyle style) {
  switch (style) {
    case LineStyle::Dot:
      return Qt::DotLine;
    case LineStyle::DashDotDot:
      return Qt::DashDotDotLine;
    default:
      return Qt::SolidLine;
  }
}

}  // namespace

namespace {

int applicationArgc = 1;
char applicationName[] = "zemtra-cli";
char* applicationArgv[] = {applicationName, nullptr};

void QuietHandler(QtMsgType type, const QMessageLogContext&, const QString& message) {
  if (type == QtFatalMsg) std::fprintf(stderr, "%s\n", message.toLocal8Bit().constData());
}

}  // namespace

GuiSession::GuiSession() {
  previousHandler_ = qInstallMessageHandler(QuietHandler);
  if (QGuiApplication::instance() != nullptr) return;
  if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM")) qputenv("QT_QPA_PLATFORM", "offscreen");
  application_ = std::make_unique<QGuiApplication>(applicationArgc, applicationArgv);
}

GuiSession::~GuiSession() {
  application_.reset();
  qInstallMessageHandler(previousHandler_);
}

ImageSurface::ImageSurface(int pixelWidth, int pixelHeight, bool antialiased)
    : retained_(std::max(1, pixelWidth), std::max(1, pixelHeight), QImage::Format_RGB32),
      overlay_(retained_.size(), QImage::Format_ARGB32_Premultiplied),
      antialiased_(antialiased),
      font_(QStringLiteral("DejaVu Sans")) {
  font_.setPixelSize(11);
  retained_.fill(Qt::black);
  overlay_.fill(Qt::transparent);
  Begin(retained_, retainedPainter_);
  Begin(overlay_, overlayPainter_);
}

ImageSurface::~ImageSurface() = default;

void ImageSurface::Begin(QImage& image, std::unique_ptr<QPainter>& painter) {
  retainedPen_.valid = overlayPen_.valid = false;
  painter = std::make_unique<QPainter>(&image);
  painter->setRenderHint(QPainter::Antialiasing, antialiased_);
  painter->setRenderHint(QPainter::TextAntialiasing, true);
  painter->setFont(font_);
  painter->setBrush(Qt::NoBrush);
}

void ImageSurface::SetLayer(SurfaceLayer layer) {
  layer_ = layer;
}

void ImageSurface::Clear(ColorValue background) {
  overlayPainter_->setCompositionMode(QPainter::CompositionMode_Source);
  overlayPainter_->fillRect(overlay_.rect(), Qt::transparent);
  overlayPainter_->setCompositionMode(QPainter::CompositionMode_SourceOver);
  if (layer_ == SurfaceLayer::Retained)
    retainedPainter_->fillRect(retained_.rect(), ToQColor(background));
}

void ImageSurface::UsePen(const SurfacePen& pen) {
  PenState& state = layer_ == SurfaceLayer::Retained ? retainedPen_ : overlayPen_;
  if (state.valid && state.pen == pen) return;
  // Width 1 is Qt's cosmetic hairline, its fastest pen.
  Painter().setPen(QPen(ToQColor(pen.color), pen.width <= 1 ? 0 : pen.width, ToQtStyle(pen.style)));
  state = PenState{pen, true};
}

void ImageSurface::Polyline(const PixelPoint* points, std::size_t count, const SurfacePen& pen) {
  if (count < 2) return;
  buffer_.resize(count);
  for (std::size_t i = 0; i < count; ++i) buffer_[i] = QPointF(points[i].x, points[i].y);
  UsePen(pen);
  Painter().drawPolyline(buffer_.data(), static_cast<int>(count));
}

void ImageSurface::Rectangle(PixelPoint a, PixelPoint b, const SurfacePen& pen) {
  UsePen(pen);
  Painter().drawRect(QRectF(QPointF(a.x, a.y), QPointF(b.x, b.y)).normalized());
}

void ImageSurface::Circle(PixelPoint center, float radius, const SurfacePen& pen) {
  UsePen(pen);
  Painter().drawEllipse(QPointF(center.x, center.y), radius, radius);
}

void ImageSurface::Text(PixelPoint topLeft, std::string_view text, ColorValue color) {
  QPainter& painter = Painter();
  painter.setPen(ToQColor(color));
  (layer_ == SurfaceLayer::Retained ? retainedPen_ : overlayPen_).valid = false;
  const QFontMetricsF metrics(font_);
  painter.drawText(QPointF(topLeft.x, topLeft.y + metrics.ascent()),
                   QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size())));
}

float ImageSurface::TextWidth(std::string_view text) const {
  const QFontMetricsF metrics(font_);
  return static_cast<float>(metrics.horizontalAdvance(
      QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()))));
}

float ImageSurface::TextHeight() const {
  return static_cast<float>(QFontMetricsF(font_).height());
}

QImage ImageSurface::Composed() {
  retainedPainter_->end();
  overlayPainter_->end();
  QImage picture = retained_.copy();
  {
    QPainter painter(&picture);
    painter.drawImage(0, 0, overlay_);
  }
  Begin(retained_, retainedPainter_);
  Begin(overlay_, overlayPainter_);
  return picture;
}

bool ImageSurface::SavePng(const std::string& path, std::string& error) {
  const QImage picture = Composed();
  if (!picture.save(QString::fromStdString(path), "PNG")) {
    error = "the PNG file could not be written";
    return false;
  }
  return true;
}

}  // namespace zemtra
