#include "app/AppSettings.h"

#include <cstddef>

#include "app/SettingValues.h"
#include "core/NumberText.h"
#include "core/SettingsStore.h"
#include "view/ViewSettings.h"

namespace zemtra {

namespace {

constexpr const char* kGeneral = "General";
constexpr const char* kPreferences = "Preferences";
constexpr const char* kStartUp = "StartUp";
constexpr const char* kTextToGCode = "TextToGCode";
constexpr const char* kSubprograms = "Subprograms";
constexpr const char* kToolbars = "Toolbars";

constexpr std::int32_t Rgb(int red, int green, int blue) {
  return red | (green << 8) | (blue << 16);
}

// The palette a new user starts with, until the colours are set in the Address Coloring
// dialog: axes in strong colours, words of the program flow in darker ones.
constexpr std::array<std::int32_t, kAddressColorCount + 1> kDefaultPalette = {
    0,
    Rgb(0, 128, 128),    // A
    Rgb(0, 128, 128),    // B
    Rgb(0, 128, 128),    // C
    Rgb(128, 64, 0),     // D
    Rgb(128, 64, 0),     // E
    Rgb(204, 102, 0),    // F
    Rgb(0, 0, 192),      // G
    Rgb(128, 64, 0),     // H
    Rgb(128, 0, 128),    // I
    Rgb(128, 0, 128),    // J
    Rgb(128, 0, 128),    // K
    Rgb(96, 96, 96),     // L
    Rgb(176, 0, 0),      // M
    Rgb(128, 128, 128),  // N
    Rgb(0, 96, 0),       // O
    Rgb(128, 128, 0),    // P
    Rgb(128, 128, 0),    // Q
    Rgb(128, 0, 128),    // R
    Rgb(112, 0, 176),    // S
    Rgb(176, 0, 0),      // T
    Rgb(0, 128, 128),    // U
    Rgb(0, 128, 128),    // V
    Rgb(0, 128, 128),    // W
    Rgb(200, 0, 0),      // X
    Rgb(0, 140, 0),      // Y
    Rgb(0, 90, 200),     // Z
    Rgb(120, 120, 120),  // comments
    Rgb(200, 100, 0),    // expressions
    Rgb(150, 0, 150),    // keywords
    0,
};

void LoadGeneral(const SettingsStore& store, GeneralSettings& g) {
  const SettingReader in(store, kGeneral);
  in.NumericBool("Multi Instance", g.MultiInstance);
  in.Text("LastPath", g.LastPath);
  in.Bool("Auto Refresh Enabled", g.AutoRefreshEnabled);
  in.NumericBool("Block Skip", g.BlockSkip);
  in.NumericBool("Colorize", g.Colorize);
  in.Text("Font Name", g.FontName);
  in.Double("Font Size", g.FontSize);
  in.NumericBool("Font Bold", g.FontBold);
  in.NumericBool("Font Italic", g.FontItalic);
}

void SaveGeneral(SettingsStore& store, const GeneralSettings& g) {
  SettingWriter out(store, kGeneral);
  out.NumericBool("Multi Instance", g.MultiInstance);
  out.Text("LastPath", g.LastPath);
  out.Bool("Auto Refresh Enabled", g.AutoRefreshEnabled);
  out.NumericBool("Block Skip", g.BlockSkip);
  out.NumericBool("Colorize", g.Colorize);
  out.Text("Font Name", g.FontName);
  out.Number("Font Size", g.FontSize);
  out.NumericBool("Font Bold", g.FontBold);
  out.NumericBool("Font Italic", g.FontItalic);
}

void LoadPreferences(const SettingsStore& store, PreferenceSettings& p) {
  const SettingReader in(store, kPreferences);
  in.Int32("Animate Delay", p.AnimateDelay);
  in.Int32("Auto Refresh Delay", p.AutoRefreshDelay);
  in.Int16("Entities Per Step", p.EntitiesPerStep);
  in.Bool("Auto Show Entity Info", p.AutoShowEntityInfo);
  in.Int32("EditorColor", p.EditorColor);
  in.Bool("Always Caps", p.AlwaysCaps);
  in.Bool("Enable Right Click Menu", p.EnableRightClickMenu);
  in.Double("DXF Max Join Distance", p.DXFMaxJoinDistance);
  in.Bool("Save Variables on Exit", p.SaveVariablesOnExit);
  in.Bool("Warn on Feedrate 0", p.WarnOnFeedrate0);
  in.Bool("Warn on Spindle Speed 0", p.WarnOnSpindleSpeed0);
  in.Bool("Warn on Spindle OFF", p.WarnOnSpindleOff);
  in.Int16("Warning Reset", p.WarningReset);
  in.Bool("Plot When File Loaded", p.PlotWhenFileLoaded);
  in.Bool("Zoom on View Change", p.ZoomOnViewChange);
  in.Bool("Stop On M00", p.StopOnM00);
  in.Int16("Display Precision", p.DisplayPrecision);
  for (int i = 1; i <= kAddressColorCount; ++i) {
    in.Int32(AddressColorKey(i), p.AddressColors[static_cast<std::size_t>(i)]);
  }
}

void SavePreferences(SettingsStore& store, const PreferenceSettings& p) {
  SettingWriter out(store, kPreferences);
  out.Number("Animate Delay", p.AnimateDelay);
  out.Number("Auto Refresh Delay", p.AutoRefreshDelay);
  out.Number("Entities Per Step", p.EntitiesPerStep);
  out.Bool("Auto Show Entity Info", p.AutoShowEntityInfo);
  out.Number("EditorColor", p.EditorColor);
  out.Bool("Always Caps", p.AlwaysCaps);
  out.Bool("Enable Right Click Menu", p.EnableRightClickMenu);
  out.Number("DXF Max Join Distance", p.DXFMaxJoinDistance);
  out.Bool("Save Variables on Exit", p.SaveVariablesOnExit);
  out.Bool("Warn on Feedrate 0", p.WarnOnFeedrate0);
  out.Bool("Warn on Spindle Speed 0", p.WarnOnSpindleSpeed0);
  out.Bool("Warn on Spindle OFF", p.WarnOnSpindleOff);
  out.Number("Warning Reset", p.WarningReset);
  out.Bool("Plot When File Loaded", p.PlotWhenFileLoaded);
  out.Bool("Zoom on View Change", p.ZoomOnViewChange);
  out.Bool("Stop On M00", p.StopOnM00);
  out.Number("Display Precision", p.DisplayPrecision);
}

void SaveAddressColors(SettingsStore& store, const PreferenceSettings& p) {
  SettingWriter out(store, kPreferences);
  for (int i = 1; i <= kAddressColorCount; ++i) {
    out.Number(AddressColorKey(i), p.AddressColors[static_cast<std::size_t>(i)]);
  }
}

void LoadTextToGCode(const SettingsStore& store, TextToGCodeSettings& t) {
  const SettingReader in(store, kTextToGCode);
  in.Text("String", t.String);
  in.Int16("Justify", t.Justify);
  in.Double("Text Height", t.TextHeight);
  in.Double("X Location", t.XLocation);
  in.Double("Y Location", t.YLocation);
  in.Double("Text Angle", t.TextAngle);
  in.Bool("On Arc", t.OnArc);
  in.Double("Radius", t.Radius);
  in.Double("Start Angle", t.StartAngle);
  in.Double("Z Retract", t.ZRetract);
  in.Double("Z Approach", t.ZApproach);
  in.Double("Z Depth", t.ZDepth);
  in.Double("Feedrate", t.Feedrate);
  in.Text("Font Name", t.FontName);
  in.Bool("Font Bold", t.FontBold);
  in.Bool("Font Italic", t.FontItalic);
  in.Int16("Font Size", t.FontSize);
}

void SaveTextToGCode(SettingsStore& store, const TextToGCodeSettings& t) {
  SettingWriter out(store, kTextToGCode);
  out.Text("String", t.String);
  out.Number("Justify", t.Justify);
  out.Number("Text Height", t.TextHeight);
  out.Number("X Location", t.XLocation);
  out.Number("Y Location", t.YLocation);
  out.Number("Text Angle", t.TextAngle);
  out.Bool("On Arc", t.OnArc);
  out.Number("Radius", t.Radius);
  out.Number("Start Angle", t.StartAngle);
  out.Number("Z Retract", t.ZRetract);
  out.Number("Z Approach", t.ZApproach);
  out.Number("Z Depth", t.ZDepth);
  out.Number("Feedrate", t.Feedrate);
  out.Text("Font Name", t.FontName);
  out.Bool("Font Bold", t.FontBold);
  out.Bool("Font Italic", t.FontItalic);
  out.Number("Font Size", t.FontSize);
}

std::string BandKey(int index, const char* what) {
  return "Band " + std::to_string(index) + " " + what;
}

}  // namespace

std::array<std::int32_t, kAddressColorCount + 1> PreferenceSettings::DefaultAddressColors() {
  return kDefaultPalette;
}

std::string AddressColorKey(int index) {
  return "Address Color " + FormatNumberText(index, "#0");
}

void LoadSettings(const SettingsStore& store, AppSettings& settings,
                  const RecentFiles::FileExists& exists, ViewState& view, DrawSwitches& switches) {
  SettingReader(store, kStartUp).Text("COM Config", settings.ComConfig);
  LoadGeneral(store, settings.General);
  LoadViewSettings(store, view, switches);
  LoadPreferences(store, settings.Preferences);
  LoadTextToGCode(store, settings.TextToGCode);
  settings.Recent.Load(store, exists);
  settings.Subprograms = LoadSubprogramSettings(store);
}

void SaveSettings(SettingsStore& store, const AppSettings& settings, const ViewState& view,
                  const DrawSwitches& switches) {
  SettingWriter(store, kStartUp).Text("COM Config", settings.ComConfig);
  settings.Recent.Save(store);
  SaveGeneral(store, settings.General);
  SaveViewSettings(store, view, switches);
  SavePreferences(store, settings.Preferences);
  SaveAddressColors(store, settings.Preferences);
  SaveTextToGCode(store, settings.TextToGCode);
  SaveSubprogramSettings(store, settings.Subprograms);
}

void SaveMultiInstance(SettingsStore& store, bool multiInstance) {
  SettingWriter(store, kGeneral).NumericBool("Multi Instance", multiInstance);
}

bool LoadMultiInstance(const SettingsStore& store) {
  bool multiInstance = false;
  SettingReader(store, kGeneral).NumericBool("Multi Instance", multiInstance);
  return multiInstance;
}

PaneLayout LoadPaneLayout(const SettingsStore& store, std::int32_t defaultWidth) {
  PaneLayout panes{false, defaultWidth, defaultWidth};
  const SettingReader in(store, kStartUp);
  in.Bool("Viewport Left", panes.ViewportLeft);
  in.Int32("Pane1Width", panes.PaneWidth1);
  in.Int32("Pane2Width", panes.PaneWidth2);
  if (panes.PaneWidth1 < 1000) panes.PaneWidth1 = 4000;
  return panes;
}

WindowPlacement LoadWindowPlacement(const SettingsStore& store, const WindowPlacement& defaults) {
  WindowPlacement placement = defaults;
  const SettingReader in(store, kStartUp);
  in.Float("Top", placement.Top);
  in.Float("Left", placement.Left);
  in.Float("Width", placement.Width);
  in.Float("Height", placement.Height);
  in.Int16("WindowState", placement.WindowState);
  if (placement.Top < 0) placement.Top = 0;
  if (placement.Left < 0) placement.Left = 0;
  if (placement.Width <= 0) placement.Width = defaults.Width;
  if (placement.Height <= 0) placement.Height = defaults.Height;
  return placement;
}

void SavePaneLayout(SettingsStore& store, const PaneLayout& panes) {
  SettingWriter out(store, kStartUp);
  out.Number("Pane1Width", panes.PaneWidth1);
  out.Number("Pane2Width", panes.PaneWidth2);
  out.Bool("Viewport Left", panes.ViewportLeft);
}

void SaveWindowPlacement(SettingsStore& store, const WindowPlacement& placement) {
  SettingWriter out(store, kStartUp);
  out.Number("Top", placement.Top);
  out.Number("Left", placement.Left);
  out.Number("Width", placement.Width);
  out.Number("Height", placement.Height);
  out.Number("WindowState", placement.WindowState);
}

void LoadToolbarBand(const SettingsStore& store, int index, ToolbarBand& band) {
  const SettingReader in(store, kToolbars);
  in.Int16(BandKey(index, "Position"), band.Position);
  in.NumericBool(BandKey(index, "New Row"), band.NewRow);
  in.Int32(BandKey(index, "Width"), band.Width);
  in.NumericBool(BandKey(index, "Visible"), band.Visible);
}

void SaveToolbarBand(SettingsStore& store, int index, const ToolbarBand& band) {
  SettingWriter out(store, kToolbars);
  out.Number(BandKey(index, "Position"), band.Position);
  out.NumericBool(BandKey(index, "New Row"), band.NewRow);
  out.Number(BandKey(index, "Width"), band.Width);
  out.NumericBool(BandKey(index, "Visible"), band.Visible);
}

}  // namespace zemtra
