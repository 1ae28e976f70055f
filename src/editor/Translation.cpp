// Mirror, rotate, shift and scale of the coordinates written in the program text.
#include <cmath>
#include <numbers>

#include "core/NumberText.h"
#include "editor/FilterSession.h"

namespace zemtra {
namespace {

std::size_t Slot(char letter) {
  return static_cast<std::size_t>(letter - 64);
}

using Point = std::array<double, 3>;

Point ToArray(const std::array<float, 3>& p) {
  return {p[0], p[1], p[2]};
}

Point ToArray(const GeoPoint& p) {
  return {p.X, p.Y, p.Z};
}

bool HasAnyWord(const TrackedBlock& block, std::string_view letters) {
  for (char letter : letters) {
    if (block.Has(letter)) return true;
  }
  return false;
}

}  // namespace

// What a translation rewrites.
struct FilterSession::TranslationRules {
  std::array<bool, 3> axes{};        // the axes whose words change
  bool incrementalToo = true;        // incremental words change as vectors (else they stay)
  bool absoluteCentersOnly = false;  // I, J, K change only when they are absolute centres
  bool swapArc = false;              // G02 and G03 trade places
  bool pairs = false;                // X with Y and I with J are written together
};

// Every translation has this shape: track the block; leave macro lines, non-modal blocks and
// blocks without coordinates alone; transform the end point (and an arc's start and centre);
// write the words that change in place.
template <typename Transform, typename Extra>
std::string FilterSession::TranslateBlock(std::string_view line, const TranslationRules& rules,
                                          Transform transform, Extra extra) {
  if (!tracker_.TrackBlock(line)) return std::string(line);
  const TrackedBlock& block = tracker_.Block();
  if (block.NonModal()) return std::string(line);
  // A block without axis or arc words makes no move, whatever motion is in force.
  const bool arcMotion = block.ArcMotion() && HasAnyWord(block, "XYZIJKR");
  if (!arcMotion && !HasAnyWord(block, "XYZ")) return std::string(line);
  std::optional<BlockArc> arc;
  if (arcMotion) {
    arc = ArcOfBlock();
    // Turning X and Y would tip an arc of the XZ or YZ plane out of its plane.
    if (arc && rules.pairs && arc->Plane != 17) arc.reset();
    if (!arc) {
      ++failedArcs_;
      return std::string(line);
    }
  }
  const bool incremental = block.ModalG[3] != 90;
  const Point end = transform(ToArray(block.Present));
  const Point start = transform(ToArray(block.Previous));
  NewWords words;
  for (std::size_t axis = 0; axis < 3; ++axis) {
    const char letter = static_cast<char>('X' + axis);
    if (!rules.axes[axis] || (incremental && !rules.incrementalToo)) continue;
    const bool partner = rules.pairs && axis < 2 && block.Has(axis ? 'X' : 'Y');
    if (!block.Has(letter) && !partner) continue;
    words[Slot(letter)] = incremental ? end[axis] - start[axis] : end[axis];
  }
  // A diameter-programmed lathe writes X as a diameter.
  if (config_.MachineType == 1 && config_.LatheXDiameter != 0 && words[Slot('X')])
    *words[Slot('X')] *= 2;
  const bool absoluteCenters = config_.AbsoluteArcCenter != 0;
  if (arc && (absoluteCenters || !rules.absoluteCentersOnly)) {
    const Point center = transform(ToArray(arc->Center));
    for (std::size_t axis = 0; axis < 3; ++axis) {
      const char letter = static_cast<char>('I' + axis);
      const bool partner = rules.pairs && axis < 2 && block.Has(axis ? 'I' : 'J');
      if (!rules.axes[axis] || (!block.Has(letter) && !partner)) continue;
      words[Slot(letter)] = absoluteCenters ? center[axis] : center[axis] - start[axis];
    }
  }
  extra(block, words);
  return RewriteWords(line, words, arc && rules.swapArc, rules.pairs);
}

std::string FilterSession::MirrorBlock(std::string_view line) {
  const FilterParameters& p = parameters_;
  TranslationRules rules;
  rules.axes = {p.Mirror[0], p.Mirror[1], false};
  rules.swapArc = p.Mirror[0] != p.Mirror[1];
  const auto transform = [&p](Point point) {
    for (std::size_t axis = 0; axis < 2; ++axis) {
      if (p.Mirror[axis]) point[axis] = 2.0 * p.MirrorPoint[axis] - point[axis];
    }
    return point;
  };
  // Z is mirrored on feed moves only: a rapid's or an arc's Z word stays as it is.
  const auto mirrorZ = [&](const TrackedBlock& block, NewWords& words) {
    if (!p.Mirror[2] || block.Motion() != 1 || !block.Has('Z')) return;
    const bool incremental = block.ModalG[3] != 90;
    words[Slot('Z')] = incremental ? -(static_cast<double>(block.Present[2]) - block.Previous[2])
                                   : 2.0 * p.MirrorPoint[2] - block.Present[2];
  };
  return TranslateBlock(line, rules, transform, mirrorZ);
}

std::string FilterSession::RotateBlock(std::string_view line) {
  const FilterParameters& p = parameters_;
  TranslationRules rules;
  rules.axes = {true, true, false};
  rules.pairs = true;
  const double radians = p.RotAngle * std::numbers::pi / 180.0;
  const double cosine = std::cos(radians);
  const double sine = std::sin(radians);
  const auto transform = [&](Point point) {
    const double dx = point[0] - p.RotCenterX;
    const double dy = point[1] - p.RotCenterY;
    point[0] = p.RotCenterX + dx * cosine - dy * sine;
    point[1] = p.RotCenterY + dx * sine + dy * cosine;
    return point;
  };
  return TranslateBlock(line, rules, transform, [](const TrackedBlock&, NewWords&) {});
}

std::string FilterSession::ShiftBlock(std::string_view line) {
  const FilterParameters& p = parameters_;
  TranslationRules rules;
  rules.axes = {p.Shift[0] != 0, p.Shift[1] != 0, p.Shift[2] != 0};
  rules.incrementalToo = false;
  rules.absoluteCentersOnly = true;
  const auto transform = [&p](Point point) {
    for (std::size_t axis = 0; axis < 3; ++axis) point[axis] += p.Shift[axis];
    return point;
  };
  return TranslateBlock(line, rules, transform, [](const TrackedBlock&, NewWords&) {});
}

std::string FilterSession::ScaleBlock(std::string_view line) {
  const FilterParameters& p = parameters_;
  TranslationRules rules;
  rules.axes = {true, true, true};
  const auto transform = [&p](Point point) {
    point[0] = p.SclCenterX + (point[0] - p.SclCenterX) * p.SclFactor;
    point[1] = p.SclCenterY + (point[1] - p.SclCenterY) * p.SclFactor;
    point[2] = point[2] * p.SclFactor;
    return point;
  };
  const auto radiusAndFeed = [&p](const TrackedBlock& block, NewWords& words) {
    const bool arc = block.ArcMotion();
    if (arc && block.Has('R')) words[Slot('R')] = block.Get('R') * p.SclFactor;
    if (block.Has('F') && p.FeedFactor != 1) words[Slot('F')] = block.Get('F') * p.FeedFactor;
  };
  return TranslateBlock(line, rules, transform, radiusAndFeed);
}

}  // namespace zemtra
