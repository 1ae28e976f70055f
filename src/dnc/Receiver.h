#pragma once
// Receiving a program from a machine: characters arriving on the serial port go to a text sink
// (the editor inserts them at its caret) until silence on the line, a line error or Esc ends
// the receive. Runs on the thread that owns it, between other events.
#include <QObject>
#include <functional>
#include <string>
#include <string_view>

#include "dnc/ComConfig.h"

class QSerialPort;
class QTimer;

namespace zemtra {

class Host;

class Receiver : public QObject {
  Q_OBJECT

 public:
  using TextSink = std::function<void(std::string_view)>;

  // `insertText` gets each piece of received bytes as it comes, unchanged; status texts go to
  // the host's "msg" panel.
  Receiver(Host& host, TextSink insertText, QObject* parent = nullptr);
  ~Receiver() override;

  // Opens the port of `config` and waits for the first character. False, with "Couldn't open"
  // and the port in the "msg" panel, when the port can't be opened (missing, busy, bad baud).
  bool Start(const ComConfig& config);
  // Esc: closes an open port at once, saying so. Does nothing when no port is open.
  void Escape();
  // Closes the port without a message (the window is closing).
  void Close();
  bool IsOpen() const;

  // Receive state: the first character has come; whole seconds of silence; the timeout in force.
  bool RxStarted() const { return rxStarted_; }
  int RxIdleSeconds() const { return rxIdleSeconds_; }
  double RxTimeout() const { return rxTimeout_; }
  // Why the last receive could not start or went wrong, for callers without a status bar.
  const std::string& LastError() const { return lastError_; }

 signals:
  // The port has been closed by a timeout, a line error, Esc or Close.
  void finished();

 private:
  void OnCharacters();
  void OnLineError(int error);
  void OnSecond();
  void EndReceive(const std::string& message);

  Host& host_;
  TextSink insertText_;
  QSerialPort* port_;
  QTimer* timRxTimeout_;
  ComConfig config_;
  std::string label_;
  std::string lastError_;
  bool rxStarted_ = false;
  int rxIdleSeconds_ = 0;
  double rxTimeout_ = 0;
};

}  // namespace zemtra
