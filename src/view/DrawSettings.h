#pragma once
// What the painter reads besides the table and the view: the user's display switches and the
// colours of the machine configuration.
#include <cstdint>
#include <vector>

#include "view/Surface.h"

namespace zemtra {

struct MachineConfig;

// The display switches of the View menu and their relatives.
struct DrawSwitches {
  std::int16_t ShowAxisLines = 1;  // 0 off, 1 machine zero, 2 to 7 work zero G54 to G59
  bool ShowRapid = true;           // rapids are drawn
  bool ShowTicks = true;           // a box at the end of each rapid
  bool ShowMarker = true;          // the callout at the current position
  bool ShowPlunge = true;          // pure downward Z feeds are drawn
  bool ArcColorSwap = false;       // exchanges the CW and CCW colours
  bool PrintInBlack = false;       // monochrome painting draws everything black
};

// Colours and styles of the machine configuration.
struct DrawColors {
  ColorValue Rapid = 0x0080FF;
  ColorValue Feed = 0x00FF00;
  ColorValue ArcCW = 0xFFFF00;
  ColorValue ArcCCW = 0xFF00FF;
  ColorValue Selected = 0x00FFFF;
  ColorValue Marker = 0xFFFFFF;
  ColorValue Background = 0;
  bool ColorByMotion = true;    // else by tool, from ToolColors
  std::uint8_t RapidStyle = 0;  // 0 straight, 1 axes at equal speed, 2 safe Z order
  std::vector<ColorValue> ToolColors{0xC0C0C0};  // element 0: tools without a colour of their own

  // The colour of tool `tool`; element 0 for a tool beyond the table.
  ColorValue ToolColor(int tool) const;
};

// The colours, colouring rule and rapid style of `config`.
DrawColors DrawColorsFromConfig(const MachineConfig& config);

// The pen colour for text and axis lines on `background`: white on a dark one, else black.
ColorValue ForeColorFor(ColorValue background);

}  // namespace zemtra
