// zemtra-cli send and receive: a program to or from a machine over a serial line, for
// shop-floor PCs without a desktop. The line comes from an RS232 configuration of the DNC folder
// (--rs NAME) or from options (--port DEV ...); options given with --rs change its values.
#include <unistd.h>

#include <QCoreApplication>
#include <QEventLoop>
#include <QTimer>
#include <array>
#include <filesystem>
#include <optional>
#include <ostream>
#include <string>
#include <string_view>
#include <vector>

#include "cli/Args.h"
#include "cli/CliHost.h"
#include "cli/Interrupt.h"
#include "core/AppFolder.h"
#include "core/TextUtil.h"
#include "dnc/BatchTransfer.h"
#include "dnc/ComConfig.h"
#include "dnc/Receiver.h"
#include "editor/DocumentFile.h"

namespace zemtra {

namespace {

enum class Direction { Send, Receive };

constexpr std::array kSendOptions = {
    OptionSpec{"--rs", "NAME", "the RS232 configuration DNC/NAME.rs of the application folder"},
    OptionSpec{"--port", "DEV", "the serial device, e.g. /dev/ttyUSB0 (instead of --rs)"},
    OptionSpec{"--baud", "N", "bits per second (default 9600)"},
    OptionSpec{"--data-bits", "N", "5 to 8 (default 8)"},
    OptionSpec{"--parity", "P", "None, Even, Odd, Mark or Space (default None)"},
    OptionSpec{"--stop-bits", "N", "1 or 2 (default 1)"},
    OptionSpec{"--xon", "", "wait for the machine's XON before the first character"},
    OptionSpec{"--strip-spaces", "", "remove blanks from each line while sending"},
};

constexpr std::array kReceiveOptions = {
    OptionSpec{"--rs", "NAME", "the RS232 configuration DNC/NAME.rs of the application folder"},
    OptionSpec{"--port", "DEV", "the serial device, e.g. /dev/ttyUSB0 (instead of --rs)"},
    OptionSpec{"--baud", "N", "bits per second (default 9600)"},
    OptionSpec{"--data-bits", "N", "5 to 8 (default 8)"},
    OptionSpec{"--parity", "P", "None, Even, Odd, Mark or Space (default None)"},
    OptionSpec{"--stop-bits", "N", "1 or 2 (default 1)"},
    OptionSpec{"--xon", "", "XON/XOFF flow control towards the machine"},
    OptionSpec{"--timeout-before", "S",
               "seconds to wait for the first character, 0 for ever (default 0)"},
    OptionSpec{"--timeout-after", "S",
               "seconds of silence after a character that end the receive, 0 never (default 5)"},
    OptionSpec{"-o", "OUT", "the file to write what came, or - for stdout (required)"},
};

constexpr CommandSyntax kSendSyntax{
    "send",
    "FILE (--rs NAME | --port DEV [line options]) [--strip-spaces]",
    "Sends FILE to a machine over a serial line, line by line, obeying XON and XOFF from the\n"
    "machine. Progress goes to stderr; Ctrl+C stops the send. Line options given with --rs\n"
    "change the values of that file; the defaults shown are those of --port.",
    kSendOptions,
    1,
    1};

constexpr CommandSyntax kReceiveSyntax{
    "receive",
    "(--rs NAME | --port DEV [line options]) [--timeout-before S --timeout-after S] -o OUT",
    "Receives a program punched out by a machine and writes it to OUT byte for byte. The\n"
    "receive ends after the silence of the time-outs, on a line error, or by Ctrl+C. Line\n"
    "options given with --rs change the values of that file; the defaults shown are those of\n"
    "--port.",
    kReceiveOptions,
    0,
    0};

// A whole-number option and the field of the configuration it sets.
struct NumberOption {
  std::string_view name;
  std::int64_t min;
  std::int64_t max;
  int ComConfig::*field;
};

constexpr std::array kNumberOptions = {
    NumberOption{"--baud", 1, 4000000, &ComConfig::Baud},
    NumberOption{"--data-bits", 5, 8, &ComConfig::DataBits},
    NumberOption{"--timeout-before", 0, 32767, &ComConfig::RXTimeoutBefore},
    NumberOption{"--timeout-after", 0, 32767, &ComConfig::RXTimeoutAfter},
};

constexpr std::array<std::string_view, 5> kParities = {"None", "Even", "Odd", "Mark", "Space"};

// The line of a plain --port: 9600 8N1, no flow control, and a receive that ends 5 seconds
// after the machine has stopped sending.
ComConfig PortDefaults(const std::string& port) {
  ComConfig config;
  config.Port = port;
  config.Baud = 9600;
  config.DataBits = 8;
  config.Parity = "None";
  config.RXTimeoutAfter = 5;
  return config;
}

// "Even", "e", "EVEN" give "Even"; nothing for an unknown parity.
std::optional<std::string> ParityName(std::string_view text) {
  for (std::string_view parity : kParities) {
    if (EqualsNoCase(text, parity) || (text.size() == 1 && EqualsNoCase(text, parity.substr(0, 1))))
      return std::string(parity);
  }
  return std::nullopt;
}

// Sets the fields given on the command line; "" or the usage error.
std::string ApplyLineOptions(const Args& parsed, Direction direction, ComConfig& config) {
  std::string error;
  for (const NumberOption& option : kNumberOptions) {
    const std::optional<std::int64_t> value =
        parsed.intValue(option.name, option.min, option.max, config.*option.field, error);
    if (!value) return error;
    config.*option.field = static_cast<int>(*value);
  }
  const std::optional<std::int64_t> stopBits =
      parsed.intValue("--stop-bits", 1, 2, config.StopBits + 1, error);
  if (!stopBits) return error;
  config.StopBits = static_cast<int>(*stopBits) - 1;
  if (const std::optional<std::string> parity = parsed.value("--parity")) {
    const std::optional<std::string> name = ParityName(*parity);
    if (!name) return "--parity needs None, Even, Odd, Mark or Space, not '" + *parity + "'";
    config.Parity = *name;
  }
  if (parsed.has("--xon")) {
    if (direction == Direction::Send) config.WaitForXON = true;
    if (direction == Direction::Receive) config.Handshaking = 1;
  }
  if (parsed.has("--strip-spaces")) config.StripSpaces = true;
  return {};
}

// What a loaded configuration cannot be used with; "" when it can.
std::string ConfigProblem(const ComConfig& config) {
  if (config.Baud <= 0) return "no valid baud rate (" + std::to_string(config.Baud) + ")";
  if (config.DataBits < 5 || config.DataBits > 8)
    return "no valid number of data bits (" + std::to_string(config.DataBits) + ")";
  if (TrimText(config.Port).empty()) return "no port";
  return {};
}

// The line to use, from --rs or --port and the options; nothing after a message to `err`,
// with the exit status in `status`.
std::optional<ComConfig> LineConfig(std::string_view command, const Args& parsed,
                                    Direction direction, std::ostream& err, int& status) {
  status = kExitUsage;
  const std::optional<std::string> rs = parsed.value("--rs");
  const std::optional<std::string> port = parsed.value("--port");
  if (rs.has_value() == port.has_value()) {
    UsageError(command, "give either --rs NAME or --port DEV", err);
    return std::nullopt;
  }
  ComConfig config = port ? PortDefaults(*port) : ComConfig{};
  std::filesystem::path file;
  if (rs) {
    std::string name = *rs;
    const std::filesystem::path folder = ApplicationFolder(nullptr);
    CliHost host(err);
    if (!LoadComConfig(name, config, folder, host)) return std::nullopt;
    file = ComConfigPath(folder, name);
  }
  if (const std::string error = ApplyLineOptions(parsed, direction, config); !error.empty()) {
    UsageError(command, error, err);
    return std::nullopt;
  }
  if (const std::string problem = ConfigProblem(config); !problem.empty()) {
    err << "zemtra-cli " << command << ": "
        << (file.empty() ? problem : file.string() + " gives " + problem) << "\n";
    return std::nullopt;
  }
  return config;
}

// The serial port needs an application object (and, for a receive, its event loop); the
// command makes one when none exists.
class ApplicationScope {
 public:
  ApplicationScope() {
    if (QCoreApplication::instance() == nullptr) app_.emplace(argc_, argv_.data());
  }

 private:
  int argc_ = 1;
  char name_[11] = "zemtra-cli";
  std::array<char*, 2> argv_{name_, nullptr};
  std::optional<QCoreApplication> app_;
};

// Progress on stderr: one line rewritten on a terminal, a line each 10% otherwise.
class ProgressPrinter {
 public:
  ProgressPrinter(std::ostream& err, std::string label)
      : err_(err), label_(std::move(label)), terminal_(::isatty(STDERR_FILENO) == 1) {}

  void Show(int percent) {
    if (terminal_) {
      err_ << "\r" << label_ << ": " << percent << "%" << std::flush;
      shownLine_ = true;
    } else if (percent / 10 > lastTenth_) {
      lastTenth_ = percent / 10;
      err_ << label_ << ": " << percent << "%\n" << std::flush;
    }
  }
  void End() {
    if (shownLine_) err_ << "\n";
    shownLine_ = false;
  }

 private:
  std::ostream& err_;
  std::string label_;
  bool terminal_;
  bool shownLine_ = false;
  int lastTenth_ = 0;  // lines start at 10%
};

// Status texts of the receive ("Receiving ...", "Receive timeout, COM1 closed") to stderr.
class ReceiveHost : public CliHost {
 public:
  explicit ReceiveHost(std::ostream& err) : CliHost(err), err_(err) {}
  void status(std::string_view panel, std::string_view text) override {
    if (echo && panel == "msg" && !text.empty()) err_ << "zemtra-cli receive: " << text << "\n";
  }
  bool echo = false;

 private:
  std::ostream& err_;
};

constexpr int kInterruptCheckMs = 50;

// Runs the receive until it ends; the bytes are appended to `received`. False when the port
// could not be opened, with the reason in `error`; a line error also leaves its reason there.
bool ReceiveUntilEnd(const ComConfig& config, std::ostream& err, std::string& received,
                     std::string& error) {
  ReceiveHost host(err);
  Receiver receiver(host, [&received](std::string_view bytes) { received.append(bytes); });
  if (!receiver.Start(config)) {
    error = receiver.LastError();
    return false;
  }
  err << "zemtra-cli receive: " << PortLabel(config.Port) << " opened, ready to receive\n";
  host.echo = true;
  QEventLoop loop;
  QObject::connect(&receiver, &Receiver::finished, &loop, &QEventLoop::quit);
  QTimer watch;
  QObject::connect(&watch, &QTimer::timeout, &loop, [&receiver] {
    if (InterruptRequested()) receiver.Escape();
  });
  watch.start(kInterruptCheckMs);
  if (receiver.IsOpen()) loop.exec();
  error = receiver.LastError();
  return true;
}

bool WriteReceived(const std::string& out, const std::string& bytes, std::ostream& stdOut) {
  if (out == "-") {
    stdOut << bytes << std::flush;
    return static_cast<bool>(stdOut);
  }
  FileError error;
  return WriteFileAtomically(out, bytes, error);
}

}  // namespace

int RunSendCommand(const std::vector<std::string>& args, std::ostream& out, std::ostream& err) {
  Args parsed;
  if (const ParseOutcome outcome = ParseArgs(kSendSyntax, args, parsed, out, err);
      outcome != ParseOutcome::Run) {
    return outcome == ParseOutcome::Help ? kExitDone : kExitUsage;
  }
  const std::string& file = parsed.positionals().front();
  std::error_code code;
  if (!std::filesystem::is_regular_file(file, code)) {
    err << "zemtra-cli send: cannot read " << file << "\n";
    return kExitUsage;
  }
  int status = kExitDone;
  const std::optional<ComConfig> config = LineConfig("send", parsed, Direction::Send, err, status);
  if (!config) return status;
  ApplicationScope application;
  ProgressPrinter progress(err, "Sending " + file + " to " + PortLabel(config->Port));
  const std::string error = SendFileAndWait(
      *config, file, [&progress](int percent) { progress.Show(percent); }, InterruptRequested);
  progress.End();
  if (error.empty()) return kExitDone;
  err << "zemtra-cli send: " << error << "\n";
  return kExitStopped;
}

int RunReceiveCommand(const std::vector<std::string>& args, std::ostream& out, std::ostream& err) {
  Args parsed;
  if (const ParseOutcome outcome = ParseArgs(kReceiveSyntax, args, parsed, out, err);
      outcome != ParseOutcome::Run) {
    return outcome == ParseOutcome::Help ? kExitDone : kExitUsage;
  }
  const std::optional<std::string> outPath = parsed.value("-o");
  if (!outPath || outPath->empty()) return UsageError("receive", "-o OUT is required", err);
  int status = kExitDone;
  const std::optional<ComConfig> config =
      LineConfig("receive", parsed, Direction::Receive, err, status);
  if (!config) return status;
  ApplicationScope application;
  std::string received;
  std::string error;
  if (!ReceiveUntilEnd(*config, err, received, error)) {
    err << "zemtra-cli receive: " << error << "\n";
    return kExitStopped;
  }
  if (received.empty()) {
    err << "zemtra-cli receive: nothing was received\n";
    return kExitStopped;
  }
  if (!WriteReceived(*outPath, received, out)) {
    err << "zemtra-cli receive: cannot write " << *outPath << "\n";
    return kExitUsage;
  }
  if (!error.empty()) {
    err << "zemtra-cli receive: " << error << "\n";
    return kExitStopped;
  }
  return kExitDone;
}

}  // namespace zemtra
