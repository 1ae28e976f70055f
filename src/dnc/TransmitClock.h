#pragma once
// The running time of a send, without the time spent paused. Times are seconds on any
// steady clock, passed in so that the rule can be checked without waiting.
#include <string>

namespace zemtra {

class TransmitClock {
 public:
  void Start(double now);            // starts from zero, running
  void Pause(double now);            // stops counting; a second pause does nothing
  void Resume(double now);           // counts again; does nothing unless paused
  void Stop(double now);             // freezes the total
  double Elapsed(double now) const;  // seconds counted so far, never negative
  bool Paused() const { return state_ == State::Paused; }

 private:
  enum class State { Idle, Running, Paused, Stopped };
  State state_ = State::Idle;
  double runStart_ = 0;  // when the current running stretch began
  double counted_ = 0;   // seconds of the stretches that ended
};

// A clock text of whole seconds: "m:ss", "h:mm:ss" with hours, "d:hh:mm:ss" with days.
std::string ClockText(double seconds);

}  // namespace zemtra
