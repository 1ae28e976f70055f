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

// Arc blocks.
inline constexpr std::string_view kNoArcCenter = "No arc center specified";
inline constexpr std::string_view kFullCircleWithR =
    "Cannot create full circle with R specified arc";
inline constexpr std::string_view kRTooSmall = "R value is too small";
inline constexpr std::string_view kMinimumR = "Minimum R value is ";
inline constexpr std::string_view kTurnsWithR =
    "Cannot specify multiple turns for R specified helical arcs";
inline constexpr std::string_view kTooManyTurns = "Maximum number of helical turns is 99";
inline constexpr std::string_view kArcRadiusZero = "Arc radius is zero";
inline constexpr std::string_view kRadiiDiffer = "Start radius and end radius are different";
inline constexpr std::string_view kByMoreThan = " by more than ";
inline constexpr std::string_view kArcToleranceFormat = "##0.0####";
inline constexpr std::string_view kIgnoreFurtherErrors = "Ignore further errors?";
inline constexpr std::string_view kIllegalArcPlane = "Illegal arc plane selected";
// The lines of the tip that follows kIllegalArcPlane, each ended by a line end but the last.
inline constexpr std::string_view kLathePlaneTip[] = {
    "Tip:  G18 is the only legal plane for the Lathe machine type.",
    "If the program does not contain the G17 or G19 codes, then ",
    "check the Initial State setting on the Machine Configuration's",
    "Control Options tab.",
};

// Lathe contour cycles.
inline constexpr std::string_view kBothPAndQ = "Both P & Q addresses required";

// Errors of the interpreter's own, with codes behind the message list's.
enum InterpreterError {
  kOWordStatement = 901,  // a LinuxCNC O-word statement (O100 SUB, O101 IF ...)
  kMissingPOrQ,           // a contour cycle without both P and Q
  kFirstInterpreterError = kOWordStatement,
  kLastInterpreterError = kMissingPOrQ,
};

// Text of an interpreter error code: the message list's, or one of InterpreterError.
std::string InterpreterErrorText(int code);

}  // namespace zemtra
