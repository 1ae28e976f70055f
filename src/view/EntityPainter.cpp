#include "view/EntityPainter.h"

#include <algorithm>
#include <cmath>
#include <vector>

#include "view/EntityChords.h"
#include "view/ViewState.h"

namespace zemtra {

namespace {

// Out codes of a pixel against the picture grown by a margin. kFar marks a point so far out that
// a surface could not be trusted with it, kNotANumber one that cannot be drawn at all.
constexpr int kLeft = 1, kRight = 2, kAbove = 4, kBelow = 8, kFar = 16, kNotANumber = 32;
constexpr float kMargin = 4.0f;
constexpr float kGuard = 100000.0f;
constexpr float kMergeDistance = 1.0f;  // chords shorter than a pixel (in x and y) are merged
constexpr std::size_t kMaxPathPoints = 8192;

// Remembers what was drawn lately, by its pixels and pen, so that a path drawn again on the same
// pixels (passes at several depths seen from above, a contour cut many times) reaches the
// surface once. A small set-associative table: four entries a bucket, so that two shapes that
// fall in one bucket do not keep pushing each other out; a miss only costs a redraw.
class RepeatFilter {
 public:
  RepeatFilter() : slots_(std::size_t{kWays} << kBucketBits) {}

  // A chord between two pixels, either way round; false (never a repeat) far off the picture.
  bool SeenChord(PixelPoint a, PixelPoint b, const SurfacePen& pen) {
    std::uint64_t first = 0, second = 0;
    if (!Packed(a, first) || !Packed(b, second)) return false;
    if (first > second) std::swap(first, second);
    return Seen(first << 32 | second, Tag(pen));
  }
  // A box about a pixel.
  bool SeenBox(PixelPoint center, float half, const SurfacePen& pen) {
    std::uint64_t packed = 0;
    if (!Packed(center, packed)) return false;
    return Seen(packed << 32 | static_cast<std::uint32_t>(half * 4), Tag(pen) | 0x80000000u);
  }

 private:
  static constexpr int kBucketBits = 14;
  static constexpr int kWays = 4;
  struct Slot {
    std::uint64_t key = 0;
    std::uint32_t tag = 0;  // 0: empty
  };

  // A pixel rounded to whole pixels, 16 bits a coordinate.
  static bool Packed(PixelPoint p, std::uint64_t& packed) {
    const float x = std::round(p.x), y = std::round(p.y);
    if (!(x > -32768 && x < 32767 && y > -32768 && y < 32767)) return false;
    packed = static_cast<std::uint16_t>(static_cast<std::int32_t>(x)) |
             static_cast<std::uint64_t>(static_cast<std::uint16_t>(static_cast<std::int32_t>(y)))
                 << 16;
    return true;
  }
  // Colour, style and width, and bit 30 so that no tag is 0 (an empty slot).
  static std::uint32_t Tag(const SurfacePen& pen) {
    return (static_cast<std::uint32_t>(pen.color) & 0xFFFFFF) |
           (static_cast<std::uint32_t>(pen.style) & 0x7u) << 24 | (pen.width & 0x7u) << 27 |
           1u << 30;
  }
  bool Seen(std::uint64_t key, std::uint32_t tag) {
    const std::uint64_t hash =
        (key ^ (static_cast<std::uint64_t>(tag) << 7)) * 0x9E3779B97F4A7C15ull;
    Slot* bucket = &slots_[static_cast<std::size_t>(hash >> (64 - kBucketBits)) * kWays];
    for (int way = 0; way < kWays; ++way) {
      if (bucket[way].tag == tag && bucket[way].key == key) return true;
    }
    // The newest entry goes first; the oldest of the bucket falls out.
    for (int way = kWays - 1; way > 0; --way) bucket[way] = bucket[way - 1];
    bucket[0] = Slot{key, tag};
    return false;
  }

  std::vector<Slot> slots_;
};

}  // namespace

// Gathers connected chords of one pen into polylines and hands them to the surface.
class EntityPainter::PathBuilder {
 public:
  PathBuilder(Surface& surface, float width, float height)
      : surface_(surface), width_(width), height_(height) {
    points_.reserve(kMaxPathPoints + 1);
  }

  void SetPen(const SurfacePen& pen) {
    if (pen == pen_) return;
    End();
    pen_ = pen;
  }

  // Starts a path at p, or goes on with the current one when p is where it stands.
  void MoveTo(PixelPoint p) {
    if (active_ && p == last_) return;
    End();
    Start(p, OutCode(p));
  }

  void LineTo(PixelPoint p) {
    const int code = OutCode(p);
    const int sides = kLeft | kRight | kAbove | kBelow;
    if ((code & lastCode_ & sides) != 0 || ((code | lastCode_) & kNotANumber) != 0) {
      End();  // wholly beyond one side, or not drawable
      Start(p, code);
      return;
    }
    if (((code | lastCode_) & kFar) != 0) {
      DrawClipped(last_, p, lastCode_, code);
      Start(p, code);
      return;
    }
    last_ = p;
    lastCode_ = code;
    if (std::fabs(p.x - emitted_.x) < kMergeDistance &&
        std::fabs(p.y - emitted_.y) < kMergeDistance) {
      pending_ = true;
      return;
    }
    if (repeats_.SeenChord(emitted_, p, pen_)) {  // already on the picture: go round it
      pending_ = false;
      End();
      Start(p, code);
      return;
    }
    Emit(p);
  }

  // True when the same box in the same pen was drawn already.
  bool SeenBox(PixelPoint center, float half, const SurfacePen& pen) {
    return repeats_.SeenBox(center, half, pen);
  }

  // Sends the path gathered so far; the next chord starts a new one.
  void End() {
    // A path that is a single dot is left out when that dot is on the picture already.
    if (pending_ && !(points_.size() == 1 && repeats_.SeenChord(emitted_, last_, pen_))) {
      Emit(last_);
    }
    pending_ = false;
    active_ = false;
    // Emptied even when the surface throws, so nothing is sent twice.
    struct Emptier {
      std::vector<PixelPoint>& points;
      ~Emptier() { points.clear(); }
    } emptier{points_};
    if (points_.size() >= 2) surface_.Polyline(points_.data(), points_.size(), pen_);
  }

 private:
  int OutCode(PixelPoint p) const {
    if (std::isnan(p.x) || std::isnan(p.y)) return kNotANumber;
    int code = 0;
    if (p.x < -kMargin) code |= kLeft;
    if (p.x > width_ + kMargin) code |= kRight;
    if (p.y < -kMargin) code |= kAbove;
    if (p.y > height_ + kMargin) code |= kBelow;
    if (p.x < -kGuard || p.x > width_ + kGuard || p.y < -kGuard || p.y > height_ + kGuard) {
      code |= kFar;
    }
    return code;
  }

  void Start(PixelPoint p, int code) {
    points_.clear();
    points_.push_back(p);
    emitted_ = last_ = p;
    lastCode_ = code;
    pending_ = false;
    active_ = true;
  }

  void Emit(PixelPoint p) {
    points_.push_back(p);
    emitted_ = p;
    pending_ = false;
    if (points_.size() >= kMaxPathPoints) {
      surface_.Polyline(points_.data(), points_.size(), pen_);
      points_.clear();
      points_.push_back(p);
    }
  }

  // A chord with a far end, cut to the guard band and drawn on its own. A far end is pulled in
  // along the chord from the other end, which keeps the precision of the part that shows.
  void DrawClipped(PixelPoint a, PixelPoint b, int codeA, int codeB) {
    End();
    const auto finite = [](PixelPoint p) { return std::isfinite(p.x) && std::isfinite(p.y); };
    if (!finite(a) || !finite(b)) return;  // no direction to follow
    const bool farA = (codeA & kFar) != 0, farB = (codeB & kFar) != 0;
    if (farA && farB) {
      if (!ClipBothFar(a, b)) return;
    } else if (farA) {
      a = PullIn(b, a);
    } else {
      b = PullIn(a, b);
    }
    const PixelPoint ends[2] = {a, b};
    surface_.Polyline(ends, 2, pen_);
  }

  // The point of the chord near -> far where it enters the guard band.
  PixelPoint PullIn(PixelPoint nearEnd, PixelPoint farEnd) const {
    const double dx = static_cast<double>(farEnd.x) - nearEnd.x;
    const double dy = static_cast<double>(farEnd.y) - nearEnd.y;
    double s = 1;
    const auto limit = [&s](double from, double delta, double low, double high) {
      if (from + delta > high) s = std::min(s, (high - from) / delta);
      if (from + delta < low) s = std::min(s, (low - from) / delta);
    };
    limit(nearEnd.x, dx, -kGuard, width_ + kGuard);
    limit(nearEnd.y, dy, -kGuard, height_ + kGuard);
    return PixelPoint{static_cast<float>(nearEnd.x + s * dx),
                      static_cast<float>(nearEnd.y + s * dy)};
  }

  // Both ends far out: the part inside the guard band, if any (Liang-Barsky).
  bool ClipBothFar(PixelPoint& a, PixelPoint& b) const {
    double t0 = 0, t1 = 1;
    const double dx = static_cast<double>(b.x) - a.x, dy = static_cast<double>(b.y) - a.y;
    const double edges[4][2] = {{-dx, a.x + static_cast<double>(kGuard)},
                                {dx, width_ + static_cast<double>(kGuard) - a.x},
                                {-dy, a.y + static_cast<double>(kGuard)},
                                {dy, height_ + static_cast<double>(kGuard) - a.y}};
    for (const auto& edge : edges) {
      const double p = edge[0], q = edge[1];
      if (!std::isfinite(p) || !std::isfinite(q)) return false;
      if (p == 0) {
        if (q < 0) return false;
        continue;
      }
      const double r = q / p;
      if (p < 0) {
        t0 = std::max(t0, r);
      } else {
        t1 = std::min(t1, r);
      }
      if (t0 > t1) return false;
    }
    const PixelPoint from = a;
    a = PixelPoint{static_cast<float>(from.x + t0 * dx), static_cast<float>(from.y + t0 * dy)};
    b = PixelPoint{static_cast<float>(from.x + t1 * dx), static_cast<float>(from.y + t1 * dy)};
    return true;
  }

  Surface& surface_;
  float width_, height_;
  SurfacePen pen_;
  std::vector<PixelPoint> points_;
  PixelPoint last_;     // the last point given, drawn or not
  PixelPoint emitted_;  // the last point put into the path
  int lastCode_ = 0;
  bool pending_ = false;  // last_ was merged and not yet put into the path
  bool active_ = false;
  RepeatFilter repeats_;
};

namespace {

// Projects the chords of the shared walkers onto the path.
template <class Painter, class Path>
struct PixelSink {
  const Painter& painter;
  Path& path;
  void MoveTo(const GeoPoint& p) { path.MoveTo(painter.ToPixel(p)); }
  void LineTo(const GeoPoint& p) { path.LineTo(painter.ToPixel(p)); }
};

}  // namespace

EntityPainter::EntityPainter(Surface& surface, const ViewState& view, const DrawSwitches& switches,
                             const DrawColors& colors)
    : surface_(surface),
      switches_(switches),
      colors_(colors),
      projector_(view.Projector()),
      scaleLeft_(view.ScaleLeft),
      scaleTop_(view.ScaleTop),
      scaleWidth_(view.ScaleWidth),
      pixelsPerUnitX_(view.PixelWidth / static_cast<double>(view.ScaleWidth)),
      pixelsPerUnitY_(view.PixelHeight / static_cast<double>(view.ScaleHeight)),
      path_(std::make_unique<PathBuilder>(surface, static_cast<float>(view.PixelWidth),
                                          static_cast<float>(view.PixelHeight))) {}

EntityPainter::~EntityPainter() {
  try {
    path_->End();
  } catch (...) {
    // A surface that failed has been reported by whoever drew; nothing more to send.
  }
}

PixelPoint EntityPainter::ToPixel(const GeoPoint& point) const {
  float u = 0, v = 0;
  projector_.Project(point, u, v);
  return PixelPoint{static_cast<float>((u - scaleLeft_) * pixelsPerUnitX_),
                    static_cast<float>((v - scaleTop_) * pixelsPerUnitY_)};
}

void EntityPainter::DrawSegment(const GeoPoint& a, const GeoPoint& b, const SurfacePen& pen) {
  path_->SetPen(pen);
  path_->MoveTo(ToPixel(a));
  path_->LineTo(ToPixel(b));
}

void EntityPainter::Flush() {
  path_->End();
}

ColorValue EntityPainter::ChoosePen(const GeoEntity& e, bool monochrome) {
  ColorValue color;
  if (e.Selected != 0) {
    color = colors_.Selected;
  } else if (e.ColorIndex == 255) {
    color = penColor_;
  } else if (!colors_.ColorByMotion) {
    color = colors_.ToolColor(e.ColorIndex);
  } else {
    switch (e.EntityType % 10) {
      case kRapid:
        color = colors_.Rapid;
        break;
      case kArcCW:
        color = switches_.ArcColorSwap ? colors_.ArcCCW : colors_.ArcCW;
        break;
      case kArcCCW:
        color = switches_.ArcColorSwap ? colors_.ArcCW : colors_.ArcCCW;
        break;
      default:
        color = colors_.Feed;
        break;
    }
  }
  if (monochrome && switches_.PrintInBlack) color = 0;
  penColor_ = color;
  return color;
}

void EntityPainter::Box(const GeoPoint& center, float halfPixels, ColorValue color) {
  path_->End();
  const PixelPoint p = ToPixel(center);
  if (!std::isfinite(p.x) || !std::isfinite(p.y)) return;
  const SurfacePen pen{color, 1, LineStyle::Solid};
  if (path_->SeenBox(p, halfPixels, pen)) return;
  surface_.Rectangle(PixelPoint{p.x - halfPixels, p.y - halfPixels},
                     PixelPoint{p.x + halfPixels, p.y + halfPixels}, pen);
}

bool EntityPainter::DrawEntity(const GeoEntity& entity, bool monochrome) {
  switch (entity.EntityType) {
    case kRapid:
    case kFeed:
      DrawLineEntity(entity, monochrome);
      return true;
    case kArcCW:
    case kArcCCW:
      DrawArcEntity(entity, monochrome);
      return true;
    case kPoint:
      DrawPointEntity(entity, monochrome);
      return true;
    case kHelixCW:
    case kHelixCCW:
      DrawHelixEntity(entity, monochrome);
      return true;
    default:
      return false;
  }
}

void EntityPainter::DrawLineEntity(const GeoEntity& e, bool monochrome) {
  if (!IsEntityShown(e, switches_)) return;
  const ColorValue color = ChoosePen(e, monochrome);
  PixelSink<EntityPainter, PathBuilder> sink{*this, *path_};
  if (e.EntityType == kRapid) {
    path_->SetPen(SurfacePen{color, 1, LineStyle::Dot});
    RapidChords(e, colors_.RapidStyle, sink);
    if (switches_.ShowTicks || e.Selected != 0) Box(e.EndPoint, 3, color);
    return;
  }
  path_->SetPen(SurfacePen{color, 1, LineStyle::Solid});
  FeedChords(e, sink);
  if (e.Selected != 0) Box(e.EndPoint, 2, color);
}

void EntityPainter::DrawArcEntity(const GeoEntity& e, bool monochrome) {
  const ColorValue color = ChoosePen(e, monochrome);
  path_->SetPen(SurfacePen{color, 1, LineStyle::Solid});
  PixelSink<EntityPainter, PathBuilder> sink{*this, *path_};
  ArcChords(e, scaleWidth_, kPaintArcSteps, sink);
  if (e.Selected != 0) Box(e.EndPoint, 2, color);
}

void EntityPainter::DrawHelixEntity(const GeoEntity& e, bool monochrome) {
  const ColorValue color = ChoosePen(e, monochrome);
  path_->SetPen(SurfacePen{color, 1, LineStyle::Solid});
  PixelSink<EntityPainter, PathBuilder> sink{*this, *path_};
  HelixChords(e, scaleWidth_, kPaintArcSteps, sink);
}

void EntityPainter::DrawPointEntity(const GeoEntity& e, bool monochrome) {
  ColorValue color = e.Selected != 0 ? colors_.Selected : colors_.Feed;
  if (monochrome && switches_.PrintInBlack) color = 0;
  penColor_ = color;
  Box(e.EndPoint, 2, color);
}

}  // namespace zemtra
