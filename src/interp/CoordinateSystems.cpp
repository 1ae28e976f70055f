// Coordinate systems: work offsets and the local shift (folded into WorkOffset), G92, and the
// state of rotation, mirror, scaling and polar coordinates. Mirror, scale and rotation are
// applied by the plot driver when a motion is stored; CurrentPos stays in program coordinates.
#include <cmath>

#include "config/MachineConfig.h"
#include "geom/Primitives.h"
#include "interp/Axes.h"
#include "interp/InterpMessages.h"
#include "interp/Interpreter.h"
#include "macro/VariableStore.h"

namespace zemtra {

namespace {

constexpr int kFirstWorkOffset = 5221;       // G54 X; each system takes 20 variables
constexpr int kFirstExtendedOffset = 14001;  // G54.1 P1 X
constexpr int kOffsetStride = 20;
constexpr int kMachinePosition = 5021;  // + axis

constexpr char kLinearLetters[3] = {'X', 'Y', 'Z'};

}  // namespace

// ---------------------------------------------------------------------------------------------
// Work offsets

GeoPoint Interpreter::BaseWorkOffset() const {
  int first = 0;
  if (ModalG[12] == 54.1f) {
    first = kFirstExtendedOffset + (ExtendedOffset - 1) * kOffsetStride;
  } else {
    const int code = static_cast<int>(ModalG[12]);
    first = kFirstWorkOffset + (code - 54) * kOffsetStride;
  }
  GeoPoint offset;
  offset.X = static_cast<float>(variables_.ReadNumber(first));
  if (IsLathe()) {
    offset.Z = static_cast<float>(variables_.ReadNumber(first + 1));
  } else {
    offset.Y = static_cast<float>(variables_.ReadNumber(first + 1));
    offset.Z = static_cast<float>(variables_.ReadNumber(first + 2));
    offset.A = static_cast<float>(variables_.ReadNumber(first + 3));
  }
  return offset;
}

void Interpreter::LoadAxisOffset(int axis) {
  const GeoPoint base = BaseWorkOffset();
  AxisRef(WorkOffset, axis) =
      static_cast<float>(double(AxisValue(base, axis)) + AxisValue(LocalOffset, axis));
  OffsetPending[static_cast<std::size_t>(axis)] = false;
}

// Address index of an axis: X, Y, Z, then the rotary letter (0 when there is none).
int Interpreter::AxisLetter(int axis) const {
  return axis < 3 ? Letter(kLinearLetters[axis]) : rotaryLetter_;
}

bool Interpreter::AxisInBlock(int axis) const {
  const int letter = AxisLetter(axis);
  return letter != 0 && AddrSeen[letter] != 0;
}

// ---------------------------------------------------------------------------------------------
// Codes that act in their own block (step 12 of a block)

int Interpreter::ApplyCoordinateSystemCodes() {
  const float code = ModalG[0];
  if (code == 0) return kContinue;
  if (IsLathe()) {
    // The lathe's coordinate setting belongs to its cycles; it has no rotation.
    const bool coordinateSet = code == 50 || (code == 92 && dialect_ == Dialect::LatheB);
    if (coordinateSet) return ClampOrSetCoordinates();
    if (code == 92 || code == 68) return kContinue;
  }
  using Action = void (Interpreter::*)();
  struct CodeAction {
    float code;
    Action action;
  };
  static constexpr CodeAction kActions[] = {
      {92, &Interpreter::SetCoordinateSystem}, {52, &Interpreter::SetLocalCoordinates},
      {68, &Interpreter::StartRotation},       {50.1f, &Interpreter::CancelMirror},
      {51.1f, &Interpreter::StartMirror},      {51, &Interpreter::StartScaling},
  };
  for (const CodeAction& entry : kActions) {
    if (entry.code == code) (this->*entry.action)();
  }
  return kContinue;
}

// G92: the programmed point becomes the current position. Whichever axis is named, its offset
// is written into WorkOffset.X and the other offsets stay: the control behaves so, and plots
// must show what it does.
void Interpreter::SetCoordinateSystem() {
  FlushVariables();
  for (int axis = 0; axis < 4; ++axis) {
    if (!AxisInBlock(axis)) continue;
    const double value = AddrValue[AxisLetter(axis)];
    const double machine = variables_.ReadNumber(kMachinePosition + axis);
    WorkOffset.X = static_cast<float>(machine - value);
    OffsetPending[static_cast<std::size_t>(axis)] = false;
    AxisRef(CurrentPos, axis) = static_cast<float>(value);
  }
}

// G52: a shift on top of the work offset. The tool stays where it is; its program coordinate
// changes by the difference of the old and the new shift.
void Interpreter::SetLocalCoordinates() {
  const GeoPoint base = BaseWorkOffset();
  for (int axis = 0; axis < 4; ++axis) {
    if (!AxisInBlock(axis) || (axis == 1 && IsLathe())) continue;
    const int letter = AxisLetter(axis);
    const double value = AddrValue[letter];
    float& position = AxisRef(CurrentPos, axis);
    float& local = AxisRef(LocalOffset, axis);
    position = static_cast<float>(double(position) + local - value);
    OffsetPending[static_cast<std::size_t>(axis)] = false;
    local = static_cast<float>(value);
    AxisRef(WorkOffset, axis) = static_cast<float>(double(local) + AxisValue(base, axis));
    AddrSeen[letter] = 0;
  }
}

// G68: centre from the block or the current position; R sets the angle in degrees, or adds to
// it under G91. The centre is a machine coordinate: no offset is added to it.
void Interpreter::StartRotation() {
  for (int axis = 0; axis < 3; ++axis) {
    const int letter = Letter(kLinearLetters[axis]);
    if (AddrSeen[letter] != 0) {
      AxisRef(RotationCenter, axis) = static_cast<float>(AddrValue[letter]);
      AddrSeen[letter] = 0;
    } else {
      AxisRef(RotationCenter, axis) = AxisValue(CurrentPos, axis);
    }
  }
  if (HasLetter('R')) {
    const double r = AddrValue[Letter('R')];
    RotationAngle = ModalG[3] == 91 ? RotationAngle + r : r;
  }
  RotationSin = std::sin(RotationAngle * kDegree);
  RotationCos = std::cos(RotationAngle * kDegree);
}

// G50.1 switches every mirror off, whichever axes it names.
void Interpreter::CancelMirror() {
  for (const char c : kLinearLetters) AddrSeen[Letter(c)] = 0;
  MirrorCenter.fill(0);
  MirrorOn.fill(false);
}

// G51.1: each named axis is mirrored about the value given.
void Interpreter::StartMirror() {
  for (std::size_t axis = 0; axis < 3; ++axis) {
    const int letter = Letter(kLinearLetters[axis]);
    if (AddrSeen[letter] == 0) continue;
    MirrorCenter[axis] = AddrValue[letter];
    MirrorOn[axis] = true;
    AddrSeen[letter] = 0;
  }
}

// G51: each named axis (X or I, Y or J, Z or K) is scaled about the value given, by the factor
// P. Axes not named keep what they had, also from an earlier plot.
void Interpreter::StartScaling() {
  constexpr char kSecondChoice[3] = {'I', 'J', 'K'};
  for (std::size_t axis = 0; axis < 3; ++axis) {
    int letter = Letter(kLinearLetters[axis]);
    if (AddrSeen[letter] == 0) letter = Letter(kSecondChoice[axis]);
    if (AddrSeen[letter] == 0) continue;
    ScaleCenter[axis] = AddrValue[letter];
    ScaleOn[axis] = true;
    AddrSeen[letter] = 0;
  }
  if (HasLetter('P')) {
    ScaleFactor = AddrValue[Letter('P')];
    AddrSeen[Letter('P')] = 0;
  }
}

// The configured mirror M-codes, each compared in turn: X on, Y on (about 0), and off for X
// and Y (Z keeps its mirror).
int Interpreter::RunMirrorCodes(double m) {
  if (m == config_.MCodeXMirrorOn) {
    ModalG[19] = 51.1f;
    MirrorCenter[0] = 0;
    MirrorOn[0] = true;
  }
  if (m == config_.MCodeYMirrorOn) {
    ModalG[19] = 51.1f;
    MirrorCenter[1] = 0;
    MirrorOn[1] = true;
  }
  if (m == config_.MCodeMirrorOff) {
    ModalG[19] = 50.1f;
    MirrorCenter[0] = MirrorCenter[1] = 0;
    MirrorOn[0] = MirrorOn[1] = false;
  }
  return kContinue;
}

// ---------------------------------------------------------------------------------------------
// Polar coordinates (G16): X and Y words are a radius and an angle, by plane; the position is
// made from them at the end of every block.

void Interpreter::TakePolarWord(int letter) {
  const bool isX = letter == Letter('X');
  const bool incremental = ModalG[3] == 91;
  const double value = AddrValue[letter];
  switch (NormalPlane(static_cast<int>(ModalG[2]))) {
    case 17:
      if (isX) {
        PolarRadius = value;
        PolarRadiusIncremental = incremental;
      } else {
        PolarAngle = incremental ? PolarAngle + value : value;
      }
      break;
    case 18:
      if (isX) PolarAngle = incremental ? PolarAngle + value : value;
      break;
    case 19:
      if (!isX) {
        PolarRadius = value;
        PolarRadiusIncremental = incremental;
      }
      break;
    default:
      break;
  }
}

// The polar point always lands in X and Y, whatever the plane; an incremental radius moves the
// tool again on every block.
int Interpreter::ComputePolarPosition() {
  for (int axis = 0; axis < 2; ++axis) {
    if (OffsetPending[static_cast<std::size_t>(axis)]) LoadAxisOffset(axis);
  }
  const double angle = PolarAngle * kDegree;
  const double x = PolarRadius * std::cos(angle);
  const double y = PolarRadius * std::sin(angle);
  if (PolarRadiusIncremental) {
    CurrentPos.X = static_cast<float>(CurrentPos.X + x);
    CurrentPos.Y = static_cast<float>(CurrentPos.Y + y);
  } else {
    CurrentPos.X = static_cast<float>(x);
    CurrentPos.Y = static_cast<float>(y);
  }
  for (int axis = 0; axis < 2; ++axis) {
    UpdateAxisVariables(axis, axis, 1);
    AxisSeen[static_cast<std::size_t>(axis)] = true;
  }
  return 0;
}

}  // namespace zemtra
