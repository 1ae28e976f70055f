#pragma once
// The text of a configuration file held in memory, and the key lookups made on it. Lines end
// with CR LF, LF or CR. A line starting with "[" opens a section named by the line less its
// first and last character. Keys match by prefix, case-insensitively; sections match exactly.
#include <string>
#include <string_view>
#include <vector>

namespace zemtra {

class ConfigText {
 public:
  ConfigText() = default;
  explicit ConfigText(std::string_view text);

  // The value of the first line of `section` that begins with `key` (any case): the rest of
  // the line trimmed of blanks, less one leading "=" and trimmed again. A key present with no
  // value gives "", a missing key `defaultValue`. Indented lines are never matched.
  std::string ReadKey(std::string_view section, std::string_view key,
                      std::string_view defaultValue) const;
  // All non-empty values of `key` in `section` given in "key = value" form, each followed by
  // CR LF; "" when there are none. Lines without "=" are passed over.
  std::string ReadMultiKey(std::string_view section, std::string_view key) const;

 private:
  void AddLine(std::string_view line);
  // Calls `visit(rest)` with the rest of each line of `section` that begins with `key`, in
  // order, until it returns false.
  template <typename Visitor>
  void ForEachKeyLine(std::string_view section, std::string_view key, Visitor&& visit) const;

  // Lines grouped by the section they stand in, in file order; a header line is the first
  // line of its own section. Lines before any header form a section named "".
  struct Section {
    std::string name;
    std::vector<std::string> lines;
  };
  std::vector<Section> sections_;
};

}  // namespace zemtra
