#include "interp/ArcBlock.h"

#include <algorithm>
#include <cmath>

#include "config/MachineConfig.h"
#include "core/NumberText.h"
#include "geom/Arcs.h"
#include "geom/Primitives.h"
#include "interp/Axes.h"
#include "interp/InterpMessages.h"

namespace zemtra {

namespace {

constexpr int kContinue = -1;
constexpr int kMostArcErrors = 49;  // one more and the plot stops
constexpr double kMostTurns = 99;

// Centre letters of X, Y and Z.
constexpr char kCenterLetters[3] = {'I', 'J', 'K'};

// The axis (0 X, 1 Y, 2 Z) normal to a plane; planes other than 18 and 19 count as 17.
int NormalAxis(int plane) {
  return plane == 18 ? 1 : plane == 19 ? 0 : 2;
}

}  // namespace

bool IsHelicalArc(const ArcMoveRecord& arc) {
  switch (arc.Plane) {
    case 17:
      return arc.Start.Z != arc.End.Z;
    case 18:
      return arc.Start.Y != arc.End.Y;
    case 19:
      return arc.Start.X != arc.End.X;
    default:
      return false;
  }
}

void ArcCenterFromRadius(ArcMoveRecord& arc) {
  if (PlaneDistance(arc.Start, arc.End, arc.Plane) == 0) {
    arc.Center = arc.Start;
    return;
  }
  arc.Center = CenterFromRadius(arc.Start, arc.End, arc.RadiusOrTurns, arc.Direction, arc.Plane);
  arc.RadiusOrTurns = std::fabs(arc.RadiusOrTurns);
}

ArcBlock::ArcBlock(Interpreter& interpreter)
    : in_(interpreter), lathe_(interpreter.Config().MachineType == 1) {}

int ArcBlock::Run() {
  // A lathe plot begins only once both X and Z have a value.
  if (lathe_ && !(in_.AxisSeen[0] && in_.AxisSeen[2])) return Interpreter::kNoMotion;
  if (const int result = CheckCenterGiven(); result != kContinue) return result;
  TakeDirectionAndPlane();
  if (lathe_) {
    if (const int result = CheckLathePlane(); result != kContinue) return result;
  }
  return Has('R') ? RunRadiusForm() : RunCenterForm();
}

// A block without centre and without axis is no arc at all; an axis without centre is asked
// about. With absolute and modal centres on, the retained centre always counts as given.
int ArcBlock::CheckCenterGiven() {
  const MachineConfig& config = in_.Config();
  if (config.AbsoluteArcCenter && config.ModalIJK) return kContinue;
  const std::string_view centerLetters = lathe_ ? "IKR" : "IJKR";
  for (const char letter : centerLetters) {
    if (Has(letter)) return kContinue;
  }
  if (!AnyAxisInBlock()) return Interpreter::kNoMotion;
  const MsgAnswer answer = Ask(std::string(kNoArcCenter), MsgButtons::OkCancel);
  return answer == MsgAnswer::Cancel ? Stop() : Interpreter::kNoMotion;
}

bool ArcBlock::AnyAxisInBlock() const {
  const std::string_view axisLetters = lathe_ ? "XUZW" : "XYZ";
  for (const char letter : axisLetters) {
    if (Has(letter)) return true;
  }
  const int rotary = in_.RotaryLetter();
  return !lathe_ && rotary != 0 && in_.AddrSeen[rotary] != 0;
}

void ArcBlock::TakeDirectionAndPlane() {
  ArcMoveRecord& arc = in_.ArcMove;
  arc.Direction = in_.MotionCode;
  arc.Plane = static_cast<std::uint8_t>(in_.ModalG[2]);
  arc.End = in_.CurrentPos;
  arc.Center = arc.Start;
}

// Lathe arcs belong in the ZX plane; after OK the arc is made all the same.
int ArcBlock::CheckLathePlane() {
  if (in_.ArcMove.Plane == 18) return kContinue;
  std::string text(kIllegalArcPlane);
  text.append(kLineEnd).append(kLineEnd);
  for (std::size_t i = 0; i < std::size(kLathePlaneTip); ++i) {
    if (i > 0) text.append(kLineEnd);
    text.append(kLathePlaneTip[i]);
  }
  return Ask(text, MsgButtons::OkCancel) == MsgAnswer::Cancel ? Stop() : kContinue;
}

// R form: the centre follows from the chord and the signed radius. A full circle or a radius
// shorter than half the chord is an arc error; a radius too short is raised to half the chord,
// which puts the centre on the chord.
int ArcBlock::RunRadiusForm() {
  ArcMoveRecord& arc = in_.ArcMove;
  arc.RadiusOrTurns = Value('R');
  const double halfChord = PlaneDistance(arc.Start, arc.End, arc.Plane) / 2;
  std::string error;
  if (halfChord == 0) {
    error.append(kFullCircleWithR).append(kLineEnd);
  } else if (std::fabs(arc.RadiusOrTurns) < halfChord - in_.Config().ArcTolerance) {
    arc.RadiusOrTurns = halfChord;
    error.append(kRTooSmall).append(kLineEnd).append(kMinimumR);
    error.append(FormatNumberText(halfChord, in_.Options().NumberFormat));
  }
  MsgAnswer answer = MsgAnswer::Ok;
  if (!error.empty()) {
    ++in_.ArcErrorCount;
    answer = Ask(error, MsgButtons::OkCancel);
  }
  ArcCenterFromRadius(arc);
  if (in_.ArcErrorCount > kMostArcErrors || answer == MsgAnswer::Cancel) return Stop();
  if (!IsHelicalArc(arc)) return Interpreter::kMotion;
  if (Has('P')) {
    Ask(std::string(kTurnsWithR), MsgButtons::Ok);
  } else {
    arc.RadiusOrTurns = -1;
  }
  return Interpreter::kMotion;
}

// I, J, K form: the centre is given, the radius is its distance from the start. An arc with an
// error is still made, through the given centre.
int ArcBlock::RunCenterForm() {
  ArcMoveRecord& arc = in_.ArcMove;
  TakeCenter();
  const double startRadius = PlaneDistance(arc.Center, arc.Start, arc.Plane);
  const double endRadius = PlaneDistance(arc.Center, arc.End, arc.Plane);
  arc.RadiusOrTurns = startRadius;
  if (IsHelicalArc(arc)) TakeTurns();
  MsgAnswer answer = MsgAnswer::Ok;
  const bool error = CheckRadii(startRadius, endRadius, answer);
  in_.MaxArcDeviation = std::max(in_.MaxArcDeviation, std::fabs(endRadius - startRadius));
  if (in_.ArcErrorCount > kMostArcErrors || (error && answer == MsgAnswer::Cancel)) return Stop();
  return Interpreter::kMotion;
}

// A centre letter is absolute or relative to the start. A missing one leaves the start's
// coordinate, except on the plane's own axes where absolute, modal centres keep the last value.
void ArcBlock::TakeCenter() {
  ArcMoveRecord& arc = in_.ArcMove;
  const MachineConfig& config = in_.Config();
  const bool absolute = config.AbsoluteArcCenter != 0;
  const bool retained = absolute && config.ModalIJK != 0;
  const int normal = NormalAxis(arc.Plane);
  for (int axis = 0; axis < 3; ++axis) {
    const char letter = kCenterLetters[axis];
    float& center = AxisRef(arc.Center, axis);
    if (Has(letter)) {
      const double value = Value(letter);
      center = static_cast<float>(absolute ? value : double(AxisValue(arc.Start, axis)) + value);
    } else if (retained && axis != normal) {
      center = static_cast<float>(Value(letter));
    }
  }
}

// A helix turns P times (whole turns); without P its turns are -1, "not given".
void ArcBlock::TakeTurns() {
  ArcMoveRecord& arc = in_.ArcMove;
  if (!Has('P')) {
    arc.RadiusOrTurns = -1;
    return;
  }
  arc.RadiusOrTurns = std::trunc(std::fabs(Value('P')));
  if (arc.RadiusOrTurns > kMostTurns) Ask(std::string(kTooManyTurns), MsgButtons::Ok);
}

// A zero radius, or ends whose radii differ by more than the tolerance, is an arc error, unless
// the user chose to ignore them. Returns true when this block had one; `answer` is the reply.
bool ArcBlock::CheckRadii(double startRadius, double endRadius, MsgAnswer& answer) {
  if (in_.IgnoreArcErrors) return false;
  const double tolerance = in_.Config().ArcTolerance;
  std::string text;
  if (in_.ArcMove.RadiusOrTurns == 0) {
    text.append(kArcRadiusZero);
  } else if (std::fabs(endRadius - startRadius) > tolerance) {
    text.append(kRadiiDiffer).append(kByMoreThan);
    text.append(FormatNumberText(tolerance, kArcToleranceFormat));
  } else {
    return false;
  }
  ++in_.ArcErrorCount;
  text.append(kLineEnd).append(kLineEnd).append(kIgnoreFurtherErrors);
  answer = Ask(text, MsgButtons::YesNoCancel);
  in_.IgnoreArcErrors = answer == MsgAnswer::Yes;
  return true;
}

bool ArcBlock::Has(char letter) const {
  return in_.AddrSeen[Letter(letter)] != 0;
}

double ArcBlock::Value(char letter) const {
  return in_.AddrValue[Letter(letter)];
}

MsgAnswer ArcBlock::Ask(const std::string& text, MsgButtons buttons) {
  return in_.ShowProgramMessage(text, MsgIcon::Exclamation, buttons);
}

int ArcBlock::Stop() {
  in_.StoppedByError = true;
  return Interpreter::kStop;
}

}  // namespace zemtra
