#pragma once
// The engine's Host in the window: message boxes with the asked icon and buttons, the status
// bar panels, the progress bar, the event pump, the Esc flag and the file dialog.
#include <functional>
#include <string>

#include "core/Host.h"

class QWidget;

namespace zemtra {

class StatusPanels;

class QtHost : public Host {
 public:
  // Replaces the message box (tests, scripted runs): receives each prompt, returns the answer.
  using PromptHandler = std::function<MsgAnswer(const Prompt&)>;

  QtHost(QWidget* window, StatusPanels& panels);

  MsgAnswer ask(const Prompt& prompt) override;
  void status(std::string_view panel, std::string_view text) override;
  void progress(int percent) override;
  void pumpEvents() override;
  bool abortRequested() const override { return abortRequested_; }
  void moveCaret(int line) override;
  std::string chooseFile(std::string_view title, std::string_view folder,
                         std::string_view filter) override;
  void entityStored(const GeometryTable& table, int index) override;

  // Set by Esc, cleared when a new command starts.
  void setAbortRequested(bool requested) { abortRequested_ = requested; }
  void setPromptHandler(PromptHandler handler) { promptHandler_ = std::move(handler); }
  // Replaces the file dialog of chooseFile (tests): receives title, folder and filter.
  using FileChooser =
      std::function<std::string(std::string_view, std::string_view, std::string_view)>;
  void setFileChooser(FileChooser chooser) { fileChooser_ = std::move(chooser); }
  void setCaretMover(std::function<void(int)> mover) { caretMover_ = std::move(mover); }
  // Runs before each pump of events (what was drawn meanwhile is shown).
  void setPumpHook(std::function<void()> hook) { pumpHook_ = std::move(hook); }
  void setEntityObserver(std::function<void(const GeometryTable&, int)> observer) {
    entityObserver_ = std::move(observer);
  }

 private:
  QWidget* window_;
  StatusPanels& panels_;
  bool abortRequested_ = false;
  PromptHandler promptHandler_;
  FileChooser fileChooser_;
  std::function<void(int)> caretMover_;
  std::function<void()> pumpHook_;
  std::function<void(const GeometryTable&, int)> entityObserver_;
};

}  // namespace zemtra
