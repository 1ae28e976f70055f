#include "cli/SvgSurface.h"

#include <algorithm>
#include <cmath>

#include "core/NumberText.h"

namespace zemtra {

namespace {

constexpr char kHexDigits[] = "0123456789ABCDEF";
constexpr double kFontSize = 11;

// A pixel coordinate to a tenth, without a bare trailing point ("12", "12.5").
std::string Coordinate(float value) {
  std::string text = FormatNumberText(value, "0.#");
  if (!text.empty() && text.back() == '.') text.pop_back();
  return text;
}

// Text with the five characters that XML reserves escaped.
std::string XmlEscaped(std::string_view text) {
  std::string out;
  out.reserve(text.size());
  for (char c : text) {
    switch (c) {
      case '&':
        out += "&amp;";
        break;
      case '<':
        out += "&lt;";
        break;
      case '>':
        out += "&gt;";
        break;
      case '"':
        out += "&quot;";
        break;
      case '\'':
        out += "&apos;";
        break;
      default:
        out += c;
    }
  }
  return out;
}

}  // namespace

std::string SvgColor(ColorValue color) {
  const unsigned value = static_cast<unsigned>(color);
  const unsigned channels[3] = {value & 0xFF, (value >> 8) & 0xFF, (value >> 16) & 0xFF};
  std::string text = "#";
  for (unsigned channel : channels) {
    text += kHexDigits[channel >> 4];
    text += kHexDigits[channel & 0xF];
  }
  return text;
}

SvgSurface::SvgSurface(int pixelWidth, int pixelHeight)
    : width_(std::max(1, pixelWidth)), height_(std::max(1, pixelHeight)) {}

void SvgSurface::Clear(ColorValue background) {
  overlay_.clear();
  if (layer_ == SurfaceLayer::Overlay) return;
  retained_ = "<rect width=\"" + std::to_string(width_) + "\" height=\"" + std::to_string(height_) +
              "\" fill=\"" + SvgColor(background) + "\"/>\n";
}

void SvgSurface::AppendStroke(std::string& out, const SurfacePen& pen) {
  out += " fill=\"none\" stroke=\"" + SvgColor(pen.color) + "\"";
  if (pen.width != 1) out += " stroke-width=\"" + std::to_string(pen.width) + "\"";
  if (pen.style == LineStyle::Dot) out += " stroke-dasharray=\"1 2\"";
  if (pen.style == LineStyle::DashDotDot) out += " stroke-dasharray=\"6 2 1 2 1 2\"";
}

void SvgSurface::Polyline(const PixelPoint* points, std::size_t count, const SurfacePen& pen) {
  if (count < 2) return;
  std::string& out = Layer();
  out += "<polyline";
  AppendStroke(out, pen);
  out += " points=\"";
  for (std::size_t i = 0; i < count; ++i) {
    if (i > 0) out += ' ';
    out += Coordinate(points[i].x);
    out += ',';
    out += Coordinate(points[i].y);
  }
  out += "\"/>\n";
}

void SvgSurface::Rectangle(PixelPoint a, PixelPoint b, const SurfacePen& pen) {
  std::string& out = Layer();
  out += "<rect x=\"" + Coordinate(std::min(a.x, b.x)) + "\" y=\"" +
         Coordinate(std::min(a.y, b.y)) + "\" width=\"" + Coordinate(std::fabs(b.x - a.x)) +
         "\" height=\"" + Coordinate(std::fabs(b.y - a.y)) + "\"";
  AppendStroke(out, pen);
  out += "/>\n";
}

void SvgSurface::Circle(PixelPoint center, float radius, const SurfacePen& pen) {
  std::string& out = Layer();
  out += "<circle cx=\"" + Coordinate(center.x) + "\" cy=\"" + Coordinate(center.y) + "\" r=\"" +
         Coordinate(radius) + "\"";
  AppendStroke(out, pen);
  out += "/>\n";
}

void SvgSurface::Text(PixelPoint topLeft, std::string_view text, ColorValue color) {
  std::string& out = Layer();
  out += "<text x=\"" + Coordinate(topLeft.x) + "\" y=\"" +
         Coordinate(static_cast<float>(topLeft.y + kFontSize)) + "\" fill=\"" + SvgColor(color) +
         "\">" + XmlEscaped(text) + "</text>\n";
}

float SvgSurface::TextWidth(std::string_view text) const {
  return static_cast<float>(0.6 * kFontSize * static_cast<double>(text.size()));
}

std::string SvgSurface::Document() const {
  const std::string w = std::to_string(width_), h = std::to_string(height_);
  return "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
         "<svg xmlns=\"http://www.w3.org/2000/svg\" width=\"" +
         w + "\" height=\"" + h + "\" viewBox=\"0 0 " + w + " " + h +
         "\" font-family=\"DejaVu Sans, Arial, sans-serif\" font-size=\"11\">\n" + retained_ +
         overlay_ + "</svg>\n";
}

}  // namespace zemtra
