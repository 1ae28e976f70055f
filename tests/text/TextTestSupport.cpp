#include "TextTestSupport.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <sstream>

#include "core/NumberText.h"

namespace zemtra::test {

namespace {

OutlinePoint Transform(const OutlinePoint& p, const Mat2& m) {
  const double m11 = FixedToDouble(m.eM11) / 256;
  const double m12 = FixedToDouble(m.eM12) / 256;
  const double m21 = FixedToDouble(m.eM21) / 256;
  const double m22 = FixedToDouble(m.eM22) / 256;
  return OutlinePoint{m11 * p.X + m12 * p.Y, m21 * p.X + m22 * p.Y};
}

}  // namespace

bool TableFont::GetGlyphOutline(char32_t code, const Mat2& matrix, NativeGlyph& glyph) {
  ++calls;
  const auto found = glyphs.find(code);
  if (found == glyphs.end()) return false;
  glyph = found->second;
  for (PolygonOutline& polygon : glyph.contours) {
    polygon.start = Transform(polygon.start, matrix);
    for (PolyCurve& curve : polygon.curves) {
      for (OutlinePoint& p : curve.points) p = Transform(p, matrix);
    }
  }
  const OutlinePoint advance = Transform(OutlinePoint{double(found->second.CellIncX), 0}, matrix);
  glyph.CellIncX = static_cast<std::int16_t>(std::lround(advance.X));
  glyph.CellIncY = static_cast<std::int16_t>(std::lround(advance.Y));
  return true;
}

NativeGlyph SquareGlyph(double side, double advance) {
  NativeGlyph glyph;
  glyph.BlackBoxX = static_cast<std::int32_t>(side);
  glyph.BlackBoxY = static_cast<std::int32_t>(side);
  glyph.CellIncX = static_cast<std::int16_t>(advance);
  glyph.contours.push_back(
      PolygonOutline{{0, 0}, {PolyCurve{kPrimLine, {{side, 0}, {side, side}, {0, side}}}}});
  return glyph;
}

std::vector<ProgramPoint> ProgramPoints(const std::string& program) {
  std::vector<ProgramPoint> points;
  std::istringstream lines(program);
  std::string line;
  while (std::getline(lines, line)) {
    const std::size_t x = line.find('X');
    const std::size_t y = line.find('Y');
    if (x == std::string::npos || y == std::string::npos) continue;
    points.push_back(ProgramPoint{NumericTextValue(line.substr(x + 1, y - x - 1)),
                                  NumericTextValue(line.substr(y + 1))});
  }
  return points;
}

Extents ExtentsOf(const std::vector<ProgramPoint>& points) {
  Extents e{std::numeric_limits<double>::max(), std::numeric_limits<double>::max(),
            std::numeric_limits<double>::lowest(), std::numeric_limits<double>::lowest()};
  for (const ProgramPoint& p : points) {
    e.minX = std::min(e.minX, p.X);
    e.minY = std::min(e.minY, p.Y);
    e.maxX = std::max(e.maxX, p.X);
    e.maxY = std::max(e.maxY, p.Y);
  }
  return e;
}

}  // namespace zemtra::test
