#include "shell/graphwidget.h"
#include "shell/toolbutton.h"
#include "shell/toolstoolbar.h"
#include "shell/zoomwidget.h"
#include "testing/rows.h"
#include "testing/sheet.h"

#include <QMainWindow>
#include <QRubberBand>
#include <QScrollBar>
#include <QWheelEvent>

static void sendMouse(QWidget *widget, QEvent::Type type, const QPoint &pos,
                      Qt::MouseButton button = Qt::LeftButton)
{
    QMouseEvent event(type, pos, widget->mapToGlobal(pos),
                      type == QEvent::MouseMove ? Qt::NoButton : button,
                      type == QEvent::MouseButtonRelease ? Qt::NoButton : button, Qt::NoModifier);
    QApplication::sendEvent(widget, &event);
}

/// The middle of a large sheet, in a view of 400 by 400.
struct ShownSheet {
    ShownSheet() : view(&sheet.scene, nullptr), band(view.findChild<QRubberBand *>())
    {
        view.resize(400, 400);
        view.show();
        view.centerOn(800, 500);
    }

    void mouse(QEvent::Type type, const QPoint &pos, Qt::MouseButton button = Qt::LeftButton)
    {
        sendMouse(view.viewport(), type, pos, button);
    }

    void turnWheel(const QPoint &pos, int angle, Qt::KeyboardModifiers modifiers)
    {
        QWheelEvent event(pos, view.viewport()->mapToGlobal(pos), QPoint(), QPoint(0, angle),
                          Qt::NoButton, modifiers, Qt::NoScrollPhase, false);
        QApplication::sendEvent(view.viewport(), &event);
    }

    QPoint scrolled() const
    {
        return QPoint(view.horizontalScrollBar()->value(), view.verticalScrollBar()->value());
    }

    Sheet sheet;
    GraphWidget view;
    QRubberBand *band;
};

/// The palette in a window of its own.
struct Palette {
    Palette() : bar(&window)
    {
        window.addToolBar(&bar);
        window.resize(1600, 200);
        window.show();
    }

    QAction *action(int tool) const
    {
        for (QAction *action : bar.findChildren<QAction *>()) {
            if (action->data() == tool)
                return action;
        }
        return nullptr;
    }
    ToolButton *button(int tool) const
    {
        for (ToolButton *button : bar.findChildren<ToolButton *>()) {
            if (button->actions().contains(action(tool)) ||
                (button->menu() && button->menu()->actions().contains(action(tool))))
                return button;
        }
        return nullptr;
    }

    /// Opens the button's menu by its arrow and presses the keys there.
    void pickFromMenu(int tool, const QList<int> &keys)
    {
        ToolButton *owner = button(tool);
        DialogAnswer answer([&](QWidget *menu) {
            for (int key : keys)
                QTest::keyClick(menu, Qt::Key(key));
            return true;
        });
        QTest::mouseClick(owner, Qt::LeftButton, Qt::NoModifier,
                          QPoint(owner->width() - 4, owner->height() / 2));
        QVERIFY(answer.wasAsked());
    }

    /// The tools whose buttons look pressed.
    QList<int> pressed() const
    {
        QList<int> tools;
        for (ToolButton *button : bar.findChildren<ToolButton *>()) {
            if (button->isChecked() || button->isDown())
                tools.append(button->defaultAction()->data().toInt());
        }
        return tools;
    }

    QMainWindow window;
    ToolsToolBar bar;
};

/// The view of a sheet, the zoom, the tabs and the palette.
class TestViews : public QObject
{
    Q_OBJECT

private slots:
    void dragsScrollNearTheEdges()
    {
        const std::tuple<const char *, QPoint, QPoint> rows[] = {
            {"62 from the left", {62, 200}, {-1, 0}}, {"63 from the left", {63, 200}, {0, 0}},
            {"the left edge", {0, 200}, {-8, 0}},     {"the right edge", {400, 200}, {8, 0}},
            {"beyond the top", {200, -50}, {0, -15}}, {"the height decides", {10, 60}, {-1, -1}},
        };
        for (const auto &[name, pos, step] : rows) {
            const Row in(name);
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
    }

    void rubberBand()
    {
        ShownSheet shown;
        Sticky *inside = shown.sheet.addNote(QRectF(740, 440, 40, 40));
        Sticky *outside = shown.sheet.addNote(QRectF(900, 600, 40, 40));
        shown.mouse(QEvent::MouseButtonPress, QPoint(200, 200));
        shown.mouse(QEvent::MouseMove, QPoint(198, 198));
        QVERIFY(!shown.band->isVisible());
        shown.mouse(QEvent::MouseMove, QPoint(100, 100));
        QCOMPARE(shown.band->geometry().topLeft(), QPoint(100, 100));
        QVERIFY(shown.band->isVisible() && inside->isSelected() && !outside->isSelected());
        shown.mouse(QEvent::MouseMove, QPoint(400, 300));
        shown.view.onScrollTimeout(); // the view scrolls under its first corner
        QCOMPARE(shown.band->geometry().left(), 192);
        shown.mouse(QEvent::MouseButtonRelease, QPoint(400, 300));
        QVERIFY(!shown.band->isVisible());
        // A context menu keeps the release to itself.
        shown.mouse(QEvent::MouseButtonPress, QPoint(50, 50), Qt::RightButton);
        shown.mouse(QEvent::MouseButtonPress, QPoint(150, 160)); // on the note
        shown.mouse(QEvent::MouseMove, QPoint(300, 300));
        QVERIFY(!shown.band->isVisible());
    }

    void sheetStaysUnderThePointer()
    {
        ShownSheet shown;
        shown.view.resize(1600, 1000);
        shown.view.setZoomScale(50);
        shown.sheet.addNote(QRectF(1400, 400, 120, 80));
        QCoreApplication::processEvents();
        const QPoint pos = shown.view.mapFromScene(QPointF(1440, 440));
        shown.mouse(QEvent::MouseButtonPress, pos);
        for (int pages : {2, 1}) { // it grows and shrinks again
            const QPoint end = pos + QPoint(pages == 2 ? 80 : 0, 0);
            const QPointF before = shown.view.mapToScene(end);
            shown.mouse(QEvent::MouseMove, end);
            QTRY_COMPARE(shown.sheet.scene.getNumHorizontalPages(), pages);
            QCOMPARE(shown.view.mapToScene(end), before);
        }
        shown.mouse(QEvent::MouseButtonRelease, pos);
        shown.view.setZoomScale(50); // lets go
        QCOMPARE(shown.view.mapFromScene(QPointF(1440, 440)), pos);
    }

    void zoomStaysUnderThePointer()
    {
        ShownSheet shown;
        connect(&shown.view, &GraphWidget::doZoom, &shown.view, [&shown](bool zoomIn) {
            shown.view.setZoomScale(shown.view.getZoom() + (zoomIn ? 10 : -10));
        });
        const QPoint pos(90, 310);
        const QPointF before = shown.view.mapToScene(pos);
        for (int angle : {120, -120}) {
            for (int turn = 0; turn < 5; ++turn)
                shown.turnWheel(pos, angle, Qt::ControlModifier);
            QCOMPARE(shown.view.getZoom(), angle > 0 ? 150 : 100);
            QVERIFY((shown.view.mapToScene(pos) - before).manhattanLength() < 3);
        }
        shown.view.disconnect(&shown.view); // as at the last step, where nobody changes the zoom
        shown.view.setZoomScale(110);
        const QPoint resting = shown.scrolled();
        for (int angle : {120, 0}) // 0 is how a touchpad ends a gesture
            shown.turnWheel(pos, angle, Qt::ControlModifier);
        QCOMPARE(shown.scrolled(), resting);
        shown.turnWheel(pos, -120, Qt::NoModifier);
        QVERIFY(shown.scrolled().y() > resting.y());
    }

    void zoomSteps()
    {
        const std::tuple<int, int, int, int> rows[] = {// from, in, out, by the wheel
                                                       {10, 25, 10, 20},
                                                       {110, 150, 100, 120},
                                                       {195, 200, 150, 200},
                                                       {-5, 25, 10, 20}};
        for (const auto &[from, in, out, wheel] : rows) {
            ZoomWidget zooms[3];
            for (ZoomWidget &zoom : zooms)
                zoom.setZoom(from);
            zooms[0].getZoomInAction()->trigger();
            zooms[1].getZoomOutAction()->trigger();
            zooms[2].stepZoom(true);
            QCOMPARE(zooms[0].getZoom(), in);
            QCOMPARE(zooms[1].getZoom(), out);
            QCOMPARE(zooms[2].getZoom(), wheel);
        }
    }

    void oneToolIsInUse()
    {
        Palette palette;
        QSignalSpy selected(&palette.bar, &ToolsToolBar::toolSelectionChanged);
        for (int tool : {EventTool, ArrowTool, EventTool, EventTool}) {
            QTest::mouseClick(palette.button(tool), Qt::LeftButton, Qt::NoModifier, QPoint(9, 9));
            QCOMPARE(palette.bar.getSelectedTool(), tool);
            QCOMPARE(palette.pressed(), QList<int>{tool});
        }
        QCOMPARE(selected.count(), 3);
        palette.pickFromMenu(ArrowTool, {Qt::Key_Down, Qt::Key_Down, Qt::Key_Return});
        QCOMPARE(palette.pressed(), QList<int>{StraightLineTool});
        palette.bar.cancelActiveTool();
        QCOMPARE(palette.pressed(), QList<int>{SelectTool});
        QCOMPARE(palette.button(ArrowTool)->defaultAction(), palette.action(StraightLineTool));
        // Whatever is done to a button that ends without a choice.
        QTest::mouseClick(palette.button(EventTool), Qt::LeftButton);
        palette.pickFromMenu(ArrowTool, {Qt::Key_Escape});
        QCOMPARE(palette.pressed(), QList<int>{EventTool});
        for (int tool : {ArrowTool, HandTool}) {
            QTest::mouseClick(palette.button(tool), Qt::RightButton, Qt::NoModifier, QPoint(9, 9));
            QCOMPARE(palette.pressed(), QList<int>{EventTool});
        }
    }

    void fivePixelsAreADrag()
    {
        Palette palette;
        ToolButton *button = palette.button(SelectTool); // which itself can't be dragged away
        for (const QPoint &to : {QPoint(17, 17), QPoint(18, 17), QPoint(12, 13)}) {
            QSignalSpy dragged(button, &ToolButton::dragStarting);
            QTest::mousePress(button, Qt::LeftButton, Qt::NoModifier, QPoint(15, 15));
            sendMouse(button, QEvent::MouseMove, to);
            QTest::mouseRelease(button, Qt::LeftButton, Qt::NoModifier, to);
            QCOMPARE(dragged.count(), to == QPoint(17, 17) ? 0 : 1);
        }
    }
};

EXAMINER_TEST_MAIN(TestViews)
#include "testviews.moc"
