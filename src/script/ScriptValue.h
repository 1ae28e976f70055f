#pragma once
// A value passed between a script and the ZMT functions: undefined, a number, a text or a
// truth value. It carries no script-engine object, so it may cross from the script's thread
// to the thread that owns the program.
#include <cstdint>
#include <string>

namespace zemtra {

class ScriptValue {
 public:
  enum class Kind { Undefined, Number, Text, Boolean };

  ScriptValue() = default;
  static ScriptValue Number(double value);
  static ScriptValue Text(std::string value);
  static ScriptValue Boolean(bool value);

  Kind GetKind() const { return kind_; }
  bool IsUndefined() const { return kind_ == Kind::Undefined; }
  // Undefined, or a text that is "" (an argument that was not given counts as "").
  bool IsEmpty() const;
  // The value as text: numbers in the general form, true as "True", undefined as "".
  std::string AsText() const;
  // The value as a number: texts through numeric text conversion ("12abc" is 12, "" is 0),
  // true as -1, undefined as 0.
  double AsNumber() const;
  // AsNumber rounded to the nearest whole number and held within the 32-bit range.
  std::int32_t AsInt32() const;
  // A truth value: nonzero numbers, non-empty texts other than "0" and "False", true.
  bool AsBoolean() const;

 private:
  Kind kind_ = Kind::Undefined;
  double number_ = 0;
  std::string text_;
};

}  // namespace zemtra
