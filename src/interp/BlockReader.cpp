#include "interp/BlockReader.h"

#include <array>
#include <cmath>

#include "core/NumberText.h"

namespace zemtra {

namespace {

constexpr char UpperAscii(char c) {
  return (c >= 'a' && c <= 'z') ? static_cast<char>(c - 32) : c;
}

// UpperAscii of every byte value.
constexpr std::array<char, 256> MakeUpperTable() {
  std::array<char, 256> table{};
  for (int c = 0; c < 256; ++c) table[c] = UpperAscii(static_cast<char>(c));
  return table;
}
constexpr std::array<char, 256> kUpper = MakeUpperTable();

// A block number as a 32-bit integer, rounded as the control's integer conversion does
// (halves to even), held to the range of the type.
std::int32_t ToBlockNumber(double value) {
  if (!(value > -2147483648.0)) return INT32_MIN;
  if (value > 2147483647.0) return INT32_MAX;
  return static_cast<std::int32_t>(std::nearbyint(value));
}

}  // namespace

void CleanBlock(std::string_view line, bool blockSkip, std::string& result,
                std::int32_t& blockNumber) {
  // The text only shrinks: write into the reused buffer and cut it to size at the end.
  result.resize(line.size());
  char* const out = result.data();
  std::size_t kept = 0;
  bool inComment = false;
  const std::size_t size = line.size();
  std::size_t i = 0;
  // Up to the first kept character: block number, skip marks and a leading bracket comment.
  for (; i < size && kept == 0; ++i) {
    const char c = UpperAscii(line[i]);
    if (!inComment) {
      if (static_cast<unsigned char>(c) < 33) continue;
      if (c == 'N') {
        int position = static_cast<int>(i) + 2;  // 1-based, behind the N
        blockNumber = ToBlockNumber(ScanNumber(line, position));
        i = static_cast<std::size_t>(position) - 2;  // the loop steps onto the next character
        continue;
      }
      if (c == '/') {
        if (blockSkip) break;
        continue;
      }
      if (c == ';' || c == '&') break;
      if (c == '[' || c == '(') inComment = true;
    }
    if (!inComment) out[kept++] = c;
    if (c == ')' || (c == ']' && inComment)) inComment = false;
  }
  if (kept == 0) {
    result.clear();
    return;
  }
  // The rest: only blanks, control characters and comments go. Most blocks have no comment
  // after their first word: they take the quick copy, which is redone character by character
  // when a "(" shows up.
  const std::size_t rest = i;
  const std::size_t keptBefore = kept;
  if (!inComment) {
    bool comment = false;
    for (; i < size; ++i) {
      const auto c = static_cast<unsigned char>(line[i]);
      out[kept] = kUpper[c];
      kept += c >= 33;
      comment |= c == '(';
    }
    if (!comment) {
      result.resize(kept);
      return;
    }
    i = rest;
    kept = keptBefore;
  }
  for (; i < size; ++i) {
    const char c = line[i];
    if (inComment) {
      if (c == ')' || c == ']') inComment = false;
      continue;
    }
    if (static_cast<unsigned char>(c) < 33) continue;
    if (c == '(') {
      inComment = true;
      continue;
    }
    out[kept++] = UpperAscii(c);
  }
  result.resize(kept);
}

}  // namespace zemtra
