#pragma once
// The plot range commands: which part of the table that stands the viewport shows, from the
// program lines at the cursor or in the selection. None of them runs the interpreter.
#include <cstdint>

#include "core/GeoTypes.h"

namespace zemtra {

class GeometryTable;

// The range to draw and where the marker stands: the end point and work offset of entity Last
// (of entity First's start when Last is 0).
struct PlotRange {
  std::int32_t First = 1;
  std::int32_t Last = 0;
  bool Active = false;  // PlotRangeActive
  GeoPoint EndPoint;
  GeoPoint WorkOffset;
};

// Each command takes the entities of the program lines it works on, as the link from a line to
// the table gives them (the last entity made by that line or the lines before it, 0 for none).

// Plot To Cursor: entities 1 to `cursorEntity`; the range becomes active.
PlotRange PlotToCursor(const GeometryTable& table, std::int32_t cursorEntity);
// Plot From Cursor: from `cursorEntity` (or from `current.Last` while `current` is active) to
// the end; the range is no longer active.
PlotRange PlotFromCursor(const GeometryTable& table, std::int32_t cursorEntity,
                         const PlotRange& current);
// Start at Cursor: an empty range just before `cursorEntity`, active, for the stepping to fill
// from there.
PlotRange StartAtCursor(const GeometryTable& table, std::int32_t cursorEntity);
// Plot Selected Blocks: the entities made by the selected lines, i.e. those behind
// `entityBefore` (the entity of the line above the selection) up to `lastEntity` (the entity of
// the selection's last line).
PlotRange PlotSelectedBlocks(const GeometryTable& table, std::int32_t entityBefore,
                             std::int32_t lastEntity);

// Applies `range` to the table's GeoFirst and GeoLast.
void ApplyPlotRange(GeometryTable& table, const PlotRange& range);

}  // namespace zemtra
