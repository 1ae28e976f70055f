#include "text/FontFace.h"

#include <fontconfig/fontconfig.h>
#include <ft2build.h>
#include FT_FREETYPE_H
#include FT_OUTLINE_H

#include <algorithm>
#include <cmath>
#include <iterator>
#include <limits>
#include <string_view>
#include <utility>
#include <vector>

#include "core/TextUtil.h"

namespace zemtra {

namespace {

constexpr double kDotsPerInch = 96.0;
// Outlines come back 256 times their pixel size and advances are 16-bit: beyond this size a
// wide glyph's advance would overflow. The program is scaled to the text height anyway, so
// larger sizes are read at this one.
constexpr int kLargestOutlinePoints = 48;

// ---- Finding the font file

struct FcConfigDeleter {
  void operator()(FcConfig* config) const { FcConfigDestroy(config); }
};
struct FcPatternDeleter {
  void operator()(FcPattern* pattern) const { FcPatternDestroy(pattern); }
};
using ConfigPtr = std::unique_ptr<FcConfig, FcConfigDeleter>;
using PatternPtr = std::unique_ptr<FcPattern, FcPatternDeleter>;

const FcChar8* FcText(const std::string& text) {
  return reinterpret_cast<const FcChar8*>(text.c_str());
}

PatternPtr RequestPattern(FcConfig* config, const FontRequest& request) {
  PatternPtr pattern(FcPatternCreate());
  FcPatternAddString(pattern.get(), FC_FAMILY, FcText(request.family));
  FcPatternAddInteger(pattern.get(), FC_WEIGHT, request.bold ? FC_WEIGHT_BOLD : FC_WEIGHT_REGULAR);
  FcPatternAddInteger(pattern.get(), FC_SLANT, request.italic ? FC_SLANT_ITALIC : FC_SLANT_ROMAN);
  FcPatternAddBool(pattern.get(), FC_SCALABLE, FcTrue);
  FcConfigSubstitute(config, pattern.get(), FcMatchPattern);
  FcDefaultSubstitute(pattern.get());
  return pattern;
}

// The families that stand for the requested one: itself and its metric-compatible aliases.
// Generic fallbacks ("sans-serif" and what it expands to) are bound weakly and left out.
std::vector<std::string> AcceptedFamilies(FcPattern* pattern) {
  std::vector<std::string> families;
  FcValue value;
  FcValueBinding binding;
  for (int i = 0; FcPatternGetWithBinding(pattern, FC_FAMILY, i, &value, &binding) == FcResultMatch;
       ++i) {
    if (value.type == FcTypeString &&
        (binding == FcValueBindingStrong || binding == FcValueBindingSame)) {
      families.emplace_back(reinterpret_cast<const char*>(value.u.s));
    }
  }
  return families;
}

std::vector<std::string> AllFamilies(FcPattern* pattern) {
  std::vector<std::string> families;
  FcChar8* name = nullptr;
  for (int i = 0; FcPatternGetString(pattern, FC_FAMILY, i, &name) == FcResultMatch; ++i) {
    families.emplace_back(reinterpret_cast<const char*>(name));
  }
  return families;
}

std::string AcceptedFamilyOf(FcPattern* match, const std::vector<std::string>& accepted) {
  FcChar8* name = nullptr;
  for (int i = 0; FcPatternGetString(match, FC_FAMILY, i, &name) == FcResultMatch; ++i) {
    const std::string family(reinterpret_cast<const char*>(name));
    const bool found = std::any_of(accepted.begin(), accepted.end(), [&](const std::string& want) {
      return EqualsNoCase(want, family);
    });
    if (found) return family;
  }
  return {};
}

// The desktop's generic names stand for whatever font it prefers for them.
constexpr std::string_view kGenericFamilies[] = {"sans-serif", "sans", "serif", "monospace",
                                                 "mono"};

bool IsGenericFamily(std::string_view family) {
  return std::any_of(std::begin(kGenericFamilies), std::end(kGenericFamilies),
                     [&](std::string_view generic) { return EqualsNoCase(generic, family); });
}

std::string MissingFontText(const FontRequest& request) {
  return "Font \"" + request.family + "\" is not installed.";
}

// ---- Reading the outline

struct Transform {
  double m11, m12, m21, m22;
  double pixelsPerUnit;
  double slant;

  OutlinePoint Apply(double x, double y) const {
    x = (x + slant * y) * pixelsPerUnit;
    y *= pixelsPerUnit;
    return OutlinePoint{m11 * x + m12 * y, m21 * x + m22 * y};
  }
};

Transform TransformFor(const Mat2& matrix, double pixelsPerUnit, double slant) {
  return Transform{FixedToDouble(matrix.eM11),
                   FixedToDouble(matrix.eM12),
                   FixedToDouble(matrix.eM21),
                   FixedToDouble(matrix.eM22),
                   pixelsPerUnit,
                   slant};
}

// fontconfig's answer for a style the family has no face for.
void TakeSyntheticStyle(FcPattern* match, FontMatch& found) {
  FcMatrix* matrix = nullptr;
  if (FcPatternGetMatrix(match, FC_MATRIX, 0, &matrix) == FcResultMatch && matrix != nullptr) {
    found.slant = matrix->xy;
  }
  FcBool embolden = FcFalse;
  if (FcPatternGetBool(match, FC_EMBOLDEN, 0, &embolden) == FcResultMatch) {
    found.embolden = embolden != FcFalse;
  }
}

// Collects one contour's points into poly-curve records: runs of on-curve points become lines,
// off-curve points and the on-curve point that ends them become a spline of their kind.
class ContourBuilder {
 public:
  explicit ContourBuilder(OutlinePoint start) { polygon_.start = start; }

  void AddOff(OutlinePoint point, bool cubic) {
    pending_.push_back(point);
    pendingCubic_ = pendingCubic_ || cubic;
  }

  void AddOn(OutlinePoint point, bool closing) {
    if (pending_.empty()) {
      if (closing) return;  // the closing line is implied by the contour
      if (polygon_.curves.empty() || polygon_.curves.back().wType != kPrimLine) {
        polygon_.curves.push_back(PolyCurve{kPrimLine, {}});
      }
      polygon_.curves.back().points.push_back(point);
      return;
    }
    pending_.push_back(point);
    polygon_.curves.push_back(
        PolyCurve{pendingCubic_ ? kPrimCSpline : kPrimQSpline, std::move(pending_)});
    pending_.clear();
    pendingCubic_ = false;
  }

  PolygonOutline Take() { return std::move(polygon_); }

 private:
  PolygonOutline polygon_;
  std::vector<OutlinePoint> pending_;
  bool pendingCubic_ = false;
};

PolygonOutline ReadContour(const FT_Outline& outline, int first, int last,
                           const Transform& transform) {
  const auto point = [&](int i) {
    return transform.Apply(static_cast<double>(outline.points[i].x),
                           static_cast<double>(outline.points[i].y));
  };
  const auto tag = [&](int i) { return FT_CURVE_TAG(outline.tags[i]); };
  // The contour must start on the curve: at its first point, at its last, or between the two
  // when both lie off the curve.
  int from = first;
  int to = last;
  OutlinePoint start;
  if (tag(first) == FT_CURVE_TAG_ON) {
    start = point(first);
    from = first + 1;
  } else if (tag(last) == FT_CURVE_TAG_ON) {
    start = point(last);
    to = last - 1;
  } else {
    const OutlinePoint a = point(first);
    const OutlinePoint b = point(last);
    start = OutlinePoint{(a.X + b.X) / 2, (a.Y + b.Y) / 2};
  }
  ContourBuilder builder(start);
  for (int i = from; i <= to; ++i) {
    if (tag(i) == FT_CURVE_TAG_ON) {
      builder.AddOn(point(i), false);
    } else {
      builder.AddOff(point(i), tag(i) == FT_CURVE_TAG_CUBIC);
    }
  }
  builder.AddOn(start, true);
  return builder.Take();
}

void MeasureBlackBox(NativeGlyph& glyph) {
  double minX = std::numeric_limits<double>::max();
  double minY = minX;
  double maxX = std::numeric_limits<double>::lowest();
  double maxY = maxX;
  const auto take = [&](const OutlinePoint& p) {
    minX = std::min(minX, p.X);
    maxX = std::max(maxX, p.X);
    minY = std::min(minY, p.Y);
    maxY = std::max(maxY, p.Y);
  };
  for (const PolygonOutline& polygon : glyph.contours) {
    take(polygon.start);
    for (const PolyCurve& curve : polygon.curves) {
      for (const OutlinePoint& p : curve.points) take(p);
    }
  }
  if (glyph.contours.empty()) return;
  glyph.BlackBoxX = static_cast<std::int32_t>(std::lround(maxX - minX));
  glyph.BlackBoxY = static_cast<std::int32_t>(std::lround(maxY - minY));
}

std::int16_t Increment(double pixels) {
  const double clamped = std::clamp(std::round(pixels), -32768.0, 32767.0);
  return static_cast<std::int16_t>(clamped);
}

}  // namespace

struct FontFace::Library {
  FT_Library library = nullptr;
  FT_Face face = nullptr;

  Library() = default;
  Library(const Library&) = delete;
  Library& operator=(const Library&) = delete;
  ~Library() {
    if (face != nullptr) FT_Done_Face(face);
    if (library != nullptr) FT_Done_FreeType(library);
  }
};

std::optional<FontMatch> FindFont(const FontRequest& request, std::string& error) {
  error.clear();
  ConfigPtr config(FcInitLoadConfigAndFonts());
  if (!config) {
    error = "The font configuration of this system cannot be read.";
    return std::nullopt;
  }
  const PatternPtr pattern = RequestPattern(config.get(), request);
  std::vector<std::string> accepted = AcceptedFamilies(pattern.get());
  if (IsGenericFamily(request.family)) accepted = AllFamilies(pattern.get());
  FcResult result = FcResultNoMatch;
  const PatternPtr match(FcFontMatch(config.get(), pattern.get(), &result));
  FcChar8* file = nullptr;
  if (!match || FcPatternGetString(match.get(), FC_FILE, 0, &file) != FcResultMatch) {
    error = MissingFontText(request);
    return std::nullopt;
  }
  std::string family = AcceptedFamilyOf(match.get(), accepted);
  if (family.empty()) {
    error = MissingFontText(request);
    return std::nullopt;
  }
  int index = 0;
  FcPatternGetInteger(match.get(), FC_INDEX, 0, &index);
  FontMatch found{reinterpret_cast<const char*>(file), index, std::move(family)};
  TakeSyntheticStyle(match.get(), found);
  return found;
}

std::unique_ptr<FontFace> FontFace::Open(const FontRequest& request, std::string& error) {
  const std::optional<FontMatch> match = FindFont(request, error);
  if (!match) return nullptr;
  auto font = OpenFile(match->file, match->index, request.sizePoints, error);
  if (font) font->SetSyntheticStyle(match->slant, match->embolden);
  return font;
}

std::unique_ptr<FontFace> FontFace::OpenFile(const std::string& file, int index, int sizePoints,
                                             std::string& error) {
  auto library = std::make_unique<Library>();
  if (FT_Init_FreeType(&library->library) != 0) {
    error = "The font engine cannot be started.";
    return nullptr;
  }
  if (FT_New_Face(library->library, file.c_str(), index, &library->face) != 0) {
    error = "The font file " + file + " cannot be read.";
    return nullptr;
  }
  const FT_Face face = library->face;
  if (!FT_IS_SCALABLE(face) || face->units_per_EM == 0) {
    error = "The font file " + file + " holds no outlines.";
    return nullptr;
  }
  FT_Select_Charmap(face, FT_ENCODING_UNICODE);
  const double pixelsPerEm = std::clamp(sizePoints, 1, kLargestOutlinePoints) * kDotsPerInch / 72.0;
  const double pixelsPerUnit = pixelsPerEm / face->units_per_EM;
  std::string family = face->family_name != nullptr ? face->family_name : "";
  return std::unique_ptr<FontFace>(
      new FontFace(std::move(library), std::move(family), pixelsPerUnit));
}

FontFace::FontFace(std::unique_ptr<Library> library, std::string family, double pixelsPerUnit)
    : library_(std::move(library)), family_(std::move(family)), pixelsPerUnit_(pixelsPerUnit) {}

FontFace::~FontFace() = default;

void FontFace::SetSyntheticStyle(double slant, bool embolden) {
  slant_ = slant;
  embolden_ = embolden;
}

bool FontFace::GetGlyphOutline(char32_t code, const Mat2& matrix, NativeGlyph& glyph) {
  glyph = NativeGlyph{};
  const FT_Face face = library_->face;
  const FT_UInt index = FT_Get_Char_Index(face, static_cast<FT_ULong>(code));
  if (FT_Load_Glyph(face, index, FT_LOAD_NO_SCALE | FT_LOAD_NO_BITMAP | FT_LOAD_NO_HINTING) != 0 ||
      face->glyph->format != FT_GLYPH_FORMAT_OUTLINE) {
    return false;
  }
  FT_Outline& outline = face->glyph->outline;
  FT_Pos advanceUnits = face->glyph->metrics.horiAdvance;
  if (embolden_) {
    // As the desktop thickens a regular face: a 24th of the em, spread on both sides.
    const FT_Pos strength = face->units_per_EM / 24;
    FT_Outline_EmboldenXY(&outline, strength, strength);
    advanceUnits += strength;
  }
  const Transform transform = TransformFor(matrix, pixelsPerUnit_, slant_);
  int first = 0;
  for (int c = 0; c < outline.n_contours; ++c) {
    const int last = outline.contours[c];
    if (last >= first + 1) glyph.contours.push_back(ReadContour(outline, first, last, transform));
    first = last + 1;
  }
  MeasureBlackBox(glyph);
  const OutlinePoint advance = transform.Apply(static_cast<double>(advanceUnits), 0.0);
  glyph.CellIncX = Increment(advance.X);
  glyph.CellIncY = Increment(advance.Y);
  return true;
}

}  // namespace zemtra
