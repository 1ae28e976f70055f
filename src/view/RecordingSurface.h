#pragma once
// Surfaces without a picture: NullSurface swallows everything (for timing the painter), and
// RecordingSurface keeps every call, so tests can assert what was drawn, in which pen and where.
#include <string>
#include <vector>

#include "view/Surface.h"

namespace zemtra {

class NullSurface : public Surface {
 public:
  NullSurface(int pixelWidth, int pixelHeight) : width_(pixelWidth), height_(pixelHeight) {}
  int PixelWidth() const override { return width_; }
  int PixelHeight() const override { return height_; }
  void SetLayer(SurfaceLayer) override {}
  void Clear(ColorValue) override {}
  void Polyline(const PixelPoint*, std::size_t count, const SurfacePen&) override {
    ++polylines;
    points += count;
  }
  void Rectangle(PixelPoint, PixelPoint, const SurfacePen&) override {}
  void Circle(PixelPoint, float, const SurfacePen&) override {}
  void Text(PixelPoint, std::string_view, ColorValue) override {}
  float TextWidth(std::string_view text) const override { return 7.0f * text.size(); }
  float TextHeight() const override { return 13.0f; }

  long long polylines = 0;  // calls of Polyline
  long long points = 0;     // points sent with them

 private:
  int width_, height_;
};

class RecordingSurface : public Surface {
 public:
  enum class Kind { Clear, Polyline, Rectangle, Circle, Text };
  struct Call {
    Kind kind;
    SurfaceLayer layer;
    SurfacePen pen;  // colour of Clear and Text in pen.color
    std::vector<PixelPoint>
        points;  // polyline points; rectangle corners; circle centre; text corner
    float radius = 0;
    std::string text;
  };

  RecordingSurface(int pixelWidth, int pixelHeight) : width_(pixelWidth), height_(pixelHeight) {}

  int PixelWidth() const override { return width_; }
  int PixelHeight() const override { return height_; }
  void SetLayer(SurfaceLayer layer) override { layer_ = layer; }
  void Clear(ColorValue background) override;
  void Polyline(const PixelPoint* points, std::size_t count, const SurfacePen& pen) override;
  void Rectangle(PixelPoint a, PixelPoint b, const SurfacePen& pen) override;
  void Circle(PixelPoint center, float radius, const SurfacePen& pen) override;
  void Text(PixelPoint topLeft, std::string_view text, ColorValue color) override;
  // A fixed-pitch font: 7 pixels a character, 13 high.
  float TextWidth(std::string_view text) const override { return 7.0f * text.size(); }
  float TextHeight() const override { return 13.0f; }
  void Present() override { ++presents; }

  // The calls of one kind, in order.
  std::vector<Call> Of(Kind kind) const;
  // Polylines in `color`, in order.
  std::vector<Call> PolylinesIn(ColorValue color) const;

  std::vector<Call> calls;
  int presents = 0;

 private:
  int width_, height_;
  SurfaceLayer layer_ = SurfaceLayer::Retained;
};

}  // namespace zemtra
