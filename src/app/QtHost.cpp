#include "app/QtHost.h"

#include <QCoreApplication>
#include <QFileDialog>
#include <QMessageBox>

#include "app/StatusPanels.h"

namespace zemtra {

namespace {

QString ToQt(std::string_view text) {
  return QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()));
}

QMessageBox::Icon IconOf(MsgIcon icon) {
  switch (icon) {
    case MsgIcon::Information:
      return QMessageBox::Information;
    case MsgIcon::Exclamation:
      return QMessageBox::Warning;
    case MsgIcon::Stop:
      return QMessageBox::Critical;
    case MsgIcon::Question:
      return QMessageBox::Question;
    case MsgIcon::None:
      break;
  }
  return QMessageBox::NoIcon;
}

struct ButtonSet {
  QMessageBox::StandardButtons buttons;
  QMessageBox::StandardButton defaultButton;
  QMessageBox::StandardButton escapeButton;
};

ButtonSet ButtonsOf(MsgButtons buttons) {
  switch (buttons) {
    case MsgButtons::OkCancel:
      return {QMessageBox::Ok | QMessageBox::Cancel, QMessageBox::Ok, QMessageBox::Cancel};
    case MsgButtons::YesNo:
      return {QMessageBox::Yes | QMessageBox::No, QMessageBox::Yes, QMessageBox::No};
    case MsgButtons::YesNoCancel:
      return {QMessageBox::Yes | QMessageBox::No | QMessageBox::Cancel, QMessageBox::Yes,
              QMessageBox::Cancel};
    case MsgButtons::Ok:
      break;
  }
  return {QMessageBox::Ok, QMessageBox::Ok, QMessageBox::Ok};
}

MsgAnswer AnswerOf(int button, MsgButtons buttons) {
  switch (button) {
    case QMessageBox::Ok:
      return MsgAnswer::Ok;
    case QMessageBox::Cancel:
      return MsgAnswer::Cancel;
    case QMessageBox::Yes:
      return MsgAnswer::Yes;
    case QMessageBox::No:
      return MsgAnswer::No;
    default:
      break;
  }
  // A box closed without a button answers as its escape button.
  switch (buttons) {
    case MsgButtons::Ok:
      return MsgAnswer::Ok;
    case MsgButtons::YesNo:
      return MsgAnswer::No;
    default:
      return MsgAnswer::Cancel;
  }
}

// Line ends of engine texts are "\r\n" or "\n"; the box wants "\n".
QString MessageText(const std::string& text) {
  QString result = ToQt(text);
  result.replace("\r\n", "\n");
  result.replace('\r', '\n');
  return result;
}

}  // namespace

QtHost::QtHost(QWidget* window, StatusPanels& panels) : window_(window), panels_(panels) {}

MsgAnswer QtHost::ask(const Prompt& prompt) {
  if (promptHandler_) return promptHandler_(prompt);
  const ButtonSet set = ButtonsOf(prompt.buttons);
  QMessageBox box(IconOf(prompt.icon), ToQt(prompt.title), MessageText(prompt.text), set.buttons,
                  window_);
  box.setDefaultButton(set.defaultButton);
  box.setEscapeButton(set.escapeButton);
  return AnswerOf(box.exec(), prompt.buttons);
}

void QtHost::status(std::string_view panel, std::string_view text) {
  panels_.Set(panel, text);
}

void QtHost::progress(int percent) {
  panels_.SetProgress(percent);
}

void QtHost::pumpEvents() {
  if (pumpHook_) pumpHook_();
  QCoreApplication::processEvents(QEventLoop::AllEvents);
}

void QtHost::moveCaret(int line) {
  if (caretMover_) caretMover_(line);
}

std::string QtHost::chooseFile(std::string_view title, std::string_view folder,
                               std::string_view filter) {
  if (fileChooser_) return fileChooser_(title, folder, filter);
  const QString chosen =
      QFileDialog::getOpenFileName(window_, ToQt(title), ToQt(folder), ToQt(filter));
  return chosen.toStdString();
}

void QtHost::entityStored(const GeometryTable& table, int index) {
  if (entityObserver_) entityObserver_(table, index);
}

}  // namespace zemtra
