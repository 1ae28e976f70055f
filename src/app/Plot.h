#pragma once
// The main window: the program text rtPgm and the viewport Pic1 side by side, the menus, tool
// bars and status panels. It owns the engine objects and connects the commands to them; the
// file commands, start-up and exit live in classes of their own.
#include <QMainWindow>
#include <QPointer>
#include <QString>
#include <filesystem>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "app/AppSettings.h"
#include "config/MachineConfig.h"

class QSplitter;
class QTimer;

namespace zemtra {

class DocumentCommands;
class PictureBox;
class PlotActions;
class ProgramTextView;
class QtHost;
class SearchWindow;
class SettingsStore;
class SingleInstance;
class StatusPanels;
class Workspace;

// What the window is started with.
struct PlotEnvironment {
  std::filesystem::path ApplicationFolder;  // holds CONFIG, DNC, SCRIPTS, Manuals, MACRO
  std::shared_ptr<SettingsStore> Settings;  // the user's settings
  QString InstanceChannel;                  // name of the single-instance channel
  std::string CommandLine;                  // as typed: CONFIG="name" and a file
};

class Plot : public QMainWindow {
  Q_OBJECT
 public:
  explicit Plot(PlotEnvironment environment, QWidget* parent = nullptr);
  ~Plot() override;

  // --- Parts ---
  Workspace& Engine() { return *engine_; }
  AppSettings& Settings() { return settings_; }
  SettingsStore& Store() { return *environment_.Settings; }
  const PlotEnvironment& Environment() const { return environment_; }
  QtHost& GetHost() { return *host_; }
  StatusPanels& Panels() { return *panels_; }
  ProgramTextView* Editor() const { return rtPgm_; }
  PictureBox* Picture() const { return pic1_; }
  PlotActions& Actions() { return *actions_; }
  DocumentCommands& Documents() { return *documents_; }
  SingleInstance& Instance() { return *instance_; }

  // --- Application state ---
  std::string CommandArgument;  // the trimmed command line, without its CONFIG clause
  bool MultiInstance = false;
  std::string ConfigFile;         // full path of the configuration in force
  bool PreviousInstance = false;  // another instance ran when this one started
  bool ConfigLoaded = false;
  bool Busy = false;  // a plot runs: other commands are refused
  PaneLayout Panes;
  WindowPlacement SavedPlacement;  // the normal placement, kept while maximised

  // --- Window operations ---
  // Title "Zemtra vM.mm - file", or "... - Untitled" for "".
  void SetCaption(const std::string& file);
  // Viewport background, 0x00BBGGRR.
  void SetBGColor(ColorValue color);
  // Makes `record` the configuration in force: the engine's part, then background, the
  // absolute-arc check and the machine type's views.
  void ApplyConfiguration(const MachineConfig& record);
  // Shows the mill or the lathe views and fits the current view to the machine type.
  void SetMachineType(int machineType);
  // CurrentView := view, checks its menu item, zooms or repaints.
  void SetView(int view);
  // Lays out the two panes from Panes (viewport left or right).
  void LayOutPanes();
  // Restores the tool bar bands from the settings, then shows the view or the lathe band.
  void LoadRebarState();
  void SaveRebarState();
  // The menu checks, fonts and colours that follow from the settings.
  void ApplySettingsToWindow();
  // The display precision's formats into the viewport and the plot status.
  void ApplyDisplayPrecision();
  // Rebuilds the list of configuration files of the CONFIG folder.
  void RebuildConfigMenu();
  // The placement of the window when it is in the normal state, in twips.
  WindowPlacement CurrentPlacement() const;
  PaneLayout CurrentPanes() const;

  // --- Plotting ---
  // Plots the program and zooms to the part (a new table).
  void LoadGeometry();
  // Plots again keeping the view; `quiet` shows no message (automatic refresh).
  void RefreshGeometry(bool quiet);
  // Recolours the whole program when colouring is on.
  void ColorizeProgram();
  // Enables the edit commands and names the undo and redo steps.
  void RefreshEditState();
  // Esc: stops a running plot or long command.
  void RequestAbort();
  // Runs the header directives of the loaded program through HeaderDirectiveRunner.
  void RunHeaderDirectives();
  // Runs a loaded program's header directives; set by the script commands.
  std::function<void(const std::vector<std::string>&)> HeaderDirectiveRunner;
  // Stops a pending automatic refresh (a freshly loaded text needs none).
  void StopAutoRefresh();
  // Hands the user's preferences (block skip, M00, warnings, subprogram settings) to the
  // interpreter and the plot driver; done before every run.
  void PrepareInterpreter();

  // Closes the window again once the running loop has been left (Timer3).
  void StartClosingLater();

  // --- Files named from outside (command line, second start, drag and drop) ---
  void OpenPassedFile(const std::string& path);
  bool PromptSaveChanges();

 signals:
  // The deferred part of start-up is done (tests and the screenshot wait for it).
  void startUpFinished();
  // A plot has ended and the viewport shows its table (open tool windows refresh).
  void plotFinished();
  // A plot of the program text is about to run (unsaved text is kept safe first).
  void plotting();
  // Esc was pressed (RequestAbort ran): command sets stop what they run, such as a receive.
  void abortRequested();

 protected:
  void closeEvent(QCloseEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;
  void moveEvent(QMoveEvent* event) override;

 private:
  friend class StartUp;

  void BuildWidgets();
  void ConnectDocument();
  void ConnectFileCommands();
  void ConnectEditCommands();
  void ConnectViewCommands();
  void ConnectPlotCommands();
  void ConnectOptionCommands();
  void ConnectTimers();
  void SetBlockSkip(bool on);
  void SetColorize(bool on);
  void ChooseConfiguration(const QString& name);
  void ShowPreferences();
  void ChooseEditorFont();
  void OpenManual();
  void ShowSearch(bool replace);
  void TextChanged();
  void AutoRefreshTick();
  void RememberPlacement();
  void ReceiveHandOver(const QString& commandLine);
  void PlotWith(bool quiet, bool zoomToPart);

  PlotEnvironment environment_;
  AppSettings settings_;
  StatusPanels* panels_ = nullptr;  // a child of the status bar
  std::unique_ptr<QtHost> host_;
  std::unique_ptr<Workspace> engine_;
  std::unique_ptr<PlotActions> actions_;
  std::unique_ptr<DocumentCommands> documents_;
  SingleInstance* instance_ = nullptr;
  QSplitter* splitter_ = nullptr;
  ProgramTextView* rtPgm_ = nullptr;
  PictureBox* pic1_ = nullptr;
  SearchWindow* search_ = nullptr;
  QTimer* timRefresh_ = nullptr;
  QTimer* undoTimer_ = nullptr;
  QTimer* timer3_ = nullptr;    // closes the window once a running loop has been left
  bool replotPending_ = false;  // a plot was asked for while one ran
  std::vector<QPointer<QObject>> features_;  // the command sets, in the order made
};

}  // namespace zemtra
