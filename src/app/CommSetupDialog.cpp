#include "app/CommSetupDialog.h"

#include <QCheckBox>
#include <QComboBox>
#include <QDialogButtonBox>
#include <QFileDialog>
#include <QFileInfo>
#include <QFormLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLineEdit>
#include <QPushButton>
#include <QVBoxLayout>
#include <cmath>
#include <utility>

#include "core/AppFolder.h"
#include "core/Host.h"
#include "core/NumberText.h"
#include "dnc/ComConfig.h"
#include "dnc/SerialLink.h"

namespace zemtra {

namespace {

constexpr const char* kBauds[] = {"110",  "300",   "600",   "1200",  "2400",  "4800",
                                  "9600", "19200", "38400", "57600", "115200"};
constexpr const char* kDataBits[] = {"6", "7", "8"};
constexpr const char* kStopBits[] = {"1", "2"};
constexpr const char* kParities[] = {"Even", "Mark", "None", "Odd", "Space"};
constexpr const char* kFlows[] = {"None", "Software", "Hardware"};

template <std::size_t N>
QComboBox* ListBox(const char* const (&items)[N], bool editable, QWidget* parent) {
  auto* box = new QComboBox(parent);
  for (const char* item : items) box->addItem(QString::fromLatin1(item));
  box->setEditable(editable);
  return box;
}

// A value outside the list is shown as it is.
void ShowText(QComboBox* box, const std::string& text) {
  const QString value = QString::fromStdString(text);
  const int index = box->findText(value, Qt::MatchFixedString);
  if (index >= 0) {
    box->setCurrentIndex(index);
  } else {
    if (!box->isEditable()) box->addItem(value);
    box->setCurrentText(value);
  }
}

void ShowIndex(QComboBox* box, int index) {
  if (index >= 0 && index < box->count())
    box->setCurrentIndex(index);
  else
    ShowText(box, std::to_string(index));
}

int NumberOf(const QString& text) {
  const double value = NumericTextValue(text.toStdString());
  return std::isfinite(value) && std::fabs(value) < 2e9 ? static_cast<int>(value) : 0;
}

}  // namespace

CommSetupDialog::CommSetupDialog(DncSession& session, Host& host, QWidget* parent)
    : QDialog(parent), session_(session), host_(host) {
  setWindowTitle(tr("RS232 Communications Setup"));
  BuildControls();
  FillConfigList();
}

void CommSetupDialog::BuildControls() {
  cmbConfig_ = new QComboBox(this);
  cmbPort_ = new QComboBox(this);
  cmbPort_->setEditable(true);
  for (const std::string& port : PortChoices()) cmbPort_->addItem(QString::fromStdString(port));
  cmbBaud_ = ListBox(kBauds, true, this);
  cmbDataBits_ = ListBox(kDataBits, false, this);
  cmbStopBits_ = ListBox(kStopBits, false, this);
  cmbParity_ = ListBox(kParities, false, this);
  cmbFlow_ = ListBox(kFlows, false, this);
  chkRemoveSpaces_ = new QCheckBox(tr("Remove spaces while transmitting"), this);
  chkWaitForXON_ = new QCheckBox(tr("Wait for XON before transmitting"), this);
  txtRXTimeoutBefore_ = new QLineEdit(this);
  txtRXTimeoutBefore_->setPlaceholderText(tr("Seconds, 0 = No Timeout"));
  txtRXTimeoutAfter_ = new QLineEdit(this);
  txtRXTimeoutAfter_->setPlaceholderText(tr("Seconds"));

  // Named as the window's controls, so scripts and tests can find them.
  const std::pair<QWidget*, const char*> names[] = {{cmbConfig_, "cmbConfig"},
                                                    {cmbPort_, "cmbPort"},
                                                    {cmbBaud_, "cmbBaud"},
                                                    {cmbDataBits_, "cmbDataBits"},
                                                    {cmbStopBits_, "cmbStopBits"},
                                                    {cmbParity_, "cmbParity"},
                                                    {cmbFlow_, "cmbFlow"},
                                                    {chkRemoveSpaces_, "chkRemoveSpaces"},
                                                    {chkWaitForXON_, "chkWaitForXON"},
                                                    {txtRXTimeoutBefore_, "txtRXTimeoutBefore"},
                                                    {txtRXTimeoutAfter_, "txtRXTimeoutAfter"}};
  for (const auto& [widget, name] : names) widget->setObjectName(QString::fromLatin1(name));

  auto* configRow = new QHBoxLayout;
  configRow->addWidget(cmbConfig_, 1);
  auto* cmdLoad = new QPushButton(tr("&Load"), this);
  auto* cmdSave = new QPushButton(tr("&Save..."), this);
  configRow->addWidget(cmdLoad);
  configRow->addWidget(cmdSave);

  auto* port = new QGroupBox(tr("Port"), this);
  auto* portForm = new QFormLayout(port);
  portForm->addRow(tr("Port:"), cmbPort_);
  portForm->addRow(tr("Baud:"), cmbBaud_);
  portForm->addRow(tr("Data bits:"), cmbDataBits_);
  portForm->addRow(tr("Stop bits:"), cmbStopBits_);
  portForm->addRow(tr("Parity:"), cmbParity_);
  portForm->addRow(tr("Flow control:"), cmbFlow_);
  auto* transmit = new QGroupBox(tr("Transmit"), this);
  auto* transmitBox = new QVBoxLayout(transmit);
  transmitBox->addWidget(chkRemoveSpaces_);
  transmitBox->addWidget(chkWaitForXON_);
  auto* receive = new QGroupBox(tr("Receive timeouts"), this);
  auto* receiveForm = new QFormLayout(receive);
  receiveForm->addRow(tr("Before the first character:"), txtRXTimeoutBefore_);
  receiveForm->addRow(tr("After the last character:"), txtRXTimeoutAfter_);
  auto* buttons = new QDialogButtonBox(QDialogButtonBox::Close, this);

  auto* layout = new QVBoxLayout(this);
  layout->addLayout(configRow);
  layout->addWidget(port);
  layout->addWidget(transmit);
  layout->addWidget(receive);
  layout->addWidget(buttons);

  connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::accept);
  connect(cmbConfig_, &QComboBox::textActivated, this,
          [this](const QString& name) { LoadEntry(name); });
  connect(cmdLoad, &QPushButton::clicked, this, [this] { LoadEntry(cmbConfig_->currentText()); });
  connect(cmdSave, &QPushButton::clicked, this, [this] { SaveAs(); });
  for (QComboBox* box : {cmbPort_, cmbBaud_, cmbDataBits_, cmbStopBits_, cmbParity_, cmbFlow_})
    connect(box, &QComboBox::currentTextChanged, this, [this] { TakeFields(); });
  for (QCheckBox* box : {chkRemoveSpaces_, chkWaitForXON_})
    connect(box, &QCheckBox::toggled, this, [this] { TakeFields(); });
  for (QLineEdit* box : {txtRXTimeoutBefore_, txtRXTimeoutAfter_})
    connect(box, &QLineEdit::textEdited, this, [this] { TakeFields(); });
}

void CommSetupDialog::FillConfigList() {
  const std::vector<std::string> names = ComConfigNames(session_.AppFolder);
  if (names.empty()) {
    host_.ask({"No config files found!\r\nPlease setup and save an RS232 configuration", "Zemtra",
               MsgIcon::Exclamation, MsgButtons::Ok});
    cmbConfig_->addItem(QStringLiteral("Default"));
  }
  for (const std::string& name : names) cmbConfig_->addItem(QString::fromStdString(name));
  const QString inForce =
      QString::fromStdString(session_.ConfigName.empty() ? "Default" : session_.ConfigName);
  const int index = cmbConfig_->findText(inForce, Qt::MatchFixedString);
  if (index >= 0) cmbConfig_->setCurrentIndex(index);
  if (!names.empty()) LoadEntry(cmbConfig_->currentText());
  ShowFields();
}

void CommSetupDialog::LoadEntry(const QString& name) {
  std::string configName = name.toStdString();
  if (LoadComConfig(configName, session_.Config, session_.AppFolder, host_))
    session_.ConfigName = configName;
  ShowFields();
}

void CommSetupDialog::ShowFields() {
  const ComConfig& config = session_.Config;
  showing_ = true;
  ShowText(cmbPort_, PortDeviceName(config.Port));
  ShowText(cmbBaud_, std::to_string(config.Baud));
  ShowText(cmbDataBits_, std::to_string(config.DataBits));
  ShowIndex(cmbStopBits_, config.StopBits);
  ShowText(cmbParity_, config.Parity);
  ShowIndex(cmbFlow_, config.Handshaking);
  chkRemoveSpaces_->setChecked(config.StripSpaces);
  chkWaitForXON_->setChecked(config.WaitForXON);
  txtRXTimeoutBefore_->setText(QString::number(config.RXTimeoutBefore));
  txtRXTimeoutAfter_->setText(QString::number(config.RXTimeoutAfter));
  showing_ = false;
}

void CommSetupDialog::TakeFields() {
  if (showing_) return;
  ComConfig& config = session_.Config;
  config.Port = cmbPort_->currentText().trimmed().toStdString();
  config.Baud = NumberOf(cmbBaud_->currentText());
  config.DataBits = NumberOf(cmbDataBits_->currentText());
  config.StopBits = cmbStopBits_->currentIndex() == 1 ? 1 : 0;
  config.Parity = cmbParity_->currentText().toStdString();
  config.Handshaking = std::max(0, cmbFlow_->currentIndex());
  config.StripSpaces = chkRemoveSpaces_->isChecked();
  config.WaitForXON = chkWaitForXON_->isChecked();
  config.RXTimeoutBefore = NumberOf(txtRXTimeoutBefore_->text());
  config.RXTimeoutAfter = NumberOf(txtRXTimeoutAfter_->text());
}

void CommSetupDialog::SaveAs() {
  TakeFields();
  const std::string name = session_.ConfigName.empty() ? "Default" : session_.ConfigName;
  QFileDialog dialog(this, tr("Save As"));
  dialog.setAcceptMode(QFileDialog::AcceptSave);
  dialog.setNameFilter(tr("Zemtra DNC Configuration Files (*.rs)"));
  dialog.setDefaultSuffix(QStringLiteral("rs"));
  dialog.setDirectory(QString::fromStdString(FindPathNoCase(session_.AppFolder, "DNC").string()));
  dialog.selectFile(QString::fromStdString(name + ".rs"));
  if (dialog.exec() != QDialog::Accepted || dialog.selectedFiles().isEmpty()) return;
  const QString path = dialog.selectedFiles().constFirst();
  std::string error;
  if (!SaveComConfig(path.toStdString(), session_.Config, &error)) {
    host_.ask({"Error in cmdSave\r\n" + error, "Zemtra", MsgIcon::Stop, MsgButtons::Ok});
    return;
  }
  const QString entry = QFileInfo(path).completeBaseName();
  if (cmbConfig_->findText(entry, Qt::MatchFixedString) < 0) cmbConfig_->addItem(entry);
  cmbConfig_->setCurrentIndex(cmbConfig_->findText(entry, Qt::MatchFixedString));
  session_.ConfigName = entry.toStdString();
}

}  // namespace zemtra
