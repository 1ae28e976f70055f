#pragma once
// Helpers shared by picking and selecting: the drawn ranges, and a quick view box of an entity
// that lets the walks skip entities far from the pointer or the rectangle without flattening.
#include <algorithm>
#include <cmath>
#include <cstdint>

#include "core/GeometryTable.h"
#include "view/EntityChords.h"
#include "view/ViewProjector.h"
#include "view/Viewport.h"

namespace zemtra::pick_detail {

// Calls visit(index) over the drawn range, or the visible layers of a drawing.
template <class Visit>
void VisitDrawn(const GeometryTable& table, const Viewport& view, Visit&& visit) {
  const auto range = [&](std::int32_t first, std::int32_t last) {
    first = std::max(first, 1);
    last = std::min(last, table.HighestIndex());
    for (std::int32_t i = first; i <= last; ++i) visit(i);
  };
  if (view.DXFMode) {
    for (const LayerRange& layer : view.Layers) {
      if (layer.Visible) range(layer.First, layer.Last);
    }
  } else {
    range(view.DrawFirst, std::min(view.DrawLast, view.EntityCount()));
  }
}

// A box in view units given by its middle and half sides.
struct QuickBox {
  double MidU = 0, MidV = 0, HalfU = 0, HalfV = 0;
  double Margin = 0;  // allowance for the rounding of the projected chord ends

  // True when every point of the box is farther than `radius` from (u, v), so no chord inside
  // it can be within reach.
  bool FartherThan(double u, double v, double radius) const {
    const double du = std::fabs(u - MidU) - HalfU - Margin;
    const double dv = std::fabs(v - MidV) - HalfV - Margin;
    if (du > radius || dv > radius) return true;
    if (du <= 0 || dv <= 0) return false;
    return du * du + dv * dv > radius * radius;
  }
};

// The view mapping written as u = U0 + Ux x + Uy y + Uz z (and v alike), which every view is
// for a point without rotary angle. Projects a machine box in a few multiplications.
class QuickProjection {
 public:
  explicit QuickProjection(const ViewProjector& projector) {
    double u0 = 0, v0 = 0, u = 0, v = 0;
    valid_ = projector.ProjectCorrected(0, 0, 0, u0, v0);
    const double unit[3][3] = {{1, 0, 0}, {0, 1, 0}, {0, 0, 1}};
    for (int axis = 0; axis < 3 && valid_; ++axis) {
      projector.ProjectCorrected(unit[axis][0], unit[axis][1], unit[axis][2], u, v);
      u_[axis] = u - u0;
      v_[axis] = v - v0;
    }
    u0_ = u0, v0_ = v0;
  }

  // The view box of the chords of `e`; false when it has none to offer (a rotary angle, an
  // unknown view), and the entity must be flattened.
  bool BoxOf(const GeoEntity& e, QuickBox& box) const {
    if (!valid_ || e.StartPoint.A != 0 || e.EndPoint.A != 0) return false;
    double lo[3], hi[3];
    MachineBox(e, lo, hi);
    double mid[3], half[3];
    for (int k = 0; k < 3; ++k) mid[k] = (lo[k] + hi[k]) / 2, half[k] = (hi[k] - lo[k]) / 2;
    box.MidU = u0_ + u_[0] * mid[0] + u_[1] * mid[1] + u_[2] * mid[2];
    box.MidV = v0_ + v_[0] * mid[0] + v_[1] * mid[1] + v_[2] * mid[2];
    box.HalfU =
        std::fabs(u_[0]) * half[0] + std::fabs(u_[1]) * half[1] + std::fabs(u_[2]) * half[2];
    box.HalfV =
        std::fabs(v_[0]) * half[0] + std::fabs(v_[1]) * half[1] + std::fabs(v_[2]) * half[2];
    const double size = std::fabs(box.MidU) + std::fabs(box.MidV) + box.HalfU + box.HalfV;
    box.Margin = 1e-5 * (1 + size);
    return std::isfinite(box.MidU) && std::isfinite(box.MidV) && std::isfinite(box.HalfU) &&
           std::isfinite(box.HalfV);
  }

 private:
  static void Add(const GeoPoint& p, double lo[3], double hi[3]) {
    const double c[3] = {p.X, p.Y, p.Z};
    for (int k = 0; k < 3; ++k) lo[k] = std::min(lo[k], c[k]), hi[k] = std::max(hi[k], c[k]);
  }

  // Arcs and helixes keep within the square about the centre in their plane, at the heights of
  // their ends; lines and the paths of every rapid style within the box of their ends.
  static void MachineBox(const GeoEntity& e, double lo[3], double hi[3]) {
    for (int k = 0; k < 3; ++k) lo[k] = 1e300, hi[k] = -1e300;
    Add(e.StartPoint, lo, hi);
    Add(e.EndPoint, lo, hi);
    const bool arc = e.EntityType == kArcCW || e.EntityType == kArcCCW;
    const bool helix = e.EntityType == kHelixCW || e.EntityType == kHelixCCW;
    const int plane = NormalPlane(e.Plane);
    if (!(arc || helix) || !IsKnownPlane(plane)) return;
    double r = arc ? std::fabs(static_cast<double>(e.RadiusOrTurns))
                   : DistPlane(e.CenterPoint, e.StartPoint, plane);
    r = std::max(r, 0.0001);
    const PlaneCoords c = ToPlane(e.CenterPoint, plane);
    for (const GeoPoint* end : {&e.StartPoint, &e.EndPoint}) {
      GeoPoint corner = *end;
      SetInPlane(corner, plane, c.First - r, c.Second - r);
      Add(corner, lo, hi);
      SetInPlane(corner, plane, c.First + r, c.Second + r);
      Add(corner, lo, hi);
    }
  }

  bool valid_ = false;
  double u0_ = 0, v0_ = 0;
  double u_[3] = {0, 0, 0}, v_[3] = {0, 0, 0};
};

}  // namespace zemtra::pick_detail
