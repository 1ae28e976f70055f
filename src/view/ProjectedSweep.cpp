#include "view/ProjectedSweep.h"

#include <algorithm>

#include "core/GeometryTable.h"
#include "view/EntityChords.h"
#include "view/ViewState.h"

namespace zemtra {

namespace {

// Widens the box by every projected chord end.
struct BoxSink {
  const ViewProjector& projector;
  ViewBox& box;
  void Add(const GeoPoint& p) {
    float u = 0, v = 0;
    projector.Project(p, u, v);
    box.Add(u, v);
  }
  void MoveTo(const GeoPoint& p) { Add(p); }
  void LineTo(const GeoPoint& p) { Add(p); }
};

}  // namespace

ViewBox ProjectedBox(const GeometryTable& table, std::int32_t first, std::int32_t last,
                     bool selectedOnly, const ViewState& view, const DrawSwitches& switches,
                     int rapidStyle) {
  ViewBox box;
  const ViewProjector projector = view.Projector();
  BoxSink sink{projector, box};
  first = std::max(first, 1);
  last = std::min(last, table.HighestIndex());
  for (std::int32_t i = first; i <= last; ++i) {
    const GeoEntity& e = table[i];
    if (selectedOnly && e.Selected == 0) continue;
    if (!IsEntityShown(e, switches)) continue;
    if (e.EntityType == kPoint) {
      sink.Add(e.EndPoint);
      continue;
    }
    EntityChords(e, rapidStyle, view.ScaleWidth, kPickArcSteps, sink);
  }
  return box;
}

}  // namespace zemtra
