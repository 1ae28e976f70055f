#pragma once
// The program document: the text of one CNC program as the editor holds it (UTF-8, every line
// end CR LF), its selection, its file name, encoding and modified flag. It offers the text
// operations every editor command works through (whole text, selection, lines); a window
// showing the text mirrors it through a DocumentObserver.
//
// Positions and lengths are byte offsets into Text(). Lines are 0-based.
#include <cstddef>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "editor/LineIndex.h"
#include "editor/TextEncoding.h"

namespace zemtra {

// Told of every change of a ProgramDocument, except those it made itself (passed as `source`).
class DocumentObserver {
 public:
  virtual ~DocumentObserver() = default;
  // Bytes [start, start + removed) of the old text were replaced by `inserted`.
  virtual void TextReplaced(std::size_t /*start*/, std::size_t /*removed*/,
                            std::string_view /*inserted*/) {}
  virtual void SelectionChanged(std::size_t /*start*/, std::size_t /*length*/) {}
  // The top line of the view should become `line`.
  virtual void FirstVisibleLineChanged(int /*line*/) {}
  virtual void ModifiedChanged(bool /*modified*/) {}
};

class ProgramDocument {
 public:
  ProgramDocument() = default;
  ProgramDocument(const ProgramDocument&) = delete;
  ProgramDocument& operator=(const ProgramDocument&) = delete;

  // Observers are not owned and must outlive their registration.
  void AddObserver(DocumentObserver* observer);
  void RemoveObserver(DocumentObserver* observer);

  // ---- Text ----
  const std::string& Text() const { return text_; }
  std::size_t Size() const { return text_.size(); }
  // Replaces the whole text; the selection collapses to the start.
  void SetText(std::string text, const DocumentObserver* source = nullptr);
  // Replaces [start, start + length) by `text`. Offsets past the end clamp to it. The selection
  // follows the text around it, as in an editor.
  void ReplaceRange(std::size_t start, std::size_t length, std::string_view text,
                    const DocumentObserver* source = nullptr);

  // ---- Selection ----
  std::size_t SelStart() const { return selStart_; }
  std::size_t SelLength() const { return selLength_; }
  std::string SelText() const { return text_.substr(selStart_, selLength_); }
  // Selects [start, start + length), clamped to the text.
  void SetSelection(std::size_t start, std::size_t length,
                    const DocumentObserver* source = nullptr);
  // Puts the caret at `start` (the selection collapses), as setting SelStart does.
  void SetSelStart(std::size_t start) { SetSelection(start, 0); }
  void SetSelLength(std::size_t length) { SetSelection(selStart_, length); }
  // SelText := `text`: replaces the selection and puts the caret behind the new text.
  void ReplaceSelection(std::string_view text, const DocumentObserver* source = nullptr);

  // ---- Lines ----
  int LineCount() const { return lines_.LineCount(); }
  // Line holding byte `position`.
  int LineFromChar(std::size_t position) const { return lines_.LineFromPosition(position); }
  // First byte of `line`; Size() for a line past the end.
  std::size_t LineStart(int line) const;
  // Length of `line` without its line break; 0 for a line outside the text.
  std::size_t LineLength(int line) const;
  // Text of `line` without its line break; "" for a line outside the text. The view is valid
  // until the next change.
  std::string_view LineText(int line) const;
  // The same as a string, as the editor commands fetch a program line.
  std::string GetProgramLine(int line) const { return std::string(LineText(line)); }
  // Line of the caret (SelStart).
  int CurrentLineIndex() const { return LineFromChar(selStart_); }
  // Selects `line` with its line break. False when there is no such line.
  bool SelectProgramLine(int line);

  // Top line shown by the view; the window keeps it current with `source` = itself, and a
  // command that scrolls sets it for the view to follow.
  int FirstVisibleLine() const { return firstVisibleLine_; }
  void SetFirstVisibleLine(int line, const DocumentObserver* source = nullptr);

  // ---- File ----
  // Full path of the document, "" when untitled.
  const std::string& CurrentFile() const { return currentFile_; }
  void SetCurrentFile(std::string path) { currentFile_ = std::move(path); }
  // How the file was encoded; a save writes it back so.
  TextEncoding Encoding() const { return encoding_; }
  void SetEncoding(TextEncoding encoding) { encoding_ = encoding; }
  // The line end the file came with (GetEOLSequence), "\r\n" for a new document.
  const std::string& FileLineEnd() const { return fileLineEnd_; }
  void SetFileLineEnd(std::string eol) { fileLineEnd_ = std::move(eol); }

  bool DocumentModified() const { return modified_; }
  void SetDocumentModified(bool modified);

 private:
  std::size_t Clamp(std::size_t position) const {
    return position < text_.size() ? position : text_.size();
  }
  void NotifySelection(const DocumentObserver* source);

  std::string text_;
  LineIndex lines_;
  std::size_t selStart_ = 0;
  std::size_t selLength_ = 0;
  int firstVisibleLine_ = 0;
  std::string currentFile_;
  TextEncoding encoding_ = TextEncoding::Utf8;
  std::string fileLineEnd_ = "\r\n";
  bool modified_ = false;
  std::vector<DocumentObserver*> observers_;
};

}  // namespace zemtra
