#pragma once
// Chaining and sorting of a range of the geometry table, in place: drawing entities that arrive
// in any order and direction become continuous chains (numbered in each record's LineNumber),
// and the chains are put in a cutting order that keeps the travel between them short.
#include <cstdint>

#include "core/GeoTypes.h"
#include "core/GeometryTable.h"

namespace zemtra {

class Host;

// Swaps start and end of a line or arc (1, 2, 3); arcs also change direction. Other types come
// back unchanged.
GeoEntity ReverseEntity(const GeoEntity& entity);

// Chain numbers, the join tolerance and the long-running chain and sort passes.
class GeoSort {
 public:
  explicit GeoSort(Host& host) : host_(host) {}

  // Rearranges records first..last into chains. Starting from the first unused record, the
  // chain grows by the first record in table order whose start or end lies strictly closer than
  // DXFMaxJoinDistance (X, Y only) to the chain's tail (tests: tail-start, tail-end reversed) or
  // head (head-start reversed, head-end), tried in that order; the search then restarts. Each
  // chain gets the number ChainCount, which then increases. False when cancelled through the
  // host, with the range unchanged and its selection cleared.
  bool ChainGeometry(GeometryTable& table, std::int32_t first, std::int32_t last);
  // Writes the selected records back over their own places in reverse order, each reversed, and
  // clears their selection: a selected chain is then cut the other way.
  void ReverseChain(GeometryTable& table, std::int32_t first, std::int32_t last);
  // Reorders whole chains of first..last: the first is the one nearest to refPoint (or to the
  // top-left corner of the range's box), each later one the nearest to any end of the chain
  // before. Chains keep their direction and get consecutive numbers from the range's smallest.
  void SortGeometry(GeometryTable& table, std::int32_t first, std::int32_t last,
                    const GeoPoint& refPoint, bool useRefPoint);

  std::int32_t ChainCount = 0;        // next free chain number
  double DXFMaxJoinDistance = 0.003;  // join tolerance, machine units
  double ProgressInterval = 0.25;     // seconds between progress reports and event pumping

 private:
  // Progress and event pumping at most every 0.25 s; true when the user cancelled.
  bool Tick(double done, double total);

  Host& host_;
  double lastTick_ = 0;
};

// Selects, in a plotted program's table, the flat chain of records through `index` whose ends
// meet exactly (X and Y on a mill, Z and X on a lathe, at the record's own height). Nothing when
// the record is not flat.
void SelectChainFrom(GeometryTable& table, std::int32_t index, bool lathe);

}  // namespace zemtra
