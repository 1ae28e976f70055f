#include "dxf/DxfWriter.h"

#include <cmath>
#include <cstdio>
#include <filesystem>
#include <fstream>

#include "core/NumberText.h"
#include "geom/Primitives.h"

namespace zemtra {

namespace {

constexpr std::string_view kNumberFormat = "######0.0###########";
constexpr std::string_view kEol = "\r\n";

class PairWriter {
 public:
  explicit PairWriter(std::string& out) : out_(out) {}
  void Text(std::string_view code, std::string_view value) {
    out_.append(code).append(kEol).append(value).append(kEol);
  }
  void Number(std::string_view code, double value) {
    Text(code, FormatNumberText(value, kNumberFormat));
  }
  void Point(std::string_view x, std::string_view y, std::string_view z, double vx, double vy,
             double vz) {
    Number(x, vx);
    Number(y, vy);
    Number(z, vz);
  }

 private:
  std::string& out_;
};

std::string HexHandle(std::uint32_t handle) {
  char text[16];
  std::snprintf(text, sizeof text, "%X", handle);
  return text;
}

void BeginEntity(PairWriter& w, std::string_view name, std::uint32_t& handle) {
  w.Text(" 0", name);
  w.Text(" 8", "DEFAULT");
  w.Text(" 5", HexHandle(handle++));
}

void WriteLine(PairWriter& w, const GeoEntity& e, bool lathe) {
  if (lathe) {
    w.Number(" 10", e.StartPoint.Z);
    w.Number(" 20", e.StartPoint.X);
    w.Text(" 30", " 0");
    w.Number(" 11", e.EndPoint.Z);
    w.Number(" 21", e.EndPoint.X);
    w.Text(" 31", " 0");
    return;
  }
  w.Point(" 10", " 20", " 30", e.StartPoint.X, e.StartPoint.Y, e.StartPoint.Z);
  w.Point(" 11", " 21", " 31", e.EndPoint.X, e.EndPoint.Y, e.EndPoint.Z);
}

// The centre in the entity's own coordinate system: for the ZX plane the normal is +Y and the
// system's axes are -X, Z, Y; for the YZ plane the normal is +X and the axes are Y, Z, X.
void WriteCenter(PairWriter& w, const ArcRec& arc) {
  const GeoPoint& c = arc.Center;
  switch (NormalPlane(arc.Plane)) {
    case 18:
      w.Point(" 10", " 20", " 30", -double(c.X), c.Z, c.Y);
      break;
    case 19:
      w.Point(" 10", " 20", " 30", c.Y, c.Z, c.X);
      break;
    default:
      w.Point(" 10", " 20", " 30", c.X, c.Y, c.Z);
      break;
  }
}

void WriteExtrusion(PairWriter& w, int plane) {
  if (plane == 18) {
    w.Text("210", " 0");
    w.Text("220", " 1");
    w.Text("230", " 0");
  } else if (plane == 19) {
    w.Text("210", " 1");
    w.Text("220", " 0");
    w.Text("230", " 0");
  }
}

double AngleDegreesOf(const ArcRec& arc, const GeoPoint& p) {
  double degrees = AngleTo(arc.Center, p, arc.Plane) / kDegree;
  if (NormalPlane(arc.Plane) == 18) {
    degrees += 90;
    if (degrees >= 360) degrees -= 360;
  }
  return degrees;
}

void WriteArc(PairWriter& w, const GeoEntity& e, std::uint32_t& handle) {
  ArcRec arc = ArcFromEntity(e);
  const int plane = NormalPlane(arc.Plane);
  // Ends together in the plane (a helix's turn included): the flat projection is a circle.
  if (DistPlane(arc.Start, arc.End, plane) == 0) {
    BeginEntity(w, "CIRCLE", handle);
    WriteCenter(w, arc);
    w.Number(" 40", std::fabs(arc.Radius));
    WriteExtrusion(w, plane);
    return;
  }
  BeginEntity(w, "ARC", handle);
  WriteCenter(w, arc);
  w.Number(" 40", std::fabs(arc.Radius));
  const double start = AngleDegreesOf(arc, arc.Start);
  const double end = AngleDegreesOf(arc, arc.End);
  const bool clockwise = (e.EntityType % 10) == kArcCW;
  w.Number(" 50", clockwise ? end : start);
  w.Number(" 51", clockwise ? start : end);
  WriteExtrusion(w, plane);
}

}  // namespace

std::string DxfEntitiesText(const GeometryTable& table, std::int32_t first, std::int32_t last,
                            const DxfWriteOptions& options, std::uint32_t& handle) {
  std::string out;
  PairWriter w(out);
  for (std::int32_t i = std::max(first, 1); i <= last && i <= table.HighestIndex(); ++i) {
    const GeoEntity& e = table[i];
    if (options.selectedOnly && e.Selected == 0) continue;
    switch (e.EntityType) {
      case kFeed:
        BeginEntity(w, "LINE", handle);
        WriteLine(w, e, options.lathe);
        break;
      case kArcCW:
      case kArcCCW:
      case kHelixCW:
      case kHelixCCW:
        WriteArc(w, e, handle);
        break;
      case kPoint:
        BeginEntity(w, "POINT", handle);
        w.Point(" 10", " 20", " 30", e.EndPoint.X, e.EndPoint.Y, e.EndPoint.Z);
        break;
      default:
        break;
    }
  }
  return out;
}

std::string ExportGeometryAsDXF(const GeometryTable& table, std::int32_t first, std::int32_t last,
                                const DxfWriteOptions& options) {
  std::string out;
  PairWriter w(out);
  w.Text(" 0", "SECTION");
  w.Text(" 2", "ENTITIES");
  std::uint32_t handle = 0x100;
  out += DxfEntitiesText(table, first, last, options, handle);
  w.Text(" 0", "ENDSEC");
  w.Text(" 0", "EOF");
  return out;
}

bool WriteDxfFile(const std::string& path, const std::string& text, std::string& error) {
  namespace fs = std::filesystem;
  const fs::path target(path);
  std::error_code status;
  if (fs::exists(target, status) && !fs::is_regular_file(target, status)) {
    // A device or a pipe (/dev/stdout, a FIFO) is written in place, never replaced.
    std::ofstream file(target, std::ios::binary);
    if (!file || !file.write(text.data(), static_cast<std::streamsize>(text.size()))) {
      error = "cannot write " + path;
      return false;
    }
    return true;
  }
  fs::path temporary = target;
  temporary += ".zmt-tmp";
  {
    std::ofstream file(temporary, std::ios::binary | std::ios::trunc);
    if (!file || !file.write(text.data(), static_cast<std::streamsize>(text.size()))) {
      error = "cannot write " + path;
      return false;
    }
  }
  std::error_code code;
  fs::rename(temporary, target, code);
  if (code) {
    fs::remove(temporary, code);
    error = "cannot write " + path;
    return false;
  }
  return true;
}

}  // namespace zemtra
