#pragma once
// The modal state window: the interpreter's active G-codes, the other addresses of the last
// block and the arguments of an active canned cycle, as text, beside the main window.
#include <QWidget>
#include <string>

class QPlainTextEdit;

namespace zemtra {

class ModalStateWindow : public QWidget {
  Q_OBJECT
 public:
  explicit ModalStateWindow(QWidget* parent);

  // Shows `report` (lines ended by CR LF) and `where` in the title ("at line 12").
  void ShowReport(const std::string& report, const QString& where);
  QString ReportText() const;

 private:
  QPlainTextEdit* txtModal_ = nullptr;
};

}  // namespace zemtra
