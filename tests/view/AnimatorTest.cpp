// Replaying the path: the ranges drawn while animating, pausing and stepping, and where the
// marker and the program caret go.
#include "view/Animator.h"

#include <gtest/gtest.h>

#include "view/ViewTestSupport.h"

namespace zemtra {
namespace {

using test::Line;
using test::P;

// Seven feeds along X, entity i made by program line 10 + i.
struct Replay : test::ViewportRig {
  explicit Replay(int count = 7) : animator(table, viewport, host) {
    table.Begin();
    for (int i = 1; i <= count; ++i) {
      GeoEntity e = Line(kFeed, P(static_cast<float>(i - 1), 0), P(static_cast<float>(i), 0));
      e.LineNumber = 10 + i;
      e.WorkOffset = P(0, 0, static_cast<float>(i));
      table.Add(e);
    }
    table.End();
    viewport.LoadGeometry(table.HighestIndex());
  }
  std::pair<int, int> Range() const { return {viewport.DrawFirst, viewport.DrawLast}; }
  int Finished() const {
    int n = 0;
    for (const auto& shown : host.shown) n += shown.prompt.text == "Program Finished";
    return n;
  }
  Animator animator;
};

TEST(Animator, AnimatesEveryEntityAndEndsAtTheLast) {
  Replay r;
  r.animator.AnimateDelay = 0;
  ASSERT_TRUE(r.animator.BeginAnimate());
  EXPECT_FALSE(r.animator.BeginAnimate());  // one at a time
  EXPECT_TRUE(r.viewport.RepaintBlocked);
  int calls = 1;
  while (r.animator.AnimateNext()) ++calls;
  EXPECT_EQ(calls, 7);  // one event-loop turn per entity, however short the delay
  EXPECT_EQ(r.Range(), std::make_pair(1, 7));
  EXPECT_EQ(r.animator.AnimIndex, 7);
  EXPECT_FALSE(r.animator.AnimationPaused);
  EXPECT_FALSE(r.viewport.RepaintBlocked);
  EXPECT_EQ(r.host.caretLines, (std::vector<int>{11, 12, 13, 14, 15, 16, 17}));
  EXPECT_EQ(r.viewport.Marker.CurrentPosition, P(7, 0));
  EXPECT_EQ(r.viewport.Marker.CurrentOffset, P(0, 0, 7));
}

TEST(Animator, PauseThenAnimateGoesOnWithTheNextEntity) {
  Replay r;
  ASSERT_TRUE(r.animator.BeginAnimate());
  EXPECT_TRUE(r.animator.AnimateNext());
  EXPECT_TRUE(r.animator.AnimateNext());
  r.animator.Pause();
  EXPECT_FALSE(r.animator.AnimateNext());
  EXPECT_TRUE(r.animator.AnimationPaused);
  EXPECT_EQ(r.Range(), std::make_pair(1, 2));
  ASSERT_TRUE(r.animator.BeginAnimate());
  EXPECT_TRUE(r.animator.AnimateNext());
  EXPECT_EQ(r.Range(), std::make_pair(1, 3));
  EXPECT_EQ(r.host.caretLines.back(), 13);
}

TEST(Animator, StepsByEntitiesPerStepAndFinishesOnce) {
  Replay r;
  r.animator.EntitiesPerStep = 5;
  r.animator.StepForward();
  EXPECT_EQ(r.Range(), std::make_pair(1, 5));
  EXPECT_TRUE(r.animator.AnimationPaused);
  r.animator.StepForward();  // two more, then the end
  EXPECT_EQ(r.Range(), std::make_pair(1, 7));
  EXPECT_EQ(r.Finished(), 1);
  EXPECT_FALSE(r.animator.AnimationPaused);
  EXPECT_EQ(r.viewport.Marker.CurrentPosition, P(7, 0));
  r.animator.StepForward();  // stepping starts over
  EXPECT_EQ(r.Range(), std::make_pair(1, 5));
  EXPECT_EQ(r.Finished(), 1);
}

TEST(Animator, StepBackwardTakesEntitiesOffWhileStepping) {
  Replay r;
  r.animator.StepBackward();  // not stepping: nothing
  EXPECT_EQ(r.Range(), std::make_pair(1, 7));
  r.animator.EntitiesPerStep = 2;
  r.animator.StepForward();
  r.animator.StepForward();
  EXPECT_EQ(r.Range(), std::make_pair(1, 4));
  r.animator.EntitiesPerStep = 3;
  r.animator.StepBackward();
  EXPECT_EQ(r.Range(), std::make_pair(1, 1));
  EXPECT_EQ(r.host.caretLines.back(), 11);
  r.animator.StepBackward();
  EXPECT_EQ(r.Range(), std::make_pair(1, 0));
  EXPECT_EQ(r.viewport.Marker.CurrentPosition, P(0, 0));
}

TEST(Animator, RewindAndForwardToEndAlsoOnAnEmptyTable) {
  Replay r;
  r.animator.StepForward();
  r.animator.Rewind();
  EXPECT_EQ(r.Range(), std::make_pair(1, 0));
  EXPECT_FALSE(r.animator.AnimationPaused);
  EXPECT_EQ(r.viewport.Marker.CurrentPosition, P(0, 0));
  EXPECT_EQ(r.viewport.Marker.CurrentOffset, P(0, 0, 1));
  EXPECT_EQ(r.host.caretLines.back(), 11);
  r.animator.FastForward();
  EXPECT_EQ(r.Range(), std::make_pair(1, 7));
  EXPECT_EQ(r.host.caretLines.back(), 17);
  // An empty table rewinds to the first line and does not animate.
  Replay empty(0);
  empty.animator.Rewind();
  EXPECT_EQ(empty.host.caretLines, std::vector<int>{1});
  EXPECT_FALSE(empty.animator.BeginAnimate());
}

}  // namespace
}  // namespace zemtra
