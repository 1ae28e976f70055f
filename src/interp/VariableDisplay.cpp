#include "interp/VariableDisplay.h"

#include <algorithm>
#include <cmath>
#include <exception>

#include "core/Host.h"
#include "core/NumberText.h"
#include "core/SettingsStore.h"
#include "core/TextUtil.h"
#include "interp/InterpMessages.h"
#include "macro/Evaluator.h"
#include "macro/VariableStore.h"

namespace zemtra {

namespace {

constexpr std::string_view kSection = "General";
constexpr std::string_view kValueFormat = "##############0.0##############";
constexpr std::string_view kKeyFormat = "00000";
// The argument letter of #1 to #26.
constexpr std::string_view kArgumentLetters = "ABCIJKDEFGHLMNOPQRSTUVWXYZ";

}  // namespace

VariableDisplay::VariableDisplay(VariableStore& variables, Evaluator& evaluator, Host& host,
                                 SettingsStore& settings)
    : variables_(variables), evaluator_(evaluator), host_(host), settings_(settings) {
  LoadSystemVariableList();
}

// ---------------------------------------------------------------------------------------------
// Labels and rows

std::string VariableDisplay::LevelName(int level) {
  return level == 0 ? std::string("Main") : "Sub " + FormatNumberText(level, "0");
}

std::string VariableDisplay::ProgramLevelText(int callLevel) {
  return "Program Level: " + LevelName(callLevel);
}

std::string VariableDisplay::DisplayLevelText() const {
  return "Display Level: " + LevelName(ShownLevel);
}

VariableRow VariableDisplay::MakeRow(int number, bool system) const {
  VariableRow row;
  row.Number = number;
  row.System = system;
  row.Key = FormatNumberText(number, kKeyFormat);
  row.Name = "#" + std::to_string(number);
  if (number >= 1 && number <= 26) {
    row.Name.append(" (").append(1, kArgumentLetters[static_cast<std::size_t>(number - 1)]);
    row.Name.append(")");
  }
  bool isNull = false;
  double value = 0;
  if (number < VariableStore::kFirstCommon) {
    const VariableValue& local = variables_.Locals(ShownLevel)[number];
    isNull = local.IsNull();
    value = local.Number();
  } else {
    value = variables_.ReadNumber(number, isNull);
  }
  row.Value = isNull ? std::string(kEmptyValueText) : FormatNumberText(value, kValueFormat);
  return row;
}

std::vector<VariableRow> VariableDisplay::Rows() const {
  std::vector<VariableRow> rows;
  const LocalVariables& locals = variables_.Locals(ShownLevel);
  for (int n = 1; n <= LocalVariables::kCount; ++n) {
    if (!locals[n].IsNull()) rows.push_back(MakeRow(n, false));
  }
  for (int n = VariableStore::kFirstCommon; n < VariableStore::kFirstPersistent; ++n) {
    if (!variables_.IsNull(n)) rows.push_back(MakeRow(n, false));
  }
  for (const int n : watched_) rows.push_back(MakeRow(n, true));
  std::stable_sort(rows.begin(), rows.end(),
                   [](const VariableRow& a, const VariableRow& b) { return a.Key < b.Key; });
  return rows;
}

std::string VariableDisplay::RowsText() const {
  std::string text;
  for (const VariableRow& row : Rows()) {
    text.append(row.Name).append("\t").append(row.Value).append(kLineEnd);
  }
  return text;
}

// ---------------------------------------------------------------------------------------------
// Commands

void VariableDisplay::LevelUp(int callLevel) {
  if (ShownLevel < callLevel) ++ShownLevel;
}

void VariableDisplay::LevelDown() {
  if (ShownLevel > 0) --ShownLevel;
}

bool VariableDisplay::ClearVariables() {
  const MsgAnswer answer =
      host_.ask(Prompt{std::string(kClearVariablesQuestion), std::string(kMessageTitle),
                       MsgIcon::Question, MsgButtons::YesNo});
  if (answer != MsgAnswer::Yes) return false;
  variables_.ClearVariables();
  return true;
}

bool VariableDisplay::EditVariable(int number, std::string_view text) {
  bool isEmpty = TrimText(text).empty();
  double value = 0;
  if (!isEmpty) {
    try {
      int position = 1;
      std::string scanned;
      int error = evaluator_.ScanValue(text, position, scanned);
      if (error == 0) value = evaluator_.EvaluateValue(isEmpty, error);
      if (error != 0) {
        Message(ErrorMessage(error));
        return false;
      }
    } catch (const ExpressionFault& fault) {
      Message(fault.what());
      return false;
    }
  }
  if (number >= 1 && number < VariableStore::kFirstCommon) {
    VariableValue& local = variables_.Locals(ShownLevel)[number];
    if (isEmpty) {
      local.SetNull();
    } else {
      local.SetNumber(value);
    }
  } else if (isEmpty) {
    variables_.WriteNull(number);
  } else {
    variables_.WriteNumber(number, value);
  }
  return true;
}

void VariableDisplay::Message(std::string_view text) {
  host_.ask(
      Prompt{std::string(text), std::string(kMessageTitle), MsgIcon::Exclamation, MsgButtons::Ok});
}

// ---------------------------------------------------------------------------------------------
// The watch list

void VariableDisplay::LoadSystemVariableList() {
  watched_.clear();
  const std::string text =
      settings_.GetSetting(std::string(kSection), std::string(kSystemVariableListKey));
  std::size_t at = 0;
  while (at < text.size()) {
    const std::size_t end = std::min(text.find(' ', at), text.size());
    const double value = NumericTextValue(std::string_view(text).substr(at, end - at));
    const int number = static_cast<int>(value);
    const bool valid =
        value == number && number >= kFirstSystemVariable && number <= kLastSystemVariable;
    if (valid && std::find(watched_.begin(), watched_.end(), number) == watched_.end()) {
      watched_.push_back(number);
    }
    at = end + 1;
  }
}

void VariableDisplay::SaveSystemVariableList() {
  std::string text;
  for (const int n : watched_) {
    if (!text.empty()) text.push_back(' ');
    text.append(std::to_string(n));
  }
  settings_.SaveSetting(std::string(kSection), std::string(kSystemVariableListKey), text);
}

bool VariableDisplay::AddSystemVariable(std::string_view text) {
  std::string entry = TrimText(text);
  if (!entry.empty() && entry[0] == '#') entry.erase(0, 1);
  const double value = entry.empty() ? 0 : NumericTextValue(entry);
  const bool valid =
      std::floor(value) == value && value >= kFirstSystemVariable && value <= kLastSystemVariable;
  if (!valid) {
    Message(kInvalidSystemVariable);
    return false;
  }
  const int number = static_cast<int>(value);
  if (std::find(watched_.begin(), watched_.end(), number) == watched_.end()) {
    watched_.push_back(number);
    SaveSystemVariableList();
  }
  return true;
}

void VariableDisplay::RemoveSystemVariable(int number) {
  const auto found = std::find(watched_.begin(), watched_.end(), number);
  if (found == watched_.end()) return;
  watched_.erase(found);
  SaveSystemVariableList();
}

}  // namespace zemtra
