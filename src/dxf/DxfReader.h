#pragma once
// Reading AutoCAD DXF text files into the geometry table, layer by layer. Only the ENTITIES
// section is read, and only in X and Y: every imported entity lies at Z 0 (on a lathe the
// drawing's X becomes Z and its Y becomes X).
#include <cstdint>
#include <string>
#include <string_view>

#include "core/GeometryTable.h"
#include "dxf/DxfLayers.h"

namespace zemtra {

class Host;
struct MachineConfig;

// Entities of the simple kinds built from one layer, by their DXF name.
struct DxfKindCounts {
  int lines = 0, arcs = 0, circles = 0, points = 0;
  friend bool operator==(const DxfKindCounts&, const DxfKindCounts&) = default;
};

// One drawing held in memory, read pass by pass.
class DxfReader {
 public:
  // `text` is the whole file; progress, events and cancel go through `host`.
  DxfReader(std::string text, Host& host) : text_(std::move(text)), host_(host) {}

  // First pass: adds each layer named in the ENTITIES section, in order of appearance, with
  // `defaults` ("0" becomes "DEFAULT"). False when cancelled.
  bool LoadDXFLayerNames(DxfLayerTable& layers, const ConvertParams& defaults);
  // Second pass: the entities of one layer appended to the table (or replacing it when `append`
  // is false); the layer's FirstEntity and LastEntity are set when it is in `layers`. Returns
  // false when cancelled; what was read until then stays.
  // `counts`, when given, receives the LINE, ARC, CIRCLE and POINT entities built.
  bool LoadDXFLayer(std::string_view layerName, bool append, bool lathe, GeometryTable& table,
                    DxfLayerTable& layers, DxfKindCounts* counts = nullptr);

 private:
  std::string text_;
  Host& host_;
};

// Reads the file at `path` into `table` and `layers` (both replaced): every layer in turn, then
// the extents. Layers take the configuration's DXF defaults; a lathe configuration turns the
// drawing into Z and X. False with `error` set when the file cannot be read.
bool LoadDXF(const std::string& path, const MachineConfig& config, GeometryTable& table,
             DxfLayerTable& layers, Host& host, std::string& error);

}  // namespace zemtra
