#include "app/RenumberDialog.h"

#include <QCheckBox>
#include <QDialogButtonBox>
#include <QFormLayout>
#include <QGroupBox>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QRegularExpressionValidator>
#include <QVBoxLayout>
#include <algorithm>
#include <cmath>
#include <string>

#include "app/SettingValues.h"
#include "core/NumberText.h"
#include "core/SettingsStore.h"

namespace zemtra {

namespace {

constexpr const char* kSection = "Renumber";

// The mode radio buttons: control, setting key, mode number.
struct ModeRow {
  const char* control;
  const char* key;
  const char* caption;
  int mode;
};

constexpr ModeRow kModes[] = {
    {"optRenumberAll", "optAll", "Renumber &all blocks", 1},
    {"optRenNoBlank", "optAllButBlank", "Renumber all but &blank lines", 2},
    {"optRenGoto", "optGotoOnly", "Number only &referenced blocks (GOTO, M97, M98, M99)", 3},
    {"optRemoveBlock", "optRemove", "Re&move block numbers", 0},
};

struct BoxRow {
  const char* control;
  const char* key;
  const char* caption;
  const char* fallback;
};

constexpr BoxRow kBoxes[] = {
    {"txtStartBlock", "txtStart", "&Start at:", "1"},
    {"txtIncrement", "txtIncrement", "&Increment:", "1"},
    {"txtMaxDigits", "txtMaxDigits", "Maximum &digits:", "4"},
};

constexpr const char* kAddSpaceKey = "AddSpace";

// The leading whole number of a text, kept within what a block number can be.
std::int32_t WholeNumber(const std::string& text) {
  const double value = std::trunc(NumericTextValue(text));
  return static_cast<std::int32_t>(std::clamp(value, 0.0, 999999999.0));
}

// What the dialog keeps, as stored texts and flags.
struct StoredValues {
  int mode = 1;
  std::string boxes[3] = {"1", "1", "4"};
  bool addSpace = false;
};

StoredValues ReadStored(const SettingsStore& store) {
  const SettingReader in(store, kSection);
  StoredValues values;
  bool all = true;
  in.Bool("optAll", all);
  if (!all) {
    for (const ModeRow& row : kModes) {
      bool on = false;
      in.Bool(row.key, on);
      if (on) {
        values.mode = row.mode;
        break;
      }
    }
  }
  for (std::size_t i = 0; i < 3; ++i) in.Text(kBoxes[i].key, values.boxes[i]);
  in.Bool(kAddSpaceKey, values.addSpace);
  return values;
}

RenumberOptions OptionsFrom(int mode, const std::string (&boxes)[3], bool addSpace) {
  RenumberOptions options;
  options.Mode = mode;
  options.Start = WholeNumber(boxes[0]);
  options.Increment = WholeNumber(boxes[1]);
  options.MaxDigits = std::clamp(static_cast<int>(WholeNumber(boxes[2])), 2, 6);
  options.AddSpace = addSpace;
  return options;
}

}  // namespace

RenumberOptions LoadRenumberOptions(const SettingsStore& store) {
  const StoredValues values = ReadStored(store);
  return OptionsFrom(values.mode, values.boxes, values.addSpace);
}

RenumberDialog::RenumberDialog(SettingsStore& store, QWidget* parent)
    : QDialog(parent), store_(store) {
  setObjectName("Renumber");
  setWindowTitle("Renumber");
  auto* modes = new QGroupBox("Blocks", this);
  auto* modeLayout = new QVBoxLayout(modes);
  for (const ModeRow& row : kModes) {
    auto* option = new QRadioButton(row.caption, modes);
    option->setObjectName(row.control);
    modeLayout->addWidget(option);
  }
  optRemoveBlock_ = findChild<QRadioButton*>("optRemoveBlock");

  auto* form = new QFormLayout;
  auto* digitsOnly = new QRegularExpressionValidator(QRegularExpression("[0-9]*"), this);
  for (const BoxRow& row : kBoxes) {
    auto* box = new QLineEdit(this);
    box->setObjectName(row.control);
    box->setValidator(digitsOnly);
    box->setMaxLength(9);
    box->setMaximumWidth(100);
    form->addRow(row.caption, box);
  }
  txtStartBlock_ = findChild<QLineEdit*>("txtStartBlock");
  txtIncrement_ = findChild<QLineEdit*>("txtIncrement");
  txtMaxDigits_ = findChild<QLineEdit*>("txtMaxDigits");
  chkAddSpc_ = new QCheckBox("Add a &blank after each number", this);
  chkAddSpc_->setObjectName("chkAddSpc");
  form->addRow(chkAddSpc_);
  // Numbers make no sense when they are being removed.
  connect(optRemoveBlock_, &QRadioButton::toggled, this, [this](bool removing) {
    for (QWidget* box :
         {static_cast<QWidget*>(txtStartBlock_), static_cast<QWidget*>(txtIncrement_),
          static_cast<QWidget*>(txtMaxDigits_), static_cast<QWidget*>(chkAddSpc_)}) {
      box->setEnabled(!removing);
    }
  });

  auto* buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel, this);
  buttons->button(QDialogButtonBox::Ok)->setObjectName("cmdOK");
  buttons->button(QDialogButtonBox::Cancel)->setObjectName("cmdCancel");
  connect(buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
  connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
  auto* layout = new QVBoxLayout(this);
  layout->addWidget(modes);
  layout->addLayout(form);
  layout->addWidget(buttons);
  LoadValues();
}

RenumberDialog::~RenumberDialog() {
  SaveValues();
}

void RenumberDialog::LoadValues() {
  const StoredValues values = ReadStored(store_);
  for (const ModeRow& row : kModes) {
    if (row.mode == values.mode) findChild<QRadioButton*>(row.control)->setChecked(true);
  }
  for (std::size_t i = 0; i < 3; ++i) {
    findChild<QLineEdit*>(kBoxes[i].control)->setText(QString::fromStdString(values.boxes[i]));
  }
  chkAddSpc_->setChecked(values.addSpace);
}

void RenumberDialog::SaveValues() {
  SettingWriter out(store_, kSection);
  for (const ModeRow& row : kModes) {
    out.Bool(row.key, findChild<QRadioButton*>(row.control)->isChecked());
  }
  for (const BoxRow& row : kBoxes) {
    out.Text(row.key, findChild<QLineEdit*>(row.control)->text().toStdString());
  }
  out.Bool(kAddSpaceKey, chkAddSpc_->isChecked());
}

RenumberOptions RenumberDialog::Options() const {
  int mode = 1;
  for (const ModeRow& row : kModes) {
    if (findChild<QRadioButton*>(row.control)->isChecked()) mode = row.mode;
  }
  const std::string boxes[3] = {txtStartBlock_->text().toStdString(),
                                txtIncrement_->text().toStdString(),
                                txtMaxDigits_->text().toStdString()};
  return OptionsFrom(mode, boxes, chkAddSpc_->isChecked());
}

}  // namespace zemtra
