// Scripts in the window: header directives run as a program is loaded, the Scripts menu lists
// the SCRIPTS folder, a failing script is reported and Esc stops a runaway one.
#include <QAction>
#include <QElapsedTimer>
#include <QMenu>
#include <QTest>
#include <QTimer>
#include <QToolBar>

#include "app/AppTestSupport.h"
#include "app/PlotActions.h"
#include "app/QtHost.h"
#include "app/ScriptCommands.h"
#include "app/StatusPanels.h"
#include "app/Workspace.h"

namespace zemtra::test {

static ScriptCommands& Scripts(StartedPlot& plot) {
  return *plot->findChild<ScriptCommands*>();
}

class ScriptWindowTest : public QObject {
  Q_OBJECT
 private slots:
  // Both call forms of a directive configure the program as it is loaded.
  void HeaderDirectivesRunOnLoad() {
    const Scratch scratch;
    scratch.Write("CONFIG/Lathe.zmt",
                  scratch.Read((SourceData() / "CONFIG" / "Lathe.zmt").string()));
    const std::string lathe =
        scratch.Write("turn.nc", "%\nO1000\n(## ZMTSetConfig \"Lathe\")\nG0 X1. Z1.\n");
    const std::string mill =
        scratch.Write("mill.nc", "[## ZMTSetConfig(\"default\")]\nG0 X1.\n(## ZMTFileNew)\n");
    StartedPlot plot(scratch);
    QCOMPARE(plot->Panels().Text("script"), QString());  // scripts are available
    plot->OpenPassedFile(lathe);
    QCOMPARE(plot.prompts.size(), std::size_t(0));
    QCOMPARE(plot->Engine().Session.ActiveConfig.MachineType, std::int16_t(1));
    QVERIFY(!plot->Actions().ToolBar("tlbLathe")->isHidden());
    QVERIFY(plot->Actions().ToolBar("tlbView")->isHidden());
    plot->OpenPassedFile(mill);
    QCOMPARE(plot->Engine().Session.ActiveConfig.MachineType, std::int16_t(0));
    QVERIFY(plot->Actions().ToolBar("tlbLathe")->isHidden());
    // A directive after the first block is not part of the header.
    QCOMPARE(DocumentText(plot),
             std::string("[## ZMTSetConfig(\"default\")]\r\nG0 X1.\r\n(## ZMTFileNew)\r\n"));
  }

  void ScriptsMenuListsTheScriptsFolder() {
    const Scratch scratch;
    scratch.Write("SCRIPTS/add_percent.js", "ZMTSetSelection(0, 0); ZMTInsertLine('%');");
    scratch.Write("SCRIPTS/readme.txt", "");
    const std::string path = scratch.Write("a.nc", "G0 X1.\n");
    StartedPlot plot(scratch);
    plot->OpenPassedFile(path);
    QMenu* menu = plot->Actions().Menu("mnuScripts");
    QVERIFY(plot->Actions().Find("mnuExecScript")->isEnabled());
    scratch.Write("SCRIPTS/Zap.JS", "");  // found when the menu opens
    emit menu->aboutToShow();
    QAction* first = menu->findChild<QAction*>("mnuScript0");
    QAction* second = menu->findChild<QAction*>("mnuScript1");
    QVERIFY(first != nullptr && second != nullptr);
    QCOMPARE(first->text(), QString("Add_Percent"));
    QCOMPARE(second->text(), QString("Zap"));
    QVERIFY(menu->findChild<QAction*>("mnuScript2") == nullptr);
    first->trigger();
    QCOMPARE(DocumentText(plot), std::string("%\r\nG0 X1.\r\n"));
    QCOMPARE(plot.prompts.size(), std::size_t(0));
  }

  void RunScriptReportsTheFailingLine() {
    const Scratch scratch;
    const std::string script = scratch.Write("bad.js", "var n = ZMTGetNumLines();\nn.noSuch();\n");
    StartedPlot plot(scratch);
    std::string asked;
    plot->GetHost().setFileChooser(
        [&](std::string_view title, std::string_view, std::string_view filter) {
          asked = std::string(title) + " | " + std::string(filter);
          return script;
        });
    plot->Actions().Find("mnuExecScript")->trigger();
    QCOMPARE(asked, std::string("Select Script File | JavaScript Files (*.js);;Text Files "
                                "(*.txt);;All Files (*)"));
    QCOMPARE(plot.prompts.size(), std::size_t(1));
    QCOMPARE(plot.prompts[0].text,
             std::string("Error in Script:\r\nLine 2: TypeError: Property 'noSuch' of object 1 "
                         "is not a function"));
    QCOMPARE(plot.prompts[0].title, std::string("Zemtra"));
  }

  void EscapeStopsARunawayScript() {
    const Scratch scratch;
    const std::string script = scratch.Write("loop.js", "var i = 0;\nwhile (true) { i++; }\n");
    StartedPlot plot(scratch);
    QTimer::singleShot(300, plot.operator->(), [&plot] { plot->RequestAbort(); });
    QElapsedTimer clock;
    clock.start();
    Scripts(plot).RunScript(script);
    QVERIFY(clock.elapsed() < 5000);
    QCOMPARE(plot.prompts.size(), std::size_t(1));
    QCOMPARE(plot.prompts[0].text, std::string("Error in Script:\r\nScript stopped by the user"));
  }
};

ZEMTRA_TEST_CLASS(ScriptWindowTest)

}  // namespace zemtra::test

#include "ScriptWindowTest.moc"
