#pragma once
// zemtra-cli plot: plots a program with a machine configuration and reports the geometry.
#include <iosfwd>
#include <string>
#include <vector>

namespace zemtra {

// `zemtra-cli plot FILE [--config NAME|PATH] [--block-skip] [--json] [--max-blocks N]
// [--use-settings] [--png OUT] [--svg OUT] [--view VIEW] [--size WxH]`. Prints a short summary,
// or with --json one JSON object, to `out` (not with "--svg -", which writes the picture there);
// messages go to `err`. Returns 0 done, 1 the program stopped with an error message (or the
// plot was interrupted), 2 bad usage, an unreadable program or configuration, or a picture that
// could not be written.
int RunPlotCommand(const std::vector<std::string>& args, std::ostream& out, std::ostream& err);

}  // namespace zemtra
