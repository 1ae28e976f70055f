#pragma once
// A shipped machine configuration read as the program reads it, for the tests and the fuzz
// targets alike (no test framework here).
#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>

#include "config/ConfigFile.h"
#include "config/ConfigText.h"
#include "config/MachineConfig.h"

namespace zemtra::test {

// `dataFolder`/CONFIG/`name`.zmt ("default", "Lathe"); a missing file gives the defaults.
inline MachineConfig ReadShippedConfig(const std::filesystem::path& dataFolder,
                                       const std::string& name) {
  std::ifstream file(dataFolder / "CONFIG" / (name + ".zmt"), std::ios::binary);
  std::stringstream text;
  text << file.rdbuf();
  MachineConfig config;
  ReadConfigRecord(ConfigText(text.str()), config);
  config.ConfigName = name;
  return config;
}

}  // namespace zemtra::test
