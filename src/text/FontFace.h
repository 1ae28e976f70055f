#pragma once
// Installed fonts as a source of glyph outlines: found by family name through fontconfig, read
// with FreeType without hinting.
#include <memory>
#include <optional>
#include <string>

#include "text/GlyphOutline.h"

namespace zemtra {

// What the user picked in the font chooser.
struct FontRequest {
  std::string family = "Arial";
  bool bold = false;
  bool italic = false;
  int sizePoints = 12;  // the em at 96 dots per inch gives the pixel size; read at 48 at most
};

// A font file that answers a request.
struct FontMatch {
  std::string file;
  int index = 0;       // face within the file
  std::string family;  // the family the file declares, e.g. "Liberation Sans" for "Arial"
  // Styles the family lacks, made from its regular face as the desktop makes them.
  double slant = 0;       // x += slant * y, for an italic without an italic face
  bool embolden = false;  // thicken the strokes, for a bold without a bold face
};

// The installed font for `request`. The family must be installed under that name or under a
// metric-compatible alias ("Arial" -> "Liberation Sans"); fontconfig's fallback for an unknown
// family does not count. A generic name ("sans-serif", "serif", "monospace") takes the desktop's
// choice. On failure returns nothing and sets `error` ("Font "X" is not installed.").
std::optional<FontMatch> FindFont(const FontRequest& request, std::string& error);

class FontFace : public GlyphOutlineSource {
 public:
  // Opens the font that FindFont gives for `request`; nothing and `error` on failure.
  static std::unique_ptr<FontFace> Open(const FontRequest& request, std::string& error);
  // Opens face `index` of a font file at `sizePoints`; nothing and `error` on failure.
  static std::unique_ptr<FontFace> OpenFile(const std::string& file, int index, int sizePoints,
                                            std::string& error);
  ~FontFace() override;
  FontFace(const FontFace&) = delete;
  FontFace& operator=(const FontFace&) = delete;

  // The outline of `code` in pixels at the font's size, transformed by `matrix`. A code the
  // font lacks gives its missing-glyph box; false when FreeType cannot load an outline.
  bool GetGlyphOutline(char32_t code, const Mat2& matrix, NativeGlyph& glyph) override;

  // Slants (x += slant * y) and thickens the outlines, for styles the font has no face for.
  void SetSyntheticStyle(double slant, bool embolden);

  // The family name the font file declares.
  const std::string& familyName() const { return family_; }

 private:
  struct Library;
  FontFace(std::unique_ptr<Library> library, std::string family, double pixelsPerUnit);

  std::unique_ptr<Library> library_;
  std::string family_;
  double pixelsPerUnit_;  // pixels per font design unit
  double slant_ = 0;
  bool embolden_ = false;
};

}  // namespace zemtra
