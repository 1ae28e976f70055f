#include "app/EntityInfoWindow.h"

#include <QFontDatabase>
#include <QPlainTextEdit>
#include <QVBoxLayout>
#include <array>

#include "app/AppSettings.h"
#include "core/NumberText.h"
#include "core/SettingsStore.h"

namespace zemtra {

namespace {

constexpr const char* kSection = "StartUp";
constexpr std::array<const char*, 4> kKeys = {"EInfo Top", "EInfo Left", "EInfo Width",
                                              "EInfo Height"};
constexpr int kDefaultWidth = 300, kDefaultHeight = 260;  // pixels

}  // namespace

EntityInfoWindow::EntityInfoWindow(SettingsStore& store, QWidget* parent)
    : QWidget(parent, Qt::Tool), store_(store) {
  setObjectName("eInfo");
  setWindowTitle("Entity Info");
  txtInfo_ = new QPlainTextEdit(this);
  txtInfo_->setObjectName("txtInfo");
  txtInfo_->setReadOnly(true);
  txtInfo_->setLineWrapMode(QPlainTextEdit::NoWrap);
  txtInfo_->setFont(QFontDatabase::systemFont(QFontDatabase::FixedFont));
  auto* layout = new QVBoxLayout(this);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->addWidget(txtInfo_);
  RestorePlacement();
}

void EntityInfoWindow::ShowReport(const std::string& report) {
  QString text = QString::fromStdString(report);
  text.replace("\r\n", "\n");
  txtInfo_->setPlainText(text);
}

QString EntityInfoWindow::Report() const {
  return txtInfo_->toPlainText();
}

void EntityInfoWindow::hideEvent(QHideEvent* event) {
  SavePlacement();
  QWidget::hideEvent(event);
}

// The place is kept as it changes, so that it survives the main window's exit.
void EntityInfoWindow::moveEvent(QMoveEvent* event) {
  if (isVisible()) SavePlacement();
  QWidget::moveEvent(event);
}

void EntityInfoWindow::resizeEvent(QResizeEvent* event) {
  if (isVisible()) SavePlacement();
  QWidget::resizeEvent(event);
}

// Beside the main window's right edge unless the settings keep a place; a stored place off
// every screen is left to the window manager.
void EntityInfoWindow::RestorePlacement() {
  std::array<double, 4> twips{};
  bool stored = true;
  for (std::size_t i = 0; i < kKeys.size(); ++i) {
    const std::string text = store_.GetSetting(kSection, kKeys[i]);
    stored = stored && !text.empty();
    twips[i] = NumericTextValue(text);
  }
  if (stored && twips[2] > 0 && twips[3] > 0) {
    setGeometry(
        static_cast<int>(twips[1] / kTwipsPerPixel), static_cast<int>(twips[0] / kTwipsPerPixel),
        static_cast<int>(twips[2] / kTwipsPerPixel), static_cast<int>(twips[3] / kTwipsPerPixel));
    return;
  }
  resize(kDefaultWidth, kDefaultHeight);
  if (parentWidget() != nullptr) {
    const QRect main = parentWidget()->frameGeometry();
    move(main.right() - kDefaultWidth - 40, main.top() + 80);
  }
}

void EntityInfoWindow::SavePlacement() {
  const QRect place = geometry();
  const std::array<int, 4> pixels = {place.top(), place.left(), place.width(), place.height()};
  for (std::size_t i = 0; i < kKeys.size(); ++i) {
    store_.SaveSetting(kSection, kKeys[i], std::to_string(pixels[i] * kTwipsPerPixel));
  }
}

}  // namespace zemtra
