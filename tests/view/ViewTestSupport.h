#pragma once
// Small builders for the viewport's tests: entities with a colour, tables, and a viewport
// drawing on a recording surface. Points (test::P) come from the geometry tests' builders.
#include <utility>
#include <vector>

#include "core/GeoTypes.h"
#include "core/GeometryTable.h"
#include "core/RecordingHost.h"
#include "geom/GeomTestSupport.h"
#include "view/RecordingSurface.h"
#include "view/Viewport.h"

namespace zemtra::test {

inline GeoEntity Line(int type, GeoPoint from, GeoPoint to, int colorIndex = 1) {
  GeoEntity e;
  e.EntityType = static_cast<std::uint8_t>(type);
  e.StartPoint = from;
  e.EndPoint = to;
  e.Plane = 17;
  e.ColorIndex = static_cast<std::uint8_t>(colorIndex);
  return e;
}

inline GeoEntity Arc(int type, GeoPoint from, GeoPoint to, GeoPoint center, float radiusOrTurns,
                     int plane = 17) {
  GeoEntity e = Line(type, from, to, type);
  e.CenterPoint = center;
  e.RadiusOrTurns = radiusOrTurns;
  e.Plane = static_cast<std::uint8_t>(plane);
  return e;
}

// A viewport over its own table, drawing on a recording surface of the given size.
struct ViewportRig {
  explicit ViewportRig(int width = 200, int height = 100)
      : viewport(table, host), surface(width, height) {
    viewport.AttachSurface(&surface);
  }
  // Fills the table and loads it, which zooms to its extents.
  void LoadTable(const std::vector<GeoEntity>& entities) {
    Fill(table, entities);
    viewport.LoadGeometry(table.HighestIndex());
  }
  // The view point of machine point p.
  std::pair<double, double> At(const GeoPoint& p) const {
    float u = 0, v = 0;
    viewport.View.ProjectPoint(p, u, v);
    return {u, v};
  }

  GeometryTable table;
  RecordingHost host;
  Viewport viewport;
  RecordingSurface surface;
};

}  // namespace zemtra::test
