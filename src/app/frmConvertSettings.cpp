#include "app/frmConvertSettings.h"

#include <QDialogButtonBox>
#include <QFormLayout>
#include <QGroupBox>
#include <QLineEdit>
#include <QPushButton>
#include <QVBoxLayout>
#include <array>

#include "core/NumberText.h"
#include "core/SettingsStore.h"

namespace zemtra {

namespace {

constexpr const char* kSection = "Preferences";

struct FieldRow {
  const char* control;
  const char* caption;
  const char* key;
  double ConvertParams::*field;
  bool inZIncrement;  // shown in the depth steps frame
};

constexpr std::array<FieldRow, 7> kFields = {{
    {"txtZRetract", "Z &Retract:", "GCode ZRetract", &ConvertParams::ZRetract, false},
    {"txtZApproach", "Z &Approach:", "GCode ZApproach", &ConvertParams::ZApproach, false},
    {"txtZDepth", "Z &Depth:", "GCode ZDepth", &ConvertParams::ZDepth, false},
    {"txtFeedRate", "&Feed Rate:", "GCode FeedRate", &ConvertParams::FeedRate, false},
    {"txtPlungeRate", "&Plunge Rate:", "GCode PlungeRate", &ConvertParams::PlungeRate, false},
    {"txtZTop", "Material &Top:", "GCode ZTop", &ConvertParams::ZTop, true},
    {"txtZIncrement", "Z &Increment:", "GCode ZIncrement", &ConvertParams::ZIncrement, true},
}};

}  // namespace

frmConvertSettings::frmConvertSettings(SettingsStore& store, const ConvertParams& defaults,
                                       QWidget* parent)
    : QDialog(parent), store_(store), defaults_(defaults) {
  setObjectName("frmConvertSettings");
  setWindowTitle("Convert to G-Code");
  BuildControls();
  LoadValues();
}

void frmConvertSettings::BuildControls() {
  auto* layout = new QVBoxLayout(this);
  auto* form = new QFormLayout;
  frmZIncrement_ = new QGroupBox("Step Down in Z", this);
  frmZIncrement_->setObjectName("frmZIncrement");
  frmZIncrement_->setCheckable(true);
  auto* steps = new QFormLayout(frmZIncrement_);
  for (std::size_t k = 0; k < kFields.size(); ++k) {
    QLineEdit* box = new QLineEdit(this);
    box->setObjectName(kFields[k].control);
    (kFields[k].inZIncrement ? steps : form)->addRow(kFields[k].caption, box);
    fields_[k] = box;
  }
  layout->addLayout(form);
  layout->addWidget(frmZIncrement_);
  auto* buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel, this);
  buttons->button(QDialogButtonBox::Ok)->setObjectName("cmdOK");
  buttons->button(QDialogButtonBox::Cancel)->setObjectName("cmdCancel");
  layout->addWidget(buttons);
  connect(buttons, &QDialogButtonBox::accepted, this, [this] {
    SaveValues();
    accept();
  });
  connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
}

void frmConvertSettings::LoadValues() {
  for (std::size_t k = 0; k < kFields.size(); ++k) {
    const std::string fallback = FormatNumberText(defaults_.*kFields[k].field, "");
    fields_[k]->setText(QString::fromStdString(
        store_.GetSetting(kSection, kFields[k].key, fallback.empty() ? "0" : fallback)));
  }
  const std::string steps = store_.GetSetting(kSection, "GCode EnableZStep",
                                              defaults_.EnableZIncrement != 0 ? "True" : "False");
  frmZIncrement_->setChecked(steps == "True");
}

void frmConvertSettings::SaveValues() {
  for (std::size_t k = 0; k < kFields.size(); ++k) {
    store_.SaveSetting(kSection, kFields[k].key, fields_[k]->text().toStdString());
  }
  store_.SaveSetting(kSection, "GCode EnableZStep", frmZIncrement_->isChecked() ? "True" : "False");
}

ConvertParams frmConvertSettings::Values() const {
  ConvertParams values = defaults_;
  for (std::size_t k = 0; k < kFields.size(); ++k) {
    values.*kFields[k].field = NumericTextValue(fields_[k]->text().toStdString());
  }
  values.EnableZIncrement = frmZIncrement_->isChecked() ? -1 : 0;
  return values;
}

}  // namespace zemtra
