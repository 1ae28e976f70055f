#include <gtest/gtest.h>

#include <cstdint>
#include <random>

#include "core/NumberText.h"
#include "core/SettingsStore.h"
#include "interp/Axes.h"
#include "interp/PlotPreferences.h"

namespace zemtra {
namespace {

TEST(PlotPreferences, ReadsSwitchesAndKeepsDefaultsForBadValues) {
  MemorySettingsStore settings;
  settings.SaveSetting("Preferences", "Stop On M00", "False");
  settings.SaveSetting("Preferences", "Warn on Feedrate 0", "True");
  settings.SaveSetting("Preferences", "Warn on Spindle Speed 0", "-1");
  settings.SaveSetting("Preferences", "Warn on Spindle OFF", "perhaps");
  settings.SaveSetting("Preferences", "Warning Reset", "2");
  settings.SaveSetting("Subprograms", "Ignore M98", "7");
  settings.SaveSetting("Subprograms", "Ignore G65", "3");
  InterpreterOptions options;
  PlotWarnings warnings;
  warnings.WarnSpindleOff = true;
  LoadPlotPreferences(settings, options, warnings);
  EXPECT_FALSE(options.StopOnM00);
  EXPECT_EQ(options.WarningReset, 2);
  EXPECT_EQ(options.IgnoreM98, 1);  // out of range: the default stands
  EXPECT_EQ(options.IgnoreG65, 3);
  EXPECT_TRUE(warnings.WarnFeedrate0);
  EXPECT_TRUE(warnings.WarnSpindleSpeed0);
  EXPECT_TRUE(warnings.WarnSpindleOff);  // unreadable: left as it was
  EXPECT_EQ(options.NumberFormat, "###0.0###");
  settings.SaveSetting("Preferences", "Display Precision", "6");
  LoadPlotPreferences(settings, options, warnings);
  EXPECT_EQ(options.NumberFormat, "###0.0#####");
}

// Coordinates in variables read back as their 7-digit text: the fast conversion must agree
// with formatting and reading the text back.
TEST(CoordinateReadBack, AgreesWithTheTextOfTheFloat) {
  const float fixed[] = {0.1f, -0.1f,   1.1f,     50.1f,  123.4567f, 1234567.5f, 9999999.f,
                         1e7f, 3.4e38f, 1.2e-38f, 1e-45f, 0.000123f, -98765.43f, 0.0f};
  for (float value : fixed) {
    EXPECT_EQ(CoordinateReadBack(value), NumericTextValue(FormatSingleText(value))) << value;
  }
  std::mt19937 random(12345);
  std::uniform_real_distribution<float> coordinate(-10000.f, 10000.f);
  int disagreements = 0;
  for (int i = 0; i < 20000; ++i) {
    const float value = coordinate(random);
    disagreements += CoordinateReadBack(value) != NumericTextValue(FormatSingleText(value));
  }
  EXPECT_EQ(disagreements, 0);
}

}  // namespace
}  // namespace zemtra
