#pragma once

#include "chart/boxitem.h"

#include <QPixmap>
#include <QSvgRenderer>

/// A barrier: a drawing stretched to its box. It lies above the notes and
/// stays off the grid.
class SVGPicture : public BoxItem
{
    Q_OBJECT

public:
    enum { Type = SVGPictureType };

    /// `resource` is the path of the drawing; one that doesn't load shows nothing.
    SVGPicture(const QString &resource, ChartSheet *sheet, CanvasItemInfo &info);

    /// Follows a new size. Hides the base's slot, which stays without effect.
    void relayout();
    using BoxItem::relayout;

    CanvasItemInfo getCanvasItemInfo() override;
    /// Barriers keep their colours: no effect.
    void setCustomBackgroundColor(const QColor &color) override;
    void setSize(QSizeF size) override;
    int type() const override { return SVGPictureType; }
    QRectF boundingRect() const override { return rect; }
    void paint(QPainter *painter, const QStyleOptionGraphicsItem *option, QWidget *widget) override;

protected:
    QVariant itemChange(GraphicsItemChange change, const QVariant &value) override;
    QPointF getPlaceAtRest(const QGraphicsItem *item) const override;
    void mouseMoveEvent(QGraphicsSceneMouseEvent *event) override;
    void mouseReleaseEvent(QGraphicsSceneMouseEvent *event) override;

private:
    void drawFromCache(QPainter *painter);
    void fillCache(const QSize &pixels);

    QSvgRenderer renderer;
    QPixmap cache; // as last drawn in a view
};
