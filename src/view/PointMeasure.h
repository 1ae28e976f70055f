#pragma once
// Point-to-point measuring in the picture: the pointer snaps to entity ends, two presses take
// two points, and the distances between them are reported.
#include <string>
#include <string_view>

#include "core/GeoTypes.h"
#include "core/GeometryTable.h"

namespace zemtra {

class Viewport;

// The snap radius in pixels, and the radius of the circle that marks a snap point.
inline constexpr double kSnapPixels = 10;
inline constexpr double kSnapMarkPixels = 4;

class PointMeasure {
 public:
  // What a press did.
  enum class Press { Ignored, FirstTaken, Done };

  // Starts measuring; returns the status text "Select 1st Point".
  std::string Begin();
  // Leaves measuring without a result.
  void End();

  // Looks for an entity end within kSnapPixels of view point (u, v): the first in table order
  // of the drawn range (both ends of lines and arcs, the end of points). Sets SnapShown and
  // SnapPoint; true when one was found.
  bool FindSnap(const GeometryTable& table, const Viewport& view, double u, double v);

  // A press of the pointer: takes the snap point as the first or the second point. Without a
  // snap point, or when not measuring, nothing happens.
  Press TakePoint();
  // The status text after a press: "Select 2nd Point" after the first, "" after the second.
  static std::string_view StatusAfter(Press press);
  // The distances between the two points, numbers in `format` (the measuring box's text).
  std::string Report(std::string_view format) const;

  bool PickMode = false;
  bool SnapShown = false;
  bool FirstPickDone = false;
  GeoPoint SnapPoint;
  GeoPoint FirstPick;
  GeoPoint SecondPick;
};

}  // namespace zemtra
