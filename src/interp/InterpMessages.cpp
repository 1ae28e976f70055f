#include "interp/InterpMessages.h"

#include <array>

#include "macro/Evaluator.h"

namespace zemtra {

namespace {

constexpr std::array<std::string_view, kPendingLast - kPendingFirst + 1> kPendingTexts = {
    "Canned cycles are not supported yet",
    "Subprogram calls (M97, M98, M99 P) are not supported yet",
    "Macro calls (G65) are not supported yet",
    "External G-code macros are not supported yet",
    "Macro statements (IF, GOTO, WHILE, DO, END) are not supported yet",
    "Lathe cycles and G50 are not supported yet",
};

}  // namespace

std::string InterpreterErrorText(int code) {
  if (code >= kPendingFirst && code <= kPendingLast) {
    return std::string(kPendingTexts[static_cast<std::size_t>(code - kPendingFirst)]);
  }
  return ErrorMessage(code);
}

}  // namespace zemtra
