#pragma once
// The macro expression evaluator: ScanValue reads an expression out of block text into a token
// table, EvaluateValue reduces that table, innermost bracket first, to one number.
#include <array>
#include <cstdint>
#include <stdexcept>
#include <string>
#include <string_view>

namespace zemtra {

class VariableStore;

// Codes returned by the evaluator and the macro statements; ErrorMessage gives their texts.
namespace ErrorCode {
constexpr int kNone = 0;
constexpr int kExpressionSyntax = 1;
constexpr int kGroupingMismatch = 2;
constexpr int kMissingOperator = 3;
constexpr int kInvalidVariableNumber = 4;
constexpr int kSqrOperandNegative = 5;
constexpr int kLnOperandNegative = 6;
constexpr int kDivisionByZero = 7;
constexpr int kModDivisionByZero = 8;
constexpr int kInvalidCharacter = 9;
constexpr int kInvalidCharacterInExpression = 10;
constexpr int kCannotAssignVariable0 = 11;
constexpr int kExpectedVariableNumber = 12;
constexpr int kExpectedExpression = 13;
constexpr int kPlaneChangeUnderG68 = 14;
constexpr int kAtanFormat = 15;
constexpr int kExpectedOffsetNumber = 16;
constexpr int kOffsetNumberOutOfRange = 17;
constexpr int kExpectedGotoOrThen = 102;
constexpr int kBlockNumberNotFound = 103;
constexpr int kExpectedDo = 104;
constexpr int kInvalidLoopNumber = 105;
constexpr int kLoopEndNotFound = 106;
constexpr int kEndWithoutDo = 107;
}  // namespace ErrorCode

// Text of an error code; "" for a code without a message.
std::string ErrorMessage(int code);

// True when every character is a digit, "+", "-" or "."; false for the empty text.
bool IsNumberText(std::string_view text);

// A failure of an expression that has no error code: arithmetic the language does not guard
// (LN[0], ACOS[-1], overflow, a negative number to a broken power, an integer conversion out of
// range). Whoever runs the evaluator ends its command with "Error in <command>", a line end and
// what(). Thrown by ScanValue, EvaluateValue and everything built on them.
class ExpressionFault : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

// An expression of more tokens than the table holds (101). what() is "Expression too long".
class ExpressionTooLong : public ExpressionFault {
 public:
  ExpressionTooLong() : ExpressionFault("Expression too long") {}
};

class Evaluator {
 public:
  static constexpr int kTokenSlots = 101;

  // Token codes; the decade gives the priority level of operators and functions.
  enum Token : std::int16_t {
    kNumber = 1,
    kOpen = 2,
    kClose = 3,
    kSin = 11,
    kCos = 12,
    kTan = 13,
    kAtan = 14,
    kAcos = 15,
    kSqrt = 16,
    kAbs = 17,
    kBin = 18,
    kBcd = 19,
    kRound = 20,
    kFix = 21,
    kFup = 22,
    kLn = 23,
    kExp = 24,
    kAsin = 25,
    kIndirect = 29,  // "#" in front of "[" or "#"
    kPower = 31,
    kMultiply = 32,
    kDivide = 33,
    kMod = 34,
    kAnd = 35,
    kPlus = 41,
    kMinus = 42,
    kOr = 43,
    kXor = 44,
    kEq = 51,
    kNe = 52,
    kLt = 53,
    kLe = 54,
    kGt = 55,
    kGe = 56,
  };

  explicit Evaluator(VariableStore& variables);

  // ATAN[a]/[b] as the only ATAN form, giving 0 to 360 degrees (machine configuration option).
  void SetFanucATANFormat(bool on) { fanucATANFormat_ = on; }
  bool FanucATANFormat() const { return fanucATANFormat_; }

  // Reads an expression from the 1-based `position` (a leading "=" is passed over) and leaves
  // `position` on the first character that cannot continue it; `valueText` receives the
  // upper-cased text read. Returns 0 or an error code (1, 2); after an error the table must not
  // be evaluated. Throws ExpressionTooLong past 101 tokens.
  int ScanValue(std::string_view text, int& position, std::string& valueText);
  // Reduces the table ScanValue left. `isEmpty` tells a null result (an empty variable);
  // `error` is 0 or an error code (1-8, 15). Throws ExpressionFault on unguarded arithmetic.
  double EvaluateValue(bool& isEmpty, int& error);
  // Reads one signed number or "#n" variable from the 1-based `position` and moves past it.
  // Digits with at most one ".", no exponent. #0 and unset variables give 0 with `isEmpty`;
  // numbers above 50000 give 0 and are not empty.
  double ReadNumber(std::string_view text, int& position, bool& isEmpty);

  // Tokens of the last scan (for tests and the stepping display).
  int TokenCount() const { return tokenCount_; }

 private:
  struct TokenSlot {
    std::int16_t type = 0;
    std::int16_t aux = 0;  // -1 null mark on numbers; the quadrant code after an ATAN division
    double value = 0;
  };
  struct Group {
    int start = 0;
    int end = -1;
  };

  // Scanning.
  int ScanToken(std::string_view text, int& position, int& index, bool& finished);
  int ScanSign(std::string_view text, int& position, int& index);
  int ScanWord(std::string_view text, int& position, int& index, bool& finished);
  int ScanHash(std::string_view text, int& position, int& index, bool& finished);
  void Store(int index, std::int16_t type, double value = 0, std::int16_t aux = 0);
  double ReadVariableNumber(double number, bool& isEmpty) const;

  // Reduction.
  bool RewriteATAN();
  void Insert(int index, std::int16_t type);
  void Remove(int index, int count);
  Group FindGroup() const;
  int RunPass(int level, int& groupStart);
  int Apply(int index, bool first, double left, std::int16_t leftAux, bool& applied);
  int ApplyFunction(std::int16_t type, const TokenSlot& right, double& result, std::int16_t& code,
                    bool& applied) const;
  int ApplyOperator(int index, double left, std::int16_t leftAux, double& result,
                    std::int16_t& code) const;
  int ReadIndirect(double x, double& result, std::int16_t& code) const;
  bool IsATANDivision(int index) const;
  double Atan(double x, std::int16_t code) const;

  VariableStore& variables_;
  bool fanucATANFormat_ = false;
  bool hasATAN_ = false;
  int tokenCount_ = 0;
  int openings_ = 0;  // brackets counted by the scan
  int closings_ = 0;
  // One slot more than the table holds: the slot behind the last token always reads as zeros,
  // so an operator at the end of an expression finds 0 for its right operand.
  std::array<TokenSlot, kTokenSlots + 1> tokens_{};
};

// Result of the Expression Calculator: the value, or the message of what went wrong.
struct Calculation {
  int error = 0;         // error code, or -1 for a fault (see ExpressionFault)
  double value = 0;      // the value when error is 0
  bool isEmpty = false;  // the expression is an empty variable
  std::string text;  // value as "##############0.0##############", "" for a null; or the message
};

// Evaluates a whole text for the Expression Calculator. Text left behind the expression is
// error 10. Never throws.
Calculation Calculate(std::string_view text, Evaluator& evaluator);

}  // namespace zemtra
