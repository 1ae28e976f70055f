// Rewriting how arcs are stated: radius form to centre form and back, absolute and incremental
// centres, and arcs broken into chains of lines.
#include <cmath>
#include <numbers>

#include "core/NumberText.h"
#include "editor/FilterSession.h"
#include "geom/Arcs.h"

namespace zemtra {
namespace {

constexpr double kFullCircleDistance = 0.001;
constexpr double kDefaultArcTolerance = 0.002;
// Most chords one arc is broken into; an arc that would need more (a huge radius at a fine
// tolerance), or whose size is not a number, stays as it is, as an arc that cannot be broken does.
constexpr double kMaxBreakChords = 10000;

std::size_t Slot(char letter) {
  return static_cast<std::size_t>(letter - 64);
}

float& Axis(GeoPoint& point, int axis) {
  return axis == 0 ? point.X : axis == 1 ? point.Y : point.Z;
}

double Axis(const GeoPoint& point, int axis) {
  return axis == 0 ? point.X : axis == 1 ? point.Y : point.Z;
}

// The two axes of a plane (0 X, 1 Y, 2 Z) in I/J/K order, and its normal axis.
struct PlaneAxes {
  int first;
  int second;
  int normal;
};

PlaneAxes AxesOf(int plane) {
  switch (plane) {
    case 18:
      return {0, 2, 1};
    case 19:
      return {1, 2, 0};
    default:
      return {0, 1, 2};
  }
}

}  // namespace

std::optional<BlockArc> FilterSession::ArcOfBlock() const {
  const TrackedBlock& block = tracker_.Block();
  BlockArc arc;
  arc.Direction = static_cast<std::int16_t>(block.Motion());
  const int plane = static_cast<int>(block.ModalG[2]);
  arc.Plane = static_cast<std::uint8_t>(plane == 18 || plane == 19 ? plane : 17);
  const PlaneAxes axes = AxesOf(arc.Plane);
  arc.Start = {block.Previous[0], block.Previous[1], block.Previous[2], 0};
  arc.End = {block.Present[0], block.Present[1], block.Present[2], 0};
  if (Axis(arc.Start, axes.first) == kUntrackedPosition ||
      Axis(arc.Start, axes.second) == kUntrackedPosition) {
    return std::nullopt;  // no known start: the first arc of a run
  }
  const bool hasCenter = block.Has('I') || block.Has('J') || block.Has('K');
  if (block.Has('R') && !hasCenter) {
    const double r = block.Get('R');
    const double chord = PlaneDistance(arc.Start, arc.End, arc.Plane);
    if (r == 0 || chord == 0 || chord > 2 * std::fabs(r) + 1e-9) return std::nullopt;
    arc.Center = CenterFromRadius(arc.Start, arc.End, r, arc.Direction, arc.Plane);
  } else if (hasCenter) {
    arc.Center = arc.Start;
    for (int axis : {axes.first, axes.second}) {
      const char letter = static_cast<char>('I' + axis);
      const double word = block.Has(letter) ? block.Get(letter) : 0;
      if (config_.AbsoluteArcCenter != 0) {
        if (block.Has(letter)) Axis(arc.Center, axis) = static_cast<float>(word);
      } else {
        Axis(arc.Center, axis) = static_cast<float>(Axis(arc.Start, axis) + word);
      }
    }
  } else {
    return std::nullopt;
  }
  arc.Radius = PlaneDistance(arc.Start, arc.Center, arc.Plane);
  const double endRadius = PlaneDistance(arc.End, arc.Center, arc.Plane);
  const double tolerance = config_.ArcTolerance > 0 ? config_.ArcTolerance : kDefaultArcTolerance;
  if (arc.Radius <= 0 || std::fabs(arc.Radius - endRadius) > tolerance) return std::nullopt;
  return arc;
}

std::string FilterSession::ArcRToCenter(std::string_view line) {
  if (!tracker_.TrackBlock(line)) return std::string(line);
  const TrackedBlock& block = tracker_.Block();
  if (!block.ArcMotion() || !block.Has('R')) return std::string(line);
  const auto arc = ArcOfBlock();
  if (!arc) {
    ++failedArcs_;
    return std::string(line);
  }
  const PlaneAxes axes = AxesOf(arc->Plane);
  const bool absolute = config_.AbsoluteArcCenter != 0;
  const bool blank = line.find(' ') != std::string_view::npos;
  std::string words;
  for (int axis : {axes.first, axes.second}) {
    const double center = Axis(arc->Center, axis);
    if (!words.empty() && blank) words += ' ';
    words += static_cast<char>('I' + axis);
    words += Number(absolute ? center : center - Axis(arc->Start, axis));
  }
  std::array<std::optional<std::string>, 27> replacement;
  replacement[Slot('R')] = words;
  return ReplaceWords(line, replacement);
}

std::string FilterSession::ArcCenterToR(std::string_view line) {
  if (!tracker_.TrackBlock(line)) return std::string(line);
  const TrackedBlock& block = tracker_.Block();
  if (!block.ArcMotion() || !(block.Has('I') || block.Has('J') || block.Has('K')))
    return std::string(line);
  const auto arc = ArcOfBlock();
  if (!arc || Dist3(arc->Start, arc->End) < kFullCircleDistance) {
    ++failedArcs_;
    return std::string(line);
  }
  const double sweep = ArcSweep(*arc);
  const double radius = sweep > std::numbers::pi + 1e-12 ? -arc->Radius : arc->Radius;
  // The R word takes the place of the first centre word of the line; the others go.
  char first = 0;
  for (char letter : {'I', 'J', 'K'}) {
    const int at = block.Position[Slot(letter)];
    if (at > 0 && (first == 0 || at < block.Position[Slot(first)])) first = letter;
  }
  std::array<std::optional<std::string>, 27> replacement;
  for (char letter : {'I', 'J', 'K'}) {
    if (block.Has(letter)) replacement[Slot(letter)] = std::string();
  }
  replacement[Slot(first)] = "R" + Number(radius);
  return ReplaceWords(line, replacement);
}

std::string FilterSession::ArcCentersConvert(std::string_view line, bool toAbsolute) {
  if (!tracker_.TrackBlock(line)) return std::string(line);
  const TrackedBlock& block = tracker_.Block();
  if (!block.ArcMotion() || !(block.Has('I') || block.Has('J') || block.Has('K')))
    return std::string(line);
  const auto arc = ArcOfBlock();
  if (!arc) {
    ++failedArcs_;
    return std::string(line);
  }
  NewWords words;
  for (int axis = 0; axis < 3; ++axis) {
    const char letter = static_cast<char>('I' + axis);
    if (!block.Has(letter)) continue;
    const double center = Axis(arc->Center, axis);
    words[Slot(letter)] = toAbsolute ? center : center - Axis(arc->Start, axis);
  }
  return RewriteWords(line, words);
}

std::string FilterSession::BreakArc(std::string_view line) {
  if (!tracker_.TrackBlock(line)) return std::string(line);
  const TrackedBlock& block = tracker_.Block();
  if (!block.ArcMotion()) return std::string(line);
  const auto arc = ArcOfBlock();
  if (!arc) return std::string(line);
  const double r = arc->Radius;
  const double sweep = ArcSweep(*arc);  // a closed arc sweeps a full circle
  const double tolerance = parameters_.BreakTolerance > 0 ? parameters_.BreakTolerance : 0.001;
  double step = 2 * std::acos((r - tolerance) / r);
  if (!(step > 0) || step > sweep) step = sweep;
  if (!(sweep / step <= kMaxBreakChords)) return std::string(line);  // also NaN: no arc
  const int count = std::max(1, static_cast<int>(std::ceil(sweep / step - 1e-9)));
  step = sweep / count;
  const PlaneAxes axes = AxesOf(arc->Plane);
  const double startAngle = PlaneAngle(arc->Center, arc->Start, arc->Plane);
  const double turn = arc->Direction == 2 ? -step : step;
  const bool climbs = Axis(arc->Start, axes.normal) != Axis(arc->End, axes.normal);
  const bool incremental = block.ModalG[3] != 90;
  const bool blank = line.find(' ') != std::string_view::npos;
  std::vector<GeoPoint> points;
  points.reserve(static_cast<std::size_t>(count) + 1);
  points.push_back(arc->Start);
  for (int i = 1; i <= count; ++i) {
    GeoPoint point = i == count ? arc->End : PointOnCircle(*arc, startAngle + turn * i);
    if (i < count) {
      const double share = static_cast<double>(i) / count;
      Axis(point, axes.normal) =
          static_cast<float>(Axis(arc->Start, axes.normal) +
                             (Axis(arc->End, axes.normal) - Axis(arc->Start, axes.normal)) * share);
    }
    points.push_back(point);
  }
  const auto wordValue = [&](std::size_t index, int axis) {
    const double value = Axis(points[index], axis);
    return Number(incremental ? value - Axis(points[index - 1], axis) : value);
  };
  const auto moving = [&](int axis) { return axis != axes.normal || climbs; };
  // First line: the block itself, as a feed move to the first point.
  std::array<std::optional<std::string>, 27> replacement;
  for (char letter : {'I', 'J', 'K', 'R'}) replacement[Slot(letter)] = std::string();
  std::string missing;
  for (int axis = 0; axis < 3; ++axis) {
    const char letter = static_cast<char>('X' + axis);
    if (block.Has(letter)) {
      replacement[Slot(letter)] = letter + wordValue(1, axis);
    } else if (moving(axis)) {
      missing += (blank ? " " : "") + std::string(1, letter) + wordValue(1, axis);
    }
  }
  std::string out = ReplaceArcCode(ReplaceWords(line, replacement), "01") + missing;
  for (std::size_t index = 2; index < points.size(); ++index) {
    out += "\r\n";
    bool firstWord = true;
    for (int axis = 0; axis < 3; ++axis) {
      if (!moving(axis)) continue;
      if (!firstWord && blank) out += ' ';
      out += static_cast<char>('X' + axis);
      out += wordValue(index, axis);
      firstWord = false;
    }
  }
  return out;
}

}  // namespace zemtra
