#include "view/RecordingSurface.h"

namespace zemtra {

void RecordingSurface::Clear(ColorValue background) {
  if (layer_ == SurfaceLayer::Retained) calls.clear();
  calls.push_back(
      Call{Kind::Clear, layer_, SurfacePen{background, 1, LineStyle::Solid}, {}, 0, {}});
}

void RecordingSurface::Polyline(const PixelPoint* points, std::size_t count,
                                const SurfacePen& pen) {
  calls.push_back(Call{Kind::Polyline, layer_, pen, {points, points + count}, 0, {}});
}

void RecordingSurface::Rectangle(PixelPoint a, PixelPoint b, const SurfacePen& pen) {
  calls.push_back(Call{Kind::Rectangle, layer_, pen, {a, b}, 0, {}});
}

void RecordingSurface::Circle(PixelPoint center, float radius, const SurfacePen& pen) {
  calls.push_back(Call{Kind::Circle, layer_, pen, {center}, radius, {}});
}

void RecordingSurface::Text(PixelPoint topLeft, std::string_view text, ColorValue color) {
  calls.push_back(Call{
      Kind::Text, layer_, SurfacePen{color, 1, LineStyle::Solid}, {topLeft}, 0, std::string(text)});
}

std::vector<RecordingSurface::Call> RecordingSurface::Of(Kind kind) const {
  std::vector<Call> found;
  for (const Call& call : calls) {
    if (call.kind == kind) found.push_back(call);
  }
  return found;
}

std::vector<RecordingSurface::Call> RecordingSurface::PolylinesIn(ColorValue color) const {
  std::vector<Call> found;
  for (const Call& call : calls) {
    if (call.kind == Kind::Polyline && call.pen.color == color) found.push_back(call);
  }
  return found;
}

}  // namespace zemtra
