#include <gtest/gtest.h>

#include <cmath>
#include <filesystem>
#include <set>
#include <string>

#include "PlotFixture.h"
#include "interp/InterpMessages.h"
#include "support/TestSupport.h"

namespace zemtra {
namespace {

// A radius check of an arc, which asks whether to ignore further errors.
bool IsArcCheck(const Prompt& prompt) {
  return prompt.buttons == MsgButtons::YesNoCancel &&
         prompt.text.ends_with("\r\n\r\nIgnore further errors?");
}

// Every public mill program either plots to its end or stops on a message of the program,
// with the table ended and the chain unbroken. M00 stops and arc checks may ask on the way
// (answered OK and No); an error of the program can only be the last message, and fifty arc
// errors stop the plot too.
TEST(Samples, MillProgramsPlotOrStopWithAMessage) {
  ZEMTRA_REQUIRE_SAMPLES();
  const auto folder = test::SamplesDir() / "gcode" / "mill";
  int plotted = 0;
  for (const auto& entry : std::filesystem::directory_iterator(folder)) {
    const std::string name = entry.path().filename().string();
    if (name.find(".expected.") != std::string::npos) continue;
    test::PlotFixture fx;
    std::string error;
    ASSERT_TRUE(ProgramText::LoadFile(entry.path(), fx.program, error)) << name << error;
    fx.driver.RefreshGeometry(fx.program);
    EXPECT_FALSE(fx.driver.Failed) << name << ": " << fx.host.lastText();
    EXPECT_FALSE(fx.driver.PlotBusy) << name;
    const bool stoppedByArcErrors = fx.interpreter.ArcErrorCount == 50;
    for (std::size_t i = 0; i < fx.host.shown.size(); ++i) {
      const Prompt& prompt = fx.host.shown[i].prompt;
      const bool last = i + 1 == fx.host.shown.size();
      EXPECT_EQ(prompt.title, "Zemtra") << name;
      if (prompt.text == "M00 Program Stop" || IsArcCheck(prompt)) continue;
      EXPECT_TRUE(last) << name << ": " << prompt.text;
      EXPECT_EQ(prompt.text.rfind("Error:\r\n\r\n", 0), 0u) << name << ": " << prompt.text;
    }
    const bool endsOnError = fx.host.lastText().rfind("Error:", 0) == 0;
    EXPECT_EQ(fx.interpreter.StoppedByError, endsOnError || stoppedByArcErrors) << name;
    for (int i = 1; i <= fx.table.HighestIndex(); ++i) {
      const GeoEntity& e = fx.table[i];
      if (IsLineCode(e.EntityType)) continue;
      EXPECT_TRUE(std::isfinite(e.CenterPoint.X) && std::isfinite(e.CenterPoint.Y) &&
                  std::isfinite(e.CenterPoint.Z) && std::isfinite(e.RadiusOrTurns))
          << name << " entity " << i;
    }
    for (int i = 2; i <= fx.table.HighestIndex(); ++i) {
      ASSERT_EQ(fx.table[i].StartPoint, fx.table[i - 1].EndPoint) << name << " entity " << i;
    }
    ++plotted;
  }
  EXPECT_GT(plotted, 5);
}

// Programs with macros, subprograms and lathe cycles: each plots to its end or stops on one
// message of the program, never a run-time failure or a hang. LinuxCNC's O-word programs
// stop on the message that names their dialect.
TEST(Samples, MacroAndLatheProgramsPlotOrStopWithAMessage) {
  ZEMTRA_REQUIRE_SAMPLES();
  const std::set<std::string> kOWordPrograms = {"useful-subroutines.ngc",
                                                "linuxcnc_g71-with-g70.ngc", "g76.ngc"};
  for (const char* kind : {"macro", "lathe"}) {
    const auto folder = test::SamplesDir() / "gcode" / kind;
    for (const auto& entry : std::filesystem::directory_iterator(folder)) {
      const std::string name = entry.path().filename().string();
      if (name.find(".expected.") != std::string::npos) continue;
      test::PlotFixture fx(std::string(kind) == "lathe" ? test::ShippedConfig("Lathe")
                                                        : test::DefaultMill());
      fx.driver.BlockLimit = 2000000;
      std::string error;
      ASSERT_TRUE(ProgramText::LoadFile(entry.path(), fx.program, error)) << name << error;
      fx.driver.RefreshGeometry(fx.program);
      EXPECT_FALSE(fx.driver.Failed) << name << ": " << fx.host.lastText();
      EXPECT_FALSE(fx.driver.LimitReached) << name;
      if (fx.interpreter.StoppedByError && !fx.driver.LimitReached) {
        const std::string& last = fx.host.lastText();
        const bool known = last.starts_with("Error:\r\n\r\n") ||
                           last.starts_with("Macro Message:\r\n\r\n") ||
                           last.starts_with("Sub program not found:\r\n") ||
                           last.starts_with("Referenced block number not found:\r\n") ||
                           fx.interpreter.ArcErrorCount == 50;
        EXPECT_TRUE(known) << name << ": " << last;
      }
      if (kOWordPrograms.contains(name)) {
        EXPECT_EQ(fx.host.lastText(), "Error:\r\n\r\n" + InterpreterErrorText(kOWordStatement))
            << name;
      }
    }
  }
}

}  // namespace
}  // namespace zemtra
