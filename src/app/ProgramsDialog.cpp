#include "app/ProgramsDialog.h"

#include <QDialogButtonBox>
#include <QFontDatabase>
#include <QPlainTextEdit>
#include <QVBoxLayout>

#include "app/AppSettings.h"
#include "app/SettingValues.h"
#include "core/SettingsStore.h"

namespace zemtra {

namespace {
constexpr const char* kSection = "StartUp";
}

ProgramsDialog::ProgramsDialog(const QString& listing, SettingsStore& settings, QWidget* parent)
    : QDialog(parent), settings_(settings) {
  setObjectName("frmPrograms");
  setWindowTitle("Programs in active file");
  auto* text = new QPlainTextEdit(listing, this);
  text->setObjectName("txtPrograms");
  text->setReadOnly(true);
  text->setLineWrapMode(QPlainTextEdit::NoWrap);
  text->setFont(QFontDatabase::systemFont(QFontDatabase::FixedFont));
  auto* buttons = new QDialogButtonBox(QDialogButtonBox::Close, this);
  connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
  auto* layout = new QVBoxLayout(this);
  layout->addWidget(text);
  layout->addWidget(buttons);

  float top = -1, left = -1, width = 0, height = 0;
  const SettingReader in(settings_, kSection);
  in.Float("PInfo Top", top);
  in.Float("PInfo Left", left);
  in.Float("PInfo Width", width);
  in.Float("PInfo Height", height);
  resize(width > 0 ? static_cast<int>(width / kTwipsPerPixel) : 520,
         height > 0 ? static_cast<int>(height / kTwipsPerPixel) : 360);
  if (top >= 0 && left >= 0) {
    move(static_cast<int>(left / kTwipsPerPixel), static_cast<int>(top / kTwipsPerPixel));
  }
}

ProgramsDialog::~ProgramsDialog() {
  SettingWriter out(settings_, kSection);
  out.Number("PInfo Top", y() * kTwipsPerPixel);
  out.Number("PInfo Left", x() * kTwipsPerPixel);
  out.Number("PInfo Width", width() * kTwipsPerPixel);
  out.Number("PInfo Height", height() * kTwipsPerPixel);
}

}  // namespace zemtra
