#pragma once
// The commands of the main window as actions, named by their control names (mnuZoomIn,
// mnuViewTop, ...), with the menu bar and the tool bars built from tables. The window connects
// the actions to its operations; only commands that work are listed.
#include <QHash>
#include <QList>
#include <QString>

class QAction;
class QActionGroup;
class QMainWindow;
class QMenu;
class QToolBar;
class QToolButton;

namespace zemtra {

class PlotActions {
 public:
  // Creates every action, menu and tool bar on `window`.
  explicit PlotActions(QMainWindow& window);

  // The action of control `name`; nullptr for an unknown name.
  QAction* Find(const QString& name) const;
  QAction* operator[](const char* name) const { return Find(QString::fromLatin1(name)); }

  // The drop-down list of recent files (File menu and the "open" button).
  QMenu* RecentMenu() const { return recentMenu_; }
  // The list of machine configurations.
  QMenu* ConfigMenu() const { return configMenu_; }
  // The "open" button of the tool bar, with the recent files as its drop-down.
  QToolButton* OpenButton() const { return openButton_; }
  // Tool bars in their band order: tlbSetup, tlbView, tlbLathe, tlbPlot.
  const QList<QToolBar*>& ToolBars() const { return toolBars_; }
  QToolBar* ToolBar(const QString& name) const;

  // A top-level menu by control name (mnuFile, mnuEdit, mnuView, mnuPlotMenu, mnuFormat,
  // mnuTranslate, mnuTools, mnuDXF, mnuDNC, mnuScripts, mnuOptions, mnuHelp); nullptr if unknown.
  QMenu* Menu(const QString& name) const;
  // Creates action `name` with `caption` (and an optional portable shortcut text such as
  // "Ctrl+R") at the end of `menu`, which may be a submenu; the action is then found by Find.
  QAction* AddCommand(QMenu* menu, const char* name, const char* caption,
                      const char* shortcut = "", bool checkable = false);
  // A submenu `name` with `caption` at the end of `menu`.
  QMenu* AddSubmenu(QMenu* menu, const char* name, const char* caption);

  // The view actions by view number 0 to 11 (6 and 7 share mnuViewISO).
  QAction* ViewAction(int view) const;
  // Axis line choices 0 to 7 and display precisions 3 to 6.
  QAction* AxisLinesAction(int index) const;
  QAction* PrecisionAction(int digits) const;

 private:
  void CreateActions(QMainWindow& window);
  void CreateMenus(QMainWindow& window);
  void CreateToolBars(QMainWindow& window);
  QMenu* AddMenu(QMainWindow& window, const char* name, const char* caption,
                 std::initializer_list<const char*> entries);

  QHash<QString, QAction*> actions_;
  QHash<QString, QMenu*> menus_;
  QMenu* recentMenu_ = nullptr;
  QMenu* configMenu_ = nullptr;
  QToolButton* openButton_ = nullptr;
  QList<QToolBar*> toolBars_;
};

}  // namespace zemtra
