#include "interp/PlotDriver.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <exception>
#include <numbers>
#include <string>

#include "config/MachineConfig.h"
#include "core/GeometryTable.h"
#include "core/NumberText.h"
#include "geom/Corners.h"
#include "geom/Extents.h"
#include "geom/Primitives.h"
#include "interp/Axes.h"
#include "interp/InterpMessages.h"
#include "interp/Interpreter.h"
#include "macro/ProgramText.h"
#include "macro/VariableStore.h"

namespace zemtra {

namespace {

GeoPoint Add(const GeoPoint& a, const GeoPoint& b) {
  return GeoPoint{a.X + b.X, a.Y + b.Y, a.Z + b.Z, a.A + b.A};
}

bool IsFeedPerRevolution(float group5) {
  return group5 == 95 || group5 == 99;
}

// About one entity per line: room for that many saves moving the table while it grows.
std::int32_t EstimateEntities(const ProgramText& program) {
  constexpr std::int32_t kMostReserved = 20000000;
  const std::string_view bytes = program.Bytes();
  std::int32_t lines = 1;
  for (const char *at = bytes.data(), *end = bytes.data() + bytes.size();
       (at = static_cast<const char*>(std::memchr(at, '\n', static_cast<std::size_t>(end - at)))) &&
       lines < kMostReserved;
       ++at) {
    ++lines;
  }
  return lines + 1;
}

}  // namespace

PlotDriver::PlotDriver(Interpreter& interpreter, GeometryTable& table, Host& host)
    : interpreter_(interpreter), table_(table), host_(host) {}

void PlotDriver::RefreshGeometry(const ProgramText& program) {
  const bool wasBusy = PlotBusy || PlotBlocked;
  GCodeToGeometry(program);
  if (!wasBusy) ComputeExtents(table_);
}

void PlotDriver::GCodeToGeometry(const ProgramText& program) {
  if (PlotBusy || PlotBlocked) return;
  started_ = lastProgress_ = Clock::now();
  Failed = false;
  StartPlot(program);
  if (program.FileName().empty() && program.Size() == 0) {
    table_.Clear();
    return;
  }
  PlotBusy = true;
  try {
    if (RunStartLoop()) RunMainLoop();
  } catch (const std::exception& failure) {
    ReportFailure(failure.what());
    return;
  } catch (...) {
    ReportFailure("Unexpected failure");
    return;
  }
  EndPlot();
}

// Steps before the first block: interpreter, table, counters and totals.
void PlotDriver::StartPlot(const ProgramText& program) {
  ++runNumber_;
  interpreter_.SetProgram(program);
  interpreter_.QuietPlot = QuietPlot;
  interpreter_.InitInterpreter();
  interpreter_.RotaryUsed = false;
  table_.Begin();
  table_.Reserve(EstimateEntities(program));
  interpreter_.LineCounter = 0;
  interpreter_.MaxArcDeviation = 0;
  PlotCancel = false;
  modalReported_ = false;
  cornerRadius_ = cornerChamfer_ = 0;
  plotFileSize_ = program.Size();
  progressTick_ = 0;
  blocksRead_ = 0;
  LimitReached = false;
  if (MoveRate == 0) MoveRate = 1;
  table_.RapidDistance = table_.FeedDistance = table_.RunTime = 0;
  host_.status("msg", kStatusPlotting);
}

// The first motion only places the start of the first entity: its end, with the work offset,
// turned by an active rotation. Arcs that follow are computed from a start that holds the
// work offset.
bool PlotDriver::RunStartLoop() {
  for (;;) {
    const int result = NextBlock();
    if (result == Interpreter::kStop) return false;
    if (result == Interpreter::kNoMotion) {
      CheckProgress();
      if (PlotCancel) return false;
      continue;
    }
    PlaceStart();
    return true;
  }
}

void PlotDriver::PlaceStart() {
  Interpreter& in = interpreter_;
  const GeoPoint end = in.MotionCode <= 1 ? in.LineMove.End : in.ArcMove.End;
  const GeoPoint start = Add(end, in.WorkOffset);
  table_.Current().StartPoint =
      in.ModalG[16] == 68 ? RotatePoint(start, in.RotationCenter, in.RotationAngle) : start;
  in.LineMove.Start = in.ArcMove.Start = in.ArcMove.Center = start;
}

void PlotDriver::RunMainLoop() {
  Interpreter& in = interpreter_;
  for (;;) {
    if (!modalReported_ && in.LineCounter == ModalLine) {
      modalReported_ = true;
      if (ModalReport) ModalReport();
    }
    const int result = NextBlock();
    if (result == Interpreter::kStop) return;
    if (result == Interpreter::kNoMotion) {
      CheckProgress();
      if (PlotCancel) return;
      continue;
    }
    TakeMotion();
    CheckProgress();
    if (PlotCancel) return;
  }
}

// A motion after the first: stored, its special moves added, and its end the next start.
void PlotDriver::TakeMotion() {
  Interpreter& in = interpreter_;
  StoreMotion();
  RunSpecialMoves();
  const GeoPoint end = in.MotionCode <= 1 ? in.LineMove.End : in.ArcMove.End;
  in.LineMove.Start = in.ArcMove.Start = in.ArcMove.Center = end;
}

bool PlotDriver::BeginStepping(const ProgramText& program) {
  if (PlotBusy || PlotBlocked) return false;
  started_ = lastProgress_ = Clock::now();
  Failed = false;
  StartPlot(program);
  startPlaced_ = false;
  return true;
}

int PlotDriver::StepBlock() {
  if (PlotBusy) return Interpreter::kStop;
  const int result = NextBlock();
  if (result == Interpreter::kMotion) {
    if (startPlaced_) {
      TakeMotion();
    } else {
      PlaceStart();
      startPlaced_ = true;
    }
  }
  if (result == Interpreter::kStop || PlotCancel) {
    EndTable();
    return Interpreter::kStop;
  }
  return result;
}

// One block through the interpreter, unless the block limit is reached.
int PlotDriver::NextBlock() {
  if (BlockLimit > 0 && ++blocksRead_ > BlockLimit) {
    LimitReached = true;
    interpreter_.StoppedByError = true;
    std::string text(kBlockLimitHead);
    text.append(FormatNumberText(static_cast<double>(BlockLimit), "0")).append(kBlockLimitTail);
    interpreter_.BlockMessage = text;
    host_.ask(Prompt{text, std::string(kMessageTitle), MsgIcon::Stop, MsgButtons::Ok});
    return Interpreter::kStop;
  }
  return interpreter_.ExecuteBlock();
}

std::int32_t PlotDriver::EntityCount() const {
  return Failed ? table_.GeoIndex - 1 : table_.HighestIndex();
}

void PlotDriver::EndTable() {
  interpreter_.FlushVariables();
  table_.End();
  if (table_.GeoLast > 0) {
    LastEndPoint = table_[table_.GeoLast].EndPoint;
    LastWorkOffset = table_[table_.GeoLast].WorkOffset;
  } else {
    LastEndPoint = LastWorkOffset = GeoPoint{};
  }
}

void PlotDriver::EndPlot() {
  EndTable();
  ElapsedSeconds = std::chrono::duration<double>(Clock::now() - started_).count();
  std::string text(kStatusElapsed);
  text.append(FormatNumberText(ElapsedSeconds, NumberFormat)).append(kStatusSeconds);
  host_.status("msg", text);
  PlotBusy = false;
  PlotRangeActive = false;
}

void PlotDriver::ReportFailure(const char* description) {
  interpreter_.FlushVariables();
  Failed = true;
  PlotBusy = false;
  ElapsedSeconds = std::chrono::duration<double>(Clock::now() - started_).count();
  std::string text(kPlotFailureHead);
  text.append(kLineEnd).append(description);
  interpreter_.BlockMessage = text;
  host_.ask(Prompt{text, std::string(kMessageTitle), MsgIcon::Stop, MsgButtons::Ok});
}

// Percent of the main program read, twice a second at most; queued events run and Escape is
// seen here. The position of the main file stands still while a called file is read.
void PlotDriver::ReportProgress() {
  const Clock::time_point now = Clock::now();
  if (now < lastProgress_ + ProgressInterval) return;
  const std::size_t position = interpreter_.Calls().Frame(0).ResumePosition;
  const int percent =
      plotFileSize_ == 0 ? 0 : static_cast<int>(double(position) / double(plotFileSize_) * 100);
  host_.status("msg", std::string(kStatusPlottingPercent) + FormatNumberText(percent, "0") + "%");
  host_.pumpEvents();
  if (host_.abortRequested()) PlotCancel = true;
  lastProgress_ = Clock::now();
}

// ---------------------------------------------------------------------------------------------
// Storing a motion

// The motion becomes entity GeoIndex; corners, totals and warnings follow, then the table
// moves on to the next slot.
void PlotDriver::StoreMotion() {
  const bool arc = interpreter_.MotionCode >= 2;
  FillEntity(table_.Current(), arc);
  host_.entityStored(table_, table_.GeoIndex);
  const bool heldCorner = cornerRadius_ != 0 || cornerChamfer_ != 0;
  if (!arc && interpreter_.MotionCode == 1 && heldCorner) InsertCorner();
  AddToTotals(table_.Current());
  if (!arc) KeepCornerValues();
  table_.Advance();
}

// Code, colour, end (and centre) with the work offset and the active transforms, plane, line
// and offset. The start is already there: the end of the entity before.
void PlotDriver::FillEntity(GeoEntity& entity, bool arc) {
  Interpreter& in = interpreter_;
  entity.EntityType = static_cast<std::uint8_t>(in.MotionCode);
  entity.ColorIndex = static_cast<std::uint8_t>(ColorIndexFor(in.MotionCode));
  if (arc && IsHelicalArc(in.ArcMove)) {
    in.MotionCode = static_cast<std::int16_t>(in.MotionCode + 10);
    entity.EntityType = static_cast<std::uint8_t>(in.MotionCode);
  }
  const GeoPoint& offset = in.WorkOffset;
  entity.EndPoint = Add(arc ? in.ArcMove.End : in.LineMove.End, offset);
  entity.CenterPoint = arc ? Add(in.ArcMove.Center, offset) : GeoPoint{};
  entity.RadiusOrTurns = arc ? static_cast<float>(in.ArcMove.RadiusOrTurns) : 0.0f;
  if (in.ModalG[19] == 51.1f || in.ModalG[11] == 51 || in.ModalG[16] == 68) {
    ApplyTransforms(entity, arc);
  }
  entity.Plane = arc ? in.ArcMove.Plane : in.LineMove.Plane;
  entity.LineNumber = in.LineCounter;
  entity.WorkOffset = offset;
}

void PlotDriver::AddToTotals(const GeoEntity& entity) {
  const double length = EntityLength(entity);
  if (entity.EntityType == kRapid) {
    table_.RapidDistance += length;
  } else {
    table_.FeedDistance += length;
    AddFeedTime(entity, length);
  }
}

int PlotDriver::ColorIndexFor(int code) const {
  const MachineConfig& config = interpreter_.Config();
  if (config.ColorByGCode) return code;
  if (interpreter_.ToolColor > config.ToolColorCount()) return 0;
  return interpreter_.ToolColor;
}

// ---------------------------------------------------------------------------------------------
// Mirror, scale and rotation, in this order; each rewrites the machine position variables.

void PlotDriver::ApplyTransforms(GeoEntity& entity, bool arc) {
  const Interpreter& in = interpreter_;
  if (in.ModalG[19] == 51.1f) ApplyMirror(entity, arc);
  if (in.ModalG[11] == 51) ApplyScale(entity, arc);
  if (in.ModalG[16] == 68) ApplyRotation(entity, arc);
}

void PlotDriver::ApplyMirror(GeoEntity& entity, bool arc) {
  const Interpreter& in = interpreter_;
  const GeoPoint& p = arc ? in.ArcMove.End : in.LineMove.End;
  for (int axis = 0; axis < 3; ++axis) {
    if (!in.MirrorOn[static_cast<std::size_t>(axis)]) continue;
    const double twice = 2 * in.MirrorCenter[static_cast<std::size_t>(axis)];
    const double offset = AxisValue(in.WorkOffset, axis);
    AxisRef(entity.EndPoint, axis) = static_cast<float>(twice - AxisValue(p, axis) + offset);
    if (arc) {
      AxisRef(entity.CenterPoint, axis) =
          static_cast<float>(twice - AxisValue(in.ArcMove.Center, axis) + offset);
    }
  }
  if (arc && in.MirrorOn[0] != in.MirrorOn[1]) {
    const int base = entity.EntityType % 10;
    const int flipped = (base == kArcCW ? kArcCCW : kArcCW) + (entity.EntityType - base);
    entity.EntityType = static_cast<std::uint8_t>(flipped);
  }
  WriteMachinePosition(entity.EndPoint);
}

void PlotDriver::ApplyScale(GeoEntity& entity, bool arc) {
  const Interpreter& in = interpreter_;
  const GeoPoint& p = arc ? in.ArcMove.End : in.LineMove.End;
  for (int axis = 0; axis < 3; ++axis) {
    if (!in.ScaleOn[static_cast<std::size_t>(axis)]) continue;
    const double center = in.ScaleCenter[static_cast<std::size_t>(axis)];
    const double offset = AxisValue(in.WorkOffset, axis);
    AxisRef(entity.EndPoint, axis) =
        static_cast<float>((AxisValue(p, axis) - center) * in.ScaleFactor + center + offset);
    if (arc) {
      AxisRef(entity.CenterPoint, axis) = static_cast<float>(
          (AxisValue(in.ArcMove.Center, axis) - center) * in.ScaleFactor + center + offset);
    }
  }
  if (arc) entity.RadiusOrTurns = static_cast<float>(in.ArcMove.RadiusOrTurns * in.ScaleFactor);
  WriteMachinePosition(entity.EndPoint);
}

namespace {

// Turns `point` about `center` in the plane of the motion (0 counts as 17).
void RotateInPlane(GeoPoint& point, const GeoPoint& center, double c, double s, int plane) {
  const double x = point.X - double(center.X), y = point.Y - double(center.Y),
               z = point.Z - double(center.Z);
  switch (plane) {
    case 18:
      point.Z = static_cast<float>(center.Z + z * c - x * s);
      point.X = static_cast<float>(center.X + z * s + x * c);
      break;
    case 19:
      point.Y = static_cast<float>(center.Y + y * c - z * s);
      point.Z = static_cast<float>(center.Z + y * s + z * c);
      break;
    default:
      point.X = static_cast<float>(center.X + x * c - y * s);
      point.Y = static_cast<float>(center.Y + x * s + y * c);
      break;
  }
}

}  // namespace

void PlotDriver::ApplyRotation(GeoEntity& entity, bool arc) {
  const Interpreter& in = interpreter_;
  const int plane = arc ? in.ArcMove.Plane : in.LineMove.Plane;
  RotateInPlane(entity.EndPoint, in.RotationCenter, in.RotationCos, in.RotationSin, plane);
  if (arc) {
    RotateInPlane(entity.CenterPoint, in.RotationCenter, in.RotationCos, in.RotationSin, plane);
  }
  WriteMachinePosition(entity.EndPoint);
}

void PlotDriver::WriteMachinePosition(const GeoPoint& point) {
  interpreter_.FlushVariables();
  VariableStore& variables = interpreter_.Variables();
  variables.WriteNumber(5021, CoordinateReadBack(point.X));
  variables.WriteNumber(5022, CoordinateReadBack(point.Y));
  variables.WriteNumber(5023, CoordinateReadBack(point.Z));
}

// ---------------------------------------------------------------------------------------------
// Corner rounding and chamfers: a value given with one feed line acts at its end, between it
// and the next feed line.

void PlotDriver::InsertCorner() {
  const std::int32_t index = table_.GeoIndex;
  if (index < 2) return;
  const GeoEntity& before = table_[index - 1];
  const GeoEntity& current = table_[index];
  if (before.EntityType != kFeed || current.EntityType != kFeed) return;
  GeoEntity corner;
  if (!MakeCornerEntity(before, current, corner)) return;
  table_.InsertBeforeLast(corner);
  host_.entityStored(table_, table_.GeoIndex - 1);
  host_.entityStored(table_, table_.GeoIndex);
}

namespace {

// The plane the three corner points lie in: constant Z, else constant Y, else constant X.
int CornerPlane(const GeoPoint& p0, const GeoPoint& p1, const GeoPoint& p2) {
  if (p0.Z == p1.Z && p1.Z == p2.Z) return 17;
  if (p0.Y == p1.Y && p1.Y == p2.Y) return 18;
  if (p0.X == p1.X && p1.X == p2.X) return 19;
  return 17;
}

}  // namespace

bool PlotDriver::MakeCornerEntity(const GeoEntity& before, const GeoEntity& current,
                                  GeoEntity& corner) {
  const Interpreter& in = interpreter_;
  const LineRec first{before.StartPoint, before.EndPoint, before.Plane};
  const LineRec second{current.StartPoint, current.EndPoint, current.Plane};
  const int plane = CornerPlane(before.StartPoint, before.EndPoint, current.EndPoint);
  if (cornerRadius_ != 0) {
    ArcRec arc;
    if (!FilletLines(first, second, cornerRadius_, plane, arc)) return false;
    corner.EntityType = static_cast<std::uint8_t>(arc.Direction);
    corner.StartPoint = arc.Start;
    corner.EndPoint = arc.End;
    corner.CenterPoint = arc.Center;
    corner.RadiusOrTurns = static_cast<float>(std::fabs(arc.Radius));
    corner.Plane = static_cast<std::uint8_t>(plane);
  } else {
    LineRec chamfer;
    if (!ChamferLines(first, second, cornerChamfer_, plane, chamfer)) return false;
    corner.EntityType = kFeed;
    corner.StartPoint = chamfer.Start;
    corner.EndPoint = chamfer.End;
    corner.Plane = static_cast<std::uint8_t>(in.ModalG[2]);
  }
  corner.ColorIndex = static_cast<std::uint8_t>(ColorIndexFor(corner.EntityType));
  corner.LineNumber = before.LineNumber;
  corner.WorkOffset = in.WorkOffset;
  return true;
}

void PlotDriver::KeepCornerValues() {
  const Interpreter& in = interpreter_;
  cornerRadius_ = cornerChamfer_ = 0;
  if (in.MotionCode != 1) return;
  if (in.AddrSeen[Letter('R')] != 0) cornerRadius_ = in.AddrValue[Letter('R')];
  if (in.AddrSeen[Letter('C')] != 0) cornerChamfer_ = in.AddrValue[Letter('C')];
}

// ---------------------------------------------------------------------------------------------
// Run time and warnings of a feed entity

void PlotDriver::AddFeedTime(const GeoEntity& entity, double length) {
  const Interpreter& in = interpreter_;
  const double f = in.AddrValue[Letter('F')];
  const double s = in.AddrValue[Letter('S')];
  const bool line = IsLineCode(entity.EntityType);
  if (f > 0) {
    if (!IsFeedPerRevolution(in.ModalG[5])) {
      table_.RunTime += length / (MoveRate * f / 60);
    } else if (s > 0) {
      table_.RunTime += in.ModalG[17] == 96 ? ConstantSurfaceTime(entity, length)
                                            : length / (MoveRate * f * s / 60);
    } else if (Warnings.WarnSpindleSpeed0) {
      Warn(kWarnFeedPerRevolution, line ? MsgIcon::Exclamation : MsgIcon::None);
    }
  } else if (Warnings.WarnFeedrate0) {
    Warn(kWarnFeedrateZero, MsgIcon::Exclamation);
  }
  if (s <= 0 && Warnings.WarnSpindleSpeed0) Warn(kWarnSpindleSpeedZero, MsgIcon::Exclamation);
  if (!in.SpindleOn && Warnings.WarnSpindleOff) Warn(kWarnSpindleOff, MsgIcon::Exclamation);
}

// Time of a feed move under constant surface speed (G96): the spindle turns at the surface
// speed over the radius, held between the clamps, so the feed per revolution gives a feed rate
// that changes along the move. The move is cut into pieces, each timed at the speed of its
// middle; a move at one radius is one piece.
double PlotDriver::ConstantSurfaceTime(const GeoEntity& entity, double length) {
  Interpreter& in = interpreter_;
  if (in.SpindleMaxRPM <= 0) in.SpindleMaxRPM = 10000;
  const double minRPM = in.SpindleMinRPM > 0 ? in.SpindleMinRPM : 1;
  const double maxRPM = std::max(in.SpindleMaxRPM, minRPM);
  const double perRevolution = MoveRate * in.AddrValue[Letter('F')];
  if (perRevolution <= 0 || in.SurfaceSpeed <= 0 || length <= 0) return 0;
  const double k = 2 * std::numbers::pi / (in.ModalG[6] != 21 ? 12.0 : 1000.0);
  const auto rpmAt = [&](double radius) {
    const double r = std::fabs(radius);
    const double rpm = r > 0 ? in.SurfaceSpeed / (k * r) : maxRPM;
    return std::clamp(rpm, minRPM, maxRPM);
  };
  const double offsetX = entity.WorkOffset.X;
  const bool line = IsLineCode(entity.EntityType);
  const bool oneRadius = line && entity.StartPoint.X == entity.EndPoint.X;
  const int pieces = oneRadius ? 1 : kSurfaceSpeedPieces;
  double time = 0;
  for (int i = 0; i < pieces; ++i) {
    const double along = (i + 0.5) / pieces;
    const double x = line ? entity.StartPoint.X + (entity.EndPoint.X - entity.StartPoint.X) * along
                          : ArcXAt(entity, along);
    time += (length / pieces) / (perRevolution * rpmAt(x - offsetX) / 60);
  }
  return time;
}

// X of the point a fraction `along` of the way round an arc of the ZX plane.
double PlotDriver::ArcXAt(const GeoEntity& arc, double along) {
  const GeoPoint& c = arc.CenterPoint;
  const double radius = std::hypot(arc.StartPoint.X - c.X, arc.StartPoint.Z - c.Z);
  const double start = std::atan2(arc.StartPoint.X - c.X, arc.StartPoint.Z - c.Z);
  const double end = std::atan2(arc.EndPoint.X - c.X, arc.EndPoint.Z - c.Z);
  constexpr double kTurn = 2 * std::numbers::pi;
  double sweep = std::fmod(end - start + 2 * kTurn, kTurn);  // counter-clockwise, 0 to a turn
  if (sweep == 0) sweep = kTurn;
  if (arc.EntityType % 10 == 2) sweep -= kTurn;  // clockwise
  return c.X + radius * std::sin(start + sweep * along);
}

// A warning with OK and Cancel; Cancel ends the plot after this entity. Returns false when
// nothing more is to be asked about this entity.
bool PlotDriver::Warn(std::string_view text, MsgIcon icon) {
  if (QuietPlot || PlotCancel) return false;
  interpreter_.BlockMessage = std::string(text);
  host_.moveCaret(interpreter_.LineCounter);
  const MsgAnswer answer =
      host_.ask(Prompt{std::string(text), std::string(kMessageTitle), icon, MsgButtons::OkCancel});
  if (answer == MsgAnswer::Cancel) PlotCancel = true;
  return !PlotCancel;
}

// ---------------------------------------------------------------------------------------------
// G28 and G53: one more entity after the stored motion

void PlotDriver::RunSpecialMoves() {
  const float code = interpreter_.ModalG[0];
  if (code == 28) AddReferenceReturn();
  if (code == 53) AddMachineCoordinateMove();
}

// Each axis named in the block goes on to machine zero.
void PlotDriver::AddReferenceReturn() {
  const Interpreter& in = interpreter_;
  GeoPoint end = table_[table_.GeoIndex - 1].EndPoint;
  const bool lathe = in.Config().MachineType == 1;
  const auto named = [&](char c) { return in.AddrSeen[Letter(c)] != 0; };
  if (named('X') || (lathe && named('U'))) SetMachineAxis(end, 0, 0, 0);
  if (!lathe && named('Y')) SetMachineAxis(end, 1, 0, 1);
  if (named('Z') || (lathe && named('W'))) SetMachineAxis(end, 2, 0, lathe ? 1 : 2);
  const int rotary = in.RotaryLetter();
  if (rotary != 0 && in.AddrSeen[rotary] != 0) SetMachineAxis(end, 3, 0, 3);
  AddSpecialEntity(end);
}

// Each axis named in the block goes to its value, taken as a machine coordinate.
void PlotDriver::AddMachineCoordinateMove() {
  const Interpreter& in = interpreter_;
  GeoPoint end = table_[table_.GeoIndex - 1].EndPoint;
  const bool lathe = in.Config().MachineType == 1;
  const auto value = [&](char c) { return in.AddrValue[Letter(c)]; };
  const auto named = [&](char c) { return in.AddrSeen[Letter(c)] != 0; };
  if (named('X')) SetMachineAxis(end, 0, value('X'), 0);
  if (!lathe && named('Y')) SetMachineAxis(end, 1, value('Y'), 1);
  if (named('Z')) SetMachineAxis(end, 2, value('Z'), lathe ? 1 : 2);
  const int rotary = in.RotaryLetter();
  if (rotary != 0 && in.AddrSeen[rotary] != 0) {
    SetMachineAxis(end, 3, in.AddrValue[rotary], 3);
  }
  AddSpecialEntity(end);
}

void PlotDriver::SetMachineAxis(GeoPoint& end, int axis, double machineValue, int variableAxis) {
  Interpreter& in = interpreter_;
  in.FlushVariables();
  AxisRef(end, axis) = static_cast<float>(machineValue);
  AxisRef(in.CurrentPos, axis) =
      static_cast<float>(machineValue - double(AxisValue(in.WorkOffset, axis)));
  in.Variables().WriteNumber(5021 + variableAxis, CoordinateReadBack(AxisRef(end, axis)));
}

void PlotDriver::AddSpecialEntity(const GeoPoint& end) {
  const Interpreter& in = interpreter_;
  GeoEntity& entity = table_.Current();
  const int code = in.MotionCode >= 10 ? in.MotionCode - 10 : in.MotionCode;
  entity.EntityType = static_cast<std::uint8_t>(in.MotionCode);
  entity.ColorIndex = static_cast<std::uint8_t>(ColorIndexFor(code));
  entity.EndPoint = end;
  entity.CenterPoint = GeoPoint{};
  entity.RadiusOrTurns = 0;
  entity.Plane = static_cast<std::uint8_t>(in.ModalG[2]);
  entity.LineNumber = in.LineCounter;
  entity.WorkOffset = in.WorkOffset;
  host_.entityStored(table_, table_.GeoIndex);
  const double length = EntityLength(entity);
  if (entity.EntityType == kRapid) {
    table_.RapidDistance += length;
  } else {
    table_.FeedDistance += length;
  }
  table_.Advance();
}

}  // namespace zemtra
