#pragma once
// The dialog "Convert to G-Code" of Selected to G-Code: heights, feeds and depth steps of the
// conversion. Its values are kept in the section "Preferences" ("GCode ..." keys) and written
// back on OK; keys never stored take the machine configuration's DXF defaults.
#include <QDialog>

#include "config/ConvertParams.h"

class QGroupBox;
class QLineEdit;

namespace zemtra {

class SettingsStore;

class frmConvertSettings : public QDialog {
  Q_OBJECT
 public:
  frmConvertSettings(SettingsStore& store, const ConvertParams& defaults,
                     QWidget* parent = nullptr);

  // `defaults` with the values of the fields (numbers by the leading-number rule).
  ConvertParams Values() const;

 private:
  void BuildControls();
  void LoadValues();
  void SaveValues();

  SettingsStore& store_;
  ConvertParams defaults_;
  QLineEdit* fields_[7] = {};
  QGroupBox* frmZIncrement_ = nullptr;
};

}  // namespace zemtra
