#include "view/PointMeasure.h"

#include <cmath>

#include "geom/CalcTools.h"
#include "view/PickGeometry.h"
#include "view/Viewport.h"

namespace zemtra {

std::string PointMeasure::Begin() {
  PickMode = true;
  SnapShown = false;
  FirstPickDone = false;
  return "Select 1st Point";
}

void PointMeasure::End() {
  PickMode = false;
  SnapShown = false;
  FirstPickDone = false;
}

bool PointMeasure::FindSnap(const GeometryTable& table, const Viewport& view, double u, double v) {
  SnapShown = false;
  const ViewProjector projector = view.View.Projector();
  const double radius = kSnapPixels * view.View.UnitsPerPixel;
  const auto near = [&](const GeoPoint& p) {
    float pu = 0, pv = 0;
    projector.Project(p, pu, pv);
    return std::hypot(pu - u, pv - v) <= radius;
  };
  pick_detail::VisitDrawn(table, view, [&](std::int32_t i) {
    if (SnapShown) return;
    const GeoEntity& e = table[i];
    if (e.EntityType <= kArcCCW && near(e.StartPoint)) {
      SnapPoint = e.StartPoint;
    } else if (e.EntityType <= kPoint && near(e.EndPoint)) {
      SnapPoint = e.EndPoint;
    } else {
      return;
    }
    SnapShown = true;
  });
  return SnapShown;
}

PointMeasure::Press PointMeasure::TakePoint() {
  if (!PickMode || !SnapShown) return Press::Ignored;
  if (!FirstPickDone) {
    FirstPick = SnapPoint;
    FirstPickDone = true;
    return Press::FirstTaken;
  }
  SecondPick = SnapPoint;
  PickMode = false;
  FirstPickDone = false;
  SnapShown = false;
  return Press::Done;
}

std::string_view PointMeasure::StatusAfter(Press press) {
  return press == Press::FirstTaken ? "Select 2nd Point" : "";
}

std::string PointMeasure::Report(std::string_view format) const {
  return MeasureText(FirstPick, SecondPick, format);
}

}  // namespace zemtra
