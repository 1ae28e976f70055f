#include "app/ModalStateWindow.h"

#include <QFontDatabase>
#include <QPlainTextEdit>
#include <QVBoxLayout>

namespace zemtra {

ModalStateWindow::ModalStateWindow(QWidget* parent) : QWidget(parent, Qt::Tool) {
  setObjectName("frmModal");
  setWindowTitle("Modal State");
  txtModal_ = new QPlainTextEdit(this);
  txtModal_->setObjectName("txtModal");
  txtModal_->setReadOnly(true);
  txtModal_->setLineWrapMode(QPlainTextEdit::NoWrap);
  txtModal_->setFont(QFontDatabase::systemFont(QFontDatabase::FixedFont));
  auto* layout = new QVBoxLayout(this);
  layout->setContentsMargins(4, 4, 4, 4);
  layout->addWidget(txtModal_);
  resize(340, 460);
}

void ModalStateWindow::ShowReport(const std::string& report, const QString& where) {
  QString text = QString::fromStdString(report);
  text.replace("\r\n", "\n");
  txtModal_->setPlainText(text);
  setWindowTitle(where.isEmpty() ? QString("Modal State") : "Modal State " + where);
}

QString ModalStateWindow::ReportText() const {
  return txtModal_->toPlainText();
}

}  // namespace zemtra
