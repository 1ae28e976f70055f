#pragma once
// The Search window: find, find next, replace and replace all in the program text. It stays
// above the main window; mnuFind opens it small, mnuReplace with the replace row.
#include <QDialog>

class QCheckBox;
class QLineEdit;
class QPushButton;
class QWidget;

namespace zemtra {

class Host;
class ProgramDocument;
class TextSearch;

class SearchWindow : public QDialog {
  Q_OBJECT
 public:
  SearchWindow(TextSearch& search, ProgramDocument& document, Host& host, QWidget* parent);

  // Shows the window for finding only, or for replacing too; the find text is selected.
  void ShowFind();
  void ShowReplace();
  // The search of the window's text and options from SearchPosition; false when nothing was
  // found (and the user did not start again from the top).
  bool FindNext();
  bool Replace();
  void ReplaceAll();

 private:
  void TakeOptions();
  void ShowWith(bool replace);

  TextSearch& search_;
  ProgramDocument& document_;
  Host& host_;
  QLineEdit* txtFind_ = nullptr;
  QLineEdit* txtReplace_ = nullptr;
  QWidget* replaceLabel_ = nullptr;
  QCheckBox* chkWholeWord_ = nullptr;
  QCheckBox* chkMatchCase_ = nullptr;
  QPushButton* cmdFindNext_ = nullptr;
  QPushButton* cmdReplace_ = nullptr;
  QPushButton* cmdReplaceAll_ = nullptr;
  QPushButton* cmdCancel_ = nullptr;
};

}  // namespace zemtra
