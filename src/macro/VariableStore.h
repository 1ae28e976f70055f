#pragma once
// The macro variables #1 to #50000: locals per call frame, common, persistent and list variables.
// A value means a text (the empty text is a null), but a value written as a number keeps the
// number and makes its text only when someone reads it as text.
#include <array>
#include <cstdint>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace zemtra {

class SettingsStore;

// One variable. A number reads back as its 15-significant-digit text would: writing 1/3 and
// reading it as a number gives the double of "0.333333333333333".
class VariableValue {
 public:
  bool IsNull() const { return kind_ == Kind::Null; }
  // The number its text converts to; 0 for a null.
  double Number() const;
  // The text: "" for a null, the general number text for a number, else the text as written.
  std::string Text() const;
  void SetNull() { kind_ = Kind::Null; }
  // Keeps `value`, meaning its general number text; allocates nothing.
  void SetNumber(double value) {
    kind_ = Kind::Number;
    number_ = value;
    exact_ = false;
  }
  // Keeps a text; the empty text makes a null.
  void SetText(std::string_view text);
  // Takes the value of `other` as it stands; allocates only to copy a written text.
  void CopyFrom(const VariableValue& other);

 private:
  enum class Kind : std::uint8_t { Null, Number, Text };
  Kind kind_ = Kind::Null;
  mutable bool exact_ = true;  // number_ already is what its text reads back as
  mutable double number_ = 0;
  std::string text_;  // only meaningful for Kind::Text
};

// #1 to #99 of one call frame. Copyable, so a statement can work on a copy of the frame.
class LocalVariables {
 public:
  static constexpr int kCount = 99;
  // n from 1 to 99.
  VariableValue& operator[](int n) { return values_[static_cast<std::size_t>(n - 1)]; }
  const VariableValue& operator[](int n) const { return values_[static_cast<std::size_t>(n - 1)]; }
  // Makes all 99 empty.
  void Clear();

 private:
  std::array<VariableValue, kCount> values_;
};

class VariableStore {
 public:
  // Frames 0 to 8 belong to the call levels, frame 9 to a running canned cycle macro.
  // ClearVariables empties only frames 0 to 7 (kClearedFrames): frame 8 and the cycle frame stay.
  static constexpr int kCallFrames = 9;
  static constexpr int kCycleFrame = 9;
  static constexpr int kFrameCount = 10;
  static constexpr int kClearedFrames = 8;

  static constexpr int kFirstLocal = 1;
  static constexpr int kFirstCommon = 100;
  static constexpr int kFirstPersistent = 1000;
  static constexpr int kFirstList = 5400;
  static constexpr int kLastList = 50000;

  VariableStore();

  // Text of #n: "" for a null, for #0, for negative n and for list numbers never written.
  // 1-99 read the current frame; 5400 and above the list.
  std::string ReadVariable(int n) const;
  // Stores a text ("" makes a null). 5400 and above go through SetListVar; 0 and negative n
  // are ignored.
  void WriteVariable(int n, std::string_view text);
  // Text of list variable n; "" when it was never written.
  std::string GetListVar(int n) const;
  // Writes list variable n and its twin: 7000-7999 also n + 7000, 14000-19999 also n - 7000.
  void SetListVar(int n, std::string_view text);

  // Fast numeric access for the interpreter and the evaluator; allocates nothing (a first write
  // of a new list number adds a row). Routing as for ReadVariable / WriteVariable.
  double ReadNumber(int n, bool& isNull) const;
  double ReadNumber(int n) const {
    bool isNull = false;
    return ReadNumber(n, isNull);
  }
  bool IsNull(int n) const;
  // Same meaning as WriteVariable(n, general number text of value).
  void WriteNumber(int n, double value);
  void WriteNull(int n);
  // #to takes the value of #from as it stands, null included, without rounding or formatting it
  // (e.g. the previous-block position taking the old work position on every block).
  void CopyVariable(int from, int to);

  // Empties #1-#99 of frames 0 to 7 and #100-#999; persistent, list variables, frame 8 and the
  // cycle frame stay.
  void ClearVariables();
  // Empties the locals of every frame, the cycle frame included (start of a run).
  void ClearAllFrames();
  // Empties every table, as at program start.
  void ClearAll();

  // The current frame: the cycle frame while a cycle macro runs, else the call level.
  int CurrentFrame() const { return inCycleMacro_ ? kCycleFrame : callLevel_; }
  int CallLevel() const { return callLevel_; }
  // level 0 to 8; values outside are clamped.
  void SetCallLevel(int level);
  bool InCycleMacro() const { return inCycleMacro_; }
  void SetInCycleMacro(bool running) { inCycleMacro_ = running; }
  // Locals of frame 0 to 9 (kCycleFrame).
  LocalVariables& Locals(int frame) { return frames_[static_cast<std::size_t>(frame)]; }
  const LocalVariables& Locals(int frame) const { return frames_[static_cast<std::size_t>(frame)]; }
  LocalVariables& CurrentLocals() { return Locals(CurrentFrame()); }
  // Copies #first to #last (1-99) of one frame into another, e.g. #1-#26 for a subprogram call.
  void CopyLocals(int fromFrame, int toFrame, int first, int last);

  // Rows of the list in order of first assignment, row 1 to ListVarCount().
  int ListVarCount() const { return static_cast<int>(listRows_.size()); }
  int ListVarNumber(int row) const { return listRows_[static_cast<std::size_t>(row - 1)].number; }

  // "#n=value " for every non-empty #100-#5399 and list row, values as general number text.
  std::string VariableStateText() const;
  // Writes VariableStateText() to section "General", key "Variable State".
  void SaveVariableState(SettingsStore& settings) const;
  // Runs the saved "Variable State" as one line of assignments. Returns 0, or the error code of
  // the first assignment that failed (those before it stand); never throws.
  int RestoreVariableState(const SettingsStore& settings);

 private:
  struct ListRow {
    int number = 0;
    VariableValue value;
  };
  const VariableValue* Find(int n) const;
  VariableValue* Slot(int n);
  VariableValue& ListSlot(int n);
  void WriteListNumber(int n, double value);
  void WriteListNull(int n);
  void WriteListValue(int n, const VariableValue& value);

  std::array<LocalVariables, kFrameCount> frames_;
  std::vector<VariableValue> common_;      // #100 to #999 once one is written, else empty
  std::vector<VariableValue> persistent_;  // #1000 to #5399 once one is written, else empty
  std::vector<ListRow> listRows_;
  std::unordered_map<int, int> listIndex_;  // number -> index into listRows_
  int callLevel_ = 0;
  bool inCycleMacro_ = false;
};

}  // namespace zemtra
