#include "editor/UndoHistory.h"

#include <algorithm>
#include <cstring>

namespace zemtra {

namespace {

// A step must not cut a character in two or part a CR from its LF: the window mirrors steps
// as edits of whole characters.
bool IsCutPoint(std::string_view text, std::size_t position) {
  if (position == 0 || position >= text.size()) return true;
  const auto byte = static_cast<unsigned char>(text[position]);
  if ((byte & 0xC0) == 0x80) return false;
  return !(text[position] == '\n' && text[position - 1] == '\r');
}

}  // namespace

std::size_t MatchingChars(std::string_view a, std::string_view b, bool fromRight) {
  const std::size_t limit = std::min(a.size(), b.size());
  std::size_t lo = 0;  // characters known to match
  std::size_t hi = limit;
  while (lo < hi) {
    const std::size_t mid = std::max(lo + (hi - lo) / 2, lo + 1);
    // Only the stretch not tested yet: characters lo+1 to mid.
    const char* left = fromRight ? a.data() + a.size() - mid : a.data() + lo;
    const char* right = fromRight ? b.data() + b.size() - mid : b.data() + lo;
    if (std::memcmp(left, right, mid - lo) == 0) {
      lo = mid;
    } else {
      hi = mid - 1;
    }
  }
  return lo;
}

UndoHistory::UndoHistory(std::chrono::milliseconds delay) : delay_(delay) {}

UndoHistory::~UndoHistory() {
  Detach();
}

void UndoHistory::Attach(ProgramDocument& document) {
  Detach();
  document_ = &document;
  document.AddObserver(this);
  selectionNow_ = {document.SelStart(), document.SelLength()};
  tracking_ = true;
  Reset();
}

void UndoHistory::Detach() {
  if (!document_) return;
  StopTimer();
  document_->RemoveObserver(this);
  document_ = nullptr;
  undoStack_.clear();
  redoStack_.clear();
  lastText_.clear();
}

void UndoHistory::Reset() {
  if (!document_) return;
  StopTimer();
  undoStack_.clear();
  redoStack_.clear();
  lastText_ = document_->Text();
  changed_ = untrackedChange_ = false;
  selectionBefore_ = selectionNow_ = {document_->SelStart(), document_->SelLength()};
  PushBaseElement();
  document_->SetDocumentModified(false);
  RaiseStateChanged();
}

void UndoHistory::PushBaseElement() {
  UndoElement base;
  base.SelStart_BeforeChange = base.SelStart_AfterChange = selectionNow_.start;
  base.SelLength_BeforeChange = base.SelLength_AfterChange = selectionNow_.length;
  base.FirstVisibleLine = document_->FirstVisibleLine();
  base.TimeStamp = std::chrono::system_clock::now();
  undoStack_.push_back(std::move(base));
}

void UndoHistory::SetTracking(bool on) {
  if (on == tracking_) return;
  tracking_ = on;
  if (on && untrackedChange_) DropSteps();
}

void UndoHistory::DropSteps() {
  // The present text becomes the base. Stored steps were measured on another text and cannot
  // be applied to this one, so they go too.
  StopTimer();
  undoStack_.clear();
  redoStack_.clear();
  lastText_ = document_->Text();
  changed_ = untrackedChange_ = false;
  selectionBefore_ = selectionNow_ = {document_->SelStart(), document_->SelLength()};
  PushBaseElement();
  RaiseStateChanged();
}

bool UndoHistory::Snapshot() {
  if (!document_) return false;
  StopTimer();
  if (!changed_) return false;
  changed_ = false;
  const std::string& text = document_->Text();
  std::size_t left = MatchingChars(lastText_, text, false);
  if (left == text.size() && left == lastText_.size()) return false;  // changed back
  while (!IsCutPoint(lastText_, left) || !IsCutPoint(text, left)) --left;

  const std::string_view before = std::string_view(lastText_).substr(left);
  const std::string_view after = std::string_view(text).substr(left);
  std::size_t right = MatchingChars(before, after, true);
  while (right > 0 && (!IsCutPoint(lastText_, lastText_.size() - right) ||
                       !IsCutPoint(text, text.size() - right))) {
    --right;
  }

  UndoElement element;
  element.TextBlock_BeforeChange = std::string(before.substr(0, before.size() - right));
  element.TextBlock_AfterChange = std::string(after.substr(0, after.size() - right));
  element.MatchingCharsFromLeft = left;
  element.MatchingCharsFromRight = right;
  element.SelStart_BeforeChange = selectionBefore_.start;
  element.SelLength_BeforeChange = selectionBefore_.length;
  element.SelStart_AfterChange = document_->SelStart();
  element.SelLength_AfterChange = document_->SelLength();
  element.FirstVisibleLine = document_->FirstVisibleLine();
  element.TimeStamp = std::chrono::system_clock::now();

  // Bring lastText_ up to date by the changed block alone, not a copy of the whole text.
  lastText_.replace(left, element.TextBlock_BeforeChange.size(), element.TextBlock_AfterChange);
  undoStack_.push_back(std::move(element));
  redoStack_.clear();  // a new edit ends redo
  selectionBefore_ = selectionNow_ = {document_->SelStart(), document_->SelLength()};
  RaiseStateChanged();
  return true;
}

bool UndoHistory::ApplyStep(const UndoElement& element, const std::string& present,
                            const std::string& block) {
  const std::size_t left = element.MatchingCharsFromLeft;
  const std::size_t right = element.MatchingCharsFromRight;
  const std::string& text = document_->Text();
  if (left + present.size() + right != text.size()) return false;
  document_->ReplaceRange(left, present.size(), block);
  lastText_.replace(left, present.size(), block);
  return true;
}

void UndoHistory::RestoreView(std::size_t selStart, std::size_t selLength, int firstVisibleLine) {
  document_->SetSelection(selStart, selLength);
  document_->SetFirstVisibleLine(firstVisibleLine);
  selectionBefore_ = selectionNow_ = {document_->SelStart(), document_->SelLength()};
}

bool UndoHistory::Undo(int levels) {
  if (!document_ || !tracking_) return false;
  Snapshot();  // pending typing is a step of its own
  if (undoStack_.size() < 2 || levels < 1) return false;
  return MoveSteps(undoStack_, redoStack_,
                   std::min(levels, static_cast<int>(undoStack_.size()) - 1), true);
}

bool UndoHistory::Redo(int levels) {
  if (!document_ || !tracking_) return false;
  if (changed_) Snapshot();  // an edit since the last step ends redo
  if (redoStack_.empty() || levels < 1) return false;
  return MoveSteps(redoStack_, undoStack_, std::min(levels, static_cast<int>(redoStack_.size())),
                   false);
}

bool UndoHistory::MoveSteps(std::vector<UndoElement>& from, std::vector<UndoElement>& to,
                            int levels, bool undoing) {
  tracking_ = false;  // the edits below are no steps
  const UndoElement* last = nullptr;
  bool fits = true;
  for (int level = 0; level < levels; ++level) {
    UndoElement& element = from.back();
    const std::string& present =
        undoing ? element.TextBlock_AfterChange : element.TextBlock_BeforeChange;
    const std::string& wanted =
        undoing ? element.TextBlock_BeforeChange : element.TextBlock_AfterChange;
    fits = ApplyStep(element, present, wanted);
    if (!fits) break;
    to.push_back(std::move(element));
    from.pop_back();
    last = &to.back();
  }
  if (last) {
    if (undoing) {
      RestoreView(last->SelStart_BeforeChange, last->SelLength_BeforeChange,
                  last->FirstVisibleLine);
    } else {
      RestoreView(last->SelStart_AfterChange, last->SelLength_AfterChange, last->FirstVisibleLine);
    }
  }
  return FinishStepping(last != nullptr, fits);
}

bool UndoHistory::FinishStepping(bool stepped, bool fits) {
  tracking_ = true;
  changed_ = untrackedChange_ = false;  // the steps' own edits
  if (stepped) document_->SetDocumentModified(true);
  if (!fits) {
    DropSteps();  // never apply a step to a text it was not made on
  } else {
    RaiseStateChanged();
  }
  return stepped;
}

bool UndoHistory::CanUndo() const {
  return document_ && tracking_ && undoStack_.size() > 1;
}

bool UndoHistory::CanRedo() const {
  return document_ && tracking_ && !redoStack_.empty();
}

int UndoHistory::UndoCount() const {
  return undoStack_.empty() ? 0 : static_cast<int>(undoStack_.size()) - 1;
}

int UndoHistory::RedoCount() const {
  return static_cast<int>(redoStack_.size());
}

void UndoHistory::TimerElapsed() {
  if (!document_) return;
  if (tracking_) {
    Snapshot();
  } else {
    StopTimer();
  }
}

void UndoHistory::MouseDown() {
  if (document_ && timerRunning_) Snapshot();
}

bool UndoHistory::KeyDown(int virtualKey, bool control) {
  if (!document_) return false;
  if (control && virtualKey == undo_keys::kZ) {
    Undo(1);
    return true;
  }
  if (control && virtualKey == undo_keys::kY) {
    Redo(1);
    return true;
  }
  const bool breaksStep =
      virtualKey == undo_keys::kReturn ||
      (virtualKey >= undo_keys::kSpace && virtualKey <= undo_keys::kLastNavigation) ||
      (virtualKey >= undo_keys::kF1 && virtualKey <= undo_keys::kF12);
  if (breaksStep && timerRunning_) Snapshot();
  return false;
}

void UndoHistory::TextReplaced(std::size_t, std::size_t, std::string_view) {
  if (!tracking_) {
    untrackedChange_ = true;
    return;
  }
  changed_ = true;
  StartTimer();
  document_->SetDocumentModified(true);
}

void UndoHistory::SelectionChanged(std::size_t start, std::size_t length) {
  selectionBefore_ = selectionNow_;
  selectionNow_ = {start, length};
}

void UndoHistory::StartTimer() {
  timerRunning_ = true;
  if (TimerChanged) TimerChanged(true);
}

void UndoHistory::StopTimer() {
  if (!timerRunning_) return;
  timerRunning_ = false;
  if (TimerChanged) TimerChanged(false);
}

void UndoHistory::RaiseStateChanged() {
  if (StateChanged) StateChanged();
}

}  // namespace zemtra
