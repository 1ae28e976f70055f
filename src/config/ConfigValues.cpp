#include "config/ConfigValues.h"

#include "core/NumberText.h"
#include "core/TextUtil.h"

namespace zemtra {
namespace {

bool IsBlank(char c) {
  return c == ' ' || c == '\t';
}

std::string_view TrimBlanksAndTabs(std::string_view text) {
  while (!text.empty() && IsBlank(text.front())) text.remove_prefix(1);
  while (!text.empty() && IsBlank(text.back())) text.remove_suffix(1);
  return text;
}

bool IsDigit(char c) {
  return c >= '0' && c <= '9';
}

// Digits with at most one point and at least one digit; advances `i`.
bool TakeMantissa(std::string_view text, std::size_t& i) {
  bool digits = false;
  bool point = false;
  for (; i < text.size(); ++i) {
    if (IsDigit(text[i])) {
      digits = true;
    } else if (text[i] == '.' && !point) {
      point = true;
    } else {
      break;
    }
  }
  return digits;
}

// A complete decimal number: sign, mantissa, optional exponent, nothing else.
bool IsDecimalNumber(std::string_view text) {
  std::size_t i = 0;
  if (i < text.size() && (text[i] == '+' || text[i] == '-')) ++i;
  if (!TakeMantissa(text, i)) return false;
  if (i < text.size() && (text[i] == 'E' || text[i] == 'e' || text[i] == 'D' || text[i] == 'd')) {
    ++i;
    if (i < text.size() && (text[i] == '+' || text[i] == '-')) ++i;
    const std::size_t exponentStart = i;
    while (i < text.size() && IsDigit(text[i])) ++i;
    if (i == exponentStart) return false;
  }
  return i == text.size();
}

}  // namespace

std::optional<double> NumberOfWholeText(std::string_view text) {
  const std::string_view trimmed = TrimBlanksAndTabs(text);
  if (EqualsNoCase(trimmed, "True")) return -1.0;
  if (EqualsNoCase(trimmed, "False")) return 0.0;
  if (!IsDecimalNumber(trimmed)) return std::nullopt;
  return NumericTextValue(trimmed);
}

std::vector<std::int16_t> ParseMacroCodes(std::string_view text,
                                          std::vector<std::string>* warnings) {
  std::vector<std::int16_t> codes{0};
  int position = 1;
  for (;;) {
    const int before = position;
    const double value = ScanNumber(text, position);
    const std::optional<std::int16_t> code = RoundToWidth<std::int16_t>(value);
    if (code && *code == 0) break;
    if (code) {
      codes.push_back(*code);
    } else if (warnings) {
      warnings->push_back("External GCode Macro: the code " + FormatNumberText(value, "") +
                          " is out of range and was left out");
    }
    if (position <= before) break;  // the scanner made no progress: nothing more to take
  }
  return codes;
}

std::vector<std::string_view> NonEmptyLines(std::string_view text) {
  std::vector<std::string_view> lines;
  std::size_t start = 0;
  while (start <= text.size()) {
    std::size_t end = text.find_first_of("\r\n", start);
    if (end == std::string_view::npos) end = text.size();
    if (end > start) lines.push_back(text.substr(start, end - start));
    if (end == text.size()) break;
    start = end + 1;
    if (text[end] == '\r' && start < text.size() && text[start] == '\n') ++start;
  }
  return lines;
}

}  // namespace zemtra
