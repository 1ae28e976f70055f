#include "dxf/GCodeGenerator.h"

#include <cmath>

#include "config/MachineConfig.h"
#include "core/NumberText.h"
#include "geom/Primitives.h"

namespace zemtra {

namespace {

constexpr float kFarAway = -1000000;
constexpr int kMaxDepthPasses = 100000;  // a guard against increments too small to matter

// The modal writing state and the text written so far.
class GCodeWriter {
 public:
  GCodeWriter(const ConvertParams& params, const GCodeOptions& options)
      : params_(params), options_(options) {}

  void Print(const std::string& line) { out_ += line + options_.eol; }
  std::string Num(double value) const { return FormatNumberText(value, options_.numberFormat); }

  // Prints each non-empty line of a header or footer.
  void PrintBlock(const std::string& text) {
    std::size_t pos = 0;
    while (pos <= text.size()) {
      std::size_t end = text.find("\r\n", pos);
      if (end == std::string::npos) end = text.size();
      if (end > pos) Print(text.substr(pos, end - pos));
      pos = end + 2;
    }
  }

  // One pass over first..last with plunges to `depth`.
  void MillPass(const GeometryTable& table, std::int32_t first, std::int32_t last, double depth,
                bool moreFollows) {
    for (std::int32_t i = first; i <= last; ++i) {
      const GeoEntity& e = table[i];
      if (e.EntityType == kPoint) {
        DrillPosition(e, moreFollows);
      } else if (e.EntityType == kFeed || e.EntityType == kArcCW || e.EntityType == kArcCCW) {
        if (DistPlane(lastPoint_, e.StartPoint, 17) > options_.joinDistance) {
          NewCut(e.StartPoint, depth, moreFollows);
        }
        Move(e);
      }
    }
  }

  void LathePass(const GeometryTable& table, std::int32_t first, std::int32_t last) {
    for (std::int32_t i = first; i <= last; ++i) {
      const GeoEntity& e = table[i];
      const int type = e.EntityType;
      if (type != kFeed && type != kArcCW && type != kArcCCW && type != kPoint) continue;
      if (DistPlane(lastPoint_, e.StartPoint, 18) > options_.joinDistance || type == kPoint) {
        const GeoPoint& p = type == kPoint ? e.EndPoint : e.StartPoint;
        Print(std::string(lastMotion_ != 0 ? "G00" : "") + LatheXZ(p));
        lastMotion_ = 0;
        lastPoint_ = p;
        if (type == kPoint) continue;
      }
      std::string line = Motion(type) + LatheXZ(e.EndPoint);
      if (type != kFeed) {
        const bool absolute = options_.absoluteCenters;
        line += "I" + Num(e.CenterPoint.X - (absolute ? 0.0 : e.StartPoint.X));
        line += "K" + Num(e.CenterPoint.Z - (absolute ? 0.0 : e.StartPoint.Z));
      }
      Print(line);
      lastMotion_ = static_cast<float>(type);
      lastPoint_ = e.EndPoint;
    }
  }

  void Retract() { Print("G00Z" + Num(params_.ZRetract)); }
  // A later depth pass over a closed chain must plunge again at its start.
  void ForgetPosition() { lastPoint_ = GeoPoint{kFarAway, kFarAway, kFarAway, 0}; }
  const std::string& Text() const { return out_; }

 private:
  void DrillPosition(const GeoEntity& e, bool moreFollows) {
    if (currentZ_ != params_.ZRetract) {
      Print(std::string(lastMotion_ != 0 ? "G00" : "") + "Z" + Num(params_.ZRetract));
    }
    const std::string prefix = moreFollows && lastMotion_ != 0 ? "G00" : "";
    Print(prefix + "X" + Num(e.EndPoint.X) + "Y" + Num(e.EndPoint.Y));
    lastMotion_ = 0;
    lastPoint_ = e.EndPoint;
    currentZ_ = params_.ZRetract;
  }

  void NewCut(const GeoPoint& start, double depth, bool moreFollows) {
    Retract();
    Print("X" + Num(start.X) + "Y" + Num(start.Y));
    if (params_.ZApproach < params_.ZRetract && params_.ZApproach > depth) {
      Print("Z" + Num(params_.ZApproach));
    }
    Print("G01Z" + Num(depth) + "F" + Num(params_.PlungeRate));
    lastFeed_ = params_.PlungeRate;
    lastMotion_ = 1;
    currentZ_ = depth;
    if (moreFollows) {
      Print(std::string(lastMotion_ != 0 ? "G00" : "") + "X" + Num(start.X) + "Y" + Num(start.Y));
      lastMotion_ = 0;
    }
  }

  std::string Motion(int type) const {
    if (lastMotion_ == static_cast<float>(type)) return "";
    return type == kFeed ? "G01" : "G0" + std::to_string(type);
  }

  void Move(const GeoEntity& e) {
    const int type = e.EntityType;
    std::string line = Motion(type) + "X" + Num(e.EndPoint.X) + "Y" + Num(e.EndPoint.Y);
    if (type != kFeed) {
      const bool absolute = options_.absoluteCenters;
      line += "I" + Num(e.CenterPoint.X - (absolute ? 0.0 : e.StartPoint.X));
      line += "J" + Num(e.CenterPoint.Y - (absolute ? 0.0 : e.StartPoint.Y));
    }
    if (params_.FeedRate != lastFeed_) {
      line += "F" + Num(params_.FeedRate);
      lastFeed_ = params_.FeedRate;
    }
    Print(line);
    lastMotion_ = static_cast<float>(type);
    lastPoint_ = e.EndPoint;
  }

  std::string LatheXZ(const GeoPoint& p) const {
    const double x = options_.diameter ? 2.0 * p.X : p.X;
    return "X" + Num(x) + "Z" + Num(p.Z);
  }

  const ConvertParams& params_;
  const GCodeOptions& options_;
  std::string out_;
  float lastMotion_ = 0;
  GeoPoint lastPoint_{kFarAway, kFarAway, kFarAway, 0};
  double lastFeed_ = 0;
  double currentZ_ = kFarAway;
};

// The range clipped to the table.
bool RangeOf(const GeometryTable& table, const ConvertParams& params, std::int32_t& first,
             std::int32_t& last) {
  first = std::max(params.FirstEntity, 1);
  last = std::min(params.LastEntity, table.HighestIndex());
  return first <= last;
}

// Depth passes of one chain: from ZTop down by |ZIncrement|, the last one at ZDepth.
void GenerateChainZStep(GCodeWriter& writer, const GeometryTable& table,
                        const ConvertParams& params, std::int32_t first, std::int32_t last,
                        bool moreFollows) {
  const double step = std::fabs(params.ZIncrement);
  double z = (step > 0 && std::isfinite(step)) ? params.ZTop - step : params.ZDepth;
  for (int pass = 0; pass < kMaxDepthPasses; ++pass) {
    if (!(z >= params.ZDepth)) z = params.ZDepth;
    writer.ForgetPosition();
    writer.MillPass(table, first, last, z, moreFollows);
    if (z == params.ZDepth) return;
    z -= step;
  }
}

}  // namespace

GCodeOptions GCodeOptionsFor(const MachineConfig& config, double joinDistance) {
  GCodeOptions options;
  options.lathe = config.MachineType == 1;
  options.diameter = config.LatheXDiameter != 0;
  options.absoluteCenters = config.AbsoluteArcCenter != 0;
  options.joinDistance = joinDistance;
  return options;
}

std::string GeometryToGCode(const GeometryTable& table, const ConvertParams& params,
                            bool moreFollows, const GCodeOptions& options) {
  if (options.lathe) return GeometryToLatheGCode(table, params, options);
  if (params.EnableZIncrement != 0) {
    return GeometryToMillZStepGCode(table, params, moreFollows, options);
  }
  return GeometryToMillGCode(table, params, moreFollows, options);
}

std::string GeometryToMillGCode(const GeometryTable& table, const ConvertParams& params,
                                bool moreFollows, const GCodeOptions& options) {
  GCodeWriter writer(params, options);
  writer.PrintBlock(params.Header);
  std::int32_t first = 0, last = 0;
  if (RangeOf(table, params, first, last)) {
    writer.MillPass(table, first, last, params.ZDepth, moreFollows);
  }
  if (!moreFollows) writer.Retract();
  writer.PrintBlock(params.Footer);
  return writer.Text();
}

std::string GeometryToMillZStepGCode(const GeometryTable& table, const ConvertParams& params,
                                     bool moreFollows, const GCodeOptions& options) {
  GCodeWriter writer(params, options);
  writer.PrintBlock(params.Header);
  std::int32_t first = 0, last = 0;
  if (RangeOf(table, params, first, last)) {
    for (std::int32_t begin = first; begin <= last;) {
      std::int32_t end = begin;
      while (end < last && table[end + 1].LineNumber == table[begin].LineNumber) ++end;
      GenerateChainZStep(writer, table, params, begin, end, moreFollows);
      begin = end + 1;
    }
  }
  writer.Retract();
  writer.PrintBlock(params.Footer);
  return writer.Text();
}

std::string GeometryToLatheGCode(const GeometryTable& table, const ConvertParams& params,
                                 const GCodeOptions& options) {
  GCodeWriter writer(params, options);
  writer.PrintBlock(params.Header);
  std::int32_t first = 0, last = 0;
  if (RangeOf(table, params, first, last)) writer.LathePass(table, first, last);
  writer.PrintBlock(params.Footer);
  return writer.Text();
}

}  // namespace zemtra
