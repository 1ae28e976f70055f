#pragma once
// Shared pieces of the text tests: a font made of fixed outlines, and the points of a program.
#include <map>
#include <string>
#include <vector>

#include "text/GlyphOutline.h"

namespace zemtra::test {

// Glyphs by code, given at the identity matrix and 256 times enlarged; GetGlyphOutline applies
// the matrix the way a font does (x' = m11 x + m12 y, y' = m21 x + m22 y, divided by 256).
class TableFont : public GlyphOutlineSource {
 public:
  std::map<char32_t, NativeGlyph> glyphs;
  int calls = 0;

  bool GetGlyphOutline(char32_t code, const Mat2& matrix, NativeGlyph& glyph) override;
};

// A glyph: a square of `side` from the origin, advance `advance`, as one line contour.
NativeGlyph SquareGlyph(double side, double advance);

struct ProgramPoint {
  double X = 0;
  double Y = 0;
};

// The X/Y points of the program's lines that hold both, in order.
std::vector<ProgramPoint> ProgramPoints(const std::string& program);

struct Extents {
  double minX, minY, maxX, maxY;
};
Extents ExtentsOf(const std::vector<ProgramPoint>& points);

}  // namespace zemtra::test
