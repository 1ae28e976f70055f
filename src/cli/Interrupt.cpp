#include "cli/Interrupt.h"

#include <signal.h>

#include <csignal>

namespace zemtra {

namespace {

// The one flag a signal handler may set; nothing else in the program is process-wide.
volatile std::sig_atomic_t interruptFlag = 0;

void OnInterrupt(int /*signal*/) {
  interruptFlag = 1;
}

}  // namespace

void InstallInterruptHandler() {
  struct sigaction action {};
  action.sa_handler = OnInterrupt;
  sigemptyset(&action.sa_mask);
  // The handler is reset after the first Ctrl+C, so a second one ends the process even if the
  // running operation never looks at the flag.
  action.sa_flags = SA_RESETHAND | SA_RESTART;
  sigaction(SIGINT, &action, nullptr);
}

bool InterruptRequested() {
  return interruptFlag != 0;
}

void ClearInterrupt() {
  interruptFlag = 0;
}

}  // namespace zemtra
