#include "benchmark.h"
#include "benchsheet.h"

#include "chart/sticky.h"

#include <QApplication>
#include <QGraphicsPathItem>
#include <QGraphicsView>
#include <QMouseEvent>
#include <QScrollBar>

// A note with ten connectors under the mouse, each move with its repaint.

namespace
{

constexpr int Connectors = 10;
constexpr int Moves = 200;
constexpr int DraggedNote = 3;      // its neighbours show in the view too
constexpr int FirstLineBelow = 100; // two rows further down

void showView(QGraphicsView &view)
{
    view.setRenderHints(QPainter::Antialiasing | QPainter::TextAntialiasing);
    view.setFrameStyle(QFrame::NoFrame);
    view.resize(1400, 900);
    view.show();
    QApplication::processEvents();
    view.horizontalScrollBar()->setValue(0);
    view.verticalScrollBar()->setValue(0);
    QApplication::processEvents();
}

void sendMouse(QGraphicsView &view, QEvent::Type type, const QPointF &scenePos)
{
    const QPoint p = view.mapFromScene(scenePos);
    const auto button = type == QEvent::MouseMove ? Qt::NoButton : Qt::LeftButton;
    const auto buttons = type == QEvent::MouseButtonRelease ? Qt::NoButton : Qt::LeftButton;
    QMouseEvent event(type, p, view.viewport()->mapToGlobal(p), button, buttons, Qt::NoModifier);
    QApplication::sendEvent(view.viewport(), &event);
    QApplication::processEvents();
}

/// Drags whatever lies there around and back; ms per move.
double drag(QGraphicsView &view, const QPointF &from)
{
    sendMouse(view, QEvent::MouseButtonPress, from);
    const double time = timed([&] {
        for (int i = 1; i <= Moves; ++i) {
            const int step = i <= Moves / 2 ? i : Moves - i;
            sendMouse(view, QEvent::MouseMove, from + QPointF(step, step));
        }
    });
    sendMouse(view, QEvent::MouseButtonRelease, from);
    return time / Moves;
}

/// Leads further lines of a row below to the dragged note, which has two of its own.
void attach(BenchSheet &sheet)
{
    for (int i = 0; i < Connectors - 2; ++i) {
        Line *line = sheet.lines.at(FirstLineBelow + i);
        line->setEndConnection({sheet.notes.at(DraggedNote), Sticky::BottomSide});
    }
}

void attach(BareSheet &sheet)
{
    BareBox *box = sheet.boxes.at(DraggedNote);
    const QRectF rect = box->rect();
    const qreal middle = rect.center().y();
    for (int i = 0; i < Connectors - 2; ++i)
        box->attach(sheet.paths.at(FirstLineBelow + i), QPointF(rect.center().x(), rect.bottom()));
    box->attach(sheet.paths.at(DraggedNote - 1), QPointF(0, middle));
    QGraphicsPathItem *next = sheet.paths.at(DraggedNote);
    next->setPath(next->path().toReversed());
    box->attach(next, QPointF(rect.width(), middle));
}

} // namespace

void benchDrag()
{
    BenchTable table("drag: one mouse move of a note with 10 connectors, with its repaint");
    for (int size : BenchSizes) {
        const BenchChart chart(size);
        BenchSheet sheet(chart);
        attach(sheet);
        QGraphicsView view(&sheet.scene);
        showView(view);
        BareSheet bare(chart);
        attach(bare);
        QGraphicsView bareView(&bare.scene);
        showView(bareView);

        const QPointF from = chart.notes.at(DraggedNote).startPoint + QPointF(30, 20);
        table.add(size,
                  measure(
                      7, [&] { return drag(view, from); }, [&] { return drag(bareView, from); }));
    }
}
