#pragma once
// Offsets of single entities, and the constructions that round or cut the corner between two
// lines.
#include "core/GeoTypes.h"
#include "geom/Primitives.h"

namespace zemtra {

// The line moved sideways by `distance` in `plane`: to the left of its travel when positive.
LineRec OffsetLine(const LineRec& line, double distance, int plane);
// Lines as OffsetLine in their own plane; arcs (2, 3) keep centre and end angles and get the
// radius |r| + distance (clockwise) or |r| - distance (counter-clockwise), which again moves them
// to the left of travel, with both ends recomputed in the plane. Other types come back unchanged.
GeoEntity OffsetEntity(const GeoEntity& entity, double distance);

// Arc of `radius` tangent to both lines at the corner `first` -> `second`, in `plane`: its ends
// are the tangent points on the two lines, its direction 3 when the path turns left (IsTurnFlat
// of first's start, first's end and second's end), 2 when it turns right. False, with `arc` left
// as it was, when the lines are parallel or one has no length in the plane.
bool FilletLines(const LineRec& first, const LineRec& second, double radius, int plane,
                 ArcRec& arc);
// The chamfer line between the point `distance` back from first's end along `first` and the
// point `distance` on from second's start along `second` (3-D, A interpolated alike). False,
// with `chamfer` left as it was, when either line has no 3-D length.
bool ChamferLines(const LineRec& first, const LineRec& second, double distance, int plane,
                  LineRec& chamfer);

}  // namespace zemtra
