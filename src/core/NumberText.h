#pragma once
// Numbers to text and back. "." is always the decimal point, whatever the locale; nothing here
// uses iostreams or the C locale, so these are safe and cheap to call once per program block.
#include <string>
#include <string_view>

namespace zemtra {

// The longest leading number of `text`, like BASIC's Val: blanks, tabs and line feeds are passed
// over anywhere; an optional sign, digits with at most one ".", then an optional exponent ("E" or
// "D", optional sign, digits). Returns 0 when there is no number, and also when the number is
// beyond the range of a 64-bit float (where BASIC would raise an overflow). Never returns -0.
double NumericTextValue(std::string_view text);

// The next number of `text` from the 1-based `position`: skips to the next digit, "+", "-" or
// ".", takes the run of those characters and converts it with NumericTextValue. `position` is
// left on the first character behind the run (text size + 1 at the end), and the result is 0
// when no such character remains. A position below 1 counts as 1.
double ScanNumber(std::string_view text, int& position);

// `value` as text. With `format` "" the general form: at most 15 significant digits, no trailing
// zeros, plain notation for magnitudes from 1E-5 up to below 1E+15, otherwise BASIC's scientific
// form ("1.5E-06", "1.23456789012346E+17"). Otherwise a picture of digit placeholders: "0" is a
// digit that is always written, "#" a digit written only when significant; the first "." is the
// decimal point (written even when no decimal follows, as BASIC does: "0.##" gives "5." for 5);
// "\x" and "..." quote literal text; every other character is copied as it stands. The value is
// first taken to 15 significant digits, then rounded half away from zero to the decimals the
// picture holds; integer digits beyond the picture are never dropped; a negative value gets a
// leading "-", but a value that rounds to zero gets no sign. Zero with "#" only gives "".
// Infinities and NaN give "Inf", "-Inf" and "NaN".
std::string FormatNumberText(double value, std::string_view format);

// The general form of a 32-bit float: as FormatNumberText(value, "") but with 7 significant
// digits and scientific form from 1E+7 on, which is how a stored coordinate reads back as text.
std::string FormatSingleText(float value);

}  // namespace zemtra
