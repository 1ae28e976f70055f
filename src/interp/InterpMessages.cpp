#include "interp/InterpMessages.h"

#include <array>

#include "macro/Evaluator.h"

namespace zemtra {

namespace {

constexpr std::array<std::string_view, kLastInterpreterError - kFirstInterpreterError + 1>
    kInterpreterTexts = {
        "O-word statements of the LinuxCNC dialect (O... SUB, CALL, IF, WHILE, DO, REPEAT) "
        "are not supported: write subprograms as O programs called by M98, and loops with "
        "WHILE [...] DO1 ... END1",
        kBothPAndQ,
};

}  // namespace

std::string InterpreterErrorText(int code) {
  if (code >= kFirstInterpreterError && code <= kLastInterpreterError) {
    return std::string(kInterpreterTexts[static_cast<std::size_t>(code - kFirstInterpreterError)]);
  }
  return ErrorMessage(code);
}

}  // namespace zemtra
