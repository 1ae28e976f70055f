#include "macro/Evaluator.h"

#include <algorithm>
#include <cmath>
#include <cstdint>

#include "core/NumberText.h"
#include "macro/VariableStore.h"

namespace zemtra {

namespace {

// The conversion factors of the language's trigonometry, exactly these and no others.
constexpr double kDegreesToRadians = 0.0174532925199432;
constexpr double kRadiansToDegrees = 57.2957795130823;

constexpr int kLastVariable = 50000;

// Texts of run-time failures, in the words the user knows from other BASIC-like controls.
constexpr const char* kOverflow = "Overflow";
constexpr const char* kDivisionFault = "Division by zero";
constexpr const char* kInvalidArgument = "Invalid procedure call or argument";

struct Message {
  int code;
  const char* text;
};

constexpr Message kMessages[] = {
    {ErrorCode::kExpressionSyntax, "Expression Syntax Error"},
    {ErrorCode::kGroupingMismatch, "Grouping Mismatch"},
    {ErrorCode::kMissingOperator, "Missing Operator"},
    {ErrorCode::kInvalidVariableNumber, "Invalid Variable Number"},
    {ErrorCode::kSqrOperandNegative, "Sqr Operand Is Negative"},
    {ErrorCode::kLnOperandNegative, "LN Operand Is Negative"},
    {ErrorCode::kDivisionByZero, "Division by Zero"},
    {ErrorCode::kModDivisionByZero, "MOD Division by Zero"},
    {ErrorCode::kInvalidCharacter, "Invalid Character"},
    {ErrorCode::kInvalidCharacterInExpression, "Invalid Character in Expression"},
    {ErrorCode::kCannotAssignVariable0, "Cannot Assign Variable #0"},
    {ErrorCode::kExpectedVariableNumber, "Expected Variable Number"},
    {ErrorCode::kExpectedExpression, "Expected Expression"},
    {ErrorCode::kPlaneChangeUnderG68, "Cannot change active plane while G68 is active"},
    {ErrorCode::kAtanFormat, "ATAN Format Error"},
    {ErrorCode::kExpectedOffsetNumber, "Expected offset number \"P\""},
    {ErrorCode::kOffsetNumberOutOfRange, "Offset number out of range"},
    {ErrorCode::kExpectedGotoOrThen, "Expected GOTO or THEN"},
    {ErrorCode::kBlockNumberNotFound, "Block Number not Found"},
    {ErrorCode::kExpectedDo, "Expected DO"},
    {ErrorCode::kInvalidLoopNumber, "Invalid Loop Number"},
    {ErrorCode::kLoopEndNotFound, "Loop END not Found"},
    {ErrorCode::kEndWithoutDo, "END Without DO"},
};

// The words of the language, tested in exactly this order, each as a plain comparison.
struct Word {
  std::string_view text;
  std::int16_t token;
};

constexpr Word kWords[] = {
    {"OR", Evaluator::kOr},       {"EQ", Evaluator::kEq},     {"NE", Evaluator::kNe},
    {"LT", Evaluator::kLt},       {"LE", Evaluator::kLe},     {"GT", Evaluator::kGt},
    {"GE", Evaluator::kGe},       {"LN", Evaluator::kLn},     {"ATAN", Evaluator::kAtan},
    {"ACOS", Evaluator::kAcos},   {"ASIN", Evaluator::kAsin}, {"SQRT", Evaluator::kSqrt},
    {"XOR", Evaluator::kXor},     {"MOD", Evaluator::kMod},   {"AND", Evaluator::kAnd},
    {"SIN", Evaluator::kSin},     {"COS", Evaluator::kCos},   {"TAN", Evaluator::kTan},
    {"ATN", Evaluator::kAtan},    {"SQR", Evaluator::kSqrt},  {"ABS", Evaluator::kAbs},
    {"BIN", Evaluator::kBin},     {"BCD", Evaluator::kBcd},   {"RND", Evaluator::kRound},
    {"FIX", Evaluator::kFix},     {"FUP", Evaluator::kFup},   {"EXP", Evaluator::kExp},
    {"ROUND", Evaluator::kRound},
};

// Characters that begin one of the words.
constexpr std::array<bool, 256> WordStarts() {
  std::array<bool, 256> starts{};
  for (const Word& word : kWords) starts[static_cast<unsigned char>(word.text[0])] = true;
  return starts;
}
constexpr std::array<bool, 256> kWordStarts = WordStarts();

// Whether `c` (upper case) is the first letter of one of the words.
bool BeginsWord(char c) {
  return kWordStarts[static_cast<unsigned char>(c)];
}

// Token codes applied by each priority level's pass.
struct LevelCodes {
  int low;
  int high;
};
constexpr LevelCodes kLevelCodes[] = {{11, 29}, {31, 39}, {41, 49}, {51, 59}};

bool IsFunction(int token) {
  return token >= 11 && token <= 29;
}
bool IsDigit(char c) {
  return c >= '0' && c <= '9';
}
char Upper(char c) {
  return c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c;
}
bool IsBlank(char c) {
  return static_cast<unsigned char>(c) < 33;
}

// Character at a 1-based position, upper-cased; '\0' past the end.
char At(std::string_view text, int position) {
  return position >= 1 && position <= static_cast<int>(text.size())
             ? Upper(text[static_cast<std::size_t>(position - 1)])
             : '\0';
}

bool WordAt(std::string_view text, int position, std::string_view word) {
  if (position - 1 + static_cast<int>(word.size()) > static_cast<int>(text.size())) return false;
  for (std::size_t i = 0; i < word.size(); ++i)
    if (Upper(text[static_cast<std::size_t>(position - 1) + i]) != word[i]) return false;
  return true;
}

void SkipBlanks(std::string_view text, int& position) {
  while (position <= static_cast<int>(text.size()) &&
         IsBlank(text[static_cast<std::size_t>(position - 1)]))
    ++position;
}

double RoundHalfEven(double x) {
  const double floor = std::floor(x);
  const double fraction = x - floor;
  if (fraction > 0.5) return floor + 1;
  if (fraction < 0.5) return floor;
  return std::fmod(floor, 2.0) == 0 ? floor : floor + 1;
}

// The value of a run of digits with at most one point. Short runs, as programs write them, take
// the exact mantissa / power-of-ten path; anything longer goes through the general conversion.
double DecimalRunValue(std::string_view run) {
  constexpr double kPowersOfTen[] = {1e0,  1e1,  1e2,  1e3,  1e4,  1e5,  1e6,  1e7,
                                     1e8,  1e9,  1e10, 1e11, 1e12, 1e13, 1e14, 1e15,
                                     1e16, 1e17, 1e18, 1e19, 1e20, 1e21, 1e22};
  constexpr std::uint64_t kExactMantissa = std::uint64_t{1} << 53;
  std::uint64_t mantissa = 0;
  int fractionDigits = 0;
  bool point = false;
  for (const char c : run) {
    if (c == '.') {
      point = true;
      continue;
    }
    mantissa = mantissa * 10 + static_cast<std::uint64_t>(c - '0');
    if (point) ++fractionDigits;
    if (mantissa > kExactMantissa || fractionDigits > 22) return NumericTextValue(run);
  }
  return static_cast<double>(mantissa) / kPowersOfTen[fractionDigits];
}

// Rounding to a 32-bit integer, halves to even; out of range is an overflow.
std::int32_t ToInt32(double x) {
  const double rounded = RoundHalfEven(x);
  if (!(rounded >= -2147483648.0 && rounded <= 2147483647.0)) throw ExpressionFault(kOverflow);
  return static_cast<std::int32_t>(rounded);
}

double Checked(double result) {
  if (std::isnan(result)) throw ExpressionFault(kInvalidArgument);
  if (std::isinf(result)) throw ExpressionFault(kOverflow);
  return result;
}

// BCD to binary: the number as eight hexadecimal digits, read back as decimal digits up to the
// first letter.
double BinaryFromBcd(double x) {
  const double whole = RoundHalfEven(x);
  if (whole >= 4294967296.0 || whole < -2147483648.0) return 0;
  const auto bits = static_cast<std::uint32_t>(static_cast<std::int64_t>(whole));
  double result = 0;
  for (int shift = 28; shift >= 0; shift -= 4) {
    const unsigned digit = (bits >> shift) & 0xFu;
    if (digit > 9) break;
    result = result * 10 + digit;
  }
  return result;
}

// Binary to BCD: the number text read as hexadecimal, a character that is no digit counting -1.
double BcdFromBinary(double x) {
  constexpr std::string_view kDigits = "0123456789ABCDEF";
  const std::string text = FormatNumberText(x, "");
  double result = 0, place = 1;
  for (auto c = text.rbegin(); c != text.rend(); ++c) {
    const auto digit = kDigits.find(*c);
    result += (digit == std::string_view::npos ? -1.0 : static_cast<double>(digit)) * place;
    place *= 16;
  }
  return result;
}

double ArcCosine(double x) {
  if (x == 1) return 0;
  const double root = 1 - x * x;
  if (root == 0) throw ExpressionFault(kDivisionFault);
  if (root < 0) throw ExpressionFault(kInvalidArgument);
  return std::atan(-x / std::sqrt(root)) * kRadiansToDegrees + 90;
}

double ArcSine(double x) {
  if (x == 1) return 90;
  const double root = 1 - x * x;
  if (root == 0) throw ExpressionFault(kDivisionFault);
  if (root < 0) throw ExpressionFault(kInvalidArgument);
  return std::atan(x / std::sqrt(root)) * kRadiansToDegrees;
}

double Power(double base, double exponent) {
  if (base == 0 && exponent < 0) throw ExpressionFault(kDivisionFault);
  return Checked(std::pow(base, exponent));
}

// The two-operand ATAN division: the value and a quadrant code, or false for 0/0.
bool QuadrantDivision(double l, double x, double& value, std::int16_t& code) {
  value = 0;
  if (l == 0) {
    if (x == 0) return false;
    code = x > 0 ? 0 : 4;
    return true;
  }
  if (x == 0) {
    code = l > 0 ? 2 : 6;
    return true;
  }
  value = l / x;
  if (l > 0)
    code = x > 0 ? 1 : 3;
  else
    code = x < 0 ? 5 : 7;
  return true;
}

}  // namespace

std::string ErrorMessage(int code) {
  for (const Message& message : kMessages)
    if (message.code == code) return message.text;
  return {};
}

bool IsNumberText(std::string_view text) {
  if (text.empty()) return false;
  for (const char c : text)
    if (!IsDigit(c) && c != '+' && c != '-' && c != '.') return false;
  return true;
}

Evaluator::Evaluator(VariableStore& variables) : variables_(variables) {}

// ---------------------------------------------------------------------------------------------
// Scanning

int Evaluator::ScanValue(std::string_view text, int& position, std::string& valueText) {
  hasATAN_ = false;
  tokenCount_ = 0;
  tokens_[0] = {};
  valueText.clear();
  if (text.empty()) return 0;
  if (position < 1) position = 1;
  const int start = position;
  if (At(text, position) == '=') ++position;
  openings_ = closings_ = 0;
  int index = -1;
  for (;;) {
    ++index;
    SkipBlanks(text, position);
    if (position > static_cast<int>(text.size())) break;
    bool finished = false;
    if (const int error = ScanToken(text, position, index, finished)) {
      tokenCount_ = 0;
      tokens_[0] = {};
      return error;
    }
    if (finished) break;
  }
  tokenCount_ = index;
  tokens_[static_cast<std::size_t>(index)] = {};
  if (openings_ > closings_) {
    tokenCount_ = 0;
    tokens_[0] = {};
    return ErrorCode::kGroupingMismatch;
  }
  const int end = std::min(position, static_cast<int>(text.size()) + 1);
  if (start < end) {
    valueText.assign(
        text.substr(static_cast<std::size_t>(start - 1), static_cast<std::size_t>(end - start)));
    for (char& c : valueText) c = Upper(c);
  }
  return 0;
}

// One token at `position` (not a blank); sets `finished` where the expression ends.
int Evaluator::ScanToken(std::string_view text, int& position, int& index, bool& finished) {
  const char c = At(text, position);
  if (IsDigit(c) || c == '.') {
    bool isEmpty = false;
    const double value = ReadNumber(text, position, isEmpty);
    Store(index, kNumber, value, isEmpty ? -1 : 0);
    return 0;
  }
  switch (c) {
    case '[':
      if (index > 0 && tokens_[static_cast<std::size_t>(index - 1)].type == kNumber) {
        finished = true;
        return 0;
      }
      Store(index, kOpen);
      ++openings_;
      ++position;
      return 0;
    case ']':
      Store(index, kClose);
      ++position;
      return ++closings_ > openings_ ? ErrorCode::kGroupingMismatch : 0;
    case '+':
    case '-':
      return ScanSign(text, position, index);
    case '*':
      Store(index, kMultiply);
      ++position;
      return 0;
    case '/':
      Store(index, kDivide);
      ++position;
      return 0;
    case '^':
      Store(index, kPower);
      ++position;
      return 0;
    case '#':
      return ScanHash(text, position, index, finished);
    default:
      return ScanWord(text, position, index, finished);
  }
}

// "+" or "-": a leading sign becomes 0 and the operator, a sign behind an operator or a function
// belongs to the number that follows.
int Evaluator::ScanSign(std::string_view text, int& position, int& index) {
  const std::int16_t op = At(text, position) == '+' ? kPlus : kMinus;
  const std::int16_t previous = index > 0 ? tokens_[static_cast<std::size_t>(index - 1)].type : 0;
  if (index == 0 || previous == kOpen) {
    Store(index, kNumber, 0);
    Store(++index, op);
    ++position;
  } else if (previous == kNumber || previous == kClose) {
    Store(index, op);
    ++position;
  } else {
    bool isEmpty = false;
    const double value = ReadNumber(text, position, isEmpty);
    Store(index, kNumber, value, isEmpty ? -1 : 0);
  }
  return 0;
}

int Evaluator::ScanWord(std::string_view text, int& position, int& index, bool& finished) {
  // Most characters that end an expression ("=", the "D" of DO, most address letters)
  // begin no word: they finish without the word-by-word comparison.
  if (!BeginsWord(At(text, position))) {
    finished = true;
    return 0;
  }
  for (const Word& word : kWords) {
    if (!WordAt(text, position, word.text)) continue;
    position += static_cast<int>(word.text.size());
    Store(index, word.token);
    if (!IsFunction(word.token)) return 0;
    if (word.token == kAtan) hasATAN_ = true;
    Store(++index, kOpen);
    ++openings_;
    SkipBlanks(text, position);
    if (At(text, position) != '[') return ErrorCode::kExpressionSyntax;
    ++position;
    return 0;
  }
  finished = true;
  return 0;
}

int Evaluator::ScanHash(std::string_view text, int& position, int& index, bool& finished) {
  const std::int16_t previous = index > 0 ? tokens_[static_cast<std::size_t>(index - 1)].type : 0;
  if (previous == kClose || previous == kNumber) {  // a new variable ends the expression
    finished = true;
    return 0;
  }
  if (position >= static_cast<int>(text.size())) return ErrorCode::kExpressionSyntax;
  const char next = At(text, position + 1);
  if (IsDigit(next)) {
    bool isEmpty = false;
    const double value = ReadNumber(text, position, isEmpty);
    Store(index, kNumber, value, isEmpty ? -1 : 0);
    return 0;
  }
  if (next == '#' || next == '[') {
    Store(index, kIndirect);
    ++position;
    return 0;
  }
  return ErrorCode::kExpressionSyntax;
}

void Evaluator::Store(int index, std::int16_t type, double value, std::int16_t aux) {
  if (index >= kTokenSlots) throw ExpressionTooLong();
  tokens_[static_cast<std::size_t>(index)] = TokenSlot{type, aux, value};
}

double Evaluator::ReadNumber(std::string_view text, int& position, bool& isEmpty) {
  isEmpty = false;
  position = std::clamp(position, 1, static_cast<int>(text.size()) + 1);
  const char sign = At(text, position);
  const bool negative = sign == '-';
  if (sign == '+' || sign == '-') ++position;
  const bool variable = At(text, position) == '#';
  if (variable) ++position;
  const int start = position;
  bool point = false;
  for (char c = At(text, position); IsDigit(c) || (c == '.' && !point); c = At(text, ++position))
    point = point || c == '.';
  double value = DecimalRunValue(
      text.substr(static_cast<std::size_t>(start - 1), static_cast<std::size_t>(position - start)));
  if (variable) value = ReadVariableNumber(value, isEmpty);
  return negative ? 0.0 - value : value;
}

// The value of variable `number` (rounded to a whole number) as a plain "#n" reads it.
double Evaluator::ReadVariableNumber(double number, bool& isEmpty) const {
  const std::int32_t n = ToInt32(number);
  if (n == 0) {
    isEmpty = true;
    return 0;
  }
  if (n > kLastVariable) return 0;
  return variables_.ReadNumber(n, isEmpty);
}

// ---------------------------------------------------------------------------------------------
// Reduction

double Evaluator::EvaluateValue(bool& isEmpty, int& error) {
  isEmpty = false;
  error = 0;
  if (tokenCount_ == 0) return 0;
  if (hasATAN_ && fanucATANFormat_ && !RewriteATAN()) {
    error = ErrorCode::kAtanFormat;
    return 0;
  }
  for (;;) {
    if (tokenCount_ == 1) {
      if (tokens_[0].type != kNumber) break;
      isEmpty = tokens_[0].aux == -1;
      return tokens_[0].value;
    }
    int groupStart = 0;
    for (int level = 1; level <= 4; ++level)
      if ((error = RunPass(level, groupStart)) != 0) return 0;
    if (tokenCount_ == 1) continue;
    if (groupStart > 1 && tokens_[static_cast<std::size_t>(groupStart - 2)].type == kNumber) {
      error = ErrorCode::kMissingOperator;
      return 0;
    }
    if (groupStart < 1) break;
    // The group is down to one token: it replaces its "[", and its "]" goes.
    tokens_[static_cast<std::size_t>(groupStart - 1)] =
        tokens_[static_cast<std::size_t>(groupStart)];
    Remove(groupStart, 2);
  }
  error = ErrorCode::kExpressionSyntax;
  return 0;
}

// Makes ATAN[a]/[b] one bracket, ATAN[[a]/[b]], so that the division reaches the function.
bool Evaluator::RewriteATAN() {
  const auto closeOf = [this](int open) {
    int depth = 0;
    for (int i = open; i < tokenCount_; ++i) {
      const std::int16_t type = tokens_[static_cast<std::size_t>(i)].type;
      if (type == kOpen) ++depth;
      if (type == kClose && --depth == 0) return i;
    }
    return -1;
  };
  const auto typeAt = [this](int i) {
    return i < tokenCount_ ? tokens_[static_cast<std::size_t>(i)].type : std::int16_t{0};
  };
  for (int i = 0; i < tokenCount_; ++i) {
    if (tokens_[static_cast<std::size_t>(i)].type != kAtan) continue;
    Insert(i + 2, kOpen);
    const int firstClose = closeOf(i + 2);
    if (firstClose < 0 || typeAt(firstClose + 1) != kDivide || typeAt(firstClose + 2) != kOpen)
      return false;
    const int secondClose = closeOf(firstClose + 2);
    if (secondClose < 0) return false;
    Insert(secondClose + 1, kClose);
  }
  return true;
}

void Evaluator::Insert(int index, std::int16_t type) {
  if (tokenCount_ >= kTokenSlots) throw ExpressionTooLong();
  for (int i = tokenCount_; i > index; --i)
    tokens_[static_cast<std::size_t>(i)] = tokens_[static_cast<std::size_t>(i - 1)];
  tokens_[static_cast<std::size_t>(index)] = TokenSlot{type, 0, 0};
  ++tokenCount_;
  tokens_[static_cast<std::size_t>(tokenCount_)] = {};
}

// Closes up the table over `count` tokens from `index`; the count falls by `count` even where
// those lie behind the last token, as an operator at the very end takes its operand from there.
void Evaluator::Remove(int index, int count) {
  for (int i = index; i + count < tokenCount_; ++i)
    tokens_[static_cast<std::size_t>(i)] = tokens_[static_cast<std::size_t>(i + count)];
  const int oldCount = tokenCount_;
  tokenCount_ = std::max(0, tokenCount_ - count);
  for (int i = tokenCount_; i <= oldCount; ++i) tokens_[static_cast<std::size_t>(i)] = {};
}

// The innermost group: behind the last "[" before the first "]", up to that "]".
Evaluator::Group Evaluator::FindGroup() const {
  Group group{0, tokenCount_ - 1};
  for (int i = 0; i < tokenCount_; ++i) {
    const std::int16_t type = tokens_[static_cast<std::size_t>(i)].type;
    if (type == kOpen) group.start = i + 1;
    if (type == kClose) {
      group.end = i - 1;
      break;
    }
  }
  return group;
}

// Applies every token of one priority level in the innermost group, strictly left to right.
int Evaluator::RunPass(int level, int& groupStart) {
  const Group group = FindGroup();
  groupStart = group.start;
  const int low = kLevelCodes[level - 1].low, high = kLevelCodes[level - 1].high;
  int end = group.end;
  double left = 0;
  std::int16_t leftAux = 0;
  for (int i = group.start; i <= end;) {
    const TokenSlot& token = tokens_[static_cast<std::size_t>(i)];
    if (token.type < low || token.type > high) {
      left = token.value;
      leftAux = token.aux;
      ++i;
      continue;
    }
    const bool first = i == group.start;
    const bool function = IsFunction(token.type);
    bool applied = true;
    if (const int error = Apply(i, first, left, leftAux, applied)) return error;
    if (!applied) {
      ++i;
      continue;
    }
    end -= function || first ? 1 : 2;
    i = group.start;
    left = 0;
    leftAux = 0;
  }
  return 0;
}

// Applies the function or operator at `index` and closes up the table behind its result.
int Evaluator::Apply(int index, bool first, double left, std::int16_t leftAux, bool& applied) {
  const auto at = static_cast<std::size_t>(index);
  const bool function = IsFunction(tokens_[at].type);
  double result = 0;
  std::int16_t code = 0;
  if (function) {
    if (const int error = ApplyFunction(tokens_[at].type, tokens_[at + 1], result, code, applied))
      return error;
    if (!applied) return 0;
  } else if (const int error = ApplyOperator(index, left, leftAux, result, code)) {
    return error;
  }
  if (function || first) {
    tokens_[at] = TokenSlot{kNumber, code, result};
    Remove(index + 1, 1);
  } else {
    tokens_[at - 1] = TokenSlot{kNumber, code, result};
    Remove(index, 2);
  }
  return 0;
}

int Evaluator::ApplyFunction(std::int16_t type, const TokenSlot& right, double& result,
                             std::int16_t& code, bool& applied) const {
  const double x = right.value;
  switch (type) {
    case kSin:
      result = std::sin(x * kDegreesToRadians);
      break;
    case kCos:
      result = std::cos(x * kDegreesToRadians);
      break;
    case kTan:
      result = Checked(std::tan(x * kDegreesToRadians));
      break;
    case kAtan:
      result = Atan(x, right.aux);
      break;
    case kAcos:
      result = ArcCosine(x);
      break;
    case kAsin:
      result = ArcSine(x);
      break;
    case kSqrt:
      if (x < 0) return ErrorCode::kSqrOperandNegative;
      result = std::sqrt(x);
      break;
    case kAbs:
      result = std::fabs(x);
      break;
    case kBin:
      result = BinaryFromBcd(x);
      break;
    case kBcd:
      result = BcdFromBinary(x);
      break;
    case kRound:
      result = RoundHalfEven(x);
      break;
    case kFix:
      result = std::trunc(x);
      break;
    case kFup:
      result = x > 0 ? std::ceil(x) : std::floor(x);
      break;
    case kLn:
      if (x < 0) return ErrorCode::kLnOperandNegative;
      if (x == 0) throw ExpressionFault(kInvalidArgument);
      result = std::log(x);
      break;
    case kExp:
      result = Checked(std::exp(x));
      break;
    case kIndirect:
      // The variable number is still an expression: a later pass comes back to it.
      if (right.type != kNumber) {
        applied = false;
        return 0;
      }
      return ReadIndirect(x, result, code);
    default:
      break;
  }
  return 0;
}

// "#[expression]" and "##n": the variable the value names; numbers beyond the list are error 4.
int Evaluator::ReadIndirect(double x, double& result, std::int16_t& code) const {
  const double n = std::trunc(x);
  if (n == 0) {
    result = 0;
    code = -1;
    return 0;
  }
  if (n < 1 || n > kLastVariable) return ErrorCode::kInvalidVariableNumber;
  bool isNull = false;
  result = variables_.ReadNumber(static_cast<int>(n), isNull);
  code = isNull ? -1 : 0;
  return 0;
}

int Evaluator::ApplyOperator(int index, double left, std::int16_t leftAux, double& result,
                             std::int16_t& code) const {
  const TokenSlot& right = tokens_[static_cast<std::size_t>(index + 1)];
  const double x = right.value;
  const bool leftNull = leftAux == -1, rightNull = right.aux == -1;
  switch (tokens_[static_cast<std::size_t>(index)].type) {
    case kPower:
      result = Power(left, x);
      break;
    case kMultiply:
      result = Checked(left * x);
      break;
    case kDivide:
      if (IsATANDivision(index)) {
        if (!QuadrantDivision(left, x, result, code)) return ErrorCode::kAtanFormat;
        break;
      }
      if (x == 0) return ErrorCode::kDivisionByZero;
      result = Checked(left / x);
      break;
    case kMod: {
      if (x == 0) return ErrorCode::kModDivisionByZero;
      const std::int32_t divisor = ToInt32(x), dividend = ToInt32(left);
      if (divisor == 0) throw ExpressionFault(kDivisionFault);
      result = divisor == -1 ? 0 : dividend % divisor;
      break;
    }
    case kAnd:
      result = ToInt32(left) & ToInt32(x);
      break;
    case kOr:
      result = ToInt32(left) | ToInt32(x);
      break;
    case kXor:
      result = ToInt32(left) ^ ToInt32(x);
      break;
    case kPlus:
      result = Checked(left + x);
      break;
    case kMinus:
      result = Checked(left - x);
      break;
    case kEq:
      result = leftNull || rightNull ? (leftNull && rightNull) : left == x;
      break;
    case kNe:
      result = leftNull || rightNull ? !(leftNull && rightNull) : left != x;
      break;
    case kLt:
      result = left < x;
      break;
    case kLe:
      result = left <= x;
      break;
    case kGt:
      result = left > x;
      break;
    case kGe:
      result = left >= x;
      break;
    default:
      break;
  }
  return 0;
}

// A "/" that divides the two operands of a two-operand ATAN: ATAN [ number / number ].
bool Evaluator::IsATANDivision(int index) const {
  if (!hasATAN_ || !fanucATANFormat_ || index < 3) return false;
  const auto type = [this, index](int offset) {
    return tokens_[static_cast<std::size_t>(index + offset)].type;
  };
  return type(-3) == kAtan && type(-2) == kOpen && type(-1) == kNumber && type(1) == kNumber &&
         type(2) == kClose;
}

double Evaluator::Atan(double x, std::int16_t code) const {
  if (!fanucATANFormat_) return std::atan(x) * kRadiansToDegrees;
  const double angle = std::atan(std::fabs(x)) * kRadiansToDegrees;
  switch (code) {
    case 0:
      return 0;
    case 1:
      return angle;
    case 2:
      return 90;
    case 3:
      return 180 - angle;
    case 4:
      return 180;
    case 5:
      return 180 + angle;
    case 6:
      return 270;
    case 7:
      return 360 - angle;
    default:
      return std::atan(x) * kRadiansToDegrees;
  }
}

// ---------------------------------------------------------------------------------------------

Calculation Calculate(std::string_view text, Evaluator& evaluator) {
  Calculation result;
  try {
    int position = 1;
    std::string valueText;
    SkipBlanks(text, position);
    if (position > static_cast<int>(text.size())) {
      result.error = ErrorCode::kExpectedExpression;
    } else {
      result.error = evaluator.ScanValue(text, position, valueText);
      SkipBlanks(text, position);
      if (result.error == 0 && position <= static_cast<int>(text.size()))
        result.error = ErrorCode::kInvalidCharacterInExpression;
      if (result.error == 0) result.value = evaluator.EvaluateValue(result.isEmpty, result.error);
    }
  } catch (const ExpressionFault& fault) {
    result.error = -1;
    result.value = 0;
    result.text = fault.what();
    return result;
  }
  if (result.error != 0) {
    result.value = 0;
    result.isEmpty = false;
    result.text = ErrorMessage(result.error);
  } else if (!result.isEmpty) {
    result.text = FormatNumberText(result.value, "##############0.0##############");
  }
  return result;
}

}  // namespace zemtra
