#pragma once
// The call levels of a run: frame 0 reads the main program, M97 / M98 / G65 / external G-code
// macros push a frame that reads a subprogram, M99 pops it, and a canned cycle's macro file runs
// in a frame of its own. Subprograms are found in the main text (O or ":" lines), in the files
// the user assigned, in the default folder and beside the calling file.
//
// How the interpreter uses it:
//   start of a run        Reset(mainText, documentPath)      (settings and machine folder are
//                         set once with SetSettings / SetMachineFolder)
//   step 1, cycle trigger StartCycleMacro(ModalG[9])
//   step 2, reading       Current().ReadLine(line); the line counter counts when
//                         ReadingMainText()
//   step 4, O line        Current().ProgramNumber = number
//   step 7, statements    MacroStatements::RunBlock(block, line, Current(), jumped)
//   step 10, M97/M98/M99  CallLocalBlock / CallSubprogram / Return
//   step 13, G-code macro IsExternalMacro(ModalG[0], list) -> CallExternalMacro
//   step 14, G65          CallMacro
//   step 15, cycle words  StoreArguments(block, CycleArguments())
//   lathe G70-G73         EnterContour / LeaveContour
// After a call that gives kEntered or kSkipped the block ends (no motion); when
// ReadingMainText() the line counter becomes MainLineFromPosition(). kFailed carries the text
// to show (warning sign, OK, title "Zemtra", caret on the calling line); the plot stops.
// kEndOfProgram ends the plot normally. kContinue: the block goes on as if there were no call.
#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <map>
#include <memory>
#include <span>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include "macro/CallFrame.h"
#include "macro/SubprogramSettings.h"
#include "macro/VariableStore.h"

namespace zemtra {

class ProgramText;

// Texts of the call messages; line ends inside them are CR LF.
namespace CallMessage {
inline constexpr std::string_view kLineEnd = "\r\n";
inline constexpr std::string_view kTooDeep = "Subprogram exceeds 6 levels";
inline constexpr std::string_view kNoProgramOrBlock = "No program or block number designated";
inline constexpr std::string_view kNoProgram = "No program number designated";
inline constexpr std::string_view kSubNotFound = "Sub program not found:";
inline constexpr std::string_view kBlockNotFound = "Referenced block number not found:";
inline constexpr std::string_view kCannedCycleNotFound = "Canned cycle not found:";
inline constexpr std::string_view kCycleNotFound = "Cycle not found:";
inline constexpr std::string_view kContourTooDeep = "Maximum Subprogram nesting level exceeded";
inline constexpr std::string_view kCannotRead = "Cannot read the program file:";
}  // namespace CallMessage

// More call levels than there are frames (only external macros, which have no depth check,
// get there). what() describes it; the plot driver reports it as a run-time failure.
class CallNestingFault : public std::runtime_error {
 public:
  CallNestingFault() : std::runtime_error("Calls nested deeper than 9 levels") {}
};

// The address letters of the block that makes a call, as the decoder left them; index 1 (A)
// to 26 (Z).
struct BlockAddresses {
  std::span<const std::int16_t, 27> Seen;  // 0 when the letter is not in the block
  std::span<const double, 27> Value;
  bool Has(char letter) const { return Seen[static_cast<std::size_t>(letter - 64)] != 0; }
  double Get(char letter) const { return Value[static_cast<std::size_t>(letter - 64)]; }
};

// The local variable of an address letter in a call: A #1, B #2, C #3, I #4, J #5, K #6,
// D #7 ... H #11, L #12 ... Z #26 (letters A to Z).
int ArgumentVariable(char letter);
// Each letter of the block goes, as a number, into its argument variable of `locals`; letters
// not in the block keep what their slot held.
void StoreArguments(const BlockAddresses& block, LocalVariables& locals);

enum class CallStatus {
  kContinue,      // no call here (switched off): the block goes on
  kEntered,       // the call or the return is made: the block ends
  kSkipped,       // the call is skipped in silence: the block ends
  kEndOfProgram,  // M99 at the main level without P
  kFailed,        // Message says why; the plot stops
};

struct CallResult {
  CallStatus Status = CallStatus::kContinue;
  std::string Message;
};

// What LocateSubProgram found for a program number; kept for the run.
struct SubCacheEntry {
  std::int32_t Number = 0;
  std::size_t LinePosition = 0;  // where the program starts in its text
  std::string FileName;
  bool Found = false;
  bool InMainText = false;          // the program is an O or ":" block of the main text
  std::int32_t ProgramNumber = -1;  // what the frame's ProgramNumber became (-1: whole file)
};

class CallStack {
 public:
  static constexpr int kFrameCount = VariableStore::kCallFrames;  // levels 0 to 8
  static constexpr int kCallLimit = 6;  // M97, M98 and G65 are refused at this level

  explicit CallStack(VariableStore& variables);
  CallStack(const CallStack&) = delete;
  CallStack& operator=(const CallStack&) = delete;

  // The user's subprogram settings; kept from run to run.
  void SetSettings(const SubprogramSettings& settings) { settings_ = settings; }
  const SubprogramSettings& Settings() const { return settings_; }
  // Macro files of the machine are <applicationFolder>/CONFIG/<configName>/G<code x 10>.PRG,
  // names compared without regard to case.
  void SetMachineFolder(const std::filesystem::path& applicationFolder,
                        std::string_view configName);
  // Path of the macro file of G-code `code` (G81 -> .../G810.PRG, G37.1 -> .../G371.PRG); the
  // existing file when there is one, else the path as it would be.
  std::filesystem::path MacroFilePath(float code) const;

  // Start of a run: every frame and the cycle frame cleared, their locals too, the file caches
  // and SubCache emptied (files edited since the last run are read again); frame 0 reads `main`
  // from its start. `documentPath` is the file the user opened (its folder is searched for
  // subprograms); "" for an untitled document. `main` must outlive the run.
  void Reset(const ProgramText& main, std::string_view documentPath);

  // The frame that lines are read from: the cycle frame while a cycle macro runs, else the
  // frame of the current call level.
  CallFrame& Current() { return inCycleMacro_ ? cycleFrame_ : frames_[Index(level_)]; }
  int CallLevel() const { return level_; }
  CallFrame& Frame(int level) { return frames_[Index(level)]; }
  CallFrame& CycleFrame() { return cycleFrame_; }
  bool InCycleMacro() const { return inCycleMacro_; }
  const ProgramText* MainText() const { return main_; }
  // The current frame reads the main text (its lines count for the line counter).
  bool ReadingMainText() const;
  // Lines of the main text before the current frame's read position (the line counter after a
  // jump or a return into the main text).
  int MainLineFromPosition() const;

  // M97: runs block P of the caller's own text at a new level.
  CallResult CallLocalBlock(const BlockAddresses& block);
  // M98 in `m98Format` 0 "M98 P1 L1", 1 "M98 P1 K1", 2 "M98 Pxxxxyyyy", 3 "M98 P1 H1 L1",
  // 4 "M98 O1". The new level starts with the caller's #1-#26. A repeated call reads its block
  // again from the caller's LinePosition until the count is used up.
  CallResult CallSubprogram(const BlockAddresses& block, int m98Format);
  // M99: ends a cycle macro, returns from a level (to block P of the caller when given), jumps
  // to block P at the main level, or ends the program there.
  CallResult Return(const BlockAddresses& block);
  // G65 P: a new level whose locals are the block's letters only.
  CallResult CallMacro(const BlockAddresses& block);
  // Whether `code` (group 0 of the block, 0 for none) is on the machine's list of G-codes in
  // tenths (120 for G12, 371 for G37.1), compared as 32-bit floats.
  static bool IsExternalMacro(float code, std::span<const std::int16_t> codesInTenths);
  // Runs the macro file of `code` at a new level: the caller's #1-#26, then the block's
  // letters. Throws CallNestingFault beyond level 8.
  CallResult CallExternalMacro(float code, const BlockAddresses& block);

  // Opens the macro file of cycle `code` (group 9) in the cycle frame, from its start; its
  // arguments stay in CycleArguments().
  CallResult StartCycleMacro(float code);
  // Closes the cycle macro (its M99).
  void EndCycleMacro();
  // #1-#26 of the modal cycle, kept from block to block.
  LocalVariables& CycleArguments() { return variables_.Locals(VariableStore::kCycleFrame); }
  // Forgets the modal cycle's file and arguments.
  void ClearCycleCall();

  // Lathe contour cycles: a new level on the same text, with all the caller's locals, reading
  // from block `startBlock` (found forward first, then from the start).
  CallResult EnterContour(double startBlock);
  // Back to the level that ran the contour cycle.
  void LeaveContour() { PopFrame(); }

  // Finds program `number`; on success `frame` has its FileName, its Text when the program is
  // in the main text (null for a file still to be read), its ProgramNumber and ResumePosition.
  // Results are kept in SubCache for the rest of the run.
  bool LocateSubProgram(std::int32_t number, CallFrame& frame);
  const std::vector<SubCacheEntry>& SubCache() const { return subCache_; }
  // The first file of `folder` named O<number> or O<number>.<anything>, the O in either case
  // and leading zeros allowed ("O1000", "o01000.nc"); "" when there is none.
  static std::string FindProgramFile(std::int32_t number, std::string_view folder);

 private:
  static std::size_t Index(int level) { return static_cast<std::size_t>(level); }
  void PushFrame();
  void PopFrame();
  const ProgramText* LoadProgram(const std::string& path, std::string& error);
  const std::string& CachedMacroPath(float code);
  CallResult OpenFrameFile(CallFrame& frame, std::string_view missingMessage,
                           std::string_view missingName);
  CallResult EnterProgram(double number, std::int16_t mode);
  CallResult EnterBlock(const CallFrame& caller, double number, bool withN);
  void CountRepeat(CallFrame& caller, double repeat);
  SubCacheEntry SearchSubProgram(std::int32_t number);
  std::string SearchFolders(std::int32_t number) const;
  std::string CallerFolder() const;

  VariableStore& variables_;
  std::array<CallFrame, kFrameCount> frames_;
  CallFrame cycleFrame_;
  int level_ = 0;
  bool inCycleMacro_ = false;
  const ProgramText* main_ = nullptr;
  std::string mainFolder_;
  SubprogramSettings settings_;
  std::filesystem::path applicationFolder_;
  std::string configName_;
  std::vector<SubCacheEntry> subCache_;
  // Program files read during the run, by path; frames point into them.
  std::map<std::string, std::unique_ptr<ProgramText>> files_;
  std::map<float, std::string> macroPaths_;  // macro file of each code, for the run
};

}  // namespace zemtra
