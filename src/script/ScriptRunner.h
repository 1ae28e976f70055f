#pragma once
// Running scripts as the user asks for them: a script file (chosen in a file dialog when no
// path is given), a program's header directives, and the list of the SCRIPTS folder.
#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

#include "script/ScriptHost.h"

namespace zemtra {

class Host;
class ProgramDocument;

// The file dialog's title and filter list of Run Script.
inline constexpr std::string_view kScriptDialogTitle = "Select Script File";
inline constexpr std::string_view kScriptDialogFilter =
    "JavaScript Files (*.js);;Text Files (*.txt);;All Files (*)";

// Runs the script file at `path`; with "" the user picks one (cancel ends it). A missing file
// shows "Path not found:" and the path; the selection is dropped (so that no filter asks about
// it) and the file runs to its end; a failure shows "Error in Script:" and the host's report,
// title "Zemtra". Returns how the script ended (Refused when nothing ran).
ScriptOutcome RunScript(const std::string& path, ScriptHost& scripts, Host& host,
                        ProgramDocument& document, const std::filesystem::path& scriptFolder);

// Runs one statement, such as a header directive; a failure shows "Error in Script:".
ScriptOutcome ExecuteStatement(const std::string& statement, ScriptHost& scripts, Host& host);

// A directive written in the call form without parentheses, `ZMTSetConfig "Lathe"` or a bare
// `ZMTFileNew`, as the call `ZMTSetConfig("Lathe")`; other statements stay as they are.
std::string StatementAsCall(std::string_view statement);

// Runs each header directive in turn (after the first failure the rest still run).
void RunHeaderDirectives(const std::vector<std::string>& directives, ScriptHost& scripts,
                         Host& host);

// The scripts of `folder` (*.js, any case), sorted by name, as full paths.
std::vector<std::filesystem::path> ListScripts(const std::filesystem::path& folder);
// The menu caption of a script: its base name in proper case ("renumber_fanuc.js" gives
// "Renumber_Fanuc").
std::string ScriptCaption(const std::filesystem::path& script);

}  // namespace zemtra
