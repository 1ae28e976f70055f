// The drawing workbench of the window: importing a drawing by layer, the layer manager's
// conversion into the program text, its saved layers, and the Calc tools over selected
// entities.
#include <QAction>
#include <QGroupBox>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QTest>
#include <QTreeWidget>

#include "app/AppTestSupport.h"
#include "app/CalcCommands.h"
#include "app/DXFOptions.h"
#include "app/DocumentCommands.h"
#include "app/DxfCommands.h"
#include "app/PlotActions.h"
#include "app/StatusPanels.h"
#include "app/Workspace.h"
#include "core/SettingsStore.h"

namespace zemtra::test {

namespace {

std::string Line(const std::string& layer, double x1, double y1, double x2, double y2) {
  const auto n = [](double v) { return std::to_string(v); };
  return "0\nLINE\n8\n" + layer + "\n10\n" + n(x1) + "\n20\n" + n(y1) + "\n11\n" + n(x2) +
         "\n21\n" + n(y2) + "\n";
}

// A unit square on layer CUT, drawn out of order, and a circle on layer "0".
std::string SquareDrawing() {
  return "0\nSECTION\n2\nENTITIES\n" + Line("CUT", 0, 0, 1, 0) + Line("CUT", 0, 1, 0, 0) +
         Line("CUT", 1, 0, 1, 1) + Line("CUT", 1, 1, 0, 1) +
         "0\nCIRCLE\n8\n0\n10\n5\n20\n5\n40\n2\n0\nENDSEC\n0\nEOF\n";
}

DxfCommands& Dxf(StartedPlot& plot) {
  return *plot->findChild<DxfCommands*>("DxfCommands");
}

DXFOptions& Manager(StartedPlot& plot) {
  return *plot->findChild<DXFOptions*>("DXFOptions");
}

void Trigger(QObject& owner, const char* action) {
  owner.findChild<QAction*>(action)->trigger();
}

GeoEntity FeedLine(float x1, float y1, float x2, float y2) {
  GeoEntity e;
  e.EntityType = kFeed;
  e.StartPoint = {x1, y1, 0, 0};
  e.EndPoint = {x2, y2, 0, 0};
  e.Selected = 255;
  return e;
}

// Replaces the table by `entities`, as a plot would leave it.
void FillTable(StartedPlot& plot, const std::vector<GeoEntity>& entities) {
  GeometryTable& table = plot->Engine().Table;
  table.Begin();
  for (const GeoEntity& e : entities) table.Add(e);
  table.End();
  plot->Engine().View.RefreshGeometry(table.HighestIndex());
}

std::vector<std::string> Lines(const std::string& text) {
  std::vector<std::string> lines;
  std::size_t start = 0;
  for (std::size_t end; (end = text.find("\r\n", start)) != std::string::npos; start = end + 2) {
    lines.push_back(text.substr(start, end - start));
  }
  return lines;
}

}  // namespace

class DxfWindowTest : public QObject {
  Q_OBJECT
 private slots:
  // The Open dialog offers drawings; one chosen there fills the table layer by layer, shows
  // them and opens the layer manager, leaving the program text alone.
  void OpenedDrawingFillsTheTableByLayer() {
    const Scratch scratch;
    const std::string path = scratch.Write("square.dxf", SquareDrawing());
    StartedPlot plot(scratch);
    plot->Engine().Editor.Document.SetText("G0 X1.\r\n");
    QString filter;
    plot->Documents().Dialogs.OpenFile = [&](const QString&, const QString&, const QString& f) {
      filter = f;
      return QString::fromStdString(path);
    };
    plot->Actions().Find("mnuLoad")->trigger();
    QVERIFY2(filter.contains("DXF Drawing Files (*.dxf"), qPrintable(filter));

    const DxfLayerTable& layers = Dxf(plot).Layers;
    QCOMPARE(layers.Count(), 2);
    QCOMPARE(layers[1].LayerName, std::string("CUT"));
    QCOMPARE(layers[2].LayerName, std::string("DEFAULT"));
    QCOMPARE(layers[1].FirstEntity, 1);
    QCOMPARE(layers[1].LastEntity, 4);
    QCOMPARE(layers[2].FirstEntity, 5);
    QCOMPARE(plot->Engine().Table.HighestIndex(), 5);
    QVERIFY(plot->Engine().View.DXFMode);
    QCOMPARE(DocumentText(plot), std::string("G0 X1.\r\n"));
    DXFOptions& manager = Manager(plot);
    QVERIFY(manager.isVisible());
    QVERIFY(plot->Engine().Driver.PlotBlocked);
    auto* list = manager.findChild<QTreeWidget*>("lvLayers");
    QCOMPARE(list->topLevelItemCount(), 2);
    QCOMPARE(list->topLevelItem(0)->text(0), QString("CUT"));
    QCOMPARE(list->topLevelItem(0)->text(1), QString("4"));
    QCOMPARE(plot->Panels().Text("msg"),
             QString("5 entities on 2 layers from ") + QString::fromStdString(path));

    Trigger(manager, "mnuBackground");  // the visible layers, kept beside the configurations
    const std::string background = scratch.Read((scratch.Folder() / "BGnd.dxf").string());
    QVERIFY2(background.starts_with(" 0\r\nSECTION\r\n 2\r\nENTITIES\r\n") &&
                 background.ends_with(" 0\r\nENDSEC\r\n 0\r\nEOF\r\n"),
             background.c_str());

    manager.close();  // the program may be plotted again, and its plot replaces the drawing
    QVERIFY(!plot->Engine().Driver.PlotBlocked);
    plot->LoadGeometry();
    QVERIFY(!plot->Engine().View.DXFMode);
    QVERIFY(plot->Engine().Table.HighestIndex() < 5);
  }

  // A chained layer converts with its own settings into the program at the caret; one undo
  // takes the whole text out again. A layer with depth steps must be chained first.
  void ConvertedLayerIsOneUndoStep() {
    OpenedProgram opened("square.dxf", SquareDrawing());
    StartedPlot& plot = opened.plot;
    DXFOptions& manager = Manager(plot);
    SetText(manager, "txtZRetract", "1");
    SetText(manager, "txtZApproach", "0.1");
    SetText(manager, "txtZDepth", "-0.5");
    SetText(manager, "txtFeedRate", "10");
    SetText(manager, "txtPlungeRate", "5");
    manager.findChild<QGroupBox*>("frmZIncrement")->setChecked(true);
    SetText(manager, "txtZTop", "0");
    SetText(manager, "txtZIncrement", "0.25");
    Trigger(manager, "mnuConvertSelected");
    QCOMPARE(plot.prompts.back().text,
             std::string("Z Increment is enabled on layer CUT\r\n"
                         "The layer must be chained before converting to G-Code"));
    QVERIFY(DocumentText(plot).empty());

    plot->Engine().Table[1].Selected = 255;
    Trigger(manager, "mnuChainReverse");
    QCOMPARE(plot.prompts.back().text, std::string("Entity is not part of a chain"));
    plot->Engine().Table[1].Selected = 0;

    Trigger(manager, "mnuChainAll");
    QCOMPARE(manager.findChild<QTreeWidget*>("lvLayers")->topLevelItem(0)->text(2), QString("Yes"));
    QVERIFY(plot->Engine().View.Layers[0].Visible);  // refilling the list leaves layers shown
    Trigger(manager, "mnuConvertSelected");
    // The chain starts where the chaining put its head; two passes of 0.25 down to -0.5.
    const std::vector<std::string> pass = {"X0.0Y1.0", "Z0.1",     "G01Z-0.25F5.0", "X0.0Y0.0F10.0",
                                           "X1.0Y0.0", "X1.0Y1.0", "X0.0Y1.0",      "G00Z1.0"};
    std::vector<std::string> expected = {"(CUT)", "G00Z1.0"};
    expected.insert(expected.end(), pass.begin(), pass.end());
    expected.insert(expected.end(), pass.begin(), pass.end());
    expected[12] = "G01Z-0.5F5.0";
    QCOMPARE(Lines(DocumentText(plot)), expected);

    plot->Actions().Find("mnuEditUndo")->trigger();
    QVERIFY(DocumentText(plot).empty());
  }

  // Saved layers live in the settings section "DXF Layers" and give a newly loaded layer of
  // the same name its values; copying over a saved layer asks first.
  void SavedLayersRoundTripThroughTheSettings() {
    const Scratch scratch;
    auto store = std::make_shared<MemorySettingsStore>();
    const std::string path = scratch.Write("square.dxf", SquareDrawing());
    {
      StartedPlot plot(scratch, "", store);
      plot->OpenPassedFile(path);
      DXFOptions& manager = Manager(plot);
      SetText(manager, "txtZDepth", "-0.75");
      manager.findChild<QPlainTextEdit*>("txtHeader")->setPlainText("G90\nG17");
      manager.findChild<QPushButton*>("cmdCopyToSaved")->click();
      QCOMPARE(store->GetSetting("DXF Layers", "Layer 1/Name"), std::string("CUT"));
      QCOMPARE(store->GetSetting("DXF Layers", "Layer 1/Z Depth"), std::string("-0.75"));
      SetText(manager, "txtZDepth", "-1");
      plot.answers.push_back(MsgAnswer::No);
      manager.findChild<QPushButton*>("cmdCopyToSaved")->click();
      QCOMPARE(plot.prompts.back().text,
               std::string("A layer with the same name is already in the\r\n"
                           "saved layer list.  Do you want to overwrite it?"));
      QCOMPARE(store->GetSetting("DXF Layers", "Layer 1/Z Depth"), std::string("-0.75"));
    }
    StartedPlot plot(scratch, "", store);
    plot->OpenPassedFile(path);
    const ConvertParams& cut = Dxf(plot).Layers[1];
    QCOMPARE(cut.ZDepth, -0.75);
    QCOMPARE(cut.Header, std::string("G90\r\nG17\r\n"));
    QCOMPARE(Dxf(plot).Layers[2].ZDepth, 0.0);  // DEFAULT was never saved
  }

  // The Calc tools read the selection bytes: hints for a wrong selection, results in the
  // panel or a box, and new entities appended to the table.
  void CalcToolsWorkOnTheSelectedEntities() {
    const Scratch scratch;
    StartedPlot plot(scratch);
    FillTable(plot, {FeedLine(0, 0, 2, 2), FeedLine(0, 2, 2, 0), FeedLine(5, 5, 6, 5)});
    const GeometryTable& table = plot->Engine().Table;
    const auto run = [&](const char* name) { plot->Actions().Find(name)->trigger(); };

    run("mnuCalcIntersect");
    QCOMPARE(plot->Panels().Text("msg"), QString("Select 2 entities to intersect"));
    run("mnuCalcMeasure");
    QCOMPARE(plot->Panels().Text("msg"), QString("Select 2 entities to measure"));
    run("mnuCalcBlendRadius");
    QCOMPARE(plot->Panels().Text("msg"), QString("Select 2 lines to create blend radius"));

    plot->Engine().Table[3].Selected = 0;
    run("mnuCalcIntersect");
    QCOMPARE(plot->Panels().Text("msg"), QString("Intersects at 1.0, 1.0"));
    QCOMPARE(table.HighestIndex(), 4);
    QCOMPARE(int(table[4].EntityType), int(kPoint));

    run("mnuCalcMeasure");
    QCOMPARE(plot.prompts.back().text,
             std::string("X Distance:  2.0\r\nY Distance:  0.0\r\nZ Distance:  0.0\r\n"
                         "Overall Distance:  2.0"));

    CalcCommands& calc = *plot->findChild<CalcCommands*>("CalcCommands");
    QString asked;
    calc.InputBox = [&](const QString& title, const QString& prompt) {
      asked = title + "|" + prompt;
      return std::optional<std::string>("0.5");
    };
    run("mnuCalcBlendRadius");
    QCOMPARE(asked, QString("Blend Radius|Enter Blend Radius"));
    QCOMPARE(table.HighestIndex(), 5);
    QVERIFY(table[5].EntityType == kArcCW || table[5].EntityType == kArcCCW);
    QCOMPARE(double(table[5].RadiusOrTurns), 0.5);

    run("mnuCalcOffset");
    QCOMPARE(asked, QString("Offset|Enter Offset Distance"));
    QVERIFY(table.HighestIndex() > 5);

    run("mnuCalcPointAtCenter");
    QCOMPARE(int(table[table.HighestIndex()].EntityType), int(kPoint));
    QCOMPARE(table[1].Selected, std::uint8_t(0));
    run("mnuCalcPointAtCenter");
    QCOMPARE(plot->Panels().Text("msg"), QString("Select at least 1 entity"));
  }

  // Selected entities are chained and converted with the values of "Convert to G-Code",
  // which are kept in the preferences; the copies made for it leave the table again.
  void SelectedEntitiesConvertThroughTheDialog() {
    const Scratch scratch;
    auto store = std::make_shared<MemorySettingsStore>();
    StartedPlot plot(scratch, "", store);
    GeoEntity aside = FeedLine(5, 5, 6, 5);
    aside.Selected = 0;
    FillTable(plot, {FeedLine(1, 0, 1, 1), aside, FeedLine(0, 0, 1, 0)});
    QString title;
    WhenDialogShows("frmConvertSettings", [&title](QWidget& dialog) {
      title = dialog.windowTitle();
      for (const auto& [name, text] : {std::pair{"txtZRetract", "2"},
                                       {"txtZDepth", "-1"},
                                       {"txtFeedRate", "20"},
                                       {"txtPlungeRate", "20"}}) {
        SetText(dialog, name, text);
      }
      dialog.findChild<QPushButton*>("cmdOK")->click();
    });
    plot->Actions().Find("mnuSelectedToGCode")->trigger();
    QCOMPARE(title, QString("Convert to G-Code"));
    // Joined head to tail; a feed equal to the plunge rate is written once.
    QCOMPARE(Lines(DocumentText(plot)),
             (std::vector<std::string>{"G00Z2.0", "X0.0Y0.0", "Z0.0", "G01Z-1.0F20.0", "X1.0Y0.0",
                                       "X1.0Y1.0", "G00Z2.0"}));
    QCOMPARE(plot->Engine().Table.HighestIndex(), 3);
    QCOMPARE(plot->Engine().Table[1].Selected, std::uint8_t(255));
    QCOMPARE(store->GetSetting("Preferences", "GCode ZRetract"), std::string("2"));
  }

  // Export needs something to export; the selected entities alone need a selection.
  void ExportRefusesAnEmptyTableOrSelection() {
    const Scratch scratch;
    StartedPlot plot(scratch);
    plot->Actions().Find("mnuExportDXF")->trigger();
    QCOMPARE(plot.prompts.back().text, std::string("Nothing to export!"));
    GeoEntity line = FeedLine(0, 0, 1, 0);
    line.Selected = 0;
    FillTable(plot, {line});
    plot->Actions().Find("mnuExportSelectedDXF")->trigger();
    QCOMPARE(plot.prompts.back().text, std::string("Nothing is selected!"));
    const std::string out = (scratch.Folder() / "out").string();
    plot->Documents().Dialogs.SaveFile = [&](const QString&, const QString&, const QString&,
                                             QString&) { return QString::fromStdString(out); };
    plot->Actions().Find("mnuExportDXF")->trigger();
    const std::string written = scratch.Read(out + ".dxf");
    QVERIFY2(written.find("LINE") != std::string::npos, written.c_str());
  }
};

ZEMTRA_TEST_CLASS(DxfWindowTest)

}  // namespace zemtra::test

#include "DxfWindowTest.moc"
