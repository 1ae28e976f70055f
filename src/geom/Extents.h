#pragma once
// Bounding boxes of entities and of the whole geometry table, over X, Y, Z and A.
#include "core/GeoTypes.h"
#include "core/GeometryTable.h"

namespace zemtra {

// Entity code of a single point (intersections, centres, DXF points): drawn at its end point.

// Box of one entity: lines by their ends, arcs by ArcExtents, helixes by their ends and every
// in-plane axis direction their sweep passes (a whole circle once they make a full turn), points
// by their end. False, with low and high untouched, for a type that is never drawn.
bool EntityExtents(const GeoEntity& entity, GeoPoint& low, GeoPoint& high);
// Box of entities 1 to the highest index; false, with both set to the zero point, when there is
// no entity with a box.
bool TableExtents(const GeometryTable& table, GeoPoint& low, GeoPoint& high);
// TableExtents into the table's GeoMin and GeoMax.
void ComputeExtents(GeometryTable& table);

}  // namespace zemtra
