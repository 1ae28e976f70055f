#pragma once
// The machine description every subsystem reads: kind of machine, how its control reads arcs,
// rapids and calls, backplot colours, the fourth axis and the defaults of converted DXF layers.
#include <array>
#include <cstdint>
#include <string>
#include <vector>

#include "config/ConvertParams.h"

namespace zemtra {

// A flag of a record: -1 true, 0 false.
using ConfigFlag = std::int16_t;
constexpr ConfigFlag kFlagTrue = -1;
constexpr ConfigFlag kFlagFalse = 0;
constexpr ConfigFlag ToFlag(bool value) {
  return value ? kFlagTrue : kFlagFalse;
}

// A colour 0x00BBGGRR: red in the low byte, blue in the third.
using ColorValue = std::int32_t;

constexpr int kWorkOffsetCount = 6;  // G54 to G59

// Variable number of axis `axis` (0 X, 1 Y, 2 Z, 3 fourth axis) of work offset `offset`
// (0 for G54 to 5 for G59): G54 is #5221 to #5224, G59 #5321 to #5324.
constexpr int WorkOffsetVariable(int offset, int axis) {
  return 5221 + 20 * offset + axis;
}

// One machine configuration. A default-constructed record is the empty record (all zeros and
// empty strings) that clears a record before it is read.
struct MachineConfig {
  std::string ConfigName;           // file name without folder and without its last four characters
  std::string ConfigPath;           // full path of the file
  std::int16_t MachineType = 0;     // 0 mill, 1 lathe
  std::int16_t MillType = 0;        // 0 vertical, 1 horizontal
  ConfigFlag LatheXDiameter = 0;    // lathe X words are diameters (else radii)
  ConfigFlag LatheReverseArcs = 0;  // reverse the arc direction on the lathe
  std::string DefaultProgramFolder;
  std::string DefaultFileTypes;
  std::uint8_t RapidType = 0;  // 0 interpolated, 1 dog-leg, 2 XY interpolated with Z first/last
  ConfigFlag AbsoluteArcCenter = 0;     // I, J, K are absolute centres
  double ArcTolerance = 0;              // largest end-radius mismatch tolerated in an arc
  ConfigFlag ModalIJK = 0;              // I, J, K stay in force from block to block
  double CoordinateResolution = 0;      // 1.0, 0.1, 0.01, 0.001, 0.0001 or 0.00001
  std::string InitialState;             // G-code decoded before the program, as one block
  std::int16_t TopViewOrientation = 0;  // 0 to 3 quarter turns of the top view
  // G-codes in tenths (120 is G12, 371 is G37.1) that call a macro file; element 0 is unused,
  // the codes are at 1 to size() - 1.
  std::vector<std::int16_t> ExternalGCodeMacros{0};
  ConfigFlag FanucATANFormat = 0;  // two-operand ATAN [a] / [b] (else one-operand)
  ColorValue BackgroundColor = 0;
  ColorValue SelectionColor = 0;
  ColorValue MarkerColor = 0;
  ColorValue G00Color = 0;           // rapid
  ColorValue G01Color = 0;           // feed
  ColorValue G02Color = 0;           // clockwise arc
  ColorValue G03Color = 0;           // counter-clockwise arc
  ConfigFlag ColorByGCode = 0;       // colour by motion code (else by tool)
  std::int16_t ColorChangeCode = 0;  // 0 tool colour changes on M06, 1 on a T code
  ColorValue UnspecifiedToolColor = 0;
  // Element 0 is a copy of UnspecifiedToolColor; element i is the colour of tool i.
  std::vector<ColorValue> ToolColors{0};
  // The six lines of [WORK OFFSETS] as read, G54 first, such as "#5221=0 #5222=0 #5223=0
  // #5224=0". The offsets themselves live in the variable store.
  std::array<std::string, kWorkOffsetCount> WorkOffsetText;
  ConvertParams DXFDefaults;         // copied as a block into each new DXF layer
  std::string RotaryAxisIdentifier;  // address letter of the fourth axis
  std::uint8_t RotaryAxisPlane = 0;  // 18 rotates around Y, 19 around X
  double RotaryAxisResolution = 0;   // 1.0, 0.1, 0.01, 0.001 or 0.0001
  float RotaryCenterX = 0;           // a point on the axis of rotation
  float RotaryCenterY = 0;
  float RotaryCenterZ = 0;
  std::int16_t M98Format = 0;         // subprogram call format, 0 to 4
  std::int16_t LatheGCodeFormat = 0;  // 0 format A, 1 format B
  std::int16_t MCodeXMirrorOn = 0;
  std::int16_t MCodeYMirrorOn = 0;
  std::int16_t MCodeMirrorOff = 0;
  std::string DwellAddress;  // address letter holding the time of G04

  // Number of external macro codes (the highest index of ExternalGCodeMacros).
  int ExternalMacroCount() const { return static_cast<int>(ExternalGCodeMacros.size()) - 1; }
  // Highest tool number with a colour of its own (the highest index of ToolColors).
  int ToolColorCount() const { return static_cast<int>(ToolColors.size()) - 1; }

  friend bool operator==(const MachineConfig&, const MachineConfig&) = default;
};

// The two configuration records of a running program: ActiveConfig is in force and read by
// the interpreter, the viewport and the DXF tools; EditConfig is filled by LoadConfig and
// edited by the configuration dialog until it is applied.
struct ConfigSession {
  MachineConfig ActiveConfig;
  MachineConfig EditConfig;
};

}  // namespace zemtra
