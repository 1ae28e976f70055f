#pragma once
// What the pointer does to the picture's entities: clicks and rubber boxes select them, the
// picked entity's program line is shown and its report fills the entity window, and point-to-
// point measuring snaps to entity ends. With them the selection commands of the View menu:
// zoom to the selection, highlight the entities of the selected program lines, select chains,
// entities at one Z or arcs of one radius, and delete the selected entities from the picture.
#include <QObject>
#include <QString>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>

#include "view/PointMeasure.h"

class QMenu;
class QPoint;

namespace zemtra {

class EntityInfoWindow;
class Plot;

class SelectionCommands : public QObject {
  Q_OBJECT
 public:
  explicit SelectionCommands(Plot& plot);

  // Asks for one line of text (title, prompt); nullopt when cancelled. Tests replace it.
  std::function<std::optional<std::string>(const QString& title, const QString& prompt)> InputBox;

  // --- The pointer ---
  // A click at view point (u, v): mode 0 plain, 1 Shift, 2 Ctrl.
  void Click(double u, double v, int mode);
  // A rubber box between view points; without `shift` the selection is cleared first.
  void SelectBox(double startU, double startV, double u, double v, bool shift);

  // --- Commands ---
  void HighlightSelected();
  void HighlightAndZoom();
  void SelectChain();
  void SelectByZ();
  void SelectByRadius();
  void DeleteSelected();
  void ZoomSelected();
  // Starts point-to-point measuring, or ends it when it runs.
  void Measure();
  // Shows the entity window (with the report of the last entity picked).
  void ShowEntityInfo();

  // The viewport's pop-up menu at `globalPosition`, when "Enable Right Click Menu" is on.
  void ShowPopup(const QPoint& globalPosition);
  QMenu* Popup() const { return popup_; }

  // The entity window, once it was needed; nullptr before.
  EntityInfoWindow* InfoWindow() const { return eInfo_; }
  PointMeasure& Measuring() { return measure_; }

 private:
  void AddActions();
  void ConnectPicture();
  // The picked entity's line in the program, the entity window, and its report.
  void ShowPicked(std::int32_t index);
  void FillReport(std::int32_t index);
  void Added(std::int32_t count);
  void Repaint();
  void Hover(double u, double v);
  void TakePoint();
  void EndMeasuring();
  std::optional<float> AskNumber(const std::string& candidate, const char* prompt);

  Plot& plot_;
  EntityInfoWindow* eInfo_ = nullptr;
  QMenu* popup_ = nullptr;
  PointMeasure measure_;
  std::int32_t reported_ = 0;  // the entity in the report
};

}  // namespace zemtra
