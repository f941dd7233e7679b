#include "chart/circlednumberitem.h"
#include "chart/crosslines.h"
#include "chart/notetext.h"
#include "chart/resizegrip.h"
#include "chart/sticky.h"

#include <QGraphicsPixmapItem>
#include <QPainter>

namespace
{

constexpr qreal CornerPart = 0.0625; // of a round shape's sides that text keeps clear of
constexpr qreal MarkerHeight = 20;   // of a new sequence marker
constexpr qreal PictureGap = 5;      // between picture and text

// Antialiasing would spread thin straight lines over two rows of pixels.
void drawSharpRect(QPainter *painter, const QRectF &rect)
{
    const bool smooth = painter->testRenderHint(QPainter::Antialiasing);
    painter->setRenderHint(QPainter::Antialiasing, false);
    painter->drawRect(rect);
    painter->setRenderHint(QPainter::Antialiasing, smooth);
}

} // namespace

QRectF Sticky::boundingRect() const
{
    const qreal margin = info.borderLineWidth / 2.0;
    return rect.adjusted(-margin, -margin, margin, margin);
}

void Sticky::paint(QPainter *painter, const QStyleOptionGraphicsItem *, QWidget *)
{
    QPen pen = info.role.getInfo().pen;
    if (isSelected())
        pen.setColor(Qt::red);
    if (info.borderLineWidth > 0)
        pen.setWidth(info.borderLineWidth);
    painter->setPen(pen);
    painter->setBrush(info.backgroundColor.isValid() ? QBrush(info.backgroundColor)
                                                     : info.role.getInfo().brush);
    drawShape(painter);
    if (highlightedEdge != NoSide)
        drawHighlightEdge(painter, highlightedEdge);
}

void Sticky::drawShape(QPainter *painter) const
{
    const qreal width = rect.width();
    const qreal height = rect.height();
    switch (info.role.getInfo().shape) {
    case RoleInfo::Rectangle:
        drawSharpRect(painter, rect);
        break;
    case RoleInfo::Oval:
        painter->drawRoundedRect(rect, 50, 50, Qt::RelativeSize);
        break;
    case RoleInfo::Plate:
        painter->drawPolygon(QPolygonF({QPointF(width / 2, 0), QPointF(width, height / 2),
                                        QPointF(width / 2, height), QPointF(0, height / 2)}));
        break;
    case RoleInfo::Ellipse:
        painter->drawEllipse(rect);
        break;
    }
}

void Sticky::drawHighlightEdge(QPainter *painter, Side side) const
{
    if (side == AutoSide) {
        for (Side each : {LeftSide, TopSide, RightSide, BottomSide})
            drawHighlightEdge(painter, each);
        return;
    }
    static const QPolygonF mark({QPointF(-10, 0), QPointF(0, -10), QPointF(10, 0)});
    const QPointF middle = getEdgeMidPoint(side);
    const int turn = side == LeftSide ? 90 : side == TopSide ? 180 : side == RightSide ? 270 : 0;

    painter->save();
    painter->setOpacity(1);
    painter->setPen(Qt::red);
    painter->translate(int(middle.x()), int(middle.y()));
    painter->rotate(turn);
    painter->drawPolygon(mark);
    painter->restore();
}

void Sticky::relayout(bool doItFast)
{
    resizeGrip->relayout(rect);
    circle->setPos(rect.right() - 13.32, rect.y() - 6.66);
    if (crossLines)
        crossLines->updateSize();

    const QSizeF inset = getTextInset();
    const qreal textWidth = rect.width() - 2 * inset.width();
    if (noteText->textWidth() != textWidth) // the document would lay itself out again
        noteText->setTextWidth(textWidth);
    placeText(inset);
    if (imageItem)
        placePicture(inset, doItFast);
    update();
}

QSizeF Sticky::getTextInset() const
{
    const int border = int((info.borderLineWidth + 5) * 0.5);
    if (info.role.getInfo().shape == RoleInfo::Rectangle)
        return QSizeF(border, border);
    return QSizeF(int(rect.width() * CornerPart + border),
                  int(border + rect.height() * CornerPart));
}

qreal Sticky::getTextHeight() const
{
    return noteText->boundingRect().height();
}

void Sticky::placeText(const QSizeF &inset)
{
    qreal top = inset.height();
    if (imageItem)
        top = rect.bottom() - inset.height() - getTextHeight();
    else if (info.textAlignment & Qt::AlignVCenter || rect.height() == MarkerHeight)
        top = (rect.height() - getTextHeight()) * 0.5;
    noteText->setPos(inset.width(), top);
}

void Sticky::placePicture(const QSizeF &inset, bool doItFast)
{
    const qreal textWidth = noteText->textWidth();
    const qreal height = noteText->y() - PictureGap;
    // While the user types, small steps of the text leave the picture alone.
    if (!editing || qAbs(getPictureSize().height() - height) > 5)
        scalePicture(QSize(int(textWidth), int(height)), doItFast);
    imageItem->setPos(inset.width() + (textWidth - getPictureSize().width()) * 0.5, inset.height());
}

QSizeF Sticky::getPictureSize() const
{
    return QSizeF(imageItem->pixmap().size()) * imageItem->scale();
}

void Sticky::scalePicture(const QSize &space, bool doItFast)
{
    if (space == pictureSpace && doItFast == pictureIsRough)
        return;
    pictureSpace = space;
    pictureIsRough = doItFast;
    if (space.isEmpty()) {
        imageItem->setPixmap(QPixmap());
        return;
    }
    const QSize full = info.image.size();
    const QSize fitting = full.scaled(space, Qt::KeepAspectRatio).expandedTo(QSize(1, 1));
    // The view enlarges: a note of any size holds no more pixels than its picture has.
    const bool enlarged = fitting.width() > full.width();
    imageItem->setScale(enlarged ? qreal(fitting.width()) / full.width() : 1);
    imageItem->setPixmap(
        enlarged ? info.image
                 : info.image.scaled(fitting, Qt::IgnoreAspectRatio,
                                     doItFast ? Qt::FastTransformation : Qt::SmoothTransformation));
}
