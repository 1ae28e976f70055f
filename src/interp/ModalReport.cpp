#include "interp/ModalReport.h"

#include <string_view>

#include "config/MachineConfig.h"
#include "core/NumberText.h"
#include "interp/InterpMessages.h"
#include "interp/Interpreter.h"
#include "interp/ModalTables.h"
#include "macro/CallStack.h"

namespace zemtra {

namespace {

constexpr std::string_view kCountFormat = "######00";
// Letters whose values are counts and numbers rather than coordinates.
constexpr std::string_view kCountLetters = "DHLMNOPST";

void AppendLine(std::string& text, std::string_view line) {
  text.append(line).append(kLineEnd);
}

void AppendActiveCodes(std::string& text, const Interpreter& in) {
  const MachineConfig& config = in.Config();
  const bool lathe = config.MachineType == 1;
  AppendLine(text, "Active G-Codes:");
  for (int group = 0; group < kModalGroupCount; ++group) {
    const float code = in.ModalG[static_cast<std::size_t>(group)];
    if ((code == 0 && group != 1) || (lathe && group == 10)) continue;
    std::string line = "G" + FormatNumberText(code, "00") + " ";
    line.append(GCodeName(code, config.MachineType, config.LatheGCodeFormat));
    AppendLine(text, line);
  }
}

// One letter's line; X appears only on a diameter lathe, as the diameter.
void AppendLetter(std::string& text, const Interpreter& in, char letter, double value) {
  const MachineConfig& config = in.Config();
  const std::string& format = in.Options().NumberFormat;
  if (letter == 'G') return;
  std::string line(1, letter);
  if (kCountLetters.find(letter) != std::string_view::npos) {
    line.append(FormatNumberText(value, kCountFormat));
  } else if (letter == 'X') {
    if (config.MachineType != 1 || !config.LatheXDiameter) return;
    line.append(FormatNumberText(value, format));  // the address holds the diameter as written
  } else {
    line.append(FormatNumberText(value, format));
  }
  AppendLine(text, line);
}

void AppendOtherModals(std::string& text, const Interpreter& in) {
  text.append(kLineEnd);
  AppendLine(text, "Other Modals:");
  for (char letter = 'A'; letter <= 'Z'; ++letter) {
    const auto index = static_cast<std::size_t>(Letter(letter));
    if (!in.AddrText[index].empty()) AppendLetter(text, in, letter, in.AddrValue[index]);
  }
}

void AppendCycleArguments(std::string& text, Interpreter& in) {
  text.append(kLineEnd);
  if (in.ModalG[9] == 80) return;
  AppendLine(text, "Canned cycle active:");
  const LocalVariables& arguments = in.Calls().CycleArguments();
  for (char letter = 'A'; letter <= 'Z'; ++letter) {
    if (letter == 'X' || letter == 'Y') continue;
    const VariableValue& slot = arguments[ArgumentVariable(letter)];
    if (!slot.IsNull()) AppendLetter(text, in, letter, slot.Number());
  }
}

}  // namespace

std::string GetModalState(Interpreter& interpreter) {
  std::string text;
  AppendActiveCodes(text, interpreter);
  AppendOtherModals(text, interpreter);
  AppendCycleArguments(text, interpreter);
  return text;
}

}  // namespace zemtra
