// Picking in the window: a click on an entity shows its program line and its report, a line
// highlights its entities, rubber boxes, Delete, measuring and the replay of the path.
#include <QAction>
#include <QApplication>
#include <QMenu>
#include <QMouseEvent>
#include <QTest>

#include "app/AppTestSupport.h"
#include "app/EntityInfoWindow.h"
#include "app/PictureBox.h"
#include "app/PlotActions.h"
#include "app/StatusPanels.h"
#include "app/Workspace.h"
#include "view/Picking.h"

namespace zemtra::test {

// Lines 1 to 7; the square at Z-1 is made by lines 3 to 6.
constexpr const char* kPart = "G0 X0. Y0. Z5.\nG1 Z-1. F100.\nX40.\nY20.\nX0.\nY0.\nG0 Z5.\n";

class PickingTest : public QObject {
  Q_OBJECT
 private:
  std::unique_ptr<OpenedProgram> opened_;
  Plot& Window() { return opened_->plot.window(); }
  Workspace& Engine() { return Window().Engine(); }
  PictureBox* Picture() { return Window().Picture(); }

  // The picture's pixel of machine point (x, y, z).
  QPoint PixelOf(float x, float y, float z) {
    float u = 0, v = 0;
    Engine().View.View.ProjectPoint(GeoPoint{x, y, z, 0}, u, v);
    const PixelPoint p = Engine().View.View.ToPixel(u, v);
    return QPoint(qRound(p.x), qRound(p.y));
  }
  void Move(QPoint at, Qt::MouseButtons buttons = Qt::NoButton) {
    QMouseEvent move(QEvent::MouseMove, at, Picture()->mapToGlobal(at), Qt::NoButton, buttons,
                     Qt::NoModifier);
    QApplication::sendEvent(Picture(), &move);
  }
  int CurrentLine() { return Engine().Editor.Document.CurrentLineIndex(); }
  std::vector<int> Selected() {
    std::vector<int> found;
    const GeometryTable& table = Engine().Table;
    for (std::int32_t i = 1; i <= table.HighestIndex(); ++i) {
      if (table[i].Selected != 0) found.push_back(table[i].LineNumber);
    }
    return found;
  }

 private slots:
  void init() { opened_ = std::make_unique<OpenedProgram>("part.nc", kPart); }
  void cleanup() { opened_.reset(); }

  void ClickingAnEntityShowsItsLineAndReport() {
    QTest::mouseClick(Picture(), Qt::LeftButton, Qt::NoModifier, PixelOf(40, 10, -1));
    QCOMPARE(CurrentLine(), 3);  // "Y20."
    QVERIFY(Engine().Editor.Document.SelLength() > 0);
    QCOMPARE(Selected(), std::vector<int>{4});
    auto* info = Window().findChild<EntityInfoWindow*>("eInfo");
    QVERIFY(info != nullptr && info->isVisible());
    QVERIFY2(info->Report().startsWith("LINE AT FEED\n\nStart       X40.0 Y0.0 Z-1.0\n"),
             qPrintable(info->Report()));
    // A plain click in empty space clears the selection and hides the entity window.
    QTest::mouseClick(Picture(), Qt::LeftButton, Qt::NoModifier, PixelOf(20, 10, -1));
    QCOMPARE(Selected(), std::vector<int>{});
    QVERIFY(!info->isVisible());
  }

  void HighlightSelectedSelectsTheEntitiesOfTheCaretLine() {
    ProgramDocument& text = Engine().Editor.Document;
    text.SetSelection(text.Text().find("Y20."), 0);
    Window().Actions().Find("mnuHighlightSelected")->trigger();
    QCOMPARE(Selected(), std::vector<int>{4});
    // A selection over several lines takes all of them; what was selected stays.
    const std::size_t from = text.Text().find("X0.\r\n");
    text.SetSelection(from, text.Text().find("G0 Z5.") - from);
    Window().Actions().Find("mnuHighlightSelected")->trigger();
    QCOMPARE(Selected(), (std::vector<int>{4, 5, 6}));
  }

  void BoxesSelectByTheirDirectionAndSmallOnesClick() {
    const QPoint a = PixelOf(30, 25, -1), b = PixelOf(45, -5, -1);
    // Left to right: only what lies inside, the side at X40; one entity acts as a click.
    QTest::mousePress(Picture(), Qt::LeftButton, Qt::NoModifier, a);
    Move(b, Qt::LeftButton);
    QTest::mouseRelease(Picture(), Qt::LeftButton, Qt::NoModifier, b);
    QCOMPARE(Window().Panels().Text("msg"), QString("1 entities added to selection"));
    QCOMPARE(Selected(), std::vector<int>{4});
    QCOMPARE(CurrentLine(), 3);
    // Right to left: everything touched.
    QTest::mousePress(Picture(), Qt::LeftButton, Qt::NoModifier, b);
    Move(a, Qt::LeftButton);
    QTest::mouseRelease(Picture(), Qt::LeftButton, Qt::NoModifier, a);
    QCOMPARE(Selected(), (std::vector<int>{3, 4, 5}));
    // Under eight pixels the drag is a click on the entity.
    const QPoint on = PixelOf(40, 10, -1);
    QTest::mousePress(Picture(), Qt::LeftButton, Qt::NoModifier, on);
    Move(on + QPoint(5, 5), Qt::LeftButton);
    QTest::mouseRelease(Picture(), Qt::LeftButton, Qt::NoModifier, on + QPoint(5, 5));
    QCOMPARE(Selected(), std::vector<int>{4});
  }

  void ARightClickOpensThePopupAndARightDragPans() {
    QTest::mouseClick(Picture(), Qt::RightButton, Qt::NoModifier, QPoint(100, 100));
    auto* popup = Window().findChild<QMenu*>("mnuViewportPopup");
    QVERIFY(popup != nullptr && popup->isVisible());
    QVERIFY(popup->actions().contains(Window().Actions().Find("mnuZoomSelected")));
    popup->close();
    const float centerX = Engine().View.View.ViewCenterX;
    QTest::mousePress(Picture(), Qt::RightButton, Qt::NoModifier, QPoint(100, 100));
    Move(QPoint(140, 100), Qt::RightButton);
    QTest::mouseRelease(Picture(), Qt::RightButton, Qt::NoModifier, QPoint(140, 100));
    QVERIFY(Engine().View.View.ViewCenterX != centerX);
    QVERIFY(!popup->isVisible());
  }

  void DeleteTakesSelectedEntitiesOffThePicture() {
    const std::int32_t count = Engine().Table.HighestIndex();
    QTest::mouseClick(Picture(), Qt::LeftButton, Qt::NoModifier, PixelOf(40, 10, -1));
    QTest::keyClick(Picture(), Qt::Key_Delete);
    QCOMPARE(Engine().Table.HighestIndex(), count - 1);
    QCOMPARE(Engine().View.DrawLast, count - 1);
    QCOMPARE(FindEntityAt(Engine().Table, Engine().View, 0, 0, true), -1);
    QVERIFY(Engine().Editor.Document.Text().find("Y20.") != std::string::npos);
  }

  void MeasuringSnapsToEndsAndReports() {
    QTest::keyClick(Picture(), Qt::Key_M);
    QCOMPARE(Window().Panels().Text("msg"), QString("Select 1st Point"));
    // The first end near the pointer in table order: the approach rapid's, at Z5.
    const QPoint first = PixelOf(0, 0, -1) + QPoint(3, 2);
    Move(first);
    QTest::mouseClick(Picture(), Qt::LeftButton, Qt::NoModifier, first);
    QCOMPARE(Window().Panels().Text("msg"), QString("Select 2nd Point"));
    const QPoint second = PixelOf(40, 20, -1);
    Move(second);
    QTest::mouseClick(Picture(), Qt::LeftButton, Qt::NoModifier, second);
    QVERIFY(!opened_->plot.prompts.empty());
    QCOMPARE(QString::fromStdString(opened_->plot.prompts.back().text),
             QString("X Distance:  40.0\r\nY Distance:  20.0\r\nZ Distance:  6.0\r\n"
                     "Overall Distance:  45.1221"));
    QCOMPARE(Selected(), std::vector<int>{});  // measuring selects nothing
  }

  void StepKeysAndAnimationReplayThePath() {
    const std::int32_t count = Engine().Table.HighestIndex();
    QTest::keyClick(Picture(), Qt::Key_S);
    QTest::keyClick(Picture(), Qt::Key_S);
    QCOMPARE(Engine().View.DrawLast, 2);
    QCOMPARE(CurrentLine(), Engine().Table[2].LineNumber - 1);
    QTest::keyClick(Picture(), Qt::Key_B);
    QCOMPARE(Engine().View.DrawLast, 1);
    Window().Settings().Preferences.AnimateDelay = 0;
    Window().Actions().Find("mnuRewind")->trigger();
    QCOMPARE(Engine().View.DrawLast, 0);
    Window().Actions().Find("mnuAnimate")->trigger();
    QVERIFY(Window().Busy);
    QTRY_VERIFY_WITH_TIMEOUT(!Window().Busy, 5000);
    QCOMPARE(Engine().View.DrawLast, count);
    QCOMPARE(CurrentLine(), Engine().Table[count].LineNumber - 1);
  }
};

ZEMTRA_TEST_CLASS(PickingTest)

}  // namespace zemtra::test

#include "PickingTest.moc"
