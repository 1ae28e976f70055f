// Arcs against an independent reference: LinuxCNC's standalone interpreter (rs274, Debian
// package linuxcnc-uspace) reads the same programs, and the end points, directions and centres
// it reports must match what `zemtra-cli plot --json` stores. Skipped when rs274 or zemtra-cli
// is not there.
#include <gtest/gtest.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "support/TestSupport.h"

namespace zemtra {
namespace {

namespace fs = std::filesystem;

// 1e-4, or a few steps of a 32-bit float where coordinates are too large for that.
double Tolerance(double value) {
  return std::max(1e-4, std::fabs(value) * 4.8e-7);
}

// One motion as both tools see it: kind 0 rapid, 1 feed, 2 clockwise arc, 3 counter-clockwise.
struct Motion {
  int kind = 0;
  std::array<double, 3> end{};
  std::array<double, 3> center{};
  int plane = 17;
  int line = 0;                   // program line, known on Zemtra's side only
  std::array<double, 3> start{};  // known on Zemtra's side only
};

std::optional<fs::path> FindOnPath(std::string_view name) {
  const char* path = std::getenv("PATH");
  if (path == nullptr) return std::nullopt;
  std::string_view rest(path);
  while (!rest.empty()) {
    const std::size_t colon = rest.find(':');
    const fs::path candidate = fs::path(rest.substr(0, colon)) / name;
    if (access(candidate.c_str(), X_OK) == 0) return candidate;
    if (colon == std::string_view::npos) break;
    rest.remove_prefix(colon + 1);
  }
  return std::nullopt;
}

// zemtra-cli of the same build: $ZEMTRA_CLI, else beside this test in the build tree.
std::optional<fs::path> FindZemtraCli() {
  if (const char* cli = std::getenv("ZEMTRA_CLI"); cli != nullptr && *cli != 0)
    return fs::path(cli);
  std::error_code error;
  const fs::path self = fs::read_symlink("/proc/self/exe", error);
  if (error) return std::nullopt;
  const fs::path cli = self.parent_path().parent_path() / "src" / "cli" / "zemtra-cli";
  if (access(cli.c_str(), X_OK) == 0) return cli;
  return std::nullopt;
}

std::string Quoted(const fs::path& path) {
  std::string text = "'";
  for (const char c : path.string()) text += c == '\'' ? std::string("'\\''") : std::string(1, c);
  return text + "'";
}

std::string RunCommand(const std::string& command) {
  std::string output;
  if (FILE* pipe = popen(command.c_str(), "r")) {
    std::array<char, 65536> buffer;
    std::size_t got = 0;
    while ((got = std::fread(buffer.data(), 1, buffer.size(), pipe)) > 0)
      output.append(buffer.data(), got);
    pclose(pipe);
  }
  return output;
}

// The numbers of "NAME(a, b, c, ...)".
std::vector<double> CallArguments(std::string_view line, std::size_t open) {
  std::vector<double> values;
  std::string text(line.substr(open + 1));
  const char* at = text.c_str();
  for (;;) {
    char* next = nullptr;
    const double value = std::strtod(at, &next);
    if (next == at) break;
    values.push_back(value);
    at = next;
    while (*at == ',' || *at == ' ') ++at;
  }
  return values;
}

// The motions of rs274's canonical calls, in the plane selected when each was made.
std::vector<Motion> ParseCanon(const std::string& output) {
  std::vector<Motion> motions;
  int plane = 17;
  std::size_t start = 0;
  while (start < output.size()) {
    std::size_t stop = output.find('\n', start);
    if (stop == std::string::npos) stop = output.size();
    const std::string_view line(output.data() + start, stop - start);
    start = stop + 1;
    if (line.find("SELECT_PLANE(CANON_PLANE_XZ)") != std::string_view::npos) plane = 18;
    if (line.find("SELECT_PLANE(CANON_PLANE_YZ)") != std::string_view::npos) plane = 19;
    if (line.find("SELECT_PLANE(CANON_PLANE_XY)") != std::string_view::npos) plane = 17;
    const bool traverse = line.find("STRAIGHT_TRAVERSE(") != std::string_view::npos;
    const bool feed = line.find("STRAIGHT_FEED(") != std::string_view::npos;
    const std::size_t arcAt = line.find("ARC_FEED(");
    if (traverse || feed) {
      const auto v = CallArguments(line, line.find('('));
      if (v.size() < 3) continue;
      motions.push_back({traverse ? 0 : 1, {v[0], v[1], v[2]}, {}, plane});
    } else if (arcAt != std::string_view::npos) {
      // ARC_FEED(first end, second end, first centre, second centre, turns, normal end, ...)
      const auto v = CallArguments(line, arcAt + 8);
      if (v.size() < 6) continue;
      Motion arc{v[4] < 0 ? 2 : 3, {}, {}, plane};
      if (plane == 17) {
        arc.end = {v[0], v[1], v[5]};
        arc.center = {v[2], v[3], 0};
      } else if (plane == 18) {
        arc.end = {v[1], v[5], v[0]};
        arc.center = {v[3], 0, v[2]};
      } else {
        arc.end = {v[5], v[0], v[1]};
        arc.center = {0, v[2], v[3]};
      }
      motions.push_back(arc);
    }
  }
  return motions;
}

// "key":[a,b,c,d] or "key":n on one entity line of the JSON.
std::vector<double> JsonNumbers(std::string_view line, std::string_view key) {
  const std::size_t at = line.find("\"" + std::string(key) + "\":");
  if (at == std::string_view::npos) return {};
  std::size_t from = at + key.size() + 3;
  if (from < line.size() && line[from] == '[') ++from;
  return CallArguments(line, from - 1);
}

std::vector<Motion> ParseZemtraJson(const std::string& json) {
  std::vector<Motion> motions;
  std::size_t start = json.find("\"entities\":[");
  while (start != std::string::npos && start < json.size()) {
    std::size_t stop = json.find('\n', start);
    if (stop == std::string::npos) stop = json.size();
    const std::string_view line(json.data() + start, stop - start);
    start = stop + 1;
    if (line.find("{\"type\":") == std::string_view::npos) continue;
    const auto type = JsonNumbers(line, "type");
    const auto begin = JsonNumbers(line, "start");
    const auto end = JsonNumbers(line, "end");
    const auto center = JsonNumbers(line, "center");
    const auto plane = JsonNumbers(line, "plane");
    const auto number = JsonNumbers(line, "line");
    if (type.empty() || begin.size() < 3 || end.size() < 3 || center.size() < 3 || plane.empty()) {
      continue;
    }
    const int code = static_cast<int>(type[0]) % 10;
    motions.push_back({code,
                       {end[0], end[1], end[2]},
                       {center[0], center[1], center[2]},
                       static_cast<int>(plane[0]),
                       number.empty() ? 0 : static_cast<int>(number[0]),
                       {begin[0], begin[1], begin[2]}});
  }
  return motions;
}

bool Near(const std::array<double, 3>& a, const std::array<double, 3>& b) {
  for (int i = 0; i < 3; ++i) {
    if (!(std::fabs(a[i] - b[i]) <= Tolerance(b[i]))) return false;
  }
  return true;
}

// Straight moves that go nowhere draw nothing, and the two tools disagree on which blocks
// make one (G10 and G92 lines, a rapid to where the tool already is): both sides drop them.
std::vector<Motion> WithoutStandingMoves(const std::vector<Motion>& motions,
                                         std::array<double, 3> position) {
  std::vector<Motion> kept;
  for (const Motion& motion : motions) {
    if (motion.kind >= 2 || !Near(motion.end, position)) kept.push_back(motion);
    position = motion.end;
  }
  return kept;
}

// The in-plane coordinates of an arc's centre.
std::array<double, 2> InPlane(const Motion& arc) {
  if (arc.plane == 18) return {arc.center[2], arc.center[0]};
  if (arc.plane == 19) return {arc.center[1], arc.center[2]};
  return {arc.center[0], arc.center[1]};
}

std::string Describe(const Motion& m) {
  char text[200];
  std::snprintf(text, sizeof text,
                "kind %d plane %d end (%.5f, %.5f, %.5f) centre (%.5f, %.5f, %.5f)", m.kind,
                m.plane, m.end[0], m.end[1], m.end[2], m.center[0], m.center[1], m.center[2]);
  return text;
}

class LinuxCncReference : public ::testing::Test {
 protected:
  void SetUp() override {
    rs274_ = FindOnPath("rs274");
    if (!rs274_) {
      GTEST_SKIP() << "rs274 (LinuxCNC's standalone interpreter, package linuxcnc-uspace) is not "
                      "installed: the comparison with LinuxCNC is skipped";
    }
    cli_ = FindZemtraCli();
    if (!cli_) GTEST_SKIP() << "zemtra-cli not found (set ZEMTRA_CLI): comparison skipped";
    work_ = fs::temp_directory_path() / ("zemtra-lcnc-" + std::to_string(getpid()));
    fs::create_directories(work_);
  }

  void TearDown() override {
    std::error_code ignored;
    if (!work_.empty()) fs::remove_all(work_, ignored);
  }

  // Plots `program` with both tools and compares every motion but LinuxCNC's first, which
  // Zemtra turns into the start of its first entity; with `lastLine`, only the motions of the
  // program's lines up to that one.
  void Compare(const fs::path& relativeProgram, int lastLine = 0) {
    const fs::path program = fs::absolute(relativeProgram);
    SCOPED_TRACE(program.string());
    const fs::path config =
        fs::absolute(test::TestDataDir() / "linuxcnc-reference" / "reference.zmt");
    // rs274 truncates and maps $HOME/.tool.mmap; a shared HOME lets parallel tests crash each
    // other with SIGBUS, so each run has its own.
    const std::string canon = RunCommand("cd " + Quoted(work_) + " && HOME=" + Quoted(work_) + " " +
                                         Quoted(*rs274_) + " -g " + Quoted(program) + " 2>&1");
    const std::string json =
        RunCommand("ZEMTRA_HOME=" + Quoted(work_ / "home") + " " + Quoted(*cli_) + " plot " +
                   Quoted(program) + " --json --config " + Quoted(config) + " 2>/dev/null");
    const auto reference = WithoutStandingMoves(ParseCanon(canon), {0, 0, 0});
    auto zemtraAll = ParseZemtraJson(json);
    if (lastLine > 0) {
      std::erase_if(zemtraAll, [lastLine](const Motion& m) { return m.line > lastLine; });
    }
    ASSERT_FALSE(reference.empty()) << canon.substr(0, 2000);
    ASSERT_FALSE(zemtraAll.empty()) << json.substr(0, 2000);
    const auto zemtra = WithoutStandingMoves(zemtraAll, zemtraAll.front().start);
    // LinuxCNC's first motion has no entity unless Zemtra's first motion went nowhere.
    const std::size_t skip = !zemtra.empty() && reference.size() > 1 &&
                                     !Same(zemtra.front(), reference.front()) &&
                                     Same(zemtra.front(), reference[1])
                                 ? 1
                                 : 0;
    int failures = 0;
    for (std::size_t i = 0; i < zemtra.size() && i + skip < reference.size() && failures < 5; ++i) {
      if (Same(zemtra[i], reference[i + skip])) continue;
      ++failures;
      ADD_FAILURE() << "motion " << i + 1 << " (line " << zemtra[i].line
                    << ")\n  zemtra:   " << Describe(zemtra[i])
                    << "\n  linuxcnc: " << Describe(reference[i + skip]);
    }
    if (lastLine > 0) {
      EXPECT_LE(zemtra.size() + skip, reference.size());
    } else {
      EXPECT_EQ(zemtra.size() + skip, reference.size());
    }
  }

  static bool Same(const Motion& ours, const Motion& theirs) {
    if (ours.kind != theirs.kind || !Near(ours.end, theirs.end)) return false;
    if (ours.kind < 2) return true;
    const auto a = InPlane(ours), b = InPlane(theirs);
    return ours.plane == theirs.plane && std::fabs(a[0] - b[0]) <= Tolerance(b[0]) &&
           std::fabs(a[1] - b[1]) <= Tolerance(b[1]);
  }

  std::optional<fs::path> rs274_;
  std::optional<fs::path> cli_;
  fs::path work_;
};

TEST_F(LinuxCncReference, ArcsInThreePlanesFullCirclesAndRadiusForm) {
  Compare(test::TestDataDir() / "linuxcnc-reference" / "arcs-in-three-planes.ngc");
}

TEST_F(LinuxCncReference, HelixesAndIncrementalArcs) {
  Compare(test::TestDataDir() / "linuxcnc-reference" / "helixes-and-incremental.ngc");
}

// Public programs both dialects read: an arc torture test, R-form pockets, and I/J profiles up
// to the G10 that moves the G55 origin (Zemtra only reports G10).
TEST_F(LinuxCncReference, MillSamples) {
  ZEMTRA_REQUIRE_SAMPLES();
  const fs::path folder = test::SamplesDir() / "gcode" / "mill";
  Compare(folder / "tort.ngc");
  Compare(folder / "cds.ngc");
  Compare(folder / "botomata_bottom.nc", 1943);
}

}  // namespace
}  // namespace zemtra
