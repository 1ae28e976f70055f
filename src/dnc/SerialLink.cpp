#include "dnc/SerialLink.h"

#include <QSerialPort>
#include <QSerialPortInfo>
#include <algorithm>

#include "dnc/ComConfig.h"

namespace zemtra {

namespace {

QSerialPort::Parity ParityOf(const std::string& parity) {
  switch (parity.empty() ? 'N' : parity.front()) {
    case 'E':
    case 'e':
      return QSerialPort::EvenParity;
    case 'O':
    case 'o':
      return QSerialPort::OddParity;
    case 'M':
    case 'm':
      return QSerialPort::MarkParity;
    case 'S':
    case 's':
      return QSerialPort::SpaceParity;
    default:
      return QSerialPort::NoParity;
  }
}

QSerialPort::FlowControl FlowOf(int handshaking) {
  switch (handshaking) {
    case 1:
      return QSerialPort::SoftwareControl;
    case 2:
      return QSerialPort::HardwareControl;
    default:
      return QSerialPort::NoFlowControl;
  }
}

// Checks what the device cannot be asked for, before it is opened.
bool CheckSettings(const ComConfig& config, std::string& error) {
  if (config.Baud <= 0) {
    error = "Baud rate " + std::to_string(config.Baud) + " is not valid";
    return false;
  }
  if (config.DataBits < 5 || config.DataBits > 8) {
    error = "Data bits " + std::to_string(config.DataBits) + " are not valid";
    return false;
  }
  return true;
}

bool ApplySettings(QSerialPort& port, const ComConfig& config, bool useHandshaking) {
  return port.setBaudRate(config.Baud) &&
         port.setDataBits(static_cast<QSerialPort::DataBits>(config.DataBits)) &&
         port.setParity(ParityOf(config.Parity)) &&
         port.setStopBits(config.StopBits == 1 ? QSerialPort::TwoStop : QSerialPort::OneStop) &&
         port.setFlowControl(useHandshaking ? FlowOf(config.Handshaking)
                                            : QSerialPort::NoFlowControl);
}

}  // namespace

bool OpenSerialLink(QSerialPort& port, const ComConfig& config, bool useHandshaking,
                    std::string& error) {
  const std::string device = PortDeviceName(config.Port);
  if (device.empty()) {
    error = "No port is set";
    return false;
  }
  if (!CheckSettings(config, error)) return false;
  port.setPortName(QString::fromStdString(device));
  if (!port.open(QIODevice::ReadWrite)) {
    error = "Couldn't open " + device + ": " + port.errorString().toStdString();
    return false;
  }
  if (!ApplySettings(port, config, useHandshaking)) {
    error = "Can't set up " + device + ": " + port.errorString().toStdString();
    port.close();
    return false;
  }
  // Pseudo-terminals and some adapters have no modem lines: not having DTR is no failure.
  if (!port.setDataTerminalReady(true)) port.clearError();
  return true;
}

std::vector<std::string> PortChoices() {
  std::vector<std::string> ports;
  const auto add = [&ports](const std::string& port) {
    if (std::find(ports.begin(), ports.end(), port) == ports.end()) ports.push_back(port);
  };
  for (const QSerialPortInfo& info : QSerialPortInfo::availablePorts())
    add(info.systemLocation().toStdString());
  for (int number = 0; number < 4; ++number) add("/dev/ttyS" + std::to_string(number));
  return ports;
}

}  // namespace zemtra
