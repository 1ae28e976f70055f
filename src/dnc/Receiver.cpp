#include "dnc/Receiver.h"

#include <QSerialPort>
#include <QTimer>
#include <array>
#include <utility>

#include "core/Host.h"
#include "dnc/SerialLink.h"

namespace zemtra {

namespace {

constexpr int kSecondMs = 1000;
constexpr qint64 kInputBuffer = 0x2000;

struct LineErrorName {
  QSerialPort::SerialPortError error;
  std::string_view text;
};

// What a failure of the line while receiving is called in the status bar.
constexpr std::array kLineErrors{
    LineErrorName{QSerialPort::ResourceError, "Line lost!"},
    LineErrorName{QSerialPort::ReadError, "Read Error!"},
    LineErrorName{QSerialPort::PermissionError, "Port Access Denied!"},
};
constexpr std::string_view kOtherLineError = "Line Error!";

std::string_view LineErrorText(int error) {
  for (const LineErrorName& name : kLineErrors)
    if (name.error == error) return name.text;
  return kOtherLineError;
}

}  // namespace

Receiver::Receiver(Host& host, TextSink insertText, QObject* parent)
    : QObject(parent),
      host_(host),
      insertText_(std::move(insertText)),
      port_(new QSerialPort(this)),
      timRxTimeout_(new QTimer(this)) {
  timRxTimeout_->setInterval(kSecondMs);
  connect(timRxTimeout_, &QTimer::timeout, this, &Receiver::OnSecond);
  connect(port_, &QSerialPort::readyRead, this, &Receiver::OnCharacters);
  connect(port_, &QSerialPort::errorOccurred, this,
          [this](QSerialPort::SerialPortError error) { OnLineError(error); });
}

Receiver::~Receiver() {
  port_->disconnect(this);
  port_->close();
}

bool Receiver::Start(const ComConfig& config) {
  if (port_->isOpen()) Close();
  config_ = config;
  label_ = PortLabel(config.Port);
  lastError_.clear();
  if (!OpenSerialLink(*port_, config, true, lastError_)) {
    host_.status("msg", "Couldn't open " + label_);
    return false;
  }
  port_->clearError();
  port_->setReadBufferSize(kInputBuffer);
  host_.status("msg", label_ + " opened, ready to receive");
  rxTimeout_ = config.RXTimeoutBefore;
  rxIdleSeconds_ = 0;
  rxStarted_ = false;
  timRxTimeout_->start();
  return true;
}

bool Receiver::IsOpen() const {
  return port_->isOpen();
}

void Receiver::OnCharacters() {
  if (!port_->isOpen()) return;
  rxIdleSeconds_ = 0;
  if (!rxStarted_) {
    rxTimeout_ = config_.RXTimeoutAfter;
    rxStarted_ = true;
    host_.status("msg", "Receiving ...");
  }
  const QByteArray input = port_->readAll();
  if (!input.isEmpty()) insertText_(std::string_view(input.constData(), input.size()));
}

void Receiver::OnLineError(int error) {
  if (error == QSerialPort::NoError || error == QSerialPort::TimeoutError ||
      error == QSerialPort::UnsupportedOperationError)
    return;
  if (!port_->isOpen()) return;
  OnCharacters();  // whatever came before the failure stays
  lastError_ = std::string(LineErrorText(error)) + ": " + port_->errorString().toStdString();
  EndReceive(std::string(LineErrorText(error)) + " " + label_ + " closed");
}

void Receiver::OnSecond() {
  if (rxTimeout_ != 0) ++rxIdleSeconds_;
  if (rxTimeout_ != 0 && rxIdleSeconds_ >= rxTimeout_ && port_->isOpen()) {
    rxStarted_ = false;
    EndReceive("Receive timeout, " + label_ + " closed");
  }
}

void Receiver::Escape() {
  if (port_->isOpen()) EndReceive(label_ + " Closed");
}

void Receiver::Close() {
  if (!port_->isOpen()) return;
  timRxTimeout_->stop();
  port_->close();
  emit finished();
}

void Receiver::EndReceive(const std::string& message) {
  timRxTimeout_->stop();
  port_->close();
  host_.status("msg", message);
  emit finished();
}

}  // namespace zemtra
