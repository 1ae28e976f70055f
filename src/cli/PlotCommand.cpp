#include "cli/PlotCommand.h"

#include <array>
#include <filesystem>
#include <memory>
#include <optional>
#include <ostream>
#include <string>

#include "cli/Args.h"
#include "cli/CliHost.h"
#include "cli/ConfigArgument.h"
#include "cli/DxfCommand.h"
#include "cli/IniSettingsStore.h"
#include "cli/JsonWriter.h"
#include "cli/PlotPicture.h"
#include "config/ConfigFile.h"
#include "config/MachineConfig.h"
#include "core/AppFolder.h"
#include "core/GeometryTable.h"
#include "core/NumberText.h"
#include "core/SettingsStore.h"
#include "core/TextUtil.h"
#include "interp/ConfigStatements.h"
#include "interp/Interpreter.h"
#include "interp/PlotDriver.h"
#include "interp/PlotPreferences.h"
#include "macro/Evaluator.h"
#include "macro/ProgramText.h"
#include "macro/SubprogramSettings.h"
#include "macro/VariableStore.h"
#include "view/Views.h"

namespace zemtra {

namespace {

namespace fs = std::filesystem;

constexpr std::int64_t kDefaultMaxBlocks = 100000000;

constexpr std::array kPlotOptions = {
    OptionSpec{"--config", "NAME|PATH",
               "machine configuration: a name in the CONFIG folder, or a file (default: default)"},
    OptionSpec{"--block-skip", "", "skip blocks that begin with \"/\""},
    OptionSpec{"--json", "", "print the whole result as one JSON object"},
    OptionSpec{"--max-blocks", "N", "stop after N blocks (default 100000000)"},
    OptionSpec{"--sub-path", "DIR",
               "folder searched for subprogram files O<number>[.ext] (default: the saved\n"
               "                       \"Default Path\" with --use-settings, else none)"},
    OptionSpec{"--use-settings", "",
               "use and keep the user's settings and variable state (default: start clean)"},
    OptionSpec{"--png", "OUT", "draw the tool path into the PNG picture OUT"},
    OptionSpec{"--svg", "OUT",
               "draw the tool path into the SVG picture OUT (\"-\": to stdout, instead of the "
               "summary)"},
    OptionSpec{"--view", "VIEW",
               "view of the pictures: top, bottom, front, back, right, left, iso,\n"
               "                       front-turret, back-turret, vertical-left, vertical-right,\n"
               "                       iso-mill, iso-lathe, or 0 to 11 (default: top, on a lathe\n"
               "                       front-turret; with --use-settings the saved view)"},
    OptionSpec{"--size", "WxH", "size of the pictures in pixels (default 800x600)"},
    OptionSpec{"--dxf", "OUT", "write the tool path, rapids left out, as the DXF drawing OUT"},
};

constexpr CommandSyntax kPlotSyntax{
    "plot",
    "FILE [options]",
    "Plots FILE as the interpreter reads it and prints the size of the tool path: entities,\n"
    "extents, rapid and feed distance, run time and arc errors. Messages the window would show\n"
    "are printed to stderr and answered with OK, or No where there is a No. With --png or\n"
    "--svg it also draws the tool path as the viewport shows it, zoomed to the part.",
    kPlotOptions,
    1,
    1};

struct PlotRequest {
  std::string file;
  std::string config;
  bool blockSkip = false;
  bool json = false;
  bool useSettings = false;
  std::optional<std::string> subPath;  // --sub-path
  std::int64_t maxBlocks = kDefaultMaxBlocks;
  PictureOptions picture;
  std::string viewName;  // resolved once the machine type is known
  std::string dxfPath;   // --dxf
};

// The engine objects of one plot, wired together.
struct PlotSession {
  explicit PlotSession(std::ostream& err)
      : host(err),
        evaluator(variables),
        interpreter(session.ActiveConfig, variables, evaluator, host),
        driver(interpreter, table, host) {}

  ConfigSession session;
  VariableStore variables;
  CliHost host;
  Evaluator evaluator;
  Interpreter interpreter;
  GeometryTable table;
  PlotDriver driver;
};

// The picture options: files, view and size; PNG only where the build can write it.
int ParsePictureOptions(const Args& parsed, std::ostream& err, PlotRequest& request, bool& done) {
  PictureOptions& picture = request.picture;
  picture.pngPath = parsed.valueOr("--png", "");
  picture.svgPath = parsed.valueOr("--svg", "");
  request.viewName = parsed.valueOr("--view", "");
  done = true;
  if (parsed.has("--png") && picture.pngPath.empty()) {
    return UsageError("plot", "--png needs a file name", err);
  }
  if (parsed.has("--svg") && picture.svgPath.empty()) {
    return UsageError("plot", "--svg needs a file name", err);
  }
  if (!request.viewName.empty() && ViewFromCommandName(request.viewName, 0) < 0) {
    return UsageError("plot", "unknown view '" + request.viewName + "'", err);
  }
  const std::string size = parsed.valueOr("--size", "");
  if (!size.empty() && !ParsePictureSize(size, picture.width, picture.height)) {
    return UsageError("plot", "--size must be WIDTHxHEIGHT, each 16 to 16384: '" + size + "'", err);
  }
  if (picture.svgPath == "-" && request.json) {
    return UsageError("plot", "--svg - and --json both write to standard output", err);
  }
  if (!picture.pngPath.empty() && !PngOutputAvailable()) {
    err << "zemtra-cli plot: PNG output is not available in this build\n";
    return kExitUsage;
  }
  done = false;
  return kExitDone;
}

int ParseRequest(const std::vector<std::string>& args, std::ostream& out, std::ostream& err,
                 PlotRequest& request, bool& done) {
  Args parsed;
  const ParseOutcome outcome = ParseArgs(kPlotSyntax, args, parsed, out, err);
  done = outcome != ParseOutcome::Run;
  if (done) return outcome == ParseOutcome::Help ? kExitDone : kExitUsage;
  request.file = parsed.positionals().front();
  request.config = parsed.valueOr("--config", "");
  request.blockSkip = parsed.has("--block-skip");
  request.json = parsed.has("--json");
  request.useSettings = parsed.has("--use-settings");
  request.dxfPath = parsed.valueOr("--dxf", "");
  if (parsed.has("--sub-path")) request.subPath = parsed.valueOr("--sub-path", "");
  std::string error;
  const auto maxBlocks = parsed.intValue("--max-blocks", 1, INT64_MAX, kDefaultMaxBlocks, error);
  if (!maxBlocks) {
    done = true;
    return UsageError("plot", error, err);
  }
  request.maxBlocks = *maxBlocks;
  return ParsePictureOptions(parsed, err, request, done);
}

bool LoadMachine(PlotSession& plot, const PlotRequest& request, std::ostream& err) {
  std::string folderError;
  const fs::path applicationFolder = ApplicationFolder(&folderError);
  const fs::path configPath = ResolveConfigPath(request.config, applicationFolder);
  std::error_code code;
  if (!fs::is_regular_file(configPath, code)) {
    err << "zemtra-cli plot: configuration not found: " << configPath.string() << "\n";
    if (!folderError.empty()) err << "zemtra-cli plot: " << folderError << "\n";
    return false;
  }
  std::string path = configPath.string();
  std::vector<std::string> warnings;
  if (!LoadConfig(path, plot.session.EditConfig, plot.host, applicationFolder, &warnings)) {
    err << "zemtra-cli plot: cannot read the configuration " << path << "\n";
    return false;
  }
  for (const std::string& warning : warnings)
    err << "zemtra-cli plot: " << path << ": " << warning << "\n";
  ApplyConfig(plot.session.EditConfig, plot.session, plot.host,
              ConfigStatementRunner(plot.evaluator, plot.variables));
  return true;
}

std::string Number(double value) {
  return FormatNumberText(value, "0.0###");
}

// A "True"/"False" setting whose default is true.
bool SettingOn(const SettingsStore& settings, const char* section, const char* key) {
  return !EqualsNoCase(TrimText(settings.GetSetting(section, key, "True")), "False");
}

void WriteSummary(const PlotSession& plot, const PlotRequest& request, std::ostream& out) {
  const GeometryTable& table = plot.table;
  const Interpreter& in = plot.interpreter;
  out << "File:          " << request.file << "\n";
  out << "Configuration: " << plot.session.ActiveConfig.ConfigPath << "\n";
  out << "Entities:      " << plot.driver.EntityCount() << "\n";
  constexpr const char* kAxes[] = {"X", "Y", "Z", "A"};
  const float mins[] = {table.GeoMin.X, table.GeoMin.Y, table.GeoMin.Z, table.GeoMin.A};
  const float maxs[] = {table.GeoMax.X, table.GeoMax.Y, table.GeoMax.Z, table.GeoMax.A};
  for (int axis = 0; axis < 4; ++axis) {
    out << "Extents " << kAxes[axis] << ":     " << Number(mins[axis]) << " to "
        << Number(maxs[axis]) << "\n";
  }
  out << "Rapid distance: " << Number(table.RapidDistance) << "\n";
  out << "Feed distance:  " << Number(table.FeedDistance) << "\n";
  out << "Run time:       " << Number(table.RunTime) << " seconds\n";
  out << "Arc errors:     " << in.ArcErrorCount << "\n";
  out << "Stopped by an error: " << (in.StoppedByError || plot.driver.Failed ? "yes" : "no")
      << "\n";
}

void WriteMessages(JsonWriter& json, const CliHost& host) {
  json.key("messages").beginArray();
  for (const CliHost::Message& message : host.messages()) {
    json.beginObject();
    json.key("title").stringValue(message.title);
    json.key("text").stringValue(message.text);
    json.key("icon").stringValue(IconName(message.icon));
    json.key("buttons").stringValue(ButtonsName(message.buttons));
    json.key("line").intValue(message.line);
    json.endObject();
  }
  json.endArray();
}

void WriteEntities(JsonWriter& json, const PlotSession& plot) {
  json.key("entities").beginArray();
  const std::int32_t count = plot.driver.EntityCount();
  for (std::int32_t i = 1; i <= count; ++i) {
    WriteEntityJson(json, plot.table[i]);
  }
  json.endArray();
}

void WriteJson(const PlotSession& plot, const PlotRequest& request, bool stopped,
               std::ostream& out) {
  const GeometryTable& table = plot.table;
  const Interpreter& in = plot.interpreter;
  JsonWriter json(out);
  json.beginObject();
  json.key("file").stringValue(request.file);
  json.key("config").stringValue(plot.session.ActiveConfig.ConfigPath);
  json.key("stopped_by_error").boolValue(stopped);
  WriteMessages(json, plot.host);
  json.key("entity_count").intValue(plot.driver.EntityCount());
  json.key("extents").beginObject();
  json.key("min").pointValue(table.GeoMin);
  json.key("max").pointValue(table.GeoMax);
  json.endObject();
  json.key("rapid_distance").doubleValue(table.RapidDistance);
  json.key("feed_distance").doubleValue(table.FeedDistance);
  json.key("run_time").doubleValue(table.RunTime);
  json.key("arc_error_count").intValue(in.ArcErrorCount);
  json.key("max_arc_deviation").doubleValue(in.MaxArcDeviation);
  WriteEntities(json, plot);
  json.endObject();
  json.finish();
}

// Subprogram files: the saved settings (with --use-settings), --sub-path for the default
// folder; cycle and G-code macro files in the application folder's CONFIG.
void PrepareCalls(PlotSession& plot, const SettingsStore& settings, const PlotRequest& request) {
  SubprogramSettings calls;
  if (request.useSettings) calls = LoadSubprogramSettings(settings);
  if (request.subPath) calls.DefaultSubPath = *request.subPath;
  plot.interpreter.SetSubprogramSettings(calls);
  plot.interpreter.SetMachineFolder(ApplicationFolder(nullptr).string());
}

// The user's settings file with --use-settings, else an empty store that nobody saves.
std::unique_ptr<SettingsStore> OpenSettings(const PlotRequest& request, std::ostream& err) {
  if (!request.useSettings) return std::make_unique<MemorySettingsStore>();
  auto settings = std::make_unique<IniSettingsStore>(IniSettingsStore::DefaultPath());
  std::string error;
  if (!settings->Load(&error)) err << "zemtra-cli plot: " << error << "; using defaults\n";
  return settings;
}

// Start-up as the desktop program does it: the saved variable state comes back (with
// --use-settings), then the position variables start at 0.
void PrepareVariables(PlotSession& plot, const SettingsStore& settings, bool useSettings) {
  if (useSettings && SettingOn(settings, "Preferences", "Save Variables on Exit")) {
    plot.variables.RestoreVariableState(settings);
  }
  for (int n = 5001; n <= 5060; ++n) plot.variables.WriteNumber(n, 0);
}

// With --use-settings the variable state is kept as the desktop program keeps it at exit.
void KeepVariables(PlotSession& plot, SettingsStore& settings, bool useSettings,
                   std::ostream& err) {
  if (!useSettings || !SettingOn(settings, "Preferences", "Save Variables on Exit")) return;
  plot.variables.SaveVariableState(settings);
  std::string error;
  if (!static_cast<IniSettingsStore&>(settings).Save(&error)) {
    err << "zemtra-cli plot: " << error << "\n";
  }
}

// Draws the plotted table into the pictures asked for; 0, or kExitUsage when one cannot be
// written.
int WritePictures(PlotSession& plot, PlotRequest& request, const SettingsStore& settings,
                  std::ostream& out, std::ostream& err) {
  PictureOptions& picture = request.picture;
  if (picture.pngPath.empty() && picture.svgPath.empty()) return kExitDone;
  const MachineConfig& config = plot.session.ActiveConfig;
  if (!request.viewName.empty()) {
    picture.view = ViewFromCommandName(request.viewName, config.MachineType);
  }
  VariableStore& variables = plot.variables;
  PictureScene scene{plot.table,
                     plot.driver.EntityCount(),
                     config,
                     [&variables](int n) { return variables.ReadNumber(n); },
                     plot.interpreter.RotaryUsed ? config.RotaryAxisIdentifier : std::string(),
                     request.useSettings ? &settings : nullptr};
  return WritePlotPictures(scene, picture, plot.host, out, err) == 0 ? kExitDone : kExitUsage;
}

}  // namespace

int RunPlotCommand(const std::vector<std::string>& args, std::ostream& out, std::ostream& err) {
  PlotRequest request;
  bool done = false;
  if (const int status = ParseRequest(args, out, err, request, done); done) return status;

  ProgramText program;
  std::string readError;
  if (!ProgramText::LoadFile(request.file, program, readError)) {
    err << "zemtra-cli plot: cannot read " << request.file << ": " << readError << "\n";
    return kExitUsage;
  }
  auto plot = std::make_unique<PlotSession>(err);
  if (!LoadMachine(*plot, request, err)) return kExitUsage;

  std::unique_ptr<SettingsStore> settings = OpenSettings(request, err);
  PrepareVariables(*plot, *settings, request.useSettings);
  InterpreterOptions options;
  LoadPlotPreferences(*settings, options, plot->driver.Warnings);
  PrepareCalls(*plot, *settings, request);
  options.BlockSkip = request.blockSkip;
  plot->interpreter.SetOptions(options);
  plot->driver.BlockLimit = request.maxBlocks;
  plot->host.setLineSource([in = &plot->interpreter] { return in->LineCounter; });

  plot->driver.RefreshGeometry(program);
  KeepVariables(*plot, *settings, request.useSettings, err);
  const bool interrupted = plot->host.abortRequested();
  const bool stopped = plot->interpreter.StoppedByError || plot->driver.Failed;
  if (request.json) {
    WriteJson(*plot, request, stopped, out);
  } else if (request.picture.svgPath != "-") {
    WriteSummary(*plot, request, out);
  }
  const int pictures = interrupted ? kExitDone : WritePictures(*plot, request, *settings, out, err);
  out.flush();
  if (interrupted) err << "zemtra-cli plot: interrupted\n";
  if (pictures != kExitDone) return pictures;
  if (!interrupted && !request.dxfPath.empty()) {
    const bool lathe = plot->session.ActiveConfig.MachineType == 1;
    const int exported = ExportPlotAsDxf(plot->table, plot->driver.EntityCount(), lathe,
                                         request.dxfPath, plot->host, err);
    if (exported != kExitDone) return exported;
  }
  return stopped || interrupted ? kExitStopped : kExitDone;
}

}  // namespace zemtra
