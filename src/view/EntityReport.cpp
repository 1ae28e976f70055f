#include "view/EntityReport.h"

#include <array>
#include <utility>

#include "core/NumberText.h"
#include "geom/Primitives.h"

namespace zemtra {

namespace {

constexpr double kDegreesPerRadian = 57.2957795130823;

struct PlaneWords {
  int Plane;
  std::string_view Name;  // "Plane       " line
  char First, Second;     // axis letters of the end point
  char FirstCentre, SecondCentre;
};

constexpr std::array<PlaneWords, 3> kPlaneWords = {{
    {17, "G17 - XY", 'X', 'Y', 'I', 'J'},
    {18, "G18 - ZX", 'X', 'Z', 'I', 'K'},
    {19, "G19 - YZ", 'Y', 'Z', 'J', 'K'},
}};

const PlaneWords& WordsOf(int plane) {
  for (const PlaneWords& words : kPlaneWords) {
    if (words.Plane == plane) return words;
  }
  return kPlaneWords[0];
}

double Axis(const GeoPoint& p, char letter) {
  switch (letter) {
    case 'X':
      return p.X;
    case 'Y':
      return p.Y;
    default:
      return p.Z;
  }
}

class ReportWriter {
 public:
  explicit ReportWriter(const EntityReportStyle& style) : style_(style) {}

  std::string Number(double value) const { return FormatNumberText(value, style_.NumberFormat); }

  void Line(std::string_view text) {
    if (!text_.empty()) text_ += "\r\n";
    text_ += text;
  }
  void Value(std::string_view label, double value) { Line(std::string(label) + Number(value)); }
  void Degrees(std::string_view label, double radians) {
    Value(label, radians * kDegreesPerRadian);
  }
  void Point(std::string_view label, const GeoPoint& p) { Line(std::string(label) + Coords(p)); }

  // "X1.0 Y2.0 Z0.0" on a mill (with the fourth axis when there is one), "Z0.0 X1.0" on a lathe.
  std::string Coords(const GeoPoint& p) const {
    if (style_.Lathe) return "Z" + Number(p.Z) + " X" + Number(p.X);
    std::string text = "X" + Number(p.X) + " Y" + Number(p.Y) + " Z" + Number(p.Z);
    if (!style_.FourthAxisLetter.empty()) {
      text += " " + std::string(style_.FourthAxisLetter) + Number(p.A);
    }
    return text;
  }

  std::string Take() { return std::move(text_); }

 private:
  const EntityReportStyle& style_;
  std::string text_;
};

std::string Heading(const GeoEntity& e, const ChainPlace* chain) {
  std::string heading;
  const bool clockwise = e.EntityType == kArcCW || e.EntityType == kHelixCW;
  switch (e.EntityType) {
    case kPoint:
      heading = "POINT";
      break;
    case kRapid:
    case kFeed:
      heading = e.EntityType == kRapid ? "LINE AT RAPID" : "LINE AT FEED";
      break;
    case kHelixCW:
    case kHelixCCW:
      heading = clockwise ? "HELICAL ARC CW" : "HELICAL ARC CCW";
      break;
    default:
      heading = clockwise ? "ARC CW" : "ARC CCW";
      break;
  }
  if (chain != nullptr) {
    heading +=
        ", Chain #" + std::to_string(chain->Chain) + ", Index #" + std::to_string(chain->Index);
  }
  return heading;
}

void LineLines(const GeoEntity& e, const EntityReportStyle& style, ReportWriter& out) {
  const GeoPoint& s = e.StartPoint;
  const GeoPoint& t = e.EndPoint;
  out.Point("Start       ", s);
  out.Point("End         ", t);
  out.Value("Length      ", EntityLength(e));
  if (style.Lathe) {
    out.Value("Delta Z     ", static_cast<double>(t.Z) - s.Z);
    out.Value("Delta X     ", static_cast<double>(t.X) - s.X);
    out.Degrees("Angle       ", AngleTo(s, t, 18));
    return;
  }
  out.Value("Delta X     ", static_cast<double>(t.X) - s.X);
  out.Value("Delta Y     ", static_cast<double>(t.Y) - s.Y);
  out.Value("Delta Z     ", static_cast<double>(t.Z) - s.Z);
  out.Degrees("XY Angle    ", AngleTo(s, t, 17));
  out.Degrees("ZX Angle    ", AngleTo(s, t, 18));
  out.Degrees("YZ Angle    ", AngleTo(s, t, 19));
}

// "G02 X1.0 Y0.0 I0.5 J0.0": the end point and the centre relative to the start.
std::string GCodeWords(const GeoEntity& e, const ReportWriter& out) {
  const PlaneWords& words = WordsOf(NormalPlane(e.Plane));
  const bool clockwise = e.EntityType == kArcCW || e.EntityType == kHelixCW;
  const auto relative = [&](char axis) {
    return Axis(e.CenterPoint, axis) - Axis(e.StartPoint, axis);
  };
  return std::string(clockwise ? "G02 " : "G03 ") + words.First +
         out.Number(Axis(e.EndPoint, words.First)) + " " + words.Second +
         out.Number(Axis(e.EndPoint, words.Second)) + " " + words.FirstCentre +
         out.Number(relative(words.First)) + " " + words.SecondCentre +
         out.Number(relative(words.Second));
}

void ArcLines(const GeoEntity& e, const EntityReportStyle& style, ReportWriter& out) {
  const int plane = NormalPlane(e.Plane);
  const bool helix = IsHelixCode(e.EntityType);
  out.Point("Start       ", e.StartPoint);
  out.Point("End         ", e.EndPoint);
  out.Point("Center      ", e.CenterPoint);
  out.Value("Radius      ",
            helix ? DistPlane(e.CenterPoint, e.StartPoint, plane) : e.RadiusOrTurns);
  if (helix) out.Value("Turns       ", e.RadiusOrTurns > 0 ? e.RadiusOrTurns : 0);
  out.Value("Arc Length  ", EntityLength(e));
  if (!style.Lathe) out.Line("Plane       " + std::string(WordsOf(plane).Name));
  out.Degrees("Start Angle ", AngleTo(e.CenterPoint, e.StartPoint, plane));
  out.Degrees("End Angle   ", AngleTo(e.CenterPoint, e.EndPoint, plane));
  if (!style.Lathe) out.Line("GCode       " + GCodeWords(e, out));
}

}  // namespace

ChainPlace ChainPlaceOf(const GeometryTable& table, std::int32_t index) {
  if (index < 1 || index > table.HighestIndex()) return {};
  const std::int32_t chain = table[index].LineNumber;
  std::int32_t first = index;
  while (first > 1 && table[first - 1].LineNumber == chain) --first;
  return ChainPlace{chain, index - first + 1};
}

std::string EntityReport(const GeoEntity& e, const EntityReportStyle& style,
                         const ChainPlace* chain) {
  ReportWriter out(style);
  out.Line(Heading(e, chain));
  out.Line("");
  switch (e.EntityType) {
    case kPoint:
      out.Line(out.Coords(e.EndPoint));
      break;
    case kRapid:
    case kFeed:
      LineLines(e, style, out);
      break;
    case kArcCW:
    case kArcCCW:
    case kHelixCW:
    case kHelixCCW:
      ArcLines(e, style, out);
      break;
    default:
      break;
  }
  return out.Take();
}

}  // namespace zemtra
