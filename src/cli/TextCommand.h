#pragma once
// zemtra-cli text: writes the engraving program of a text in an installed font.
#include <iosfwd>
#include <string>
#include <vector>

namespace zemtra {

// `zemtra-cli text STRING [--font NAME] [--bold] [--italic] [--height H] [--x X --y Y]
// [--angle A] [--justify 0-8] [--on-arc --radius R --start-angle A] [--z-retract V
// --z-approach V --z-depth V --feed V] [-o OUT]`. Writes the program to OUT, or to `out`.
// Returns 0 done, 1 the font's outlines cannot be converted (the message goes to `err`), 2 bad
// usage, a font that is not installed, or an output that cannot be written.
int RunTextCommand(const std::vector<std::string>& args, std::ostream& out, std::ostream& err);

}  // namespace zemtra
