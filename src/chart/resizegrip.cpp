#include "chart/resizegrip.h"

#include "chart/resizehandle.h"

#include <QCursor>

namespace
{

constexpr int HandleCount = 8;
constexpr qreal Margin = 3; // between box and frame

/// One row for each handle: its size and the part of the frame's free width and
/// height that lies before it.
struct HandleInfo {
    QSizeF size;
    qreal across;
    qreal down;
    Qt::CursorShape cursor;
};

const HandleInfo &getHandleInfo(int number)
{
    static const HandleInfo rows[HandleCount] = {
        {{5, 5}, 0, 0, Qt::SizeFDiagCursor}, {{5, 3}, 0.5, 0, Qt::SizeVerCursor},
        {{5, 5}, 1, 0, Qt::SizeBDiagCursor}, {{3, 5}, 1, 0.5, Qt::SizeHorCursor},
        {{5, 5}, 1, 1, Qt::SizeFDiagCursor}, {{5, 3}, 0.5, 1, Qt::SizeVerCursor},
        {{5, 5}, 0, 1, Qt::SizeBDiagCursor}, {{3, 5}, 0, 0.5, Qt::SizeHorCursor},
    };
    return rows[number - 1];
}

QRectF getHandleRect(int number, const QRectF &frame)
{
    const HandleInfo &info = getHandleInfo(number);
    const QPointF offset((frame.width() - info.size.width()) * info.across,
                         (frame.height() - info.size.height()) * info.down);
    return QRectF(frame.topLeft() + offset, info.size);
}

} // namespace

ResizeGrip::ResizeGrip(QGraphicsItem *parent) : parent(parent)
{
    relayout(parent->boundingRect());
}

int ResizeGrip::contains(QPointF scenePoint) const
{
    const QPointF point = parent->mapFromScene(scenePoint);
    for (int number = 1; number <= HandleCount; ++number) {
        if (ResizeHandle::getHitRect(getHandleRect(number, frame)).contains(point))
            return number;
    }
    return 0;
}

void ResizeGrip::setVisible(bool visible)
{
    if (visible && handles.isEmpty())
        makeHandles();
    for (ResizeHandle *handle : qAsConst(handles))
        handle->setVisible(visible);
}

void ResizeGrip::relayout(QRectF box)
{
    frame = box.adjusted(-Margin, -Margin, Margin, Margin);
    for (int i = 0; i < handles.size(); ++i)
        handles.at(i)->setPos(getHandleRect(i + 1, frame).topLeft());
}

void ResizeGrip::makeHandles()
{
    for (int number = 1; number <= HandleCount; ++number) {
        const QRectF place = getHandleRect(number, frame);
        auto *handle = new ResizeHandle(QRectF(QPointF(), place.size()), parent);
        handle->setCursor(getHandleInfo(number).cursor);
        handle->setPos(place.topLeft());
        handles.append(handle);
    }
}
