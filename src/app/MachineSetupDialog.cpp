#include "app/MachineSetupDialog.h"

#include <QCheckBox>
#include <QColorDialog>
#include <QComboBox>
#include <QFileDialog>
#include <QFocusEvent>
#include <QFontDatabase>
#include <QFormLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QMenu>
#include <QMenuBar>
#include <QPainter>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QRegularExpressionValidator>
#include <QSplitter>
#include <QStackedWidget>
#include <QStyledItemDelegate>
#include <QTabWidget>
#include <QTableWidget>
#include <QTimer>
#include <QTreeWidget>
#include <QVBoxLayout>

#include "config/ConfigEdits.h"
#include "core/AppFolder.h"
#include "core/Host.h"
#include "core/TextUtil.h"

namespace zemtra {

namespace {

constexpr const char* kTitle = "Machine Configuration";
constexpr const char* kFilter = "Zemtra Configuration Files (*.zmt)";
constexpr int kKeyRole = Qt::UserRole;

QString Q(std::string_view text) {
  return QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()));
}

QColor ToQColor(int color) {
  return QColor(color & 0xFF, (color >> 8) & 0xFF, (color >> 16) & 0xFF);
}

// A caption as the label in front of its box: with one colon behind it.
QString Label(std::string_view caption) {
  QString label = Q(caption);
  return label.endsWith(':') ? label : label + ':';
}

int FromQColor(const QColor& color) {
  return color.red() | (color.green() << 8) | (color.blue() << 16);
}

QIcon Swatch(int color) {
  QPixmap pixmap(28, 14);
  pixmap.fill(ToQColor(color));
  QPainter painter(&pixmap);
  painter.setPen(Qt::gray);
  painter.drawRect(pixmap.rect().adjusted(0, 0, -1, -1));
  return QIcon(pixmap);
}

// A numeric box: its whole text is selected when it gets the focus, and Enter moves on to the
// next control (leaving the box takes the value).
class NumberBox : public QLineEdit {
 public:
  explicit NumberBox(QWidget* parent) : QLineEdit(parent) { setMaximumWidth(120); }

 protected:
  void focusInEvent(QFocusEvent* event) override {
    QLineEdit::focusInEvent(event);
    QTimer::singleShot(0, this, &QLineEdit::selectAll);
  }
  void keyPressEvent(QKeyEvent* event) override {
    if (event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter) {
      emit editingFinished();
      focusNextChild();
      event->accept();
      return;
    }
    QLineEdit::keyPressEvent(event);
  }
};

// The floating editor of the work offset grid is named txtInput.
class OffsetDelegate : public QStyledItemDelegate {
 public:
  using QStyledItemDelegate::QStyledItemDelegate;
  QWidget* createEditor(QWidget* parent, const QStyleOptionViewItem& option,
                        const QModelIndex& index) const override {
    QWidget* editor = QStyledItemDelegate::createEditor(parent, option, index);
    editor->setObjectName("txtInput");
    return editor;
  }
};

// The characters a text box takes, as a validator pattern.
QString PatternOf(TextRule rule) {
  switch (rule) {
    case TextRule::FileTypes:
      return R"([^\\/:<>|]*)";
    case TextRule::Letter:
      return "[A-Za-z]?";
    default:
      return {};
  }
}

// The button commands of the tool colour grid.
enum ToolColorCommand { kAddColor, kInsertColor, kRemoveColor };

}  // namespace

MachineSetupDialog::MachineSetupDialog(MachineConfig& editConfig, Host& host,
                                       MachineSetupLinks links, QWidget* parent)
    : QDialog(parent), edit_(editConfig), host_(host), links_(std::move(links)) {
  setObjectName("frmMSetup");
  Dialogs = DesktopFileDialogs(this);
  ChooseColor = [this](const QColor& initial) {
    return QColorDialog::getColor(initial, this, "Color");
  };
  BuildWindow();
  Refill();
  ShowPage(ConfigPageId::MachineType);
}

// --- Building -----------------------------------------------------------------------------------

void MachineSetupDialog::BuildWindow() {
  tvOptions_ = new QTreeWidget(this);
  tvOptions_->setObjectName("tvOptions");
  tvOptions_->setHeaderHidden(true);
  auto* root = new QTreeWidgetItem(tvOptions_, {kTitle});
  root->setData(0, kKeyRole, "MS");
  pages_ = new QStackedWidget(this);
  for (const ConfigPageInfo& page : kConfigPages) {
    auto* item = new QTreeWidgetItem(root, {Q(page.Caption)});
    item->setData(0, kKeyRole, Q(page.Caption).toLower());
    pages_->addWidget(BuildPage(page));
  }
  tvOptions_->expandAll();
  tvOptions_->setMinimumWidth(170);
  tvOptions_->setMaximumWidth(190);
  connect(tvOptions_, &QTreeWidget::currentItemChanged, this, [this](QTreeWidgetItem* item) {
    if (item == nullptr) return;
    const int index = item->parent() == nullptr ? 0 : item->parent()->indexOfChild(item);
    ShowPage(kConfigPages[static_cast<std::size_t>(index)].Page);
  });

  auto* body = new QHBoxLayout;
  body->addWidget(tvOptions_);
  body->addWidget(pages_, 1);
  auto* layout = new QVBoxLayout(this);
  layout->setMenuBar(BuildFileMenu());
  layout->addLayout(body, 1);
  layout->addWidget(BuildCommandButtons());
  // Enter in a box never closes the dialog.
  for (QPushButton* button : findChildren<QPushButton*>()) {
    button->setAutoDefault(false);
    button->setDefault(false);
  }
  resize(760, 640);
}

QWidget* MachineSetupDialog::BuildPage(const ConfigPageInfo& page) {
  auto* panel = new QWidget(this);
  panel->setObjectName(Q(page.Form));
  auto* layout = new QVBoxLayout(panel);
  layout->setContentsMargins(0, 0, 0, 0);
  for (const FrameInfo& frame : ConfigFrames()) {
    if (frame.Page == page.Page) layout->addWidget(BuildFrame(frame));
  }
  layout->addStretch(1);
  return panel;
}

QWidget* MachineSetupDialog::BuildFrame(const FrameInfo& frame) {
  if (frame.Name == "SSTab1") return BuildLayerTabs(frame);
  auto* form = new QFormLayout;
  form->setFieldGrowthPolicy(QFormLayout::AllNonFixedFieldsGrow);
  AddBoundControls(frame, form);
  AddFrameExtras(frame, form);
  auto* box = new QGroupBox(Q(frame.Caption), this);
  box->setObjectName(Q(frame.Name));
  box->setLayout(form);
  // A frame that stands for an option or a flag carries the check box in its heading.
  for (const OptionBinding& binding : OptionBindings()) {
    if (binding.Control == frame.Name) BindOptionFrame(binding, box);
  }
  for (const CheckBinding& binding : CheckBindings()) {
    if (binding.Control != frame.Name) continue;
    box->setCheckable(true);
    controls_.insert(box->objectName(), box);
    connect(box, &QGroupBox::toggled, this, [this, binding](bool on) {
      if (loading_) return;
      binding.Field.Set(edit_, ToFlag(on));
      FieldChanged();
    });
  }
  return box;
}

void MachineSetupDialog::AddBoundControls(const FrameInfo& frame, QFormLayout* form) {
  const auto here = [&frame](const ControlPlace& place) {
    return place.Page == frame.Page && place.Frame == frame.Name;
  };
  for (const OptionBinding& binding : OptionBindings()) {
    if (!here(binding.Place)) continue;
    auto* button = new QRadioButton(Q(binding.Caption), this);
    BindOption(binding, button);
    form->addRow(button);
  }
  for (const CheckBinding& binding : CheckBindings()) {
    if (!here(binding.Place)) continue;
    auto* box = new QCheckBox(Q(binding.Caption), this);
    box->setObjectName(Q(binding.Control));
    controls_.insert(box->objectName(), box);
    connect(box, &QCheckBox::toggled, this, [this, binding](bool on) {
      if (loading_) return;
      binding.Field.Set(edit_, ToFlag(on));
      FieldChanged();
    });
    form->addRow(box);
  }
  for (const NumberBinding& binding : NumberBindings()) {
    if (!here(binding.Place)) continue;
    auto* box = new NumberBox(this);
    BindNumber(binding, box);
    form->addRow(Label(binding.Caption), box);
  }
  for (const TextBinding& binding : TextBindings()) {
    if (!here(binding.Place)) continue;
    QWidget* field = MakeTextControl(binding);
    if (binding.Caption.empty()) {
      form->addRow(field);
    } else {
      form->addRow(Label(binding.Caption), field);
    }
  }
  for (const ChoiceBinding& binding : ChoiceBindings()) {
    if (!here(binding.Place)) continue;
    auto* list = new QComboBox(this);
    list->setObjectName(Q(binding.Control));
    list->setMinimumWidth(120);
    list->setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
    for (std::string_view item : binding.Items) list->addItem(Q(item));
    controls_.insert(list->objectName(), list);
    connect(list, &QComboBox::currentIndexChanged, this, [this, binding](int index) {
      if (loading_) return;
      TakeChoice(binding, edit_, index);
      FieldChanged();
    });
    form->addRow(Label(binding.Caption), list);
  }
  for (const ColorBinding& binding : ColorBindings()) {
    if (!here(binding.Place)) continue;
    auto* button = new QPushButton(this);
    BindColor(binding, button);
    form->addRow(Label(binding.Caption), button);
  }
}

// A text box of the kind its field needs: several lines in a fixed font for G-code, a list to
// choose from or type in, or one line with the folder button for the program folder.
QWidget* MachineSetupDialog::MakeTextControl(const TextBinding& binding) {
  if (binding.Rule == TextRule::GCode || binding.Rule == TextRule::LayerLines) {
    auto* box = new QPlainTextEdit(this);
    box->setObjectName(Q(binding.Control));
    box->setFont(QFontDatabase::systemFont(QFontDatabase::FixedFont));
    box->setTabChangesFocus(true);
    box->setMinimumHeight(90);
    controls_.insert(box->objectName(), box);
    connect(box, &QPlainTextEdit::textChanged, this, [this, binding, box] {
      if (loading_) return;
      TakeBoxText(binding, edit_, box->toPlainText().toStdString());
    });
    return box;
  }
  QLineEdit* box = nullptr;
  QWidget* field = nullptr;
  if (!binding.Items.empty()) {
    auto* list = new QComboBox(this);
    list->setEditable(true);
    list->setInsertPolicy(QComboBox::NoInsert);
    for (std::string_view item : binding.Items) list->addItem(Q(item));
    list->setObjectName(Q(binding.Control));
    list->setMaximumWidth(80);
    box = list->lineEdit();
    field = list;
    connect(list, &QComboBox::activated, this, [this, binding, list](int index) {
      if (loading_) return;
      TakeBoxText(binding, edit_, list->itemText(index).toStdString());
    });
  } else {
    box = new QLineEdit(this);
    box->setObjectName(Q(binding.Control));
    field = box;
  }
  controls_.insert(Q(binding.Control), field);
  if (binding.Rule == TextRule::Letter) box->setMaximumWidth(60);
  const QString pattern = PatternOf(binding.Rule);
  if (!pattern.isEmpty()) {
    box->setValidator(new QRegularExpressionValidator(QRegularExpression(pattern), box));
  }
  connect(box, &QLineEdit::textEdited, this, [this, binding, box](const QString& text) {
    if (loading_) return;
    TakeBoxText(binding, edit_, text.toStdString());
    if (binding.Rule == TextRule::Letter && text != text.toUpper()) box->setText(text.toUpper());
  });
  if (binding.Control != "txtDefaultFolder") return field;

  auto* row = new QWidget(this);
  auto* browse = new QPushButton("...", row);
  browse->setObjectName("cmdDefaultFolder");
  browse->setMaximumWidth(36);
  connect(browse, &QPushButton::clicked, this, [this, binding, box] {
    const QString folder = Dialogs.Folder("Default Program Folder", Q(edit_.DefaultProgramFolder));
    if (folder.isEmpty()) return;
    box->setText(folder);
    TakeBoxText(binding, edit_, folder.toStdString());
  });
  auto* layout = new QHBoxLayout(row);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->addWidget(box, 1);
  layout->addWidget(browse);
  return row;
}

// The layer header and footer, a tab each.
QWidget* MachineSetupDialog::BuildLayerTabs(const FrameInfo& frame) {
  auto* tabs = new QTabWidget(this);
  tabs->setObjectName(Q(frame.Name));
  for (const TextBinding& binding : TextBindings()) {
    if (binding.Place.Page == frame.Page && binding.Place.Frame == frame.Name) {
      tabs->addTab(MakeTextControl(binding), Q(binding.Caption));
    }
  }
  return tabs;
}

// The controls of a frame that are more than one field each.
void MachineSetupDialog::AddFrameExtras(const FrameInfo& frame, QFormLayout* form) {
  if (frame.Name == "frGFormat") {
    lblFormat_ = new QLabel(this);
    lblFormat_->setObjectName("lblFormat");
    lblFormat_->setFrameShape(QFrame::StyledPanel);
    lblFormat_->setMargin(4);
    form->addRow(lblFormat_);
  } else if (frame.Name == "fraMacros") {
    form->addRow(BuildMacroList());
  } else if (frame.Name == "frmColorByTool") {
    form->addRow(BuildToolColors());
  } else if (frame.Name == "fraTopView") {
    form->addRow(BuildTopViewRotate());
  } else if (frame.Name == "fraWorkOffsets") {
    form->addRow(BuildWorkOffsets());
  }
}

QWidget* MachineSetupDialog::BuildMacroList() {
  auto* panel = new QWidget(this);
  lvExternalSubs_ = new QListWidget(panel);
  lvExternalSubs_->setObjectName("lvExternalSubs");
  lvExternalSubs_->setMaximumHeight(150);
  lvExternalSubs_->setFlow(QListView::TopToBottom);
  lvExternalSubs_->setWrapping(true);
  lvExternalSubs_->setToolTip("The G-codes that call a macro file; Delete removes the selected");
  txtAddGMacro_ = new QLineEdit(panel);
  txtAddGMacro_->setObjectName("txtAddGMacro");
  txtAddGMacro_->setMaximumWidth(90);
  txtAddGMacro_->setToolTip("A G-code number, such as 12 or 37.1; Enter adds it");
  auto* remove = new QPushButton("&Remove", panel);
  remove->setObjectName("cmdRemoveGMacro");
  connect(txtAddGMacro_, &QLineEdit::returnPressed, this, &MachineSetupDialog::AddMacroCode);
  connect(remove, &QPushButton::clicked, this, &MachineSetupDialog::RemoveMacroCode);
  auto* removeKey = new QAction(lvExternalSubs_);
  removeKey->setShortcut(QKeySequence::Delete);
  removeKey->setShortcutContext(Qt::WidgetShortcut);
  lvExternalSubs_->addAction(removeKey);
  connect(removeKey, &QAction::triggered, this, &MachineSetupDialog::RemoveMacroCode);

  auto* add = new QHBoxLayout;
  add->addWidget(new QLabel("Add:", panel));
  add->addWidget(txtAddGMacro_);
  add->addStretch(1);
  add->addWidget(remove);
  auto* layout = new QVBoxLayout(panel);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->addWidget(lvExternalSubs_);
  layout->addLayout(add);
  return panel;
}

QWidget* MachineSetupDialog::BuildToolColors() {
  auto* panel = new QWidget(this);
  flxColors_ = new QTableWidget(0, 1, panel);
  flxColors_->setObjectName("flxColors");
  flxColors_->setHorizontalHeaderLabels({"Tool Color"});
  flxColors_->horizontalHeader()->setStretchLastSection(true);
  flxColors_->setSelectionMode(QAbstractItemView::SingleSelection);
  flxColors_->setSelectionBehavior(QAbstractItemView::SelectRows);
  flxColors_->setEditTriggers(QAbstractItemView::NoEditTriggers);
  flxColors_->setMinimumHeight(110);
  flxColors_->setToolTip("Double-click a tool to choose its colour");
  connect(flxColors_, &QTableWidget::cellActivated, this,
          [this](int row, int) { ChooseToolColor(row); });
  auto* buttons = new QVBoxLayout;
  const std::pair<const char*, const char*> commands[] = {
      {"cmdAddColor", "&Add"}, {"cmdInsertColor", "&Insert"}, {"cmdRemoveColor", "Re&move"}};
  for (int command = kAddColor; command <= kRemoveColor; ++command) {
    auto* button = new QPushButton(commands[command].second, panel);
    button->setObjectName(commands[command].first);
    connect(button, &QPushButton::clicked, this, [this, command] { ChangeToolColors(command); });
    buttons->addWidget(button);
  }
  buttons->addStretch(1);
  auto* layout = new QHBoxLayout(panel);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->addWidget(flxColors_, 1);
  layout->addLayout(buttons);
  return panel;
}

QWidget* MachineSetupDialog::BuildWorkOffsets() {
  flxWShift_ = new QTableWidget(kWorkOffsetCount, static_cast<int>(kWorkOffsetAxes.size()), this);
  flxWShift_->setObjectName("flxWShift");
  flxWShift_->setItemDelegate(new OffsetDelegate(flxWShift_));
  QStringList rows;
  for (std::string_view name : kWorkOffsetNames) rows << Q(name);
  QStringList columns;
  for (std::string_view axis : kWorkOffsetAxes) columns << Q(axis);
  flxWShift_->setVerticalHeaderLabels(rows);
  flxWShift_->setHorizontalHeaderLabels(columns);
  flxWShift_->horizontalHeader()->setSectionResizeMode(QHeaderView::Stretch);
  flxWShift_->verticalHeader()->setSectionResizeMode(QHeaderView::Fixed);
  flxWShift_->setMinimumHeight(
      flxWShift_->horizontalHeader()->sizeHint().height() +
      kWorkOffsetCount * flxWShift_->verticalHeader()->defaultSectionSize() + 4);
  for (int row = 0; row < kWorkOffsetCount; ++row) {
    for (int column = 0; column < flxWShift_->columnCount(); ++column) {
      auto* cell = new QTableWidgetItem;
      cell->setTextAlignment(Qt::AlignRight | Qt::AlignVCenter);
      flxWShift_->setItem(row, column, cell);
    }
  }
  connect(flxWShift_, &QTableWidget::cellChanged, this, &MachineSetupDialog::TakeWorkOffset);
  return flxWShift_;
}

QWidget* MachineSetupDialog::BuildTopViewRotate() {
  auto* panel = new QWidget(this);
  auto* rotate = new QPushButton("&Rotate Top View", panel);
  rotate->setObjectName("cmdTopViewRotate");
  lblTopView_ = new QLabel(panel);
  lblTopView_->setObjectName("lblTopView");
  connect(rotate, &QPushButton::clicked, this, [this] {
    edit_.TopViewOrientation = NextTopViewOrientation(edit_.TopViewOrientation);
    ShowDependents();
  });
  auto* layout = new QHBoxLayout(panel);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->addWidget(rotate);
  layout->addWidget(lblTopView_, 1);
  return panel;
}

QWidget* MachineSetupDialog::BuildCommandButtons() {
  auto* panel = new QWidget(this);
  auto* layout = new QHBoxLayout(panel);
  layout->setContentsMargins(0, 0, 0, 0);
  const auto add = [this, panel, layout](const char* name, const char* caption, auto handler) {
    auto* button = new QPushButton(caption, panel);
    button->setObjectName(name);
    connect(button, &QPushButton::clicked, this, handler);
    layout->addWidget(button);
  };
  add("cmdLoad", "&Load...", [this] { LoadFile(); });
  add("cmdSave", "&Save", [this] { SaveFile(); });
  add("cmdSaveAs", "Save &As...", [this] { SaveFileAs(); });
  layout->addStretch(1);
  add("cmdApply", "A&pply", [this] { ApplyConfig(); });
  add("cmdOK", "OK", [this] {
    ApplyConfig();
    accept();
  });
  add("cmdCancel", "Cancel", [this] { reject(); });
  return panel;
}

QMenuBar* MachineSetupDialog::BuildFileMenu() {
  auto* bar = new QMenuBar(this);
  QMenu* file = bar->addMenu("&File");
  file->setObjectName("mnuFile");
  const auto add = [this, file](const char* name, const char* caption, auto handler) {
    QAction* action = file->addAction(caption);
    action->setObjectName(name);
    connect(action, &QAction::triggered, this, handler);
  };
  add("mnuFileLoad", "&Load...", [this] { LoadFile(); });
  add("mnuFileSave", "&Save", [this] { SaveFile(); });
  add("mnuFileSaveAs", "Save &As...", [this] { SaveFileAs(); });
  file->addSeparator();
  add("mnuFileClose", "&Close", [this] { reject(); });
  return bar;
}

// --- Binding ------------------------------------------------------------------------------------

void MachineSetupDialog::BindOption(const OptionBinding& binding, QAbstractButton* button) {
  button->setObjectName(Q(binding.Control));
  controls_.insert(button->objectName(), button);
  connect(button, &QAbstractButton::toggled, this, [this, binding](bool on) {
    if (loading_ || !on) return;
    binding.Field.Set(edit_, binding.Value);
    if (binding.Control == "optMillVertical" || binding.Control == "optMillHorizontal") {
      if (links_.MillTypeChanged) links_.MillTypeChanged(binding.Value);
    }
    FieldChanged();
  });
}

// Frames standing for the values of one field exclude each other: checking one clears the
// others, and clearing one checks the other.
void MachineSetupDialog::BindOptionFrame(const OptionBinding& binding, QGroupBox* frame) {
  frame->setCheckable(true);
  controls_.insert(frame->objectName(), frame);
  connect(frame, &QGroupBox::toggled, this, [this, binding](bool on) {
    if (loading_) return;
    if (on) {
      binding.Field.Set(edit_, binding.Value);
    } else {
      for (const OptionBinding& other : OptionBindings()) {
        if (other.Field.Get == binding.Field.Get && other.Value != binding.Value) {
          other.Field.Set(edit_, other.Value);
          break;
        }
      }
    }
    FieldChanged();
  });
}

void MachineSetupDialog::BindNumber(const NumberBinding& binding, QLineEdit* box) {
  box->setObjectName(Q(binding.Control));
  controls_.insert(box->objectName(), box);
  connect(box, &QLineEdit::editingFinished, this, [this, binding, box] {
    if (loading_) return;
    box->setText(Q(TakeNumberText(binding, edit_, box->text().toStdString())));
    FieldChanged();
  });
}

void MachineSetupDialog::BindColor(const ColorBinding& binding, QPushButton* button) {
  button->setObjectName(Q(binding.Control));
  button->setText("Change...");
  button->setMaximumWidth(140);
  controls_.insert(button->objectName(), button);
  connect(button, &QPushButton::clicked, this, [this, binding] {
    const QColor color = PickColor(ToQColor(binding.Field.Get(edit_)));
    if (!color.isValid()) return;
    binding.Field.Set(edit_, FromQColor(color));
    FieldChanged();
  });
}

// A field changed: the controls that follow from it are shown again.
void MachineSetupDialog::FieldChanged() {
  loading_ = true;
  for (const OptionBinding& binding : OptionBindings()) {
    if (auto* frame = qobject_cast<QGroupBox*>(controls_.value(Q(binding.Control)))) {
      frame->setChecked(binding.Field.Get(edit_) == binding.Value);
    }
  }
  for (const ColorBinding& binding : ColorBindings()) {
    if (auto* button = qobject_cast<QPushButton*>(controls_.value(Q(binding.Control)))) {
      button->setIcon(Swatch(binding.Field.Get(edit_)));
    }
  }
  loading_ = false;
  ShowDependents();
}

// The frames enabled by the machine type, the format list and the top view turn.
void MachineSetupDialog::ShowDependents() {
  const bool lathe = edit_.MachineType == 1;
  for (const char* name : {"frmLathe", "frGFormat"}) {
    if (auto* frame = findChild<QGroupBox*>(name)) frame->setEnabled(lathe);
  }
  if (auto* frame = findChild<QGroupBox*>("frmMillType")) frame->setEnabled(!lathe);
  QStringList lines;
  for (std::string_view line : LatheFormatLines(edit_.LatheGCodeFormat)) lines << Q(line);
  lblFormat_->setText(lines.join('\n'));
  lblTopView_->setText(QString("Turned %1 degrees").arg((edit_.TopViewOrientation & 3) * 90));
}

void MachineSetupDialog::Refill() {
  loading_ = true;
  for (const OptionBinding& binding : OptionBindings()) {
    QWidget* control = controls_.value(Q(binding.Control));
    const bool on = binding.Field.Get(edit_) == binding.Value;
    if (auto* button = qobject_cast<QAbstractButton*>(control)) {
      // A field holding none of the values shows no button checked.
      button->setAutoExclusive(false);
      button->setChecked(on);
      button->setAutoExclusive(true);
    }
  }
  for (const CheckBinding& binding : CheckBindings()) {
    QWidget* control = controls_.value(Q(binding.Control));
    const bool on = binding.Field.Get(edit_) != 0;
    if (auto* box = qobject_cast<QCheckBox*>(control)) box->setChecked(on);
    if (auto* frame = qobject_cast<QGroupBox*>(control)) frame->setChecked(on);
  }
  for (const NumberBinding& binding : NumberBindings()) {
    if (auto* box = qobject_cast<QLineEdit*>(controls_.value(Q(binding.Control)))) {
      box->setText(Q(binding.Field.Text(edit_)));
    }
  }
  for (const ChoiceBinding& binding : ChoiceBindings()) {
    auto* list = qobject_cast<QComboBox*>(controls_.value(Q(binding.Control)));
    if (list == nullptr) continue;
    // A value not on the list is shown as an item of its own, and kept.
    while (list->count() > static_cast<int>(binding.Items.size()))
      list->removeItem(list->count() - 1);
    int index = ChoiceIndex(binding, edit_);
    if (index < 0) {
      list->addItem(Q(binding.Field.Text(edit_)));
      index = list->count() - 1;
    }
    list->setCurrentIndex(index);
  }
  for (const TextBinding& binding : TextBindings()) {
    QWidget* control = controls_.value(Q(binding.Control));
    const QString text = Q(BoxText(binding, edit_));
    if (auto* box = qobject_cast<QLineEdit*>(control)) box->setText(text);
    if (auto* box = qobject_cast<QPlainTextEdit*>(control)) box->setPlainText(text);
    if (auto* list = qobject_cast<QComboBox*>(control)) list->setEditText(text);
  }
  FillMacroList();
  FillToolColors();
  FillWorkOffsets();
  loading_ = false;
  FieldChanged();
}

// --- Lists and grids ----------------------------------------------------------------------------

void MachineSetupDialog::FillMacroList() {
  lvExternalSubs_->clear();
  for (int i = 1; i <= edit_.ExternalMacroCount(); ++i) {
    const int code = edit_.ExternalGCodeMacros[static_cast<std::size_t>(i)];
    auto* item = new QListWidgetItem(Q(ExternalMacroCaption(code)), lvExternalSubs_);
    item->setData(kKeyRole, code);
  }
}

void MachineSetupDialog::AddMacroCode() {
  const int code = AddExternalMacro(edit_, txtAddGMacro_->text().toStdString());
  if (code != 0) {
    auto* item = new QListWidgetItem(Q(ExternalMacroCaption(code)), lvExternalSubs_);
    item->setData(kKeyRole, code);
  }
  txtAddGMacro_->clear();
}

void MachineSetupDialog::RemoveMacroCode() {
  for (QListWidgetItem* item : lvExternalSubs_->selectedItems()) {
    RemoveExternalMacro(edit_, item->data(kKeyRole).toInt());
    delete item;
  }
}

void MachineSetupDialog::FillToolColors() {
  const int count = edit_.ToolColorCount();
  flxColors_->setRowCount(count);
  QStringList tools;
  for (int tool = 1; tool <= count; ++tool) {
    const int color = edit_.ToolColors[static_cast<std::size_t>(tool)];
    tools << Q(ToolColorCaption(tool));
    const QColor shown = ToQColor(color);
    auto* cell = new QTableWidgetItem(shown.name());
    cell->setBackground(shown);
    cell->setForeground(shown.lightness() < 128 ? Qt::white : Qt::black);
    flxColors_->setItem(tool - 1, 0, cell);
  }
  flxColors_->setVerticalHeaderLabels(tools);
}

void MachineSetupDialog::ChangeToolColors(int command) {
  const int row = flxColors_->currentRow();
  switch (command) {
    case kAddColor:
      AddToolColor(edit_);
      break;
    case kInsertColor:
      InsertToolColor(edit_, row < 0 ? edit_.ToolColorCount() + 1 : row + 1);
      break;
    default:
      if (!RemoveToolColor(edit_, row + 1)) return;
      break;
  }
  FillToolColors();
  const int selected = command == kAddColor
                           ? edit_.ToolColorCount() - 1
                           : std::min(std::max(row, 0), edit_.ToolColorCount() - 1);
  if (selected >= 0) flxColors_->selectRow(selected);
}

void MachineSetupDialog::ChooseToolColor(int row) {
  const int tool = row + 1;
  if (tool < 1 || tool > edit_.ToolColorCount()) return;
  const QColor color = PickColor(ToQColor(edit_.ToolColors[static_cast<std::size_t>(tool)]));
  if (!color.isValid()) return;
  edit_.ToolColors[static_cast<std::size_t>(tool)] = FromQColor(color);
  FillToolColors();
  flxColors_->selectRow(row);
}

void MachineSetupDialog::FillWorkOffsets() {
  const bool wasLoading = loading_;
  loading_ = true;
  for (int row = 0; row < kWorkOffsetCount; ++row) {
    for (int column = 0; column < flxWShift_->columnCount(); ++column) {
      flxWShift_->item(row, column)->setText(Q(WorkOffsetText(links_.ReadVariable, row, column)));
    }
  }
  loading_ = wasLoading;
}

// An accepted cell goes into the variable store at once. The record's line of that offset is
// made again from the store, so that applying the record keeps the new value.
void MachineSetupDialog::TakeWorkOffset(int row, int column) {
  if (loading_) return;
  QTableWidgetItem* cell = flxWShift_->item(row, column);
  const std::string text =
      TakeWorkOffsetText(links_.WriteVariable, row, column, cell->text().toStdString());
  RecordWorkOffsetLine(edit_, links_.ReadVariable, row);
  loading_ = true;
  cell->setText(Q(text));
  loading_ = false;
}

QColor MachineSetupDialog::PickColor(const QColor& initial) {
  return ChooseColor ? ChooseColor(initial) : QColor();
}

// --- Pages --------------------------------------------------------------------------------------

void MachineSetupDialog::ShowPage(ConfigPageId page) {
  const int index = static_cast<int>(page);
  pages_->setCurrentIndex(index);
  QTreeWidgetItem* item = tvOptions_->topLevelItem(0)->child(index);
  if (tvOptions_->currentItem() != item) tvOptions_->setCurrentItem(item);
  setWindowTitle(QString(kTitle) + " - " +
                 Q(kConfigPages[static_cast<std::size_t>(index)].Caption));
}

ConfigPageId MachineSetupDialog::CurrentPage() const {
  return kConfigPages[static_cast<std::size_t>(pages_->currentIndex())].Page;
}

// --- Commands -----------------------------------------------------------------------------------

void MachineSetupDialog::LoadFile() {
  const std::filesystem::path folder = FindPathNoCase(links_.ApplicationFolder, "CONFIG");
  const QString start = Q((folder / (edit_.ConfigName + ".zmt")).string());
  const QString chosen = Dialogs.OpenFile("Select Configuration File", start, kFilter);
  if (chosen.isEmpty()) return;
  // Read into a record of its own, so that a file that cannot be read leaves the edit as is.
  std::string path = chosen.toStdString();
  MachineConfig loaded;
  if (!zemtra::LoadConfig(path, loaded, host_, links_.ApplicationFolder)) return;
  edit_ = loaded;
  ShowPage(ConfigPageId::MachineType);
  Refill();
}

void MachineSetupDialog::SaveFile() {
  if (edit_.ConfigName.empty()) {
    SaveFileAs();  // a record with no file yet
    return;
  }
  ApplyConfig();
  const std::string path = ConfigFilePath(links_.ApplicationFolder, edit_.ConfigName).string();
  std::string error;
  if (!SaveConfig(path, edit_, links_.ReadVariable, &error)) {
    ReportError(error);
    return;
  }
  if (links_.FilesChanged) links_.FilesChanged();
}

void MachineSetupDialog::SaveFileAs() {
  const std::filesystem::path folder = FindPathNoCase(links_.ApplicationFolder, "CONFIG");
  QString filter = kFilter;
  QString path = Dialogs.SaveFile("Save As", Q(folder.string()), kFilter, filter);
  if (path.isEmpty()) return;
  if (!path.endsWith(".zmt", Qt::CaseInsensitive)) path += ".zmt";
  std::string error;
  const bool saved = SaveConfigAs(path.toStdString(), edit_, links_.ReadVariable,
                                  links_.ApplicationFolder, &error);
  if (!saved) ReportError(error);
  if (links_.FilesChanged) links_.FilesChanged();
}

void MachineSetupDialog::ApplyConfig() {
  if (links_.Apply) links_.Apply();
  FillWorkOffsets();
}

void MachineSetupDialog::ReportError(const std::string& text) {
  host_.ask(Prompt{text, "Zemtra", MsgIcon::Stop, MsgButtons::Ok});
}

}  // namespace zemtra
