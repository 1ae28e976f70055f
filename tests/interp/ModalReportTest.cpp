#include <gtest/gtest.h>

#include <string>

#include "PlotFixture.h"
#include "interp/ModalReport.h"
#include "interp/ModalTables.h"

namespace zemtra {
namespace {

using test::PlotFixture;

// Runs the blocks of `program` one call each (a cycle's file is not entered yet).
void RunBlocks(PlotFixture& fx, std::string_view program, int blocks) {
  fx.Start(program);
  for (int i = 0; i < blocks; ++i) fx.interpreter.ExecuteBlock();
}

TEST(ModalReport, MillCodesOtherAddressesAndCycleArguments) {
  PlotFixture fx;
  RunBlocks(fx, "G0X0Y0Z1.|G99G81X1.Y2.Z-1.R.1F5.S1200", 2);
  EXPECT_EQ(GetModalState(fx.interpreter),
            "Active G-Codes:\r\n"
            "G00 Rapid Move\r\n"
            "G17 XY Plane Selection\r\n"
            "G90 Absolute Coordinates\r\n"
            "G94 Feed per Minute Mode\r\n"
            "G20 Inch Mode\r\n"
            "G40 Cutter Radius Comp Cancel\r\n"
            "G49 Tool Length Offset Cancel\r\n"
            "G81 Canned Cycle Active\r\n"
            "G99 Canned Cycle R Point Return\r\n"
            "G50 Coordinate System Scaling Off\r\n"
            "G54 Work Offset 1\r\n"
            "G67 Macro Program Modal Call Cancel\r\n"
            "G69 Coordinate System Rotation Cancel\r\n"
            "G15 Polar Coordinate System Off\r\n"
            "G50 Mirror Image Off\r\n"  // 50.1 in the "00" format
            "\r\n"
            "Other Modals:\r\n"
            "F5.0\r\n"
            "R0.1\r\n"
            "S1200\r\n"
            "Y2.0\r\n"
            "Z-1.0\r\n"
            "\r\n"
            "Canned cycle active:\r\n"
            "F5.0\r\n"
            "R0.1\r\n"
            "S1200\r\n"
            "Z-1.0\r\n");
}

TEST(ModalReport, LatheShowsTheDiameterAndLeavesOutGroupTen) {
  PlotFixture fx(test::ShippedConfig("Lathe"));
  RunBlocks(fx, "G0X20.Z2.", 1);
  const std::string report = GetModalState(fx.interpreter);
  EXPECT_NE(report.find("\r\nX20.0\r\n"), std::string::npos) << report;
  EXPECT_EQ(report.find("Canned cycle active:"), std::string::npos);
  // G98 is a feed mode of format A (group 5); the cycle return of group 10 is left out.
  EXPECT_EQ(report.find("G98"), report.rfind("G98")) << report;
}

TEST(ModalReport, NamesByDialect) {
  struct Case {
    float code;
    int machineType;
    int latheFormat;
    std::string_view name;
  } cases[] = {
      {90, 0, 0, "Absolute Coordinates"},
      {90, 1, 0, "Turning Cycle"},
      {92, 1, 1, "Coordinate System/Clamp RPM Set"},
      {12, 1, 0, ""},
      {999, 0, 0, ""},
      {1, 1, 7, ""},
  };
  for (const Case& c : cases) {
    EXPECT_EQ(GCodeName(c.code, c.machineType, c.latheFormat), c.name) << c.code;
  }
}

}  // namespace
}  // namespace zemtra
