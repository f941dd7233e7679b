#include "shell/graphwidget.h"
#include "testing/sheet.h"

#include <QRubberBand>
#include <QScrollBar>
#include <QWheelEvent>

/// The middle of a large sheet, in a view of 400 by 400.
struct ShownSheet {
    ShownSheet() : view(&sheet.scene, nullptr)
    {
        view.resize(400, 400);
        view.show();
        view.centerOn(800, 500);
    }

    void mouse(QEvent::Type type, const QPoint &pos, Qt::MouseButton button = Qt::LeftButton)
    {
        const bool moving = type == QEvent::MouseMove;
        const bool released = type == QEvent::MouseButtonRelease;
        QMouseEvent event(type, pos, view.viewport()->mapToGlobal(pos),
                          moving ? Qt::NoButton : button, released ? Qt::NoButton : button,
                          Qt::NoModifier);
        QApplication::sendEvent(view.viewport(), &event);
    }

    void turnWheel(const QPoint &pos, const QPoint &angle, Qt::KeyboardModifiers modifiers)
    {
        QWheelEvent event(pos, view.viewport()->mapToGlobal(pos), QPoint(), angle, Qt::NoButton,
                          modifiers, Qt::NoScrollPhase, false);
        QApplication::sendEvent(view.viewport(), &event);
    }

    QPoint scrolled() const
    {
        return QPoint(view.horizontalScrollBar()->value(), view.verticalScrollBar()->value());
    }

    Sheet sheet;
    GraphWidget view;
};

class TestGraphWidget : public QObject
{
    Q_OBJECT

private slots:
    void dragsScrollNearTheEdges_data();
    void dragsScrollNearTheEdges();
    void handDoesNotScrollByItself();
    void rubberBand();
    void bandStaysOnTheChart();
    void pressOnANoteShowsNoBand();
    void bandsBeginWithTheLeftButton();
    void sheetStaysUnderThePointer();
    void zoomStaysUnderThePointer();
    void turnsBeyondTheLimitsMoveNothing();
    void wheelThatDoesNotZoom();
    void numbersStayVisibleUnderADarkTheme();
};

void TestGraphWidget::dragsScrollNearTheEdges_data()
{
    QTest::addColumn<QPoint>("pos");
    QTest::addColumn<QPoint>("step");

    QTest::newRow("the middle") << QPoint(200, 200) << QPoint(0, 0);
    QTest::newRow("63 from the left") << QPoint(63, 200) << QPoint(0, 0);
    QTest::newRow("62 from the left") << QPoint(62, 200) << QPoint(-1, 0);
    QTest::newRow("the left edge") << QPoint(0, 200) << QPoint(-8, 0);
    QTest::newRow("the right edge") << QPoint(400, 200) << QPoint(8, 0);
    QTest::newRow("the bottom edge") << QPoint(200, 400) << QPoint(0, 8);
    QTest::newRow("beyond the top") << QPoint(200, -50) << QPoint(0, -15);
    QTest::newRow("the vertical distance decides") << QPoint(10, 60) << QPoint(-1, -1);
}

void TestGraphWidget::dragsScrollNearTheEdges()
{
    QFETCH(QPoint, pos);
    QFETCH(QPoint, step);
    ShownSheet shown;
    const QPoint before = shown.scrolled();
    shown.mouse(QEvent::MouseButtonPress, QPoint(200, 200));
    shown.mouse(QEvent::MouseMove, pos);
    shown.view.onScrollTimeout();
    QCOMPARE(shown.scrolled() - before, step);
    shown.mouse(QEvent::MouseButtonRelease, pos);
    shown.view.onScrollTimeout();
    QCOMPARE(shown.scrolled() - before, step);
}

void TestGraphWidget::handDoesNotScrollByItself()
{
    ShownSheet shown;
    shown.view.setDragMode(QGraphicsView::ScrollHandDrag);
    shown.mouse(QEvent::MouseButtonPress, QPoint(200, 200));
    shown.mouse(QEvent::MouseMove, QPoint(10, 200));
    const QPoint panned = shown.scrolled();
    shown.view.onScrollTimeout();
    QCOMPARE(shown.scrolled(), panned);
    QVERIFY(!shown.view.findChild<QRubberBand *>()->isVisible());
}

void TestGraphWidget::rubberBand()
{
    ShownSheet shown;
    const auto *band = shown.view.findChild<QRubberBand *>();
    Sticky *inside = shown.sheet.addNote(QRectF(740, 440, 40, 40));
    Sticky *outside = shown.sheet.addNote(QRectF(900, 600, 40, 40));

    shown.mouse(QEvent::MouseButtonPress, QPoint(200, 200));
    shown.mouse(QEvent::MouseMove, QPoint(198, 198));
    QVERIFY(!band->isVisible());
    shown.mouse(QEvent::MouseMove, QPoint(100, 100));
    QVERIFY(band->isVisible());
    QCOMPARE(band->geometry().topLeft(), QPoint(100, 100));
    QVERIFY(inside->isSelected());
    QVERIFY(!outside->isSelected());
    shown.mouse(QEvent::MouseButtonRelease, QPoint(100, 100));
    QVERIFY(!band->isVisible());
    QVERIFY(inside->isSelected());
}

/// The view scrolls under its first corner.
void TestGraphWidget::bandStaysOnTheChart()
{
    ShownSheet shown;
    const auto *band = shown.view.findChild<QRubberBand *>();
    shown.mouse(QEvent::MouseButtonPress, QPoint(200, 200));
    shown.mouse(QEvent::MouseMove, QPoint(400, 300));
    QCOMPARE(band->geometry().left(), 200);
    shown.view.onScrollTimeout();
    QCOMPARE(band->geometry().left(), 192);
}

void TestGraphWidget::pressOnANoteShowsNoBand()
{
    ShownSheet shown;
    shown.sheet.addNote(QRectF(740, 440, 120, 120));
    shown.mouse(QEvent::MouseButtonPress, QPoint(200, 200));
    shown.mouse(QEvent::MouseMove, QPoint(230, 230));
    QVERIFY(!shown.view.findChild<QRubberBand *>()->isVisible());
    shown.mouse(QEvent::MouseButtonRelease, QPoint(230, 230));
}

/// A context menu keeps the release to itself.
void TestGraphWidget::bandsBeginWithTheLeftButton()
{
    ShownSheet shown;
    const auto *band = shown.view.findChild<QRubberBand *>();
    shown.sheet.addNote(QRectF(740, 440, 120, 120));
    for (Qt::MouseButton button : {Qt::RightButton, Qt::LeftButton}) {
        shown.mouse(QEvent::MouseButtonPress, QPoint(50, 50), button);
        shown.mouse(QEvent::MouseButtonPress, QPoint(200, 200));
        shown.mouse(QEvent::MouseMove, QPoint(230, 230));
        QVERIFY(!band->isVisible());
    }
}

void TestGraphWidget::sheetStaysUnderThePointer()
{
    ShownSheet shown;
    shown.view.resize(1600, 1000);
    shown.view.setZoomScale(50);
    shown.sheet.addNote(QRectF(1400, 400, 120, 80));
    QCoreApplication::processEvents();
    const QPoint pos = shown.view.mapFromScene(QPointF(1440, 440));
    for (int pages : {2, 1}) { // it grows and shrinks again
        const QPoint end = pos + QPoint(pages == 2 ? 80 : 0, 0);
        if (pages == 2)
            shown.mouse(QEvent::MouseButtonPress, pos);
        const QPointF before = shown.view.mapToScene(end);
        shown.mouse(QEvent::MouseMove, end);
        QTRY_COMPARE(shown.sheet.scene.getNumHorizontalPages(), pages);
        QCOMPARE(shown.view.mapToScene(end), before);
    }
    shown.mouse(QEvent::MouseButtonRelease, pos);
    shown.view.setZoomScale(50); // lets go
    QCOMPARE(shown.view.mapFromScene(QPointF(1440, 440)), pos);
}

void TestGraphWidget::zoomStaysUnderThePointer()
{
    ShownSheet shown;
    connect(&shown.view, &GraphWidget::doZoom, &shown.view, [&shown](bool zoomIn) {
        shown.view.setZoomScale(shown.view.getZoom() + (zoomIn ? 10 : -10));
    });
    const QPoint pos(90, 310);
    const QPointF before = shown.view.mapToScene(pos);
    for (int turn = 0; turn < 5; ++turn)
        shown.turnWheel(pos, QPoint(0, 120), Qt::ControlModifier);
    QCOMPARE(shown.view.getZoom(), 150);
    QCOMPARE(shown.view.transform(), QTransform::fromScale(1.5, 1.5));
    QVERIFY((shown.view.mapToScene(pos) - before).manhattanLength() < 3);
    for (int turn = 0; turn < 5; ++turn)
        shown.turnWheel(pos, QPoint(0, -120), Qt::ControlModifier);
    QCOMPARE(shown.view.transform(), QTransform());
    QVERIFY((shown.view.mapToScene(pos) - before).manhattanLength() < 3);
}

/// As at the first and last step, where nobody changes the zoom.
void TestGraphWidget::turnsBeyondTheLimitsMoveNothing()
{
    ShownSheet shown;
    shown.view.resize(397, 389);
    shown.view.setZoomScale(110);
    const QPoint before = shown.scrolled();
    for (int turn = 0; turn < 5; ++turn)
        shown.turnWheel(QPoint(90, 310), QPoint(0, 120), Qt::ControlModifier);
    QCOMPARE(shown.scrolled(), before);
}

void TestGraphWidget::wheelThatDoesNotZoom()
{
    ShownSheet shown;
    QSignalSpy zooms(&shown.view, &GraphWidget::doZoom);
    const QPoint before = shown.scrolled();
    shown.turnWheel(QPoint(200, 200), QPoint(0, -120), Qt::NoModifier);
    QVERIFY(shown.scrolled().y() > before.y());
    // How a touchpad ends a gesture.
    shown.turnWheel(QPoint(200, 200), QPoint(0, 0), Qt::ControlModifier);
    QCOMPARE(zooms.count(), 0);
}

void TestGraphWidget::numbersStayVisibleUnderADarkTheme()
{
    const QPalette themed = QApplication::palette();
    QPalette dark(Qt::black);
    dark.setColor(QPalette::WindowText, Qt::white);
    dark.setColor(QPalette::Text, Qt::white);
    QApplication::setPalette(dark);

    Sheet sheet;
    sheet.addNote(QRectF(100, 100, 80, 60), "Causal_Factor", "x");
    GraphWidget view(&sheet.scene, nullptr);
    view.resize(400, 400);
    const QImage shown = view.grab().toImage();
    QApplication::setPalette(themed);

    const QPoint circle = view.mapFromScene(QPointF(176.68, 103.34)); // its centre
    int darkPixels = 0;
    for (int x = circle.x() - 9; x <= circle.x() + 9; ++x)
        darkPixels += shown.pixelColor(x, circle.y()).lightness() < 128;
    QVERIFY(darkPixels > 0);
}

EXAMINER_TEST_MAIN(TestGraphWidget)
#include "testgraphwidget.moc"
