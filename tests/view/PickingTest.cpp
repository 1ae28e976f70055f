// Picking and selecting in the picture: the nearest entity, ties, window and crossing boxes,
// click modes, the links between program lines and entities, and the selection commands.
#include "view/Picking.h"

#include <gtest/gtest.h>

#include "view/Selection.h"
#include "view/ViewTestSupport.h"
#include "view/Views.h"

namespace zemtra {
namespace {

using test::Arc;
using test::Fill;
using test::Line;
using test::P;

struct Picture : test::ViewportRig {
  Picture() : ViewportRig(400, 300) {}
  void Load(std::initializer_list<GeoEntity> entities, int view = kViewTop) {
    viewport.View.CurrentView = static_cast<std::int16_t>(view);
    LoadTable(entities);
  }
  std::int32_t PickAt(const GeoPoint& p, bool selectedOnly = false) const {
    const auto [u, v] = At(p);
    return FindEntityAt(table, viewport, u, v, selectedOnly);
  }
  double Pixels(double n) const { return n * viewport.View.UnitsPerPixel; }
  std::vector<int> Selected() const {
    std::vector<int> found;
    for (std::int32_t i = 1; i <= table.HighestIndex(); ++i) {
      if (table[i].Selected == 255) found.push_back(i);
      EXPECT_TRUE(table[i].Selected == 0 || table[i].Selected == 255);
    }
    return found;
  }
};

GeoEntity PointAt(GeoPoint p) {
  return Line(kPoint, p, p);
}

TEST(FindEntityAt, TakesTheNearestAndTheLaterOfTwoEqualInEveryView) {
  for (int view = 0; view < kViewCount; ++view) {
    SCOPED_TRACE(view);
    Picture pic;
    pic.Load({Line(kFeed, P(0, 0, 0), P(10, 0, 0)), Line(kFeed, P(0, 0, 0), P(10, 0, 0)),
              Line(kFeed, P(0, 10, 5), P(10, 10, 5))},
             view);
    EXPECT_EQ(pic.PickAt(P(10, 0, 0)), 2);
    EXPECT_EQ(pic.PickAt(P(10, 10, 5)), 3);
  }
}

TEST(FindEntityAt, HitsWithinEightPixelsOnly) {
  Picture pic;
  pic.Load({Line(kFeed, P(0, 0), P(10, 0)), Line(kFeed, P(0, 5), P(10, 5))});
  auto [u, v] = pic.At(P(5, 0));
  EXPECT_EQ(FindEntityAt(pic.table, pic.viewport, u, v - pic.Pixels(7.5), false), 1);
  EXPECT_EQ(FindEntityAt(pic.table, pic.viewport, u, v - pic.Pixels(8.5), false), -1);
  // Past the end of a line the distance is to the end point.
  std::tie(u, v) = pic.At(P(10, 0));
  EXPECT_EQ(FindEntityAt(pic.table, pic.viewport, u + pic.Pixels(6), v - pic.Pixels(6), false), -1);
  EXPECT_EQ(FindEntityAt(pic.table, pic.viewport, u + pic.Pixels(5), v, false), 1);
}

TEST(FindEntityAt, FollowsTheDrawnShapes) {
  Picture pic;
  // A half circle above the X axis, and the same arc's chord below it.
  pic.Load({Arc(kArcCCW, P(10, 0), P(-10, 0), P(0, 0), 10), Line(kFeed, P(-10, -1), P(10, -1))});
  EXPECT_EQ(pic.PickAt(P(0, 10)), 1);
  EXPECT_EQ(pic.PickAt(P(7.0710678f, 7.0710678f)), 1);
  EXPECT_EQ(pic.PickAt(P(0, 5)), -1);  // inside the arc, far from its chords
}

TEST(FindEntityAt, APointWithinReachEndsTheSearch) {
  Picture pic;
  pic.Load({PointAt(P(5, 0)), Line(kFeed, P(0, 0), P(10, 0)), Line(kFeed, P(0, 20), P(1, 20))});
  EXPECT_EQ(pic.PickAt(P(5, 0)), 1);
  EXPECT_EQ(pic.PickAt(P(6, 0)), 2);
}

TEST(FindEntityAt, SkipsHiddenAndUndrawnAndUnselectedEntities) {
  Picture pic;
  pic.Load({Line(kRapid, P(0, 0), P(10, 0)), Line(kFeed, P(0, 5), P(10, 5)),
            Line(kFeed, P(0, 10), P(10, 10))});
  EXPECT_EQ(pic.PickAt(P(5, 0)), 1);
  pic.viewport.Switches.ShowRapid = false;
  EXPECT_EQ(pic.PickAt(P(5, 0)), -1);
  pic.viewport.DrawLast = 2;
  EXPECT_EQ(pic.PickAt(P(5, 10)), -1);
  EXPECT_EQ(pic.PickAt(P(5, 5), true), -1);
  pic.table[2].Selected = 255;
  EXPECT_EQ(pic.PickAt(P(5, 5), true), 2);
}

TEST(FindEntityAt, GivesTheViewBoxOfWhatItLookedAt) {
  Picture pic;
  pic.Load({Line(kFeed, P(0, 0), P(10, 0)), Line(kFeed, P(0, 0), P(0, 4))});
  ViewBox box;
  const auto [u, v] = pic.At(P(100, 100));
  EXPECT_EQ(FindEntityAt(pic.table, pic.viewport, u, v, false, &box), -1);
  const auto [u0, v0] = pic.At(P(0, 0));
  const auto [u1, v1] = pic.At(P(10, 4));
  EXPECT_FLOAT_EQ(box.LowU, static_cast<float>(u0));
  EXPECT_FLOAT_EQ(box.HighU, static_cast<float>(u1));
  EXPECT_FLOAT_EQ(box.LowV, static_cast<float>(v1));  // v grows downward
  EXPECT_FLOAT_EQ(box.HighV, static_cast<float>(v0));
}

// Inside: 1; across the right edge: 2; outside: 3; an arc whose ends are inside but whose
// bulge leaves the box: 4; a point inside: 5.
struct BoxCase {
  const char* name;
  bool rightToLeft;
  std::vector<int> selected;
  std::int32_t returned;
};

TEST(SelectWindow, WindowEnclosesCrossingTouches) {
  const BoxCase cases[] = {
      {"left to right selects what is wholly inside", false, {1, 5}, 5},
      {"right to left selects what touches", true, {1, 2, 4, 5}, 5},
  };
  for (const BoxCase& c : cases) {
    SCOPED_TRACE(c.name);
    Picture pic;
    pic.Load({Line(kFeed, P(1, 1), P(3, 3)), Line(kFeed, P(4, 1), P(20, 1)),
              Line(kFeed, P(30, 30), P(31, 31)), Arc(kArcCW, P(2, 8), P(8, 8), P(5, 8), 3),
              PointAt(P(5, 5))});
    // The box from (0, 0) to (10, 10) in machine X, Y.
    auto [u0, v0] = pic.At(P(0, 10));
    auto [u1, v1] = pic.At(P(10, 0));
    if (c.rightToLeft) std::swap(u0, u1), std::swap(v0, v1);
    EXPECT_EQ(SelectWindow(pic.table, pic.viewport, u0, v0, u1, v1), c.returned);
    EXPECT_EQ(pic.Selected(), c.selected);
  }
}

TEST(SelectWindow, KeepsTheSelectionAndSeesEveryView) {
  for (int view = 0; view < kViewCount; ++view) {
    SCOPED_TRACE(view);
    Picture pic;
    pic.Load({Line(kFeed, P(0, 0, 0), P(1, 1, 1)), Line(kFeed, P(5, 5, 5), P(9, 9, 9))}, view);
    pic.table[2].Selected = 255;
    const auto [u, v] = pic.At(P(1, 1, 1));
    const double r = pic.Pixels(30);
    const auto [u0, v0] = pic.At(P(0, 0, 0));
    SelectWindow(pic.table, pic.viewport, std::min(u, u0) - r, std::min(v, v0) - r,
                 std::max(u, u0) + r, std::max(v, v0) + r);
    EXPECT_EQ(pic.Selected(), (std::vector<int>{1, 2}));
  }
}

TEST(SelectWindow, BoxesUnderEightPixelsAreClicks) {
  const double upp = 0.1;
  EXPECT_FALSE(IsSelectionBox(0, 0, 0.79, -0.79, upp));
  EXPECT_TRUE(IsSelectionBox(0, 0, 0.81, 0, upp));
  EXPECT_TRUE(IsSelectionBox(1, 1, 1, 0.1, upp));
}

TEST(SelectAtPoint, PlainShiftAndCtrlClicks) {
  Picture pic;
  pic.Load({Line(kFeed, P(0, 0), P(10, 0)), Line(kFeed, P(0, 5), P(10, 5))});
  const auto [u1, v1] = pic.At(P(5, 0));
  const auto [u2, v2] = pic.At(P(5, 5));
  EXPECT_EQ(SelectAtPoint(pic.table, pic.viewport, u1, v1, 0), 1);
  EXPECT_EQ(SelectAtPoint(pic.table, pic.viewport, u2, v2, 1), 2);
  EXPECT_EQ(pic.Selected(), (std::vector<int>{1, 2}));
  EXPECT_EQ(CountSelected(pic.table), 2);
  EXPECT_EQ(SelectAtPoint(pic.table, pic.viewport, u1, v1, 2), 1);
  EXPECT_EQ(pic.Selected(), (std::vector<int>{2}));
  EXPECT_EQ(SelectAtPoint(pic.table, pic.viewport, u2, v2, 0), 2);
  // A plain click in empty space clears the selection.
  const auto [u, v] = pic.At(P(50, 50));
  EXPECT_EQ(SelectAtPoint(pic.table, pic.viewport, u, v, 0), -1);
  EXPECT_EQ(CountSelected(pic.table), 0);
}

TEST(FindEntityOfLine, AnswersTheLastEntityOfTheLinesUpToIt) {
  GeometryTable empty;
  EXPECT_EQ(FindEntityOfLine(empty, 3), 0);
  GeometryTable table;
  GeoEntity e = Line(kFeed, P(0, 0), P(1, 0));
  table.Begin();
  for (int line : {2, 2, 4, 5}) {
    e.LineNumber = line;
    table.Add(e);
  }
  table.End();
  const std::pair<int, int> cases[] = {{1, 0}, {2, 2}, {3, 2}, {4, 3}, {5, 4}, {9, 4}};
  for (const auto& [line, index] : cases) EXPECT_EQ(FindEntityOfLine(table, line), index) << line;
  EXPECT_EQ(SelectLines(table, 2, 2), 2);
  EXPECT_EQ(SelectLines(table, 3, 4), 1);  // line 3 made nothing: the last of line 2, then 4
  EXPECT_EQ(CountSelected(table), 3);
  EXPECT_EQ(table[4].Selected, 0);
}

TEST(SelectByZ, ConsidersOnlyFlatEntities) {
  Picture pic;
  pic.Load({Line(kFeed, P(0, 0, -1), P(5, 0, -1)), Line(kFeed, P(5, 0, -1), P(5, 0, -2)),
            Line(kFeed, P(5, 0, -2), P(9, 0, -2)), Line(kFeed, P(0, 3, -1), P(5, 3, -1)),
            Line(kFeed, P(0, 3, 1), P(5, 3, -1))});
  EXPECT_EQ(FlatZCandidate(pic.table, pic.viewport), "");
  pic.table[2].Selected = 255;  // rises: no candidate
  EXPECT_EQ(FlatZCandidate(pic.table, pic.viewport), "");
  pic.table[1].Selected = 255;
  EXPECT_EQ(FlatZCandidate(pic.table, pic.viewport), "-1");
  EXPECT_EQ(SelectByZ(pic.table, pic.viewport, -1.0f), 1);
  EXPECT_EQ(pic.Selected(), (std::vector<int>{1, 2, 4}));
  pic.table[3].Selected = 255;  // a second, different Z
  EXPECT_EQ(FlatZCandidate(pic.table, pic.viewport), "");
  EXPECT_EQ(AddedToSelectionText(1), "1 entities added to selection");
}

TEST(SelectByRadius, TakesArcsOfExactlyThatRadius) {
  Picture pic;
  pic.Load({Arc(kArcCW, P(0, 0), P(2, 0), P(1, 0), 1), Arc(kArcCCW, P(5, 0), P(7, 0), P(6, 0), 1),
            Arc(kArcCW, P(0, 5), P(3, 5), P(1.5f, 5), 1.5f), Line(kFeed, P(0, 9), P(1, 9))});
  pic.table[1].Selected = 255;
  EXPECT_EQ(RadiusCandidate(pic.table, pic.viewport), "1");
  EXPECT_EQ(SelectByRadius(pic.table, pic.viewport, 1.0f), 1);
  EXPECT_EQ(pic.Selected(), (std::vector<int>{1, 2}));
  pic.table[3].Selected = 255;
  EXPECT_EQ(RadiusCandidate(pic.table, pic.viewport), "");
}

TEST(SelectChains, AddsTheFlatChainThroughEachSelectedEntity) {
  Picture pic;
  pic.Load({Line(kRapid, P(0, 0, 5), P(0, 0, -1)), Line(kFeed, P(0, 0, -1), P(5, 0, -1)),
            Line(kFeed, P(5, 0, -1), P(5, 5, -1)), Line(kFeed, P(5, 5, -1), P(0, 0, -1)),
            Line(kRapid, P(0, 0, -1), P(0, 0, 5)), Line(kFeed, P(20, 0, -1), P(25, 0, -1))});
  pic.table[3].Selected = 255;
  EXPECT_EQ(SelectChains(pic.table, false), 2);
  EXPECT_EQ(pic.Selected(), (std::vector<int>{2, 3, 4}));
}

TEST(DeleteSelected, RemovesThemKeepingTheOrder) {
  GeometryTable table;
  Fill(table, {Line(kFeed, P(0, 0), P(1, 0)), Line(kFeed, P(1, 0), P(2, 0)),
               Line(kFeed, P(2, 0), P(3, 0)), Line(kFeed, P(3, 0), P(4, 0))});
  table[1].Selected = 255;
  table[3].Selected = 255;
  EXPECT_EQ(DeleteSelected(table), 2);
  ASSERT_EQ(table.HighestIndex(), 2);
  EXPECT_EQ(table[1].EndPoint.X, 2);
  EXPECT_EQ(table[2].EndPoint.X, 4);
  EXPECT_EQ(DeleteSelected(table), 0);
}

}  // namespace
}  // namespace zemtra
