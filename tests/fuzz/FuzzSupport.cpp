#include "FuzzSupport.h"

#include <cstdlib>
#include <fstream>
#include <sstream>

#include "config/ConfigFile.h"
#include "config/ConfigText.h"

namespace zemtra::fuzz {

std::filesystem::path DataFolder() {
  if (const char* folder = std::getenv("ZEMTRA_SOURCE_DATA"); folder && *folder) return folder;
  return ZEMTRA_FUZZ_DATA_DIR;
}

MachineConfig ShippedConfig(const std::string& name) {
  std::ifstream file(DataFolder() / "CONFIG" / (name + ".zmt"), std::ios::binary);
  std::stringstream text;
  text << file.rdbuf();
  MachineConfig config;
  ReadConfigRecord(ConfigText(text.str()), config);
  config.ConfigName = name;
  return config;
}

VariableStore& ClearedVariables() {
  static VariableStore variables;
  variables.ClearAll();
  return variables;
}

}  // namespace zemtra::fuzz
