#pragma once
// The machine configuration file that a --config argument names.
#include <filesystem>
#include <string>

namespace zemtra {

// A path when the argument names an existing file or holds a separator; otherwise a name (".zmt"
// optional, any case) in the application folder's CONFIG; CONFIG/default.zmt for "". The file
// named may not exist: the caller says so.
std::filesystem::path ResolveConfigPath(const std::string& argument,
                                        const std::filesystem::path& applicationFolder);

}  // namespace zemtra
