#pragma once
// Writing geometry as a DXF text file: one ENTITIES section of LINE, ARC, CIRCLE and POINT
// entities on the layer "DEFAULT". Rapids are left out.
#include <cstdint>
#include <string>

#include "core/GeometryTable.h"

namespace zemtra {

struct DxfWriteOptions {
  bool lathe = false;         // lines carry Z as the drawing's X and X as its Y
  bool selectedOnly = false;  // only records with a selection byte
};

// The entity pairs of records first..last (no section around them). `handle` is the running
// hexadecimal handle, advanced for each entity written.
std::string DxfEntitiesText(const GeometryTable& table, std::int32_t first, std::int32_t last,
                            const DxfWriteOptions& options, std::uint32_t& handle);
// A whole file: SECTION ENTITIES, the entities of first..last, ENDSEC, EOF. Lines end in CR LF.
std::string ExportGeometryAsDXF(const GeometryTable& table, std::int32_t first, std::int32_t last,
                                const DxfWriteOptions& options);
// Writes `text` to `path` through a temporary file beside it (a device or pipe is written in
// place). False with `error` set on failure.
bool WriteDxfFile(const std::string& path, const std::string& text, std::string& error);

}  // namespace zemtra
