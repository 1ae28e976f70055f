#include "dxf/DxfLayers.h"

namespace zemtra {

std::int32_t DxfLayerTable::LayerIndex(std::string_view name) const {
  for (std::size_t k = 0; k < layers_.size(); ++k) {
    if (layers_[k].LayerName == name) return static_cast<std::int32_t>(k + 1);
  }
  return 0;
}

std::int32_t DxfLayerTable::LayerOfEntity(std::int32_t index) const {
  for (std::size_t k = 0; k < layers_.size(); ++k) {
    if (index >= layers_[k].FirstEntity && index <= layers_[k].LastEntity) {
      return static_cast<std::int32_t>(k + 1);
    }
  }
  return 0;
}

std::int32_t DxfLayerTable::Add(std::string_view name, const ConvertParams& defaults) {
  ConvertParams layer = defaults;
  layer.LayerName = std::string(name);
  layer.Visible = -1;
  layer.FirstEntity = 0;
  layer.LastEntity = 0;
  layers_.push_back(std::move(layer));
  return Count();
}

}  // namespace zemtra
