#pragma once
// One call level of a running program: the open program text, where its lines are being read,
// its O number, the repeat count of a call made from it, and its loop tables. The frame's
// locals #1 to #99 live in the VariableStore under the same frame index, where the evaluator
// reads them.
#include <array>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include "macro/ProgramText.h"

namespace zemtra {

// Loop numbers of WHILE / DO / END run from 1 to 30.
constexpr int kFirstLoop = 1;
constexpr int kLastLoop = 30;

struct CallFrame {
  std::string FileName;               // path of the open program, for messages and folders
  const ProgramText* Text = nullptr;  // the open program; null when the frame has none
  std::size_t ResumePosition = 0;     // byte offset of the next line to read: the file's seek
  std::size_t LinePosition = 0;       // byte offset where the line being run starts
  std::int32_t ProgramNumber = -1;    // O number last read in this text; -1 for a whole file
  std::int16_t RepeatCount = 0;       // repetitions still to run of the call made from here
  // Per loop number 1 to 30: the position of the line behind the loop's head, and the text of
  // its condition ("" when the loop was never opened in this frame). Index 0 is unused.
  std::array<std::size_t, kLastLoop + 1> LoopPosition{};
  std::array<std::string, kLastLoop + 1> LoopCondition;

  bool IsOpen() const { return Text != nullptr; }

  // Makes the frame read `text` from its start; the loops start empty.
  void Open(const ProgramText& text, std::string_view fileName) {
    Clear();
    Text = &text;
    FileName.assign(fileName);
  }

  // The next line, noting where it starts (LinePosition) and where the one behind it starts
  // (ResumePosition). False at the end of the text or when no text is open.
  bool ReadLine(std::string_view& line) {
    if (Text == nullptr) return false;
    LinePosition = ResumePosition;
    return Text->ReadLineAt(ResumePosition, line);
  }

  // Back to the state of a frame that runs nothing.
  void Clear() {
    FileName.clear();
    Text = nullptr;
    ResumePosition = LinePosition = 0;
    ProgramNumber = -1;
    RepeatCount = 0;
    ClearLoops();
  }

  void ClearLoops() {
    LoopPosition.fill(0);
    for (std::string& condition : LoopCondition) condition.clear();
  }
};

}  // namespace zemtra
