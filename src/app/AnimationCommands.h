#pragma once
// Replaying the plotted path from the Plot menu and the tool bar: animate, pause, step forward
// and backward (also the keys "S" and "B" of the picture), rewind and forward to the end. A
// timer drives the animation one entity per tick, so the window stays alive meanwhile; the
// tool bar's "animate" button turns into "Pause" while it runs.
#include <QObject>

#include "view/Animator.h"

class QAction;
class QTimer;

namespace zemtra {

class Plot;

class AnimationCommands : public QObject {
  Q_OBJECT
 public:
  explicit AnimationCommands(Plot& plot);

  void Animate();
  void Pause();
  void StepForward();
  void StepBackward();
  void Rewind();
  void FastForward();

  Animator& Replay() { return animator_; }

 private:
  void AddActions();
  void TakeSettings();
  void Tick();
  void Finish();
  void ShowAnimateButton(bool animating);

  Plot& plot_;
  Animator animator_;
  QTimer* timAnimate_ = nullptr;
  QAction* animateButton_ = nullptr;
};

}  // namespace zemtra
