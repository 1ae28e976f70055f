#include "app/PlotActions.h"

#include <QAction>
#include <QActionGroup>
#include <QApplication>
#include <QKeySequence>
#include <QMainWindow>
#include <QMenu>
#include <QMenuBar>
#include <QStyle>
#include <QToolBar>
#include <QToolButton>
#include <array>
#include <vector>

#include "view/Views.h"

namespace zemtra {

namespace {

struct ActionRow {
  const char* name;
  const char* caption;
  const char* shortcut;  // portable text form, "" for none
  bool checkable;
  const char* icon;  // freedesktop icon name, "" for none
  QStyle::StandardPixmap fallback;
};

constexpr QStyle::StandardPixmap kNoIcon = QStyle::SP_CustomBase;

constexpr std::array kActions = {
    // File
    ActionRow{"mnuNew", "&Close", "Ctrl+W", false, "document-close", kNoIcon},
    ActionRow{"mnuLoad", "&Open...", "Ctrl+O", false, "document-open", QStyle::SP_DialogOpenButton},
    ActionRow{"mnuInsertFile", "&Insert File...", "", false, "", kNoIcon},
    ActionRow{"mnuSave", "&Save", "Ctrl+S", false, "document-save", QStyle::SP_DialogSaveButton},
    ActionRow{"mnuSaveAs", "Save &As...", "Ctrl+Shift+S", false, "document-save-as", kNoIcon},
    ActionRow{"mnuShowPrograms", "Show &Programs", "", false, "", kNoIcon},
    ActionRow{"mnuSaveSeparate", "Save Programs Se&parately...", "", false, "", kNoIcon},
    ActionRow{"mnuExit", "E&xit", "Ctrl+Q", false, "application-exit", kNoIcon},
    // Edit
    ActionRow{"mnuEditUndo", "Can't Undo", "Ctrl+Z", false, "edit-undo", QStyle::SP_ArrowBack},
    ActionRow{"mnuEditRedo", "Can't Redo", "Ctrl+Y", false, "edit-redo", QStyle::SP_ArrowForward},
    ActionRow{"mnuEditCut", "Cu&t", "Ctrl+X", false, "edit-cut", kNoIcon},
    ActionRow{"mnuEditCopy", "&Copy", "Ctrl+C", false, "edit-copy", kNoIcon},
    ActionRow{"mnuEditPaste", "&Paste", "Ctrl+V", false, "edit-paste", kNoIcon},
    ActionRow{"mnuEditSelectAll", "Select &All", "Ctrl+A", false, "edit-select-all", kNoIcon},
    ActionRow{"mnuFind", "&Find...", "Ctrl+F", false, "edit-find", kNoIcon},
    ActionRow{"mnuFindNext", "Find &Next", "F3", false, "", kNoIcon},
    ActionRow{"mnuReplace", "&Replace...", "Ctrl+H", false, "edit-find-replace", kNoIcon},
    ActionRow{"mnuColorize", "C&olorize", "", true, "", kNoIcon},
    // View
    ActionRow{"mnuViewTop", "&Top", "", true, "", kNoIcon},
    ActionRow{"mnuViewBottom", "&Bottom", "", true, "", kNoIcon},
    ActionRow{"mnuViewFront", "&Front", "", true, "", kNoIcon},
    ActionRow{"mnuViewBack", "B&ack", "", true, "", kNoIcon},
    ActionRow{"mnuViewRight", "&Right", "", true, "", kNoIcon},
    ActionRow{"mnuViewLeft", "&Left", "", true, "", kNoIcon},
    ActionRow{"mnuViewISO", "&Isometric", "", true, "", kNoIcon},
    ActionRow{"mnuViewLatheFront", "&Front Turret", "", true, "", kNoIcon},
    ActionRow{"mnuViewLatheBack", "&Back Turret", "", true, "", kNoIcon},
    ActionRow{"mnuViewLatheLeft", "Vertical &Left", "", true, "", kNoIcon},
    ActionRow{"mnuViewLatheRight", "Vertical &Right", "", true, "", kNoIcon},
    ActionRow{"mnuZoomIn", "Zoom &In", "Ctrl++", false, "zoom-in", kNoIcon},
    ActionRow{"mnuZoomOut", "Zoom &Out", "Ctrl+-", false, "zoom-out", kNoIcon},
    ActionRow{"mnuZoomExtents", "Zoom &Extents", "Ctrl+E", false, "zoom-fit-best", kNoIcon},
    ActionRow{"mnuZoomAll", "Zoom &All Cutting Moves", "", false, "", kNoIcon},
    ActionRow{"mnuZoomWindow", "Zoom &Window", "", true, "zoom-select", kNoIcon},
    ActionRow{"mnuPan", "&Pan", "", true, "", kNoIcon},
    ActionRow{"mnuShowRapid", "Show &Rapids", "", true, "", kNoIcon},
    ActionRow{"mnuShowTicks", "Show Rapid &Ticks", "", true, "", kNoIcon},
    ActionRow{"mnuShowMarker", "Show Position &Marker", "", true, "", kNoIcon},
    ActionRow{"mnuShowPlunge", "Show &Plunges", "", true, "", kNoIcon},
    ActionRow{"mnuLockVertRotation", "&Lock Vertical Rotation", "", true, "", kNoIcon},
    ActionRow{"mnuAxisLinesSel0", "&Off", "", true, "", kNoIcon},
    ActionRow{"mnuAxisLinesSel1", "&Machine Zero", "", true, "", kNoIcon},
    ActionRow{"mnuAxisLinesSel2", "G54", "", true, "", kNoIcon},
    ActionRow{"mnuAxisLinesSel3", "G55", "", true, "", kNoIcon},
    ActionRow{"mnuAxisLinesSel4", "G56", "", true, "", kNoIcon},
    ActionRow{"mnuAxisLinesSel5", "G57", "", true, "", kNoIcon},
    ActionRow{"mnuAxisLinesSel6", "G58", "", true, "", kNoIcon},
    ActionRow{"mnuAxisLinesSel7", "G59", "", true, "", kNoIcon},
    // Plot
    ActionRow{"mnuPlot", "&Plot Program", "F5", false, "view-refresh", QStyle::SP_BrowserReload},
    ActionRow{"mnuAutoRefresh", "&Auto Refresh", "", true, "", kNoIcon},
    ActionRow{"mnuBlockSkip", "&Block Skip", "", true, "", kNoIcon},
    ActionRow{"mnuAbsArc", "Absolute Arc &Centers", "", true, "", kNoIcon},
    // Options
    ActionRow{"mnuPreferences", "&Preferences...", "", false, "preferences-system", kNoIcon},
    ActionRow{"mnuEditorFont", "Program &Font...", "", false, "preferences-desktop-font", kNoIcon},
    ActionRow{"mnuToolsPrecision3", "&3 Decimals", "", true, "", kNoIcon},
    ActionRow{"mnuToolsPrecision4", "&4 Decimals", "", true, "", kNoIcon},
    ActionRow{"mnuToolsPrecision5", "&5 Decimals", "", true, "", kNoIcon},
    ActionRow{"mnuToolsPrecision6", "&6 Decimals", "", true, "", kNoIcon},
    // Help
    ActionRow{"mnuHelpManual", "User &Manual", "F1", false, "help-contents", kNoIcon},
    ActionRow{"mnuAbout", "&About Zemtra", "", false, "help-about", kNoIcon},
};

// A tool bar: its name, and its buttons as action name and button key ("" for a separator).
struct ButtonRow {
  const char* action;
  const char* key;
};
struct ToolBarRow {
  const char* name;
  const char* caption;
  std::vector<ButtonRow> buttons;
};

const std::array<ToolBarRow, 4>& ToolBarRows() {
  static const std::array<ToolBarRow, 4> rows = {{
      {"tlbSetup",
       "File and Edit",
       {{"mnuLoad", "open"},
        {"mnuSave", "save"},
        {"", ""},
        {"mnuEditCut", "cut"},
        {"mnuEditCopy", "copy"},
        {"mnuEditPaste", "paste"},
        {"", ""},
        {"mnuEditUndo", "undo"},
        {"mnuEditRedo", "redo"}}},
      {"tlbView",
       "View",
       {{"mnuViewTop", "top"},
        {"mnuViewBottom", "bottom"},
        {"mnuViewFront", "front"},
        {"mnuViewBack", "back"},
        {"mnuViewRight", "right"},
        {"mnuViewLeft", "left"},
        {"mnuViewISO", "iso"},
        {"", ""},
        {"mnuZoomIn", "zoomin"},
        {"mnuZoomOut", "zoomout"},
        {"mnuZoomExtents", "zoomextents"}}},
      {"tlbLathe",
       "Lathe Views",
       {{"mnuViewLatheFront", "front"},
        {"mnuViewLatheBack", "back"},
        {"mnuViewLatheLeft", "left"},
        {"mnuViewLatheRight", "right"}}},
      {"tlbPlot", "Plot", {{"mnuPlot", "plot"}}},
  }};
  return rows;
}

// Short captions of the view buttons, which have no icons.
QString ButtonCaption(const QString& key, const QAction* action) {
  static const QHash<QString, QString> captions = {
      {"top", "Top"},     {"bottom", "Bottom"}, {"front", "Front"}, {"back", "Back"},
      {"right", "Right"}, {"left", "Left"},     {"iso", "Iso"},     {"plot", "Plot"}};
  const auto found = captions.find(key);
  if (found != captions.end()) return *found;
  QString text = action->text();
  return text.remove('&').remove("...");
}

}  // namespace

PlotActions::PlotActions(QMainWindow& window) {
  CreateActions(window);
  CreateMenus(window);
  CreateToolBars(window);
}

void PlotActions::CreateActions(QMainWindow& window) {
  QStyle* style = window.style();
  for (const ActionRow& row : kActions) {
    auto* action = new QAction(QString::fromUtf8(row.caption), &window);
    action->setObjectName(row.name);
    action->setCheckable(row.checkable);
    if (*row.shortcut != '\0') action->setShortcut(QKeySequence(QString(row.shortcut)));
    QIcon fallback;
    if (row.fallback != kNoIcon) fallback = style->standardIcon(row.fallback);
    if (*row.icon != '\0') action->setIcon(QIcon::fromTheme(row.icon, fallback));
    actions_.insert(row.name, action);
  }
  // Checks that exclude one another.
  auto* views = new QActionGroup(&window);
  for (int view = 0; view < kViewCount; ++view) views->addAction(ViewAction(view));
  auto* axisLines = new QActionGroup(&window);
  for (int i = 0; i <= 7; ++i) axisLines->addAction(AxisLinesAction(i));
  auto* precisions = new QActionGroup(&window);
  for (int digits = 3; digits <= 6; ++digits) precisions->addAction(PrecisionAction(digits));
  // The edit commands also work from the keyboard inside the text.
  for (const char* name : {"mnuEditCut", "mnuEditCopy", "mnuEditPaste", "mnuEditSelectAll"}) {
    Find(name)->setShortcutContext(Qt::WidgetWithChildrenShortcut);
  }
}

QMenu* PlotActions::AddMenu(QMainWindow& window, const char* name, const char* caption,
                            std::initializer_list<const char*> entries) {
  QMenu* menu = window.menuBar()->addMenu(QString::fromUtf8(caption));
  menu->setObjectName(name);
  menus_.insert(name, menu);
  for (const char* entry : entries) {
    if (*entry == '\0') {
      menu->addSeparator();
    } else {
      menu->addAction(Find(entry));
    }
  }
  return menu;
}

void PlotActions::CreateMenus(QMainWindow& window) {
  QMenu* file = AddMenu(window, "mnuFile", "&File", {"mnuLoad"});
  recentMenu_ = file->addMenu("Open &Recent");
  recentMenu_->setObjectName("mnuRecent");
  for (const char* entry : {"mnuInsertFile", "", "mnuSave", "mnuSaveAs", "mnuNew", "",
                            "mnuShowPrograms", "mnuSaveSeparate", "", "mnuExit"}) {
    if (*entry == '\0') {
      file->addSeparator();
    } else {
      file->addAction(Find(entry));
    }
  }
  AddMenu(window, "mnuEdit", "&Edit",
          {"mnuEditUndo", "mnuEditRedo", "", "mnuEditCut", "mnuEditCopy", "mnuEditPaste",
           "mnuEditSelectAll", "", "mnuFind", "mnuFindNext", "mnuReplace", "", "mnuColorize"});
  QMenu* view = AddMenu(window, "mnuView", "&View",
                        {"mnuViewTop",
                         "mnuViewBottom",
                         "mnuViewFront",
                         "mnuViewBack",
                         "mnuViewRight",
                         "mnuViewLeft",
                         "mnuViewISO",
                         "mnuViewLatheFront",
                         "mnuViewLatheBack",
                         "mnuViewLatheLeft",
                         "mnuViewLatheRight",
                         "",
                         "mnuZoomIn",
                         "mnuZoomOut",
                         "mnuZoomExtents",
                         "mnuZoomAll",
                         "mnuZoomWindow",
                         "mnuPan",
                         "",
                         "mnuShowRapid",
                         "mnuShowTicks",
                         "mnuShowMarker",
                         "mnuShowPlunge",
                         "mnuLockVertRotation"});
  QMenu* axisLines = view->addMenu("&Axis Lines");
  axisLines->setObjectName("mnuAxisLines");
  for (int i = 0; i <= 7; ++i) axisLines->addAction(AxisLinesAction(i));
  AddMenu(window, "mnuPlotMenu", "&Plot",
          {"mnuPlot", "", "mnuAutoRefresh", "mnuBlockSkip", "mnuAbsArc"});
  // Filled by the command sets of the window's features.
  AddMenu(window, "mnuFormat", "F&ormat", {});
  AddMenu(window, "mnuTranslate", "&Translate", {});
  AddMenu(window, "mnuTools", "T&ools", {});
  AddMenu(window, "mnuDXF", "&DXF", {});
  AddMenu(window, "mnuDNC", "&Communication", {});
  AddMenu(window, "mnuScripts", "&Scripts", {});
  QMenu* options = AddMenu(window, "mnuOptions", "&Options", {});
  configMenu_ = options->addMenu("Machine &Configuration");
  configMenu_->setObjectName("mnuConfig");
  options->addAction(Find("mnuPreferences"));
  options->addAction(Find("mnuEditorFont"));
  QMenu* precision = options->addMenu("&Display Precision");
  precision->setObjectName("mnuToolsPrecision");
  for (int digits = 3; digits <= 6; ++digits) precision->addAction(PrecisionAction(digits));
  menus_.insert("mnuConfig", configMenu_);
  AddMenu(window, "mnuHelp", "&Help", {"mnuHelpManual", "", "mnuAbout"});
}

void PlotActions::CreateToolBars(QMainWindow& window) {
  for (const ToolBarRow& row : ToolBarRows()) {
    QToolBar* bar = window.addToolBar(QString::fromUtf8(row.caption));
    bar->setObjectName(row.name);
    bar->setIconSize(QSize(20, 20));
    for (const ButtonRow& button : row.buttons) {
      if (*button.action == '\0') {
        bar->addSeparator();
        continue;
      }
      QAction* action = Find(button.action);
      bar->addAction(action);
      auto* tool = qobject_cast<QToolButton*>(bar->widgetForAction(action));
      if (tool == nullptr) continue;
      tool->setObjectName(button.key);
      if (action->icon().isNull()) {
        tool->setToolButtonStyle(Qt::ToolButtonTextOnly);
        action->setIconText(ButtonCaption(button.key, action));
      }
    }
    toolBars_.append(bar);
  }
  openButton_ = ToolBar("tlbSetup")->findChild<QToolButton*>("open");
  if (openButton_ != nullptr) {
    openButton_->setMenu(recentMenu_);
    openButton_->setPopupMode(QToolButton::MenuButtonPopup);
  }
}

QMenu* PlotActions::Menu(const QString& name) const {
  return menus_.value(name, nullptr);
}

QAction* PlotActions::AddCommand(QMenu* menu, const char* name, const char* caption,
                                 const char* shortcut, bool checkable) {
  auto* action = new QAction(QString::fromUtf8(caption), menu);
  action->setObjectName(name);
  action->setCheckable(checkable);
  if (*shortcut != '\0') action->setShortcut(QKeySequence(QString(shortcut)));
  menu->addAction(action);
  actions_.insert(name, action);
  return action;
}

QMenu* PlotActions::AddSubmenu(QMenu* menu, const char* name, const char* caption) {
  QMenu* submenu = menu->addMenu(QString::fromUtf8(caption));
  submenu->setObjectName(name);
  menus_.insert(name, submenu);
  return submenu;
}

QAction* PlotActions::Find(const QString& name) const {
  return actions_.value(name, nullptr);
}

QToolBar* PlotActions::ToolBar(const QString& name) const {
  for (QToolBar* bar : toolBars_) {
    if (bar->objectName() == name) return bar;
  }
  return nullptr;
}

QAction* PlotActions::ViewAction(int view) const {
  const std::string_view name = ViewInfoOf(view).MenuName;
  return Find(QString::fromUtf8(name.data(), static_cast<qsizetype>(name.size())));
}

QAction* PlotActions::AxisLinesAction(int index) const {
  return Find(QString("mnuAxisLinesSel%1").arg(index));
}

QAction* PlotActions::PrecisionAction(int digits) const {
  return Find(QString("mnuToolsPrecision%1").arg(digits));
}

}  // namespace zemtra
