#pragma once
// A fast writer for the short display format ("###0.0###": at least one decimal, at most a few),
// which the translation filters use for every word they rewrite. It gives exactly what
// FormatNumberText gives for that format and falls back to it for any other format.
#include <string>
#include <string_view>

namespace zemtra {

class ShortNumberText {
 public:
  explicit ShortNumberText(std::string_view format);
  // `value` written in the format; appended to `out`.
  void Append(double value, std::string& out) const;
  std::string operator()(double value) const {
    std::string text;
    Append(value, text);
    return text;
  }

 private:
  std::string format_;
  int decimals_ = -1;  // most decimals of a recognised short format; -1 for any other format
};

}  // namespace zemtra
