#include "editor/FilterSession.h"

#include <cmath>
#include <utility>

#include "core/NumberText.h"
#include "editor/FormatProgram.h"
#include "editor/LineFilters.h"

namespace zemtra {

FilterSession::FilterSession(const MachineConfig& config, const FilterParameters& parameters)
    : config_(config), parameters_(parameters), number_(parameters.ShortFormat), tracker_(config) {}

void FilterSession::Reset() {
  tracker_.Reset();
  failedArcs_ = 0;
  first_.reset();
  second_.reset();
  held_.clear();
  holding_ = false;
}

std::string FilterSession::Number(double value) const {
  return number_(value);
}

std::string FilterSession::FormatLine(int operation, std::string_view line) {
  switch (operation) {
    case FormatCode::kAddSpaces:
      return AddSpaces(line);
    case FormatCode::kRemoveSpaces:
      return RemoveSpaces(line);
    case FormatCode::kCaps:
      return UpperCaseLine(line);
    case FormatCode::kRemoveRedundant:
      return RemoveRedundantEndpoints(line);
    case FormatCode::kRemoveComments:
      return RemoveComments(line);
    case FormatCode::kAddCommentChars:
      return "(" + std::string(line) + ")";
    case FormatCode::kRemoveCommentChars:
      return RemoveCommentChars(line);
    case FormatCode::kRemoveTrailingSpaces:
      return RightTrim(line);
    case FormatCode::kRemoveControlChars:
      return RemoveControlChars(line);
    case FormatCode::kAdjustAddresses:
      return AdjustAddress(line);
    case FormatCode::kReplaceAddress:
      return ReplaceAddress(line);
    case FormatCode::kRemoveAddresses:
      return RemoveAddress(line);
    case FormatCode::kAddBlockSkip:
      return "/" + std::string(line);
    case FormatCode::kRemoveBlockSkip:
      return RemoveBlockSkip(line);
    case FormatCode::kRemoveColinear:
      return RemoveColinearBlocks(line);
    case FormatCode::kSwapAddresses:
      return SwapAddress(line);
    case FormatCode::kBreakArcs:
      return BreakArc(line);
    case FormatCode::kCustomFilter1:
      return CustomFilter1(line);
    case FormatCode::kCustomFilter2:
      return CustomFilter2(line);
    default:
      return std::string(line);
  }
}

std::string FilterSession::TranslateLine(int operation, std::string_view line) {
  switch (operation) {
    case TranslateCode::kMirror:
      return MirrorBlock(line);
    case TranslateCode::kRotate:
      return RotateBlock(line);
    case TranslateCode::kShift:
      return ShiftBlock(line);
    case TranslateCode::kArcsToIJK:
      return ArcRToCenter(line);
    case TranslateCode::kScale:
      return ScaleBlock(line);
    case TranslateCode::kArcsToR:
      return ArcCenterToR(line);
    case TranslateCode::kArcsAbsolute:
      return ArcCentersConvert(line, true);
    case TranslateCode::kArcsIncremental:
      return ArcCentersConvert(line, false);
    default:
      return std::string(line);
  }
}

std::string FilterSession::RemoveRedundantEndpoints(std::string_view line) {
  if (!tracker_.TrackBlock(line) || tracker_.Block().NonModal()) return std::string(line);
  const TrackedBlock& block = tracker_.Block();
  std::string result;
  result.reserve(line.size());
  int position = 1;
  int depth = 0;
  const int size = static_cast<int>(line.size());
  while (position <= size) {
    const char c = line[static_cast<std::size_t>(position - 1)];
    const char upper = c >= 'x' && c <= 'z' ? static_cast<char>(c - 32) : c;
    if (c == '(') ++depth;
    if (c == ')' && depth > 0) --depth;
    if (depth == 0 && upper >= 'X' && upper <= 'Z') {
      const auto axis = static_cast<std::size_t>(upper - 'X');
      if (block.Present[axis] == block.Previous[axis]) {
        ++position;
        tracker_.SkipValue(line, position);
        continue;
      }
    }
    result += c;
    ++position;
  }
  return RightTrim(result);
}

// A straight feed move that no cycle or non-modal code disturbs.
static bool IsStraightMove(const TrackedBlock& block) {
  return block.Motion() == 1 && !block.NonModal() && block.ModalG[9] == 80 &&
         (block.Has('X') || block.Has('Y') || block.Has('Z'));
}

static double Distance(const std::array<float, 3>& a, const std::array<float, 3>& b) {
  const double dx = static_cast<double>(a[0]) - b[0];
  const double dy = static_cast<double>(a[1]) - b[1];
  const double dz = static_cast<double>(a[2]) - b[2];
  return std::sqrt(dx * dx + dy * dy + dz * dz);
}

std::string FilterSession::RemoveColinearBlocks(std::string_view line) {
  const bool decoded = tracker_.TrackBlock(line);
  const TrackedBlock& block = tracker_.Block();
  if (!decoded || !IsStraightMove(block)) {
    first_.reset();
    second_.reset();
    if (!holding_) return std::string(line);
    holding_ = false;
    return std::exchange(held_, {}) + "\r\n" + std::string(line);
  }
  if (!first_) {
    first_ = block.Present;
    return std::string(line);
  }
  if (!second_) {
    second_ = block.Present;
    held_ = line;
    holding_ = true;
    return {};
  }
  const double a = Distance(*first_, block.Present);
  const double b = Distance(*second_, block.Present);
  const double c = Distance(*first_, *second_);
  if (std::fabs(a - (b + c)) >= 0.0001) {
    first_ = second_;
    second_ = block.Present;
    std::string out = std::exchange(held_, std::string(line));
    holding_ = true;
    return out;
  }
  second_ = block.Present;
  held_ = line;
  holding_ = true;
  return {};
}

}  // namespace zemtra
