#pragma once

#include <QGraphicsRectItem>

/// One black handle of a resize grip.
class ResizeHandle : public QGraphicsRectItem
{
public:
    ResizeHandle(const QRectF &rect, QGraphicsItem *parent);

    /// What a press may hit of a handle with that rectangle: one unit more at
    /// the top and at the left.
    static QRectF getHitRect(const QRectF &rect) { return rect.adjusted(-1, -1, 0, 0); }

    bool contains(const QPointF &point) const override;
    void paint(QPainter *painter, const QStyleOptionGraphicsItem *option, QWidget *widget) override;
};
