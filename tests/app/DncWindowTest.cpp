// The Communication menu of the main window over a pseudo-terminal: the test plays the machine
// on the master end, the window opens the other end as its serial port.
#include <fcntl.h>
#include <poll.h>
#include <unistd.h>

#include <QAction>
#include <QElapsedTimer>
#include <QPointer>
#include <QTest>
#include <QTimer>
#include <chrono>
#include <cstdlib>
#include <thread>

#include "app/AppTestSupport.h"
#include "app/DncCommands.h"
#include "app/PlotActions.h"
#include "app/ProgramTextView.h"
#include "app/StatusPanels.h"
#include "app/TransmitWindow.h"
#include "app/Workspace.h"
#include "dnc/Receiver.h"

namespace zemtra::test {

// The machine's end of a pseudo-terminal.
class MachineLine {
 public:
  MachineLine() {
    fd_ = ::posix_openpt(O_RDWR | O_NOCTTY);
    if (fd_ < 0 || ::grantpt(fd_) != 0 || ::unlockpt(fd_) != 0) return;
    ::fcntl(fd_, F_SETFL, ::fcntl(fd_, F_GETFL) | O_NONBLOCK);
    if (const char* name = ::ptsname(fd_)) path_ = name;
  }
  ~MachineLine() {
    if (fd_ >= 0) ::close(fd_);
  }
  bool Ready() const { return !path_.empty(); }
  const std::string& Path() const { return path_; }
  void Write(std::string_view bytes) const {
    if (::write(fd_, bytes.data(), bytes.size()) != static_cast<ssize_t>(bytes.size()))
      qWarning("the machine's end took fewer bytes than written");
  }
  // Up to `count` bytes that are there now.
  std::string ReadSome(std::size_t count) const {
    std::string bytes(count, '\0');
    const ssize_t got = ::read(fd_, bytes.data(), count);
    bytes.resize(got > 0 ? static_cast<std::size_t>(got) : 0);
    return bytes;
  }

 private:
  int fd_ = -1;
  std::string path_;
};

// DNC/Line.rs in the scratch folder, on the machine's line, put in force.
void UseLine(const Scratch& scratch, StartedPlot& plot, const MachineLine& machine) {
  scratch.Write("DNC/Line.rs", "[COM SETUP]\r\nPort = " + machine.Path() +
                                   "\r\nBaud = 9600\r\nData Bits = 8\r\nParity = None\r\n\r\n"
                                   "[RECEIVE OPTIONS]\r\nRXTimeoutBefore = 0\r\n");
  plot->Settings().ComConfig = "Line";
}

DncCommands& Dnc(StartedPlot& plot) {
  return *plot->findChild<DncCommands*>();
}

class DncWindowTest : public QObject {
  Q_OBJECT
 private slots:
  // Text from the machine lands at the caret as it comes; Esc closes the port and says so.
  void ReceiveInsertsAtTheCaretUntilEsc() {
    MachineLine machine;
    QVERIFY(machine.Ready());
    OpenedProgram opened("part.nc", "G0 X1.\r\nM30\r\n");
    StartedPlot& plot = opened.plot;
    UseLine(opened.scratch, plot, machine);
    ProgramDocument& document = plot->Engine().Editor.Document;
    document.SetSelection(8, 0);  // the start of "M30"
    plot->Actions().Find("mnuDNCReceive")->trigger();
    QCOMPARE(plot->Panels().Text("msg"),
             QString::fromStdString(machine.Path() + " opened, ready to receive"));

    machine.Write("G1 Y5.\r\n");
    QTRY_COMPARE(document.Text(), std::string("G0 X1.\r\nG1 Y5.\r\nM30\r\n"));
    QCOMPARE(plot->Panels().Text("msg"), QString("Receiving ..."));
    QCOMPARE(document.SelStart(), std::size_t{16});
    machine.Write("\xB0\r\n");  // a byte outside ASCII is kept as its character
    QTRY_COMPARE(document.Text(), std::string("G0 X1.\r\nG1 Y5.\r\n\xC2\xB0\r\nM30\r\n"));

    plot->activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(&plot.window()));
    QTest::keyClick(plot->Editor(), Qt::Key_Escape);
    QCOMPARE(plot->Panels().Text("msg"), QString::fromStdString(machine.Path() + " Closed"));
    QVERIFY(!Dnc(plot).GetReceiver().IsOpen());
    machine.Write("G1 Y6.\r\n");
    QTest::qWait(300);
    QCOMPARE(document.Text(), std::string("G0 X1.\r\nG1 Y5.\r\n\xC2\xB0\r\nM30\r\n"));
  }

  // Receive As New asks about the changed text first and then receives into an empty document.
  void ReceiveAsNewStartsAnEmptyDocument() {
    const Scratch scratch;
    MachineLine machine;
    QVERIFY(machine.Ready());
    StartedPlot plot(scratch);
    UseLine(scratch, plot, machine);
    ProgramDocument& document = plot->Engine().Editor.Document;
    plot->Editor()->InsertText("G0 X9.");
    QVERIFY(document.DocumentModified());
    plot.answers.push_back(MsgAnswer::Cancel);
    plot->Actions().Find("mnuDNCReceiveAsNew")->trigger();
    QCOMPARE(document.Text(), std::string("G0 X9."));
    QVERIFY(!Dnc(plot).GetReceiver().IsOpen());

    plot.answers.push_back(MsgAnswer::No);
    plot->Actions().Find("mnuDNCReceiveAsNew")->trigger();
    QVERIFY(Dnc(plot).GetReceiver().IsOpen());
    machine.Write("O1\r\n");
    QTRY_COMPARE(document.Text(), std::string("O1\r\n"));
  }

  void SendSelectedWithoutASelectionSaysSo() {
    OpenedProgram opened("part.nc", "G0 X1.\r\nM30\r\n");
    StartedPlot& plot = opened.plot;
    plot.prompts.clear();
    plot->Actions().Find("mnuDNCSendSelected")->trigger();
    // No configuration is in force yet: the default one is looked for first.
    QCOMPARE(plot.prompts.size(), std::size_t{2});
    QVERIFY(plot.prompts[0].text.starts_with("COM Config file not found!\r\n"));
    QCOMPARE(plot.prompts[1].text, std::string("Nothing is selected!"));
    QVERIFY(Dnc(plot).TransmitView() == nullptr);

    plot->Actions().Find("mnuDNCSendFile")->trigger();  // the chooser is cancelled
    QCOMPARE(plot.prompts.back().title, std::string("Select File to Transmit"));
    QVERIFY(Dnc(plot).TransmitView() == nullptr);
  }

  // The send runs beside the window: while the machine takes the program slowly, the window's
  // events are served more than 10 times a second and typing goes into the text. The machine
  // gets the program byte for byte; a close of the main window asks about the running send.
  void WindowStaysResponsiveDuringASend() {
    MachineLine machine;
    QVERIFY(machine.Ready());
    std::string program;
    for (int line = 1; program.size() < 120000; ++line)
      program += "N" + std::to_string(line) + " G1 X" + std::to_string(line % 97) + ".5 Y2.\r\n";
    OpenedProgram opened("slow.nc", program);
    StartedPlot& plot = opened.plot;
    UseLine(opened.scratch, plot, machine);
    plot->Actions().Find("mnuDNCSend")->trigger();
    QPointer<TransmitWindow> window = Dnc(plot).TransmitView();
    QVERIFY(window != nullptr);
    QCOMPARE(window->windowTitle(), QString("Transmit Ready"));

    std::string received;
    std::jthread reader([&] {  // about 40 KB a second; joined on an early failure too
      const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(30);
      while (received.size() < program.size() && std::chrono::steady_clock::now() < deadline) {
        received += machine.ReadSome(800);
        std::this_thread::sleep_for(std::chrono::milliseconds(20));
      }
    });
    QElapsedTimer clock;
    qint64 last = 0;
    qint64 longestGap = 0;
    int ticks = 0;
    QTimer timer;
    timer.setInterval(20);
    connect(&timer, &QTimer::timeout, [&] {
      longestGap = std::max(longestGap, clock.elapsed() - last);
      last = clock.elapsed();
      ++ticks;
    });
    window->Start();
    clock.start();
    timer.start();
    QTest::qWait(300);
    plot->Editor()->SetSelection(0, 0);
    plot->Editor()->InsertText("(TYPED)");
    QCOMPARE(plot->Engine().Editor.Document.Text().substr(0, 7), std::string("(TYPED)"));
    plot.answers.push_back(MsgAnswer::No);
    const bool closed = plot.close();
    QVERIFY2(!closed, qPrintable(QString("closed during the send (busy: %1, last prompt: %2)")
                                     .arg(window && window->Busy())
                                     .arg(QString::fromStdString(plot.prompts.empty()
                                                                     ? std::string()
                                                                     : plot.prompts.back().text))));
    QCOMPARE(plot.prompts.back().text, std::string("Abort Current Transmission?"));
    // One transmit window at a time, and no receive beside it.
    plot->Actions().Find("mnuDNCSend")->trigger();
    QCOMPARE(Dnc(plot).TransmitView(), window.data());
    plot->Actions().Find("mnuDNCReceive")->trigger();
    QVERIFY(!Dnc(plot).GetReceiver().IsOpen());
    const bool done = QTest::qWaitFor([&] { return !window->Busy(); }, 20000);
    const double seconds = static_cast<double>(clock.elapsed()) / 1000.0;
    timer.stop();
    reader.join();
    qInfo("%.1f s, %.1f events a second, longest gap %lld ms", seconds, ticks / seconds,
          static_cast<long long>(longestGap));
    QVERIFY(done);
    QVERIFY2(seconds > 1.5, "the send was too fast to measure anything");
    QVERIFY2(ticks / seconds >= 10.0,
             qPrintable(QString("%1 events a second").arg(ticks / seconds)));
    QVERIFY2(longestGap < 100, qPrintable(QString("events held up %1 ms").arg(longestGap)));
    QVERIFY(received == program);
    QTRY_COMPARE(window->windowTitle(), QString("Transmitting Completed"));
  }
};

ZEMTRA_TEST_CLASS(DncWindowTest)

}  // namespace zemtra::test

#include "DncWindowTest.moc"
