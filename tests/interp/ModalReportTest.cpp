#include <gtest/gtest.h>

#include <string>

#include "PlotFixture.h"
#include "interp/ModalReport.h"
#include "interp/ModalTables.h"

namespace zemtra {
namespace {

using test::PlotFixture;

TEST(ModalReport, MillCodesOtherAddressesAndCycleArguments) {
  PlotFixture fx;
  fx.Execute("G0X0Y0Z1.|G99G81X1.Y2.Z-1.R.1F5.S1200", 2);  // the cycle file is not entered yet
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
  fx.Execute("G0X20.Z2.", 1);
  const std::string report = GetModalState(fx.interpreter);
  EXPECT_NE(report.find("\r\nX20.0\r\n"), std::string::npos) << report;
  EXPECT_EQ(report.find("Canned cycle active:"), std::string::npos);
  // G98 is a feed mode of format A (group 5); the cycle return of group 10 is left out.
  EXPECT_EQ(report.find("G98"), report.rfind("G98")) << report;
}

}  // namespace
}  // namespace zemtra
