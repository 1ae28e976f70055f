#pragma once
// Pictures of a plotted table for zemtra-cli plot: the viewport's painter drawing into an SVG
// document (always available) or a PNG image (when the build has QtGui).
#include <functional>
#include <iosfwd>
#include <string>
#include <string_view>

#include "view/Viewport.h"

namespace zemtra {

class GeometryTable;
class Host;
class SettingsStore;
struct MachineConfig;

struct PictureOptions {
  std::string pngPath;  // "" for none
  std::string svgPath;  // "" for none; "-" for standard output
  int view = -1;        // -1: the saved view with settings, else top (mill) or front turret (lathe)
  int width = 800;      // pixels
  int height = 600;
};

// What the picture shows: the table after a plot and what the marker and axis lines read.
struct PictureScene {
  const GeometryTable& table;
  std::int32_t entityCount;
  const MachineConfig& config;
  std::function<double(int)> readVariable;  // macro variables, for work zero axis lines
  std::string fourthAxisLetter;             // "" when the program turned no fourth axis
  const SettingsStore* settings = nullptr;  // the user's view switches and angles, or none
};

// True when this build can write PNG files.
bool PngOutputAvailable();

// Reads "WxH" (each 16 to 16384); false when the text is not that.
bool ParsePictureSize(std::string_view text, int& width, int& height);

// Draws the scene into each requested file, zoomed to the part's extents. Returns 0, or 2 with
// a line on `err` when a file cannot be written. The SVG of "-" goes to `out`.
int WritePlotPictures(const PictureScene& scene, const PictureOptions& options, Host& host,
                      std::ostream& out, std::ostream& err);

}  // namespace zemtra
