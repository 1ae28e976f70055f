#include "FuzzSupport.h"

#include <cstdlib>

#include "support/ShippedConfig.h"

namespace zemtra::fuzz {

std::filesystem::path DataFolder() {
  if (const char* folder = std::getenv("ZEMTRA_SOURCE_DATA"); folder && *folder) return folder;
  return ZEMTRA_FUZZ_DATA_DIR;
}

MachineConfig ShippedConfig(const std::string& name) {
  return test::ReadShippedConfig(DataFolder(), name);
}

VariableStore& ClearedVariables() {
  static VariableStore variables;
  variables.ClearAll();
  return variables;
}

}  // namespace zemtra::fuzz
