#include "script/ScriptValue.h"

#include <cmath>
#include <limits>
#include <utility>

#include "core/NumberText.h"
#include "core/TextUtil.h"

namespace zemtra {

ScriptValue ScriptValue::Number(double value) {
  ScriptValue result;
  result.kind_ = Kind::Number;
  result.number_ = value;
  return result;
}

ScriptValue ScriptValue::Text(std::string value) {
  ScriptValue result;
  result.kind_ = Kind::Text;
  result.text_ = std::move(value);
  return result;
}

ScriptValue ScriptValue::Boolean(bool value) {
  ScriptValue result;
  result.kind_ = Kind::Boolean;
  result.number_ = value ? -1 : 0;
  return result;
}

bool ScriptValue::IsEmpty() const {
  return kind_ == Kind::Undefined || (kind_ == Kind::Text && text_.empty());
}

std::string ScriptValue::AsText() const {
  switch (kind_) {
    case Kind::Number:
      return FormatNumberText(number_, "");
    case Kind::Text:
      return text_;
    case Kind::Boolean:
      return number_ != 0 ? "True" : "False";
    default:
      return {};
  }
}

double ScriptValue::AsNumber() const {
  if (kind_ == Kind::Text) return NumericTextValue(text_);
  return std::isfinite(number_) ? number_ : 0;
}

std::int32_t ScriptValue::AsInt32() const {
  const double value = std::round(AsNumber());
  constexpr double kLow = std::numeric_limits<std::int32_t>::min();
  constexpr double kHigh = std::numeric_limits<std::int32_t>::max();
  return static_cast<std::int32_t>(value < kLow ? kLow : value > kHigh ? kHigh : value);
}

bool ScriptValue::AsBoolean() const {
  if (kind_ == Kind::Text) {
    return !text_.empty() && text_ != "0" && !EqualsNoCase(text_, "False");
  }
  return AsNumber() != 0;
}

}  // namespace zemtra
