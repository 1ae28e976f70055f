#pragma once
// The entity window eInfo: a small tool window beside the main window with one read-only text
// box holding the report on the entity last picked. Its place and size are kept in the settings
// ("EInfo Top", "EInfo Left", "EInfo Width", "EInfo Height" of "StartUp", in twips).
#include <QWidget>
#include <string>

class QPlainTextEdit;

namespace zemtra {

class SettingsStore;

class EntityInfoWindow : public QWidget {
  Q_OBJECT
 public:
  // A tool window of `parent`, placed as the settings say.
  EntityInfoWindow(SettingsStore& store, QWidget* parent);

  // Shows `report` ("\r\n" line ends).
  void ShowReport(const std::string& report);
  // The text shown, with "\n" line ends.
  QString Report() const;

 protected:
  void hideEvent(QHideEvent* event) override;
  void moveEvent(QMoveEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;

 private:
  void RestorePlacement();
  void SavePlacement();

  SettingsStore& store_;
  QPlainTextEdit* txtInfo_ = nullptr;
};

}  // namespace zemtra
