// Inputs the fuzz targets found trouble with, kept as ordinary tests of the filters.
#include <gtest/gtest.h>

#include <string>

#include "editor/FilterSession.h"
#include "editor/FilterTestSupport.h"

namespace zemtra {
namespace {

// An arc of huge radius at a fine tolerance would need more than ten thousand chords (hundreds
// of millions near 1e13): it stays as it is, while an ordinary arc still breaks.
TEST(FuzzFindings, BreakArcsLeavesArcsNeedingTooManyChordsAlone) {
  const MachineConfig config = test::MillConfig();
  FilterParameters parameters;
  parameters.BreakTolerance = 0.001;
  const struct {
    const char* line;
    bool broken;
  } cases[] = {
      {"G2 X0 Y0 I100000000 J0", false},
      {"G2 X0 Y0 I10000000000000 J0", false},
      {"G2 X0 Y0 I1 J0", true},
      {"G2 X0 Y0 I1000 J0", true},  // about 2200 chords
  };
  for (const auto& c : cases) {
    FilterSession session(config, parameters);
    session.Tracker().TrackBlock("G17 G90 G0 X0 Y0");
    const std::string out = session.BreakArc(c.line);
    EXPECT_EQ(out != c.line, c.broken) << c.line;
    EXPECT_LT(out.size(), 400000u) << c.line;
  }
}

}  // namespace
}  // namespace zemtra
