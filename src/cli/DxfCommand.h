#pragma once
// zemtra-cli dxf and dxf2gcode: reading drawings and turning their layers into program text;
// and the DXF export of a plotted program.
#include <cstdint>
#include <iosfwd>
#include <string>
#include <vector>

namespace zemtra {

class GeometryTable;
class Host;

// `zemtra-cli dxf FILE [--config NAME|PATH] [--json]`: the layers of a drawing with their entity
// counts and extents; with --json also every entity and the layer ranges.
int RunDxfCommand(const std::vector<std::string>& args, std::ostream& out, std::ostream& err);
// `zemtra-cli dxf2gcode FILE [--layer NAME]... [--chain] [--sort] [options] [-o OUT]`.
int RunDxf2GCodeCommand(const std::vector<std::string>& args, std::ostream& out, std::ostream& err);
// Writes entities 1..count of a plotted table as a DXF file at `path`. Returns 0, or 1 with
// "Nothing to export!" when there is no entity, or 2 when the file cannot be written.
int ExportPlotAsDxf(const GeometryTable& table, std::int32_t count, bool lathe,
                    const std::string& path, Host& host, std::ostream& err);

}  // namespace zemtra
