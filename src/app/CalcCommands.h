#pragma once
// The Calc submenu of the Tools menu: measure, intersect, blend radius, point at center and
// offset over the selected entities of the viewport (their selection bytes, in table order).
// Results go to the panel "msg" or a message box; new entities are appended to the table and
// drawn; the program text never changes.
#include <QObject>
#include <QString>
#include <functional>
#include <optional>
#include <string>

namespace zemtra {

class Plot;

class CalcCommands : public QObject {
  Q_OBJECT
 public:
  explicit CalcCommands(Plot& plot);

  // Asks for one line of text (title, prompt); nullopt when cancelled. Tests replace it.
  std::function<std::optional<std::string>(const QString& title, const QString& prompt)> InputBox;

  void Measure();
  void Intersect();
  void BlendRadius();
  void PointAtCenter();
  void Offset();

 private:
  // Draws what the tools appended behind the table's former end.
  void ShowAppended();
  std::string NumberFormat() const;

  Plot& plot_;
};

}  // namespace zemtra
