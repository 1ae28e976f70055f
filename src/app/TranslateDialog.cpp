#include "app/TranslateDialog.h"

#include <QCheckBox>
#include <QDialogButtonBox>
#include <QFormLayout>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QTabWidget>
#include <QVBoxLayout>

#include "app/SettingValues.h"
#include "core/NumberText.h"
#include "core/SettingsStore.h"
#include "editor/FilterSession.h"
#include "editor/FormatProgram.h"

namespace zemtra {

namespace {

constexpr const char* kSection = "Translate";
constexpr double kMillimetresPerInch = 25.4;

struct BoxSetting {
  const char* control;
  const char* key;
  const char* fallback;
};

constexpr BoxSetting kBoxes[] = {
    {"txtMirrXPoint", "X Mirror Point", "0"},
    {"txtMirrYPoint", "Y Mirror Point", "0"},
    {"txtMirrZPoint", "Z Mirror Point", "0"},
    {"txtRotXCenter", "X Rotation Center", "0"},
    {"txtRotYCenter", "Y Rotation Center", "0"},
    {"txtRotAngle", "Rotation Angle", "0"},
    {"txtShiftX", "X Shift", "0"},
    {"txtShiftY", "Y Shift", "0"},
    {"txtShiftZ", "Z Shift", "0"},
    {"txtSclXCenter", "X Scale Center", "0"},
    {"txtSclYCenter", "Y Scale Center", "0"},
    {"txtSclFactor", "Scale Factor", "1"},
};

struct CheckSetting {
  const char* control;
  const char* key;
};

constexpr CheckSetting kChecks[] = {
    {"chkMirrX", "Mirror X"},     {"chkMirrY", "Mirror Y"},         {"chkMirrZ", "Mirror Z"},
    {"optSclInch", "Scale Inch"}, {"optSclMetric", "Scale Metric"},
};

constexpr const char* kAxes[] = {"X", "Y", "Z"};

double ValueOf(const QLineEdit* box) {
  return NumericTextValue(box->text().toStdString());
}

// A page: the form of `rows` and the button that runs it, bottom right.
QWidget* MakePage(QWidget* parent, QLayout* rows, QPushButton* button) {
  auto* page = new QWidget(parent);
  auto* layout = new QVBoxLayout(page);
  layout->addLayout(rows);
  layout->addStretch();
  auto* buttonRow = new QHBoxLayout;
  buttonRow->addStretch();
  buttonRow->addWidget(button);
  layout->addLayout(buttonRow);
  return page;
}

QPushButton* MakeButton(QWidget* parent, const char* name, const char* caption) {
  auto* button = new QPushButton(caption, parent);
  button->setObjectName(name);
  button->setAutoDefault(false);
  return button;
}

}  // namespace

TranslateDialog::TranslateDialog(FilterParameters& parameters, SettingsStore& store,
                                 QWidget* parent)
    : QDialog(parent), parameters_(parameters), store_(store) {
  setObjectName("Translate");
  setWindowTitle("Translate");
  pages_ = new QTabWidget(this);
  pages_->setObjectName("tabTranslate");
  pages_->addTab(BuildMirrorPage(), "&Mirror");
  pages_->addTab(BuildRotatePage(), "&Rotate");
  pages_->addTab(BuildShiftPage(), "&Shift");
  pages_->addTab(BuildScalePage(), "S&cale");
  auto* buttons = new QDialogButtonBox(QDialogButtonBox::Close, this);
  buttons->button(QDialogButtonBox::Close)->setObjectName("cmdCancel");
  connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
  auto* layout = new QVBoxLayout(this);
  layout->addWidget(pages_);
  layout->addWidget(buttons);
  LoadValues();
}

TranslateDialog::~TranslateDialog() {
  SaveValues();
}

void TranslateDialog::ShowPage(int page) {
  pages_->setCurrentIndex(page);
}

QLineEdit* TranslateDialog::AddNumberBox(const char* name) {
  auto* box = new QLineEdit(this);
  box->setObjectName(name);
  box->setMaximumWidth(120);
  return box;
}

QWidget* TranslateDialog::BuildMirrorPage() {
  auto* grid = new QGridLayout;
  grid->addWidget(new QLabel("Mirror point", this), 0, 1);
  constexpr const char* kCheckNames[] = {"chkMirrX", "chkMirrY", "chkMirrZ"};
  constexpr const char* kPointNames[] = {"txtMirrXPoint", "txtMirrYPoint", "txtMirrZPoint"};
  for (int axis = 0; axis < 3; ++axis) {
    chkMirr_[axis] = new QCheckBox(QString("Mirror %1").arg(kAxes[axis]), this);
    chkMirr_[axis]->setObjectName(kCheckNames[axis]);
    txtMirrPoint_[axis] = AddNumberBox(kPointNames[axis]);
    grid->addWidget(chkMirr_[axis], axis + 1, 0);
    grid->addWidget(txtMirrPoint_[axis], axis + 1, 1);
  }
  QPushButton* run = MakeButton(this, "cmdMirror", "Mirror");
  connect(run, &QPushButton::clicked, this, [this] { Run(TranslateCode::kMirror); });
  return MakePage(pages_, grid, run);
}

QWidget* TranslateDialog::BuildRotatePage() {
  auto* form = new QFormLayout;
  txtRotXCenter_ = AddNumberBox("txtRotXCenter");
  txtRotYCenter_ = AddNumberBox("txtRotYCenter");
  txtRotAngle_ = AddNumberBox("txtRotAngle");
  form->addRow("X center:", txtRotXCenter_);
  form->addRow("Y center:", txtRotYCenter_);
  form->addRow("Angle (degrees, CCW):", txtRotAngle_);
  QPushButton* run = MakeButton(this, "cmdRotate", "Rotate");
  connect(run, &QPushButton::clicked, this, [this] { Run(TranslateCode::kRotate); });
  return MakePage(pages_, form, run);
}

QWidget* TranslateDialog::BuildShiftPage() {
  auto* form = new QFormLayout;
  constexpr const char* kNames[] = {"txtShiftX", "txtShiftY", "txtShiftZ"};
  for (int axis = 0; axis < 3; ++axis) {
    txtShift_[axis] = AddNumberBox(kNames[axis]);
    form->addRow(QString("%1 shift:").arg(kAxes[axis]), txtShift_[axis]);
  }
  QPushButton* run = MakeButton(this, "cmdShift", "Shift");
  connect(run, &QPushButton::clicked, this, [this] { Run(TranslateCode::kShift); });
  return MakePage(pages_, form, run);
}

QWidget* TranslateDialog::BuildScalePage() {
  auto* form = new QFormLayout;
  txtSclXCenter_ = AddNumberBox("txtSclXCenter");
  txtSclYCenter_ = AddNumberBox("txtSclYCenter");
  txtSclFactor_ = AddNumberBox("txtSclFactor");
  optSclFactor_ = new QRadioButton("Scale by the factor", this);
  optSclFactor_->setObjectName("optSclFactor");
  optSclInch_ = new QRadioButton("Metric to inch (feeds too)", this);
  optSclInch_->setObjectName("optSclInch");
  optSclMetric_ = new QRadioButton("Inch to metric (feeds too)", this);
  optSclMetric_->setObjectName("optSclMetric");
  form->addRow("X center:", txtSclXCenter_);
  form->addRow("Y center:", txtSclYCenter_);
  form->addRow(optSclFactor_);
  form->addRow("Scale factor:", txtSclFactor_);
  form->addRow(optSclInch_);
  form->addRow(optSclMetric_);
  connect(optSclFactor_, &QRadioButton::toggled, txtSclFactor_, &QLineEdit::setEnabled);
  QPushButton* run = MakeButton(this, "cmdScale", "Scale");
  connect(run, &QPushButton::clicked, this, [this] { Run(TranslateCode::kScale); });
  return MakePage(pages_, form, run);
}

void TranslateDialog::LoadValues() {
  const SettingReader in(store_, kSection);
  for (const BoxSetting& setting : kBoxes) {
    std::string text = setting.fallback;
    in.Text(setting.key, text);
    findChild<QLineEdit*>(setting.control)->setText(QString::fromStdString(text));
  }
  for (const CheckSetting& setting : kChecks) {
    bool on = false;
    in.Bool(setting.key, on);
    auto* check = findChild<QAbstractButton*>(setting.control);
    if (on) check->setChecked(true);
  }
  if (!optSclInch_->isChecked() && !optSclMetric_->isChecked()) optSclFactor_->setChecked(true);
  txtSclFactor_->setEnabled(optSclFactor_->isChecked());
}

void TranslateDialog::SaveValues() {
  SettingWriter out(store_, kSection);
  for (const BoxSetting& setting : kBoxes) {
    out.Text(setting.key, findChild<QLineEdit*>(setting.control)->text().trimmed().toStdString());
  }
  for (const CheckSetting& setting : kChecks) {
    out.Bool(setting.key, findChild<QAbstractButton*>(setting.control)->isChecked());
  }
}

void TranslateDialog::Run(int operation) {
  switch (operation) {
    case TranslateCode::kMirror:
      TakeMirror();
      break;
    case TranslateCode::kRotate:
      TakeRotate();
      break;
    case TranslateCode::kShift:
      TakeShift();
      break;
    default:
      TakeScale();
      break;
  }
  operation_ = operation;
  accept();
}

void TranslateDialog::TakeMirror() {
  for (std::size_t axis = 0; axis < 3; ++axis) {
    parameters_.Mirror[axis] = chkMirr_[axis]->isChecked();
    parameters_.MirrorPoint[axis] = static_cast<float>(ValueOf(txtMirrPoint_[axis]));
  }
}

void TranslateDialog::TakeRotate() {
  parameters_.RotCenterX = static_cast<float>(ValueOf(txtRotXCenter_));
  parameters_.RotCenterY = static_cast<float>(ValueOf(txtRotYCenter_));
  parameters_.RotAngle = ValueOf(txtRotAngle_);
}

void TranslateDialog::TakeShift() {
  for (std::size_t axis = 0; axis < 3; ++axis) {
    parameters_.Shift[axis] = static_cast<float>(ValueOf(txtShift_[axis]));
  }
}

void TranslateDialog::TakeScale() {
  parameters_.SclCenterX = static_cast<float>(ValueOf(txtSclXCenter_));
  parameters_.SclCenterY = static_cast<float>(ValueOf(txtSclYCenter_));
  parameters_.SclFactor = ValueOf(txtSclFactor_);
  parameters_.FeedFactor = 1;
  if (optSclInch_->isChecked() || optSclMetric_->isChecked()) {
    parameters_.SclFactor =
        optSclInch_->isChecked() ? 1 / kMillimetresPerInch : kMillimetresPerInch;
    parameters_.FeedFactor = parameters_.SclFactor;
  }
}

}  // namespace zemtra
