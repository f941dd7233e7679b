#pragma once

#include "chart/projectitem.h"

#include <QPointer>

#include <memory>

class BoxItem;
class ResizeGrip;

/// Boxes, each with scene position and size.
using BoxGeometries = QList<QPair<QPointer<BoxItem>, QRectF>>;

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

    /// Nothing but for notes: barriers have none.
    virtual void setShadow(bool enabled);
    /// Drags the edges of the handle in use to the event's position, no further than the
    /// sheet's left and top edge.
    void handleResizeEvent(QGraphicsSceneMouseEvent *event);

signals:
    /// A note's move or resize by the mouse begins; a barrier sends neither this nor moved.
    void moveStarted();
    /// The note has another position or size, by whatever means.
    void moved(BoxItem *item);
    /// With scene position and size as they were at the press.
    void moveFinished(BoxItem *item, const QRectF &oldGeometry);
    /// All boxes that a drag of this one has changed, as they were at the press.
    void dragged(const BoxGeometries &before);

protected:
    bool sceneEvent(QEvent *event) override;
    void mousePressEvent(QGraphicsSceneMouseEvent *event) override;

    /// Changes place and size; lines and handles follow with relayout().
    void setGeometry(const QRectF &geometry);
    void setGroupShadow(bool enabled);
    /// Where a drag of this box leaves what it moves.
    virtual QPointF getPlaceAtRest(const QGraphicsItem *item) const;
    /// Lets all that moves with this box come to rest.
    void settleGroup();
    /// Tells what the drag has changed.
    void finishDrag();

    QRectF rect;
    int resizeHandleInUse = 0;              // 1 to 8 clockwise from the top left, 0 for none
    std::unique_ptr<ResizeGrip> resizeGrip; // made by the subclass
    bool moving = false;
    QRectF geometryAtPress;

private:
    void rememberGroup();
    void giveUpDrag();

    BoxGeometries groupAtPress; // what moves with this box, itself included; empty between drags
};
