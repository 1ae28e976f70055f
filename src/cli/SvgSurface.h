#pragma once
// A Surface that builds an SVG picture in memory: the retained layer, then the overlay above
// it. Coordinates are written with one decimal, colours as #RRGGBB.
#include <string>

#include "view/Surface.h"

namespace zemtra {

class SvgSurface : public Surface {
 public:
  SvgSurface(int pixelWidth, int pixelHeight);

  int PixelWidth() const override { return width_; }
  int PixelHeight() const override { return height_; }
  void SetLayer(SurfaceLayer layer) override { layer_ = layer; }
  void Clear(ColorValue background) override;
  void Polyline(const PixelPoint* points, std::size_t count, const SurfacePen& pen) override;
  void Rectangle(PixelPoint a, PixelPoint b, const SurfacePen& pen) override;
  void Circle(PixelPoint center, float radius, const SurfacePen& pen) override;
  void Text(PixelPoint topLeft, std::string_view text, ColorValue color) override;
  // Estimates for an 11-pixel sans-serif font.
  float TextWidth(std::string_view text) const override;
  float TextHeight() const override { return 13.0f; }

  // The whole document, ready to be written to a file.
  std::string Document() const;

 private:
  std::string& Layer() { return layer_ == SurfaceLayer::Retained ? retained_ : overlay_; }
  void AppendStroke(std::string& out, const SurfacePen& pen);

  int width_, height_;
  SurfaceLayer layer_ = SurfaceLayer::Retained;
  std::string retained_;
  std::string overlay_;
};

// "#RRGGBB" of a colour held as 0x00BBGGRR.
std::string SvgColor(ColorValue color);

}  // namespace zemtra
