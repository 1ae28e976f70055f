#pragma once
// A Host for tests and batch runs: records every message and status change, and answers
// prompts from a script of answers, then with the defaults.
#include <deque>
#include <string>
#include <utility>
#include <vector>

#include "core/Host.h"

namespace zemtra {

class RecordingHost : public Host {
 public:
  struct Shown {
    Prompt prompt;
    MsgAnswer answer;
  };

  MsgAnswer ask(const Prompt& prompt) override;
  void status(std::string_view panel, std::string_view text) override;
  void progress(int percent) override { progressCalls.push_back(percent); }
  void pumpEvents() override { ++pumpCount; }
  bool abortRequested() const override { return abort; }
  void moveCaret(int line) override { caretLines.push_back(line); }
  std::string chooseFile(std::string_view, std::string_view, std::string_view) override {
    return chosenFile;
  }

  // Queues the answer for the next prompt; later prompts take DefaultAnswer.
  void queueAnswer(MsgAnswer answer) { answers.push_back(answer); }
  // Text of the last message, or "" when none was shown.
  std::string lastText() const { return shown.empty() ? std::string() : shown.back().prompt.text; }

  std::vector<Shown> shown;
  std::vector<std::pair<std::string, std::string>> statuses;
  std::vector<int> progressCalls;
  std::vector<int> caretLines;
  std::deque<MsgAnswer> answers;
  std::string chosenFile;  // what chooseFile returns
  int pumpCount = 0;
  bool abort = false;
};

}  // namespace zemtra
