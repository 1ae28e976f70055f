#include "app/StatusPanels.h"

#include <QEvent>
#include <QLabel>
#include <QMouseEvent>
#include <QProgressBar>
#include <QStatusBar>
#include <array>

namespace zemtra {

namespace {

struct PanelRow {
  const char* key;
  int minimumWidth;  // pixels; 0 for the stretching message panel
  const char* toolTip;
};

constexpr std::array kPanels = {
    PanelRow{"msg", 0, ""},
    PanelRow{"line", 60, "Line of the caret"},
    PanelRow{"edit", 70, "The program has unsaved changes"},
    PanelRow{"cfg", 90, "Machine configuration"},
    PanelRow{"bskip", 70, "Block skip: click to switch"},
    PanelRow{"pos", 170, "Pointer position in the viewport"},
    PanelRow{"script", 20, ""},
};

}  // namespace

StatusPanels::StatusPanels(QStatusBar* bar) : QObject(bar) {
  for (const PanelRow& row : kPanels) {
    auto* label = new QLabel(bar);
    label->setObjectName(row.key);
    label->setToolTip(row.toolTip);
    const bool message = row.minimumWidth == 0;
    if (message) {
      bar->addWidget(label, 1);
    } else {
      label->setMinimumWidth(row.minimumWidth);
      label->setFrameStyle(QFrame::Panel | QFrame::Sunken);
      bar->addPermanentWidget(label);
    }
    panels_.emplace(row.key, label);
  }
  progress_ = new QProgressBar(bar);
  progress_->setObjectName("Progress");
  progress_->setRange(0, 100);
  progress_->setMaximumWidth(160);
  progress_->hide();
  bar->addPermanentWidget(progress_);
  Panel("bskip")->installEventFilter(this);
  Panel("bskip")->setCursor(Qt::PointingHandCursor);
}

void StatusPanels::Set(std::string_view key, std::string_view text) {
  Set(key, QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size())));
}

void StatusPanels::Set(std::string_view key, const QString& text) {
  if (QLabel* label = Panel(key)) label->setText(text);
}

QString StatusPanels::Text(std::string_view key) const {
  const QLabel* label = Panel(key);
  return label ? label->text() : QString();
}

QLabel* StatusPanels::Panel(std::string_view key) const {
  const auto found = panels_.find(key);
  return found == panels_.end() ? nullptr : found->second;
}

void StatusPanels::SetProgress(int percent) {
  if (percent < 0) {
    progress_->hide();
    return;
  }
  progress_->setValue(percent > 100 ? 100 : percent);
  progress_->show();
}

bool StatusPanels::eventFilter(QObject* watched, QEvent* event) {
  if (watched == Panel("bskip") && event->type() == QEvent::MouseButtonRelease &&
      static_cast<QMouseEvent*>(event)->button() == Qt::LeftButton) {
    emit blockSkipClicked();
    return true;
  }
  return QObject::eventFilter(watched, event);
}

}  // namespace zemtra
