#pragma once
// Picking and selecting entities in the picture. Everything works in view units (the pointer's
// raw picture coordinates) against the chords the painter draws, with the picking arc step, so
// that what is seen is what is hit. An entity's selection is its Selected byte (255 or 0).
#include <cstdint>

#include "core/GeometryTable.h"
#include "view/ProjectedSweep.h"

namespace zemtra {

class Viewport;

// The pick radius in pixels: a click within it of an entity hits it.
inline constexpr double kPickPixels = 8;

// The nearest shown entity to view point (u, v) within kPickPixels, or -1. Of two entities at the
// same distance the later wins; a point entity within the radius ends the search at once. With
// `selectedOnly` only selected entities take part. When `box` is given it receives the view box
// of every chord looked at (then every entity is flattened, which is slower).
std::int32_t FindEntityAt(const GeometryTable& table, const Viewport& view, double u, double v,
                          bool selectedOnly, ViewBox* box = nullptr);

// Selects by the rectangle of view corners (startX, startY) and (x, y): a right-to-left drag
// (startX > x) selects every entity touching it, otherwise only entities wholly inside.
// Selected entities stay selected. Returns the last index it selected, 0 when none.
std::int32_t SelectWindow(GeometryTable& table, const Viewport& view, double startX, double startY,
                          double x, double y);

// A click: mode 0 plain (clears the selection first), 1 Shift (adds), 2 Ctrl (takes the
// entity out). Returns the entity hit, or -1 (also for an empty table, which stays as it is).
std::int32_t SelectAtPoint(GeometryTable& table, const Viewport& view, double u, double v,
                           int mode);

// True when a rubber box from (startU, startV) to (u, v) is a box: one side longer than
// kPickPixels. A smaller one counts as a click.
inline bool IsSelectionBox(double startU, double startV, double u, double v, double unitsPerPixel) {
  const double limit = kPickPixels * unitsPerPixel;
  return (startU > u ? startU - u : u - startU) > limit ||
         (startV > v ? startV - v : v - startV) > limit;
}

// Number of selected entities in the table.
std::int32_t CountSelected(const GeometryTable& table);
// Clears the selection of every entity.
void ClearSelection(GeometryTable& table);

// The entity of 1-based program line `line`: the last entity made by the lines up to it, the
// highest index when every entity comes from an earlier line, 0 for an empty table.
std::int32_t FindEntityOfLine(const GeometryTable& table, std::int32_t line);

}  // namespace zemtra
