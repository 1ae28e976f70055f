#include "config/ConfigText.h"

#include <cstddef>

#include "core/TextUtil.h"

namespace zemtra {
namespace {

// Blanks only: a tab is part of the value.
std::string_view TrimBlanks(std::string_view text) {
  const std::size_t first = text.find_first_not_of(' ');
  if (first == std::string_view::npos) return {};
  const std::size_t last = text.find_last_not_of(' ');
  return text.substr(first, last - first + 1);
}

// "= 5" and "5" both give "5".
std::string_view ValueOfRest(std::string_view rest) {
  std::string_view value = TrimBlanks(rest);
  if (!value.empty() && value.front() == '=') value = TrimBlanks(value.substr(1));
  return value;
}

// A header names its section by the line less its first and last character, whatever they are.
std::string_view SectionOfHeader(std::string_view line) {
  return line.size() < 2 ? std::string_view() : line.substr(1, line.size() - 2);
}

}  // namespace

ConfigText::ConfigText(std::string_view text) {
  std::size_t start = 0;
  while (start < text.size()) {
    std::size_t end = text.find_first_of("\r\n", start);
    if (end == std::string_view::npos) end = text.size();
    AddLine(text.substr(start, end - start));
    if (end == text.size()) break;
    start = end + 1;
    if (text[end] == '\r' && start < text.size() && text[start] == '\n') ++start;
  }
}

void ConfigText::AddLine(std::string_view line) {
  const bool isHeader = !line.empty() && line.front() == '[';
  if (isHeader || sections_.empty()) {
    sections_.push_back({std::string(isHeader ? SectionOfHeader(line) : std::string_view()), {}});
  }
  sections_.back().lines.emplace_back(line);
}

template <typename Visitor>
void ConfigText::ForEachKeyLine(std::string_view section, std::string_view key,
                                Visitor&& visit) const {
  for (const Section& current : sections_) {
    if (current.name != section) continue;
    for (const std::string& line : current.lines) {
      if (!StartsWithNoCase(line, key)) continue;
      if (!visit(std::string_view(line).substr(key.size()))) return;
    }
  }
}

std::string ConfigText::ReadKey(std::string_view section, std::string_view key,
                                std::string_view defaultValue) const {
  std::string value(defaultValue);
  ForEachKeyLine(section, key, [&value](std::string_view rest) {
    value = ValueOfRest(rest);
    return false;
  });
  return value;
}

std::string ConfigText::ReadMultiKey(std::string_view section, std::string_view key) const {
  std::string result;
  ForEachKeyLine(section, key, [&result](std::string_view rest) {
    const std::string_view trimmed = TrimBlanks(rest);
    if (trimmed.empty() || trimmed.front() != '=') return true;
    const std::string_view value = TrimBlanks(trimmed.substr(1));
    if (!value.empty()) {
      result.append(value);
      result.append("\r\n");
    }
    return true;
  });
  return result;
}

}  // namespace zemtra
