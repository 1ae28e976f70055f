#pragma once
// The drivers of the text filters: each runs a line function over a program text (the whole
// document or the selected lines) and returns the new text. Progress and cancel go through the
// Host every 50 lines; a cancelled run returns no text, so the document stays as it was.
#include <string>
#include <string_view>

#include "core/Host.h"
#include "editor/FilterSession.h"

namespace zemtra {

// Operation codes of FormatProgram (also the script interface).
namespace FormatCode {
constexpr int kAddSpaces = 0;
constexpr int kRemoveSpaces = 1;
constexpr int kCaps = 2;
constexpr int kRemoveRedundant = 3;
constexpr int kRemoveBlankLines = 4;
constexpr int kRemoveComments = 5;
constexpr int kAddCommentChars = 6;
constexpr int kRemoveCommentChars = 7;
constexpr int kRemoveTrailingSpaces = 8;
constexpr int kRemoveControlChars = 9;
constexpr int kAdjustAddresses = 10;
constexpr int kReplaceAddress = 11;
constexpr int kRemoveAddresses = 12;
constexpr int kAddBlockSkip = 13;
constexpr int kRemoveBlockSkip = 14;
constexpr int kRemoveColinear = 15;
constexpr int kSwapAddresses = 16;
constexpr int kBreakArcs = 17;
constexpr int kCustomFilter1 = 101;
constexpr int kCustomFilter2 = 102;
}  // namespace FormatCode

// Operation codes of TranslateProgram.
namespace TranslateCode {
constexpr int kMirror = 0;
constexpr int kRotate = 1;
constexpr int kShift = 2;
constexpr int kArcsToIJK = 3;
constexpr int kScale = 4;
constexpr int kArcsToR = 5;
constexpr int kArcsAbsolute = 6;
constexpr int kArcsIncremental = 7;
}  // namespace TranslateCode

struct FilterResult {
  std::string text;        // the new text; meaningless when cancelled
  bool cancelled = false;  // the user stopped the run
  int failedArcs = 0;      // arcs that could not be converted and were left as they were
};

// Progress caption of a Format operation; "" for an unknown code.
std::string_view FormatCaption(int operation);
// Progress caption of a translation; "" for an unknown code.
std::string_view TranslateCaption(int operation);

// Runs Format operation `operation` over `text` (lines ended by CR LF or LF; every output line
// ends with the line end the text uses). An unknown code returns the text unchanged; an address
// adjustment dividing by zero is refused with a message and counts as cancelled.
FilterResult FormatProgram(int operation, std::string_view text, FilterSession& session,
                           Host& host);
// Runs a translation or arc conversion over `text`; tells the user how many arcs failed.
FilterResult TranslateProgram(int operation, std::string_view text, FilterSession& session,
                              Host& host);
// Cleans a text read as bytes: 7-bit characters, tabs as blanks, other control characters
// dropped, braces as brackets, and any run of line-end characters as line breaks ("\r\n").
FilterResult RemoveGarbage(std::string_view bytes, Host& host);

enum class FilterScope { Whole, Selection, Cancel };
// Whether a filter treats the selection or the whole text. A selection the program made (an
// entity picked in the drawing) is taken without asking; otherwise the user is asked, with
// "Translate only selected text?" for a translation and "Format only selected text?" else.
FilterScope AskFilterScope(Host& host, bool hasSelection, bool selectedByProgram, bool translation);

}  // namespace zemtra
