#pragma once
// The filters' own light block decoder: follows positions and modal codes from line to line
// without running the interpreter, so that text filters can tell what a block does.
#include <array>
#include <string>
#include <string_view>

#include "config/MachineConfig.h"
#include "interp/ModalTables.h"
#include "macro/Evaluator.h"
#include "macro/VariableStore.h"

namespace zemtra {

inline constexpr float kUntrackedPosition = -999999.0f;

// One decoded block with the points before and after it.
struct TrackedBlock {
  std::array<float, 3> Present{kUntrackedPosition, kUntrackedPosition, kUntrackedPosition};
  std::array<float, 3> Previous{kUntrackedPosition, kUntrackedPosition, kUntrackedPosition};
  // By letter, A = 1 ... Z = 26: 1-based position behind the letter in the cleaned block (0 when
  // absent), the value text and the value.
  std::array<int, 27> Position{};
  std::array<std::string, 27> Text;
  std::array<double, 27> Value{};
  // Modal G code of each group; index 0 is the non-modal code of this block only.
  std::array<float, kModalGroupCount> ModalG{};

  bool Has(char letter) const { return Position[static_cast<std::size_t>(letter - 64)] > 0; }
  double Get(char letter) const { return Value[static_cast<std::size_t>(letter - 64)]; }
  int Motion() const { return static_cast<int>(ModalG[1]); }
  // An arc move: G2 or G3 in force and no canned cycle, whose positions are hole positions.
  bool ArcMotion() const { return (Motion() == 2 || Motion() == 3) && ModalG[9] == 80; }
  bool NonModal() const { return ModalG[0] > 0; }
};

class BlockTracker {
 public:
  explicit BlockTracker(const MachineConfig& config);

  // Back to the start of a run: modal codes at their start values, both points at -999999.
  void Reset();
  // Decodes `line` into Block(). False for an empty block, a macro statement, or a "[" where an
  // address letter is due; the block state is then partly updated, as a controller would not be.
  bool TrackBlock(std::string_view line);

  const TrackedBlock& Block() const { return block_; }
  TrackedBlock& Block() { return block_; }
  const MachineConfig& Config() const { return config_; }
  bool IsLathe() const { return config_.MachineType == 1; }
  // Reads an expression of raw `text` from the 1-based `position` and leaves `position` behind
  // it; used by the filters to skip an old value. Never throws.
  void SkipValue(std::string_view text, int& position);

 private:
  bool ReadAddresses(const std::string& cleaned);
  bool ReadValue(const std::string& cleaned, int& position, std::string& valueText, double& value);
  void TakeGCode(double value);
  void MoveAxis(char letter);

  const MachineConfig& config_;
  const GroupTable& groups_;
  VariableStore variables_;
  Evaluator evaluator_;
  TrackedBlock block_;
  std::string cleaned_;
  std::string scratch_;
};

}  // namespace zemtra
