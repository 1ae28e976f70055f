// The viewport in the window: wheel zoom about the middle, pan and isometric rotation by
// dragging, the zoom window, the position in the status bar, and the mill's isometric view.
#include <QAction>
#include <QTest>
#include <QWheelEvent>

#include "app/AppTestSupport.h"
#include "app/PictureBox.h"
#include "app/PlotActions.h"
#include "app/StatusPanels.h"
#include "app/Workspace.h"

namespace zemtra::test {

constexpr const char* kPart = "G0 X0. Y0. Z5.\nG1 Z-1. F100.\nX40.\nY20.\nX0.\nY0.\nG0 Z5.\n";

static void Wheel(QWidget* widget, int delta) {
  const QPointF middle(widget->width() / 2.0, widget->height() / 2.0);
  QWheelEvent event(middle, widget->mapToGlobal(middle), QPoint(), QPoint(0, delta), Qt::NoButton,
                    Qt::NoModifier, Qt::NoScrollPhase, false);
  QApplication::sendEvent(widget, &event);
}

// A drag with `button` from `from` to `to`, in steps, as the pointer moves.
static void Drag(QWidget* widget, Qt::MouseButton button, QPoint from, QPoint to,
                 Qt::KeyboardModifiers keys = Qt::NoModifier) {
  QTest::mousePress(widget, button, keys, from);
  for (int step = 1; step <= 4; ++step) {
    const QPoint at = from + (to - from) * step / 4;
    QMouseEvent move(QEvent::MouseMove, at, widget->mapToGlobal(at), Qt::NoButton, button, keys);
    QApplication::sendEvent(widget, &move);
  }
  QTest::mouseRelease(widget, button, keys, to);
}

class ViewportTest : public QObject {
  Q_OBJECT
 private:
  std::unique_ptr<OpenedProgram> opened_;
  Plot& Window() { return opened_->plot.window(); }
  Viewport& View() { return Window().Engine().View; }
  PictureBox* Picture() { return Window().Picture(); }

 private slots:
  // The picture is laid out before the program is plotted, as at a real start.
  void init() { opened_ = std::make_unique<OpenedProgram>("part.nc", kPart); }
  void cleanup() { opened_.reset(); }

  void WheelZoomsAboutTheMiddle() {
    const float width = View().View.ScaleWidth;
    const float centerX = View().View.ViewCenterX;
    Wheel(Picture(), 120);
    QVERIFY(qAbs(View().View.ScaleWidth - width / 1.333f) < width * 1e-4);
    QVERIFY(qAbs(View().View.ViewCenterX - centerX) < width * 1e-4);
    Wheel(Picture(), -120);
    QVERIFY(qAbs(View().View.ScaleWidth - width / 1.333f / 0.75f) < width * 1e-4);
  }

  void RightDragPansTheFlatViews() {
    const float centerX = View().View.ViewCenterX;
    const double unitsPerPixel = View().View.UnitsPerPixel;
    Drag(Picture(), Qt::RightButton, QPoint(100, 100), QPoint(140, 100));
    // The picture follows the pointer one to one: the centre moves against the drag.
    QVERIFY(qAbs(View().View.ViewCenterX - (centerX - 40 * unitsPerPixel)) < unitsPerPixel);
    QCOMPARE(Window().Panels().Text("msg"), QString());
  }

  void RightDragRotatesTheIsometricView() {
    Window().Actions().Find("mnuViewISO")->trigger();
    const double angle = View().View.ViewAngle;
    const double tip = View().View.TipAngle;
    Drag(Picture(), Qt::RightButton, QPoint(100, 100), QPoint(160, 130));
    QVERIFY(View().View.ViewAngle != angle);
    QVERIFY(View().View.TipAngle != tip);
    Window().Actions().Find("mnuLockVertRotation")->trigger();
    const double locked = View().View.TipAngle;
    Drag(Picture(), Qt::RightButton, QPoint(100, 100), QPoint(160, 160));
    QCOMPARE(View().View.TipAngle, locked);  // only Shift tilts when locked
  }

  void ZoomWindowFitsTheBoxAndEnds() {
    QAction* zoomWindow = Window().Actions().Find("mnuZoomWindow");
    zoomWindow->trigger();
    QCOMPARE(Window().Panels().Text("msg"),
             QString("Click and drag to select the desired view window"));
    const float width = View().View.ScaleWidth;
    Drag(Picture(), Qt::LeftButton, QPoint(50, 50), QPoint(90, 80));
    QVERIFY(View().View.ScaleWidth < width / 2);
    QVERIFY(!zoomWindow->isChecked());
  }

  void PointerPositionShowsInTheStatusBar() {
    QTest::mouseMove(Picture(), QPoint(Picture()->width() / 2, Picture()->height() / 2));
    QMouseEvent move(QEvent::MouseMove, QPointF(30, 40), Picture()->mapToGlobal(QPointF(30, 40)),
                     Qt::NoButton, Qt::NoButton, Qt::NoModifier);
    QApplication::sendEvent(Picture(), &move);
    const QString position = Window().Panels().Text("pos");
    QVERIFY2(position.startsWith('X') && position.contains(", Y"), qPrintable(position));
  }

  void ViewportKeysRunTheirCommands() {
    const float width = View().View.ScaleWidth;
    QTest::keyClick(Picture(), Qt::Key_C);
    QVERIFY(View().View.ScaleWidth < width);
    QTest::keyClick(Picture(), Qt::Key_X);
    QVERIFY(qAbs(View().View.ScaleWidth - width) < width * 1e-3);
  }

  // Setting the mill type again leaves a mill's isometric view as it is.
  void MillKeepsItsIsometricView() {
    Window().Actions().Find("mnuViewISO")->trigger();
    Window().SetMachineType(0);
    QCOMPARE(View().View.CurrentView, std::int16_t(6));
  }
};

ZEMTRA_TEST_CLASS(ViewportTest)

}  // namespace zemtra::test

#include "ViewportTest.moc"
