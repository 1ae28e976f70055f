#include "text/GlyphOutline.h"

#include <cmath>

namespace zemtra {

namespace {

constexpr float kRadiansPerDegree = 0.0174533F;

double RoundTo2Decimals(double number) {
  return std::round(number * 100.0) / 100.0;
}

Fixed Scaled(Fixed number, float scale) {
  return DoubleToFixed(FixedToDouble(number) * static_cast<double>(scale));
}

}  // namespace

double FixedToDouble(Fixed number) {
  return static_cast<double>(number.value) + static_cast<double>(number.fract) / 65536.0;
}

Fixed DoubleToFixed(double number) {
  const auto whole = static_cast<std::int64_t>(std::floor(number * 65536.0));
  const auto bits = static_cast<std::uint32_t>(static_cast<std::uint64_t>(whole));
  return Fixed{static_cast<std::int16_t>(static_cast<std::uint16_t>(bits >> 16)),
               static_cast<std::uint16_t>(bits & 0xFFFFU)};
}

Mat2 RotationMat2(float rotationDegrees, float scale) {
  const auto radians = static_cast<double>(rotationDegrees * kRadiansPerDegree);
  const double c = RoundTo2Decimals(std::cos(radians));
  const double s = RoundTo2Decimals(std::sin(radians));
  Mat2 matrix{DoubleToFixed(c), DoubleToFixed(s), DoubleToFixed(-s), DoubleToFixed(c)};
  matrix.eM11 = Scaled(matrix.eM11, scale);
  matrix.eM12 = Scaled(matrix.eM12, scale);
  matrix.eM21 = Scaled(matrix.eM21, scale);
  matrix.eM22 = Scaled(matrix.eM22, scale);
  return matrix;
}

}  // namespace zemtra
