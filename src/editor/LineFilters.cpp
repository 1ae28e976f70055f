#include "editor/LineFilters.h"

#include <array>

namespace zemtra {
namespace {

bool IsBlank(char c) {
  return static_cast<unsigned char>(c) < 33;
}

bool IsDigit(char c) {
  return c >= '0' && c <= '9';
}

char Upper(char c) {
  return c >= 'a' && c <= 'z' ? static_cast<char>(c - 32) : c;
}

std::size_t SkipBlanks(std::string_view text, std::size_t at) {
  while (at < text.size() && (text[at] == ' ' || text[at] == '\t')) ++at;
  return at;
}

// Index of the first word of `line`: behind leading blanks, a "/" and "N" words.
std::size_t FirstWordIndex(std::string_view line) {
  std::size_t at = SkipBlanks(line, 0);
  if (at < line.size() && line[at] == '/') at = SkipBlanks(line, at + 1);
  while (at < line.size() && Upper(line[at]) == 'N') {
    std::size_t digits = SkipBlanks(line, at + 1);
    if (digits >= line.size() || !IsDigit(line[digits])) break;
    while (digits < line.size() && IsDigit(line[digits])) ++digits;
    at = SkipBlanks(line, digits);
  }
  return at;
}

// Macro words copied whole by AddSpaces: the first set gets a blank before it.
constexpr std::array<std::string_view, 13> kSpacedWords = {
    "IF",  "DO",    "OR",    "GOTO",  "THEN",  "END",  "XOR",
    "AND", "WHILE", "POPEN", "PCLOS", "DPRNT", "BPRNT"};
constexpr std::array<std::string_view, 25> kJoinedWords = {
    "LN",  "EQ",  "NE",  "LT",  "GT",  "LE",  "GE",  "ATAN", "ACOS", "ASIN", "SQRT", "MOD",  "SIN",
    "COS", "TAN", "ATN", "SQR", "ABS", "BIN", "BCD", "RND",  "FIX",  "FUP",  "EXP",  "ROUND"};

template <std::size_t N>
std::string_view WordAt(std::string_view upper, std::size_t at,
                        const std::array<std::string_view, N>& words) {
  for (std::string_view word : words) {
    if (word.front() == upper[at] && upper.substr(at, word.size()) == word) return word;
  }
  return {};
}

void BlankUnlessThere(std::string& result) {
  if (result.empty() || result.back() != ' ') result += ' ';
}

// Comment walking shared by RemoveSpaces and RemoveControlChars: calls keep(c, inComment) for
// each character.
template <typename Keep>
std::string WalkComments(std::string_view line, bool semicolon, Keep keep) {
  std::string result;
  result.reserve(line.size());
  char closer = 0;
  for (std::size_t i = 0; i < line.size(); ++i) {
    const char c = line[i];
    if (closer == 0) {
      if (c == '(') {
        closer = ')';
      } else if (semicolon && c == ';' && result.empty()) {
        closer = '\n';
      } else if (c == '[' && IsBracketComment(line, i)) {
        closer = ']';
      }
      if (keep(c, closer != 0)) result += c;
    } else {
      if (keep(c, true)) result += c;
      if (c == closer) closer = 0;
    }
  }
  return result;
}

}  // namespace

std::string BlockPrefix(std::string_view line) {
  const std::size_t first = FirstWordIndex(line);
  std::string prefix;
  for (std::size_t i = SkipBlanks(line, 0); i < first; ++i) {
    if (line[i] == '/') prefix += '/';
  }
  return prefix;
}

bool IsBracketComment(std::string_view line, std::size_t index) {
  return FirstWordIndex(line) == index;
}

std::string RemoveSpaces(std::string_view line) {
  return WalkComments(line, true, [](char c, bool inComment) { return inComment || !IsBlank(c); });
}

std::string AddSpaces(std::string_view line) {
  const std::string compact = RemoveSpaces(line);
  if (compact.size() < 2) return compact;
  const std::string upper = UpperCaseLine(compact);
  std::string result;
  result.reserve(compact.size() * 2);
  char closer = 0;
  for (std::size_t i = 0; i < compact.size();) {
    const char c = compact[i];
    if (closer != 0) {
      result += c;
      if (c == closer) closer = 0;
      ++i;
      continue;
    }
    if (c == '(' || (c == ';' && result.empty()) || (c == '[' && IsBracketComment(compact, i))) {
      closer = c == '(' ? ')' : c == '[' ? ']' : '\n';
      BlankUnlessThere(result);
      result += c;
      ++i;
      continue;
    }
    if (c == '#' && i > 0 && (IsDigit(compact[i - 1]) || compact[i - 1] == ']')) {
      BlankUnlessThere(result);
      result += c;
      ++i;
      continue;
    }
    const bool letter = upper[i] >= 'A' && upper[i] <= 'Z';
    if (!letter) {
      result += c;
      ++i;
      continue;
    }
    if (std::string_view word = WordAt(upper, i, kSpacedWords); !word.empty()) {
      result += ' ';
      result.append(compact.substr(i, word.size()));
      i += word.size();
      continue;
    }
    if (std::string_view word = WordAt(upper, i, kJoinedWords); !word.empty()) {
      result.append(compact.substr(i, word.size()));
      i += word.size();
      continue;
    }
    BlankUnlessThere(result);
    result += c;
    ++i;
  }
  const std::size_t start = result.find_first_not_of(' ');
  return start == std::string::npos ? std::string() : result.substr(start);
}

std::string RemoveComments(std::string_view line) {
  std::string result;
  result.reserve(line.size());
  int depth = 0;
  bool bracket = false;
  for (std::size_t i = 0; i < line.size(); ++i) {
    const char c = line[i];
    if (bracket) {
      if (c == ']') bracket = false;
    } else if (c == '(') {
      ++depth;
    } else if (depth > 0) {
      if (c == ')') --depth;
    } else if (c == '[' && IsBracketComment(line, i)) {
      bracket = true;
    } else {
      result += c;
    }
  }
  return result;
}

std::string RemoveCommentChars(std::string_view line) {
  if (line.size() < 2) return line == "(" || line == ")" ? std::string() : std::string(line);
  if (line.front() == '(') line.remove_prefix(1);
  if (!line.empty() && line.back() == ')') line.remove_suffix(1);
  return std::string(line);
}

std::string RemoveBlockSkip(std::string_view line) {
  if (!line.empty() && line.front() == '/') line.remove_prefix(1);
  return std::string(line);
}

std::string RemoveControlChars(std::string_view line) {
  std::string tabless(line);
  for (char& c : tabless) {
    if (c == '\t') c = ' ';
  }
  return WalkComments(tabless, false, [](char c, bool inComment) {
    return inComment || static_cast<unsigned char>(c) >= 32;
  });
}

std::string RightTrim(std::string_view line) {
  std::size_t end = line.size();
  while (end > 0 && IsBlank(line[end - 1])) --end;
  return std::string(line.substr(0, end));
}

std::string UpperCaseLine(std::string_view line) {
  std::string result(line);
  for (char& c : result) c = Upper(c);
  return result;
}

std::string StripBlockNumber(std::string_view line) {
  const std::size_t first = FirstWordIndex(line);
  return BlockPrefix(line) + std::string(line.substr(first));
}

}  // namespace zemtra
