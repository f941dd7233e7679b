#include "chart/sticky.h"

#include <QMap>

namespace
{

constexpr qreal EdgeBand = 10;

qreal squaredDistance(const QPointF &a, const QPointF &b)
{
    const QPointF between = a - b;
    return QPointF::dotProduct(between, between);
}

} // namespace

QPointF Sticky::getEdgeMidPoint(Side side) const
{
    const qreal width = rect.width();
    const qreal height = rect.height();
    switch (side) {
    case LeftSide:
        return QPointF(0, height / 2);
    case TopSide:
        return QPointF(width / 2, 0);
    case RightSide:
        return QPointF(rect.x() + width, height / 2);
    case BottomSide:
        return QPointF(width / 2, height);
    default:
        return QPointF();
    }
}

Sticky::Side Sticky::getClosestEdge(const QPointF &p) const
{
    if (rect.adjusted(EdgeBand, EdgeBand, -EdgeBand, -EdgeBand).contains(p))
        return AutoSide;
    if (p.x() < EdgeBand)
        return LeftSide;
    if (p.x() > rect.width() - EdgeBand)
        return RightSide;
    if (p.y() < EdgeBand)
        return TopSide;
    if (p.y() > rect.height() - EdgeBand)
        return BottomSide;
    return NoSide;
}

Sticky::Side Sticky::resolveAutoSide(const QPointF &p) const
{
    // Of equally close sides the last one stands.
    QMap<double, Side> sides;
    for (Side side : {LeftSide, RightSide, TopSide, BottomSide})
        sides.insert(squaredDistance(p, getEdgeMidPoint(side)), side);
    return sides.first();
}

QPointF Sticky::getConnectionPoint(Side side, const QPointF &p) const
{
    return getEdgeMidPoint(side == AutoSide ? resolveAutoSide(p) : side);
}

Sticky::Side Sticky::updateLineConnection(const QPointF &p)
{
    const Side edge = getClosestEdge(p);
    if (edge != highlightedEdge)
        setHighlightedEdge(edge);
    return edge;
}

void Sticky::setHighlightedEdge(Side side)
{
    if (side == highlightedEdge)
        return;
    highlightedEdge = side;
    update();
}
