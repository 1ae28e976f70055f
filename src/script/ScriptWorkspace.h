#pragma once
// The engine objects a script works on when no window is open (the command line, tests): a
// configuration, the macro variables, the interpreter and its plot driver, the geometry table
// and the program editor, with a script host over them.
#include <filesystem>

#include "config/MachineConfig.h"
#include "core/GeometryTable.h"
#include "editor/FilterSession.h"
#include "editor/ProgramEditor.h"
#include "interp/Interpreter.h"
#include "interp/PlotDriver.h"
#include "macro/Evaluator.h"
#include "macro/VariableStore.h"
#include "script/ScriptApi.h"
#include "script/ScriptContext.h"
#include "script/ScriptHost.h"

namespace zemtra {

class Host;

class ScriptWorkspace {
 public:
  // `applicationFolder` holds CONFIG (configurations and cycle macros) and SCRIPTS.
  ScriptWorkspace(Host& host, const std::filesystem::path& applicationFolder);
  ScriptWorkspace(const ScriptWorkspace&) = delete;
  ScriptWorkspace& operator=(const ScriptWorkspace&) = delete;

  Host& host;
  ConfigSession Session;
  VariableStore Variables;
  Evaluator Expressions;
  Interpreter Interp;
  GeometryTable Table;
  PlotDriver Driver;
  ProgramEditor Editor;
  FilterParameters Filters;
  ScriptContext Context;
  ScriptApi Api;
  ScriptHost Scripts;

  // Makes `record` the configuration in force, with its work offsets.
  void ApplyConfiguration(const MachineConfig& record);
  // Plots the document into the table, as ZMTPlot does.
  void PlotProgram();
  // Puts `text` into the editor as an untitled program (line ends made CR LF), as if loaded.
  void SetProgramText(std::string text);

};

}  // namespace zemtra
