// The macro statement step of a block: IF, GOTO, WHILE / DO / END, assignments and the #3000
// message run on the frame being read; what is left goes on to the decoder.
#include <string>
#include <string_view>

#include "interp/InterpMessages.h"
#include "interp/Interpreter.h"
#include "macro/MacroStatement.h"

namespace zemtra {

namespace {

// Most blocks begin with an address letter and a digit: those cannot be statements, and skip
// the statement walk. Statements begin with "#" or with a word of two letters or more (IF,
// GOTO, WHILE, DO, END, POPEN, PCLOS, DPRNT, BPRNT).
bool MayBeStatement(std::string_view block) {
  if (block[0] == '#') return true;
  switch (block[0]) {
    case 'B':
    case 'D':
    case 'E':
    case 'G':
    case 'I':
    case 'P':
    case 'W':
      return block.size() >= 2 && block[1] >= 'A' && block[1] <= 'Z';
    default:
      return false;
  }
}

// The words of LinuxCNC's O-word statements, which follow the O number there.
constexpr std::string_view kOWords[] = {"SUB",   "ENDSUB", "CALL",      "RETURN",   "IF",
                                        "ELSE",  "ENDIF",  "WHILE",     "ENDWHILE", "DO",
                                        "BREAK", "REPEAT", "ENDREPEAT", "CONTINUE", "ELSEIF"};

}  // namespace

// An O line whose number is followed by a statement word, or a named O-word ("O<NAME> SUB").
bool Interpreter::IsOWordStatement(std::string_view block) const {
  std::size_t position = 1;
  if (position < block.size() && block[position] == '<') return true;
  while (position < block.size() && block[position] >= '0' && block[position] <= '9') ++position;
  const std::string_view rest = block.substr(position);
  for (const std::string_view word : kOWords) {
    if (rest.starts_with(word)) return true;
  }
  return false;
}

// Step 7: the block goes through the statement until it is done or left for the decoder. A
// jump moves the frame's read position; in the main program the line counter follows it.
int Interpreter::RunMacroStatements() {
  const std::string_view block(CurrentBlock);
  // Variables and expressions read the store: what earlier blocks wrote must be there.
  if (block.find('#') != block.npos || block.find('[') != block.npos) FlushVariables();
  if (!MayBeStatement(block)) return kContinue;
  bool jumped = false;
  const int code = statements_.RunBlock(CurrentBlock, rawLine_, calls_.Current(), jumped);
  if (jumped) {
    SyncLineCounter();
    return kNoMotion;
  }
  switch (code) {
    case StatementCode::kComplete:
      return kNoMotion;
    case StatementCode::kGoesOn:
      return CurrentBlock.empty() ? kNoMotion : kContinue;
    case StatementCode::kNotAStatement:
      return kContinue;
    case StatementCode::kMessage:
      return ShowStatementMessage();
    default:
      ReportBlockError(code);
      return kStop;
  }
}

// "#3000 = n (text)": the program's own message; the run stops there.
int Interpreter::ShowStatementMessage() {
  std::string text(kMacroMessageHead);
  text.append(kLineEnd).append(kLineEnd).append(statements_.MacroMessageText());
  StoppedByError = true;
  ShowProgramMessage(text, MsgIcon::Information, MsgButtons::Ok);
  return kStop;
}

}  // namespace zemtra
