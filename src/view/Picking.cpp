#include "view/Picking.h"

#include <cmath>

#include "geom/Intersect.h"
#include "geom/Nearest.h"
#include "view/EntityChords.h"
#include "view/PickGeometry.h"
#include "view/Viewport.h"

namespace zemtra {

using pick_detail::QuickBox;
using pick_detail::QuickProjection;
using pick_detail::VisitDrawn;

namespace {

GeoPoint ViewPointOf(float u, float v) {
  return GeoPoint{u, v, 0, 0};
}

// Projects chord ends and keeps the nearest distance of the entity's chords to the pointer.
struct NearestSink {
  const ViewProjector& projector;
  GeoPoint pointer;
  ViewBox* box;
  GeoPoint last{};
  double nearest = -1;

  GeoPoint Project(const GeoPoint& p) {
    float u = 0, v = 0;
    projector.Project(p, u, v);
    if (box != nullptr) box->Add(u, v);
    return ViewPointOf(u, v);
  }
  void MoveTo(const GeoPoint& p) { last = Project(p); }
  void LineTo(const GeoPoint& p) {
    const GeoPoint next = Project(p);
    const double d = DistPointToSegment(LineRec{last, next, 17}, pointer, 17);
    if (nearest < 0 || d < nearest) nearest = d;
    last = next;
  }
};

// Tells whether the entity's chords meet the rectangle by the rule of the drag.
struct WindowSink {
  const ViewProjector& projector;
  const SelectRect& rect;
  bool crossing;
  GeoPoint last{};
  bool anyIn = false;   // a chord touched the rectangle
  bool anyOut = false;  // a chord was not wholly inside

  GeoPoint Project(const GeoPoint& p) const {
    float u = 0, v = 0;
    projector.Project(p, u, v);
    return ViewPointOf(u, v);
  }
  void MoveTo(const GeoPoint& p) { last = Project(p); }
  void LineTo(const GeoPoint& p) {
    const GeoPoint next = Project(p);
    // Once the answer is known the rest of the entity's chords need no clipping.
    if (crossing ? !anyIn : !anyOut) {
      GeoPoint a, b;
      const int result = ClipSegmentToRect(last, next, rect, a, b);
      anyIn = anyIn || result > kClipOutside;
      anyOut = anyOut || result != kClipInside;
    }
    last = next;
  }
  bool Selects() const { return crossing ? anyIn : anyIn && !anyOut; }
};

class Finder {
 public:
  Finder(const GeometryTable& table, const Viewport& view, double u, double v, ViewBox* box)
      : table_(table),
        view_(view),
        projector_(view.View.Projector()),
        quick_(projector_),
        pointer_(ViewPointOf(static_cast<float>(u), static_cast<float>(v))),
        u_(u),
        v_(v),
        radius_(kPickPixels * view.View.UnitsPerPixel),
        box_(box) {}

  // Looks at entity i; false when the search is over (a point within the radius).
  bool Look(std::int32_t i) {
    const GeoEntity& e = table_[i];
    if (e.EntityType == kPoint) return LookAtPoint(i, e);
    QuickBox quick;
    if (box_ == nullptr && quick_.BoxOf(e, quick) && quick.FartherThan(u_, v_, radius_)) {
      return true;
    }
    NearestSink sink{projector_, pointer_, box_};
    if (!EntityChords(e, view_.Colors.RapidStyle, view_.View.ScaleWidth, kPickArcSteps, sink)) {
      return true;
    }
    Offer(i, sink.nearest);
    return true;
  }

  std::int32_t Result() const { return best_ >= 0 && best_ <= radius_ ? bestIndex_ : -1; }

 private:
  bool LookAtPoint(std::int32_t i, const GeoEntity& e) {
    float u = 0, v = 0;
    projector_.Project(e.EndPoint, u, v);
    if (box_ != nullptr) box_->Add(u, v);
    const double d = std::hypot(u - u_, v - v_);
    if (d <= radius_) {
      best_ = d;
      bestIndex_ = i;
      return false;
    }
    Offer(i, d);
    return true;
  }

  void Offer(std::int32_t i, double d) {
    if (d < 0) return;
    if (best_ < 0 || d <= best_) {
      best_ = d;
      bestIndex_ = i;
    }
  }

  const GeometryTable& table_;
  const Viewport& view_;
  const ViewProjector projector_;
  const QuickProjection quick_;
  const GeoPoint pointer_;
  const double u_, v_, radius_;
  ViewBox* box_;
  double best_ = -1;
  std::int32_t bestIndex_ = 1;
};

bool PointSelected(const GeoEntity& e, const ViewProjector& projector, const SelectRect& rect) {
  float u = 0, v = 0;
  projector.Project(e.EndPoint, u, v);
  return PointInRect(ViewPointOf(u, v), rect);
}

bool IsDrawnType(int type) {
  return type <= kPoint || type == kHelixCW || type == kHelixCCW;
}

// Where an entity's quick box lies against the rectangle; only kAcross needs its chords.
enum Placement { kApart, kInside, kAcross };

Placement PlacementOf(const QuickBox& box, const SelectRect& rect) {
  const double lowU = box.MidU - box.HalfU - box.Margin, highU = box.MidU + box.HalfU + box.Margin;
  const double lowV = box.MidV - box.HalfV - box.Margin, highV = box.MidV + box.HalfV + box.Margin;
  if (highU < rect.X1 || lowU > rect.X2 || highV < rect.Y1 || lowV > rect.Y2) return kApart;
  if (lowU > rect.X1 && highU < rect.X2 && lowV > rect.Y1 && highV < rect.Y2) return kInside;
  return kAcross;
}

}  // namespace

std::int32_t FindEntityAt(const GeometryTable& table, const Viewport& view, double u, double v,
                          bool selectedOnly, ViewBox* box) {
  Finder finder(table, view, u, v, box);
  bool searching = true;
  VisitDrawn(table, view, [&](std::int32_t i) {
    if (!searching) return;
    const GeoEntity& e = table[i];
    if (selectedOnly && e.Selected == 0) return;
    if (!IsEntityShown(e, view.Switches)) return;
    searching = finder.Look(i);
  });
  return finder.Result();
}

std::int32_t SelectWindow(GeometryTable& table, const Viewport& view, double startX, double startY,
                          double x, double y) {
  const SelectRect rect{std::min(startX, x), std::min(startY, y), std::max(startX, x),
                        std::max(startY, y)};
  const bool crossing = startX > x;
  const ViewProjector projector = view.View.Projector();
  const QuickProjection quick(projector);
  std::int32_t lastSelected = 0;
  VisitDrawn(table, view, [&](std::int32_t i) {
    GeoEntity& e = table[i];
    if (!IsEntityShown(e, view.Switches)) return;
    bool selects = false;
    if (!IsDrawnType(e.EntityType)) return;
    if (e.EntityType == kPoint) {
      selects = PointSelected(e, projector, rect);
    } else {
      QuickBox box;
      const Placement placement = quick.BoxOf(e, box) ? PlacementOf(box, rect) : kAcross;
      if (placement == kAcross) {
        WindowSink sink{projector, rect, crossing};
        selects =
            EntityChords(e, view.Colors.RapidStyle, view.View.ScaleWidth, kPickArcSteps, sink) &&
            sink.Selects();
      } else {
        selects = placement == kInside;
      }
    }
    if (!selects) return;
    e.Selected = 255;
    lastSelected = i;
  });
  return lastSelected;
}

std::int32_t SelectAtPoint(GeometryTable& table, const Viewport& view, double u, double v,
                           int mode) {
  if (table.HighestIndex() < 1) return -1;
  if (mode == 0) ClearSelection(table);
  const std::int32_t found = FindEntityAt(table, view, u, v, false);
  if (found > 0) table[found].Selected = mode == 2 ? 0 : 255;
  return found;
}

std::int32_t CountSelected(const GeometryTable& table) {
  std::int32_t count = 0;
  const GeoEntity* entities = table.data();
  for (std::int32_t i = 1; i <= table.HighestIndex(); ++i) count += entities[i].Selected != 0;
  return count;
}

void ClearSelection(GeometryTable& table) {
  for (std::int32_t i = 1; i <= table.HighestIndex(); ++i) table[i].Selected = 0;
}

std::int32_t FindEntityOfLine(const GeometryTable& table, std::int32_t line) {
  const std::int32_t count = table.HighestIndex();
  if (count < 1) return 0;
  const GeoEntity* entities = table.data();
  for (std::int32_t i = 1; i <= count; ++i) {
    if (entities[i].LineNumber > line) return i - 1;
  }
  return count;
}

}  // namespace zemtra
