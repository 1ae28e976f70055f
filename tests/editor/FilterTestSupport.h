#pragma once
// Running the text filters over a few lines and comparing the lines they give.
#include <string>
#include <string_view>
#include <vector>

#include "config/MachineConfig.h"
#include "core/RecordingHost.h"
#include "editor/FormatProgram.h"

namespace zemtra::test {

inline std::string JoinLines(const std::vector<std::string>& lines) {
  std::string text;
  for (const std::string& line : lines) text += line + "\n";
  return text;
}

inline std::vector<std::string> SplitOutput(std::string_view text) {
  std::vector<std::string> lines;
  std::size_t start = 0;
  while (start < text.size()) {
    std::size_t end = text.find('\n', start);
    if (end == std::string_view::npos) end = text.size();
    std::string line(text.substr(start, end - start));
    if (!line.empty() && line.back() == '\r') line.pop_back();
    lines.push_back(line);
    start = end + 1;
  }
  return lines;
}

// A mill with incremental arc centres and whole-unit integer values.
inline MachineConfig MillConfig() {
  MachineConfig config;
  config.CoordinateResolution = 1;
  config.ArcTolerance = 0.002;
  return config;
}

struct FilterRunner {
  MachineConfig config = MillConfig();
  FilterParameters parameters;
  RecordingHost host;

  std::vector<std::string> Format(int code, const std::vector<std::string>& lines) {
    FilterSession session(config, parameters);
    return SplitOutput(FormatProgram(code, JoinLines(lines), session, host).text);
  }
  std::vector<std::string> Translate(int code, const std::vector<std::string>& lines) {
    FilterSession session(config, parameters);
    const FilterResult result = TranslateProgram(code, JoinLines(lines), session, host);
    failedArcs = result.failedArcs;
    return SplitOutput(result.text);
  }
  int failedArcs = 0;
};

}  // namespace zemtra::test
