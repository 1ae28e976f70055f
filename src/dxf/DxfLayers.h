#pragma once
// The layers of an imported drawing: each with its entity range in the geometry table and its
// conversion settings.
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "config/ConvertParams.h"

namespace zemtra {

class DxfLayerTable {
 public:
  // Index of the layer named exactly `name` (1-based), or 0.
  std::int32_t LayerIndex(std::string_view name) const;
  // The 1-based layer whose entity range holds `index`, or 0.
  std::int32_t LayerOfEntity(std::int32_t index) const;
  // Adds a visible layer with the given defaults; returns its index.
  std::int32_t Add(std::string_view name, const ConvertParams& defaults);

  std::int32_t Count() const { return static_cast<std::int32_t>(layers_.size()); }
  ConvertParams& operator[](std::int32_t index) { return layers_[std::size_t(index - 1)]; }
  const ConvertParams& operator[](std::int32_t index) const {
    return layers_[std::size_t(index - 1)];
  }
  void Clear() { layers_.clear(); }

 private:
  std::vector<ConvertParams> layers_;
};

}  // namespace zemtra
