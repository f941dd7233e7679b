#include "chart/chartsheet.h"
#include "chart/line.h"
#include "chart/routing.h"
#include "chart/sheethost.h"

#include <QGraphicsSceneContextMenuEvent>
#include <QGraphicsSceneMouseEvent>
#include <QMenu>

namespace
{

// An arrowhead hides the handle beneath it, so its tip can be grabbed from further away.
constexpr int ArrowGrabDistance = 18; // Manhattan length

} // namespace

void Line::contextMenuEvent(QGraphicsSceneContextMenuEvent *event)
{
    selectForMenu();
    sheet->getHost()->getLineContextMenu()->exec(event->screenPos());
    event->accept();
}

void Line::mousePressEvent(QGraphicsSceneMouseEvent *event)
{
    event->accept();
    if (event->button() != Qt::LeftButton)
        return;
    if (isOnHandle(event->pos(), Start))
        movingStart = true;
    else if (isOnHandle(event->pos(), End))
        movingEnd = true;
    endsAtPress = getEnds();
    ProjectItem::mousePressEvent(event);
}

void Line::mouseMoveEvent(QGraphicsSceneMouseEvent *event)
{
    if (movingStart) {
        handleLineMoving(event->scenePos(), Start);
    } else if (movingEnd) {
        handleLineMoving(event->scenePos(), End);
    } else {
        event->setAccepted(false);
        ProjectItem::mouseMoveEvent(event);
    }
}

void Line::mouseReleaseEvent(QGraphicsSceneMouseEvent *event)
{
    if (movingStart || movingEnd)
        finishDrag();
    ProjectItem::mouseReleaseEvent(event);
}

void Line::finishDrag()
{
    movingStart = false;
    movingEnd = false;
    if (getEnds() == endsAtPress)
        return;
    settleAutoSides();
    emit endDragged(this, endsAtPress);
}

bool Line::sceneEvent(QEvent *event)
{
    // A deletion may take the mouse away before its release: then nothing has been dragged.
    if (event->type() == QEvent::UngrabMouse && (movingStart || movingEnd)) {
        movingStart = false;
        movingEnd = false;
        setEnds(endsAtPress);
    }
    return ProjectItem::sceneEvent(event);
}

bool Line::isOnHandle(const QPointF &p, LineSide side) const
{
    if (side == Start)
        return startHandle.contains(p);
    if (info.arrowStyle == NoArrows)
        return endHandle.contains(p);
    return getManhattanLength(info.endPoint, p) <= ArrowGrabDistance;
}
