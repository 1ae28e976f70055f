#pragma once
// Reading, writing and applying machine configuration files (*.zmt).
#include <filesystem>
#include <functional>
#include <string>
#include <vector>

#include "config/ConfigText.h"
#include "config/MachineConfig.h"

namespace zemtra {

class Host;

// Reads the text of a variable of the store (the empty text for a null), by number.
using VariableReader = std::function<std::string(int number)>;
// Runs one line of macro statements, such as "#5221=0 #5222=0 #5223=0 #5224=0".
using StatementRunner = std::function<void(const std::string& line)>;

// Fills `record` from the configuration file at `path`. An empty `path` means
// CONFIG/default.zmt of `applicationFolder`; names under that folder are found regardless of
// case. When the file is missing the user is told and asked through `host` for another one;
// returns false, with `record` cleared, when none is taken. `path` receives the file read.
// Values that cannot be converted keep their defaults and add a line to `warnings`.
bool LoadConfig(std::string& path, MachineConfig& record, Host& host,
                const std::filesystem::path& applicationFolder,
                std::vector<std::string>* warnings = nullptr);

// Fills the keyed fields of `record` (all but ConfigName and ConfigPath) from `text`, with
// the defaults of missing keys. The record should be cleared first. Never throws.
void ReadConfigRecord(const ConfigText& text, MachineConfig& record,
                      std::vector<std::string>* warnings = nullptr);

// The file text of `record`, lines ended by CR LF. The work offsets are taken from the
// variable store through `readVariable`, not from the record's WorkOffsetText.
std::string ConfigFileText(const MachineConfig& record, const VariableReader& readVariable);

// Writes `record` to `path`, replacing the file through a temporary file beside it. Returns
// false and the reason in `error` when the file cannot be written; the old file then stands.
bool SaveConfig(const std::string& path, const MachineConfig& record,
                const VariableReader& readVariable, std::string* error = nullptr);

// The engine's part of making `record` the configuration in force: copies it to
// session.ActiveConfig, shows the "cfg" status text, runs the six work offset lines (G54
// first; empty ones are skipped) through `runStatement`, and clears the lathe flags of a
// mill. The window then sets its background, the absolute-arc check mark and the views from
// session.ActiveConfig.
void ApplyConfig(const MachineConfig& record, ConfigSession& session, Host& host,
                 const StatementRunner& runStatement);

// Clears LatheXDiameter and LatheReverseArcs when `active` is a mill, so that a mill never
// inherits lathe words; the file keeps what it held. Part of switching the machine type.
void ClearLatheFlagsOnMill(MachineConfig& active);

// Text of the "cfg" status panel for a configuration name: the name in proper case between
// two blanks on each side.
std::string ConfigStatusText(const std::string& configName);

}  // namespace zemtra
