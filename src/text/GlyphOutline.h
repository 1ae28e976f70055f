#pragma once
// The native outline of one glyph: closed contours of straight runs and quadratic splines, in
// the published TrueType layout (a polygon header with its start point, then poly-curve
// records), and the glyph's metrics. Coordinates are device pixels times the matrix's scale,
// with Y up from the base line.
#include <cstdint>
#include <vector>

namespace zemtra {

// A 16.16 fixed-point number: signed integer part, unsigned fraction.
struct Fixed {
  std::int16_t value = 0;
  std::uint16_t fract = 0;
};

// The integer part plus the fraction / 65536.
double FixedToDouble(Fixed number);
// The nearest 16.16 number at or below `number` (two's complement, so negative values keep
// their sign); values beyond +-32768 wrap.
Fixed DoubleToFixed(double number);

// The 2 by 2 matrix applied to a glyph outline: x' = eM11 x + eM12 y, y' = eM21 x + eM22 y.
struct Mat2 {
  Fixed eM11;
  Fixed eM12;
  Fixed eM21;
  Fixed eM22;
};

// The matrix that turns a glyph clockwise by `rotationDegrees` and enlarges it by `scale`.
// Sine and cosine are rounded to 2 decimals, so the angle moves in steps.
Mat2 RotationMat2(float rotationDegrees, float scale);

// Kinds of poly-curve records.
inline constexpr std::int16_t kPrimLine = 1;     // straight segments to each point
inline constexpr std::int16_t kPrimQSpline = 2;  // quadratic B-spline; last point on the curve
inline constexpr std::int16_t kPrimCSpline = 3;  // cubic Bezier segments (CFF outlines)

struct OutlinePoint {
  double X = 0;
  double Y = 0;
};

struct PolyCurve {
  std::int16_t wType = kPrimLine;
  std::vector<OutlinePoint> points;  // cpfx points
};

// One closed contour: it starts at `start` and, after its last record, closes back to it.
struct PolygonOutline {
  OutlinePoint start;
  std::vector<PolyCurve> curves;
};

// The answer for one glyph: metrics and, unless it is a blank, its contours.
struct NativeGlyph {
  std::int32_t BlackBoxX = 0;  // width of the inked box, pixels times scale
  std::int32_t BlackBoxY = 0;  // height of the inked box
  std::int16_t CellIncX = 0;   // the advance of the pen, rounded
  std::int16_t CellIncY = 0;
  std::vector<PolygonOutline> contours;  // empty for a blank
};

// Where glyph outlines come from: a font on this machine, or a fixed table in tests.
class GlyphOutlineSource {
 public:
  virtual ~GlyphOutlineSource() = default;
  // The outline of `code` (a Unicode code point) transformed by `matrix`; false when the font
  // cannot give one, which makes the character a blank without an advance.
  virtual bool GetGlyphOutline(char32_t code, const Mat2& matrix, NativeGlyph& glyph) = 0;
};

}  // namespace zemtra
