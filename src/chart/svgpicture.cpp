#include "chart/svgpicture.h"

#include "chart/chartsheet.h"
#include "chart/resizegrip.h"

#include <QGraphicsSceneMouseEvent>
#include <QPainter>

namespace
{

constexpr QSizeF StandardSize(17, 82);
constexpr qint64 LargestCache = 1 << 16; // pixels; a file may hold thousands of huge barriers

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
    const QSize size = rect.size().toSize();
    cache = qint64(size.width()) * size.height() <= LargestCache ? QPixmap(size) : QPixmap();
    if (!cache.isNull()) {
        cache.fill(Qt::transparent);
        QPainter painter(&cache);
        draw(&painter, cache.rect());
    }
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
    painter->setRenderHint(QPainter::SmoothPixmapTransform); // in a zoomed view
    if (!cache.isNull())
        painter->drawPixmap(0, 0, cache);
    else if (!rect.isEmpty())
        draw(painter, rect);
}

void SVGPicture::draw(QPainter *painter, const QRectF &box)
{
    painter->setRenderHint(QPainter::Antialiasing, false);
    renderer.render(painter, box);
}

QVariant SVGPicture::itemChange(GraphicsItemChange change, const QVariant &value)
{
    if (change == ItemSelectedHasChanged) {
        resizeGrip->setVisible(value.toBool());
        emit selectionChanged();
    }
    return BoxItem::itemChange(change, value);
}

void SVGPicture::mousePressEvent(QGraphicsSceneMouseEvent *event)
{
    if (event->button() == Qt::LeftButton) {
        resizeHandleInUse = resizeGrip->contains(event->scenePos());
        geometryAtPress = getGeometry();
    }
    BoxItem::mousePressEvent(event);
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
        resizeHandleInUse = 0;
        emit moveFinished(this, geometryAtPress);
    }
    event->ignore();
    BoxItem::mouseReleaseEvent(event);
}
