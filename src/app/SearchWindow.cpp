#include "app/SearchWindow.h"

#include <QCheckBox>
#include <QGridLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QVBoxLayout>

#include "editor/ProgramDocument.h"
#include "editor/TextSearch.h"

namespace zemtra {

SearchWindow::SearchWindow(TextSearch& search, ProgramDocument& document, Host& host,
                           QWidget* parent)
    : QDialog(parent, Qt::Tool), search_(search), document_(document), host_(host) {
  setObjectName("Search");
  setWindowTitle("Find");
  setModal(false);

  txtFind_ = new QLineEdit(this);
  txtFind_->setObjectName("txtFind");
  txtReplace_ = new QLineEdit(this);
  txtReplace_->setObjectName("txtReplace");
  chkWholeWord_ = new QCheckBox("Match &whole word only", this);
  chkWholeWord_->setObjectName("chkWholeWord");
  chkMatchCase_ = new QCheckBox("Match &case", this);
  chkMatchCase_->setObjectName("chkMatchCase");
  cmdFindNext_ = new QPushButton("&Find Next", this);
  cmdFindNext_->setObjectName("cmdFindNext");
  cmdFindNext_->setDefault(true);
  cmdReplace_ = new QPushButton("&Replace", this);
  cmdReplace_->setObjectName("cmdReplace");
  cmdReplaceAll_ = new QPushButton("Replace &All", this);
  cmdReplaceAll_->setObjectName("cmdReplaceAll");
  cmdCancel_ = new QPushButton("Cancel", this);
  cmdCancel_->setObjectName("cmdCancel");

  auto* findLabel = new QLabel("Fi&nd what:", this);
  findLabel->setBuddy(txtFind_);
  auto* replaceLabel = new QLabel("Re&place with:", this);
  replaceLabel->setBuddy(txtReplace_);
  replaceLabel_ = replaceLabel;

  auto* grid = new QGridLayout(this);
  grid->addWidget(findLabel, 0, 0);
  grid->addWidget(txtFind_, 0, 1);
  grid->addWidget(replaceLabel, 1, 0);
  grid->addWidget(txtReplace_, 1, 1);
  grid->addWidget(chkWholeWord_, 2, 0, 1, 2);
  grid->addWidget(chkMatchCase_, 3, 0, 1, 2);
  auto* buttons = new QVBoxLayout;
  buttons->addWidget(cmdFindNext_);
  buttons->addWidget(cmdReplace_);
  buttons->addWidget(cmdReplaceAll_);
  buttons->addWidget(cmdCancel_);
  buttons->addStretch();
  grid->addLayout(buttons, 0, 2, 4, 1);

  connect(cmdFindNext_, &QPushButton::clicked, this, &SearchWindow::FindNext);
  connect(cmdReplace_, &QPushButton::clicked, this, &SearchWindow::Replace);
  connect(cmdReplaceAll_, &QPushButton::clicked, this, &SearchWindow::ReplaceAll);
  connect(cmdCancel_, &QPushButton::clicked, this, &QDialog::hide);
}

void SearchWindow::ShowFind() {
  ShowWith(false);
}

void SearchWindow::ShowReplace() {
  ShowWith(true);
}

void SearchWindow::ShowWith(bool replace) {
  setWindowTitle(replace ? "Replace" : "Find");
  replaceLabel_->setVisible(replace);
  txtReplace_->setVisible(replace);
  cmdReplace_->setVisible(replace);
  cmdReplaceAll_->setVisible(replace);
  adjustSize();
  show();
  raise();
  activateWindow();
  txtFind_->setFocus();
  txtFind_->selectAll();
}

void SearchWindow::TakeOptions() {
  search_.SearchText = txtFind_->text().toStdString();
  search_.ReplaceWith = txtReplace_->text().toStdString();
  search_.SearchOptions = (chkWholeWord_->isChecked() ? kSearchWholeWord : 0) |
                          (chkMatchCase_->isChecked() ? kSearchMatchCase : 0);
}

bool SearchWindow::FindNext() {
  TakeOptions();
  return search_.FindNext(document_, host_);
}

bool SearchWindow::Replace() {
  TakeOptions();
  return search_.Replace(document_, host_);
}

void SearchWindow::ReplaceAll() {
  TakeOptions();
  search_.ReplaceAll(document_, host_);
}

}  // namespace zemtra
