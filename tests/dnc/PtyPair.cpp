#include "PtyPair.h"

#include <fcntl.h>
#include <poll.h>
#include <signal.h>
#include <sys/wait.h>
#include <termios.h>
#include <unistd.h>

#include <QCoreApplication>
#include <algorithm>
#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <thread>

namespace zemtra::test {

namespace {

using Clock = std::chrono::steady_clock;

int MillisecondsLeft(Clock::time_point deadline) {
  const auto left = std::chrono::duration_cast<std::chrono::milliseconds>(deadline - Clock::now());
  return left.count() > 0 ? static_cast<int>(left.count()) : 0;
}

int OpenRaw(const std::string& path) {
  const int fd = ::open(path.c_str(), O_RDWR | O_NOCTTY | O_NONBLOCK);
  if (fd < 0) return -1;
  termios mode{};
  if (::tcgetattr(fd, &mode) == 0) {
    ::cfmakeraw(&mode);
    ::tcsetattr(fd, TCSANOW, &mode);
  }
  return fd;
}

}  // namespace

bool PtyPair::SocatAvailable() {
  return ::system("command -v socat >/dev/null 2>&1") == 0;
}

PtyPair::PtyPair(bool openFar) : openFar_(openFar) {
  if (!SocatAvailable()) return;
  char pattern[] = "/tmp/zmt-pty-XXXXXX";
  if (!::mkdtemp(pattern)) return;
  folder_ = pattern;
  nearPath_ = folder_ + "/near";
  farPath_ = folder_ + "/far";
  const std::string nearArg = "pty,raw,echo=0,link=" + nearPath_;
  const std::string farArg = "pty,raw,echo=0,link=" + farPath_;
  socat_ = ::fork();
  if (socat_ == 0) {
    ::execlp("socat", "socat", nearArg.c_str(), farArg.c_str(), static_cast<char*>(nullptr));
    ::_exit(127);
  }
  const auto deadline = Clock::now() + std::chrono::seconds(5);
  while (Clock::now() < deadline) {
    if (std::filesystem::exists(nearPath_) && std::filesystem::exists(farPath_)) {
      linked_ = true;
      if (!openFar_) return;
      farFd_ = OpenRaw(farPath_);
      if (farFd_ >= 0) return;
    }
    std::this_thread::sleep_for(std::chrono::milliseconds(10));
  }
}

PtyPair::~PtyPair() {
  Unplug();
  std::error_code ignored;
  if (!folder_.empty()) std::filesystem::remove_all(folder_, ignored);
}

void PtyPair::Unplug() {
  if (farFd_ >= 0) ::close(farFd_);
  farFd_ = -1;
  if (socat_ > 0) {
    ::kill(socat_, SIGTERM);
    ::waitpid(socat_, nullptr, 0);
  }
  socat_ = -1;
}

void PtyPair::Write(std::string_view bytes) {
  const auto deadline = Clock::now() + std::chrono::seconds(10);
  while (!bytes.empty() && farFd_ >= 0 && Clock::now() < deadline) {
    const ssize_t done = ::write(farFd_, bytes.data(), bytes.size());
    if (done > 0) {
      bytes.remove_prefix(static_cast<std::size_t>(done));
    } else {
      pollfd wait{farFd_, POLLOUT, 0};
      ::poll(&wait, 1, 50);
    }
  }
}

std::string PtyPair::ReadSome(std::size_t count) {
  std::string out(std::min<std::size_t>(count, 65536), '\0');
  count = out.size();
  const ssize_t got = farFd_ >= 0 ? ::read(farFd_, out.data(), count) : -1;
  out.resize(got > 0 ? static_cast<std::size_t>(got) : 0);
  return out;
}

std::string PtyPair::ReadUntil(std::size_t count, int ms) {
  std::string out;
  const auto deadline = Clock::now() + std::chrono::milliseconds(ms);
  while (out.size() < count && farFd_ >= 0) {
    const int left = MillisecondsLeft(deadline);
    if (left == 0) break;
    pollfd wait{farFd_, POLLIN, 0};
    if (::poll(&wait, 1, left) <= 0) continue;
    out += ReadSome(count - out.size());
  }
  return out;
}

std::string PtyPair::ReadFor(int ms) {
  return ReadUntil(std::string::npos / 2, ms);
}

bool RunEventsUntil(const std::function<bool()>& done, int ms) {
  const auto deadline = Clock::now() + std::chrono::milliseconds(ms);
  while (!done() && Clock::now() < deadline) {
    QCoreApplication::processEvents(QEventLoop::AllEvents, 5);
    std::this_thread::sleep_for(std::chrono::milliseconds(2));
  }
  return done();
}

std::string ProgramOfSize(std::size_t size) {
  std::string text;
  text.reserve(size + 64);
  for (int line = 1; text.size() < size; ++line)
    text += "N" + std::to_string(line) + " G1 X" + std::to_string(line % 1000) + ".5 Y-" +
            std::to_string(line % 77) + " F200\r\n";
  text.resize(size);
  return text;
}

}  // namespace zemtra::test
