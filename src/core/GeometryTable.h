#pragma once
// The geometry table: entities numbered from 1 (slot 0 unused), with the plot's companions.
#include <cstdint>
#include <vector>

#include "core/GeoTypes.h"

namespace zemtra {

class GeometryTable {
 public:
  GeometryTable() { Clear(); }

  // Slots 0 and 1, GeoIndex 1, GeoFirst 1, GeoLast 0.
  void Begin();
  // Slot 0 alone.
  void Clear();
  // Fills the slot at GeoIndex, then advances.
  void Add(const GeoEntity& entity);
  // GeoIndex + 1; grows by 500 slots when needed; the new slot starts where the last ended.
  void Advance();
  // Makes room for `entities` entities at once, so that a plot of a known size does not
  // move the table as it grows. The contents and the numbering are unchanged.
  void Reserve(std::int32_t entities);
  // Trims to GeoIndex - 1 entities and sets GeoLast.
  void End();
  // Stores `entity` before the entity being filled at GeoIndex (which moves up one slot and
  // stays the current one), and repairs the chain: corner rounding and chamfers.
  void InsertBeforeLast(const GeoEntity& entity);

  // Highest slot index; 0 means nothing to draw.
  std::int32_t HighestIndex() const { return static_cast<std::int32_t>(slots_.size()) - 1; }
  GeoEntity& operator[](std::int32_t index) { return slots_[static_cast<std::size_t>(index)]; }
  const GeoEntity& operator[](std::int32_t index) const {
    return slots_[static_cast<std::size_t>(index)];
  }
  GeoEntity& Current() { return (*this)[GeoIndex]; }
  const GeoEntity* data() const { return slots_.data(); }

  std::int32_t GeoIndex = 1;
  std::int32_t GeoFirst = 1;
  std::int32_t GeoLast = 0;
  GeoPoint GeoMin;
  GeoPoint GeoMax;
  double RapidDistance = 0;
  double FeedDistance = 0;
  double RunTime = 0;  // seconds

 private:
  void Resize(std::int32_t highestIndex);
  std::vector<GeoEntity> slots_;
};

// Length of an entity: lines in 3-D, arcs along the sweep, helixes including their travel.
double EntityLength(const GeoEntity& entity);

}  // namespace zemtra
