#include "sheet/infoitem.h"

#include <QCoreApplication>
#include <QEvent>
#include <QGraphicsSceneMouseEvent>
#include <QGraphicsTextItem>
#include <QPen>

InfoItem::InfoItem() : QGraphicsRectItem(0, 0, 190, 160)
{
    setPen(QPen(Qt::gray, 1, Qt::DashLine));
    setBrush(Qt::transparent);
    setFlags(ItemIsMovable | ItemIsSelectable);

    auto *picture = new QGraphicsPixmapItem(QPixmap(":/images/why@2x.png"), this);
    picture->setPos(45, 10);
    picture->setTransformationMode(Qt::SmoothTransformation); // in a zoomed view
    addText(
        QCoreApplication::translate("InfoItem", "Observed\nSubstandard\nBehaviour or\nCondition"),
        QRectF(10, 89, 100, 71));
    addText(
        QCoreApplication::translate("InfoItem", "Facts that\nexplain why\nthe effect is\npresent"),
        QRectF(110, 89, 80, 71));
}

// A drag that was given up has no release, and the next one would start where this one did.
bool InfoItem::sceneEvent(QEvent *event)
{
    if (event->type() == QEvent::UngrabMouse) {
        QGraphicsSceneMouseEvent release(QEvent::GraphicsSceneMouseRelease);
        mouseReleaseEvent(&release);
    }
    return QGraphicsRectItem::sceneEvent(event);
}

void InfoItem::addText(const QString &text, const QRectF &place)
{
    auto *item = new QGraphicsTextItem(text, this);
    item->setFont(QFont("Arial", 8, QFont::Normal));
    item->setDefaultTextColor(Qt::black);
    item->setPos(place.topLeft());
    item->setTextWidth(place.width());
}
