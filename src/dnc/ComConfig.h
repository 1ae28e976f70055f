#pragma once
// One RS232 configuration: how to talk to one machine. Configurations are `.rs` files in the
// DNC folder of the application folder; one of them is in force.
#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

namespace zemtra {

class Host;

struct ComConfig {
  // The port as the user gave it: a number (1 is /dev/ttyS0, as in files from other systems),
  // "COM2", a device name such as "ttyUSB0", or any path. See PortDeviceName.
  std::string Port;
  int Baud = 0;         // bits per second; 0 means "not loaded yet"
  int DataBits = 0;     // 5 to 8
  int StopBits = 0;     // list index: 0 is one stop bit, 1 is two
  std::string Parity;   // "Even", "Mark", "None", "Odd", "Space"; only the first letter counts
  int Handshaking = 0;  // list index: 0 none, 1 software (XON/XOFF), 2 hardware (RTS/CTS)
  bool StripSpaces = false;
  bool WaitForXON = false;
  int RXTimeoutBefore = 0;  // seconds to wait for the first character, 0 = no timeout
  int RXTimeoutAfter = 0;   // seconds of silence after a character that end a receive, 0 = none
};

// Reads the fields from the text of an `.rs` file. Keys are found without regard to case;
// a missing or garbled number reads as 0, a flag is true only when its value is "True".
ComConfig ReadComConfig(std::string_view text);

// The text of an `.rs` file for `config`: three sections, "Key = value" lines, CR LF line ends.
std::string ComConfigText(const ComConfig& config);

// The file of configuration `name` in `appFolder` (DNC/<name>.rs, found without regard to case).
std::filesystem::path ComConfigPath(const std::filesystem::path& appFolder, std::string_view name);

// Loads configuration `name` ("" becomes "Default") into `config`. A missing or unreadable file
// shows "COM Config file not found!" and its path, leaves `config` as it was and returns false.
bool LoadComConfig(std::string& name, ComConfig& config, const std::filesystem::path& appFolder,
                   Host& host);

// Writes `config` to `file` by way of a temporary file beside it. False with a reason in
// `error` when the file could not be written.
bool SaveComConfig(const std::filesystem::path& file, const ComConfig& config,
                   std::string* error = nullptr);

// Base names of the `.rs` files (any case of the extension) in the DNC folder, sorted.
std::vector<std::string> ComConfigNames(const std::filesystem::path& appFolder);

// The device to open for a port text: "3" and "COM3" give /dev/ttyS2, a bare name such as
// "ttyUSB0" gets "/dev/" in front, a path stays as it is.
std::string PortDeviceName(std::string_view port);

// How a port is named in messages: "COM" and the number for numbered ports, else the device.
std::string PortLabel(std::string_view port);

// The configuration in force and its name, owned by the application.
struct DncSession {
  ComConfig Config;
  std::string ConfigName;  // the "COM Config" setting
  std::filesystem::path AppFolder;

  // Loads the configuration in force when none is loaded yet (a baud of 0). False when the
  // baud is still 0 afterwards: a missing file has been reported, a file with no baud has not.
  bool EnsureComConfig(Host& host);
};

}  // namespace zemtra
