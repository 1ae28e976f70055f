#include "dnc/ComConfig.h"

#include <algorithm>
#include <cmath>
#include <fstream>
#include <sstream>

#include "config/ConfigText.h"
#include "core/AppFolder.h"
#include "core/Host.h"
#include "core/NumberText.h"
#include "core/TextUtil.h"

namespace zemtra {

namespace {

constexpr std::string_view kSetup = "COM SETUP";
constexpr std::string_view kTransmit = "TRANSMIT OPTIONS";
constexpr std::string_view kReceive = "RECEIVE OPTIONS";
constexpr std::string_view kEol = "\r\n";

// A number of the file as an int, garbage and out-of-range values included, never UB.
int FieldNumber(const ConfigText& text, std::string_view section, std::string_view key) {
  const double value = NumericTextValue(text.ReadKey(section, key, ""));
  if (!std::isfinite(value)) return 0;
  return static_cast<int>(std::clamp(std::trunc(value), -2147483648.0, 2147483647.0));
}

bool FieldFlag(const ConfigText& text, std::string_view section, std::string_view key) {
  return text.ReadKey(section, key, "False") == "True";
}

std::string_view FlagText(bool flag) {
  return flag ? "True" : "False";
}

void AddField(std::string& out, std::string_view key, std::string_view value) {
  out.append(key).append(" = ").append(value).append(kEol);
}

void AddSection(std::string& out, std::string_view name) {
  out.append("[").append(name).append("]").append(kEol);
}

// The number of a port given as "3" or "COM3", or -1 when it is not of that form.
int PortNumber(std::string_view port) {
  std::string text = TrimText(port);
  if (StartsWithNoCase(text, "COM")) text = TrimText(text.substr(3));
  if (text.empty() || text.size() > 4) return -1;
  if (!std::all_of(text.begin(), text.end(), [](char c) { return c >= '0' && c <= '9'; }))
    return -1;
  return std::stoi(text);
}

}  // namespace

ComConfig ReadComConfig(std::string_view fileText) {
  const ConfigText text(fileText);
  ComConfig config;
  config.Port = TrimText(text.ReadKey(kSetup, "port", ""));
  config.Baud = FieldNumber(text, kSetup, "baud");
  config.DataBits = FieldNumber(text, kSetup, "data bits");
  config.StopBits = FieldNumber(text, kSetup, "stop bits");
  config.Parity = text.ReadKey(kSetup, "parity", "");
  config.Handshaking = FieldNumber(text, kSetup, "handshaking");
  config.StripSpaces = FieldFlag(text, kTransmit, "strip spaces");
  config.WaitForXON = FieldFlag(text, kTransmit, "wait for xon");
  config.RXTimeoutBefore = FieldNumber(text, kReceive, "rxtimeoutbefore");
  config.RXTimeoutAfter = FieldNumber(text, kReceive, "rxtimeoutafter");
  return config;
}

std::string ComConfigText(const ComConfig& config) {
  std::string out;
  AddSection(out, kSetup);
  AddField(out, "Port", config.Port);
  AddField(out, "Baud", std::to_string(config.Baud));
  AddField(out, "Data Bits", std::to_string(config.DataBits));
  AddField(out, "Stop Bits", std::to_string(config.StopBits));
  AddField(out, "Parity", config.Parity);
  AddField(out, "Handshaking", std::to_string(config.Handshaking));
  out.append(kEol);
  AddSection(out, kTransmit);
  AddField(out, "Strip Spaces", FlagText(config.StripSpaces));
  AddField(out, "Wait For XON", FlagText(config.WaitForXON));
  out.append(kEol);
  AddSection(out, kReceive);
  AddField(out, "RXTimeoutBefore", std::to_string(config.RXTimeoutBefore));
  AddField(out, "RXTimeoutAfter", std::to_string(config.RXTimeoutAfter));
  out.append(kEol);
  return out;
}

std::filesystem::path ComConfigPath(const std::filesystem::path& appFolder, std::string_view name) {
  return FindPathNoCase(appFolder, "DNC/" + std::string(name) + ".rs");
}

bool LoadComConfig(std::string& name, ComConfig& config, const std::filesystem::path& appFolder,
                   Host& host) {
  if (name.empty()) name = "Default";
  const std::filesystem::path path = ComConfigPath(appFolder, name);
  std::error_code error;
  std::ifstream in;
  if (std::filesystem::is_regular_file(path, error)) in.open(path, std::ios::binary);
  if (!in.is_open() || !in) {
    host.ask({"COM Config file not found!\r\n" + path.string(), "Zemtra", MsgIcon::Exclamation,
              MsgButtons::Ok});
    return false;
  }
  std::ostringstream text;
  text << in.rdbuf();
  config = ReadComConfig(text.str());
  return true;
}

bool SaveComConfig(const std::filesystem::path& file, const ComConfig& config, std::string* error) {
  const std::filesystem::path temp = file.string() + ".zmt-save";
  {
    std::ofstream out(temp, std::ios::binary | std::ios::trunc);
    const std::string text = ComConfigText(config);
    out.write(text.data(), static_cast<std::streamsize>(text.size()));
    if (!out.flush()) {
      if (error) *error = "Can't write " + temp.string();
      std::error_code ignored;
      std::filesystem::remove(temp, ignored);
      return false;
    }
  }
  std::error_code renameError;
  std::filesystem::rename(temp, file, renameError);
  if (renameError) {
    if (error) *error = "Can't write " + file.string() + ": " + renameError.message();
    std::filesystem::remove(temp, renameError);
    return false;
  }
  return true;
}

std::vector<std::string> ComConfigNames(const std::filesystem::path& appFolder) {
  std::vector<std::string> names;
  std::error_code error;
  const std::filesystem::path folder = FindPathNoCase(appFolder, "DNC");
  for (std::filesystem::directory_iterator it(folder, error), end; !error && it != end;
       it.increment(error)) {
    const std::filesystem::path& path = it->path();
    if (EqualsNoCase(path.extension().string(), ".rs") && it->is_regular_file(error))
      names.push_back(path.stem().string());
  }
  std::sort(names.begin(), names.end(), [](const std::string& a, const std::string& b) {
    return ToLowerAscii(a) < ToLowerAscii(b);
  });
  return names;
}

std::string PortDeviceName(std::string_view port) {
  const int number = PortNumber(port);
  if (number > 0) return "/dev/ttyS" + std::to_string(number - 1);
  std::string text = TrimText(port);
  if (text.find('/') == std::string::npos && !text.empty()) return "/dev/" + text;
  return text;
}

std::string PortLabel(std::string_view port) {
  const int number = PortNumber(port);
  if (number > 0) return "COM" + std::to_string(number);
  return PortDeviceName(port);
}

bool DncSession::EnsureComConfig(Host& host) {
  if (Config.Baud == 0) LoadComConfig(ConfigName, Config, AppFolder, host);
  return Config.Baud != 0;
}

}  // namespace zemtra
