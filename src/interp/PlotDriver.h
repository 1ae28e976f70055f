#pragma once
// The plot driver: runs the interpreter over a whole program and stores every motion as an
// entity of the geometry table, with the work offset and the active transforms applied,
// keeping distances, the run-time estimate, progress and the feed and spindle warnings.
#include <chrono>
#include <cstdint>
#include <functional>
#include <string>

#include "core/GeoTypes.h"
#include "core/Host.h"

namespace zemtra {

class GeometryTable;
class Interpreter;
class ProgramText;

// The Preferences switches of the feed and spindle warnings.
struct PlotWarnings {
  bool WarnFeedrate0 = false;      // "Feed motion while commanded feedrate = 0"
  bool WarnSpindleSpeed0 = false;  // spindle speed 0, and RPM 0 under feed per revolution
  bool WarnSpindleOff = false;     // "Feed motion while spindle OFF"
};

class PlotDriver {
 public:
  PlotDriver(Interpreter& interpreter, GeometryTable& table, Host& host);
  PlotDriver(const PlotDriver&) = delete;
  PlotDriver& operator=(const PlotDriver&) = delete;

  // Runs `program` from its first line into the table, replacing what the table held. Returns
  // at once while a plot runs or while PlotBlocked is set. An untitled empty text gives an
  // empty table. Errors of the program are shown and end the plot with what it has; a
  // run-time failure shows "Error in Plot_GCodeToGeometry" and leaves the table unended.
  void GCodeToGeometry(const ProgramText& program);
  // GCodeToGeometry, then the extents of the table into GeoMin and GeoMax.
  void RefreshGeometry(const ProgramText& program);

  // Block-by-block runs (macro stepping). BeginStepping does what a plot does before its loop
  // (`program` must outlive the run); false while a plot runs or PlotBlocked is set. Each
  // StepBlock runs one block and stores its motion as the plot would (the first motion only
  // places the start of entity 1); it returns the interpreter's result, and on kStop (or after
  // a warning's Cancel, also kStop) the table is ended as at the end of a plot. Throws what
  // ExecuteBlock throws; the table is then left unended.
  bool BeginStepping(const ProgramText& program);
  int StepBlock();
  // Runs begun so far, plots and stepping runs alike: a stepping run that sees another number
  // than its own knows that a plot came in between and its state is gone.
  std::uint64_t RunNumber() const { return runNumber_; }

  bool PlotBusy = false;    // a plot is running
  bool PlotCancel = false;  // stop after the current motion (Escape, a warning's Cancel)
  bool QuietPlot = false;   // show no message at all (automatic refresh)
  // Set by the window while it is not ready, a tool is busy or the DXF window is open.
  bool PlotBlocked = false;
  bool PlotRangeActive = false;
  double MoveRate = 0;         // factor on programmed feeds in the run-time estimate; 0 means 1
  std::int32_t ModalLine = 0;  // line at which ModalReport runs, once per plot
  std::function<void()> ModalReport;
  PlotWarnings Warnings;
  std::string NumberFormat = "###0.0###";  // format of the elapsed time in the status text
  std::chrono::milliseconds ProgressInterval{500};
  // Most blocks a plot may read before it stops with a message; 0 for no limit. Keeps an
  // endless macro loop from running for ever in batch use.
  std::int64_t BlockLimit = 0;

  // After a plot: end point and work offset of entity GeoLast (the view's remembered ones),
  // whether it ended in a run-time failure, and how long it took.
  GeoPoint LastEndPoint;
  GeoPoint LastWorkOffset;
  bool Failed = false;
  bool LimitReached = false;
  double ElapsedSeconds = 0;
  // Entities made by the last plot (also after a failure, which leaves spare slots).
  std::int32_t EntityCount() const;

 private:
  using Clock = std::chrono::steady_clock;

  void StartPlot(const ProgramText& program);
  bool RunStartLoop();
  void RunMainLoop();
  void PlaceStart();
  void TakeMotion();
  void EndTable();
  void EndPlot();
  void ReportFailure(const char* description);

  // Storing a motion.
  void StoreMotion();
  void FillEntity(GeoEntity& entity, bool arc);
  void AddToTotals(const GeoEntity& entity);
  int ColorIndexFor(int code) const;
  void ApplyTransforms(GeoEntity& entity, bool arc);
  void ApplyMirror(GeoEntity& entity, bool arc);
  void ApplyScale(GeoEntity& entity, bool arc);
  void ApplyRotation(GeoEntity& entity, bool arc);
  void WriteMachinePosition(const GeoPoint& point);
  void InsertCorner();
  bool MakeCornerEntity(const GeoEntity& before, const GeoEntity& current, GeoEntity& corner);
  void KeepCornerValues();
  void AddFeedTime(const GeoEntity& entity, double length);
  double ConstantSurfaceTime(const GeoEntity& entity, double length);
  static double ArcXAt(const GeoEntity& arc, double along);
  static constexpr int kSurfaceSpeedPieces = 32;
  bool Warn(std::string_view text, MsgIcon icon);

  // Special moves after a stored motion.
  void RunSpecialMoves();
  void AddReferenceReturn();
  void AddMachineCoordinateMove();
  void AddSpecialEntity(const GeoPoint& end);
  void SetMachineAxis(GeoPoint& end, int axis, double machineValue, int variableAxis);

  // Looks at the clock every kClockEvery calls; ReportProgress does the rest.
  void CheckProgress() {
    if ((++progressTick_ & (kClockEvery - 1)) == 0) ReportProgress();
  }
  void ReportProgress();
  static constexpr unsigned kClockEvery = 64;  // a power of two
  int NextBlock();

  Interpreter& interpreter_;
  GeometryTable& table_;
  Host& host_;
  Clock::time_point started_;
  Clock::time_point lastProgress_;
  unsigned progressTick_ = 0;
  std::int64_t blocksRead_ = 0;
  std::size_t plotFileSize_ = 0;
  bool modalReported_ = false;
  bool startPlaced_ = false;  // stepping: the first motion has placed the start
  std::uint64_t runNumber_ = 0;
  double cornerRadius_ = 0;  // held for the next feed line; 0 when none
  double cornerChamfer_ = 0;
};

}  // namespace zemtra
