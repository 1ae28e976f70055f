#include "app/AnimationCommands.h"

#include <QAction>
#include <QApplication>
#include <QIcon>
#include <QMenu>
#include <QStyle>
#include <QTimer>
#include <QToolBar>
#include <algorithm>

#include "app/PictureBox.h"
#include "app/Plot.h"
#include "app/PlotActions.h"
#include "app/QtHost.h"
#include "app/Workspace.h"

namespace zemtra {

namespace {

struct CommandRow {
  const char* name;
  const char* caption;
  void (AnimationCommands::*handler)();
  const char* themeIcon;
  QStyle::StandardPixmap fallbackIcon;
};

constexpr CommandRow kCommands[] = {
    {"mnuAnimate", "&Animate", &AnimationCommands::Animate, "media-playback-start",
     QStyle::SP_MediaPlay},
    {"mnuPause", "Pa&use", &AnimationCommands::Pause, "media-playback-pause",
     QStyle::SP_MediaPause},
    {"mnuStepForward", "Step &Forward", &AnimationCommands::StepForward, "media-skip-forward",
     QStyle::SP_MediaSeekForward},
    {"mnuStepBackward", "Step &Backward", &AnimationCommands::StepBackward, "media-skip-backward",
     QStyle::SP_MediaSeekBackward},
    {"mnuRewind", "&Rewind", &AnimationCommands::Rewind, "media-seek-backward",
     QStyle::SP_MediaSkipBackward},
    {"mnuFastForward", "Forward to &End", &AnimationCommands::FastForward, "media-seek-forward",
     QStyle::SP_MediaSkipForward},
};

QIcon IconOf(const CommandRow& row) {
  return QIcon::fromTheme(row.themeIcon, QApplication::style()->standardIcon(row.fallbackIcon));
}

}  // namespace

AnimationCommands::AnimationCommands(Plot& plot)
    : QObject(&plot),
      plot_(plot),
      animator_(plot.Engine().Table, plot.Engine().View, plot.GetHost()) {
  setObjectName("AnimationCommands");
  timAnimate_ = new QTimer(this);
  timAnimate_->setObjectName("timAnimate");
  connect(timAnimate_, &QTimer::timeout, this, &AnimationCommands::Tick);
  AddActions();
  connect(plot.Picture(), &PictureBox::keyCommand, this, [this](QChar key) {
    if (key == 'S') StepForward();
    if (key == 'B') StepBackward();
  });
  connect(&plot, &Plot::abortRequested, this, &AnimationCommands::Pause);
  // A new plot is a new path: stepping starts over.
  connect(&plot, &Plot::plotting, this, [this] { animator_.AnimationPaused = false; });
}

void AnimationCommands::AddActions() {
  PlotActions& actions = plot_.Actions();
  QMenu* menu = actions.Menu("mnuPlotMenu");
  menu->addSeparator();
  QToolBar* bar = actions.ToolBar("tlbPlot");
  for (const CommandRow& row : kCommands) {
    QAction* action = actions.AddCommand(menu, row.name, row.caption);
    action->setIcon(IconOf(row));
    connect(action, &QAction::triggered, this, row.handler);
    if (bar != nullptr && row.handler != &AnimationCommands::Animate &&
        row.handler != &AnimationCommands::Pause) {
      bar->addAction(action);
    }
  }
  // The tool bar's button animates, or pauses a running animation.
  animateButton_ = new QAction(this);
  animateButton_->setObjectName("animate");
  connect(animateButton_, &QAction::triggered, this, [this] {
    if (animator_.Animating()) {
      Pause();
    } else {
      Animate();
    }
  });
  ShowAnimateButton(false);
  if (bar != nullptr) {
    bar->insertAction(actions.Find("mnuStepForward"), animateButton_);
  }
}

void AnimationCommands::ShowAnimateButton(bool animating) {
  const CommandRow& row = kCommands[animating ? 1 : 0];
  animateButton_->setIcon(IconOf(row));
  animateButton_->setText(animating ? "Pause" : "Animate");
  animateButton_->setToolTip(animating ? "Pause" : "Animate");
}

void AnimationCommands::TakeSettings() {
  const PreferenceSettings& preferences = plot_.Settings().Preferences;
  animator_.AnimateDelay = std::max(0, preferences.AnimateDelay);
  animator_.EntitiesPerStep = preferences.EntitiesPerStep;
}

void AnimationCommands::Animate() {
  Workspace& engine = plot_.Engine();
  if (plot_.Busy || engine.Driver.PlotBusy) return;
  TakeSettings();
  plot_.GetHost().setAbortRequested(false);
  if (!animator_.BeginAnimate()) return;
  plot_.Busy = true;
  plot_.Picture()->SetPointerBlocked(true);
  ShowAnimateButton(true);
  timAnimate_->start(animator_.AnimateDelay);
  Tick();  // the first entity at once
}

void AnimationCommands::Tick() {
  if (!animator_.AnimateNext()) Finish();
}

void AnimationCommands::Finish() {
  timAnimate_->stop();
  plot_.Busy = false;
  plot_.Picture()->SetPointerBlocked(false);
  ShowAnimateButton(false);
}

void AnimationCommands::Pause() {
  animator_.Pause();
}

void AnimationCommands::StepForward() {
  if (plot_.Busy) return;
  TakeSettings();
  animator_.StepForward();
}

void AnimationCommands::StepBackward() {
  if (plot_.Busy) return;
  TakeSettings();
  animator_.StepBackward();
}

void AnimationCommands::Rewind() {
  if (plot_.Busy) return;
  animator_.Rewind();
}

void AnimationCommands::FastForward() {
  if (plot_.Busy) return;
  animator_.FastForward();
}

}  // namespace zemtra
