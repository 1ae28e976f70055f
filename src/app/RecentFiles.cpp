#include "app/RecentFiles.h"

#include <algorithm>

#include "core/NumberText.h"
#include "core/SettingsStore.h"
#include "core/TextUtil.h"

namespace zemtra {

namespace {
constexpr const char* kSection = "Recent Files";
}

std::string RecentFileKey(int index) {
  return "File" + FormatNumberText(index, "00");
}

void RecentFiles::Load(const SettingsStore& store, const FileExists& exists) {
  entries_.fill({});
  int next = 0;
  for (int i = 0; i < kCount; ++i) {
    std::string path = store.GetSetting(kSection, RecentFileKey(i), "");
    if (path.empty() || !exists(path)) continue;
    entries_[static_cast<std::size_t>(next++)] = std::move(path);
  }
}

void RecentFiles::Save(SettingsStore& store) const {
  for (int i = 0; i < kCount; ++i) store.SaveSetting(kSection, RecentFileKey(i), At(i));
}

int RecentFiles::Find(const std::string& path) const {
  for (int i = 0; i < kCount; ++i) {
    if (EqualsNoCase(entries_[static_cast<std::size_t>(i)], path)) return i;
  }
  return -1;
}

bool RecentFiles::Add(const std::string& path) {
  if (path.empty()) return false;
  const int found = Find(path);
  if (found == 0) return false;
  // Entries above the old place (or all but the oldest) move down one slot.
  const int last = found > 0 ? found : kCount - 1;
  std::move_backward(entries_.begin(), entries_.begin() + last, entries_.begin() + last + 1);
  entries_[0] = path;
  return true;
}

bool RecentFiles::Remove(const std::string& path) {
  if (path.empty()) return false;
  const int found = Find(path);
  if (found < 0) return false;
  std::move(entries_.begin() + found + 1, entries_.end(), entries_.begin() + found);
  entries_[kCount - 1].clear();
  return true;
}

const std::string& RecentFiles::At(int index) const {
  static const std::string kEmpty;
  if (index < 0 || index >= kCount) return kEmpty;
  return entries_[static_cast<std::size_t>(index)];
}

}  // namespace zemtra
