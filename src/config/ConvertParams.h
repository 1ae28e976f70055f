#pragma once
// Conversion settings of one DXF layer: the heights, feeds and text wrapped around the G-code
// made from the layer. The machine configuration holds one as the default for new layers.
#include <cstdint>
#include <string>

namespace zemtra {

struct ConvertParams {
  std::string LayerName;
  std::int16_t Visible = 0;      // -1 shown, 0 hidden
  std::int32_t FirstEntity = 0;  // entity range of the layer in the geometry table
  std::int32_t LastEntity = 0;
  double ZRetract = 0;    // safe height
  double ZApproach = 0;   // height where the rapid approach ends
  double ZDepth = 0;      // cutting depth
  double ZTop = 0;        // top of material, for Z stepping ("Material Top" in the file)
  double ZIncrement = 0;  // depth per pass; its absolute value is used
  std::int16_t EnableZIncrement = 0;  // -1 on, 0 off
  double FeedRate = 0;                // "Feedrate" in the file
  double PlungeRate = 0;              // "Plunge Feedrate" in the file
  std::string Header;  // CR LF terminated lines written ahead of the code ("Layer Header")
  std::string Footer;  // CR LF terminated lines written after the code ("Layer Footer")

  friend bool operator==(const ConvertParams&, const ConvertParams&) = default;
};

}  // namespace zemtra
