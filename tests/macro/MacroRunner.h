#pragma once
// A small stand-in for the interpreter, for the macro tests: it reads a frame's lines, cleans
// them like the block reader, runs the statements, and reads what is left for the decoder as
// address words, keeping a position and the modal motion code. Enough to follow the flow of a
// program and the moves of a macro file; no arcs are computed, no offsets applied.
#include <array>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "macro/CallFrame.h"
#include "macro/CallStack.h"
#include "macro/Evaluator.h"
#include "macro/MacroStatement.h"
#include "macro/VariableStore.h"

namespace zemtra::test {

// The block reader's cleaning: upper case, blanks and comments out, a leading block number and
// "/" dropped.
std::string CleanTestBlock(std::string_view line);

// Reads a cleaned block as address words, calling visit(letter, value) for each in order.
// Returns 0, an evaluator code, or -1 where no letter with a value stands.
template <typename Visit>
int ReadAddressWords(std::string_view block, Evaluator& evaluator, Visit visit) {
  std::string valueText;
  int position = 1;
  while (position <= static_cast<int>(block.size())) {
    const char letter = block[static_cast<std::size_t>(position - 1)];
    const int start = ++position;
    int error = evaluator.ScanValue(block, position, valueText);
    bool isEmpty = false;
    const double value = error == 0 ? evaluator.EvaluateValue(isEmpty, error) : 0;
    if (error != 0) return error;
    if (letter < 'A' || letter > 'Z' || position == start) return -1;
    visit(letter, value);
  }
  return 0;
}

// The letters of a block as the decoder leaves them, for the call operations.
struct Letters {
  std::array<std::int16_t, 27> seen{};
  std::array<double, 27> value{};
  BlockAddresses View() const { return {seen, value}; }
  Letters& Set(char letter, double v) {
    seen[static_cast<std::size_t>(letter - 64)] = 1;
    value[static_cast<std::size_t>(letter - 64)] = v;
    return *this;
  }
};

struct Move {
  int code = 0;  // 0 rapid, 1 feed, 2 / 3 arcs
  double x = 0, y = 0, z = 0;
};

struct MacroRun {
  std::vector<std::string> blocks;  // what the statements left for the decoder, in order
  std::vector<Move> moves;
  int code = 0;           // 0, or the code that stopped the run (an error, 3000, or -1 for a
                          // word the little decoder could not read)
  std::string stoppedAt;  // the line that stopped it
  bool returned = false;  // M99, M30 or M02 ended it
  int blockCount = 0;
};

class MacroRunner {
 public:
  MacroRunner(VariableStore& variables, Evaluator& evaluator)
      : variables_(variables), evaluator_(evaluator), statements_(evaluator, variables) {}

  // On a lathe Z is axis variable 1 (#5002, #5042), as the interpreter writes it.
  bool lathe = false;
  double x = 0, y = 0, z = 0;  // position, as written
  int motion = 0;              // group 1
  bool incremental = false;

  // Runs `frame` from its read position until M99 / M30 / M02, the end of the text, a stop
  // code, or `maxBlocks` blocks.
  MacroRun Run(CallFrame& frame, int maxBlocks = 200000);
  // Writes the position variables (#5041... and #5001...) as the interpreter would for `x`, `y`,
  // `z` standing there from before.
  void PublishPosition();

 private:
  bool Decode(std::string_view block, MacroRun& run);
  void TakeWord(char letter, double value, MacroRun& run, double axis[3], bool present[3]);
  void SetAxis(int axis, double value);

  VariableStore& variables_;
  Evaluator& evaluator_;
  MacroStatements statements_;
};

}  // namespace zemtra::test
