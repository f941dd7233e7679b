#include "chart/sticky.h"
#include "shell/graphwidget.h"

#include <QPainter>

namespace
{

constexpr QRgb MarkColor = 0xffffb300;
constexpr QRgb CurrentMarkColor = 0xffe65100;
constexpr int MarkOpacity = 70; // of 255
constexpr qreal MarkWidth = 3;  // pixels
constexpr qreal CurrentMarkWidth = 5;

} // namespace

void GraphWidget::setMarks(const QVector<QPointer<Sticky>> &notes, const Sticky *current)
{
    if (marks.isEmpty() && notes.isEmpty())
        return;
    marks = notes;
    currentMark = current;
    viewport()->update();
}

// The view's own foreground: it is on no paper, and no item knows of it. A mark keeps within its
// note's bounds, for what a moving note uncovers is all that is painted anew.
void GraphWidget::drawForeground(QPainter *painter, const QRectF &rect)
{
    QGraphicsView::drawForeground(painter, rect);
    const qreal pixel = 1 / transform().m11();
    for (const Sticky *note : qAsConst(marks)) {
        if (!note || !note->scene())
            continue;
        const QRectF place = note->boundingRect().translated(note->pos());
        if (!place.intersects(rect))
            continue;
        const bool isCurrent = note == currentMark;
        QColor color = QColor(isCurrent ? CurrentMarkColor : MarkColor);
        const qreal width = pixel * (isCurrent ? CurrentMarkWidth : MarkWidth);
        painter->setPen(QPen(color, width, Qt::SolidLine, Qt::SquareCap, Qt::MiterJoin));
        color.setAlpha(MarkOpacity);
        painter->setBrush(color);
        painter->drawRect(place.adjusted(width / 2, width / 2, -width / 2, -width / 2));
    }
}
