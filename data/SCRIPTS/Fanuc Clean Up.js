// Fanuc Clean Up: makes a program ready for a Fanuc-style control.
//
// After this script:
//   - tabs and other control characters are gone (a tab becomes a blank) and braces have
//     become brackets;
//   - no line has trailing blanks and there are no blank lines;
//   - everything is upper case, comments included;
//   - every block that is not a comment, a "%" line or a program number line is numbered
//     N10, N20, N30, ... with a blank behind the number (old numbers are replaced; GOTO,
//     M98 P, M99 P and the P and Q of G70 to G73 still point at the same blocks);
//   - the program begins and ends with a "%" line.

ZMTRemoveGarbage();
ZMTRemoveTrailingSpaces();
ZMTRemoveBlankLines();
ZMTAllCaps();
ZMTRenumber(10, 10, 5, 2, true);   // start, increment, digits, all but blank lines, blank

function IsPercentLine(n) {
  return ZMTGetLine(n).replace(/\s+/g, "") === "%";
}

// The last line holding text (the line after a final line break is empty).
var count = ZMTGetNumLines();
var last = count - 1;
while (last > 0 && ZMTGetLine(last).trim() === "") last--;
if (!IsPercentLine(last)) {
  var text = ZMTGetAll();
  ZMTSelectLines(count, 0);  // the caret at the end
  ZMTInsertText((text === "" || /\r\n$/.test(text) ? "" : "\r\n") + "%\r\n");
}
if (!IsPercentLine(0)) {
  ZMTSetSelection(0, 0);
  ZMTInsertLine("%");
}
