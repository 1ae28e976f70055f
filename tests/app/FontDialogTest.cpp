// Text To G-Code from the Tools menu: the engraving lands at the caret as one undo step; a font
// that is missing or has cubic outlines is reported and nothing is inserted; the dialog's values
// are kept in section "TextToGCode".
#include <QAction>
#include <QCheckBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QTest>
#include <functional>

#include "app/AppTestSupport.h"
#include "app/PlotActions.h"
#include "app/TextPreview.h"
#include "app/TextToGCodeDialog.h"
#include "app/Workspace.h"
#include "core/SettingsStore.h"

namespace zemtra::test {

// Opens the dialog from the menu and runs `use` on it while it shows.
static void UseFontDialog(StartedPlot& plot, std::function<void(TextToGCodeDialog&)> use) {
  WhenDialogShows<TextToGCodeDialog>("CFont", [use](TextToGCodeDialog& dialog) {
    use(dialog);
    if (dialog.isVisible()) dialog.reject();
  });
  plot->Actions().Find("mnuFont")->trigger();
}

class FontDialogTest : public QObject {
  Q_OBJECT
 private slots:
  void EngravingIsInsertedAtTheCaret() {
    OpenedProgram opened("main.nc", "G0 X0.\nM30\n");
    StartedPlot& plot = opened.plot;
    plot->Engine().Editor.Document.SetSelection(8, 0);  // the start of "M30"
    std::size_t previewContours = 0;
    UseFontDialog(plot, [&](TextToGCodeDialog& dialog) {
      dialog.SetFont(FontRequest{"Arial", false, false, 12});
      SetText(dialog, "txtPreview", "I");
      SetText(dialog, "txtHeight", "1");
      SetText(dialog, "txtZApproach", "20");  // above the retract: no approach block
      dialog.UpdatePreview();
      previewContours = dialog.findChild<TextPreview*>("picPreview")->Contours().size();
      SaveShot(dialog, "cfont.png");
      dialog.findChild<QPushButton*>("cmdConvertFont")->click();
    });
    QCOMPARE(previewContours, std::size_t(1));
    const std::string& text = DocumentText(plot);
    QVERIFY2(text.rfind("G0 X0.\r\nG00Z10.0\r\nX", 0) == 0, text.c_str());
    QVERIFY(text.find("\r\nG01Z0.0F10.0\r\n") != std::string::npos);
    QVERIFY(text.find("\r\nZ20.0") == std::string::npos);
    QVERIFY(text.size() > 30 && text.substr(text.size() - 5) == "M30\r\n");
    QVERIFY(plot->Engine().Editor.Undo.Undo(1));
    QCOMPARE(DocumentText(plot), std::string("G0 X0.\r\nM30\r\n"));
  }

  // Both failures leave the dialog open and the document unchanged.
  void UnusableFontsInsertNothing() {
    OpenedProgram opened("main.nc", "M30\n");
    StartedPlot& plot = opened.plot;
    struct Case {
      const char* family;
      const char* messageStart;
    };
    const Case cases[] = {
        {"No Such Family Zq", "Font \"No Such Family Zq\" is not installed"},
        {"Cantarell", "Error in GetGlyphs\r\nUnsupported Font Style. "},  // OpenType/CFF
    };
    for (const Case& c : cases) {
      std::string family;
      if (std::string(c.family) == "Cantarell" &&
          !FindFont(FontRequest{c.family, false, false, 12}, family)) {
        qWarning("Cantarell (an OpenType/CFF font) is not installed: case skipped");
        continue;
      }
      const std::size_t shown = plot.prompts.size();
      UseFontDialog(plot, [&c](TextToGCodeDialog& dialog) {
        dialog.SetFont(FontRequest{c.family, false, false, 12});
        dialog.findChild<QPushButton*>("cmdConvertFont")->click();
        QVERIFY(dialog.isVisible());
      });
      QCOMPARE(plot.prompts.size(), shown + 1);
      const std::string& message = plot.prompts.back().text;
      QVERIFY2(message.rfind(c.messageStart, 0) == 0, message.c_str());
      QCOMPARE(DocumentText(plot), std::string("M30\r\n"));
    }
  }

  void ValuesAreKeptInTheSettings() {
    const Scratch scratch;
    auto store = std::make_shared<MemorySettingsStore>();
    {
      StartedPlot plot(scratch, "", store);
      UseFontDialog(plot, [](TextToGCodeDialog& dialog) {
        SetText(dialog, "txtPreview", "Part 7");
        SetText(dialog, "txtHeight", "2.5");
        dialog.findChild<QRadioButton*>("optJustify4")->setChecked(true);
        dialog.findChild<QCheckBox*>("chkTextOnArc")->setChecked(true);
        dialog.SetFont(FontRequest{"DejaVu Serif", true, false, 14});
        SaveShot(dialog, "cfont-arc.png");
      });
      QVERIFY(plot.close());
    }
    const auto setting = [&store](const char* key) {
      return store->GetSetting("TextToGCode", key);
    };
    QCOMPARE(setting("String"), std::string("Part 7"));
    QCOMPARE(setting("Text Height"), std::string("2.5"));
    QCOMPARE(setting("Justify"), std::string("4"));
    QCOMPARE(setting("On Arc"), std::string("True"));
    QCOMPARE(setting("Font Name"), std::string("DejaVu Serif"));
    QCOMPARE(setting("Font Bold"), std::string("True"));
    QCOMPARE(setting("Font Size"), std::string("14"));

    StartedPlot again(scratch, "", store);
    UseFontDialog(again, [](TextToGCodeDialog& dialog) {
      QCOMPARE(dialog.findChild<QLineEdit*>("txtPreview")->text(), QString("Part 7"));
      QCOMPARE(dialog.findChild<QLabel*>("lblXLoc")->text(), QString("X Center:"));
      QCOMPARE(dialog.findChild<QLabel*>("lblFont")->text(), QString("DejaVu Serif Bold - 14"));
    });
  }
};

ZEMTRA_TEST_CLASS(FontDialogTest)

}  // namespace zemtra::test

#include "FontDialogTest.moc"
