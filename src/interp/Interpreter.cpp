#include "interp/Interpreter.h"

#include <cmath>

#include "config/MachineConfig.h"
#include "core/NumberText.h"
#include "interp/ArcBlock.h"
#include "interp/Axes.h"
#include "interp/BlockReader.h"
#include "interp/InterpMessages.h"
#include "macro/Evaluator.h"
#include "macro/ProgramText.h"
#include "macro/VariableStore.h"

namespace zemtra {

namespace {

int AddressIndexOf(const std::string& letterText) {
  if (letterText.empty()) return 0;
  char c = letterText[0];
  if (c >= 'a' && c <= 'z') c = static_cast<char>(c - 32);
  return (c >= 'A' && c <= 'Z') ? Letter(c) : 0;
}

std::int32_t RoundToInt32(double value) {
  if (!(value > -2147483648.0)) return INT32_MIN;
  if (value > 2147483647.0) return INT32_MAX;
  return static_cast<std::int32_t>(std::nearbyint(value));
}

}  // namespace

Interpreter::Interpreter(const MachineConfig& config, VariableStore& variables,
                         Evaluator& evaluator, Host& host)
    : config_(config),
      variables_(variables),
      evaluator_(evaluator),
      host_(host),
      blockVariables_(variables) {}

void Interpreter::SetProgram(const ProgramText& program) {
  mainProgram_ = &program;
  ClearFrames();
}

bool Interpreter::IsLathe() const {
  return config_.MachineType == 1;
}

bool Interpreter::ReadingMainFile() const {
  return CallFrames[FileLevel].Text == mainProgram_;
}

// ---------------------------------------------------------------------------------------------
// Start of a run

void Interpreter::InitInterpreter() {
  FlushVariables();
  TakeConfiguration();
  SetStartValues();
  WriteStartVariables();
  ClearAddressTables();
  DecodeInitialState();
  ClearRunState();
  LoadWorkOffset();
  ReadPositionVariables();
  ClearFrames();
  FlushVariables();
  LineCounter = 0;
  StoppedByError = false;
  host_.status("msg", "");
}

// What the run takes from the machine configuration once.
void Interpreter::TakeConfiguration() {
  dialect_ = DialectOf(config_.MachineType, config_.LatheGCodeFormat);
  rotaryLetter_ = AddressIndexOf(config_.RotaryAxisIdentifier);
  dwellLetter_ = AddressIndexOf(config_.DwellAddress);
  evaluator_.SetFanucATANFormat(config_.FanucATANFormat != 0);
  BuildGroupTable();
}

void Interpreter::WriteStartVariables() {
  variables_.WriteNumber(5100, !IsLathe() ? 0 : (config_.LatheXDiameter ? 2 : 1));
  for (int group = 0; group < kModalGroupCount; ++group) {
    variables_.WriteNumber(4200 + group, CoordinateReadBack(ModalG[group]));
  }
}

void Interpreter::ClearAddressTables() {
  AddrValue.fill(0);
  for (AddressText& text : AddrText) text.Clear();
  CurrentPos = GeoPoint{};
}

// A configuration never stops the program: a bad Initial State leaves what it set.
void Interpreter::DecodeInitialState() {
  std::string initialState;
  std::int32_t ignoredBlockNumber = 0;
  CleanBlock(config_.InitialState, false, initialState, ignoredBlockNumber);
  try {
    if (!initialState.empty()) DecodeBlock(initialState);
  } catch (const ExpressionFault&) {
  }
}

// Flags, shifts, transforms and counters of a run.
void Interpreter::ClearRunState() {
  AxisSeen.fill(false);
  RotaryUsed = false;
  MotionCode = 0;
  LineMove = LineMoveRecord{};
  ArcMove = ArcMoveRecord{};
  BlockMoved = CycleSuppress = InCycleFile = false;
  ToolColor = 0;
  SpindleOn = false;
  BlockMessage.clear();
  RotationCenter = GeoPoint{};
  RotationAngle = RotationSin = 0;
  RotationCos = 1;
  MirrorCenter.fill(0);
  MirrorOn.fill(false);
  PolarRadius = PolarAngle = 0;
  PolarRadiusIncremental = false;
  ArcErrorCount = 0;
  IgnoreArcErrors = false;
  MaxArcDeviation = 0;
  SpindleMaxRPM = SpindleMinRPM = SurfaceSpeed = 0;
  ContourActive = ContourFinished = false;
  ContourStart = ContourEnd = 0;
}

// The work positions the store holds when the run starts; the first move of each axis
// passes them on to the previous-position variables.
void Interpreter::ReadPositionVariables() {
  blockVariables_.Reset();
}

void Interpreter::BuildGroupTable() {
  Groups = BaseGroupTable(dialect_);
  for (int i = 1; i <= config_.ExternalMacroCount(); ++i) {
    const int code = config_.ExternalGCodeMacros[static_cast<std::size_t>(i)] / 10;
    if (code >= 0 && code <= 99) Groups[static_cast<std::size_t>(code)] = 0;
  }
}

// The dialect's start value of every group (groups without one start at 0).
void Interpreter::SetStartValues() {
  ModalG = ModalStartValues(dialect_);
  ModalG[2] = IsLathe() ? 18 : 17;
}

void Interpreter::LoadWorkOffset() {
  LocalOffset = GeoPoint{};
  WorkOffset = BaseWorkOffset();
  OffsetPending.fill(true);
}

void Interpreter::ClearFrames() {
  CallFrames.fill(FileFrame{});
  CallFrames[0].Text = mainProgram_;
  ClearCycleCall();
  FileLevel = 0;
  InCycleFile = false;
  variables_.ClearAllFrames();
  variables_.SetCallLevel(0);
  variables_.SetInCycleMacro(false);
}

// The modal cycle's record: its file and its arguments.
void Interpreter::ClearCycleCall() {
  CycleFrame = FileFrame{};
  variables_.Locals(VariableStore::kCycleFrame).Clear();
}

// ---------------------------------------------------------------------------------------------
// Messages

MsgAnswer Interpreter::ShowProgramMessage(const std::string& text, MsgIcon icon,
                                          MsgButtons buttons) {
  BlockMessage = text;
  if (QuietPlot) return DefaultAnswer(buttons);
  host_.moveCaret(LineCounter);
  return host_.ask(Prompt{text, std::string(kMessageTitle), icon, buttons});
}

void Interpreter::ReportBlockError(int code) {
  std::string text;
  const std::string message = InterpreterErrorText(code);
  const FileFrame& frame = InCycleFile ? CycleFrame : CallFrames[FileLevel];
  if (!InCycleFile && ReadingMainFile()) {
    text.append(kErrorMainHead).append(kLineEnd).append(kLineEnd).append(message);
  } else {
    text.append(InCycleFile ? kErrorCycleHead : kErrorSubprogramHead).append(kLineEnd);
    if (frame.Text) text.append(frame.Text->FileName());
    text.append(kLineEnd).append(kLineEnd).append(rawLine_).append(kLineEnd).append(message);
  }
  StoppedByError = true;
  ShowProgramMessage(text, MsgIcon::Exclamation, MsgButtons::Ok);
}

int Interpreter::FailPending(int feature) {
  ReportBlockError(feature);
  return kStop;
}

// ---------------------------------------------------------------------------------------------
// One block

// The steps of a block, in order; the first that settles the block ends it. The steps are
// template arguments, so that each call is direct and the small ones are inlined.
template <auto... Steps>
int Interpreter::RunSteps() {
  int result = kContinue;
  static_cast<void>((((result = (this->*Steps)()) == kContinue) && ...));
  return result == kContinue ? kNoMotion : result;
}

int Interpreter::ExecuteBlock() {
  return RunSteps<
      &Interpreter::EndFinishedContour, &Interpreter::StartModalCycle, &Interpreter::ReadBlockLine,
      &Interpreter::CleanCurrentBlock, &Interpreter::TakeProgramNumber,
      &Interpreter::RunMacroStatements, &Interpreter::DecodeCurrentBlock,
      &Interpreter::StepToolWord, &Interpreter::RunMCodes, &Interpreter::ClearDwellAddress,
      &Interpreter::ApplyCoordinateSystemCodes, &Interpreter::EnterExternalMacro,
      &Interpreter::EnterMacroCall, &Interpreter::TakeCycleArguments, &Interpreter::RunMotion>();
}

// Lathe contour cycles read their profile from the program; the call after its last block
// goes back to where the cycle began. Contour cycles are not read yet, so no contour is active.
int Interpreter::EndFinishedContour() {
  if (!ContourFinished) return kContinue;
  ContourActive = ContourFinished = false;
  return FailPending(kPendingLatheCycle);
}

// A modal cycle runs its file after each block that moved. Cycle files are not read yet: the
// block that made a cycle modal has already stopped the run.
int Interpreter::StartModalCycle() {
  if (ModalG[9] != 80 && !InCycleFile && BlockMoved && !CycleSuppress) {
    return FailPending(kPendingCannedCycle);
  }
  CycleSuppress = false;
  return kContinue;
}

int Interpreter::ReadBlockLine() {
  FileFrame& frame = ActiveFrame();
  if (frame.Text == nullptr) return kStop;
  frame.LinePosition = frame.ResumePosition;
  if (!frame.Text->ReadLineAt(frame.ResumePosition, rawLine_)) return kStop;
  if (!InCycleFile && ReadingMainFile()) ++LineCounter;
  return kContinue;
}

int Interpreter::CleanCurrentBlock() {
  CleanBlock(rawLine_, options_.BlockSkip, CurrentBlock, BlockNumber);
  ContourFinished = ContourActive && BlockNumber == ContourEnd;
  // A lathe contour that a finishing cycle has already run is not run again where it stands.
  const bool contourDone = IsLathe() && !ContourActive && ContourStart != 0 && ContourEnd != 0;
  if (contourDone && BlockNumber >= ContourStart && BlockNumber <= ContourEnd) {
    CurrentBlock.clear();
    if (BlockNumber == ContourEnd) ContourStart = ContourEnd = 0;
  }
  return CurrentBlock.empty() ? kNoMotion : kContinue;
}

int Interpreter::TakeProgramNumber() {
  const char first = CurrentBlock[0];
  if (first != 'O' && first != ':') return kContinue;
  const double number = NumericTextValue(std::string_view(CurrentBlock).substr(1));
  ActiveFrame().ProgramNumber = RoundToInt32(number);
  return kNoMotion;
}

int Interpreter::DecodeCurrentBlock() {
  const int code = DecodeBlock(CurrentBlock);
  if (code > 0) {
    ReportBlockError(code);
    return kStop;
  }
  return kContinue;
}

int Interpreter::StepToolWord() {
  if (!HasLetter('T') || ModalG[0] == 65) return kContinue;
  if (config_.ColorChangeCode == 1) ++ToolColor;
  if (options_.WarningReset == 2) AddrValue[Letter('F')] = AddrValue[Letter('S')] = 0;
  return kContinue;
}

int Interpreter::RunMCodes() {
  if (!HasLetter('M') || ModalG[0] == 65) return kContinue;
  const double m = AddrValue[Letter('M')];
  int result = RunSpindleAndStopCodes(m);
  if (result == kContinue) result = RunMirrorCodes(m);
  if (result == kContinue) result = RunToolChange(m);
  if (result == kContinue) result = RunCallCodes(m);
  return result;
}

int Interpreter::RunSpindleAndStopCodes(double m) {
  if (m == 2 || m == 30) return kStop;
  if (m == 3 || m == 4 || m == 13 || m == 14) SpindleOn = true;
  if (m == 5 || m == 0 || m == 6) SpindleOn = false;
  if (m == 0 && options_.StopOnM00 && !QuietPlot) {
    BlockMessage = std::string(kM00Stop);
    const MsgAnswer answer = host_.ask(Prompt{BlockMessage, std::string(kMessageTitle),
                                              MsgIcon::Information, MsgButtons::OkCancel});
    if (answer == MsgAnswer::Cancel) return kStop;
  }
  return kContinue;
}

int Interpreter::RunToolChange(double m) {
  if (m != 6) return kContinue;
  if (config_.ColorChangeCode == 0) ++ToolColor;
  if (options_.WarningReset == 1) AddrValue[Letter('F')] = AddrValue[Letter('S')] = 0;
  return kContinue;
}

int Interpreter::RunCallCodes(double m) {
  if (m == 99 && InCycleFile) {
    InCycleFile = false;
    BlockMoved = false;
    variables_.SetInCycleMacro(false);
    return kNoMotion;
  }
  if (options_.IgnoreM98 == 3) return kContinue;
  if (m == 98 || m == 97) return FailPending(kPendingSubprogram);
  if (m == 99) {
    if (FileLevel == 0 && !HasLetter('P')) return kStop;
    return FailPending(kPendingSubprogram);
  }
  return kContinue;
}

int Interpreter::ClearDwellAddress() {
  if (ModalG[0] == 4 && dwellLetter_ != 0) AddrSeen[dwellLetter_] = 0;
  return kContinue;
}

int Interpreter::EnterExternalMacro() {
  if (ModalG[0] == 0) return kContinue;
  const float code = static_cast<float>(double(ModalG[0]) * 10);
  for (int i = 1; i <= config_.ExternalMacroCount(); ++i) {
    if (static_cast<float>(config_.ExternalGCodeMacros[static_cast<std::size_t>(i)]) == code) {
      return FailPending(kPendingExternalMacro);
    }
  }
  return kContinue;
}

int Interpreter::EnterMacroCall() {
  if (ModalG[0] == 65 && options_.IgnoreG65 != 3) return FailPending(kPendingMacroCall);
  return kContinue;
}

int Interpreter::TakeCycleArguments() {
  const bool callsSubprogram = HasLetter('M') && AddrValue[Letter('M')] == 98;
  const bool cycleModal = ModalG[9] != 80;
  if (!callsSubprogram && cycleModal && !InCycleFile) {
    return FailPending(IsLathe() ? kPendingLatheCycle : kPendingCannedCycle);
  }
  if (!cycleModal && ModalG[0] == 0 && HasLetter('L')) RepeatBlock();
  return kContinue;
}

// A block with L runs L times: the line is read again until the count is used up.
void Interpreter::RepeatBlock() {
  const double repeat = std::trunc(std::fabs(AddrValue[Letter('L')]));
  if (repeat == 0) {
    CycleSuppress = true;
    return;
  }
  FileFrame& frame = CallFrames[FileLevel];
  if (frame.RepeatCount == 0) {
    frame.RepeatCount = static_cast<std::int16_t>(repeat > 32767 ? 32767 : repeat);
  } else {
    --frame.RepeatCount;
    --LineCounter;
  }
  if (frame.RepeatCount > 1) {
    frame.ResumePosition = frame.LinePosition;
  } else {
    frame.RepeatCount = 0;
  }
}

// Step 16: the motion of the block. A lathe that reverses arcs swaps G02 and G03 here, so
// the entity bears the swapped code.
int Interpreter::RunMotion() {
  MotionCode = static_cast<std::int16_t>(ModalG[1]);
  BlockMoved = false;
  if (MotionCode == 0 || MotionCode == 1) return RunLineMotion();
  if (MotionCode == 2 || MotionCode == 3) {
    if (IsLathe() && config_.LatheReverseArcs) MotionCode = MotionCode == 2 ? 3 : 2;
    return ArcBlock(*this).Run();
  }
  return kMotion;
}

int Interpreter::RunLineMotion() {
  if (IsLathe()) {
    if (!HasLetter('X') && !HasLetter('U') && !HasLetter('Z') && !HasLetter('W')) {
      return kNoMotion;
    }
    if (!AxisSeen[0] || !AxisSeen[2]) return kNoMotion;
    BlockMoved = MotionCode == 0;
  } else {
    const bool rotary = rotaryLetter_ != 0 && AddrSeen[rotaryLetter_] != 0;
    if (!HasLetter('X') && !HasLetter('Y') && !HasLetter('Z') && !rotary) return kNoMotion;
    BlockMoved = true;
  }
  LineMove.Plane = static_cast<std::uint8_t>(ModalG[2]);
  LineMove.End = CurrentPos;
  return kMotion;
}

}  // namespace zemtra
