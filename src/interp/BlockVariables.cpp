#include "interp/BlockVariables.h"

#include "interp/Axes.h"
#include "macro/VariableStore.h"

namespace zemtra {

namespace {

constexpr int kPreviousPosition = 5001;
constexpr int kMachinePosition = 5021;
constexpr int kWorkPosition = 5041;
constexpr int kZLevel = 5103;
constexpr int kFirstArgument = 4300;
constexpr int kFirstModal = 4200;

}  // namespace

void BlockVariables::Reset() {
  pending_ = zLevelMoved_ = false;
  argumentMask_ = modalMask_ = 0;
  for (std::size_t slot = 0; slot < axes_.size(); ++slot) {
    Axis& axis = axes_[slot];
    axis = Axis{};
    axis.work = store_.ReadNumber(kWorkPosition + static_cast<int>(slot), axis.workNull);
  }
}

void BlockVariables::WritePending() {
  for (std::size_t slot = 0; slot < axes_.size(); ++slot) {
    Axis& axis = axes_[slot];
    if (!axis.moved) continue;
    const int n = static_cast<int>(slot);
    switch (axis.previousKind) {
      case Previous::Null:
        store_.WriteNull(kPreviousPosition + n);
        break;
      case Previous::Number:
        store_.WriteNumber(kPreviousPosition + n, axis.previous);
        break;
      case Previous::Coordinate:
        store_.WriteNumber(kPreviousPosition + n, CoordinateReadBack(axis.previousCoordinate));
        break;
    }
    const double shown = CoordinateReadBack(axis.shown);
    store_.WriteNumber(kMachinePosition + n,
                       axis.machine == axis.shown ? shown : CoordinateReadBack(axis.machine));
    store_.WriteNumber(kWorkPosition + n, shown);
    axis.work = shown;
    axis.workNull = false;
    axis.moved = false;
  }
  if (zLevelMoved_) store_.WriteNumber(kZLevel, CoordinateReadBack(zLevel_));
  for (int n = 0; argumentMask_ != 0; ++n, argumentMask_ >>= 1) {
    if (argumentMask_ & 1u)
      store_.WriteNumber(kFirstArgument + n, arguments_[static_cast<std::size_t>(n)]);
  }
  for (int group = 0; modalMask_ != 0; ++group, modalMask_ >>= 1) {
    if (modalMask_ & 1u)
      store_.WriteNumber(kFirstModal + group, modalCodes_[static_cast<std::size_t>(group)]);
  }
  zLevelMoved_ = pending_ = false;
}

}  // namespace zemtra
