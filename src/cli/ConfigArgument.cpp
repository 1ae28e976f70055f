#include "cli/ConfigArgument.h"

#include <system_error>

#include "core/AppFolder.h"
#include "core/TextUtil.h"

namespace zemtra {

namespace fs = std::filesystem;

fs::path ResolveConfigPath(const std::string& argument, const fs::path& applicationFolder) {
  if (argument.empty()) return FindPathNoCase(applicationFolder, "CONFIG/default.zmt");
  std::error_code code;
  if (argument.find('/') != std::string::npos || fs::is_regular_file(argument, code)) {
    return fs::path(argument);
  }
  std::string name = argument;
  if (!EndsWithNoCase(name, ".zmt")) name += ".zmt";
  return FindPathNoCase(applicationFolder, "CONFIG/" + name);
}

}  // namespace zemtra
