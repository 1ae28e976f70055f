// The macro statement step of a block: assignments, and the words that make a block a macro
// statement.
#include <string>
#include <string_view>

#include "core/TextUtil.h"
#include "interp/InterpMessages.h"
#include "interp/Interpreter.h"
#include "macro/Assignment.h"
#include "macro/ProgramText.h"

namespace zemtra {

namespace {

// Results of a macro statement.
constexpr int kStatementGoesOn = 0;      // run the rest of the block through again
constexpr int kNotAStatement = 100;      // the block is for the decoder
constexpr int kStatementComplete = 101;  // nothing more to do on this block
constexpr int kStatementMessage = 3000;  // an assignment to #3000: show its message

constexpr std::string_view kFlowWords[] = {"IF", "GOTO", "WHILE", "DO", "END"};
constexpr std::string_view kOutputWords[] = {"POPEN", "PCLOS", "DPRNT", "BPRNT"};

// True when `text` begins with one of the words (all of two letters or more). The first two
// letters are compared on their own, as most blocks begin with a letter and a digit.
bool StartsWithAny(std::string_view text, const std::string_view* words, std::size_t count) {
  if (text.size() < 2) return false;
  for (std::size_t i = 0; i < count; ++i) {
    const std::string_view word = words[i];
    if (text[0] == word[0] && text[1] == word[1] && text.starts_with(word)) return true;
  }
  return false;
}

}  // namespace

// Step 7: the block goes through the statement until it is done or left for the decoder.
int Interpreter::RunMacroStatements() {
  // Variables and expressions read the store: what earlier blocks wrote must be there.
  const std::string_view block(CurrentBlock);
  if (block.find('#') != block.npos || block.find('[') != block.npos) FlushVariables();
  std::string rest;
  for (;;) {
    bool jumped = false;
    rest.clear();
    const int code = RunMacroStatement(CurrentBlock, rest, jumped);
    if (jumped) {
      if (ReadingMainFile() && !InCycleFile) {
        LineCounter = CallFrames[FileLevel].Text->LineFromPosition(ActiveFrame().ResumePosition);
      }
      return kNoMotion;
    }
    if (code == kStatementComplete) return kNoMotion;
    if (code == kStatementGoesOn && !rest.empty()) {
      CurrentBlock = rest;
      continue;
    }
    if (code == kStatementGoesOn || code == kNotAStatement) return kContinue;
    if (code == kStatementMessage) {
      std::string text(kMacroMessageHead);
      text.append(kLineEnd).append(kLineEnd).append(BlockMessage);
      StoppedByError = true;
      ShowProgramMessage(text, MsgIcon::Information, MsgButtons::Ok);
      return kStop;
    }
    ReportBlockError(code);
    return kStop;
  }
}

// Assignments run here; conditions, jumps and loops are read by a later part of the
// interpreter, and a block that needs them stops the run.
int Interpreter::RunMacroStatement(std::string_view block, std::string& /*rest*/,
                                   bool& /*jumped*/) {
  if (block.empty()) return kStatementComplete;
  switch (block[0]) {  // the first letters of every statement word
    case '#':
    case 'B':
    case 'D':
    case 'E':
    case 'G':
    case 'I':
    case 'P':
    case 'W':
      break;
    default:
      return kNotAStatement;
  }
  if (block[0] == '#') {
    const int code = ExecuteAssignments(block, evaluator_, variables_);
    return code == 0 ? kStatementComplete : code;
  }
  // Every word's second character is a letter too; "G1", "D2." are addresses.
  if (block.size() < 2 || block[1] < 'A' || block[1] > 'Z') return kNotAStatement;
  if (StartsWithAny(block, kFlowWords, std::size(kFlowWords))) return kPendingMacroStatement;
  if (StartsWithAny(block, kOutputWords, std::size(kOutputWords))) return kStatementComplete;
  return kNotAStatement;
}

}  // namespace zemtra
