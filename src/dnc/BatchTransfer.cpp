#include "dnc/BatchTransfer.h"

#include <QEventLoop>
#include <QTimer>
#include <chrono>
#include <thread>

#include "dnc/ComConfig.h"
#include "dnc/Receiver.h"
#include "dnc/Transmitter.h"

namespace zemtra {

namespace {
constexpr int kPollMs = 50;
}

std::string SendFileAndWait(const ComConfig& config, const std::string& filePath,
                            const std::function<void(int)>& progress,
                            const std::function<bool()>& interrupted) {
  Transmitter tx;
  tx.TXFilePath = filePath;
  tx.Port = config.Port;
  tx.Baud = config.Baud;
  tx.DataBits = config.DataBits;
  tx.Parity = config.Parity;
  tx.StopBits = config.StopBits;
  tx.SpaceStrip = config.StripSpaces;
  tx.DelayedStart = config.WaitForXON;
  tx.InitTX();
  int shown = -1;
  while (tx.TXBusy()) {
    std::this_thread::sleep_for(std::chrono::milliseconds(kPollMs));
    if (interrupted && interrupted()) tx.TXAbort();
    if (progress && tx.TXProgress() != shown) progress(shown = tx.TXProgress());
  }
  if (progress && tx.TXProgress() != shown) progress(tx.TXProgress());
  if (tx.Aborted()) return "Transmission aborted";
  return tx.ErrorText();
}

bool ReceiveAndWait(const ComConfig& config, Host& host, std::string& received,
                    const std::function<bool()>& interrupted, std::string& error) {
  Receiver receiver(host, [&received](std::string_view bytes) { received.append(bytes); });
  if (!receiver.Start(config)) {
    error = receiver.LastError();
    return false;
  }
  QEventLoop loop;
  QObject::connect(&receiver, &Receiver::finished, &loop, &QEventLoop::quit);
  QTimer watch;
  QObject::connect(&watch, &QTimer::timeout, &loop, [&] {
    if (interrupted && interrupted()) receiver.Escape();
  });
  watch.start(kPollMs);
  if (receiver.IsOpen()) loop.exec();
  return true;
}

}  // namespace zemtra
