#include "app/Workspace.h"

#include <cstdint>

#include "interp/ConfigStatements.h"

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

ProgramText Workspace::ProgramToPlot() const {
  const ProgramDocument& document = Editor.Document;
  return ProgramText(document.Text(), document.CurrentFile());
}

}  // namespace zemtra
