#include "editor/BlockTracker.h"

#include <cstdint>

#include "interp/BlockReader.h"

namespace zemtra {
namespace {

// Blocks that begin with these words are macro statements, which the filters leave alone.
constexpr std::string_view kMacroWords[] = {"IF",    "GOTO",  "WHILE", "DO",    "END",
                                            "POPEN", "PCLOS", "DPRNT", "BPRNT", "#"};

bool IsMacroStatement(std::string_view block) {
  for (std::string_view word : kMacroWords) {
    if (block.substr(0, word.size()) == word) return true;
  }
  return false;
}

std::size_t Slot(char letter) {
  return static_cast<std::size_t>(letter - 64);
}

}  // namespace

BlockTracker::BlockTracker(const MachineConfig& config)
    : config_(config),
      groups_(BaseGroupTable(DialectOf(config.MachineType, config.LatheGCodeFormat))),
      evaluator_(variables_) {
  Reset();
}

void BlockTracker::Reset() {
  block_ = TrackedBlock{};
  const auto& start = ModalStartValues(DialectOf(config_.MachineType, config_.LatheGCodeFormat));
  for (std::size_t group = 0; group < block_.ModalG.size(); ++group)
    block_.ModalG[group] = start[group];
  block_.ModalG[0] = 0;
}

bool BlockTracker::TrackBlock(std::string_view line) {
  std::int32_t blockNumber = 0;
  CleanBlock(line, false, cleaned_, blockNumber);
  if (cleaned_.empty() || IsMacroStatement(cleaned_)) return false;
  block_.Previous = block_.Present;
  block_.Position.fill(0);
  block_.Value.fill(0);
  for (std::string& text : block_.Text) text.clear();
  block_.ModalG[0] = 0;
  return ReadAddresses(cleaned_);
}

bool BlockTracker::ReadAddresses(const std::string& cleaned) {
  const int last = static_cast<int>(cleaned.size());
  int position = 1;
  while (position < last) {
    const char c = cleaned[static_cast<std::size_t>(position - 1)];
    if (c == '[') return false;
    if (c < 'A' || c > 'Z') {
      ++position;
      continue;
    }
    const int behind = position + 1;
    position = behind;
    std::string text;
    double value = 0;
    if (!ReadValue(cleaned, position, text, value)) {
      if (position <= behind) position = behind + 1;
      continue;
    }
    if (IsResolutionLetter(c) && text.find('.') == std::string::npos && IsNumberText(text))
      value *= config_.CoordinateResolution > 0 ? config_.CoordinateResolution : 1.0;
    block_.Position[Slot(c)] = behind;
    block_.Text[Slot(c)] = std::move(text);
    block_.Value[Slot(c)] = value;
    if (c == 'G') TakeGCode(value);
    MoveAxis(c);
  }
  return true;
}

// One value by the expression scanner; false when it cannot be read or evaluated. A value that
// reads a macro variable cannot be evaluated here: a text filter knows no variable values, and
// rewriting such a word would replace the user's expression by a number.
bool BlockTracker::ReadValue(const std::string& cleaned, int& position, std::string& valueText,
                             double& value) {
  try {
    if (evaluator_.ScanValue(cleaned, position, valueText) != 0 || valueText.empty()) return false;
    if (valueText.find('#') != std::string::npos) return false;
    bool isEmpty = false;
    int error = 0;
    value = evaluator_.EvaluateValue(isEmpty, error);
    return error == 0;
  } catch (const ExpressionFault&) {
    return false;
  }
}

void BlockTracker::TakeGCode(double value) {
  if (value >= 0 && value < 100) {
    block_.ModalG[groups_[static_cast<std::size_t>(value)]] = static_cast<float>(value);
  } else {
    block_.ModalG[0] = static_cast<float>(value);
  }
}

void BlockTracker::MoveAxis(char letter) {
  const double value = block_.Get(letter);
  auto& present = block_.Present;
  if (!IsLathe()) {
    if (letter < 'X') return;
    const auto axis = static_cast<std::size_t>(letter - 'X');
    const bool absolute = block_.ModalG[3] == 90;
    present[axis] = static_cast<float>(absolute ? value : present[axis] + value);
    return;
  }
  const double scale = config_.LatheXDiameter != 0 ? 0.5 : 1.0;
  switch (letter) {
    case 'X':
      present[0] = static_cast<float>(value * scale);
      break;
    case 'U':
      present[0] = static_cast<float>(present[0] + value * scale);
      break;
    case 'Z':
      present[2] = static_cast<float>(value);
      break;
    case 'W':
      present[2] = static_cast<float>(present[2] + value);
      break;
    default:
      break;
  }
}

void BlockTracker::SkipValue(std::string_view text, int& position) {
  const int start = position;
  try {
    evaluator_.ScanValue(text, position, scratch_);
  } catch (const ExpressionFault&) {
  }
  if (position < start) position = start;
}

}  // namespace zemtra
