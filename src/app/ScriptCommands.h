#pragma once
// The Scripts menu: Run Script... and one entry per script of the SCRIPTS folder, and the
// header directives of a loaded program, all run by the script host over the window's engine
// objects. Esc stops a running script.
#include <QObject>
#include <QString>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "editor/FilterSession.h"

class QAction;

namespace zemtra {

class Plot;
class ScriptApi;
class ScriptHost;
struct ScriptContext;

class ScriptCommands : public QObject {
  Q_OBJECT
 public:
  explicit ScriptCommands(Plot& plot);
  ~ScriptCommands() override;

  // The folder dialog of ZMTBrowseForFolder, replaceable (tests): a folder, "" when cancelled.
  std::function<QString()> ChooseFolder;

  // Runs the script file at `path`; "" lets the user pick one. Refused while a plot runs.
  void RunScript(const std::string& path);
  // Runs the header directives of the program just loaded, one statement each.
  void RunHeaderDirectives(const std::vector<std::string>& directives);
  // The script entries of the Scripts menu again from SCRIPTS/*.js.
  void RebuildScriptMenu();

 private:
  void FillFrontEnd();
  // Runs a script with the window busy (other commands refused, closing waits for it).
  void WhileRunning(const std::function<void()>& run);
  // A window command a script asked for, run as if nothing else were running.
  void AsCommand(const std::function<void()>& command);
  std::string ScriptFolder() const;

  Plot& plot_;
  FilterParameters filters_;
  std::unique_ptr<ScriptContext> context_;
  std::unique_ptr<ScriptApi> api_;
  std::unique_ptr<ScriptHost> scripts_;
  QAction* separator_ = nullptr;
  std::vector<QAction*> scriptItems_;
};

}  // namespace zemtra
