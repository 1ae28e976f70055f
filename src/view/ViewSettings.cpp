#include "view/ViewSettings.h"

#include <string>

#include "core/NumberText.h"
#include "core/SettingsStore.h"
#include "view/DrawSettings.h"
#include "view/ViewState.h"

namespace zemtra {

namespace {

constexpr const char* kSection = "General";

bool ReadFlag(const SettingsStore& settings, const char* key, bool fallback) {
  return settings.GetSetting(kSection, key, fallback ? "True" : "False") == "True";
}

double ReadNumber(const SettingsStore& settings, const char* key, const char* fallback) {
  return NumericTextValue(settings.GetSetting(kSection, key, fallback));
}

void WriteFlag(SettingsStore& settings, const char* key, bool value) {
  settings.SaveSetting(kSection, key, value ? "True" : "False");
}

}  // namespace

void LoadViewSettings(const SettingsStore& settings, ViewState& view, DrawSwitches& switches) {
  switches.ShowAxisLines = static_cast<std::int16_t>(ReadNumber(settings, "ShowAxisLines", "1"));
  switches.ShowRapid = ReadFlag(settings, "ShowRapid", true);
  switches.ShowTicks = ReadFlag(settings, "ShowTicks", true);
  switches.ShowMarker = ReadFlag(settings, "ShowMarker", true);
  switches.ShowPlunge = ReadFlag(settings, "ShowPlunge", true);
  view.LockVertRotate = ReadFlag(settings, "LockVertRotate", false);
  const double number = ReadNumber(settings, "CurrentView", "0");
  view.CurrentView = static_cast<std::int16_t>(IsKnownView(static_cast<int>(number)) ? number : 0);
  view.SetViewAngle(ReadNumber(settings, "ViewAngle", "30"));
  view.SetTipAngle(ReadNumber(settings, "TipAngle", "30"));
}

void SaveViewSettings(SettingsStore& settings, const ViewState& view,
                      const DrawSwitches& switches) {
  settings.SaveSetting(kSection, "ShowAxisLines", std::to_string(switches.ShowAxisLines));
  WriteFlag(settings, "ShowRapid", switches.ShowRapid);
  WriteFlag(settings, "ShowTicks", switches.ShowTicks);
  WriteFlag(settings, "ShowMarker", switches.ShowMarker);
  WriteFlag(settings, "ShowPlunge", switches.ShowPlunge);
  WriteFlag(settings, "LockVertRotate", view.LockVertRotate);
  settings.SaveSetting(kSection, "CurrentView", std::to_string(view.CurrentView));
  settings.SaveSetting(kSection, "ViewAngle", FormatNumberText(view.ViewAngle, ""));
  settings.SaveSetting(kSection, "TipAngle", FormatNumberText(view.TipAngle, ""));
}

}  // namespace zemtra
