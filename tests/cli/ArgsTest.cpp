#include "cli/Args.h"

#include <gtest/gtest.h>

#include <array>
#include <limits>
#include <sstream>

namespace zemtra {
namespace {

constexpr std::array kOptions = {
    OptionSpec{"--json", "", "write JSON"},
    OptionSpec{"--config", "NAME", "machine configuration"},
    OptionSpec{"--max-blocks", "N", "stop after N blocks"},
};
constexpr CommandSyntax kSyntax{"plot", "FILE [options]", "Plots FILE.", kOptions, 1, 1};

struct Parsed {
  ParseOutcome outcome;
  Args args;
  std::string out;
  std::string err;
};

Parsed Parse(const std::vector<std::string>& arguments) {
  Parsed parsed;
  std::ostringstream out, err;
  parsed.outcome = ParseArgs(kSyntax, arguments, parsed.args, out, err);
  parsed.out = out.str();
  parsed.err = err.str();
  return parsed;
}

TEST(Args, ReadsFlagsValuesAndPositionals) {
  const Parsed p =
      Parse({"--config", "lathe", "part.nc", "--json", "--max-blocks=10", "--config=mill"});
  ASSERT_EQ(p.outcome, ParseOutcome::Run) << p.err;
  EXPECT_TRUE(p.args.has("--json"));
  EXPECT_FALSE(p.args.has("--other"));
  EXPECT_EQ(p.args.value("--config"), "mill");  // the last one given counts
  EXPECT_EQ(p.args.valueOr("--max-blocks", "5"), "10");
  EXPECT_EQ(p.args.valueOr("--missing", "5"), "5");
  EXPECT_EQ(p.args.positionals(), std::vector<std::string>{"part.nc"});
  EXPECT_TRUE(p.err.empty());

  // "--" ends the options; "-" alone and an empty value are ordinary text.
  const Parsed dashes = Parse({"--config=", "--", "--json"});
  ASSERT_EQ(dashes.outcome, ParseOutcome::Run) << dashes.err;
  EXPECT_EQ(dashes.args.value("--config"), "");
  EXPECT_FALSE(dashes.args.has("--json"));
  EXPECT_EQ(dashes.args.positionals(), std::vector<std::string>{"--json"});
  EXPECT_EQ(Parse({"-"}).args.positionals(), std::vector<std::string>{"-"});
}

TEST(Args, BadUsageIsReportedWithAHint) {
  struct Case {
    std::vector<std::string> arguments;
    const char* firstLine;
  };
  const Case cases[] = {
      {{"a.nc", "--x"}, "zemtra-cli plot: unknown option '--x'"},
      {{"a.nc", "--x=1"}, "zemtra-cli plot: unknown option '--x'"},
      {{"a.nc", "-j"}, "zemtra-cli plot: unknown option '-j'"},
      {{"a.nc", "--json=yes"}, "zemtra-cli plot: option '--json' takes no value"},
      {{"a.nc", "--config"}, "zemtra-cli plot: option '--config' needs a value (NAME)"},
      {{}, "zemtra-cli plot: missing argument: expected FILE [options]"},
      {{"a.nc", "b.nc"}, "zemtra-cli plot: too many arguments: expected FILE [options]"},
  };
  for (const Case& c : cases) {
    const Parsed p = Parse(c.arguments);
    EXPECT_EQ(p.outcome, ParseOutcome::Error) << c.firstLine;
    EXPECT_EQ(p.err,
              std::string(c.firstLine) + "\nTry 'zemtra-cli plot --help' for more information.\n");
    EXPECT_TRUE(p.out.empty());
  }
}

TEST(Args, HelpWinsOverMissingArgumentsAndListsEveryOption) {
  for (const std::vector<std::string>& arguments :
       {std::vector<std::string>{"--help"}, {"-h"}, {"a.nc", "b.nc", "--help"}}) {
    const Parsed p = Parse(arguments);
    EXPECT_EQ(p.outcome, ParseOutcome::Help);
    EXPECT_TRUE(p.err.empty());
    EXPECT_EQ(p.out,
              "Usage: zemtra-cli plot FILE [options]\n"
              "\n"
              "Plots FILE.\n"
              "\n"
              "Options:\n"
              "  --json           write JSON\n"
              "  --config NAME    machine configuration\n"
              "  --max-blocks N   stop after N blocks\n"
              "  --help           print this help and exit\n");
  }
}

TEST(Args, WholeNumbersAreCheckedForFormAndRange) {
  constexpr auto kMin = std::numeric_limits<std::int64_t>::min();
  constexpr auto kMax = std::numeric_limits<std::int64_t>::max();
  struct Case {
    const char* text;
    std::int64_t expected;
  };
  const Case cases[] = {{"12", 12},
                        {"+12", 12},
                        {"-3", -3},
                        {"0", 0},
                        {"9223372036854775807", kMax},
                        {"-9223372036854775808", kMin}};
  for (const Case& c : cases) EXPECT_EQ(ParseInteger(c.text, kMin, kMax), c.expected) << c.text;
  for (const char* text :
       {"", "+", "-", "++1", "1.5", " 1", "1 ", "1e3", "0x10", "9223372036854775808"}) {
    EXPECT_EQ(ParseInteger(text, kMin, kMax), std::nullopt) << text;
  }
  EXPECT_EQ(ParseInteger("10", 1, 10), 10);
  EXPECT_EQ(ParseInteger("11", 1, 10), std::nullopt);
  EXPECT_EQ(ParseInteger("0", 1, 10), std::nullopt);

  std::string error;
  const Parsed absent = Parse({"a.nc"});
  EXPECT_EQ(absent.args.intValue("--max-blocks", 1, 100, 42, error), 42);
  const Parsed given = Parse({"a.nc", "--max-blocks", "7"});
  EXPECT_EQ(given.args.intValue("--max-blocks", 1, 100, 42, error), 7);
  EXPECT_TRUE(error.empty());
  const Parsed bad = Parse({"a.nc", "--max-blocks", "0"});
  EXPECT_EQ(bad.args.intValue("--max-blocks", 1, 100, 42, error), std::nullopt);
  EXPECT_EQ(error, "--max-blocks needs a whole number from 1 to 100, not '0'");
}

}  // namespace
}  // namespace zemtra
