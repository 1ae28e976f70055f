#include "text/TextConverter.h"

#include <gtest/gtest.h>

#include <cmath>

#include "TextTestSupport.h"
#include "core/NumberText.h"
#include "core/RecordingHost.h"

namespace zemtra {
namespace {

using test::ExtentsOf;
using test::ProgramPoints;
using test::SquareGlyph;
using test::TableFont;

// A font of two squares: "I" 100 high with an advance of 120, "i" 50 high, and a blank.
struct SquareFontFixture {
  TableFont font;
  RecordingHost host;
  TextConverter converter{font, host};

  SquareFontFixture() {
    font.glyphs['I'] = SquareGlyph(100, 120);
    font.glyphs['i'] = SquareGlyph(50, 120);
    NativeGlyph blank;
    blank.CellIncX = 60;
    font.glyphs[' '] = blank;
  }
};

// ---- Outlines

// Two control points and an end: the implied on-curve point lies between the control points;
// each piece gives five points, the first repeating the point before it.
TEST(GetGlyphs, QuadraticSplineIsFlattenedThroughItsImpliedPoints) {
  SquareFontFixture fx;
  NativeGlyph glyph;
  glyph.BlackBoxY = 100;
  glyph.contours.push_back(
      PolygonOutline{{0, 0}, {PolyCurve{kPrimQSpline, {{0, 100}, {100, 100}, {100, 0}}}}});
  fx.font.glyphs['S'] = glyph;
  fx.converter.GetGlyphs('S', 256);
  ASSERT_EQ(fx.converter.GlyphContours.size(), 1u);
  const std::vector<GlyphPoint>& points = fx.converter.GlyphContours[0];
  ASSERT_EQ(points.size(), 11u);
  EXPECT_EQ(points[1].Kind, 2);
  EXPECT_DOUBLE_EQ(points[1].X, points[0].X);  // the repeat is kept
  EXPECT_DOUBLE_EQ(points[5].X, 50);           // the implied on-curve point
  EXPECT_DOUBLE_EQ(points[5].Y, 100);
  EXPECT_DOUBLE_EQ(points[3].X, 12.5);  // t = 0.5 of (0,0)-(0,100)-(50,100)
  EXPECT_DOUBLE_EQ(points[3].Y, 75);
  EXPECT_DOUBLE_EQ(points[10].X, 100);
  EXPECT_DOUBLE_EQ(points[10].Y, 0);

  fx.converter.CurveStep = 0;
  fx.converter.GetGlyphs('S', 256);
  ASSERT_EQ(fx.converter.GlyphContours.size(), 1u);
  EXPECT_EQ(fx.converter.GlyphContours[0].size(), 1u);
}

// ---- Blocks

TEST(WriteContours, OneSquareGivesRapidPlungeContourAndClose) {
  SquareFontFixture fx;
  fx.converter.Placement.TextHeight = 1;
  fx.converter.Placement.XLocation = 5;
  fx.converter.Placement.YLocation = -2;
  EXPECT_EQ(fx.converter.ConvertText("I"),
            "G00Z10.0\r\n"
            "X5.0Y-2.0\r\n"
            "Z1.0\r\n"
            "G01Z0.0F10.0\r\n"
            "X6.0Y-2.0\r\n"
            "X6.0Y-1.0\r\n"
            "X5.0Y-1.0\r\n"
            "X5.0Y-2.0\r\n");
  EXPECT_TRUE(fx.host.shown.empty());
  EXPECT_EQ(fx.host.progressCalls.back(), -1);
}

// The approach line stands only between the retract and the depth.
TEST(WriteContours, ApproachLineOnlyBetweenRetractAndDepth) {
  const struct {
    double retract, approach, depth;
    bool written;
  } cases[] = {
      {10, 1, 0, true},  {10, 10, 0, false}, {10, 12, 0, false},
      {10, 0, 0, false}, {10, -1, 0, false}, {5, 2, -1, true},
  };
  for (const auto& c : cases) {
    SquareFontFixture fx;
    fx.converter.TextZRetract = c.retract;
    fx.converter.TextZApproach = c.approach;
    fx.converter.TextZDepth = c.depth;
    const std::string program = fx.converter.ConvertText("I").value_or("");
    const std::string approach = "\r\nZ" + FormatNumberText(c.approach, "###0.0###") + "\r\n";
    EXPECT_EQ(program.find(approach) != std::string::npos, c.written)
        << c.retract << " " << c.approach << " " << c.depth;
  }
}

// ---- Layout

TEST(ConvertText, EmptyBlankOrZeroHeightWritesNothing) {
  for (const char* text : {"", "   ", " \t "}) {
    SquareFontFixture fx;
    EXPECT_EQ(fx.converter.ConvertText(text), "") << "'" << text << "'";
  }
  SquareFontFixture fx;
  fx.converter.Placement.TextHeight = 0;
  EXPECT_EQ(fx.converter.ConvertText("I"), "");
  EXPECT_EQ(fx.font.calls, 0);
}

// The tallest character sets the scale; every character is fetched twice.
TEST(ConvertText, TallestCharacterIsTheHeightAndBlanksAdvance) {
  SquareFontFixture fx;
  fx.converter.Placement.TextHeight = 2;
  const std::string program = fx.converter.ConvertText("i I").value_or("");
  EXPECT_EQ(fx.font.calls, 6);
  const auto points = ProgramPoints(program);
  const auto extents = ExtentsOf(points);
  EXPECT_DOUBLE_EQ(extents.maxY, 2);
  EXPECT_DOUBLE_EQ(extents.minX, 0);
  // i (1 high) + blank, then I: 120 + 60 outline units at 2 / 100 per unit.
  EXPECT_DOUBLE_EQ(extents.maxX, 3.6 + 2);
  EXPECT_EQ(fx.converter.PreviewBoxHeight, 120);
}

// Nine reference points: left, centre, right of the width from the advances, and base line,
// middle, top of the height.
TEST(ConvertText, JustificationMovesTheTextAroundTheReferencePoint) {
  const double width = 2.4;  // two advances of 120 at 1 / 100
  for (int justify = 0; justify < 9; ++justify) {
    SquareFontFixture fx;
    fx.converter.Placement.Justify = justify;
    fx.converter.Placement.XLocation = 10;
    fx.converter.Placement.YLocation = 20;
    const auto extents = ExtentsOf(ProgramPoints(fx.converter.ConvertText("II").value_or("")));
    const double left = 10 - (justify % 3) * 0.5 * width;
    const double bottom = 20 - (justify / 3) * 0.5;
    EXPECT_NEAR(extents.minX, left, 1e-9) << justify;
    EXPECT_NEAR(extents.minY, bottom, 1e-9) << justify;
    EXPECT_NEAR(extents.maxY, bottom + 1, 1e-9) << justify;
  }
}

TEST(ConvertText, TextAngleTurnsTheBaseLineAndTheGlyphs) {
  SquareFontFixture fx;
  fx.converter.Placement.TextAngle = 90;
  const auto points = ProgramPoints(fx.converter.ConvertText("II").value_or(""));
  const auto extents = ExtentsOf(points);
  EXPECT_NEAR(extents.minX, -1, 1e-9);  // the glyphs stand to the left of the base line
  EXPECT_NEAR(extents.maxX, 0, 1e-9);
  EXPECT_NEAR(extents.minY, 0, 1e-9);
  EXPECT_NEAR(extents.maxY, 2.2, 1e-9);  // one advance, then the second square
}

// On an arc each glyph's base lies on the arc and its top outside; the text reads clockwise.
TEST(ConvertText, OnArcEachGlyphStandsOnTheArc) {
  SquareFontFixture fx;
  TextPlacement& place = fx.converter.Placement;
  place.OnArc = true;
  place.Radius = 10;
  place.StartAngle = 120;
  place.XLocation = 3;
  place.YLocation = 4;
  const auto points = ProgramPoints(fx.converter.ConvertText("IIIII").value_or(""));
  ASSERT_EQ(points.size(), 5u * 5u);
  constexpr double kDegrees = 180 / 3.14159265358979;
  // The squares are 1 wide with an advance of 1.2: each takes 2 atan(0.6 / 10) of the arc, and
  // the middle of its base lies 0.1 before the middle of its advance.
  const double step = 2 * std::atan(0.6 / 10) * kDegrees;
  double expectedAngle = 120 - step / 2 + std::atan(0.1 / 10) * kDegrees;
  for (std::size_t c = 0; c < 5; ++c, expectedAngle -= step) {
    // Per square: its start, the other three corners, the start again.
    const auto& base0 = points[c * 5];
    const auto& base1 = points[c * 5 + 1];
    const auto& top1 = points[c * 5 + 2];
    const double midX = (base0.X + base1.X) / 2 - 3;
    const double midY = (base0.Y + base1.Y) / 2 - 4;
    EXPECT_NEAR(std::hypot(midX, midY), 10, 0.01) << c;
    EXPECT_NEAR(std::hypot(top1.X - 3, top1.Y - 4), 11, 0.05) << c;
    EXPECT_NEAR(std::atan2(midY, midX) * kDegrees, expectedAngle, 0.3) << c;
  }
}

TEST(ConvertText, OnArcCentredTextIsSymmetricAboutTheStartAngle) {
  SquareFontFixture fx;
  TextPlacement& place = fx.converter.Placement;
  place.OnArc = true;
  place.Justify = 1;
  place.StartAngle = 90;
  fx.font.glyphs['M'] = SquareGlyph(100, 100);  // ink as wide as the advance
  const auto extents = ExtentsOf(ProgramPoints(fx.converter.ConvertText("MMM").value_or("")));
  EXPECT_NEAR(extents.minX, -extents.maxX, 0.02);
  EXPECT_GT(extents.maxY, 10.9);
}

TEST(ConvertText, UnsupportedOutlineShowsTheFailureAndInsertsNothing) {
  SquareFontFixture fx;
  NativeGlyph glyph;
  glyph.BlackBoxY = 100;
  glyph.contours.push_back(PolygonOutline{{0, 0}, {PolyCurve{kPrimCSpline, {{0, 50}}}}});
  fx.font.glyphs['C'] = glyph;
  EXPECT_EQ(fx.converter.ConvertText("IC"), std::nullopt);
  EXPECT_TRUE(fx.converter.Output.empty());
  ASSERT_EQ(fx.host.shown.size(), 1u);
  const Prompt& prompt = fx.host.shown[0].prompt;
  EXPECT_EQ(prompt.text,
            "Error in GetGlyphs\r\nUnsupported Font Style. Please contact technical "
            "support (" +
                std::string(kSupportAddress) + ") for additional information on this error.");
  EXPECT_EQ(prompt.title, "Zemtra");
  EXPECT_EQ(prompt.icon, MsgIcon::Stop);
  EXPECT_EQ(fx.host.progressCalls.back(), -1);
}

TEST(DecodeCodePoints, Utf8AndStrayBytes) {
  EXPECT_EQ(DecodeCodePoints("Az"), U"Az");
  EXPECT_EQ(DecodeCodePoints("\xC3\xA9\xE2\x82\xAC"), U"\u00E9\u20AC");
  EXPECT_EQ(DecodeCodePoints("\xE9t\xC3"), U"\u00E9t\u00C3");  // Latin-1 bytes stand for themselves
}

}  // namespace
}  // namespace zemtra
