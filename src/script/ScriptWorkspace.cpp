#include "script/ScriptWorkspace.h"

#include <cstdint>
#include <utility>

#include "config/ConfigFile.h"
#include "editor/LineEnds.h"
#include "interp/ConfigStatements.h"
#include "macro/ProgramText.h"

namespace zemtra {

ScriptWorkspace::ScriptWorkspace(Host& hostRef, const std::filesystem::path& applicationFolder)
    : host(hostRef),
      Expressions(Variables),
      Interp(Session.ActiveConfig, Variables, Expressions, hostRef),
      Driver(Interp, Table, hostRef),
      Editor(hostRef),
      Context{Editor, Session, Table, hostRef, applicationFolder, Filters, {}},
      Api(Context),
      Scripts(Api, hostRef) {
  Editor.ColorizeEnabled = false;  // nothing shows the colours
  Interp.SetMachineFolder(applicationFolder.string());
  Context.FrontEnd.ApplyConfiguration = [this](const MachineConfig& record) {
    ApplyConfiguration(record);
  };
  Context.FrontEnd.Plot = [this] { PlotProgram(); };
}

void ScriptWorkspace::ApplyConfiguration(const MachineConfig& record) {
  ApplyConfig(record, Session, host, ConfigStatementRunner(Expressions, Variables));
}

void ScriptWorkspace::PlotProgram() {
  const ProgramDocument& document = Editor.Document;
  Driver.RefreshGeometry(ProgramText(document.Text(), document.CurrentFile()));
}

void ScriptWorkspace::SetProgramText(std::string text) {
  NormalizeLineEnds(text, kCrLf);
  Editor.Document.SetText(std::move(text));
  Editor.ResetUndo();
}

}  // namespace zemtra
