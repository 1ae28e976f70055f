#include "app/TextPreview.h"

#include <QPaintEvent>
#include <QPainter>
#include <QPainterPath>
#include <algorithm>
#include <cmath>
#include <string>

#include "core/NumberText.h"

namespace zemtra {

namespace {

constexpr int kMargin = 12;  // pixels kept free round the drawing

// The value of the word `letter` in `block`, when it has one.
bool WordValue(std::string_view block, char letter, double& value) {
  const std::size_t at = block.find(letter);
  if (at == std::string_view::npos) return false;
  value = NumericTextValue(block.substr(at + 1));
  return true;
}

}  // namespace

std::vector<QPolygonF> EngravingContours(std::string_view program) {
  std::vector<QPolygonF> contours;
  QPolygonF current;
  const auto finish = [&] {
    if (current.size() > 1) contours.push_back(current);
    current.clear();
  };
  std::size_t start = 0;
  while (start < program.size()) {
    std::size_t end = program.find('\n', start);
    if (end == std::string_view::npos) end = program.size();
    const std::string_view block = program.substr(start, end - start);
    start = end + 1;
    if (block.substr(0, 3) == "G00") finish();
    double x = 0;
    double y = 0;
    if (WordValue(block, 'X', x) && WordValue(block, 'Y', y)) current.append(QPointF(x, y));
  }
  finish();
  return contours;
}

TextPreview::TextPreview(QWidget* parent) : QWidget(parent) {
  setObjectName("picPreview");
  setMinimumSize(320, 140);
  setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Expanding);
  setAutoFillBackground(true);
  QPalette colours = palette();
  colours.setColor(QPalette::Window, Qt::white);
  setPalette(colours);
}

void TextPreview::ShowProgram(std::string_view program, QPointF reference) {
  contours_ = EngravingContours(program);
  reference_ = reference;
  message_.clear();
  update();
}

void TextPreview::ShowMessage(const QString& text) {
  contours_.clear();
  message_ = text;
  update();
}

void TextPreview::paintEvent(QPaintEvent* /*event*/) {
  QPainter painter(this);
  painter.setRenderHint(QPainter::Antialiasing);
  const QRectF area = QRectF(rect()).adjusted(kMargin, kMargin, -kMargin, -kMargin);
  if (!message_.isEmpty() || contours_.empty()) {
    painter.setPen(palette().color(QPalette::Disabled, QPalette::WindowText));
    painter.drawText(area, Qt::AlignCenter | Qt::TextWordWrap, message_);
    return;
  }
  QRectF bounds;
  for (const QPolygonF& contour : contours_) bounds = bounds.united(contour.boundingRect());
  const double width = std::max(bounds.width(), 1e-9);
  const double height = std::max(bounds.height(), 1e-9);
  const double scale = std::min(area.width() / width, area.height() / height);
  // Centre the drawing; program Y points up, the widget's down.
  QTransform toWidget;
  toWidget.translate(area.center().x(), area.center().y());
  toWidget.scale(scale, -scale);
  toWidget.translate(-bounds.center().x(), -bounds.center().y());

  QPainterPath path;
  for (const QPolygonF& contour : contours_) path.addPolygon(toWidget.map(contour));
  painter.setPen(QPen(QColor(0, 0, 128), 1.2));
  painter.setBrush(QColor(200, 210, 240));
  path.setFillRule(Qt::OddEvenFill);
  painter.drawPath(path);

  const QPointF mark = toWidget.map(reference_);
  if (rect().contains(mark.toPoint())) {
    painter.setPen(QPen(Qt::red, 1));
    painter.drawLine(mark - QPointF(6, 0), mark + QPointF(6, 0));
    painter.drawLine(mark - QPointF(0, 6), mark + QPointF(0, 6));
  }
}

}  // namespace zemtra
