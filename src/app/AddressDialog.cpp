#include "app/AddressDialog.h"

#include <QComboBox>
#include <QDialogButtonBox>
#include <QFormLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QRegularExpressionValidator>
#include <QTabWidget>
#include <QVBoxLayout>

#include "core/Host.h"
#include "core/NumberText.h"
#include "core/Version.h"
#include "editor/FilterSession.h"
#include "editor/FormatProgram.h"

namespace zemtra {

namespace {

constexpr const char* kOperators[] = {"Add (+)", "Subtract (-)", "Multiply (*)", "Divide (/)"};

constexpr const char* kAdjustMissing =
    "You must enter the addresses you want to modify,\r\nan adjustment amount and a format string";
constexpr const char* kRemoveMissing = "You must enter the addresses you want to remove";
constexpr const char* kReplaceMissing = "You must enter the addresses you want to find and replace";
constexpr const char* kReplaceSame = "The find and replace addresses are the same";
constexpr const char* kSwapMissing = "You must enter the addresses you want to swap";
constexpr const char* kSwapSame = "The swap addresses are the same";

std::string Letters(const QLineEdit* box) {
  return box->text().trimmed().toUpper().toStdString();
}

QString Text(const std::string& text) {
  return QString::fromStdString(text);
}

// A tab: its form and the button that runs it, bottom right.
QWidget* MakeTab(QWidget* parent, QFormLayout* form, QPushButton* button) {
  auto* tab = new QWidget(parent);
  auto* layout = new QVBoxLayout(tab);
  layout->addLayout(form);
  layout->addStretch();
  auto* row = new QHBoxLayout;
  row->addStretch();
  row->addWidget(button);
  layout->addLayout(row);
  return tab;
}

}  // namespace

AddressDialog::AddressDialog(FilterParameters& parameters, Host& host, QWidget* parent)
    : QDialog(parent), parameters_(parameters), host_(host) {
  setObjectName("frmAddr");
  setWindowTitle("Address Adjustments");
  adjTab_ = new QTabWidget(this);
  adjTab_->setObjectName("adjTab");
  adjTab_->addTab(BuildAdjustTab(), "&Adjust");
  adjTab_->addTab(BuildReplaceTab(), "Re&place");
  adjTab_->addTab(BuildRemoveTab(), "Re&move");
  adjTab_->addTab(BuildSwapTab(), "&Swap");
  auto* buttons = new QDialogButtonBox(QDialogButtonBox::Close, this);
  buttons->button(QDialogButtonBox::Close)->setObjectName("cmdCancel");
  connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
  auto* layout = new QVBoxLayout(this);
  layout->addWidget(adjTab_);
  layout->addWidget(buttons);
  LoadValues();
}

void AddressDialog::ShowTab(int tab) {
  adjTab_->setCurrentIndex(tab);
}

QLineEdit* AddressDialog::AddLetterBox(const char* name, int maxLength) {
  auto* box = new QLineEdit(this);
  box->setObjectName(name);
  box->setMaxLength(maxLength);
  box->setValidator(new QRegularExpressionValidator(QRegularExpression("[A-Za-z]*"), box));
  box->setMaximumWidth(maxLength == 1 ? 40 : 160);
  return box;
}

QWidget* AddressDialog::BuildAdjustTab() {
  txtAddresses_ = AddLetterBox("txtAddresses", 26);
  cmbOperator_ = new QComboBox(this);
  cmbOperator_->setObjectName("cmbOperator");
  for (const char* name : kOperators) cmbOperator_->addItem(name);
  txtOperand_ = new QLineEdit(this);
  txtOperand_->setObjectName("txtOperand");
  txtOperand_->setMaximumWidth(160);
  txtVFormat_ = new QLineEdit(this);
  txtVFormat_->setObjectName("txtVFormat");
  txtVFormat_->setMaximumWidth(160);
  txtVFormat_->setPlaceholderText("0.000");
  auto* form = new QFormLayout;
  form->addRow("Address letters:", txtAddresses_);
  form->addRow("Operation:", cmbOperator_);
  form->addRow("Amount:", txtOperand_);
  form->addRow("Number format:", txtVFormat_);
  auto* go = new QPushButton("Adjust", this);
  go->setObjectName("cmdGo");
  connect(go, &QPushButton::clicked, this, &AddressDialog::GoAdjust);
  return MakeTab(adjTab_, form, go);
}

QWidget* AddressDialog::BuildReplaceTab() {
  txtFind_ = AddLetterBox("txtFind", 1);
  txtReplace_ = AddLetterBox("txtReplace", 1);
  auto* form = new QFormLayout;
  form->addRow("Find address:", txtFind_);
  form->addRow("Replace with:", txtReplace_);
  auto* go = new QPushButton("Replace", this);
  go->setObjectName("cmdGoReplace");
  connect(go, &QPushButton::clicked, this, &AddressDialog::GoReplace);
  return MakeTab(adjTab_, form, go);
}

QWidget* AddressDialog::BuildRemoveTab() {
  txtRemove_ = AddLetterBox("txtRemove", 26);
  auto* form = new QFormLayout;
  form->addRow("Addresses to remove:", txtRemove_);
  auto* go = new QPushButton("Remove", this);
  go->setObjectName("cmdGoRemove");
  connect(go, &QPushButton::clicked, this, &AddressDialog::GoRemove);
  return MakeTab(adjTab_, form, go);
}

QWidget* AddressDialog::BuildSwapTab() {
  txtSwap1_ = AddLetterBox("txtSwap1", 1);
  txtSwap2_ = AddLetterBox("txtSwap2", 1);
  auto* form = new QFormLayout;
  form->addRow("Swap address:", txtSwap1_);
  form->addRow("With address:", txtSwap2_);
  auto* go = new QPushButton("Swap", this);
  go->setObjectName("cmdGoSwap");
  connect(go, &QPushButton::clicked, this, &AddressDialog::GoSwap);
  return MakeTab(adjTab_, form, go);
}

void AddressDialog::LoadValues() {
  const FilterParameters& p = parameters_;
  txtAddresses_->setText(Text(p.AdjustAddresses));
  cmbOperator_->setCurrentIndex(p.AdjustOperator >= 0 && p.AdjustOperator < 4 ? p.AdjustOperator
                                                                              : 0);
  // A fresh session has no amount yet: the box starts empty rather than at 0.
  if (!p.AdjustAddresses.empty()) txtOperand_->setText(Text(FormatNumberText(p.AdjustOperand, "")));
  txtVFormat_->setText(Text(p.AdjustFormat));
  txtFind_->setText(Text(p.ReplaceFind));
  txtReplace_->setText(Text(p.ReplaceWith));
  txtRemove_->setText(Text(p.RemoveAddresses));
  txtSwap1_->setText(Text(p.SwapFirst));
  txtSwap2_->setText(Text(p.SwapSecond));
}

void AddressDialog::Refuse(const char* text) {
  host_.ask(Prompt{text, kProductName, MsgIcon::Exclamation, MsgButtons::Ok});
}

void AddressDialog::Finish(int operation) {
  operation_ = operation;
  accept();
}

void AddressDialog::GoAdjust() {
  const std::string letters = Letters(txtAddresses_);
  const QString operand = txtOperand_->text().trimmed();
  const std::string format = txtVFormat_->text().trimmed().toStdString();
  if (letters.empty() || operand.isEmpty() || format.empty()) {
    Refuse(kAdjustMissing);
    return;
  }
  parameters_.AdjustAddresses = letters;
  parameters_.AdjustOperator = cmbOperator_->currentIndex();
  parameters_.AdjustOperand = NumericTextValue(operand.toStdString());
  parameters_.AdjustFormat = format;
  Finish(FormatCode::kAdjustAddresses);
}

void AddressDialog::GoReplace() {
  const std::string find = Letters(txtFind_);
  const std::string with = Letters(txtReplace_);
  if (find.empty() || with.empty()) {
    Refuse(kReplaceMissing);
    return;
  }
  if (find == with) {
    Refuse(kReplaceSame);
    return;
  }
  parameters_.ReplaceFind = find;
  parameters_.ReplaceWith = with;
  Finish(FormatCode::kReplaceAddress);
}

void AddressDialog::GoRemove() {
  const std::string letters = Letters(txtRemove_);
  if (letters.empty()) {
    Refuse(kRemoveMissing);
    return;
  }
  parameters_.RemoveAddresses = letters;
  Finish(FormatCode::kRemoveAddresses);
}

void AddressDialog::GoSwap() {
  const std::string first = Letters(txtSwap1_);
  const std::string second = Letters(txtSwap2_);
  if (first.empty() || second.empty()) {
    Refuse(kSwapMissing);
    return;
  }
  if (first == second) {
    Refuse(kSwapSame);
    return;
  }
  parameters_.SwapFirst = first;
  parameters_.SwapSecond = second;
  Finish(FormatCode::kSwapAddresses);
}

}  // namespace zemtra
