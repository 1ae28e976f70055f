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

// The fields of each section, in file order, for reading (a SettingReader and a record to
// fill) and for writing (a SettingWriter and a const record) alike.
template <typename Io, typename General>
void GeneralFields(Io& io, General& g) {
  io.NumericBool("Multi Instance", g.MultiInstance);
  io.Text("LastPath", g.LastPath);
  io.Bool("Auto Refresh Enabled", g.AutoRefreshEnabled);
  io.NumericBool("Block Skip", g.BlockSkip);
  io.NumericBool("Colorize", g.Colorize);
  io.Text("Font Name", g.FontName);
  io.Double("Font Size", g.FontSize);
  io.NumericBool("Font Bold", g.FontBold);
  io.NumericBool("Font Italic", g.FontItalic);
}

void LoadGeneral(const SettingsStore& store, GeneralSettings& g) {
  SettingReader in(store, kGeneral);
  GeneralFields(in, g);
}

void SaveGeneral(SettingsStore& store, const GeneralSettings& g) {
  SettingWriter out(store, kGeneral);
  GeneralFields(out, g);
}

template <typename Io, typename Preferences>
void PreferenceFields(Io& io, Preferences& p) {
  io.Int32("Animate Delay", p.AnimateDelay);
  io.Int32("Auto Refresh Delay", p.AutoRefreshDelay);
  io.Int16("Entities Per Step", p.EntitiesPerStep);
  io.Bool("Auto Show Entity Info", p.AutoShowEntityInfo);
  io.Int32("EditorColor", p.EditorColor);
  io.Bool("Always Caps", p.AlwaysCaps);
  io.Bool("Enable Right Click Menu", p.EnableRightClickMenu);
  io.Double("DXF Max Join Distance", p.DXFMaxJoinDistance);
  io.Bool("Save Variables on Exit", p.SaveVariablesOnExit);
  io.Bool("Warn on Feedrate 0", p.WarnOnFeedrate0);
  io.Bool("Warn on Spindle Speed 0", p.WarnOnSpindleSpeed0);
  io.Bool("Warn on Spindle OFF", p.WarnOnSpindleOff);
  io.Int16("Warning Reset", p.WarningReset);
  io.Bool("Plot When File Loaded", p.PlotWhenFileLoaded);
  io.Bool("Zoom on View Change", p.ZoomOnViewChange);
  io.Bool("Stop On M00", p.StopOnM00);
  io.Int16("Display Precision", p.DisplayPrecision);
}

void LoadPreferences(const SettingsStore& store, PreferenceSettings& p) {
  SettingReader in(store, kPreferences);
  PreferenceFields(in, p);
  for (int i = 1; i <= kAddressColorCount; ++i) {
    in.Int32(AddressColorKey(i), p.AddressColors[static_cast<std::size_t>(i)]);
  }
}

void SavePreferences(SettingsStore& store, const PreferenceSettings& p) {
  SettingWriter out(store, kPreferences);
  PreferenceFields(out, p);
}

void SaveAddressColors(SettingsStore& store, const PreferenceSettings& p) {
  SettingWriter out(store, kPreferences);
  for (int i = 1; i <= kAddressColorCount; ++i) {
    out.Number(AddressColorKey(i), p.AddressColors[static_cast<std::size_t>(i)]);
  }
}

template <typename Io, typename TextToGCode>
void TextToGCodeFields(Io& io, TextToGCode& t) {
  io.Text("String", t.String);
  io.Int16("Justify", t.Justify);
  io.Double("Text Height", t.TextHeight);
  io.Double("X Location", t.XLocation);
  io.Double("Y Location", t.YLocation);
  io.Double("Text Angle", t.TextAngle);
  io.Bool("On Arc", t.OnArc);
  io.Double("Radius", t.Radius);
  io.Double("Start Angle", t.StartAngle);
  io.Double("Z Retract", t.ZRetract);
  io.Double("Z Approach", t.ZApproach);
  io.Double("Z Depth", t.ZDepth);
  io.Double("Feedrate", t.Feedrate);
  io.Text("Font Name", t.FontName);
  io.Bool("Font Bold", t.FontBold);
  io.Bool("Font Italic", t.FontItalic);
  io.Int16("Font Size", t.FontSize);
}

void LoadTextToGCode(const SettingsStore& store, TextToGCodeSettings& t) {
  SettingReader in(store, kTextToGCode);
  TextToGCodeFields(in, t);
}

void SaveTextToGCode(SettingsStore& store, const TextToGCodeSettings& t) {
  SettingWriter out(store, kTextToGCode);
  TextToGCodeFields(out, t);
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

template <typename Io, typename Band>
void ToolbarBandFields(Io& io, int index, Band& band) {
  io.Int16(BandKey(index, "Position"), band.Position);
  io.NumericBool(BandKey(index, "New Row"), band.NewRow);
  io.Int32(BandKey(index, "Width"), band.Width);
  io.NumericBool(BandKey(index, "Visible"), band.Visible);
}

void LoadToolbarBand(const SettingsStore& store, int index, ToolbarBand& band) {
  SettingReader in(store, kToolbars);
  ToolbarBandFields(in, index, band);
}

void SaveToolbarBand(SettingsStore& store, int index, const ToolbarBand& band) {
  SettingWriter out(store, kToolbars);
  ToolbarBandFields(out, index, band);
}

}  // namespace zemtra
