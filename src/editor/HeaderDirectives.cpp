#include "editor/HeaderDirectives.h"

#include "core/TextUtil.h"

namespace zemtra {

namespace {

// Lines that may stand in a header without being a comment.
bool IsHeaderFiller(std::string_view line) {
  if (line.empty()) return true;
  switch (line.front()) {
    case '%':
    case ':':
    case '&':
    case 'O':
    case 'o':
      return true;
    default:
      return false;
  }
}

// The statement of a header comment ("(## statement)"), or "" when the comment holds none.
std::string StatementOf(std::string_view comment) {
  std::string_view inner = comment.substr(1);
  if (!inner.empty() && (inner.back() == ')' || inner.back() == ']')) inner.remove_suffix(1);
  if (!inner.starts_with("##")) return {};
  return TrimText(inner.substr(2));
}

}  // namespace

std::vector<std::string> ScanHeaderDirectives(std::string_view text) {
  std::vector<std::string> statements;
  std::size_t position = 0;
  while (position <= text.size()) {
    std::size_t end = text.find_first_of("\r\n", position);
    if (end == std::string_view::npos) end = text.size();
    const std::string line = TrimText(text.substr(position, end - position));
    if (!IsHeaderFiller(line)) {
      if (line.front() != '(' && line.front() != '[') break;  // the first block ends the header
      std::string statement = StatementOf(line);
      if (!statement.empty()) statements.push_back(std::move(statement));
    }
    if (end >= text.size()) break;
    position = end + (text.compare(end, 2, "\r\n") == 0 ? 2 : 1);
  }
  return statements;
}

}  // namespace zemtra
