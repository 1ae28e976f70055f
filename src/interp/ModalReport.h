#pragma once
// The modal state report shown while stepping: the active G-codes with their names, the other
// addresses of the last block, and the arguments of an active canned cycle.
#include <string>

namespace zemtra {

class Interpreter;

// The report, lines ended by CR LF. Numbers of coordinates use the interpreter's number format.
std::string GetModalState(Interpreter& interpreter);

}  // namespace zemtra
