#pragma once
// The main window: program text on one side, the viewport on the other.
#include <QMainWindow>

class QPlainTextEdit;
class QWidget;

namespace zemtra {

class Plot : public QMainWindow {
  Q_OBJECT
 public:
  explicit Plot(QWidget* parent = nullptr);

  // Title "Zemtra vM.mm - file", or "... - Untitled" for "".
  void SetCaption(const QString& file);

 private:
  QPlainTextEdit* rtPgm_ = nullptr;
  QWidget* Pic1_ = nullptr;
};

}  // namespace zemtra
