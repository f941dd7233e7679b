#include "chart/circlednumberitem.h"

#include "chart/projectitem.h"

#include <QPainter>

CircledNumberItem::CircledNumberItem(QGraphicsItem *parent) : QGraphicsItem(parent) {}

QString CircledNumberItem::getString() const
{
    switch (numberingMode) {
    case Numerals:
        return QString::number(number);
    case Letters:
        return QChar(number + 'A' - 1);
    default:
        return QString();
    }
}

void CircledNumberItem::setNumber(int value)
{
    number = value;
    update();
}

void CircledNumberItem::setNumberingMode(NumberingMode mode)
{
    numberingMode = mode;
    update();
}

void CircledNumberItem::setBrush(const QBrush &fill)
{
    brush = fill;
    update();
}

int CircledNumberItem::type() const
{
    return ProjectItem::CircledNumberType;
}

QRectF CircledNumberItem::boundingRect() const
{
    return rect.adjusted(-1, -1, 1, 1);
}

QPainterPath CircledNumberItem::shape() const
{
    QPainterPath path;
    path.addEllipse(rect);
    return path;
}

void CircledNumberItem::paint(QPainter *painter, const QStyleOptionGraphicsItem *, QWidget *)
{
    painter->setBrush(brush);
    painter->setFont(QFont("Arial", 9)); // a desktop's own would differ on paper and elsewhere
    painter->drawEllipse(rect);
    painter->drawText(rect, Qt::AlignCenter, getString());
}
