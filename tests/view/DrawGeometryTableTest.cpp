#include <gtest/gtest.h>

#include <chrono>
#include <stdexcept>
#include <thread>

#include "core/GeometryTable.h"
#include "core/RecordingHost.h"
#include "view/EntityPainter.h"
#include "view/RecordingSurface.h"
#include "view/ViewTestSupport.h"
#include "view/Viewport.h"

namespace zemtra {
namespace {

using test::Arc;
using test::Fill;
using test::Line;
using test::P;
using Kind = RecordingSurface::Kind;

constexpr ColorValue kWhite = 0xFFFFFF;

// Polylines of entities in `color`: pen width 1 (the triad's arms are 2 wide).
std::vector<RecordingSurface::Call> Moves(const RecordingSurface& surface, ColorValue color) {
  std::vector<RecordingSurface::Call> found;
  for (const auto& call : surface.PolylinesIn(color)) {
    if (call.pen.width == 1) found.push_back(call);
  }
  return found;
}

// A viewport drawing on a 200 by 100 recording surface showing X 0 to 20 and Y 0 to 10 in the
// top view, so one unit is ten pixels.
struct PaintFixture : test::ViewportRig {
  PaintFixture() {
    viewport.View.SetViewport(0, 0, 20, 10);
    viewport.Switches.ShowTicks = false;
    viewport.Switches.ShowAxisLines = 0;
    viewport.Switches.ShowMarker = false;
  }
  void Load(std::initializer_list<GeoEntity> entities) {
    Fill(table, entities);
    Reload();
  }
  // Takes up the table as it now is, keeping the view.
  void Reload() {
    viewport.RefreshGeometry(table.HighestIndex());
    viewport.View.SetViewport(0, 0, 20, 10);
  }
  void Paint() { ASSERT_TRUE(viewport.DrawGeometryTable(true)); }
  // Colours of the polylines drawn with pen width 1 (the entities and axis lines), in order.
  std::vector<ColorValue> LineColors() const {
    std::vector<ColorValue> colors;
    for (const auto& call : surface.Of(Kind::Polyline)) {
      if (call.pen.width == 1) colors.push_back(call.pen.color);
    }
    return colors;
  }
};

TEST(DrawGeometryTable, EmptyTableStillShowsTitleTriadAndAxisLines) {
  PaintFixture f;
  f.viewport.Switches.ShowAxisLines = 1;
  f.Load({});
  f.Paint();
  const auto& calls = f.surface.calls;
  ASSERT_FALSE(calls.empty());
  EXPECT_EQ(calls.front().kind, Kind::Clear);
  EXPECT_EQ(calls.front().pen.color, f.viewport.Colors.Background);
  std::vector<std::string> texts;
  for (const auto& call : f.surface.Of(Kind::Text)) texts.push_back(call.text);
  EXPECT_EQ(texts, (std::vector<std::string>{"Top", "X+", "Y+"}));
  EXPECT_EQ(f.surface.Of(Kind::Text).front().pen.color, 0x808080);
  int axisLines = 0, arms = 0;
  for (const auto& call : f.surface.Of(Kind::Polyline)) {
    if (call.pen.style == LineStyle::DashDotDot) {
      ++axisLines;
      EXPECT_EQ(call.pen.color, kWhite);  // the fore colour on a black background
    }
    if (call.pen.width == 2) ++arms;
  }
  EXPECT_EQ(axisLines, 3);  // Z is seen end-on: a dot
  EXPECT_EQ(arms, 2);
  // The isometric view shows all three arms; a pressed pointer draws the title in white.
  f.viewport.View.CurrentView = kViewIsoMill;
  f.viewport.PointerPressed = true;
  f.Paint();
  texts.clear();
  for (const auto& call : f.surface.Of(Kind::Text)) texts.push_back(call.text);
  EXPECT_EQ(texts, (std::vector<std::string>{"Isometric", "X+", "Y+", "Z+"}));
  EXPECT_EQ(f.surface.Of(Kind::Text).front().pen.color, kWhite);
}

TEST(DrawGeometryTable, TriadArmsPointAlongThePositiveAxesOfTheView) {
  PaintFixture f;
  f.Load({});
  struct Case {
    int view;
    ColorValue color;
    float dx, dy;  // sign of the arm's direction on screen
  };
  const Case cases[] = {
      {kViewTop, 0x0000FF, 1, 0},         {kViewTop, 0x00FF00, 0, -1},
      {kViewBottom, 0x0000FF, -1, 0},     {kViewFront, 0xFF0000, 0, -1},
      {kViewRight, 0x00FF00, 1, 0},       {kViewFrontTurret, 0x0000FF, 0, 1},
      {kViewBackTurret, 0x0000FF, 0, -1}, {kViewFrontTurret, 0xFF0000, 1, 0},
  };
  for (const Case& c : cases) {
    f.viewport.View.CurrentView = static_cast<std::int16_t>(c.view);
    f.Paint();
    bool found = false;
    for (const auto& call : f.surface.Of(Kind::Polyline)) {
      if (call.pen.width != 2 || call.pen.color != c.color) continue;
      found = true;
      const float dx = call.points[1].x - call.points[0].x;
      const float dy = call.points[1].y - call.points[0].y;
      EXPECT_EQ((dx > 0) - (dx < 0), c.dx) << "view " << c.view;
      EXPECT_EQ((dy > 0) - (dy < 0), c.dy) << "view " << c.view;
      EXPECT_NEAR(std::hypot(dx, dy), 25, 1e-3);  // the 25 pixel floor
    }
    EXPECT_TRUE(found) << "view " << c.view;
  }
}

TEST(DrawGeometryTable, PensFollowMotionToolSelectionAndTheKeptPen) {
  PaintFixture f;
  DrawColors& colors = f.viewport.Colors;
  // Entities apart from each other, so each is a polyline of its own.
  f.Load({Line(kRapid, P(1, 1), P(2, 1), 3), Line(kFeed, P(3, 1), P(4, 1), 1),
          Arc(kArcCW, P(6, 1), P(6, 1), P(5, 1), 1), Arc(kArcCCW, P(9, 1), P(9, 1), P(8, 1), 1),
          Line(kFeed, P(1, 5), P(2, 5), 255), Line(kFeed, P(3, 5), P(4, 5), 2)});
  f.table[6].Selected = 255;
  f.Paint();
  EXPECT_EQ(f.LineColors(),
            (std::vector<ColorValue>{colors.Rapid, colors.Feed, colors.ArcCW, colors.ArcCCW,
                                     colors.ArcCCW, colors.Selected}));
  EXPECT_EQ(Moves(f.surface, colors.Rapid).front().pen.style, LineStyle::Dot);
  // A selected feed is boxed at its end: 2 pixels each way about (40, 50).
  const auto boxes = f.surface.Of(Kind::Rectangle);
  ASSERT_EQ(boxes.size(), 1u);
  EXPECT_EQ(boxes[0].points[0], (PixelPoint{38, 48}));
  EXPECT_EQ(boxes[0].points[1], (PixelPoint{42, 52}));

  f.viewport.Switches.ArcColorSwap = true;
  f.Paint();
  EXPECT_EQ(f.LineColors()[2], colors.ArcCCW);
  EXPECT_EQ(f.LineColors()[3], colors.ArcCW);

  // By tool: the colour byte picks the tool's colour; a tool beyond the table gets element 0.
  colors.ColorByMotion = false;
  colors.ToolColors = {0x111111, 0x222222, 0x333333};
  f.Paint();
  EXPECT_EQ(f.LineColors(), (std::vector<ColorValue>{0x111111, 0x222222, 0x333333, 0x111111,
                                                     0x111111, colors.Selected}));
}

TEST(DrawGeometryTable, HiddenRapidsAndPlungesAndTicks) {
  PaintFixture f;
  f.Load({Line(kRapid, P(1, 1, 5), P(3, 3, 5)), Line(kFeed, P(3, 3, 5), P(3, 3, 0)),
          Line(kFeed, P(3, 3, 0), P(3, 3, 5)), Line(kFeed, P(5, 5, 5), P(5.001f, 5, 0))});
  f.viewport.Switches.ShowPlunge = false;
  f.viewport.Switches.ShowRapid = false;
  f.Paint();
  // The rapid and the downward plunge are gone; the rise and the slanted plunge remain.
  EXPECT_EQ(Moves(f.surface, f.viewport.Colors.Rapid).size(), 0u);
  EXPECT_EQ(Moves(f.surface, f.viewport.Colors.Feed).size(), 2u);

  f.viewport.Switches.ShowRapid = true;
  f.viewport.Switches.ShowTicks = true;
  f.Paint();
  const auto boxes = f.surface.Of(Kind::Rectangle);
  ASSERT_EQ(boxes.size(), 1u);  // 3 pixels each way about the rapid's end (30, 70)
  EXPECT_EQ(boxes[0].points[0], (PixelPoint{27, 67}));
  EXPECT_EQ(boxes[0].points[1], (PixelPoint{33, 73}));
  EXPECT_EQ(boxes[0].pen.color, f.viewport.Colors.Rapid);
  EXPECT_EQ(boxes[0].pen.style, LineStyle::Solid);
}

TEST(DrawGeometryTable, ConnectedMovesBecomeOnePolylineAndTinyOnesMerge) {
  PaintFixture f;
  f.table.Begin();
  // A zigzag of 10,000 feeds inside one pixel, then five long connected feeds.
  for (int i = 0; i < 10000; ++i) {
    f.table.Add(Line(kFeed, P(5 + (i % 2) * 0.01f, 5), P(5 + ((i + 1) % 2) * 0.01f, 5)));
  }
  for (int i = 0; i < 5; ++i) f.table.Add(Line(kFeed, P(5 + i, 5), P(6 + i, 5)));
  f.table.End();
  f.Reload();
  f.Paint();
  const auto lines = Moves(f.surface, f.viewport.Colors.Feed);
  ASSERT_EQ(lines.size(), 1u);
  EXPECT_LE(lines[0].points.size(), 8u);
  EXPECT_EQ(lines[0].points.front(), (PixelPoint{50, 50}));
  EXPECT_EQ(lines[0].points.back(), (PixelPoint{100, 50}));
}

TEST(DrawGeometryTable, MovesWhollyOffThePictureAreNotSent) {
  PaintFixture f;
  f.Load({Line(kFeed, P(-50, 1), P(-40, 9)), Line(kFeed, P(-40, 9), P(-40, 200)),
          Line(kFeed, P(1e30f, 5), P(10, 5))});
  f.Paint();
  const auto lines = Moves(f.surface, f.viewport.Colors.Feed);
  // Only the far line that crosses the picture arrives, cut to a range a surface can take.
  ASSERT_EQ(lines.size(), 1u);
  EXPECT_LT(lines[0].points[0].x, 200000);
  EXPECT_EQ(lines[0].points[1], (PixelPoint{100, 50}));
}

TEST(DrawGeometryTable, MarkerShowsThePositionRelativeToTheWorkOffset) {
  PaintFixture f;
  GeoEntity last = Line(kFeed, P(0, 0), P(10, 5, -1));
  last.WorkOffset = P(1, 1, 0);
  f.Load({last});
  f.viewport.Switches.ShowMarker = true;
  f.Paint();
  std::vector<RecordingSurface::Call> overlay;
  for (const auto& call : f.surface.calls) {
    if (call.layer == SurfaceLayer::Overlay) overlay.push_back(call);
  }
  ASSERT_EQ(overlay.size(), 3u);
  EXPECT_EQ(overlay[0].kind, Kind::Clear);
  EXPECT_EQ(overlay[1].points.front(), (PixelPoint{100, 50}));
  EXPECT_EQ(overlay[1].points[1], (PixelPoint{118, 32}));  // up and to the right
  EXPECT_EQ(overlay[2].text, "X9.0, Y4.0, Z-1.0");
  EXPECT_EQ(overlay[2].pen.color, f.viewport.Colors.Marker);

  f.viewport.Marker.FourthAxisLetter = "B";
  EXPECT_EQ(f.viewport.MarkerText(), "X9.0, Y4.0, Z-1.0, B0.0");
  f.viewport.Marker.Lathe = true;
  f.viewport.Marker.Diameter = true;
  EXPECT_EQ(f.viewport.MarkerText(), "X18.0, Z-1.0");

  f.viewport.Switches.ShowMarker = false;
  f.Paint();
  int overlayCalls = 0;
  for (const auto& call : f.surface.calls) overlayCalls += call.layer == SurfaceLayer::Overlay;
  EXPECT_EQ(overlayCalls, 1);  // only cleared
}

// A surface whose first polyline takes long, so that the painter yields after it.
class SlowSurface : public RecordingSurface {
 public:
  SlowSurface() : RecordingSurface(200, 100) {}
  void Polyline(const PixelPoint* points, std::size_t count, const SurfacePen& pen) override {
    if (!slept) std::this_thread::sleep_for(std::chrono::milliseconds(150));
    slept = true;
    RecordingSurface::Polyline(points, count, pen);
  }
  bool slept = false;
};

// Asks for a new view from inside the event pump, as a wheel turn during a repaint would.
class ZoomingHost : public RecordingHost {
 public:
  void pumpEvents() override {
    RecordingHost::pumpEvents();
    if (viewport != nullptr && pumpCount == 1) viewport->ZoomIn();
  }
  Viewport* viewport = nullptr;
};

TEST(DrawGeometryTable, AViewChangeDuringARepaintStartsItOver) {
  GeometryTable table;
  table.Begin();
  for (int i = 0; i < 3000; ++i) table.Add(Line(i % 2 ? kFeed : kRapid, P(i % 7, 1), P(2, 3)));
  table.End();
  ZoomingHost host;
  Viewport viewport(table, host);
  host.viewport = &viewport;
  SlowSurface surface;
  viewport.AttachSurface(&surface);
  viewport.LoadGeometry(table.HighestIndex());  // first repaint: yields once, starts over
  int clears = 0;
  for (const auto& call : surface.calls) clears += call.kind == Kind::Clear;
  EXPECT_GE(host.pumpCount, 2);  // the yield inside, and the one at the end
  EXPECT_FALSE(viewport.Painting);
  EXPECT_FALSE(viewport.QuickRedrawFlag);
  // The recording holds the second pass alone: its clear of the picture and of the overlay.
  EXPECT_EQ(clears, 2);
}

TEST(DrawGeometryTable, PathsDrawnAgainOnTheSamePixelsAreSentOnce) {
  PaintFixture f;
  // A square cut at three depths, seen from above, then once more the other way round.
  f.table.Begin();
  for (float z : {-1.0f, -2.0f, -3.0f}) {
    f.table.Add(Line(kFeed, P(2, 2, z), P(6, 2, z)));
    f.table.Add(Line(kFeed, P(6, 2, z), P(6, 6, z)));
    f.table.Add(Line(kFeed, P(6, 6, z), P(2, 6, z)));
    f.table.Add(Line(kFeed, P(2, 6, z), P(2, 2, z)));
  }
  f.table.Add(Line(kFeed, P(2, 2), P(2, 6)));
  f.table.Add(Line(kRapid, P(2, 6), P(2, 2)));  // the same pixels in another pen
  f.table.End();
  f.Reload();
  f.Paint();
  const auto feeds = Moves(f.surface, f.viewport.Colors.Feed);
  ASSERT_EQ(feeds.size(), 1u);
  EXPECT_EQ(feeds[0].points.size(), 5u);
  EXPECT_EQ(Moves(f.surface, f.viewport.Colors.Rapid).size(), 1u);
  // From the side the depths differ, and every pass is drawn.
  f.viewport.View.CurrentView = kViewFront;
  f.viewport.View.SetViewport(0, -5, 20, 10);
  f.Paint();
  std::size_t points = 0;
  for (const auto& line : Moves(f.surface, f.viewport.Colors.Feed)) points += line.points.size();
  EXPECT_GE(points, 3u * 3u);
}

class FailingSurface : public RecordingSurface {
 public:
  FailingSurface() : RecordingSurface(100, 100) {}
  void Polyline(const PixelPoint*, std::size_t, const SurfacePen&) override {
    throw std::runtime_error("Overflow");
  }
};

TEST(DrawGeometryTable, AFaultIsReportedAndLeavesThePainterFree) {
  GeometryTable table;
  Fill(table, {Line(kFeed, P(0, 0), P(1, 1))});
  RecordingHost host;
  Viewport viewport(table, host);
  FailingSurface surface;
  viewport.AttachSurface(&surface);
  viewport.RefreshGeometry(1);
  ASSERT_EQ(host.shown.size(), 1u);
  EXPECT_EQ(host.shown[0].prompt.text, "Error in DrawGeometryTable!\r\nOverflow");
  EXPECT_EQ(host.shown[0].prompt.icon, MsgIcon::Stop);
  EXPECT_FALSE(viewport.Painting);
  // Blocked, or without a surface, a repaint does not start.
  viewport.RepaintBlocked = true;
  EXPECT_FALSE(viewport.DrawGeometryTable(true));
  viewport.RepaintBlocked = false;
  viewport.AttachSurface(nullptr);
  EXPECT_FALSE(viewport.DrawGeometryTable(true));
}

TEST(EntityPainter, MonochromePaintingIsBlackOnlyWhenAskedFor) {
  ViewState view;
  view.SetViewport(0, 0, 20, 20);
  DrawSwitches switches;
  DrawColors colors;
  RecordingSurface surface(400, 400);
  const GeoEntity feed = Line(kFeed, P(1, 1), P(5, 5));
  {
    EntityPainter painter(surface, view, switches, colors);
    painter.DrawEntity(feed, true);
  }
  switches.PrintInBlack = true;
  {
    EntityPainter painter(surface, view, switches, colors);
    painter.DrawEntity(feed, false);
    painter.DrawEntity(feed, true);
    GeoEntity unknown = feed;
    unknown.EntityType = 7;
    EXPECT_FALSE(painter.DrawEntity(unknown));
  }
  const auto lines = surface.Of(Kind::Polyline);
  ASSERT_EQ(lines.size(), 3u);
  EXPECT_EQ(lines[0].pen.color, colors.Feed);
  EXPECT_EQ(lines[1].pen.color, colors.Feed);
  EXPECT_EQ(lines[2].pen.color, 0);
}

TEST(Viewport, DrawingWhilePlottingAddsWithoutClearing) {
  test::ViewportRig rig(100, 100);
  Fill(rig.table, {Line(kFeed, P(0, 0), P(1, 1)), Line(kFeed, P(1, 1), P(2, 0))});
  Viewport& viewport = rig.viewport;
  const RecordingSurface& surface = rig.surface;
  viewport.DrawEntityNow(1);
  viewport.DrawEntityNow(2);
  viewport.DrawEntityNow(3);  // beyond the table: nothing
  EXPECT_TRUE(surface.calls.empty());
  viewport.FlushEntities();
  ASSERT_EQ(surface.calls.size(), 1u);
  EXPECT_EQ(surface.calls[0].points.size(), 3u);
  EXPECT_EQ(surface.presents, 1);
  // Drawn again on the same picture: already there. A new picture takes it again.
  viewport.DrawEntityNow(1);
  viewport.FlushEntities();
  EXPECT_EQ(surface.Of(Kind::Polyline).size(), 1u);
  ASSERT_TRUE(viewport.StartPicture());
  EXPECT_EQ(surface.calls.front().kind, Kind::Clear);
  EXPECT_EQ(surface.Of(Kind::Text).front().text, "Top");
  viewport.DrawEntityNow(1);
  viewport.FlushEntities();
  EXPECT_EQ(surface.PolylinesIn(viewport.Colors.Feed).back().points.size(), 2u);
}

}  // namespace
}  // namespace zemtra
