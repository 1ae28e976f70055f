// Speed of the program editor's engine on a large program:
//   editor-speed FILE
// loading (decode and line ends), colouring every line, and an undo step after a one-character
// edit of a 30 MB text. Prints one line per measurement with its target.
#include <algorithm>
#include <chrono>
#include <cstdio>
#include <string>
#include <vector>

#include "core/Host.h"
#include "editor/Colorize.h"
#include "editor/DocumentFile.h"
#include "editor/ProgramDocument.h"
#include "editor/UndoHistory.h"

namespace {

using Clock = std::chrono::steady_clock;

class QuietHost : public zemtra::Host {
 public:
  zemtra::MsgAnswer ask(const zemtra::Prompt& prompt) override {
    return zemtra::DefaultAnswer(prompt.buttons);
  }
};

double MillisecondsSince(Clock::time_point start) {
  return std::chrono::duration<double, std::milli>(Clock::now() - start).count();
}

void Report(const char* label, double ms, const char* target, bool met) {
  std::printf("%-44s %9.1f ms  target %-12s %s\n", label, ms, target,
              met ? "meets target" : "BELOW TARGET");
}

// Colours every line as the window does: runs per line, counted in UTF-16 units.
double ColorizeAll(const zemtra::ProgramDocument& document, std::size_t& runCount) {
  std::vector<zemtra::ColorRun> runs;
  runs.reserve(64);
  int carried = 0;
  runCount = 0;
  const auto start = Clock::now();
  for (int line = 0; line < document.LineCount(); ++line) {
    const std::string_view text = document.LineText(line);
    carried = zemtra::ColorizeLine(text, runs, carried);
    zemtra::RunsToUtf16(text, runs);
    runCount += runs.size();
  }
  return MillisecondsSince(start);
}

// The median of five timings of an undo step after a one-character edit at `position`.
double SnapshotAfterEdit(zemtra::ProgramDocument& document, zemtra::UndoHistory& undo,
                         std::size_t position) {
  std::vector<double> times;
  for (int round = 0; round < 5; ++round) {
    document.ReplaceRange(position, 0, "X");
    const auto start = Clock::now();
    undo.Snapshot();
    times.push_back(MillisecondsSince(start));
  }
  std::sort(times.begin(), times.end());
  return times[2];
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 2) {
    std::fputs("usage: editor-speed FILE\n", stderr);
    return 2;
  }
  QuietHost host;
  zemtra::ProgramFileText file;
  zemtra::FileError error;
  auto start = Clock::now();
  if (!zemtra::ReadProgramFile(argv[1], file, error)) {
    std::fprintf(stderr, "editor-speed: %s: %s\n", argv[1], error.text.c_str());
    return 2;
  }
  zemtra::ProgramDocument document;
  document.SetText(std::move(file.text));
  const double loadMs = MillisecondsSince(start);
  const int lines = document.LineCount();
  std::printf("program: %d lines, %.1f MB\n", lines, document.Size() / 1e6);
  Report("read, decode, line ends, line index", loadMs, "< 1000 ms", loadMs < 1000);

  std::size_t runCount = 0;
  const double colorMs = ColorizeAll(document, runCount);
  const double linesPerSecond = lines / (colorMs / 1000);
  std::printf("colouring: %zu runs, %.2f M lines/s\n", runCount, linesPerSecond / 1e6);
  Report("colour runs of every line", colorMs, "> 5M lines/s", linesPerSecond > 5e6);

  start = Clock::now();
  zemtra::ColorizeProgram(document, host, [](int, std::span<const zemtra::ColorRun>) {});
  const double programMs = MillisecondsSince(start);
  Report("ColorizeProgram (braces, progress, sink)", programMs, "< 1000 ms", programMs < 1000);

  // A text of at least 30 MB: the program as often as it takes.
  std::string big = document.Text();
  while (big.size() < 30'000'000) big += document.Text();
  document.SetText(std::move(big));
  std::printf("undo text: %.1f MB\n", document.Size() / 1e6);
  zemtra::UndoHistory undo;
  start = Clock::now();
  undo.Attach(document);
  Report("undo reset (copy of the base text)", MillisecondsSince(start), "(once a load)", true);

  const double startMs = SnapshotAfterEdit(document, undo, 10);
  Report("undo step, one character near the start", startMs, "< 50 ms", startMs < 50);
  const double middleMs = SnapshotAfterEdit(document, undo, document.Size() / 2);
  Report("undo step, one character in the middle", middleMs, "< 50 ms", middleMs < 50);
  const double endMs = SnapshotAfterEdit(document, undo, document.Size() - 10);
  Report("undo step, one character near the end", endMs, "< 50 ms", endMs < 50);
  start = Clock::now();
  undo.Undo(1);
  const double undoMs = MillisecondsSince(start);
  Report("undo of that step", undoMs, "< 50 ms", undoMs < 50);
  return 0;
}
