// The lathe's own path through a block: constant surface speed, the contour cycles G70 to G73
// that run a range of the program's blocks, the arguments of the file-based turning cycles,
// and G50's spindle clamp and coordinate setting.
#include <cmath>

#include "config/MachineConfig.h"
#include "interp/InterpMessages.h"
#include "interp/Interpreter.h"
#include "macro/VariableStore.h"

namespace zemtra {

namespace {

constexpr int kMachineX = 5021;  // machine position of X; Z follows
constexpr int kMachineZ = 5022;

bool IsContourCycle(float code) {
  return code >= 70 && code <= 73;
}

}  // namespace

// After the decoder: G96's surface speed, and the entry of a contour cycle.
int Interpreter::RunLatheCodes() {
  if (!IsLathe()) return kContinue;
  if (ModalG[17] == 96 && HasLetter('S')) SurfaceSpeed = AddrValue[Letter('S')];
  if (IsContourCycle(ModalG[9])) return EnterContourCycle();
  return kContinue;
}

// G70-G73 P.. Q..: the blocks N<P> to N<Q> run once at a new level, drawing the finish
// contour; the block after N<Q> returns by a rapid to where the cycle was called. A block of
// the cycle with neither P nor Q (the first of a two-block cycle) does nothing.
int Interpreter::EnterContourCycle() {
  const bool hasP = HasLetter('P');
  const bool hasQ = HasLetter('Q');
  if (!hasP && !hasQ) return kNoMotion;
  ModalG[9] = 80;
  ContourReturn = CurrentPos;
  if (!hasP || !hasQ) return FailPending(kMissingPOrQ);
  const double p = AddrValue[Letter('P')];
  double q = AddrValue[Letter('Q')];
  // A Q written without a point was scaled by the resolution like a coordinate: undo it.
  if (q < 1 && config_.CoordinateResolution > 0) q /= config_.CoordinateResolution;
  const CallResult result = calls_.EnterContour(std::trunc(p));
  if (result.Status == CallStatus::kFailed) return ShowCallError(result.Message);
  ContourStart = static_cast<std::int32_t>(std::trunc(p));
  ContourEnd = static_cast<std::int32_t>(std::lround(q));
  SyncLineCounter();
  ContourActive = true;
  BlockMoved = false;
  return kNoMotion;
}

// The arguments of a file-based turning cycle: X and U (Z and W) exclude each other, X first.
// The cycle file sees X as written (a diameter on a diameter machine): the address table holds
// the written value, only the position is halved. The approach to the cycle's start is a rapid.
void Interpreter::TakeLatheCycleArguments(LocalVariables& arguments) {
  const auto exclude = [&](char first, char second) {
    if (HasLetter(first)) {
      arguments[ArgumentVariable(second)].SetNull();
    } else if (HasLetter(second)) {
      arguments[ArgumentVariable(first)].SetNull();
    }
  };
  exclude('X', 'U');
  exclude('Z', 'W');
  // On a diameter machine X reaches the cycle as the diameter written, U as the radius it moves.
  if (config_.LatheXDiameter && !HasLetter('X') && HasLetter('U')) {
    arguments[ArgumentVariable('U')].SetNumber(AddrValue[Letter('U')] / 2);
  }
  ModalG[1] = 0;
}

// G50 (G92 in format B): with S or Q the spindle clamp, else the coordinate setting of X and
// Z. Either way the block makes no motion.
int Interpreter::ClampOrSetCoordinates() {
  const bool clamp = HasLetter('S') || HasLetter('Q');
  if (HasLetter('S')) SpindleMaxRPM = AddrValue[Letter('S')];
  if (HasLetter('Q')) SpindleMinRPM = AddrValue[Letter('Q')];
  AddrSeen[Letter('S')] = AddrSeen[Letter('Q')] = 0;
  if (!clamp) {
    FlushVariables();
    if (HasLetter('X')) {
      // The position is a radius; the machine variable shows a diameter on a diameter machine,
      // and the offset keeps that difference as the control does.
      const double x = AddrValue[Letter('X')] / (config_.LatheXDiameter ? 2 : 1);
      WorkOffset.X = static_cast<float>(variables_.ReadNumber(kMachineX) - x);
      CurrentPos.X = static_cast<float>(x);
      OffsetPending[0] = false;
    }
    if (HasLetter('Z')) {
      const double z = AddrValue[Letter('Z')];
      WorkOffset.Z = static_cast<float>(variables_.ReadNumber(kMachineZ) - z);
      CurrentPos.Z = static_cast<float>(z);
      OffsetPending[2] = false;
    }
  }
  for (const char letter : {'X', 'Z', 'U', 'W'}) AddrSeen[Letter(letter)] = 0;
  return kContinue;
}

}  // namespace zemtra
