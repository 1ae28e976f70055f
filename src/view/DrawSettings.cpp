#include "view/DrawSettings.h"

#include "config/MachineConfig.h"

namespace zemtra {

ColorValue DrawColors::ToolColor(int tool) const {
  if (ToolColors.empty()) return 0;
  if (tool < 0 || tool >= static_cast<int>(ToolColors.size())) return ToolColors.front();
  return ToolColors[static_cast<std::size_t>(tool)];
}

DrawColors DrawColorsFromConfig(const MachineConfig& config) {
  DrawColors colors;
  colors.Rapid = config.G00Color;
  colors.Feed = config.G01Color;
  colors.ArcCW = config.G02Color;
  colors.ArcCCW = config.G03Color;
  colors.Selected = config.SelectionColor;
  colors.Marker = config.MarkerColor;
  colors.Background = config.BackgroundColor;
  colors.ColorByMotion = config.ColorByGCode != 0;
  colors.RapidStyle = config.RapidType;
  colors.ToolColors = config.ToolColors;
  if (colors.ToolColors.empty()) colors.ToolColors.push_back(config.UnspecifiedToolColor);
  return colors;
}

ColorValue ForeColorFor(ColorValue background) {
  return background < 0x800001 ? 0xFFFFFF : 0;
}

}  // namespace zemtra
