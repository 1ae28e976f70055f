#pragma once
// Conversions of configuration values between their file text and the record's field types.
#include <cmath>
#include <cstdint>
#include <limits>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace zemtra {

// `value` rounded to a whole number, halves to even, when `Int` can hold it.
template <typename Int>
std::optional<Int> RoundToWidth(double value) {
  double whole = std::round(value);
  if (std::fabs(value - std::trunc(value)) == 0.5) whole = 2.0 * std::round(value / 2.0);
  if (!(whole >= static_cast<double>(std::numeric_limits<Int>::min()) &&
        whole <= static_cast<double>(std::numeric_limits<Int>::max()))) {
    return std::nullopt;
  }
  return static_cast<Int>(whole);
}

// The strict conversion of flags and bytes: the whole text, less blanks and tabs around it,
// must be a decimal number (sign, digits, one point, exponent) or one of the words "True"
// (-1) and "False" (0) in any case. Empty otherwise.
std::optional<double> NumberOfWholeText(std::string_view text);

// The macro code list: numbers taken one after the other with the number scanner, each
// rounded to 16 bits, up to the first 0 or the end of the text. Element 0 is an unused 0.
// Codes beyond 16 bits are passed over and noted in `warnings`.
std::vector<std::int16_t> ParseMacroCodes(std::string_view text,
                                          std::vector<std::string>* warnings);

// Splits a text at its line ends (CR LF, LF or CR) into its non-empty lines.
std::vector<std::string_view> NonEmptyLines(std::string_view text);

}  // namespace zemtra
