#pragma once

#include "chart/projectitem.h"

#include <memory>

class ResizeGrip;

/// A movable, resizable rectangle. Its place on the sheet is the item's position.
class BoxItem : public ProjectItem
{
    Q_OBJECT

public:
    BoxItem(ChartSheet *sheet, CanvasItemInfo &info);
    ~BoxItem() override;

    /// In item coordinates; the top left stays (0,0).
    QRectF getRect() const { return rect; }
    /// Scene position and size.
    QRectF getGeometry() const { return QRectF(pos(), rect.size()); }

    /// Drags the edges of the handle in use to the event's position.
    void handleResizeEvent(QGraphicsSceneMouseEvent *event);

signals:
    /// A note's move or resize by the mouse begins; a barrier sends neither this nor moved.
    void moveStarted();
    /// The note has another position or size, by whatever means.
    void moved(BoxItem *item);
    /// With scene position and size as they were at the press.
    void moveFinished(BoxItem *item, const QRectF &oldGeometry);

protected:
    QRectF rect;
    int resizeHandleInUse = 0;              // 1 to 8 clockwise from the top left, 0 for none
    std::unique_ptr<ResizeGrip> resizeGrip; // made by the subclass
    bool moving = false;
    QRectF geometryAtPress;

private:
    void dragTop(QGraphicsSceneMouseEvent *event);
    void dragLeft(QGraphicsSceneMouseEvent *event);
    void dragRight(QGraphicsSceneMouseEvent *event);
    void dragBottom(QGraphicsSceneMouseEvent *event);
};
