#pragma once
// Every persisted setting of the desktop program with its default, and the reading and writing
// of the sections at start and at exit. Values are texts in a SettingsStore; a value that
// cannot be read keeps its default.
#include <array>
#include <cstdint>
#include <string>
#include <vector>

#include "app/RecentFiles.h"
#include "core/DisplayFormats.h"
#include "editor/Colorize.h"  // kAddressColorCount
#include "macro/SubprogramSettings.h"

namespace zemtra {

class SettingsStore;
class ViewState;
struct DrawSwitches;

constexpr int kTwipsPerPixel = 15;  // placement and pane widths are kept in twips

// Section "General".
struct GeneralSettings {
  bool MultiInstance = false;  // written at once by the Preferences dialog
  std::string LastPath;
  bool AutoRefreshEnabled = false;
  // The view and the display switches are the viewport's (ViewState, DrawSwitches).
  bool BlockSkip = false;
  bool Colorize = true;
  std::string FontName = "Courier New";
  double FontSize = 10;  // points
  bool FontBold = false;
  bool FontItalic = false;
};

// Section "Preferences", edited by the Options dialog.
struct PreferenceSettings {
  std::int32_t AnimateDelay = 100;      // milliseconds
  std::int32_t AutoRefreshDelay = 500;  // milliseconds
  std::int16_t EntitiesPerStep = 1;
  bool AutoShowEntityInfo = true;
  std::int32_t EditorColor = 16777215;  // 0x00BBGGRR background of the program text
  bool AlwaysCaps = true;
  bool EnableRightClickMenu = true;
  double DXFMaxJoinDistance = 0.003;
  bool SaveVariablesOnExit = true;
  bool WarnOnFeedrate0 = false;
  bool WarnOnSpindleSpeed0 = false;
  bool WarnOnSpindleOff = false;
  std::int16_t WarningReset = 0;  // 0, 1 or 2
  bool PlotWhenFileLoaded = true;
  bool ZoomOnViewChange = true;
  bool StopOnM00 = true;
  std::int16_t DisplayPrecision = 4;  // 3 to 6 decimals
  // Colours 0x00BBGGRR of the program text: 1 to 26 the letters A to Z, 27 comments,
  // 28 expressions, 29 keywords, 30 unused; slot 0 is unused.
  std::array<std::int32_t, kAddressColorCount + 1> AddressColors = DefaultAddressColors();

  static std::array<std::int32_t, kAddressColorCount + 1> DefaultAddressColors();
};

// Section "TextToGCode": the Text To G-Code dialog's values.
struct TextToGCodeSettings {
  std::string String = "Zemtra";
  std::int16_t Justify = 0;
  double TextHeight = 1;
  double XLocation = 0;
  double YLocation = 0;
  double TextAngle = 0;
  bool OnArc = false;
  double Radius = 10;
  double StartAngle = 0;
  double ZRetract = 10;
  double ZApproach = 1;
  double ZDepth = 0;
  double Feedrate = 10;
  std::string FontName = "Arial";
  bool FontBold = false;
  bool FontItalic = false;
  std::int16_t FontSize = 12;
};

// Everything LoadSettings reads and SaveSettings writes.
struct AppSettings {
  std::string ComConfig;  // section "StartUp", key "COM Config"
  GeneralSettings General;
  PreferenceSettings Preferences;
  TextToGCodeSettings TextToGCode;
  RecentFiles Recent;
  SubprogramSettings Subprograms;

  DisplayFormats Formats() const { return DisplayFormatsFor(Preferences.DisplayPrecision); }
};

// Reads General (with the viewport's keys), Preferences, TextToGCode, Recent Files and
// Subprograms (and "COM Config"), entry by entry. Recent entries whose file is gone are dropped.
void LoadSettings(const SettingsStore& store, AppSettings& settings,
                  const RecentFiles::FileExists& exists, ViewState& view, DrawSwitches& switches);
// Writes "COM Config", Recent Files, General (with the viewport's keys), Preferences, the
// address colours, TextToGCode and Subprograms, in that order.
void SaveSettings(SettingsStore& store, const AppSettings& settings, const ViewState& view,
                  const DrawSwitches& switches);

// Writes "Multi Instance" alone: the Preferences dialog stores it at once, so that a second
// start sees it.
void SaveMultiInstance(SettingsStore& store, bool multiInstance);
// Reads "Multi Instance" alone (step 2 of start-up, before anything else is read).
bool LoadMultiInstance(const SettingsStore& store);

// "Address Color 1" to "Address Color 30".
std::string AddressColorKey(int index);

// Section "StartUp": the main window's placement and pane layout, in twips.
struct WindowPlacement {
  float Top = 0;
  float Left = 0;
  float Width = 0;
  float Height = 0;
  std::int16_t WindowState = 0;  // 0 normal, 1 minimised, 2 maximised
};

struct PaneLayout {
  bool ViewportLeft = false;
  std::int32_t PaneWidth1 = 0;
  std::int32_t PaneWidth2 = 0;
};

// The pane widths with their defaults; a first pane under 1000 becomes 4000.
PaneLayout LoadPaneLayout(const SettingsStore& store, std::int32_t defaultWidth);
// The placement with `defaults`: negative Top or Left become 0, a Width or Height of 0 or
// less takes the default.
WindowPlacement LoadWindowPlacement(const SettingsStore& store, const WindowPlacement& defaults);
void SavePaneLayout(SettingsStore& store, const PaneLayout& panes);
void SaveWindowPlacement(SettingsStore& store, const WindowPlacement& placement);

// One band of the tool bar container, section "Toolbars".
struct ToolbarBand {
  std::int16_t Position = 0;
  bool NewRow = false;
  std::int32_t Width = 0;
  bool Visible = true;
};
// Reads band `index`; missing keys keep the values of `band`.
void LoadToolbarBand(const SettingsStore& store, int index, ToolbarBand& band);
void SaveToolbarBand(SettingsStore& store, int index, const ToolbarBand& band);

}  // namespace zemtra
