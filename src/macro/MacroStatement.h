#pragma once
// Macro statements: IF, GOTO, WHILE / DO / END, assignments "#n=value" and the #3000 message.
// The interpreter hands each cleaned block to MacroStatement before it looks for G and M words;
// a block that is not a statement goes on to the decoder.
//
// How the interpreter uses it, once per block (after cleaning, and after an O line is taken):
//
//   bool jumped = false;
//   const int code = statements.RunBlock(CurrentBlock, rawLine, calls.Current(), jumped);
//   if (jumped) { if (calls.ReadingMainText()) LineCounter = <line from the frame's position>;
//                 return kNoMotion; }
//   code 101 (kComplete): the block is done.           code 3000 (kMessage): show
//   "Macro Message:", two line ends and MacroMessageText(); the plot stops.
//   code 0 (kGoesOn) or 100 (kNotAStatement): CurrentBlock now holds the text for the decoder.
//   any other code: an error; its text is ErrorMessage(code).
//
// The frame passed must be the running one (the canned cycle's while its macro runs), and the
// VariableStore's current frame must be its locals; CallStack keeps the two in step.
#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "macro/CallFrame.h"
#include "macro/VariableStore.h"

namespace zemtra {

class Evaluator;

// Results of a macro statement besides the error codes of ErrorMessage (1-17, 102-107).
namespace StatementCode {
constexpr int kGoesOn = 0;           // run `rest` through MacroStatement again (an IF that held)
constexpr int kNotAStatement = 100;  // the block is for the decoder
constexpr int kComplete = 101;       // nothing more to do on this block
constexpr int kMessage = 3000;       // an assignment to #3000: show MacroMessageText()
}  // namespace StatementCode

class MacroStatements {
 public:
  MacroStatements(Evaluator& evaluator, VariableStore& variables);
  MacroStatements(const MacroStatements&) = delete;
  MacroStatements& operator=(const MacroStatements&) = delete;

  // One walk of the statement over `block` (cleaned: upper case, blanks and comments out) on
  // `frame`. `rest` receives what an IF leaves to run (code kGoesOn); `jumped` is set when the
  // frame's read position moved (GOTO, a WHILE whose condition is false, an END that loops).
  // `sourceLine` is the line as written, where a #3000 message finds its "(" text; empty means
  // `block`. Returns a StatementCode or an error code.
  //
  // The statement works on a private copy of the frame: locals #1-#99 written on the line, a
  // loop opened and a jump reach the frame only when the walk ends in kComplete (except a false
  // IF), kGoesOn, kMessage or a jump. A false IF, an error and kNotAStatement drop them; #100
  // and above are written at once in every case.
  // Throws ExpressionFault on arithmetic the language does not guard.
  int MacroStatement(std::string_view block, std::string& rest, bool& jumped, CallFrame& frame,
                     std::string_view sourceLine = {});
  // The same with no program around it: a GOTO finds nothing (103), a false WHILE no END
  // (106), an END no open loop (107).
  int MacroStatement(std::string_view block, std::string& rest, bool& jumped);

  // The statement loop of one block: MacroStatement until it gives anything but kGoesOn with a
  // non-empty rest. On kGoesOn and kNotAStatement `block` holds the text left for the decoder
  // (empty after an IF ... THEN with nothing behind it). Returns the last code.
  int RunBlock(std::string& block, std::string_view sourceLine, CallFrame& frame, bool& jumped);

  // A line made only of assignments, "#5221=0 #5222=-12.5 #5223=[#1+2]", blanks allowed between
  // them: the work offset lines of a machine configuration and the saved variable state. #3000
  // is stored like any other variable, without a message. Text where an assignment must start
  // is error 12. Returns 0 or the first error code; locals are written only when the whole line
  // succeeds, #100 and above as they come. Throws ExpressionFault like the evaluator.
  int ExecuteAssignments(std::string_view line);

  // Text of the last #3000 message.
  const std::string& MacroMessageText() const { return macroMessageText_; }
  // The block or loop end the last GOTO or false WHILE looked for ("N100", "END1"), and the
  // position where it was found (nothing when it was not).
  const std::string& JumpTarget() const { return jumpTarget_; }
  std::optional<std::size_t> JumpPosition() const { return jumpPosition_; }

 private:
  // What the walk will write to the frame if it ends in a way that keeps it.
  struct PendingLoop {
    int number = 0;  // 0: no loop opened
    std::size_t position = 0;
  };

  int Walk(std::string& rest, bool& jumped);
  int RunIf(int position, std::string& rest);
  int RunGoto(int position, bool& jumped);
  int RunWhile(int position, bool& jumped);
  int RunDo(int position);
  int RunEnd(int position, bool& jumped);
  int RunAssignment(int& position, bool showMessage);
  int ReadTarget(int& position, double& target);
  void StoreValue(double target, double value, bool isEmpty);
  int ShowMessage(double value, bool isEmpty);

  int Scan(std::string_view text, int& position);
  int ScanAndEvaluate(std::string_view text, int& position, double& value, bool& isEmpty);
  int ReadLoopNumber(int position, int& loop) const;
  int JumpTo(std::size_t position, bool& jumped);
  int Commit(int code);
  void BeginWalk(std::string_view block, std::string_view sourceLine, CallFrame* frame);

  Evaluator& evaluator_;
  VariableStore& variables_;
  CallFrame noProgram_;  // the frame of a statement run with no program

  // The walk in progress.
  std::string_view block_;
  std::string_view sourceLine_;
  CallFrame* frame_ = nullptr;
  std::vector<std::pair<int, VariableValue>> pendingLocals_;
  PendingLoop pendingLoop_;
  std::string pendingCondition_;
  std::optional<std::size_t> pendingSeek_;

  std::string valueText_;  // scratch of ScanValue
  std::string rest_;       // scratch of RunBlock
  std::string macroMessageText_;
  std::string jumpTarget_;
  std::optional<std::size_t> jumpPosition_;
};

}  // namespace zemtra
