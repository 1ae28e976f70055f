#include "config/ConfigEdits.h"

#include <algorithm>
#include <cstring>
#include <system_error>

#include "config/ConfigValues.h"
#include "core/AppFolder.h"
#include "core/NumberText.h"
#include "core/TextUtil.h"

namespace zemtra {
namespace {

namespace fs = std::filesystem;

// Copies every *.PRG file of `from` into `to`, leaving files already there.
bool CopyMacroFiles(const fs::path& from, const fs::path& to, std::string* error) {
  std::error_code failure;
  if (!fs::is_directory(from, failure)) return true;  // nothing to copy
  for (const fs::directory_entry& entry : fs::directory_iterator(from, failure)) {
    if (!entry.is_regular_file(failure)) continue;
    const std::string name = entry.path().filename().string();
    if (!EndsWithNoCase(name, ".PRG")) continue;
    fs::copy_file(entry.path(), to / name, fs::copy_options::skip_existing, failure);
    if (failure) {
      if (error) *error = "Cannot copy " + entry.path().string() + ": " + failure.message();
      return false;
    }
  }
  if (failure && error) *error = "Cannot read " + from.string() + ": " + failure.message();
  return !failure;
}

// The configuration's name is its file name less the last four characters (".zmt").
std::string ConfigNameOfPath(const std::string& path) {
  const std::string fileName = FileNameOf(path);
  return fileName.size() <= 4 ? std::string() : fileName.substr(0, fileName.size() - 4);
}

}  // namespace

int AddExternalMacro(MachineConfig& record, std::string_view typed) {
  // A leading "G" is passed over, as the list shows the codes with it.
  int position = 1;
  const std::optional<std::int16_t> code =
      RoundToWidth<std::int16_t>(ScanNumber(typed, position) * 10);
  if (!code || *code == 0) return 0;
  if (record.ExternalGCodeMacros.empty()) record.ExternalGCodeMacros.push_back(0);
  const auto& codes = record.ExternalGCodeMacros;
  if (std::find(codes.begin() + 1, codes.end(), *code) != codes.end()) return 0;
  record.ExternalGCodeMacros.push_back(*code);
  return *code;
}

bool RemoveExternalMacro(MachineConfig& record, int code) {
  auto& codes = record.ExternalGCodeMacros;
  if (codes.size() < 2) return false;
  const auto found = std::find(codes.begin() + 1, codes.end(), code);
  if (found == codes.end()) return false;
  codes.erase(found);
  return true;
}

std::string ExternalMacroCaption(int code) {
  return "G" + FormatNumberText(code, "0");
}

void AddToolColor(MachineConfig& record) {
  if (record.ToolColors.empty()) record.ToolColors.push_back(record.UnspecifiedToolColor);
  record.ToolColors.push_back(0);
}

void InsertToolColor(MachineConfig& record, int tool) {
  if (record.ToolColors.empty()) record.ToolColors.push_back(record.UnspecifiedToolColor);
  tool = std::clamp(tool, 1, record.ToolColorCount() + 1);
  record.ToolColors.insert(record.ToolColors.begin() + tool, 0);
}

bool RemoveToolColor(MachineConfig& record, int tool) {
  if (tool < 1 || tool > record.ToolColorCount()) return false;
  record.ToolColors.erase(record.ToolColors.begin() + tool);
  return true;
}

std::string ToolColorCaption(int tool) {
  return FormatNumberText(tool, "00");
}

std::int16_t NextTopViewOrientation(std::int16_t orientation) {
  return static_cast<std::int16_t>((orientation + 1) & 3);
}

fs::path ConfigFilePath(const fs::path& applicationFolder, std::string_view configName) {
  return FindPathNoCase(applicationFolder, "CONFIG/" + std::string(configName) + ".zmt");
}

fs::path MacroFolderPath(const fs::path& applicationFolder, std::string_view configName) {
  return FindPathNoCase(applicationFolder, "CONFIG/" + std::string(configName));
}

bool SaveConfigAs(const std::string& path, MachineConfig& record,
                  const VariableReader& readVariable, const fs::path& applicationFolder,
                  std::string* error) {
  std::error_code failure;
  const bool existed = fs::exists(path, failure);
  if (!SaveConfig(path, record, readVariable, error)) return false;
  const std::string oldName = record.ConfigName;
  record.ConfigPath = path;
  record.ConfigName = ConfigNameOfPath(path);
  if (existed) return true;

  const std::string fileName = FileNameOf(path);
  const std::string folderName = fileName.substr(0, fileName.find('.'));
  if (folderName.empty()) return true;
  const fs::path configFolder = FindPathNoCase(applicationFolder, "CONFIG");
  const fs::path newFolder = configFolder / folderName;
  fs::create_directories(newFolder, failure);
  if (failure) {
    if (error) *error = "Cannot create " + newFolder.string() + ": " + failure.message();
    return false;
  }
  const fs::path oldFolder = MacroFolderPath(applicationFolder, oldName);
  if (oldName.empty() || fs::equivalent(oldFolder, newFolder, failure)) return true;
  return CopyMacroFiles(oldFolder, newFolder, error);
}

}  // namespace zemtra
