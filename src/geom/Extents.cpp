#include "geom/Extents.h"

#include <algorithm>

#include "geom/Arcs.h"
#include "geom/Primitives.h"

namespace zemtra {

namespace {

void Include(GeoPoint& low, GeoPoint& high, const GeoPoint& boxLow, const GeoPoint& boxHigh) {
  low = {std::min(low.X, boxLow.X), std::min(low.Y, boxLow.Y), std::min(low.Z, boxLow.Z),
         std::min(low.A, boxLow.A)};
  high = {std::max(high.X, boxHigh.X), std::max(high.Y, boxHigh.Y), std::max(high.Z, boxHigh.Z),
          std::max(high.A, boxHigh.A)};
}

}  // namespace

bool EntityExtents(const GeoEntity& entity, GeoPoint& low, GeoPoint& high) {
  switch (entity.EntityType) {
    case kRapid:
    case kFeed:
      low = high = entity.StartPoint;
      Include(low, high, entity.EndPoint, entity.EndPoint);
      return true;
    case kArcCW:
    case kArcCCW:
      ArcExtents(ArcFromEntity(entity), low, high);
      return true;
    case kHelixCW:
    case kHelixCCW:
      SweepExtents(ArcFromEntity(entity), ArcSweep(entity), low, high);
      return true;
    case kPoint:
      low = high = entity.EndPoint;
      return true;
    default:
      return false;
  }
}

bool TableExtents(const GeometryTable& table, GeoPoint& low, GeoPoint& high) {
  bool any = false;
  low = high = GeoPoint{};
  for (std::int32_t i = 1; i <= table.HighestIndex(); ++i) {
    GeoPoint boxLow, boxHigh;
    if (!EntityExtents(table[i], boxLow, boxHigh)) continue;
    if (!any) {
      low = boxLow;
      high = boxHigh;
      any = true;
    } else {
      Include(low, high, boxLow, boxHigh);
    }
  }
  return any;
}

void ComputeExtents(GeometryTable& table) {
  TableExtents(table, table.GeoMin, table.GeoMax);
}

}  // namespace zemtra
