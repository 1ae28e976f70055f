#include "interp/Interpreter.h"

#include <cmath>
#include <filesystem>
#include <span>

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
      blockVariables_(variables),
      calls_(variables),
      statements_(evaluator, variables) {}

void Interpreter::SetProgram(const ProgramText& program) {
  mainProgram_ = &program;
  rawLine_ = {};  // the last line read belonged to the text before
  ClearFrames();
}

bool Interpreter::IsLathe() const {
  return config_.MachineType == 1;
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
  PrepareCallStack();
}

// The machine's macro files and the user's switches for the call stack of this run.
void Interpreter::PrepareCallStack() {
  std::string folder = machineFolder_;
  if (folder.empty() && !config_.ConfigPath.empty()) {
    folder = std::filesystem::path(config_.ConfigPath).parent_path().parent_path().string();
  }
  calls_.SetMachineFolder(folder, config_.ConfigName);
  if (calls_.Settings().IgnoreM98 != options_.IgnoreM98 ||
      calls_.Settings().IgnoreG65 != options_.IgnoreG65) {
    SubprogramSettings settings = calls_.Settings();
    settings.IgnoreM98 = static_cast<std::int16_t>(options_.IgnoreM98);
    settings.IgnoreG65 = static_cast<std::int16_t>(options_.IgnoreG65);
    calls_.SetSettings(settings);
  }
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
  ContourReturn = GeoPoint{};
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
  static const ProgramText kNoProgram;
  calls_.Reset(mainProgram_ ? *mainProgram_ : kNoProgram,
               mainProgram_ ? std::string_view(mainProgram_->FileName()) : std::string_view());
  InCycleFile = false;
}

// The modal cycle's record: its file and its arguments.
void Interpreter::ClearCycleCall() {
  calls_.ClearCycleCall();
  InCycleFile = false;
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
  const CallFrame& frame = calls_.Current();
  if (ReadingMainFile()) {
    text.append(kErrorMainHead).append(kLineEnd).append(kLineEnd).append(message);
  } else {
    text.append(InCycleFile ? kErrorCycleHead : kErrorSubprogramHead).append(kLineEnd);
    text.append(frame.FileName);
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
  return RunSteps<&Interpreter::EndFinishedContour, &Interpreter::StartModalCycle,
                  &Interpreter::ReadBlockLine, &Interpreter::CleanCurrentBlock,
                  &Interpreter::TakeProgramNumber, &Interpreter::RunMacroStatements,
                  &Interpreter::DecodeCurrentBlock, &Interpreter::RunLatheCodes,
                  &Interpreter::StepToolWord, &Interpreter::RunMCodes,
                  &Interpreter::ClearDwellAddress, &Interpreter::ApplyCoordinateSystemCodes,
                  &Interpreter::EnterExternalMacro, &Interpreter::EnterMacroCall,
                  &Interpreter::TakeCycleArguments, &Interpreter::RunMotion>();
}

// Lathe contour cycles read their profile from the program; the call after its last block
// leaves the contour's level and makes a rapid back to where the cycle began.
int Interpreter::EndFinishedContour() {
  if (!ContourFinished) return kContinue;
  ContourActive = ContourFinished = false;
  BlockNumber = 0;
  calls_.LeaveContour();
  SyncLineCounter();
  CurrentPos = ContourReturn;
  LineMove.End = CurrentPos;
  LineMove.Plane = static_cast<std::uint8_t>(ModalG[2]);
  MotionCode = 0;
  ModalG[1] = 0;
  return kMotion;
}

// A modal cycle runs its macro file after each block that moved; the file reads the cycle's
// levels (#5101-#5103) and the block's modal codes from the store. The lathe's contour cycles
// have no file: they run the program's own blocks.
int Interpreter::StartModalCycle() {
  if (ModalG[9] != 80 && !InCycleFile && BlockMoved && !CycleSuppress) {
    const bool contour = IsLathe() && ModalG[9] >= 70 && ModalG[9] <= 73;
    if (!contour) {
      FlushVariables();
      const CallResult result = calls_.StartCycleMacro(ModalG[9]);
      if (result.Status == CallStatus::kFailed) return ShowCallError(result.Message);
      InCycleFile = true;
    }
  }
  CycleSuppress = false;
  return kContinue;
}

int Interpreter::ReadBlockLine() {
  if (!calls_.Current().ReadLine(rawLine_)) return kStop;
  if (ReadingMainFile()) ++LineCounter;
  return kContinue;
}

// After a jump, a call or a return the main program's line is found from its read position.
void Interpreter::SyncLineCounter() {
  if (ReadingMainFile()) LineCounter = calls_.MainLineFromPosition();
}

// What a call of the stack means for the block: it goes on, ends, ends the run, or fails.
int Interpreter::FinishCall(const CallResult& result) {
  switch (result.Status) {
    case CallStatus::kContinue:
      return kContinue;
    case CallStatus::kEntered:
    case CallStatus::kSkipped:
      SyncLineCounter();
      return kNoMotion;
    case CallStatus::kEndOfProgram:
      return kStop;
    case CallStatus::kFailed:
      break;
  }
  return ShowCallError(result.Message);
}

// A call that cannot be made stops the run with its own text, a warning sign and OK.
int Interpreter::ShowCallError(const std::string& text) {
  StoppedByError = true;
  ShowProgramMessage(text, MsgIcon::Exclamation, MsgButtons::Ok);
  return kStop;
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
  if (first == 'O' && IsOWordStatement(CurrentBlock)) return FailPending(kOWordStatement);
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
    calls_.EndCycleMacro();
    InCycleFile = false;
    BlockMoved = false;
    return kNoMotion;
  }
  if (m != 97 && m != 98 && m != 99) return kContinue;
  if (options_.IgnoreM98 == SubprogramMode::kIgnoreAll) return kContinue;
  FlushVariables();  // the called program may read the position variables
  if (m == 98) return FinishCall(calls_.CallSubprogram(Addresses(), config_.M98Format));
  if (m == 97) return FinishCall(calls_.CallLocalBlock(Addresses()));
  return FinishCall(calls_.Return(Addresses()));
}

int Interpreter::ClearDwellAddress() {
  if (ModalG[0] == 4 && dwellLetter_ != 0) AddrSeen[dwellLetter_] = 0;
  return kContinue;
}

int Interpreter::EnterExternalMacro() {
  if (ModalG[0] == 0 || config_.ExternalMacroCount() <= 0) return kContinue;
  const std::span<const std::int16_t> codes(config_.ExternalGCodeMacros.data() + 1,
                                            config_.ExternalGCodeMacros.size() - 1);
  if (!CallStack::IsExternalMacro(ModalG[0], codes)) return kContinue;
  FlushVariables();
  const int result = FinishCall(calls_.CallExternalMacro(ModalG[0], Addresses()));
  if (result == kNoMotion) BlockMoved = false;
  return result;
}

int Interpreter::EnterMacroCall() {
  if (ModalG[0] != 65 || options_.IgnoreG65 == SubprogramMode::kIgnoreAll) return kContinue;
  FlushVariables();
  return FinishCall(calls_.CallMacro(Addresses()));
}

int Interpreter::TakeCycleArguments() {
  const bool callsSubprogram = HasLetter('M') && AddrValue[Letter('M')] == 98;
  const bool cycleModal = ModalG[9] != 80;
  const bool takesArguments = !callsSubprogram && cycleModal && !InCycleFile;
  if (takesArguments) {
    LocalVariables& arguments = calls_.CycleArguments();
    StoreArguments(Addresses(), arguments);
    if (IsLathe()) {
      TakeLatheCycleArguments(arguments);
      if (HasLetter('L') && std::trunc(std::fabs(AddrValue[Letter('L')])) == 0) return kNoMotion;
    }
  }
  if ((takesArguments || (!cycleModal && ModalG[0] == 0)) && HasLetter('L')) RepeatBlock();
  return kContinue;
}

// A block with L runs L times: the line is read again until the count is used up.
void Interpreter::RepeatBlock() {
  const double repeat = std::trunc(std::fabs(AddrValue[Letter('L')]));
  if (repeat == 0) {
    CycleSuppress = true;
    return;
  }
  CallFrame& frame = calls_.Frame(calls_.CallLevel());
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
