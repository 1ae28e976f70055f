#pragma once
#include <iosfwd>

namespace zemtra {

// Runs zemtra-cli with its arguments. Returns the exit status: 0 done, 1 the program stopped with
// an error message, 2 bad usage or unreadable input.
int RunCli(int argc, char** argv, std::ostream& out, std::ostream& err);

}  // namespace zemtra
