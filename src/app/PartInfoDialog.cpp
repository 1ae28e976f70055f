#include "app/PartInfoDialog.h"

#include <QDialogButtonBox>
#include <QGridLayout>
#include <QGroupBox>
#include <QHideEvent>
#include <QLabel>
#include <QLineEdit>
#include <QVBoxLayout>

#include "core/SettingsStore.h"

namespace zemtra {

namespace {

constexpr const char* kSection = "General";

void Show(QLineEdit* box, const std::string& text) {
  box->setText(QString::fromStdString(text));
}

}  // namespace

Info::Info(std::function<PartFigures()> figures, SettingsStore& settings, QWidget* parent)
    : QDialog(parent), figures_(std::move(figures)), settings_(settings) {
  setObjectName("Info");
  setWindowTitle("Part Information");
  setModal(false);
  auto* layout = new QVBoxLayout(this);
  frmMill_ = new QGroupBox("Part Extents", this);
  frmMill_->setObjectName("frmMill");
  frmLathe_ = new QGroupBox("Part Extents (Lathe)", this);
  frmLathe_->setObjectName("frmLathe");
  new QVBoxLayout(frmMill_);
  new QVBoxLayout(frmLathe_);
  BuildExtents();
  layout->addWidget(frmMill_);
  layout->addWidget(frmLathe_);
  auto* times = new QGroupBox("Path and Run Time", this);
  auto* grid = new QGridLayout(times);
  BuildTimes(grid);
  layout->addWidget(times);
  auto* buttons = new QDialogButtonBox(QDialogButtonBox::Close, this);
  connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::close);
  layout->addWidget(buttons);
  LoadRates();
  for (QLineEdit* box : {txtRapidR_, txtToolCT_}) {
    connect(box, &QLineEdit::textEdited, this, &Info::UpdateDisplay);
  }
}

void Info::hideEvent(QHideEvent* event) {
  SaveRates();
  QDialog::hideEvent(event);
}

QLineEdit* Info::AddBox(QGridLayout* grid, int row, int column, const char* name, bool editable) {
  auto* box = new QLineEdit(grid->parentWidget());
  box->setObjectName(name);
  box->setReadOnly(!editable);
  box->setAlignment(Qt::AlignRight);
  box->setMinimumWidth(90);
  grid->addWidget(box, row, column);
  return box;
}

void Info::BuildExtents() {
  extents_ = new QWidget(this);
  auto* grid = new QGridLayout(extents_);
  grid->setContentsMargins(0, 0, 0, 0);
  int column = 1;
  for (const char* title : {"Minimum", "Maximum", "Size"}) {
    grid->addWidget(new QLabel(title, extents_), 0, column++, Qt::AlignCenter);
  }
  xLabel_ = new QLabel("X", extents_);
  grid->addWidget(xLabel_, 1, 0);
  txtXMinus_ = AddBox(grid, 1, 1, "txtXMinus");
  txtXPlus_ = AddBox(grid, 1, 2, "txtXPlus");
  txtXWidth_ = AddBox(grid, 1, 3, "txtXWidth");
  auto* yLabel = new QLabel("Y", extents_);
  grid->addWidget(yLabel, 2, 0);
  txtYMinus_ = AddBox(grid, 2, 1, "txtYMinus");
  txtYPlus_ = AddBox(grid, 2, 2, "txtYPlus");
  txtYHeight_ = AddBox(grid, 2, 3, "txtYHeight");
  yRow_ = {yLabel, txtYMinus_, txtYPlus_, txtYHeight_};
  grid->addWidget(new QLabel("Z", extents_), 3, 0);
  txtZMinus_ = AddBox(grid, 3, 1, "txtZMinus");
  txtZPlus_ = AddBox(grid, 3, 2, "txtZPlus");
  txtZDepth_ = AddBox(grid, 3, 3, "txtZDepth");
}

void Info::BuildTimes(QGridLayout* grid) {
  QWidget* owner = grid->parentWidget();
  int column = 1;
  for (const char* title : {"Length", "Rate", "Time"}) {
    grid->addWidget(new QLabel(title, owner), 0, column++, Qt::AlignCenter);
  }
  grid->addWidget(new QLabel("Feed", owner), 1, 0);
  txtFeedL_ = AddBox(grid, 1, 1, "txtFeedL");
  txtAverageFR_ = AddBox(grid, 1, 2, "txtAverageFR");
  txtTotalFeed_ = AddBox(grid, 1, 3, "txtTotalFeed");
  grid->addWidget(new QLabel("Rapid", owner), 2, 0);
  txtRapidL_ = AddBox(grid, 2, 1, "txtRapidL");
  txtRapidR_ = AddBox(grid, 2, 2, "txtRapidR", true);
  txtTotalRapid_ = AddBox(grid, 2, 3, "txtTotalRapid");
  grid->addWidget(new QLabel("Tool changes", owner), 3, 0);
  txtToolC_ = AddBox(grid, 3, 1, "txtToolC");
  txtToolCT_ = AddBox(grid, 3, 2, "txtToolCT", true);
  txtToolCT_->setToolTip("Seconds for one tool change");
  txtRapidR_->setToolTip("Rapid rate, length units per minute");
  txtTotalTC_ = AddBox(grid, 3, 3, "txtTotalTC");
  grid->addWidget(new QLabel("Total", owner), 4, 0);
  txtTotal_ = AddBox(grid, 4, 3, "txtTotal");
  grid->addWidget(new QLabel("Largest arc error", owner), 5, 0, 1, 2);
  txtMaxArcError_ = AddBox(grid, 5, 3, "txtMaxArcError");
}

void Info::LoadRates() {
  txtRapidR_->setText(QString::fromStdString(
      settings_.GetSetting(kSection, std::string(kRapidRateKey), std::string(kRapidRateDefault))));
  txtToolCT_->setText(QString::fromStdString(settings_.GetSetting(
      kSection, std::string(kToolChangeTimeKey), std::string(kToolChangeTimeDefault))));
}

void Info::SaveRates() {
  settings_.SaveSetting(kSection, std::string(kRapidRateKey), txtRapidR_->text().toStdString());
  settings_.SaveSetting(kSection, std::string(kToolChangeTimeKey),
                        txtToolCT_->text().toStdString());
}

// The extents sit in the frame of the machine type; a lathe has no Y.
void Info::ShowMachineFrame(const PartFigures& figures) {
  QGroupBox* frame = figures.Lathe ? frmLathe_ : frmMill_;
  if (extents_->parentWidget() != frame) frame->layout()->addWidget(extents_);
  frmMill_->setVisible(!figures.Lathe);
  frmLathe_->setVisible(figures.Lathe);
  for (QWidget* widget : yRow_) widget->setVisible(!figures.Lathe);
  xLabel_->setText(figures.Lathe ? (figures.Diameter ? "X (diameter)" : "X (radius)") : "X");
}

void Info::UpdateDisplay() {
  const PartFigures figures = figures_ ? figures_() : PartFigures{};
  ShowMachineFrame(figures);
  const PartInfoTexts texts =
      ComputePartInfo(figures, txtRapidR_->text().toStdString(), txtToolCT_->text().toStdString());
  Show(txtXMinus_, texts.XMinus);
  Show(txtXPlus_, texts.XPlus);
  Show(txtXWidth_, texts.XWidth);
  Show(txtYMinus_, texts.YMinus);
  Show(txtYPlus_, texts.YPlus);
  Show(txtYHeight_, texts.YHeight);
  Show(txtZMinus_, texts.ZMinus);
  Show(txtZPlus_, texts.ZPlus);
  Show(txtZDepth_, texts.ZDepth);
  Show(txtMaxArcError_, texts.MaxArcError);
  Show(txtFeedL_, texts.FeedL);
  Show(txtTotalFeed_, texts.TotalFeed);
  Show(txtAverageFR_, texts.AverageFR);
  Show(txtRapidL_, texts.RapidL);
  Show(txtTotalRapid_, texts.TotalRapid);
  Show(txtToolC_, texts.ToolC);
  Show(txtTotalTC_, texts.TotalTC);
  Show(txtTotal_, texts.Total);
}

}  // namespace zemtra
