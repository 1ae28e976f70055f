#include <gtest/gtest.h>

#include <cmath>
#include <random>

#include "core/NumberText.h"
#include "editor/ShortNumberText.h"

namespace zemtra {
namespace {

// The fast writer must give what the general one gives, digit for digit.
TEST(ShortNumberText, MatchesFormatNumberText) {
  const double fixed[] = {
      0,          -0.0,     2,           1.25, -1.23456,           0.00005,   -0.00005, 0.000049,
      9.99995,    -9.99995, 99999.99999, 1e-7, 123456789012.34567, 0.1 + 0.2, 2.675,    1.00005,
      -0.49999999};
  for (const char* format : {"###0.0", "###0.0##", "###0.0###", "###0.0#####"}) {
    const ShortNumberText shortText(format);
    for (double value : fixed)
      EXPECT_EQ(shortText(value), FormatNumberText(value, format)) << value;
    std::mt19937_64 random(7);
    std::uniform_real_distribution<double> uniform(-2000, 2000);
    for (int i = 0; i < 20000; ++i) {
      const double value = i % 2 ? uniform(random) : std::round(uniform(random) * 1e5) / 1e5;
      ASSERT_EQ(shortText(value), FormatNumberText(value, format)) << format << " " << value;
    }
  }
  EXPECT_EQ(ShortNumberText("0.000")(1.5), "1.500");
}

}  // namespace
}  // namespace zemtra
