#pragma once
// What the variable display shows and edits: the locals of one call level, the common
// variables and the system variables the user chose to watch, as rows of text, with the level
// labels and the commands that change values or the watch list.
#include <string>
#include <string_view>
#include <vector>

namespace zemtra {

class Evaluator;
class Host;
class SettingsStore;
class VariableStore;

inline constexpr std::string_view kSystemVariableListKey = "System Variable List";
inline constexpr std::string_view kClearVariablesQuestion = "Clear all Local and Common variables?";
inline constexpr std::string_view kEditVariablePrompt = "Enter new value for variable ";
inline constexpr std::string_view kAddSystemVariablePrompt = "Enter system variable number:";
inline constexpr std::string_view kInvalidSystemVariable = "Invalid system variable number";
inline constexpr std::string_view kEmptyValueText = "<empty>";

// One row of the list.
struct VariableRow {
  std::string Key;      // the number as "00000", the sort order
  int Number = 0;       // 1 to 50000
  std::string Name;     // "#1 (A)", "#100", "#5021"
  std::string Value;    // "##############0.0##############", or "<empty>"
  bool System = false;  // a row of the watch list
};

class VariableDisplay {
 public:
  static constexpr int kFirstSystemVariable = 1000;
  static constexpr int kLastSystemVariable = 50000;

  // Values come from and go to `variables`; expressions through `evaluator`; questions and
  // messages through `host`; the watch list lives in `settings` (section "General").
  VariableDisplay(VariableStore& variables, Evaluator& evaluator, Host& host,
                  SettingsStore& settings);

  // The call level whose locals are shown, 0 (the main program) to the running level.
  int ShownLevel = 0;

  // "Program Level: Main" / "Program Level: Sub 2" for the running level.
  static std::string ProgramLevelText(int callLevel);
  // "Display Level: ..." for ShownLevel.
  std::string DisplayLevelText() const;
  // A level as shown: "Main" at 0, else "Sub " and the level.
  static std::string LevelName(int level);

  // Non-empty locals of ShownLevel, non-empty common variables, then every watched number, in
  // the order of their numbers.
  std::vector<VariableRow> Rows() const;
  // The rows as lines "name<TAB>value", each ended by CR LF (clipboard and printing).
  std::string RowsText() const;

  // cmdUp: one level up, not past `callLevel`; cmdDown: one down, not below 0.
  void LevelUp(int callLevel);
  void LevelDown();

  // Asks "Clear all Local and Common variables?" (Yes, No); on Yes empties them. True when
  // cleared.
  bool ClearVariables();
  // Stores the value of expression `text` in variable `number` (locals of ShownLevel for 1 to
  // 99); an empty text or an empty result makes it empty. An error of the expression is shown
  // with its message and nothing changes; false then.
  bool EditVariable(int number, std::string_view text);

  // The watch list, as kept in the setting "System Variable List".
  const std::vector<int>& SystemVariableList() const { return watched_; }
  void LoadSystemVariableList();
  // Adds the number of `text` (a leading "#" dropped) when it is a whole number from 1000 to
  // 50000; otherwise shows "Invalid system variable number". The list is saved at once.
  bool AddSystemVariable(std::string_view text);
  // Takes `number` off the list (nothing when it is not on it) and saves the list.
  void RemoveSystemVariable(int number);

 private:
  void SaveSystemVariableList();
  void Message(std::string_view text);
  VariableRow MakeRow(int number, bool system) const;

  VariableStore& variables_;
  Evaluator& evaluator_;
  Host& host_;
  SettingsStore& settings_;
  std::vector<int> watched_;
};

}  // namespace zemtra
