#include "app/DncCommands.h"

#include <QAction>
#include <QCloseEvent>
#include <QMenu>
#include <array>
#include <exception>
#include <filesystem>
#include <fstream>

#include "app/CommSetupDialog.h"
#include "app/DocumentCommands.h"
#include "app/Plot.h"
#include "app/PlotActions.h"
#include "app/ProgramTextView.h"
#include "app/QtHost.h"
#include "app/TransmitWindow.h"
#include "app/Workspace.h"
#include "core/TempFiles.h"
#include "core/Version.h"
#include "dnc/Receiver.h"
#include "editor/TextEncoding.h"

namespace zemtra {

namespace {

struct MenuRow {
  const char* name;
  const char* caption;
  void (DncCommands::*command)();
};

// The Communication menu, in menu order.
constexpr std::array kMenuRows{
    MenuRow{"mnuDNCCommSetup", "RS232 &Setup...", &DncCommands::CommSetup},
    MenuRow{"mnuDNCSend", "&Send Program", &DncCommands::Send},
    MenuRow{"mnuDNCSendSelected", "Send Se&lected Text", &DncCommands::SendSelected},
    MenuRow{"mnuDNCSendFile", "Send &File...", &DncCommands::SendFile},
    MenuRow{"mnuDNCReceive", "&Receive", &DncCommands::Receive},
    MenuRow{"mnuDNCReceiveAsNew", "Receive as &New Program", &DncCommands::ReceiveAsNew},
};
constexpr std::size_t kSeparatorBefore = 1;  // set-up apart from the transfers
constexpr std::size_t kSecondSeparatorBefore = 4;

// Received bytes as editor text (UTF-8): ASCII as it is, any other byte as its Latin-1
// character, so that no byte is lost and the text stays well-formed.
std::string ReceivedText(std::string_view bytes) {
  std::string text;
  text.reserve(bytes.size());
  for (const char c : bytes) {
    const auto byte = static_cast<unsigned char>(c);
    if (byte < 0x80) {
      text.push_back(c);
    } else {
      text.push_back(static_cast<char>(0xC0 | (byte >> 6)));
      text.push_back(static_cast<char>(0x80 | (byte & 0x3F)));
    }
  }
  return text;
}

}  // namespace

DncCommands::DncCommands(Plot& plot) : QObject(&plot), plot_(plot) {
  setObjectName(QStringLiteral("DncCommands"));
  session_.AppFolder = plot.Environment().ApplicationFolder;
  receiver_ = new Receiver(
      plot.GetHost(), [this](std::string_view bytes) { InsertReceived(bytes); }, this);
  AddCommands();
  connect(&plot, &Plot::abortRequested, this, &DncCommands::Escape);
  plot.installEventFilter(this);
}

DncCommands::~DncCommands() = default;

void DncCommands::AddCommands() {
  PlotActions& actions = plot_.Actions();
  QMenu* menu = actions.Menu(QStringLiteral("mnuDNC"));
  for (std::size_t row = 0; row < kMenuRows.size(); ++row) {
    if (row == kSeparatorBefore || row == kSecondSeparatorBefore) menu->addSeparator();
    const MenuRow& entry = kMenuRows[row];
    QAction* action = actions.AddCommand(menu, entry.name, entry.caption);
    connect(action, &QAction::triggered, this,
            [this, command = entry.command] { (this->*command)(); });
  }
}

TransmitWindow* DncCommands::TransmitView() const {
  return transmit_;
}

// --- Set-up -------------------------------------------------------------------------------------

void DncCommands::PrepareConfig() {
  if (session_.Config.Baud != 0) return;
  session_.ConfigName = plot_.Settings().ComConfig;
  session_.EnsureComConfig(plot_.GetHost());
  plot_.Settings().ComConfig = session_.ConfigName;
}

void DncCommands::CommSetup() {
  if (session_.Config.Baud == 0) session_.ConfigName = plot_.Settings().ComConfig;
  CommSetupDialog dialog(session_, plot_.GetHost(), &plot_);
  dialog.setObjectName(QStringLiteral("frmCommSetup"));
  dialog.exec();
  plot_.Settings().ComConfig = session_.ConfigName;
}

// --- Transmit -----------------------------------------------------------------------------------

bool DncCommands::TransmitWindowBusy() {
  if (transmit_.isNull()) return false;
  transmit_->showNormal();
  transmit_->raise();
  transmit_->activateWindow();
  return true;
}

std::string DncCommands::CurrentFileName() const {
  const std::string& file = plot_.Engine().Editor.Document.CurrentFile();
  return file.empty() ? std::string() : std::filesystem::path(file).filename().string();
}

std::string DncCommands::FileBytesOf(std::string_view text) const {
  TextEncoding encoding = plot_.Engine().Editor.Document.Encoding();
  return EncodeProgramText(text, encoding);
}

std::string DncCommands::WriteTempFile(std::string_view bytes) {
  const std::string path = TempFileName();
  bool written = false;
  if (!path.empty()) {
    std::ofstream out(path, std::ios::binary | std::ios::trunc);
    out.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
    written = static_cast<bool>(out.flush());
  }
  if (written) return path;
  plot_.GetHost().ask(
      Prompt{"Error in DNCSend\r\nCan't write a temporary file in " + TempFolder().string(),
             kProductName, MsgIcon::Stop, MsgButtons::Ok});
  if (!path.empty()) std::filesystem::remove(path);
  return {};
}

void DncCommands::OpenTransmitWindow(const std::string& path, const std::string& fileName,
                                     bool killOnExit) {
  transmit_ = new TransmitWindow(session_, plot_.GetHost(), plot_.Store(), path, fileName,
                                 killOnExit, &plot_);
  transmit_->setObjectName(QStringLiteral("frmTransmit"));
  transmit_->show();
}

void DncCommands::Send() {
  if (TransmitWindowBusy()) return;
  PrepareConfig();
  const std::string path = WriteTempFile(FileBytesOf(plot_.Engine().Editor.Document.Text()));
  if (!path.empty()) OpenTransmitWindow(path, CurrentFileName(), true);
}

void DncCommands::SendSelected() {
  if (TransmitWindowBusy()) return;
  PrepareConfig();
  const std::string selection = plot_.Engine().Editor.Document.SelText();
  if (selection.empty()) {
    plot_.GetHost().ask(
        Prompt{"Nothing is selected!", kProductName, MsgIcon::Exclamation, MsgButtons::Ok});
    return;
  }
  const std::string path = WriteTempFile(FileBytesOf(selection));
  if (!path.empty()) OpenTransmitWindow(path, CurrentFileName(), true);
}

void DncCommands::SendFile() {
  if (TransmitWindowBusy()) return;
  PrepareConfig();
  const std::string path = plot_.GetHost().chooseFile(
      "Select File to Transmit", plot_.Settings().General.LastPath, "All Files (*)");
  std::error_code error;
  if (path.empty() || !std::filesystem::is_regular_file(path, error)) return;
  OpenTransmitWindow(path, std::filesystem::path(path).filename().string(), false);
}

// --- Receive ------------------------------------------------------------------------------------

void DncCommands::Receive() {
  if (TransmitWindowBusy()) return;
  try {
    PrepareConfig();
    receiver_->Start(session_.Config);
  } catch (const std::exception& failure) {
    plot_.GetHost().ask(Prompt{std::string("Error in DNCReceive!\r\n") + failure.what(),
                               kProductName, MsgIcon::Stop, MsgButtons::Ok});
  }
}

void DncCommands::ReceiveAsNew() {
  if (plot_.Busy || TransmitWindowBusy()) return;
  plot_.Documents().Close();
  const ProgramDocument& document = plot_.Engine().Editor.Document;
  if (!document.Text().empty() || !document.CurrentFile().empty()) return;  // save cancelled
  Receive();
}

void DncCommands::InsertReceived(std::string_view bytes) {
  plot_.Engine().Editor.Document.ReplaceSelection(ReceivedText(bytes));
  plot_.Editor()->EnsureCaretVisible();
}

void DncCommands::Escape() {
  receiver_->Escape();
}

// --- Main window ----------------------------------------------------------------------------

// A close of the main window first asks a running send to stop; once the window has gone, a
// receiving port is closed.
bool DncCommands::eventFilter(QObject* watched, QEvent* event) {
  if (watched != &plot_) return false;
  if (event->type() == QEvent::Close && !transmit_.isNull() && !transmit_->close()) {
    event->ignore();
    return true;
  }
  if (event->type() == QEvent::Hide && !plot_.isVisible()) receiver_->Close();
  return false;
}

}  // namespace zemtra
