#include "interp/Axes.h"

#include <array>
#include <bit>
#include <cmath>
#include <cstdint>

#include "core/NumberText.h"

namespace zemtra {

namespace {

constexpr int kSignificantDigits = 7;
constexpr int kExactPowers = 22;      // 10^0 to 10^22 are exact doubles
constexpr int kLowestExponent = -46;  // below the smallest 32-bit float
constexpr int kHighestExponent = 39;  // above the largest

// 10^k for k from kLowestExponent to kHighestExponent, for comparisons only.
constexpr std::array<double, kHighestExponent - kLowestExponent + 1> MakePowers() {
  std::array<double, kHighestExponent - kLowestExponent + 1> powers{};
  powers[-kLowestExponent] = 1;
  for (int k = 1; k <= kHighestExponent; ++k) {
    powers[static_cast<std::size_t>(k - kLowestExponent)] =
        powers[static_cast<std::size_t>(k - 1 - kLowestExponent)] * 10;
  }
  for (int k = -1; k >= kLowestExponent; --k) {
    powers[static_cast<std::size_t>(k - kLowestExponent)] =
        powers[static_cast<std::size_t>(k + 1 - kLowestExponent)] / 10;
  }
  return powers;
}
constexpr auto kPowers = MakePowers();

double PowerOfTen(int k) {
  return kPowers[static_cast<std::size_t>(k - kLowestExponent)];
}

// Decimal exponent of a positive finite 32-bit value: 10^e <= value < 10^(e+1).
int DecimalExponent(double value) {
  const int binary = static_cast<int>((std::bit_cast<std::uint64_t>(value) >> 52) & 0x7FF) - 1023;
  int e = (binary * 78913) >> 18;  // floor(binary * log10(2)) over the range of floats
  if (e + 1 <= kHighestExponent && value >= PowerOfTen(e + 1))
    ++e;
  else if (e >= kLowestExponent && value < PowerOfTen(e))
    --e;
  return e;
}

// Nearest whole number, halves to even (as the text of a float rounds), for |x| below 2^51.
double RoundHalfEven(double x) {
  constexpr double kShift = 6755399441055744.0;  // 1.5 * 2^52: the sum keeps no fraction bits
  return (x + kShift) - kShift;
}

}  // namespace

double CoordinateReadBack(float value) {
  const double d = value;
  if (d == 0 || !std::isfinite(d)) return d == 0 ? 0.0 : d;
  const int shift = kSignificantDigits - 1 - DecimalExponent(std::fabs(d));
  if (shift >= 0 && shift <= kExactPowers) {
    const double scale = kPowers[static_cast<std::size_t>(shift - kLowestExponent)];
    return RoundHalfEven(d * scale) / scale;
  }
  if (shift < 0 && -shift <= kExactPowers) {
    const double scale = kPowers[static_cast<std::size_t>(-shift - kLowestExponent)];
    return RoundHalfEven(d / scale) * scale;
  }
  return NumericTextValue(FormatSingleText(value));
}

}  // namespace zemtra
