#include "app/ProgramTextView.h"

#include <QApplication>
#include <QClipboard>
#include <QContextMenuEvent>
#include <QFileInfo>
#include <QFontMetricsF>
#include <QInputMethodEvent>
#include <QMenu>
#include <QMimeData>
#include <QPainter>
#include <QScrollBar>
#include <QTextLayout>
#include <QTimer>
#include <algorithm>
#include <array>
#include <cctype>
#include <cmath>
#include <utility>

#include "editor/TextEncoding.h"
#include "editor/UndoHistory.h"

namespace zemtra {

namespace {

constexpr double kLeftMargin = 4;
constexpr double kTopMargin = 2;
constexpr int kTabColumns = 8;
constexpr int kBlinkMs = 530;

QColor ToQColor(std::int32_t color) {
  return QColor(color & 0xFF, (color >> 8) & 0xFF, (color >> 16) & 0xFF);
}

QString FromUtf8(std::string_view text) {
  return QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()));
}

// Letters, digits and what belongs to a number or a variable, so that "X-1.5" and "#101" are
// one word each.
bool IsWordByte(char c) {
  const auto u = static_cast<unsigned char>(c);
  return std::isalnum(u) || c == '.' || c == '_' || c == '#' || c == '-' || c == '+' || u >= 0x80;
}

// Any line end of pasted or typed text becomes the document's CR LF.
std::string DocumentBytes(const QString& text) {
  QString normalized = text;
  normalized.replace(QStringLiteral("\r\n"), QStringLiteral("\n"));
  normalized.replace(QChar('\r'), QChar('\n'));
  normalized.replace(QChar::ParagraphSeparator, QChar('\n'));
  normalized.replace(QChar::LineSeparator, QChar('\n'));
  const QByteArray utf8 = normalized.toUtf8();
  std::string bytes;
  bytes.reserve(static_cast<std::size_t>(utf8.size()));
  for (const char c : utf8) {
    if (c == '\n') bytes += '\r';
    bytes += c;
  }
  return bytes;
}

// The classic virtual key numbers the undo steps react to.
int VirtualKey(int key) {
  struct KeyPair {
    int qt;
    int vk;
  };
  static constexpr std::array kKeys = {
      KeyPair{Qt::Key_Return, 13},  KeyPair{Qt::Key_Enter, 13},    KeyPair{Qt::Key_Space, 32},
      KeyPair{Qt::Key_PageUp, 33},  KeyPair{Qt::Key_PageDown, 34}, KeyPair{Qt::Key_End, 35},
      KeyPair{Qt::Key_Home, 36},    KeyPair{Qt::Key_Left, 37},     KeyPair{Qt::Key_Up, 38},
      KeyPair{Qt::Key_Right, 39},   KeyPair{Qt::Key_Down, 40},     KeyPair{Qt::Key_Select, 41},
      KeyPair{Qt::Key_Printer, 42}, KeyPair{Qt::Key_Execute, 43},  KeyPair{Qt::Key_Print, 44},
      KeyPair{Qt::Key_Insert, 45},  KeyPair{Qt::Key_Delete, 46},
  };
  for (const KeyPair& pair : kKeys) {
    if (pair.qt == key) return pair.vk;
  }
  if (key >= Qt::Key_A && key <= Qt::Key_Z) return 65 + (key - Qt::Key_A);
  if (key >= Qt::Key_F1 && key <= Qt::Key_F12) return 112 + (key - Qt::Key_F1);
  return 0;
}

}  // namespace

ProgramTextView::ProgramTextView(ProgramDocument& document, QWidget* parent)
    : QAbstractScrollArea(parent), document_(document) {
  setObjectName("rtPgm");
  setFocusPolicy(Qt::StrongFocus);
  setAttribute(Qt::WA_InputMethodEnabled);
  setAcceptDrops(true);
  viewport()->setCursor(Qt::IBeamCursor);
  viewport()->setAutoFillBackground(false);
  colors_.fill(Qt::black);
  font_ = QFont("Courier New", 10);
  font_.setStyleHint(QFont::Monospace);
  blink_ = new QTimer(this);
  blink_->setInterval(kBlinkMs);
  connect(blink_, &QTimer::timeout, this, [this] {
    caretShown_ = !caretShown_;
    viewport()->update(CaretRect());
  });
  connect(verticalScrollBar(), &QScrollBar::valueChanged, this,
          [this](int value) { document_.SetFirstVisibleLine(value, this); });
  document_.AddObserver(this);
  lineCount_ = document_.LineCount();
  anchor_ = caret_ = document_.SelStart();
  UpdateMetrics();
  MeasureLines(0, lineCount_ - 1);
}

ProgramTextView::~ProgramTextView() {
  document_.RemoveObserver(this);
}

// --- Look ---------------------------------------------------------------------------------------

void ProgramTextView::SetEditorFont(const QFont& font) {
  font_ = font;
  font_.setStyleHint(QFont::Monospace);
  UpdateMetrics();
  widestLine_ = 0;
  MeasureLines(0, lineCount_ - 1);
  viewport()->update();
}

void ProgramTextView::SetBackground(std::int32_t color) {
  background_ = ToQColor(color);
  textColor_ = background_.lightness() < 128 ? QColor(Qt::white) : QColor(Qt::black);
  viewport()->update();
}

void ProgramTextView::SetAddressColors(std::span<const std::int32_t> colors) {
  for (std::size_t i = 1; i < colors_.size() && i < colors.size(); ++i) {
    colors_[i] = ToQColor(colors[i]);
  }
  viewport()->update();
}

// --- Colouring ----------------------------------------------------------------------------------

ColorSink ProgramTextView::Colorizer() {
  return [this](int line, std::span<const ColorRun> runs) {
    if (line == 0) {
      carried_.assign(static_cast<std::size_t>(document_.LineCount()), 0);
      carriedValid_ = 1;
    }
    const auto index = static_cast<std::size_t>(line);
    if (index + 1 < carried_.size()) {
      carried_[index + 1] =
          runs.empty() ? carried_[index] : static_cast<std::uint8_t>(runs.back().colorIndex);
      carriedValid_ = line + 2;
    }
    coloringActive_ = true;
  };
}

void ProgramTextView::SetColoringActive(bool active) {
  coloringActive_ = active;
  viewport()->update();
}

// The colour in force where `line` begins: what the lines above it ended in. Known colours are
// kept; lines below an edit are worked out again as they come into sight.
int ProgramTextView::CarriedColor(int line) {
  if (line <= 0) return 0;
  if (carried_.size() != static_cast<std::size_t>(lineCount_)) {
    carried_.resize(static_cast<std::size_t>(lineCount_), 0);
  }
  if (carriedValid_ < 1) {
    carried_[0] = 0;
    carriedValid_ = 1;
  }
  while (carriedValid_ <= line) {
    const int previous = carriedValid_ - 1;
    const int carried = carried_[static_cast<std::size_t>(previous)];
    const int ended = ColorizeLine(document_.LineText(previous), runs_, carried);
    carried_[static_cast<std::size_t>(carriedValid_)] = static_cast<std::uint8_t>(ended);
    ++carriedValid_;
  }
  return carried_[static_cast<std::size_t>(line)];
}

void ProgramTextView::ComputeRuns(int line) {
  const std::string_view text = document_.LineText(line);
  ColorizeLine(text, runs_, CarriedColor(line));
  RunsToUtf16(text, runs_);
}

std::vector<ColorRun> ProgramTextView::ColorRunsOf(int line) {
  if (!coloringActive_ || line < 0 || line >= lineCount_) return {};
  ComputeRuns(line);
  return runs_;
}

void ProgramTextView::AddColorFormats(int line, QList<QTextLayout::FormatRange>& out) {
  ComputeRuns(line);
  for (const ColorRun& run : runs_) {
    if (run.colorIndex <= 0 || run.colorIndex > kAddressColorCount) continue;
    QTextLayout::FormatRange range;
    range.start = static_cast<int>(run.start);
    range.length = static_cast<int>(run.length);
    range.format.setForeground(colors_[static_cast<std::size_t>(run.colorIndex)]);
    out.push_back(range);
  }
}

// --- Geometry -----------------------------------------------------------------------------------

void ProgramTextView::UpdateMetrics() {
  const QFontMetricsF metrics(font_);
  lineHeight_ = std::max(1.0, std::ceil(metrics.lineSpacing()));
  charWidth_ = std::max(1.0, metrics.horizontalAdvance(QLatin1Char('0')));
  UpdateScrollBars();
}

int ProgramTextView::VisibleLineCount() const {
  return std::max(1, static_cast<int>((viewport()->height() - kTopMargin) / lineHeight_));
}

int ProgramTextView::FirstVisibleLine() const {
  return verticalScrollBar()->value();
}

void ProgramTextView::UpdateScrollBars() {
  const int visible = VisibleLineCount();
  verticalScrollBar()->setRange(0, std::max(0, lineCount_ - visible));
  verticalScrollBar()->setPageStep(visible);
  verticalScrollBar()->setSingleStep(1);
  const int width = static_cast<int>(widestLine_ + 2 * kLeftMargin + charWidth_);
  horizontalScrollBar()->setRange(0, std::max(0, width - viewport()->width()));
  horizontalScrollBar()->setPageStep(viewport()->width());
  horizontalScrollBar()->setSingleStep(static_cast<int>(charWidth_));
}

// Widths are estimated from the byte count, which is exact for the usual ASCII programs in a
// fixed-pitch font; the scroll range only ever grows.
void ProgramTextView::MeasureLines(int first, int last) {
  first = std::max(0, first);
  last = std::min(last, lineCount_ - 1);
  std::size_t longest = 0;
  for (int line = first; line <= last; ++line) {
    longest = std::max(longest, document_.LineLength(line));
  }
  widestLine_ = std::max(widestLine_, static_cast<double>(longest) * charWidth_);
  UpdateScrollBars();
}

QString ProgramTextView::LineString(int line) const {
  return FromUtf8(document_.LineText(line));
}

void ProgramTextView::LayOut(QTextLayout& layout, int line,
                             const QList<QTextLayout::FormatRange>& formats) const {
  layout.setText(LineString(line));
  layout.setFont(font_);
  QTextOption option;
  option.setWrapMode(QTextOption::NoWrap);
  option.setTabStopDistance(charWidth_ * kTabColumns);
  layout.setTextOption(option);
  if (!formats.isEmpty()) layout.setFormats(formats);
  layout.setCacheEnabled(true);
  layout.beginLayout();
  QTextLine textLine = layout.createLine();
  if (textLine.isValid()) textLine.setPosition(QPointF(0, 0));
  layout.endLayout();
}

double ProgramTextView::TextLeft() const {
  return kLeftMargin - horizontalScrollBar()->value();
}

int ProgramTextView::LineAtY(double y) const {
  const int line =
      FirstVisibleLine() + static_cast<int>(std::floor((y - kTopMargin) / lineHeight_));
  return std::clamp(line, 0, lineCount_ - 1);
}

std::size_t ProgramTextView::PositionAtX(int line, double x) const {
  QTextLayout layout;
  LayOut(layout, line);
  const int column = layout.lineAt(0).xToCursor(x - TextLeft());
  const std::string_view text = document_.LineText(line);
  return document_.LineStart(line) + ByteOffsetOf(text, static_cast<std::size_t>(column));
}

std::size_t ProgramTextView::PositionAt(const QPointF& point) const {
  return PositionAtX(LineAtY(point.y()), point.x());
}

double ProgramTextView::CaretX(std::size_t position) const {
  const int line = document_.LineFromChar(position);
  QTextLayout layout;
  LayOut(layout, line);
  const std::string_view text = document_.LineText(line);
  const std::size_t column = Utf16OffsetOf(text, position - document_.LineStart(line));
  return layout.lineAt(0).cursorToX(static_cast<int>(column)) + TextLeft();
}

QRect ProgramTextView::CaretRect() const {
  const int line = CaretLine();
  const double y = kTopMargin + (line - FirstVisibleLine()) * lineHeight_;
  return QRect(static_cast<int>(CaretX(caret_)) - 1, static_cast<int>(y), 3,
               static_cast<int>(lineHeight_) + 1);
}

int ProgramTextView::CaretLine() const {
  return document_.LineFromChar(caret_);
}

// --- Painting -----------------------------------------------------------------------------------

void ProgramTextView::paintEvent(QPaintEvent* event) {
  QPainter painter(viewport());
  painter.fillRect(event->rect(), background_);
  painter.setPen(textColor_);
  const std::size_t selFrom = std::min(anchor_, caret_);
  const std::size_t selTo = std::max(anchor_, caret_);
  const QPalette colours = palette();
  const int first = FirstVisibleLine();
  const int last = std::min(lineCount_ - 1, first + VisibleLineCount());
  const int caretLine = CaretLine();
  QList<QTextLayout::FormatRange> formats;
  QList<QTextLayout::FormatRange> selections;
  for (int line = first; line <= last; ++line) {
    const double y = kTopMargin + (line - first) * lineHeight_;
    QTextLayout layout;
    formats.clear();
    if (coloringActive_) AddColorFormats(line, formats);
    LayOut(layout, line, formats);

    selections.clear();
    const std::size_t lineStart = document_.LineStart(line);
    const std::string_view text = document_.LineText(line);
    const std::size_t lineEnd = lineStart + text.size();
    if (selFrom < selTo && selFrom <= lineEnd && selTo > lineStart) {
      const std::size_t from = std::max(selFrom, lineStart) - lineStart;
      const std::size_t to = std::min(selTo, lineEnd) - lineStart;
      QTextLayout::FormatRange range;
      range.start = static_cast<int>(Utf16OffsetOf(text, from));
      range.length = static_cast<int>(Utf16OffsetOf(text, to)) - range.start;
      range.format.setBackground(colours.highlight());
      range.format.setForeground(colours.highlightedText());
      selections.append(range);
      if (selTo > lineEnd) {  // the line break is selected too
        const double endX = layout.lineAt(0).naturalTextWidth() + TextLeft();
        painter.fillRect(QRectF(endX, y, charWidth_ / 2, lineHeight_), colours.highlight());
      }
    }
    painter.setPen(textColor_);
    layout.draw(&painter, QPointF(TextLeft(), y), selections);
    if (line == caretLine && caretShown_ && hasFocus()) {
      const std::size_t column = Utf16OffsetOf(text, caret_ - lineStart);
      painter.setPen(textColor_);
      layout.drawCursor(&painter, QPointF(TextLeft(), y), static_cast<int>(column), 2);
    }
  }
}

void ProgramTextView::resizeEvent(QResizeEvent* event) {
  QAbstractScrollArea::resizeEvent(event);
  UpdateScrollBars();
}

void ProgramTextView::scrollContentsBy(int /*dx*/, int /*dy*/) {
  viewport()->update();
}

// --- Document changes ---------------------------------------------------------------------------

void ProgramTextView::TextReplaced(std::size_t start, std::size_t /*removed*/,
                                   std::string_view inserted) {
  const int oldCount = lineCount_;
  lineCount_ = document_.LineCount();
  const int startLine = document_.LineFromChar(start);
  carriedValid_ = std::min(carriedValid_, startLine + 1);
  if (start == 0 && inserted.size() == document_.Size()) {
    widestLine_ = 0;  // a new text: measure it whole
    MeasureLines(0, lineCount_ - 1);
  } else {
    const int grown = std::max(0, lineCount_ - oldCount);
    MeasureLines(startLine, startLine + grown + 1);
  }
  anchor_ = std::min(anchor_, document_.Size());
  caret_ = std::min(caret_, document_.Size());
  viewport()->update();
  emit textChanged();
}

void ProgramTextView::SelectionChanged(std::size_t start, std::size_t length) {
  if (publishing_) return;
  anchor_ = start;
  caret_ = start + length;
  preferredX_ = -1;
  viewport()->update();
  emit caretLineChanged(CaretLine() + 1);
  emit selectionChanged();
}

void ProgramTextView::FirstVisibleLineChanged(int line) {
  verticalScrollBar()->setValue(line);
}

// --- Caret and selection ------------------------------------------------------------------------

void ProgramTextView::SetSelection(std::size_t anchor, std::size_t caret) {
  anchor_ = std::min(anchor, document_.Size());
  caret_ = std::min(caret, document_.Size());
  PublishSelection();
  EnsureCaretVisible();
}

// Tells the document (and through it the undo history) where the selection is now.
void ProgramTextView::PublishSelection() {
  publishing_ = true;
  const std::size_t from = std::min(anchor_, caret_);
  document_.SetSelection(from, std::max(anchor_, caret_) - from, this);
  publishing_ = false;
  RestartBlink();
  viewport()->update();
  emit caretLineChanged(CaretLine() + 1);
  emit selectionChanged();
}

void ProgramTextView::EnsureCaretVisible() {
  const int line = CaretLine();
  const int first = FirstVisibleLine();
  const int visible = VisibleLineCount();
  if (line < first) {
    verticalScrollBar()->setValue(line);
  } else if (line >= first + visible) {
    verticalScrollBar()->setValue(line - visible + 1);
  }
  const double x = CaretX(caret_) + horizontalScrollBar()->value();
  const int width = viewport()->width();
  QScrollBar* bar = horizontalScrollBar();
  if (x - bar->value() < kLeftMargin) {
    bar->setValue(static_cast<int>(x - kLeftMargin - width / 4.0));
  } else if (x - bar->value() > width - charWidth_) {
    if (x > widestLine_) {
      widestLine_ = x;
      UpdateScrollBars();
    }
    bar->setValue(static_cast<int>(x - width + width / 4.0));
  }
}

void ProgramTextView::RestartBlink() {
  caretShown_ = true;
  if (hasFocus()) blink_->start();
}

std::size_t ProgramTextView::NextCharPosition(std::size_t position) const {
  const std::string& text = document_.Text();
  if (position >= text.size()) return text.size();
  if (text[position] == '\r' && position + 1 < text.size() && text[position + 1] == '\n') {
    return position + 2;
  }
  ++position;
  while (position < text.size() && (static_cast<unsigned char>(text[position]) & 0xC0) == 0x80) {
    ++position;
  }
  return position;
}

std::size_t ProgramTextView::PreviousCharPosition(std::size_t position) const {
  const std::string& text = document_.Text();
  if (position == 0) return 0;
  position = std::min(position, text.size());
  if (position >= 2 && text[position - 1] == '\n' && text[position - 2] == '\r') {
    return position - 2;
  }
  --position;
  while (position > 0 && (static_cast<unsigned char>(text[position]) & 0xC0) == 0x80) {
    --position;
  }
  return position;
}

// Behind the word at `position` and the blanks after it; a line end counts as one step.
std::size_t ProgramTextView::NextWordPosition(std::size_t position) const {
  const std::string& text = document_.Text();
  const std::size_t lineEnd = LineEndPosition(document_.LineFromChar(position));
  if (position >= lineEnd) return NextCharPosition(position);
  if (IsWordByte(text[position])) {
    while (position < lineEnd && IsWordByte(text[position])) ++position;
  } else if (text[position] != ' ' && text[position] != '\t') {
    position = NextCharPosition(position);
  }
  while (position < lineEnd && (text[position] == ' ' || text[position] == '\t')) ++position;
  return position;
}

std::size_t ProgramTextView::PreviousWordPosition(std::size_t position) const {
  const std::string& text = document_.Text();
  const std::size_t lineStart = document_.LineStart(document_.LineFromChar(position));
  if (position <= lineStart) return PreviousCharPosition(position);
  while (position > lineStart && (text[position - 1] == ' ' || text[position - 1] == '\t')) {
    --position;
  }
  if (position > lineStart && IsWordByte(text[position - 1])) {
    while (position > lineStart && IsWordByte(text[position - 1])) --position;
  } else if (position > lineStart) {
    position = PreviousCharPosition(position);
  }
  return position;
}

std::size_t ProgramTextView::LineEndPosition(int line) const {
  return document_.LineStart(line) + document_.LineLength(line);
}

void ProgramTextView::MoveCaret(std::size_t position, bool extend) {
  caret_ = std::min(position, document_.Size());
  if (!extend) anchor_ = caret_;
  PublishSelection();
  EnsureCaretVisible();
}

void ProgramTextView::MoveVertically(int lines, bool extend) {
  if (preferredX_ < 0) preferredX_ = CaretX(caret_) - TextLeft();
  const int target = std::clamp(CaretLine() + lines, 0, lineCount_ - 1);
  const double keepX = preferredX_;
  MoveCaret(PositionAtX(target, keepX + TextLeft()), extend);
  preferredX_ = keepX;
}

void ProgramTextView::SelectWordAt(std::size_t position) {
  const std::string& text = document_.Text();
  const int line = document_.LineFromChar(position);
  const std::size_t lineStart = document_.LineStart(line);
  const std::size_t lineEnd = LineEndPosition(line);
  std::size_t from = std::min(position, lineEnd);
  std::size_t to = from;
  while (from > lineStart && IsWordByte(text[from - 1])) --from;
  while (to < lineEnd && IsWordByte(text[to])) ++to;
  if (from == to && to < lineEnd) to = NextCharPosition(to);
  anchor_ = from;
  caret_ = to;
  PublishSelection();
}

void ProgramTextView::ReplaceSelection(std::string_view bytes) {
  const std::size_t from = std::min(anchor_, caret_);
  const std::size_t length = std::max(anchor_, caret_) - from;
  if (length == 0 && bytes.empty()) return;
  document_.ReplaceRange(from, length, bytes);
  anchor_ = caret_ = from + bytes.size();
  preferredX_ = -1;
  PublishSelection();
  EnsureCaretVisible();
}

void ProgramTextView::DeleteRange(std::size_t from, std::size_t to) {
  if (from == to) return;
  anchor_ = std::min(from, to);
  caret_ = std::max(from, to);
  ReplaceSelection({});
}

void ProgramTextView::InsertText(const QString& text) {
  ReplaceSelection(DocumentBytes(text));
}

// --- Edit commands ------------------------------------------------------------------------------

void ProgramTextView::Copy() const {
  if (!HasSelection()) return;
  const std::size_t from = std::min(anchor_, caret_);
  QString text =
      FromUtf8(std::string_view(document_.Text()).substr(from, std::max(anchor_, caret_) - from));
  text.replace(QStringLiteral("\r\n"), QStringLiteral("\n"));
  QApplication::clipboard()->setText(text);
}

void ProgramTextView::Cut() {
  if (!HasSelection()) return;
  Copy();
  ReplaceSelection({});
}

void ProgramTextView::Paste() {
  const QString text = QApplication::clipboard()->text();
  if (!text.isEmpty()) InsertText(text);
}

void ProgramTextView::SelectAll() {
  anchor_ = 0;
  caret_ = document_.Size();
  PublishSelection();
}

// --- Keys ---------------------------------------------------------------------------------------

bool ProgramTextView::event(QEvent* event) {
  // Tab belongs to the text, not to the focus chain.
  if (event->type() == QEvent::KeyPress) {
    auto* key = static_cast<QKeyEvent*>(event);
    if ((key->key() == Qt::Key_Tab || key->key() == Qt::Key_Backtab) &&
        !(key->modifiers() & Qt::ControlModifier)) {
      keyPressEvent(key);
      return true;
    }
  }
  return QAbstractScrollArea::event(event);
}

void ProgramTextView::keyPressEvent(QKeyEvent* event) {
  const bool control = event->modifiers() & Qt::ControlModifier;
  if (undo_ != nullptr && undo_->KeyDown(VirtualKey(event->key()), control)) {
    event->accept();
    return;
  }
  if (HandleNavigationKey(event) || HandleEditingKey(event)) {
    event->accept();
    return;
  }
  const QString typed = event->text();
  const bool printable = !typed.isEmpty() && typed.at(0).isPrint() &&
                         !(event->modifiers() & (Qt::ControlModifier | Qt::AltModifier));
  if (printable) {
    InsertText(alwaysCaps_ ? typed.toUpper() : typed);
    event->accept();
    return;
  }
  QAbstractScrollArea::keyPressEvent(event);
}

bool ProgramTextView::HandleNavigationKey(QKeyEvent* event) {
  const bool extend = event->modifiers() & Qt::ShiftModifier;
  const bool word = event->modifiers() & Qt::ControlModifier;
  const int line = CaretLine();
  switch (event->key()) {
    case Qt::Key_Left:
      if (!extend && HasSelection()) {
        MoveCaret(std::min(anchor_, caret_), false);
      } else {
        MoveCaret(word ? PreviousWordPosition(caret_) : PreviousCharPosition(caret_), extend);
      }
      preferredX_ = -1;
      return true;
    case Qt::Key_Right:
      if (!extend && HasSelection()) {
        MoveCaret(std::max(anchor_, caret_), false);
      } else {
        MoveCaret(word ? NextWordPosition(caret_) : NextCharPosition(caret_), extend);
      }
      preferredX_ = -1;
      return true;
    case Qt::Key_Up:
      MoveVertically(-1, extend);
      return true;
    case Qt::Key_Down:
      MoveVertically(1, extend);
      return true;
    case Qt::Key_PageUp:
      MoveVertically(-VisibleLineCount(), extend);
      return true;
    case Qt::Key_PageDown:
      MoveVertically(VisibleLineCount(), extend);
      return true;
    case Qt::Key_Home:
      MoveCaret(word ? 0 : document_.LineStart(line), extend);
      preferredX_ = -1;
      return true;
    case Qt::Key_End:
      MoveCaret(word ? document_.Size() : LineEndPosition(line), extend);
      preferredX_ = -1;
      return true;
    default:
      return false;
  }
}

bool ProgramTextView::HandleEditingKey(QKeyEvent* event) {
  const bool word = event->modifiers() & Qt::ControlModifier;
  if (event->matches(QKeySequence::SelectAll)) {
    SelectAll();
  } else if (event->matches(QKeySequence::Copy)) {
    Copy();
  } else if (event->matches(QKeySequence::Cut)) {
    Cut();
  } else if (event->matches(QKeySequence::Paste)) {
    Paste();
  } else if (event->key() == Qt::Key_Backspace) {
    if (HasSelection()) {
      ReplaceSelection({});
    } else {
      DeleteRange(word ? PreviousWordPosition(caret_) : PreviousCharPosition(caret_), caret_);
    }
  } else if (event->key() == Qt::Key_Delete) {
    if (HasSelection()) {
      ReplaceSelection({});
    } else {
      DeleteRange(caret_, word ? NextWordPosition(caret_) : NextCharPosition(caret_));
    }
  } else if (event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter) {
    ReplaceSelection("\r\n");
  } else if (event->key() == Qt::Key_Tab) {
    ReplaceSelection("\t");
  } else {
    return false;
  }
  return true;
}

// --- Pointer ------------------------------------------------------------------------------------

void ProgramTextView::mousePressEvent(QMouseEvent* event) {
  if (undo_ != nullptr) undo_->MouseDown();
  if (event->button() != Qt::LeftButton) return;
  const std::size_t position = PositionAt(event->position());
  MoveCaret(position, event->modifiers() & Qt::ShiftModifier);
  preferredX_ = -1;
  selecting_ = true;
}

void ProgramTextView::mouseMoveEvent(QMouseEvent* event) {
  if (!selecting_ || !(event->buttons() & Qt::LeftButton)) return;
  QPointF point = event->position();
  // Dragging past the edges scrolls.
  if (point.y() < 0) verticalScrollBar()->setValue(FirstVisibleLine() - 1);
  if (point.y() > viewport()->height()) verticalScrollBar()->setValue(FirstVisibleLine() + 1);
  point.setY(std::clamp(point.y(), 0.0, static_cast<double>(viewport()->height() - 1)));
  MoveCaret(PositionAt(point), true);
}

void ProgramTextView::mouseReleaseEvent(QMouseEvent* /*event*/) {
  selecting_ = false;
}

void ProgramTextView::mouseDoubleClickEvent(QMouseEvent* event) {
  if (event->button() != Qt::LeftButton) return;
  SelectWordAt(PositionAt(event->position()));
}

void ProgramTextView::focusInEvent(QFocusEvent* event) {
  QAbstractScrollArea::focusInEvent(event);
  RestartBlink();
  viewport()->update();
}

void ProgramTextView::focusOutEvent(QFocusEvent* event) {
  QAbstractScrollArea::focusOutEvent(event);
  blink_->stop();
  viewport()->update();
}

void ProgramTextView::contextMenuEvent(QContextMenuEvent* event) {
  if (contextActions_.isEmpty()) return;
  QMenu menu(this);
  for (QAction* action : contextActions_) {
    if (action == nullptr) {
      menu.addSeparator();
    } else {
      menu.addAction(action);
    }
  }
  menu.exec(event->globalPos());
}

void ProgramTextView::inputMethodEvent(QInputMethodEvent* event) {
  if (!event->commitString().isEmpty()) {
    const QString text = event->commitString();
    InsertText(alwaysCaps_ ? text.toUpper() : text);
  }
  event->accept();
}

QVariant ProgramTextView::inputMethodQuery(Qt::InputMethodQuery query) const {
  switch (query) {
    case Qt::ImCursorRectangle:
      return CaretRect();
    case Qt::ImFont:
      return font_;
    case Qt::ImEnabled:
      return true;
    default:
      return QAbstractScrollArea::inputMethodQuery(query);
  }
}

void ProgramTextView::dragEnterEvent(QDragEnterEvent* event) {
  if (event->mimeData()->hasUrls()) event->acceptProposedAction();
}

void ProgramTextView::dropEvent(QDropEvent* event) {
  QStringList paths;
  for (const QUrl& url : event->mimeData()->urls()) {
    if (url.isLocalFile()) paths << url.toLocalFile();
  }
  if (!paths.isEmpty()) emit filesDropped(paths);
  event->acceptProposedAction();
}

}  // namespace zemtra
