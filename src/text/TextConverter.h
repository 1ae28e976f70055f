#pragma once
// Text to G-code: lays a string out along a line or around an arc at a chosen height and writes
// an engraving program, one closed contour at a time (rapid to its start, plunge, the contour,
// back to its start). The glyphs come from a GlyphOutlineSource, their splines flattened.
#include <cstdint>
#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include "text/GlyphOutline.h"

namespace zemtra {

class Host;

// A point of a glyph outline. Kind: 0 first point of a contour, 1 end of a straight segment,
// 2 point of a flattened curve.
struct GlyphPoint {
  double X = 0;
  double Y = 0;
  std::int16_t Kind = 0;
};

// Error numbers of the application count from this base.
inline constexpr std::int32_t kApplicationErrorBase = -2147221504;
// Where users are sent when a font cannot be converted.
inline constexpr std::string_view kSupportAddress = "support@zemtra.org";

// Raised when a glyph holds an outline other than straight lines and quadratic splines (an
// OpenType font with cubic outlines).
class UnsupportedFontStyle : public std::runtime_error {
 public:
  UnsupportedFontStyle();
  static constexpr std::string_view Source = "GetGlyphs";
  static constexpr std::int32_t Number = kApplicationErrorBase + 1001;
};

// Where and how large the text goes. Lengths in program units, angles in degrees counter-
// clockwise from +X.
struct TextPlacement {
  int Justify = 0;        // 0 to 8: column (left, centre, right) + 3 * row (base line, middle, top)
  double TextHeight = 1;  // height of the tallest character
  double XLocation = 0;   // the reference point; with OnArc the arc's centre
  double YLocation = 0;
  double TextAngle = 0;  // angle of the base line (not on an arc)
  bool OnArc = false;
  double Radius = 10;     // the arc the base line follows, read clockwise
  double StartAngle = 0;  // where the justified reference lies on the arc
};

class TextConverter {
 public:
  // `font` gives the outlines, `host` shows progress and the failure message; both must outlive
  // the converter.
  TextConverter(GlyphOutlineSource& font, Host& host);

  // Fills the glyph records below for one character, rotated by GlyphRotation and enlarged by
  // `scale` (256 gives coordinates 256 times the pixel size). A character the font cannot give
  // leaves no contours and the previous metrics. Throws UnsupportedFontStyle on a cubic outline.
  void GetGlyphs(char32_t charCode, float scale);

  // The engraving program of `text` (trimmed, UTF-8), CR LF line ends; "" for an empty text or
  // a height of 0. On an unsupported font the failure is shown through the host and nothing is
  // returned.
  std::optional<std::string> ConvertText(std::string_view text);

  // Appends the blocks of the present character's contours, each point at
  // point * scale + (originX, originY), to Output.
  void WriteContours(double originX, double originY, double scale);

  // ---- Inputs
  TextPlacement Placement;
  double TextZRetract = 10;
  double TextZApproach = 1;
  double TextZDepth = 0;
  double TextFeedrate = 10;
  std::string NumberFormat = "###0.0###";  // picture for the coordinates of the blocks

  // ---- The present character
  int GlyphPointCount = 0;
  std::vector<GlyphPoint> GlyphPoints;
  std::vector<std::vector<GlyphPoint>> GlyphContours;
  float CurveStep = 0.25F;  // step of the spline parameter; 0 or below adds no curve points
  float GlyphRotation = 0;  // degrees, clockwise
  std::int32_t GlyphBlackBoxY = 0;
  std::int16_t GlyphCellIncX = 0;
  std::int16_t GlyphCellIncY = 0;

  // ---- Results
  int PreviewBoxHeight = 0;  // 1.2 times the tallest black box, for the preview
  std::string Output;        // the blocks made so far

 private:
  struct FirstPass {
    std::int32_t maxBlackBoxY = 0;
    std::vector<double> advances;  // unrotated, in outline units
  };

  FirstPass MeasureText(const std::u32string& codes);
  void LayOutOnLine(const std::u32string& codes, double scale, double width);
  void LayOutOnArc(const std::u32string& codes, double scale, const std::vector<double>& advances);
  void AddPoint(double x, double y, std::int16_t kind);
  void AddSpline(const std::vector<OutlinePoint>& controls);
  void FlattenCurve(const OutlinePoint& a, const OutlinePoint& b, const OutlinePoint& c);
  void AddContour(const PolygonOutline& polygon);
  double Advance() const;
  void ShowProgress(std::size_t done, std::size_t total);
  std::string Coordinates(double x, double y) const;

  GlyphOutlineSource& font_;
  Host& host_;
};

// The code points of a UTF-8 text; a byte that starts no valid sequence stands for itself
// (Latin-1).
std::u32string DecodeCodePoints(std::string_view text);

}  // namespace zemtra
