#include <gtest/gtest.h>

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <sstream>
#include <string>
#include <vector>

#include "core/RecordingHost.h"
#include "dxf/DxfReader.h"
#include "support/ScratchFolder.h"
#include "support/TestSupport.h"

namespace zemtra {
namespace {

namespace fs = std::filesystem;

// zemtra-cli of the same build: <build>/src/cli/zemtra-cli beside <build>/tests.
fs::path CliPath() {
  std::error_code code;
  const fs::path self = fs::read_symlink("/proc/self/exe", code);
  return code ? fs::path() : self.parent_path().parent_path() / "src" / "cli" / "zemtra-cli";
}

// The feed lines, arcs and helixes of `zemtra-cli plot --json`, in table order.
std::vector<GeoEntity> PlottedMoves(const std::string& json) {
  std::vector<GeoEntity> moves;
  std::istringstream lines(json);
  std::string line;
  while (std::getline(lines, line)) {
    GeoEntity e;
    int type = 0;
    GeoPoint& s = e.StartPoint;
    GeoPoint& t = e.EndPoint;
    GeoPoint& c = e.CenterPoint;
    if (std::sscanf(
            line.c_str(),
            " {\"type\":%d,\"start\":[%f,%f,%f,%f],\"end\":[%f,%f,%f,%f],\"center\":[%f,%f,%f,"
            "%f]",
            &type, &s.X, &s.Y, &s.Z, &s.A, &t.X, &t.Y, &t.Z, &t.A, &c.X, &c.Y, &c.Z, &c.A) != 13) {
      continue;
    }
    // A helix goes out as its flat projection: an arc.
    e.EntityType = static_cast<std::uint8_t>(type % 10);
    if (type != kRapid && type != kPoint) moves.push_back(e);
  }
  return moves;
}

// zemtra-cli run with a home folder of its own, in a scratch folder.
class CliRun : public ::testing::Test {
 protected:
  void SetUp() override {
    if (!fs::exists(cli)) GTEST_SKIP() << "zemtra-cli not built at " << cli;
    fs::copy(test::SourceDataDir(), work / "home", fs::copy_options::recursive);
  }
  // Runs `zemtra-cli arguments` and tells whether it succeeded.
  bool Run(const std::string& arguments) const {
    const std::string command = "ZEMTRA_HOME='" + (work / "home").string() + "' '" + cli.string() +
                                "' " + arguments + " 2>/dev/null";
    return std::system(command.c_str()) == 0;
  }
  const fs::path cli = CliPath();
  test::ScratchFolder work;
};

TEST_F(CliRun, PlotExportsTablesThatReadBackAsTheSameLinesAndArcs) {
  const fs::path dxf = work / "demo.dxf";
  const fs::path json = work / "plot.json";
  ASSERT_TRUE(Run("plot '" + (test::SourceDataDir() / "demo.nc").string() + "' --json --dxf '" +
                  dxf.string() + "' > '" + json.string() + "'"));
  const std::vector<GeoEntity> plotted = PlottedMoves(test::ReadFileBytes(json));
  ASSERT_GT(plotted.size(), 10u);

  RecordingHost host;
  DxfReader reader(test::ReadFileBytes(dxf), host);
  DxfLayerTable layers;
  GeometryTable back;
  reader.LoadDXFLayerNames(layers, ConvertParams{});
  ASSERT_EQ(layers.Count(), 1);
  reader.LoadDXFLayer("DEFAULT", false, false, back, layers);
  ASSERT_EQ(back.HighestIndex(), static_cast<std::int32_t>(plotted.size()));
  for (std::size_t k = 0; k < plotted.size(); ++k) {
    const GeoEntity& original = plotted[k];
    const GeoEntity& read = back[static_cast<std::int32_t>(k + 1)];
    // Drawings are read flat, and arcs always counter-clockwise: a clockwise arc comes back
    // from its end to its start.
    const bool circle = original.EntityType != kFeed &&
                        original.StartPoint.X == original.EndPoint.X &&
                        original.StartPoint.Y == original.EndPoint.Y;
    if (circle) {  // a circle comes back starting at its own right-hand point
      EXPECT_NEAR(read.CenterPoint.X, original.CenterPoint.X, 1e-4) << k;
      EXPECT_NEAR(read.CenterPoint.Y, original.CenterPoint.Y, 1e-4) << k;
      EXPECT_EQ(read.StartPoint, read.EndPoint) << k;
      continue;
    }
    const bool turned = original.EntityType == kArcCW;
    EXPECT_EQ(int(read.EntityType), turned ? int(kArcCCW) : int(original.EntityType)) << k;
    const GeoPoint& start = turned ? original.EndPoint : original.StartPoint;
    const GeoPoint& end = turned ? original.StartPoint : original.EndPoint;
    EXPECT_NEAR(read.StartPoint.X, start.X, 1e-4) << k;
    EXPECT_NEAR(read.StartPoint.Y, start.Y, 1e-4) << k;
    EXPECT_NEAR(read.EndPoint.X, end.X, 1e-4) << k;
    EXPECT_NEAR(read.EndPoint.Y, end.Y, 1e-4) << k;
    if (original.EntityType != kFeed) {
      EXPECT_NEAR(read.CenterPoint.X, original.CenterPoint.X, 1e-4) << k;
      EXPECT_NEAR(read.CenterPoint.Y, original.CenterPoint.Y, 1e-4) << k;
    }
  }
}

TEST_F(CliRun, DxfToGCodeCutsEveryDrawingEntityAtTheDepth) {
  ZEMTRA_REQUIRE_SAMPLES();
  const fs::path drawing = test::SamplesDir() / "dxf" / "DEMO.DXF";
  const fs::path program = work / "demo.nc";
  const fs::path json = work / "plot.json";
  ASSERT_TRUE(Run("dxf2gcode '" + drawing.string() +
                  "' --chain --sort --z-retract 2 --z-approach 0.5 --z-depth -1.5 --feed 100 "
                  "--plunge 50 -o '" +
                  program.string() + "'"));
  ASSERT_TRUE(Run("plot '" + program.string() + "' --json > '" + json.string() + "'"));

  RecordingHost host;
  DxfReader reader(test::ReadFileBytes(drawing), host);
  DxfLayerTable layers;
  GeometryTable table;
  reader.LoadDXFLayerNames(layers, ConvertParams{});
  for (std::int32_t i = 1; i <= layers.Count(); ++i) {
    reader.LoadDXFLayer(layers[i].LayerName, i > 1, false, table, layers);
  }
  // Every move in the plane is a drawing entity cut at the depth; the others are plunges and
  // retracts.
  int cuts = 0;
  for (const GeoEntity& e : PlottedMoves(test::ReadFileBytes(json))) {
    if (e.StartPoint.Z != e.EndPoint.Z) continue;
    EXPECT_FLOAT_EQ(e.StartPoint.Z, -1.5f);
    ++cuts;
  }
  EXPECT_EQ(cuts, table.HighestIndex());
}

}  // namespace
}  // namespace zemtra
