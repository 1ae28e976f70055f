#pragma once
// The viewport widget Pic1: a retained picture and an overlay, both images of the widget's
// size, which the viewport's painter draws on through the Surface interface. The widget shows
// the two images and turns the pointer into the viewport's commands: wheel zoom, pan and
// isometric rotation by dragging, the zoom window, and the position in the status bar.
#include <QElapsedTimer>
#include <QImage>
#include <QPainter>
#include <QWidget>
#include <functional>
#include <memory>
#include <string>

#include "view/Surface.h"

class QTimer;

namespace zemtra {

class Viewport;

class PictureBox : public QWidget, public Surface {
  Q_OBJECT
 public:
  explicit PictureBox(QWidget* parent = nullptr);
  ~PictureBox() override;

  // The viewport this widget shows and drives; attaches itself as its surface.
  void SetViewport(Viewport* viewport);
  Viewport* GetViewport() const { return viewport_; }

  // --- Surface ---
  int PixelWidth() const override;
  int PixelHeight() const override;
  void SetLayer(SurfaceLayer layer) override;
  void Clear(ColorValue background) override;
  void Polyline(const PixelPoint* points, std::size_t count, const SurfacePen& pen) override;
  void Rectangle(PixelPoint a, PixelPoint b, const SurfacePen& pen) override;
  void Circle(PixelPoint center, float radius, const SurfacePen& pen) override;
  void Text(PixelPoint topLeft, std::string_view text, ColorValue color) override;
  float TextWidth(std::string_view text) const override;
  float TextHeight() const override;
  void Present() override;

  // Pointer modes armed by the menu: the next left drag pans, or draws the zoom window.
  void SetPanArmed(bool armed);
  bool PanArmed() const { return panArmed_; }
  void SetZoomWindowArmed(bool armed);
  bool ZoomWindowArmed() const { return zoomWindowArmed_; }

  // Point-to-point measuring: the pointer's moves report pointerHovered, a left press
  // pickPressed, and no selection box is drawn.
  void SetPickMode(bool on) { pickMode_ = on; }
  bool PickMode() const { return pickMode_; }

  // Ignores the pointer (a plot is being computed).
  void SetPointerBlocked(bool blocked) { pointerBlocked_ = blocked; }

  // The picture as shown (retained picture with the overlay on it).
  QImage Picture() const;

 signals:
  // Text for the status panel "pos".
  void positionChanged(const QString& text);
  // Text for the status panel "msg" while a drag runs ("" when it ends).
  void dragMessage(const QString& text);
  // A viewport key command ("X", "C", "V", "Z", "A", "P", "S", "B", "F", "M") was typed.
  void keyCommand(QChar key);
  // The Delete key without a modifier.
  void deletePressed();
  // A left click that was no drag, at view point (u, v): mode 0 plain, 1 Shift, 2 Ctrl.
  void clicked(double u, double v, int mode);
  // A left drag of more than the pick radius, between view points; `shift` adds to the selection.
  void boxSelected(double startU, double startV, double u, double v, bool shift);
  // The pointer moved with no button held, while measuring.
  void pointerHovered(double u, double v);
  // A left press while measuring.
  void pickPressed();
  // A right click that was no drag, at `globalPosition` (the pop-up menu's place).
  void contextMenuRequested(const QPoint& globalPosition);

 protected:
  void paintEvent(QPaintEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;
  void mousePressEvent(QMouseEvent* event) override;
  void mouseMoveEvent(QMouseEvent* event) override;
  void mouseReleaseEvent(QMouseEvent* event) override;
  void wheelEvent(QWheelEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;

 private:
  enum class Drag { None, Pan, Rotate, ZoomWindow, Box };

  QImage& CurrentImage();
  QPainter& PainterFor(QImage& image);
  void EndPainting();
  void MakeImages();
  void ApplyResize();
  void ViewPoint(const QPointF& pixel, double& u, double& v) const;
  void ShowPosition(const QPointF& pixel);
  void DrawZoomBox(const QPointF& to);
  void DrawSelectionBox(const QPointF& to);
  void ClearOverlay();
  void EndSelectionBox(QMouseEvent* event);
  bool StartDrag(QMouseEvent* event);

  Viewport* viewport_ = nullptr;
  QImage retained_;
  QImage overlay_;
  bool onOverlay_ = false;
  QPainter retainedPainter_;
  QPainter overlayPainter_;
  QFont textFont_;
  QTimer* timResize_ = nullptr;

  Drag drag_ = Drag::None;
  QPointF dragStart_;
  bool panArmed_ = false;
  bool zoomWindowArmed_ = false;
  bool pickMode_ = false;
  QElapsedTimer rightPress_;  // tells a right click from a right drag
  bool pointerBlocked_ = false;
  bool sized_ = false;  // the widget has had its first real size
};

}  // namespace zemtra
