#pragma once
// Edits of a machine configuration that are more than setting one field: the macro G-code
// list, the tool colour list, the top view turn, and saving under a new name with a macro
// folder of its own.
#include <filesystem>
#include <string>
#include <string_view>

#include "config/ConfigFile.h"
#include "config/MachineConfig.h"

namespace zemtra {

// Adds the G-code typed in the "Add:" box: its number times 10, rounded ("12" gives 120,
// "G37.1" gives 371). Returns the code added, or 0 when none was: no number, a code a 16-bit
// field cannot hold, or one already on the list.
int AddExternalMacro(MachineConfig& record, std::string_view typed);
// Takes `code` off the list; false when it was not on it.
bool RemoveExternalMacro(MachineConfig& record, int code);
// How the list shows a code: "G" and the code ("G120").
std::string ExternalMacroCaption(int code);

// Tool colours: tools are numbered from 1; a new colour starts as 0 (black).
// Appends a colour for the next tool number.
void AddToolColor(MachineConfig& record);
// Inserts a colour at tool `tool` (1 to count + 1), moving the later ones up by one.
void InsertToolColor(MachineConfig& record, int tool);
// Removes the colour of tool `tool` (1 to count), moving the later ones down; false if none.
bool RemoveToolColor(MachineConfig& record, int tool);
// The tool number as the colour grid shows it: at least two digits ("07").
std::string ToolColorCaption(int tool);

// One more quarter turn of the top view: 0 to 3, then 0 again.
std::int16_t NextTopViewOrientation(std::int16_t orientation);

// CONFIG/<name>.zmt under the application folder, the existing spelling found regardless of
// case.
std::filesystem::path ConfigFilePath(const std::filesystem::path& applicationFolder,
                                     std::string_view configName);
// The macro folder of a configuration: CONFIG/<name>, found regardless of case.
std::filesystem::path MacroFolderPath(const std::filesystem::path& applicationFolder,
                                      std::string_view configName);

// Saves `record` to `path` under a new name. When the file is new, a macro folder named by
// the file name before its first "." is made under CONFIG/ and every *.PRG file (any case) of
// the macro folder of the record's configuration is copied into it; files already there are
// kept. `record` then names the new file. Returns false, with the reason in `error`, when the
// file or the folder cannot be written.
bool SaveConfigAs(const std::string& path, MachineConfig& record,
                  const VariableReader& readVariable,
                  const std::filesystem::path& applicationFolder, std::string* error = nullptr);

}  // namespace zemtra
