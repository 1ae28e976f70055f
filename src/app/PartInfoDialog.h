#pragma once
// The part information dialog "Info": extents, the largest arc error, feed and rapid lengths
// and the run-time estimate of the last plot. The rapid rate and the tool change time are the
// user's and are kept in the settings.
#include <QDialog>
#include <functional>

#include "interp/PartInformation.h"

class QGridLayout;
class QGroupBox;
class QLabel;
class QLineEdit;

namespace zemtra {

class SettingsStore;

class Info : public QDialog {
  Q_OBJECT
 public:
  // `figures` gives what the last plot found when the boxes are filled.
  Info(std::function<PartFigures()> figures, SettingsStore& settings, QWidget* parent);

  // Fills every box from the last plot and the rates typed.
  void UpdateDisplay();

 protected:
  // The rates are written whenever the dialog goes out of sight (closed, or with the window).
  void hideEvent(QHideEvent* event) override;

 private:
  QLineEdit* AddBox(QGridLayout* grid, int row, int column, const char* name,
                    bool editable = false);
  void BuildExtents();
  void BuildTimes(QGridLayout* grid);
  void LoadRates();
  void SaveRates();
  void ShowMachineFrame(const PartFigures& figures);

  std::function<PartFigures()> figures_;
  SettingsStore& settings_;
  QGroupBox* frmMill_ = nullptr;
  QGroupBox* frmLathe_ = nullptr;
  QWidget* extents_ = nullptr;  // the extents grid, shown in the frame of the machine type
  QLabel* xLabel_ = nullptr;
  QList<QWidget*> yRow_;
  QLineEdit *txtXMinus_, *txtXPlus_, *txtXWidth_;
  QLineEdit *txtYMinus_, *txtYPlus_, *txtYHeight_;
  QLineEdit *txtZMinus_, *txtZPlus_, *txtZDepth_;
  QLineEdit* txtMaxArcError_ = nullptr;
  QLineEdit *txtFeedL_, *txtTotalFeed_, *txtAverageFR_;
  QLineEdit *txtRapidL_, *txtRapidR_, *txtTotalRapid_;
  QLineEdit *txtToolC_, *txtToolCT_, *txtTotalTC_;
  QLineEdit* txtTotal_ = nullptr;
};

}  // namespace zemtra
