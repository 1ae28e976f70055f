#pragma once
// The state of one run of a text filter: the block tracker, the user's parameters, the number
// format of rewritten words and what the filters that look back keep between lines.
#include <array>
#include <optional>
#include <string>
#include <string_view>

#include "config/MachineConfig.h"
#include "editor/BlockTracker.h"
#include "editor/ShortNumberText.h"
#include "geom/Primitives.h"

namespace zemtra {

// Parameters of the filters, as the dialogs and the command line set them.
struct FilterParameters {
  // Address operations.
  std::string AdjustAddresses;
  int AdjustOperator = 0;  // 0 add, 1 subtract, 2 multiply, 3 divide
  double AdjustOperand = 0;
  std::string AdjustFormat;
  std::string ReplaceFind, ReplaceWith;
  std::string RemoveAddresses;
  std::string SwapFirst, SwapSecond;
  // Break arcs: largest distance of a chord from its arc, machine units (> 0).
  double BreakTolerance = 0.001;
  // Custom filter 2: the approach distance and the multiplier of the plunge feed.
  double Approach = 0;
  double FeedMult = 1;
  // Translation.
  std::array<bool, 3> Mirror{};        // X, Y, Z
  std::array<float, 3> MirrorPoint{};  // X, Y, Z
  float RotCenterX = 0, RotCenterY = 0;
  double RotAngle = 0;           // degrees, counter-clockwise
  std::array<float, 3> Shift{};  // X, Y, Z
  float SclCenterX = 0, SclCenterY = 0;
  double SclFactor = 1;
  double FeedFactor = 1;  // 1, or the factor of an inch/metric conversion
  // Number format of rewritten coordinates (the short display format).
  std::string ShortFormat = "###0.0###";
};

// An arc of a block: ends, centre, radius (positive), direction 2 or 3 and plane 17 to 19.
using BlockArc = ArcRec;

class FilterSession {
 public:
  // Keeps references to both: they must outlive the session (temporaries are refused).
  FilterSession(const MachineConfig& config, const FilterParameters& parameters);
  FilterSession(const MachineConfig&&, const FilterParameters&) = delete;
  FilterSession(const MachineConfig&, const FilterParameters&&) = delete;

  // Start of a run: tracking and held lines forgotten, the failed arc count back to 0.
  void Reset();

  // Format filter `operation` applied to one non-blank line.
  std::string FormatLine(int operation, std::string_view line);
  // Translation `operation` applied to one non-blank line.
  std::string TranslateLine(int operation, std::string_view line);

  int FailedArcs() const { return failedArcs_; }
  BlockTracker& Tracker() { return tracker_; }
  const FilterParameters& Parameters() const { return parameters_; }

  // Line functions that follow the block state.
  std::string RemoveRedundantEndpoints(std::string_view line);
  std::string RemoveColinearBlocks(std::string_view line);
  std::string CustomFilter1(std::string_view line);
  std::string CustomFilter2(std::string_view line);
  // Address operations.
  std::string AdjustAddress(std::string_view line);
  std::string ReplaceAddress(std::string_view line);
  std::string RemoveAddress(std::string_view line);
  std::string SwapAddress(std::string_view line);
  // Arc rewriting.
  std::string ArcRToCenter(std::string_view line);
  std::string ArcCenterToR(std::string_view line);
  std::string ArcCentersConvert(std::string_view line, bool toAbsolute);
  std::string BreakArc(std::string_view line);
  // Coordinate translation.
  std::string MirrorBlock(std::string_view line);
  std::string RotateBlock(std::string_view line);
  std::string ShiftBlock(std::string_view line);
  std::string ScaleBlock(std::string_view line);

  // The arc of the tracked block (motion 2 or 3), or nothing when it cannot be worked out.
  std::optional<BlockArc> ArcOfBlock() const;
  // A value as rewritten words write it.
  std::string Number(double value) const;

 private:
  // A word to write in place of an address: its new value, or nothing to keep the old one.
  using NewWords = std::array<std::optional<double>, 27>;
  // Writes the new words in place of the old ones, outside comments; `swapArc` turns a G02
  // word into G03 and back; `pairs` inserts the missing partner of X/Y and I/J.
  std::string RewriteWords(std::string_view line, const NewWords& words, bool swapArc = false,
                           bool pairs = false);
  // A whole translation: the new point of each tracked point by `transform`.
  struct TranslationRules;
  template <typename Transform, typename Extra>
  std::string TranslateBlock(std::string_view line, const TranslationRules& rules,
                             Transform transform, Extra extra);
  // Writes replacement[letter] (possibly "") in place of each word of a letter that has one,
  // outside comments; the old value is skipped.
  std::string ReplaceWords(std::string_view line,
                           const std::array<std::optional<std::string>, 27>& replacement);
  // Writes the G02 / G03 word of a line as "G" and `code`; with `code` "" they trade places.
  std::string ReplaceArcCode(std::string_view line, std::string_view code);
  // The value text behind a letter at 1-based `position` (moved behind it).
  std::string_view ReadWordValue(std::string_view line, int& position);

  const MachineConfig& config_;
  const FilterParameters& parameters_;
  ShortNumberText number_;
  BlockTracker tracker_;
  int failedArcs_ = 0;
  // Colinear blocks: the two corner points and the line held back.
  std::optional<std::array<float, 3>> first_, second_;
  std::string held_;
  bool holding_ = false;
};

}  // namespace zemtra
