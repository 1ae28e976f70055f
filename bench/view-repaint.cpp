// Time of a full repaint of the viewport: plots a program (quietly, with the default mill), then
// repaints its table in the isometric view, zoomed to extents, into a surface that draws
// nothing (the painter's own cost) and into a QImage (what the window pays).
//
//   view-repaint PROGRAM [WIDTHxHEIGHT]
//
// Prints the entity count and, for each surface, the best and the median of several repaints.
#include <QImage>
#include <algorithm>
#include <chrono>
#include <cstdio>
#include <filesystem>
#include <string>
#include <vector>

#include "BenchPlot.h"
#include "cli/ImageSurface.h"
#include "cli/PlotPicture.h"
#include "view/RecordingSurface.h"
#include "view/Viewport.h"

namespace {

using namespace zemtra;
using Clock = std::chrono::steady_clock;

constexpr int kRuns = 7;

struct Timing {
  double best = 0, median = 0;
};

template <class Repaint>
Timing Measure(Repaint&& repaint) {
  std::vector<double> ms;
  for (int i = 0; i < kRuns; ++i) {
    const auto start = Clock::now();
    repaint();
    ms.push_back(std::chrono::duration<double, std::milli>(Clock::now() - start).count());
  }
  std::sort(ms.begin(), ms.end());
  return Timing{ms.front(), ms[ms.size() / 2]};
}

void Report(const char* label, const Timing& timing, double targetMs) {
  std::printf("%-36s best %7.1f ms   median %7.1f ms   %s\n", label, timing.best, timing.median,
              timing.median < targetMs ? "meets target" : "ABOVE TARGET");
}

}  // namespace

int main(int argc, char** argv) {
  if (argc < 2) {
    std::fputs("usage: view-repaint PROGRAM [WIDTHxHEIGHT]\n", stderr);
    return 2;
  }
  int width = 1200, height = 800;
  if (argc > 2 && !ParsePictureSize(argv[2], width, height)) {
    std::fputs("view-repaint: size must be WIDTHxHEIGHT\n", stderr);
    return 2;
  }
  ProgramText program;
  if (!LoadBenchProgram("view-repaint", argv[1], program)) return 2;

  BenchPlot plot;
  auto& [config, host, variables, evaluator, interpreter, table, driver] = plot;
  const auto plotStart = Clock::now();
  driver.RefreshGeometry(program);
  const double plotMs = std::chrono::duration<double, std::milli>(Clock::now() - plotStart).count();
  std::printf("%d entities, plotted in %.0f ms; picture %dx%d, isometric view\n",
              driver.EntityCount(), plotMs, width, height);

  Viewport viewport(table, host);
  viewport.ApplyConfig(config);
  viewport.View.CurrentView = kViewIsoMill;

  NullSurface null(width, height);
  viewport.AttachSurface(&null);
  viewport.LoadGeometry(driver.EntityCount());
  Report("painter only (null surface)", Measure([&] { viewport.DrawGeometryTable(true); }), 250);
  std::printf("  %lld polylines, %lld points sent per repaint\n", null.polylines / (kRuns + 1),
              null.points / (kRuns + 1));

  const GuiSession gui;
  ImageSurface image(width, height, false);
  viewport.AttachSurface(&image);
  viewport.ZoomToExtents();
  Report("QImage, crisp lines (the window)", Measure([&] { viewport.DrawGeometryTable(true); }),
         250);
  ImageSurface smooth(width, height, true);
  viewport.AttachSurface(&smooth);
  viewport.ZoomToExtents();
  Report("QImage, antialiased (--png)", Measure([&] { viewport.DrawGeometryTable(true); }), 1000);
  viewport.AttachSurface(nullptr);
  return 0;
}
