#include "cli/CliMain.h"

#include <ostream>
#include <string>
#include <string_view>

#include "core/Version.h"

namespace zemtra {

namespace {

constexpr std::string_view kUsage =
    "Usage: zemtra-cli [--version] [--help] <command> [options]\n"
    "\n"
    "Zemtra's engine without a window.\n"
    "\n"
    "Options:\n"
    "  --version   print the version and exit\n"
    "  --help      print this help and exit\n";

std::string VersionText() {
  return CaptionText("").substr(0, CaptionText("").find(" - "));
}

}  // namespace

int RunCli(int argc, char** argv, std::ostream& out, std::ostream& err) {
  if (argc < 2) {
    err << kUsage;
    return 2;
  }
  const std::string_view first = argv[1];
  if (first == "--version") {
    out << VersionText() << "\n";
    return 0;
  }
  if (first == "--help" || first == "-h") {
    out << kUsage;
    return 0;
  }
  err << "zemtra-cli: unknown command '" << first << "'\n" << kUsage;
  return 2;
}

}  // namespace zemtra
