// Outlines of installed fonts: the Liberation fonts (metric-compatible with Arial) and
// Cantarell, a family without an italic face; both are installed by scripts/install-deps.
#include "text/FontFace.h"

#include <gtest/gtest.h>

#include <memory>

#include "TextTestSupport.h"
#include "core/RecordingHost.h"
#include "text/TextConverter.h"

namespace zemtra {
namespace {

using test::ExtentsOf;
using test::ProgramPoints;

std::unique_ptr<FontFace> OpenFont(const std::string& family, int size = 12) {
  FontRequest request;
  request.family = family;
  request.sizePoints = size;
  std::string error;
  auto font = FontFace::Open(request, error);
  EXPECT_TRUE(error.empty() || !font) << error;
  return font;
}

TEST(FindFont, ArialResolvesToAMetricCompatibleFamily) {
  std::string error;
  const auto match = FindFont(FontRequest{}, error);
  ASSERT_TRUE(match) << error;
  EXPECT_EQ(match->family, "Liberation Sans");
  FontRequest bold;
  bold.bold = true;
  bold.italic = true;
  const auto boldMatch = FindFont(bold, error);
  ASSERT_TRUE(boldMatch) << error;
  EXPECT_NE(boldMatch->file, match->file);
}

TEST(FindFont, MissingFamilyIsNamedNotReplaced) {
  FontRequest request;
  request.family = "No Such Family Zq";
  std::string error;
  EXPECT_FALSE(FindFont(request, error));
  EXPECT_EQ(error, "Font \"No Such Family Zq\" is not installed.");
  EXPECT_FALSE(FontFace::Open(request, error));

  request.family = "sans-serif";  // a generic name takes the desktop's choice
  EXPECT_TRUE(FindFont(request, error)) << error;
}

// A family without an italic face is slanted, as the desktop does, rather than left upright.
TEST(FindFont, MissingItalicFaceIsSlanted) {
  FontRequest request;
  request.family = "Cantarell";
  std::string error;
  const auto upright = FindFont(request, error);
  if (!upright) GTEST_SKIP() << "Cantarell is not installed";
  request.italic = true;
  const auto italic = FindFont(request, error);
  ASSERT_TRUE(italic) << error;
  EXPECT_EQ(upright->slant, 0);
  EXPECT_GT(italic->slant, 0.1);

  request.family = "Arial";  // Liberation Sans has its own italic face
  const auto arialItalic = FindFont(request, error);
  ASSERT_TRUE(arialItalic) << error;
  EXPECT_EQ(arialItalic->slant, 0);
}

// Counters are contours of their own; a blank has none but advances.
TEST(FontOutlines, ContoursAndAdvancesOfLetters) {
  const auto font = OpenFont("Arial");
  ASSERT_TRUE(font);
  RecordingHost host;
  TextConverter converter(*font, host);
  const struct {
    char32_t code;
    std::size_t contours;
  } cases[] = {{'I', 1}, {'O', 2}, {'B', 3}, {'i', 2}, {' ', 0}};
  for (const auto& c : cases) {
    converter.GetGlyphs(c.code, 256);
    EXPECT_EQ(converter.GlyphContours.size(), c.contours) << char(c.code);
    EXPECT_GT(converter.GlyphCellIncX, 0) << char(c.code);
    EXPECT_EQ(converter.GlyphCellIncY, 0) << char(c.code);
    for (const auto& contour : converter.GlyphContours) {
      ASSERT_FALSE(contour.empty());
      EXPECT_EQ(contour.front().Kind, 0);
    }
  }
}

// "I" at a height of 1 is 1 high whatever the font size, and as wide as its stroke; a string of
// wide letters keeps its width at every size.
TEST(FontOutlines, HeightAndWidthDoNotDependOnTheFontSize) {
  double wideWidth = 0;
  for (const int size : {12, 8, 72, 400}) {
    const auto font = OpenFont("Arial", size);
    ASSERT_TRUE(font);
    RecordingHost host;
    TextConverter converter(*font, host);
    const auto extents = ExtentsOf(ProgramPoints(converter.ConvertText("I").value_or("")));
    EXPECT_NEAR(extents.maxY - extents.minY, 1, 1e-3) << size;
    EXPECT_NEAR(extents.minY, 0, 1e-3) << size;
    EXPECT_GT(extents.maxX - extents.minX, 0.05) << size;
    EXPECT_LT(extents.maxX - extents.minX, 0.2) << size;
    const auto wide = ExtentsOf(ProgramPoints(converter.ConvertText("WMWMW").value_or("")));
    if (size == 12) wideWidth = wide.maxX - wide.minX;
    EXPECT_NEAR(wide.maxX - wide.minX, wideWidth, 2e-3) << size;
  }
}

// The width of a string is the sum of its advances: Liberation Sans keeps Arial's, where "H"
// is 0.722 em and a space 0.278 em.
TEST(FontOutlines, WidthFollowsTheAdvances) {
  const auto font = OpenFont("Arial");
  ASSERT_TRUE(font);
  RecordingHost host;
  TextConverter converter(*font, host);
  converter.GetGlyphs('H', 256);
  const double h = converter.GlyphCellIncX;
  const double unitsHigh = converter.GlyphBlackBoxY;
  converter.GetGlyphs(' ', 256);
  const double blank = converter.GlyphCellIncX;
  EXPECT_NEAR(blank / h, 0.278 / 0.722, 2e-3);
  converter.Placement.Justify = 2;  // right end of the base line at the reference point
  const auto one = ExtentsOf(ProgramPoints(converter.ConvertText("H").value_or("")));
  const auto two = ExtentsOf(ProgramPoints(converter.ConvertText("H H").value_or("")));
  EXPECT_NEAR(one.maxY - one.minY, 1, 1e-3);
  EXPECT_NEAR(one.minX - two.minX, (h + blank) / unitsHigh, 1e-3);
}

}  // namespace
}  // namespace zemtra
