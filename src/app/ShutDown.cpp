#include "app/ShutDown.h"

#include "app/AppSettings.h"
#include "app/Plot.h"
#include "app/QtSettingsStore.h"
#include "app/Workspace.h"
#include "core/SettingsStore.h"
#include "core/TempFiles.h"

namespace zemtra {

bool ShutDown::Run() {
  if (!StopRunningLoop() || !AskAboutUnsavedText()) return false;
  RemoveScratchFiles();
  SaveEverything();
  return true;
}

// A plot cannot be left in the middle: it is told to stop, and the window closes once it has.
bool ShutDown::StopRunningLoop() {
  if (!plot_.Busy) return true;
  plot_.RequestAbort();
  plot_.StartClosingLater();
  return false;
}

bool ShutDown::AskAboutUnsavedText() {
  return plot_.PromptSaveChanges();
}

// Every "zmt*.tmp" of the temporary folder goes, those of other instances too.
void ShutDown::RemoveScratchFiles() {
  RemoveTempFiles();
}

// A second instance (allowed by "Multi Instance") saves nothing, which keeps the settings of
// the first intact; nor does a start that never loaded a configuration.
void ShutDown::SaveEverything() {
  if (plot_.PreviousInstance || !plot_.ConfigLoaded) return;
  Workspace& engine = plot_.Engine();
  SettingsStore& store = plot_.Store();
  const AppSettings& settings = plot_.Settings();
  SaveSettings(store, settings, engine.View.View, engine.View.Switches);
  store.SaveSetting("StartUp", "Config", plot_.ConfigFile);
  if (settings.Preferences.SaveVariablesOnExit) engine.Variables.SaveVariableState(store);
  SaveWindowPlacement(store, plot_.CurrentPlacement());
  SavePaneLayout(store, plot_.CurrentPanes());
  plot_.SaveRebarState();
  if (auto* file = dynamic_cast<QtSettingsStore*>(&store)) file->Sync();
}

}  // namespace zemtra
