#include "editor/DocumentPrograms.h"

#include <filesystem>

#include "core/Host.h"
#include "core/NumberText.h"
#include "core/TextUtil.h"
#include "editor/DocumentFile.h"

namespace zemtra {

namespace {

constexpr std::string_view kListingHeading =
    "   Program    Size  Description\r\n================================\r\n";

// Calls `visit` with each line of `text` as a file reader sees them: a final line end opens no
// further line.
template <class Visit>
void ForEachLine(std::string_view text, Visit visit) {
  std::size_t position = 0;
  while (position < text.size()) {
    std::size_t end = text.find_first_of("\r\n", position);
    if (end == std::string_view::npos) end = text.size();
    visit(text.substr(position, end - position));
    if (end >= text.size()) break;
    position = end + (text.compare(end, 2, "\r\n") == 0 ? 2 : 1);
  }
}

// Characters of a UTF-8 text.
std::size_t CharacterCount(std::string_view text) {
  std::size_t count = 0;
  for (const char c : text) count += (static_cast<unsigned char>(c) & 0xC0) != 0x80;
  return count;
}

// The line without blanks and control characters outside its comments ("(" to ")", or from a
// ";" that begins the line).
std::string WithoutBlanks(std::string_view line) {
  std::string kept;
  bool inComment = false;
  for (std::size_t i = 0; i < line.size(); ++i) {
    const char c = line[i];
    if (inComment) {
      kept += c;
      if (c == ')') inComment = false;
      continue;
    }
    if (c == ';' && kept.empty()) {
      kept.append(line.substr(i));
      break;
    }
    if (c == '(') inComment = true;
    if (static_cast<unsigned char>(c) >= 33) kept += c;
  }
  return kept;
}

std::string RightAligned(std::string text, std::size_t width) {
  if (text.size() < width) text.insert(0, width - text.size(), ' ');
  return text;
}

// The program number of a program's first line: its first number.
double ProgramNumber(std::string_view line) {
  int position = 1;
  return ScanNumber(line, position);
}

std::string CommentOf(std::string_view line) {
  const std::size_t open = line.find('(');
  if (open == std::string_view::npos) return {};
  std::string_view comment = line.substr(open + 1);
  const std::size_t close = comment.find(')');
  if (close != std::string_view::npos) comment = comment.substr(0, close);
  return TrimText(comment);
}

}  // namespace

bool IsProgramStart(std::string_view line) {
  return !line.empty() && (line[0] == 'O' || line[0] == 'o' || line[0] == ':');
}

std::string ProgramsListing(std::string_view text) {
  std::string listing(kListingHeading);
  std::string numberField(10, ' ');
  std::string description;
  std::size_t size = 0;
  bool open = false;
  const auto writeRow = [&] {
    listing += numberField + RightAligned(FormatNumberText(static_cast<double>(size), ""), 7) +
               "  " + description + "\r\n";
  };
  ForEachLine(text, [&](std::string_view line) {
    if (IsProgramStart(line)) {
      const std::string cleaned = WithoutBlanks(line);
      if (open) writeRow();
      open = true;
      size = 0;
      numberField = RightAligned(FormatNumberText(ProgramNumber(cleaned), ""), 10);
      description = CommentOf(cleaned);
    }
    size += CharacterCount(line);
  });
  writeRow();
  return listing;
}

int SaveSeparatePrograms(std::string_view text, const std::string& folder, TextEncoding encoding,
                         Host& host) {
  if (folder.empty()) return 0;
  int written = 0;
  std::filesystem::path path;
  std::string content;
  bool failed = false;
  const auto flush = [&] {
    if (path.empty() || failed) return;
    TextEncoding fileEncoding = encoding;
    FileError error;
    if (WriteFileAtomically(path, EncodeProgramText(content, fileEncoding), error)) {
      ++written;
    } else {
      host.ask(
          {"Error in SaveSeparate!\r\n" + error.text, "Zemtra", MsgIcon::Stop, MsgButtons::Ok});
      failed = true;
    }
  };
  ForEachLine(text, [&](std::string_view line) {
    if (failed) return;
    if (IsProgramStart(line)) {
      if (!path.empty()) content += "%\r\n";
      flush();
      path = std::filesystem::path(folder) /
             ("O" + FormatNumberText(ProgramNumber(line), "") + ".TXT");
      content = "%\r\n";
    }
    if (path.empty()) return;  // lines before the first program
    content += line;
    content += "\r\n";
  });
  flush();  // the last program gets no closing "%"
  return written;
}

}  // namespace zemtra
