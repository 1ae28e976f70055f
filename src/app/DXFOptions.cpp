#include "app/DXFOptions.h"

#include <QAction>
#include <QFormLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QMenuBar>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QScopedValueRollback>
#include <QShowEvent>
#include <QTabWidget>
#include <QToolBar>
#include <QToolButton>
#include <QTreeWidget>
#include <QVBoxLayout>
#include <algorithm>
#include <array>

#include "app/DxfCommands.h"
#include "app/DxfLayerSettings.h"
#include "app/Plot.h"
#include "app/QtHost.h"
#include "app/Workspace.h"
#include "core/NumberText.h"
#include "core/Version.h"

namespace zemtra {

namespace {

struct NumberRow {
  const char* control;
  const char* caption;
  double ConvertParams::*field;
  bool inZIncrement;  // shown in the depth steps frame
};

constexpr std::array<NumberRow, 7> kNumbers = {{
    {"txtZRetract", "Z Retract:", &ConvertParams::ZRetract, false},
    {"txtZApproach", "Z Approach:", &ConvertParams::ZApproach, false},
    {"txtZDepth", "Z Depth:", &ConvertParams::ZDepth, false},
    {"txtFeedRate", "Feed Rate:", &ConvertParams::FeedRate, false},
    {"txtPlungeRate", "Plunge Rate:", &ConvertParams::PlungeRate, false},
    {"txtZTop", "Material Top:", &ConvertParams::ZTop, true},
    {"txtZIncrement", "Z Increment:", &ConvertParams::ZIncrement, true},
}};

// Tool bar buttons: key and the command they run.
struct ButtonRow {
  const char* key;
  const char* action;
  const char* caption;
};

constexpr std::array kButtons = {
    ButtonRow{"chainall", "mnuChainAll", "Chain All"},
    ButtonRow{"chainselected", "mnuChainSelected", "Chain Layer"},
    ButtonRow{"chainreverse", "mnuChainReverse", "Reverse Chain"},
    ButtonRow{"sortall", "mnuSortAll", "Sort All"},
    ButtonRow{"sortselected", "mnuSortSelected", "Sort Layer"},
    ButtonRow{"convertlayer", "mnuConvertSelected", "Convert Layer"},
};

QString Number(double value) {
  const std::string text = FormatNumberText(value, "");
  return QString::fromStdString(text.empty() ? "0" : text);
}

double NumberOf(const QLineEdit* box) {
  return NumericTextValue(box->text().toStdString());
}

QPushButton* Button(const char* name, const char* caption, const char* tip, QWidget* parent) {
  auto* button = new QPushButton(caption, parent);
  button->setObjectName(name);
  button->setToolTip(tip);
  return button;
}

QTreeWidget* ListView(const char* name, const QStringList& columns, QWidget* parent) {
  auto* list = new QTreeWidget(parent);
  list->setObjectName(name);
  list->setHeaderLabels(columns);
  list->setRootIsDecorated(false);
  list->setAllColumnsShowFocus(true);
  list->setUniformRowHeights(true);
  list->header()->setStretchLastSection(false);
  list->header()->setSectionResizeMode(0, QHeaderView::Stretch);
  for (int c = 1; c < columns.size(); ++c) {
    list->header()->setSectionResizeMode(c, QHeaderView::ResizeToContents);
  }
  return list;
}

void ChooseRow(QTreeWidget* list, int row) {
  if (row >= 0 && row < list->topLevelItemCount()) {
    list->setCurrentItem(list->topLevelItem(row));
  }
}

}  // namespace

DXFOptions::DXFOptions(DxfCommands& dxf, Plot& plot)
    : QMainWindow(&plot, Qt::Window), dxf_(dxf), plot_(plot) {
  setObjectName("DXFOptions");
  setWindowTitle("DXF Conversion Options");
  BuildMenus();
  BuildToolBar();
  auto* central = new QWidget(this);
  auto* layout = new QHBoxLayout(central);
  layout->addWidget(BuildLists(), 3);
  layout->addWidget(BuildSettings(), 2);
  setCentralWidget(central);
  ConnectFields();
  resize(760, 520);
  plot.installEventFilter(this);
}

// --- Building -----------------------------------------------------------------------------------

void DXFOptions::BuildMenus() {
  struct MenuRow {
    const char* caption;
    std::array<std::pair<const char*, const char*>, 3> entries;  // name and caption
  };
  static constexpr std::array<MenuRow, 4> kMenus = {{
      {"&File", {{{"mnuBackground", "Save as Background"}, {"mnuExit", "&Close"}, {}}}},
      {"&Chain",
       {{{"mnuChainAll", "Chain &All"},
         {"mnuChainSelected", "Chain &Layer"},
         {"mnuChainReverse", "Chain &Reverse"}}}},
      {"&Sort", {{{"mnuSortAll", "Sort &All"}, {"mnuSortSelected", "Sort &Layer"}, {}}}},
      {"C&onvert",
       {{{"mnuConvertAll", "Convert &All"},
         {"mnuConvertSelected", "Convert &Layer"},
         {"mnuConvertChain", "Convert &Selected"}}}},
  }};
  for (const MenuRow& row : kMenus) {
    QMenu* menu = menuBar()->addMenu(row.caption);
    for (const auto& [name, caption] : row.entries) {
      if (name == nullptr) continue;
      menu->addAction(caption)->setObjectName(name);
    }
  }
  const auto on = [this](const char* name, auto handler) {
    connect(findChild<QAction*>(name), &QAction::triggered, this, handler);
  };
  on("mnuBackground", [this] { dxf_.SaveAsBackground(); });
  on("mnuExit", [this] { close(); });
  on("mnuChainAll", [this] { ChainLayers(true); });
  on("mnuChainSelected", [this] { ChainLayers(false); });
  on("mnuChainReverse", [this] { ReverseChain(); });
  on("mnuSortAll", [this] { SortLayers(true); });
  on("mnuSortSelected", [this] { SortLayers(false); });
  on("mnuConvertAll", [this] { ConvertLayers(true); });
  on("mnuConvertSelected", [this] { ConvertLayers(false); });
  on("mnuConvertChain", [this] { dxf_.ConvertSelectedChain(); });
}

void DXFOptions::BuildToolBar() {
  QToolBar* bar = addToolBar("DXF");
  bar->setObjectName("tlbDXF");
  bar->setMovable(false);
  bar->setToolButtonStyle(Qt::ToolButtonTextOnly);
  for (const ButtonRow& row : kButtons) {
    auto* button = new QToolButton(bar);
    button->setObjectName(row.key);
    button->setText(row.caption);
    QAction* command = findChild<QAction*>(row.action);
    connect(button, &QToolButton::clicked, command, &QAction::trigger);
    bar->addWidget(button);
    if (row.key == std::string_view("chainreverse")) bar->addSeparator();
    if (row.key == std::string_view("sortselected")) bar->addSeparator();
  }
}

QWidget* DXFOptions::BuildLists() {
  auto* box = new QWidget(this);
  auto* layout = new QVBoxLayout(box);
  layout->setContentsMargins(0, 0, 0, 0);
  pages_ = new QTabWidget(box);

  auto* layerPage = new QWidget(pages_);
  auto* layerLayout = new QVBoxLayout(layerPage);
  lvLayers_ = ListView("lvLayers", {"Layer Name", "Entities", "Chained"}, layerPage);
  layerLayout->addWidget(lvLayers_);
  auto* copyToSaved = Button("cmdCopyToSaved", "Copy to &Saved Layers",
                             "Copy layer to saved layer list", layerPage);
  layerLayout->addWidget(copyToSaved, 0, Qt::AlignLeft);
  pages_->addTab(layerPage, "&Layers");

  auto* savedPage = new QWidget(pages_);
  auto* savedLayout = new QVBoxLayout(savedPage);
  lvSavedLayers_ = ListView("lvSavedLayers", {"Layer Name", "Z Depth", "Feed Rate"}, savedPage);
  savedLayout->addWidget(lvSavedLayers_);
  auto* savedButtons = new QHBoxLayout;
  auto* add =
      Button("cmdAddSavedLayer", "&Add...", "Add a layer to the saved layer list", savedPage);
  auto* remove =
      Button("cmdRemoveSavedLayer", "&Remove", "Remove the selected saved layer", savedPage);
  savedButtons->addWidget(add);
  savedButtons->addWidget(remove);
  savedButtons->addStretch();
  savedLayout->addLayout(savedButtons);
  pages_->addTab(savedPage, "Sa&ved Layers");
  layout->addWidget(pages_);

  auto* moveButtons = new QHBoxLayout;
  auto* up = Button("cmdMoveUp", "Move &Up", "Move selected item up the list", box);
  auto* down = Button("cmdMoveDown", "Move &Down", "Move selected item down the list", box);
  moveButtons->addWidget(up);
  moveButtons->addWidget(down);
  moveButtons->addStretch();
  layout->addLayout(moveButtons);

  connect(copyToSaved, &QPushButton::clicked, this, &DXFOptions::CopyToSaved);
  connect(add, &QPushButton::clicked, this, &DXFOptions::AddSavedLayer);
  connect(remove, &QPushButton::clicked, this, &DXFOptions::RemoveSavedLayer);
  connect(up, &QPushButton::clicked, this, [this] { MoveChosen(-1); });
  connect(down, &QPushButton::clicked, this, [this] { MoveChosen(1); });
  connect(pages_, &QTabWidget::currentChanged, this, [this] { ShowValues(); });
  connect(lvLayers_, &QTreeWidget::currentItemChanged, this, [this] { ShowValues(); });
  connect(lvSavedLayers_, &QTreeWidget::currentItemChanged, this, [this] { ShowValues(); });
  connect(lvLayers_, &QTreeWidget::itemChanged, this, [this](QTreeWidgetItem* item, int column) {
    if (loading_ || column != 0) return;
    const std::int32_t index = lvLayers_->indexOfTopLevelItem(item) + 1;
    if (index < 1 || index > dxf_.Layers.Count()) return;
    dxf_.Layers[index].Visible = item->checkState(0) == Qt::Checked ? -1 : 0;
    dxf_.ShowLayers();
  });
  return box;
}

QWidget* DXFOptions::BuildSettings() {
  auto* group = new QGroupBox("Layer Settings", this);
  auto* layout = new QVBoxLayout(group);
  auto* form = new QFormLayout;
  frmZIncrement_ = new QGroupBox("Step Down in Z", group);
  frmZIncrement_->setObjectName("frmZIncrement");
  frmZIncrement_->setCheckable(true);
  auto* steps = new QFormLayout(frmZIncrement_);
  for (std::size_t k = 0; k < kNumbers.size(); ++k) {
    auto* box = new QLineEdit(group);
    box->setObjectName(kNumbers[k].control);
    (kNumbers[k].inZIncrement ? steps : form)->addRow(kNumbers[k].caption, box);
    numbers_[k] = box;
  }
  layout->addLayout(form);
  layout->addWidget(frmZIncrement_);
  txtHeader_ = new QPlainTextEdit(group);
  txtHeader_->setObjectName("txtHeader");
  txtFooter_ = new QPlainTextEdit(group);
  txtFooter_->setObjectName("txtFooter");
  for (QPlainTextEdit* edit : {txtHeader_, txtFooter_}) {
    edit->setFixedHeight(fontMetrics().lineSpacing() * 3 + 12);
    edit->setLineWrapMode(QPlainTextEdit::NoWrap);
  }
  layout->addWidget(new QLabel("Header:", group));
  layout->addWidget(txtHeader_);
  layout->addWidget(new QLabel("Footer:", group));
  layout->addWidget(txtFooter_);
  auto* copyButtons = new QHBoxLayout;
  auto* toLayer =
      Button("cmdCopyToLayer", "Copy to &Layer", "Copy values to selected layer", group);
  auto* toAll = Button("cmdCopyToAll", "Copy to &All", "Copy values to all layers", group);
  copyButtons->addWidget(toLayer);
  copyButtons->addWidget(toAll);
  copyButtons->addStretch();
  layout->addLayout(copyButtons);
  auto* join = new QFormLayout;
  txtJoinDistance_ = new QLineEdit(group);
  txtJoinDistance_->setObjectName("txtJoinDistance");
  txtJoinDistance_->setToolTip("Ends closer than this are joined into one chain");
  join->addRow("Max Join Distance:", txtJoinDistance_);
  layout->addLayout(join);
  layout->addStretch();
  connect(toLayer, &QPushButton::clicked, this, &DXFOptions::CopyToLayer);
  connect(toAll, &QPushButton::clicked, this, &DXFOptions::CopyToAll);
  return group;
}

void DXFOptions::ConnectFields() {
  for (QLineEdit* box : numbers_)
    connect(box, &QLineEdit::textChanged, this, &DXFOptions::TakeValues);
  connect(frmZIncrement_, &QGroupBox::toggled, this, &DXFOptions::TakeValues);
  connect(txtHeader_, &QPlainTextEdit::textChanged, this, &DXFOptions::TakeValues);
  connect(txtFooter_, &QPlainTextEdit::textChanged, this, &DXFOptions::TakeValues);
  connect(txtJoinDistance_, &QLineEdit::textChanged, this, &DXFOptions::TakeJoinDistance);
}

void DXFOptions::showEvent(QShowEvent* event) {
  plot_.Engine().Driver.PlotBlocked = true;
  QMainWindow::showEvent(event);
}

void DXFOptions::hideEvent(QHideEvent* event) {
  plot_.Engine().Driver.PlotBlocked = false;
  QMainWindow::hideEvent(event);
}

bool DXFOptions::eventFilter(QObject* watched, QEvent* event) {
  if (watched == &plot_ && event->type() == QEvent::Hide) hide();
  return QMainWindow::eventFilter(watched, event);
}

// --- Lists and fields ---------------------------------------------------------------------------

void DXFOptions::Refresh() {
  if (!dxf_.DrawingShown()) dxf_.Layers.Clear();  // a plot has replaced the drawing
  if (dxf_.SavedLayers.empty()) {
    dxf_.SavedLayers = LoadSavedLayers(plot_.Store(), dxf_.LayerDefaults());
  }
  const std::int32_t layer = ChosenLayer();
  const int saved = ChosenSaved();
  {
    const QScopedValueRollback<bool> quiet(loading_, true);
    txtJoinDistance_->setText(Number(plot_.Settings().Preferences.DXFMaxJoinDistance));
  }
  FillLayerList();
  FillSavedList();
  ChooseRow(lvLayers_, layer > 0 ? layer - 1 : 0);
  ChooseRow(lvSavedLayers_, saved >= 0 ? saved : 0);
  ShowValues();
}

void DXFOptions::FillLayerList() {
  // Filling changes the current item, which shows its values: the flag is restored, not reset.
  const QScopedValueRollback<bool> quiet(loading_, true);
  lvLayers_->clear();
  for (std::int32_t i = 1; i <= dxf_.Layers.Count(); ++i) {
    const ConvertParams& layer = dxf_.Layers[i];
    const int count = std::max(0, layer.LastEntity - layer.FirstEntity + 1);
    auto* item =
        new QTreeWidgetItem(lvLayers_, {QString::fromStdString(layer.LayerName),
                                        QString::number(count), dxf_.IsChained(i) ? "Yes" : "No"});
    item->setFlags(item->flags() | Qt::ItemIsUserCheckable);
    item->setCheckState(0, layer.Visible != 0 ? Qt::Checked : Qt::Unchecked);
    item->setToolTip(0, "Shown in the viewport when checked");
  }
}

void DXFOptions::FillSavedList() {
  const QScopedValueRollback<bool> quiet(loading_, true);
  lvSavedLayers_->clear();
  for (const ConvertParams& layer : dxf_.SavedLayers) {
    new QTreeWidgetItem(lvSavedLayers_, {QString::fromStdString(layer.LayerName),
                                         Number(layer.ZDepth), Number(layer.FeedRate)});
  }
}

std::int32_t DXFOptions::ChosenLayer() const {
  QTreeWidgetItem* item = lvLayers_->currentItem();
  return item == nullptr ? 0 : lvLayers_->indexOfTopLevelItem(item) + 1;
}

int DXFOptions::ChosenSaved() const {
  QTreeWidgetItem* item = lvSavedLayers_->currentItem();
  return item == nullptr ? -1 : lvSavedLayers_->indexOfTopLevelItem(item);
}

bool DXFOptions::SavedPageShown() const {
  return pages_->currentIndex() == 1;
}

ConvertParams* DXFOptions::Shown() {
  if (SavedPageShown()) {
    const int saved = ChosenSaved();
    return saved >= 0 && saved < int(dxf_.SavedLayers.size())
               ? &dxf_.SavedLayers[std::size_t(saved)]
               : nullptr;
  }
  const std::int32_t layer = ChosenLayer();
  return layer >= 1 && layer <= dxf_.Layers.Count() ? &dxf_.Layers[layer] : nullptr;
}

void DXFOptions::ShowValues() {
  const ConvertParams* shown = Shown();
  const ConvertParams values = shown != nullptr ? *shown : dxf_.LayerDefaults();
  const QScopedValueRollback<bool> quiet(loading_, true);
  for (std::size_t k = 0; k < kNumbers.size(); ++k) {
    numbers_[k]->setText(Number(values.*kNumbers[k].field));
  }
  frmZIncrement_->setChecked(values.EnableZIncrement != 0);
  txtHeader_->setPlainText(QString::fromStdString(EditorTextFromProgramLines(values.Header)));
  txtFooter_->setPlainText(QString::fromStdString(EditorTextFromProgramLines(values.Footer)));
  const bool any = shown != nullptr;
  for (QLineEdit* box : numbers_) box->setEnabled(any);
  frmZIncrement_->setEnabled(any);
  txtHeader_->setEnabled(any);
  txtFooter_->setEnabled(any);
}

ConvertParams DXFOptions::FieldValues() const {
  ConvertParams values;
  for (std::size_t k = 0; k < kNumbers.size(); ++k) {
    values.*kNumbers[k].field = NumberOf(numbers_[k]);
  }
  values.EnableZIncrement = frmZIncrement_->isChecked() ? -1 : 0;
  values.Header = ProgramLinesFromEditor(txtHeader_->toPlainText().toStdString());
  values.Footer = ProgramLinesFromEditor(txtFooter_->toPlainText().toStdString());
  return values;
}

// An edit of a field goes at once to the record shown.
void DXFOptions::TakeValues() {
  if (loading_) return;
  ConvertParams* shown = Shown();
  if (shown == nullptr) return;
  CopyLayerValues(FieldValues(), *shown);
  if (SavedPageShown()) {
    SaveSavedList();
    if (QTreeWidgetItem* item = lvSavedLayers_->currentItem()) {
      item->setText(1, Number(shown->ZDepth));
      item->setText(2, Number(shown->FeedRate));
    }
  }
}

void DXFOptions::TakeJoinDistance() {
  if (loading_) return;
  plot_.Settings().Preferences.DXFMaxJoinDistance = NumberOf(txtJoinDistance_);
}

void DXFOptions::SaveSavedList() {
  SaveSavedLayers(plot_.Store(), dxf_.SavedLayers);
}

// The table changed under the lists: chain marks and the picture follow.
void DXFOptions::LayersChanged() {
  const std::int32_t layer = ChosenLayer();
  FillLayerList();
  ChooseRow(lvLayers_, layer - 1);
  dxf_.ShowLayers();
}

// --- Commands -----------------------------------------------------------------------------------

void DXFOptions::ChainLayers(bool all) {
  if (all) {
    for (std::int32_t i = 1; i <= dxf_.Layers.Count(); ++i) {
      if (!dxf_.ChainLayer(i)) break;
    }
  } else {
    dxf_.ChainLayer(ChosenLayer());
  }
  LayersChanged();
}

void DXFOptions::SortLayers(bool all) {
  if (all) {
    for (std::int32_t i = 1; i <= dxf_.Layers.Count(); ++i) dxf_.SortLayer(i);
  } else {
    dxf_.SortLayer(ChosenLayer());
  }
  LayersChanged();
}

void DXFOptions::ReverseChain() {
  dxf_.ReverseSelectedChain();
  dxf_.ShowLayers();
}

void DXFOptions::ConvertLayers(bool all) {
  std::vector<std::int32_t> indices;
  if (all) {
    for (std::int32_t i = 1; i <= dxf_.Layers.Count(); ++i) indices.push_back(i);
  } else if (ChosenLayer() > 0) {
    indices.push_back(ChosenLayer());
  }
  dxf_.ConvertLayers(indices);
}

void DXFOptions::MoveChosen(int step) {
  if (SavedPageShown()) {
    const int from = ChosenSaved();
    const int to = from + step;
    if (from < 0 || to < 0 || to >= int(dxf_.SavedLayers.size())) return;
    std::swap(dxf_.SavedLayers[std::size_t(from)], dxf_.SavedLayers[std::size_t(to)]);
    SaveSavedList();
    FillSavedList();
    ChooseRow(lvSavedLayers_, to);
    return;
  }
  const std::int32_t from = ChosenLayer();
  const std::int32_t to = from + step;
  if (from < 1 || to < 1 || to > dxf_.Layers.Count()) return;
  std::swap(dxf_.Layers[from], dxf_.Layers[to]);
  FillLayerList();
  ChooseRow(lvLayers_, to - 1);
  dxf_.ShowLayers();
}

void DXFOptions::CopyToLayer() {
  const std::int32_t layer = ChosenLayer();
  if (layer < 1) return;
  CopyLayerValues(FieldValues(), dxf_.Layers[layer]);
}

void DXFOptions::CopyToAll() {
  const ConvertParams values = FieldValues();
  for (std::int32_t i = 1; i <= dxf_.Layers.Count(); ++i) CopyLayerValues(values, dxf_.Layers[i]);
}

void DXFOptions::CopyToSaved() {
  const std::int32_t layer = ChosenLayer();
  if (layer < 1) return;
  const ConvertParams& source = dxf_.Layers[layer];
  const int existing = SavedLayerIndex(dxf_.SavedLayers, source.LayerName);
  if (existing >= 0) {
    const MsgAnswer answer =
        plot_.GetHost().ask(Prompt{"A layer with the same name is already in the\r\n"
                                   "saved layer list.  Do you want to overwrite it?",
                                   kProductName, MsgIcon::Question, MsgButtons::YesNo});
    if (answer != MsgAnswer::Yes) return;
    CopyLayerValues(source, dxf_.SavedLayers[std::size_t(existing)]);
  } else {
    ConvertParams saved = dxf_.LayerDefaults();
    saved.LayerName = source.LayerName;
    saved.Visible = -1;
    CopyLayerValues(source, saved);
    dxf_.SavedLayers.push_back(saved);
  }
  SaveSavedList();
  FillSavedList();
  ChooseRow(lvSavedLayers_, existing >= 0 ? existing : int(dxf_.SavedLayers.size()) - 1);
}

void DXFOptions::AddSavedLayer() {
  const std::optional<std::string> typed =
      dxf_.InputBox("Add Saved Layer", "Enter new layer name:");
  if (!typed) return;
  QString name = QString::fromStdString(*typed).trimmed().toUpper();
  if (name.isEmpty()) return;
  if (SavedLayerIndex(dxf_.SavedLayers, name.toStdString()) >= 0) {
    plot_.GetHost().ask(Prompt{"Layer is already in the list!", kProductName, MsgIcon::Exclamation,
                               MsgButtons::Ok});
    return;
  }
  ConvertParams layer = dxf_.LayerDefaults();
  layer.LayerName = name.toStdString();
  layer.Visible = -1;
  dxf_.SavedLayers.push_back(layer);
  SaveSavedList();
  FillSavedList();
  ChooseRow(lvSavedLayers_, int(dxf_.SavedLayers.size()) - 1);
}

void DXFOptions::RemoveSavedLayer() {
  const int saved = ChosenSaved();
  if (saved < 0) return;
  const std::string name = dxf_.SavedLayers[std::size_t(saved)].LayerName;
  const MsgAnswer answer =
      plot_.GetHost().ask(Prompt{"Are you sure you want to remove layer:\r\n" + name, kProductName,
                                 MsgIcon::Question, MsgButtons::YesNo});
  if (answer != MsgAnswer::Yes) return;
  dxf_.SavedLayers.erase(dxf_.SavedLayers.begin() + saved);
  SaveSavedList();
  FillSavedList();
  ChooseRow(lvSavedLayers_, std::min(saved, int(dxf_.SavedLayers.size()) - 1));
  ShowValues();
}

}  // namespace zemtra
