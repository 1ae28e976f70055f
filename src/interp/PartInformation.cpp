#include "interp/PartInformation.h"

#include <cmath>

#include "config/MachineConfig.h"
#include "core/GeometryTable.h"
#include "core/NumberText.h"
#include "interp/Interpreter.h"

namespace zemtra {

namespace {

constexpr std::string_view kArcErrorFormat = "##0.0####";
constexpr double kSecondsPerDay = 86400;
constexpr double kSecondsPerHour = 3600;
constexpr double kSecondsPerMinute = 60;

// Minimum, maximum and their difference of one axis.
void FillExtent(const PartFigures& figures, double low, double high, std::string& minus,
                std::string& plus, std::string& size) {
  const std::string& format = figures.CoordinateFormat;
  minus = FormatNumberText(low, format);
  plus = FormatNumberText(high, format);
  size = FormatNumberText(high - low, format);
}

void FillExtents(const PartFigures& figures, PartInfoTexts& texts) {
  const double xScale = figures.Lathe && figures.Diameter ? 2.0 : 1.0;
  FillExtent(figures, figures.Min.X * xScale, figures.Max.X * xScale, texts.XMinus, texts.XPlus,
             texts.XWidth);
  FillExtent(figures, figures.Min.Y, figures.Max.Y, texts.YMinus, texts.YPlus, texts.YHeight);
  FillExtent(figures, figures.Min.Z, figures.Max.Z, texts.ZMinus, texts.ZPlus, texts.ZDepth);
}

}  // namespace

PartFigures PartFiguresOf(const GeometryTable& table, const Interpreter& interpreter) {
  const MachineConfig& config = interpreter.Config();
  PartFigures figures;
  figures.RapidDistance = table.RapidDistance;
  figures.FeedDistance = table.FeedDistance;
  figures.FeedTime = table.RunTime;
  figures.MaxArcDeviation = interpreter.MaxArcDeviation;
  figures.ToolChanges = interpreter.ToolColor;
  figures.Min = table.GeoMin;
  figures.Max = table.GeoMax;
  figures.Lathe = config.MachineType == 1;
  figures.Diameter = config.LatheXDiameter != 0;
  figures.CoordinateFormat = interpreter.Options().NumberFormat;
  return figures;
}

PartInfoTexts ComputePartInfo(const PartFigures& figures, std::string_view rapidRate,
                              std::string_view toolChangeTime) {
  const std::string& format = figures.CoordinateFormat;
  PartInfoTexts texts;
  FillExtents(figures, texts);
  texts.MaxArcError = FormatNumberText(figures.MaxArcDeviation, kArcErrorFormat);

  texts.FeedL = FormatNumberText(figures.FeedDistance, format);
  texts.TotalFeed = TimeText(figures.FeedTime, false);
  texts.AverageFR = figures.FeedTime == 0
                        ? std::string("0")
                        : FormatNumberText(figures.FeedDistance / figures.FeedTime * 60, format);

  const double rate = NumericTextValue(rapidRate);
  const double rapidTime = rate == 0 ? 0 : figures.RapidDistance / rate * 60;
  texts.RapidL = FormatNumberText(figures.RapidDistance, format);
  texts.TotalRapid = TimeText(rapidTime, false);

  const double toolChangeSeconds = figures.ToolChanges * NumericTextValue(toolChangeTime);
  texts.ToolC = FormatNumberText(figures.ToolChanges, "0");
  texts.TotalTC = TimeText(toolChangeSeconds, false);

  texts.Total = TimeText(figures.FeedTime + rapidTime + toolChangeSeconds, false);
  return texts;
}

std::string TimeText(double seconds, bool colons) {
  double rest = std::round(std::fabs(seconds));
  if (!std::isfinite(rest)) rest = 0;
  const double days = std::floor(rest / kSecondsPerDay);
  rest -= days * kSecondsPerDay;
  const double hours = std::floor(rest / kSecondsPerHour);
  rest -= hours * kSecondsPerHour;
  const double minutes = std::floor(rest / kSecondsPerMinute);
  rest -= minutes * kSecondsPerMinute;

  std::string text;
  bool first = true;
  const auto field = [&](double value, std::string_view end) {
    text.append(FormatNumberText(value, first ? "0" : "00"));
    text.append(colons ? (end == "s" ? "" : ":") : end);
    first = false;
  };
  if (days > 0) field(days, "d:");
  if (days > 0 || hours > 0) field(hours, "h:");
  field(minutes, "m:");
  field(rest, "s");
  return text;
}

}  // namespace zemtra
