#pragma once
// Typed reading and writing of settings texts. Reading never fails loudly: a value that cannot
// be read leaves the variable as it was, so a damaged settings file never stops the program.
#include <cstdint>
#include <string>
#include <utility>

namespace zemtra {

class SettingsStore;

class SettingReader {
 public:
  SettingReader(const SettingsStore& store, std::string section)
      : store_(store), section_(std::move(section)) {}

  // "True" is true, anything else false; a missing key leaves `value`.
  void Bool(const std::string& key, bool& value) const;
  // A flag stored as "-1" / "0": "True" and "False" are understood, else any non-zero number.
  void NumericBool(const std::string& key, bool& value) const;
  // The leading number of the text (0 when there is none); an empty text, or a number out of
  // the type's range, leaves `value`.
  void Int16(const std::string& key, std::int16_t& value) const;
  void Int32(const std::string& key, std::int32_t& value) const;
  void Double(const std::string& key, double& value) const;
  void Float(const std::string& key, float& value) const;
  void Text(const std::string& key, std::string& value) const;

 private:
  // False when the key was never stored.
  bool Fetch(const std::string& key, std::string& text) const;

  const SettingsStore& store_;
  std::string section_;
};

class SettingWriter {
 public:
  SettingWriter(SettingsStore& store, std::string section)
      : store_(store), section_(std::move(section)) {}

  void Bool(const std::string& key, bool value);         // "True" / "False"
  void NumericBool(const std::string& key, bool value);  // "-1" / "0"
  void Number(const std::string& key, double value);     // shortest general form
  void Text(const std::string& key, const std::string& value);
  // The reader's names, so that one field list can serve both directions.
  void Int16(const std::string& key, std::int16_t value) { Number(key, value); }
  void Int32(const std::string& key, std::int32_t value) { Number(key, value); }
  void Double(const std::string& key, double value) { Number(key, value); }
  void Float(const std::string& key, float value) { Number(key, value); }

 private:
  SettingsStore& store_;
  std::string section_;
};

}  // namespace zemtra
