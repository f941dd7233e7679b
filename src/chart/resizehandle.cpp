#include "chart/resizehandle.h"

#include <QBrush>
#include <QPainter>
#include <QPen>

ResizeHandle::ResizeHandle(const QRectF &rect, QGraphicsItem *parent)
    : QGraphicsRectItem(rect, parent)
{
    setBrush(Qt::black);
    setPen(Qt::NoPen);
}

bool ResizeHandle::contains(const QPointF &point) const
{
    return getHitRect(rect()).contains(point);
}

void ResizeHandle::paint(QPainter *painter, const QStyleOptionGraphicsItem *option, QWidget *widget)
{
    painter->setRenderHint(QPainter::Antialiasing, false);
    QGraphicsRectItem::paint(painter, option, widget);
}
