#include "view/Selection.h"

#include <algorithm>
#include <vector>

#include "core/NumberText.h"
#include "geom/GeoSort.h"
#include "view/PickGeometry.h"
#include "view/Picking.h"
#include "view/Viewport.h"

namespace zemtra {

using pick_detail::VisitDrawn;

namespace {

bool IsFlat(const GeoEntity& e) {
  return e.StartPoint.Z == e.EndPoint.Z;
}

bool IsRadiusArc(const GeoEntity& e) {
  return (e.EntityType == kArcCW || e.EntityType == kArcCCW) && e.RadiusOrTurns > 0;
}

// The one text of `value` over the selected entities that `has` accepts; "" when none or two
// differ.
template <class Has, class Value>
std::string UnanimousText(const GeometryTable& table, const Viewport& view, Has has, Value value) {
  std::string found;
  bool differ = false;
  VisitDrawn(table, view, [&](std::int32_t i) {
    const GeoEntity& e = table[i];
    if (differ || e.Selected == 0 || !has(e)) return;
    const std::string text = FormatSingleText(value(e));
    if (found.empty()) {
      found = text;
    } else if (text != found) {
      differ = true;
    }
  });
  return differ ? std::string() : found;
}

template <class Matches>
std::int32_t SelectMatching(GeometryTable& table, const Viewport& view, Matches matches) {
  std::int32_t added = 0;
  VisitDrawn(table, view, [&](std::int32_t i) {
    GeoEntity& e = table[i];
    if (!matches(e)) return;
    added += e.Selected == 0;
    e.Selected = 255;
  });
  return added;
}

}  // namespace

std::int32_t SelectLines(GeometryTable& table, std::int32_t first, std::int32_t last) {
  std::int32_t from = FindEntityOfLine(table, first);
  const std::int32_t to = FindEntityOfLine(table, last);
  if (from < 1 || to < 1) return 0;
  // The entities of the first line that come before its last one belong to it too.
  const std::int32_t line = table[from].LineNumber;
  while (line >= first && from > 1 && table[from - 1].LineNumber == line) --from;
  std::int32_t added = 0;
  for (std::int32_t i = from; i <= to; ++i) {
    added += table[i].Selected == 0;
    table[i].Selected = 255;
  }
  return added;
}

std::int32_t SelectChains(GeometryTable& table, bool lathe) {
  const std::int32_t count = table.HighestIndex();
  std::vector<std::uint8_t> chosen(static_cast<std::size_t>(count) + 1, 0);
  std::vector<std::uint8_t> saved(chosen.size(), 0);
  for (std::int32_t i = 1; i <= count; ++i) saved[static_cast<std::size_t>(i)] = table[i].Selected;
  // Each chain is walked on a cleared selection, so that selected members do not block it.
  for (std::int32_t seed = 1; seed <= count; ++seed) {
    if (saved[static_cast<std::size_t>(seed)] == 0 || chosen[static_cast<std::size_t>(seed)]) {
      continue;
    }
    ClearSelection(table);
    SelectChainFrom(table, seed, lathe);
    for (std::int32_t i = 1; i <= count; ++i) {
      if (table[i].Selected != 0) chosen[static_cast<std::size_t>(i)] = 1;
    }
  }
  std::int32_t added = 0;
  for (std::int32_t i = 1; i <= count; ++i) {
    const bool was = saved[static_cast<std::size_t>(i)] != 0;
    const bool now = was || chosen[static_cast<std::size_t>(i)] != 0;
    added += now && !was;
    table[i].Selected = now ? 255 : 0;
  }
  return added;
}

std::string FlatZCandidate(const GeometryTable& table, const Viewport& view) {
  return UnanimousText(table, view, IsFlat, [](const GeoEntity& e) { return e.StartPoint.Z; });
}

std::int32_t SelectByZ(GeometryTable& table, const Viewport& view, float z) {
  return SelectMatching(
      table, view, [z](const GeoEntity& e) { return e.StartPoint.Z == z && e.EndPoint.Z == z; });
}

std::string RadiusCandidate(const GeometryTable& table, const Viewport& view) {
  return UnanimousText(table, view, IsRadiusArc,
                       [](const GeoEntity& e) { return e.RadiusOrTurns; });
}

std::int32_t SelectByRadius(GeometryTable& table, const Viewport& view, float radius) {
  return SelectMatching(table, view, [radius](const GeoEntity& e) {
    return IsRadiusArc(e) && e.RadiusOrTurns == radius;
  });
}

std::int32_t DeleteSelected(GeometryTable& table) {
  const std::int32_t count = table.HighestIndex();
  std::int32_t kept = 0;
  for (std::int32_t i = 1; i <= count; ++i) {
    if (table[i].Selected != 0) continue;
    ++kept;
    if (kept != i) table[kept] = table[i];
  }
  if (kept == count) return 0;
  table.GeoIndex = kept + 1;
  table.End();
  return count - kept;
}

std::string AddedToSelectionText(std::int32_t count) {
  return std::to_string(count) + " entities added to selection";
}

}  // namespace zemtra
