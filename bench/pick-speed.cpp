// Time of picking in the picture: plots a program (quietly, with the default mill), zooms to
// extents in the given view, then times a click on an entity, a click in empty space, and box
// selections (window and crossing) over a part of the picture and over all of it.
//
//   pick-speed PROGRAM [WIDTHxHEIGHT] [VIEW]
//
// Prints the entity count and, for each operation, the best and the median wall time of several
// runs and the median processor time, which the verdict reads (the machine may be busy).
#include <algorithm>
#include <chrono>
#include <cstdio>
#include <ctime>
#include <string>
#include <vector>

#include "BenchPlot.h"
#include "view/Picking.h"
#include "view/Viewport.h"
#include "view/Views.h"

namespace {

using namespace zemtra;
using Clock = std::chrono::steady_clock;

constexpr int kRuns = 7;

struct Timing {
  double best = 0, median = 0;
  double cpuMedian = 0;  // processor time: steadier than wall time on a busy machine
};

double CpuMs() {
  return 1000.0 * static_cast<double>(std::clock()) / CLOCKS_PER_SEC;
}

// Runs `prepare` untimed, then `work` timed, kRuns times.
template <class Prepare, class Work>
Timing Measure(Prepare&& prepare, Work&& work) {
  std::vector<double> ms, cpu;
  for (int i = 0; i < kRuns; ++i) {
    prepare();
    const auto start = Clock::now();
    const double cpuStart = CpuMs();
    work();
    cpu.push_back(CpuMs() - cpuStart);
    ms.push_back(std::chrono::duration<double, std::milli>(Clock::now() - start).count());
  }
  std::sort(ms.begin(), ms.end());
  std::sort(cpu.begin(), cpu.end());
  return Timing{ms.front(), ms[ms.size() / 2], cpu[cpu.size() / 2]};
}

void Report(const std::string& label, const Timing& timing, double targetMs) {
  std::printf("%-42s best %6.1f ms  median %6.1f ms  cpu %6.1f ms  %s\n", label.c_str(),
              timing.best, timing.median, timing.cpuMedian,
              timing.cpuMedian < targetMs ? "meets target" : "ABOVE TARGET");
}

bool ParseSize(const char* text, int& width, int& height) {
  return std::sscanf(text, "%dx%d", &width, &height) == 2 && width > 0 && height > 0;
}

}  // namespace

int main(int argc, char** argv) {
  if (argc < 2) {
    std::fputs("usage: pick-speed PROGRAM [WIDTHxHEIGHT] [VIEW]\n", stderr);
    return 2;
  }
  int width = 1200, height = 800;
  if (argc > 2 && !ParseSize(argv[2], width, height)) {
    std::fputs("pick-speed: size must be WIDTHxHEIGHT\n", stderr);
    return 2;
  }
  const int view = argc > 3 ? ViewFromCommandName(argv[3], 0) : kViewIsoMill;
  if (view < 0) {
    std::fputs("pick-speed: unknown view\n", stderr);
    return 2;
  }
  ProgramText program;
  if (!LoadBenchProgram("pick-speed", argv[1], program)) return 2;

  BenchPlot plot;
  auto& [config, host, variables, evaluator, interpreter, table, driver] = plot;
  driver.RefreshGeometry(program);
  const std::int32_t count = driver.EntityCount();

  Viewport viewport(table, host);
  viewport.ApplyConfig(config);
  viewport.View.CurrentView = static_cast<std::int16_t>(view);
  viewport.View.Resize(width, height);
  viewport.LoadGeometry(count);
  const ViewState& state = viewport.View;
  std::printf("%d entities; picture %dx%d, %s view\n", count, width, height,
              std::string(state.Title()).c_str());

  // A click on the end of the entity in the middle of the table, and one beside the picture.
  float u = 0, v = 0;
  state.ProjectPoint(table[std::max(1, count / 2)].EndPoint, u, v);
  std::int32_t found = 0;
  const auto nothing = [] {};
  Report("click on an entity (target 150 ms)",
         Measure(nothing, [&] { found = FindEntityAt(table, viewport, u, v, false); }), 150);
  std::printf("  found entity %d\n", found);
  const double outside = state.ScaleLeft - 50 * state.UnitsPerPixel;
  Report("click in empty space (target 150 ms)",
         Measure(nothing, [&] { found = FindEntityAt(table, viewport, outside, v, false); }), 150);

  const auto clear = [&] { ClearSelection(table); };
  const double left = state.ScaleLeft, top = state.ScaleTop;
  const double w = state.ScaleWidth, h = state.ScaleHeight;
  std::int32_t last = 0;
  const auto box = [&](const char* label, double x1, double y1, double x2, double y2) {
    Report(label, Measure(clear, [&] { last = SelectWindow(table, viewport, x1, y1, x2, y2); }),
           300);
    std::printf("  %d selected\n", CountSelected(table));
  };
  box("window, middle quarter (target 300 ms)", left + w / 4, top + h / 4, left + 3 * w / 4,
      top + 3 * h / 4);
  box("crossing, middle quarter (target 300 ms)", left + 3 * w / 4, top + h / 4, left + w / 4,
      top + 3 * h / 4);
  box("window, whole picture (target 300 ms)", left, top, left + w, top + h);
  box("crossing, whole picture (target 300 ms)", left + w, top, left, top + h);
  return 0;
}
