#pragma once
// The block interpreter: reads the program one block at a time, keeps the modal state,
// the address tables and the position, and hands each motion to the plot driver (or the
// stepper) through LineMove / ArcMove.
#include <array>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include "core/GeoTypes.h"
#include "core/Host.h"
#include "interp/AddressText.h"
#include "interp/Axes.h"
#include "interp/BlockVariables.h"
#include "interp/ModalTables.h"
#include "macro/CallStack.h"
#include "macro/MacroStatement.h"

namespace zemtra {

class Evaluator;
class ProgramText;
class VariableStore;
struct MachineConfig;

// A straight motion, in program coordinates (no work offset).
struct LineMoveRecord {
  GeoPoint Start;
  GeoPoint End;
  std::uint8_t Plane = 0;
};

// A circular motion, in program coordinates. Direction 2 clockwise, 3 counter-clockwise.
struct ArcMoveRecord {
  GeoPoint Start;
  GeoPoint End;
  GeoPoint Center;
  double RadiusOrTurns = 0;
  std::int16_t Direction = 0;
  std::uint8_t Plane = 0;
};

// True when an arc climbs along the normal of its plane (17: Z, 18: Y, 19: X), comparing the
// ends as stored floats: the motion is then a helix.
bool IsHelicalArc(const ArcMoveRecord& arc);

// The user's preferences that change how a program is read.
struct InterpreterOptions {
  bool BlockSkip = false;  // a block that begins with "/" is skipped
  bool StopOnM00 = true;   // M00 shows "M00 Program Stop" with OK and Cancel
  int WarningReset = 0;    // F and S back to 0: 0 never, 1 on M06, 2 on a T word
  int IgnoreM98 = 1;       // 1 error if a subprogram is missing, 2 skip it, 3 ignore M98
  int IgnoreG65 = 1;       // the same for G65
  std::string NumberFormat = "###0.0###";  // how numbers are written in messages
};

// Index of an address letter in the address tables: A = 1 ... Z = 26.
constexpr int Letter(char c) {
  return c - 64;
}

class Interpreter {
 public:
  // ExecuteBlock results.
  static constexpr int kNoMotion = 0;
  static constexpr int kMotion = 1;
  static constexpr int kStop = 2;

  // The run reads `config` and writes `variables`; messages go to `host`.
  Interpreter(const MachineConfig& config, VariableStore& variables, Evaluator& evaluator,
              Host& host);
  Interpreter(const Interpreter&) = delete;
  Interpreter& operator=(const Interpreter&) = delete;

  void SetOptions(const InterpreterOptions& options) { options_ = options; }
  const InterpreterOptions& Options() const { return options_; }
  const MachineConfig& Config() const { return config_; }
  VariableStore& Variables() { return variables_; }
  Host& GetHost() { return host_; }
  // Address index of the configured rotary axis letter; 0 when there is none.
  int RotaryLetter() const { return rotaryLetter_; }

  // Makes `program` the main program (frame 0) and rewinds it. It must outlive the run. Its
  // FileName() is the document whose folder is searched for subprogram files.
  void SetProgram(const ProgramText& program);
  const ProgramText* MainProgram() const { return mainProgram_; }

  // Folder holding CONFIG/<configuration name>/G<code>.PRG, the cycle and G-code macro files.
  // Empty (the default): the folder above the one of the configuration file.
  void SetMachineFolder(const std::string& applicationFolder) {
    machineFolder_ = applicationFolder;
  }
  // Where subprogram files are found, and whether missing ones stop the run. "Ignore M98" and
  // "Ignore G65" come from the options at each run.
  void SetSubprogramSettings(const SubprogramSettings& settings) { calls_.SetSettings(settings); }
  // The call levels of the run: subprograms, macros, the canned cycle's file.
  CallStack& Calls() { return calls_; }
  const CallStack& Calls() const { return calls_; }
  // Text of the macro message (#3000) last shown.
  const std::string& MacroMessageText() const { return statements_.MacroMessageText(); }
  // The line last read, as written; valid while its program text lives (the run).
  std::string_view LastLine() const { return rawLine_; }

  // Resets the modal state, address tables, offsets, frames and counters and decodes the
  // configuration's Initial State. Called before every run.
  void InitInterpreter();
  // Reads and carries out one block: kNoMotion, kMotion (LineMove or ArcMove holds it, by
  // MotionCode) or kStop (end of program, M02/M30, or an error already shown). Throws
  // ExpressionFault on unguarded arithmetic of an expression.
  int ExecuteBlock();
  // Decodes one cleaned block into the address tables, moving the position; 0 or an error
  // code of the message list.
  int DecodeBlock(std::string_view text);
  // Blocks leave the position, argument and modal variables they change (#5001-#5044, #5103,
  // #4200-#4220, #4301-#4326) pending until a block reads variables; this writes them to the
  // store. Call it before reading those variables from outside between blocks (the plot
  // driver does at the end of a plot).
  void FlushVariables() { blockVariables_.Flush(); }

  // Shows a message of the program being run, titled "Zemtra", after moving the caret to the
  // current block. In a quiet plot nothing is shown and the default answer is returned.
  MsgAnswer ShowProgramMessage(const std::string& text, MsgIcon icon, MsgButtons buttons);
  // Shows the error of `code` as the current block's error, placed by where the block was read.
  void ReportBlockError(int code);

  // Work offset of the active coordinate system, without the local shift.
  GeoPoint BaseWorkOffset() const;
  // Loads the active system's offset of one axis (0 X, 1 Y, 2 Z, 3 rotary).
  void LoadAxisOffset(int axis);

  // --- Modal state ---
  std::array<float, kModalGroupCount> ModalG{};
  GroupTable Groups{};
  std::array<std::int16_t, 27> AddrSeen{};  // 0, or the position of the value in the block
  std::array<double, 27> AddrValue{};
  std::array<AddressText, 27> AddrText;
  GeoPoint CurrentPos;
  GeoPoint WorkOffset;
  GeoPoint LocalOffset;
  std::array<bool, 4> OffsetPending{};
  std::int16_t ExtendedOffset = 0;
  std::array<bool, 4> AxisSeen{};
  bool RotaryUsed = false;
  std::int16_t MotionCode = 0;
  LineMoveRecord LineMove;
  ArcMoveRecord ArcMove;
  bool BlockMoved = false;
  bool CycleSuppress = false;
  bool InCycleFile = false;
  std::int32_t ToolColor = 0;
  bool SpindleOn = false;
  std::int32_t BlockNumber = 0;
  std::string CurrentBlock;
  std::string BlockMessage;

  // --- Coordinate transforms applied when a motion is stored ---
  GeoPoint RotationCenter;
  double RotationAngle = 0;
  double RotationSin = 0;
  double RotationCos = 1;
  std::array<double, 3> MirrorCenter{};
  std::array<bool, 3> MirrorOn{};
  std::array<double, 3> ScaleCenter{};  // these three survive from one run to the next
  std::array<bool, 3> ScaleOn{};
  double ScaleFactor = 0;
  double PolarRadius = 0;
  double PolarAngle = 0;
  bool PolarRadiusIncremental = false;

  // --- Run counters and flags ---
  std::int32_t LineCounter = 0;  // 1-based line of the main program
  std::int32_t ArcErrorCount = 0;
  bool IgnoreArcErrors = false;
  double MaxArcDeviation = 0;
  bool QuietPlot = false;       // no message is shown
  bool StoppedByError = false;  // the run ended on an error of the program
  double SpindleMaxRPM = 0;
  double SpindleMinRPM = 0;
  double SurfaceSpeed = 0;
  bool ContourActive = false;
  bool ContourFinished = false;
  std::int32_t ContourStart = 0;
  std::int32_t ContourEnd = 0;
  GeoPoint ContourReturn;  // where the contour cycle was called; valid while ContourActive

 private:
  // Steps of ExecuteBlock, in order; each returns kContinue or the block's result.
  static constexpr int kContinue = -1;
  template <auto... Steps>
  int RunSteps();
  int EndFinishedContour();
  int StartModalCycle();
  int ReadBlockLine();
  int CleanCurrentBlock();
  int TakeProgramNumber();
  int RunMacroStatements();
  int DecodeCurrentBlock();
  int RunLatheCodes();
  int StepToolWord();
  int RunMCodes();
  int ClearDwellAddress();
  int ApplyCoordinateSystemCodes();
  int EnterExternalMacro();
  int EnterMacroCall();
  int TakeCycleArguments();
  int RunMotion();
  int RunLineMotion();
  int ShowStatementMessage();
  int FinishCall(const CallResult& result);
  int ShowCallError(const std::string& text);
  void SyncLineCounter();
  BlockAddresses Addresses() const { return BlockAddresses{AddrSeen, AddrValue}; }

  // The lathe's own codes (its path through a block).
  int EnterContourCycle();
  int ClampOrSetCoordinates();
  void TakeLatheCycleArguments(LocalVariables& arguments);

  // M-codes of step 10.
  int RunSpindleAndStopCodes(double m);
  int RunMirrorCodes(double m);
  int RunToolChange(double m);
  int RunCallCodes(double m);
  void RepeatBlock();

  // Decoding.
  int DecodeAddresses(std::string_view text, bool lathe);
  int TakeAddress(std::string_view text, int letter, int& position, bool lathe);
  int ReadAddressValue(std::string_view text, int letter, int& position);
  bool ReadPlainNumber(std::string_view text, int letter, int& position);
  void WriteArgumentVariable(int letter);
  int CheckOffsetNumber(int letter);
  int TakeGCode(double g, bool lathe);
  void ScaleIntegerValue(int letter, double resolution);
  bool ScaleAxisWord(int letter);
  void MoveRotaryAxis(int letter);
  void MoveMillAxis(int letter);
  void MoveLatheAxis(int letter);
  void SetAxis(int axis, double value, bool incremental);
  void UpdateAxisVariables(int axis, int variableAxis, double scale);
  void TakeCycleParameter(int letter);
  void TakePolarWord(int letter);
  int ComputePolarPosition();

  // Codes that act in their own block.
  void SetCoordinateSystem();
  void SetLocalCoordinates();
  void StartRotation();
  void CancelMirror();
  void StartMirror();
  void StartScaling();
  int AxisLetter(int axis) const;
  bool AxisInBlock(int axis) const;

  // Start of a run, in order.
  void TakeConfiguration();
  void BuildGroupTable();
  void SetStartValues();
  void WriteStartVariables();
  void ClearAddressTables();
  void DecodeInitialState();
  void ClearRunState();
  void LoadWorkOffset();
  void ReadPositionVariables();
  void ClearFrames();
  void ClearCycleCall();
  void PrepareCallStack();

  bool IsLathe() const;
  bool IsRotaryLetter(int letter) const { return letter == rotaryLetter_; }
  bool HasLetter(char c) const { return AddrSeen[Letter(c)] != 0; }
  CallFrame& ActiveFrame() { return calls_.Current(); }
  // The line being read is one of the main program's (it counts for LineCounter).
  bool ReadingMainFile() { return !InCycleFile && calls_.Current().Text == mainProgram_; }
  bool IsOWordStatement(std::string_view block) const;
  int FailPending(int feature);

  const MachineConfig& config_;
  VariableStore& variables_;
  Evaluator& evaluator_;
  Host& host_;
  InterpreterOptions options_;
  const ProgramText* mainProgram_ = nullptr;
  Dialect dialect_ = Dialect::Mill;
  int rotaryLetter_ = 0;  // address index of the rotary axis letter, 0 when none
  int dwellLetter_ = 0;
  std::string_view rawLine_;              // the line being run, as read
  std::string valueText_;                 // scratch of ScanValue
  std::array<bool, 27> integerFormat_{};  // the letter's value was written without a point
  bool offsetNumberMayFollow_ = false;    // this block selected a work system: a P may follow
  BlockVariables blockVariables_;         // the variables blocks wrote, until someone reads them
  std::string machineFolder_;             // see SetMachineFolder
  CallStack calls_;
  MacroStatements statements_;
};

// The hot path of every axis word, kept where the decoder can inline it.

inline void Interpreter::SetAxis(int axis, double value, bool incremental) {
  float& position = AxisRef(CurrentPos, axis);
  position = static_cast<float>(incremental ? double(position) + value : value);
  if (OffsetPending[static_cast<std::size_t>(axis)]) LoadAxisOffset(axis);
  AxisSeen[static_cast<std::size_t>(axis)] = true;
}

// Previous, machine and work position variables of one axis. `scale` is 2 for a lathe's X on
// diameters, whose variables show the diameter.
inline void Interpreter::UpdateAxisVariables(int axis, int variableAxis, double scale) {
  const float position = AxisValue(CurrentPos, axis);
  const float shown = scale == 1 ? position : static_cast<float>(position * scale);
  const float machine = static_cast<float>(double(shown) + AxisValue(WorkOffset, axis));
  blockVariables_.MoveAxis(variableAxis, shown, machine);
}

}  // namespace zemtra
