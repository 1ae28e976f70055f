#pragma once
// Colouring of program text: every address letter in its own colour, comments, expression
// characters and macro keywords in theirs. The colours are indices into a table of 30 entries
// (AddressColors); the window turns runs of indices into text formats.
#include <array>
#include <cstdint>
#include <functional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace zemtra {

class Host;
class ProgramDocument;
class SettingsStore;

// Colour indices: 1 to 26 the letters A to Z (character code - 64), then these. Index 0 is
// the editor's own text colour.
inline constexpr int kDefaultTextColor = 0;
inline constexpr int kCommentColor = 27;
inline constexpr int kExpressionColor = 28;  // "[", "#", "]" and comparison operators
inline constexpr int kKeywordColor = 29;
inline constexpr int kAddressColorCount = 30;  // entry 30 is kept in the table but unused

// A stretch of one line in one colour. Offsets are bytes of the line (see RunsToUtf16).
struct ColorRun {
  std::uint32_t start = 0;
  std::uint32_t length = 0;
  int colorIndex = 0;
  bool operator==(const ColorRun&) const = default;
};

// The colour runs of `line` (without its line break), in order, covering every byte of it once;
// neighbouring runs differ in colour. A colour stays in force until the next change, also across
// line ends, so the stretch before the line's first colour change is in `carriedColor`, the
// colour the previous line ended in. Returns the colour in force at the end of the line (pass it
// as `carriedColor` of the next). `runs` is cleared first; reusing it avoids allocation.
int ColorizeLine(std::string_view line, std::vector<ColorRun>& runs, int carriedColor = 0);

// The same decisions written as rich text, appended to `out`: "\cfN " before each colour change,
// then the characters ("/N10 G1" gives "\cf29 /\cf14 N10 \cf7 G1"). Backslashes and braces are
// escaped and characters beyond ASCII written as "\uN?", so the document reads back as written.
void ColorizeLineRtf(std::string_view line, std::string& out);

// Converts the byte offsets of runs made for `line` into UTF-16 offsets of the same line as a Qt
// string holds it. Nothing changes for an ASCII line.
void RunsToUtf16(std::string_view line, std::span<ColorRun> runs);

// The colour table, 1-based: colors[i] is the colour of index i as 0x00BBGGRR (red in the low
// byte). colors[0] is unused.
using AddressColors = std::array<std::uint32_t, kAddressColorCount + 1>;

// Reads "Address Color 1" to "Address Color 30" of section "Preferences". An entry that was
// never stored, or is no number, keeps its value in `colors`.
void LoadAddressColors(const SettingsStore& store, AddressColors& colors);
void SaveAddressColors(SettingsStore& store, const AddressColors& colors);

// The editor font as the rich text document names it.
struct EditorFont {
  std::string name = "Courier New";
  double pointSize = 10;
  bool bold = false;
  bool italic = false;
};

// The whole text as a rich text document: font and colour tables, then each line's
// ColorizeLineRtf and "\par". This is how a program is saved as a rich text file.
std::string ProgramRtfDocument(std::string_view text, const AddressColors& colors,
                               const EditorFont& font);

// Receives the runs of each line of the program, in order of lines (0-based).
using ColorSink = std::function<void(int line, std::span<const ColorRun> runs)>;

// What the offsets of runs given to a ColorSink count: bytes of the line, or UTF-16 units of it
// as a Qt string holds it.
enum class RunOffsets { Bytes, Utf16 };

// Recolours the whole document: every "{" becomes "[" and every "}" "]" in the text (braces
// are kept out of programs), then each line's runs go to `sink`, when there is one. The panel
// "msg" shows "Formatting Program...  N%" every 200 lines, with events pumped, and is cleared at
// the end. The caret stays at its start; a selection collapses.
void ColorizeProgram(ProgramDocument& document, Host& host, const ColorSink& sink,
                     RunOffsets offsets = RunOffsets::Utf16);

}  // namespace zemtra
