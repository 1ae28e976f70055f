#include "text/GlyphOutline.h"

#include <gtest/gtest.h>

namespace zemtra {
namespace {

TEST(FixedNumbers, RoundTripKeepsSignAndFraction) {
  const struct {
    double number;
    std::int16_t value;
    std::uint16_t fract;
  } cases[] = {
      {0.0, 0, 0},       {1.0, 1, 0},   {0.5, 0, 32768},    {256.0, 256, 0},
      {-0.5, -1, 32768}, {-1.0, -1, 0}, {-0.71, -1, 19005}, {-181.76, -182, 15728},
  };
  for (const auto& c : cases) {
    const Fixed fixed = DoubleToFixed(c.number);
    EXPECT_EQ(fixed.value, c.value) << c.number;
    EXPECT_EQ(fixed.fract, c.fract) << c.number;
    EXPECT_NEAR(FixedToDouble(fixed), c.number, 1.0 / 65536) << c.number;
  }
}

// The matrix carries the sine and cosine rounded to 2 decimals, enlarged by the scale; each is
// a fixed number before it is enlarged, so 256 / 65536 is the finest step that survives.
TEST(RotationMatrix, RoundsSineAndCosineToTwoDecimalsThenScales) {
  constexpr double kQuantum = 256.0 / 65536;
  const struct {
    float degrees;
    double cosine;
    double sine;
  } cases[] = {
      {0, 1.0, 0.0},    {90, 0.0, 1.0}, {45, 0.71, 0.71}, {-30, 0.87, -0.5},
      {180, -1.0, 0.0}, {1, 1.0, 0.02}, {3, 1.0, 0.05},  // small angles move in steps of the
                                                         // rounding
  };
  for (const auto& c : cases) {
    const Mat2 matrix = RotationMat2(c.degrees, 256);
    EXPECT_NEAR(FixedToDouble(matrix.eM11), c.cosine * 256, kQuantum) << c.degrees;
    EXPECT_NEAR(FixedToDouble(matrix.eM22), c.cosine * 256, kQuantum) << c.degrees;
    EXPECT_NEAR(FixedToDouble(matrix.eM12), c.sine * 256, kQuantum) << c.degrees;
    EXPECT_NEAR(FixedToDouble(matrix.eM21), -c.sine * 256, kQuantum) << c.degrees;
  }
}

}  // namespace
}  // namespace zemtra
