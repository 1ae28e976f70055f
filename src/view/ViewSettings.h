#pragma once
// The viewport's keys of the settings section "General": the view, the isometric angles and
// the display switches, read at start and written at exit.
namespace zemtra {

class SettingsStore;
class ViewState;
struct DrawSwitches;

// Reads "CurrentView", "ViewAngle", "TipAngle", "LockVertRotate", "ShowAxisLines",
// "ShowRapid", "ShowTicks", "ShowMarker" and "ShowPlunge". Missing keys take their defaults
// (view 0, 30 degrees, lock off, axis lines 1, the switches on); a flag is on only when its
// text is "True". An unknown view number becomes the top view.
void LoadViewSettings(const SettingsStore& settings, ViewState& view, DrawSwitches& switches);
// Writes the same keys.
void SaveViewSettings(SettingsStore& settings, const ViewState& view, const DrawSwitches& switches);

}  // namespace zemtra
