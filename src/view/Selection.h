#pragma once
// The selection commands over the geometry table: entities of program lines, whole chains,
// flat entities at one Z, arcs of one radius, and deleting what is selected. Each works on the
// entities' Selected bytes; the window shows the counts and repaints.
#include <cstdint>
#include <string>

#include "core/GeometryTable.h"

namespace zemtra {

class Viewport;

// Selects the entities of 1-based program lines first to last: FindEntityOfLine(first) to
// FindEntityOfLine(last), widened back over the other entities of the first line, so that a
// line that made several entities has them all (a line that made none marks the last entity
// before it). Returns the entities newly selected.
std::int32_t SelectLines(GeometryTable& table, std::int32_t first, std::int32_t last);

// Adds to the selection every member of the chains through the selected entities (flat
// entities whose ends meet; Z and X on a lathe). Returns the entities added.
std::int32_t SelectChains(GeometryTable& table, bool lathe);

// The Z shared by the selected flat entities of the drawn range (start Z = end Z), as the text
// of a 32-bit float; "" when there is none or they differ.
std::string FlatZCandidate(const GeometryTable& table, const Viewport& view);
// Selects every flat entity of the drawn range at exactly `z`. Returns the entities added.
std::int32_t SelectByZ(GeometryTable& table, const Viewport& view, float z);

// The radius shared by the selected arcs of the drawn range; "" when there is none or they
// differ.
std::string RadiusCandidate(const GeometryTable& table, const Viewport& view);
// Selects every arc of the drawn range with exactly `radius` (above 0). Returns the added count.
std::int32_t SelectByRadius(GeometryTable& table, const Viewport& view, float radius);

// Removes the selected entities, moving the rest down in order and shortening the table.
// Returns the number removed. The program text is not touched.
std::int32_t DeleteSelected(GeometryTable& table);

// The text of a count added to the selection: "3 entities added to selection".
std::string AddedToSelectionText(std::int32_t count);

}  // namespace zemtra
