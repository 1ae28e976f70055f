#pragma once
// The Plot menu's range and stepping commands and the windows that show the interpreter's
// state: Plot To Cursor, Plot From Cursor, Start at Cursor, Plot Selected Blocks, Show Modal
// State, the Variable Display (macro stepping) and, in Tools, Part Information.
#include <QObject>
#include <QPointer>
#include <QString>

#include "interp/MacroStepper.h"
#include "interp/PlotRange.h"
#include "interp/VariableDisplay.h"

namespace zemtra {

class Info;
class ModalStateWindow;
class Plot;
class vDsp;

class StepCommands : public QObject {
  Q_OBJECT
 public:
  explicit StepCommands(Plot& plot);
  ~StepCommands() override;

  // --- Plot ranges of the table that stands ---
  void PlotToCursor();
  void PlotFromCursor();
  void StartAtCursor();
  void PlotSelectedBlocks();
  // Plots with the modal report taken at the caret's line (at the end when the line is never
  // reached) and shows it.
  void ShowModalState();
  // The windows, made when first asked for.
  vDsp& VariableWindow();
  ModalStateWindow& ModalWindow();
  Info& InfoDialog();
  void ShowVariableDisplay();
  void ShowPartInformation();

  MacroStepper& Stepper() { return stepper_; }

 private:
  void AddActions();
  bool TableStands();
  // 1-based line of the caret (the start of the selection) and its entity.
  int CaretLine() const;
  std::int32_t EntityOfCaretLine() const;
  void ApplyRange(const PlotRange& range);
  void ShowModalReport(const QString& where);
  void PlotFinished();

  Plot& plot_;
  MacroStepper stepper_;
  VariableDisplay display_;
  // Children of the main window; they look at the stepper, so they go with it.
  QPointer<vDsp> vDsp_;
  QPointer<ModalStateWindow> modal_;
  QPointer<Info> info_;
};

}  // namespace zemtra
