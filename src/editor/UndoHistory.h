#pragma once
// Multi-level undo and redo of a ProgramDocument. It does not watch single edits: when a step
// is over (a pause in typing, a word-breaking key, a mouse click, or a command) it compares the
// whole text with the last stored state and keeps only the block that differs, so typing, a
// paste and a whole filter run are steps alike, and a step costs little even in a text of many
// megabytes.
//
// The pause is measured by a timer the window owns: TimerChanged asks it to start (for Delay())
// or stop, and the window calls TimerElapsed when it fires. Everything else is driven by calls.
#include <chrono>
#include <cstddef>
#include <functional>
#include <string>
#include <vector>

#include "editor/ProgramDocument.h"

namespace zemtra {

// One step: the text differs from the previous state only between a common prefix and a common
// suffix. The suffix is measured on what remains after the prefix, so the two never overlap.
struct UndoElement {
  std::string TextBlock_BeforeChange;  // the differing middle of the old text
  std::string TextBlock_AfterChange;   // the differing middle of the new text
  std::size_t MatchingCharsFromLeft = 0;
  std::size_t MatchingCharsFromRight = 0;
  std::size_t SelStart_BeforeChange = 0;
  std::size_t SelLength_BeforeChange = 0;
  std::size_t SelStart_AfterChange = 0;
  std::size_t SelLength_AfterChange = 0;
  int FirstVisibleLine = 0;
  std::chrono::system_clock::time_point TimeStamp;
  // Bytes the step keeps.
  std::size_t Size() const { return TextBlock_BeforeChange.size() + TextBlock_AfterChange.size(); }
};

// Virtual key numbers the undo reacts to (the classic key table the window maps its keys to).
namespace undo_keys {
inline constexpr int kReturn = 13;
inline constexpr int kSpace = 32;  // 32 to 44: blank, page, cursor and Select/Print keys
inline constexpr int kLastNavigation = 44;
inline constexpr int kY = 89;
inline constexpr int kZ = 90;
inline constexpr int kF1 = 112;  // 112 to 123: F1 to F12
inline constexpr int kF12 = 123;
}  // namespace undo_keys

// Length of the common prefix of `a` and `b` (or of the common suffix when `fromRight`), found
// by bisection on the length with ever shorter compared stretches; at most the shorter length.
std::size_t MatchingChars(std::string_view a, std::string_view b, bool fromRight);

class UndoHistory : private DocumentObserver {
 public:
  explicit UndoHistory(std::chrono::milliseconds delay = std::chrono::milliseconds(250));
  ~UndoHistory() override;
  UndoHistory(const UndoHistory&) = delete;
  UndoHistory& operator=(const UndoHistory&) = delete;

  // Follows `document` from now on, then Reset. Every method is refused (false, or nothing
  // done) while no document is attached.
  void Attach(ProgramDocument& document);
  void Detach();
  bool Attached() const { return document_ != nullptr; }
  std::chrono::milliseconds Delay() const { return delay_; }

  // Forgets every step: the present text becomes the base state; the document is unmodified.
  void Reset();

  // Off suspends recording (a load). Turned back on, a text changed meanwhile becomes the new
  // base and no step; steps stored before it no longer fit that text and are dropped.
  bool Tracking() const { return tracking_; }
  void SetTracking(bool on);

  // Ends the present step: stores the change since the last state, if any. True when stored.
  bool Snapshot();
  // Undoes up to `levels` steps (after a Snapshot of pending typing) and restores the selection
  // and top line of the earliest one. False when there is nothing to undo.
  bool Undo(int levels = 1);
  // Redoes up to `levels` undone steps. False when there is nothing to redo.
  bool Redo(int levels = 1);
  bool CanUndo() const;
  bool CanRedo() const;
  // Steps that can be undone / redone.
  int UndoCount() const;
  int RedoCount() const;
  // Stored steps, oldest first; element 0 is the base state with empty blocks.
  const std::vector<UndoElement>& UndoStack() const { return undoStack_; }
  // Undone steps; the last one is redone first.
  const std::vector<UndoElement>& RedoStack() const { return redoStack_; }

  // ---- Triggers from the window ----
  // The timer fired: ends the step if recording.
  void TimerElapsed();
  bool TimerRunning() const { return timerRunning_; }
  // A mouse button went down in the text: a pending step ends at once.
  void MouseDown();
  // A key went down. Ctrl+Z undoes and Ctrl+Y redoes one step; both return true, meaning the key
  // is consumed. Return, the keys 32 to 44 and F1 to F12 end a pending step, so a step breaks at
  // words and at line ends.
  bool KeyDown(int virtualKey, bool control);

  // Called after every stored, undone or redone step and after Reset (menus refresh from it).
  std::function<void()> StateChanged;
  // Asks the window's timer to (re)start for Delay() (true) or to stop (false).
  std::function<void(bool run)> TimerChanged;

 private:
  struct Selection {
    std::size_t start = 0;
    std::size_t length = 0;
  };

  void TextReplaced(std::size_t start, std::size_t removed, std::string_view inserted) override;
  void SelectionChanged(std::size_t start, std::size_t length) override;

  void StartTimer();
  void StopTimer();
  void PushBaseElement();
  // Replaces the middle of the present text (prefix and suffix of `element`) by `block`, in
  // the document and in lastText_. False when the text does not fit the step.
  bool ApplyStep(const UndoElement& element, const std::string& present, const std::string& block);
  void RestoreView(std::size_t selStart, std::size_t selLength, int firstVisibleLine);
  // Applies up to `levels` steps taken from the back of `from`, moving each to `to`; `undoing`
  // says which side of a step is the present text. Ends with FinishStepping.
  bool MoveSteps(std::vector<UndoElement>& from, std::vector<UndoElement>& to, int levels,
                 bool undoing);
  // Ends an undo or redo: recording on again, the document modified when a step was applied.
  bool FinishStepping(bool stepped, bool fits);
  // Makes the present text the base state without any step.
  void DropSteps();
  void RaiseStateChanged();

  ProgramDocument* document_ = nullptr;
  std::chrono::milliseconds delay_;
  bool tracking_ = true;
  bool timerRunning_ = false;
  bool changed_ = false;          // the text changed since lastText_ was taken
  bool untrackedChange_ = false;  // ... while recording was off
  std::vector<UndoElement> undoStack_;
  std::vector<UndoElement> redoStack_;
  std::string lastText_;
  Selection selectionBefore_;
  Selection selectionNow_;
};

}  // namespace zemtra
