#pragma once
// The engine objects of the desktop program, made once and wired together: the machine
// configuration, the macro variables, the interpreter and its plot driver, the geometry table,
// the viewport and the program document. The window drives them; the Host shows their messages.
#include <string>

#include "config/MachineConfig.h"
#include "core/GeometryTable.h"
#include "editor/ProgramEditor.h"
#include "interp/Interpreter.h"
#include "interp/PlotDriver.h"
#include "macro/Evaluator.h"
#include "macro/ProgramText.h"
#include "macro/VariableStore.h"
#include "view/Viewport.h"

namespace zemtra {

class Host;

class Workspace {
 public:
  explicit Workspace(Host& host);
  Workspace(const Workspace&) = delete;
  Workspace& operator=(const Workspace&) = delete;

  Host& host;
  ConfigSession Session;
  VariableStore Variables;
  Evaluator Expressions;
  Interpreter Interp;
  GeometryTable Table;
  PlotDriver Driver;
  Viewport View;
  ProgramEditor Editor;

  // The program text as the interpreter reads it: a copy of the document, named by its file.
  ProgramText ProgramToPlot() const;
};

}  // namespace zemtra
