#pragma once
// zemtra-cli: the engine without a window. A table of subcommands, each a function of its own
// arguments that writes results to `out` and messages to `err`.
#include <iosfwd>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace zemtra {

// Runs one subcommand with the arguments after its name. Returns the exit status (Args.h).
using SubcommandFunction = int (*)(const std::vector<std::string>& args, std::ostream& out,
                                   std::ostream& err);

struct Subcommand {
  std::string_view name;
  std::string_view summary;  // one line for `zemtra-cli --help`
  SubcommandFunction run;
};

// The subcommands zemtra-cli knows, in the order --help lists them.
std::span<const Subcommand> Subcommands();

// Runs zemtra-cli with its arguments. Returns the exit status: 0 done, 1 the program stopped with
// an error message, 2 bad usage or unreadable input.
int RunCli(int argc, char** argv, std::ostream& out, std::ostream& err);
// The same with the arguments after the program name.
int RunCli(const std::vector<std::string>& arguments, std::ostream& out, std::ostream& err);

}  // namespace zemtra
