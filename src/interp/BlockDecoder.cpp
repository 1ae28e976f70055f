// Decoding of one cleaned block: every address is read into the address tables, modal codes
// are taken, and the position moves as the letters come.
#include <array>
#include <charconv>
#include <cmath>
#include <string_view>

#include "config/MachineConfig.h"
#include "interp/Axes.h"
#include "interp/BlockReader.h"
#include "interp/InterpMessages.h"
#include "interp/Interpreter.h"
#include "macro/Evaluator.h"
#include "macro/VariableStore.h"

namespace zemtra {

namespace {

constexpr int kInvalidCharacter = 9;
constexpr int kEmptyValue = 10;
constexpr int kPlaneChangeUnderG68 = 14;
constexpr int kExpectedOffsetNumber = 16;
constexpr int kOffsetNumberOutOfRange = 17;

// Local variable number of each address letter, A to Z (the macro argument table).
constexpr std::array<int, 27> kArgumentNumber = {0,  1,  2,  3,  7,  8,  9,  10, 11,
                                                 4,  5,  6,  12, 13, 14, 15, 16, 17,
                                                 18, 19, 20, 21, 22, 23, 24, 25, 26};

// True when `rest` begins with a word an expression may continue with (an operator or a
// function): a plain number followed by one goes through the full expression reader.
bool StartsExpressionWord(std::string_view rest) {
  const auto is = [rest](std::string_view word) { return rest.substr(0, word.size()) == word; };
  if (rest.size() < 2) return false;
  switch (rest[0]) {
    case 'A':
      return is("ATAN") || is("ACOS") || is("ASIN") || is("AND") || is("ATN") || is("ABS");
    case 'B':
      return is("BIN") || is("BCD");
    case 'C':
      return is("COS");
    case 'E':
      return is("EQ") || is("EXP");
    case 'F':
      return is("FIX") || is("FUP");
    case 'G':
      return is("GT") || is("GE");
    case 'L':
      return is("LT") || is("LE") || is("LN");
    case 'M':
      return is("MOD");
    case 'N':
      return is("NE");
    case 'O':
      return is("OR");
    case 'R':
      return is("RND") || is("ROUND");
    case 'S':
      return is("SQRT") || is("SIN") || is("SQR");
    case 'T':
      return is("TAN");
    case 'X':
      return is("XOR");
    default:
      return false;
  }
}

// Exact powers of ten for the decimal fast path.
constexpr double kExactPowersOfTen[] = {1e0,  1e1,  1e2,  1e3,  1e4,  1e5,  1e6,  1e7,
                                        1e8,  1e9,  1e10, 1e11, 1e12, 1e13, 1e14, 1e15,
                                        1e16, 1e17, 1e18, 1e19, 1e20, 1e21, 1e22};

}  // namespace

int Interpreter::DecodeBlock(std::string_view text) {
  const bool lathe = IsLathe();
  if (int code = DecodeAddresses(text, lathe)) return code;
  if (!lathe && ModalG[18] == 16) {
    if (int code = ComputePolarPosition()) return code;
  }
  if (ModalG[12] == 54.1f && offsetNumberMayFollow_) return kExpectedOffsetNumber;
  return 0;
}

// The walk stops before the last character: a letter there has no value and is not read.
// Only a mill block knows the ",C" / ",R" corner form.
int Interpreter::DecodeAddresses(std::string_view text, bool lathe) {
  AddrSeen.fill(0);
  ModalG[0] = 0;
  offsetNumberMayFollow_ = false;
  const int last = static_cast<int>(text.size()) - 1;
  int index = 0;
  while (index < last) {
    const char c = text[static_cast<std::size_t>(index)];
    if (c == ',' && !lathe) {
      const char next = text[static_cast<std::size_t>(index) + 1];
      if (next != 'C' && next != 'R') return kInvalidCharacter;
      ++index;
      continue;
    }
    if (c == '[') return 0;
    if (c < 'A' || c > 'Z') return kInvalidCharacter;
    const int letter = Letter(c);
    int position = index + 2;  // 1-based position of the value
    AddrSeen[letter] = static_cast<std::int16_t>(position < 32767 ? position : 32767);
    if (int code = TakeAddress(text, letter, position, lathe)) return code;
    index = position - 1;
  }
  return 0;
}

// One address: its value, its argument variable, the offset number check, a G-code's modal
// effect, and the move of an axis.
inline int Interpreter::TakeAddress(std::string_view text, int letter, int& position, bool lathe) {
  if (int code = ReadAddressValue(text, letter, position)) return code;
  if (letter <= Letter('T')) WriteArgumentVariable(letter);
  if (offsetNumberMayFollow_) {
    if (int code = CheckOffsetNumber(letter)) return code;
  }
  if (letter == Letter('G')) {
    if (int code = TakeGCode(AddrValue[letter], lathe)) return code;
  }
  if (lathe) {
    MoveLatheAxis(letter);
  } else {
    MoveMillAxis(letter);
  }
  return 0;
}

// Reads the value of an address from the 1-based `position` and leaves `position` behind it.
inline int Interpreter::ReadAddressValue(std::string_view text, int letter, int& position) {
  if (ReadPlainNumber(text, letter, position)) return 0;
  FlushVariables();  // an expression may read what this block has written so far
  const int code = evaluator_.ScanValue(text, position, valueText_);
  if (code > 0) return code;
  if (valueText_.empty()) return kEmptyValue;
  bool isEmpty = false;
  int error = 0;
  const double value = evaluator_.EvaluateValue(isEmpty, error);
  if (error > 0) return error;
  AddrText[letter].Assign(valueText_);
  AddrValue[letter] = value;
  integerFormat_[letter] = valueText_.find('.') == std::string::npos && IsNumberText(valueText_);
  return 0;
}

// The common case of a plain number ("12", "-0.5", "3."), read without the expression
// machinery, with the same result: a leading sign is an operation on 0, so "-0" is 0. Up to 15
// digits with at most 22 decimals convert exactly by one correctly rounded division; longer
// ones go through from_chars. Returns false, having read nothing, when the value is not a plain
// number followed by the end of the block or by the next address.
inline bool Interpreter::ReadPlainNumber(std::string_view text, int letter, int& position) {
  const char* const begin = text.data();
  const char* const end = begin + text.size();
  const char* const start = begin + position - 1;
  const char* at = start;
  bool negative = false;
  if (at < end && (*at == '-' || *at == '+')) negative = *at++ == '-';
  const char* const digitsStart = at;
  std::uint64_t mantissa = 0;
  const auto takeDigits = [&] {
    const char* const first = at;
    for (unsigned d; at < end && (d = static_cast<unsigned>(*at - '0')) <= 9; ++at) {
      mantissa = mantissa * 10 + d;
    }
    return at - first;
  };
  std::ptrdiff_t digits = takeDigits();
  const bool point = at < end && *at == '.';
  std::ptrdiff_t decimals = 0;
  if (point) {
    ++at;
    decimals = takeDigits();
    digits += decimals;
  }
  if (digits == 0) return false;
  if (at < end &&
      (*at < 'A' || *at > 'Z' || StartsExpressionWord(std::string_view(at, end - at)))) {
    return false;
  }
  double value = 0;
  if (digits <= 15 && decimals <= 22) {
    value = static_cast<double>(mantissa) / kExactPowersOfTen[decimals];
  } else {
    const auto result = std::from_chars(digitsStart, at, value);
    if (result.ec != std::errc() || result.ptr != at) return false;
  }
  AddrValue[letter] = negative ? 0 - value : value;
  AddrText[letter].Assign(std::string_view(start, static_cast<std::size_t>(at - start)));
  integerFormat_[letter] = !point;
  position = static_cast<int>(at - begin) + 1;
  return true;
}

inline void Interpreter::WriteArgumentVariable(int letter) {
  blockVariables_.SetArgument(kArgumentNumber[static_cast<std::size_t>(letter)], AddrValue[letter]);
}

// Behind G54 to G59 a P selects an extended offset (G54 P2 is G54.1 P2); behind G54.1 the P
// must follow.
int Interpreter::CheckOffsetNumber(int letter) {
  const bool isP = letter == Letter('P');
  if (ModalG[12] == 54.1f) {
    if (!isP) return kExpectedOffsetNumber;
  } else if (isP) {
    ModalG[12] = 54.1f;
  }
  if (!isP) return 0;
  const double p = AddrValue[letter];
  if (p < 1 || p > 300) return kOffsetNumberOutOfRange;
  ExtendedOffset = static_cast<std::int16_t>(std::trunc(p));
  offsetNumberMayFollow_ = false;
  return 0;
}

int Interpreter::TakeGCode(double g, bool lathe) {
  const float code = static_cast<float>(g);
  if (g < 0 || g >= 100) {
    ModalG[0] = code;
    return 0;
  }
  int group = Groups[static_cast<std::size_t>(g)];
  if (!lathe && (code == 50.1f || code == 51.1f)) group = 19;
  if (group == 1 && !InCycleFile) ModalG[9] = 80;
  if (group == 2 && code != ModalG[2] && ModalG[16] == 68) return kPlaneChangeUnderG68;
  ModalG[static_cast<std::size_t>(group)] = code;
  blockVariables_.SetModalCode(group, g);
  if (group == 12) {
    OffsetPending.fill(true);
    offsetNumberMayFollow_ = true;
  }
  // On a lathe a non-modal code ends the modal cycle's record (not while its file is read).
  if (lathe && group == 0 && code != 4 && !InCycleFile) ClearCycleCall();
  if (ModalG[0] == 9) ModalG[0] = 0;
  if (!lathe &&
      (code == 50 || code == 50.1f || code == 51 || code == 51.1f || code == 53 || code == 68)) {
    ModalG[0] = code;
  }
  return 0;
}

inline void Interpreter::ScaleIntegerValue(int letter, double resolution) {
  if (integerFormat_[letter]) AddrValue[letter] *= resolution;
}

// Scales an integer-format coordinate or rotary word to units; false for any other letter.
bool Interpreter::ScaleAxisWord(int letter) {
  if (IsResolutionLetter(static_cast<char>(letter + 64))) {
    ScaleIntegerValue(letter, config_.CoordinateResolution);
  } else if (IsRotaryLetter(letter)) {
    ScaleIntegerValue(letter, config_.RotaryAxisResolution);
  } else {
    return false;
  }
  return true;
}

void Interpreter::MoveRotaryAxis(int letter) {
  if (!IsRotaryLetter(letter)) return;
  SetAxis(3, AddrValue[letter], ModalG[3] == 91);
  UpdateAxisVariables(3, 3, 1);
  RotaryUsed = true;
}

void Interpreter::MoveMillAxis(int letter) {
  if (!ScaleAxisWord(letter)) return;
  if (ModalG[0] != 0 && ModalG[0] != 28) return;
  const bool cycleParameter = ModalG[9] != 80 && !InCycleFile;
  switch (letter + 64) {
    case 'R':
      if (cycleParameter) TakeCycleParameter(letter);
      return;
    case 'Z':
      if (cycleParameter) return TakeCycleParameter(letter);
      SetAxis(2, AddrValue[letter], ModalG[3] == 91);
      UpdateAxisVariables(2, 2, 1);
      if (ModalG[9] == 80) blockVariables_.SetZLevel(CurrentPos.Z);
      return;
    case 'X':
    case 'Y': {
      const int axis = letter == Letter('X') ? 0 : 1;
      if (ModalG[18] == 16) return TakePolarWord(letter);  // the position comes at the end
      SetAxis(axis, AddrValue[letter], ModalG[3] == 91);
      UpdateAxisVariables(axis, axis, 1);
      return;
    }
    default:
      break;
  }
  MoveRotaryAxis(letter);
}

// On a lathe X and U move X, Z and W move Z; U and W always add. X words may be diameters.
void Interpreter::MoveLatheAxis(int letter) {
  const char c = static_cast<char>(letter + 64);
  if (!ScaleAxisWord(letter) && c != 'U' && c != 'W') return;
  if (ModalG[0] != 0 && ModalG[0] != 28) return;
  const bool cycleParameter = ModalG[9] != 80 && !InCycleFile;
  const bool roughingCycle = ModalG[9] >= 70 && ModalG[9] <= 73;
  const bool diameter = config_.LatheXDiameter != 0;
  switch (c) {
    case 'R':
      if (cycleParameter) TakeCycleParameter(letter);
      return;
    case 'X':
    case 'U': {
      if (c == 'U' && roughingCycle) return;
      double value = AddrValue[letter];
      if (diameter && ModalG[0] != 65) value /= 2;
      SetAxis(0, value, c == 'U' || ModalG[3] == 91);
      UpdateAxisVariables(0, 0, diameter ? 2 : 1);
      return;
    }
    case 'Z':
    case 'W':
      if (c == 'W' && roughingCycle) return;
      if (c == 'Z' && cycleParameter) return TakeCycleParameter(letter);
      SetAxis(2, AddrValue[letter], c == 'W' || ModalG[3] == 91);
      UpdateAxisVariables(2, 1, 1);
      if (ModalG[9] == 80) blockVariables_.SetZLevel(CurrentPos.Z);
      return;
    default:
      break;
  }
  MoveRotaryAxis(letter);
}

// Z and R of a block under a modal cycle are the cycle's depth and R level, not positions.
void Interpreter::TakeCycleParameter(int letter) {
  const double value = AddrValue[letter];
  const double level = ModalG[3] == 91 ? double(CurrentPos.Z) + value : value;
  variables_.WriteNumber(letter == Letter('Z') ? 5101 : 5102, level);
}

}  // namespace zemtra
