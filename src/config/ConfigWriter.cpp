// Writing a MachineConfig as configuration file text, and saving it safely.
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>

#include "config/ConfigFile.h"
#include "config/ConfigValues.h"
#include "core/NumberText.h"

namespace zemtra {
namespace {

namespace fs = std::filesystem;

std::string IntegerText(double value) {
  return FormatNumberText(value, "0");
}

// A flag as a printed number: a blank in place of a plus sign and one blank behind.
std::string PrintedFlagText(ConfigFlag flag) {
  return (flag < 0 ? "" : " ") + IntegerText(flag) + " ";
}

std::string WordText(ConfigFlag flag) {
  return flag ? "True" : "False";
}

// A string value must stay on its line: each line end inside it becomes one blank.
std::string SingleLine(std::string_view text) {
  std::string line;
  line.reserve(text.size());
  for (std::size_t i = 0; i < text.size(); ++i) {
    const bool lineEnd = text[i] == '\r' || text[i] == '\n';
    if (text[i] == '\r' && i + 1 < text.size() && text[i + 1] == '\n') ++i;
    line += lineEnd ? ' ' : text[i];
  }
  return line;
}

std::string MacroListText(const std::vector<std::int16_t>& codes) {
  std::string text;
  for (std::size_t i = 1; i < codes.size(); ++i) {
    if (i > 1) text += ", ";
    text += "G" + IntegerText(codes[i]);
  }
  return text;
}

// Four assignments of one work offset, from the variable store's values.
std::string WorkOffsetLine(int offset, const VariableReader& readVariable) {
  std::string line;
  for (int axis = 0; axis < 4; ++axis) {
    const int number = WorkOffsetVariable(offset, axis);
    const std::string value = readVariable ? readVariable(number) : std::string();
    if (axis > 0) line += ' ';
    line += "#" + IntegerText(number) + "=" + FormatNumberText(NumericTextValue(value), "");
  }
  return line;
}

class ConfigWriterText {
 public:
  void Section(std::string_view name) { Append("[", name, "]\r\n"); }
  void EndSection() { text_ += "\r\n"; }
  void Key(std::string_view key, std::string_view value) { Append(key, " = ", value, "\r\n"); }
  void Text(std::string_view key, std::string_view value) { Key(key, SingleLine(value)); }
  void Integer(std::string_view key, double value) { Key(key, IntegerText(value)); }
  void Number(std::string_view key, double value) { Key(key, FormatNumberText(value, "")); }
  void Single(std::string_view key, float value) { Key(key, FormatSingleText(value)); }
  void Flag(std::string_view key, ConfigFlag value) { Key(key, PrintedFlagText(value)); }
  void Word(std::string_view key, ConfigFlag value) { Key(key, WordText(value)); }
  // An empty list leaves the line open, so the section's empty line ends it.
  void MacroList(std::string_view key, const std::vector<std::int16_t>& codes) {
    const std::string list = MacroListText(codes);
    Append(key, " = ", list, list.empty() ? "" : "\r\n");
  }
  // One key line per non-empty line of `lines`; one with no value when `lines` is "".
  void Repeated(std::string_view key, std::string_view lines) {
    if (lines.empty()) Key(key, "");
    for (std::string_view line : NonEmptyLines(lines)) Key(key, line);
  }

  std::string Take() { return std::move(text_); }

 private:
  template <typename... Parts>
  void Append(const Parts&... parts) {
    (text_.append(parts), ...);
  }

  std::string text_;
};

void WriteMachineSection(ConfigWriterText& out, const MachineConfig& record) {
  out.Section("MACHINE");
  out.Integer("Machine Type", record.MachineType);
  out.Integer("Mill Type", record.MillType);
  out.Flag("Lathe X Diameter", record.LatheXDiameter);
  out.Flag("Lathe Reverse Arcs", record.LatheReverseArcs);
  out.Text("Default Program Folder", record.DefaultProgramFolder);
  out.Text("Default File Types", record.DefaultFileTypes);
  out.EndSection();
}

void WriteOptionsSection(ConfigWriterText& out, const MachineConfig& record) {
  out.Section("OPTIONS");
  out.Integer("Rapid Type", record.RapidType);
  out.Flag("Absolute Arc Center", record.AbsoluteArcCenter);
  out.Flag("Modal IJK", record.ModalIJK);
  out.Number("Arc Tolerance", record.ArcTolerance);
  out.Number("Coordinate Resolution", record.CoordinateResolution);
  out.Text("Initial State", record.InitialState);
  out.Integer("Top View Orientation", record.TopViewOrientation);
  out.Text("Dwell Address", record.DwellAddress);
  out.MacroList("External GCode Macro", record.ExternalGCodeMacros);
  out.EndSection();
}

void WriteMacroSection(ConfigWriterText& out, const MachineConfig& record) {
  out.Section("MACRO");
  out.Word("Fanuc ATAN Format", record.FanucATANFormat);
  out.EndSection();
}

void WriteCodeOptionsSection(ConfigWriterText& out, const MachineConfig& record) {
  out.Section("G/M CODE OPTIONS");
  out.Integer("M98 Format", record.M98Format);
  out.Integer("Lathe G Code Format", record.LatheGCodeFormat);
  out.Integer("MCode X Mirror ON", record.MCodeXMirrorOn);
  out.Integer("MCode Y Mirror ON", record.MCodeYMirrorOn);
  out.Integer("MCode Mirror OFF", record.MCodeMirrorOff);
  out.EndSection();
}

void WriteDxfSection(ConfigWriterText& out, const ConvertParams& defaults) {
  out.Section("DXF OPTIONS");
  out.Number("DXF Default Z Retract", defaults.ZRetract);
  out.Number("DXF Default Z Approach", defaults.ZApproach);
  out.Number("DXF Default Z Depth", defaults.ZDepth);
  out.Number("DXF Default Plunge Feedrate", defaults.PlungeRate);
  out.Number("DXF Default Feedrate", defaults.FeedRate);
  out.Word("DXF Default Enable Z Increment", defaults.EnableZIncrement);
  out.Number("DXF Default Material Top", defaults.ZTop);
  out.Number("DXF Default Z Increment", defaults.ZIncrement);
  out.Repeated("DXF Default Layer Header", defaults.Header);
  out.Repeated("DXF Default Layer Footer", defaults.Footer);
  out.EndSection();
}

void WriteWorkOffsetsSection(ConfigWriterText& out, const VariableReader& readVariable) {
  static constexpr std::string_view kOffsetNames[kWorkOffsetCount] = {"G54", "G55", "G56",
                                                                      "G57", "G58", "G59"};
  out.Section("WORK OFFSETS");
  for (int i = 0; i < kWorkOffsetCount; ++i)
    out.Key(kOffsetNames[i], WorkOffsetLine(i, readVariable));
  out.EndSection();
}

void WriteRotarySection(ConfigWriterText& out, const MachineConfig& record) {
  out.Section("ROTARY AXIS");
  out.Text("Rotary Axis Identifier", record.RotaryAxisIdentifier);
  out.Integer("Rotary Axis Plane", record.RotaryAxisPlane);
  out.Number("Rotary Axis Resolution", record.RotaryAxisResolution);
  out.Single("Rotary Axis Centerline X", record.RotaryCenterX);
  out.Single("Rotary Axis Centerline Y", record.RotaryCenterY);
  out.Single("Rotary Axis Centerline Z", record.RotaryCenterZ);
  out.EndSection();
}

void WriteColorsSection(ConfigWriterText& out, const MachineConfig& record) {
  out.Section("COLORS");
  out.Integer("Viewport Background Color", record.BackgroundColor);
  out.Integer("Selection Color", record.SelectionColor);
  out.Integer("Marker Color", record.MarkerColor);
  out.Flag("Color by G-Code", record.ColorByGCode);
  out.Integer("G00 Color", record.G00Color);
  out.Integer("G01 Color", record.G01Color);
  out.Integer("G02 Color", record.G02Color);
  out.Integer("G03 Color", record.G03Color);
  out.Integer("Unspecified Tool Color", record.UnspecifiedToolColor);
  out.Integer("Color Change Code", record.ColorChangeCode);
  for (int tool = 1; tool <= record.ToolColorCount(); ++tool) {
    out.Integer("Tool Color " + FormatNumberText(tool, "00"), record.ToolColors[tool]);
  }
  out.EndSection();
}

// Writes all of `text` to `fd`; false on a short write.
bool WriteAll(int fd, std::string_view text) {
  while (!text.empty()) {
    const ssize_t written = ::write(fd, text.data(), text.size());
    if (written < 0 && errno == EINTR) continue;
    if (written == 0) errno = EIO;
    if (written <= 0) return false;
    text.remove_prefix(static_cast<std::size_t>(written));
  }
  return true;
}

// The new file keeps the permissions of the one it replaces.
void CopyPermissions(int fd, const std::string& path) {
  struct stat old {};
  const mode_t mode = ::stat(path.c_str(), &old) == 0 ? (old.st_mode & 07777) : 0644;
  ::fchmod(fd, mode);
}

}  // namespace

std::string ConfigFileText(const MachineConfig& record, const VariableReader& readVariable) {
  ConfigWriterText out;
  WriteMachineSection(out, record);
  WriteOptionsSection(out, record);
  WriteMacroSection(out, record);
  WriteCodeOptionsSection(out, record);
  WriteDxfSection(out, record.DXFDefaults);
  WriteWorkOffsetsSection(out, readVariable);
  WriteRotarySection(out, record);
  WriteColorsSection(out, record);
  return out.Take();
}

bool SaveConfig(const std::string& path, const MachineConfig& record,
                const VariableReader& readVariable, std::string* error) {
  const std::string text = ConfigFileText(record, readVariable);
  const fs::path target(path);
  const fs::path folder = target.has_parent_path() ? target.parent_path() : fs::path(".");
  std::string tempPath = (folder / ("." + target.filename().string() + ".XXXXXX")).string();
  const int fd = ::mkstemp(tempPath.data());
  if (fd < 0) {
    if (error) *error = "Cannot write " + path + ": " + std::strerror(errno);
    return false;
  }
  CopyPermissions(fd, path);
  bool ok = WriteAll(fd, text) && ::fsync(fd) == 0;
  int failure = ok ? 0 : errno;
  if (::close(fd) != 0 && ok) {
    ok = false;
    failure = errno;
  }
  if (ok && ::rename(tempPath.c_str(), path.c_str()) != 0) {
    ok = false;
    failure = errno;
  }
  if (!ok) {
    ::unlink(tempPath.c_str());
    if (error) *error = "Cannot write " + path + ": " + std::strerror(failure);
    return false;
  }
  return true;
}

}  // namespace zemtra
