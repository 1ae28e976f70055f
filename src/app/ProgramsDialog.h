#pragma once
// frmPrograms, "Programs in active file": the list of the programs of the document, in a fixed
// font, placed where it was last closed.
#include <QDialog>
#include <QString>

namespace zemtra {

class SettingsStore;

class ProgramsDialog : public QDialog {
  Q_OBJECT
 public:
  // `listing` is the text to show; the placement is kept under "PInfo ..." of "StartUp".
  ProgramsDialog(const QString& listing, SettingsStore& settings, QWidget* parent = nullptr);
  ~ProgramsDialog() override;

 private:
  SettingsStore& settings_;
};

}  // namespace zemtra
