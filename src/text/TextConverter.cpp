#include "text/TextConverter.h"

#include <algorithm>
#include <cmath>

#include "core/GeoTypes.h"
#include "core/Host.h"
#include "core/NumberText.h"
#include "core/TextUtil.h"
#include "core/Version.h"
#include "geom/Primitives.h"

namespace zemtra {

namespace {

constexpr float kOutlineScale = 256.0F;
constexpr std::string_view kProgressText = "Converting to G-Code";
constexpr std::string_view kLineEnd = "\r\n";

// Share of the width and of the height by which each justification moves the reference point.
struct JustifyShare {
  double alongWidth;
  double alongHeight;
};
constexpr JustifyShare kJustifyShares[9] = {
    {0.0, 0.0}, {0.5, 0.0}, {1.0, 0.0},  // on the base line: left, centre, right
    {0.0, 0.5}, {0.5, 0.5}, {1.0, 0.5},  // half the height up
    {0.0, 1.0}, {0.5, 1.0}, {1.0, 1.0},  // the top
};

JustifyShare SharesFor(int justify) {
  return kJustifyShares[std::clamp(justify, 0, 8)];
}

std::string FailureText(const std::exception& failure) {
  return "Error in " + std::string(UnsupportedFontStyle::Source) + "\r\n" + failure.what();
}

// Length of UTF-8 sequence that starts with `lead`, 0 when it starts none.
int SequenceLength(unsigned char lead) {
  if (lead < 0x80) return 1;
  if (lead >= 0xC2 && lead <= 0xDF) return 2;
  if (lead >= 0xE0 && lead <= 0xEF) return 3;
  if (lead >= 0xF0 && lead <= 0xF4) return 4;
  return 0;
}

}  // namespace

UnsupportedFontStyle::UnsupportedFontStyle()
    : std::runtime_error("Unsupported Font Style. Please contact technical support (" +
                         std::string(kSupportAddress) +
                         ") for additional information on this error.") {}

std::u32string DecodeCodePoints(std::string_view text) {
  std::u32string codes;
  for (std::size_t i = 0; i < text.size();) {
    const auto lead = static_cast<unsigned char>(text[i]);
    const int length = SequenceLength(lead);
    bool valid = length > 0 && i + static_cast<std::size_t>(length) <= text.size();
    char32_t code = length == 1 ? lead : lead & (0x7F >> length);
    for (int k = 1; valid && k < length; ++k) {
      const auto next = static_cast<unsigned char>(text[i + static_cast<std::size_t>(k)]);
      valid = (next & 0xC0) == 0x80;
      code = (code << 6) | (next & 0x3F);
    }
    if (valid) {
      codes.push_back(code);
      i += static_cast<std::size_t>(length);
    } else {
      codes.push_back(lead);
      ++i;
    }
  }
  return codes;
}

TextConverter::TextConverter(GlyphOutlineSource& font, Host& host) : font_(font), host_(host) {}

// ---- Glyph outlines

void TextConverter::GetGlyphs(char32_t charCode, float scale) {
  GlyphContours.clear();
  NativeGlyph glyph;
  if (!font_.GetGlyphOutline(charCode, RotationMat2(GlyphRotation, scale), glyph)) return;
  GlyphBlackBoxY = glyph.BlackBoxY;
  GlyphCellIncX = glyph.CellIncX;
  GlyphCellIncY = glyph.CellIncY;
  GlyphPointCount = 0;
  GlyphPoints.clear();
  for (const PolygonOutline& polygon : glyph.contours) AddContour(polygon);
}

void TextConverter::AddContour(const PolygonOutline& polygon) {
  const std::size_t first = GlyphPoints.size();
  AddPoint(polygon.start.X, polygon.start.Y, 0);
  for (const PolyCurve& curve : polygon.curves) {
    switch (curve.wType) {
      case kPrimLine:
        for (const OutlinePoint& p : curve.points) AddPoint(p.X, p.Y, 1);
        break;
      case kPrimQSpline:
        AddSpline(curve.points);
        break;
      default:
        throw UnsupportedFontStyle();
    }
  }
  GlyphContours.emplace_back(GlyphPoints.begin() + static_cast<std::ptrdiff_t>(first),
                             GlyphPoints.end());
}

void TextConverter::AddPoint(double x, double y, std::int16_t kind) {
  GlyphPoints.push_back(GlyphPoint{x, y, kind});
  ++GlyphPointCount;
}

// A TrueType spline holds implied on-curve points halfway between two control points; each
// piece runs from the last on-curve point through one control point to the next on-curve one.
void TextConverter::AddSpline(const std::vector<OutlinePoint>& controls) {
  if (CurveStep <= 0 || controls.size() < 2 || GlyphPoints.empty()) return;
  OutlinePoint a{GlyphPoints.back().X, GlyphPoints.back().Y};
  const std::size_t last = controls.size() - 1;
  for (std::size_t i = 0; i < last; ++i) {
    const OutlinePoint& b = controls[i];
    const OutlinePoint c = i + 1 < last ? OutlinePoint{(controls[i].X + controls[i + 1].X) / 2,
                                                       (controls[i].Y + controls[i + 1].Y) / 2}
                                        : controls[last];
    FlattenCurve(a, b, c);
    a = c;
  }
}

// Points of the quadratic curve A-B-C at t = 0, CurveStep, ... up to 1; the first repeats A.
void TextConverter::FlattenCurve(const OutlinePoint& a, const OutlinePoint& b,
                                 const OutlinePoint& c) {
  for (float t = 0; t <= 1.0F; t += CurveStep) {
    const double u = t;
    const double x = u * u * (a.X - 2 * b.X + c.X) + u * (2 * b.X - 2 * a.X) + a.X;
    const double y = u * u * (a.Y - 2 * b.Y + c.Y) + u * (2 * b.Y - 2 * a.Y) + a.Y;
    AddPoint(x, y, 2);
    if (t + CurveStep == t) break;  // a step too small to move t would never end
  }
}

// ---- Conversion

std::optional<std::string> TextConverter::ConvertText(std::string_view text) {
  Output.clear();
  CurveStep = 0.25F;
  const std::u32string codes = DecodeCodePoints(TrimText(text));
  if (codes.empty() || Placement.TextHeight == 0) return std::string();
  host_.status("msg", kProgressText);
  try {
    const FirstPass measured = MeasureText(codes);
    PreviewBoxHeight = static_cast<int>(measured.maxBlackBoxY * 1.2);
    if (measured.maxBlackBoxY > 0) {
      const double scale = Placement.TextHeight / measured.maxBlackBoxY;
      double width = 0;
      for (const double advance : measured.advances) width += advance * scale;
      if (Placement.OnArc) {
        LayOutOnArc(codes, scale, measured.advances);
      } else {
        LayOutOnLine(codes, scale, width);
      }
    }
  } catch (const UnsupportedFontStyle& failure) {
    Output.clear();
    host_.progress(-1);
    host_.status("msg", "");
    host_.ask(Prompt{FailureText(failure), kProductName, MsgIcon::Stop, MsgButtons::Ok});
    return std::nullopt;
  }
  host_.progress(-1);
  host_.status("msg", "");
  return Output;
}

TextConverter::FirstPass TextConverter::MeasureText(const std::u32string& codes) {
  FirstPass measured;
  GlyphRotation = 0;
  for (const char32_t code : codes) {
    GetGlyphs(code, kOutlineScale);
    measured.maxBlackBoxY = std::max(measured.maxBlackBoxY, GlyphBlackBoxY);
    measured.advances.push_back(Advance());
  }
  return measured;
}

double TextConverter::Advance() const {
  return std::hypot(static_cast<double>(GlyphCellIncX), static_cast<double>(GlyphCellIncY));
}

void TextConverter::ShowProgress(std::size_t done, std::size_t total) {
  host_.progress(static_cast<int>(done * 100 / std::max<std::size_t>(total, 1)));
  host_.pumpEvents();
}

// The pen starts at the reference point moved back by the justification, and moves along the
// base line by each character's advance; the glyphs turn with the base line.
void TextConverter::LayOutOnLine(const std::u32string& codes, double scale, double width) {
  const double angle = Placement.TextAngle * kDegree;
  const double dirX = std::cos(angle);
  const double dirY = std::sin(angle);
  const JustifyShare share = SharesFor(Placement.Justify);
  const double back = share.alongWidth * width;
  const double down = share.alongHeight * Placement.TextHeight;
  double penX = Placement.XLocation - back * dirX + down * dirY;
  double penY = Placement.YLocation - back * dirY - down * dirX;
  GlyphRotation = static_cast<float>(-Placement.TextAngle);
  for (std::size_t i = 0; i < codes.size(); ++i) {
    ShowProgress(i, codes.size());
    GetGlyphs(codes[i], kOutlineScale);
    WriteContours(penX, penY, scale);
    const double advance = Advance() * scale;
    penX += advance * dirX;
    penY += advance * dirY;
  }
}

// The text reads clockwise with each glyph's base on the arc. The running angle moves by the
// angle that half a character's advance subtends, once to reach the character's middle, where
// its glyph is turned to stand upright on the arc, and once more to reach its end.
void TextConverter::LayOutOnArc(const std::u32string& codes, double scale,
                                const std::vector<double>& advances) {
  const JustifyShare share = SharesFor(Placement.Justify);
  const double radius = Placement.Radius - share.alongHeight * Placement.TextHeight;
  const GeoPoint center{};
  const auto halfSubtended = [&](double advance) {
    const GeoPoint end{static_cast<float>(radius), static_cast<float>(advance / 2), 0, 0};
    return AngleTo(center, end, 17) / kDegree;
  };
  double total = 0;
  for (const double advance : advances) total += 2 * halfSubtended(advance * scale);
  double angle = Placement.StartAngle + share.alongWidth * total;
  for (std::size_t i = 0; i < codes.size(); ++i) {
    ShowProgress(i, codes.size());
    angle -= halfSubtended(advances[i] * scale);
    GlyphRotation = static_cast<float>(-(angle - 90));
    GetGlyphs(codes[i], kOutlineScale);
    const double advance = Advance() * scale;
    const double radians = angle * kDegree;
    const double tangentX = std::sin(radians);
    const double tangentY = -std::cos(radians);
    const double originX =
        Placement.XLocation + radius * std::cos(radians) - advance / 2 * tangentX;
    const double originY =
        Placement.YLocation + radius * std::sin(radians) - advance / 2 * tangentY;
    WriteContours(originX, originY, scale);
    angle -= halfSubtended(advance);
  }
}

// ---- Blocks

std::string TextConverter::Coordinates(double x, double y) const {
  return "X" + FormatNumberText(x, NumberFormat) + "Y" + FormatNumberText(y, NumberFormat);
}

void TextConverter::WriteContours(double originX, double originY, double scale) {
  const auto line = [&](const std::string& text) {
    Output += text;
    Output += kLineEnd;
  };
  for (const std::vector<GlyphPoint>& contour : GlyphContours) {
    if (contour.empty()) continue;
    const double firstX = contour.front().X * scale + originX;
    const double firstY = contour.front().Y * scale + originY;
    line("G00Z" + FormatNumberText(TextZRetract, NumberFormat));
    line(Coordinates(firstX, firstY));
    if (TextZApproach < TextZRetract && TextZApproach > TextZDepth) {
      line("Z" + FormatNumberText(TextZApproach, NumberFormat));
    }
    line("G01Z" + FormatNumberText(TextZDepth, NumberFormat) + "F" +
         FormatNumberText(TextFeedrate, NumberFormat));
    for (std::size_t i = 1; i < contour.size(); ++i) {
      line(Coordinates(contour[i].X * scale + originX, contour[i].Y * scale + originY));
    }
    line(Coordinates(firstX, firstY));
  }
}

}  // namespace zemtra
