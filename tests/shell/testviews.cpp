#include "shell/accessiblesheet.h"
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
    explicit ShownSheet(QSize page = QSize(1606, 1030))
        : sheet(page), view(&sheet.scene, nullptr), band(view.findChild<QRubberBand *>())
    {
        sheet.view.setScene(nullptr); // must not be taken for the other one
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

/// The view of a sheet, the zoom, the tabs and the palette.
class TestViews : public QObject
{
    Q_OBJECT

    static auto ask(QObject *object) { return QAccessible::queryAccessibleInterface(object); }

private slots:
    void initTestCase() { installAccessibleSheets(); }

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

    void handsOnTheSheet()
    {
        ShownSheet shown;
        QPoint before = shown.scrolled();
        shown.turnWheel(QPoint(90, 310), -120, Qt::ShiftModifier);
        QVERIFY(shown.scrolled().x() > before.x() && shown.scrolled().y() == before.y());
        Sticky *first = shown.sheet.addNote(QRectF(760, 460, 80, 80));
        Sticky *last = shown.sheet.addNote(QRectF(900, 400, 80, 80));
        for (Sticky *expected : {first, last, first}) {
            QTest::keyClick(&shown.view, Qt::Key_Tab);
            QCOMPARE(shown.sheet.scene.getSelectedNotes(), {expected});
        }
        QTest::keyClick(&shown.view, Qt::Key_Backtab, Qt::ShiftModifier);
        QVERIFY(last->isSelected() && !first->isSelected());
        before = shown.scrolled();
        shown.mouse(QEvent::MouseButtonPress, QPoint(200, 200), Qt::MiddleButton);
        shown.mouse(QEvent::MouseMove, QPoint(150, 180), Qt::MiddleButton);
        shown.mouse(QEvent::MouseButtonRelease, QPoint(150, 180), Qt::MiddleButton);
        QCOMPARE(shown.scrolled() - before, QPoint(50, 20));
        const QPoint pos = shown.view.mapFromScene(QPointF(800, 500));
        shown.mouse(QEvent::MouseButtonPress, pos);
        shown.mouse(QEvent::MouseMove, pos + QPoint(40, 40));
        QVERIFY(first->pos() != QPointF(760, 460));
        shown.view.giveUpDrag();
        shown.mouse(QEvent::MouseMove, pos + QPoint(80, 80));
        shown.mouse(QEvent::MouseButtonRelease, pos + QPoint(80, 80));
        QCOMPARE(first->pos(), QPointF(760, 460));
        QCOMPARE(shown.sheet.scene.getUndoStack()->count(), 0);
        const QPoint next = shown.view.mapFromScene(QPointF(940, 440));
        shown.mouse(QEvent::MouseButtonPress, next);
        shown.mouse(QEvent::MouseMove, next + QPoint(40, 40));
        shown.mouse(QEvent::MouseButtonRelease, next + QPoint(40, 40));
        QVERIFY(last->pos().x() > 920 && last->pos().y() > 420);
    }

    void zoomSteps()
    {
        const int rows[][4] = {{10, 25, 10, 20}, {110, 150, 100, 120}, {195, 200, 150, 200}};
        for (const auto &[from, in, out, wheel] : rows) {
            ZoomWidget zooms[3];
            for (ZoomWidget &zoom : zooms)
                zoom.setZoom(from);
            zooms[0].getZoomInAction()->trigger();
            zooms[1].getZoomOutAction()->trigger();
            zooms[2].stepZoom(true);
            QVERIFY(zooms[0].getZoom() == in && zooms[1].getZoom() == out);
            QCOMPARE(zooms[2].getZoom(), wheel);
        }
    }

    void oneToolIsInUse()
    {
        QMainWindow window;
        ToolsToolBar bar(&window);
        window.addToolBar(&bar);
        window.resize(1600, 200);
        window.show();
        const auto buttons = bar.findChildren<ToolButton *>();
        ToolButton *select = buttons[0], *hand = buttons[1], *event = buttons[2];
        ToolButton *lines = buttons[7];
        const auto press = [](ToolButton *button, const QPoint &at, Qt::MouseButton with) {
            QTest::mouseClick(button, with, Qt::NoModifier, at);
        };
        const auto getPressed = [&] {
            QStringList names;
            for (const ToolButton *button : buttons) {
                if (button->isChecked() || button->isDown())
                    names += button->defaultAction()->text();
            }
            return names.join(' ');
        };
        const QPoint face(9, 9), arrow(lines->width() - 4, lines->height() / 2);
        QSignalSpy selected(&bar, &ToolsToolBar::toolSelectionChanged);
        for (ToolButton *button : {event, lines, event, event}) {
            press(button, face, Qt::LeftButton);
            QCOMPARE(getPressed(), QString(button == event ? "Event" : "Arrow"));
        }
        QCOMPARE(selected.count(), 3);
        DialogAnswer pick([](QWidget *menu) {
            for (Qt::Key key : {Qt::Key_Down, Qt::Key_Down, Qt::Key_Return})
                QTest::keyClick(menu, key);
            return true;
        });
        press(lines, arrow, Qt::LeftButton);
        QCOMPARE(getPressed(), QString("Straight Line"));
        QCOMPARE(bar.getSelectedTool(), int(StraightLineTool));
        bar.cancelActiveTool();
        QCOMPARE(getPressed(), QString("Select"));
        // Whatever is done to a button that ends without a choice.
        press(event, face, Qt::LeftButton);
        DialogAnswer left(cancellation());
        press(lines, arrow, Qt::LeftButton);
        press(lines, face, Qt::RightButton);
        press(hand, face, Qt::RightButton);
        QVERIFY(left.wasAsked());
        QCOMPARE(getPressed(), QString("Event"));

        // Five pixels are a drag; the first tool itself can't be dragged away.
        for (const QPoint &to : {QPoint(17, 17), QPoint(18, 17), QPoint(12, 13)}) {
            QSignalSpy dragged(select, &ToolButton::dragStarting);
            sendMouse(select, QEvent::MouseButtonPress, QPoint(15, 15));
            sendMouse(select, QEvent::MouseMove, to);
            sendMouse(select, QEvent::MouseButtonRelease, to);
            QCOMPARE(dragged.count(), to == QPoint(17, 17) ? 0 : 1);
        }
    }

    void notesComeInReadingOrder()
    {
        ShownSheet shown(QSize(1000, 800));
        shown.sheet.scene.setPagesGrid(2, 2);
        QAccessibleInterface *reader = ask(&shown.view);
        const QList<QPointF> places = {{100, 100},  {100, 500}, {500, 100},
                                       {1100, 100}, {100, 900}, {1000, 800}};
        for (int i = 5; i >= 0; --i)
            shown.sheet.addNote(QRectF(places[i], QSizeF(120, 80)), "Event", QString::number(i));
        shown.sheet.addLine(QPointF(0, 0), QPointF(50, 50));
        QStringList read;
        for (int i = 0; i < reader->childCount(); ++i) {
            QAccessibleInterface *child = reader->child(i);
            QCOMPARE(reader->indexOfChild(child), i);
            read += child->text(QAccessible::Name) + child->text(QAccessible::Description);
        }
        QVERIFY(read[6].contains("Loss Of Control") && read[6].endsWith(" - A1")); // the legend
        read.removeAt(6);
        QCOMPARE(read.join(' ').remove("Event: ").remove("Page "),
                 QString("0A1 1A1 2A1 3A2 4B1 5B2  - A2  - B1  - B2"));
        QVERIFY(!reader->child(10) && !reader->child(-1));
    }

    void noteIsFoundUnderAPoint()
    {
        ShownSheet shown;
        QAccessibleInterface *reader = ask(&shown.view);
        Sticky *note = shown.sheet.addNote(QRectF(800, 460, 120, 80));
        shown.view.setZoomScale(50);
        const QRect place(shown.view.viewport()->mapToGlobal(shown.view.mapFromScene(800, 460)),
                          QSize(60, 40));
        QCOMPARE(ask(note)->rect().topLeft(), place.topLeft());
        QVERIFY(qAbs(ask(note)->rect().width() - 60) <= 1);
        QCOMPARE(reader->childAt(place.center().x(), place.center().y()), ask(note));
        QVERIFY(!reader->childAt(place.right() + 90, place.center().y()));
    }

    void focusActionSelectsTheNoteAndShowsIt()
    {
        ShownSheet shown(QSize(1000, 800));
        shown.sheet.scene.setPagesGrid(2, 2);
        QAccessibleInterface *reader = ask(&shown.view);
        Sticky *near = shown.sheet.addNote(QRectF(100, 100, 120, 80));
        Sticky *far = shown.sheet.addNote(QRectF(1800, 1500, 120, 80));
        near->setSelected(true);
        QVERIFY(ask(far)->state().offscreen);
        ask(far)->actionInterface()->doAction(QAccessibleActionInterface::setFocusAction());
        QCOMPARE(shown.sheet.scene.getSelectedNotes(), QList<Sticky *>{far});
        QVERIFY(!ask(far)->state().offscreen && reader->focusChild() == ask(far));
        near->setSelected(true); // several notes are no place to be
        QVERIFY(!reader->focusChild());
    }

    void goneNotesAreGone()
    {
        ShownSheet shown;
        QAccessibleInterface *reader = ask(&shown.view);
        shown.sheet.addNote(QRectF(100, 100, 120, 80))->setSelected(true);
        shown.sheet.addNote(QRectF(300, 100, 120, 80));
        QAccessibleInterface *child = reader->child(0);
        shown.sheet.scene.deleteSelectedItems(); // an undo step keeps the note alive
        QVERIFY(!reader->child(0));
        QVERIFY(child->state().invisible && !child->parent() && child->rect().isNull());
        shown.sheet.scene.clear();
        QVERIFY(!reader->child(1));
        QTRY_COMPARE(reader->childCount(), 1); // the corner of an empty page
    }
};

EXAMINER_TEST_MAIN(TestViews)
#include "testviews.moc"
