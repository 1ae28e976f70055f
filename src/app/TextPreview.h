#pragma once
// picPreview of the Text To G-Code dialog: the contours of an engraving program drawn scaled to
// fit the box, Y up, with the reference point marked when it lies in view; or a message in
// place of the drawing when the text cannot be converted.
#include <QPointF>
#include <QPolygonF>
#include <QString>
#include <QWidget>
#include <string_view>
#include <vector>

namespace zemtra {

// The cutting contours of an engraving program: each run of X/Y blocks that starts at the
// rapid to a contour's start (a "G00" block ends the run before it).
std::vector<QPolygonF> EngravingContours(std::string_view program);

class TextPreview : public QWidget {
  Q_OBJECT
 public:
  explicit TextPreview(QWidget* parent = nullptr);

  // Draws the contours of `program`; `reference` is the placement's reference point.
  void ShowProgram(std::string_view program, QPointF reference);
  // Shows `text` instead of a drawing.
  void ShowMessage(const QString& text);

  const std::vector<QPolygonF>& Contours() const { return contours_; }
  const QString& Message() const { return message_; }

  QSize sizeHint() const override { return {560, 200}; }

 protected:
  void paintEvent(QPaintEvent* event) override;

 private:
  std::vector<QPolygonF> contours_;
  QPointF reference_;
  QString message_;
};

}  // namespace zemtra
