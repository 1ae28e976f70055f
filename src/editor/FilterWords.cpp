// Walking the words of a line outside comments: the rewrite shared by translation, arc
// rewriting and the custom filters, and the address operations.
#include <cmath>

#include "core/NumberText.h"
#include "core/TextUtil.h"
#include "editor/FilterSession.h"
#include "editor/LineFilters.h"
#include "macro/Evaluator.h"

namespace zemtra {
namespace {

char Upper(char c) {
  return c >= 'a' && c <= 'z' ? static_cast<char>(c - 32) : c;
}

bool HasBlank(std::string_view line) {
  return line.find(' ') != std::string_view::npos || line.find('\t') != std::string_view::npos;
}

int SkipBlanks(std::string_view line, int position) {
  const int size = static_cast<int>(line.size());
  while (position <= size && (line[static_cast<std::size_t>(position - 1)] == ' ' ||
                              line[static_cast<std::size_t>(position - 1)] == '\t')) {
    ++position;
  }
  return position;
}

std::size_t Slot(char letter) {
  return static_cast<std::size_t>(letter - 64);
}

// Calls onWord(upperLetter, position, out) at each letter outside "( )" comments, with
// `position` the 1-based position behind the letter; onWord returns false to have the letter
// copied as it stands. Everything else is copied.
template <typename OnWord>
std::string WalkWords(std::string_view line, OnWord onWord) {
  std::string out;
  out.reserve(line.size() + 16);
  const int size = static_cast<int>(line.size());
  int depth = 0;
  bool bracket = false;
  int position = 1;
  while (position <= size) {
    const char c = line[static_cast<std::size_t>(position - 1)];
    if (c == '(') ++depth;
    if (bracket) {
      bracket = c != ']';
    } else if (c == '[' && depth == 0 && IsBracketComment(line, position - 1U)) {
      bracket = true;
    } else if (depth == 0) {
      const char upper = Upper(c);
      if (upper >= 'A' && upper <= 'Z') {
        int behind = position + 1;
        if (onWord(upper, behind, out)) {
          position = behind;
          continue;
        }
      }
    } else if (c == ')') {
      --depth;
    }
    out += c;
    ++position;
  }
  return RightTrim(out);
}

}  // namespace

std::string_view FilterSession::ReadWordValue(std::string_view line, int& position) {
  const int start = position;
  tracker_.SkipValue(line, position);
  const std::string_view text =
      line.substr(static_cast<std::size_t>(start - 1), static_cast<std::size_t>(position - start));
  return text;
}

std::string FilterSession::RewriteWords(std::string_view line, const NewWords& words, bool swapArc,
                                        bool pairs) {
  const bool blank = HasBlank(line);
  const TrackedBlock& block = tracker_.Block();
  const auto write = [&](char letter, double value, std::string& out) {
    out += letter;
    out += Number(value);
    if (blank) out += ' ';
  };
  const auto partner = [](char letter) {
    switch (letter) {
      case 'X':
        return 'Y';
      case 'Y':
        return 'X';
      case 'I':
        return 'J';
      case 'J':
        return 'I';
      default:
        return '\0';
    }
  };
  const std::string swapped = swapArc ? ReplaceArcCode(line, "") : std::string();
  if (swapArc) line = swapped;
  return WalkWords(line, [&](char letter, int& position, std::string& out) {
    const auto& value = words[Slot(letter)];
    if (!value) return false;
    const char other = pairs ? partner(letter) : '\0';
    const bool insertOther = other != '\0' && !block.Has(other) && words[Slot(other)];
    if (insertOther && other < letter) write(other, *words[Slot(other)], out);
    write(letter, *value, out);
    if (insertOther && other > letter) write(other, *words[Slot(other)], out);
    ReadWordValue(line, position);
    if (blank) position = SkipBlanks(line, position);
    return true;
  });
}

std::string FilterSession::ReplaceArcCode(std::string_view line, std::string_view code) {
  const bool blank = HasBlank(line);
  return WalkWords(line, [&](char letter, int& position, std::string& out) {
    if (letter != 'G') return false;
    int end = position;
    const double value = NumericTextValue(ReadWordValue(line, end));
    if (value != 2 && value != 3) return false;
    out += line[static_cast<std::size_t>(position - 2)];
    out += code.empty() ? (value == 2 ? "03" : "02") : code;
    if (blank) {
      out += ' ';
      end = SkipBlanks(line, end);
    }
    position = end;
    return true;
  });
}

std::string FilterSession::ReplaceWords(
    std::string_view line, const std::array<std::optional<std::string>, 27>& replacement) {
  const bool blank = HasBlank(line);
  return WalkWords(line, [&](char letter, int& position, std::string& out) {
    const auto& text = replacement[Slot(letter)];
    if (!text) return false;
    out += *text;
    ReadWordValue(line, position);
    if (blank) {
      position = SkipBlanks(line, position);
      if (!text->empty()) out += ' ';
    }
    return true;
  });
}

std::string FilterSession::AdjustAddress(std::string_view line) {
  if (!tracker_.TrackBlock(line)) return std::string(line);
  const std::string letters = UpperCaseLine(parameters_.AdjustAddresses);
  const bool blank = HasBlank(line);
  return WalkWords(line, [&](char letter, int& position, std::string& out) {
    if (letters.find(letter) == std::string::npos) return false;
    const int start = position;
    const std::string text = TrimText(ReadWordValue(line, position));
    out += line[static_cast<std::size_t>(start - 2)];
    if (letter == 'G' || letter == 'N' || !IsNumberText(text)) {
      out.append(line.substr(static_cast<std::size_t>(start - 1),
                             static_cast<std::size_t>(position - start)));
      return true;
    }
    double value = NumericTextValue(text);
    switch (parameters_.AdjustOperator) {
      case 0:
        value += parameters_.AdjustOperand;
        break;
      case 1:
        value -= parameters_.AdjustOperand;
        break;
      case 2:
        value *= parameters_.AdjustOperand;
        break;
      default:
        value /= parameters_.AdjustOperand;
        break;
    }
    out += FormatNumberText(value, parameters_.AdjustFormat);
    if (blank) {
      out += ' ';
      position = SkipBlanks(line, position);
    }
    return true;
  });
}

std::string FilterSession::ReplaceAddress(std::string_view line) {
  if (!tracker_.TrackBlock(line) || parameters_.ReplaceFind.empty()) return std::string(line);
  const char find = Upper(parameters_.ReplaceFind.front());
  const std::string with = UpperCaseLine(parameters_.ReplaceWith);
  return WalkWords(line, [&](char letter, int&, std::string& out) {
    if (letter != find) return false;
    out += with;
    return true;
  });
}

std::string FilterSession::RemoveAddress(std::string_view line) {
  if (!tracker_.TrackBlock(line)) return std::string(line);
  const std::string letters = UpperCaseLine(parameters_.RemoveAddresses);
  return WalkWords(line, [&](char letter, int& position, std::string&) {
    if (letters.find(letter) == std::string::npos) return false;
    ReadWordValue(line, position);
    position = SkipBlanks(line, position);
    return true;
  });
}

std::string FilterSession::SwapAddress(std::string_view line) {
  if (!tracker_.TrackBlock(line) || parameters_.SwapFirst.empty() ||
      parameters_.SwapSecond.empty()) {
    return std::string(line);
  }
  const char first = Upper(parameters_.SwapFirst.front());
  const char second = Upper(parameters_.SwapSecond.front());
  return WalkWords(line, [&](char letter, int&, std::string& out) {
    if (letter != first && letter != second) return false;
    out += letter == first ? second : first;
    return true;
  });
}

std::string FilterSession::CustomFilter1(std::string_view line) {
  if (!tracker_.TrackBlock(line)) return std::string(line);
  const TrackedBlock& block = tracker_.Block();
  if (block.Has('M') && block.Get('M') == 6 && block.Has('T')) {
    std::string out = WalkWords(line, [&](char letter, int& position, std::string& words) {
      if (letter == 'M') {
        int end = position;
        if (NumericTextValue(ReadWordValue(line, end)) != 6) return false;
        position = SkipBlanks(line, end);
        return true;
      }
      if (letter == 'T') words += "M06 ";
      return false;
    });
    out += "\r\nG43 H" + FormatNumberText(block.Get('T'), "");
    if (block.Has('Z')) out += " Z" + Number(block.Get('Z'));
    return out;
  }
  if (block.Has('Z') && block.Has('R') && block.ModalG[9] != 80) {
    NewWords words;
    words[Slot('Z')] = block.Get('Z') + block.Get('R');
    words[Slot('R')] = block.Get('R') + 0.1;
    return RewriteWords(line, words);
  }
  return std::string(line);
}

std::string FilterSession::CustomFilter2(std::string_view line) {
  if (!tracker_.TrackBlock(line)) return std::string(line);
  const TrackedBlock& block = tracker_.Block();
  if (block.Motion() != 1 || block.NonModal() || !block.Has('Z') || !block.Has('F') ||
      !(block.Present[2] < block.Previous[2])) {
    return std::string(line);
  }
  NewWords words;
  words[Slot('Z')] = block.Get('Z') + parameters_.Approach;
  std::string out = RewriteWords(line, words);
  out += "\r\nZ" + Number(block.Get('Z')) + "F" + Number(parameters_.FeedMult * block.Get('F'));
  out += "\r\nF" + Number(block.Get('F'));
  return out;
}

}  // namespace zemtra
