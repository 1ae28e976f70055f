// Prints, for a DXF file, the number of LINE, ARC, CIRCLE and POINT entities of each layer as
// seen by the independent reader dxf-parser: {"LAYER": [lines, arcs, circles, points], ...}.
// Layer "0" is reported as "DEFAULT" and names are upper case, as Zemtra names its layers.
// Usage: node dxf-counts.js MODULE_DIR FILE
const path = require('path');
const fs = require('fs');
const DxfParser = require(path.resolve(process.argv[2], 'dxf-parser'));
const text = fs.readFileSync(process.argv[3], 'latin1');
const kinds = {LINE: 0, ARC: 1, CIRCLE: 2, POINT: 3};
const counts = {};
let drawing = null;
try {
  drawing = new DxfParser().parseSync(text);
} catch (e) {
  process.exit(3);  // dxf-parser cannot read this drawing
}
for (const entity of (drawing && drawing.entities) || []) {
  if (!(entity.type in kinds)) continue;
  let layer = String(entity.layer === undefined ? '0' : entity.layer).trim().toUpperCase();
  if (layer === '0') layer = 'DEFAULT';
  counts[layer] = counts[layer] || [0, 0, 0, 0];
  counts[layer][kinds[entity.type]] += 1;
}
process.stdout.write(JSON.stringify(counts) + '\n');
