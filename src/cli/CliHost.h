#pragma once
// The Host of zemtra-cli: every message goes to stderr as "TITLE: TEXT" on one line and is
// answered without a person (OK, or No where there is a No); every message is also recorded,
// with the program line being read when it was shown, for the JSON output.
#include <functional>
#include <iosfwd>
#include <string>
#include <string_view>
#include <vector>

#include "core/Host.h"

namespace zemtra {

class CliHost : public Host {
 public:
  struct Message {
    std::string title;
    std::string text;
    MsgIcon icon = MsgIcon::None;
    MsgButtons buttons = MsgButtons::Ok;
    MsgAnswer answer = MsgAnswer::Ok;
    int line = 0;  // from the line source when shown; 0 without one
  };

  // `err` receives the messages (normally std::cerr).
  explicit CliHost(std::ostream& err);

  // Prints and records the message and returns DefaultAnswer of its buttons.
  MsgAnswer ask(const Prompt& prompt) override;
  // True once Ctrl+C was pressed (see Interrupt.h) or requestAbort() was called.
  bool abortRequested() const override;

  // Where the line number of each message comes from (the plot sets the interpreter's line
  // counter); an empty function gives 0.
  void setLineSource(std::function<int()> lineSource) { lineSource_ = std::move(lineSource); }
  // Stops a long operation at its next check, as Ctrl+C does.
  void requestAbort() { abort_ = true; }

  // Every message shown so far, in order.
  const std::vector<Message>& messages() const { return messages_; }

 private:
  std::ostream& err_;
  std::function<int()> lineSource_;
  std::vector<Message> messages_;
  bool abort_ = false;
};

// A message text on one line: each line end (CR LF, LF or CR) becomes " / ".
std::string OneLineText(std::string_view text);

// Names used in the JSON output: "none", "information", "exclamation", "stop", "question";
// "ok", "okcancel", "yesno", "yesnocancel"; "ok", "cancel", "yes", "no".
std::string_view IconName(MsgIcon icon);
std::string_view ButtonsName(MsgButtons buttons);
std::string_view AnswerName(MsgAnswer answer);

}  // namespace zemtra
