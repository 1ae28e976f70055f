#pragma once
// Per-user settings: text values addressed by section and key, under the application "Zemtra".
#include <map>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace zemtra {

class SettingsStore {
 public:
  virtual ~SettingsStore() = default;
  // The stored text, or `fallback` when the key was never stored.
  virtual std::string GetSetting(const std::string& section, const std::string& key,
                                 const std::string& fallback = "") const = 0;
  virtual void SaveSetting(const std::string& section, const std::string& key,
                           const std::string& value) = 0;
  // Removes a whole section.
  virtual void DeleteSetting(const std::string& section) = 0;
  // All key/value pairs of a section, in key order.
  virtual std::vector<std::pair<std::string, std::string>> GetAllSettings(
      const std::string& section) const = 0;
};

// An in-memory store for tests and for runs that must not touch the user's settings.
class MemorySettingsStore : public SettingsStore {
 public:
  std::string GetSetting(const std::string& section, const std::string& key,
                         const std::string& fallback = "") const override;
  void SaveSetting(const std::string& section, const std::string& key,
                   const std::string& value) override;
  void DeleteSetting(const std::string& section) override;
  std::vector<std::pair<std::string, std::string>> GetAllSettings(
      const std::string& section) const override;

 protected:
  using SectionMap = std::map<std::string, std::map<std::string, std::string>>;
  const SectionMap& Sections() const { return sections_; }
  SectionMap& Sections() { return sections_; }

 private:
  SectionMap sections_;
};

}  // namespace zemtra
