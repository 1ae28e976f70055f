#include "macro/SubprogramSettings.h"

#include <cmath>

#include "core/NumberText.h"
#include "core/SettingsStore.h"

namespace zemtra {

namespace {

constexpr const char* kSection = "Subprograms";
constexpr const char* kDefaultPathKey = "Default Path";
constexpr const char* kIgnoreM98Key = "Ignore M98";
constexpr const char* kIgnoreG65Key = "Ignore G65";
constexpr std::string_view kProgramKey = "Program";

// A mode of 1 to 3; an unreadable value keeps the one there is.
std::int16_t ModeOf(const std::string& text, std::int16_t fallback) {
  const double value = NumericTextValue(text);
  if (value >= SubprogramMode::kErrorIfMissing && value <= SubprogramMode::kIgnoreAll &&
      value == std::trunc(value)) {
    return static_cast<std::int16_t>(value);
  }
  return fallback;
}

}  // namespace

SubprogramSettings LoadSubprogramSettings(const SettingsStore& store) {
  SubprogramSettings settings;
  for (const auto& [key, value] : store.GetAllSettings(kSection)) {
    if (key == kDefaultPathKey) {
      settings.DefaultSubPath = value;
    } else if (key == kIgnoreM98Key) {
      settings.IgnoreM98 = ModeOf(value, settings.IgnoreM98);
    } else if (key == kIgnoreG65Key) {
      settings.IgnoreG65 = ModeOf(value, settings.IgnoreG65);
    } else if (key.substr(0, kProgramKey.size()) == kProgramKey) {
      const double number = NumericTextValue(std::string_view(key).substr(kProgramKey.size()));
      if (std::fabs(number) < 2147483647.0) {
        settings.SubProgramFiles.push_back({static_cast<std::int32_t>(number), value});
      }
    }
  }
  return settings;
}

void SaveSubprogramSettings(SettingsStore& store, const SubprogramSettings& settings) {
  store.DeleteSetting(kSection);
  store.SaveSetting(kSection, kDefaultPathKey, settings.DefaultSubPath);
  for (const SubProgramAssignment& assignment : settings.SubProgramFiles) {
    if (assignment.Number == 0) continue;
    store.SaveSetting(kSection, "Program " + FormatNumberText(assignment.Number, "#####0"),
                      assignment.FileName);
  }
  store.SaveSetting(kSection, kIgnoreM98Key, FormatNumberText(settings.IgnoreM98, ""));
  store.SaveSetting(kSection, kIgnoreG65Key, FormatNumberText(settings.IgnoreG65, ""));
}

}  // namespace zemtra
