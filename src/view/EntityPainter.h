#pragma once
// The per-entity painters: choose the pen of an entity, reduce it to chords, project them and
// send them to a Surface. Consecutive chords of one pen are gathered into one polyline, chords
// shorter than a pixel are merged, chords wholly off one side of the picture are dropped, and a
// chord already drawn by this painter on the same pixels in the same pen is not sent again, so
// a table of a million entities costs a few thousand surface calls.
//
// The painter reads the view and the settings it was made with; make a new one when they
// change (it is cheap). Call Flush() before anything else draws on the surface.
#include <cstdint>
#include <memory>

#include "core/GeoTypes.h"
#include "view/DrawSettings.h"
#include "view/Surface.h"
#include "view/ViewProjector.h"

namespace zemtra {

class ViewState;

class EntityPainter {
 public:
  EntityPainter(Surface& surface, const ViewState& view, const DrawSwitches& switches,
                const DrawColors& colors);
  ~EntityPainter();
  EntityPainter(const EntityPainter&) = delete;
  EntityPainter& operator=(const EntityPainter&) = delete;

  // Paints one entity by its type: 0, 1 lines, 2, 3 arcs, 4 points, 12, 13 helixes. False,
  // with nothing drawn, for any other type. With `monochrome` and PrintInBlack the pen is black.
  bool DrawEntity(const GeoEntity& entity, bool monochrome = false);
  void DrawLineEntity(const GeoEntity& entity, bool monochrome = false);
  void DrawArcEntity(const GeoEntity& entity, bool monochrome = false);
  void DrawHelixEntity(const GeoEntity& entity, bool monochrome = false);
  void DrawPointEntity(const GeoEntity& entity, bool monochrome = false);

  // A plain segment between two machine points in `pen` (axis lines and the like).
  void DrawSegment(const GeoPoint& a, const GeoPoint& b, const SurfacePen& pen);

  // Sends what is gathered to the surface.
  void Flush();

  // The pen colour an entity of colour byte 255 keeps (that of the entity drawn before).
  ColorValue PenColor() const { return penColor_; }
  void SetPenColor(ColorValue color) { penColor_ = color; }

  // A machine point on the surface, in pixels.
  PixelPoint ToPixel(const GeoPoint& point) const;

 private:
  class PathBuilder;

  ColorValue ChoosePen(const GeoEntity& entity, bool monochrome);
  void Box(const GeoPoint& center, float halfPixels, ColorValue color);

  Surface& surface_;
  const DrawSwitches& switches_;
  const DrawColors& colors_;
  ViewProjector projector_;
  double scaleLeft_, scaleTop_, scaleWidth_, pixelsPerUnitX_, pixelsPerUnitY_;
  ColorValue penColor_ = 0;
  std::unique_ptr<PathBuilder> path_;
};

}  // namespace zemtra
