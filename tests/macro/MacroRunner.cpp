#include "MacroRunner.h"

#include <cmath>

#include "core/NumberText.h"

namespace zemtra::test {

namespace {

char Upper(char c) {
  return (c >= 'a' && c <= 'z') ? static_cast<char>(c - 32) : c;
}

// Group variable written for a G-code the little decoder knows, or 0.
int GroupVariable(double g) {
  if (g >= 0 && g <= 3) return 4201;
  if (g >= 17 && g <= 19) return 4202;
  if (g == 90 || g == 91) return 4203;
  if (g == 20 || g == 21) return 4206;
  if (g == 98 || g == 99) return 4210;
  return 0;
}

}  // namespace

std::string CleanTestBlock(std::string_view line) {
  std::string out;
  bool comment = false;
  std::size_t i = 0;
  while (i < line.size() && static_cast<unsigned char>(line[i]) < 33) ++i;
  if (i < line.size() && (line[i] == '/' || line[i] == ';')) {
    if (line[i] == ';') return out;
    ++i;
  }
  while (i < line.size() && static_cast<unsigned char>(line[i]) < 33) ++i;
  if (i < line.size() && Upper(line[i]) == 'N') {
    int position = static_cast<int>(i) + 2;
    ScanNumber(line, position);
    i = static_cast<std::size_t>(position - 1);
  }
  for (; i < line.size(); ++i) {
    const char c = Upper(line[i]);
    if (comment) {
      comment = c != ')' && c != ']';
      continue;
    }
    if (c == '(' || (c == '[' && out.empty())) {
      comment = true;
      continue;
    }
    if (static_cast<unsigned char>(c) >= 33) out.push_back(c);
  }
  return out;
}

void MacroRunner::PublishPosition() {
  const double values[] = {x, y, z};
  const int axes[] = {0, lathe ? -1 : 1, lathe ? 1 : 2};
  for (int i = 0; i < 3; ++i) {
    if (axes[i] < 0) continue;
    variables_.WriteNumber(5001 + axes[i], values[i]);
    variables_.WriteNumber(5041 + axes[i], values[i]);
  }
}

void MacroRunner::SetAxis(int axis, double value) {
  double& position = axis == 0 ? x : (axis == 1 ? y : z);
  position = value;
  const int variable = lathe && axis == 2 ? 1 : axis;
  variables_.CopyVariable(5041 + variable, 5001 + variable);
  variables_.WriteNumber(5041 + variable, value);
}

MacroRun MacroRunner::Run(CallFrame& frame, int maxBlocks) {
  MacroRun run;
  std::string_view line;
  std::string block;
  try {
    while (run.blockCount < maxBlocks && frame.ReadLine(line)) {
      ++run.blockCount;
      block = CleanTestBlock(line);
      if (block.empty() || block[0] == 'O' || block[0] == ':') continue;
      bool jumped = false;
      const int code = statements_.RunBlock(block, line, frame, jumped);
      if (jumped || code == StatementCode::kComplete) continue;
      if (code != StatementCode::kGoesOn && code != StatementCode::kNotAStatement) {
        run.code = code;
        run.stoppedAt = line;
        return run;
      }
      if (block.empty()) continue;
      run.blocks.push_back(block);
      if (!Decode(block, run)) {
        run.stoppedAt = line;
        return run;
      }
      if (run.returned) return run;
    }
  } catch (const ExpressionFault&) {
    run.code = -2;
    run.stoppedAt = line;
  }
  return run;
}

// Address words: G-codes set the modes, X, Y and Z (U and W on a lathe) move.
bool MacroRunner::Decode(std::string_view block, MacroRun& run) {
  double axis[3] = {x, y, z};
  bool present[3] = {false, false, false};
  run.code = ReadAddressWords(block, evaluator_, [&](char letter, double value) {
    TakeWord(letter, value, run, axis, present);
  });
  if (run.code != 0) return false;
  if (present[0] || present[1] || present[2]) {
    for (int i = 0; i < 3; ++i) {
      if (present[i]) SetAxis(i, axis[i]);
    }
    run.moves.push_back({motion, x, y, z});
  }
  return true;
}

void MacroRunner::TakeWord(char letter, double value, MacroRun& run, double axis[3],
                           bool present[3]) {
  if (letter == 'G') {
    if (value <= 3) motion = static_cast<int>(value);
    if (value == 90 || value == 91) incremental = value == 91;
    if (const int variable = GroupVariable(value)) variables_.WriteNumber(variable, value);
  } else if (letter == 'M') {
    run.returned = run.returned || value == 99 || value == 30 || value == 2;
  } else if (letter >= 'X') {
    const int index = letter - 'X';
    axis[index] = incremental ? axis[index] + value : value;
    present[index] = true;
  } else if (lathe && (letter == 'U' || letter == 'W')) {
    const int index = letter == 'U' ? 0 : 2;
    axis[index] += value;
    present[index] = true;
  }
}

}  // namespace zemtra::test
