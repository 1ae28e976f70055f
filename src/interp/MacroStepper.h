#pragma once
// Running a program block by block while its variables are watched: one block per step, the
// motions stored and drawn as the plot does, and runs that step on to a line of the program or
// until a break expression turns true. The state of the run stands between steps; a plot in
// between ends the session.
#include <chrono>
#include <cstdint>
#include <functional>
#include <string>
#include <string_view>

#include "macro/ProgramText.h"

namespace zemtra {

class Evaluator;
class GeometryTable;
class Host;
class Interpreter;
class PlotDriver;
class VariableStore;

inline constexpr std::string_view kProgramFinished = "Program Finished";
inline constexpr std::string_view kMacroStepFailureHead = "Error in Plot_MacroStep";
inline constexpr std::string_view kStatusStepping = "Stepping...";

class MacroStepper {
 public:
  // Supplies the program when a session starts (the document as it stands then).
  using ProgramSource = std::function<ProgramText()>;

  // `driver` fills `table` from `interpreter`, as in a plot.
  MacroStepper(PlotDriver& driver, GeometryTable& table, Interpreter& interpreter,
               Evaluator& evaluator, Host& host);
  MacroStepper(const MacroStepper&) = delete;
  MacroStepper& operator=(const MacroStepper&) = delete;

  // Runs one block. The first call of a session reads the program from `source` and prepares
  // the run as a plot does. At the end of the program (or a stop of the program) shows
  // "Program Finished" titled "Zemtra" and ends the session; a run-time failure shows
  // "Error in Plot_MacroStep" and its description and ends it too. The caret follows the main
  // program's line. Returns the interpreter's result (0 no motion, 1 motion, 2 stop); 2 when a
  // plot is running.
  int MacroStep(const ProgramSource& source);
  // True between the first step of a session and its end (program end, failure, a new plot).
  bool StepSession() const;
  // Forgets the session; the next step starts from the top.
  void EndSession() { session_ = false; }

  // "stepto": a first step when no session stands, then steps until the session ends, StopRun
  // is set, or the main program's line counter is `targetLine` (1-based) less one at call
  // level 0 (a stop inside a subprogram never happens).
  void StepToLine(const ProgramSource& source, int targetLine);
  // "steptobreak": steps until BreakExpression changes from false to true, the session ends or
  // StopRun is set. Without a session BreakWasTrue starts false.
  void StepToBreak(const ProgramSource& source);
  // BreakExpression now: a scan or evaluation error counts as true, as does a value that is
  // not 0 once rounded to a 16-bit integer; an empty expression is false.
  bool EvaluateBreak();

  std::string BreakExpression;
  bool BreakWasTrue = false;
  bool StopRun = false;  // set (e.g. by "pause") to end a running loop after its step
  // Called after each single step, during runs at most every RefreshInterval (before events
  // are let through) and when a run ends: the window refreshes what it shows.
  std::function<void()> Refresh;
  std::chrono::milliseconds RefreshInterval{50};

  // --- What the last step did ---
  // The block as written, and the same with the expressions of its addresses evaluated (an
  // assignment shows the value it gave).
  const std::string& CurrentBlock() const { return currentBlock_; }
  const std::string& EvaluatedBlock() const { return evaluatedBlock_; }
  // Call level before and after the last step (0 the main program).
  int LevelBefore() const { return levelBefore_; }
  int CallLevel() const;
  // Entities stored so far in the session.
  std::int32_t EntityCount() const;

 private:
  bool StartSession(const ProgramSource& source);
  void NoteBlock();
  void Finish();
  void Fail(const char* description);
  bool AtTargetLine(int targetLine) const;
  void RefreshDuringRun();

  PlotDriver& driver_;
  GeometryTable& table_;
  Interpreter& interpreter_;
  Evaluator& evaluator_;
  Host& host_;
  ProgramText program_;  // the text the session runs
  bool session_ = false;
  std::uint64_t run_ = 0;  // the driver's run number of the session
  std::string currentBlock_;
  std::string evaluatedBlock_;
  int levelBefore_ = 0;
  std::chrono::steady_clock::time_point lastRefresh_;
};

// The line (0-based) of a byte position in a program's text: the line marked in the text of
// a running subprogram.
int SubGetLNFromFilePos(const ProgramText& text, std::size_t position);

// `block` (a cleaned block) with the value of each address written as an expression replaced
// by the value, and "#n=..." shown as "#n=" and the value #n holds now. Values in the general
// number form.
std::string EvaluateBlockText(std::string_view block, Evaluator& evaluator,
                              const VariableStore& variables);

}  // namespace zemtra
