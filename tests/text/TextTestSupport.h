#pragma once
// Shared pieces of the text tests: a font made of fixed outlines, and the points of a program.
#include <algorithm>
#include <cmath>
#include <limits>
#include <map>
#include <sstream>
#include <string>
#include <vector>

#include "core/NumberText.h"
#include "text/GlyphOutline.h"

namespace zemtra::test {

// Glyphs by code, given at the identity matrix and 256 times enlarged; GetGlyphOutline applies
// the matrix the way a font does (x' = m11 x + m12 y, y' = m21 x + m22 y, divided by 256).
class TableFont : public GlyphOutlineSource {
 public:
  std::map<char32_t, NativeGlyph> glyphs;
  int calls = 0;

  bool GetGlyphOutline(char32_t code, const Mat2& matrix, NativeGlyph& glyph) override {
    ++calls;
    const auto found = glyphs.find(code);
    if (found == glyphs.end()) return false;
    const auto transform = [&matrix](const OutlinePoint& p) {
      const auto m = [](const Fixed& f) { return FixedToDouble(f) / 256; };
      return OutlinePoint{m(matrix.eM11) * p.X + m(matrix.eM12) * p.Y,
                          m(matrix.eM21) * p.X + m(matrix.eM22) * p.Y};
    };
    glyph = found->second;
    for (PolygonOutline& polygon : glyph.contours) {
      polygon.start = transform(polygon.start);
      for (PolyCurve& curve : polygon.curves)
        for (OutlinePoint& p : curve.points) p = transform(p);
    }
    const OutlinePoint advance = transform(OutlinePoint{double(found->second.CellIncX), 0});
    glyph.CellIncX = static_cast<std::int16_t>(std::lround(advance.X));
    glyph.CellIncY = static_cast<std::int16_t>(std::lround(advance.Y));
    return true;
  }
};

// A glyph: a square of `side` from the origin, advance `advance`, as one line contour.
inline NativeGlyph SquareGlyph(double side, double advance) {
  NativeGlyph glyph;
  glyph.BlackBoxX = static_cast<std::int32_t>(side);
  glyph.BlackBoxY = static_cast<std::int32_t>(side);
  glyph.CellIncX = static_cast<std::int16_t>(advance);
  glyph.contours.push_back(
      PolygonOutline{{0, 0}, {PolyCurve{kPrimLine, {{side, 0}, {side, side}, {0, side}}}}});
  return glyph;
}

struct ProgramPoint {
  double X = 0;
  double Y = 0;
};

// The X/Y points of the program's lines that hold both, in order.
inline std::vector<ProgramPoint> ProgramPoints(const std::string& program) {
  std::vector<ProgramPoint> points;
  std::istringstream lines(program);
  for (std::string line; std::getline(lines, line);) {
    const std::size_t x = line.find('X');
    const std::size_t y = line.find('Y');
    if (x == std::string::npos || y == std::string::npos) continue;
    points.push_back(ProgramPoint{NumericTextValue(line.substr(x + 1, y - x - 1)),
                                  NumericTextValue(line.substr(y + 1))});
  }
  return points;
}

struct Extents {
  double minX = std::numeric_limits<double>::max(), minY = std::numeric_limits<double>::max();
  double maxX = std::numeric_limits<double>::lowest(), maxY = std::numeric_limits<double>::lowest();
};

inline Extents ExtentsOf(const std::vector<ProgramPoint>& points) {
  Extents e;
  for (const ProgramPoint& p : points) {
    e.minX = std::min(e.minX, p.X);
    e.minY = std::min(e.minY, p.Y);
    e.maxX = std::max(e.maxX, p.X);
    e.maxY = std::max(e.maxY, p.Y);
  }
  return e;
}

}  // namespace zemtra::test
