#pragma once
// The Communication menu: RS232 set-up, sending the program, a selection or a file to the
// machine through the transmit window (which sends in the background while the user works),
// and receiving a program from the machine into the text at the caret. Esc closes a receiving
// port; closing the main window first asks a running send to stop.
#include <QObject>
#include <QPointer>
#include <string>
#include <string_view>

#include "dnc/ComConfig.h"

namespace zemtra {

class Plot;
class Receiver;
class TransmitWindow;

class DncCommands : public QObject {
  Q_OBJECT
 public:
  explicit DncCommands(Plot& plot);
  ~DncCommands() override;

  // The configuration in force; its name is the "COM Config" setting.
  DncSession& Session() { return session_; }
  Receiver& GetReceiver() { return *receiver_; }
  // The transmit window while it is open, else nullptr.
  TransmitWindow* TransmitView() const;

  // mnuDNCCommSetup: the "RS232 Communications Setup" dialog, modal.
  void CommSetup();
  // mnuDNCSend: the whole program, by way of a temporary file.
  void Send();
  // mnuDNCSendSelected: the selected text; "Nothing is selected!" when there is none.
  void SendSelected();
  // mnuDNCSendFile: a file the user chooses, sent as it is on disk.
  void SendFile();
  // mnuDNCReceive: opens the port; what arrives goes into the text at the caret.
  void Receive();
  // mnuDNCReceiveAsNew: a new empty document (after the save prompt), then Receive.
  void ReceiveAsNew();
  // Esc: closes a receiving port, saying so in the "msg" panel.
  void Escape();

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  void AddCommands();
  // Brings up an open transmit window; true when one is open (the command then ends).
  bool TransmitWindowBusy();
  // Loads the configuration in force when none is loaded (a baud of 0).
  void PrepareConfig();
  // Writes `bytes` to a new temporary file; "" (after saying why) when it can't.
  std::string WriteTempFile(std::string_view bytes);
  // The document text `text` as the bytes of its file's encoding.
  std::string FileBytesOf(std::string_view text) const;
  void OpenTransmitWindow(const std::string& path, const std::string& fileName, bool killOnExit);
  std::string CurrentFileName() const;
  void InsertReceived(std::string_view bytes);

  Plot& plot_;
  DncSession session_;
  Receiver* receiver_ = nullptr;
  QPointer<TransmitWindow> transmit_;
};

}  // namespace zemtra
