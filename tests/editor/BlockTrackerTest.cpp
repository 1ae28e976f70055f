#include <gtest/gtest.h>

#include "FilterTestSupport.h"
#include "editor/BlockTracker.h"

namespace zemtra {
namespace {

TEST(BlockTracker, FollowsPositionsAndModalCodes) {
  MachineConfig mill = test::MillConfig();
  mill.CoordinateResolution = 0.001;
  BlockTracker tracker(mill);
  EXPECT_FALSE(tracker.TrackBlock("(comment only)"));
  EXPECT_FALSE(tracker.TrackBlock("#1=2"));
  EXPECT_FALSE(tracker.TrackBlock("IF [#1 GT 2] GOTO 10"));
  EXPECT_FALSE(tracker.TrackBlock("G1 [#1] X2"));
  ASSERT_TRUE(tracker.TrackBlock("N10 G1 X1500 Y2. Z[1+2]"));
  const TrackedBlock& block = tracker.Block();
  EXPECT_EQ(block.Present, (std::array<float, 3>{1.5f, 2, 3}));
  EXPECT_EQ(block.Previous[0], kUntrackedPosition);
  EXPECT_EQ(block.Motion(), 1);
  EXPECT_TRUE(block.Has('Z'));
  ASSERT_TRUE(tracker.TrackBlock("G91 X1. G92"));
  EXPECT_EQ(block.Present[0], 2.5f);
  EXPECT_FLOAT_EQ(block.ModalG[0], 92);
  ASSERT_TRUE(tracker.TrackBlock("X1. Y#5"));  // an empty variable clears nothing but Y's word
  EXPECT_EQ(block.ModalG[0], 0);
  EXPECT_EQ(block.Present[0], 3.5f);
}

TEST(BlockTracker, LatheWordsAreDiametersAndIncrements) {
  MachineConfig lathe = test::MillConfig();
  lathe.MachineType = 1;
  lathe.LatheXDiameter = kFlagTrue;
  BlockTracker tracker(lathe);
  ASSERT_TRUE(tracker.TrackBlock("G0 X4. Z1."));
  ASSERT_TRUE(tracker.TrackBlock("G1 U-1. W-2."));
  EXPECT_EQ(tracker.Block().Present, (std::array<float, 3>{1.5f, kUntrackedPosition, -1}));
}

}  // namespace
}  // namespace zemtra
