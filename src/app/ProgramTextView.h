#pragma once
// The program text control rtPgm: an editor view drawn straight from the ProgramDocument, a
// line at a time, so that a program of millions of lines opens at once and only the lines in
// sight are laid out and coloured. Edits go to the document as byte ranges (the document's
// observers, undo among them, see them as any other change); the document's own changes
// (undo, filters, replace all) come back through DocumentObserver.
//
// Positions are byte offsets of the document's text (UTF-8, line ends CR LF).
#include <QAbstractScrollArea>
#include <QColor>
#include <QFont>
#include <QList>
#include <QTextLayout>
#include <array>
#include <cstdint>
#include <span>
#include <vector>

#include "editor/Colorize.h"
#include "editor/ProgramDocument.h"

class QTimer;

namespace zemtra {

class UndoHistory;

class ProgramTextView : public QAbstractScrollArea, private DocumentObserver {
  Q_OBJECT
 public:
  explicit ProgramTextView(ProgramDocument& document, QWidget* parent = nullptr);
  ~ProgramTextView() override;

  // Mouse and key triggers of the undo steps; Ctrl+Z and Ctrl+Y reach it first.
  void SetUndo(UndoHistory* undo) { undo_ = undo; }

  // --- Look ---
  void SetEditorFont(const QFont& font);
  QFont EditorFont() const { return font_; }
  // Background as 0x00BBGGRR; the text colour follows (black on light, white on dark).
  void SetBackground(std::int32_t color);
  // The colour table of ColorizeLine's indices, 0x00BBGGRR, 1-based.
  void SetAddressColors(std::span<const std::int32_t> colors);
  // Typed letters become capitals.
  void SetAlwaysCaps(bool on) { alwaysCaps_ = on; }

  // --- Colouring ---
  // Receives a whole-program colouring pass; from then on lines are shown in their colours.
  ColorSink Colorizer();
  // Shows the lines in colour (after a pass) or plain.
  void SetColoringActive(bool active);
  bool ColoringActive() const { return coloringActive_; }
  // The colour runs `line` is shown in (UTF-16 offsets of the line); none while colouring is
  // off. A line takes up the colour the line above ended in.
  std::vector<ColorRun> ColorRunsOf(int line);

  // --- Caret, selection, view ---
  std::size_t CaretPosition() const { return caret_; }
  // 0-based line of the caret.
  int CaretLine() const;
  // Selects [anchor, caret) in either direction and shows the caret.
  void SetSelection(std::size_t anchor, std::size_t caret);
  // Scrolls so that the caret is in sight.
  void EnsureCaretVisible();
  int FirstVisibleLine() const;
  int VisibleLineCount() const;
  // Context menu entries (the window's edit commands).
  void SetContextActions(const QList<QAction*>& actions) { contextActions_ = actions; }

  // --- Edit commands ---
  void Cut();
  void Copy() const;
  void Paste();
  void SelectAll();
  bool HasSelection() const { return anchor_ != caret_; }
  // Puts `text` (any line ends) in place of the selection, as typed.
  void InsertText(const QString& text);

 signals:
  void caretLineChanged(int line);  // 1-based
  void selectionChanged();
  void textChanged();
  void filesDropped(const QStringList& paths);

 protected:
  void paintEvent(QPaintEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;
  void mousePressEvent(QMouseEvent* event) override;
  void mouseMoveEvent(QMouseEvent* event) override;
  void mouseReleaseEvent(QMouseEvent* event) override;
  void mouseDoubleClickEvent(QMouseEvent* event) override;
  void focusInEvent(QFocusEvent* event) override;
  void focusOutEvent(QFocusEvent* event) override;
  void contextMenuEvent(QContextMenuEvent* event) override;
  void inputMethodEvent(QInputMethodEvent* event) override;
  QVariant inputMethodQuery(Qt::InputMethodQuery query) const override;
  void scrollContentsBy(int dx, int dy) override;
  void dragEnterEvent(QDragEnterEvent* event) override;
  void dropEvent(QDropEvent* event) override;
  bool event(QEvent* event) override;

 private:
  // DocumentObserver.
  void TextReplaced(std::size_t start, std::size_t removed, std::string_view inserted) override;
  void SelectionChanged(std::size_t start, std::size_t length) override;
  void FirstVisibleLineChanged(int line) override;

  // Layout and geometry.
  void UpdateMetrics();
  void UpdateScrollBars();
  void MeasureLines(int first, int last);
  QString LineString(int line) const;
  void LayOut(QTextLayout& layout, int line,
              const QList<QTextLayout::FormatRange>& formats = {}) const;
  int LineAtY(double y) const;
  std::size_t PositionAt(const QPointF& point) const;
  double CaretX(std::size_t position) const;
  std::size_t PositionAtX(int line, double x) const;
  QRect CaretRect() const;
  double TextLeft() const;

  // Colour of the lines.
  int CarriedColor(int line);
  void AddColorFormats(int line, QList<QTextLayout::FormatRange>& out);
  void ComputeRuns(int line);

  // Moving and editing.
  std::size_t NextCharPosition(std::size_t position) const;
  std::size_t PreviousCharPosition(std::size_t position) const;
  std::size_t NextWordPosition(std::size_t position) const;
  std::size_t PreviousWordPosition(std::size_t position) const;
  std::size_t LineEndPosition(int line) const;
  void MoveCaret(std::size_t position, bool extend);
  void MoveVertically(int lines, bool extend);
  void ReplaceSelection(std::string_view bytes);
  void DeleteRange(std::size_t from, std::size_t to);
  bool HandleNavigationKey(QKeyEvent* event);
  bool HandleEditingKey(QKeyEvent* event);
  void SelectWordAt(std::size_t position);
  void PublishSelection();
  void RestartBlink();

  ProgramDocument& document_;
  UndoHistory* undo_ = nullptr;
  QFont font_;
  double lineHeight_ = 16;
  double charWidth_ = 8;
  QColor background_ = Qt::white;
  QColor textColor_ = Qt::black;
  std::array<QColor, kAddressColorCount + 1> colors_;
  bool alwaysCaps_ = false;

  bool coloringActive_ = false;
  std::vector<std::uint8_t> carried_;  // colour in force at the start of each line
  int carriedValid_ = 0;               // lines from the top whose carried colour is known
  std::vector<ColorRun> runs_;

  std::size_t anchor_ = 0;
  std::size_t caret_ = 0;
  double preferredX_ = -1;  // x kept by up and down moves
  bool selecting_ = false;  // a mouse drag selects
  bool publishing_ = false;
  bool caretShown_ = true;
  QTimer* blink_ = nullptr;
  int lineCount_ = 1;
  double widestLine_ = 0;  // pixels
  QList<QAction*> contextActions_;
};

}  // namespace zemtra
