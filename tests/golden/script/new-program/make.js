// Writes a square of side 2 from nothing, then numbers it.
ZMTInsertLine("G90 G17 G0 X0 Y0");
var corners = [[2, 0], [2, 2], [0, 2], [0, 0]];
for (var i = 0; i < corners.length; i++) {
  ZMTInsertLine("G1 X" + corners[i][0] + " Y" + corners[i][1] + (i === 0 ? " F100" : ""));
}
ZMTInsertLine("M30");
ZMTRenumber(100, 5, 4, 1, true);
