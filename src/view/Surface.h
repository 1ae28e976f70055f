#pragma once
// The drawing surface the viewport paints on: the window's picture, a picture file, or a test
// recorder. Coordinates are device pixels as floats: x to the right, y downward, (0, 0) the
// top-left corner of the surface. Points outside the surface are allowed; the surface clips.
#include <cstddef>
#include <cstdint>
#include <string_view>

namespace zemtra {

// A colour 0x00BBGGRR: red in the low byte, blue in the third (the same as config's ColorValue).
using ColorValue = std::int32_t;

// Line patterns; the values are those of the picture's DrawStyle.
enum class LineStyle : std::uint8_t {
  Solid = 0,
  Dot = 2,
  DashDotDot = 4,
};

// Two layers: the retained picture survives exposure and is what a repaint builds; the overlay
// holds passing things (rubber bands, the position marker, the snap circle) above it.
enum class SurfaceLayer : std::uint8_t { Retained, Overlay };

struct PixelPoint {
  float x = 0;
  float y = 0;
  friend bool operator==(const PixelPoint&, const PixelPoint&) = default;
};

struct SurfacePen {
  ColorValue color = 0;
  std::uint8_t width = 1;  // pixels
  LineStyle style = LineStyle::Solid;
  friend bool operator==(const SurfacePen&, const SurfacePen&) = default;
};

class Surface {
 public:
  virtual ~Surface() = default;

  // Size in device pixels; at least 1 each.
  virtual int PixelWidth() const = 0;
  virtual int PixelHeight() const = 0;

  // Chooses the layer that the following calls draw on and clear.
  virtual void SetLayer(SurfaceLayer layer) = 0;
  // Clears the current layer. The retained layer is filled with `background` and the overlay
  // is emptied with it; the overlay alone is emptied (made transparent) without a repaint.
  virtual void Clear(ColorValue background) = 0;

  // Connected segments through `count` points (nothing for fewer than 2).
  virtual void Polyline(const PixelPoint* points, std::size_t count, const SurfacePen& pen) = 0;
  // The outline of the axis-aligned box with opposite corners `a` and `b`.
  virtual void Rectangle(PixelPoint a, PixelPoint b, const SurfacePen& pen) = 0;
  // The outline of a circle, radius in pixels.
  virtual void Circle(PixelPoint center, float radius, const SurfacePen& pen) = 0;
  // UTF-8 text with its top-left corner at `topLeft`, in the surface's small font.
  virtual void Text(PixelPoint topLeft, std::string_view text, ColorValue color) = 0;
  virtual float TextWidth(std::string_view text) const = 0;
  virtual float TextHeight() const = 0;

  // Called before the painter yields to the event loop in the middle of a repaint: what is
  // drawn so far may be shown.
  virtual void Present() {}
};

}  // namespace zemtra
