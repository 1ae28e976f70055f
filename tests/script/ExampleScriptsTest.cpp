// The example scripts shipped in data/SCRIPTS, run with `zemtra-cli script` on the shared
// sample programs, do what their comments promise.
#include <gtest/gtest.h>

#include <QProcess>
#include <QProcessEnvironment>
#include <QRegularExpression>
#include <QString>
#include <QStringList>
#include <cctype>
#include <cmath>
#include <map>
#include <regex>
#include <string>
#include <vector>

#include "support/TestSupport.h"

namespace zemtra::test {
namespace {

struct CliRun {
  int exitCode = -1;
  std::string out;
  std::string err;
};

// zemtra-cli script with the shipped data folder as the application folder.
CliRun RunExample(const std::string& script, const std::filesystem::path& program) {
  QProcess process;
  QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
  environment.insert("ZEMTRA_HOME", QString::fromStdString(SourceDataDir().string()));
  process.setProcessEnvironment(environment);
  const std::string path = (SourceDataDir() / "SCRIPTS" / script).string();
  process.start(ZEMTRA_CLI_BINARY,
                {"script", QString::fromStdString(path), QString::fromStdString(program.string())});
  process.waitForFinished(120000);
  return {process.exitCode(), process.readAllStandardOutput().toStdString(),
          process.readAllStandardError().toStdString()};
}

// The lines of `text`, split at CR LF, CR or LF; a final line end leaves an empty last line.
std::vector<std::string> Lines(const std::string& text) {
  static const QRegularExpression kLineEnd("\r\n|\r|\n");
  std::vector<std::string> lines;
  for (const QString& line :
       QString::fromLatin1(text.data(), qsizetype(text.size())).split(kLineEnd))
    lines.push_back(line.toLatin1().toStdString());
  return lines;
}

std::string Code(const std::string& line) {
  static const std::regex kComments(R"(\([^)]*\)?|;.*$)");
  return std::regex_replace(line, kComments, " ");
}

std::string Upper(std::string text) {
  for (char& c : text) c = static_cast<char>(std::toupper(static_cast<unsigned char>(c)));
  return text;
}

// Values of the words of `letters` in the code of a line, by letter, in order.
std::multimap<char, double> Words(const std::string& line, const std::string& letters) {
  static const std::regex kWord(R"(([A-Za-z])\s*([-+]?(\d+\.?\d*|\.\d+)))");
  std::multimap<char, double> words;
  const std::string code = Code(line);
  for (auto it = std::sregex_iterator(code.begin(), code.end(), kWord);
       it != std::sregex_iterator(); ++it) {
    const char letter =
        static_cast<char>(std::toupper(static_cast<unsigned char>((*it)[1].str()[0])));
    if (letters.find(letter) != std::string::npos) words.emplace(letter, std::stod((*it)[2]));
  }
  return words;
}

struct ToolCase {
  const char* sample;
  std::size_t listAt;  // behind the opening "%" and program number lines
  std::vector<std::string> list;
};

TEST(ExampleScripts, ListToolsNamesEveryToolInOrderOfFirstCall) {
  ZEMTRA_REQUIRE_SAMPLES();
  const ToolCase cases[] = {
      {"mill/mill_hp_4.nc",
       2,
       {"(TOOL LIST)", "(T01 LINE 19 CALLS 1)", "(T05 LINE 52 CALLS 1)", "(T07 LINE 68 CALLS 1)",
        "(T08 LINE 83 CALLS 1)", "(T02 LINE 98 CALLS 1)", "(END TOOL LIST)"}},
      {"mill/enier_1006.nc",
       2,
       {"(TOOL LIST)", "(T10 LINE 18 CALLS 4)", "(T1 LINE 25 CALLS 2)", "(T3 LINE 58 CALLS 2)",
        "(T7 LINE 1021 CALLS 2)", "(T2 LINE 1207 CALLS 2)", "(T8 LINE 1228 CALLS 2)",
        "(T9 LINE 1409 CALLS 4)", "(END TOOL LIST)"}},
      {"lathe/valve.nc",
       2,
       {"(TOOL LIST)", "(T0101 LINE 18 CALLS 1)", "(T0202 LINE 45 CALLS 1)",
        "(T1212 LINE 118 CALLS 1)", "(END TOOL LIST)"}},
      // Macro comparisons such as [#7LT1] call no tool.
      {"macro/SerializeEngrave.nc", 0, {"(TOOL LIST)", "(NO TOOLS)", "(END TOOL LIST)"}},
  };
  for (const ToolCase& c : cases) {
    const std::filesystem::path path = SamplesDir() / "gcode" / c.sample;
    const CliRun run = RunExample("List Tools.js", path);
    ASSERT_EQ(run.exitCode, 0) << c.sample << ": " << run.err;
    std::vector<std::string> lines = Lines(run.out);
    const auto at = lines.begin() + static_cast<long>(c.listAt);
    ASSERT_GE(lines.size(), c.listAt + c.list.size());
    EXPECT_EQ(std::vector<std::string>(at, at + static_cast<long>(c.list.size())), c.list)
        << c.sample;
    lines.erase(at, at + static_cast<long>(c.list.size()));
    EXPECT_EQ(lines, Lines(ReadFileBytes(path))) << c.sample;  // nothing else changed
  }
}

TEST(ExampleScripts, InchToMetricScalesEveryLengthAndFeed) {
  ZEMTRA_REQUIRE_SAMPLES();
  // Programs whose coordinates are plain numbers (the filters cannot scale expressions).
  for (const char* sample : {"mill/mill_hp_4.nc", "mill/enier_1006.nc"}) {
    const std::filesystem::path path = SamplesDir() / "gcode" / sample;
    const CliRun run = RunExample("Inch To Metric.js", path);
    ASSERT_EQ(run.exitCode, 0) << sample << ": " << run.err;
    std::vector<std::string> before = Lines(ReadFileBytes(path));
    std::vector<std::string> after = Lines(run.out);
    // The filters end the last line with a line break.
    if (!before.back().empty()) before.push_back("");
    ASSERT_EQ(after.size(), before.size()) << sample;
    int checked = 0;
    for (std::size_t n = 0; n < before.size(); ++n) {
      const std::string code = Upper(Code(after[n]));
      EXPECT_FALSE(std::regex_search(code, std::regex(R"(G0*20(?!\d))"))) << sample << ":" << n;
      if (std::regex_search(Upper(Code(before[n])), std::regex(R"(G0*20(?!\d))"))) {
        EXPECT_TRUE(std::regex_search(code, std::regex(R"(G21)"))) << sample << ":" << n;
      }
      const auto inch = Words(before[n], "XYZIJKRQF");
      const auto metric = Words(after[n], "XYZIJKRQF");
      ASSERT_EQ(inch.size(), metric.size()) << sample << " line " << n + 1 << ": " << after[n];
      for (auto i = inch.begin(), m = metric.begin(); i != inch.end(); ++i, ++m) {
        ASSERT_EQ(i->first, m->first) << sample << " line " << n + 1;
        // Coordinates carry 4 decimals, feeds 2.
        const double tolerance = i->first == 'F' ? 0.0051 : 0.00051;
        EXPECT_NEAR(m->second, i->second * 25.4, tolerance)
            << sample << " line " << n + 1 << ": " << before[n] << " -> " << after[n];
        ++checked;
      }
    }
    EXPECT_GT(checked, 50) << sample;
  }
}

TEST(ExampleScripts, FanucCleanUpNumbersACleanUpperCaseProgram) {
  ZEMTRA_REQUIRE_SAMPLES();
  for (const char* sample :
       {"mill/mill_hp_4.nc", "mill/cds.ngc", "lathe/weld_pin.nc", "macro/selyaev_1.nc"}) {
    const std::filesystem::path path = SamplesDir() / "gcode" / sample;
    const CliRun run = RunExample("Fanuc Clean Up.js", path);
    ASSERT_EQ(run.exitCode, 0) << sample << ": " << run.err;
    std::vector<std::string> lines = Lines(run.out);
    ASSERT_EQ(lines.back(), "") << sample;  // the text ends with a line break
    lines.pop_back();
    ASSERT_GE(lines.size(), 2u);
    EXPECT_EQ(lines.front(), "%") << sample;
    EXPECT_EQ(lines.back(), "%") << sample;
    int expectedNumber = 10;
    for (const std::string& line : lines) {
      EXPECT_FALSE(line.empty()) << sample;
      EXPECT_NE(line.back(), ' ') << sample << ": " << line;
      EXPECT_EQ(line, Upper(line)) << sample;
      for (char c : line) EXPECT_TRUE(c >= 32 && c < 127) << sample << ": " << line;
      const bool numbered = !(line == "%" || line[0] == 'O' || line[0] == ':' || line[0] == '(' ||
                              line[0] == '[' || line[0] == ';');
      if (!numbered) continue;
      EXPECT_EQ(line.rfind("N" + std::to_string(expectedNumber) + " ", 0), 0u)
          << sample << ": " << line;
      expectedNumber += 10;
    }
    EXPECT_GT(expectedNumber, 50) << sample;
  }
}

}  // namespace
}  // namespace zemtra::test
