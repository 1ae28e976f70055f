#include "macro/MacroStatement.h"

#include <cmath>

#include "core/NumberText.h"
#include "core/TextUtil.h"
#include "macro/BlockSearch.h"
#include "macro/Evaluator.h"

namespace zemtra {

namespace {

using namespace StatementCode;

// The statement words, tested in this order at the walk's position.
enum class Statement { kNone, kIf, kGoto, kWhile, kDo, kEnd, kAssignment, kOutput };

struct StatementWord {
  std::string_view text;
  Statement statement;
};

constexpr StatementWord kStatementWords[] = {
    {"IF", Statement::kIf},        {"GOTO", Statement::kGoto},    {"WHILE", Statement::kWhile},
    {"DO", Statement::kDo},        {"END", Statement::kEnd},      {"#", Statement::kAssignment},
    {"POPEN", Statement::kOutput}, {"PCLOS", Statement::kOutput}, {"DPRNT", Statement::kOutput},
    {"BPRNT", Statement::kOutput},
};

constexpr std::string_view kMessagePrefix = "Message #";

char UpperAscii(char c) {
  return (c >= 'a' && c <= 'z') ? static_cast<char>(c - 32) : c;
}

bool IsDigit(char c) {
  return c >= '0' && c <= '9';
}

int Size(std::string_view text) {
  return static_cast<int>(text.size());
}

// Character at a 1-based position; '\0' past the end.
char At(std::string_view text, int position) {
  return position >= 1 && position <= Size(text) ? text[static_cast<std::size_t>(position - 1)]
                                                 : '\0';
}

bool WordAt(std::string_view text, int position, std::string_view word) {
  if (position < 1 || position - 1 + Size(word) > Size(text)) return false;
  for (std::size_t i = 0; i < word.size(); ++i) {
    if (UpperAscii(text[static_cast<std::size_t>(position - 1) + i]) != word[i]) return false;
  }
  return true;
}

void SkipBlanks(std::string_view text, int& position) {
  while (position <= Size(text) && static_cast<unsigned char>(At(text, position)) < 33) {
    ++position;
  }
}

Statement StatementAt(std::string_view text, int position, int& length) {
  // Most blocks are G-code and leave at their first letter.
  switch (UpperAscii(At(text, position))) {
    case 'I':
    case 'G':
    case 'W':
    case 'D':
    case 'E':
    case '#':
    case 'P':
    case 'B':
      break;
    default:
      return Statement::kNone;
  }
  for (const StatementWord& word : kStatementWords) {
    if (WordAt(text, position, word.text)) {
      length = Size(word.text);
      return word.statement;
    }
  }
  return Statement::kNone;
}

// Bytes of the first / the last UTF-8 character of `text`.
std::size_t LeadingCharacterSize(std::string_view text) {
  std::size_t size = 1;
  if (static_cast<unsigned char>(text[0]) >= 0xC0) {
    while (size < text.size() && (static_cast<unsigned char>(text[size]) & 0xC0) == 0x80) ++size;
  }
  return size;
}
std::size_t TrailingCharacterSize(std::string_view text) {
  std::size_t size = 1;
  while (size < text.size() &&
         (static_cast<unsigned char>(text[text.size() - size]) & 0xC0) == 0x80) {
    ++size;
  }
  return size;
}

// The bracket of a message comes off: a first or last character outside "@" to "_" goes.
bool IsMessageEdge(char c) {
  const auto code = static_cast<unsigned char>(c);
  return code > 95 || code < 64;
}

std::string MessageFromLine(std::string_view line) {
  const std::size_t open = line.find('(');
  std::string message =
      open == std::string_view::npos ? std::string() : TrimText(line.substr(open));
  if (message.empty()) return message;
  if (IsMessageEdge(message.front())) {
    const std::size_t size = LeadingCharacterSize(message);
    message = size >= message.size() ? std::string(" ") : message.substr(size);
  }
  if (IsMessageEdge(message.back())) {
    const std::size_t size = TrailingCharacterSize(message);
    message = size >= message.size() ? std::string(" ") : message.substr(0, message.size() - size);
  }
  return message;
}

// The loop number as a 16-bit integer would hold it (halves to even); 0 when out of range.
int LoopNumberOf(double value) {
  const double rounded = std::nearbyint(value);
  if (!(rounded >= kFirstLoop && rounded <= kLastLoop)) return 0;
  return static_cast<int>(rounded);
}

}  // namespace

MacroStatements::MacroStatements(Evaluator& evaluator, VariableStore& variables)
    : evaluator_(evaluator), variables_(variables) {}

// ---------------------------------------------------------------------------------------------
// Entries

int MacroStatements::MacroStatement(std::string_view block, std::string& rest, bool& jumped,
                                    CallFrame& frame, std::string_view sourceLine) {
  rest.clear();
  jumped = false;
  BeginWalk(block, sourceLine, &frame);
  return Walk(rest, jumped);
}

int MacroStatements::MacroStatement(std::string_view block, std::string& rest, bool& jumped) {
  noProgram_.Clear();
  return MacroStatement(block, rest, jumped, noProgram_);
}

int MacroStatements::RunBlock(std::string& block, std::string_view sourceLine, CallFrame& frame,
                              bool& jumped) {
  for (;;) {
    const int code = MacroStatement(block, rest_, jumped, frame, sourceLine);
    if (jumped || code != kGoesOn) return code;
    block.swap(rest_);
    if (block.empty()) return code;
  }
}

int MacroStatements::ExecuteAssignments(std::string_view line) {
  BeginWalk(line, line, nullptr);
  int position = 1;
  for (;;) {
    SkipBlanks(block_, position);
    if (position > Size(block_)) return Commit(0);
    if (At(block_, position) != '#') return ErrorCode::kExpectedVariableNumber;
    if (const int code = RunAssignment(position, false)) return code;
  }
}

void MacroStatements::BeginWalk(std::string_view block, std::string_view sourceLine,
                                CallFrame* frame) {
  block_ = block;
  sourceLine_ = sourceLine.empty() ? block : sourceLine;
  frame_ = frame;
  pendingLocals_.clear();
  pendingLoop_ = PendingLoop{};
  pendingSeek_.reset();
}

// The walk: statements from position 1; after an assignment it comes back for the next one.
int MacroStatements::Walk(std::string& rest, bool& jumped) {
  int position = 1;
  for (;;) {
    SkipBlanks(block_, position);
    if (position > Size(block_)) return Commit(kComplete);
    int length = 0;
    switch (StatementAt(block_, position, length)) {
      case Statement::kIf:
        return RunIf(position + length, rest);
      case Statement::kGoto:
        return RunGoto(position + length, jumped);
      case Statement::kWhile:
        return RunWhile(position + length, jumped);
      case Statement::kDo:
        return RunDo(position + length);
      case Statement::kEnd:
        return RunEnd(position + length, jumped);
      case Statement::kOutput:
        return Commit(kComplete);  // no output file exists: the words are passed over
      case Statement::kAssignment:
        if (const int code = RunAssignment(position, true)) return code;
        continue;
      case Statement::kNone:
        return kNotAStatement;
    }
  }
}

// Writes the private copy back to the frame and returns `code`.
int MacroStatements::Commit(int code) {
  if (!pendingLocals_.empty()) {
    LocalVariables& locals = variables_.CurrentLocals();
    for (const auto& [number, value] : pendingLocals_) locals[number].CopyFrom(value);
  }
  if (frame_ != nullptr) {
    if (pendingLoop_.number != 0) {
      frame_->LoopCondition[static_cast<std::size_t>(pendingLoop_.number)] = pendingCondition_;
      frame_->LoopPosition[static_cast<std::size_t>(pendingLoop_.number)] = pendingLoop_.position;
    }
    if (pendingSeek_) frame_->ResumePosition = *pendingSeek_;
  }
  return code;
}

// ---------------------------------------------------------------------------------------------
// Expressions

int MacroStatements::Scan(std::string_view text, int& position) {
  const int start = position;
  if (const int error = evaluator_.ScanValue(text, position, valueText_)) return error;
  return position == start ? ErrorCode::kInvalidCharacterInExpression : 0;
}

int MacroStatements::ScanAndEvaluate(std::string_view text, int& position, double& value,
                                     bool& isEmpty) {
  int error = evaluator_.ScanValue(text, position, valueText_);
  if (error == 0) value = evaluator_.EvaluateValue(isEmpty, error);
  return error;
}

// The loop number behind DO or END, by the number scanner.
int MacroStatements::ReadLoopNumber(int position, int& loop) const {
  loop = LoopNumberOf(ScanNumber(block_, position));
  return loop == 0 ? ErrorCode::kInvalidLoopNumber : 0;
}

int MacroStatements::JumpTo(std::size_t position, bool& jumped) {
  pendingSeek_ = position;
  jumped = true;
  return Commit(kComplete);
}

// ---------------------------------------------------------------------------------------------
// Statements

int MacroStatements::RunIf(int position, std::string& rest) {
  if (const int error = Scan(block_, position)) return error;
  const bool jump = WordAt(block_, position, "GOTO");
  if (!jump && !WordAt(block_, position, "THEN")) return ErrorCode::kExpectedGotoOrThen;
  bool isEmpty = false;
  int error = 0;
  const double condition = evaluator_.EvaluateValue(isEmpty, error);
  if (error != 0) return error;
  if (condition == 0) return kComplete;  // a false IF keeps nothing of the line
  rest.assign(block_.substr(static_cast<std::size_t>(position - 1 + (jump ? 0 : 4))));
  return Commit(kGoesOn);
}

int MacroStatements::RunGoto(int position, bool& jumped) {
  if (const int error = Scan(block_, position)) return error;
  bool isEmpty = false;
  int error = 0;
  const double target = evaluator_.EvaluateValue(isEmpty, error);
  if (error != 0) return error;
  jumpTarget_ = "N" + FormatNumberText(std::fabs(target), "");
  jumpPosition_.reset();
  if (frame_->Text == nullptr) return ErrorCode::kBlockNumberNotFound;
  const ProgramText& text = *frame_->Text;
  const std::size_t from = frame_->ResumePosition;
  const std::int32_t program = frame_->ProgramNumber;
  // A negative number looks backwards first, for the nearest block before this line.
  const bool backwards = target < 0;
  jumpPosition_ =
      FindBlock(text, jumpTarget_, backwards ? SearchMode::kBeforeLast : SearchMode::kAfterFirst,
                from, program);
  if (!jumpPosition_) {
    jumpPosition_ =
        FindBlock(text, jumpTarget_, backwards ? SearchMode::kAfterLast : SearchMode::kBeforeFirst,
                  from, program);
  }
  if (!jumpPosition_) return ErrorCode::kBlockNumberNotFound;
  return JumpTo(*jumpPosition_, jumped);
}

int MacroStatements::RunWhile(int position, bool& jumped) {
  if (const int error = Scan(block_, position)) return error;
  if (!WordAt(block_, position, "DO")) return ErrorCode::kExpectedDo;
  int loop = 0;
  if (const int error = ReadLoopNumber(position + 2, loop)) return error;
  bool isEmpty = false;
  int error = 0;
  const double condition = evaluator_.EvaluateValue(isEmpty, error);
  if (error != 0) return error;
  pendingLoop_ = PendingLoop{loop, frame_->ResumePosition};
  pendingCondition_ = valueText_;
  if (condition != 0) return Commit(kComplete);
  jumpTarget_ = "END" + FormatNumberText(loop, "#0");
  jumpPosition_.reset();
  if (frame_->Text != nullptr) {
    jumpPosition_ = FindBlock(*frame_->Text, jumpTarget_, SearchMode::kAfterFirst,
                              frame_->ResumePosition, frame_->ProgramNumber);
  }
  if (!jumpPosition_) return ErrorCode::kLoopEndNotFound;
  return JumpTo(*jumpPosition_, jumped);
}

// DO without WHILE opens a loop that runs until a jump leaves it.
int MacroStatements::RunDo(int position) {
  int loop = 0;
  if (const int error = ReadLoopNumber(position, loop)) return error;
  pendingLoop_ = PendingLoop{loop, frame_->ResumePosition};
  pendingCondition_ = "1";
  return Commit(kComplete);
}

int MacroStatements::RunEnd(int position, bool& jumped) {
  int loop = 0;
  if (const int error = ReadLoopNumber(position, loop)) return error;
  const std::size_t index = static_cast<std::size_t>(loop);
  if (frame_->LoopCondition[index].empty()) return ErrorCode::kEndWithoutDo;
  int conditionPosition = 1;
  double condition = 0;
  bool isEmpty = false;
  if (const int error =
          ScanAndEvaluate(frame_->LoopCondition[index], conditionPosition, condition, isEmpty)) {
    return error;
  }
  if (condition == 0) return Commit(kComplete);
  return JumpTo(frame_->LoopPosition[index], jumped);
}

// ---------------------------------------------------------------------------------------------
// Assignments

// "#target=value" from the "#" at `position`; leaves `position` behind the value. Returns 0 to
// go on walking, kMessage after #3000 (when `showMessage`), or an error code.
int MacroStatements::RunAssignment(int& position, bool showMessage) {
  double target = 0;
  if (const int error = ReadTarget(position, target)) return error;
  if (At(block_, position) != '=' || position >= Size(block_)) {
    return ErrorCode::kExpectedExpression;
  }
  double value = 0;
  bool isEmpty = false;
  if (const int error = ScanAndEvaluate(block_, position, value, isEmpty)) return error;
  const double number = std::trunc(target);
  if (!(number >= VariableStore::kFirstLocal && number <= VariableStore::kLastList)) {
    return ErrorCode::kInvalidVariableNumber;
  }
  StoreValue(number, value, isEmpty);
  if (showMessage && number == 3000) return ShowMessage(value, isEmpty);
  return 0;
}

// The variable number behind the "#" at `position`: a number, "[expression]" or "#variable".
int MacroStatements::ReadTarget(int& position, double& target) {
  const char next = At(block_, position + 1);
  if (!IsDigit(next) && next != '[' && next != '#') return ErrorCode::kExpectedVariableNumber;
  ++position;
  bool isEmpty = false;
  if (const int error = ScanAndEvaluate(block_, position, target, isEmpty)) return error;
  return isEmpty ? ErrorCode::kCannotAssignVariable0 : 0;
}

// Locals go to the private copy of the frame, everything else to the store at once.
void MacroStatements::StoreValue(double target, double value, bool isEmpty) {
  const int number = static_cast<int>(target);
  if (number < VariableStore::kFirstCommon) {
    VariableValue& local = pendingLocals_.emplace_back(number, VariableValue{}).second;
    if (!isEmpty) local.SetNumber(value);
  } else if (isEmpty) {
    variables_.WriteNull(number);
  } else {
    variables_.WriteNumber(number, value);
  }
}

// The message of a #3000 assignment: the line's "(" text without its brackets, or
// "Message #" and the value.
int MacroStatements::ShowMessage(double value, bool isEmpty) {
  macroMessageText_ = MessageFromLine(sourceLine_);
  if (macroMessageText_.empty()) {
    macroMessageText_.assign(kMessagePrefix);
    if (!isEmpty) macroMessageText_ += FormatNumberText(value, "");
  }
  return Commit(kMessage);
}

}  // namespace zemtra
