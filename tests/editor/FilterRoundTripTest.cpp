// Round trips a user relies on, over the real sample programs: a filter and its inverse give a
// program that plots like the original within the display precision.
#include <gtest/gtest.h>

#include <cctype>
#include <cmath>
#include <filesystem>

#include "FilterTestSupport.h"
#include "config/ConfigFile.h"
#include "config/ConfigText.h"
#include "core/GeometryTable.h"
#include "editor/LineFilters.h"
#include "editor/RenumberProgram.h"
#include "interp/Interpreter.h"
#include "interp/PlotDriver.h"
#include "macro/Evaluator.h"
#include "macro/ProgramText.h"
#include "macro/VariableStore.h"
#include "support/TestSupport.h"

namespace zemtra {
namespace {

MachineConfig DefaultMill() {
  MachineConfig config;
  ReadConfigRecord(ConfigText(""), config);
  config.ConfigName = "default";
  return config;
}

// The geometry a program plots to, on the default mill, with every prompt answered quietly.
struct Plotted {
  explicit Plotted(const std::string& text)
      : config(DefaultMill()),
        evaluator(variables),
        interpreter(config, variables, evaluator, host),
        driver(interpreter, table, host) {
    interpreter.SetMachineFolder(test::SourceDataDir().string());
    program = ProgramText(text, "sample.nc");
    driver.RefreshGeometry(program);
  }
  MachineConfig config;
  VariableStore variables;
  Evaluator evaluator;
  RecordingHost host;
  GeometryTable table;
  Interpreter interpreter;
  PlotDriver driver;
  ProgramText program;
};

bool Near(const GeoPoint& a, const GeoPoint& b, double tolerance) {
  return std::fabs(a.X - b.X) <= tolerance && std::fabs(a.Y - b.Y) <= tolerance &&
         std::fabs(a.Z - b.Z) <= tolerance;
}

// Compares the end points of every entity; reports the first that differs.
void ExpectSamePlot(const std::string& original, const std::string& filtered,
                    const std::string& what) {
  const Plotted a(original);
  const Plotted b(filtered);
  ASSERT_EQ(a.table.HighestIndex(), b.table.HighestIndex()) << what;
  constexpr double kTolerance = 0.0005;
  for (std::int32_t i = 1; i <= a.table.HighestIndex(); ++i) {
    const GeoEntity& x = a.table[i];
    const GeoEntity& y = b.table[i];
    ASSERT_EQ(x.EntityType, y.EntityType) << what << ", entity " << i;
    ASSERT_TRUE(Near(x.EndPoint, y.EndPoint, kTolerance))
        << what << ", entity " << i << " of line " << x.LineNumber << ": " << x.EndPoint.X << ","
        << x.EndPoint.Y << "," << x.EndPoint.Z << " against " << y.EndPoint.X << "," << y.EndPoint.Y
        << "," << y.EndPoint.Z;
  }
}

// Mill samples that plot without arc errors on the default mill.
std::vector<std::filesystem::path> MillSamples() {
  std::vector<std::filesystem::path> files;
  for (const char* name : {"cameo.nc", "tiger.nc", "mill_hp_4.nc", "cds.ngc", "enier_1006.nc"}) {
    const auto path = test::SamplesDir() / "gcode" / "mill" / name;
    if (std::filesystem::is_regular_file(path)) files.push_back(path);
  }
  return files;
}

// What a translation or a format filter makes of `text` on the default mill.
std::string Translate(int code, const std::string& text, const FilterParameters& parameters) {
  const MachineConfig config = DefaultMill();
  FilterSession session(config, parameters);
  RecordingHost host;
  return TranslateProgram(code, text, session, host).text;
}

std::string Format(int code, const std::string& text) {
  const MachineConfig config = DefaultMill();
  const FilterParameters parameters;
  FilterSession session(config, parameters);
  RecordingHost host;
  return FormatProgram(code, text, session, host).text;
}

TEST(FilterRoundTrip, InverseTranslationsPlotLikeTheOriginal) {
  ZEMTRA_REQUIRE_SAMPLES();
  using namespace TranslateCode;
  for (const auto& path : MillSamples()) {
    const std::string text = test::ReadFileBytes(path);
    const std::string name = path.filename().string();
    FilterParameters mirror;
    mirror.Mirror = {true, false, false};
    mirror.MirrorPoint = {1.5f, 0, 0};
    ExpectSamePlot(text, Translate(kMirror, Translate(kMirror, text, mirror), mirror),
                   name + " mirror X twice");

    FilterParameters there, back;
    there.Shift = back.Shift = {2.5f, -1.25f, 0.5f};
    for (float& d : back.Shift) d = -d;
    ExpectSamePlot(text, Translate(kShift, Translate(kShift, text, there), back), name + " shift");

    there.RotAngle = 30;
    back.RotAngle = -30;
    there.RotCenterX = back.RotCenterX = 1;
    ExpectSamePlot(text, Translate(kRotate, Translate(kRotate, text, there), back),
                   name + " rotate");

    ExpectSamePlot(text, Translate(kArcsToIJK, Translate(kArcsToR, text, {}), {}),
                   name + " arcs to R to IJK");
  }
}

TEST(FilterRoundTrip, SpacesAndRenumberingKeepTheBlocks) {
  ZEMTRA_REQUIRE_SAMPLES();
  for (const auto& path : MillSamples()) {
    const std::string text = test::ReadFileBytes(path);
    EXPECT_EQ(Format(FormatCode::kRemoveSpaces, Format(FormatCode::kAddSpaces, text)),
              Format(FormatCode::kRemoveSpaces, text))
        << path.filename();
    RecordingHost host;
    const FilterResult renumbered = RenumberProgram(text, RenumberOptions{}, DefaultMill(), host);
    ExpectSamePlot(text, renumbered.text, path.filename().string() + " renumbered");
  }
}

// Line index of the block numbered `number` in the program holding line `from`, or -1.
int TargetLine(const std::vector<std::string>& lines, std::size_t from, const std::string& number) {
  std::size_t first = from;
  while (first > 0 && lines[first].rfind('O', 0) != 0 && lines[first].rfind(':', 0) != 0) --first;
  for (std::size_t i = first; i < lines.size(); ++i) {
    if (i > from && (lines[i].rfind('O', 0) == 0 || lines[i].rfind(':', 0) == 0)) break;
    const std::string label = "N" + number;
    if (lines[i].rfind(label, 0) == 0 &&
        (lines[i].size() == label.size() ||
         !std::isdigit(static_cast<unsigned char>(lines[i][label.size()])))) {
      return static_cast<int>(i);
    }
  }
  return -1;
}

// The plain number behind GOTO on a line, or "".
std::string GotoNumber(const std::string& line) {
  const std::size_t at = line.find("GOTO");
  if (at == std::string::npos) return {};
  std::size_t begin = line.find_first_not_of(' ', at + 4);
  std::size_t end = begin;
  while (end < line.size() && std::isdigit(static_cast<unsigned char>(line[end]))) ++end;
  return begin == std::string::npos ? std::string() : line.substr(begin, end - begin);
}

TEST(FilterRoundTrip, RenumberedJumpsReachTheSameBlocks) {
  ZEMTRA_REQUIRE_SAMPLES();
  int jumps = 0;
  for (const auto& entry :
       std::filesystem::directory_iterator(test::SamplesDir() / "gcode" / "macro")) {
    if (entry.path().extension() != ".nc") continue;
    const std::string text = test::ReadFileBytes(entry.path());
    RecordingHost host;
    RenumberOptions options;
    options.Start = 1;
    options.Increment = 1;
    const auto before = test::SplitOutput(text);
    const auto after = test::SplitOutput(RenumberProgram(text, options, DefaultMill(), host).text);
    ASSERT_EQ(before.size(), after.size()) << entry.path();
    for (std::size_t i = 0; i < before.size(); ++i) {
      const std::string old = GotoNumber(before[i]);
      if (old.empty() || TargetLine(before, i, old) < 0) continue;
      ++jumps;
      EXPECT_EQ(TargetLine(after, i, GotoNumber(after[i])), TargetLine(before, i, old))
          << entry.path().filename() << " line " << i + 1 << ": " << after[i];
    }
  }
  EXPECT_GT(jumps, 5);
}

}  // namespace
}  // namespace zemtra
