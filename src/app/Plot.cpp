#include "app/Plot.h"

#include <QPlainTextEdit>
#include <QSplitter>
#include <QStatusBar>

#include "core/Version.h"

namespace zemtra {

Plot::Plot(QWidget* parent) : QMainWindow(parent) {
  setObjectName("Plot");
  auto* splitter = new QSplitter(this);
  rtPgm_ = new QPlainTextEdit(splitter);
  rtPgm_->setObjectName("rtPgm");
  rtPgm_->setLineWrapMode(QPlainTextEdit::NoWrap);
  Pic1_ = new QWidget(splitter);
  Pic1_->setObjectName("Pic1");
  Pic1_->setAutoFillBackground(true);
  Pic1_->setMinimumWidth(200);
  splitter->addWidget(rtPgm_);
  splitter->addWidget(Pic1_);
  splitter->setStretchFactor(1, 1);
  setCentralWidget(splitter);
  statusBar()->showMessage("1");
  resize(1100, 700);
  SetCaption("");
}

void Plot::SetCaption(const QString& file) {
  setWindowTitle(QString::fromStdString(CaptionText(file.toStdString())));
}

}  // namespace zemtra
