#pragma once
// "Lies on" tests and nearest-point distances for lines and arcs.
#include "core/GeoTypes.h"
#include "geom/Primitives.h"

namespace zemtra {

// True when p lies on the segment in 3-D: the two distances from its ends add up to the segment's
// length within `tolerance`. A point slightly beyond an end still passes.
bool PointOnSegment(const LineRec& line, const GeoPoint& p, double tolerance = GeomTolerance);
// The same with in-plane distances (an unknown plane has none, so every point passes).
bool PointOnSegmentPlane(const LineRec& line, const GeoPoint& p, int plane,
                         double tolerance = GeomTolerance);
// True when the direction of p from the centre lies within the arc's sweep, ends included. An arc
// whose ends have the same direction is a full circle and contains every point.
bool PointInArcSweep(const ArcRec& arc, const GeoPoint& p);

// In-plane coordinates of the foot of the perpendicular from p on the infinite line (its normal
// coordinate is that of the line's end); the start for a zero-length line.
PlaneCoords FootInPlane(const LineRec& line, const GeoPoint& p, int plane);
// Foot of the perpendicular from p on the infinite line, in `plane` (default X, Y); the normal
// axis and A come from the line's end. A zero-length line gives its start.
GeoPoint FootOnLine(const LineRec& line, const GeoPoint& p, int plane = 17);
// In-plane distance from p to the segment: to the foot when it lies on the segment, otherwise to
// the nearer end.
double DistPointToSegment(const LineRec& line, const GeoPoint& p, int plane = 17);
// In-plane distance from p to the arc (its plane): to the circle when p's direction is within
// the sweep, otherwise to the nearer end.
double DistPointToArc(const ArcRec& arc, const GeoPoint& p);

}  // namespace zemtra
