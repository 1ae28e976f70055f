#pragma once
// frmAddr, "Address Adjustments": four tabs that rewrite the words of chosen letters: adjust
// their values, replace a letter, remove words, swap two letters. A tab's button checks its
// boxes (a message and no run when something is missing), sets the filter parameters and closes
// the dialog with the Format operation to run. The values last for the session.
#include <QDialog>

class QComboBox;
class QLineEdit;
class QTabWidget;

namespace zemtra {

class Host;
struct FilterParameters;

class AddressDialog : public QDialog {
  Q_OBJECT
 public:
  // `host` shows the messages of missing values.
  AddressDialog(FilterParameters& parameters, Host& host, QWidget* parent = nullptr);

  // Opens at tab 0 adjust, 1 replace, 2 remove or 3 swap.
  void ShowTab(int tab);
  // The Format operation chosen (10, 11, 12 or 16), valid once the dialog was accepted.
  int Operation() const { return operation_; }

 private:
  QWidget* BuildAdjustTab();
  QWidget* BuildReplaceTab();
  QWidget* BuildRemoveTab();
  QWidget* BuildSwapTab();
  QLineEdit* AddLetterBox(const char* name, int maxLength);
  void LoadValues();
  void GoAdjust();
  void GoReplace();
  void GoRemove();
  void GoSwap();
  // Shows `text` with title "Zemtra"; the dialog stays open.
  void Refuse(const char* text);
  void Finish(int operation);

  FilterParameters& parameters_;
  Host& host_;
  int operation_ = -1;
  QTabWidget* adjTab_ = nullptr;
  QLineEdit* txtAddresses_ = nullptr;
  QComboBox* cmbOperator_ = nullptr;
  QLineEdit* txtOperand_ = nullptr;
  QLineEdit* txtVFormat_ = nullptr;
  QLineEdit* txtFind_ = nullptr;
  QLineEdit* txtReplace_ = nullptr;
  QLineEdit* txtRemove_ = nullptr;
  QLineEdit* txtSwap1_ = nullptr;
  QLineEdit* txtSwap2_ = nullptr;
};

}  // namespace zemtra
