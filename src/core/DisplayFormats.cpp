#include "core/DisplayFormats.h"

#include <array>
#include <string_view>

namespace zemtra {

namespace {

struct PrecisionFormats {
  int precision;
  std::string_view shortFormat;
  std::string_view fixedFormat;
};

constexpr int kDefaultPrecision = 4;

constexpr std::array<PrecisionFormats, 4> kFormats{{
    {3, "###0.0##", "###0.000"},
    {4, "###0.0###", "###0.0000"},
    {5, "###0.0####", "###0.00000"},
    {6, "###0.0#####", "###0.000000"},
}};

}  // namespace

DisplayFormats DisplayFormatsFor(int precision) {
  for (const PrecisionFormats& row : kFormats) {
    if (row.precision == precision)
      return {std::string(row.shortFormat), std::string(row.fixedFormat)};
  }
  return DisplayFormatsFor(kDefaultPrecision);
}

}  // namespace zemtra
