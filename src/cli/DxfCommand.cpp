#include "cli/DxfCommand.h"

#include <array>
#include <cmath>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <memory>
#include <ostream>

#include "cli/Args.h"
#include "cli/CliHost.h"
#include "cli/ConfigArgument.h"
#include "cli/JsonWriter.h"
#include "config/ConfigFile.h"
#include "config/MachineConfig.h"
#include "core/AppFolder.h"
#include "core/GeometryTable.h"
#include "core/Host.h"
#include "core/NumberText.h"
#include "core/TextUtil.h"
#include "core/Version.h"
#include "dxf/DxfLayers.h"
#include "dxf/DxfReader.h"
#include "dxf/DxfWriter.h"
#include "dxf/GCodeGenerator.h"
#include "geom/Extents.h"
#include "geom/GeoSort.h"

namespace zemtra {

namespace {

namespace fs = std::filesystem;

constexpr double kDefaultJoinDistance = 0.003;

constexpr std::array kDxfOptions = {
    OptionSpec{"--config", "NAME|PATH",
               "machine configuration: a name in the CONFIG folder, or a file (default: default)"},
    OptionSpec{"--json", "", "print the layers and every entity as one JSON object"},
};

constexpr CommandSyntax kDxfSyntax{
    "dxf",
    "FILE [options]",
    "Reads the ENTITIES section of the DXF drawing FILE, layer by layer, and prints each\n"
    "layer's entity count and extents. On a lathe configuration the drawing's X becomes Z.",
    kDxfOptions,
    1,
    1};

constexpr std::array kDxf2GCodeOptions = {
    OptionSpec{"--layer", "NAME", "convert this layer (repeatable; default: every layer)"},
    OptionSpec{"--chain", "", "chain the entities of each layer before converting"},
    OptionSpec{"--sort", "", "sort the chains of each layer before converting"},
    OptionSpec{"--config", "NAME|PATH",
               "machine configuration: a name in the CONFIG folder, or a file (default: default)"},
    OptionSpec{"--join-distance", "D", "largest gap that still joins two ends (default 0.003)"},
    OptionSpec{"--z-retract", "V", "safe height"},
    OptionSpec{"--z-approach", "V", "height where the rapid approach ends"},
    OptionSpec{"--z-depth", "V", "cutting depth"},
    OptionSpec{"--feed", "V", "feed rate"},
    OptionSpec{"--plunge", "V", "plunge feed rate"},
    OptionSpec{"--z-top", "V", "top of the material, for depth steps"},
    OptionSpec{"--z-increment", "V", "depth per pass: steps down chain by chain (0: one pass)"},
    OptionSpec{"--header", "TEXT", "lines ahead of each layer's code (\\n between lines)"},
    OptionSpec{"--footer", "TEXT", "lines after each layer's code (\\n between lines)"},
    OptionSpec{"-o", "OUT", "write the program to OUT instead of standard output"},
};

constexpr CommandSyntax kDxf2GCodeSyntax{
    "dxf2gcode",
    "FILE [options]",
    "Reads the DXF drawing FILE and converts its layers, in order, into program text, each\n"
    "preceded by a \"(NAME)\" line. Heights, feeds, header and footer default to the\n"
    "configuration's [DXF OPTIONS]. Layers with depth steps must be chained (--chain).",
    kDxf2GCodeOptions,
    1,
    1};

// The machine record: the named configuration, or without a name the default one when it can
// be found (else an empty mill record). False when a named configuration cannot be read.
bool LoadMachineRecord(const std::string& command, const std::string& argument, Host& host,
                       MachineConfig& record, std::ostream& err) {
  std::string folderError;
  const fs::path folder = ApplicationFolder(&folderError);
  const fs::path path = ResolveConfigPath(argument, folder);
  std::error_code code;
  if (!fs::is_regular_file(path, code)) {
    if (argument.empty()) return true;
    err << "zemtra-cli " << command << ": configuration not found: " << path.string() << "\n";
    return false;
  }
  std::string text = path.string();
  std::vector<std::string> warnings;
  if (!LoadConfig(text, record, host, folder, &warnings)) {
    err << "zemtra-cli " << command << ": cannot read the configuration " << text << "\n";
    return false;
  }
  for (const std::string& warning : warnings) {
    err << "zemtra-cli " << command << ": " << text << ": " << warning << "\n";
  }
  return true;
}

std::string Number(double value) {
  return FormatNumberText(value, "0.0###");
}

void WriteLayerSummary(const GeometryTable& table, const DxfLayerTable& layers,
                       const std::string& file, std::ostream& out) {
  out << "File:     " << file << "\n";
  out << "Layers:   " << layers.Count() << "\n";
  out << "Entities: " << table.HighestIndex() << "\n";
  for (std::int32_t i = 1; i <= layers.Count(); ++i) {
    const ConvertParams& layer = layers[i];
    const std::int32_t count = layer.LastEntity - layer.FirstEntity + 1;
    out << "Layer " << layer.LayerName << ": " << count << " entities";
    bool any = false;
    GeoPoint low, high;
    for (std::int32_t e = layer.FirstEntity; e <= layer.LastEntity; ++e) {
      GeoPoint a, b;
      if (!EntityExtents(table[e], a, b)) continue;
      if (!any) low = a, high = b;
      low = {std::min(low.X, a.X), std::min(low.Y, a.Y), std::min(low.Z, a.Z), 0};
      high = {std::max(high.X, b.X), std::max(high.Y, b.Y), std::max(high.Z, b.Z), 0};
      any = true;
    }
    if (any) {
      out << ", X " << Number(low.X) << " to " << Number(high.X) << ", Y " << Number(low.Y)
          << " to " << Number(high.Y) << ", Z " << Number(low.Z) << " to " << Number(high.Z);
    }
    out << "\n";
  }
}

void WriteLayerJson(const GeometryTable& table, const DxfLayerTable& layers,
                    const std::string& file, std::ostream& out) {
  JsonWriter json(out);
  json.beginObject();
  json.key("file").stringValue(file);
  json.key("entity_count").intValue(table.HighestIndex());
  json.key("extents").beginObject();
  json.key("min").pointValue(table.GeoMin);
  json.key("max").pointValue(table.GeoMax);
  json.endObject();
  json.key("layers").beginArray();
  for (std::int32_t i = 1; i <= layers.Count(); ++i) {
    json.beginObject();
    json.key("name").stringValue(layers[i].LayerName);
    json.key("first").intValue(layers[i].FirstEntity);
    json.key("last").intValue(layers[i].LastEntity);
    json.endObject();
  }
  json.endArray();
  json.key("entities").beginArray();
  for (std::int32_t i = 1; i <= table.HighestIndex(); ++i) {
    WriteEntityJson(json, table[i]);
  }
  json.endArray();
  json.endObject();
  json.finish();
}

// Reads the drawing with the machine record; 0 or a usage exit status.
int ReadDrawing(const std::string& command, const std::string& file, const MachineConfig& config,
                GeometryTable& table, DxfLayerTable& layers, Host& host, std::ostream& err) {
  std::string error;
  if (!LoadDXF(file, config, table, layers, host, error)) {
    err << "zemtra-cli " << command << ": cannot read " << file << ": " << error << "\n";
    return kExitUsage;
  }
  return kExitDone;
}

// Every value given for a repeatable option, in order.
std::vector<std::string> AllValues(const std::vector<std::string>& args, std::string_view name) {
  std::vector<std::string> values;
  const std::string prefix = std::string(name) + "=";
  for (std::size_t k = 0; k < args.size(); ++k) {
    if (args[k] == "--") break;
    if (args[k] == name && k + 1 < args.size()) values.push_back(args[++k]);
    if (args[k].starts_with(prefix)) values.push_back(args[k].substr(prefix.size()));
  }
  return values;
}

// "\n" (typed or real) between lines becomes the program's CR LF, with one at the end.
std::string ProgramLines(const std::string& text) {
  std::string lines;
  for (std::size_t k = 0; k < text.size(); ++k) {
    if (text[k] == '\\' && k + 1 < text.size() && text[k + 1] == 'n') {
      lines += "\r\n";
      ++k;
    } else if (text[k] == '\n') {
      lines += "\r\n";
    } else if (text[k] != '\r') {
      lines += text[k];
    }
  }
  if (!lines.empty() && !lines.ends_with("\r\n")) lines += "\r\n";
  return lines;
}

// A number option: true when absent or a number; `value` set when given.
bool NumberOption(const Args& parsed, std::string_view name, double& value, std::ostream& err) {
  const std::optional<std::string> text = parsed.value(name);
  if (!text) return true;
  const std::string trimmed = TrimText(*text);
  char* end = nullptr;
  const double number = std::strtod(trimmed.c_str(), &end);
  if (trimmed.empty() || end == nullptr || *end != '\0' || !std::isfinite(number)) {
    UsageError("dxf2gcode", std::string(name) + " needs a number: '" + *text + "'", err);
    return false;
  }
  value = number;
  return true;
}

// The command-line values laid over a layer's settings.
struct LayerOverrides {
  ConvertParams values;
  bool retract = false, approach = false, depth = false, feed = false, plunge = false, top = false,
       increment = false, header = false, footer = false;

  void Apply(ConvertParams& p) const {
    if (retract) p.ZRetract = values.ZRetract;
    if (approach) p.ZApproach = values.ZApproach;
    if (depth) p.ZDepth = values.ZDepth;
    if (feed) p.FeedRate = values.FeedRate;
    if (plunge) p.PlungeRate = values.PlungeRate;
    if (top) p.ZTop = values.ZTop;
    if (increment) {
      p.ZIncrement = values.ZIncrement;
      p.EnableZIncrement = values.ZIncrement != 0 ? -1 : 0;
    }
    if (header) p.Header = values.Header;
    if (footer) p.Footer = values.Footer;
  }
};

bool ReadOverrides(const Args& parsed, LayerOverrides& o, std::ostream& err) {
  struct NumberField {
    std::string_view name;
    double ConvertParams::*field;
    bool LayerOverrides::*given;
  };
  static constexpr std::array kFields = {
      NumberField{"--z-retract", &ConvertParams::ZRetract, &LayerOverrides::retract},
      NumberField{"--z-approach", &ConvertParams::ZApproach, &LayerOverrides::approach},
      NumberField{"--z-depth", &ConvertParams::ZDepth, &LayerOverrides::depth},
      NumberField{"--feed", &ConvertParams::FeedRate, &LayerOverrides::feed},
      NumberField{"--plunge", &ConvertParams::PlungeRate, &LayerOverrides::plunge},
      NumberField{"--z-top", &ConvertParams::ZTop, &LayerOverrides::top},
      NumberField{"--z-increment", &ConvertParams::ZIncrement, &LayerOverrides::increment},
  };
  for (const NumberField& f : kFields) {
    if (!NumberOption(parsed, f.name, o.values.*f.field, err)) return false;
    o.*f.given = parsed.has(f.name);
  }
  o.header = parsed.has("--header");
  o.footer = parsed.has("--footer");
  o.values.Header = ProgramLines(parsed.valueOr("--header", ""));
  o.values.Footer = ProgramLines(parsed.valueOr("--footer", ""));
  return true;
}

// The layers to convert, by name in the order given, or all of them.
bool ChosenLayers(const std::vector<std::string>& names, const DxfLayerTable& layers,
                  std::vector<std::int32_t>& chosen, std::ostream& err) {
  if (names.empty()) {
    for (std::int32_t i = 1; i <= layers.Count(); ++i) chosen.push_back(i);
    return true;
  }
  for (const std::string& name : names) {
    const std::int32_t index = layers.LayerIndex(ToUpperAscii(name));
    if (index == 0) {
      UsageError("dxf2gcode", "no layer named '" + name + "' in the drawing", err);
      return false;
    }
    chosen.push_back(index);
  }
  return true;
}

// Layers with depth steps need chains; the first that has none stops the conversion.
bool CheckChained(const std::vector<std::int32_t>& chosen, const DxfLayerTable& layers,
                  bool chained, Host& host) {
  if (chained) return true;
  for (std::int32_t index : chosen) {
    if (layers[index].EnableZIncrement == 0) continue;
    host.ask(Prompt{"Z Increment is enabled on layer " + layers[index].LayerName +
                        "\r\nThe layer must be chained before converting to G-Code",
                    kProductName, MsgIcon::Exclamation, MsgButtons::Ok});
    return false;
  }
  return true;
}

bool WriteOutput(const std::string& path, const std::string& text, std::ostream& out,
                 std::ostream& err) {
  if (path.empty() || path == "-") {
    out << text;
    return true;
  }
  std::string error;
  if (!WriteDxfFile(path, text, error)) {
    err << "zemtra-cli dxf2gcode: " << error << "\n";
    return false;
  }
  return true;
}

}  // namespace

int RunDxfCommand(const std::vector<std::string>& args, std::ostream& out, std::ostream& err) {
  Args parsed;
  if (const ParseOutcome outcome = ParseArgs(kDxfSyntax, args, parsed, out, err);
      outcome != ParseOutcome::Run) {
    return outcome == ParseOutcome::Help ? kExitDone : kExitUsage;
  }
  CliHost host(err);
  MachineConfig config;
  if (!LoadMachineRecord("dxf", parsed.valueOr("--config", ""), host, config, err)) {
    return kExitUsage;
  }
  const std::string file = parsed.positionals().front();
  auto table = std::make_unique<GeometryTable>();
  DxfLayerTable layers;
  if (const int status = ReadDrawing("dxf", file, config, *table, layers, host, err)) {
    return status;
  }
  if (parsed.has("--json")) {
    WriteLayerJson(*table, layers, file, out);
  } else {
    WriteLayerSummary(*table, layers, file, out);
  }
  return host.abortRequested() ? kExitStopped : kExitDone;
}

int RunDxf2GCodeCommand(const std::vector<std::string>& args, std::ostream& out,
                        std::ostream& err) {
  Args parsed;
  if (const ParseOutcome outcome = ParseArgs(kDxf2GCodeSyntax, args, parsed, out, err);
      outcome != ParseOutcome::Run) {
    return outcome == ParseOutcome::Help ? kExitDone : kExitUsage;
  }
  LayerOverrides overrides;
  double joinDistance = kDefaultJoinDistance;
  if (!ReadOverrides(parsed, overrides, err) ||
      !NumberOption(parsed, "--join-distance", joinDistance, err)) {
    return kExitUsage;
  }
  CliHost host(err);
  MachineConfig config;
  if (!LoadMachineRecord("dxf2gcode", parsed.valueOr("--config", ""), host, config, err)) {
    return kExitUsage;
  }
  const std::string file = parsed.positionals().front();
  auto table = std::make_unique<GeometryTable>();
  DxfLayerTable layers;
  if (const int status = ReadDrawing("dxf2gcode", file, config, *table, layers, host, err)) {
    return status;
  }
  std::vector<std::int32_t> chosen;
  if (!ChosenLayers(AllValues(args, "--layer"), layers, chosen, err)) return kExitUsage;
  for (std::int32_t index : chosen) overrides.Apply(layers[index]);
  GeoSort sorter(host);
  sorter.DXFMaxJoinDistance = joinDistance;
  for (std::int32_t index : chosen) {
    const ConvertParams& layer = layers[index];
    if (parsed.has("--chain")) sorter.ChainGeometry(*table, layer.FirstEntity, layer.LastEntity);
    if (parsed.has("--sort")) {
      sorter.SortGeometry(*table, layer.FirstEntity, layer.LastEntity, GeoPoint{}, false);
    }
  }
  if (!CheckChained(chosen, layers, parsed.has("--chain"), host)) return kExitStopped;
  const GCodeOptions options = GCodeOptionsFor(config, joinDistance);
  std::string program;
  for (std::size_t k = 0; k < chosen.size(); ++k) {
    const ConvertParams& layer = layers[chosen[k]];
    program += "(" + layer.LayerName + ")" + options.eol;
    program += GeometryToGCode(*table, layer, k + 1 < chosen.size(), options);
  }
  if (!WriteOutput(parsed.valueOr("-o", ""), program, out, err)) return kExitUsage;
  return kExitDone;
}

int ExportPlotAsDxf(const GeometryTable& table, std::int32_t count, bool lathe,
                    const std::string& path, Host& host, std::ostream& err) {
  if (count < 1) {
    host.ask(Prompt{"Nothing to export!", kProductName, MsgIcon::Exclamation, MsgButtons::Ok});
    return kExitStopped;
  }
  DxfWriteOptions options;
  options.lathe = lathe;
  std::string error;
  if (!WriteDxfFile(path, ExportGeometryAsDXF(table, 1, count, options), error)) {
    err << "zemtra-cli plot: " << error << "\n";
    return kExitUsage;
  }
  return kExitDone;
}

}  // namespace zemtra
