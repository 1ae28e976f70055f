#include "cli/FilterCommand.h"

#include <array>
#include <charconv>
#include <filesystem>
#include <optional>
#include <ostream>
#include <string>
#include <string_view>

#include "cli/Args.h"
#include "cli/CliHost.h"
#include "cli/ConfigArgument.h"
#include "cli/Interrupt.h"
#include "config/ConfigFile.h"
#include "config/MachineConfig.h"
#include "core/AppFolder.h"
#include "core/DisplayFormats.h"
#include "core/TextUtil.h"
#include "editor/DocumentFile.h"
#include "editor/FormatProgram.h"
#include "editor/RenumberProgram.h"

namespace zemtra {
namespace {

namespace fs = std::filesystem;

enum class FilterKind { Format, Translate, Garbage, Renumber };

struct FilterEntry {
  std::string_view name;
  FilterKind kind;
  int code;
  std::string_view options;  // as --list shows them
};

constexpr std::array<FilterEntry, 30> kFilters = {{
    {"add-spaces", FilterKind::Format, FormatCode::kAddSpaces, ""},
    {"remove-spaces", FilterKind::Format, FormatCode::kRemoveSpaces, ""},
    {"caps", FilterKind::Format, FormatCode::kCaps, ""},
    {"remove-redundant", FilterKind::Format, FormatCode::kRemoveRedundant, ""},
    {"remove-blank-lines", FilterKind::Format, FormatCode::kRemoveBlankLines, ""},
    {"remove-comments", FilterKind::Format, FormatCode::kRemoveComments, ""},
    {"add-comment-chars", FilterKind::Format, FormatCode::kAddCommentChars, ""},
    {"remove-comment-chars", FilterKind::Format, FormatCode::kRemoveCommentChars, ""},
    {"remove-trailing-spaces", FilterKind::Format, FormatCode::kRemoveTrailingSpaces, ""},
    {"remove-control-chars", FilterKind::Format, FormatCode::kRemoveControlChars, ""},
    {"adjust-addresses", FilterKind::Format, FormatCode::kAdjustAddresses,
     "--letters L --op add|subtract|multiply|divide --value V --format F"},
    {"replace-address", FilterKind::Format, FormatCode::kReplaceAddress, "--find L --with L"},
    {"remove-addresses", FilterKind::Format, FormatCode::kRemoveAddresses, "--letters L"},
    {"add-block-skip", FilterKind::Format, FormatCode::kAddBlockSkip, ""},
    {"remove-block-skip", FilterKind::Format, FormatCode::kRemoveBlockSkip, ""},
    {"remove-colinear", FilterKind::Format, FormatCode::kRemoveColinear, ""},
    {"swap-addresses", FilterKind::Format, FormatCode::kSwapAddresses, "--first L --second L"},
    {"break-arcs", FilterKind::Format, FormatCode::kBreakArcs, "[--tolerance T]"},
    {"custom-filter-1", FilterKind::Format, FormatCode::kCustomFilter1, ""},
    {"custom-filter-2", FilterKind::Format, FormatCode::kCustomFilter2,
     "--approach A --feed-mult M"},
    {"remove-garbage", FilterKind::Garbage, 0, ""},
    {"mirror", FilterKind::Translate, TranslateCode::kMirror, "[--x P] [--y P] [--z P]"},
    {"rotate", FilterKind::Translate, TranslateCode::kRotate, "[--x C] [--y C] --angle A"},
    {"shift", FilterKind::Translate, TranslateCode::kShift, "[--x D] [--y D] [--z D]"},
    {"scale", FilterKind::Translate, TranslateCode::kScale,
     "[--x C] [--y C] [--factor F] [--inch|--metric]"},
    {"arcs-to-ijk", FilterKind::Translate, TranslateCode::kArcsToIJK, ""},
    {"arcs-to-r", FilterKind::Translate, TranslateCode::kArcsToR, ""},
    {"arcs-absolute", FilterKind::Translate, TranslateCode::kArcsAbsolute, ""},
    {"arcs-incremental", FilterKind::Translate, TranslateCode::kArcsIncremental, ""},
    {"renumber", FilterKind::Renumber, 0,
     "[--start N] [--increment N] [--digits N] [--mode remove|all|all-but-blank|referenced] "
     "[--space]"},
}};

constexpr OptionSpec kFilterOptions[] = {
    {"--list", "", "name the filters with their options"},
    {"-o", "OUT", "write the result to OUT (default: standard output)"},
    {"--config", "NAME|PATH", "machine configuration (default: CONFIG/default.zmt)"},
    {"--precision", "N", "display precision, 3 to 6 decimals of rewritten numbers (default 4)"},
    {"--letters", "L", "address letters to adjust or remove"},
    {"--op", "OP", "adjustment: add, subtract, multiply or divide"},
    {"--value", "V", "adjustment operand"},
    {"--format", "F", "number format of adjusted values, such as 0.000"},
    {"--find", "L", "address letter to replace"},
    {"--with", "L", "address letter that replaces it"},
    {"--first", "L", "first address letter to swap"},
    {"--second", "L", "second address letter to swap"},
    {"--tolerance", "T", "largest distance of a chord from its arc (default 0.001)"},
    {"--approach", "A", "approach distance of custom-filter-2"},
    {"--feed-mult", "M", "feed multiplier of custom-filter-2"},
    {"--x", "V", "X mirror point, rotation or scale centre, or shift"},
    {"--y", "V", "Y mirror point, rotation or scale centre, or shift"},
    {"--z", "V", "Z mirror point or shift"},
    {"--angle", "A", "rotation angle in degrees, counter-clockwise"},
    {"--factor", "F", "scale factor"},
    {"--inch", "", "scale metric to inch: factor and feeds 1/25.4"},
    {"--metric", "", "scale inch to metric: factor and feeds 25.4"},
    {"--start", "N", "first block number (default 10)"},
    {"--increment", "N", "step between block numbers (default 10)"},
    {"--digits", "N", "most digits of a block number, 2 to 6 (default 5)"},
    {"--mode", "MODE", "renumber: remove, all, all-but-blank or referenced (default all)"},
    {"--space", "", "a blank behind each new block number"},
};

constexpr CommandSyntax kFilterSyntax{
    "filter",
    "NAME [options] FILE [-o OUT] | --list",
    "Rewrites the program FILE with the filter NAME, as the Format and Translate menus do, and\n"
    "writes the result to OUT or to standard output. Rewritten numbers follow the display\n"
    "precision. Messages (such as arcs that could not be converted) go to stderr.",
    kFilterOptions,
    0,
    2};

const FilterEntry* FindFilter(std::string_view name) {
  for (const FilterEntry& entry : kFilters) {
    if (entry.name == name) return &entry;
  }
  return nullptr;
}

void WriteList(std::ostream& out) {
  for (const FilterEntry& entry : kFilters) {
    out << entry.name;
    if (!entry.options.empty()) out << " " << entry.options;
    out << "\n";
  }
}

std::optional<double> ParseNumber(std::string_view text) {
  text = text.substr(0, text.find_last_not_of(' ') + 1);
  if (!text.empty() && text.front() == '+') text.remove_prefix(1);
  double value = 0;
  const auto result = std::from_chars(text.data(), text.data() + text.size(), value);
  if (text.empty() || result.ec != std::errc() || result.ptr != text.data() + text.size())
    return std::nullopt;
  return value;
}

// Reads a numeric option into `target` when given; false (after a usage message) when bad.
template <typename T>
bool NumberOption(const Args& parsed, std::string_view name, T& target, std::ostream& err) {
  const auto text = parsed.value(name);
  if (!text) return true;
  const auto value = ParseNumber(*text);
  if (!value) {
    UsageError("filter", std::string(name) + " needs a number: '" + *text + "'", err);
    return false;
  }
  target = static_cast<T>(*value);
  return true;
}

// A letter option: one letter A to Z (any case), upper-cased.
bool LetterOption(const Args& parsed, std::string_view name, std::string& target, bool many,
                  std::ostream& err) {
  const std::string text = ToUpperAscii(parsed.valueOr(name, ""));
  bool good = !text.empty() && (many || text.size() == 1);
  for (char c : text) good = good && c >= 'A' && c <= 'Z';
  if (!good) {
    UsageError("filter",
               std::string(name) + (many ? " needs address letters" : " needs one letter"), err);
    return false;
  }
  target = text;
  return true;
}

bool AddressParameters(const FilterEntry& entry, const Args& parsed, FilterParameters& p,
                       std::ostream& err) {
  switch (entry.code) {
    case FormatCode::kAdjustAddresses: {
      if (!LetterOption(parsed, "--letters", p.AdjustAddresses, true, err)) return false;
      constexpr std::string_view kOperators[] = {"add", "subtract", "multiply", "divide"};
      const std::string op = parsed.valueOr("--op", "");
      p.AdjustOperator = -1;
      for (int i = 0; i < 4; ++i) {
        if (op == kOperators[i]) p.AdjustOperator = i;
      }
      if (p.AdjustOperator < 0) {
        UsageError("filter", "--op must be add, subtract, multiply or divide", err);
        return false;
      }
      p.AdjustFormat = parsed.valueOr("--format", "");
      if (!parsed.has("--value") || p.AdjustFormat.empty()) {
        UsageError("filter", "adjust-addresses needs --value and --format", err);
        return false;
      }
      if (!NumberOption(parsed, "--value", p.AdjustOperand, err)) return false;
      if (p.AdjustOperator == 3 && p.AdjustOperand == 0) {
        err << "Address Adjust - Can't divide by zero\n";
        return false;
      }
      return true;
    }
    case FormatCode::kReplaceAddress:
      if (!LetterOption(parsed, "--find", p.ReplaceFind, false, err) ||
          !LetterOption(parsed, "--with", p.ReplaceWith, false, err)) {
        return false;
      }
      if (p.ReplaceFind == p.ReplaceWith) {
        UsageError("filter", "The find and replace addresses are the same", err);
        return false;
      }
      return true;
    case FormatCode::kRemoveAddresses:
      return LetterOption(parsed, "--letters", p.RemoveAddresses, true, err);
    case FormatCode::kSwapAddresses:
      if (!LetterOption(parsed, "--first", p.SwapFirst, false, err) ||
          !LetterOption(parsed, "--second", p.SwapSecond, false, err)) {
        return false;
      }
      if (p.SwapFirst == p.SwapSecond) {
        UsageError("filter", "The swap addresses are the same", err);
        return false;
      }
      return true;
    default:
      return true;
  }
}

bool TranslateParameters(const FilterEntry& entry, const Args& parsed, FilterParameters& p,
                         std::ostream& err) {
  switch (entry.code) {
    case TranslateCode::kMirror:
      for (std::size_t axis = 0; axis < 3; ++axis) {
        const std::string name = std::string("--") + static_cast<char>('x' + axis);
        p.Mirror[axis] = parsed.has(name);
        if (!NumberOption(parsed, name, p.MirrorPoint[axis], err)) return false;
      }
      return true;
    case TranslateCode::kRotate:
      if (!parsed.has("--angle")) {
        UsageError("filter", "rotate needs --angle", err);
        return false;
      }
      return NumberOption(parsed, "--x", p.RotCenterX, err) &&
             NumberOption(parsed, "--y", p.RotCenterY, err) &&
             NumberOption(parsed, "--angle", p.RotAngle, err);
    case TranslateCode::kShift:
      return NumberOption(parsed, "--x", p.Shift[0], err) &&
             NumberOption(parsed, "--y", p.Shift[1], err) &&
             NumberOption(parsed, "--z", p.Shift[2], err);
    case TranslateCode::kScale:
      if (parsed.has("--inch") || parsed.has("--metric")) {
        p.SclFactor = parsed.has("--inch") ? 1 / 25.4 : 25.4;
        p.FeedFactor = p.SclFactor;
      }
      return NumberOption(parsed, "--x", p.SclCenterX, err) &&
             NumberOption(parsed, "--y", p.SclCenterY, err) &&
             NumberOption(parsed, "--factor", p.SclFactor, err);
    default:
      return true;
  }
}

bool FilterOptions(const FilterEntry& entry, const Args& parsed, FilterParameters& p,
                   std::ostream& err) {
  std::string error;
  const auto precision = parsed.intValue("--precision", 3, 6, 4, error);
  if (!precision) {
    UsageError("filter", error, err);
    return false;
  }
  p.ShortFormat = DisplayFormatsFor(static_cast<int>(*precision)).Short;
  if (entry.kind == FilterKind::Translate) return TranslateParameters(entry, parsed, p, err);
  if (!NumberOption(parsed, "--tolerance", p.BreakTolerance, err) ||
      !NumberOption(parsed, "--approach", p.Approach, err) ||
      !NumberOption(parsed, "--feed-mult", p.FeedMult, err)) {
    return false;
  }
  if (!(p.BreakTolerance > 0)) p.BreakTolerance = 0.001;
  return AddressParameters(entry, parsed, p, err);
}

// The machine configuration: the one named, or CONFIG/default.zmt of the application folder,
// or the built-in defaults when there is none and none was named.
bool LoadMachine(const std::string& argument, MachineConfig& config, CliHost& host,
                 std::ostream& err) {
  const fs::path folder = ApplicationFolderPath();
  const fs::path path = ResolveConfigPath(argument, folder);
  std::error_code code;
  if (!fs::is_regular_file(path, code)) {
    if (argument.empty()) {
      config.CoordinateResolution = 1;
      return true;
    }
    err << "zemtra-cli filter: configuration not found: " << path.string() << "\n";
    return false;
  }
  std::string pathText = path.string();
  if (!LoadConfig(pathText, config, host, folder)) {
    err << "zemtra-cli filter: cannot read the configuration " << pathText << "\n";
    return false;
  }
  return true;
}

bool RenumberParameters(const Args& parsed, RenumberOptions& options, std::ostream& err) {
  std::string error;
  const auto start = parsed.intValue("--start", 0, 999999, 10, error);
  const auto increment = start ? parsed.intValue("--increment", 0, 999999, 10, error) : start;
  const auto digits = increment ? parsed.intValue("--digits", 2, 6, 5, error) : increment;
  if (!digits) {
    UsageError("filter", error, err);
    return false;
  }
  constexpr std::string_view kModes[] = {"remove", "all", "all-but-blank", "referenced"};
  const std::string mode = parsed.valueOr("--mode", "all");
  options.Mode = -1;
  for (int i = 0; i < 4; ++i) {
    if (mode == kModes[i]) options.Mode = i;
  }
  if (options.Mode < 0) {
    UsageError("filter", "--mode must be remove, all, all-but-blank or referenced", err);
    return false;
  }
  options.Start = static_cast<std::int32_t>(*start);
  options.Increment = static_cast<std::int32_t>(*increment);
  options.MaxDigits = static_cast<int>(*digits);
  options.AddSpace = parsed.has("--space");
  return true;
}

FilterResult RunFilter(const FilterEntry& entry, std::string_view text, const MachineConfig& config,
                       const FilterParameters& parameters, const RenumberOptions& renumber,
                       Host& host) {
  FilterSession session(config, parameters);
  switch (entry.kind) {
    case FilterKind::Renumber:
      return RenumberProgram(text, renumber, config, host);
    case FilterKind::Garbage:
      return RemoveGarbage(text, host);
    case FilterKind::Translate:
      return TranslateProgram(entry.code, text, session, host);
    default:
      return FormatProgram(entry.code, text, session, host);
  }
}

int WriteResult(const std::string& text, const Args& parsed, std::ostream& out, std::ostream& err) {
  const std::string target = parsed.valueOr("-o", "");
  if (target.empty() || target == "-") {
    out << text;
    return kExitDone;
  }
  FileError error;
  if (!WriteFileAtomically(target, text, error)) {
    err << "zemtra-cli filter: cannot write " << target << "\n";
    return kExitUsage;
  }
  return kExitDone;
}

}  // namespace

int RunFilterCommand(const std::vector<std::string>& args, std::ostream& out, std::ostream& err) {
  Args parsed;
  const ParseOutcome outcome = ParseArgs(kFilterSyntax, args, parsed, out, err);
  if (outcome != ParseOutcome::Run) return outcome == ParseOutcome::Help ? kExitDone : kExitUsage;
  if (parsed.has("--list")) {
    WriteList(out);
    return kExitDone;
  }
  if (parsed.positionals().size() != 2) {
    return UsageError("filter", "expected a filter NAME and a FILE", err);
  }
  const FilterEntry* entry = FindFilter(parsed.positionals()[0]);
  if (entry == nullptr) {
    return UsageError("filter", "unknown filter '" + parsed.positionals()[0] + "' (see --list)",
                      err);
  }
  FilterParameters parameters;
  if (!FilterOptions(*entry, parsed, parameters, err)) return kExitUsage;
  RenumberOptions renumber;
  if (entry->kind == FilterKind::Renumber && !RenumberParameters(parsed, renumber, err))
    return kExitUsage;
  CliHost host(err);
  MachineConfig config;
  if (!LoadMachine(parsed.valueOr("--config", ""), config, host, err)) return kExitUsage;
  std::string text;
  FileError error;
  if (!ReadFileBytes(parsed.positionals()[1], text, error)) {
    err << "zemtra-cli filter: cannot read " << parsed.positionals()[1] << "\n";
    return kExitUsage;
  }
  InstallInterruptHandler();
  const FilterResult result = RunFilter(*entry, text, config, parameters, renumber, host);
  if (result.cancelled) {
    err << "zemtra-cli filter: interrupted; nothing written\n";
    return kExitStopped;
  }
  return WriteResult(result.text, parsed, out, err);
}

}  // namespace zemtra
