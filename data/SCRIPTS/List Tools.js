// List Tools: writes the tools a program calls into a comment block at its top.
//
// After this script the program holds, right behind its leading "%" and program number
// ("O...") lines:
//   (TOOL LIST)
//   (T01 LINE 19 CALLS 1)
//   ...
//   (END TOOL LIST)
// with one line per tool word (T followed by its number as written), in the order the tools
// are first called. A tool is called by a T word outside comments and brackets ("IF [#1 LT1]"
// calls none). LINE is the program line (counting from 1, before the list was added) of the
// first call; CALLS the number of lines that call it. A program that calls no tool gets "(NO TOOLS)" in place of the list lines.
// Nothing else in the program changes.

function WithoutComments(line) {
  return line.replace(/\([^)]*\)?/g, " ").replace(/\[[^\]]*\]?/g, " ").replace(/;.*$/, "");
}

var tools = [];   // in order of first call
var found = {};   // tool word -> its entry
var count = ZMTGetNumLines();
for (var n = 0; n < count; n++) {
  var words = WithoutComments(ZMTGetLine(n)).toUpperCase().match(/(^|[^A-Z])T\s*\d+/g) || [];
  var seen = {};
  for (var w = 0; w < words.length; w++) {
    var tool = words[w].replace(/^[^T]*/, "").replace(/\s+/g, "");
    if (seen[tool]) continue;
    seen[tool] = true;
    if (!found[tool]) {
      found[tool] = { name: tool, line: n + 1, calls: 0 };
      tools.push(found[tool]);
    }
    found[tool].calls++;
  }
}

var list = ["(TOOL LIST)"];
if (tools.length === 0) list.push("(NO TOOLS)");
for (var t = 0; t < tools.length; t++) {
  list.push("(" + tools[t].name + " LINE " + tools[t].line + " CALLS " + tools[t].calls + ")");
}
list.push("(END TOOL LIST)");

// Behind the "%" and program number lines that open the program.
var at = 0;
while (at < count && /^\s*(%|[oO]\d|:)/.test(ZMTGetLine(at))) at++;
ZMTSelectLines(at, 0);
for (var i = 0; i < list.length; i++) ZMTInsertLine(list[i]);
