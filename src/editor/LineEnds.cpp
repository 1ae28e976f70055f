#include "editor/LineEnds.h"

namespace zemtra {

namespace {

inline bool IsBreak(char c) {
  return c == '\r' || c == '\n';
}

// Length of the line end at `i` (a break character): the longer of `eol` and CR LF when either
// stands there, otherwise 1 for a lone CR or LF.
std::size_t BreakLengthAt(std::string_view text, std::size_t i, std::string_view eol) {
  const std::string_view rest = text.substr(i);
  std::size_t length = 1;
  if (rest.starts_with(kCrLf)) length = 2;
  if (!eol.empty() && eol.size() > length && rest.starts_with(eol)) length = eol.size();
  return length;
}

}  // namespace

std::string GetEOLSequence(std::string_view bytes) {
  const std::string_view probe = bytes.substr(0, kEolProbeBytes);
  std::string run;
  for (const char c : probe) {
    if (IsBreak(c)) {
      run += c;
    } else if (!run.empty()) {
      if (run.size() <= 3) return run;
      run.clear();  // blank lines or a tape leader
    }
  }
  return std::string(kCrLf);
}

bool NormalizeLineEnds(std::string& text, std::string_view eol) {
  // Find the first line end that is not a CR LF already; most files have none.
  std::size_t i = 0;
  for (; i < text.size(); ++i) {
    if (!IsBreak(text[i])) continue;
    const std::size_t length = BreakLengthAt(text, i, eol);
    if (length == 2 && text.compare(i, 2, kCrLf) == 0) {
      ++i;
      continue;
    }
    break;
  }
  if (i >= text.size()) return false;

  std::string result;
  result.reserve(text.size() + text.size() / 16 + 16);
  result.append(text, 0, i);
  while (i < text.size()) {
    const char c = text[i];
    if (!IsBreak(c)) {
      result += c;
      ++i;
      continue;
    }
    result += kCrLf;
    i += BreakLengthAt(text, i, eol);
  }
  text.swap(result);
  return true;
}

}  // namespace zemtra
