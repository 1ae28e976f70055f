#include "app/VariableDisplayWindow.h"

#include <QAction>
#include <QApplication>
#include <QClipboard>
#include <QCloseEvent>
#include <QComboBox>
#include <QFontDatabase>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QHideEvent>
#include <QInputDialog>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QSplitter>
#include <QStyle>
#include <QTextBlock>
#include <QTimer>
#include <QToolBar>
#include <QTreeWidget>
#include <QVBoxLayout>
#include <algorithm>

#include "app/AppSettings.h"
#include "app/Plot.h"
#include "app/QtHost.h"
#include "app/SettingValues.h"
#include "app/Workspace.h"
#include "interp/MacroStepper.h"
#include "interp/VariableDisplay.h"

namespace zemtra {

namespace {

constexpr const char* kPlacementSection = "StartUp";
constexpr int kNumberRole = Qt::UserRole;
constexpr int kSystemRole = Qt::UserRole + 1;

QString ToQString(std::string_view text) {
  return QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()));
}

}  // namespace

vDsp::vDsp(Plot& window, MacroStepper& stepper, VariableDisplay& display)
    : QWidget(&window, Qt::Tool), window_(window), stepper_(stepper), display_(display) {
  setObjectName("vDsp");
  setWindowTitle("Variable Display");
  InputBox = [this](const QString& prompt, const QString& value) -> std::optional<QString> {
    bool ok = false;
    const QString text =
        QInputDialog::getText(this, "Zemtra", prompt, QLineEdit::Normal, value, &ok);
    if (!ok) return std::nullopt;
    return text;
  };
  auto* layout = new QVBoxLayout(this);
  layout->setContentsMargins(4, 4, 4, 4);
  BuildToolBar();
  layout->addWidget(tlbMacro_);
  BuildFields();
  BuildList();
  auto* split = new QSplitter(Qt::Vertical, this);
  split->addWidget(lvVar_);
  split->addWidget(rtSub_);
  split->setStretchFactor(0, 3);
  split->setStretchFactor(1, 1);
  layout->addWidget(split, 1);

  stepTimer_ = new QTimer(this);
  stepTimer_->setObjectName("stepTimer");
  connect(stepTimer_, &QTimer::timeout, this, &vDsp::TimerTick);
  stepper_.Refresh = [this] {
    ShowStep();
    ShowPicture(false);
  };
  LoadPlacement();
  UpdateCommandStates();
  UpdateVarDisplay();
}

vDsp::~vDsp() {
  stepper_.Refresh = nullptr;
}

// --- Building ------------------------------------------------------------------------------

void vDsp::BuildToolBar() {
  tlbMacro_ = new QToolBar(this);
  tlbMacro_->setObjectName("tlbMacro");
  tlbMacro_->setToolButtonStyle(Qt::ToolButtonTextBesideIcon);
  const auto add = [this](const char* name, const char* caption, QStyle::StandardPixmap icon,
                          void (vDsp::*slot)()) {
    QAction* action = tlbMacro_->addAction(style()->standardIcon(icon), caption);
    action->setObjectName(name);
    connect(action, &QAction::triggered, this, slot);
    return action;
  };
  step_ = add("step", "Step", QStyle::SP_MediaSkipForward, &vDsp::DoStep);
  animate_ = add("animate", "Animate", QStyle::SP_MediaPlay, &vDsp::Animate);
  pause_ = add("pause", "Pause", QStyle::SP_MediaPause, &vDsp::Pause);
  stepTo_ = add("stepto", "Step to Cursor", QStyle::SP_ArrowRight, &vDsp::StepToCursor);
  stepToBreak_ =
      add("steptobreak", "Step to Break", QStyle::SP_MediaSeekForward, &vDsp::StepToBreak);
  step_->setToolTip("Run one block");
  stepTo_->setToolTip("Run up to the line of the cursor");
  stepToBreak_->setToolTip("Run until the break expression turns true");
}

void vDsp::BuildFields() {
  auto* grid = new QGridLayout;
  const auto addRow = [&](int row, const char* caption, QWidget* field) {
    grid->addWidget(new QLabel(caption, this), row, 0);
    grid->addWidget(field, row, 1, 1, 3);
  };
  cmbBreakPoint_ = new QComboBox(this);
  cmbBreakPoint_->setObjectName("cmbBreakPoint");
  cmbBreakPoint_->setEditable(true);
  cmbBreakPoint_->setInsertPolicy(QComboBox::InsertAtTop);
  cmbBreakPoint_->setToolTip("An expression such as #1 GT 3");
  const QFont fixed = QFontDatabase::systemFont(QFontDatabase::FixedFont);
  txtCurBlock_ = new QLineEdit(this);
  txtCurBlock_->setObjectName("txtCurBlock");
  txtEvalBlock_ = new QLineEdit(this);
  txtEvalBlock_->setObjectName("txtEvalBlock");
  for (QLineEdit* box : {txtCurBlock_, txtEvalBlock_}) {
    box->setReadOnly(true);
    box->setFont(fixed);
  }
  addRow(0, "Break when:", cmbBreakPoint_);
  addRow(1, "Block:", txtCurBlock_);
  addRow(2, "Evaluated:", txtEvalBlock_);

  lblPLevel_ = new QLabel(this);
  lblPLevel_->setObjectName("lblPLevel");
  lblDLevel_ = new QLabel(this);
  lblDLevel_->setObjectName("lblDLevel");
  // Wide enough for the deepest level, so the row does not move as the levels change.
  for (QLabel* label : {lblPLevel_, lblDLevel_}) {
    label->setMinimumWidth(label->fontMetrics().horizontalAdvance("Program Level: Sub 8") + 4);
  }
  cmdUp_ = new QPushButton("Up", this);
  cmdUp_->setObjectName("cmdUp");
  cmdUp_->setToolTip("Show the locals of the level above");
  cmdDown_ = new QPushButton("Down", this);
  cmdDown_->setObjectName("cmdDown");
  cmdDown_->setToolTip("Show the locals of the level below");
  cmdClearVar_ = new QPushButton("Clear", this);
  cmdClearVar_->setObjectName("cmdClearVar");
  cmdClearVar_->setToolTip("Clear all local and common variables");
  connect(cmdUp_, &QPushButton::clicked, this, &vDsp::LevelUp);
  connect(cmdDown_, &QPushButton::clicked, this, &vDsp::LevelDown);
  connect(cmdClearVar_, &QPushButton::clicked, this, &vDsp::ClearVariables);
  auto* levels = new QHBoxLayout;
  levels->addWidget(lblPLevel_);
  levels->addSpacing(16);
  levels->addWidget(lblDLevel_);
  levels->addStretch(1);
  auto* buttons = new QHBoxLayout;
  buttons->addStretch(1);
  for (QPushButton* button : {cmdUp_, cmdDown_, cmdClearVar_}) {
    button->setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
    buttons->addWidget(button);
  }
  auto* outer = static_cast<QVBoxLayout*>(layout());
  outer->addLayout(grid);
  outer->addLayout(levels);
  outer->addLayout(buttons);
}

void vDsp::BuildList() {
  lvVar_ = new QTreeWidget(this);
  lvVar_->setObjectName("lvVar");
  lvVar_->setColumnCount(2);
  lvVar_->setHeaderLabels({"Variable", "Value"});
  lvVar_->setRootIsDecorated(false);
  lvVar_->setUniformRowHeights(true);
  lvVar_->header()->setSectionResizeMode(0, QHeaderView::ResizeToContents);
  lvVar_->setContextMenuPolicy(Qt::ActionsContextMenu);
  connect(lvVar_, &QTreeWidget::itemDoubleClicked, this,
          [this](QTreeWidgetItem* item) { EditVariable(item); });
  const auto add = [this](const char* name, const char* caption, void (vDsp::*slot)()) {
    auto* action = new QAction(caption, lvVar_);
    action->setObjectName(name);
    lvVar_->addAction(action);
    connect(action, &QAction::triggered, this, slot);
  };
  add("mnuAddVar", "Add System Variable", &vDsp::AddSystemVariable);
  add("mnuRemoveVar", "Remove System Variable", &vDsp::RemoveSystemVariable);
  add("mnuCopyToClipboard", "Copy Variables to Clipboard", &vDsp::CopyVariables);

  rtSub_ = new QPlainTextEdit(this);
  rtSub_->setObjectName("rtSub");
  rtSub_->setReadOnly(true);
  rtSub_->setLineWrapMode(QPlainTextEdit::NoWrap);
  rtSub_->setFont(QFontDatabase::systemFont(QFontDatabase::FixedFont));
  rtSub_->setPlaceholderText("The text of a subprogram file shows here while it runs.");
}

void vDsp::LoadPlacement() {
  float top = -1, left = -1, width = 0, height = 0;
  const SettingReader in(window_.Store(), kPlacementSection);
  in.Float("Macro Top", top);
  in.Float("Macro Left", left);
  in.Float("Macro Width", width);
  in.Float("Macro Height", height);
  resize(width > 0 ? static_cast<int>(width / kTwipsPerPixel) : 540,
         height > 0 ? static_cast<int>(height / kTwipsPerPixel) : 560);
  if (top >= 0 && left >= 0) {
    move(static_cast<int>(left / kTwipsPerPixel), static_cast<int>(top / kTwipsPerPixel));
  }
}

void vDsp::SavePlacement() {
  SettingWriter out(window_.Store(), kPlacementSection);
  out.Number("Macro Top", y() * kTwipsPerPixel);
  out.Number("Macro Left", x() * kTwipsPerPixel);
  out.Number("Macro Width", width() * kTwipsPerPixel);
  out.Number("Macro Height", height() * kTwipsPerPixel);
}

void vDsp::closeEvent(QCloseEvent* event) {
  stepTimer_->stop();
  stepper_.StopRun = true;
  QWidget::closeEvent(event);
}

void vDsp::hideEvent(QHideEvent* event) {
  SavePlacement();
  QWidget::hideEvent(event);
}

// --- Stepping ------------------------------------------------------------------------------

// Nothing runs while the window plots or another step is being made. A new session starts from
// the user's preferences with an empty picture.
bool vDsp::BeginStepping() {
  Workspace& engine = window_.Engine();
  if (inStep_ || running_ || window_.Busy || engine.Driver.PlotBusy) return false;
  if (!stepper_.StepSession()) {
    ClearFields();
    window_.PrepareInterpreter();
    engine.View.RefreshGeometry(0);
    shownCount_ = 0;
  }
  return true;
}

void vDsp::DoStep() {
  if (!BeginStepping()) return;
  inStep_ = true;
  stepper_.MacroStep([this] { return window_.Engine().ProgramToPlot(); });
  ShowStep();
  ShowPicture(true);
  inStep_ = false;
  if (!stepper_.StepSession()) stepTimer_->stop();
  UpdateCommandStates();
}

void vDsp::Animate() {
  if (running_) return;
  stepTimer_->start(std::max(1, static_cast<int>(window_.Settings().Preferences.AnimateDelay)));
  UpdateCommandStates();
}

void vDsp::Pause() {
  stepTimer_->stop();
  stepper_.StopRun = true;
  UpdateCommandStates();
}

void vDsp::TimerTick() {
  if (inStep_ || running_) return;
  DoStep();
}

// A run keeps the window's other commands out; "pause", "Up", "Down" and Esc act meanwhile.
void vDsp::RunSteps(const std::function<void()>& run) {
  if (!BeginStepping()) return;
  stepTimer_->stop();
  running_ = true;
  window_.Busy = true;
  window_.GetHost().setAbortRequested(false);
  UpdateCommandStates();
  run();
  window_.Busy = false;
  running_ = false;
  ShowPicture(true);
  UpdateCommandStates();
}

void vDsp::StepToCursor() {
  // The line of the caret, or of the selection's start (the line a step marked).
  const int target = window_.Engine().Editor.Document.CurrentLineIndex() + 1;
  RunSteps([this, target] {
    stepper_.StepToLine([this] { return window_.Engine().ProgramToPlot(); }, target);
  });
}

void vDsp::StepToBreak() {
  const QString expression = cmbBreakPoint_->currentText();
  if (!expression.trimmed().isEmpty() && cmbBreakPoint_->findText(expression) < 0) {
    cmbBreakPoint_->insertItem(0, expression);
  }
  stepper_.BreakExpression = expression.toStdString();
  RunSteps([this] { stepper_.StepToBreak([this] { return window_.Engine().ProgramToPlot(); }); });
}

// --- Showing a step ------------------------------------------------------------------------

void vDsp::ShowStep() {
  ShowBlock();
  FollowLevel();
  UpdateVarDisplay();
  emit stepped();
}

void vDsp::ShowBlock() {
  txtCurBlock_->setText(ToQString(stepper_.CurrentBlock()));
  txtEvalBlock_->setText(ToQString(stepper_.EvaluatedBlock()));
  txtCurBlock_->setCursorPosition(0);
  txtEvalBlock_->setCursorPosition(0);
}

// The locals shown follow the running level; a subprogram file shows its text with the line
// being run.
void vDsp::FollowLevel() {
  const int level = stepper_.CallLevel();
  display_.ShownLevel = level;
  if (level > 0 && stepper_.StepSession()) ShowSubprogram(level);
}

void vDsp::ShowSubprogram(int level) {
  CallStack& calls = window_.Engine().Interp.Calls();
  const CallFrame& frame = calls.Frame(level);
  if (frame.Text == nullptr || frame.FileName == calls.Frame(0).FileName) return;
  if (frame.FileName != subFile_) {
    subFile_ = frame.FileName;
    rtSub_->setPlainText(ToQString(frame.Text->Bytes()));
  }
  const int line = SubGetLNFromFilePos(*frame.Text, frame.LinePosition);
  QTextBlock block = rtSub_->document()->findBlockByNumber(line);
  if (!block.isValid()) return;
  QTextEdit::ExtraSelection mark;
  mark.cursor = QTextCursor(block);
  mark.cursor.select(QTextCursor::LineUnderCursor);
  mark.format.setBackground(palette().highlight());
  mark.format.setForeground(palette().highlightedText());
  rtSub_->setExtraSelections({mark});
  rtSub_->setTextCursor(QTextCursor(block));
  rtSub_->centerCursor();
}

// New entities are drawn as they come; a whole repaint (which also remembers the count for
// later repaints) follows a single step or the end of a run.
void vDsp::ShowPicture(bool whole) {
  Viewport& view = window_.Engine().View;
  const std::int32_t count = stepper_.EntityCount();
  if (!whole || count == shownCount_) {
    view.FlushEntities();
    return;
  }
  shownCount_ = count;
  view.RefreshGeometry(count);
}

void vDsp::ClearFields() {
  txtCurBlock_->clear();
  txtEvalBlock_->clear();
  rtSub_->clear();
  subFile_.clear();
}

void vDsp::UpdateCommandStates() {
  const bool animating = stepTimer_ != nullptr && stepTimer_->isActive();
  for (QAction* action : {step_, animate_, stepTo_, stepToBreak_}) {
    action->setEnabled(!running_ && !animating);
  }
  pause_->setEnabled(running_ || animating);
  cmdClearVar_->setEnabled(!running_);
}

void vDsp::UpdateVarDisplay() {
  const int level = stepper_.StepSession() ? stepper_.CallLevel() : 0;
  lblPLevel_->setText(QString::fromStdString(VariableDisplay::ProgramLevelText(level)));
  lblDLevel_->setText(QString::fromStdString(display_.DisplayLevelText()));
  window_.Engine().Interp.FlushVariables();
  const int selected =
      lvVar_->currentItem() ? lvVar_->currentItem()->data(0, kNumberRole).toInt() : 0;
  lvVar_->setUpdatesEnabled(false);
  lvVar_->clear();
  QList<QTreeWidgetItem*> items;
  for (const VariableRow& row : display_.Rows()) {
    auto* item =
        new QTreeWidgetItem({QString::fromStdString(row.Name), QString::fromStdString(row.Value)});
    item->setData(0, kNumberRole, row.Number);
    item->setData(0, kSystemRole, row.System);
    item->setTextAlignment(1, Qt::AlignRight | Qt::AlignVCenter);
    items.append(item);
  }
  lvVar_->addTopLevelItems(items);
  for (QTreeWidgetItem* item : items) {
    if (item->data(0, kNumberRole).toInt() == selected) lvVar_->setCurrentItem(item);
  }
  lvVar_->setUpdatesEnabled(true);
}

// --- The list's commands -------------------------------------------------------------------

void vDsp::ClearVariables() {
  if (display_.ClearVariables()) UpdateVarDisplay();
}

void vDsp::LevelUp() {
  display_.LevelUp(stepper_.StepSession() ? stepper_.CallLevel() : 0);
  UpdateVarDisplay();
}

void vDsp::LevelDown() {
  display_.LevelDown();
  UpdateVarDisplay();
}

void vDsp::EditVariable(QTreeWidgetItem* item) {
  if (item == nullptr || running_) return;
  const int number = item->data(0, kNumberRole).toInt();
  const QString value =
      item->text(1) == QString::fromLatin1(kEmptyValueText.data(), kEmptyValueText.size())
          ? QString()
          : item->text(1);
  const std::optional<QString> text =
      InputBox(ToQString(kEditVariablePrompt) + item->text(0), value);
  if (!text) return;
  window_.Engine().Interp.FlushVariables();
  if (display_.EditVariable(number, text->toStdString())) UpdateVarDisplay();
}

void vDsp::AddSystemVariable() {
  const std::optional<QString> text = InputBox(ToQString(kAddSystemVariablePrompt), QString());
  if (!text) return;
  if (display_.AddSystemVariable(text->toStdString())) UpdateVarDisplay();
}

void vDsp::RemoveSystemVariable() {
  QTreeWidgetItem* item = lvVar_->currentItem();
  if (item == nullptr || !item->data(0, kSystemRole).toBool()) return;
  display_.RemoveSystemVariable(item->data(0, kNumberRole).toInt());
  UpdateVarDisplay();
}

void vDsp::CopyVariables() {
  QString text = QString::fromStdString(display_.RowsText());
  text.replace("\r\n", "\n");
  QApplication::clipboard()->setText(text);
}

}  // namespace zemtra
