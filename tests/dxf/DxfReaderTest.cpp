#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <cstdio>
#include <filesystem>
#include <map>
#include <sstream>
#include <string>

#include "core/RecordingHost.h"
#include "dxf/DxfReader.h"
#include "geom/Primitives.h"
#include "support/TestSupport.h"

namespace zemtra {
namespace {

// An ENTITIES section of a DXF text from its group codes and values, given in turn and
// separated by blanks: "0 LINE 8 A 10 1 ...".
std::string Dxf(const std::string& pairs) {
  std::istringstream tokens(pairs);
  std::string text = "  0\nSECTION\n  2\nENTITIES\n";
  for (std::string token; tokens >> token;) text += token + "\n";
  return text + "  0\nENDSEC\n  0\nEOF\n";
}

struct Loaded {
  GeometryTable table;
  DxfLayerTable layers;
};

Loaded Load(const std::string& text, bool lathe = false) {
  Loaded result;
  RecordingHost host;
  DxfReader reader(text, host);
  reader.LoadDXFLayerNames(result.layers, ConvertParams{});
  for (std::int32_t i = 1; i <= result.layers.Count(); ++i) {
    reader.LoadDXFLayer(result.layers[i].LayerName, i > 1, lathe, result.table, result.layers);
  }
  return result;
}

void ExpectPoint(const GeoPoint& p, double x, double y, double z = 0) {
  EXPECT_NEAR(p.X, x, 1e-5);
  EXPECT_NEAR(p.Y, y, 1e-5);
  EXPECT_NEAR(p.Z, z, 1e-5);
}

TEST(DxfReader, LayersInOrderOfAppearanceWithZeroAsDefault) {
  const Loaded d =
      Load(Dxf("0 LINE 8 walls 10 0 20 0 11 1 21 0 "
               "0 POINT 8 0 10 5 20 6 "
               "0 LINE 8 WALLS 10 1 20 0 11 1 21 1"));
  ASSERT_EQ(d.layers.Count(), 2);
  EXPECT_EQ(d.layers[1].LayerName, "WALLS");
  EXPECT_EQ(d.layers[2].LayerName, "DEFAULT");
  EXPECT_EQ(d.layers[1].FirstEntity, 1);
  EXPECT_EQ(d.layers[1].LastEntity, 2);
  EXPECT_EQ(d.layers[2].FirstEntity, 3);
  EXPECT_EQ(d.layers[2].LastEntity, 3);
  EXPECT_EQ(d.layers.LayerOfEntity(3), 2);
  EXPECT_EQ(d.layers.LayerOfEntity(4), 0);
  EXPECT_EQ(d.table[3].EntityType, kPoint);
  ExpectPoint(d.table[3].EndPoint, 5, 6);
}

TEST(DxfReader, NoEntitiesSectionGivesNoLayers) {
  const Loaded d = Load("  0\nSECTION\n  2\nHEADER\n  8\nX\n  0\nENDSEC\n  0\nEOF\n");
  EXPECT_EQ(d.layers.Count(), 0);
  EXPECT_EQ(d.table.HighestIndex(), 0);
}

TEST(DxfReader, LinesArcsAndCirclesIgnoreZ) {
  const Loaded d =
      Load(Dxf("0 LINE 8 A 10 1 20 2 30 9 11 3 21 4 31 9 "
               "0 ARC 8 A 10 0 20 0 30 7 40 2 50 90 51 180 "
               "0 CIRCLE 8 A 10 1 20 1 40 0.5 "
               "0 TEXT 8 A 10 5 20 5 1 HELLO"));
  ASSERT_EQ(d.table.HighestIndex(), 3);
  EXPECT_EQ(d.table[1].EntityType, kFeed);
  ExpectPoint(d.table[1].StartPoint, 1, 2);
  ExpectPoint(d.table[1].EndPoint, 3, 4);
  EXPECT_EQ(d.table[2].EntityType, kArcCCW);
  EXPECT_EQ(d.table[2].Plane, 17);
  ExpectPoint(d.table[2].StartPoint, 0, 2);
  ExpectPoint(d.table[2].EndPoint, -2, 0);
  EXPECT_FLOAT_EQ(d.table[2].RadiusOrTurns, 2);
  EXPECT_EQ(d.table[3].EntityType, kArcCCW);
  ExpectPoint(d.table[3].StartPoint, 1.5, 1);
  ExpectPoint(d.table[3].EndPoint, 1.5, 1);
  ExpectPoint(d.table[3].CenterPoint, 1, 1);
}

TEST(DxfReader, EntityIsBuiltWhenItsLastGroupArrives) {
  // 21 before 11: the line is built with the end X still unset.
  const Loaded d = Load(Dxf("0 LINE 8 A 10 1 20 1 21 5 11 5"));
  ASSERT_EQ(d.table.HighestIndex(), 1);
  ExpectPoint(d.table[1].EndPoint, 0, 5);
}

TEST(DxfReader, LightPolylineBulgesAndClosingSegment) {
  // A unit square, closed, whose second edge bulges outwards into a half circle (bulge 1) and
  // whose closing edge (from the last vertex) is a clockwise quarter-ish arc.
  const Loaded d =
      Load(Dxf("0 LWPOLYLINE 8 P 90 4 70 1 10 0 20 0 10 2 20 0 42 1 10 2 20 2 10 0 20 2 42 -0.5"));
  ASSERT_EQ(d.table.HighestIndex(), 4);
  EXPECT_EQ(d.table[1].EntityType, kFeed);
  EXPECT_EQ(d.table[2].EntityType, kArcCCW);
  ExpectPoint(d.table[2].CenterPoint, 2, 1);
  EXPECT_NEAR(d.table[2].RadiusOrTurns, 1, 1e-6);
  EXPECT_EQ(d.table[3].EntityType, kFeed);
  EXPECT_EQ(d.table[4].EntityType, kArcCW);
  ExpectPoint(d.table[4].StartPoint, 0, 2);
  ExpectPoint(d.table[4].EndPoint, 0, 0);
  // bulge 0.5: radius d/4 (b + 1/b) = 2/4 * 2.5
  EXPECT_NEAR(d.table[4].RadiusOrTurns, 1.25, 1e-6);
  // Clockwise from (0,2) to (0,0): the centre lies to the right of travel, at -X.
  ExpectPoint(d.table[4].CenterPoint, -0.75, 1);
}

TEST(DxfReader, PolylineVerticesCoincidentPointsAndLargeBulge) {
  const Loaded d =
      Load(Dxf("0 POLYLINE 8 Q 66 1 10 0 20 0 70 1 "
               "0 VERTEX 8 Q 10 0 20 0 "
               "0 VERTEX 8 Q 10 0 20 0 "
               "0 VERTEX 8 Q 10 4 20 0 42 2 "
               "0 VERTEX 8 Q 10 4 20 4 "
               "0 SEQEND 8 Q"));
  // (0,0)=(0,0) adds nothing; a line to (4,0); a bulge-2 arc to (4,4); closing line to (0,0).
  ASSERT_EQ(d.table.HighestIndex(), 3);
  EXPECT_EQ(d.table[1].EntityType, kFeed);
  EXPECT_EQ(d.table[2].EntityType, kArcCCW);
  // bulge 2: sweep 4 atan 2 > 180 degrees, r = 4/4 (2 + 0.5) = 2.5, centre on the right.
  EXPECT_NEAR(d.table[2].RadiusOrTurns, 2.5, 1e-6);
  ExpectPoint(d.table[2].CenterPoint, 5.5, 2);
  EXPECT_EQ(d.table[3].EntityType, kFeed);
  ExpectPoint(d.table[3].EndPoint, 0, 0);
}

TEST(DxfReader, SplineDegreeOutsideRangeIsThreeAndEndsAtControlPoints) {
  const Loaded d = Load(Dxf("0 SPLINE 8 S 71 7 73 4 10 0 20 0 10 1 20 2 10 3 20 2 10 4 20 0"));
  ASSERT_EQ(d.table.HighestIndex(), 19);  // 20 samples
  ExpectPoint(d.table[1].StartPoint, 0, 0);
  ExpectPoint(d.table[19].EndPoint, 4, 0);
  // The curve of order 3 passes near, not through, the inner control points, symmetrically.
  ExpectPoint(d.table[10].StartPoint, 4 - d.table[10].EndPoint.X, d.table[10].EndPoint.Y);
  for (std::int32_t i = 1; i <= 19; ++i) EXPECT_EQ(d.table[i].EntityType, kFeed);
}

TEST(DxfReader, FullEllipseInThreeDegreeSteps) {
  const Loaded d = Load(Dxf("0 ELLIPSE 8 E 10 1 20 1 11 0 21 2 40 0.5 41 0 42 6.283185307179586"));
  // 120 steps, and a last short line to the exact end parameter, which 360 floats short of.
  ASSERT_GE(d.table.HighestIndex(), 120);
  ASSERT_LE(d.table.HighestIndex(), 121);
  ExpectPoint(d.table[1].StartPoint, 1, 3);  // rotated 90 degrees: major axis along Y
  ExpectPoint(d.table[d.table.HighestIndex()].EndPoint, 1, 3);
  ExpectPoint(d.table[30].EndPoint, 0, 1);  // parameter 90: minor axis end, 1 to the left
}

TEST(DxfReader, LatheTurnsDrawingXIntoZ) {
  const Loaded d = Load(Dxf("0 ARC 8 L 10 10 20 2 40 1 50 0 51 90"), true);
  ASSERT_EQ(d.table.HighestIndex(), 1);
  EXPECT_EQ(d.table[1].Plane, 18);
  ExpectPoint(d.table[1].CenterPoint, 2, 0, 10);
  ExpectPoint(d.table[1].StartPoint, 2, 0, 11);
}

TEST(DxfReader, TruncatedAndGarbageInputNeverFails) {
  for (const std::string& text :
       {std::string("0\nSECTION\n2\nENTITIES\n0\nLINE\n8\nA\n10"), std::string("\n\n\n"),
        std::string("0\nSECTION\n2\nENTITIES\n0\nSPLINE\n8\nA\n73\n99999999999\n10\n1\n20\n1"),
        std::string("0\nSECTION\n2\nENTITIES\n0\nELLIPSE\n8\nA\n41\n-1e300\n42\n1e300\n"),
        std::string("0\nSECTION\n2\nENTITIES\n0\nVERTEX\n10\n1\n20\n1\n0\nSEQEND\n")}) {
    const Loaded d = Load(text);
    EXPECT_LE(d.table.HighestIndex(), 2000);
  }
}

// ---- The public sample drawings.

std::map<std::string, DxfKindCounts> OurCounts(const std::filesystem::path& file) {
  RecordingHost host;
  DxfReader reader(test::ReadFileBytes(file), host);
  DxfLayerTable layers;
  GeometryTable table;
  reader.LoadDXFLayerNames(layers, ConvertParams{});
  std::map<std::string, DxfKindCounts> counts;
  for (std::int32_t i = 1; i <= layers.Count(); ++i) {
    DxfKindCounts c;
    reader.LoadDXFLayer(layers[i].LayerName, i > 1, false, table, layers, &c);
    if (c.lines + c.arcs + c.circles + c.points > 0) counts[layers[i].LayerName] = c;
  }
  return counts;
}

TEST(DxfSamples, EveryDrawingLoads) {
  ZEMTRA_REQUIRE_SAMPLES();
  int files = 0;
  for (const auto& entry : std::filesystem::directory_iterator(test::SamplesDir() / "dxf")) {
    RecordingHost host;
    DxfReader reader(test::ReadFileBytes(entry.path()), host);
    DxfLayerTable layers;
    GeometryTable table;
    EXPECT_TRUE(reader.LoadDXFLayerNames(layers, ConvertParams{})) << entry.path();
    for (std::int32_t i = 1; i <= layers.Count(); ++i) {
      reader.LoadDXFLayer(layers[i].LayerName, i > 1, false, table, layers);
      EXPECT_EQ(layers[i].FirstEntity, i == 1 ? 1 : layers[i - 1].LastEntity + 1);
    }
    EXPECT_EQ(table.HighestIndex(), layers.Count() == 0 ? 0 : layers[layers.Count()].LastEntity);
    ++files;
  }
  EXPECT_EQ(files, 20);
}

// Runs the independent reader dxf-parser through node; "" when it cannot run.
std::string IndependentCounts(const std::filesystem::path& modules,
                              const std::filesystem::path& file) {
  const std::filesystem::path script = test::TestDataDir() / ".." / "tools" / "dxf-counts.js";
  const std::string command = "node '" + script.string() + "' '" + modules.string() + "' '" +
                              file.string() + "' 2>/dev/null";
  std::string output;
  if (FILE* pipe = popen(command.c_str(), "r")) {
    std::array<char, 4096> buffer{};
    while (std::fgets(buffer.data(), buffer.size(), pipe) != nullptr) output += buffer.data();
    if (pclose(pipe) != 0) return "";
  }
  return output;
}

std::string AsJson(const std::map<std::string, DxfKindCounts>& counts) {
  std::string text = "{";
  for (const auto& [name, c] : counts) {
    if (text.size() > 1) text += ",";
    text += "\"" + name + "\":[" + std::to_string(c.lines) + "," + std::to_string(c.arcs) + "," +
            std::to_string(c.circles) + "," + std::to_string(c.points) + "]";
  }
  return text + "}\n";
}

TEST(DxfSamples, CountsAgreeWithAnIndependentReader) {
  ZEMTRA_REQUIRE_SAMPLES();
  std::filesystem::path modules = test::TestDataDir() / ".." / "tools" / "node_modules";
  if (const char* given = std::getenv("ZEMTRA_DXF_PARSER_MODULES")) modules = given;
  if (std::system("node --version >/dev/null 2>&1") != 0) {
    GTEST_SKIP() << "node is not installed: the comparison with dxf-parser is skipped";
  }
  if (!std::filesystem::is_directory(modules / "dxf-parser")) {
    GTEST_SKIP() << "dxf-parser is not installed in " << modules
                 << " (npm install --prefix tests/tools dxf-parser): comparison skipped";
  }
  int compared = 0;
  for (const auto& entry : std::filesystem::directory_iterator(test::SamplesDir() / "dxf")) {
    const std::string theirs = IndependentCounts(modules, entry.path());
    if (theirs.empty()) continue;  // a drawing dxf-parser cannot read
    // dxf-parser writes its layers in order of appearance; compare as sorted maps.
    std::map<std::string, DxfKindCounts> parsed;
    std::size_t pos = 0;
    while ((pos = theirs.find('"', pos)) != std::string::npos) {
      const std::size_t close = theirs.find('"', pos + 1);
      DxfKindCounts c;
      std::sscanf(theirs.c_str() + close, "\":[%d,%d,%d,%d]", &c.lines, &c.arcs, &c.circles,
                  &c.points);
      if (c.lines + c.arcs + c.circles + c.points > 0) {
        parsed[theirs.substr(pos + 1, close - pos - 1)] = c;
      }
      pos = theirs.find(']', close);
    }
    EXPECT_EQ(AsJson(OurCounts(entry.path())), AsJson(parsed)) << entry.path();
    ++compared;
  }
  EXPECT_GE(compared, 15);
}

}  // namespace
}  // namespace zemtra
