#pragma once
// mnuFont in the Tools menu: the Text To G-Code dialog, whose engraving program is inserted at
// the caret as one undo step and then plotted. A mill command: hidden on a lathe.
#include <QObject>

namespace zemtra {

class Plot;

class TextCommands : public QObject {
  Q_OBJECT
 public:
  explicit TextCommands(Plot& plot);

  // Opens the dialog; refused while a plot or another command runs.
  void ShowTextToGCode();
  // Puts `program` at the caret in place of the selection, as one undo step, and plots.
  void InsertProgram(const std::string& program);

 private:
  Plot& plot_;
};

}  // namespace zemtra
