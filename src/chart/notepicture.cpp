#include "chart/notepicture.h"

#include "chart/sharpness.h"

#include <QPaintEngine>
#include <QPainter>

NotePicture::NotePicture(const QPixmap &picture, QGraphicsItem *parent)
    : QGraphicsPixmapItem(picture, parent), picture(picture)
{
    setTransformationMode(Qt::SmoothTransformation); // in a zoomed view
    setShapeMode(BoundingRectShape);
}

QSizeF NotePicture::getSize() const
{
    return QSizeF(pixmap().size()) * scale();
}

void NotePicture::fit(const QSize &newSpace, bool roughly)
{
    if (newSpace == space && roughly == rough)
        return;
    space = newSpace;
    rough = roughly;
    sharp = QPixmap();
    if (space.isEmpty()) {
        setPixmap(QPixmap());
        return;
    }
    const QSize full = picture.size();
    const QSize fitting = full.scaled(space, Qt::KeepAspectRatio).expandedTo(QSize(1, 1));
    // The view enlarges: a note of any size holds no more pixels than its picture has.
    const bool enlarged = fitting.width() > full.width();
    setScale(enlarged ? qreal(fitting.width()) / full.width() : 1);
    setPixmap(enlarged ? picture
                       : picture.scaled(fitting, Qt::IgnoreAspectRatio,
                                        rough ? Qt::FastTransformation : Qt::SmoothTransformation));
}

void NotePicture::paint(QPainter *painter, const QStyleOptionGraphicsItem *option, QWidget *widget)
{
    const QSize shown = pixmap().size();
    const QSize size =
        (QSizeF(shown) * getPixelsPerUnit(painter)).toSize().boundedTo(picture.size());
    if (rough || size.width() <= shown.width() || size.height() <= shown.height()) {
        QGraphicsPixmapItem::paint(painter, option, widget);
        return;
    }
    painter->setRenderHint(QPainter::SmoothPixmapTransform);
    const QPixmap pixels = getSharp(size, isPainterOnPixels(painter));
    painter->drawPixmap(QRectF(QPointF(), shown), pixels, pixels.rect());
}

// A picture for paper is needed once only.
QPixmap NotePicture::getSharp(const QSize &size, bool keep)
{
    if (sharp.size() == size)
        return sharp;
    const QPixmap pixels = size == picture.size() ? picture
                                                  : picture.scaled(size, Qt::IgnoreAspectRatio,
                                                                   Qt::SmoothTransformation);
    if (keep)
        sharp = pixels;
    return pixels;
}
