#include "interp/MacroStepper.h"

#include <cmath>
#include <exception>

#include "core/GeometryTable.h"
#include "core/Host.h"
#include "core/NumberText.h"
#include "interp/BlockReader.h"
#include "interp/InterpMessages.h"
#include "interp/Interpreter.h"
#include "interp/PlotDriver.h"
#include "macro/Evaluator.h"
#include "macro/VariableStore.h"

namespace zemtra {

MacroStepper::MacroStepper(PlotDriver& driver, GeometryTable& table, Interpreter& interpreter,
                           Evaluator& evaluator, Host& host)
    : driver_(driver),
      table_(table),
      interpreter_(interpreter),
      evaluator_(evaluator),
      host_(host) {}

bool MacroStepper::StepSession() const {
  return session_ && driver_.RunNumber() == run_;
}

int MacroStepper::CallLevel() const {
  return interpreter_.Calls().CallLevel();
}

std::int32_t MacroStepper::EntityCount() const {
  // While the run stands the slot at GeoIndex is being filled; after its end the table is
  // trimmed (or, after a failure, holds spare slots, which the driver leaves out).
  return StepSession() ? table_.GeoIndex - 1 : driver_.EntityCount();
}

int MacroStepper::MacroStep(const ProgramSource& source) {
  if (driver_.PlotBusy) return Interpreter::kStop;
  if (!StepSession() && !StartSession(source)) return Interpreter::kStop;
  levelBefore_ = CallLevel();
  int result = Interpreter::kStop;
  try {
    result = driver_.StepBlock();
  } catch (const std::exception& failure) {
    Fail(failure.what());
    return Interpreter::kStop;
  } catch (...) {
    Fail("Unexpected failure");
    return Interpreter::kStop;
  }
  NoteBlock();
  if (interpreter_.LineCounter > 0) host_.moveCaret(interpreter_.LineCounter);
  if (result == Interpreter::kStop) Finish();
  return result;
}

// What the plot does before its loop; the text is kept for the whole session.
bool MacroStepper::StartSession(const ProgramSource& source) {
  program_ = source ? source() : ProgramText();
  if (!driver_.BeginStepping(program_)) return false;
  run_ = driver_.RunNumber();
  session_ = true;
  host_.status("msg", kStatusStepping);
  currentBlock_.clear();
  evaluatedBlock_.clear();
  return true;
}

void MacroStepper::NoteBlock() {
  currentBlock_.assign(interpreter_.LastLine());
  std::string cleaned;
  std::int32_t blockNumber = 0;
  CleanBlock(currentBlock_, false, cleaned, blockNumber);
  evaluatedBlock_ = EvaluateBlockText(cleaned, evaluator_, interpreter_.Variables());
}

void MacroStepper::Finish() {
  session_ = false;
  host_.status("msg", "");
  host_.ask(Prompt{std::string(kProgramFinished), std::string(kMessageTitle), MsgIcon::Information,
                   MsgButtons::Ok});
}

void MacroStepper::Fail(const char* description) {
  session_ = false;
  driver_.Failed = true;
  std::string text(kMacroStepFailureHead);
  text.append(kLineEnd).append(description);
  host_.ask(Prompt{text, std::string(kMessageTitle), MsgIcon::Stop, MsgButtons::Ok});
}

// ---------------------------------------------------------------------------------------------
// Runs

void MacroStepper::StepToLine(const ProgramSource& source, int targetLine) {
  StopRun = false;
  lastRefresh_ = std::chrono::steady_clock::now();
  if (!StepSession()) MacroStep(source);
  while (StepSession() && !StopRun) {
    MacroStep(source);
    if (AtTargetLine(targetLine)) break;
    RefreshDuringRun();
  }
  if (Refresh) Refresh();
}

bool MacroStepper::AtTargetLine(int targetLine) const {
  return interpreter_.LineCounter == targetLine - 1 && CallLevel() == 0;
}

void MacroStepper::StepToBreak(const ProgramSource& source) {
  if (!StepSession()) BreakWasTrue = false;
  StopRun = false;
  lastRefresh_ = std::chrono::steady_clock::now();
  do {
    MacroStep(source);
    RefreshDuringRun();
    const bool isTrue = EvaluateBreak();
    const bool breaks = isTrue && !BreakWasTrue;
    BreakWasTrue = isTrue;
    if (breaks) break;
  } while (StepSession() && !StopRun);
  if (Refresh) Refresh();
}

// The window is refreshed and events let through a few times a second, so that "pause" and the
// level buttons act during a run; Esc ends the run as "pause" does.
void MacroStepper::RefreshDuringRun() {
  const auto now = std::chrono::steady_clock::now();
  if (now - lastRefresh_ < RefreshInterval) return;
  lastRefresh_ = now;
  if (Refresh) Refresh();
  host_.pumpEvents();
  if (host_.abortRequested()) StopRun = true;
}

bool MacroStepper::EvaluateBreak() {
  if (BreakExpression.find_first_not_of(" \t") == std::string::npos) return false;
  try {
    int position = 1;
    std::string scanned;
    if (evaluator_.ScanValue(BreakExpression, position, scanned) != 0) return true;
    bool isEmpty = false;
    int error = 0;
    const double value = evaluator_.EvaluateValue(isEmpty, error);
    if (error != 0) return true;
    // Rounded to a 16-bit integer: halves go to the even neighbour; beyond its range the value
    // is far from 0 anyway.
    return std::nearbyint(value) != 0;
  } catch (const ExpressionFault&) {
    return true;
  }
}

// ---------------------------------------------------------------------------------------------
// Texts of the display

int SubGetLNFromFilePos(const ProgramText& text, std::size_t position) {
  return text.LineFromPosition(position);
}

namespace {

bool IsLetter(char c) {
  return c >= 'A' && c <= 'Z';
}

// "#n=..." with a plain number n: the assignment's variable, else 0.
int AssignedVariable(std::string_view block) {
  if (block.size() < 3 || block[0] != '#') return 0;
  std::size_t at = 1;
  int number = 0;
  while (at < block.size() && block[at] >= '0' && block[at] <= '9' && number < 100000) {
    number = number * 10 + (block[at] - '0');
    ++at;
  }
  return at > 1 && at < block.size() && block[at] == '=' ? number : 0;
}

// The value of an address read from the 1-based `position`; false when it cannot be read.
bool EvaluateAddress(std::string_view block, int& position, Evaluator& evaluator,
                     std::string& scanned, double& value, bool& isEmpty) {
  try {
    if (evaluator.ScanValue(block, position, scanned) != 0 || scanned.empty()) return false;
    int error = 0;
    value = evaluator.EvaluateValue(isEmpty, error);
    return error == 0;
  } catch (const ExpressionFault&) {
    return false;
  }
}

}  // namespace

std::string EvaluateBlockText(std::string_view block, Evaluator& evaluator,
                              const VariableStore& variables) {
  if (const int assigned = AssignedVariable(block)) {
    bool isNull = false;
    const double value = variables.ReadNumber(assigned, isNull);
    return "#" + std::to_string(assigned) + "=" + (isNull ? "" : FormatNumberText(value, ""));
  }
  if (block.empty() || !IsLetter(block[0])) return std::string(block);
  std::string result;
  std::string scanned;
  std::size_t index = 0;
  while (index < block.size()) {
    const char c = block[index];
    if (!IsLetter(c) || index + 1 >= block.size()) {
      result.push_back(c);
      ++index;
      continue;
    }
    result.push_back(c);
    int position = static_cast<int>(index) + 2;
    double value = 0;
    bool isEmpty = false;
    if (!EvaluateAddress(block, position, evaluator, scanned, value, isEmpty) ||
        position <= static_cast<int>(index) + 2) {
      result.append(block.substr(index + 1));  // not an address the text can show evaluated
      break;
    }
    const std::string_view written =
        block.substr(index + 1, static_cast<std::size_t>(position) - index - 2);
    if (IsNumberText(written)) {
      result.append(written);
    } else if (!isEmpty) {
      result.append(FormatNumberText(value, ""));
    }
    index = static_cast<std::size_t>(position) - 1;
  }
  return result;
}

}  // namespace zemtra
