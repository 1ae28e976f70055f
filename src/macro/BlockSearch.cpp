#include "macro/BlockSearch.h"

#include <cmath>

#include "core/NumberText.h"
#include "macro/ProgramText.h"

namespace zemtra {

namespace {

char UpperAscii(char c) {
  return (c >= 'a' && c <= 'z') ? static_cast<char>(c - 32) : c;
}

bool IsDigit(char c) {
  return c >= '0' && c <= '9';
}

// Blanks, comments and case, the way the block reader drops them, but keeping the N word and
// a leading "/".
void StripLine(std::string_view line, std::string& result) {
  result.clear();
  bool inComment = false;
  for (const char raw : line) {
    const char c = UpperAscii(raw);
    if (inComment) {
      if (c == ')' || c == ']') inComment = false;
      continue;
    }
    if (static_cast<unsigned char>(c) < 33) continue;
    const bool leading = result.empty() || (result.size() == 1 && result.front() == '/');
    if (leading && (c == ';' || c == '&')) {
      result.clear();
      return;
    }
    if (c == '(' || (c == '[' && leading)) {
      inComment = true;
      continue;
    }
    result.push_back(c);
  }
}

// "N0010" -> "N10", "X-05" -> "X-5"; a zero that is the whole number or stands before a point
// stays.
void DropLeadingZeros(std::string& text) {
  std::size_t kept = 0;
  for (std::size_t i = 0; i < text.size(); ++i) {
    const char c = text[i];
    if (c == '0' && i + 1 < text.size() && IsDigit(text[i + 1])) {
      const char before = kept > 0 ? text[kept - 1] : '\0';
      if (!IsDigit(before) && before != '.') continue;
    }
    text[kept++] = c;
  }
  text.resize(kept);
}

bool IsProgramLine(std::string_view clean) {
  return clean.size() > 1 && (clean[0] == 'O' || clean[0] == ':');
}

std::int32_t ProgramNumberOf(std::string_view clean) {
  const double value = std::nearbyint(NumericTextValue(clean.substr(1)));
  if (!(value > -2147483648.0)) return INT32_MIN;
  if (value > 2147483647.0) return INT32_MAX;
  return static_cast<std::int32_t>(value);
}

// The hit must not run on into a longer number.
bool EndsAt(std::string_view clean, std::size_t end) {
  return end >= clean.size() || (!IsDigit(clean[end]) && clean[end] != '.');
}

bool LineHolds(std::string_view clean, std::string_view target) {
  if (IsProgramLine(clean)) {
    return clean.substr(0, target.size()) == target && EndsAt(clean, target.size());
  }
  for (std::size_t at = clean.find(target); at != std::string_view::npos;
       at = clean.find(target, at + 1)) {
    if (EndsAt(clean, at + target.size())) return true;
  }
  return false;
}

}  // namespace

void CleanSearchLine(std::string_view line, std::string& result) {
  StripLine(line, result);
  DropLeadingZeros(result);
}

std::optional<std::size_t> FindBlock(const ProgramText& text, std::string_view target,
                                     SearchMode mode, std::size_t position, std::int32_t program) {
  const bool before = mode == SearchMode::kBeforeFirst || mode == SearchMode::kBeforeLast;
  const bool first = mode == SearchMode::kBeforeFirst || mode == SearchMode::kAfterFirst;
  if (target.empty()) return std::nullopt;
  if (mode == SearchMode::kBeforeFirst && position == 0) return std::nullopt;
  if (mode == SearchMode::kAfterFirst && position > text.Size()) return std::nullopt;

  std::string wanted(target);
  for (char& c : wanted) c = UpperAscii(c);
  std::string clean;
  std::optional<std::size_t> found;
  std::int32_t current = program;
  std::size_t at = before ? 0 : position;
  std::string_view line;
  while (!(before && at >= position)) {
    const std::size_t start = at;
    if (!text.ReadLineAt(at, line)) break;
    CleanSearchLine(line, clean);
    if (IsProgramLine(clean)) current = ProgramNumberOf(clean);
    if (program != kAnyProgram && current != program) continue;
    if (!LineHolds(clean, wanted)) continue;
    found = start;
    if (first) break;
  }
  return found;
}

std::optional<std::size_t> FindBlockAround(const ProgramText& text, std::string_view target,
                                           std::size_t position, std::int32_t program) {
  if (auto found = FindBlock(text, target, SearchMode::kAfterFirst, position, program)) {
    return found;
  }
  return FindBlock(text, target, SearchMode::kBeforeFirst, position, program);
}

std::string BlockNumberTarget(double number) {
  return "N" + FormatNumberText(number, "#####0");
}

}  // namespace zemtra
