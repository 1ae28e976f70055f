#pragma once
// The start of the program, in its fixed order: the steps that run as the main window is made,
// then (from Timer1, once the window shows) those that need a visible window.
#include <QObject>

class QTimer;

namespace zemtra {

class Plot;

class StartUp : public QObject {
  Q_OBJECT
 public:
  enum class Outcome {
    Ready,            // the window may be shown; Timer1 finishes the start
    HandedOver,       // another instance took the command line: end at once
    NoConfiguration,  // no machine configuration could be loaded: end
  };

  explicit StartUp(Plot& plot);

  // The steps made with the window, in order.
  Outcome Run();

 private:
  // Steps at creation.
  void TakeCommandLine();
  void ReadMultiInstance();
  bool HandOverToRunningInstance();
  void AttachUndo();
  void ResetGeometry();
  void ReadPaneLayout();
  bool LoadConfiguration();
  void ApplyConfiguration();
  void ReadSettings();
  void ListenForOtherStarts();
  void PlaceWindow();
  void ResetView();
  void ShowUntitled();
  void PrepareInterpreter();
  void CheckScriptHost();
  void StartTimer1();

  // Steps of Timer1.
  void FinishStart();
  void ApplyMachineType();
  void RestoreVariables();
  void OpenCommandLineFile();
  void SettleDocument();

  Plot& plot_;
  QTimer* timer1_ = nullptr;
  bool showMaximized_ = false;
};

}  // namespace zemtra
