#pragma once
// Intersections of lines and circles, and clipping against the selection rectangle.
#include "core/GeoTypes.h"
#include "geom/Primitives.h"

namespace zemtra {

// Closeness under which a line touches a circle, or two circles touch.
inline constexpr double kTouchTolerance = 0.0001;

// Results of IntersectLineArc and IntersectArcs.
enum CurveHit : int { kNoHit = 0, kTwoHits = 1, kTangentHit = 2 };
// Results of ClipSegmentToRect.
enum ClipResult : int {
  kClipOutside = 0,
  kClipOneCrossing = 1,
  kClipTwoCrossings = 2,
  kClipInside = 3
};

// An axis-parallel rectangle in X, Y (view coordinates of a window selection); its corners may be
// given in any order.
struct SelectRect {
  double X1 = 0, Y1 = 0, X2 = 0, Y2 = 0;
};

// Point of the two infinite lines in `plane`: 0 when they are parallel (or one has no length),
// otherwise -1 with p set; p's normal axis and A are those of l1's end.
int IntersectLines(const LineRec& l1, const LineRec& l2, GeoPoint& p, int plane);
// Infinite line against the arc's full circle, in the arc's plane. kNoHit; kTwoHits with p1, p2;
// kTangentHit with p1 only (the foot of the perpendicular from the centre).
int IntersectLineArc(const LineRec& line, const ArcRec& arc, GeoPoint& p1, GeoPoint& p2);
// Full circles of two arcs, in the first arc's plane. kNoHit for concentric circles, a zero
// radius, or circles apart or nested; kTangentHit with p1 when they touch; kTwoHits otherwise.
int IntersectArcs(const ArcRec& a1, const ArcRec& a2, GeoPoint& p1, GeoPoint& p2);

// True when X and Y of p are within the rectangle, edges included.
bool PointInRect(const GeoPoint& p, const SelectRect& rect);
// The part of segment p0-p1 inside the rectangle, in X, Y: kClipInside (a = p0, b = p1) when both
// ends are inside; kClipOutside when nothing is; otherwise the number of edge crossings, with a, b
// the ends of the inside part (an inside end first).
int ClipSegmentToRect(const GeoPoint& p0, const GeoPoint& p1, const SelectRect& rect, GeoPoint& a,
                      GeoPoint& b);

}  // namespace zemtra
