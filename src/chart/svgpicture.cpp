#include "chart/svgpicture.h"

#include "chart/chartsheet.h"
#include "chart/resizegrip.h"
#include "chart/sharpness.h"
#include "support/rounding.h"

#include <QGraphicsSceneMouseEvent>
#include <QPainter>

namespace
{

constexpr QSizeF StandardSize(17, 82);
constexpr qreal LargestCache = 1 << 16; // pixels; a file may hold thousands of huge barriers

} // namespace

SVGPicture::SVGPicture(const QString &resource, ChartSheet *sheet, CanvasItemInfo &info)
    : BoxItem(sheet, info), renderer(resource)
{
    setFlags(ItemIsMovable | ItemIsSelectable);
    setHandlesChildEvents(true);
    resizeGrip = std::make_unique<ResizeGrip>(this);
    setPos(info.startPoint);
    const bool hasSize = info.size.width() >= 0 && info.size.height() >= 0;
    setSize(hasSize ? info.size : StandardSize);
    setZValue(100);
}

void SVGPicture::relayout()
{
    resizeGrip->relayout(rect);
    update();
}

CanvasItemInfo SVGPicture::getCanvasItemInfo()
{
    info.startPoint = pos();
    info.size = rect.size();
    info.parent = sheet->getOwnerGUID();
    return info;
}

void SVGPicture::setCustomBackgroundColor(const QColor &) {}

void SVGPicture::setSize(QSizeF size)
{
    prepareGeometryChange();
    rect.setSize(size);
    relayout();
}

void SVGPicture::paint(QPainter *painter, const QStyleOptionGraphicsItem *, QWidget *)
{
    if (rect.isEmpty())
        return;
    const qreal pixels = getPixelsPerUnit(painter);
    const bool isSmall = rect.width() * rect.height() * pixels * pixels <= LargestCache;
    const bool isUpright = painter->worldTransform().type() <= QTransform::TxScale;
    if (isSmall && isUpright && isPainterOnPixels(painter)) {
        drawFromCache(painter);
        return;
    }
    painter->setRenderHint(QPainter::Antialiasing, false);
    renderer.render(painter, rect);
}

// Drawn pixel by pixel, at any zoom and on any screen: the edges of a picture that lies between
// pixels are pale where only a part of it is drawn anew.
void SVGPicture::drawFromCache(QPainter *painter)
{
    const qreal ratio = painter->device()->devicePixelRatioF();
    const QTransform toPixels = QTransform::fromScale(1 / ratio, 1 / ratio);
    const QRectF place = (painter->worldTransform() * toPixels.inverted()).mapRect(rect);
    const QSize pixels = place.size().toSize();
    if (cache.size() != pixels)
        fillCache(pixels);
    if (cache.isNull())
        return;
    painter->save();
    painter->setWorldTransform(toPixels);
    painter->drawPixmap(roundHalfUp(place.topLeft()), cache);
    painter->restore();
}

void SVGPicture::fillCache(const QSize &pixels)
{
    cache = QPixmap(pixels);
    if (cache.isNull())
        return;
    cache.fill(Qt::transparent);
    QPainter painter(&cache);
    painter.setRenderHint(QPainter::Antialiasing, false);
    renderer.render(&painter, cache.rect());
}

QVariant SVGPicture::itemChange(GraphicsItemChange change, const QVariant &value)
{
    if (change == ItemSelectedHasChanged) {
        resizeGrip->setVisible(value.toBool());
        emit selectionChanged();
    }
    return BoxItem::itemChange(change, value);
}

// A barrier keeps its own place, as long as that is on the sheet; notes that it takes along
// go to the grid.
QPointF SVGPicture::getPlaceAtRest(const QGraphicsItem *item) const
{
    if (item->type() != Type)
        return BoxItem::getPlaceAtRest(item);
    return QPointF(qMax(0.0, item->x()), qMax(0.0, item->y()));
}

void SVGPicture::mouseMoveEvent(QGraphicsSceneMouseEvent *event)
{
    if (resizeHandleInUse == 0) {
        BoxItem::mouseMoveEvent(event);
        return;
    }
    handleResizeEvent(event);
    relayout();
}

void SVGPicture::mouseReleaseEvent(QGraphicsSceneMouseEvent *event)
{
    if (event->button() == Qt::LeftButton) {
        if (resizeHandleInUse == 0)
            settleGroup();
        finishDrag();
    }
    event->ignore();
    BoxItem::mouseReleaseEvent(event);
}
