#pragma once
// The Machine Configuration dialog frmMSetup: a tree of pages on the left (tvOptions), the
// chosen page on the right. Every control writes straight into the edited record as it is
// changed; the work offsets go into the variable store at once. Load, Save, Save As, Apply,
// OK and Cancel, as buttons and on the dialog's File menu.
#include <QColor>
#include <QDialog>
#include <QHash>
#include <filesystem>
#include <functional>

#include "app/DocumentCommands.h"
#include "config/ConfigFields.h"
#include "config/ConfigFile.h"

class QAbstractButton;
class QComboBox;
class QFormLayout;
class QGroupBox;
class QLabel;
class QLineEdit;
class QListWidget;
class QMenuBar;
class QPlainTextEdit;
class QPushButton;
class QStackedWidget;
class QTableWidget;
class QTreeWidget;
class QTreeWidgetItem;

namespace zemtra {

class Host;

// What the dialog needs from the program around it.
struct MachineSetupLinks {
  std::filesystem::path ApplicationFolder;  // holds CONFIG/
  VariableReader ReadVariable;              // the work offsets of the variable store
  VariableWriter WriteVariable;
  std::function<void()> Apply;                        // makes the edited record the one in force
  std::function<void(int millType)> MillTypeChanged;  // the isometric view follows the mill type
  std::function<void()> FilesChanged;                 // a configuration file was written
};

class MachineSetupDialog : public QDialog {
  Q_OBJECT
 public:
  MachineSetupDialog(MachineConfig& editConfig, Host& host, MachineSetupLinks links,
                     QWidget* parent = nullptr);

  // The file dialogs (tests answer them without a person).
  FileDialogs Dialogs;
  // The colour chooser; an invalid colour when cancelled.
  std::function<QColor(const QColor& initial)> ChooseColor;

  // Shows a page and names it in the title.
  void ShowPage(ConfigPageId page);
  ConfigPageId CurrentPage() const;
  // Fills every control from the edited record.
  void Refill();

  // The commands.
  void LoadFile();
  void SaveFile();
  void SaveFileAs();
  void ApplyConfig();

 private:
  void BuildWindow();
  QWidget* BuildPage(const ConfigPageInfo& page);
  QWidget* BuildFrame(const FrameInfo& frame);
  void AddBoundControls(const FrameInfo& frame, QFormLayout* form);
  void AddFrameExtras(const FrameInfo& frame, QFormLayout* form);
  QWidget* BuildMacroList();
  QWidget* BuildToolColors();
  QWidget* BuildWorkOffsets();
  QWidget* BuildTopViewRotate();
  QWidget* BuildCommandButtons();
  QMenuBar* BuildFileMenu();
  QWidget* MakeTextControl(const TextBinding& binding);
  QWidget* BuildLayerTabs(const FrameInfo& frame);

  void BindOption(const OptionBinding& binding, QAbstractButton* button);
  void BindOptionFrame(const OptionBinding& binding, QGroupBox* frame);
  void BindNumber(const NumberBinding& binding, QLineEdit* box);
  void BindColor(const ColorBinding& binding, QPushButton* button);
  void FieldChanged();
  void ShowDependents();
  void FillMacroList();
  void FillToolColors();
  void FillWorkOffsets();
  void AddMacroCode();
  void RemoveMacroCode();
  void ChangeToolColors(int command);
  void ChooseToolColor(int row);
  void TakeWorkOffset(int row, int column);
  QColor PickColor(const QColor& initial);
  void ReportError(const std::string& text);

  MachineConfig& edit_;
  Host& host_;
  MachineSetupLinks links_;
  bool loading_ = false;  // controls are being filled: no field is written

  QTreeWidget* tvOptions_ = nullptr;
  QStackedWidget* pages_ = nullptr;
  QHash<QString, QWidget*> controls_;  // bound controls by name
  QLabel* lblFormat_ = nullptr;
  QLabel* lblTopView_ = nullptr;
  QListWidget* lvExternalSubs_ = nullptr;
  QLineEdit* txtAddGMacro_ = nullptr;
  QTableWidget* flxColors_ = nullptr;
  QTableWidget* flxWShift_ = nullptr;
};

}  // namespace zemtra
