#include "interp/PlotRange.h"

#include <algorithm>

#include "core/GeometryTable.h"

namespace zemtra {

namespace {

// The marker of a range: at the end of its last entity, or at the start of the table.
PlotRange WithMarker(const GeometryTable& table, PlotRange range) {
  const std::int32_t count = table.HighestIndex();
  if (range.Last >= 1 && range.Last <= count) {
    range.EndPoint = table[range.Last].EndPoint;
    range.WorkOffset = table[range.Last].WorkOffset;
  } else if (count >= 1) {
    range.EndPoint = table[1].StartPoint;
    range.WorkOffset = table[1].WorkOffset;
  }
  return range;
}

}  // namespace

PlotRange PlotToCursor(const GeometryTable& table, std::int32_t cursorEntity) {
  PlotRange range;
  range.First = 1;
  range.Last = cursorEntity;
  range.Active = true;
  return WithMarker(table, range);
}

PlotRange PlotFromCursor(const GeometryTable& table, std::int32_t cursorEntity,
                         const PlotRange& current) {
  PlotRange range;
  range.First = std::max(current.Active ? current.Last : cursorEntity, 1);
  range.Last = table.HighestIndex();
  range.Active = false;
  return WithMarker(table, range);
}

PlotRange StartAtCursor(const GeometryTable& table, std::int32_t cursorEntity) {
  PlotRange range;
  range.First = std::max(cursorEntity, 1);
  range.Last = range.First - 1;
  range.Active = true;
  return WithMarker(table, range);
}

PlotRange PlotSelectedBlocks(const GeometryTable& table, std::int32_t entityBefore,
                             std::int32_t lastEntity) {
  PlotRange range;
  range.First = entityBefore + 1;
  range.Last = lastEntity;
  range.Active = true;
  return WithMarker(table, range);
}

void ApplyPlotRange(GeometryTable& table, const PlotRange& range) {
  table.GeoFirst = range.First;
  table.GeoLast = range.Last;
}

}  // namespace zemtra
