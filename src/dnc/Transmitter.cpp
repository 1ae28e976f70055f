#include "dnc/Transmitter.h"

#include <QSerialPort>
#include <QThread>
#include <algorithm>
#include <chrono>
#include <fstream>
#include <sstream>

#include "dnc/ComConfig.h"
#include "dnc/SerialLink.h"

namespace zemtra {

namespace {

constexpr char kXon = 0x11;
constexpr char kXoff = 0x13;
// Small writes, so that an XOFF stops the flow within a few characters of what is in flight.
constexpr std::size_t kChunk = 64;
constexpr int kWaitMs = 50;

double SteadySeconds() {
  using namespace std::chrono;
  return duration<double>(steady_clock::now().time_since_epoch()).count();
}

bool ReadWholeFile(const std::string& path, std::string& text) {
  std::ifstream in(path, std::ios::binary);
  if (!in) return false;
  std::ostringstream buffer;
  buffer << in.rdbuf();
  text = buffer.str();
  return !in.bad();
}

std::string WithoutBlanks(std::string_view line) {
  std::string out;
  out.reserve(line.size());
  for (char c : line)
    if (c != ' ' && c != '\t') out.push_back(c);
  return out;
}

}  // namespace

struct Transmitter::Job {
  std::string filePath;
  ComConfig config;
  bool spaceStrip = false;
  bool delayedStart = false;
};

// One send, run on the transmitter's thread: owns the port for its lifetime.
class TransmitSession {
 public:
  explicit TransmitSession(Transmitter& owner) : owner_(owner) {}

  // Sends `text`; "" when it went through or was aborted, else why it stopped.
  std::string Send(const std::string& text, const ComConfig& config, bool strip,
                   bool delayedStart) {
    std::string error;
    if (!OpenSerialLink(port_, config, false, error)) return error;
    if (delayedStart && !WaitForFirstXon()) return failure_;
    if (!SendLines(text, strip)) return failure_;
    return DrainOutput() ? std::string() : failure_;
  }

 private:
  bool Stopping() const { return owner_.abort_.load(); }

  // Reads what the machine sent and follows its XON and XOFF; false on a line failure.
  bool ServeInput() {
    const QByteArray input = port_.readAll();
    for (char c : input) {
      if (c == kXoff) owner_.remoteStopped_ = true;
      if (c == kXon) {
        owner_.remoteStopped_ = false;
        xonSeen_ = true;
      }
    }
    return CheckPort();
  }

  bool CheckPort() {
    const QSerialPort::SerialPortError error = port_.error();
    if (error == QSerialPort::NoError) return true;
    if (error == QSerialPort::TimeoutError) {
      port_.clearError();
      return true;
    }
    failure_ = "Transmission failed: " + port_.errorString().toStdString();
    return false;
  }

  bool WaitForFirstXon() {
    owner_.waitingForXon_ = true;
    while (!xonSeen_ && !Stopping()) {
      port_.waitForReadyRead(kWaitMs);
      if (!ServeInput()) break;
    }
    owner_.waitingForXon_ = false;
    return xonSeen_ || Stopping();
  }

  // Holds while the user paused or the machine sent XOFF; false when the send must end.
  bool WaitWhileHeld() {
    while (owner_.userPaused_ || owner_.remoteStopped_) {
      if (Stopping()) return false;
      port_.waitForReadyRead(kWaitMs);
      if (!ServeInput()) return false;
    }
    return !Stopping();
  }

  // Waits until the port has passed on everything written; false on abort or failure.
  bool DrainOutput() {
    while (port_.bytesToWrite() > 0) {
      if (Stopping()) return false;
      port_.waitForBytesWritten(kWaitMs);
      if (!ServeInput()) return false;
    }
    return true;
  }

  bool SendPiece(std::string_view piece) {
    for (std::size_t at = 0; at < piece.size(); at += kChunk) {
      if (!ServeInput() || !WaitWhileHeld()) return false;
      const std::string_view chunk = piece.substr(at, kChunk);
      if (port_.write(chunk.data(), static_cast<qint64>(chunk.size())) < 0) {
        failure_ = "Transmission failed: " + port_.errorString().toStdString();
        return false;
      }
      if (!DrainOutput()) return false;
      owner_.bytesSent_ += static_cast<std::int64_t>(chunk.size());
    }
    return true;
  }

  bool SendLines(const std::string& text, bool strip) {
    std::size_t at = 0;
    while (at < text.size()) {
      const std::size_t end = std::min(text.find('\n', at), text.size() - 1) + 1;
      const std::string_view line(text.data() + at, end - at);
      const bool sent = strip ? SendPiece(WithoutBlanks(line)) : SendPiece(line);
      if (!sent) return false;
      at = end;
      owner_.progress_ =
          static_cast<int>(static_cast<double>(at) * 100.0 / static_cast<double>(text.size()));
    }
    return true;
  }

  Transmitter& owner_;
  QSerialPort port_;
  bool xonSeen_ = false;
  std::string failure_;  // "" for an abort
};

Transmitter::Transmitter() = default;

Transmitter::~Transmitter() {
  TXAbort();
  if (thread_) thread_->wait();
}

bool Transmitter::InitTX() {
  if (busy_) return false;
  if (thread_) thread_->wait();
  Job job;
  job.filePath = TXFilePath;
  job.config.Port = Port;
  job.config.Baud = Baud;
  job.config.DataBits = DataBits;
  job.config.Parity = Parity;
  job.config.StopBits = StopBits;
  job.spaceStrip = SpaceStrip;
  job.delayedStart = DelayedStart;
  abort_ = false;
  userPaused_ = false;
  remoteStopped_ = false;
  progress_ = 0;
  bytesSent_ = 0;
  {
    std::lock_guard lock(mutex_);
    error_.clear();
    clock_.Start(SteadySeconds());
  }
  busy_ = true;
  thread_.reset(QThread::create([this, job] { Run(job); }));
  thread_->start();
  return true;
}

void Transmitter::Run(const Job& job) {
  std::string text;
  if (!ReadWholeFile(job.filePath, text)) {
    Finish("Can't read " + job.filePath);
    return;
  }
  std::string error;
  {
    TransmitSession session(*this);
    error = session.Send(text, job.config, job.spaceStrip, job.delayedStart);
  }
  if (error.empty() && !abort_) progress_ = 100;
  Finish(error);
}

void Transmitter::Finish(const std::string& error) {
  {
    std::lock_guard lock(mutex_);
    error_ = error;
    clock_.Stop(SteadySeconds());
  }
  busy_ = false;
}

void Transmitter::TXAbort() {
  abort_ = true;
}

bool Transmitter::HandShakeStatus() const {
  return busy_ && (userPaused_ || remoteStopped_ || waitingForXon_);
}

void Transmitter::SetHandShakeStatus(bool pause) {
  userPaused_ = pause;
  std::lock_guard lock(mutex_);
  if (pause)
    clock_.Pause(SteadySeconds());
  else
    clock_.Resume(SteadySeconds());
}

std::string Transmitter::ErrorText() const {
  std::lock_guard lock(mutex_);
  return error_;
}

double Transmitter::ElapsedSeconds() const {
  std::lock_guard lock(mutex_);
  return clock_.Elapsed(SteadySeconds());
}

}  // namespace zemtra
