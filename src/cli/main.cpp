#include <iostream>

#include "cli/CliMain.h"

int main(int argc, char** argv) { return zemtra::RunCli(argc, argv, std::cout, std::cerr); }
