#pragma once
// "RS232 Communications Setup": edits the RS232 configuration in force, loads another one from
// the DNC folder and saves the fields under a name. Changes apply to the configuration in force
// at once.
#include <QDialog>

class QCheckBox;
class QComboBox;
class QLineEdit;

namespace zemtra {

class Host;
struct DncSession;

class CommSetupDialog : public QDialog {
 public:
  // `session` holds the configuration in force and its name; messages go to `host`.
  CommSetupDialog(DncSession& session, Host& host, QWidget* parent = nullptr);

 private:
  void BuildControls();
  void FillConfigList();
  void LoadEntry(const QString& name);  // loads a configuration and puts it in force
  void ShowFields();
  void TakeFields();  // the controls' values into the configuration in force
  void SaveAs();

  DncSession& session_;
  Host& host_;
  bool showing_ = false;  // fields being filled: edits are not taken back
  QComboBox* cmbConfig_ = nullptr;
  QComboBox* cmbPort_ = nullptr;
  QComboBox* cmbBaud_ = nullptr;
  QComboBox* cmbDataBits_ = nullptr;
  QComboBox* cmbStopBits_ = nullptr;
  QComboBox* cmbParity_ = nullptr;
  QComboBox* cmbFlow_ = nullptr;
  QCheckBox* chkRemoveSpaces_ = nullptr;
  QCheckBox* chkWaitForXON_ = nullptr;
  QLineEdit* txtRXTimeoutBefore_ = nullptr;
  QLineEdit* txtRXTimeoutAfter_ = nullptr;
};

}  // namespace zemtra
