#include <gtest/gtest.h>

#include <string>

#include "PlotFixture.h"
#include "interp/PartInformation.h"
#include "interp/PlotRange.h"

namespace zemtra {
namespace {

using test::PlotFixture;

TEST(PartInformation, TimeTexts) {
  const struct {
    double seconds;
    const char* letters;
    const char* colons;
  } cases[] = {
      {3661, "1h:01m:01s", "1:01:01"},
      {0, "0m:00s", "0:00"},
      {59.6, "1m:00s", "1:00"},
      {61, "1m:01s", "1:01"},
      {86400, "1d:00h:00m:00s", "1:00:00:00"},
      {90061, "1d:01h:01m:01s", "1:01:01:01"},
      {36000, "10h:00m:00s", "10:00:00"},
  };
  for (const auto& c : cases) {
    EXPECT_EQ(TimeText(c.seconds, false), c.letters) << c.seconds;
    EXPECT_EQ(TimeText(c.seconds, true), c.colons) << c.seconds;
  }
}

TEST(PartInformation, TimesAndLengths) {
  PartFigures figures;
  figures.RapidDistance = 250;
  figures.FeedDistance = 30;
  figures.FeedTime = 180;
  figures.ToolChanges = 3;
  figures.MaxArcDeviation = 0.00125;
  const PartInfoTexts texts = ComputePartInfo(figures, "100", "5");
  EXPECT_EQ(texts.FeedL, "30.0");
  EXPECT_EQ(texts.TotalFeed, "3m:00s");
  EXPECT_EQ(texts.AverageFR, "10.0");
  EXPECT_EQ(texts.RapidL, "250.0");
  EXPECT_EQ(texts.TotalRapid, "2m:30s");
  EXPECT_EQ(texts.ToolC, "3");
  EXPECT_EQ(texts.TotalTC, "0m:15s");
  EXPECT_EQ(texts.Total, "5m:45s");
  EXPECT_EQ(texts.MaxArcError, "0.00125");
  // No rapid rate, no feed: zeros, not failures.
  figures.FeedTime = 0;
  for (const char* rate : {"0", "", "fast"}) {
    const PartInfoTexts zero = ComputePartInfo(figures, rate, "");
    EXPECT_EQ(zero.TotalRapid, "0m:00s") << rate;
    EXPECT_EQ(zero.AverageFR, "0");
    EXPECT_EQ(zero.TotalTC, "0m:00s");
  }
}

TEST(PartInformation, ExtentsOfAPlotAndItsToolChanges) {
  PlotFixture fx;
  fx.Plot("G0X-1.Y-2.Z5.|G1Z-1.F60.|T2M6|X3.Y4.|T3M6|G0Z5.");
  PartInfoTexts texts = ComputePartInfo(PartFiguresOf(fx.table, fx.interpreter), "100", "5");
  EXPECT_EQ(texts.XMinus, "-1.0");
  EXPECT_EQ(texts.XPlus, "3.0");
  EXPECT_EQ(texts.XWidth, "4.0");
  EXPECT_EQ(texts.YHeight, "6.0");
  EXPECT_EQ(texts.ZMinus, "-1.0");
  EXPECT_EQ(texts.ZDepth, "6.0");
  EXPECT_EQ(texts.ToolC, "2");
  EXPECT_EQ(texts.TotalFeed, "0m:13s");  // 6 + sqrt(52) at 60 per minute

  PartFigures lathe = PartFiguresOf(fx.table, fx.interpreter);
  lathe.Lathe = lathe.Diameter = true;
  texts = ComputePartInfo(lathe, "100", "5");
  EXPECT_EQ(texts.XMinus, "-2.0");
  EXPECT_EQ(texts.XWidth, "8.0");
}

// ---------------------------------------------------------------------------------------------
// Plot ranges

TEST(PlotRange, RangesOfTheCursorAndTheSelection) {
  PlotFixture fx;
  ASSERT_EQ(fx.Plot("G0X0Y0|G1X1.|G1Y1.|G0G28X5.|G1X6."), 5);

  const PlotRange to = PlotToCursor(fx.table, 2);
  EXPECT_EQ(to.First, 1);
  EXPECT_EQ(to.Last, 2);
  EXPECT_TRUE(to.Active);
  EXPECT_EQ(to.EndPoint, fx.table[2].EndPoint);
  EXPECT_EQ(to.WorkOffset, fx.table[2].WorkOffset);

  PlotRange from = PlotFromCursor(fx.table, 4, to);  // a range is active: from its end
  EXPECT_EQ(from.First, 2);
  EXPECT_EQ(from.Last, 5);
  EXPECT_FALSE(from.Active);
  from = PlotFromCursor(fx.table, 4, from);
  EXPECT_EQ(from.First, 4);
  EXPECT_EQ(PlotFromCursor(fx.table, 0, from).First, 1);

  const PlotRange start = StartAtCursor(fx.table, 3);
  EXPECT_EQ(start.First, 3);
  EXPECT_EQ(start.Last, 2);
  EXPECT_TRUE(start.Active);

  const PlotRange selected = PlotSelectedBlocks(fx.table, 1, 4);
  EXPECT_EQ(selected.First, 2);
  EXPECT_EQ(selected.Last, 4);
  // Nothing drawn: the marker stands at the start of the path.
  const PlotRange none = PlotToCursor(fx.table, 0);
  EXPECT_EQ(none.EndPoint, fx.table[1].StartPoint);

  ApplyPlotRange(fx.table, selected);
  EXPECT_EQ(fx.table.GeoFirst, 2);
  EXPECT_EQ(fx.table.GeoLast, 4);
}

}  // namespace
}  // namespace zemtra
