#pragma once
// Replaying the tool path: animating entity by entity, pausing and going on, stepping forward
// and backward, rewinding and going to the end. The picture's range DrawFirst..DrawLast is the
// part of the path shown; the marker and the program caret follow the entity reached.
//
// The animation does not loop by itself: the window calls AnimateNext() from a timer every
// AnimateDelay milliseconds, so that events run between entities.
#include <cstdint>

namespace zemtra {

class GeometryTable;
class Host;
class Viewport;

class Animator {
 public:
  // The table, the viewport and the host must outlive the animator.
  Animator(const GeometryTable& table, Viewport& view, Host& host);

  // Starts (or, after a pause, goes on with) the animation. False, with nothing changed, when
  // one is running or the table is empty. Clears PauseRequest.
  bool BeginAnimate();
  // Draws the next entity of a running animation. False when the run has ended: at the end of
  // the table (AnimationPaused cleared) or on a pause or abort request (AnimationPaused set).
  bool AnimateNext();
  // Asks the running animation to stop after the entity being shown.
  void Pause() { PauseRequest = true; }
  bool Animating() const { return animating_; }

  // Adds EntitiesPerStep entities to the picture (the first step starts a fresh picture).
  // Past the end: "Program Finished", and stepping starts over the next time.
  void StepForward();
  // Takes EntitiesPerStep entities off the picture while stepping.
  void StepBackward();
  // An empty picture, the position at the first entity's start.
  void Rewind();
  // The whole path, the position at the last entity.
  void FastForward();

  std::int32_t AnimIndex = 0;       // the entity now animated
  std::int32_t AnimateDelay = 100;  // milliseconds between entities
  std::int16_t EntitiesPerStep = 1;
  bool AnimationPaused = false;  // an animation or stepping may go on where it stopped
  bool PauseRequest = false;

 private:
  std::int32_t Count() const;
  void ShowEntity(std::int32_t index);
  void Follow(std::int32_t index);
  void FollowStart();
  void EndAnimation();

  const GeometryTable& table_;
  Viewport& view_;
  Host& host_;
  bool animating_ = false;
};

}  // namespace zemtra
