#include "dnc/TransmitClock.h"

#include <algorithm>
#include <cmath>
#include <cstdio>

namespace zemtra {

void TransmitClock::Start(double now) {
  state_ = State::Running;
  runStart_ = now;
  counted_ = 0;
}

void TransmitClock::Pause(double now) {
  if (state_ != State::Running) return;
  counted_ += std::max(0.0, now - runStart_);
  state_ = State::Paused;
}

void TransmitClock::Resume(double now) {
  if (state_ != State::Paused) return;
  runStart_ = now;
  state_ = State::Running;
}

void TransmitClock::Stop(double now) {
  Pause(now);
  if (state_ == State::Paused) state_ = State::Stopped;
}

double TransmitClock::Elapsed(double now) const {
  if (state_ == State::Running) return counted_ + std::max(0.0, now - runStart_);
  return counted_;
}

std::string ClockText(double seconds) {
  long long total = std::isfinite(seconds) && seconds > 0 ? static_cast<long long>(seconds) : 0;
  const long long days = total / 86400;
  const int hours = static_cast<int>(total % 86400 / 3600);
  const int minutes = static_cast<int>(total % 3600 / 60);
  const int secs = static_cast<int>(total % 60);
  char text[64];
  if (days > 0)
    std::snprintf(text, sizeof text, "%lld:%02d:%02d:%02d", days, hours, minutes, secs);
  else if (hours > 0)
    std::snprintf(text, sizeof text, "%d:%02d:%02d", hours, minutes, secs);
  else
    std::snprintf(text, sizeof text, "%d:%02d", minutes, secs);
  return text;
}

}  // namespace zemtra
