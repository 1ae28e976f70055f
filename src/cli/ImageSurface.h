#pragma once
// A Surface over two QImages: the retained picture and a transparent overlay. Saving composes
// them. Needs a QGuiApplication for text (EnsureGuiApplication makes an offscreen one).
#include <QFont>
#include <QGuiApplication>
#include <QImage>
#include <QPainter>
#include <QPointF>
#include <memory>
#include <string>
#include <vector>

#include "view/Surface.h"

namespace zemtra {

class ImageSurface : public Surface {
 public:
  // `antialiased` smooths lines and text (slower); off draws crisp one-pixel lines.
  ImageSurface(int pixelWidth, int pixelHeight, bool antialiased = false);
  ~ImageSurface() override;

  int PixelWidth() const override { return retained_.width(); }
  int PixelHeight() const override { return retained_.height(); }
  void SetLayer(SurfaceLayer layer) override;
  void Clear(ColorValue background) override;
  void Polyline(const PixelPoint* points, std::size_t count, const SurfacePen& pen) override;
  void Rectangle(PixelPoint a, PixelPoint b, const SurfacePen& pen) override;
  void Circle(PixelPoint center, float radius, const SurfacePen& pen) override;
  void Text(PixelPoint topLeft, std::string_view text, ColorValue color) override;
  float TextWidth(std::string_view text) const override;
  float TextHeight() const override;

  // The retained picture with the overlay drawn over it.
  QImage Composed();
  // Writes Composed() as PNG; false with the reason in `error` when it cannot.
  bool SavePng(const std::string& path, std::string& error);

 private:
  QPainter& Painter() {
    return layer_ == SurfaceLayer::Retained ? *retainedPainter_ : *overlayPainter_;
  }
  void Begin(QImage& image, std::unique_ptr<QPainter>& painter);
  void UsePen(const SurfacePen& pen);

  // The pen each painter holds, so an unchanged pen is not set again.
  struct PenState {
    SurfacePen pen;
    bool valid = false;
  };

  QImage retained_;
  QImage overlay_;
  std::unique_ptr<QPainter> retainedPainter_;
  std::unique_ptr<QPainter> overlayPainter_;
  SurfaceLayer layer_ = SurfaceLayer::Retained;
  PenState retainedPen_;
  PenState overlayPen_;
  bool antialiased_;
  QFont font_;
  std::vector<QPointF> buffer_;
};

// Makes sure a QGuiApplication exists while it lives, as text drawing needs one: an offscreen
// one when the process has none, ended with the session. Qt's start-up chatter is silenced.
class GuiSession {
 public:
  GuiSession();
  ~GuiSession();
  GuiSession(const GuiSession&) = delete;
  GuiSession& operator=(const GuiSession&) = delete;

 private:
  std::unique_ptr<QGuiApplication> application_;
  QtMessageHandler previousHandler_ = nullptr;
};

}  // namespace zemtra
