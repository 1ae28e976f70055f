#include "script/ScriptRunner.h"

#include <algorithm>
#include <cctype>
#include <system_error>

#include "core/Host.h"
#include "core/TextUtil.h"
#include "editor/DocumentFile.h"
#include "editor/ProgramDocument.h"
#include "script/ScriptApi.h"

namespace zemtra {

namespace fs = std::filesystem;

namespace {

constexpr std::string_view kTitle = "Zemtra";

void ShowFailure(const ScriptOutcome& outcome, Host& host) {
  if (outcome.ok() || outcome.kind == ScriptOutcome::Kind::Refused) return;
  host.ask(Prompt{"Error in Script:\r\n" + outcome.Report(), std::string(kTitle), MsgIcon::Stop,
                  MsgButtons::Ok});
}

bool IsIdentifierChar(char c) {
  return std::isalnum(static_cast<unsigned char>(c)) != 0 || c == '_' || c == '$';
}

// The ZMT function of that name without regard to case; "" when there is none.
std::string_view ZmtFunctionNamed(std::string_view name) {
  for (std::string_view candidate : ScriptApi::FunctionNames()) {
    if (EqualsNoCase(candidate, name)) return candidate;
  }
  return {};
}

}  // namespace

std::string StatementAsCall(std::string_view statement) {
  const std::string text = TrimText(statement);
  std::size_t end = 0;
  while (end < text.size() && IsIdentifierChar(text[end])) ++end;
  const std::string_view function = ZmtFunctionNamed(std::string_view(text).substr(0, end));
  if (function.empty()) return text;
  std::string rest = TrimText(std::string_view(text).substr(end));
  while (!rest.empty() && rest.back() == ';') rest = TrimText(rest.substr(0, rest.size() - 1));
  // Already a call, or something else than arguments (an assignment, a member, an operator).
  if (!rest.empty() &&
      std::string_view("(=.[+-*/%<>!&|?,:").find(rest.front()) != std::string_view::npos) {
    return std::string(function) + rest;
  }
  return std::string(function) + "(" + rest + ")";
}

ScriptOutcome ExecuteStatement(const std::string& statement, ScriptHost& scripts, Host& host) {
  const ScriptOutcome outcome = scripts.Execute(StatementAsCall(statement), "directive");
  ShowFailure(outcome, host);
  return outcome;
}

void RunHeaderDirectives(const std::vector<std::string>& directives, ScriptHost& scripts,
                         Host& host) {
  for (const std::string& directive : directives) ExecuteStatement(directive, scripts, host);
}

ScriptOutcome RunScript(const std::string& path, ScriptHost& scripts, Host& host,
                        ProgramDocument& document, const fs::path& scriptFolder) {
  std::string file = path;
  if (file.empty()) {
    file = host.chooseFile(kScriptDialogTitle, scriptFolder.string(), kScriptDialogFilter);
    if (file.empty()) return {ScriptOutcome::Kind::Refused, 0, {}, {}};
  }
  std::error_code missing;
  if (!fs::is_regular_file(file, missing)) {
    host.ask(Prompt{"Path not found:\r\n" + file, std::string(kTitle), MsgIcon::Exclamation,
                    MsgButtons::Ok});
    return {ScriptOutcome::Kind::Refused, 0, {}, {}};
  }
  std::string source;
  FileError error;
  if (!ReadFileBytes(file, source, error)) {
    ScriptOutcome failed{ScriptOutcome::Kind::Failed, 0, error.text, {}};
    ShowFailure(failed, host);
    return failed;
  }
  document.SetSelLength(0);
  const ScriptOutcome outcome = scripts.Execute(source, file);
  ShowFailure(outcome, host);
  return outcome;
}

std::vector<fs::path> ListScripts(const fs::path& folder) {
  std::vector<fs::path> scripts;
  std::error_code error;
  for (fs::directory_iterator it(folder, error), end; !error && it != end; it.increment(error)) {
    std::error_code kindError;
    if (it->is_regular_file(kindError) && EndsWithNoCase(it->path().filename().string(), ".js")) {
      scripts.push_back(it->path());
    }
  }
  std::sort(scripts.begin(), scripts.end(), [](const fs::path& a, const fs::path& b) {
    return ToLowerAscii(a.filename().string()) < ToLowerAscii(b.filename().string());
  });
  return scripts;
}

std::string ScriptCaption(const fs::path& script) {
  return ProperCase(script.stem().string());
}

}  // namespace zemtra
