#include "app/TextToGCodeDialog.h"

#include <QButtonGroup>
#include <QCheckBox>
#include <QFontDialog>
#include <QFormLayout>
#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QTimer>
#include <QVBoxLayout>
#include <exception>

#include "app/AppSettings.h"
#include "app/TextPreview.h"
#include "core/Host.h"
#include "core/NumberText.h"
#include "core/Version.h"
#include "text/TextConverter.h"

namespace zemtra {

namespace {

constexpr int kPreviewDelayMs = 150;  // typing pauses this long before the preview follows

struct NumberBox {
  const char* control;
  const char* caption;
  double TextToGCodeSettings::*member;
};

constexpr NumberBox kNumberBoxes[] = {
    {"txtHeight", "Height:", &TextToGCodeSettings::TextHeight},
    {"txtXLoc", "X Location:", &TextToGCodeSettings::XLocation},
    {"txtYLoc", "Y Location:", &TextToGCodeSettings::YLocation},
    {"txtAngle", "Angle:", &TextToGCodeSettings::TextAngle},
    {"txtRadius", "Radius:", &TextToGCodeSettings::Radius},
    {"txtStartAngle", "Start Angle:", &TextToGCodeSettings::StartAngle},
    {"txtZRetract", "Z Retract:", &TextToGCodeSettings::ZRetract},
    {"txtZApproach", "Z Approach:", &TextToGCodeSettings::ZApproach},
    {"txtZDepth", "Z Depth:", &TextToGCodeSettings::ZDepth},
    {"txtFeedrate", "Feedrate:", &TextToGCodeSettings::Feedrate},
};

// The nine reference points, by number: column + 3 * row (row 0 base line, 1 middle, 2 top).
constexpr const char* kColumns[] = {"left", "centre", "right"};
constexpr const char* kRows[] = {"base line", "middle", "top"};

// Takes the messages of a preview conversion without showing them.
class QuietHost : public Host {
 public:
  MsgAnswer ask(const Prompt& prompt) override {
    message = prompt.text;
    return DefaultAnswer(prompt.buttons);
  }
  std::string message;
};

QString MessageText(const std::string& text) {
  QString result = QString::fromStdString(text);
  result.replace("\r\n", "\n");
  return result;
}

FontRequest RequestOf(const TextToGCodeSettings& settings) {
  FontRequest request;
  request.family = settings.FontName;
  request.bold = settings.FontBold;
  request.italic = settings.FontItalic;
  request.sizePoints = settings.FontSize > 0 ? settings.FontSize : 12;
  return request;
}

bool SameFont(const FontRequest& a, const FontRequest& b) {
  return a.family == b.family && a.bold == b.bold && a.italic == b.italic &&
         a.sizePoints == b.sizePoints;
}

std::optional<FontRequest> DesktopFontChooser(QWidget* parent, const FontRequest& current) {
  QFont font(QString::fromStdString(current.family), current.sizePoints);
  font.setBold(current.bold);
  font.setItalic(current.italic);
  bool ok = false;
  const QFont chosen = QFontDialog::getFont(&ok, font, parent, "Font");
  if (!ok) return std::nullopt;
  FontRequest request;
  request.family = chosen.family().toStdString();
  request.bold = chosen.bold();
  request.italic = chosen.italic();
  request.sizePoints = chosen.pointSize() > 0 ? chosen.pointSize() : current.sizePoints;
  return request;
}

}  // namespace

TextToGCodeDialog::TextToGCodeDialog(TextToGCodeSettings& settings, Host& host,
                                     std::string numberFormat, QWidget* parent)
    : QDialog(parent), settings_(settings), host_(host), numberFormat_(std::move(numberFormat)) {
  setObjectName("CFont");
  setWindowTitle("Text To G-Code");
  ChooseFont = [this](const FontRequest& current) { return DesktopFontChooser(this, current); };
  previewTimer_ = new QTimer(this);
  previewTimer_->setSingleShot(true);
  previewTimer_->setInterval(kPreviewDelayMs);
  connect(previewTimer_, &QTimer::timeout, this, &TextToGCodeDialog::UpdatePreview);
  BuildControls();
  LoadControls();
  UpdatePreview();
}

TextToGCodeDialog::~TextToGCodeDialog() {
  TakeControls();
}

QLineEdit* TextToGCodeDialog::AddNumberBox(const char* name) {
  auto* box = new QLineEdit(this);
  box->setObjectName(name);
  box->setMaximumWidth(90);
  connect(box, &QLineEdit::textChanged, previewTimer_, qOverload<>(&QTimer::start));
  return box;
}

void TextToGCodeDialog::BuildControls() {
  txtPreview_ = new QLineEdit(this);
  txtPreview_->setObjectName("txtPreview");
  connect(txtPreview_, &QLineEdit::textChanged, previewTimer_, qOverload<>(&QTimer::start));
  picPreview_ = new TextPreview(this);

  auto* groups = new QHBoxLayout;
  groups->addWidget(BuildPlacement());
  groups->addWidget(BuildJustification());
  groups->addWidget(BuildArc());
  groups->addWidget(BuildCutting());

  lblFont_ = new QLabel(this);
  lblFont_->setObjectName("lblFont");
  lblFont_->setFrameShape(QFrame::StyledPanel);
  lblFont_->setMinimumWidth(220);
  auto* chooseFont = new QPushButton("&Font...", this);
  chooseFont->setObjectName("cmdChooseFont");
  chooseFont->setAutoDefault(false);
  connect(chooseFont, &QPushButton::clicked, this, &TextToGCodeDialog::ChooseFontClicked);
  auto* convert = new QPushButton("&Convert", this);
  convert->setObjectName("cmdConvertFont");
  convert->setDefault(true);
  connect(convert, &QPushButton::clicked, this, &TextToGCodeDialog::ConvertClicked);
  auto* cancel = new QPushButton("Cancel", this);
  cancel->setObjectName("cmdCancel");
  cancel->setAutoDefault(false);
  connect(cancel, &QPushButton::clicked, this, &QDialog::reject);
  auto* bottom = new QHBoxLayout;
  bottom->addWidget(new QLabel("Font:", this));
  bottom->addWidget(lblFont_);
  bottom->addWidget(chooseFont);
  bottom->addStretch();
  bottom->addWidget(convert);
  bottom->addWidget(cancel);

  auto* layout = new QVBoxLayout(this);
  auto* textRow = new QFormLayout;
  textRow->addRow("&Text:", txtPreview_);
  layout->addLayout(textRow);
  layout->addWidget(picPreview_, 1);
  layout->addLayout(groups);
  layout->addLayout(bottom);
}

QWidget* TextToGCodeDialog::BuildPlacement() {
  auto* group = new QGroupBox("Placement", this);
  auto* form = new QFormLayout(group);
  form->addRow(kNumberBoxes[0].caption, AddNumberBox(kNumberBoxes[0].control));
  lblXLoc_ = new QLabel(this);
  lblXLoc_->setObjectName("lblXLoc");
  lblYLoc_ = new QLabel(this);
  lblYLoc_->setObjectName("lblYLoc");
  form->addRow(lblXLoc_, AddNumberBox("txtXLoc"));
  form->addRow(lblYLoc_, AddNumberBox("txtYLoc"));
  form->addRow(kNumberBoxes[3].caption, AddNumberBox(kNumberBoxes[3].control));
  return group;
}

QWidget* TextToGCodeDialog::BuildJustification() {
  auto* group = new QGroupBox("Justification", this);
  auto* grid = new QGridLayout(group);
  optJustify_ = new QButtonGroup(this);
  optJustify_->setObjectName("optJustify");
  for (int row = 0; row < 3; ++row) {
    for (int column = 0; column < 3; ++column) {
      const int number = column + 3 * row;
      auto* option = new QRadioButton(group);
      option->setObjectName(QString("optJustify%1").arg(number));
      option->setToolTip(QString("%1, %2").arg(kColumns[column], kRows[row]));
      optJustify_->addButton(option, number);
      grid->addWidget(option, 2 - row, column, Qt::AlignCenter);  // the top row on top
    }
  }
  connect(optJustify_, &QButtonGroup::idToggled, previewTimer_, [this](int, bool on) {
    if (on) previewTimer_->start();
  });
  return group;
}

QWidget* TextToGCodeDialog::BuildArc() {
  auto* group = new QGroupBox("Arc", this);
  auto* form = new QFormLayout(group);
  chkTextOnArc_ = new QCheckBox("Text on &arc", group);
  chkTextOnArc_->setObjectName("chkTextOnArc");
  connect(chkTextOnArc_, &QCheckBox::toggled, this, [this] {
    ShowArcState();
    previewTimer_->start();
  });
  form->addRow(chkTextOnArc_);
  for (int i = 4; i <= 5; ++i) {
    form->addRow(kNumberBoxes[i].caption, AddNumberBox(kNumberBoxes[i].control));
  }
  return group;
}

QWidget* TextToGCodeDialog::BuildCutting() {
  auto* group = new QGroupBox("Cutting", this);
  auto* form = new QFormLayout(group);
  for (int i = 6; i <= 9; ++i) {
    form->addRow(kNumberBoxes[i].caption, AddNumberBox(kNumberBoxes[i].control));
  }
  return group;
}

void TextToGCodeDialog::LoadControls() {
  txtPreview_->setText(QString::fromStdString(settings_.String));
  for (const NumberBox& box : kNumberBoxes) {
    findChild<QLineEdit*>(box.control)
        ->setText(QString::fromStdString(FormatNumberText(settings_.*box.member, "")));
  }
  const int justify = settings_.Justify >= 0 && settings_.Justify <= 8 ? settings_.Justify : 0;
  optJustify_->button(justify)->setChecked(true);
  chkTextOnArc_->setChecked(settings_.OnArc);
  ShowArcState();
  ShowFontName();
}

void TextToGCodeDialog::TakeControls() {
  settings_.String = txtPreview_->text().toStdString();
  for (const NumberBox& box : kNumberBoxes) {
    settings_.*box.member =
        NumericTextValue(findChild<QLineEdit*>(box.control)->text().toStdString());
  }
  settings_.Justify = static_cast<std::int16_t>(std::max(0, optJustify_->checkedId()));
  settings_.OnArc = chkTextOnArc_->isChecked();
}

void TextToGCodeDialog::ShowFontName() {
  QString name = QString::fromStdString(settings_.FontName);
  if (settings_.FontBold) name += " Bold";
  if (settings_.FontItalic) name += " Italic";
  lblFont_->setText(name + " - " + QString::number(settings_.FontSize));
}

// On an arc the location is the arc's centre, and the base line's angle gives way to the arc.
void TextToGCodeDialog::ShowArcState() {
  const bool onArc = chkTextOnArc_->isChecked();
  lblXLoc_->setText(onArc ? "X Center:" : "X Location:");
  lblYLoc_->setText(onArc ? "Y Center:" : "Y Location:");
  findChild<QLineEdit*>("txtAngle")->setEnabled(!onArc);
  findChild<QLineEdit*>("txtRadius")->setEnabled(onArc);
  findChild<QLineEdit*>("txtStartAngle")->setEnabled(onArc);
}

void TextToGCodeDialog::SetFont(const FontRequest& request) {
  settings_.FontName = request.family;
  settings_.FontBold = request.bold;
  settings_.FontItalic = request.italic;
  settings_.FontSize = static_cast<std::int16_t>(request.sizePoints);
  ShowFontName();
  UpdatePreview();
}

void TextToGCodeDialog::ChooseFontClicked() {
  if (const std::optional<FontRequest> chosen = ChooseFont(RequestOf(settings_))) SetFont(*chosen);
}

FontFace* TextToGCodeDialog::OpenFont(std::string& error) {
  const FontRequest request = RequestOf(settings_);
  if (!fontOpened_ || !SameFont(request, fontKey_)) {
    fontError_.clear();
    font_ = FontFace::Open(request, fontError_);
    fontKey_ = request;
    fontOpened_ = true;
  }
  error = fontError_;
  return font_.get();
}

std::optional<std::string> TextToGCodeDialog::Convert(Host& host, std::string& fontError) {
  TakeControls();
  FontFace* font = OpenFont(fontError);
  if (font == nullptr) return std::nullopt;
  TextConverter converter(*font, host);
  converter.Placement = TextPlacement{
      settings_.Justify,   settings_.TextHeight, settings_.XLocation, settings_.YLocation,
      settings_.TextAngle, settings_.OnArc,      settings_.Radius,    settings_.StartAngle};
  converter.TextZRetract = settings_.ZRetract;
  converter.TextZApproach = settings_.ZApproach;
  converter.TextZDepth = settings_.ZDepth;
  converter.TextFeedrate = settings_.Feedrate;
  converter.NumberFormat = numberFormat_;
  try {
    return converter.ConvertText(settings_.String);
  } catch (const std::exception& failure) {
    fontError = failure.what();
    return std::nullopt;
  }
}

QPointF TextToGCodeDialog::Reference() const {
  return {settings_.XLocation, settings_.YLocation};
}

void TextToGCodeDialog::UpdatePreview() {
  previewTimer_->stop();
  QuietHost quiet;
  std::string error;
  const std::optional<std::string> program = Convert(quiet, error);
  if (!program) {
    picPreview_->ShowMessage(MessageText(error.empty() ? quiet.message : error));
  } else if (program->empty()) {
    picPreview_->ShowMessage(QString());
  } else {
    picPreview_->ShowProgram(*program, Reference());
  }
}

void TextToGCodeDialog::ConvertClicked() {
  previewTimer_->stop();
  std::string error;
  const std::optional<std::string> program = Convert(host_, error);
  if (!program) {
    if (!error.empty()) {
      host_.ask(Prompt{error, kProductName, MsgIcon::Exclamation, MsgButtons::Ok});
    }
    return;
  }
  program_ = *program;
  accept();
}

}  // namespace zemtra
