#include "editor/ProgramDocument.h"

#include <algorithm>

namespace zemtra {

namespace {

// Where a position lands after [start, start + removed) became `inserted` bytes: behind the
// change it shifts, inside it goes to the end of the new text.
std::size_t MovedPosition(std::size_t position, std::size_t start, std::size_t removed,
                          std::size_t inserted) {
  if (position < start) return position;
  if (position >= start + removed) return position - removed + inserted;
  return start + inserted;
}

}  // namespace

void ProgramDocument::AddObserver(DocumentObserver* observer) {
  if (std::find(observers_.begin(), observers_.end(), observer) == observers_.end()) {
    observers_.push_back(observer);
  }
}

void ProgramDocument::RemoveObserver(DocumentObserver* observer) {
  observers_.erase(std::remove(observers_.begin(), observers_.end(), observer), observers_.end());
}

void ProgramDocument::SetText(std::string text, const DocumentObserver* source) {
  const std::size_t oldSize = text_.size();
  text_ = std::move(text);
  lines_.Rebuild(text_);
  const std::vector<DocumentObserver*> observers = observers_;
  for (DocumentObserver* observer : observers) {
    if (observer != source) observer->TextReplaced(0, oldSize, text_);
  }
  SetSelection(0, 0, source);
}

void ProgramDocument::ReplaceRange(std::size_t start, std::size_t length, std::string_view text,
                                   const DocumentObserver* source) {
  start = Clamp(start);
  length = std::min(length, text_.size() - start);
  if (length == 0 && text.empty()) return;
  text_.replace(start, length, text);
  lines_.Replaced(text_, start, length, text.size());

  const std::size_t selEnd = MovedPosition(selStart_ + selLength_, start, length, text.size());
  const std::size_t newStart = MovedPosition(selStart_, start, length, text.size());
  const bool selectionMoved = newStart != selStart_ || selEnd - newStart != selLength_;
  selStart_ = newStart;
  selLength_ = selEnd - newStart;

  const std::vector<DocumentObserver*> observers = observers_;
  for (DocumentObserver* observer : observers) {
    if (observer != source) observer->TextReplaced(start, length, text);
  }
  if (selectionMoved) NotifySelection(source);
}

void ProgramDocument::SetSelection(std::size_t start, std::size_t length,
                                   const DocumentObserver* source) {
  start = Clamp(start);
  length = std::min(length, text_.size() - start);
  if (start == selStart_ && length == selLength_) return;
  selStart_ = start;
  selLength_ = length;
  NotifySelection(source);
}

void ProgramDocument::ReplaceSelection(std::string_view text, const DocumentObserver* source) {
  const std::size_t start = selStart_;
  ReplaceRange(start, selLength_, text, source);
  SetSelection(start + text.size(), 0, source);
}

void ProgramDocument::NotifySelection(const DocumentObserver* source) {
  const std::vector<DocumentObserver*> observers = observers_;
  for (DocumentObserver* observer : observers) {
    if (observer != source) observer->SelectionChanged(selStart_, selLength_);
  }
}

std::size_t ProgramDocument::LineStart(int line) const {
  if (line >= LineCount()) return text_.size();
  return lines_.LineStart(line);
}

std::size_t ProgramDocument::LineLength(int line) const {
  return LineText(line).size();
}

std::string_view ProgramDocument::LineText(int line) const {
  if (line < 0 || line >= LineCount()) return {};
  const std::size_t start = lines_.LineStart(line);
  if (line + 1 >= LineCount()) return std::string_view(text_).substr(start);
  // Behind the line stands its break: CR LF, or a lone CR or LF.
  std::size_t end = lines_.LineStart(line + 1);
  const bool crLf = end - start >= 2 && text_[end - 1] == '\n' && text_[end - 2] == '\r';
  end -= crLf ? 2 : 1;
  return std::string_view(text_).substr(start, end - start);
}

bool ProgramDocument::SelectProgramLine(int line) {
  if (line < 0 || line >= LineCount()) return false;
  const std::size_t start = lines_.LineStart(line);
  const std::size_t end = line + 1 < LineCount() ? lines_.LineStart(line + 1) : text_.size();
  SetSelection(start, end - start);
  return true;
}

void ProgramDocument::SetFirstVisibleLine(int line, const DocumentObserver* source) {
  line = std::clamp(line, 0, LineCount() - 1);
  if (line == firstVisibleLine_) return;
  firstVisibleLine_ = line;
  const std::vector<DocumentObserver*> observers = observers_;
  for (DocumentObserver* observer : observers) {
    if (observer != source) observer->FirstVisibleLineChanged(line);
  }
}

void ProgramDocument::SetDocumentModified(bool modified) {
  if (modified == modified_) return;
  modified_ = modified;
  const std::vector<DocumentObserver*> observers = observers_;
  for (DocumentObserver* observer : observers) observer->ModifiedChanged(modified);
}

}  // namespace zemtra
