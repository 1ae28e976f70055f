#pragma once
// The twelve named views of the viewport: their numbers, titles, axis names, and the menu and
// tool bar controls that choose them.
#include <array>
#include <cstdint>
#include <string_view>

namespace zemtra {

// Values of CurrentView.
enum ViewIndex : std::int16_t {
  kViewTop = 0,
  kViewBottom = 1,
  kViewFront = 2,
  kViewBack = 3,
  kViewRight = 4,
  kViewLeft = 5,
  kViewIsoMill = 6,
  kViewIsoLathe = 7,
  kViewFrontTurret = 8,
  kViewBackTurret = 9,
  kViewVerticalLeft = 10,
  kViewVerticalRight = 11,
};
inline constexpr int kViewCount = 12;

struct ViewInfo {
  std::string_view Title;        // drawn at the top-left of the viewport
  std::string_view PlaneName;    // the two axes the status bar position names
  std::string_view MenuName;     // objectName of the menu item
  std::string_view ToolBar;      // objectName of the tool bar holding its button
  std::string_view ButtonKey;    // key of that button
  std::string_view CommandName;  // name of the view on the command line
};

inline constexpr std::array<ViewInfo, kViewCount> kViews = {{
    {"Top", "XY", "mnuViewTop", "tlbView", "top", "top"},
    {"Bottom", "XY", "mnuViewBottom", "tlbView", "bottom", "bottom"},
    {"Front", "XZ", "mnuViewFront", "tlbView", "front", "front"},
    {"Back", "XZ", "mnuViewBack", "tlbView", "back", "back"},
    {"Right", "YZ", "mnuViewRight", "tlbView", "right", "right"},
    {"Left", "YZ", "mnuViewLeft", "tlbView", "left", "left"},
    {"Isometric", "XY", "mnuViewISO", "tlbView", "iso", "iso-mill"},
    {"Isometric", "XY", "mnuViewISO", "tlbView", "iso", "iso-lathe"},
    {"Front Turret", "ZX", "mnuViewLatheFront", "tlbLathe", "front", "front-turret"},
    {"Back Turret", "ZX", "mnuViewLatheBack", "tlbLathe", "back", "back-turret"},
    {"Vertical Left", "XZ", "mnuViewLatheLeft", "tlbLathe", "left", "vertical-left"},
    {"Vertical Right", "XZ", "mnuViewLatheRight", "tlbLathe", "right", "vertical-right"},
}};

inline constexpr bool IsKnownView(int view) {
  return view >= 0 && view < kViewCount;
}
inline constexpr bool IsIsoView(int view) {
  return view == kViewIsoMill || view == kViewIsoLathe;
}
// The view's row, or the top view's for an unknown number.
inline constexpr const ViewInfo& ViewInfoOf(int view) {
  return kViews[static_cast<std::size_t>(IsKnownView(view) ? view : 0)];
}
// The isometric view of a machine type (0 mill, 1 lathe).
inline constexpr int IsoViewFor(int machineType) {
  return machineType == 1 ? kViewIsoLathe : kViewIsoMill;
}

// The view named `name` on the command line: a CommandName, "iso" or "isometric" (the
// isometric view of `machineType`), or the number 0 to 11. -1 for anything else.
int ViewFromCommandName(std::string_view name, int machineType);

}  // namespace zemtra
