#include "macro/CallStack.h"

#include <algorithm>
#include <cmath>
#include <system_error>

#include "core/AppFolder.h"
#include "core/NumberText.h"
#include "core/TextUtil.h"
#include "macro/BlockSearch.h"
#include "macro/ProgramText.h"

namespace zemtra {

namespace {

using namespace CallMessage;

// Argument variable of each letter A to Z.
constexpr int kArgumentVariables[26] = {1,  2,  3,  7,  8,  9,  10, 11, 4,  5,  6,  12, 13,
                                        14, 15, 16, 17, 18, 19, 20, 21, 22, 23, 24, 25, 26};

enum M98Format { kPL = 0, kPK = 1, kPacked = 2, kPHL = 3, kO = 4 };

CallResult Entered() {
  return {CallStatus::kEntered, {}};
}
CallResult Skipped() {
  return {CallStatus::kSkipped, {}};
}
CallResult Failed(std::string_view message) {
  return {CallStatus::kFailed, std::string(message)};
}
CallResult Failed(std::string_view head, std::string_view detail) {
  std::string message(head);
  message.append(kLineEnd).append(detail);
  return {CallStatus::kFailed, std::move(message)};
}

std::string NumberText(double value) {
  return FormatNumberText(value, "");
}

std::int16_t ToCount(double count) {
  return static_cast<std::int16_t>(std::min(count, 32767.0));
}

// The value of the digits of `name` from its second character, when they are followed by the
// end of the name or by "."; -1 otherwise.
std::int64_t ProgramFileNumber(std::string_view name) {
  if (name.size() < 2 || (name[0] != 'O' && name[0] != 'o')) return -1;
  std::size_t end = 1;
  std::int64_t value = 0;
  while (end < name.size() && name[end] >= '0' && name[end] <= '9') {
    if (value > 999999999) return -1;
    value = value * 10 + (name[end] - '0');
    ++end;
  }
  if (end == 1 || (end < name.size() && name[end] != '.')) return -1;
  return value;
}

bool FileExists(const std::string& path) {
  std::error_code error;
  return !path.empty() && std::filesystem::is_regular_file(path, error);
}

}  // namespace

int ArgumentVariable(char letter) {
  return kArgumentVariables[letter - 'A'];
}

void StoreArguments(const BlockAddresses& block, LocalVariables& locals) {
  for (char letter = 'A'; letter <= 'Z'; ++letter) {
    if (block.Has(letter)) locals[ArgumentVariable(letter)].SetNumber(block.Get(letter));
  }
}

CallStack::CallStack(VariableStore& variables) : variables_(variables) {}

void CallStack::SetMachineFolder(const std::filesystem::path& applicationFolder,
                                 std::string_view configName) {
  applicationFolder_ = applicationFolder;
  configName_.assign(configName);
  macroPaths_.clear();
}

// A cycle runs its file at every hole: the path is looked up on disk once per run.
const std::string& CallStack::CachedMacroPath(float code) {
  auto known = macroPaths_.find(code);
  if (known == macroPaths_.end()) {
    known = macroPaths_.emplace(code, MacroFilePath(code).string()).first;
  }
  return known->second;
}

std::filesystem::path CallStack::MacroFilePath(float code) const {
  const auto tenths = static_cast<float>(static_cast<double>(code) * 10);
  const std::string relative = "CONFIG/" + configName_ + "/G" + FormatSingleText(tenths) + ".PRG";
  return FindPathNoCase(applicationFolder_, relative);
}

void CallStack::Reset(const ProgramText& main, std::string_view documentPath) {
  for (CallFrame& frame : frames_) frame.Clear();
  cycleFrame_.Clear();
  files_.clear();
  macroPaths_.clear();
  subCache_.clear();
  main_ = &main;
  mainFolder_ = FolderOf(documentPath);
  frames_[0].Open(main, main.FileName());
  level_ = 0;
  inCycleMacro_ = false;
  variables_.ClearAllFrames();
  variables_.SetCallLevel(0);
  variables_.SetInCycleMacro(false);
}

bool CallStack::ReadingMainText() const {
  return !inCycleMacro_ && main_ != nullptr && frames_[Index(level_)].Text == main_;
}

int CallStack::MainLineFromPosition() const {
  return main_ ? main_->LineFromPosition(frames_[Index(level_)].ResumePosition) : 0;
}

// ---------------------------------------------------------------------------------------------
// Levels and files

void CallStack::PushFrame() {
  if (level_ + 1 >= kFrameCount) throw CallNestingFault();
  ++level_;
  frames_[Index(level_)].Clear();
  variables_.Locals(level_).Clear();
  variables_.SetCallLevel(level_);
}

void CallStack::PopFrame() {
  if (level_ == 0) return;
  frames_[Index(level_)].Clear();
  --level_;
  variables_.SetCallLevel(level_);
}

const ProgramText* CallStack::LoadProgram(const std::string& path, std::string& error) {
  if (const auto known = files_.find(path); known != files_.end()) return known->second.get();
  auto text = std::make_unique<ProgramText>();
  if (!ProgramText::LoadFile(path, *text, error)) return nullptr;
  return files_.emplace(path, std::move(text)).first->second.get();
}

// Reads the file a located frame names, unless the frame already reads a text.
CallResult CallStack::OpenFrameFile(CallFrame& frame, std::string_view missingMessage,
                                    std::string_view missingName) {
  if (frame.Text != nullptr) return Entered();
  if (!files_.contains(frame.FileName) && !FileExists(frame.FileName)) {
    return Failed(missingMessage, missingName);
  }
  std::string error;
  frame.Text = LoadProgram(frame.FileName, error);
  if (frame.Text == nullptr) return Failed(kCannotRead, frame.FileName + ": " + error);
  if (frame.ProgramNumber < 0) frame.ResumePosition = 0;
  return Entered();
}

// ---------------------------------------------------------------------------------------------
// Subprogram calls

CallResult CallStack::CallLocalBlock(const BlockAddresses& block) {
  if (settings_.IgnoreM98 == SubprogramMode::kIgnoreAll) return {};
  if (level_ >= kCallLimit) return Failed(kTooDeep);
  const int caller = level_;
  PushFrame();
  CallFrame& frame = frames_[Index(level_)];
  const CallFrame& from = frames_[Index(caller)];
  frame.FileName = from.FileName;
  frame.Text = from.Text;
  frame.ProgramNumber = from.ProgramNumber;
  if (!block.Has('P')) return Entered();
  return EnterBlock(from, block.Get('P'), false);
}

CallResult CallStack::CallSubprogram(const BlockAddresses& block, int m98Format) {
  if (settings_.IgnoreM98 == SubprogramMode::kIgnoreAll) return {};
  if (level_ >= kCallLimit) return Failed(kTooDeep);
  const int caller = level_;
  PushFrame();
  variables_.CopyLocals(caller, level_, 1, 26);

  const int format = m98Format >= kPL && m98Format <= kO ? m98Format : kPL;
  const bool hasP = block.Has('P');
  if (format == kPHL && !hasP && !block.Has('H')) return Failed(kNoProgramOrBlock);
  if (format <= kPacked && !hasP) return Failed(kNoProgram);
  if (format == kO && !block.Has('O')) return Failed(kNoProgram);

  double program = block.Get('P');
  const bool packed = format == kPacked && program > 9999;
  const char repeatLetter = format == kPK ? 'K' : ((format == kPL || format == kPHL) ? 'L' : 0);
  if (packed || (repeatLetter != 0 && block.Has(repeatLetter))) {
    const double repeat =
        std::trunc(std::fabs(packed ? std::trunc(program / 10000) : block.Get(repeatLetter)));
    if (repeat == 0) {
      PopFrame();
      return Skipped();
    }
    CountRepeat(frames_[Index(caller)], repeat);
  }
  if (format == kPacked) program -= 10000 * std::trunc(program / 10000);

  if (hasP && format != kO) return EnterProgram(program, settings_.IgnoreM98);
  const double number = std::fabs(std::trunc(block.Get(format == kPHL ? 'H' : 'O')));
  return EnterBlock(frames_[Index(caller)], number, false);
}

// A repeated call reads its block again: the first pass sets the count, later ones use it up.
void CallStack::CountRepeat(CallFrame& caller, double repeat) {
  if (caller.RepeatCount == 0) {
    caller.RepeatCount = ToCount(repeat);
  } else {
    --caller.RepeatCount;
  }
  if (caller.RepeatCount > 1) {
    caller.ResumePosition = caller.LinePosition;
  } else {
    caller.RepeatCount = 0;
  }
}

// The new level runs program `number`, found by LocateSubProgram.
CallResult CallStack::EnterProgram(double number, std::int16_t mode) {
  CallFrame& frame = frames_[Index(level_)];
  const double whole = std::trunc(number);
  const bool valid = whole >= -2147483647.0 && whole <= 2147483647.0;
  if (!valid || !LocateSubProgram(static_cast<std::int32_t>(whole), frame)) {
    if (mode == SubprogramMode::kSkipIfMissing) {
      PopFrame();
      return Skipped();
    }
    return Failed(kSubNotFound, NumberText(number));
  }
  return OpenFrameFile(frame, kSubNotFound, NumberText(number));
}

// The new level reads the caller's text from block N`number` of the caller's program.
CallResult CallStack::EnterBlock(const CallFrame& caller, double number, bool withN) {
  CallFrame& frame = frames_[Index(level_)];
  frame.FileName = caller.FileName;
  frame.Text = caller.Text;
  frame.ProgramNumber = caller.ProgramNumber;
  std::optional<std::size_t> found;
  if (caller.Text != nullptr) {
    found = FindBlockAround(*caller.Text, BlockNumberTarget(number), caller.ResumePosition,
                            caller.ProgramNumber);
  }
  if (!found) return Failed(kBlockNotFound, (withN ? "N" : "") + NumberText(number));
  frame.ResumePosition = *found;
  return Entered();
}

CallResult CallStack::Return(const BlockAddresses& block) {
  if (inCycleMacro_) {
    EndCycleMacro();
    return Entered();
  }
  if (settings_.IgnoreM98 == SubprogramMode::kIgnoreAll) return {};
  const bool hasP = block.Has('P');
  if (level_ > 0) {
    PopFrame();
  } else if (!hasP) {
    return {CallStatus::kEndOfProgram, {}};
  }
  if (!hasP) return Entered();
  // With P the return (or, at the main level, the jump) goes to that block.
  CallFrame& frame = frames_[Index(level_)];
  const double number = block.Get('P');
  std::optional<std::size_t> found;
  if (frame.Text != nullptr) {
    found = FindBlockAround(*frame.Text, BlockNumberTarget(number), frame.ResumePosition,
                            frame.ProgramNumber);
  }
  if (!found) return Failed(kBlockNotFound, "N" + NumberText(number));
  frame.ResumePosition = *found;
  return Entered();
}

CallResult CallStack::CallMacro(const BlockAddresses& block) {
  if (settings_.IgnoreG65 == SubprogramMode::kIgnoreAll) return {};
  if (!block.Has('P')) return Failed(kNoProgram);
  if (level_ >= kCallLimit) return Failed(kTooDeep);
  PushFrame();
  CallResult result = EnterProgram(block.Get('P'), settings_.IgnoreG65);
  if (result.Status == CallStatus::kEntered) StoreArguments(block, variables_.Locals(level_));
  return result;
}

bool CallStack::IsExternalMacro(float code, std::span<const std::int16_t> codesInTenths) {
  if (code == 0) return false;
  const auto tenths = static_cast<float>(static_cast<double>(code) * 10);
  return std::any_of(codesInTenths.begin(), codesInTenths.end(),
                     [tenths](std::int16_t entry) { return static_cast<float>(entry) == tenths; });
}

CallResult CallStack::CallExternalMacro(float code, const BlockAddresses& block) {
  const int caller = level_;
  PushFrame();
  variables_.CopyLocals(caller, level_, 1, 26);
  StoreArguments(block, variables_.Locals(level_));
  CallFrame& frame = frames_[Index(level_)];
  frame.FileName = CachedMacroPath(code);
  return OpenFrameFile(frame, kCycleNotFound, frame.FileName);
}

// ---------------------------------------------------------------------------------------------
// Canned cycles and lathe contours

CallResult CallStack::StartCycleMacro(float code) {
  const std::string& path = CachedMacroPath(code);
  if (!files_.contains(path) && !FileExists(path)) return Failed(kCannedCycleNotFound, path);
  std::string error;
  const ProgramText* text = LoadProgram(path, error);
  if (text == nullptr) return Failed(kCannotRead, path + ": " + error);
  cycleFrame_.Open(*text, path);
  inCycleMacro_ = true;
  variables_.SetInCycleMacro(true);
  return Entered();
}

void CallStack::EndCycleMacro() {
  cycleFrame_.Text = nullptr;
  inCycleMacro_ = false;
  variables_.SetInCycleMacro(false);
}

void CallStack::ClearCycleCall() {
  cycleFrame_.Clear();
  CycleArguments().Clear();
  inCycleMacro_ = false;
  variables_.SetInCycleMacro(false);
}

CallResult CallStack::EnterContour(double startBlock) {
  if (level_ >= kFrameCount - 1) return Failed(kContourTooDeep);
  const int caller = level_;
  PushFrame();
  variables_.CopyLocals(caller, level_, 1, LocalVariables::kCount);
  CallFrame& frame = frames_[Index(level_)];
  frame.ResumePosition = frames_[Index(caller)].ResumePosition;
  return EnterBlock(frames_[Index(caller)], startBlock, false);
}

// ---------------------------------------------------------------------------------------------
// Finding subprograms

bool CallStack::LocateSubProgram(std::int32_t number, CallFrame& frame) {
  const auto known = std::find_if(subCache_.begin(), subCache_.end(),
                                  [number](const SubCacheEntry& e) { return e.Number == number; });
  const SubCacheEntry entry = known != subCache_.end() ? *known : SearchSubProgram(number);
  if (known == subCache_.end()) subCache_.push_back(entry);
  if (!entry.Found) return false;
  frame.FileName = entry.FileName;
  frame.Text = entry.InMainText ? main_ : nullptr;
  frame.ProgramNumber = entry.ProgramNumber;
  if (entry.ProgramNumber >= 0) frame.ResumePosition = entry.LinePosition;
  return true;
}

SubCacheEntry CallStack::SearchSubProgram(std::int32_t number) {
  SubCacheEntry entry;
  entry.Number = number;
  if (main_ != nullptr) {
    const std::string digits = FormatNumberText(number, "#####0");
    auto found = FindBlock(*main_, ":" + digits, SearchMode::kAfterFirst, 0, kAnyProgram);
    if (!found) found = FindBlock(*main_, "O" + digits, SearchMode::kAfterFirst, 0, kAnyProgram);
    if (found) {
      entry.Found = entry.InMainText = true;
      entry.FileName = main_->FileName();
      entry.ProgramNumber = number;
      entry.LinePosition = *found;
      return entry;
    }
  }
  entry.FileName = SearchFolders(number);
  entry.Found = !entry.FileName.empty();
  return entry;
}

// Assigned files first, then the default folder, then the folder of the calling file.
std::string CallStack::SearchFolders(std::int32_t number) const {
  for (const SubProgramAssignment& assignment : settings_.SubProgramFiles) {
    if (assignment.Number == number && FileExists(assignment.FileName)) {
      return assignment.FileName;
    }
  }
  if (!settings_.DefaultSubPath.empty()) {
    std::string found = FindProgramFile(number, settings_.DefaultSubPath);
    if (!found.empty()) return found;
  }
  const std::string folder = CallerFolder();
  return folder.empty() ? std::string() : FindProgramFile(number, folder);
}

// The folder of the file that makes the call; a call from the main program (or from a
// subprogram of its text) looks beside the document the user opened.
std::string CallStack::CallerFolder() const {
  if (level_ > 1) {
    const CallFrame& caller = frames_[Index(level_ - 1)];
    if (caller.Text != main_) return FolderOf(caller.FileName);
  }
  return mainFolder_;
}

std::string CallStack::FindProgramFile(std::int32_t number, std::string_view folder) {
  std::string base(folder);
  while (!base.empty() && (base.back() == '/' || base.back() == '\\')) base.pop_back();
  if (base.empty() || number < 0) return {};
  std::vector<std::string> names;
  std::error_code error;
  for (std::filesystem::directory_iterator it(base, error), end; !error && it != end;
       it.increment(error)) {
    const std::string name = it->path().filename().string();
    if (ProgramFileNumber(name) != number) continue;
    std::error_code typeError;
    if (it->is_regular_file(typeError)) names.push_back(name);
  }
  if (names.empty()) return {};
  std::sort(names.begin(), names.end());
  return base + "/" + names.front();
}

}  // namespace zemtra
