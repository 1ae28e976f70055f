#include "cli/CliHost.h"

#include <array>
#include <ostream>

#include "cli/Interrupt.h"

namespace zemtra {

namespace {

constexpr std::array<std::string_view, 5> kIconNames = {"none", "information", "exclamation",
                                                        "stop", "question"};
constexpr std::array<std::string_view, 4> kButtonsNames = {"ok", "okcancel", "yesno",
                                                           "yesnocancel"};
constexpr std::array<std::string_view, 4> kAnswerNames = {"ok", "cancel", "yes", "no"};

template <std::size_t N, typename Enum>
std::string_view NameOf(const std::array<std::string_view, N>& names, Enum value) {
  const auto index = static_cast<std::size_t>(value);
  return index < N ? names[index] : std::string_view("unknown");
}

}  // namespace

CliHost::CliHost(std::ostream& err) : err_(err) {}

MsgAnswer CliHost::ask(const Prompt& prompt) {
  Message message;
  message.title = prompt.title;
  message.text = prompt.text;
  message.icon = prompt.icon;
  message.buttons = prompt.buttons;
  message.answer = DefaultAnswer(prompt.buttons);
  message.line = lineSource_ ? lineSource_() : 0;
  err_ << OneLineText(prompt.title) << ": " << OneLineText(prompt.text) << '\n';
  err_.flush();
  messages_.push_back(std::move(message));
  return messages_.back().answer;
}

bool CliHost::abortRequested() const {
  return abort_ || InterruptRequested();
}

std::string OneLineText(std::string_view text) {
  std::string line;
  line.reserve(text.size());
  for (std::size_t i = 0; i < text.size(); ++i) {
    const char c = text[i];
    if (c != '\r' && c != '\n') {
      line += c;
      continue;
    }
    if (c == '\r' && i + 1 < text.size() && text[i + 1] == '\n') ++i;
    line += " / ";
  }
  return line;
}

std::string_view IconName(MsgIcon icon) {
  return NameOf(kIconNames, icon);
}
std::string_view ButtonsName(MsgButtons buttons) {
  return NameOf(kButtonsNames, buttons);
}
std::string_view AnswerName(MsgAnswer answer) {
  return NameOf(kAnswerNames, answer);
}

}  // namespace zemtra
