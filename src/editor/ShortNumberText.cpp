#include "editor/ShortNumberText.h"

#include <charconv>
#include <cmath>

#include "core/NumberText.h"

namespace zemtra {

ShortNumberText::ShortNumberText(std::string_view format) : format_(format) {
  constexpr std::string_view kHead = "###0.0";
  if (format.substr(0, kHead.size()) != kHead) return;
  const std::string_view tail = format.substr(kHead.size());
  if (tail.find_first_not_of('#') != std::string_view::npos) return;
  decimals_ = 1 + static_cast<int>(tail.size());
}

void ShortNumberText::Append(double value, std::string& out) const {
  if (decimals_ < 0 || !std::isfinite(value) || std::fabs(value) >= 1e14) {
    out += FormatNumberText(value, format_);
    return;
  }
  // The value to 15 significant digits, as digits and a decimal exponent.
  char buffer[32];
  const auto result = std::to_chars(buffer, buffer + sizeof buffer, std::fabs(value),
                                    std::chars_format::scientific, 14);
  const std::string_view text(buffer, static_cast<std::size_t>(result.ptr - buffer));
  const std::size_t e = text.find('e');
  char digits[16];
  digits[0] = text[0];
  for (int i = 0; i < 14; ++i) digits[i + 1] = text[static_cast<std::size_t>(i) + 2];
  int exponent = 0;
  std::from_chars(text.data() + e + 1 + (text[e + 1] == '+'), text.data() + text.size(), exponent);
  // Digit k of the number (k = 0 the units, negative the decimals).
  const auto digitAt = [&](int k) {
    const int index = exponent - k;
    return index >= 0 && index < 15 ? digits[index] - '0' : 0;
  };
  const int top = std::max(exponent, 0);
  // Rounded half away from zero to decimals_ places, as whole units of the last place.
  std::string places;  // most significant first, with one extra leading digit for a carry
  places.reserve(static_cast<std::size_t>(top + decimals_ + 2));
  places += '0';
  for (int k = top; k >= -decimals_; --k) places += static_cast<char>('0' + digitAt(k));
  if (digitAt(-decimals_ - 1) >= 5) {
    for (std::size_t i = places.size(); i-- > 0;) {
      if (places[i] == '9') {
        places[i] = '0';
      } else {
        ++places[i];
        break;
      }
    }
  }
  const std::size_t pointAt = places.size() - static_cast<std::size_t>(decimals_);
  std::size_t first = 0;
  while (first + 1 < pointAt && places[first] == '0') ++first;
  std::size_t last = places.size();
  while (last > pointAt + 1 && places[last - 1] == '0') --last;
  const bool zero = places.find_first_not_of('0') == std::string::npos;
  if (value < 0 && !zero) out += '-';
  out.append(places, first, pointAt - first);
  out += '.';
  out.append(places, pointAt, last - pointAt);
}

}  // namespace zemtra
