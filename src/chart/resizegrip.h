#pragma once

#include <QList>
#include <QRectF>

class QGraphicsItem;
class ResizeHandle;

/// The eight drag handles around a box, numbered 1 to 8 clockwise from the top
/// left. The handles become items when they are first shown.
class ResizeGrip
{
public:
    explicit ResizeGrip(QGraphicsItem *parent);

    /// The number of the handle there, shown or hidden, or 0.
    int contains(QPointF scenePoint) const;

    void setVisible(bool visible);
    /// Lays the handles around the box, given in the parent's coordinates.
    void relayout(QRectF box);

private:
    void makeHandles();

    QGraphicsItem *parent; // owns the handles, outlives the grip's use
    QRectF frame;          // the box with its margin
    QList<ResizeHandle *> handles;
};
