#include "core/SettingsStore.h"

namespace zemtra {

std::string MemorySettingsStore::GetSetting(const std::string& section, const std::string& key,
                                            const std::string& fallback) const {
  const auto s = sections_.find(section);
  if (s == sections_.end()) return fallback;
  const auto k = s->second.find(key);
  return k == s->second.end() ? fallback : k->second;
}

void MemorySettingsStore::SaveSetting(const std::string& section, const std::string& key,
                                      const std::string& value) {
  sections_[section][key] = value;
}

void MemorySettingsStore::DeleteSetting(const std::string& section) { sections_.erase(section); }

std::vector<std::pair<std::string, std::string>> MemorySettingsStore::GetAllSettings(
    const std::string& section) const {
  std::vector<std::pair<std::string, std::string>> pairs;
  const auto s = sections_.find(section);
  if (s != sections_.end()) pairs.assign(s->second.begin(), s->second.end());
  return pairs;
}

}  // namespace zemtra
