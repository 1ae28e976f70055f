#pragma once
// The layer manager "DXF Conversion Options": the layers of the drawing on show and the saved
// layer list on two pages, the conversion settings of the chosen layer, the join distance, and
// the commands that chain, sort and convert the layers into program text. While it is shown the
// program is not plotted, so the drawing stays in the geometry table.
#include <QMainWindow>
#include <cstdint>

#include "config/ConvertParams.h"

class QGroupBox;
class QLineEdit;
class QPlainTextEdit;
class QTabWidget;
class QTreeWidget;

namespace zemtra {

class DxfCommands;
class Plot;

class DXFOptions : public QMainWindow {
  Q_OBJECT
 public:
  DXFOptions(DxfCommands& dxf, Plot& plot);

  // Refills both lists, the fields and the join distance.
  void Refresh();
  // The layer chosen in lvLayers (1-based), or 0.
  std::int32_t ChosenLayer() const;
  // The saved layer chosen in lvSavedLayers (0-based), or -1.
  int ChosenSaved() const;

 protected:
  void showEvent(QShowEvent* event) override;
  void hideEvent(QHideEvent* event) override;
  // Goes with the main window when that is closed or hidden.
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  void BuildMenus();
  void BuildToolBar();
  QWidget* BuildLists();
  QWidget* BuildSettings();
  void FillLayerList();
  void FillSavedList();
  void ConnectFields();

  bool SavedPageShown() const;
  // The record the fields show and edit: the chosen saved layer on the saved page, else the
  // chosen layer; nullptr when none is chosen.
  ConvertParams* Shown();
  void ShowValues();
  void TakeValues();
  ConvertParams FieldValues() const;
  void SaveSavedList();
  void LayersChanged();

  void ChainLayers(bool all);
  void SortLayers(bool all);
  void ReverseChain();
  void ConvertLayers(bool all);
  void MoveChosen(int step);
  void CopyToLayer();
  void CopyToAll();
  void CopyToSaved();
  void AddSavedLayer();
  void RemoveSavedLayer();
  void TakeJoinDistance();

  DxfCommands& dxf_;
  Plot& plot_;
  bool loading_ = false;  // controls are being filled: no edit is taken

  QTabWidget* pages_ = nullptr;
  QTreeWidget* lvLayers_ = nullptr;
  QTreeWidget* lvSavedLayers_ = nullptr;
  QLineEdit* numbers_[7] = {};
  QGroupBox* frmZIncrement_ = nullptr;
  QPlainTextEdit* txtHeader_ = nullptr;
  QPlainTextEdit* txtFooter_ = nullptr;
  QLineEdit* txtJoinDistance_ = nullptr;
};

}  // namespace zemtra
