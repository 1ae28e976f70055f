#pragma once
// The macro variables a block writes as it is read: the position variables of every axis that
// moves (#5001-#5004 previous block, #5021-#5024 machine, #5041-#5044 work position), #5103,
// the argument variables #4301-#4326 of its letters and the modal variables #4200-#4220.
// Writing them to the store on every block would cost more than the rest of the block, so
// they are held here and written when someone is about to read the store: Flush().
#include <array>
#include <cstdint>

namespace zemtra {

class VariableStore;

class BlockVariables {
 public:
  explicit BlockVariables(VariableStore& store) : store_(store) {}

  // Start of a run: nothing pending; the work positions are what #5041-#5044 hold now.
  void Reset();
  // Axis `slot` (0 to 3) moved to `shown` (its work position as the variables show it, a
  // lathe's X as a diameter) and `machine` (with the work offset). Stored floats read back as
  // their 7-digit text.
  void MoveAxis(int slot, float shown, float machine) {
    Axis& axis = axes_[static_cast<std::size_t>(slot)];
    if (axis.moved) {
      axis.previousKind = Previous::Coordinate;
      axis.previousCoordinate = axis.shown;
    } else {
      axis.previousKind = axis.workNull ? Previous::Null : Previous::Number;
      axis.previous = axis.work;
    }
    axis.shown = shown;
    axis.machine = machine;
    axis.moved = pending_ = true;
  }
  // #5103: the last Z outside a canned cycle.
  void SetZLevel(float z) {
    zLevel_ = z;
    zLevelMoved_ = pending_ = true;
  }
  // #4300 + number (1 to 26): an address of the block.
  void SetArgument(int number, double value) {
    arguments_[static_cast<std::size_t>(number)] = value;
    argumentMask_ |= 1u << number;
    pending_ = true;
  }
  // #4200 + group (0 to 20): the code a group was set to.
  void SetModalCode(int group, double code) {
    modalCodes_[static_cast<std::size_t>(group)] = code;
    modalMask_ |= 1u << group;
    pending_ = true;
  }
  // Writes everything pending to the store.
  void Flush() {
    if (pending_) WritePending();
  }

 private:
  // What #5001 + slot is to take: null, a number of the store, or a stored coordinate.
  enum class Previous : std::uint8_t { Null, Number, Coordinate };
  struct Axis {
    bool moved = false;
    Previous previousKind = Previous::Null;
    double previous = 0;
    float previousCoordinate = 0;
    float shown = 0;
    float machine = 0;
    double work = 0;  // #5041 + slot as last written
    bool workNull = true;
  };

  void WritePending();

  VariableStore& store_;
  bool pending_ = false;
  std::array<Axis, 4> axes_;
  bool zLevelMoved_ = false;
  float zLevel_ = 0;
  std::uint32_t argumentMask_ = 0;
  std::array<double, 27> arguments_{};
  std::uint32_t modalMask_ = 0;
  std::array<double, 21> modalCodes_{};
};

}  // namespace zemtra
