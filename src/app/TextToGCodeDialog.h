#pragma once
// CFont, "Text To G-Code": the text, its font, height and placement (on a line or round an
// arc), the justification and the cutting values, with a live preview of the engraving in
// picPreview. cmdConvertFont converts the text and closes the dialog with the program; a font
// that is missing or cannot be converted is reported and the dialog stays open.
#include <QDialog>
#include <QPointF>
#include <functional>
#include <memory>
#include <optional>
#include <string>

#include "text/FontFace.h"

class QButtonGroup;
class QCheckBox;
class QLabel;
class QLineEdit;
class QTimer;

namespace zemtra {

class Host;
class TextConverter;
class TextPreview;
struct TextToGCodeSettings;

class TextToGCodeDialog : public QDialog {
  Q_OBJECT
 public:
  // Shows and, when the dialog closes, keeps the values in `settings`; `host` shows the
  // failures of a conversion; numbers of the program are written with `numberFormat`.
  TextToGCodeDialog(TextToGCodeSettings& settings, Host& host, std::string numberFormat,
                    QWidget* parent = nullptr);
  ~TextToGCodeDialog() override;

  // The font chooser behind cmdChooseFont, replaceable (tests): the new font, or nothing.
  std::function<std::optional<FontRequest>(const FontRequest& current)> ChooseFont;

  // Takes `request` as the font of the text (as the chooser does).
  void SetFont(const FontRequest& request);
  // Redraws the preview now from the controls.
  void UpdatePreview();
  // The engraving program made by cmdConvertFont; "" for a text without outlines.
  const std::string& Program() const { return program_; }

 private:
  void BuildControls();
  QWidget* BuildPlacement();
  QWidget* BuildJustification();
  QWidget* BuildArc();
  QWidget* BuildCutting();
  QLineEdit* AddNumberBox(const char* name);
  void LoadControls();
  // The values of the controls into settings_.
  void TakeControls();
  void ShowFontName();
  void ShowArcState();
  void ChooseFontClicked();
  void ConvertClicked();
  // The font of settings_, opened once per choice; nullptr and `error` when it cannot be.
  FontFace* OpenFont(std::string& error);
  // Converts the text of settings_ with messages through `host`.
  std::optional<std::string> Convert(Host& host, std::string& fontError);
  QPointF Reference() const;

  TextToGCodeSettings& settings_;
  Host& host_;
  std::string numberFormat_;
  std::string program_;
  std::unique_ptr<FontFace> font_;
  FontRequest fontKey_;
  bool fontOpened_ = false;
  std::string fontError_;

  QLineEdit* txtPreview_ = nullptr;
  TextPreview* picPreview_ = nullptr;
  QButtonGroup* optJustify_ = nullptr;
  QCheckBox* chkTextOnArc_ = nullptr;
  QLabel* lblXLoc_ = nullptr;
  QLabel* lblYLoc_ = nullptr;
  QLabel* lblFont_ = nullptr;
  QTimer* previewTimer_ = nullptr;
};

}  // namespace zemtra
