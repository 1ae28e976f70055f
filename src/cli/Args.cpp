#include "cli/Args.h"

#include <algorithm>
#include <charconv>
#include <ostream>

namespace zemtra {

namespace {

const OptionSpec* FindOption(const CommandSyntax& syntax, std::string_view name) {
  const auto found = std::find_if(syntax.options.begin(), syntax.options.end(),
                                  [&](const OptionSpec& option) { return option.name == name; });
  return found == syntax.options.end() ? nullptr : &*found;
}

std::string Quoted(std::string_view text) {
  return "'" + std::string(text) + "'";
}

// Handles one argument that starts with "-"; `next` is the index of the argument after it and
// moves on when the option takes that one as its value. Returns an error text, or "" when fine.
std::string TakeOption(const CommandSyntax& syntax, const std::vector<std::string>& arguments,
                       std::size_t& next, Args& parsed) {
  const std::string_view argument = arguments[next - 1];
  const std::size_t equals = argument.find('=');
  const std::string_view name = argument.substr(0, equals);
  const OptionSpec* option = FindOption(syntax, name);
  if (option == nullptr) return "unknown option " + Quoted(name);
  if (option->valueName.empty()) {
    if (equals != std::string_view::npos) return "option " + Quoted(name) + " takes no value";
    parsed.addOption(name, "");
    return {};
  }
  if (equals != std::string_view::npos) {
    parsed.addOption(name, argument.substr(equals + 1));
    return {};
  }
  if (next >= arguments.size()) {
    return "option " + Quoted(name) + " needs a value (" + std::string(option->valueName) + ")";
  }
  parsed.addOption(name, arguments[next++]);
  return {};
}

std::string PositionalCountError(const CommandSyntax& syntax, std::size_t count) {
  if (static_cast<int>(count) < syntax.minPositionals) {
    return "missing argument: expected " + std::string(syntax.usage);
  }
  return "too many arguments: expected " + std::string(syntax.usage);
}

bool IsHelp(std::string_view argument) {
  return argument == "--help" || argument == "-h";
}

}  // namespace

void Args::addOption(std::string_view name, std::string_view value) {
  options_.emplace_back(std::string(name), std::string(value));
}

bool Args::has(std::string_view name) const {
  return std::any_of(options_.begin(), options_.end(),
                     [&](const auto& option) { return option.first == name; });
}

std::optional<std::string> Args::value(std::string_view name) const {
  const auto found = std::find_if(options_.rbegin(), options_.rend(),
                                  [&](const auto& option) { return option.first == name; });
  if (found == options_.rend()) return std::nullopt;
  return found->second;
}

std::string Args::valueOr(std::string_view name, std::string_view fallback) const {
  return value(name).value_or(std::string(fallback));
}

std::optional<std::int64_t> Args::intValue(std::string_view name, std::int64_t min,
                                           std::int64_t max, std::int64_t fallback,
                                           std::string& error) const {
  const std::optional<std::string> text = value(name);
  if (!text) return fallback;
  const std::optional<std::int64_t> number = ParseInteger(*text, min, max);
  if (!number) {
    error = std::string(name) + " needs a whole number from " + std::to_string(min) + " to " +
            std::to_string(max) + ", not " + Quoted(*text);
  }
  return number;
}

std::optional<std::int64_t> ParseInteger(std::string_view text, std::int64_t min,
                                         std::int64_t max) {
  if (!text.empty() && text.front() == '+') text.remove_prefix(1);
  if (text.empty() || text.front() == '+') return std::nullopt;
  std::int64_t number = 0;
  const auto [end, status] = std::from_chars(text.data(), text.data() + text.size(), number);
  if (status != std::errc() || end != text.data() + text.size()) return std::nullopt;
  if (number < min || number > max) return std::nullopt;
  return number;
}

ParseOutcome ParseArgs(const CommandSyntax& syntax, const std::vector<std::string>& arguments,
                       Args& parsed, std::ostream& out, std::ostream& err) {
  bool optionsEnded = false;
  for (std::size_t next = 0; next < arguments.size();) {
    const std::string& argument = arguments[next++];
    if (optionsEnded || argument.size() < 2 || argument.front() != '-') {
      parsed.addPositional(argument);
    } else if (argument == "--") {
      optionsEnded = true;
    } else if (IsHelp(argument)) {
      out << HelpText(syntax);
      return ParseOutcome::Help;
    } else if (std::string error = TakeOption(syntax, arguments, next, parsed); !error.empty()) {
      UsageError(syntax.command, error, err);
      return ParseOutcome::Error;
    }
  }
  const std::size_t count = parsed.positionals().size();
  const bool tooFew = static_cast<int>(count) < syntax.minPositionals;
  const bool tooMany =
      syntax.maxPositionals >= 0 && static_cast<int>(count) > syntax.maxPositionals;
  if (tooFew || tooMany) {
    UsageError(syntax.command, PositionalCountError(syntax, count), err);
    return ParseOutcome::Error;
  }
  return ParseOutcome::Run;
}

std::string HelpText(const CommandSyntax& syntax) {
  std::string text = "Usage: zemtra-cli " + std::string(syntax.command);
  if (!syntax.usage.empty()) text += " " + std::string(syntax.usage);
  text += "\n";
  if (!syntax.description.empty()) text += "\n" + std::string(syntax.description) + "\n";
  text += "\nOptions:\n";
  std::vector<std::string> left;
  left.push_back("--help");
  for (const OptionSpec& option : syntax.options) {
    std::string entry(option.name);
    if (!option.valueName.empty()) entry += " " + std::string(option.valueName);
    left.push_back(std::move(entry));
  }
  std::size_t width = 0;
  for (const std::string& entry : left) width = std::max(width, entry.size());
  const auto addLine = [&](const std::string& entry, std::string_view help) {
    text += "  " + entry + std::string(width - entry.size() + 3, ' ') + std::string(help) + "\n";
  };
  for (std::size_t i = 0; i < syntax.options.size(); ++i) {
    addLine(left[i + 1], syntax.options[i].help);
  }
  addLine(left[0], "print this help and exit");
  return text;
}

int UsageError(std::string_view command, std::string_view message, std::ostream& err) {
  const std::string prefix = "zemtra-cli" + (command.empty() ? "" : " " + std::string(command));
  err << prefix << ": " << message << "\nTry '" << prefix << " --help' for more information.\n";
  return kExitUsage;
}

}  // namespace zemtra
