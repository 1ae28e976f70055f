#pragma once
// vDsp, the window titled "Variable Display": runs the program block by block (step, animate,
// step to the cursor's line, step to a break expression) and shows the block just run, the
// call levels, the macro variables and the text of a running subprogram file. Variables can
// be edited, and system variables added to the list that is watched.
#include <QString>
#include <QWidget>
#include <functional>
#include <optional>
#include <string>

class QAction;
class QComboBox;
class QLabel;
class QLineEdit;
class QPlainTextEdit;
class QPushButton;
class QTimer;
class QToolBar;
class QTreeWidget;
class QTreeWidgetItem;

namespace zemtra {

class MacroStepper;
class Plot;
class VariableDisplay;

class vDsp : public QWidget {
  Q_OBJECT
 public:
  // Steps `window`'s program through `stepper`; the list is `display`'s. Both outlive it.
  vDsp(Plot& window, MacroStepper& stepper, VariableDisplay& display);
  ~vDsp() override;

  // Asks for a text: prompt and proposed value; nothing when cancelled. A QInputDialog unless
  // replaced (tests).
  std::function<std::optional<QString>(const QString& prompt, const QString& value)> InputBox;

  // --- The tool bar's commands ---
  // One block, then the block, the levels, the subprogram text and the list follow.
  void DoStep();
  // stepTimer runs DoStep every "Animate Delay" milliseconds until paused or finished.
  void Animate();
  void Pause();
  // Steps on to the caret's line of the program (stops before it, at the main level).
  void StepToCursor();
  // Steps until the expression of cmbBreakPoint turns true.
  void StepToBreak();
  // True while a run of steps is going on.
  bool Running() const { return running_; }

  // Refills lblPLevel, lblDLevel and lvVar.
  void UpdateVarDisplay();

  // --- The list's commands ---
  void ClearVariables();
  void LevelUp();
  void LevelDown();
  void EditVariable(QTreeWidgetItem* item);
  void AddSystemVariable();
  void RemoveSystemVariable();
  void CopyVariables();

 signals:
  // A step (or a part of a run) has been shown: other views of the state may follow.
  void stepped();

 protected:
  void closeEvent(QCloseEvent* event) override;
  // The placement is kept whenever the window goes out of sight (also when the main window
  // closes).
  void hideEvent(QHideEvent* event) override;

 private:
  void BuildToolBar();
  void BuildFields();
  void BuildList();
  void LoadPlacement();
  void SavePlacement();

  bool BeginStepping();
  void RunSteps(const std::function<void()>& run);
  void ShowStep();
  void ShowBlock();
  void FollowLevel();
  void ShowSubprogram(int level);
  void ShowPicture(bool whole);
  void ClearFields();
  void UpdateCommandStates();
  void TimerTick();

  Plot& window_;
  MacroStepper& stepper_;
  VariableDisplay& display_;
  QToolBar* tlbMacro_ = nullptr;
  QAction* step_ = nullptr;
  QAction* animate_ = nullptr;
  QAction* pause_ = nullptr;
  QAction* stepTo_ = nullptr;
  QAction* stepToBreak_ = nullptr;
  QComboBox* cmbBreakPoint_ = nullptr;
  QLineEdit* txtCurBlock_ = nullptr;
  QLineEdit* txtEvalBlock_ = nullptr;
  QLabel* lblPLevel_ = nullptr;
  QLabel* lblDLevel_ = nullptr;
  QPushButton* cmdUp_ = nullptr;
  QPushButton* cmdDown_ = nullptr;
  QPushButton* cmdClearVar_ = nullptr;
  QTreeWidget* lvVar_ = nullptr;
  QPlainTextEdit* rtSub_ = nullptr;
  QTimer* stepTimer_ = nullptr;
  std::string subFile_;          // the file shown in rtSub
  std::int32_t shownCount_ = 0;  // entities the picture was last refreshed with
  bool running_ = false;         // a run of steps is going on
  bool inStep_ = false;          // a step is being made (a timer tick waits)
};

}  // namespace zemtra
