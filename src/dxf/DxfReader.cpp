#include "dxf/DxfReader.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <fstream>
#include <sstream>
#include <utility>
#include <vector>

#include "config/MachineConfig.h"
#include "core/Host.h"
#include "core/NumberText.h"
#include "core/TextUtil.h"
#include "geom/Arcs.h"
#include "geom/Extents.h"
#include "geom/Primitives.h"

namespace zemtra {

namespace {

constexpr int kProgressLines = 50;
constexpr double kEllipseStepDegrees = 3;

// Group code and value lines of the file, a pair at a time. Empty code lines are passed over;
// values come trimmed and in upper case. Every 50 lines the host sees the progress and may
// cancel.
class PairReader {
 public:
  PairReader(std::string_view text, Host& host) : text_(text), host_(host) {}

  // False at the end of the file (also in the middle of a pair) or when cancelled.
  bool Next(int& code, std::string& value) {
    std::string_view line;
    do {
      if (!NextLine(line)) return false;
      line = Trimmed(line);
    } while (line.empty());
    code = CodeOf(line);
    if (!NextLine(line)) return false;
    value = ToUpperAscii(Trimmed(line));
    return !cancelled_;
  }
  bool Cancelled() const { return cancelled_; }

 private:
  static std::string_view Trimmed(std::string_view s) {
    const auto blank = [](char c) { return c == ' ' || c == '\t' || c == '\r' || c == '\n'; };
    while (!s.empty() && blank(s.front())) s.remove_prefix(1);
    while (!s.empty() && blank(s.back())) s.remove_suffix(1);
    return s;
  }
  static int CodeOf(std::string_view line) {
    const double value = NumericTextValue(line);
    return std::fabs(value) < 1e9 ? static_cast<int>(value) : -1;
  }
  bool NextLine(std::string_view& line) {
    if (pos_ >= text_.size()) return false;
    const std::size_t end = text_.find('\n', pos_);
    const std::size_t stop = end == std::string_view::npos ? text_.size() : end;
    line = text_.substr(pos_, stop - pos_);
    pos_ = stop + 1;
    if (++lines_ % kProgressLines == 0) Report();
    return true;
  }
  void Report() {
    host_.progress(static_cast<int>(100.0 * static_cast<double>(std::min(pos_, text_.size())) /
                                    static_cast<double>(text_.size())));
    host_.pumpEvents();
    if (host_.abortRequested()) cancelled_ = true;
  }

  std::string_view text_;
  Host& host_;
  std::size_t pos_ = 0;
  long lines_ = 0;
  bool cancelled_ = false;
};

std::string LayerNameOf(const std::string& value) {
  return value == "0" ? std::string("DEFAULT") : value;
}

// Tracks the ENTITIES section: true while inside it.
bool SectionState(bool inside, int code, const std::string& value) {
  if (code == 2 && value == "ENTITIES") return true;
  if (code == 0 && value == "ENDSEC") return false;
  return inside;
}

GeoPoint XY(double x, double y) {
  GeoPoint p;
  p.X = static_cast<float>(x);
  p.Y = static_cast<float>(y);
  return p;
}

// The entities of one layer as they are read; each finished entity goes to `out`.
class LayerPass {
 public:
  LayerPass(std::string layerName, bool lathe, std::vector<GeoEntity>& out)
      : layerName_(std::move(layerName)), lathe_(lathe), out_(out) {}

  void Pair(int code, const std::string& value, double number) {
    if (code == 0) BeginEntity(value);
    if (code == 8 && type_ != "VERTEX") keep_ = LayerNameOf(value) == layerName_;
    if (!keep_) return;
    for (const Handler& handler : kHandlers) {
      if (type_ == handler.type) {
        (this->*handler.read)(code, number);
        return;
      }
    }
  }
  // The file or the section ended: a closed LWPOLYLINE in progress still gets its closing.
  void Finish() { EndLightPolyline(); }
  const DxfKindCounts& Counts() const { return counts_; }

 private:
  using Reader = void (LayerPass::*)(int code, double number);
  struct Handler {
    std::string_view type;
    Reader read;
  };
  static const std::array<Handler, 9> kHandlers;

  void BeginEntity(const std::string& value) {
    EndLightPolyline();
    lightFlags_ = 0;
    if (value == "SEQEND" && keep_ && closed_) ClosePolyline();
    type_ = value;
    if (type_ == "POLYLINE" || type_ == "LWPOLYLINE") StartPolyline();
    if (type_ == "SPLINE") {
      degree_ = 3;
      controlCount_ = 0;
      controls_.clear();
    }
  }

  void StartPolyline() {
    firstVertex_ = true;
    closed_ = false;
    bulge_ = 0;
  }

  void EndLightPolyline() {
    if (type_ == "LWPOLYLINE" && keep_ && (lightFlags_ & 1) != 0) ClosePolyline();
    if (type_ == "LWPOLYLINE") type_.clear();
  }

  void ReadPoint(int code, double n) {
    if (code == 10) x_ = n;
    if (code != 20) return;
    GeoEntity e;
    e.EntityType = kPoint;
    e.StartPoint = e.EndPoint = XY(x_, n);
    Store(e);
    ++counts_.points;
  }

  void ReadLine(int code, double n) {
    if (code == 10) x_ = n;
    if (code == 20) y_ = n;
    if (code == 11) x2_ = n;
    if (code != 21) return;
    AddLine(XY(x_, y_), XY(x2_, n));
    ++counts_.lines;
  }

  // The bits of a flag value (code 70): 16 bits; a value out of that range or not a number has
  // none set.
  static int FlagBits(double n) {
    return n >= -32768 && n <= 65535 ? static_cast<int>(static_cast<long long>(n) & 0xFFFF) : 0;
  }

  void ReadPolyline(int code, double n) {
    if (code != 70) return;
    StartPolyline();
    closed_ = (FlagBits(n) & 1) != 0;
  }

  void ReadVertex(int code, double n) {
    if (code == 10) x_ = n;
    if (code == 42) bulge_ = n;
    if (code == 20) Vertex(XY(x_, n));
  }

  void ReadLightPolyline(int code, double n) {
    if (code == 90) StartPolyline();
    if (code == 70) lightFlags_ = FlagBits(n);
    ReadVertex(code, n);
  }

  void ReadSpline(int code, double n) {
    if (code == 71) degree_ = (n >= 1 && n <= 4) ? static_cast<int>(n) : 3;
    if (code == 73) {
      controlCount_ = n >= 0 && n < 1e7 ? static_cast<int>(n) : 0;
      controls_.clear();
    }
    if (code == 10) x_ = n;
    if (code == 20 && controlCount_ > 0) {
      controls_.emplace_back(x_, n);
      if (static_cast<int>(controls_.size()) == controlCount_) AddSpline();
    }
  }

  void ReadEllipse(int code, double n) {
    if (code == 10) x_ = n;
    if (code == 20) y_ = n;
    if (code == 11) x2_ = n;
    if (code == 21) y2_ = n;
    if (code == 40) ratio_ = n;
    if (code == 41) startAngle_ = n;
    if (code == 42) AddEllipse(n);
  }

  void ReadArc(int code, double n) {
    if (code == 10) x_ = n;
    if (code == 20) y_ = n;
    if (code == 40) radius_ = n;
    if (code == 50) startAngle_ = n;
    if (code != 51) return;
    ArcRec arc;
    arc.Center = XY(x_, y_);
    arc.Radius = radius_;
    arc.Direction = kArcCCW;
    ArcEndsFromAngles(startAngle_, n, arc);
    StoreArc(arc);
    ++counts_.arcs;
  }

  void ReadCircle(int code, double n) {
    if (code == 10) x_ = n;
    if (code == 20) y_ = n;
    if (code != 40) return;
    ArcRec arc;
    arc.Center = XY(x_, y_);
    arc.Radius = n;
    arc.Direction = kArcCCW;
    arc.Start = arc.End = XY(x_ + n, y_);
    StoreArc(arc);
    ++counts_.circles;
  }

  void ReadNothing(int, double) {}

  // A vertex of either polyline kind: the segment from the previous vertex, shaped by the
  // bulge read since then.
  void Vertex(const GeoPoint& p) {
    if (firstVertex_) {
      firstVertex_ = false;
      first_ = previous_ = p;
      return;
    }
    Segment(previous_, p, bulge_);
    previous_ = p;
    bulge_ = 0;
  }

  void ClosePolyline() {
    if (!firstVertex_) Segment(previous_, first_, bulge_);
    bulge_ = 0;
    closed_ = false;
    lightFlags_ = 0;
  }

  // A straight or bulged segment; coincident points add nothing.
  void Segment(const GeoPoint& a, const GeoPoint& b, double bulge) {
    if (a.X == b.X && a.Y == b.Y) return;
    if (bulge == 0 || !std::isfinite(bulge)) {
      AddLine(a, b);
      return;
    }
    // The bulge is tan(sweep / 4); the centre lies on the chord's perpendicular bisector, to
    // the left of travel for a counter-clockwise arc under a half circle.
    const double dx = double(b.X) - a.X;
    const double dy = double(b.Y) - a.Y;
    const double d = std::hypot(dx, dy);
    const double magnitude = std::fabs(bulge);
    const double offset = (1 - bulge * bulge) / (4 * bulge);  // along the left normal, times d
    ArcRec arc;
    arc.Start = a;
    arc.End = b;
    arc.Direction = bulge < 0 ? kArcCW : kArcCCW;
    arc.Radius = d / 4 * (magnitude + 1 / magnitude);
    arc.Center = XY((double(a.X) + b.X) / 2 - dy * offset, (double(a.Y) + b.Y) / 2 + dx * offset);
    StoreArc(arc);
  }

  // Open uniform B-spline through the control points, with the degree taken as the order of
  // the basis, sampled at five points per control point.
  void AddSpline() {
    const int n = static_cast<int>(controls_.size());
    if (n < 2) return;
    const int k = std::min(degree_, n);
    const double top = n - k + 1;
    const auto knot = [&](int j) -> double {
      if (j < k) return 0;
      if (j <= n - 1) return j - k + 1;
      return top;
    };
    const int samples = 5 * n;
    GeoPoint previous;
    for (int s = 0; s < samples; ++s) {
      const double u = top * s / (samples - 1);
      double x = 0, y = 0;
      if (s == samples - 1) {
        x = controls_.back().first;
        y = controls_.back().second;
      } else {
        std::vector<double> basis(static_cast<std::size_t>(n + k), 0.0);
        for (int j = 0; j < n + k - 1; ++j) basis[j] = (knot(j) <= u && u < knot(j + 1)) ? 1 : 0;
        for (int order = 2; order <= k; ++order) {
          for (int j = 0; j < n + k - order; ++j) {
            double value = 0;
            const double left = knot(j + order - 1) - knot(j);
            const double right = knot(j + order) - knot(j + 1);
            if (left > 0) value += (u - knot(j)) / left * basis[j];
            if (right > 0) value += (knot(j + order) - u) / right * basis[j + 1];
            basis[j] = value;
          }
        }
        for (int j = 0; j < n; ++j) {
          x += basis[j] * controls_[j].first;
          y += basis[j] * controls_[j].second;
        }
      }
      const GeoPoint point = XY(x, y);
      if (s > 0) AddLine(previous, point);
      previous = point;
    }
    controlCount_ = 0;
  }

  GeoPoint EllipsePoint(double a, double b, double rotation, float degrees) const {
    const GeoPoint local = XY(a * std::cos(degrees * kDegree), b * std::sin(degrees * kDegree));
    const GeoPoint turned = RotatePoint(local, GeoPoint{}, rotation);
    return XY(x_ + turned.X, y_ + turned.Y);
  }

  // Lines every 3 degrees of the ellipse parameter, and a last one to the exact end.
  void AddEllipse(double endParameter) {
    const double a = std::hypot(x2_, y2_);
    const double b = a * ratio_;
    const double rotation = std::atan2(y2_, x2_) / kDegree;
    const float start = static_cast<float>(startAngle_ / kDegree);
    const float end = static_cast<float>(endParameter / kDegree);
    if (!std::isfinite(start) || !std::isfinite(end)) return;
    GeoPoint previous = EllipsePoint(a, b, rotation, start);
    float t = start;
    // Bounded against absurd parameters: more than ten turns is not a drawing.
    for (int steps = 0; t + static_cast<float>(kEllipseStepDegrees) <= end && steps < 1200;
         ++steps) {
      t += static_cast<float>(kEllipseStepDegrees);
      const GeoPoint point = EllipsePoint(a, b, rotation, t);
      AddLine(previous, point);
      previous = point;
    }
    if (t != end) AddLine(previous, EllipsePoint(a, b, rotation, end));
  }

  void AddLine(const GeoPoint& a, const GeoPoint& b) {
    GeoEntity e;
    e.EntityType = kFeed;
    e.StartPoint = a;
    e.EndPoint = b;
    Store(e);
  }

  void StoreArc(const ArcRec& arc) {
    GeoEntity e = EntityFromArc(arc);
    e.Plane = 17;
    Store(e);
  }

  // Turns a drawing's X, Y into a lathe's Z, X.
  static void ToLathe(GeoPoint& p) {
    const float x = p.X;
    p.X = p.Y;
    p.Z = x;
    p.Y = 0;
  }

  void Store(GeoEntity e) {
    e.Plane = 17;
    e.LineNumber = 0;
    if (lathe_) {
      ToLathe(e.StartPoint);
      ToLathe(e.EndPoint);
      ToLathe(e.CenterPoint);
      if (e.EntityType == kArcCW || e.EntityType == kArcCCW) e.Plane = 18;
    }
    out_.push_back(e);
  }

  std::string layerName_;
  bool lathe_;
  std::vector<GeoEntity>& out_;
  std::string type_;
  bool keep_ = false;
  double x_ = 0, y_ = 0, x2_ = 0, y2_ = 0;
  double radius_ = 0, startAngle_ = 0, ratio_ = 1;
  // Polylines.
  bool firstVertex_ = true;
  bool closed_ = false;
  int lightFlags_ = 0;
  double bulge_ = 0;
  GeoPoint previous_, first_;
  // Splines.
  int degree_ = 3;
  int controlCount_ = 0;
  std::vector<std::pair<double, double>> controls_;
  DxfKindCounts counts_;
};

const std::array<LayerPass::Handler, 9> LayerPass::kHandlers = {{
    {"POINT", &LayerPass::ReadPoint},
    {"LINE", &LayerPass::ReadLine},
    {"POLYLINE", &LayerPass::ReadPolyline},
    {"VERTEX", &LayerPass::ReadVertex},
    {"LWPOLYLINE", &LayerPass::ReadLightPolyline},
    {"SPLINE", &LayerPass::ReadSpline},
    {"ELLIPSE", &LayerPass::ReadEllipse},
    {"ARC", &LayerPass::ReadArc},
    {"CIRCLE", &LayerPass::ReadCircle},
}};

}  // namespace

bool DxfReader::LoadDXFLayerNames(DxfLayerTable& layers, const ConvertParams& defaults) {
  PairReader pairs(text_, host_);
  bool inside = false;
  int code = 0;
  std::string value;
  while (pairs.Next(code, value)) {
    inside = SectionState(inside, code, value);
    if (!inside || code != 8) continue;
    const std::string name = LayerNameOf(value);
    if (layers.LayerIndex(name) == 0) layers.Add(name, defaults);
  }
  host_.progress(-1);
  return !pairs.Cancelled();
}

bool DxfReader::LoadDXFLayer(std::string_view layerName, bool append, bool lathe,
                             GeometryTable& table, DxfLayerTable& layers, DxfKindCounts* counts) {
  std::vector<GeoEntity> entities;
  LayerPass pass(std::string(layerName), lathe, entities);
  PairReader pairs(text_, host_);
  bool inside = false;
  int code = 0;
  std::string value;
  while (pairs.Next(code, value)) {
    const bool was = inside;
    inside = SectionState(inside, code, value);
    if (was && !inside) pass.Finish();
    if (inside) pass.Pair(code, value, NumericTextValue(value));
  }
  if (inside) pass.Finish();
  if (counts != nullptr) *counts = pass.Counts();
  if (!append || table.HighestIndex() < 1) {
    table.Begin();
  } else {
    table.GeoIndex = table.HighestIndex() + 1;
  }
  const std::int32_t first = table.GeoIndex;
  table.Reserve(table.GeoIndex + static_cast<std::int32_t>(entities.size()));
  for (const GeoEntity& e : entities) table.Add(e);
  table.End();
  if (const std::int32_t index = layers.LayerIndex(layerName); index > 0) {
    layers[index].FirstEntity = first;
    layers[index].LastEntity = table.GeoIndex - 1;
  }
  host_.progress(-1);
  return !pairs.Cancelled();
}

bool LoadDXF(const std::string& path, const MachineConfig& config, GeometryTable& table,
             DxfLayerTable& layers, Host& host, std::string& error) {
  std::ifstream file(path, std::ios::binary);
  if (!file) {
    error = "cannot open " + path;
    return false;
  }
  std::ostringstream buffer;
  buffer << file.rdbuf();
  DxfReader reader(buffer.str(), host);
  layers.Clear();
  table.Begin();
  table.End();
  if (!reader.LoadDXFLayerNames(layers, config.DXFDefaults)) return true;
  const bool lathe = config.MachineType == 1;
  for (std::int32_t i = 1; i <= layers.Count(); ++i) {
    if (!reader.LoadDXFLayer(layers[i].LayerName, i > 1, lathe, table, layers)) break;
  }
  ComputeExtents(table);
  return true;
}

}  // namespace zemtra
