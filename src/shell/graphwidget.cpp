#include "shell/graphwidget.h"

#include "sheet/projectscene.h"
#include "support/rounding.h"

#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainterPath>
#include <QRubberBand>
#include <QScrollBar>
#include <QWheelEvent>

namespace
{

constexpr int ScrollInterval = 30; // milliseconds
constexpr int ScrollBorder = 70;   // pixels from the edge
constexpr int DragThreshold = 4;   // Manhattan length

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
// pen, as the number in a circle, must stay dark.
void GraphWidget::setPaperPalette()
{
    QPalette paper = viewport()->palette();
    paper.setColor(QPalette::Text, Qt::black);
    paper.setColor(QPalette::WindowText, Qt::black);
    viewport()->setPalette(paper);
}

QRectF GraphWidget::getCurrentPageBounds() const
{
    return projectScene->getPageBoundsAtPoint(getViewCentre());
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
    if (event->type() == QEvent::ShortcutOverride &&
        projectScene->handleEditingCommand(static_cast<QKeyEvent *>(event))) {
        event->accept();
        return true;
    }
    return QGraphicsView::event(event);
}

void GraphWidget::leaveEvent(QEvent *event)
{
    projectScene->hideHighlightItem();
    QGraphicsView::leaveEvent(event);
}

void GraphWidget::mousePressEvent(QMouseEvent *event)
{
    endDrag(); // a menu or a dialog keeps a release to itself
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
    if (dragMode() != QGraphicsView::ScrollHandDrag && event->buttons() & Qt::LeftButton) {
        updateEdgeScrolling(event->pos());
        updateRubberBand(event->pos());
    }
    QGraphicsView::mouseMoveEvent(event);
}

void GraphWidget::mouseReleaseEvent(QMouseEvent *event)
{
    endDrag();
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
