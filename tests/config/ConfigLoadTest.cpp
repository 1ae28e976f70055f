#include <gtest/gtest.h>

#include <random>

#include "config/ConfigFile.h"
#include "core/RecordingHost.h"
#include "support/ScratchFolder.h"
#include "support/TestSupport.h"

namespace zemtra {
namespace {

using test::ScratchFolder;

MachineConfig Parsed(std::string_view text, std::vector<std::string>* warnings = nullptr) {
  MachineConfig record;
  ReadConfigRecord(ConfigText(text), record, warnings);
  return record;
}

std::vector<std::int16_t> MacroCodes(std::string_view options) {
  return Parsed("[OPTIONS]\r\n" + std::string(options) + "\r\n").ExternalGCodeMacros;
}

TEST(LoadConfig, MachineSectionAloneGivesEveryDefault) {
  ScratchFolder folder;
  std::string path = folder.Write("CONFIG/Mill 3.zmt", "[MACHINE]\r\n");
  RecordingHost host;
  MachineConfig record;
  ASSERT_TRUE(LoadConfig(path, record, host, folder.path()));

  EXPECT_TRUE(host.shown.empty());
  EXPECT_EQ(record.ConfigPath, path);
  EXPECT_EQ(record.ConfigName, "Mill 3");
  EXPECT_EQ(record.MachineType, 0);
  EXPECT_EQ(record.LatheXDiameter, 0);
  EXPECT_EQ(record.ArcTolerance, 0.001);
  EXPECT_EQ(record.CoordinateResolution, 0.0001);
  EXPECT_EQ(record.DwellAddress, "X");
  EXPECT_EQ(record.ExternalGCodeMacros,
            (std::vector<std::int16_t>{0, 120, 130, 340, 350, 360, 371}));
  EXPECT_EQ(record.FanucATANFormat, kFlagTrue);
  EXPECT_EQ(record.MCodeXMirrorOn, 87);
  EXPECT_EQ(record.MCodeYMirrorOn, 88);
  EXPECT_EQ(record.MCodeMirrorOff, 89);
  EXPECT_EQ(record.RotaryAxisIdentifier, "B");
  EXPECT_EQ(record.RotaryAxisPlane, 18);
  EXPECT_EQ(record.RotaryAxisResolution, 0.001);
  EXPECT_EQ(record.MarkerColor, 16777215);
  EXPECT_EQ(record.ColorByGCode, kFlagTrue);
  EXPECT_EQ(record.BackgroundColor, 0);
  EXPECT_EQ(record.ToolColors, std::vector<ColorValue>{0});
  EXPECT_EQ(record.DXFDefaults, ConvertParams{});
  EXPECT_EQ(record.WorkOffsetText[0], "");
}

TEST(LoadConfig, FileWithoutSectionsLoadsLikeTheDefaults) {
  EXPECT_EQ(Parsed("Machine Type = 1\r\nArc Tolerance = 5\r\n"), Parsed("[MACHINE]\r\n"));
}

TEST(LoadConfig, MacroListStopsAtTheFirstZero) {
  using Codes = std::vector<std::int16_t>;
  EXPECT_EQ(MacroCodes("Rapid Type = 0"), (Codes{0, 120, 130, 340, 350, 360, 371}));
  EXPECT_EQ(MacroCodes("External GCode Macro = "), Codes{0});
  EXPECT_EQ(MacroCodes("External GCode Macro = G120, G0, G130"), (Codes{0, 120}));
  EXPECT_EQ(MacroCodes("External GCode Macro = G810,G820 G830"), (Codes{0, 810, 820, 830}));
  EXPECT_EQ(MacroCodes("External GCode Macro = none"), Codes{0});
  EXPECT_EQ(MacroCodes("External GCode Macro = G99999, G120"), (Codes{0, 120}));
}

TEST(LoadConfig, ToolColoursEndAtTheFirstGap) {
  const MachineConfig record = Parsed(
      "[COLORS]\r\nUnspecified Tool Color = 255\r\nTool Color 01 = 65280\r\n"
      "Tool Color 03 = 16711680\r\n");
  EXPECT_EQ(record.ToolColors, (std::vector<ColorValue>{255, 65280}));
}

TEST(LoadConfig, ConversionsOfEachKind) {
  std::vector<std::string> warnings;
  const MachineConfig record = Parsed(
      "[MACHINE]\r\nMachine Type = 1.5 lathe\r\nMill Type = 99999\r\nLathe X Diameter = 2\r\n"
      "Lathe Reverse Arcs = yes\r\n"
      "[OPTIONS]\r\nRapid Type = 300\r\nAbsolute Arc Center =  -1 \r\nModal IJK = 0.4\r\n"
      "Arc Tolerance = abc\r\nCoordinate Resolution = 1E-05\r\n"
      "[MACRO]\r\nFanuc ATAN Format = true\r\n"
      "[ROTARY AXIS]\r\nRotary Axis Plane = nineteen\r\nRotary Axis Centerline X = 1e300\r\n"
      "Rotary Axis Centerline Y = -2.5\r\n"
      "[COLORS]\r\nColor by G-Code = False\r\nMarker Color = 1e12\r\nG00 Color = 255 red\r\n",
      &warnings);
  EXPECT_EQ(record.MachineType, 2);  // leading number, halves to even
  EXPECT_EQ(record.MillType, 0);     // beyond 16 bits: default
  EXPECT_EQ(record.LatheXDiameter, kFlagTrue);
  EXPECT_EQ(record.LatheReverseArcs, kFlagFalse);  // not a number: default
  EXPECT_EQ(record.RapidType, 0);                  // beyond a byte: default
  EXPECT_EQ(record.AbsoluteArcCenter, kFlagTrue);
  EXPECT_EQ(record.ModalIJK, kFlagFalse);  // rounds to 0
  EXPECT_EQ(record.ArcTolerance, 0.0);     // no leading number
  EXPECT_EQ(record.CoordinateResolution, 0.00001);
  EXPECT_EQ(record.FanucATANFormat, kFlagFalse);  // only the exact word "True"
  EXPECT_EQ(record.RotaryAxisPlane, 18);
  EXPECT_EQ(record.RotaryCenterX, 0.0f);
  EXPECT_EQ(record.RotaryCenterY, -2.5f);
  EXPECT_EQ(record.ColorByGCode, kFlagFalse);
  EXPECT_EQ(record.MarkerColor, 16777215);
  EXPECT_EQ(record.G00Color, 255);
  ASSERT_EQ(warnings.size(), 6u);
  EXPECT_EQ(warnings[1],
            "[MACHINE] Lathe Reverse Arcs: \"yes\" is not a whole number the field can hold; "
            "\"0\" is used instead");
}

TEST(LoadConfig, BinaryGarbageLoadsWithoutHarm) {
  std::mt19937 random(7);
  std::string bytes;
  for (int i = 0; i < 200000; ++i) bytes += static_cast<char>(random() % 256);
  bytes += std::string("\r\n[COLORS]\r\nTool Color 01 = \0\x01\r\n[\r\n]\r\n", 38);
  ScratchFolder folder;
  std::string path = folder.Write("junk.zmt", bytes);
  RecordingHost host;
  MachineConfig record;
  EXPECT_TRUE(LoadConfig(path, record, host, folder.path()));
  EXPECT_EQ(record.ConfigName, "junk");
}

// A missing file is named and another one asked for; cancelling that leaves a cleared record.
TEST(LoadConfig, MissingFileAsksForAnotherAndKeepsTheMissingName) {
  ScratchFolder folder;
  const std::string chosen = folder.Write("CONFIG/lathe.zmt", "[MACHINE]\r\nMachine Type = 1\r\n");
  const std::string missing = (folder.path() / "CONFIG" / "gone.zmt").string();
  for (const bool cancelled : {false, true}) {
    SCOPED_TRACE(cancelled ? "cancelled" : "chosen");
    RecordingHost host;
    if (!cancelled) host.chosenFile = chosen;
    std::string path = missing;
    MachineConfig record;
    record.MachineType = 2;
    record.InitialState = "G20";
    ASSERT_EQ(LoadConfig(path, record, host, folder.path()), !cancelled);

    ASSERT_EQ(host.shown.size(), 1u);
    const Prompt& prompt = host.shown[0].prompt;
    EXPECT_EQ(prompt.text, "Config file not found:\r\n" + missing +
                               "\r\n\r\nPlease select a configuration file");
    EXPECT_EQ(prompt.title, "Zemtra");
    EXPECT_EQ(prompt.icon, MsgIcon::Exclamation);
    EXPECT_EQ(prompt.buttons, MsgButtons::Ok);
    EXPECT_EQ(record.MachineType, cancelled ? 0 : 1);
    EXPECT_EQ(record.InitialState, "");
    if (cancelled) {
      EXPECT_EQ(record.ToolColors, (std::vector<ColorValue>{0, 0}));
    } else {
      EXPECT_EQ(path, chosen);
      EXPECT_EQ(record.ConfigPath, missing);
      EXPECT_EQ(record.ConfigName, "gone");
    }
  }
}

TEST(LoadConfig, EmptyPathFindsTheDefaultFileWhateverItsCase) {
  ScratchFolder folder;
  const std::string file = folder.Write("Config/Default.ZMT", "[OPTIONS]\r\nModal IJK = -1\r\n");
  RecordingHost host;
  std::string path;
  MachineConfig record;
  ASSERT_TRUE(LoadConfig(path, record, host, folder.path()));
  EXPECT_TRUE(host.shown.empty());
  EXPECT_EQ(path, file);
  EXPECT_EQ(record.ConfigName, "Default");
  EXPECT_EQ(record.ModalIJK, kFlagTrue);
}

}  // namespace
}  // namespace zemtra
