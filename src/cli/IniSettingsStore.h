#pragma once
// The user's settings file read and written by zemtra-cli: the INI file the desktop program
// keeps (~/.config/Zemtra/Zemtra.conf), in the layout Qt's INI settings use, so both programs
// share one file. Section and key names are escaped as Qt escapes them ("Stop On M00" is
// "Stop%20On%20M00", a section "General" is "[%General]"); values that need it are quoted.
#include <filesystem>
#include <map>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "core/SettingsStore.h"

namespace zemtra {

class IniSettingsStore : public MemorySettingsStore {
 public:
  explicit IniSettingsStore(std::filesystem::path file) : file_(std::move(file)) {}

  // $XDG_CONFIG_HOME/Zemtra/Zemtra.conf, or ~/.config/Zemtra/Zemtra.conf; empty when neither
  // is known.
  static std::filesystem::path DefaultPath();

  // Reads the file; a missing file is an empty store. False, with the reason, when it exists
  // and cannot be read. Lines that make no sense are passed over.
  bool Load(std::string* error = nullptr);
  // Writes every section through a temporary file beside the target; false, with the reason,
  // when it cannot be written (the old file then stands).
  bool Save(std::string* error = nullptr) const;

  // The file's text of the store as it stands.
  std::string Text() const;
  // Fills the store from a file's text (what Load does after reading).
  void ParseText(std::string_view text);

 private:
  std::filesystem::path file_;
};

// Qt's INI escaping of a section or key name, and its inverse.
std::string EscapeIniKey(std::string_view name);
std::string UnescapeIniKey(std::string_view escaped);
// Qt's INI form of a text value, and its inverse (an unquoted list "a, b" reads as "a, b").
std::string EscapeIniValue(std::string_view value);
std::string UnescapeIniValue(std::string_view escaped);

}  // namespace zemtra
