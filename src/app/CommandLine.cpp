#include "app/CommandLine.h"

#include <system_error>

#include "core/AppFolder.h"
#include "core/TextUtil.h"

namespace zemtra {

namespace fs = std::filesystem;

namespace {

constexpr std::string_view kConfigClause = "CONFIG=";

std::string QuoteConfigClause(const std::string& argument) {
  if (!StartsWithNoCase(argument, kConfigClause)) return argument;
  const std::string value = argument.substr(kConfigClause.size());
  if (value.find('"') != std::string::npos) return argument;
  return argument.substr(0, kConfigClause.size()) + '"' + value + '"';
}

std::string AbsoluteIfFile(const std::string& argument, const fs::path& workingFolder) {
  const fs::path path(argument);
  if (argument.empty() || path.is_absolute()) return argument;
  std::error_code error;
  const fs::path full = workingFolder / path;
  if (!fs::is_regular_file(full, error)) return argument;
  return full.lexically_normal().string();
}

}  // namespace

std::string CommandLineFromArguments(const std::vector<std::string>& arguments,
                                     const fs::path& workingFolder) {
  std::string line;
  for (const std::string& argument : arguments) {
    if (!line.empty()) line += ' ';
    line += StartsWithNoCase(argument, kConfigClause) ? QuoteConfigClause(argument)
                                                      : AbsoluteIfFile(argument, workingFolder);
  }
  return line;
}

std::string ParseConfigArgument(std::string& commandArgument, const fs::path& applicationFolder) {
  const std::string upper = ToUpperAscii(commandArgument);
  const std::size_t clause = upper.find(kConfigClause);
  if (clause == std::string::npos) return {};
  const std::size_t quote = commandArgument.find('"', clause + kConfigClause.size());
  if (quote == std::string::npos || commandArgument.size() - quote < 2) return {};
  const std::string rest = commandArgument.substr(quote + 1);
  const std::size_t closing = rest.find('"');
  const std::string name = rest.substr(0, closing);
  commandArgument =
      closing == std::string::npos ? std::string() : TrimText(rest.substr(closing + 1));
  return FindPathNoCase(applicationFolder, "Config/" + name + ".zmt").string();
}

std::string PassedFileName(const std::string& commandArgument) {
  if (commandArgument.size() <= 1) return {};
  std::string name;
  for (const char c : TrimText(commandArgument)) {
    if (c != '"') name += c;
  }
  return name;
}

std::string HandedOverFileName(const std::string& received) {
  if (received.empty() || received.front() != '"') return received;
  if (received.size() < 2) return {};
  return received.substr(1, received.size() - 2);
}

}  // namespace zemtra
