#include "interp/PlotPreferences.h"

#include <climits>
#include <optional>
#include <string>

#include "core/DisplayFormats.h"
#include "core/NumberText.h"
#include "core/SettingsStore.h"
#include "core/TextUtil.h"

namespace zemtra {

namespace {

// "True"/"False" as the settings hold them, or a number (non-zero is true).
std::optional<bool> ReadBool(const SettingsStore& settings, const char* section, const char* key) {
  const std::string text = TrimText(settings.GetSetting(section, key, ""));
  if (EqualsNoCase(text, "True")) return true;
  if (EqualsNoCase(text, "False")) return false;
  if (text.empty() || text.find_first_not_of("+-0123456789.") != std::string::npos) return {};
  return NumericTextValue(text) != 0;
}

void Take(const SettingsStore& settings, const char* section, const char* key, bool& field) {
  if (const auto value = ReadBool(settings, section, key)) field = *value;
}

void Take(const SettingsStore& settings, const char* section, const char* key, int& field, int low,
          int high) {
  const std::string text = TrimText(settings.GetSetting(section, key, ""));
  if (text.empty() || text.find_first_not_of("+-0123456789") != std::string::npos) return;
  const double value = NumericTextValue(text);
  if (value >= low && value <= high) field = static_cast<int>(value);
}

}  // namespace

void LoadPlotPreferences(const SettingsStore& settings, InterpreterOptions& options,
                         PlotWarnings& warnings) {
  Take(settings, "Preferences", "Stop On M00", options.StopOnM00);
  Take(settings, "Preferences", "Warning Reset", options.WarningReset, 0, 2);
  Take(settings, "Preferences", "Warn on Feedrate 0", warnings.WarnFeedrate0);
  Take(settings, "Preferences", "Warn on Spindle Speed 0", warnings.WarnSpindleSpeed0);
  Take(settings, "Preferences", "Warn on Spindle OFF", warnings.WarnSpindleOff);
  Take(settings, "Subprograms", "Ignore M98", options.IgnoreM98, 1, 3);
  Take(settings, "Subprograms", "Ignore G65", options.IgnoreG65, 1, 3);
  constexpr int kUnread = INT_MIN;
  int precision = kUnread;
  Take(settings, "Preferences", "Display Precision", precision, -32768, 32767);
  if (precision != kUnread) options.NumberFormat = DisplayFormatsFor(precision).Short;
}

}  // namespace zemtra
