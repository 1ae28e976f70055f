#pragma once
// The part information of a finished plot: extents, the largest arc error, path lengths, and
// the run-time estimate of feed moves, rapids and tool changes, as the texts the dialog shows.
#include <string>
#include <string_view>

#include "core/GeoTypes.h"

namespace zemtra {

class GeometryTable;
class Interpreter;

inline constexpr std::string_view kRapidRateKey = "Rapid Rate";
inline constexpr std::string_view kRapidRateDefault = "100";
inline constexpr std::string_view kToolChangeTimeKey = "Tool Change Time";
inline constexpr std::string_view kToolChangeTimeDefault = "5";

// What the plot left behind.
struct PartFigures {
  double RapidDistance = 0;
  double FeedDistance = 0;
  double FeedTime = 0;  // seconds, as the plot driver summed it
  double MaxArcDeviation = 0;
  int ToolChanges = 0;
  GeoPoint Min;  // extents
  GeoPoint Max;
  bool Lathe = false;
  bool Diameter = false;  // a lathe's X values stand for a diameter
  std::string CoordinateFormat = "###0.0###";
};

// The figures of the table and the interpreter after a plot. Tool changes are the steps of the
// tool counter (M06 or T words, as the machine counts them).
PartFigures PartFiguresOf(const GeometryTable& table, const Interpreter& interpreter);

// The texts of the dialog's boxes.
struct PartInfoTexts {
  std::string XMinus, XPlus, XWidth;
  std::string YMinus, YPlus, YHeight;
  std::string ZMinus, ZPlus, ZDepth;
  std::string MaxArcError;
  std::string FeedL, TotalFeed, AverageFR;
  std::string RapidL, TotalRapid;
  std::string ToolC, TotalTC;
  std::string Total;
};

// Fills every box from `figures`; `rapidRate` (length units per minute) and `toolChangeTime`
// (seconds) are the texts the user typed: a rate of 0, or a text that is no number, gives a
// rapid time of 0.
PartInfoTexts ComputePartInfo(const PartFigures& figures, std::string_view rapidRate,
                              std::string_view toolChangeTime);

// A number of seconds as days, hours, minutes and seconds, to the nearest second. With
// `colons`: "1:01:01" (days only when there are any, hours only with hours or days, every
// field behind the first with two digits); without: "1h:01m:01s", the fields ended by "d:",
// "h:", "m:" and "s".
std::string TimeText(double seconds, bool colons);

}  // namespace zemtra
