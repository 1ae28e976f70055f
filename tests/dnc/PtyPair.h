#pragma once
// A pair of connected pseudo-terminals made by socat, as a stand-in for a serial cable: the
// code under test opens NearPath(), the test plays the machine on the far end.
#include <sys/types.h>

#include <functional>
#include <string>
#include <string_view>

#include "support/ScratchFolder.h"

namespace zemtra::test {

class PtyPair {
 public:
  // With `openFar` false the far end is left for other code under test to open.
  explicit PtyPair(bool openFar = true);
  ~PtyPair();
  PtyPair(const PtyPair&) = delete;
  PtyPair& operator=(const PtyPair&) = delete;

  static bool SocatAvailable();
  // True when socat made both ends and the far end is open.
  bool Ready() const { return linked_ && (farFd_ >= 0 || !openFar_); }
  const std::string& NearPath() const { return nearPath_; }
  const std::string& FarPath() const { return farPath_; }

  // The machine's side: write bytes, read what arrives.
  void Write(std::string_view bytes);
  // Reads whatever arrives within `ms` milliseconds.
  std::string ReadFor(int ms);
  // Reads until `count` bytes have come or `ms` milliseconds have passed.
  std::string ReadUntil(std::size_t count, int ms);
  // Reads up to `count` bytes that are there now, without waiting.
  std::string ReadSome(std::size_t count);
  // The cable is pulled: socat ends and both ends hang up.
  void Unplug();

 private:
  std::string folder_;
  std::string nearPath_;
  std::string farPath_;
  pid_t socat_ = -1;
  int farFd_ = -1;
  bool openFar_ = true;
  bool linked_ = false;
};

// Text of `size` bytes in G-code lines with spaces, numbered so that any lost or doubled byte
// shows.
std::string ProgramOfSize(std::size_t size);

// Lets the event loop run until `done` holds or `ms` milliseconds pass; returns `done()`.
bool RunEventsUntil(const std::function<bool()>& done, int ms);

// A file holding `bytes` in a scratch folder of its own, removed with the object.
class TempFile {
 public:
  explicit TempFile(std::string_view bytes) : path_(folder_.Write("part.nc", bytes)) {}
  const std::string& Path() const { return path_; }

 private:
  ScratchFolder folder_;
  std::string path_;
};

}  // namespace zemtra::test

// Skips the current test, saying so, when socat is missing or could not link a pair.
#define ZEMTRA_REQUIRE_PTY_PAIR(pair)                                           \
  do {                                                                          \
    if (!::zemtra::test::PtyPair::SocatAvailable())                             \
      GTEST_SKIP() << "socat is not installed: serial line tests skipped";      \
    ASSERT_TRUE((pair).Ready()) << "socat did not make a pseudo-terminal pair"; \
  } while (0)
