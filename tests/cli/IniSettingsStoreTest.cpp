#include "cli/IniSettingsStore.h"

#include <gtest/gtest.h>

#include <string>

#include "support/ScratchFolder.h"

namespace zemtra {
namespace {

TEST(IniSettingsStore, NamesAndValuesAreEscapedAsQtDoes) {
  const std::pair<const char*, const char*> keys[] = {
      {"Stop On M00", "Stop%20On%20M00"},
      {"Pane1Width", "Pane1Width"},
      {"a/b", "a\\b"},
      {"Recent Files", "Recent%20Files"},
  };
  for (const auto& [plain, escaped] : keys) {
    EXPECT_EQ(EscapeIniKey(plain), escaped);
    EXPECT_EQ(UnescapeIniKey(escaped), plain);
  }
  const std::pair<const char*, const char*> values[] = {
      {"True", "True"},
      {"#100=5 #101=7 ", "\"#100=5 #101=7 \""},
      {"C:\\cnc\\a.nc", "C:\\\\cnc\\\\a.nc"},
      {"say \"hi\"", "say \\\"hi\\\""},
      {" lead", "\" lead\""},
      {"line1\r\nline2", "line1\\r\\nline2"},
      {"@at", "@@at"},
      {"", ""},
  };
  for (const auto& [plain, escaped] : values) {
    EXPECT_EQ(EscapeIniValue(plain), escaped) << plain;
    EXPECT_EQ(UnescapeIniValue(escaped), plain) << escaped;
  }
  EXPECT_EQ(UnescapeIniValue("a, b,c"), "a, b, c");  // an unquoted list reads as one text
}

TEST(IniSettingsStore, ReadsTheFileTheDesktopProgramWrites) {
  IniSettingsStore store("unused");
  store.ParseText(
      "[General]\nMulti%20Instance=false\n\n[%General]\nVariable%20State=\"#100=1 \"\n"
      "[Preferences]\r\nWarn%20on%20Feedrate%200=True\r\n  junk line\r\n");
  EXPECT_EQ(store.GetSetting("General", "Variable State"), "#100=1 ");
  EXPECT_EQ(store.GetSetting("Preferences", "Warn on Feedrate 0"), "True");
  EXPECT_EQ(store.GetSetting("General", "Multi Instance", "x"), "x");  // a key of no group
  EXPECT_EQ(store.GetAllSettings("Preferences").size(), 1u);
}

TEST(IniSettingsStore, SaveAndLoadRoundTrip) {
  const test::ScratchFolder folder;
  const auto file = folder / "Zemtra" / "Zemtra.conf";
  IniSettingsStore store(file);
  ASSERT_TRUE(store.Load());  // no file yet: an empty store
  store.SaveSetting("General", "Variable State", "#100=2.5 #5221=-10 ");
  store.SaveSetting("Preferences", "Stop On M00", "False");
  store.SaveSetting("Subprograms", "Program 100", "/cnc/O100.nc");
  std::string error;
  ASSERT_TRUE(store.Save(&error)) << error;
  IniSettingsStore again(file);
  ASSERT_TRUE(again.Load(&error)) << error;
  EXPECT_EQ(again.GetSetting("General", "Variable State"), "#100=2.5 #5221=-10 ");
  EXPECT_EQ(again.GetSetting("Preferences", "Stop On M00"), "False");
  EXPECT_EQ(again.GetSetting("Subprograms", "Program 100"), "/cnc/O100.nc");
  again.DeleteSetting("Subprograms");
  EXPECT_TRUE(again.GetAllSettings("Subprograms").empty());
}

}  // namespace
}  // namespace zemtra
