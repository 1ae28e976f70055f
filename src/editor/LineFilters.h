#pragma once
// Line functions of the Format filters that need no block decoding: spaces, comments, block
// skip and control characters. Each takes one line (without its line end) and returns it
// rewritten. A comment is "(" to ")", ";" at the start of a line to its end, or "[" to "]"
// where the bracket cannot begin an expression (see BlockPrefix).
#include <string>
#include <string_view>

namespace zemtra {

// The left-trimmed text before the first word of `line`, after leading "N" words: "" or "/"
// for a line whose first word is still to come. A "[" at that point opens a comment.
std::string BlockPrefix(std::string_view line);
// True when a "[" at 0-based `index` of `line` opens a comment rather than an expression.
bool IsBracketComment(std::string_view line, std::size_t index);
// Drops every character below 33 outside comments.
std::string RemoveSpaces(std::string_view line);
// One blank before each address and macro keyword, none elsewhere, comments as they stand.
std::string AddSpaces(std::string_view line);
// Drops "( )" comments (nesting) and bracket comments; a ";" comment stays.
std::string RemoveComments(std::string_view line);
// Drops a leading "(" and a trailing ")".
std::string RemoveCommentChars(std::string_view line);
// Drops a "/" in column 1.
std::string RemoveBlockSkip(std::string_view line);
// Tabs become blanks; other control characters outside comments are dropped.
std::string RemoveControlChars(std::string_view line);
// The line without trailing characters below 33.
std::string RightTrim(std::string_view line);
// Upper case of the ASCII letters.
std::string UpperCaseLine(std::string_view line);
// The line's text with the old block number removed: what stands behind the leading "N" words
// (the "/" is kept), left-trimmed behind it.
std::string StripBlockNumber(std::string_view line);

}  // namespace zemtra
