#include "app/Plot.h"

#include <QAction>
#include <QApplication>
#include <QClipboard>
#include <QCloseEvent>
#include <QDesktopServices>
#include <QDir>
#include <QFileInfo>
#include <QFontDialog>
#include <QLabel>
#include <QMenu>
#include <QMessageBox>
#include <QMimeData>
#include <QShortcut>
#include <QSignalBlocker>
#include <QSplitter>
#include <QStatusBar>
#include <QTimer>
#include <QToolBar>
#include <QUrl>
#include <chrono>
#include <filesystem>

#include "app/CommandLine.h"
#include "app/DocumentCommands.h"
#include "app/Features.h"
#include "app/OptionsDialog.h"
#include "app/PictureBox.h"
#include "app/PlotActions.h"
#include "app/ProgramTextView.h"
#include "app/QtHost.h"
#include "app/SearchWindow.h"
#include "app/ShutDown.h"
#include "app/SingleInstance.h"
#include "app/StatusPanels.h"
#include "app/Workspace.h"
#include "config/ConfigFile.h"
#include "core/AppFolder.h"
#include "core/SettingsStore.h"
#include "core/TextUtil.h"
#include "core/Version.h"
#include "editor/UndoHistory.h"
#include "interp/ConfigStatements.h"
#include "view/Views.h"

namespace zemtra {

namespace {

constexpr int kUndoDelayMs = 250;
constexpr int kTimer3Ms = 100;
// Events run at least this often during a plot, so the window stays alive.
constexpr auto kPlotYieldInterval = std::chrono::milliseconds(50);

QColor ToQColor(ColorValue color) {
  return QColor(color & 0xFF, (color >> 8) & 0xFF, (color >> 16) & 0xFF);
}

}  // namespace

Plot::Plot(PlotEnvironment environment, QWidget* parent)
    : QMainWindow(parent), environment_(std::move(environment)) {
  setObjectName("Plot");
  resize(1100, 720);
  panels_ = new StatusPanels(statusBar());
  host_ = std::make_unique<QtHost>(this, *panels_);
  engine_ = std::make_unique<Workspace>(*host_);
  engine_->View.RepaintBlocked = true;  // until the window is shown
  BuildWidgets();
  actions_ = std::make_unique<PlotActions>(*this);
  documents_ = std::make_unique<DocumentCommands>(*this);
  instance_ = new SingleInstance(environment_.InstanceChannel, this);
  search_ = new SearchWindow(engine_->Editor.Search, engine_->Editor.Document, *host_, this);
  ConnectDocument();
  ConnectFileCommands();
  ConnectEditCommands();
  ConnectViewCommands();
  ConnectPlotCommands();
  ConnectOptionCommands();
  ConnectTimers();
  for (QObject* set : InstallFeatures(*this)) features_.emplace_back(set);
  SetCaption("");
}

Plot::~Plot() {
  // The command sets and widgets look at the engine until they go: they go first.
  while (!features_.empty()) {
    delete features_.back();
    features_.pop_back();
  }
  delete search_;
  delete splitter_;
  documents_.reset();
  actions_.reset();
  engine_.reset();
}

void Plot::BuildWidgets() {
  splitter_ = new QSplitter(this);
  splitter_->setObjectName("picBGnd");
  splitter_->setChildrenCollapsible(false);
  rtPgm_ = new ProgramTextView(engine_->Editor.Document, splitter_);
  rtPgm_->SetUndo(&engine_->Editor.Undo);
  pic1_ = new PictureBox(splitter_);
  pic1_->SetViewport(&engine_->View);
  setCentralWidget(splitter_);
  setAcceptDrops(false);

  host_->setCaretMover([this](int line) {
    engine_->Editor.Document.SelectProgramLine(line - 1);
    rtPgm_->EnsureCaretVisible();
  });
  // Entities are drawn as the plot makes them, and shown whenever events are let through.
  host_->setEntityObserver(
      [this](const GeometryTable&, int index) { engine_->View.DrawEntityNow(index); });
  host_->setPumpHook([this] { engine_->View.FlushEntities(); });
}

// --- Caption, colours, configuration
// --------------------------------------------------------------

void Plot::SetCaption(const std::string& file) {
  setWindowTitle(QString::fromStdString(CaptionText(file)));
}

void Plot::SetBGColor(ColorValue color) {
  engine_->View.Colors.Background = color;
  QPalette palette = pic1_->palette();
  palette.setColor(QPalette::Window, ToQColor(color));
  pic1_->setPalette(palette);
}

void Plot::ApplyConfiguration(const MachineConfig& record) {
  Workspace& engine = *engine_;
  ApplyConfig(record, engine.Session, *host_,
              ConfigStatementRunner(engine.Expressions, engine.Variables));
  const MachineConfig& active = engine.Session.ActiveConfig;
  engine.View.ApplyConfig(active);
  SetBGColor(active.BackgroundColor);
  actions_->Find("mnuAbsArc")->setChecked(active.AbsoluteArcCenter != 0);
  ConfigFile = active.ConfigPath;
}

void Plot::SetMachineType(int machineType) {
  const bool lathe = machineType == 1;
  // The mill's views and the tools that only make sense on a mill; commands a build leaves
  // out are passed over.
  static constexpr const char* kMillOnly[] = {
      "mnuViewTop", "mnuViewBottom", "mnuViewFront", "mnuViewBack", "mnuViewLeft", "mnuViewRight",
      "mnuViewISO", "mnuFont",       "mnuMirror",    "mnuRotate",   "mnuShift",    "mnuScale"};
  static constexpr const char* kLatheOnly[] = {"mnuViewLatheFront", "mnuViewLatheBack",
                                               "mnuViewLatheLeft", "mnuViewLatheRight"};
  for (const char* name : kMillOnly) {
    if (QAction* action = actions_->Find(name)) action->setVisible(!lathe);
  }
  for (const char* name : kLatheOnly) {
    if (QAction* action = actions_->Find(name)) action->setVisible(lathe);
  }
  actions_->ToolBar("tlbView")->setVisible(!lathe);
  actions_->ToolBar("tlbLathe")->setVisible(lathe);

  Viewport& view = engine_->View;
  view.MachineType = static_cast<std::int16_t>(machineType);
  const int current = view.View.CurrentView;
  const bool loaded = view.EntityCount() > 0;
  MachineConfig& active = engine_->Session.ActiveConfig;
  if (!lathe && current < kViewFrontTurret) {
    // The isometric view of a horizontal mill stands the part up as on a lathe.
    SetView(IsIsoView(current) ? (active.MillType == 1 ? kViewIsoLathe : kViewIsoMill) : current);
    if (loaded) RefreshGeometry(true);
  } else if (!lathe) {
    SetView(kViewTop);
    if (loaded) LoadGeometry();
  } else if (current < kViewFrontTurret) {
    SetView(kViewBackTurret);
    if (loaded) LoadGeometry();
  } else if (loaded) {
    RefreshGeometry(true);
  }
  if (!lathe) ClearLatheFlagsOnMill(active);
}

void Plot::SetView(int view) {
  if (!IsKnownView(view)) view = kViewTop;
  if (QAction* action = actions_->ViewAction(view)) action->setChecked(true);
  engine_->View.SetView(view, settings_.Preferences.ZoomOnViewChange);
}

void Plot::RebuildConfigMenu() {
  QMenu* menu = actions_->ConfigMenu();
  // Only the file entries are made again; commands added to the menu stay.
  for (QAction* entry : menu->actions()) {
    if (entry->property("zmtConfigEntry").toBool()) delete entry;
  }
  const std::filesystem::path folder = FindPathNoCase(environment_.ApplicationFolder, "CONFIG");
  QDir dir(QString::fromStdString(folder.string()));
  const QStringList files = dir.entryList(QDir::Files, QDir::Name | QDir::IgnoreCase);
  for (const QString& file : files) {
    if (!file.endsWith(".zmt", Qt::CaseInsensitive)) continue;
    const QString caption =
        QString::fromStdString(ProperCase(file.left(file.size() - 4).toStdString()));
    QAction* item = menu->addAction(caption);
    item->setProperty("zmtConfigEntry", true);
    item->setCheckable(true);
    item->setChecked(EqualsNoCase(FileNameOf(ConfigFile), file.toStdString()));
    connect(item, &QAction::triggered, this, [this, caption] { ChooseConfiguration(caption); });
  }
  menu->setEnabled(!menu->isEmpty());
}

void Plot::ChooseConfiguration(const QString& name) {
  if (Busy) return;
  std::string path =
      FindPathNoCase(environment_.ApplicationFolder, "CONFIG/" + name.toStdString() + ".zmt")
          .string();
  Workspace& engine = *engine_;
  if (!LoadConfig(path, engine.Session.EditConfig, *host_, environment_.ApplicationFolder)) {
    RebuildConfigMenu();
    return;
  }
  ApplyConfiguration(engine.Session.EditConfig);
  SetMachineType(engine.Session.ActiveConfig.MachineType);
  engine.View.DrawGeometryTable();
  RebuildConfigMenu();
}

// --- Panes, placement, tool bars ----------------------------------------------------------------

void Plot::LayOutPanes() {
  QWidget* first = Panes.ViewportLeft ? static_cast<QWidget*>(pic1_) : rtPgm_;
  splitter_->insertWidget(0, first);
  splitter_->setSizes({std::max(1, Panes.PaneWidth1 / kTwipsPerPixel),
                       std::max(1, Panes.PaneWidth2 / kTwipsPerPixel)});
}

PaneLayout Plot::CurrentPanes() const {
  const QList<int> sizes = splitter_->sizes();
  PaneLayout panes = Panes;
  if (sizes.size() == 2) {
    panes.PaneWidth1 = sizes[0] * kTwipsPerPixel;
    panes.PaneWidth2 = sizes[1] * kTwipsPerPixel;
  }
  panes.ViewportLeft = splitter_->widget(0) == pic1_;
  return panes;
}

WindowPlacement Plot::CurrentPlacement() const {
  WindowPlacement placement = SavedPlacement;
  placement.WindowState = isMaximized() ? 2 : isMinimized() ? 1 : 0;
  return placement;
}

void Plot::RememberPlacement() {
  if (windowState() & (Qt::WindowMaximized | Qt::WindowMinimized | Qt::WindowFullScreen)) return;
  const QRect frame = geometry();
  SavedPlacement.Top = static_cast<float>(frame.y() * kTwipsPerPixel);
  SavedPlacement.Left = static_cast<float>(frame.x() * kTwipsPerPixel);
  SavedPlacement.Width = static_cast<float>(frame.width() * kTwipsPerPixel);
  SavedPlacement.Height = static_cast<float>(frame.height() * kTwipsPerPixel);
}

void Plot::resizeEvent(QResizeEvent* event) {
  QMainWindow::resizeEvent(event);
  if (isVisible()) RememberPlacement();
}

void Plot::moveEvent(QMoveEvent* event) {
  QMainWindow::moveEvent(event);
  if (isVisible()) RememberPlacement();
}

void Plot::LoadRebarState() {
  const QList<QToolBar*>& bars = actions_->ToolBars();
  QList<std::pair<ToolbarBand, QToolBar*>> bands;
  for (int index = 0; index < bars.size(); ++index) {
    ToolbarBand band{static_cast<std::int16_t>(index), false, 0, true};
    LoadToolbarBand(Store(), index, band);
    bands.append({band, bars[index]});
  }
  std::stable_sort(bands.begin(), bands.end(), [](const auto& a, const auto& b) {
    return a.first.Position < b.first.Position;
  });
  for (const auto& [band, bar] : bands) {
    removeToolBar(bar);
    if (band.NewRow) addToolBarBreak();
    addToolBar(bar);
    bar->setVisible(band.Visible);
  }
  const bool lathe = engine_->Session.ActiveConfig.MachineType == 1;
  actions_->ToolBar("tlbView")->setVisible(!lathe);
  actions_->ToolBar("tlbLathe")->setVisible(lathe);
}

void Plot::SaveRebarState() {
  const QList<QToolBar*>& bars = actions_->ToolBars();
  // Bands in the order they stand: row by row, left to right.
  QList<QToolBar*> ordered = bars;
  std::stable_sort(ordered.begin(), ordered.end(), [](QToolBar* a, QToolBar* b) {
    return std::make_pair(a->y(), a->x()) < std::make_pair(b->y(), b->x());
  });
  for (int index = 0; index < bars.size(); ++index) {
    QToolBar* bar = bars[index];
    const int position = static_cast<int>(ordered.indexOf(bar));
    ToolbarBand band{static_cast<std::int16_t>(position), toolBarBreak(bar),
                     bar->width() * kTwipsPerPixel, bar->isVisible()};
    SaveToolbarBand(Store(), index, band);
  }
}

// --- Settings on the window ---------------------------------------------------------------------

void Plot::ApplySettingsToWindow() {
  const GeneralSettings& g = settings_.General;
  const PreferenceSettings& p = settings_.Preferences;
  const DrawSwitches& s = engine_->View.Switches;
  // The checks show the settings; they are not commands here.
  const auto check = [this](const char* name, bool on) {
    QAction* action = actions_->Find(name);
    const QSignalBlocker quiet(action);
    action->setChecked(on);
  };
  check("mnuAutoRefresh", g.AutoRefreshEnabled);
  check("mnuColorize", g.Colorize);
  check("mnuBlockSkip", g.BlockSkip);
  check("mnuShowRapid", s.ShowRapid);
  check("mnuShowTicks", s.ShowTicks);
  check("mnuShowMarker", s.ShowMarker);
  check("mnuShowPlunge", s.ShowPlunge);
  check("mnuLockVertRotation", engine_->View.View.LockVertRotate);
  if (QAction* axis = actions_->AxisLinesAction(s.ShowAxisLines)) axis->setChecked(true);
  panels_->Set("bskip", g.BlockSkip ? "Skip ON" : "Skip OFF");

  QFont font(QString::fromStdString(g.FontName));
  font.setPointSizeF(g.FontSize > 0 ? g.FontSize : 10);
  font.setBold(g.FontBold);
  font.setItalic(g.FontItalic);
  rtPgm_->SetEditorFont(font);
  rtPgm_->SetBackground(p.EditorColor);
  rtPgm_->SetAddressColors(p.AddressColors);
  rtPgm_->SetAlwaysCaps(p.AlwaysCaps);
  engine_->Editor.ColorizeEnabled = g.Colorize;
  engine_->Editor.Font = EditorFont{g.FontName, g.FontSize, g.FontBold, g.FontItalic};
  for (int i = 1; i <= kAddressColorCount; ++i) {
    engine_->Editor.Colors[static_cast<std::size_t>(i)] =
        static_cast<std::uint32_t>(p.AddressColors[static_cast<std::size_t>(i)]);
  }
  timRefresh_->setInterval(std::max(1, p.AutoRefreshDelay));
  ApplyDisplayPrecision();
  documents_->RebuildRecentMenu();
}

void Plot::ApplyDisplayPrecision() {
  const int digits = settings_.Preferences.DisplayPrecision;
  if (QAction* action = actions_->PrecisionAction(digits >= 3 && digits <= 6 ? digits : 4)) {
    action->setChecked(true);
  }
  const DisplayFormats formats = settings_.Formats();
  engine_->View.NumberFormat = formats.Short;
  engine_->Driver.NumberFormat = formats.Short;
}

void Plot::RunHeaderDirectives() {
  if (HeaderDirectiveRunner) HeaderDirectiveRunner(engine_->Editor.HeaderDirectives());
}

// --- Plotting -----------------------------------------------------------------------------------

void Plot::PrepareInterpreter() {
  const PreferenceSettings& p = settings_.Preferences;
  InterpreterOptions options;
  options.BlockSkip = settings_.General.BlockSkip;
  options.StopOnM00 = p.StopOnM00;
  options.WarningReset = p.WarningReset;
  options.IgnoreM98 = settings_.Subprograms.IgnoreM98;
  options.IgnoreG65 = settings_.Subprograms.IgnoreG65;
  engine_->Interp.SetOptions(options);
  engine_->Interp.SetSubprogramSettings(settings_.Subprograms);
  engine_->Driver.Warnings =
      PlotWarnings{p.WarnOnFeedrate0, p.WarnOnSpindleSpeed0, p.WarnOnSpindleOff};
  engine_->Driver.ProgressInterval = kPlotYieldInterval;
}

void Plot::PlotWith(bool quiet, bool zoomToPart) {
  Workspace& engine = *engine_;
  if (Busy || engine.Driver.PlotBusy) {
    replotPending_ = true;
    return;
  }
  if (engine.Driver.PlotBlocked) return;  // the layer manager holds a drawing in the table
  engine.View.DXFMode = false;            // the program's plot replaces a drawing on show
  Busy = true;
  host_->setAbortRequested(false);
  engine.Driver.PlotCancel = false;
  engine.Driver.QuietPlot = quiet;
  PrepareInterpreter();
  emit plotting();
  // The picture starts empty and fills as the motions are made.
  engine.View.RefreshGeometry(0);
  engine.View.RepaintBlocked = true;
  pic1_->SetPointerBlocked(true);
  try {
    engine.Driver.RefreshGeometry(engine.ProgramToPlot());
  } catch (const std::exception& failure) {
    host_->ask(Prompt{std::string("Error in Plot_LoadGeometry\r\n") + failure.what(), kProductName,
                      MsgIcon::Stop, MsgButtons::Ok});
  }
  engine.Driver.QuietPlot = false;
  engine.View.RepaintBlocked = false;
  pic1_->SetPointerBlocked(false);
  Busy = false;
  host_->pumpEvents();
  const std::int32_t count = engine.Driver.EntityCount();
  if (zoomToPart) {
    engine.View.LoadGeometry(count);
  } else {
    engine.View.RefreshGeometry(count);
  }
  emit plotFinished();
  if (replotPending_) {
    replotPending_ = false;
    QTimer::singleShot(0, this, [this] { PlotWith(false, true); });
  }
}

void Plot::LoadGeometry() {
  PlotWith(false, true);
}

void Plot::RefreshGeometry(bool quiet) {
  PlotWith(quiet, false);
}

void Plot::ColorizeProgram() {
  Workspace& engine = *engine_;
  engine.Editor.Colorizer = rtPgm_->Colorizer();
  engine.Editor.ColorizeProgram();
}

void Plot::RefreshEditState() {
  const UndoHistory& undo = engine_->Editor.Undo;
  const bool selection = rtPgm_->HasSelection();
  actions_->Find("mnuEditCut")->setEnabled(selection);
  actions_->Find("mnuEditCopy")->setEnabled(selection);
  const QMimeData* clip = QApplication::clipboard()->mimeData();
  actions_->Find("mnuEditPaste")->setEnabled(clip != nullptr && clip->hasText());
  QAction* undoAction = actions_->Find("mnuEditUndo");
  QAction* redoAction = actions_->Find("mnuEditRedo");
  // Typing not yet made a step (the pause has not ended) can be undone too.
  const bool canUndo = undo.CanUndo() || (undo.Tracking() && undo.TimerRunning());
  undoAction->setEnabled(canUndo);
  undoAction->setText(canUndo ? "&Undo" : "Can't Undo");
  undoAction->setToolTip(canUndo ? "Undo" : "Can't Undo");
  redoAction->setEnabled(undo.CanRedo());
  redoAction->setText(undo.CanRedo() ? "&Redo" : "Can't Redo");
  redoAction->setToolTip(undo.CanRedo() ? "Redo" : "Can't Redo");
}

void Plot::RequestAbort() {
  host_->setAbortRequested(true);
  engine_->Driver.PlotCancel = true;
  panels_->Set("msg", "");
  pic1_->SetPanArmed(false);
  pic1_->SetZoomWindowArmed(false);
  actions_->Find("mnuPan")->setChecked(false);
  actions_->Find("mnuZoomWindow")->setChecked(false);
  emit abortRequested();
}

void Plot::StopAutoRefresh() {
  timRefresh_->stop();
}

void Plot::TextChanged() {
  if (settings_.General.AutoRefreshEnabled) timRefresh_->start();
}

// The program changed a while ago: plot it again quietly, unless something is running, in
// which case try again after the same delay.
void Plot::AutoRefreshTick() {
  if (Busy || engine_->Driver.PlotBusy || engine_->View.Painting) {
    timRefresh_->start();
    return;
  }
  timRefresh_->stop();
  RefreshGeometry(true);
}

// --- Files from outside -------------------------------------------------------------------------

void Plot::OpenPassedFile(const std::string& path) {
  documents_->OpenPassedFile(path);
}

bool Plot::PromptSaveChanges() {
  return documents_->PromptSaveChanges();
}

void Plot::ReceiveHandOver(const QString& commandLine) {
  const std::string name = HandedOverFileName(commandLine.toStdString());
  if (isMinimized()) showNormal();
  raise();
  activateWindow();
  if (!name.empty()) OpenPassedFile(name);
}

// --- Connections --------------------------------------------------------------------------------

void Plot::ConnectDocument() {
  UndoHistory& undo = engine_->Editor.Undo;
  undo.TimerChanged = [this](bool run) {
    if (run) {
      undoTimer_->start();
    } else {
      undoTimer_->stop();
    }
  };
  undo.StateChanged = [this] { RefreshEditState(); };
  connect(rtPgm_, &ProgramTextView::caretLineChanged, this,
          [this](int line) { panels_->Set("line", QString::number(line)); });
  connect(rtPgm_, &ProgramTextView::selectionChanged, this, &Plot::RefreshEditState);
  connect(rtPgm_, &ProgramTextView::textChanged, this, &Plot::TextChanged);
  connect(rtPgm_, &ProgramTextView::textChanged, this, &Plot::RefreshEditState);
  connect(rtPgm_, &ProgramTextView::filesDropped, this,
          [this](const QStringList& paths) { OpenPassedFile(paths.front().toStdString()); });
  connect(QApplication::clipboard(), &QClipboard::dataChanged, this, &Plot::RefreshEditState);
  connect(pic1_, &PictureBox::positionChanged, this,
          [this](const QString& text) { panels_->Set("pos", text); });
  connect(pic1_, &PictureBox::dragMessage, this,
          [this](const QString& text) { panels_->Set("msg", text); });
  connect(pic1_, &PictureBox::keyCommand, this, [this](QChar key) {
    static const QHash<QChar, const char*> commands = {{'X', "mnuZoomExtents"}, {'A', "mnuZoomAll"},
                                                       {'C', "mnuZoomIn"},      {'V', "mnuZoomOut"},
                                                       {'Z', "mnuZoomWindow"},  {'P', "mnuPan"}};
    if (const char* name = commands.value(key, nullptr)) actions_->Find(name)->trigger();
  });
  connect(instance_, &SingleInstance::commandLineReceived, this, &Plot::ReceiveHandOver);
  connect(panels_, &StatusPanels::blockSkipClicked, this,
          [this] { actions_->Find("mnuBlockSkip")->trigger(); });
  auto* escape = new QShortcut(QKeySequence(Qt::Key_Escape), this);
  escape->setContext(Qt::WindowShortcut);
  connect(escape, &QShortcut::activated, this, &Plot::RequestAbort);
  rtPgm_->SetContextActions({actions_->Find("mnuEditUndo"), actions_->Find("mnuEditRedo"), nullptr,
                             actions_->Find("mnuEditCut"), actions_->Find("mnuEditCopy"),
                             actions_->Find("mnuEditPaste"), nullptr,
                             actions_->Find("mnuEditSelectAll")});
}

void Plot::ConnectFileCommands() {
  DocumentCommands& files = *documents_;
  const auto on = [this](const char* name, auto handler) {
    connect(actions_->Find(name), &QAction::triggered, this, handler);
  };
  on("mnuNew", [&files] { files.Close(); });
  on("mnuLoad", [&files] { files.Open(); });
  on("mnuInsertFile", [&files] { files.InsertFile(); });
  on("mnuSave", [&files] { files.Save(); });
  on("mnuSaveAs", [&files] { files.SaveAs(); });
  on("mnuShowPrograms", [&files] { files.ShowPrograms(); });
  on("mnuSaveSeparate", [&files] { files.SaveSeparate(); });
  on("mnuExit", [this] { close(); });
}

void Plot::ConnectEditCommands() {
  UndoHistory& undo = engine_->Editor.Undo;
  const auto on = [this](const char* name, auto handler) {
    connect(actions_->Find(name), &QAction::triggered, this, handler);
  };
  on("mnuEditUndo", [&undo] { undo.Undo(1); });
  on("mnuEditRedo", [&undo] { undo.Redo(1); });
  on("mnuEditCut", [this] { rtPgm_->Cut(); });
  on("mnuEditCopy", [this] { rtPgm_->Copy(); });
  on("mnuEditPaste", [this] { rtPgm_->Paste(); });
  on("mnuEditSelectAll", [this] { rtPgm_->SelectAll(); });
  on("mnuFind", [this] { search_->ShowFind(); });
  on("mnuReplace", [this] { search_->ShowReplace(); });
  on("mnuFindNext", [this] { search_->FindNext(); });
  connect(actions_->Find("mnuColorize"), &QAction::toggled, this, &Plot::SetColorize);
}

void Plot::ConnectViewCommands() {
  Viewport& view = engine_->View;
  for (int number = 0; number < kViewCount; ++number) {
    if (number == kViewIsoLathe) continue;  // mnuViewISO serves both isometric views
    connect(actions_->ViewAction(number), &QAction::triggered, this, [this, number] {
      SetView(IsIsoView(number) ? IsoViewFor(engine_->Session.ActiveConfig.MachineType) : number);
    });
  }
  const auto on = [this](const char* name, auto handler) {
    connect(actions_->Find(name), &QAction::triggered, this, handler);
  };
  on("mnuZoomIn", [&view] { view.ZoomIn(); });
  on("mnuZoomOut", [&view] { view.ZoomOut(); });
  on("mnuZoomExtents", [&view] { view.ZoomToExtents(); });
  on("mnuZoomAll", [&view] { view.ZoomAll(); });
  connect(actions_->Find("mnuZoomWindow"), &QAction::toggled, this, [this](bool on) {
    pic1_->SetZoomWindowArmed(on);
    if (on) actions_->Find("mnuPan")->setChecked(false);
    panels_->Set("msg", on ? "Click and drag to select the desired view window" : "");
  });
  connect(actions_->Find("mnuPan"), &QAction::toggled, this, [this](bool on) {
    pic1_->SetPanArmed(on);
    if (on) actions_->Find("mnuZoomWindow")->setChecked(false);
  });
  // A pointer mode ends with its drag.
  connect(pic1_, &PictureBox::dragMessage, this, [this](const QString& text) {
    if (!text.isEmpty()) return;
    actions_->Find("mnuZoomWindow")->setChecked(pic1_->ZoomWindowArmed());
    actions_->Find("mnuPan")->setChecked(pic1_->PanArmed());
  });
  const auto toggle = [this, &view](const char* name, bool DrawSwitches::*member) {
    connect(actions_->Find(name), &QAction::toggled, this, [&view, member](bool on) {
      view.Switches.*member = on;
      view.DrawGeometryTable();
    });
  };
  toggle("mnuShowRapid", &DrawSwitches::ShowRapid);
  toggle("mnuShowTicks", &DrawSwitches::ShowTicks);
  toggle("mnuShowMarker", &DrawSwitches::ShowMarker);
  toggle("mnuShowPlunge", &DrawSwitches::ShowPlunge);
  connect(actions_->Find("mnuLockVertRotation"), &QAction::toggled, this,
          [&view](bool on) { view.View.LockVertRotate = on; });
  for (int index = 0; index <= 7; ++index) {
    connect(actions_->AxisLinesAction(index), &QAction::triggered, this, [&view, index] {
      view.Switches.ShowAxisLines = static_cast<std::int16_t>(index);
      view.ComputeAxisLines();
      view.DrawGeometryTable();
    });
  }
}

void Plot::ConnectPlotCommands() {
  connect(actions_->Find("mnuPlot"), &QAction::triggered, this, [this] { LoadGeometry(); });
  connect(actions_->Find("mnuAutoRefresh"), &QAction::toggled, this, [this](bool on) {
    settings_.General.AutoRefreshEnabled = on;
    if (!on) timRefresh_->stop();
  });
  connect(actions_->Find("mnuBlockSkip"), &QAction::toggled, this, &Plot::SetBlockSkip);
  connect(actions_->Find("mnuAbsArc"), &QAction::triggered, this, [this](bool on) {
    engine_->Session.ActiveConfig.AbsoluteArcCenter = ToFlag(on);
    if (engine_->View.EntityCount() > 0) RefreshGeometry(false);
  });
}

void Plot::ConnectOptionCommands() {
  connect(actions_->Find("mnuPreferences"), &QAction::triggered, this, &Plot::ShowPreferences);
  connect(actions_->Find("mnuEditorFont"), &QAction::triggered, this, &Plot::ChooseEditorFont);
  for (int digits = 3; digits <= 6; ++digits) {
    connect(actions_->PrecisionAction(digits), &QAction::triggered, this, [this, digits] {
      settings_.Preferences.DisplayPrecision = static_cast<std::int16_t>(digits);
      ApplyDisplayPrecision();
      engine_->View.DrawGeometryTable();
    });
  }
  connect(actions_->Find("mnuHelpManual"), &QAction::triggered, this, &Plot::OpenManual);
  connect(actions_->Find("mnuAbout"), &QAction::triggered, this, [this] {
    QMessageBox::about(this, "About Zemtra",
                       QString::fromStdString(CaptionText("")).section(" - ", 0, 0) +
                           "\n\nAn editor and backplotter for CNC programs.");
  });
}

void Plot::ConnectTimers() {
  undoTimer_ = new QTimer(this);
  undoTimer_->setObjectName("UndoTimer_1");
  undoTimer_->setSingleShot(true);
  undoTimer_->setInterval(kUndoDelayMs);
  connect(undoTimer_, &QTimer::timeout, this, [this] { engine_->Editor.Undo.TimerElapsed(); });
  timRefresh_ = new QTimer(this);
  timRefresh_->setObjectName("timRefresh");
  timRefresh_->setSingleShot(true);
  connect(timRefresh_, &QTimer::timeout, this, &Plot::AutoRefreshTick);
  timer3_ = new QTimer(this);
  timer3_->setObjectName("Timer3");
  timer3_->setInterval(kTimer3Ms);
  connect(timer3_, &QTimer::timeout, this, [this] {
    if (Busy) return;
    timer3_->stop();
    close();
  });
}

// --- Commands with dialogs ----------------------------------------------------------------------

void Plot::SetBlockSkip(bool on) {
  settings_.General.BlockSkip = on;
  panels_->Set("bskip", on ? "Skip ON" : "Skip OFF");
  if (engine_->View.EntityCount() > 0) RefreshGeometry(false);
}

void Plot::SetColorize(bool on) {
  settings_.General.Colorize = on;
  engine_->Editor.ColorizeEnabled = on;
  if (on) {
    ColorizeProgram();
  } else {
    rtPgm_->SetColoringActive(false);
  }
}

void Plot::ShowPreferences() {
  OptionsDialog dialog(settings_, Panes, Store(), this);
  dialog.Changed = [this](OptionsDialog::Change change) {
    switch (change) {
      case OptionsDialog::Change::EditorColor:
        rtPgm_->SetBackground(settings_.Preferences.EditorColor);
        break;
      case OptionsDialog::Change::AutoRefreshDelay:
        timRefresh_->setInterval(std::max(1, settings_.Preferences.AutoRefreshDelay));
        break;
      case OptionsDialog::Change::AlwaysCaps:
        rtPgm_->SetAlwaysCaps(settings_.Preferences.AlwaysCaps);
        break;
      case OptionsDialog::Change::ViewportLeft:
        Panes.PaneWidth1 = CurrentPanes().PaneWidth2;
        Panes.PaneWidth2 = CurrentPanes().PaneWidth1;
        LayOutPanes();
        break;
      case OptionsDialog::Change::Other:
        break;
    }
  };
  dialog.exec();
}

void Plot::ChooseEditorFont() {
  bool chosen = false;
  const QFont font = QFontDialog::getFont(&chosen, rtPgm_->EditorFont(), this, "Program Font",
                                          QFontDialog::MonospacedFonts);
  if (!chosen) return;
  GeneralSettings& g = settings_.General;
  g.FontName = font.family().toStdString();
  g.FontSize = font.pointSizeF();
  g.FontBold = font.bold();
  g.FontItalic = font.italic();
  rtPgm_->SetEditorFont(font);
  engine_->Editor.Font = EditorFont{g.FontName, g.FontSize, g.FontBold, g.FontItalic};
}

void Plot::OpenManual() {
  const std::filesystem::path manual =
      FindPathNoCase(environment_.ApplicationFolder, "Manuals/Zemtra Manual.md");
  const QString path = QString::fromStdString(manual.string());
  if (!QFileInfo::exists(path) || !QDesktopServices::openUrl(QUrl::fromLocalFile(path))) {
    host_->ask(Prompt{"The manual could not be opened:\r\n" + manual.string(), kProductName,
                      MsgIcon::Exclamation, MsgButtons::Ok});
  }
}

// --- Exit ---------------------------------------------------------------------------------------

void Plot::closeEvent(QCloseEvent* event) {
  if (ShutDown(*this).Run()) {
    search_->hide();
    event->accept();
  } else {
    event->ignore();
  }
}

void Plot::StartClosingLater() {
  timer3_->start();
}

}  // namespace zemtra
