#pragma once
// Translate: mirror, rotate, shift and scale of the program's coordinates, one page each. The
// values are read from section "Translate" when the dialog opens and written when it closes;
// the page's button sets the filter parameters and closes the dialog with its operation.
#include <QDialog>

class QCheckBox;
class QLineEdit;
class QRadioButton;
class QTabWidget;

namespace zemtra {

class SettingsStore;
struct FilterParameters;

class TranslateDialog : public QDialog {
  Q_OBJECT
 public:
  TranslateDialog(FilterParameters& parameters, SettingsStore& store, QWidget* parent = nullptr);
  ~TranslateDialog() override;

  // Opens at page 0 mirror, 1 rotate, 2 shift or 3 scale.
  void ShowPage(int page);
  // The translation chosen (TranslateCode), valid once the dialog was accepted.
  int Operation() const { return operation_; }

 private:
  QWidget* BuildMirrorPage();
  QWidget* BuildRotatePage();
  QWidget* BuildShiftPage();
  QWidget* BuildScalePage();
  QLineEdit* AddNumberBox(const char* name);
  void LoadValues();
  void SaveValues();
  // Reads the boxes of the page into the parameters and closes with `operation`.
  void Run(int operation);
  void TakeMirror();
  void TakeRotate();
  void TakeShift();
  void TakeScale();

  FilterParameters& parameters_;
  SettingsStore& store_;
  int operation_ = -1;
  QTabWidget* pages_ = nullptr;
  QCheckBox* chkMirr_[3] = {};
  QLineEdit* txtMirrPoint_[3] = {};
  QLineEdit* txtRotXCenter_ = nullptr;
  QLineEdit* txtRotYCenter_ = nullptr;
  QLineEdit* txtRotAngle_ = nullptr;
  QLineEdit* txtShift_[3] = {};
  QLineEdit* txtSclXCenter_ = nullptr;
  QLineEdit* txtSclYCenter_ = nullptr;
  QLineEdit* txtSclFactor_ = nullptr;
  QRadioButton* optSclFactor_ = nullptr;
  QRadioButton* optSclInch_ = nullptr;
  QRadioButton* optSclMetric_ = nullptr;
};

}  // namespace zemtra
