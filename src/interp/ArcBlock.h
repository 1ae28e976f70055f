#pragma once
// The arc block: the last stage of a G02 / G03 block. It works out the centre and the radius
// (or the turns of a helix) into Interpreter::ArcMove, checks them against the machine's arc
// tolerance, counts arc errors, and lets the user go on, ignore further errors or stop.
#include <string>
#include <string_view>

#include "core/Host.h"
#include "interp/Interpreter.h"

namespace zemtra {

class ArcBlock {
 public:
  explicit ArcBlock(Interpreter& interpreter);

  // Runs the arc block of the current block, whose MotionCode is 2 or 3 (already reversed on
  // a lathe that reverses arcs). Interpreter::kMotion when ArcMove holds an arc (also an arc
  // with an error), kNoMotion when no arc is made, kStop when the plot is to end.
  int Run();

 private:
  int CheckCenterGiven();
  bool AnyAxisInBlock() const;
  void TakeDirectionAndPlane();
  int CheckLathePlane();
  int RunRadiusForm();
  int RunCenterForm();
  void TakeCenter();
  void TakeTurns();
  bool CheckRadii(double startRadius, double endRadius, MsgAnswer& answer);

  bool Has(char letter) const;
  double Value(char letter) const;
  MsgAnswer Ask(const std::string& text, MsgButtons buttons);
  int Stop();

  Interpreter& in_;
  bool lathe_ = false;
};

// Centre of ArcMove from its signed RadiusOrTurns: positive on a clockwise arc or negative on a
// counter-clockwise one puts the centre on the side of the shorter arc. Then the radius is made
// positive. With both ends on one spot of the plane the centre is the start and nothing else
// changes.
void ArcCenterFromRadius(ArcMoveRecord& arc);

}  // namespace zemtra
