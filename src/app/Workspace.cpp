#include "app/Workspace.h"

#include <cstdint>
#include <exception>

#include "interp/BlockReader.h"
#include "macro/Assignment.h"

namespace zemtra {

Workspace::Workspace(Host& hostRef)
    : host(hostRef),
      Expressions(Variables),
      Interp(Session.ActiveConfig, Variables, Expressions, hostRef),
      Driver(Interp, Table, hostRef),
      View(Table, hostRef),
      Editor(hostRef) {
  View.ReadVariable = [this](int number) { return Variables.ReadNumber(number); };
}

void Workspace::RunConfigLine(const std::string& line) {
  std::string cleaned;
  std::int32_t blockNumber = 0;
  CleanBlock(line, false, cleaned, blockNumber);
  if (cleaned.empty()) return;
  try {
    ExecuteAssignments(cleaned, Expressions, Variables);
  } catch (const std::exception&) {
  }
}

ProgramText Workspace::ProgramToPlot() const {
  const ProgramDocument& document = Editor.Document;
  return ProgramText(document.Text(), document.CurrentFile());
}

}  // namespace zemtra
