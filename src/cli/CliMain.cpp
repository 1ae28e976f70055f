#include "cli/CliMain.h"

#include <algorithm>
#include <array>
#include <exception>
#include <ostream>

#include "cli/Args.h"
#include "cli/DxfCommand.h"
#include "cli/FilterCommand.h"
#include "cli/PlotCommand.h"
#include "cli/TextCommand.h"
#include "core/Version.h"

namespace zemtra {

#ifdef ZEMTRA_HAVE_DNC
// Serial transfers (DncCommand.cpp): a program to or from a machine.
int RunSendCommand(const std::vector<std::string>& args, std::ostream& out, std::ostream& err);
int RunReceiveCommand(const std::vector<std::string>& args, std::ostream& out, std::ostream& err);
#endif
#ifdef ZEMTRA_HAVE_SCRIPT
// Scripts without a window (ScriptCommand.cpp).
int RunScriptCommand(const std::vector<std::string>& args, std::ostream& out, std::ostream& err);
#endif

namespace {

int RunHelpCommand(const std::vector<std::string>& args, std::ostream& out, std::ostream& err);
int RunVersionCommand(const std::vector<std::string>& args, std::ostream& out, std::ostream& err);

constexpr std::array kSubcommands = {
    // ---- Subcommands of the engine, one line each:
    Subcommand{"plot", "plot a program and report its geometry", RunPlotCommand},
    Subcommand{"filter", "rewrite a program with a text filter", RunFilterCommand},
    Subcommand{"text", "write an engraving program of a text in a font", RunTextCommand},
    Subcommand{"dxf", "read a DXF drawing and report its layers", RunDxfCommand},
    Subcommand{"dxf2gcode", "convert the layers of a DXF drawing into a program",
               RunDxf2GCodeCommand},
#ifdef ZEMTRA_HAVE_DNC
    Subcommand{"send", "send a program to a machine over a serial line", RunSendCommand},
    Subcommand{"receive", "receive a program from a machine over a serial line", RunReceiveCommand},
#endif
#ifdef ZEMTRA_HAVE_SCRIPT
    Subcommand{"script", "run a script over a program and write the result", RunScriptCommand},
#endif
    Subcommand{"help", "print the help of a command", RunHelpCommand},
    Subcommand{"version", "print the version", RunVersionCommand},
};

const Subcommand* FindSubcommand(std::string_view name) {
  const auto found = std::find_if(kSubcommands.begin(), kSubcommands.end(),
                                  [&](const Subcommand& command) { return command.name == name; });
  return found == kSubcommands.end() ? nullptr : &*found;
}

std::string UsageText() {
  std::string text =
      "Usage: zemtra-cli <command> [options]\n"
      "       zemtra-cli --version | --help\n"
      "\n"
      "Zemtra's engine without a window.\n"
      "\n"
      "Commands:\n";
  std::size_t width = 0;
  for (const Subcommand& command : kSubcommands) width = std::max(width, command.name.size());
  for (const Subcommand& command : kSubcommands) {
    text += "  " + std::string(command.name) + std::string(width - command.name.size() + 3, ' ') +
            std::string(command.summary) + "\n";
  }
  text +=
      "\n"
      "Options:\n"
      "  --version   print the version and exit\n"
      "  --help      print this help and exit\n"
      "\n"
      "Run 'zemtra-cli <command> --help' for the options of a command.\n"
      "Exit status: 0 done, 1 the program stopped with an error message,\n"
      "2 bad usage or unreadable input.\n";
  return text;
}

std::string VersionText() {
  const std::string caption = CaptionText("");
  return caption.substr(0, caption.find(" - "));
}

constexpr std::array<OptionSpec, 0> kNoOptions{};

int RunHelpCommand(const std::vector<std::string>& args, std::ostream& out, std::ostream& err) {
  static constexpr CommandSyntax kSyntax{
      "help",     "[COMMAND]", "Prints the help of COMMAND, or the list of commands.",
      kNoOptions, 0,           1};
  Args parsed;
  if (const ParseOutcome outcome = ParseArgs(kSyntax, args, parsed, out, err);
      outcome != ParseOutcome::Run) {
    return outcome == ParseOutcome::Help ? kExitDone : kExitUsage;
  }
  if (parsed.positionals().empty()) {
    out << UsageText();
    return kExitDone;
  }
  const std::string& name = parsed.positionals().front();
  const Subcommand* command = FindSubcommand(name);
  if (command == nullptr) return UsageError("help", "unknown command '" + name + "'", err);
  return command->run({"--help"}, out, err);
}

int RunVersionCommand(const std::vector<std::string>& args, std::ostream& out, std::ostream& err) {
  static constexpr CommandSyntax kSyntax{"version",  "", "Prints the version of Zemtra.",
                                         kNoOptions, 0,  0};
  Args parsed;
  if (const ParseOutcome outcome = ParseArgs(kSyntax, args, parsed, out, err);
      outcome != ParseOutcome::Run) {
    return outcome == ParseOutcome::Help ? kExitDone : kExitUsage;
  }
  out << VersionText() << "\n";
  return kExitDone;
}

// Runs a subcommand; a failure that escapes it is reported rather than ending the process
// without a word.
int RunSubcommand(const Subcommand& command, const std::vector<std::string>& args,
                  std::ostream& out, std::ostream& err) {
  try {
    return command.run(args, out, err);
  } catch (const std::exception& failure) {
    out.flush();
    err << "zemtra-cli " << command.name << ": " << failure.what() << "\n";
  } catch (...) {
    out.flush();
    err << "zemtra-cli " << command.name << ": unexpected failure\n";
  }
  return kExitStopped;
}

}  // namespace

std::span<const Subcommand> Subcommands() {
  return kSubcommands;
}

int RunCli(const std::vector<std::string>& arguments, std::ostream& out, std::ostream& err) {
  if (arguments.empty()) {
    err << UsageText();
    return kExitUsage;
  }
  const std::string& first = arguments.front();
  if (first == "--version") {
    out << VersionText() << "\n";
    return kExitDone;
  }
  if (first == "--help" || first == "-h") {
    out << UsageText();
    return kExitDone;
  }
  if (first.starts_with("-")) return UsageError("", "unknown option '" + first + "'", err);
  const Subcommand* command = FindSubcommand(first);
  if (command == nullptr) return UsageError("", "unknown command '" + first + "'", err);
  return RunSubcommand(*command, {arguments.begin() + 1, arguments.end()}, out, err);
}

int RunCli(int argc, char** argv, std::ostream& out, std::ostream& err) {
  std::vector<std::string> arguments;
  for (int i = 1; i < argc; ++i) arguments.emplace_back(argv[i]);
  return RunCli(arguments, out, err);
}

}  // namespace zemtra
