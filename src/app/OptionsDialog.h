#pragma once
// The Preferences dialog Options: every control takes effect at once on the setting it stands
// for; there is no OK or Cancel. "Multi Instance" is written to the store at once, so that a
// second start sees it; the rest is stored at exit.
#include <QDialog>
#include <functional>

class QCheckBox;
class QComboBox;
class QLineEdit;
class QRadioButton;

namespace zemtra {

struct AppSettings;
struct PaneLayout;
class SettingsStore;

class OptionsDialog : public QDialog {
  Q_OBJECT
 public:
  // What changed, for the window to follow.
  enum class Change { EditorColor, AutoRefreshDelay, AlwaysCaps, ViewportLeft, Other };

  OptionsDialog(AppSettings& settings, PaneLayout& panes, SettingsStore& store,
                QWidget* parent = nullptr);

  // Called after each change has been made to the settings.
  std::function<void(Change)> Changed;

 private:
  void BuildControls();
  void LoadControls();
  void ConnectControls();
  QCheckBox* AddCheck(const char* name, const char* caption);
  QLineEdit* AddDigits(const char* name);
  void TakeDelay(QLineEdit* box, int& value, Change change);
  void ChooseEditorColor();
  void Notify(Change change);

  AppSettings& settings_;
  PaneLayout& panes_;
  SettingsStore& store_;
  bool loading_ = false;  // controls are being filled: no change is made

  QLineEdit* txtAnimateDelay_ = nullptr;
  QLineEdit* txtAutoRefreshDelay_ = nullptr;
  QComboBox* cmbNumSteps_ = nullptr;
  QCheckBox* chkMultiInstance_ = nullptr;
  QCheckBox* chkAlwaysCaps_ = nullptr;
  QCheckBox* chkAutoEInfo_ = nullptr;
  QCheckBox* chkEnableViewMenu_ = nullptr;
  QCheckBox* chkAutoPlot_ = nullptr;
  QCheckBox* chkAutoZoom_ = nullptr;
  QCheckBox* chkM00Stop_ = nullptr;
  QCheckBox* chkSaveVariables_ = nullptr;
  QCheckBox* chkViewportLeft_ = nullptr;
  QCheckBox* chkWarnFR0_ = nullptr;
  QCheckBox* chkWarnSP0_ = nullptr;
  QCheckBox* chkWarnSPOff_ = nullptr;
  QRadioButton* optWarnReset_[3] = {nullptr, nullptr, nullptr};
};

}  // namespace zemtra
