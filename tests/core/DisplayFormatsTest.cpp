#include "core/DisplayFormats.h"

#include <gtest/gtest.h>

namespace zemtra {
namespace {

TEST(DisplayFormats, FollowThePrecision) {
  const struct {
    int precision;
    const char* shortFormat;
    const char* fixedFormat;
  } cases[] = {
      {3, "###0.0##", "###0.000"},     {4, "###0.0###", "###0.0000"},
      {5, "###0.0####", "###0.00000"}, {6, "###0.0#####", "###0.000000"},
      {0, "###0.0###", "###0.0000"},   {2, "###0.0###", "###0.0000"},
      {7, "###0.0###", "###0.0000"},   {-1, "###0.0###", "###0.0000"},
  };
  for (const auto& c : cases) {
    const DisplayFormats formats = DisplayFormatsFor(c.precision);
    EXPECT_EQ(formats.Short, c.shortFormat) << c.precision;
    EXPECT_EQ(formats.Fixed, c.fixedFormat) << c.precision;
  }
}

}  // namespace
}  // namespace zemtra
