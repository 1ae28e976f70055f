#include "dnc/Transmitter.h"

#include <gtest/gtest.h>

#include <QSerialPort>

#include "PtyPair.h"

namespace zemtra {
namespace {

using test::PtyPair;
using test::RunEventsUntil;
using test::TempFile;

constexpr char kXon = 0x11;
constexpr char kXoff = 0x13;

void SetLine(Transmitter& tx, const std::string& port, const std::string& file) {
  tx.Port = port;
  tx.TXFilePath = file;
  tx.Baud = 115200;
  tx.DataBits = 8;
  tx.Parity = "None";
  tx.StopBits = 0;
}

bool WaitIdle(const Transmitter& tx, int ms) {
  return RunEventsUntil([&] { return !tx.TXBusy(); }, ms);
}

TEST(Transmitter, SendsAMegabyteByteForByte) {
  PtyPair pair;
  ZEMTRA_REQUIRE_PTY_PAIR(pair);
  const std::string program = test::ProgramOfSize(1 << 20);
  TempFile file(program);
  Transmitter tx;
  SetLine(tx, pair.NearPath(), file.Path());
  ASSERT_TRUE(tx.InitTX());
  EXPECT_FALSE(tx.InitTX()) << "a second send must not start while one runs";
  const std::string received = pair.ReadUntil(program.size(), 20000);
  ASSERT_TRUE(WaitIdle(tx, 5000));
  EXPECT_EQ(received.size(), program.size());
  EXPECT_TRUE(received == program) << "the bytes differ";
  EXPECT_EQ(tx.TXProgress(), 100);
  EXPECT_EQ(tx.BytesSent(), static_cast<std::int64_t>(program.size()));
  EXPECT_EQ(tx.ErrorText(), "");
}

TEST(Transmitter, StripsBlanksFromEachLine) {
  PtyPair pair;
  ZEMTRA_REQUIRE_PTY_PAIR(pair);
  TempFile file("N1 G1 X1.5\r\n\tN2  Y-2 \r\n(A COMMENT)\r\nM30");
  Transmitter tx;
  SetLine(tx, pair.NearPath(), file.Path());
  tx.SpaceStrip = true;
  ASSERT_TRUE(tx.InitTX());
  const std::string expected = "N1G1X1.5\r\nN2Y-2\r\n(ACOMMENT)\r\nM30";
  EXPECT_EQ(pair.ReadUntil(expected.size(), 5000), expected);
  EXPECT_TRUE(WaitIdle(tx, 3000));
}

TEST(Transmitter, XoffHoldsTheSendAndXonResumesIt) {
  PtyPair pair;
  ZEMTRA_REQUIRE_PTY_PAIR(pair);
  const std::string program = test::ProgramOfSize(600000);
  TempFile file(program);
  Transmitter tx;
  SetLine(tx, pair.NearPath(), file.Path());
  ASSERT_TRUE(tx.InitTX());
  std::string received = pair.ReadUntil(20000, 5000);
  pair.Write(std::string(1, kXoff));
  received += pair.ReadFor(500);  // what was already on its way
  EXPECT_EQ(pair.ReadFor(500), "") << "characters kept coming after XOFF";
  EXPECT_TRUE(tx.HandShakeStatus());
  EXPECT_TRUE(tx.TXBusy());
  EXPECT_LT(tx.TXProgress(), 100);
  pair.Write(std::string(1, kXon));
  received += pair.ReadUntil(program.size() - received.size(), 15000);
  EXPECT_TRUE(WaitIdle(tx, 5000));
  EXPECT_EQ(received.size(), program.size());
  EXPECT_TRUE(received == program);
  EXPECT_FALSE(tx.HandShakeStatus());
}

TEST(Transmitter, DelayedStartWaitsForTheFirstXon) {
  PtyPair pair;
  ZEMTRA_REQUIRE_PTY_PAIR(pair);
  TempFile file("%\r\nO1000\r\nM30\r\n%\r\n");
  Transmitter tx;
  SetLine(tx, pair.NearPath(), file.Path());
  tx.DelayedStart = true;
  ASSERT_TRUE(tx.InitTX());
  EXPECT_EQ(pair.ReadFor(600), "");
  EXPECT_TRUE(tx.HandShakeStatus()) << "the link waits for XON";
  pair.Write("x");  // anything else is not a start
  EXPECT_EQ(pair.ReadFor(300), "");
  pair.Write(std::string(1, kXon));
  const std::string program = "%\r\nO1000\r\nM30\r\n%\r\n";
  EXPECT_EQ(pair.ReadUntil(program.size(), 5000), program);
  EXPECT_TRUE(WaitIdle(tx, 3000));
}

TEST(Transmitter, PauseIsNotTimedAndCancelWhilePausedEndsTheSend) {
  PtyPair pair;
  ZEMTRA_REQUIRE_PTY_PAIR(pair);
  const std::string program = test::ProgramOfSize(600000);
  TempFile file(program);
  Transmitter tx;
  SetLine(tx, pair.NearPath(), file.Path());
  ASSERT_TRUE(tx.InitTX());
  pair.ReadUntil(10000, 5000);
  tx.SetHandShakeStatus(true);
  const double atPause = tx.ElapsedSeconds();
  pair.ReadFor(300);
  EXPECT_EQ(pair.ReadFor(1200), "") << "a paused send goes on";
  EXPECT_TRUE(tx.HandShakeStatus());
  EXPECT_NEAR(tx.ElapsedSeconds(), atPause, 0.05) << "the pause was counted";
  tx.TXAbort();
  EXPECT_TRUE(WaitIdle(tx, 2000)) << "cancel while paused did not end the send";
  EXPECT_TRUE(tx.Aborted());
  EXPECT_EQ(tx.ErrorText(), "");
  EXPECT_LT(tx.TXProgress(), 100);
  EXPECT_LT(tx.ElapsedSeconds(), atPause + 0.3);
}

TEST(Transmitter, UnpluggedCableEndsTheSendWithAReason) {
  PtyPair pair;
  ZEMTRA_REQUIRE_PTY_PAIR(pair);
  TempFile file(test::ProgramOfSize(600000));
  Transmitter tx;
  SetLine(tx, pair.NearPath(), file.Path());
  ASSERT_TRUE(tx.InitTX());
  pair.ReadUntil(10000, 5000);
  pair.Unplug();
  ASSERT_TRUE(WaitIdle(tx, 5000)) << "the sender hangs on a dead line";
  EXPECT_NE(tx.ErrorText(), "");
  EXPECT_LT(tx.TXProgress(), 100);
}

TEST(Transmitter, BadSetupsEndAtOnceWithAReason) {
  PtyPair pair;
  ZEMTRA_REQUIRE_PTY_PAIR(pair);
  TempFile file("G0 X1\r\n");
  QSerialPort holder(QString::fromStdString(pair.NearPath()));
  struct Case {
    std::string port;
    int baud;
    std::string file;
    std::string errorStart;
  };
  const std::string busy = pair.NearPath();
  for (const Case& c :
       {Case{"/dev/zemtra-no-such-port", 9600, file.Path(),
             "Couldn't open /dev/zemtra-no-such-port: "},
        Case{busy, 0, file.Path(), "Baud rate 0 is not valid"},
        Case{busy, 9600, "/tmp/zemtra-no-such-file.nc", "Can't read /tmp/zemtra-no-such-file.nc"},
        Case{busy, 9600, file.Path(), "Couldn't open " + busy + ": "}}) {
    if (c.errorStart.rfind("Couldn't open " + busy, 0) == 0) {
      ASSERT_TRUE(holder.open(QIODevice::ReadWrite)) << "could not hold the port busy";
    }
    Transmitter tx;
    SetLine(tx, c.port, c.file);
    tx.Baud = c.baud;
    ASSERT_TRUE(tx.InitTX());
    ASSERT_TRUE(WaitIdle(tx, 3000)) << c.errorStart;
    EXPECT_EQ(tx.ErrorText().rfind(c.errorStart, 0), 0u) << tx.ErrorText();
  }
}

}  // namespace
}  // namespace zemtra
