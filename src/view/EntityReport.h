#pragma once
// The text report on one entity shown in the entity window: its kind, its points, length,
// angles and, for arcs, the G-code that would make it. Lines end with "\r\n".
#include <cstdint>
#include <string>
#include <string_view>

#include "core/GeometryTable.h"

namespace zemtra {

struct EntityReportStyle {
  std::string_view NumberFormat = "###0.0###";  // the display precision's short format
  bool Lathe = false;                           // Z before X, one angle
  std::string_view FourthAxisLetter;            // appended to mill points when not empty
};

// An entity's place in a chain of a drawing: the chain's number and the 1-based member index.
struct ChainPlace {
  std::int32_t Chain = 0;
  std::int32_t Index = 0;
};

// The chain of entity `index` in a chained drawing: its LineNumber, and its place among the
// neighbours of the same number.
ChainPlace ChainPlaceOf(const GeometryTable& table, std::int32_t index);

// The report of `entity`; with `chain` the heading names the chain and the member's place.
std::string EntityReport(const GeoEntity& entity, const EntityReportStyle& style,
                         const ChainPlace* chain = nullptr);

}  // namespace zemtra
