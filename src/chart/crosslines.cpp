#include "chart/crosslines.h"

#include <QGraphicsLineItem>
#include <QPen>

CrossLines::CrossLines(QGraphicsItem *parent) : parent(parent) {}

void CrossLines::setVisible(bool visible)
{
    if (visible && !falling) {
        falling = makeLine();
        rising = makeLine();
        updateSize();
    }
    if (!falling)
        return;
    falling->setVisible(visible);
    rising->setVisible(visible);
}

void CrossLines::updateSize()
{
    if (!falling)
        return;
    const QRectF box = parent->boundingRect().adjusted(5, -5, -5, 5);
    falling->setLine(QLineF(box.topLeft(), box.bottomRight()));
    rising->setLine(QLineF(box.bottomLeft(), box.topRight()));
}

QGraphicsLineItem *CrossLines::makeLine() const
{
    auto *line = new QGraphicsLineItem(parent);
    line->setPen(QPen(Qt::black, 3, Qt::SolidLine, Qt::SquareCap, Qt::BevelJoin));
    return line;
}
