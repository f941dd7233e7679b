#include "chart/boxitem.h"

#include "chart/chartsheet.h"
#include "chart/resizegrip.h"

#include <QGraphicsScene>
#include <QGraphicsSceneMouseEvent>

namespace
{

constexpr qreal MinimumSide = 20;

} // namespace

BoxItem::BoxItem(ChartSheet *sheet, CanvasItemInfo &info) : ProjectItem(sheet, info) {}

BoxItem::~BoxItem() = default;

void BoxItem::setShadow(bool) {}

void BoxItem::setGeometry(const QRectF &geometry)
{
    prepareGeometryChange();
    // The position comes last: who hears of it may look for items on the sheet, which
    // files this one under its bounds again.
    rect.setSize(geometry.size());
    setPos(geometry.topLeft());
}

// The top and left edges refuse to go too far, the others stop at the minimum:
// an edge that moves the item would else push it along.
void BoxItem::handleResizeEvent(QGraphicsSceneMouseEvent *event)
{
    const qreal x = qMax(0.0, event->scenePos().x());
    const qreal y = qMax(0.0, event->scenePos().y());
    const int handle = resizeHandleInUse;
    QRectF box = getGeometry();
    if (handle >= 1 && handle <= 3) {
        if (box.bottom() - y > MinimumSide)
            box.setTop(y);
    } else if (handle >= 5 && handle <= 7) {
        box.setBottom(qMax(box.top() + MinimumSide, y));
    }
    if (handle == 1 || handle == 7 || handle == 8) {
        if (box.right() - x > MinimumSide)
            box.setLeft(x);
    } else if (handle >= 3 && handle <= 5) {
        box.setRight(qMax(box.left() + MinimumSide, x));
    }
    setGeometry(box);
    event->accept();
}

void BoxItem::mousePressEvent(QGraphicsSceneMouseEvent *event)
{
    const bool left = event->button() == Qt::LeftButton;
    if (left) {
        resizeHandleInUse = resizeGrip->contains(event->scenePos());
        geometryAtPress = getGeometry();
    }
    ProjectItem::mousePressEvent(event); // settles the selection
    if (left)
        rememberGroup();
}

bool BoxItem::sceneEvent(QEvent *event)
{
    // A deletion may take the mouse away before its release.
    if (event->type() == QEvent::UngrabMouse && !groupAtPress.isEmpty())
        giveUpDrag();
    return ProjectItem::sceneEvent(event);
}

// With the control key a box that is not selected moves too.
void BoxItem::rememberGroup()
{
    groupAtPress = {{this, getGeometry()}};
    if (!scene() || resizeHandleInUse != 0)
        return;
    for (QGraphicsItem *item : scene()->selectedItems()) {
        auto *box = qobject_cast<BoxItem *>(item->toGraphicsObject());
        if (box && box != this)
            groupAtPress.append({box, box->getGeometry()});
    }
}

void BoxItem::setGroupShadow(bool enabled)
{
    for (const auto &[box, before] : qAsConst(groupAtPress)) {
        if (box)
            box->setShadow(enabled);
    }
}

QPointF BoxItem::getPlaceAtRest(const QGraphicsItem *item) const
{
    return ChartSheet::getNearestGridPoint(item->pos());
}

void BoxItem::settleGroup()
{
    setPos(getPlaceAtRest(this));
    if (!scene())
        return;
    for (QGraphicsItem *item : scene()->selectedItems())
        item->setPos(getPlaceAtRest(item));
}

void BoxItem::finishDrag()
{
    moving = false;
    resizeHandleInUse = 0;
    BoxGeometries changed;
    for (const auto &[box, before] : qAsConst(groupAtPress)) {
        if (box && box->getGeometry() != before)
            changed.append({box, before});
    }
    groupAtPress.clear();
    if (!changed.isEmpty())
        emit dragged(changed);
    emit moveFinished(this, geometryAtPress);
}

void BoxItem::giveUpDrag()
{
    setGroupShadow(false);
    for (const auto &[box, before] : qAsConst(groupAtPress)) {
        if (!box || box->getGeometry() == before)
            continue;
        box->setPos(before.topLeft());
        box->setSize(before.size());
    }
    // The toolkit forgets with a release alone where the drag began, and a box that is dragged
    // next would start from the sheet's corner.
    QGraphicsSceneMouseEvent release(QEvent::GraphicsSceneMouseRelease);
    QGraphicsItem::mouseReleaseEvent(&release);
    finishDrag();
}
