#include "dnc/Receiver.h"

#include <gtest/gtest.h>

#include <QElapsedTimer>
#include <QSerialPort>
#include <chrono>
#include <thread>

#include "PtyPair.h"
#include "core/RecordingHost.h"
#include "dnc/BatchTransfer.h"
#include "dnc/Transmitter.h"

namespace zemtra {
namespace {

using test::PtyPair;
using test::RunEventsUntil;
using namespace std::chrono_literals;

ComConfig LineOn(const std::string& port, int before, int after) {
  ComConfig config;
  config.Port = port;
  config.Baud = 115200;
  config.DataBits = 8;
  config.Parity = "None";
  config.RXTimeoutBefore = before;
  config.RXTimeoutAfter = after;
  return config;
}

// A receiver writing into a string, as the editor inserts at its caret.
struct ReceiveFixture {
  RecordingHost host;
  std::string text;
  bool finished = false;
  Receiver receiver{host, [this](std::string_view bytes) { text.append(bytes); }};
  ReceiveFixture() {
    QObject::connect(&receiver, &Receiver::finished, [this] { finished = true; });
  }
  bool WaitFinished(int ms) {
    return RunEventsUntil([this] { return finished; }, ms);
  }
  std::string LastMessage() const {
    return host.statuses.empty() ? std::string() : host.statuses.back().second;
  }
};

TEST(Receiver, TakesAMegabyteFromTheTransmitterByteForByte) {
  PtyPair pair(false);
  ZEMTRA_REQUIRE_PTY_PAIR(pair);
  const std::string program = test::ProgramOfSize(1 << 20);
  test::TempFile file(program);
  ReceiveFixture rx;
  // The silence that ends the receive is kept well above any stall of a busy test machine.
  ASSERT_TRUE(rx.receiver.Start(LineOn(pair.FarPath(), 5, 3)));
  Transmitter tx;
  tx.Port = pair.NearPath();
  tx.TXFilePath = file.Path();
  tx.Baud = 115200;
  ASSERT_TRUE(tx.InitTX());
  ASSERT_TRUE(rx.WaitFinished(25000));
  EXPECT_FALSE(tx.TXBusy());
  EXPECT_EQ(rx.text.size(), program.size());
  EXPECT_TRUE(rx.text == program) << "the bytes differ";
  const std::string label = pair.FarPath();
  ASSERT_GE(rx.host.statuses.size(), 3u);
  EXPECT_EQ(rx.host.statuses[0].first, "msg");
  EXPECT_EQ(rx.host.statuses[0].second, label + " opened, ready to receive");
  EXPECT_EQ(rx.host.statuses[1].second, "Receiving ...");
  EXPECT_EQ(rx.LastMessage(), "Receive timeout, " + label + " closed");
}

TEST(Receiver, TimeoutBeforeTheFirstCharacter) {
  PtyPair pair;
  ZEMTRA_REQUIRE_PTY_PAIR(pair);
  ReceiveFixture rx;
  QElapsedTimer clock;
  clock.start();
  ASSERT_TRUE(rx.receiver.Start(LineOn(pair.NearPath(), 1, 30)));
  ASSERT_TRUE(rx.WaitFinished(4000));
  EXPECT_GE(clock.elapsed(), 900);
  EXPECT_EQ(rx.LastMessage(), "Receive timeout, " + pair.NearPath() + " closed");
  EXPECT_FALSE(rx.receiver.IsOpen());
  EXPECT_EQ(rx.text, "");
}

TEST(Receiver, TimeoutAfterTheLastCharacter) {
  PtyPair pair;
  ZEMTRA_REQUIRE_PTY_PAIR(pair);
  ReceiveFixture rx;
  // Silence is counted in whole seconds of the timer: two of them end this receive, so a
  // gap shorter than one second never does.
  ASSERT_TRUE(rx.receiver.Start(LineOn(pair.NearPath(), 0, 2)));
  RunEventsUntil([] { return false; }, 1300);  // no timeout before the first character
  EXPECT_TRUE(rx.receiver.IsOpen());
  pair.Write("%\r\nN1 G0 X1\r\n");
  RunEventsUntil([] { return false; }, 700);
  pair.Write("M30\r\n%\r\n");
  EXPECT_TRUE(rx.WaitFinished(4000));
  EXPECT_EQ(rx.text, "%\r\nN1 G0 X1\r\nM30\r\n%\r\n");
  EXPECT_EQ(rx.LastMessage(), "Receive timeout, " + pair.NearPath() + " closed");
  EXPECT_FALSE(rx.receiver.RxStarted());
}

TEST(Receiver, WithoutTimeoutsOnlyEscEndsTheReceive) {
  PtyPair pair;
  ZEMTRA_REQUIRE_PTY_PAIR(pair);
  ReceiveFixture rx;
  ASSERT_TRUE(rx.receiver.Start(LineOn(pair.NearPath(), 1, 0)));
  pair.Write("G1");
  EXPECT_FALSE(rx.WaitFinished(2500));
  EXPECT_TRUE(rx.receiver.RxStarted());
  rx.receiver.Escape();
  EXPECT_TRUE(rx.finished);
  EXPECT_FALSE(rx.receiver.IsOpen());
  EXPECT_EQ(rx.LastMessage(), pair.NearPath() + " Closed");
  EXPECT_EQ(rx.text, "G1");
  rx.receiver.Escape();  // nothing open: no second message
  EXPECT_EQ(rx.LastMessage(), pair.NearPath() + " Closed");
}

TEST(Receiver, UnpluggedCableKeepsWhatCame) {
  PtyPair pair;
  ZEMTRA_REQUIRE_PTY_PAIR(pair);
  ReceiveFixture rx;
  ASSERT_TRUE(rx.receiver.Start(LineOn(pair.NearPath(), 0, 0)));
  const std::string part = test::ProgramOfSize(5000);
  pair.Write(part);
  RunEventsUntil([&] { return rx.text.size() == part.size(); }, 3000);
  pair.Unplug();
  ASSERT_TRUE(rx.WaitFinished(3000)) << "the receiver did not notice the dead line";
  EXPECT_EQ(rx.text, part);
  const std::string message = rx.LastMessage();
  EXPECT_NE(message.find(pair.NearPath() + " closed"), std::string::npos) << message;
}

TEST(Receiver, PortsThatCannotOpenSaySoAndStayClosed) {
  PtyPair pair;
  ZEMTRA_REQUIRE_PTY_PAIR(pair);
  QSerialPort holder(QString::fromStdString(pair.NearPath()));
  ASSERT_TRUE(holder.open(QIODevice::ReadWrite));
  struct Case {
    ComConfig config;
    std::string message;
  };
  ComConfig baudZero = LineOn("COM7", 0, 0);
  baudZero.Baud = 0;
  for (const Case& c :
       {Case{LineOn("/dev/zemtra-no-such-port", 0, 0), "Couldn't open /dev/zemtra-no-such-port"},
        Case{LineOn(pair.NearPath(), 0, 0), "Couldn't open " + pair.NearPath()},
        Case{baudZero, "Couldn't open COM7"}}) {
    ReceiveFixture rx;
    EXPECT_FALSE(rx.receiver.Start(c.config));
    EXPECT_EQ(rx.LastMessage(), c.message);
    EXPECT_NE(rx.receiver.LastError(), "");
    EXPECT_FALSE(rx.receiver.IsOpen());
  }
}

TEST(Receiver, SevenBitsAndParityOpenOrSayWhyWhereTheDeviceRefuses) {
  PtyPair pair;
  ZEMTRA_REQUIRE_PTY_PAIR(pair);
  for (const char* parity : {"Even", "Odd", "Mark", "Space"}) {
    ComConfig config = LineOn(pair.NearPath(), 0, 0);
    config.DataBits = 7;
    config.Parity = parity;
    config.StopBits = 1;
    ReceiveFixture rx;
    if (rx.receiver.Start(config)) {
      pair.Write("G1");
      EXPECT_TRUE(RunEventsUntil([&] { return rx.text.size() == 2; }, 2000)) << parity;
      rx.receiver.Escape();
    } else {
      EXPECT_EQ(rx.LastMessage(), "Couldn't open " + pair.NearPath()) << parity;
      EXPECT_NE(rx.receiver.LastError(), "") << parity;
    }
    EXPECT_FALSE(rx.receiver.IsOpen());
  }
}

TEST(BatchTransfer, SendAndReceiveWithoutAWindow) {
  PtyPair pair(false);
  ZEMTRA_REQUIRE_PTY_PAIR(pair);
  const std::string program = "%\r\nO0001 (PART)\r\nG0 X1 Y2\r\nM30\r\n%\r\n";
  test::TempFile file(program);
  ComConfig line = LineOn(pair.NearPath(), 0, 0);
  line.StripSpaces = true;
  std::string sendError = "not run";
  std::vector<int> percents;
  std::thread sender([&] {
    std::this_thread::sleep_for(std::chrono::milliseconds(300));
    sendError = SendFileAndWait(line, file.Path(), [&](int p) { percents.push_back(p); }, {});
  });
  const std::string expected = "%\r\nO0001(PART)\r\nG0X1Y2\r\nM30\r\n%\r\n";
  RecordingHost host;
  std::string received;
  std::string error;
  const auto started = std::chrono::steady_clock::now();
  const bool opened = ReceiveAndWait(
      LineOn(pair.FarPath(), 0, 0), host, received,
      [&] {
        return received.size() >= expected.size() ||
               std::chrono::steady_clock::now() - started > 5s;
      },
      error);
  sender.join();
  EXPECT_TRUE(opened) << error;
  EXPECT_EQ(received, expected);
  EXPECT_EQ(sendError, "");
  ASSERT_FALSE(percents.empty());
  EXPECT_EQ(percents.back(), 100);
  EXPECT_EQ(host.statuses.back().second, pair.FarPath() + " Closed");

  std::string none;
  EXPECT_FALSE(ReceiveAndWait(LineOn("/dev/zemtra-no-such-port", 0, 0), host, none, {}, error));
  EXPECT_NE(error, "");
  EXPECT_EQ(SendFileAndWait(LineOn(pair.NearPath(), 0, 0), "/tmp/zemtra-no-such-file.nc", {}, {}),
            "Can't read /tmp/zemtra-no-such-file.nc");
}

}  // namespace
}  // namespace zemtra
