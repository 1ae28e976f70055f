#pragma once
// The transmit window: sends one file to the machine in the background, with start, pause and
// cancel, the progress, the waiting state of the link and the running time without pauses.
// Shown without blocking the main window; one at a time.
#include <QWidget>
#include <memory>
#include <string>

class QCloseEvent;
class QLabel;
class QProgressBar;
class QPushButton;
class QTimer;

namespace zemtra {

class Host;
class SettingsStore;
class Transmitter;
struct DncSession;

class TransmitWindow : public QWidget {
 public:
  // Sends `filePath` with the configuration in force of `session`; `fileName` is shown in the
  // status bar; with `killOnExit` the file is a temporary copy deleted when the window closes.
  // The window position is kept in the settings ("TX Left", "TX Top").
  TransmitWindow(DncSession& session, Host& host, SettingsStore& settings, std::string filePath,
                 std::string fileName, bool killOnExit, QWidget* parent = nullptr);
  ~TransmitWindow() override;

  bool Busy() const;  // a send runs, a pause included

  // The window's buttons, for the menu commands and tests.
  void Start();
  void Pause();
  void Cancel();

 protected:
  void closeEvent(QCloseEvent* event) override;

 private:
  void BuildControls();
  void StartSending();
  void Poll();  // every 250 ms while sending
  void SetButtons(bool start, bool pause, bool cancel);

  DncSession& session_;
  Host& host_;
  SettingsStore& settings_;
  std::string filePath_;
  bool killOnExit_;
  std::unique_ptr<Transmitter> transmitter_;
  QTimer* timer1_ = nullptr;
  QProgressBar* pbProgress_ = nullptr;
  QPushButton* cmdStart_ = nullptr;
  QPushButton* cmdPause_ = nullptr;
  QPushButton* cmdCancel_ = nullptr;
  QLabel* panelFile_ = nullptr;
  QLabel* panelWait_ = nullptr;
  QLabel* panelTime_ = nullptr;
};

}  // namespace zemtra
