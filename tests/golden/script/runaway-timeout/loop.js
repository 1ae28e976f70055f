// Never ends: the time limit stops it.
var i = 0;
while (true) { i++; }
