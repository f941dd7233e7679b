#include "chart/boxitem.h"

#include "chart/resizegrip.h"

#include <QGraphicsSceneMouseEvent>

namespace
{

constexpr qreal MinimumSide = 20;

} // namespace

BoxItem::BoxItem(ChartSheet *sheet, CanvasItemInfo &info) : ProjectItem(sheet, info) {}

BoxItem::~BoxItem() = default;

void BoxItem::handleResizeEvent(QGraphicsSceneMouseEvent *event)
{
    // The event comes by way of the handle, mapped from where that was last painted:
    // the second of two moves without a repaint between them would be off by the first.
    event->setPos(mapFromScene(event->scenePos()));
    prepareGeometryChange();
    const int handle = resizeHandleInUse;
    if (handle >= 1 && handle <= 3)
        dragTop(event);
    else if (handle >= 5 && handle <= 7)
        dragBottom(event);

    if (handle == 1 || handle == 7 || handle == 8)
        dragLeft(event);
    else if (handle >= 3 && handle <= 5)
        dragRight(event);
    event->accept();
}

// The top and left edges refuse to go too far, the others stop at the minimum:
// an edge that moves the item would else push it along.
void BoxItem::dragTop(QGraphicsSceneMouseEvent *event)
{
    const qreal height = rect.bottom() - event->pos().y();
    if (height <= MinimumSide)
        return;
    setPos(scenePos().x(), event->scenePos().y());
    rect.setHeight(height);
}

void BoxItem::dragLeft(QGraphicsSceneMouseEvent *event)
{
    const qreal width = rect.right() - event->pos().x();
    if (width <= MinimumSide)
        return;
    setPos(event->scenePos().x(), scenePos().y());
    rect.setWidth(width);
}

void BoxItem::dragRight(QGraphicsSceneMouseEvent *event)
{
    rect.setWidth(qMax(MinimumSide, event->pos().x() - rect.x()));
}

void BoxItem::dragBottom(QGraphicsSceneMouseEvent *event)
{
    rect.setHeight(qMax(MinimumSide, event->pos().y() - rect.y()));
}
