#pragma once
// The background sender: sends a file over a serial port line by line in its own thread while
// the window goes on, obeying XON/XOFF from the machine. Set the properties, call InitTX, then
// poll TXBusy, TXProgress and HandShakeStatus. All members may be called from the owning thread
// while a send runs.
#include <atomic>
#include <cstdint>
#include <memory>
#include <mutex>
#include <string>

#include "dnc/TransmitClock.h"

class QThread;

namespace zemtra {

class Transmitter {
 public:
  Transmitter();
  ~Transmitter();  // aborts a running send and waits for its thread
  Transmitter(const Transmitter&) = delete;
  Transmitter& operator=(const Transmitter&) = delete;

  // Properties read by InitTX; changing them during a send has no effect on it.
  std::string TXFilePath;
  int Baud = 0;
  int DataBits = 8;
  std::string Parity = "None";
  int StopBits = 0;           // list index: 0 one stop bit, 1 two
  std::string Port;           // as in ComConfig::Port
  bool SpaceStrip = false;    // remove blanks from each line
  bool DelayedStart = false;  // wait for XON before the first character

  // Starts sending in the background. False when a send is already running. A failure to read
  // the file or to open the port ends the send at once, with its text in ErrorText().
  bool InitTX();
  // Asks the running send to stop, paused or not; returns at once. TXBusy turns false soon after.
  void TXAbort();
  // True while a send runs, a pause included.
  bool TXBusy() const { return busy_.load(); }
  // Percent of the file sent, 0 to 100.
  int TXProgress() const { return progress_.load(); }
  // True while the link waits: paused by the user, stopped by XOFF, or waiting for the first XON.
  bool HandShakeStatus() const;
  // True pauses the send, false lets it go on (an XOFF from the machine still holds it).
  void SetHandShakeStatus(bool pause);

  // Why the last send ended early: "" after a complete send or an abort.
  std::string ErrorText() const;
  bool Aborted() const { return abort_.load(); }
  // Bytes handed to the port by the last send (after stripping).
  std::int64_t BytesSent() const { return bytesSent_.load(); }
  // Seconds the last send has been running, time paused by the user not counted.
  double ElapsedSeconds() const;

 private:
  struct Job;
  void Run(const Job& job);
  void Finish(const std::string& error);

  std::unique_ptr<QThread> thread_;
  std::atomic<bool> busy_{false};
  std::atomic<bool> abort_{false};
  std::atomic<bool> userPaused_{false};
  std::atomic<bool> remoteStopped_{false};
  std::atomic<bool> waitingForXon_{false};
  std::atomic<int> progress_{0};
  std::atomic<std::int64_t> bytesSent_{0};
  mutable std::mutex mutex_;  // guards clock_ and error_
  TransmitClock clock_;
  std::string error_;

  friend class TransmitSession;
};

}  // namespace zemtra
