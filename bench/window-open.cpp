// Times what a user waits for when opening a large program in the window: start-up with the
// file on the command line until it is loaded, coloured, plotted and first drawn, and the longest
// gap between served events meanwhile; then an isometric repaint and an undo snapshot.
//   window-open PROGRAM CONFIG_FILE
#include <QApplication>
#include <QElapsedTimer>
#include <QTemporaryDir>
#include <QTimer>
#include <algorithm>
#include <cstdio>
#include <filesystem>

#include "app/Plot.h"
#include "app/ProgramTextView.h"
#include "app/QtHost.h"
#include "app/QtSettingsStore.h"
#include "app/StartUp.h"
#include "app/Workspace.h"
#include "view/Viewport.h"

namespace {

struct EventGaps {
  QElapsedTimer sinceLast;
  qint64 longest = 0;
  int served = 0;
  void Tick() {
    longest = std::max(longest, sinceLast.restart());
    ++served;
  }
};

template <typename Work>
qint64 TimeMs(Work&& work) {
  QElapsedTimer timer;
  timer.start();
  work();
  return timer.elapsed();
}

void ReportAfterOpen(zemtra::Plot& plot, qint64 openMs, const EventGaps& gaps) {
  std::printf("open, colour, plot, first draw   %6lld ms  target < 5000 ms  entities %d\n",
              openMs, plot.Engine().Driver.EntityCount());
  std::printf("longest gap between events     %6lld ms  target < 100 ms  (%d ticks served)\n",
              gaps.longest, gaps.served);
  auto& viewport = plot.Engine().View;
  viewport.View.CurrentView = 6;
  std::printf("full isometric repaint         %6lld ms  target < 250 ms\n",
              TimeMs([&] { viewport.DrawGeometryTable(true); }));
  auto& document = plot.Engine().Editor.Document;
  plot.Editor()->SetSelection(document.Size() / 2, document.Size() / 2);
  plot.Editor()->InsertText("X");
  std::printf("undo snapshot after one key    %6lld ms  target < 50 ms  (%zu bytes)\n",
              TimeMs([&] { plot.Engine().Editor.Undo.Snapshot(); }), document.Size());
}

}  // namespace

int main(int argc, char** argv) {
  if (argc < 3) {
    std::fprintf(stderr, "usage: window-open PROGRAM CONFIG_FILE\n");
    return 2;
  }
  QApplication application(argc, argv);
  QTemporaryDir folder;
  const std::filesystem::path home = folder.path().toStdString();
  std::filesystem::create_directories(home / "CONFIG");
  std::filesystem::copy_file(argv[2], home / "CONFIG" / "default.zmt");

  zemtra::PlotEnvironment environment;
  environment.ApplicationFolder = home.string();
  environment.Settings = std::make_shared<zemtra::QtSettingsStore>(folder.filePath("z.conf"));
  environment.InstanceChannel = "bench-" + QString::number(QCoreApplication::applicationPid());
  environment.CommandLine = argv[1];

  QElapsedTimer total;
  total.start();
  zemtra::Plot plot(environment);
  plot.GetHost().setPromptHandler([](const zemtra::Prompt&) { return zemtra::MsgAnswer::Ok; });
  auto* startUp = new zemtra::StartUp(plot);
  startUp->Run();
  plot.show();

  EventGaps gaps;
  gaps.sinceLast.start();
  QTimer ticker;
  ticker.setInterval(5);
  QObject::connect(&ticker, &QTimer::timeout, [&] { gaps.Tick(); });
  ticker.start();
  QObject::connect(&plot, &zemtra::Plot::startUpFinished, [&] {
    ReportAfterOpen(plot, total.elapsed(), gaps);
    QTimer::singleShot(0, [&] { application.exit(0); });
  });
  return application.exec();
}
