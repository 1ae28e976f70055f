#include "editor/FormatProgram.h"

#include <array>
#include <utility>

#include "core/NumberText.h"
#include "editor/LineFilters.h"

namespace zemtra {
namespace {

constexpr int kProgressLines = 50;

struct Caption {
  int code;
  std::string_view text;
};

constexpr std::array<Caption, 20> kFormatCaptions = {{
    {0, "Adding Spaces"},
    {1, "Removing Spaces"},
    {2, "Converting to Caps"},
    {3, "Removing Redundant Endpoints"},
    {4, "Removing Blank Lines"},
    {5, "Removing Comments"},
    {6, "Adding Comment Chars"},
    {7, "Removing Comment Chars"},
    {8, "Removing Trailing Spaces"},
    {9, "Removing Control Characters"},
    {10, "Adjusting Address Values"},
    {11, "Replacing Addresses"},
    {12, "Removing Addresses"},
    {13, "Adding Block Skip Chars"},
    {14, "Removing Block Skip Chars"},
    {15, "Removing Colinear Blocks"},
    {16, "Swapping Addresses"},
    {17, "Breaking Arcs into Line Segments"},
    {101, "Custom Filter 1"},
    {102, "Custom Filter 2"},
}};

constexpr std::array<std::string_view, 8> kTranslateCaptions = {
    "Mirroring Coordinates",
    "Rotating Coordinates",
    "Shifting Coordinates",
    "Converting Arc Centers to I/J/K",
    "Scaling Coordinates",
    "Converting Arc Centers to R",
    "Converting Arc Centers to Absolute",
    "Converting Arc Centers to Incremental"};

bool IsTrimmedEmpty(std::string_view line) {
  for (char c : line) {
    if (c != ' ' && c != '\t') return false;
  }
  return true;
}

std::string_view LineEndOf(std::string_view text) {
  const std::size_t lf = text.find('\n');
  return lf != std::string_view::npos && lf > 0 && text[lf - 1] == '\r' ? "\r\n" : "\n";
}

// Appends a line function's result, whose own line breaks (a line made into several) take
// the line end of the text, and ends it.
void AppendLines(std::string& out, const std::string& lines, std::string_view lineEnd) {
  if (lineEnd == "\r\n" || lines.find('\r') == std::string::npos) {
    out.append(lines);
  } else {
    for (char c : lines) {
      if (c != '\r') out += c;
    }
  }
  out.append(lineEnd);
}

// Progress and cancel for a loop over `total` units; true when the run is to stop.
bool Checkpoint(Host& host, std::size_t done, std::size_t total) {
  host.progress(total == 0 ? 100 : static_cast<int>(done * 100 / total));
  host.pumpEvents();
  return host.abortRequested();
}

// The common loop: each line of `text` through `function`, blank lines copied (or dropped when
// `dropBlank`), every output line ended by the text's line end.
template <typename Function>
FilterResult RunLines(std::string_view text, bool dropBlank, Host& host, Function function) {
  FilterResult result;
  const std::string_view lineEnd = LineEndOf(text);
  result.text.reserve(text.size() + text.size() / 8);
  std::size_t start = 0;
  std::size_t count = 0;
  while (start < text.size()) {
    std::size_t end = text.find('\n', start);
    const std::size_t next = end == std::string_view::npos ? text.size() : end + 1;
    if (end == std::string_view::npos) end = text.size();
    std::string_view line = text.substr(start, end - start);
    if (!line.empty() && line.back() == '\r') line.remove_suffix(1);
    if (++count % kProgressLines == 0 && Checkpoint(host, start, text.size())) {
      result.cancelled = true;
      break;
    }
    if (IsTrimmedEmpty(line)) {
      if (!dropBlank) {
        result.text.append(line);
        result.text.append(lineEnd);
      }
    } else {
      AppendLines(result.text, function(line), lineEnd);
    }
    start = next;
  }
  host.progress(-1);
  if (result.cancelled) result.text.clear();
  return result;
}

}  // namespace

std::string_view FormatCaption(int operation) {
  for (const Caption& caption : kFormatCaptions) {
    if (caption.code == operation) return caption.text;
  }
  return {};
}

std::string_view TranslateCaption(int operation) {
  if (operation < 0 || operation >= static_cast<int>(kTranslateCaptions.size())) return {};
  return kTranslateCaptions[static_cast<std::size_t>(operation)];
}

FilterResult FormatProgram(int operation, std::string_view text, FilterSession& session,
                           Host& host) {
  session.Reset();
  if (FormatCaption(operation).empty()) return FilterResult{std::string(text)};
  const FilterParameters& parameters = session.Parameters();
  if (operation == FormatCode::kAdjustAddresses && parameters.AdjustOperator == 3 &&
      parameters.AdjustOperand == 0) {
    host.ask(
        {"Address Adjust - Can't divide by zero", "Zemtra", MsgIcon::Exclamation, MsgButtons::Ok});
    return FilterResult{{}, true, 0};
  }
  host.status("msg", FormatCaption(operation));
  FilterResult result =
      RunLines(text, operation == FormatCode::kRemoveBlankLines, host,
               [&](std::string_view line) { return session.FormatLine(operation, line); });
  result.failedArcs = session.FailedArcs();
  host.status("msg", "");
  return result;
}

FilterResult TranslateProgram(int operation, std::string_view text, FilterSession& session,
                              Host& host) {
  session.Reset();
  if (TranslateCaption(operation).empty()) return FilterResult{std::string(text)};
  host.status("msg", TranslateCaption(operation));
  FilterResult result = RunLines(text, false, host, [&](std::string_view line) {
    return session.TranslateLine(operation, line);
  });
  host.status("msg", "");
  result.failedArcs = session.FailedArcs();
  if (!result.cancelled && result.failedArcs > 0) {
    host.ask({FormatNumberText(result.failedArcs, "") + " arcs could not be converted", "Zemtra",
              MsgIcon::Exclamation, MsgButtons::Ok});
  }
  return result;
}

FilterResult RemoveGarbage(std::string_view bytes, Host& host) {
  FilterResult result;
  result.text.reserve(bytes.size());
  host.status("msg", "Filtering File");
  int ends = 0;
  for (std::size_t i = 0; i < bytes.size(); ++i) {
    if ((i + 1) % kProgressLines == 0 && Checkpoint(host, i, bytes.size())) {
      result.cancelled = true;
      break;
    }
    char c = static_cast<char>(static_cast<unsigned char>(bytes[i]) & 127);
    if (c == '\t') c = ' ';
    if (c == '{') c = '[';
    if (c == '}') c = ']';
    if (c == '\r' || c == '\n') {
      ++ends;
    } else if (static_cast<unsigned char>(c) >= 32) {
      if (ends == 1) result.text += "\r\n";
      result.text += c;
      ends = 0;
    }
    if (ends > 0 && ends % 2 == 0) result.text += "\r\n";
  }
  if (!result.cancelled && ends > 0) result.text += "\r\n";
  host.progress(-1);
  host.status("msg", "");
  if (result.cancelled) result.text.clear();
  return result;
}

FilterScope AskFilterScope(Host& host, bool hasSelection, bool selectedByProgram,
                           bool translation) {
  if (!hasSelection) return FilterScope::Whole;
  if (selectedByProgram) return FilterScope::Selection;
  const MsgAnswer answer =
      host.ask({translation ? "Translate only selected text?" : "Format only selected text?",
                "Zemtra", MsgIcon::Question, MsgButtons::YesNoCancel});
  if (answer == MsgAnswer::Cancel) return FilterScope::Cancel;
  return answer == MsgAnswer::Yes ? FilterScope::Selection : FilterScope::Whole;
}

}  // namespace zemtra
