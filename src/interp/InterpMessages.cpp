#include "interp/InterpMessages.h"

#include <array>

#include "macro/Evaluator.h"

namespace zemtra {

namespace {

constexpr std::array<std::string_view, kPendingLast - kPendingArc + 1> kPendingTexts = {
    "Arcs (G02, G03) are not supported yet",
    "Canned cycles are not supported yet",
    "Subprogram calls (M97, M98, M99 P) are not supported yet",
    "Macro calls (G65) are not supported yet",
    "External G-code macros are not supported yet",
    "Macro statements (IF, GOTO, WHILE, DO, END) are not supported yet",
    "Coordinate system codes (G92, G52, G68, G51, G51.1) are not supported yet",
    "Polar coordinates (G16) are not supported yet",
    "Mirror image by M-code is not supported yet",
    "Lathe cycles and G50 are not supported yet",
};

}  // namespace

std::string InterpreterErrorText(int code) {
  if (code >= kPendingArc && code <= kPendingLast) {
    return std::string(kPendingTexts[static_cast<std::size_t>(code - kPendingArc)]);
  }
  return ErrorMessage(code);
}

}  // namespace zemtra
