#include "cli/PlotPicture.h"

#include <charconv>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <ostream>

#include "cli/SvgSurface.h"
#include "config/MachineConfig.h"
#include "core/DisplayFormats.h"
#include "core/NumberText.h"
#include "core/SettingsStore.h"
#include "view/ViewSettings.h"
#include "view/Views.h"

#ifdef ZEMTRA_HAVE_QT_GUI
#include <QBuffer>
#include <QByteArray>

#include "cli/ImageSurface.h"
#endif

namespace zemtra {

namespace {

constexpr int kMinPictureSide = 16;
constexpr int kMaxPictureSide = 16384;

// Writes `bytes` beside `path` and renames the file over it, so a failed write leaves what was
// there.
bool WriteFileReplacing(const std::string& path, std::string_view bytes, std::string& error) {
  const std::string temporary = path + ".zemtra-partial";
  {
    std::ofstream file(temporary, std::ios::binary | std::ios::trunc);
    if (!file) {
      error = "cannot create the file";
      return false;
    }
    file.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
    file.close();
    if (!file) {
      std::remove(temporary.c_str());
      error = "cannot write the file";
      return false;
    }
  }
  std::error_code code;
  std::filesystem::rename(temporary, path, code);
  if (code) {
    std::remove(temporary.c_str());
    error = code.message();
    return false;
  }
  return true;
}

// The view the picture shows: the one asked for, else the user's saved one, else the one that
// suits the machine.
int ChooseView(const PictureScene& scene, const PictureOptions& options, int savedView) {
  if (options.view >= 0) return options.view;
  if (scene.settings != nullptr) return savedView;
  return scene.config.MachineType == 1 ? kViewFrontTurret : kViewTop;
}

// Sets the viewport up as the window would show the scene, and paints it on `surface`.
void Paint(const PictureScene& scene, const PictureOptions& options, Host& host, Surface& surface) {
  Viewport viewport(scene.table, host);
  viewport.ApplyConfig(scene.config);
  viewport.ReadVariable = scene.readVariable;
  viewport.Marker.FourthAxisLetter = scene.fourthAxisLetter;
  int precision = 4;
  if (scene.settings != nullptr) {
    LoadViewSettings(*scene.settings, viewport.View, viewport.Switches);
    precision = static_cast<int>(
        NumericTextValue(scene.settings->GetSetting("Preferences", "Display Precision", "4")));
  }
  viewport.NumberFormat = DisplayFormatsFor(precision).Short;
  viewport.View.CurrentView =
      static_cast<std::int16_t>(ChooseView(scene, options, viewport.View.CurrentView));
  viewport.AttachSurface(&surface);
  viewport.LoadGeometry(scene.entityCount);
}

int WriteSvg(const PictureScene& scene, const PictureOptions& options, Host& host,
             std::ostream& out, std::ostream& err) {
  SvgSurface surface(options.width, options.height);
  Paint(scene, options, host, surface);
  const std::string document = surface.Document();
  if (options.svgPath == "-") {
    out << document;
    return 0;
  }
  std::string error;
  if (!WriteFileReplacing(options.svgPath, document, error)) {
    err << "zemtra-cli plot: cannot write " << options.svgPath << ": " << error << "\n";
    return 2;
  }
  return 0;
}

#ifdef ZEMTRA_HAVE_QT_GUI
int WritePng(const PictureScene& scene, const PictureOptions& options, Host& host,
             std::ostream& err) {
  const GuiSession gui;
  QByteArray bytes;
  {
    ImageSurface surface(options.width, options.height, true);
    Paint(scene, options, host, surface);
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    surface.Composed().save(&buffer, "PNG");
  }
  std::string error;
  if (bytes.isEmpty() ||
      !WriteFileReplacing(options.pngPath, std::string_view(bytes.constData(), bytes.size()),
                          error)) {
    err << "zemtra-cli plot: cannot write " << options.pngPath << ": "
        << (error.empty() ? "the image could not be encoded" : error) << "\n";
    return 2;
  }
  return 0;
}
#else
int WritePng(const PictureScene&, const PictureOptions&, Host&, std::ostream& err) {
  err << "zemtra-cli plot: PNG output is not available in this build\n";
  return 2;
}
#endif

}  // namespace

bool PngOutputAvailable() {
#ifdef ZEMTRA_HAVE_QT_GUI
  return true;
#else
  return false;
#endif
}

bool ParsePictureSize(std::string_view text, int& width, int& height) {
  const std::size_t x = text.find_first_of("xX");
  if (x == std::string_view::npos) return false;
  const auto readSide = [](std::string_view digits, int& side) {
    if (digits.empty()) return false;
    const auto [end, error] = std::from_chars(digits.data(), digits.data() + digits.size(), side);
    return error == std::errc() && end == digits.data() + digits.size() &&
           side >= kMinPictureSide && side <= kMaxPictureSide;
  };
  int w = 0, h = 0;
  if (!readSide(text.substr(0, x), w) || !readSide(text.substr(x + 1), h)) return false;
  width = w;
  height = h;
  return true;
}

int WritePlotPictures(const PictureScene& scene, const PictureOptions& options, Host& host,
                      std::ostream& out, std::ostream& err) {
  if (!options.svgPath.empty()) {
    if (const int status = WriteSvg(scene, options, host, out, err); status != 0) return status;
  }
  if (!options.pngPath.empty()) return WritePng(scene, options, host, err);
  return 0;
}

}  // namespace zemtra
