// Commands around the document: recent files, insert, the programs of a file, closing during
// a plot, block skip, and the picture's colours.
#include <QAction>
#include <QLabel>
#include <QMenu>
#include <QPlainTextEdit>
#include <QTest>

#include "app/AppTestSupport.h"
#include "app/DocumentCommands.h"
#include "app/PictureBox.h"
#include "app/PlotActions.h"
#include "app/QtHost.h"
#include "app/StatusPanels.h"
#include "app/Workspace.h"

namespace zemtra::test {

class CommandsTest : public QObject {
  Q_OBJECT
 private slots:
  // A recent file deleted since is reported and taken off the list.
  void MissingRecentFileIsReportedAndDropped() {
    const Scratch scratch;
    const std::string kept = scratch.Write("kept.nc", "G0 X1.\n");
    const std::string gone = scratch.Write("gone.nc", "G0 X2.\n");
    StartedPlot plot(scratch);
    plot->OpenPassedFile(kept);
    plot->OpenPassedFile(gone);
    std::filesystem::remove(gone);
    plot->Actions().RecentMenu()->actions()[0]->trigger();  // RF0: the newest, gone
    QCOMPARE(plot.prompts.back().text, "File does not exist:\r\n" + gone);
    QCOMPARE(plot->Settings().Recent.At(0), kept);
    QCOMPARE(plot->Actions().RecentMenu()->actions().size(), 1);
  }

  void InsertFilePutsTheFileAtTheCaret() {
    const Scratch scratch;
    const std::string path = scratch.Write("main.nc", "G0 X1.\nM30\n");
    const std::string part = scratch.Write("part.nc", "G1 Y1.\r\r\nG1 Y2.");
    StartedPlot plot(scratch);
    plot->OpenPassedFile(path);
    plot->Engine().Editor.Document.SetSelection(8, 0);  // the start of "M30"
    QString asked;
    plot->Documents().Dialogs.OpenFiles = [&](const QString& title, const QString&,
                                              const QString& filter) {
      asked = title + " | " + filter;
      return QStringList{QString::fromStdString(part)};
    };
    plot->Actions().Find("mnuInsertFile")->trigger();
    QVERIFY2(asked.startsWith("Select NC File | CNC Program Files ("), qPrintable(asked));
    QCOMPARE(DocumentText(plot), std::string("G0 X1.\r\nG1 Y1.\r\nG1 Y2.\r\nM30\r\n"));
  }

  void ProgramsOfTheFileAreListedAndSplit() {
    OpenedProgram opened("two.nc", "%\nO100 (FIRST)\nG0 X1.\nM99\nO200 (SECOND)\nG1 X2.\nM30\n");
    auto& [scratch, path, plot] = opened;
    QString listing;
    WhenDialogShows("frmPrograms", [&listing](QWidget& dialog) {
      listing = dialog.findChild<QPlainTextEdit*>("txtPrograms")->toPlainText();
      dialog.close();
    });
    plot->Actions().Find("mnuShowPrograms")->trigger();
    QVERIFY2(listing.contains("FIRST") && listing.contains("SECOND"), qPrintable(listing));

    const std::filesystem::path folder = scratch.Folder() / "split";
    std::filesystem::create_directories(folder);
    plot->Documents().Dialogs.Folder = [&](const QString&, const QString&) {
      return QString::fromStdString(folder.string());
    };
    plot->Actions().Find("mnuSaveSeparate")->trigger();
    QCOMPARE(scratch.Read((folder / "O100.TXT").string()),
             std::string("%\r\nO100 (FIRST)\r\nG0 X1.\r\nM99\r\n%\r\n"));
    QVERIFY(std::filesystem::exists(folder / "O200.TXT"));
  }

  // A close during a plot stops the plot and closes once it has ended.
  void CloseWaitsForARunningPlot() {
    const Scratch scratch;
    StartedPlot plot(scratch);
    plot->Busy = true;
    QVERIFY(!plot.close());
    QVERIFY(plot->GetHost().abortRequested());
    QVERIFY(plot->Engine().Driver.PlotCancel);
    plot->Busy = false;
    QTRY_VERIFY(!plot->isVisible());
  }

  void DrawingsAreRefusedWithAMessage() {
    OpenedProgram opened("part.DXF", "0\nEOF\n");
    StartedPlot& plot = opened.plot;
    QVERIFY(plot->Engine().Editor.Document.CurrentFile().empty());
    QVERIFY(plot.prompts.back().text.find(opened.path) != std::string::npos);
  }

  // The panel says whether block skip is on; a click on it switches, and the plot follows.
  void BlockSkipPanelSwitchesAndReplots() {
    OpenedProgram opened("skip.nc", "G0 X0. Y0.\nG1 X1.\n/G1 X2.\n");
    StartedPlot& plot = opened.plot;
    QCOMPARE(plot->Panels().Text("bskip"), QString("Skip OFF"));
    QCOMPARE(plot->Engine().Driver.EntityCount(), 2);
    QTest::mouseClick(plot->Panels().Panel("bskip"), Qt::LeftButton);
    QCOMPARE(plot->Panels().Text("bskip"), QString("Skip ON"));
    QCOMPARE(plot->Engine().Driver.EntityCount(), 1);
  }

  // Colours are 0x00BBGGRR: red in the low byte.
  void PictureDrawsInTheColoursAsked() {
    PictureBox picture;
    picture.resize(40, 30);
    picture.show();
    QTest::qWait(100);
    picture.SetLayer(SurfaceLayer::Retained);
    picture.Clear(0x000000);
    const PixelPoint line[] = {{0, 10.5f}, {39, 10.5f}};
    picture.Polyline(line, 2, SurfacePen{0x0000FF, 1, LineStyle::Solid});
    picture.SetLayer(SurfaceLayer::Overlay);
    picture.Rectangle({5.5f, 20.5f}, {15.5f, 25.5f}, SurfacePen{0xFF0000, 1, LineStyle::Solid});
    const QImage shown = picture.Picture();
    QCOMPARE(QColor(shown.pixel(20, 10)).red(), 255);
    QCOMPARE(QColor(shown.pixel(20, 10)).blue(), 0);
    QCOMPARE(QColor(shown.pixel(10, 20)).blue(), 255);
    picture.Clear(0x000000);  // the overlay empties; the retained picture stays
    QCOMPARE(QColor(picture.Picture().pixel(10, 20)).blue(), 0);
    QCOMPARE(QColor(picture.Picture().pixel(20, 10)).red(), 255);
  }
};

ZEMTRA_TEST_CLASS(CommandsTest)

}  // namespace zemtra::test

#include "CommandsTest.moc"
