#include "editor/Colorize.h"

#include <cstring>

#include "core/Host.h"
#include "core/NumberText.h"
#include "core/SettingsStore.h"
#include "core/TextUtil.h"
#include "editor/ProgramDocument.h"
#include "editor/TextEncoding.h"

namespace zemtra {

namespace {

// ---- Keywords -------------------------------------------------------------------------------

struct Keyword {
  std::string_view word;
  int color;
};

// Tried in this order at every position: two-letter keywords, comparison operators, then
// keywords of three, four and five letters. Nothing behind a keyword is looked at, so keywords
// are also found inside words ("SINGLE" holds "SIN").
constexpr Keyword kKeywords[] = {
    {"DO", kKeywordColor},    {"IF", kKeywordColor},    {"OR", kKeywordColor},
    {"LN", kKeywordColor},    {"NE", kExpressionColor}, {"EQ", kExpressionColor},
    {"LT", kExpressionColor}, {"GT", kExpressionColor}, {"LE", kExpressionColor},
    {"GE", kExpressionColor}, {"XOR", kKeywordColor},   {"END", kKeywordColor},
    {"MOD", kKeywordColor},   {"AND", kKeywordColor},   {"SIN", kKeywordColor},
    {"COS", kKeywordColor},   {"TAN", kKeywordColor},   {"ATN", kKeywordColor},
    {"SQR", kKeywordColor},   {"ABS", kKeywordColor},   {"BIN", kKeywordColor},
    {"BCD", kKeywordColor},   {"RND", kKeywordColor},   {"FIX", kKeywordColor},
    {"FUP", kKeywordColor},   {"EXP", kKeywordColor},   {"THEN", kKeywordColor},
    {"GOTO", kKeywordColor},  {"ATAN", kKeywordColor},  {"ACOS", kKeywordColor},
    {"ASIN", kKeywordColor},  {"SQRT", kKeywordColor},  {"ROUND", kKeywordColor},
    {"WHILE", kKeywordColor}, {"POPEN", kKeywordColor}, {"PCLOS", kKeywordColor},
    {"DPRNT", kKeywordColor}, {"BPRNT", kKeywordColor},
};
constexpr int kKeywordCount = static_cast<int>(std::size(kKeywords));
constexpr int kMaxPerLetter = 8;

// For each letter, the keywords beginning with it, in the order above; -1 ends a list.
struct KeywordsByLetter {
  signed char index[26][kMaxPerLetter];
};

constexpr KeywordsByLetter MakeKeywordsByLetter() {
  KeywordsByLetter table{};
  for (auto& row : table.index) {
    for (auto& entry : row) entry = -1;
  }
  for (int k = 0; k < kKeywordCount; ++k) {
    auto& row = table.index[kKeywords[k].word[0] - 'A'];
    int slot = 0;
    while (row[slot] >= 0) ++slot;
    row[slot] = static_cast<signed char>(k);
  }
  return table;
}

constexpr KeywordsByLetter kKeywordsByLetter = MakeKeywordsByLetter();

constexpr unsigned char UpperAscii(unsigned char c) {
  return (c >= 'a' && c <= 'z') ? static_cast<unsigned char>(c - 32) : c;
}

// Length of the keyword at `i` (whose upper-case first letter is `first`), 0 when none; its
// colour goes to `color`.
inline std::size_t MatchKeyword(std::string_view line, std::size_t i, unsigned char first,
                                int& color) {
  const signed char* candidates = kKeywordsByLetter.index[first - 'A'];
  for (int slot = 0; slot < kMaxPerLetter && candidates[slot] >= 0; ++slot) {
    const Keyword& keyword = kKeywords[candidates[slot]];
    const std::size_t length = keyword.word.size();
    if (i + length > line.size()) continue;
    std::size_t k = 1;
    while (k < length && UpperAscii(static_cast<unsigned char>(line[i + k])) == keyword.word[k]) {
      ++k;
    }
    if (k == length) {
      color = keyword.color;
      return length;
    }
  }
  return 0;
}

// ---- The tokenizer --------------------------------------------------------------------------

// Walks `line` and tells `sink` each colour change as Color(index, position), before the
// character at that position. Decisions are made on upper-case letters; the line is not copied.
template <class Sink>
void Tokenize(std::string_view line, Sink& sink) {
  const std::size_t size = line.size();
  int currentColor = 0;
  std::size_t i = 0;
  while (i < size) {
    const unsigned char c = UpperAscii(static_cast<unsigned char>(line[i]));
    if (c >= 'A' && c <= 'Z') {
      int color = 0;
      if (const std::size_t length = MatchKeyword(line, i, c, color)) {
        sink.Color(color, i);
        // Keywords leave the letter colour alone; operators take the expression colour.
        if (color == kExpressionColor) currentColor = kExpressionColor;
        i += length;
        continue;
      }
      const int letterColor = c - 64;
      if (letterColor != currentColor) {
        sink.Color(letterColor, i);
        currentColor = letterColor;
      }
      ++i;
      continue;
    }
    switch (c) {
      case '/':
        if (i == 0) sink.Color(kKeywordColor, i);  // block delete
        break;
      case ';':
        if (i != 0) break;  // a comment only at the start of the line
        [[fallthrough]];
      case '(': {
        // A comment runs to its ")" or, without one, to the end of the line.
        sink.Color(kCommentColor, i);
        const void* close = std::memchr(line.data() + i + 1, ')', size - i - 1);
        i = close ? static_cast<std::size_t>(static_cast<const char*>(close) - line.data()) + 1
                  : size;
        continue;
      }
      case '[':
      case '#':
      case ']':
        sink.Color(kExpressionColor, i);
        currentColor = kExpressionColor;
        break;
      default:
        break;
    }
    ++i;
  }
}

// Collects maximal runs of one colour.
class RunSink {
 public:
  RunSink(std::vector<ColorRun>& runs, int carriedColor) : runs_(runs), color_(carriedColor) {}
  void Color(int color, std::size_t position) {
    if (color == color_) return;
    if (position > start_) {
      runs_.push_back({static_cast<std::uint32_t>(start_),
                       static_cast<std::uint32_t>(position - start_), color_});
    }
    start_ = position;
    color_ = color;
  }
  int Finish(std::size_t size) {
    if (size > start_) {
      runs_.push_back(
          {static_cast<std::uint32_t>(start_), static_cast<std::uint32_t>(size - start_), color_});
    }
    return color_;
  }

 private:
  std::vector<ColorRun>& runs_;
  int color_;
  std::size_t start_ = 0;
};

// ---- Rich text ------------------------------------------------------------------------------

constexpr std::string_view kColorWords[] = {
    "\\cf0 ",  "\\cf1 ",  "\\cf2 ",  "\\cf3 ",  "\\cf4 ",  "\\cf5 ",  "\\cf6 ",  "\\cf7 ",
    "\\cf8 ",  "\\cf9 ",  "\\cf10 ", "\\cf11 ", "\\cf12 ", "\\cf13 ", "\\cf14 ", "\\cf15 ",
    "\\cf16 ", "\\cf17 ", "\\cf18 ", "\\cf19 ", "\\cf20 ", "\\cf21 ", "\\cf22 ", "\\cf23 ",
    "\\cf24 ", "\\cf25 ", "\\cf26 ", "\\cf27 ", "\\cf28 ", "\\cf29 ", "\\cf30 "};

std::string NumberWord(double value) {
  return FormatNumberText(value, "");
}

// Appends one UTF-16 unit as "\uN?" (N is signed 16-bit, "?" the fallback for old readers).
void AppendUnicodeUnit(unsigned unit, std::string& out) {
  const int value = unit > 32767 ? static_cast<int>(unit) - 65536 : static_cast<int>(unit);
  out += "\\u";
  out += NumberWord(value);
  out += '?';
}

// Appends text[from, to) with the characters rich text reserves escaped.
void AppendRtfText(std::string_view text, std::size_t from, std::size_t to, std::string& out) {
  for (std::size_t i = from; i < to;) {
    const auto byte = static_cast<unsigned char>(text[i]);
    if (byte < 0x80) {
      if (byte == '\\' || byte == '{' || byte == '}') out += '\\';
      out += static_cast<char>(byte);
      ++i;
      continue;
    }
    // One UTF-8 character; a malformed byte is taken as its Latin-1 character.
    std::size_t length = byte >= 0xF0 ? 4 : byte >= 0xE0 ? 3 : byte >= 0xC0 ? 2 : 1;
    unsigned code = length == 1 ? byte : byte & (0x3F >> (length - 1));
    if (i + length > to) length = 1, code = byte;
    for (std::size_t k = 1; k < length; ++k) {
      code = (code << 6) | (static_cast<unsigned char>(text[i + k]) & 0x3F);
    }
    if (code > 0xFFFF) {
      code -= 0x10000;
      AppendUnicodeUnit(0xD800 + (code >> 10), out);
      AppendUnicodeUnit(0xDC00 + (code & 0x3FF), out);
    } else {
      AppendUnicodeUnit(code, out);
    }
    i += length;
  }
}

class RtfSink {
 public:
  RtfSink(std::string_view line, std::string& out) : line_(line), out_(out) {}
  void Color(int color, std::size_t position) {
    AppendRtfText(line_, written_, position, out_);
    written_ = position;
    out_ += kColorWords[color];
  }
  void Finish() { AppendRtfText(line_, written_, line_.size(), out_); }

 private:
  std::string_view line_;
  std::string& out_;
  std::size_t written_ = 0;
};

void AppendRtfHeader(const AddressColors& colors, const EditorFont& font, std::string& out) {
  out += "{\\rtf1\\ansi\\ansicpg1252\\deff0\\deflang1033";
  out += "{\\fonttbl{\\f0\\fnil\\fcharset0 ";
  out += font.name;
  out += ";}{\\f1\\fnil\\fcharset0 ";
  out += font.name;
  out += ";}}{\\colortbl ;";
  for (int i = 1; i <= kAddressColorCount; ++i) {
    const std::uint32_t color = colors[static_cast<std::size_t>(i)];
    out += "\\red" + NumberWord(color & 0xFF);
    out += "\\green" + NumberWord((color >> 8) & 0xFF);
    out += "\\blue" + NumberWord((color >> 16) & 0xFF);
    out += ';';
  }
  out += "}\\viewkind4\\uc1\\pard";
  if (font.bold) out += "\\b";
  if (font.italic) out += "\\i";
  out += "\\f0\\fs" + NumberWord(static_cast<int>(font.pointSize * 2));
  out += "\r\n";  // ends the control word, so a line beginning with a digit stays text
}

// True when `text` is a whole number, such as a stored colour.
bool IsWholeNumber(std::string_view text) {
  const std::string trimmed = TrimText(text);
  std::size_t i = (!trimmed.empty() && (trimmed[0] == '-' || trimmed[0] == '+')) ? 1 : 0;
  if (i >= trimmed.size()) return false;
  for (; i < trimmed.size(); ++i) {
    if (trimmed[i] < '0' || trimmed[i] > '9') return false;
  }
  return true;
}

std::string AddressColorKey(int index) {
  return "Address Color " + FormatNumberText(index, "#0");
}

constexpr int kProgressLines = 200;

void ReportColorizeProgress(Host& host, std::size_t position, std::size_t size) {
  const double percent = size == 0 ? 0 : static_cast<double>(position) * 100.0 / size;
  host.status("msg", "Formatting Program...  " + NumberWord(static_cast<int>(percent)) + "%");
  host.pumpEvents();
}

void ReplaceBraces(ProgramDocument& document) {
  for (std::size_t i = document.Text().find_first_of("{}"); i != std::string::npos;
       i = document.Text().find_first_of("{}", i + 1)) {
    document.ReplaceRange(i, 1, document.Text()[i] == '{' ? "[" : "]");
  }
}

}  // namespace

int ColorizeLine(std::string_view line, std::vector<ColorRun>& runs, int carriedColor) {
  runs.clear();
  RunSink sink(runs, carriedColor);
  Tokenize(line, sink);
  return sink.Finish(line.size());
}

void ColorizeLineRtf(std::string_view line, std::string& out) {
  RtfSink sink(line, out);
  Tokenize(line, sink);
  sink.Finish();
}

void RunsToUtf16(std::string_view line, std::span<ColorRun> runs) {
  if (IsAsciiText(line)) return;
  for (ColorRun& run : runs) {
    const std::size_t start = Utf16OffsetOf(line, run.start);
    const std::size_t end = Utf16OffsetOf(line, run.start + run.length);
    run.start = static_cast<std::uint32_t>(start);
    run.length = static_cast<std::uint32_t>(end - start);
  }
}

void LoadAddressColors(const SettingsStore& store, AddressColors& colors) {
  for (int i = 1; i <= kAddressColorCount; ++i) {
    const std::string value = store.GetSetting("Preferences", AddressColorKey(i), "");
    if (!IsWholeNumber(value)) continue;  // never stored: keeps its start value
    const auto number = static_cast<long long>(NumericTextValue(value));
    colors[static_cast<std::size_t>(i)] = static_cast<std::uint32_t>(number);
  }
}

void SaveAddressColors(SettingsStore& store, const AddressColors& colors) {
  for (int i = 1; i <= kAddressColorCount; ++i) {
    store.SaveSetting("Preferences", AddressColorKey(i),
                      NumberWord(colors[static_cast<std::size_t>(i)]));
  }
}

std::string ProgramRtfDocument(std::string_view text, const AddressColors& colors,
                               const EditorFont& font) {
  std::string out;
  out.reserve(text.size() * 2 + 1024);
  AppendRtfHeader(colors, font, out);
  // Lines are joined by paragraph marks; the closing mark ends the last one.
  std::size_t position = 0;
  while (true) {
    std::size_t end = text.find_first_of("\r\n", position);
    if (end == std::string_view::npos) {
      ColorizeLineRtf(text.substr(position), out);
      break;
    }
    ColorizeLineRtf(text.substr(position, end - position), out);
    out += "\\par\r\n";
    position = end + (text.compare(end, 2, "\r\n") == 0 ? 2 : 1);
  }
  out += "\\f1\\fs20\\cf0\\par\r\n}";
  return out;
}

void ColorizeProgram(ProgramDocument& document, Host& host, const ColorSink& sink,
                     RunOffsets offsets) {
  const std::size_t caret = document.SelStart();
  host.status("msg", "Formatting Program...  0%");
  ReplaceBraces(document);
  if (sink) {
    std::vector<ColorRun> runs;
    int carried = kDefaultTextColor;
    // The text is fetched afresh at every line: pumping events may let the user edit it.
    for (int line = 0; line < document.LineCount(); ++line) {
      const std::string_view text = document.LineText(line);
      carried = ColorizeLine(text, runs, carried);
      if (offsets == RunOffsets::Utf16) RunsToUtf16(text, runs);
      sink(line, runs);
      if ((line + 1) % kProgressLines == 0) {
        ReportColorizeProgress(host, document.LineStart(line + 1), document.Size());
      }
    }
  }
  host.status("msg", "Formatting Program... 100%");
  host.status("msg", "");
  document.SetSelection(caret, 0);
}

}  // namespace zemtra
