#include "cli/TextCommand.h"

#include <array>
#include <charconv>
#include <cmath>
#include <filesystem>
#include <fstream>
#include <memory>
#include <optional>
#include <ostream>
#include <string>
#include <string_view>

#include "cli/Args.h"
#include "cli/CliHost.h"
#include "text/FontFace.h"
#include "text/TextConverter.h"

namespace zemtra {

namespace {

constexpr std::array kTextOptions = {
    OptionSpec{"--font", "NAME", "font family (default Arial)"},
    OptionSpec{"--bold", "", "bold face"},
    OptionSpec{"--italic", "", "italic face"},
    OptionSpec{"--height", "H", "height of the tallest character (default 1)"},
    OptionSpec{"--x", "X", "X of the reference point, or of the arc's centre (default 0)"},
    OptionSpec{"--y", "Y", "Y of the reference point, or of the arc's centre (default 0)"},
    OptionSpec{"--angle", "A", "angle of the base line in degrees (default 0)"},
    OptionSpec{"--justify", "0-8",
               "reference point: 0 1 2 left, centre, right of the base line; 3 4 5 at half\n"
               "                    the height; 6 7 8 at the top (default 0)"},
    OptionSpec{"--on-arc", "", "lay the text clockwise on an arc round (X, Y)"},
    OptionSpec{"--radius", "R", "radius of the arc (default 10)"},
    OptionSpec{"--start-angle", "A", "angle of the reference point on the arc (default 0)"},
    OptionSpec{"--z-retract", "V", "Z of the rapid moves (default 10)"},
    OptionSpec{"--z-approach", "V", "Z of the rapid approach before the plunge (default 1)"},
    OptionSpec{"--z-depth", "V", "Z of the cut (default 0)"},
    OptionSpec{"--feed", "V", "feedrate of the cut (default 10)"},
    OptionSpec{"-o", "OUT", "write the program to OUT instead of stdout"},
};

constexpr CommandSyntax kTextSyntax{
    "text",
    "STRING [options]",
    "Writes an engraving program for STRING in an installed TrueType font: for each closed\n"
    "contour of each character a rapid to its start, a plunge, the contour and a retract.\n"
    "Lines end in CR LF.",
    kTextOptions,
    1,
    1};

// A number option; `error` names the option when its value is not a number.
std::optional<double> NumberOption(const Args& parsed, std::string_view name, double fallback,
                                   std::string& error) {
  const std::optional<std::string> text = parsed.value(name);
  if (!text) return fallback;
  double number = 0;
  const char* begin = text->data();
  const char* end = begin + text->size();
  if (begin != end && *begin == '+') ++begin;
  const auto [stop, status] = std::from_chars(begin, end, number);
  if (begin == end || status != std::errc() || stop != end || !std::isfinite(number)) {
    error = std::string(name) + " needs a number, not '" + *text + "'";
    return std::nullopt;
  }
  return number;
}

struct NumberField {
  std::string_view option;
  double* target;
};

// The placement and cutting values of the command line.
struct ConversionOptions {
  TextPlacement place;
  double zRetract = 10;
  double zApproach = 1;
  double zDepth = 0;
  double feedrate = 10;

  void ApplyTo(TextConverter& converter) const {
    converter.Placement = place;
    converter.TextZRetract = zRetract;
    converter.TextZApproach = zApproach;
    converter.TextZDepth = zDepth;
    converter.TextFeedrate = feedrate;
  }
};

// Reads the placement and cutting values; returns an error text, or "".
std::string ReadConversionOptions(const Args& parsed, ConversionOptions& options) {
  TextPlacement& place = options.place;
  const NumberField fields[] = {
      {"--height", &place.TextHeight},    {"--x", &place.XLocation},
      {"--y", &place.YLocation},          {"--angle", &place.TextAngle},
      {"--radius", &place.Radius},        {"--start-angle", &place.StartAngle},
      {"--z-retract", &options.zRetract}, {"--z-approach", &options.zApproach},
      {"--z-depth", &options.zDepth},     {"--feed", &options.feedrate},
  };
  std::string error;
  for (const NumberField& field : fields) {
    const std::optional<double> number = NumberOption(parsed, field.option, *field.target, error);
    if (!number) return error;
    *field.target = *number;
  }
  const std::optional<std::int64_t> justify = parsed.intValue("--justify", 0, 8, 0, error);
  if (!justify) return error;
  place.Justify = static_cast<int>(*justify);
  place.OnArc = parsed.has("--on-arc");
  return {};
}

FontRequest ReadFontOptions(const Args& parsed) {
  FontRequest request;
  request.family = parsed.valueOr("--font", request.family);
  request.bold = parsed.has("--bold");
  request.italic = parsed.has("--italic");
  return request;
}

// Writes beside the target and renames over it, so a failed run leaves no half file.
bool WriteProgramFile(const std::string& path, const std::string& program) {
  namespace fs = std::filesystem;
  const fs::path target(path);
  fs::path scratch = target;
  scratch += ".tmp~";
  {
    std::ofstream file(scratch, std::ios::binary | std::ios::trunc);
    if (!file) return false;
    file.write(program.data(), static_cast<std::streamsize>(program.size()));
    if (!file.flush()) return false;
  }
  std::error_code code;
  fs::rename(scratch, target, code);
  if (code) fs::remove(scratch, code);
  return !code;
}

}  // namespace

int RunTextCommand(const std::vector<std::string>& args, std::ostream& out, std::ostream& err) {
  Args parsed;
  if (const ParseOutcome outcome = ParseArgs(kTextSyntax, args, parsed, out, err);
      outcome != ParseOutcome::Run) {
    return outcome == ParseOutcome::Help ? kExitDone : kExitUsage;
  }
  ConversionOptions options;
  if (const std::string error = ReadConversionOptions(parsed, options); !error.empty()) {
    return UsageError("text", error, err);
  }
  std::string error;
  const std::unique_ptr<FontFace> font = FontFace::Open(ReadFontOptions(parsed), error);
  if (!font) {
    err << "zemtra-cli text: " << error << "\n";
    return kExitUsage;
  }
  CliHost host(err);
  TextConverter converter(*font, host);
  options.ApplyTo(converter);
  const std::optional<std::string> program = converter.ConvertText(parsed.positionals().front());
  if (!program) return kExitStopped;
  const std::optional<std::string> outPath = parsed.value("-o");
  if (!outPath || *outPath == "-") {
    out << *program;
    return kExitDone;
  }
  if (!WriteProgramFile(*outPath, *program)) {
    err << "zemtra-cli text: cannot write " << *outPath << "\n";
    return kExitUsage;
  }
  return kExitDone;
}

}  // namespace zemtra
