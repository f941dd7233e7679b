#include "shell/graphwidget.h"

#include "chart/sticky.h"
#include "sheet/projectscene.h"
#include "support/rounding.h"

#include <QContextMenuEvent>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainterPath>
#include <QRubberBand>
#include <QScrollBar>
#include <QWheelEvent>
#include <QtMath>

#include <utility>

namespace
{

constexpr int ScrollInterval = 30; // milliseconds
constexpr int ScrollBorder = 70;   // pixels from the edge
constexpr int DragThreshold = 4;   // Manhattan length
constexpr int FitMargin = 10;      // pixels

} // namespace

GraphWidget::GraphWidget(ProjectScene *scene, QWidget *parent)
    : QGraphicsView(parent), rubberBand(new QRubberBand(QRubberBand::Rectangle, viewport())),
      projectScene(scene)
{
    setDragMode(QGraphicsView::NoDrag);
    setStatusTip(getZoomTip());
    setScene(scene);
    centerOn(0, 0);
    setRenderHints(QPainter::Antialiasing | QPainter::TextAntialiasing);
    setFrameStyle(QFrame::NoFrame);
    setPaperPalette();
    connect(&scrollTimer, &QTimer::timeout, this, &GraphWidget::onScrollTimeout);
    connect(scene, &QGraphicsScene::sceneRectChanged, this, &GraphWidget::onSceneRectChanged);
}

QString GraphWidget::getZoomTip()
{
    return tr("%1 Mouse Wheel to zoom").arg("Ctrl");
}

// The paper stays white under a dark theme, so what items draw with the view's own
// pen, as the number in a circle, must stay dark. What lies under the paper shines
// through where an update ends between two pixels.
void GraphWidget::setPaperPalette()
{
    QPalette paper = viewport()->palette();
    paper.setColor(QPalette::Base, Qt::white);
    paper.setColor(QPalette::Text, Qt::black);
    paper.setColor(QPalette::WindowText, Qt::black);
    viewport()->setPalette(paper);
}

QRectF GraphWidget::getCurrentPageBounds() const
{
    return projectScene->getPageBoundsAtPoint(getViewCentre());
}

int GraphWidget::getZoomFor(const QRectF &area) const
{
    const QSizeF room = maximumViewportSize() - QSize(2 * FitMargin, 2 * FitMargin);
    return qFloor(100 * qMin(room.width() / qMax(area.width(), 1.0),
                             room.height() / qMax(area.height(), 1.0)));
}

void GraphWidget::setZoomScale(int percent)
{
    // The bounds of a shadow depend on the zoom: a note that is being dragged would no longer
    // be found where the sheet has filed it.
    for (Sticky *note : projectScene->getSelectedNotes())
        note->setShadow(false);
    zoom = percent;
    letGo();
    resetTransform();
    if (zoom != 100)
        scale(zoom / 100.0, zoom / 100.0);
}

// A sheet smaller than the view stands in its middle, and none scrolls past its edges: one
// that grows or shrinks under a drag would slip away from the pointer.
void GraphWidget::holdView()
{
    holding = true;
    const QRectF shown = viewportTransform().inverted().mapRect(QRectF(viewport()->rect()));
    setSceneRect(projectScene->sceneRect() | shown);
}

void GraphWidget::onSceneRectChanged(const QRectF &rect)
{
    if (!holding) {
        letGo();
        return;
    }
    const QPoint origin = mapFromScene(0, 0);
    setSceneRect(sceneRect() | rect);
    scrollOriginTo(origin);
}

void GraphWidget::scrollOriginTo(const QPoint &pos)
{
    scrollBy(mapFromScene(0, 0) - pos);
}

void GraphWidget::scrollBy(const QPoint &moved)
{
    horizontalScrollBar()->setValue(horizontalScrollBar()->value() + moved.x());
    verticalScrollBar()->setValue(verticalScrollBar()->value() + moved.y());
}

void GraphWidget::onScrollTimeout()
{
    QScrollBar *horizontal = horizontalScrollBar();
    QScrollBar *vertical = verticalScrollBar();
    if (scrollDirections & ScrollLeft)
        horizontal->setValue(horizontal->value() - scrollSpeed);
    if (scrollDirections & ScrollRight)
        horizontal->setValue(horizontal->value() + scrollSpeed);
    if (scrollDirections & ScrollUp)
        vertical->setValue(vertical->value() - scrollSpeed);
    if (scrollDirections & ScrollDown)
        vertical->setValue(vertical->value() + scrollSpeed);

    if (!rubberBand->isVisible())
        return;
    const QPoint origin = mapFromScene(bandOrigin);
    rubberBand->setGeometry(qMin(origin.x(), bandEnd.x()), qMin(origin.y(), bandEnd.y()),
                            qAbs(origin.x() - bandEnd.x()), qAbs(origin.y() - bandEnd.y()));
}

bool GraphWidget::event(QEvent *event)
{
    if (event->type() == QEvent::KeyPress) {
        // A walk belongs to the key alone: a view that is hidden passes its focus on, too.
        const auto *key = static_cast<QKeyEvent *>(event);
        const bool back = key->key() == Qt::Key_Backtab;
        const bool other = key->modifiers() & (Qt::ControlModifier | Qt::AltModifier);
        if ((back || key->key() == Qt::Key_Tab) && !other && projectScene->walkNotes(!back))
            return true;
    }
    if (event->type() == QEvent::ShortcutOverride) {
        auto *key = static_cast<QKeyEvent *>(event);
        if (projectScene->handleEditingCommand(key) || projectScene->disturbsDrag(key)) {
            event->accept();
            return true;
        }
    }
    return QGraphicsView::event(event);
}

// The key for a menu means the selected note, wherever the pointer is; in a text it means the
// caret.
void GraphWidget::contextMenuEvent(QContextMenuEvent *event)
{
    const QList<Sticky *> notes = projectScene->getSelectedNotes();
    if (event->reason() != QContextMenuEvent::Keyboard || notes.isEmpty() || scene()->focusItem()) {
        QGraphicsView::contextMenuEvent(event);
        return;
    }
    ensureVisible(notes.first());
    const QPoint place = mapFromScene(notes.first()->sceneBoundingRect().center());
    QContextMenuEvent there(QContextMenuEvent::Keyboard, place, viewport()->mapToGlobal(place),
                            event->modifiers());
    QGraphicsView::contextMenuEvent(&there);
    event->setAccepted(there.isAccepted());
}

void GraphWidget::leaveEvent(QEvent *event)
{
    projectScene->hideHighlightItem();
    QGraphicsView::leaveEvent(event);
}

void GraphWidget::mousePressEvent(QMouseEvent *event)
{
    endDrag(); // a menu or a dialog keeps a release to itself
    if (event->buttons() == Qt::MiddleButton && !isOverEditedText(event->pos())) {
        startPanning(event->pos());
        return;
    }
    if (dragMode() == QGraphicsView::ScrollHandDrag) {
        QGraphicsView::mousePressEvent(event);
        return;
    }
    scrollTimer.start(ScrollInterval);
    if (event->button() == Qt::LeftButton)
        holdView();
    QGraphicsView::mousePressEvent(event);

    const QPointF scenePos = mapToScene(event->pos());
    if (event->button() != Qt::LeftButton || itemAt(event->pos()) ||
        !projectScene->selectedItems().isEmpty())
        return;
    bandOrigin = roundHalfUp(scenePos);
    bandPending = true;
    rubberBand->setGeometry(QRect(event->pos(), event->pos()));
}

void GraphWidget::mouseMoveEvent(QMouseEvent *event)
{
    if (panPos) {
        pan(event->pos());
        return;
    }
    if (dragMode() != QGraphicsView::ScrollHandDrag && event->buttons() & Qt::LeftButton) {
        updateEdgeScrolling(event->pos());
        updateRubberBand(event->pos());
    }
    QGraphicsView::mouseMoveEvent(event);
}

void GraphWidget::mouseReleaseEvent(QMouseEvent *event)
{
    const bool panned = panPos.has_value();
    endDrag();
    if (!panned)
        QGraphicsView::mouseReleaseEvent(event);
}

void GraphWidget::endDrag()
{
    rubberBand->hide();
    bandPending = false;
    holding = false;
    scrollDirections = 0;
    scrollSpeed = 0;
    scrollTimer.stop();
    if (std::exchange(panPos, std::nullopt))
        viewport()->setCursor(cursorBeforePanning);
}

void GraphWidget::giveUpDrag()
{
    if (rubberBand->isVisible())
        projectScene->clearSelection();
    endDrag();
    projectScene->giveUpDrag();
}

void GraphWidget::startPanning(const QPoint &pos)
{
    panPos = pos;
    cursorBeforePanning = viewport()->cursor();
    viewport()->setCursor(Qt::ClosedHandCursor);
}

void GraphWidget::pan(const QPoint &pos)
{
    scrollOriginTo(mapFromScene(0, 0) + pos - *panPos);
    panPos = pos;
}

// There the middle button pastes.
bool GraphWidget::isOverEditedText(const QPoint &pos) const
{
    const QGraphicsItem *text = projectScene->focusItem();
    return text && text->sceneBoundingRect().contains(mapToScene(pos));
}

void GraphWidget::dropEvent(QDropEvent *event)
{
    holdView();
    QGraphicsView::dropEvent(event);
    holding = false;
}

void GraphWidget::resizeEvent(QResizeEvent *event)
{
    const QPoint origin = mapFromScene(0, 0);
    if (!holding)
        letGo();
    QGraphicsView::resizeEvent(event);
    if (holding) // a scroll bar came or went
        scrollOriginTo(origin);
}

void GraphWidget::wheelEvent(QWheelEvent *event)
{
    if (!(event->modifiers() & Qt::ControlModifier)) {
        event->ignore();
        if (event->modifiers() & Qt::ShiftModifier && event->angleDelta().x() == 0)
            scrollSideways(event);
        else
            QGraphicsView::wheelEvent(event);
        return;
    }
    if (event->angleDelta().y() == 0)
        return; // a touchpad ends its gestures so
    const QPoint pos = event->position().toPoint();
    const QPointF before = mapToScene(pos);
    emit doZoom(event->angleDelta().y() > 0);
    // By whole pixels to the nearest: what centerOn() cuts off would add up over the turns.
    scrollBy(roundHalfUp(viewportTransform().map(before)) - pos);
}

void GraphWidget::scrollSideways(QWheelEvent *event)
{
    QWheelEvent turned(event->position(), event->globalPosition(), event->pixelDelta().transposed(),
                       event->angleDelta().transposed(), event->buttons(), event->modifiers(),
                       event->phase(), event->inverted());
    turned.ignore();
    QGraphicsView::wheelEvent(&turned);
    event->setAccepted(turned.isAccepted());
}

QPointF GraphWidget::getViewCentre() const
{
    const QPointF centre(viewport()->width() / 2.0, viewport()->height() / 2.0);
    return viewportTransform().inverted().map(centre);
}

void GraphWidget::updateEdgeScrolling(const QPoint &pos)
{
    scrollDirections = 0;
    scrollSpeed = 0;
    int distance = 0;
    if (pos.x() < ScrollBorder) {
        scrollDirections = ScrollLeft;
        distance = pos.x();
    } else if (width() - pos.x() < ScrollBorder) {
        scrollDirections = ScrollRight;
        distance = width() - pos.x();
    }
    // The vertical distance decides in a corner.
    if (pos.y() < ScrollBorder) {
        scrollDirections |= ScrollUp;
        distance = pos.y();
    } else if (height() - pos.y() < ScrollBorder) {
        scrollDirections |= ScrollDown;
        distance = height() - pos.y();
    }
    if (scrollDirections)
        scrollSpeed = (ScrollBorder - distance) / 8;
}

void GraphWidget::updateRubberBand(const QPoint &pos)
{
    const QPoint origin = mapFromScene(bandOrigin);
    if (bandPending && (origin - pos).manhattanLength() > DragThreshold) {
        rubberBand->show();
        bandPending = false;
    }
    if (!rubberBand->isVisible())
        return;
    bandEnd = pos;
    const QRect band(QPoint(qMin(origin.x(), pos.x()), qMin(origin.y(), pos.y())),
                     QPoint(qMax(origin.x(), pos.x()), qMax(origin.y(), pos.y())));
    rubberBand->setGeometry(band);
    QPainterPath area;
    area.addRect(QRectF(mapToScene(band.topLeft()), mapToScene(band.bottomRight())));
    projectScene->setSelectionArea(area, viewportTransform());
}
