// zemtra-cli send and receive over a pseudo-terminal pair: one process receives on one end
// while another sends to the other end, as a PC and a machine control would.
#include <gtest/gtest.h>

#include <QElapsedTimer>
#include <QProcess>
#include <QProcessEnvironment>

#include "PtyPair.h"
#include "support/ScratchFolder.h"
#include "support/TestSupport.h"

namespace zemtra {
namespace {

using test::PtyPair;

// zemtra-cli with an application folder of its own, "home" in `folder`.
struct Cli {
  void Start(QProcess& process, const QStringList& arguments) const {
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert("ZEMTRA_HOME", QString::fromStdString((folder / "home").string()));
    environment.insert("LC_ALL", "C");
    process.setProcessEnvironment(environment);
    process.start(ZEMTRA_CLI_BINARY, arguments);
  }
  test::ScratchFolder folder;
};

QString Q(const std::string& text) {
  return QString::fromStdString(text);
}

// Waits until the process has said `text` on stderr; what it said is appended to `said`.
bool WaitForSaying(QProcess& process, const char* text, QByteArray& said, int ms) {
  process.setReadChannel(QProcess::StandardError);
  QElapsedTimer clock;
  clock.start();
  while (!said.contains(text) && clock.elapsed() < ms) {
    process.waitForReadyRead(50);
    said += process.readAllStandardError();
  }
  return said.contains(text);
}

TEST(CliTransfer, SendAndReceiveByteForByte) {
  struct Case {
    const char* name;
    bool useRsFile;  // the line from DNC/Line.rs with Strip Spaces, else --port options
    std::string program;
    std::string expected;
  };
  const std::string big = test::ProgramOfSize(300000);
  const Case cases[] = {
      {"options", false, big, big},
      {"rs file stripping spaces", true, "%\r\nO0001 (PART 1)\r\nG0 X1 Y2\r\nM30\r\n%\r\n",
       "%\r\nO0001(PART1)\r\nG0X1Y2\r\nM30\r\n%\r\n"},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.name);
    PtyPair pair(false);
    ZEMTRA_REQUIRE_PTY_PAIR(pair);
    Cli cli;
    const std::string program = cli.folder.Write("part.nc", c.program);
    const std::string received = (cli.folder / "received.nc").string();
    cli.folder.Write("home/DNC/Line.rs",
                     "[COM SETUP]\r\nPort = " + pair.NearPath() +
                         "\r\nBaud = 19200\r\nData Bits = 8\r\nParity = None\r\n\r\n"
                         "[TRANSMIT OPTIONS]\r\nStrip Spaces = True\r\n");

    QProcess receiver;
    cli.Start(receiver, {"receive", "--port", Q(pair.FarPath()), "--baud", "19200",
                         "--timeout-after", "3", "-o", Q(received)});
    QByteArray receiveSaid;
    ASSERT_TRUE(WaitForSaying(receiver, "opened, ready to receive", receiveSaid, 5000))
        << "the receive did not start: " << receiveSaid.toStdString();

    QProcess sender;
    cli.Start(sender, c.useRsFile ? QStringList{"send", Q(program), "--rs", "Line"}
                                  : QStringList{"send", Q(program), "--port", Q(pair.NearPath()),
                                                "--baud", "19200", "--parity", "n"});
    ASSERT_TRUE(sender.waitForFinished(20000));
    const QByteArray sendErrors = sender.readAllStandardError();
    EXPECT_EQ(sender.exitCode(), 0) << sendErrors.toStdString();
    EXPECT_TRUE(sendErrors.trimmed().endsWith("100%")) << sendErrors.toStdString();

    ASSERT_TRUE(receiver.waitForFinished(10000)) << "the receive did not end after the silence";
    EXPECT_EQ(receiver.exitCode(), 0) << receiver.readAllStandardError().toStdString();
    const std::string bytes = test::ReadFileBytes(received);
    EXPECT_EQ(bytes.size(), c.expected.size());
    EXPECT_TRUE(bytes == c.expected) << "the bytes differ";
  }
}

}  // namespace
}  // namespace zemtra
