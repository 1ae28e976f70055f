#include "view/Animator.h"

#include <algorithm>

#include "core/GeometryTable.h"
#include "core/Host.h"
#include "core/Version.h"
#include "view/Viewport.h"

namespace zemtra {

Animator::Animator(const GeometryTable& table, Viewport& view, Host& host)
    : table_(table), view_(view), host_(host) {}

std::int32_t Animator::Count() const {
  return std::min(view_.EntityCount(), table_.HighestIndex());
}

bool Animator::BeginAnimate() {
  if (animating_ || Count() == 0 || view_.RepaintBlocked || view_.Painting) return false;
  PauseRequest = false;
  if (!AnimationPaused) {
    view_.StartPicture();
    view_.DrawFirst = 1;
    view_.DrawLast = 0;
  }
  animating_ = true;
  // The picture grows entity by entity; a repaint meanwhile would fight it.
  view_.RepaintBlocked = true;
  return true;
}

bool Animator::AnimateNext() {
  if (!animating_) return false;
  if (PauseRequest || host_.abortRequested()) {
    AnimationPaused = true;
    EndAnimation();
    return false;
  }
  const std::int32_t next = view_.DrawLast + 1;
  if (next <= Count()) {
    AnimIndex = next;
    ShowEntity(next);
  }
  if (next < Count()) return true;
  AnimationPaused = false;
  AnimIndex = Count();
  EndAnimation();
  return false;
}

void Animator::EndAnimation() {
  animating_ = false;
  view_.RepaintBlocked = false;
  view_.FlushEntities();
}

void Animator::StepForward() {
  if (animating_) return;
  const std::int32_t perStep = std::max<std::int32_t>(1, EntitiesPerStep);
  std::int32_t target = view_.DrawLast + perStep;
  while (true) {
    if (!AnimationPaused) {
      // Stepping starts a fresh picture with the first entity.
      view_.StartPicture();
      view_.DrawFirst = 1;
      view_.DrawLast = 1;
      target = perStep;
      AnimationPaused = true;
    } else {
      ++view_.DrawLast;
    }
    if (view_.DrawLast > Count()) {
      --view_.DrawLast;
      AnimationPaused = false;
      host_.ask(Prompt{"Program Finished", kProductName, MsgIcon::None, MsgButtons::Ok});
      break;
    }
    view_.DrawEntityNow(view_.DrawLast);
    if (view_.DrawLast >= target) break;
  }
  view_.FlushEntities();
  if (view_.DrawLast > 0) Follow(view_.DrawLast);
}

void Animator::StepBackward() {
  if (animating_ || !AnimationPaused || view_.DrawLast == 0) return;
  const std::int32_t perStep = std::max<std::int32_t>(1, EntitiesPerStep);
  view_.DrawLast = std::max(0, view_.DrawLast - perStep);
  if (view_.DrawLast < view_.DrawFirst) view_.DrawFirst = 1;
  if (view_.DrawLast > 0) {
    Follow(view_.DrawLast);
  } else {
    FollowStart();
  }
  view_.DrawGeometryTable();
}

void Animator::Rewind() {
  if (animating_) return;
  AnimationPaused = false;
  view_.DrawFirst = 1;
  view_.DrawLast = 0;
  FollowStart();
  view_.DrawGeometryTable();
}

void Animator::FastForward() {
  if (animating_) return;
  AnimationPaused = false;
  view_.DrawFirst = 1;
  view_.DrawLast = Count();
  if (Count() > 0) Follow(Count());
  view_.DrawGeometryTable();
}

void Animator::ShowEntity(std::int32_t index) {
  view_.DrawEntityNow(index);
  view_.DrawLast = index;
  view_.FlushEntities();
  Follow(index);
}

// The marker and the program caret at the end of entity `index`.
void Animator::Follow(std::int32_t index) {
  const GeoEntity& e = table_[index];
  view_.Marker.CurrentPosition = e.EndPoint;
  view_.Marker.CurrentOffset = e.WorkOffset;
  view_.DrawMarker();
  if (!view_.DXFMode) host_.moveCaret(std::max(1, e.LineNumber));
}

// The marker at the start of the first entity (the program's first line for an empty table).
void Animator::FollowStart() {
  if (Count() == 0) {
    if (!view_.DXFMode) host_.moveCaret(1);
    return;
  }
  const GeoEntity& first = table_[1];
  view_.Marker.CurrentPosition = first.StartPoint;
  view_.Marker.CurrentOffset = first.WorkOffset;
  view_.DrawMarker();
  if (!view_.DXFMode) host_.moveCaret(std::max(1, first.LineNumber));
}

}  // namespace zemtra
