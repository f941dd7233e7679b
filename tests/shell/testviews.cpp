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

    QList<ToolButton *> buttons() const { return bar.findChildren<ToolButton *>(); }
    ToolButton *button(int tool) const
    {
        for (ToolButton *button : buttons()) {
            if (button->defaultAction()->data() == tool)
                return button;
        }
        return nullptr;
    }

    static void press(ToolButton *button, const QPoint &at, Qt::MouseButton with = Qt::LeftButton)
    {
        QTest::mouseClick(button, with, Qt::NoModifier, at);
    }

    /// Opens the button's menu by its arrow and presses the keys there.
    void pickFromMenu(ToolButton *button, const QList<Qt::Key> &keys)
    {
        DialogAnswer answer([&](QWidget *menu) {
            for (Qt::Key key : keys)
                QTest::keyClick(menu, key);
            return true;
        });
        press(button, QPoint(button->width() - 4, button->height() / 2));
        QVERIFY(answer.wasAsked());
    }

    /// The tools whose buttons look pressed.
    QList<int> pressed() const
    {
        QList<int> tools;
        for (ToolButton *button : buttons()) {
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
        for (int pages : {2, 1}) { // it shrinks again
            shown.mouse(QEvent::MouseMove, pos + QPoint(pages == 2 ? 80 : 0, 0));
            QTRY_COMPARE(shown.sheet.scene.getNumHorizontalPages(), pages);
            QCOMPARE(shown.view.mapToScene(pos), QPointF(1440, 440));
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
        const int rows[][4] = {{10, 25, 10, 20}, {110, 150, 100, 120}, {195, 200, 150, 200}};
        for (const auto &[from, in, out, wheel] : rows) {
            ZoomWidget zoom;
            zoom.setZoom(from);
            zoom.getZoomInAction()->trigger();
            QCOMPARE(zoom.getZoom(), in);
            zoom.setZoom(from);
            zoom.getZoomOutAction()->trigger();
            QCOMPARE(zoom.getZoom(), out);
            zoom.setZoom(from);
            zoom.stepZoom(true);
            QCOMPARE(zoom.getZoom(), wheel);
        }
    }

    void oneToolIsInUse()
    {
        Palette palette;
        ToolButton *lines = palette.button(ArrowTool), *event = palette.button(EventTool);
        QSignalSpy selected(&palette.bar, &ToolsToolBar::toolSelectionChanged);
        for (ToolButton *button : {event, lines, event, event}) {
            palette.press(button, QPoint(9, 9));
            QCOMPARE(palette.pressed(), QList<int>{button == event ? EventTool : ArrowTool});
        }
        QCOMPARE(selected.count(), 3);
        palette.pickFromMenu(lines, {Qt::Key_Down, Qt::Key_Down, Qt::Key_Return});
        QCOMPARE(palette.bar.getSelectedTool(), int(StraightLineTool));
        QCOMPARE(palette.pressed(), QList<int>{StraightLineTool});
        palette.bar.cancelActiveTool();
        QCOMPARE(palette.pressed(), QList<int>{SelectTool});
        // Whatever is done to a button that ends without a choice.
        palette.press(event, QPoint(9, 9));
        palette.pickFromMenu(lines, {Qt::Key_Escape});
        palette.press(lines, QPoint(9, 9), Qt::RightButton);
        palette.press(palette.button(HandTool), QPoint(9, 9), Qt::RightButton);
        QCOMPARE(palette.pressed(), QList<int>{EventTool});

        // Five pixels are a drag; the first tool itself can't be dragged away.
        ToolButton *button = palette.button(SelectTool);
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
