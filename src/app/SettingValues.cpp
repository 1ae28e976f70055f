#include "app/SettingValues.h"

#include <cmath>
#include <limits>

#include "core/NumberText.h"
#include "core/SettingsStore.h"
#include "core/TextUtil.h"

namespace zemtra {

namespace {

// The leading number of `text` when it lies within [low, high].
template <typename T>
bool InRange(double number) {
  return number >= static_cast<double>(std::numeric_limits<T>::lowest()) &&
         number <= static_cast<double>(std::numeric_limits<T>::max());
}

// Integer settings round as a conversion to an integer type would.
double RoundHalfEven(double number) {
  return std::nearbyint(number);
}

}  // namespace

bool SettingReader::Fetch(const std::string& key, std::string& text) const {
  // A marker that no real value can hold tells "absent" from any stored text.
  static constexpr const char* kAbsent = "\x01";
  text = store_.GetSetting(section_, key, kAbsent);
  return text != kAbsent;
}

void SettingReader::Bool(const std::string& key, bool& value) const {
  std::string text;
  if (Fetch(key, text)) value = text == "True";
}

void SettingReader::NumericBool(const std::string& key, bool& value) const {
  std::string text;
  if (!Fetch(key, text)) return;
  const std::string trimmed = TrimText(text);
  if (trimmed.empty()) return;
  if (EqualsNoCase(trimmed, "True")) {
    value = true;
  } else if (EqualsNoCase(trimmed, "False")) {
    value = false;
  } else {
    value = NumericTextValue(trimmed) != 0;
  }
}

void SettingReader::Int16(const std::string& key, std::int16_t& value) const {
  std::string text;
  if (!Fetch(key, text) || TrimText(text).empty()) return;
  const double number = RoundHalfEven(NumericTextValue(text));
  if (InRange<std::int16_t>(number)) value = static_cast<std::int16_t>(number);
}

void SettingReader::Int32(const std::string& key, std::int32_t& value) const {
  std::string text;
  if (!Fetch(key, text) || TrimText(text).empty()) return;
  const double number = RoundHalfEven(NumericTextValue(text));
  if (InRange<std::int32_t>(number)) value = static_cast<std::int32_t>(number);
}

void SettingReader::Double(const std::string& key, double& value) const {
  std::string text;
  if (!Fetch(key, text) || TrimText(text).empty()) return;
  value = NumericTextValue(text);
}

void SettingReader::Float(const std::string& key, float& value) const {
  std::string text;
  if (!Fetch(key, text) || TrimText(text).empty()) return;
  const double number = NumericTextValue(text);
  if (InRange<float>(number)) value = static_cast<float>(number);
}

void SettingReader::Text(const std::string& key, std::string& value) const {
  std::string text;
  if (Fetch(key, text)) value = text;
}

void SettingWriter::Bool(const std::string& key, bool value) {
  store_.SaveSetting(section_, key, value ? "True" : "False");
}

void SettingWriter::NumericBool(const std::string& key, bool value) {
  store_.SaveSetting(section_, key, value ? "-1" : "0");
}

void SettingWriter::Number(const std::string& key, double value) {
  store_.SaveSetting(section_, key, FormatNumberText(value, ""));
}

void SettingWriter::Text(const std::string& key, const std::string& value) {
  store_.SaveSetting(section_, key, value);
}

}  // namespace zemtra
