// zemtra-cli script: runs a script over a program without a window and writes the program
// text it leaves. File and folder dialogs answer "" here; messages go to stderr.
#include <QCoreApplication>
#include <chrono>
#include <filesystem>
#include <memory>
#include <ostream>
#include <string>
#include <vector>

#include "cli/Args.h"
#include "cli/CliHost.h"
#include "cli/ConfigArgument.h"
#include "cli/Interrupt.h"
#include "config/ConfigFile.h"
#include "core/AppFolder.h"
#include "core/TextUtil.h"
#include "editor/DocumentFile.h"
#include "editor/TextEncoding.h"
#include "script/ScriptRunner.h"
#include "script/ScriptWorkspace.h"

namespace zemtra {

namespace {

namespace fs = std::filesystem;

constexpr const char* kCommand = "script";
constexpr double kDefaultTimeLimitSeconds = 60;

constexpr OptionSpec kScriptOptions[] = {
    {"-o", "OUT", "write the resulting program to OUT (default: standard output)"},
    {"--config", "NAME|PATH", "machine configuration (default: CONFIG/default.zmt)"},
    {"--timeout", "S", "stop the script after S seconds, 0 for no limit (default 60)"},
};

constexpr CommandSyntax kScriptSyntax{
    "script",
    "SCRIPT.js [PROGRAM] [-o OUT] [--config NAME|PATH] [--timeout S]",
    "Runs the JavaScript file SCRIPT.js with the ZMT functions over PROGRAM (or an empty\n"
    "untitled program) and writes the program text the script leaves to OUT or to standard\n"
    "output. File and folder dialogs of the script answer \"\"; the program's header\n"
    "directives are not run. Exit status 1 when the script fails or is stopped.",
    kScriptOptions,
    1,
    2};

// The configuration named (a name in CONFIG or a path), or CONFIG/default.zmt; the built-in
// defaults when there is none and none was named.
bool LoadMachine(const std::string& argument, const fs::path& folder, ScriptWorkspace& work,
                 std::ostream& err) {
  const fs::path path = ResolveConfigPath(argument, folder);
  std::error_code code;
  if (!fs::is_regular_file(path, code)) {
    if (argument.empty()) return true;
    err << "zemtra-cli script: configuration not found: " << path.string() << "\n";
    return false;
  }
  std::string pathText = path.string();
  MachineConfig& record = work.Session.EditConfig;
  if (!LoadConfig(pathText, record, work.host, folder)) {
    err << "zemtra-cli script: cannot read the configuration " << pathText << "\n";
    return false;
  }
  work.ApplyConfiguration(record);
  return true;
}

bool ReadTimeLimit(const Args& parsed, std::chrono::milliseconds& limit, std::ostream& err) {
  const std::string text = parsed.valueOr("--timeout", "");
  double seconds = kDefaultTimeLimitSeconds;
  if (!text.empty()) {
    std::size_t used = 0;
    try {
      seconds = std::stod(text, &used);
    } catch (const std::exception&) {
      used = 0;
    }
    if (used != text.size() || !(seconds >= 0)) {
      UsageError(kCommand, "--timeout needs a number of seconds: '" + text + "'", err);
      return false;
    }
  }
  limit = std::chrono::milliseconds(static_cast<std::int64_t>(seconds * 1000));
  return true;
}

int WriteProgram(ScriptWorkspace& work, const Args& parsed, std::ostream& out, std::ostream& err) {
  TextEncoding encoding = work.Editor.Document.Encoding();
  const std::string bytes = EncodeProgramText(work.Editor.Document.Text(), encoding);
  const std::string target = parsed.valueOr("-o", "");
  if (target.empty() || target == "-") {
    out << bytes;
    return kExitDone;
  }
  FileError error;
  if (!WriteFileAtomically(target, bytes, error)) {
    err << "zemtra-cli script: cannot write " << target << "\n";
    return kExitUsage;
  }
  return kExitDone;
}

int RunParsed(const Args& parsed, std::ostream& out, std::ostream& err) {
  std::chrono::milliseconds limit{0};
  if (!ReadTimeLimit(parsed, limit, err)) return kExitUsage;
  const std::string script = parsed.positionals()[0];
  std::error_code code;
  if (!fs::is_regular_file(script, code)) {
    err << "zemtra-cli script: cannot read " << script << "\n";
    return kExitUsage;
  }
  const fs::path folder = ApplicationFolderPath();
  CliHost host(err);
  auto work = std::make_unique<ScriptWorkspace>(host, folder);
  work->Driver.BlockLimit = 10'000'000;  // an endless macro loop ends the plot, not the run
  if (!LoadMachine(parsed.valueOr("--config", ""), folder, *work, err)) return kExitUsage;
  if (parsed.positionals().size() > 1) {
    const std::string& program = parsed.positionals()[1];
    if (!fs::is_regular_file(program, code) || !work->Editor.LoadSourceFile(program)) {
      err << "zemtra-cli script: cannot read " << program << "\n";
      return kExitUsage;
    }
  }
  work->Scripts.SetTimeLimit(limit);
  InstallInterruptHandler();
  const ScriptOutcome outcome = RunScript(script, work->Scripts, host, work->Editor.Document,
                                          FindPathNoCase(folder, "SCRIPTS"));
  if (!outcome.ok()) {
    err << "zemtra-cli script: the script did not finish; nothing written\n";
    return kExitStopped;
  }
  return WriteProgram(*work, parsed, out, err);
}

}  // namespace

int RunScriptCommand(const std::vector<std::string>& args, std::ostream& out, std::ostream& err) {
  Args parsed;
  const ParseOutcome outcome = ParseArgs(kScriptSyntax, args, parsed, out, err);
  if (outcome != ParseOutcome::Run) return outcome == ParseOutcome::Help ? kExitDone : kExitUsage;
  // The script engine needs an application object; the command line has none of its own.
  std::unique_ptr<QCoreApplication> application;
  int argc = 1;
  char name[] = "zemtra-cli";
  char* argv[] = {name, nullptr};
  if (QCoreApplication::instance() == nullptr) {
    application = std::make_unique<QCoreApplication>(argc, argv);
  }
  return RunParsed(parsed, out, err);
}

}  // namespace zemtra
