#pragma once
// zemtra-cli plot: plots a program with a machine configuration and reports the geometry.
#include <iosfwd>
#include <string>
#include <vector>

namespace zemtra {

// `zemtra-cli plot FILE [--config NAME|PATH] [--block-skip] [--json] [--max-blocks N]
// [--use-settings]`. Prints a short summary, or with --json one JSON object, to `out`;
// messages go to `err`. Returns 0 done, 1 the program stopped with an error message (or the
// plot was interrupted), 2 bad usage or an unreadable program or configuration.
int RunPlotCommand(const std::vector<std::string>& args, std::ostream& out, std::ostream& err);

}  // namespace zemtra
