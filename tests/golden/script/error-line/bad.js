// A failure names the line of the script.
var lines = ZMTGetNumLines();
ZMTInsertLine(noSuchName);
