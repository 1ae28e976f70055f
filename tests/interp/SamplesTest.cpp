#include <gtest/gtest.h>

#include <filesystem>
#include <string>

#include "PlotFixture.h"
#include "interp/InterpMessages.h"
#include "support/TestSupport.h"

namespace zemtra {
namespace {

// Every public mill program either plots to its end or stops on one message of the program,
// with the table ended and the chain unbroken.
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
    // M00 stops are answered OK; an error can only be the last message.
    for (std::size_t i = 0; i < fx.host.shown.size(); ++i) {
      const Prompt& prompt = fx.host.shown[i].prompt;
      EXPECT_EQ(prompt.title, "Zemtra") << name;
      if (prompt.text == "M00 Program Stop") continue;
      EXPECT_EQ(i + 1, fx.host.shown.size()) << name << ": " << prompt.text;
      EXPECT_EQ(prompt.text.rfind("Error:\r\n\r\n", 0), 0u) << name << ": " << prompt.text;
      EXPECT_TRUE(fx.interpreter.StoppedByError) << name;
    }
    for (int i = 2; i <= fx.table.HighestIndex(); ++i) {
      ASSERT_EQ(fx.table[i].StartPoint, fx.table[i - 1].EndPoint) << name << " entity " << i;
    }
    ++plotted;
  }
  EXPECT_GT(plotted, 5);
}

}  // namespace
}  // namespace zemtra
