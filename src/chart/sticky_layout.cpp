#include "chart/chartsheet.h"
#include "chart/circlednumberitem.h"
#include "chart/crosslines.h"
#include "chart/notepicture.h"
#include "chart/notetext.h"
#include "chart/resizegrip.h"
#include "chart/sharpness.h"
#include "chart/sticky.h"

#include <QPainter>
#include <QTextDocument>

#include <cmath>

namespace
{

constexpr qreal CornerPart = 0.0625; // of a round shape's sides that text keeps clear of
constexpr qreal MarkerHeight = 20;   // of a new sequence marker
constexpr qreal PictureGap = 5;      // between picture and text
constexpr qreal SmallPicture = 40;   // what a text leaves to its picture
constexpr qreal MarkSize = 6;        // of the mark of a text that does not fit
constexpr QRgb CutMarkColor = 0xffd84315;
constexpr qreal MiterLimit =
    1.5; // of a border's width beyond the corner; less would cut right angles on paper

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
    // A plate's corners reach out by up to the miter limit.
    const bool isPlate = info.role.getInfo().shape == RoleInfo::Plate;
    const qreal margin = info.borderLineWidth * (isPlate ? MiterLimit : 0.5);
    return rect.adjusted(-margin, -margin, margin, margin);
}

void Sticky::paint(QPainter *painter, const QStyleOptionGraphicsItem *, QWidget *widget)
{
    QPen pen = info.role.getInfo().pen;
    if (isSelected())
        pen.setColor(Qt::red);
    if (info.borderLineWidth > 0)
        pen.setWidth(info.borderLineWidth);
    pen.setJoinStyle(Qt::MiterJoin);
    pen.setMiterLimit(MiterLimit);
    painter->setPen(keepThinDashesApart(pen, painter));
    painter->setBrush(info.backgroundColor.isValid() ? QBrush(info.backgroundColor)
                                                     : info.role.getInfo().brush);
    drawShape(painter);
    if (highlightedEdge != NoSide)
        drawHighlightEdge(painter, highlightedEdge);
    if (textCut && widget) // there is none on paper and in pictures
        drawCutMark(painter);
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

// At the middle of the lower edge, which every shape has, beside the handle that helps.
void Sticky::drawCutMark(QPainter *painter) const
{
    const QPointF tip(rect.width() / 2, rect.height() - 1);
    painter->setPen(Qt::NoPen);
    painter->setBrush(QColor(CutMarkColor));
    painter->drawPolygon(
        QPolygonF({tip, tip + QPointF(-MarkSize, -MarkSize), tip + QPointF(MarkSize, -MarkSize)}));
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
    checkText();
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

void Sticky::checkText()
{
    const qreal margin = noteText->document()->documentMargin(); // holds no ink
    const bool cut =
        noteText->y() + margin < 0 || noteText->y() + getTextHeight() - margin > rect.height();
    if (cut == textCut)
        return;
    textCut = cut;
    setToolTip(cut ? tr("The text does not fit. Double click the lower handle to make room.")
                   : QString());
}

/// The height that shows all of the text, on a sheet whose grid the lower edge keeps to.
qreal Sticky::getHeightForText() const
{
    const bool isRound = info.role.getInfo().shape != RoleInfo::Rectangle;
    const qreal border = int((info.borderLineWidth + 5) * 0.5);
    qreal height = getTextHeight() + 2 * border;
    if (imageItem)
        height += PictureGap + SmallPicture;
    if (isRound)
        height /= 1 - 2 * CornerPart;
    const qreal step = ChartSheet::GridStep;
    return std::ceil((y() + height) / step) * step - y();
}

void Sticky::growToText()
{
    const QRectF before = getGeometry();
    const qreal height = getHeightForText();
    if (!textCut || height <= before.height())
        return;
    setGeometry(QRectF(pos(), QSizeF(rect.width(), height)));
    relayout(false);
    emit moved(this);
    emit dragged({{this, before}});
}

void Sticky::placePicture(const QSizeF &inset, bool doItFast)
{
    const qreal textWidth = noteText->textWidth();
    const qreal height = noteText->y() - PictureGap;
    // While the user types, small steps of the text leave the picture alone.
    if (!editing || qAbs(imageItem->getSize().height() - height) > 5)
        imageItem->fit(QSize(int(textWidth), int(height)), doItFast);
    imageItem->setPos(inset.width() + (textWidth - imageItem->getSize().width()) * 0.5,
                      inset.height());
}
