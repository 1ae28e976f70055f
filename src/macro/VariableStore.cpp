#include "macro/VariableStore.h"

#include <algorithm>
#include <charconv>
#include <cmath>

#include "core/NumberText.h"
#include "core/SettingsStore.h"
#include "macro/Assignment.h"
#include "macro/Evaluator.h"

namespace zemtra {

namespace {

constexpr const char* kStateSection = "General";
constexpr const char* kStateKey = "Variable State";

// Significant digits of the shortest text that reads back as `value`.
int ShortestDigits(double value) {
  char buffer[32];
  const auto written =
      std::to_chars(buffer, buffer + sizeof buffer, value, std::chars_format::scientific);
  int digits = 0;
  for (const char* c = buffer; c != written.ptr && *c != 'e'; ++c) digits += *c >= '0' && *c <= '9';
  return digits;
}

// The double that the general number text of `value` (15 significant digits) reads back as.
double RoundToTextPrecision(double value) {
  if (!std::isfinite(value) || value == 0) return value == 0 ? 0.0 : value;
  // Whole numbers below 1E+15 already read back as themselves, and so does every value whose
  // shortest text has 15 digits or fewer: its 15-digit rounding lies as close to it.
  if (std::fabs(value) < 1e15 && value == std::trunc(value)) return value;
  if (ShortestDigits(value) <= 15) return value;
  char buffer[32];
  const auto written =
      std::to_chars(buffer, buffer + sizeof buffer, value, std::chars_format::scientific, 14);
  double rounded = value;
  std::from_chars(buffer, written.ptr, rounded, std::chars_format::scientific);
  return rounded == 0 ? 0.0 : rounded;
}

// The twin of an extended work offset number, or 0.
int ListTwin(int n) {
  if (n >= 7000 && n <= 7999) return n + 7000;
  if (n >= 14000 && n <= 19999) return n - 7000;
  return 0;
}

}  // namespace

double VariableValue::Number() const {
  switch (kind_) {
    case Kind::Null:
      return 0;
    case Kind::Text:
      return number_;
    case Kind::Number:
      break;
  }
  if (!exact_) {
    number_ = RoundToTextPrecision(number_);
    exact_ = true;
  }
  return number_;
}

std::string VariableValue::Text() const {
  switch (kind_) {
    case Kind::Null:
      return {};
    case Kind::Text:
      return text_;
    case Kind::Number:
      break;
  }
  return FormatNumberText(number_, "");
}

void VariableValue::SetText(std::string_view text) {
  if (text.empty()) {
    kind_ = Kind::Null;
    return;
  }
  kind_ = Kind::Text;
  text_.assign(text);
  number_ = NumericTextValue(text);
  exact_ = true;
}

void VariableValue::CopyFrom(const VariableValue& other) {
  if (&other == this) return;
  kind_ = other.kind_;
  number_ = other.number_;
  exact_ = other.exact_;
  if (kind_ == Kind::Text) text_ = other.text_;
}

void LocalVariables::Clear() {
  for (VariableValue& value : values_) value.SetNull();
}

VariableStore::VariableStore() = default;

namespace {

// The value at `index` of a range that is made only when first written; nullptr (a null)
// before that.
const VariableValue* RangeValue(const std::vector<VariableValue>& range, int index) {
  return range.empty() ? nullptr : &range[static_cast<std::size_t>(index)];
}

VariableValue* WritableRangeValue(std::vector<VariableValue>& range, int index, int count) {
  if (range.empty()) range.resize(static_cast<std::size_t>(count));
  return &range[static_cast<std::size_t>(index)];
}

}  // namespace

const VariableValue* VariableStore::Find(int n) const {
  if (n < kFirstLocal) return nullptr;
  if (n < kFirstCommon) return &Locals(CurrentFrame())[n];
  if (n < kFirstPersistent) return RangeValue(common_, n - kFirstCommon);
  if (n < kFirstList) return RangeValue(persistent_, n - kFirstPersistent);
  const auto row = listIndex_.find(n);
  return row == listIndex_.end() ? nullptr
                                 : &listRows_[static_cast<std::size_t>(row->second)].value;
}

// The slot of #1 to #5399; list numbers and n below 1 have none. The common and persistent
// ranges are made here on their first write, so that a store nobody writes costs nothing.
VariableValue* VariableStore::Slot(int n) {
  if (n < kFirstLocal || n >= kFirstList) return nullptr;
  if (n < kFirstCommon) return &Locals(CurrentFrame())[n];
  if (n < kFirstPersistent)
    return WritableRangeValue(common_, n - kFirstCommon, kFirstPersistent - kFirstCommon);
  return WritableRangeValue(persistent_, n - kFirstPersistent, kFirstList - kFirstPersistent);
}

VariableValue& VariableStore::ListSlot(int n) {
  const auto [row, added] = listIndex_.try_emplace(n, static_cast<int>(listRows_.size()));
  if (added) listRows_.push_back(ListRow{n, {}});
  return listRows_[static_cast<std::size_t>(row->second)].value;
}

std::string VariableStore::ReadVariable(int n) const {
  const VariableValue* value = Find(n);
  return value ? value->Text() : std::string();
}

void VariableStore::WriteVariable(int n, std::string_view text) {
  if (n >= kFirstList) {
    SetListVar(n, text);
  } else if (VariableValue* slot = Slot(n)) {
    slot->SetText(text);
  }
}

std::string VariableStore::GetListVar(int n) const {
  const auto row = listIndex_.find(n);
  return row == listIndex_.end() ? std::string()
                                 : listRows_[static_cast<std::size_t>(row->second)].value.Text();
}

void VariableStore::SetListVar(int n, std::string_view text) {
  ListSlot(n).SetText(text);
  if (const int twin = ListTwin(n)) ListSlot(twin).SetText(text);
}

double VariableStore::ReadNumber(int n, bool& isNull) const {
  const VariableValue* value = Find(n);
  isNull = value == nullptr || value->IsNull();
  return isNull ? 0.0 : value->Number();
}

bool VariableStore::IsNull(int n) const {
  const VariableValue* value = Find(n);
  return value == nullptr || value->IsNull();
}

void VariableStore::WriteNumber(int n, double value) {
  if (n >= kFirstList) {
    WriteListNumber(n, value);
  } else if (VariableValue* slot = Slot(n)) {
    slot->SetNumber(value);
  }
}

void VariableStore::WriteNull(int n) {
  if (n >= kFirstList) {
    WriteListNull(n);
  } else if (VariableValue* slot = Slot(n)) {
    slot->SetNull();
  }
}

void VariableStore::CopyVariable(int from, int to) {
  const VariableValue* source = Find(from);
  if (source == nullptr || source->IsNull()) {
    WriteNull(to);
  } else if (to >= kFirstList) {
    const VariableValue value = *source;  // a list row may move when the target row is added
    WriteListValue(to, value);
  } else if (VariableValue* slot = Slot(to)) {
    slot->CopyFrom(*source);
  }
}

void VariableStore::WriteListValue(int n, const VariableValue& value) {
  ListSlot(n).CopyFrom(value);
  if (const int twin = ListTwin(n)) ListSlot(twin).CopyFrom(value);
}

void VariableStore::WriteListNumber(int n, double value) {
  ListSlot(n).SetNumber(value);
  if (const int twin = ListTwin(n)) ListSlot(twin).SetNumber(value);
}

void VariableStore::WriteListNull(int n) {
  ListSlot(n).SetNull();
  if (const int twin = ListTwin(n)) ListSlot(twin).SetNull();
}

void VariableStore::ClearVariables() {
  for (int frame = 0; frame < kClearedFrames; ++frame) Locals(frame).Clear();
  for (VariableValue& value : common_) value.SetNull();
}

void VariableStore::ClearAllFrames() {
  for (LocalVariables& frame : frames_) frame.Clear();
}

void VariableStore::ClearAll() {
  ClearAllFrames();
  for (VariableValue& value : common_) value.SetNull();
  for (VariableValue& value : persistent_) value.SetNull();
  listRows_.clear();
  listIndex_.clear();
  callLevel_ = 0;
  inCycleMacro_ = false;
}

void VariableStore::SetCallLevel(int level) {
  callLevel_ = std::clamp(level, 0, kCallFrames - 1);
}

void VariableStore::CopyLocals(int fromFrame, int toFrame, int first, int last) {
  first = std::max(first, 1);
  last = std::min(last, LocalVariables::kCount);
  for (int n = first; n <= last; ++n) Locals(toFrame)[n] = Locals(fromFrame)[n];
}

namespace {

void AppendState(std::string& state, int n, const VariableValue& value) {
  if (value.IsNull()) return;
  state += '#';
  state += FormatNumberText(n, "");
  state += '=';
  state += FormatNumberText(value.Number(), "");
  state += ' ';
}

}  // namespace

std::string VariableStore::VariableStateText() const {
  std::string state;
  for (std::size_t i = 0; i < common_.size(); ++i)
    AppendState(state, kFirstCommon + static_cast<int>(i), common_[i]);
  for (std::size_t i = 0; i < persistent_.size(); ++i)
    AppendState(state, kFirstPersistent + static_cast<int>(i), persistent_[i]);
  for (const ListRow& row : listRows_) AppendState(state, row.number, row.value);
  return state;
}

void VariableStore::SaveVariableState(SettingsStore& settings) const {
  settings.SaveSetting(kStateSection, kStateKey, VariableStateText());
}

int VariableStore::RestoreVariableState(const SettingsStore& settings) {
  const std::string state = settings.GetSetting(kStateSection, kStateKey, "");
  Evaluator evaluator(*this);
  try {
    return ExecuteAssignments(state, evaluator, *this);
  } catch (const ExpressionFault&) {
    return ErrorCode::kExpressionSyntax;
  }
}

}  // namespace zemtra
