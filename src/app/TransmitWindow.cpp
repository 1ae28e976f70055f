#include "app/TransmitWindow.h"

#include <QCloseEvent>
#include <QCoreApplication>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QProgressBar>
#include <QPushButton>
#include <QStatusBar>
#include <QThread>
#include <QTimer>
#include <QVBoxLayout>
#include <filesystem>

#include "core/Host.h"
#include "core/NumberText.h"
#include "core/SettingsStore.h"
#include "dnc/ComConfig.h"
#include "dnc/TransmitClock.h"
#include "dnc/Transmitter.h"

namespace zemtra {

namespace {

constexpr int kPollMs = 250;
constexpr const char* kSection = "StartUp";

QString Text(const std::string& text) {
  return QString::fromStdString(text);
}

}  // namespace

TransmitWindow::TransmitWindow(DncSession& session, Host& host, SettingsStore& settings,
                               std::string filePath, std::string fileName, bool killOnExit,
                               QWidget* parent)
    : QWidget(parent, Qt::Window),
      session_(session),
      host_(host),
      settings_(settings),
      filePath_(std::move(filePath)),
      killOnExit_(killOnExit),
      transmitter_(std::make_unique<Transmitter>()) {
  setAttribute(Qt::WA_DeleteOnClose);
  setWindowTitle(QStringLiteral("Transmit Ready"));
  BuildControls();
  panelFile_->setText(Text(fileName));
  const std::string left = settings_.GetSetting(kSection, "TX Left", "");
  const std::string top = settings_.GetSetting(kSection, "TX Top", "");
  if (!left.empty() && !top.empty())
    move(static_cast<int>(NumericTextValue(left)), static_cast<int>(NumericTextValue(top)));
}

TransmitWindow::~TransmitWindow() = default;

void TransmitWindow::BuildControls() {
  pbProgress_ = new QProgressBar(this);
  pbProgress_->setRange(0, 100);
  pbProgress_->setValue(0);
  auto* frProgress = new QGroupBox(tr("Progress"), this);
  auto* progressBox = new QVBoxLayout(frProgress);
  progressBox->addWidget(pbProgress_);

  cmdStart_ = new QPushButton(tr("&Start"), this);
  cmdPause_ = new QPushButton(tr("&Pause"), this);
  cmdCancel_ = new QPushButton(tr("&Cancel"), this);
  auto* buttons = new QHBoxLayout;
  buttons->addWidget(cmdStart_);
  buttons->addWidget(cmdPause_);
  buttons->addWidget(cmdCancel_);

  auto* sBar = new QStatusBar(this);
  sBar->setSizeGripEnabled(false);
  panelFile_ = new QLabel(this);
  panelWait_ = new QLabel(this);
  panelTime_ = new QLabel(this);
  sBar->addWidget(panelFile_, 1);
  sBar->addPermanentWidget(panelWait_);
  sBar->addPermanentWidget(panelTime_);

  auto* layout = new QVBoxLayout(this);
  layout->addWidget(frProgress);
  layout->addLayout(buttons);
  layout->addWidget(sBar);

  timer1_ = new QTimer(this);
  timer1_->setInterval(kPollMs);
  connect(timer1_, &QTimer::timeout, this, [this] { Poll(); });
  connect(cmdStart_, &QPushButton::clicked, this, [this] { Start(); });
  connect(cmdPause_, &QPushButton::clicked, this, [this] { Pause(); });
  connect(cmdCancel_, &QPushButton::clicked, this, [this] { Cancel(); });
  SetButtons(true, false, false);
}

bool TransmitWindow::Busy() const {
  return transmitter_->TXBusy();
}

void TransmitWindow::SetButtons(bool start, bool pause, bool cancel) {
  cmdStart_->setEnabled(start);
  cmdPause_->setEnabled(pause);
  cmdCancel_->setEnabled(cancel);
}

void TransmitWindow::Start() {
  if (transmitter_->TXBusy()) {  // paused: go on, unless a cancel is still ending the send
    if (transmitter_->Aborted()) return;
    transmitter_->SetHandShakeStatus(false);
    SetButtons(false, true, true);
    return;
  }
  StartSending();
}

void TransmitWindow::StartSending() {
  session_.EnsureComConfig(host_);
  const ComConfig& config = session_.Config;
  Transmitter& tx = *transmitter_;
  tx.TXFilePath = filePath_;
  tx.Baud = config.Baud;
  tx.DataBits = config.DataBits;
  tx.Parity = config.Parity;
  tx.StopBits = config.StopBits;
  tx.Port = config.Port;
  tx.SpaceStrip = config.StripSpaces;
  tx.DelayedStart = config.WaitForXON;
  if (!tx.InitTX()) return;
  timer1_->start();
  SetButtons(false, true, true);
}

void TransmitWindow::Pause() {
  transmitter_->SetHandShakeStatus(true);
  SetButtons(true, false, true);
}

void TransmitWindow::Cancel() {
  if (transmitter_->TXBusy()) {
    transmitter_->TXAbort();
    setWindowTitle(QStringLiteral("Transmission Aborted"));
    panelWait_->clear();
  }
  pbProgress_->setValue(0);
  SetButtons(true, false, false);
  timer1_->stop();
}

void TransmitWindow::Poll() {
  const Transmitter& tx = *transmitter_;
  const int percent = tx.TXProgress();
  setWindowTitle(QStringLiteral("Transmitting - %1%").arg(percent));
  pbProgress_->setValue(percent);
  panelWait_->setText(tx.HandShakeStatus() ? QStringLiteral("Waiting") : QString());
  panelTime_->setText(Text(ClockText(tx.ElapsedSeconds())));
  if (tx.TXBusy()) return;
  timer1_->stop();
  SetButtons(true, false, false);
  panelWait_->clear();
  pbProgress_->setValue(0);
  const std::string error = tx.ErrorText();
  if (error.empty()) {
    setWindowTitle(QStringLiteral("Transmitting Completed"));
  } else {
    setWindowTitle(QStringLiteral("Transmit Ready"));
    host_.ask({error, "Zemtra", MsgIcon::Exclamation, MsgButtons::Ok});
  }
}

void TransmitWindow::closeEvent(QCloseEvent* event) {
  if (transmitter_->TXBusy()) {
    const MsgAnswer answer =
        host_.ask({"Abort Current Transmission?", "Closing", MsgIcon::Question, MsgButtons::YesNo});
    if (answer != MsgAnswer::Yes) {
      event->ignore();
      return;
    }
    transmitter_->TXAbort();
    while (transmitter_->TXBusy()) {
      QCoreApplication::processEvents(QEventLoop::AllEvents, 20);
      QThread::msleep(5);
    }
  }
  timer1_->stop();
  if (killOnExit_) {
    std::error_code ignored;
    std::filesystem::remove(filePath_, ignored);
  }
  settings_.SaveSetting(kSection, "TX Left", std::to_string(x()));
  settings_.SaveSetting(kSection, "TX Top", std::to_string(y()));
  event->accept();
}

}  // namespace zemtra
