#pragma once
// The list of recently opened files: 21 slots, 0 the newest, "" an empty slot. Paths are
// compared without regard to case.
#include <array>
#include <functional>
#include <string>

namespace zemtra {

class SettingsStore;

class RecentFiles {
 public:
  static constexpr int kCount = 21;
  using FileExists = std::function<bool(const std::string& path)>;

  // Reads "File00" to "File20" of section "Recent Files"; entries whose file no longer exists
  // are dropped and the rest close up in order.
  void Load(const SettingsStore& store, const FileExists& exists);
  // Writes all 21 slots, empty ones as "".
  void Save(SettingsStore& store) const;

  // Puts `path` at the top. Returns false when it already was the newest entry (nothing
  // changed, the menu needs no rebuilding).
  bool Add(const std::string& path);
  // Takes `path` out and closes the gap. Returns false when it was not listed.
  bool Remove(const std::string& path);

  // Slot 0 to 20; "" when empty or out of range.
  const std::string& At(int index) const;
  // Index of `path` (ignoring case), or -1.
  int Find(const std::string& path) const;
  const std::array<std::string, kCount>& Entries() const { return entries_; }

 private:
  std::array<std::string, kCount> entries_;
};

// "File00" to "File20".
std::string RecentFileKey(int index);

}  // namespace zemtra
