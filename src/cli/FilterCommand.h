#pragma once
// zemtra-cli filter: runs one of the program text filters over a file.
#include <iosfwd>
#include <string>
#include <vector>

namespace zemtra {

// `zemtra-cli filter NAME [options] FILE [-o OUT]`, or `zemtra-cli filter --list`. Writes the
// filtered text to OUT, or to `out` without -o; messages go to `err`. Returns 0 done, 1 the run
// was interrupted, 2 bad usage or an unreadable file or configuration.
int RunFilterCommand(const std::vector<std::string>& args, std::ostream& out, std::ostream& err);

}  // namespace zemtra
