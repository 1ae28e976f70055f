#include <iostream>

#include "cli/CliMain.h"
#include "cli/Interrupt.h"

int main(int argc, char** argv) {
  zemtra::InstallInterruptHandler();
  return zemtra::RunCli(argc, argv, std::cout, std::cerr);
}
