// Inch To Metric: converts an inch program (G20) into a metric one (G21).
//
// After this script, in a program that holds G20:
//   - G20 reads G21;
//   - every X, Y and Z, arc centre I, J, K and arc radius R is 25.4 times what it was
//     (scaled about X0 Y0 Z0);
//   - the R level and the Q peck depth of the drilling cycles G73, G74, G76 and G81 to G89
//     are 25.4 times what they were;
//   - every feed F is 25.4 times what it was, written with up to 2 decimals.
// Rewritten coordinates follow the display precision. Comments are left as they are. A
// program without G20 is not changed. Meant for mill programs: on a lathe, the words of the
// turning cycles G70 to G76 (U, W, P, Q, R) are not converted as those cycles need.

var kFactor = 25.4;

function SplitComments(line) {
  // [text outside comments, comment] pieces, so that only the code is rewritten
  return line.split(/(\([^)]*\)?|;.*$)/);
}

function Decimal(value) {
  var text = String(Math.round(value * 10000) / 10000);
  return text.indexOf(".") < 0 && text.indexOf("e") < 0 ? text + "." : text;
}

var lines = [];
var inch = false;
var cycle = false;
var count = ZMTGetNumLines();
for (var n = 0; n < count; n++) {
  var parts = SplitComments(ZMTGetLine(n));
  for (var p = 0; p < parts.length; p += 2) {
    var code = parts[p];
    if (/G0*20(?!\d)/i.test(code)) inch = true;
    code = code.replace(/G0*20(?!\d)/gi, "G21");
    // Drilling cycles stay modal until G80 or a motion code.
    var g = code.match(/G\s*\d+/gi) || [];
    for (var k = 0; k < g.length; k++) {
      var number = parseInt(g[k].substring(1), 10);
      if (number === 73 || number === 74 || number === 76 || (number >= 81 && number <= 89)) {
        cycle = true;
      } else if (number === 80 || (number >= 0 && number <= 3)) {
        cycle = false;
      }
    }
    if (cycle) {
      code = code.replace(/([RQ])\s*([-+]?\d*\.?\d+)/gi, function (all, letter, value) {
        return letter + Decimal(parseFloat(value) * kFactor);
      });
    }
    parts[p] = code;
  }
  lines.push(parts.join(""));
}

if (inch) {
  ZMTSelectAll();
  ZMTInsertText(lines.join("\r\n"));
  ZMTScale(0, 0, kFactor);
  ZMTAddressAdjust("F", 2, kFactor, "0.##");
}
