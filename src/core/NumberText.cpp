#include "core/NumberText.h"

#include <array>
#include <charconv>
#include <cmath>
#include <system_error>

namespace zemtra {

namespace {

constexpr int kDoubleDigits = 15;
constexpr int kSingleDigits = 7;
// Plain notation is used down to this decimal exponent; smaller magnitudes go scientific.
constexpr int kSmallestPlainExponent = -5;

bool IsDigit(char c) {
  return c >= '0' && c <= '9';
}
// Characters BASIC's Val passes over wherever they stand.
bool IsValBlank(char c) {
  return c == ' ' || c == '\t' || c == '\n';
}
bool IsScanRunChar(char c) {
  return IsDigit(c) || c == '+' || c == '-' || c == '.';
}

// ---------------------------------------------------------------------------------------------
// Text to number

// The compacted characters of a number, kept on the stack unless the text is unusually long.
class NumberBuffer {
 public:
  void Push(char c) {
    if (heap_.empty() && size_ < small_.size()) {
      small_[size_++] = c;
      return;
    }
    if (heap_.empty()) heap_.assign(small_.data(), size_);
    heap_.push_back(c);
  }
  const char* Begin() const { return heap_.empty() ? small_.data() : heap_.data(); }
  const char* End() const {
    return heap_.empty() ? small_.data() + size_ : heap_.data() + heap_.size();
  }

 private:
  std::array<char, 96> small_{};
  std::size_t size_ = 0;
  std::string heap_;
};

class ValReader {
 public:
  explicit ValReader(std::string_view text) : text_(text) {}

  double Read() {
    ReadSign();
    if (!ReadMantissa()) return 0.0;
    ReadExponent();
    return Convert();
  }

 private:
  void SkipBlanks() {
    while (at_ < text_.size() && IsValBlank(text_[at_])) ++at_;
  }
  bool Peek(char& c) {
    SkipBlanks();
    if (at_ >= text_.size()) return false;
    c = text_[at_];
    return true;
  }

  void ReadSign() {
    char c;
    if (!Peek(c) || (c != '+' && c != '-')) return;
    if (c == '-') digits_.Push('-');
    ++at_;
  }

  // Digits with at most one point; true when there was at least one digit.
  bool ReadMantissa() {
    bool sawDigit = false, sawPoint = false;
    char c;
    while (Peek(c)) {
      if (IsDigit(c)) {
        sawDigit = true;
      } else if (c == '.' && !sawPoint) {
        sawPoint = true;
      } else {
        break;
      }
      digits_.Push(c);
      ++at_;
    }
    return sawDigit;
  }

  // "E" or "D", an optional sign and digits; left out entirely when no digit follows.
  void ReadExponent() {
    char c;
    if (!Peek(c) || (c != 'E' && c != 'e' && c != 'D' && c != 'd')) return;
    ++at_;
    char sign = '+';
    if (Peek(c) && (c == '+' || c == '-')) {
      sign = c;
      ++at_;
    }
    bool first = true;
    while (Peek(c) && IsDigit(c)) {
      if (first) {
        digits_.Push('e');
        if (sign == '-') digits_.Push('-');
        first = false;
      }
      digits_.Push(c);
      ++at_;
    }
  }

  double Convert() const {
    double value = 0.0;
    const auto [end, error] = std::from_chars(digits_.Begin(), digits_.End(), value);
    (void)end;
    if (error != std::errc() || !std::isfinite(value)) return 0.0;
    return value + 0.0;  // -0 becomes 0
  }

  std::string_view text_;
  std::size_t at_ = 0;
  NumberBuffer digits_;
};

// ---------------------------------------------------------------------------------------------
// Number to decimal digits

// A finite value as at most `precision` significant decimal digits: value = 0.d1d2...dn times
// 10^(exponent + 1), trailing zeros removed; zero has no digits.
struct DecimalDigits {
  std::array<char, 20> digits{};
  int count = 0;
  int exponent = 0;
  bool negative = false;
};

DecimalDigits ToDecimalDigits(double value, int precision) {
  DecimalDigits d;
  d.negative = std::signbit(value);
  if (value == 0.0) return d;
  char text[40];
  auto result = std::to_chars(text, text + sizeof text, std::fabs(value),
                              std::chars_format::scientific, precision - 1);
  const char* p = text;
  for (; p < result.ptr && *p != 'e'; ++p) {
    if (IsDigit(*p)) d.digits[d.count++] = *p;
  }
  int exponent = 0;
  std::from_chars(p + 1 + (p[1] == '+' ? 1 : 0), result.ptr, exponent);
  d.exponent = exponent;
  while (d.count > 1 && d.digits[d.count - 1] == '0') --d.count;
  return d;
}

std::string NonFiniteText(double value) {
  if (std::isnan(value)) return "NaN";
  return value < 0 ? "-Inf" : "Inf";
}

// ---------------------------------------------------------------------------------------------
// General form

void AppendExponent(std::string& out, int exponent) {
  out += 'E';
  out += exponent < 0 ? '-' : '+';
  int magnitude = exponent < 0 ? -exponent : exponent;
  if (magnitude < 10) out += '0';
  out += std::to_string(magnitude);
}

std::string ScientificText(const DecimalDigits& d) {
  std::string out;
  if (d.negative) out += '-';
  out += d.digits[0];
  if (d.count > 1) {
    out += '.';
    out.append(d.digits.data() + 1, d.count - 1);
  }
  AppendExponent(out, d.exponent);
  return out;
}

std::string PlainText(const DecimalDigits& d) {
  std::string out;
  if (d.negative) out += '-';
  if (d.exponent < 0) {
    out += "0.";
    out.append(-d.exponent - 1, '0');
    out.append(d.digits.data(), d.count);
    return out;
  }
  const int integerDigits = d.exponent + 1;
  for (int i = 0; i < integerDigits; ++i) out += i < d.count ? d.digits[i] : '0';
  if (d.count > integerDigits) {
    out += '.';
    out.append(d.digits.data() + integerDigits, d.count - integerDigits);
  }
  return out;
}

std::string GeneralText(double value, int precision) {
  if (!std::isfinite(value)) return NonFiniteText(value);
  const DecimalDigits d = ToDecimalDigits(value, precision);
  if (d.count == 0) return "0";
  if (d.exponent < kSmallestPlainExponent || d.exponent >= precision) return ScientificText(d);
  return PlainText(d);
}

// ---------------------------------------------------------------------------------------------
// Pictures of "0" and "#"

enum class TokenKind { Zero, Hash, Point, Literal, End };

struct Token {
  TokenKind kind = TokenKind::End;
  std::string_view text;  // for literals
};

// Walks a picture token by token; "\x" and "..." are literal text.
class PictureReader {
 public:
  explicit PictureReader(std::string_view picture) : picture_(picture) {}

  Token Next() {
    if (at_ >= picture_.size()) return {};
    const char c = picture_[at_];
    if (c == '0' || c == '#' || c == '.') {
      ++at_;
      return {c == '0' ? TokenKind::Zero : c == '#' ? TokenKind::Hash : TokenKind::Point, {}};
    }
    if (c == '\\') {
      at_ += 2;
      if (at_ > picture_.size()) return Next();  // a trailing backslash quotes nothing
      return {TokenKind::Literal, picture_.substr(at_ - 1, 1)};
    }
    if (c == '"') {
      const std::size_t close = picture_.find('"', at_ + 1);
      const std::size_t end = close == std::string_view::npos ? picture_.size() : close;
      Token token{TokenKind::Literal, picture_.substr(at_ + 1, end - at_ - 1)};
      at_ = close == std::string_view::npos ? end : end + 1;
      return token;
    }
    ++at_;
    return {TokenKind::Literal, picture_.substr(at_ - 1, 1)};
  }

 private:
  std::string_view picture_;
  std::size_t at_ = 0;
};

// How many digits a picture holds and how many of them are always written.
struct PictureShape {
  int integerPlaces = 0;
  int decimalPlaces = 0;
  int minIntegerDigits = 0;  // from the leftmost "0" before the point
  int minDecimals = 0;       // up to the rightmost "0" after the point
  bool hasPoint = false;
};

PictureShape MeasurePicture(std::string_view picture) {
  PictureShape shape;
  int leftmostZero = -1;
  PictureReader reader(picture);
  for (Token t = reader.Next(); t.kind != TokenKind::End; t = reader.Next()) {
    const bool digit = t.kind == TokenKind::Zero || t.kind == TokenKind::Hash;
    if (t.kind == TokenKind::Point) shape.hasPoint = true;
    if (!digit) continue;
    if (shape.hasPoint) {
      ++shape.decimalPlaces;
      if (t.kind == TokenKind::Zero) shape.minDecimals = shape.decimalPlaces;
    } else {
      if (t.kind == TokenKind::Zero && leftmostZero < 0) leftmostZero = shape.integerPlaces;
      ++shape.integerPlaces;
    }
  }
  if (leftmostZero >= 0) shape.minIntegerDigits = shape.integerPlaces - leftmostZero;
  return shape;
}

// The value's digits rounded to `decimals` places, half away from zero.
struct FixedDigits {
  std::string integer;   // no leading zeros; "" for a zero integer part
  std::string decimals;  // exactly the requested count
  bool zero = true;
};

void RoundUp(std::string& digits, int& integerLength) {
  for (auto i = digits.size(); i-- > 0;) {
    if (digits[i] != '9') {
      ++digits[i];
      return;
    }
    digits[i] = '0';
  }
  digits.insert(digits.begin(), '1');
  ++integerLength;
}

FixedDigits RoundToDecimals(const DecimalDigits& d, int decimals) {
  int integerLength = d.count > 0 && d.exponent >= 0 ? d.exponent + 1 : 0;
  const auto digitAtPower = [&d](int power) {
    const int index = d.exponent - power;
    return index >= 0 && index < d.count ? d.digits[index] : '0';
  };
  std::string all;
  all.reserve(integerLength + decimals + 1);
  for (int power = integerLength - 1; power >= -decimals; --power) all += digitAtPower(power);
  if (digitAtPower(-decimals - 1) >= '5') RoundUp(all, integerLength);

  FixedDigits fixed;
  std::size_t firstSignificant = 0;
  while (firstSignificant < static_cast<std::size_t>(integerLength) &&
         all[firstSignificant] == '0') {
    ++firstSignificant;
  }
  fixed.integer = all.substr(firstSignificant, integerLength - firstSignificant);
  fixed.decimals = all.substr(integerLength);
  fixed.zero = all.find_first_not_of('0') == std::string::npos;
  return fixed;
}

void ShapeDigits(FixedDigits& fixed, const PictureShape& shape) {
  auto keep = fixed.decimals.find_last_not_of('0');
  std::size_t wanted = keep == std::string::npos ? 0 : keep + 1;
  if (wanted < static_cast<std::size_t>(shape.minDecimals)) wanted = shape.minDecimals;
  fixed.decimals.resize(wanted);
  if (fixed.integer.size() < static_cast<std::size_t>(shape.minIntegerDigits)) {
    fixed.integer.insert(0, shape.minIntegerDigits - fixed.integer.size(), '0');
  }
}

// Places the digits into the picture: integer digits fill the places right to left, any the
// picture has no room for go in front of the first place.
std::string FillPicture(std::string_view picture, const PictureShape& shape,
                        const FixedDigits& fixed, bool negative) {
  std::string out;
  out.reserve(picture.size() + fixed.integer.size() + 2);
  if (negative && !fixed.zero) out += '-';
  const int integerLength = static_cast<int>(fixed.integer.size());
  const int overflow = integerLength - shape.integerPlaces;
  int integerPlace = 0, decimalPlace = 0;
  bool afterPoint = false;
  PictureReader reader(picture);
  for (Token t = reader.Next(); t.kind != TokenKind::End; t = reader.Next()) {
    if (t.kind == TokenKind::Literal || (t.kind == TokenKind::Point && afterPoint)) {
      out += t.kind == TokenKind::Point ? std::string_view(".") : t.text;
    } else if (t.kind == TokenKind::Point) {
      if (shape.integerPlaces == 0) out += fixed.integer;
      out += '.';
      afterPoint = true;
    } else if (afterPoint) {
      if (decimalPlace < static_cast<int>(fixed.decimals.size()))
        out += fixed.decimals[decimalPlace];
      ++decimalPlace;
    } else {
      if (integerPlace == 0 && overflow > 0) out.append(fixed.integer, 0, overflow);
      const int index = overflow + integerPlace;
      if (index >= 0) out += fixed.integer[index];
      ++integerPlace;
    }
  }
  if (shape.integerPlaces == 0 && !shape.hasPoint) out += fixed.integer;
  return out;
}

std::string PictureText(double value, std::string_view picture) {
  if (!std::isfinite(value)) return NonFiniteText(value);
  const PictureShape shape = MeasurePicture(picture);
  const DecimalDigits d = ToDecimalDigits(value, kDoubleDigits);
  FixedDigits fixed = RoundToDecimals(d, shape.decimalPlaces);
  ShapeDigits(fixed, shape);
  return FillPicture(picture, shape, fixed, d.negative);
}

}  // namespace

double NumericTextValue(std::string_view text) {
  return ValReader(text).Read();
}

double ScanNumber(std::string_view text, int& position) {
  std::size_t at = position < 1 ? 0 : static_cast<std::size_t>(position) - 1;
  while (at < text.size() && !IsScanRunChar(text[at])) ++at;
  const std::size_t start = at;
  while (at < text.size() && IsScanRunChar(text[at])) ++at;
  position = static_cast<int>(at + 1);
  return start < at ? NumericTextValue(text.substr(start, at - start)) : 0.0;
}

std::string FormatNumberText(double value, std::string_view format) {
  return format.empty() ? GeneralText(value, kDoubleDigits) : PictureText(value, format);
}

std::string FormatSingleText(float value) {
  return GeneralText(value, kSingleDigits);
}

}  // namespace zemtra
