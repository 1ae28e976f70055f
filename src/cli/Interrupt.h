#pragma once
// Ctrl+C for zemtra-cli: the first SIGINT asks the running operation to stop at its next check;
// a second one ends the process as usual.

namespace zemtra {

// Installs the SIGINT handler. Call once at start; harmless to call again.
void InstallInterruptHandler();
// True once SIGINT arrived after InstallInterruptHandler.
bool InterruptRequested();
// Forgets an earlier SIGINT (for tests and for a command that runs several operations).
void ClearInterrupt();

}  // namespace zemtra
