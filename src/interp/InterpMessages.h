#pragma once
// Texts the interpreter and the plot driver show. Line ends inside messages are CR LF.
#include <string>
#include <string_view>

namespace zemtra {

inline constexpr std::string_view kLineEnd = "\r\n";
inline constexpr std::string_view kMessageTitle = "Zemtra";

inline constexpr std::string_view kErrorMainHead = "Error:";
inline constexpr std::string_view kErrorSubprogramHead = "Error in subprogram:";
inline constexpr std::string_view kErrorCycleHead = "Error in canned cycle:";
inline constexpr std::string_view kPlotFailureHead = "Error in Plot_GCodeToGeometry";
inline constexpr std::string_view kM00Stop = "M00 Program Stop";
inline constexpr std::string_view kMacroMessageHead = "Macro Message:";
inline constexpr std::string_view kBlockLimitHead = "The plot stopped after ";
inline constexpr std::string_view kBlockLimitTail = " blocks: the block limit was reached.";

inline constexpr std::string_view kWarnFeedPerRevolution =
    "Spindle RPM = 0 while Feed per Revolution is active";
inline constexpr std::string_view kWarnFeedrateZero = "Feed motion while commanded feedrate = 0";
inline constexpr std::string_view kWarnSpindleSpeedZero = "Feed motion while spindle speed = 0";
inline constexpr std::string_view kWarnSpindleOff = "Feed motion while spindle OFF";

inline constexpr std::string_view kStatusPlotting = "Plotting...";
inline constexpr std::string_view kStatusPlottingPercent = "Plotting... ";
inline constexpr std::string_view kStatusElapsed = "Elapsed Time = ";
inline constexpr std::string_view kStatusSeconds = " seconds";
inline constexpr std::string_view kArcErrorsEncountered = " Arc errors encountered";

// Blocks that need a part of the interpreter this version does not have yet stop the run
// with one of these; their codes follow the message list's.
enum PendingFeature {
  kPendingArc = 901,
  kPendingCannedCycle,
  kPendingSubprogram,
  kPendingMacroCall,
  kPendingExternalMacro,
  kPendingMacroStatement,
  kPendingCoordinateSystem,
  kPendingPolar,
  kPendingMirror,
  kPendingLatheCycle,
  kPendingLast = kPendingLatheCycle,
};

// Text of an interpreter error code: the message list's, or a pending feature's.
std::string InterpreterErrorText(int code);

}  // namespace zemtra
