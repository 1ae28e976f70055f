#include "core/RecordingHost.h"

namespace zemtra {

MsgAnswer RecordingHost::ask(const Prompt& prompt) {
  MsgAnswer answer = DefaultAnswer(prompt.buttons);
  if (!answers.empty()) {
    answer = answers.front();
    answers.pop_front();
  }
  shown.push_back({prompt, answer});
  return answer;
}

void RecordingHost::status(std::string_view panel, std::string_view text) {
  statuses.emplace_back(std::string(panel), std::string(text));
}

}  // namespace zemtra
