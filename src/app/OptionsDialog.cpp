#include "app/OptionsDialog.h"

#include <QCheckBox>
#include <QColorDialog>
#include <QComboBox>
#include <QDialogButtonBox>
#include <QFormLayout>
#include <QGroupBox>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QRegularExpressionValidator>
#include <QVBoxLayout>
#include <array>
#include <utility>

#include "app/AppSettings.h"
#include "core/NumberText.h"

namespace zemtra {

namespace {

constexpr std::array kStepCounts = {1, 2, 5, 10, 20, 50, 100, 500, 1000};

QColor ToQColor(std::int32_t color) {
  return QColor(color & 0xFF, (color >> 8) & 0xFF, (color >> 16) & 0xFF);
}

std::int32_t FromQColor(const QColor& color) {
  return color.red() | (color.green() << 8) | (color.blue() << 16);
}

}  // namespace

OptionsDialog::OptionsDialog(AppSettings& settings, PaneLayout& panes, SettingsStore& store,
                             QWidget* parent)
    : QDialog(parent), settings_(settings), panes_(panes), store_(store) {
  setObjectName("Options");
  setWindowTitle("Preferences");
  BuildControls();
  LoadControls();
  ConnectControls();
}

QCheckBox* OptionsDialog::AddCheck(const char* name, const char* caption) {
  auto* box = new QCheckBox(caption, this);
  box->setObjectName(name);
  return box;
}

QLineEdit* OptionsDialog::AddDigits(const char* name) {
  auto* box = new QLineEdit(this);
  box->setObjectName(name);
  // Digits only: other keys are swallowed.
  box->setValidator(new QRegularExpressionValidator(QRegularExpression("[0-9]*"), box));
  box->setMaximumWidth(90);
  return box;
}

void OptionsDialog::BuildControls() {
  auto* cmdColor = new QPushButton("Editor &Background Colour...", this);
  cmdColor->setObjectName("cmdColor");
  connect(cmdColor, &QPushButton::clicked, this, &OptionsDialog::ChooseEditorColor);
  txtAnimateDelay_ = AddDigits("txtAnimateDelay");
  txtAutoRefreshDelay_ = AddDigits("txtAutoRefreshDelay");
  cmbNumSteps_ = new QComboBox(this);
  cmbNumSteps_->setObjectName("cmbNumSteps");
  for (const int count : kStepCounts) cmbNumSteps_->addItem(QString::number(count), count);

  chkMultiInstance_ = AddCheck("chkMultiInstance", "Allow more than one Zemtra window");
  chkAlwaysCaps_ = AddCheck("chkAlwaysCaps", "Type capital letters only");
  chkAutoEInfo_ = AddCheck("chkAutoEInfo", "Show entity information on selection");
  chkEnableViewMenu_ = AddCheck("chkEnableViewMenu", "Right click menu in the viewport");
  chkAutoPlot_ = AddCheck("chkAutoPlot", "Plot when a file is loaded");
  chkAutoZoom_ = AddCheck("chkAutoZoom", "Zoom to the part on view change");
  chkM00Stop_ = AddCheck("chkM00Stop", "Stop on M00");
  chkSaveVariables_ = AddCheck("chkSaveVariables", "Save macro variables on exit");
  chkViewportLeft_ = AddCheck("chkViewportLeft", "Viewport on the left");
  chkWarnFR0_ = AddCheck("chkWarnFR0", "Warn on feed motion with feedrate 0");
  chkWarnSP0_ = AddCheck("chkWarnSP0", "Warn on feed motion with spindle speed 0");
  chkWarnSPOff_ = AddCheck("chkWarnSPOff", "Warn on feed motion with the spindle off");
  const char* resets[] = {"Never", "On M06", "On a T word"};
  for (int i = 0; i < 3; ++i) {
    optWarnReset_[i] = new QRadioButton(resets[i], this);
    optWarnReset_[i]->setObjectName(QString("optWarnReset%1").arg(i));
  }

  auto* form = new QFormLayout;
  form->addRow("Animation delay (ms):", txtAnimateDelay_);
  form->addRow("Entities per step:", cmbNumSteps_);
  form->addRow("Auto refresh delay (ms):", txtAutoRefreshDelay_);
  auto* general = new QGroupBox("General", this);
  auto* generalLayout = new QVBoxLayout(general);
  generalLayout->addLayout(form);
  for (QCheckBox* box : {chkMultiInstance_, chkAlwaysCaps_, chkAutoPlot_, chkAutoZoom_, chkM00Stop_,
                         chkSaveVariables_, chkViewportLeft_, chkAutoEInfo_, chkEnableViewMenu_}) {
    generalLayout->addWidget(box);
  }
  generalLayout->addWidget(cmdColor);
  auto* warnings = new QGroupBox("Warnings", this);
  auto* warningLayout = new QVBoxLayout(warnings);
  for (QCheckBox* box : {chkWarnFR0_, chkWarnSP0_, chkWarnSPOff_}) warningLayout->addWidget(box);
  auto* reset = new QGroupBox("Reset feed and speed to 0", this);
  auto* resetLayout = new QVBoxLayout(reset);
  for (QRadioButton* option : optWarnReset_) resetLayout->addWidget(option);
  warningLayout->addWidget(reset);

  auto* buttons = new QDialogButtonBox(QDialogButtonBox::Close, this);
  connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
  auto* layout = new QVBoxLayout(this);
  layout->addWidget(general);
  layout->addWidget(warnings);
  layout->addWidget(buttons);
}

void OptionsDialog::LoadControls() {
  loading_ = true;
  const PreferenceSettings& p = settings_.Preferences;
  txtAnimateDelay_->setText(QString::number(p.AnimateDelay));
  txtAutoRefreshDelay_->setText(QString::number(p.AutoRefreshDelay));
  int step = cmbNumSteps_->findData(static_cast<int>(p.EntitiesPerStep));
  if (step < 0) {
    cmbNumSteps_->addItem(QString::number(p.EntitiesPerStep), static_cast<int>(p.EntitiesPerStep));
    step = cmbNumSteps_->count() - 1;
  }
  cmbNumSteps_->setCurrentIndex(step);
  chkMultiInstance_->setChecked(settings_.General.MultiInstance);
  chkAlwaysCaps_->setChecked(p.AlwaysCaps);
  chkAutoEInfo_->setChecked(p.AutoShowEntityInfo);
  chkEnableViewMenu_->setChecked(p.EnableRightClickMenu);
  chkAutoPlot_->setChecked(p.PlotWhenFileLoaded);
  chkAutoZoom_->setChecked(p.ZoomOnViewChange);
  chkM00Stop_->setChecked(p.StopOnM00);
  chkSaveVariables_->setChecked(p.SaveVariablesOnExit);
  chkViewportLeft_->setChecked(panes_.ViewportLeft);
  chkWarnFR0_->setChecked(p.WarnOnFeedrate0);
  chkWarnSP0_->setChecked(p.WarnOnSpindleSpeed0);
  chkWarnSPOff_->setChecked(p.WarnOnSpindleOff);
  const int reset = p.WarningReset >= 0 && p.WarningReset <= 2 ? p.WarningReset : 0;
  optWarnReset_[reset]->setChecked(true);
  loading_ = false;
}

void OptionsDialog::ConnectControls() {
  PreferenceSettings& p = settings_.Preferences;
  const auto bind = [this](QCheckBox* box, bool& value, Change change = Change::Other) {
    connect(box, &QCheckBox::toggled, this, [this, &value, change](bool on) {
      if (loading_) return;
      value = on;
      Notify(change);
    });
  };
  bind(chkAlwaysCaps_, p.AlwaysCaps, Change::AlwaysCaps);
  bind(chkAutoEInfo_, p.AutoShowEntityInfo);
  bind(chkEnableViewMenu_, p.EnableRightClickMenu);
  bind(chkAutoPlot_, p.PlotWhenFileLoaded);
  bind(chkAutoZoom_, p.ZoomOnViewChange);
  bind(chkM00Stop_, p.StopOnM00);
  bind(chkSaveVariables_, p.SaveVariablesOnExit);
  bind(chkWarnFR0_, p.WarnOnFeedrate0);
  bind(chkWarnSP0_, p.WarnOnSpindleSpeed0);
  bind(chkWarnSPOff_, p.WarnOnSpindleOff);
  connect(chkMultiInstance_, &QCheckBox::toggled, this, [this](bool on) {
    if (loading_) return;
    settings_.General.MultiInstance = on;
    SaveMultiInstance(store_, on);
    Notify(Change::Other);
  });
  connect(chkViewportLeft_, &QCheckBox::toggled, this, [this](bool on) {
    if (loading_) return;
    panes_.ViewportLeft = on;
    std::swap(panes_.PaneWidth1, panes_.PaneWidth2);
    Notify(Change::ViewportLeft);
  });
  for (int i = 0; i < 3; ++i) {
    connect(optWarnReset_[i], &QRadioButton::toggled, this, [this, i](bool on) {
      if (loading_ || !on) return;
      settings_.Preferences.WarningReset = static_cast<std::int16_t>(i);
      Notify(Change::Other);
    });
  }
  connect(cmbNumSteps_, &QComboBox::currentIndexChanged, this, [this](int index) {
    if (loading_ || index < 0) return;
    settings_.Preferences.EntitiesPerStep =
        static_cast<std::int16_t>(cmbNumSteps_->itemData(index).toInt());
    Notify(Change::Other);
  });
  // Delays apply when the box loses the focus or on Return.
  connect(txtAnimateDelay_, &QLineEdit::editingFinished, this, [this] {
    TakeDelay(txtAnimateDelay_, settings_.Preferences.AnimateDelay, Change::Other);
  });
  connect(txtAutoRefreshDelay_, &QLineEdit::editingFinished, this, [this] {
    TakeDelay(txtAutoRefreshDelay_, settings_.Preferences.AutoRefreshDelay,
              Change::AutoRefreshDelay);
  });
}

void OptionsDialog::TakeDelay(QLineEdit* box, int& value, Change change) {
  if (loading_) return;
  const double number = NumericTextValue(box->text().toStdString());  // empty reads as 0
  value = number > 2147483647.0 ? 2147483647 : static_cast<int>(number);
  Notify(change);
}

void OptionsDialog::ChooseEditorColor() {
  const QColor chosen = QColorDialog::getColor(ToQColor(settings_.Preferences.EditorColor), this,
                                               "Editor Background");
  if (!chosen.isValid()) return;
  settings_.Preferences.EditorColor = FromQColor(chosen);
  Notify(Change::EditorColor);
}

void OptionsDialog::Notify(Change change) {
  if (Changed) Changed(change);
}

}  // namespace zemtra
