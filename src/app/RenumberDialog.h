#pragma once
// Renumber: the numbering mode, first number, increment, most digits and the blank behind each
// number. Read from section "Renumber" when the dialog opens, written when it closes.
#include <QDialog>

#include "editor/RenumberProgram.h"

class QCheckBox;
class QLineEdit;
class QRadioButton;

namespace zemtra {

class SettingsStore;

// The options last used in the dialog, from section "Renumber" (start 1, increment 1, 4 digits,
// all blocks, no blank by default).
RenumberOptions LoadRenumberOptions(const SettingsStore& store);

class RenumberDialog : public QDialog {
  Q_OBJECT
 public:
  explicit RenumberDialog(SettingsStore& store, QWidget* parent = nullptr);
  ~RenumberDialog() override;

  // The options as the controls stand: numbers are the leading whole numbers of the boxes.
  RenumberOptions Options() const;

 private:
  void LoadValues();
  void SaveValues();

  SettingsStore& store_;
  QRadioButton* optRemoveBlock_ = nullptr;
  QLineEdit* txtStartBlock_ = nullptr;
  QLineEdit* txtIncrement_ = nullptr;
  QLineEdit* txtMaxDigits_ = nullptr;
  QCheckBox* chkAddSpc_ = nullptr;
};

}  // namespace zemtra
