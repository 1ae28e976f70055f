// Reading a configuration file into a MachineConfig.
#include <cfloat>
#include <cmath>
#include <fstream>
#include <iterator>
#include <optional>

#include "config/ConfigFile.h"
#include "config/ConfigValues.h"
#include "core/AppFolder.h"
#include "core/Host.h"
#include "core/NumberText.h"

namespace zemtra {
namespace {

namespace fs = std::filesystem;

// Reads the values of one section with the conversions of the record's field types. A value
// that a field cannot take keeps the field's default and is noted in the warnings.
class FieldReader {
 public:
  FieldReader(const ConfigText& text, std::vector<std::string>* warnings)
      : text_(text), warnings_(warnings) {}

  void Section(std::string_view name) { section_ = name; }

  std::string Text(std::string_view key, std::string_view defaultValue = {}) const {
    return text_.ReadKey(section_, key, defaultValue);
  }
  // Numeric text conversion: the leading number of the text, 0 for none.
  double Number(std::string_view key, std::string_view defaultValue = {}) const {
    return NumericTextValue(Text(key, defaultValue));
  }
  // Numeric text conversion rounded to the field's width.
  template <typename Int>
  Int Whole(std::string_view key, std::string_view defaultValue = {}) const {
    const std::string text = Text(key, defaultValue);
    if (auto value = RoundToWidth<Int>(NumericTextValue(text))) return *value;
    Warn(key, text, "is out of range", defaultValue);
    return RoundToWidth<Int>(NumericTextValue(defaultValue)).value_or(0);
  }
  float Single(std::string_view key, std::string_view defaultValue) const {
    const std::string text = Text(key, defaultValue);
    const double value = NumericTextValue(text);
    if (std::fabs(value) <= FLT_MAX) return static_cast<float>(value);
    Warn(key, text, "is out of range", defaultValue);
    return static_cast<float>(NumericTextValue(defaultValue));
  }
  // Strict integer conversion rounded to the field's width: a word that is no number keeps
  // the default instead of stopping the load.
  template <typename Int>
  Int Integer(std::string_view key, std::string_view defaultValue) const {
    const std::string text = Text(key, defaultValue);
    if (auto number = NumberOfWholeText(text)) {
      if (auto value = RoundToWidth<Int>(*number)) return *value;
    }
    Warn(key, text, "is not a whole number the field can hold", defaultValue);
    return RoundToWidth<Int>(NumberOfWholeText(defaultValue).value_or(0)).value_or(0);
  }
  // True for any whole number but 0.
  ConfigFlag Flag(std::string_view key, std::string_view defaultValue) const {
    return ToFlag(Integer<std::int16_t>(key, defaultValue) != 0);
  }
  // True exactly for the word "True".
  ConfigFlag Word(std::string_view key, std::string_view defaultValue = {}) const {
    return ToFlag(Text(key, defaultValue) == "True");
  }

 private:
  void Warn(std::string_view key, std::string_view text, std::string_view problem,
            std::string_view defaultValue) const {
    if (!warnings_) return;
    warnings_->push_back("[" + std::string(section_) + "] " + std::string(key) + ": \"" +
                         std::string(text) + "\" " + std::string(problem) + "; \"" +
                         std::string(defaultValue) + "\" is used instead");
  }

  const ConfigText& text_;
  std::vector<std::string>* warnings_;
  std::string_view section_;
};

void ReadMachineSection(FieldReader& reader, MachineConfig& record) {
  reader.Section("MACHINE");
  record.MachineType = reader.Whole<std::int16_t>("Machine Type", "0");
  record.MillType = reader.Whole<std::int16_t>("Mill Type", "0");
  record.LatheXDiameter = reader.Flag("Lathe X Diameter", "0");
  record.LatheReverseArcs = reader.Flag("Lathe Reverse Arcs", "0");
  record.DefaultProgramFolder = reader.Text("Default Program Folder");
  record.DefaultFileTypes = reader.Text("Default File Types");
}

void ReadOptionsSection(FieldReader& reader, MachineConfig& record,
                        std::vector<std::string>* warnings) {
  reader.Section("OPTIONS");
  record.RapidType = reader.Whole<std::uint8_t>("Rapid Type", "0");
  record.AbsoluteArcCenter = reader.Flag("Absolute Arc Center", "0");
  record.ModalIJK = reader.Flag("Modal IJK", "0");
  record.ArcTolerance = reader.Number("Arc Tolerance", "0.001");
  record.CoordinateResolution = reader.Number("Coordinate Resolution", "0.0001");
  record.InitialState = reader.Text("Initial State");
  record.TopViewOrientation = reader.Whole<std::int16_t>("Top View Orientation", "0");
  record.DwellAddress = reader.Text("Dwell Address", "X");
  record.ExternalGCodeMacros = ParseMacroCodes(
      reader.Text("External GCode Macro", "G120, G130, G340, G350, G360, G371"), warnings);
}

void ReadMacroSection(FieldReader& reader, MachineConfig& record) {
  reader.Section("MACRO");
  record.FanucATANFormat = reader.Word("Fanuc ATAN Format", "True");
}

void ReadCodeOptionsSection(FieldReader& reader, MachineConfig& record) {
  reader.Section("G/M CODE OPTIONS");
  record.M98Format = reader.Whole<std::int16_t>("M98 Format", "0");
  record.LatheGCodeFormat = reader.Whole<std::int16_t>("Lathe G Code Format", "0");
  record.MCodeXMirrorOn = reader.Whole<std::int16_t>("MCode X Mirror ON", "87");
  record.MCodeYMirrorOn = reader.Whole<std::int16_t>("MCode Y Mirror ON", "88");
  record.MCodeMirrorOff = reader.Whole<std::int16_t>("MCode Mirror OFF", "89");
}

void ReadDxfSection(const ConfigText& text, FieldReader& reader, ConvertParams& defaults) {
  reader.Section("DXF OPTIONS");
  defaults.ZRetract = reader.Number("DXF Default Z Retract");
  defaults.ZApproach = reader.Number("DXF Default Z Approach");
  defaults.ZDepth = reader.Number("DXF Default Z Depth");
  defaults.FeedRate = reader.Number("DXF Default Feedrate");
  defaults.PlungeRate = reader.Number("DXF Default Plunge Feedrate");
  defaults.ZTop = reader.Number("DXF Default Material Top");
  defaults.ZIncrement = reader.Number("DXF Default Z Increment");
  defaults.EnableZIncrement = reader.Word("DXF Default Enable Z Increment");
  defaults.Header = text.ReadMultiKey("DXF OPTIONS", "DXF Default Layer Header");
  defaults.Footer = text.ReadMultiKey("DXF OPTIONS", "DXF Default Layer Footer");
}

void ReadRotarySection(FieldReader& reader, MachineConfig& record) {
  reader.Section("ROTARY AXIS");
  record.RotaryAxisIdentifier = reader.Text("Rotary Axis Identifier", "B");
  record.RotaryAxisPlane = reader.Integer<std::uint8_t>("Rotary Axis Plane", "18");
  record.RotaryAxisResolution = reader.Number("Rotary Axis Resolution", "0.001");
  record.RotaryCenterX = reader.Single("Rotary Axis Centerline X", "0");
  record.RotaryCenterY = reader.Single("Rotary Axis Centerline Y", "0");
  record.RotaryCenterZ = reader.Single("Rotary Axis Centerline Z", "0");
}

void ReadWorkOffsetsSection(FieldReader& reader, MachineConfig& record) {
  static constexpr std::string_view kOffsetNames[kWorkOffsetCount] = {"G54", "G55", "G56",
                                                                      "G57", "G58", "G59"};
  reader.Section("WORK OFFSETS");
  for (int i = 0; i < kWorkOffsetCount; ++i)
    record.WorkOffsetText[i] = reader.Text(kOffsetNames[i]);
}

// Tool colours count from 01 up to the first one missing.
void ReadToolColors(FieldReader& reader, MachineConfig& record) {
  record.ToolColors.assign(1, record.UnspecifiedToolColor);
  for (int tool = 1;; ++tool) {
    const std::string key = "Tool Color " + FormatNumberText(tool, "00");
    if (reader.Text(key).empty()) break;
    record.ToolColors.push_back(reader.Whole<ColorValue>(key));
  }
}

void ReadColorsSection(FieldReader& reader, MachineConfig& record) {
  reader.Section("COLORS");
  record.BackgroundColor = reader.Whole<ColorValue>("Viewport Background Color");
  record.SelectionColor = reader.Whole<ColorValue>("Selection Color");
  record.MarkerColor = reader.Whole<ColorValue>("Marker Color", "16777215");
  record.ColorByGCode = reader.Flag("Color by G-Code", "-1");
  record.G00Color = reader.Whole<ColorValue>("G00 Color");
  record.G01Color = reader.Whole<ColorValue>("G01 Color");
  record.G02Color = reader.Whole<ColorValue>("G02 Color");
  record.G03Color = reader.Whole<ColorValue>("G03 Color");
  record.UnspecifiedToolColor = reader.Whole<ColorValue>("Unspecified Tool Color");
  record.ColorChangeCode = reader.Whole<std::int16_t>("Color Change Code", "0");
  ReadToolColors(reader, record);
}

// The configuration's name is its file name less the last four characters (".zmt").
std::string ConfigNameOf(const std::string& path) {
  const std::size_t separator = path.find_last_of("/\\");
  const std::string fileName = separator == std::string::npos ? path : path.substr(separator + 1);
  return fileName.size() <= 4 ? std::string() : fileName.substr(0, fileName.size() - 4);
}

// A path under the application folder names its files regardless of case.
std::string ResolvePath(const std::string& path, const fs::path& applicationFolder) {
  std::error_code error;
  if (applicationFolder.empty() || fs::exists(path, error)) return path;
  const fs::path relative = fs::path(path).lexically_relative(applicationFolder);
  if (relative.empty() || *relative.begin() == "..") return path;
  return FindPathNoCase(applicationFolder, relative.generic_string()).string();
}

// The whole file, or nothing when it is not a readable regular file.
std::optional<std::string> ReadWholeFile(const std::string& path) {
  std::error_code error;
  if (!fs::is_regular_file(path, error)) return std::nullopt;
  std::ifstream file(path, std::ios::binary);
  if (!file) return std::nullopt;
  std::string text((std::istreambuf_iterator<char>(file)), std::istreambuf_iterator<char>());
  if (file.bad()) return std::nullopt;
  return text;
}

void ShowMissingFile(Host& host, const std::string& path) {
  std::error_code error;
  const bool missing = !fs::exists(path, error);
  host.ask({std::string(missing ? "Config file not found:" : "Config file cannot be read:") +
                "\r\n" + path + "\r\n\r\nPlease select a configuration file",
            "Zemtra", MsgIcon::Exclamation, MsgButtons::Ok});
}

void ShowUnreadableChoice(Host& host, const std::string& path) {
  host.ask(
      {"Config file cannot be read:\r\n" + path, "Zemtra", MsgIcon::Exclamation, MsgButtons::Ok});
}

// Tells the user the file is missing and lets them pick another; "" when they take none.
std::string ChooseOtherFile(Host& host, const std::string& path,
                            const fs::path& applicationFolder) {
  ShowMissingFile(host, path);
  const std::string folder = FindPathNoCase(applicationFolder, "Config").string();
  return host.chooseFile("Select Configuration File", folder, "Zemtra Configuration Files (*.zmt)");
}

}  // namespace

void ReadConfigRecord(const ConfigText& text, MachineConfig& record,
                      std::vector<std::string>* warnings) {
  FieldReader reader(text, warnings);
  ReadMachineSection(reader, record);
  ReadOptionsSection(reader, record, warnings);
  ReadMacroSection(reader, record);
  ReadCodeOptionsSection(reader, record);
  ReadDxfSection(text, reader, record.DXFDefaults);
  ReadRotarySection(reader, record);
  ReadWorkOffsetsSection(reader, record);
  ReadColorsSection(reader, record);
}

bool LoadConfig(std::string& path, MachineConfig& record, Host& host,
                const fs::path& applicationFolder, std::vector<std::string>* warnings) {
  record = MachineConfig{};
  record.ToolColors.assign(2, 0);
  if (path.empty()) path = (applicationFolder / "CONFIG" / "default.zmt").string();
  path = ResolvePath(path, applicationFolder);
  record.ConfigPath = path;
  record.ConfigName = ConfigNameOf(path);

  std::optional<std::string> text = ReadWholeFile(path);
  if (!text) {
    // The record keeps the name of the file asked for; the caller learns the one taken.
    path = ChooseOtherFile(host, path, applicationFolder);
    if (path.empty()) return false;
    text = ReadWholeFile(path);
    if (!text) {
      ShowUnreadableChoice(host, path);
      return false;
    }
  }
  ReadConfigRecord(ConfigText(*text), record, warnings);
  return true;
}

}  // namespace zemtra
