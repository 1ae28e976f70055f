#pragma once
// Command-line parsing for zemtra-cli subcommands: flags, options with a value ("--opt V" or
// "--opt=V"), positionals, whole numbers with range checks, --help, and the exit statuses.
#include <cstdint>
#include <iosfwd>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace zemtra {

// Exit statuses of zemtra-cli and its subcommands.
inline constexpr int kExitDone = 0;     // the work was done
inline constexpr int kExitStopped = 1;  // the program stopped with an error message
inline constexpr int kExitUsage = 2;    // bad usage or unreadable input

// One option a subcommand accepts. With a `valueName` it takes a value ("--first N",
// "--first=N"); without one it is a flag.
struct OptionSpec {
  std::string_view name;       // with its dashes: "--json"
  std::string_view valueName;  // "" for a flag, else the placeholder shown in --help ("N")
  std::string_view help;       // one line for --help
};

// The syntax of one subcommand, enough to parse its arguments and print its --help.
struct CommandSyntax {
  std::string_view command;      // "plot"
  std::string_view usage;        // after "zemtra-cli plot ": "FILE [options]"
  std::string_view description;  // a paragraph for --help; may be ""
  std::span<const OptionSpec> options;
  int minPositionals = 0;
  int maxPositionals = 0;  // -1: no limit
};

// A parsed command line of one subcommand.
class Args {
 public:
  // True when the flag or option was given at least once.
  bool has(std::string_view name) const;
  // The last value given for an option, or nothing when it was not given.
  std::optional<std::string> value(std::string_view name) const;
  // The last value given for an option, or `fallback`.
  std::string valueOr(std::string_view name, std::string_view fallback) const;
  // Whole-number value of an option within [min, max], or `fallback` when absent. On a value that
  // is not a whole number or out of range, returns nothing and sets `error` to a one-line text.
  std::optional<std::int64_t> intValue(std::string_view name, std::int64_t min, std::int64_t max,
                                       std::int64_t fallback, std::string& error) const;
  const std::vector<std::string>& positionals() const { return positionals_; }

  // Filled by ParseArgs.
  void addOption(std::string_view name, std::string_view value);
  void addPositional(std::string_view text) { positionals_.emplace_back(text); }

 private:
  std::vector<std::pair<std::string, std::string>> options_;  // in the order given
  std::vector<std::string> positionals_;
};

enum class ParseOutcome {
  Run,    // parsed; go on
  Help,   // --help (or -h) was given and the help text printed to `out`: exit kExitDone
  Error,  // an error and a hint printed to `err`: exit kExitUsage
};

// Parses a subcommand's arguments (without the subcommand name). "--" ends the options.
// Errors read "zemtra-cli plot: unknown option '--x'" and are followed by a hint line.
ParseOutcome ParseArgs(const CommandSyntax& syntax, const std::vector<std::string>& arguments,
                       Args& parsed, std::ostream& out, std::ostream& err);

// The --help text of a subcommand: usage line, description and one line per option.
std::string HelpText(const CommandSyntax& syntax);

// Prints "zemtra-cli COMMAND: MESSAGE" and the --help hint to `err`; returns kExitUsage.
int UsageError(std::string_view command, std::string_view message, std::ostream& err);

// Reads a whole decimal number (optional sign) within [min, max]; nothing when the text is not
// exactly that.
std::optional<std::int64_t> ParseInteger(std::string_view text, std::int64_t min, std::int64_t max);

}  // namespace zemtra
