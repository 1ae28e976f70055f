// The DXF reader: layer names, then the entities of the first layers on a mill and on a lathe,
// then the extents, as a drawing is opened.
#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <string>

#include "FuzzSupport.h"
#include "core/GeometryTable.h"
#include "dxf/DxfLayers.h"
#include "dxf/DxfReader.h"
#include "geom/Extents.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace zemtra;
  fuzz::DeadlineHost host(std::chrono::milliseconds(300));
  DxfReader reader(std::string(fuzz::AsText(data, size)), host);
  DxfLayerTable layers;
  if (!reader.LoadDXFLayerNames(layers, ConvertParams{})) return 0;
  GeometryTable table;
  table.Begin();
  table.End();
  const bool lathe = size % 2 == 1;
  // Each layer is a pass over the whole drawing; the first few (a first layer, then ones
  // added to it) reach all that a pass can, while a hundred would make one input cost a
  // hundred passes.
  constexpr std::int32_t kLayersRead = 4;
  for (std::int32_t i = 1; i <= std::min(layers.Count(), kLayersRead); ++i) {
    if (!reader.LoadDXFLayer(layers[i].LayerName, i > 1, lathe, table, layers)) break;
  }
  ComputeExtents(table);
  return 0;
}
