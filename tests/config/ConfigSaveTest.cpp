#include <sys/stat.h>

#include <gtest/gtest.h>

#include <map>

#include "config/ConfigFile.h"
#include "core/RecordingHost.h"
#include "support/ScratchFolder.h"
#include "support/TestSupport.h"

namespace zemtra {
namespace {

using test::ScratchFolder;

// A variable store holding a few offsets as text; every other variable is null.
VariableReader StoreWith(std::map<int, std::string> values) {
  return [values = std::move(values)](int number) {
    const auto found = values.find(number);
    return found == values.end() ? std::string() : found->second;
  };
}

MachineConfig FullRecord() {
  MachineConfig r;
  r.MachineType = 1;
  r.MillType = 1;
  r.LatheXDiameter = kFlagTrue;
  r.DefaultProgramFolder = "/home/u/nc";
  r.DefaultFileTypes = "*.nc;*.tap";
  r.RapidType = 2;
  r.AbsoluteArcCenter = kFlagTrue;
  r.ArcTolerance = 0.002;
  r.CoordinateResolution = 0.001;
  r.InitialState = "G17 G40 G80 G90";
  r.TopViewOrientation = 3;
  r.DwellAddress = "P";
  r.ExternalGCodeMacros = {0, 810, 820};
  r.M98Format = 2;
  r.LatheGCodeFormat = 1;
  r.MCodeXMirrorOn = 21;
  r.MCodeYMirrorOn = 22;
  r.MCodeMirrorOff = 23;
  r.DXFDefaults.ZRetract = 1.5;
  r.DXFDefaults.ZApproach = 0.1;
  r.DXFDefaults.ZDepth = -0.25;
  r.DXFDefaults.PlungeRate = 5;
  r.DXFDefaults.FeedRate = 20.5;
  r.DXFDefaults.EnableZIncrement = kFlagTrue;
  r.DXFDefaults.ZIncrement = 0.05;
  r.DXFDefaults.Header = "G90\r\n\r\nM3\r\n";
  r.RotaryAxisIdentifier = "A";
  r.RotaryAxisPlane = 19;
  r.RotaryAxisResolution = 0.01;
  r.RotaryCenterX = 1.25f;
  r.RotaryCenterZ = -3.1f;
  r.BackgroundColor = 16777215;
  r.SelectionColor = 65535;
  r.MarkerColor = 255;
  r.G00Color = 1;
  r.G01Color = 2;
  r.G02Color = 3;
  r.G03Color = 4;
  r.UnspecifiedToolColor = 8421504;
  r.ColorChangeCode = 1;
  r.ToolColors = {8421504, 65280, 255};
  return r;
}

TEST(SaveConfig, WritesEverySectionInItsFormat) {
  MachineConfig record = FullRecord();
  record.InitialState = "G17 G40\r\nG80 G90";
  record.ExternalGCodeMacros = {0};
  record.LatheXDiameter = kFlagFalse;
  record.FanucATANFormat = kFlagTrue;
  record.DXFDefaults.Footer = "\r\n\r\n";  // only line ends: no line at all
  record.WorkOffsetText[0] = "#5221=9 #5222=9 #5223=9 #5224=9";
  const std::string text = ConfigFileText(
      record, StoreWith({{5221, "1.5"}, {5223, "-2"}, {5224, "abc"}, {5324, "0.125"}}));
  EXPECT_EQ(text,
            "[MACHINE]\r\nMachine Type = 1\r\nMill Type = 1\r\nLathe X Diameter =  0 \r\n"
            "Lathe Reverse Arcs =  0 \r\nDefault Program Folder = /home/u/nc\r\n"
            "Default File Types = *.nc;*.tap\r\n\r\n"
            "[OPTIONS]\r\nRapid Type = 2\r\nAbsolute Arc Center = -1 \r\nModal IJK =  0 \r\n"
            "Arc Tolerance = 0.002\r\nCoordinate Resolution = 0.001\r\n"
            "Initial State = G17 G40 G80 G90\r\nTop View Orientation = 3\r\n"
            "Dwell Address = P\r\nExternal GCode Macro = \r\n"
            "[MACRO]\r\nFanuc ATAN Format = True\r\n\r\n"
            "[G/M CODE OPTIONS]\r\nM98 Format = 2\r\nLathe G Code Format = 1\r\n"
            "MCode X Mirror ON = 21\r\nMCode Y Mirror ON = 22\r\nMCode Mirror OFF = 23\r\n\r\n"
            "[DXF OPTIONS]\r\nDXF Default Z Retract = 1.5\r\nDXF Default Z Approach = 0.1\r\n"
            "DXF Default Z Depth = -0.25\r\nDXF Default Plunge Feedrate = 5\r\n"
            "DXF Default Feedrate = 20.5\r\nDXF Default Enable Z Increment = True\r\n"
            "DXF Default Material Top = 0\r\nDXF Default Z Increment = 0.05\r\n"
            "DXF Default Layer Header = G90\r\nDXF Default Layer Header = M3\r\n\r\n"
            "[WORK OFFSETS]\r\nG54 = #5221=1.5 #5222=0 #5223=-2 #5224=0\r\n"
            "G55 = #5241=0 #5242=0 #5243=0 #5244=0\r\nG56 = #5261=0 #5262=0 #5263=0 #5264=0\r\n"
            "G57 = #5281=0 #5282=0 #5283=0 #5284=0\r\nG58 = #5301=0 #5302=0 #5303=0 #5304=0\r\n"
            "G59 = #5321=0 #5322=0 #5323=0 #5324=0.125\r\n\r\n"
            "[ROTARY AXIS]\r\nRotary Axis Identifier = A\r\nRotary Axis Plane = 19\r\n"
            "Rotary Axis Resolution = 0.01\r\nRotary Axis Centerline X = 1.25\r\n"
            "Rotary Axis Centerline Y = 0\r\nRotary Axis Centerline Z = -3.1\r\n\r\n"
            "[COLORS]\r\nViewport Background Color = 16777215\r\nSelection Color = 65535\r\n"
            "Marker Color = 255\r\nColor by G-Code =  0 \r\nG00 Color = 1\r\nG01 Color = 2\r\n"
            "G02 Color = 3\r\nG03 Color = 4\r\nUnspecified Tool Color = 8421504\r\n"
            "Color Change Code = 1\r\nTool Color 01 = 65280\r\nTool Color 02 = 255\r\n\r\n");
}

TEST(SaveConfig, SavedFileLoadsBackToTheSameRecord) {
  ScratchFolder folder;
  const std::string path = (folder.path() / "Full.zmt").string();
  MachineConfig record = FullRecord();
  std::string error;
  ASSERT_TRUE(SaveConfig(path, record, StoreWith({{5241, "-7.25"}, {5304, "3"}}), &error)) << error;

  std::string loadPath = path;
  MachineConfig loaded;
  RecordingHost host;
  ASSERT_TRUE(LoadConfig(loadPath, loaded, host, folder.path()));
  record.ConfigName = "Full";
  record.ConfigPath = path;
  record.DXFDefaults.Header = "G90\r\nM3\r\n";  // the empty line of the layer header is lost
  record.WorkOffsetText = {"#5221=0 #5222=0 #5223=0 #5224=0", "#5241=-7.25 #5242=0 #5243=0 #5244=0",
                           "#5261=0 #5262=0 #5263=0 #5264=0", "#5281=0 #5282=0 #5283=0 #5284=0",
                           "#5301=0 #5302=0 #5303=0 #5304=3", "#5321=0 #5322=0 #5323=0 #5324=0"};
  EXPECT_EQ(loaded, record);
}

TEST(SaveConfig, ReplacesTheFileKeepingItsPermissionsAndLeavesNoTemporaryFile) {
  ScratchFolder folder;
  const std::string path = folder.Write("m.zmt", "old");
  ::chmod(path.c_str(), 0640);
  ASSERT_TRUE(SaveConfig(path, MachineConfig{}, StoreWith({})));
  EXPECT_EQ(test::ReadFileBytes(path).substr(0, 11), "[MACHINE]\r\n");
  struct stat info {};
  ASSERT_EQ(::stat(path.c_str(), &info), 0);
  EXPECT_EQ(info.st_mode & 0777, 0640u);
  EXPECT_EQ(std::distance(std::filesystem::directory_iterator(folder.path()), {}), 1);
}

TEST(SaveConfig, UnwritableFolderFailsWithAReason) {
  ScratchFolder folder;
  const std::string path = (folder.path() / "no such folder" / "m.zmt").string();
  std::string error;
  EXPECT_FALSE(SaveConfig(path, MachineConfig{}, StoreWith({}), &error));
  EXPECT_EQ(error.rfind("Cannot write " + path + ": ", 0), 0u) << error;
}

}  // namespace
}  // namespace zemtra
