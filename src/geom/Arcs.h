#pragma once
// Arc measures and constructions: points on the circle, sweep, length, bounding box, and the
// centre of an arc given by its radius.
#include "core/GeoTypes.h"
#include "geom/Primitives.h"

namespace zemtra {

// The point at `angle` (radians) on the arc's circle, in the arc's plane; the normal axis and A
// come from the centre. An unknown plane gives the zero point.
GeoPoint PointOnCircle(const ArcRec& arc, double angle);
// Recomputes both ends in X and Y from the centre, the radius and two angles in degrees.
void ArcEndsFromAngles(double startDegrees, double endDegrees, ArcRec& arc);

// Included angle in radians, in (0, 2 pi]; ends at the same angle make a full circle.
double ArcSweep(const ArcRec& arc);
// Included angle of an arc or helix record in radians; a helix adds its turns (a full turn per
// turn, the first one counted in when the ends already make a full circle). 0 for other types.
double ArcSweep(const GeoEntity& entity);
// Sweep times |radius|, in machine units.
double ArcLength(const ArcRec& arc);

// Bounding box of the arc. A full circle (start equal to end) spans centre +- radius in the
// plane and keeps the start's normal coordinate.
void ArcExtents(const ArcRec& arc, GeoPoint& low, GeoPoint& high);
// Box of the two ends, widened to centre +- radius on every in-plane axis direction that a sweep
// of `sweep` radians from the start, in the arc's direction, passes strictly inside.
void SweepExtents(const ArcRec& arc, double sweep, GeoPoint& low, GeoPoint& high);

// Centre of the arc from start to end with the signed radius: positive on a clockwise arc or
// negative on a counter-clockwise one takes the minor arc, the other two the major arc. With
// start and end on the same spot in the plane the centre is the start. Only the in-plane axes of
// the result differ from the start.
GeoPoint CenterFromRadius(const GeoPoint& start, const GeoPoint& end, double signedRadius,
                          int direction, int plane);
// Sets arc.Center from arc.Radius (signed) and makes the radius positive. When start and end
// coincide in the plane the centre becomes the start and the radius is left as it is.
void ArcCenterFromRadius(ArcRec& arc);

}  // namespace zemtra
