#include "cli/CliHost.h"

#include <gtest/gtest.h>

#include <csignal>
#include <sstream>

#include "cli/Interrupt.h"

namespace zemtra {
namespace {

TEST(CliHost, LineEndsBecomeSlashes) {
  struct Case {
    const char* text;
    const char* expected;
  };
  const Case cases[] = {
      {"one line", "one line"},
      {"Error in Plot_GCodeToGeometry\r\nExpression too long",
       "Error in Plot_GCodeToGeometry / Expression too long"},
      {"a\nb", "a / b"},
      {"a\rb", "a / b"},
      {"a\r\n\r\nb", "a /  / b"},
      {"a\n\rb", "a /  / b"},  // LF CR is two line ends
      {"end\r\n", "end / "},
      {"", ""},
  };
  for (const Case& c : cases) EXPECT_EQ(OneLineText(c.text), c.expected) << c.text;
}

TEST(CliHost, PrintsRecordsAndAnswersWithoutAPerson) {
  std::ostringstream err;
  CliHost host(err);
  int line = 0;
  host.setLineSource([&] { return line; });

  struct Case {
    MsgButtons buttons;
    MsgIcon icon;
    MsgAnswer expected;
  };
  const Case cases[] = {
      {MsgButtons::Ok, MsgIcon::Stop, MsgAnswer::Ok},
      {MsgButtons::OkCancel, MsgIcon::Exclamation, MsgAnswer::Ok},
      {MsgButtons::YesNo, MsgIcon::Question, MsgAnswer::No},
      {MsgButtons::YesNoCancel, MsgIcon::None, MsgAnswer::No},
  };
  for (const Case& c : cases) {
    ++line;
    const Prompt prompt{"Feed motion\r\nwhile spindle OFF", "part.nc", c.icon, c.buttons};
    EXPECT_EQ(host.ask(prompt), c.expected);
  }
  EXPECT_EQ(err.str(),
            "part.nc: Feed motion / while spindle OFF\n"
            "part.nc: Feed motion / while spindle OFF\n"
            "part.nc: Feed motion / while spindle OFF\n"
            "part.nc: Feed motion / while spindle OFF\n");
  ASSERT_EQ(host.messages().size(), 4u);
  for (std::size_t i = 0; i < 4; ++i) {
    const CliHost::Message& message = host.messages()[i];
    EXPECT_EQ(message.line, static_cast<int>(i) + 1);             // the line when it was shown
    EXPECT_EQ(message.text, "Feed motion\r\nwhile spindle OFF");  // recorded as given
    EXPECT_EQ(message.title, "part.nc");
    EXPECT_EQ(message.icon, cases[i].icon);
    EXPECT_EQ(message.buttons, cases[i].buttons);
    EXPECT_EQ(message.answer, cases[i].expected);
  }

  host.setLineSource({});
  host.ask({"no line", "t"});
  EXPECT_EQ(host.messages().back().line, 0);
}

TEST(CliHost, NamesOfIconsButtonsAndAnswers) {
  EXPECT_EQ(IconName(MsgIcon::None), "none");
  EXPECT_EQ(IconName(MsgIcon::Information), "information");
  EXPECT_EQ(IconName(MsgIcon::Exclamation), "exclamation");
  EXPECT_EQ(IconName(MsgIcon::Stop), "stop");
  EXPECT_EQ(IconName(MsgIcon::Question), "question");
  EXPECT_EQ(ButtonsName(MsgButtons::Ok), "ok");
  EXPECT_EQ(ButtonsName(MsgButtons::OkCancel), "okcancel");
  EXPECT_EQ(ButtonsName(MsgButtons::YesNo), "yesno");
  EXPECT_EQ(ButtonsName(MsgButtons::YesNoCancel), "yesnocancel");
  EXPECT_EQ(AnswerName(MsgAnswer::Cancel), "cancel");
  EXPECT_EQ(AnswerName(MsgAnswer::No), "no");
}

TEST(CliHost, CtrlCAsksToStop) {
  std::ostringstream err;
  CliHost host(err);
  ClearInterrupt();
  InstallInterruptHandler();
  EXPECT_FALSE(host.abortRequested());
  std::raise(SIGINT);
  EXPECT_TRUE(InterruptRequested());
  EXPECT_TRUE(host.abortRequested());
  ClearInterrupt();
  EXPECT_FALSE(host.abortRequested());
  host.requestAbort();
  EXPECT_TRUE(host.abortRequested());
  std::signal(SIGINT, SIG_DFL);
}

}  // namespace
}  // namespace zemtra
