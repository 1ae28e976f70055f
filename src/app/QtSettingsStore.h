#pragma once
// The user's settings in an INI file through QSettings: section "General" and the others become
// INI groups, keys and values are kept as texts. By default the file is
// ~/.config/Zemtra/Zemtra.conf, which the command-line tool reads too.
#include <QString>
#include <memory>

#include "core/SettingsStore.h"

class QSettings;

namespace zemtra {

class QtSettingsStore : public SettingsStore {
 public:
  // The per-user file of application "Zemtra".
  QtSettingsStore();
  // A given INI file (tests, portable use).
  explicit QtSettingsStore(const QString& fileName);
  ~QtSettingsStore() override;

  std::string GetSetting(const std::string& section, const std::string& key,
                         const std::string& fallback = "") const override;
  void SaveSetting(const std::string& section, const std::string& key,
                   const std::string& value) override;
  void DeleteSetting(const std::string& section) override;
  std::vector<std::pair<std::string, std::string>> GetAllSettings(
      const std::string& section) const override;

  // Writes pending changes to the file now; false when the file cannot be written.
  bool Sync();
  QString FileName() const;

 private:
  std::unique_ptr<QSettings> settings_;
};

}  // namespace zemtra
