#pragma once
// The projected sweep over the geometry table: every entity that would be drawn, reduced to the
// chords the painter draws (with the picking step limits), projected into view units. It gives
// the box of what is seen, for the zoom commands.
#include <cstdint>

#include "view/DrawSettings.h"

namespace zemtra {

class GeometryTable;
class ViewState;

// A box in view units; empty while Low > High.
struct ViewBox {
  float LowU = 100000000.0f, LowV = 100000000.0f;
  float HighU = -100000000.0f, HighV = -100000000.0f;
  bool Empty() const { return LowU > HighU || LowV > HighV; }
  void Add(float u, float v) {
    if (u < LowU) LowU = u;
    if (u > HighU) HighU = u;
    if (v < LowV) LowV = v;
    if (v > HighV) HighV = v;
  }
};

// The box of entities first to last (clamped to the table) that are shown under `switches`,
// selected ones only with `selectedOnly`.
ViewBox ProjectedBox(const GeometryTable& table, std::int32_t first, std::int32_t last,
                     bool selectedOnly, const ViewState& view, const DrawSwitches& switches,
                     int rapidStyle);

}  // namespace zemtra
