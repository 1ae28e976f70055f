#pragma once
// The end of the program, run when the main window is asked to close: a running loop is
// stopped first, unsaved text is asked about, the temporary files go, and the settings, the
// variable state and the window's placement are written (by the first instance only).
namespace zemtra {

class Plot;

class ShutDown {
 public:
  explicit ShutDown(Plot& plot) : plot_(plot) {}

  // False when the window must stay open (busy, or the user cancelled the save prompt).
  bool Run();

 private:
  bool StopRunningLoop();
  bool AskAboutUnsavedText();
  void RemoveScratchFiles();
  void SaveEverything();

  Plot& plot_;
};

}  // namespace zemtra
