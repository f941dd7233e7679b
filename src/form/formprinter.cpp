#include "form/formprinter.h"

#include <QCoreApplication>
#include <QPaintEngine>
#include <QPainter>
#include <QThread>

namespace
{

constexpr double HeadHeight = 9; // millimetres, like the next; both in the upper margin
constexpr double HeadGap = 4;
constexpr double HeadFont = 9; // points
const QColor HeadColour("#222222");

} // namespace

void FormPrinter::setHead(const QString &newName, int newPages)
{
    name = newName;
    pages = newPages;
    firstPage = qMax(1, fromPage()); // 0 where all are asked for
    page = firstPage;
    stopped = false;
}

bool FormPrinter::askOn()
{
    if (goOn && !goOn(page, pages))
        stopped = true;
    return !stopped;
}

bool FormPrinter::newPage()
{
    if (page == firstPage)
        paintHead();
    if (QThread::currentThread() == QCoreApplication::instance()->thread())
        askOn();
    // A preview that is aborted frees its pages twice; what is left comes to lie on the last one.
    if (stopped && paintEngine()->type() != QPaintEngine::Picture)
        abort();
    if (stopped || !QPrinter::newPage())
        return false;
    ++page;
    paintHead();
    return true;
}

void FormPrinter::paintHead()
{
    QPainter *painter = paintEngine()->painter();
    if (!painter || pages < 2)
        return;
    const double millimetre = resolution() / 25.4;
    const double width = pageLayout().paintRect(QPageLayout::Millimeter).width() * millimetre;
    const QRectF line(0, -HeadHeight * millimetre, width, (HeadHeight - HeadGap) * millimetre);
    QFont font("Arial");
    font.setPointSizeF(HeadFont);
    painter->save();
    painter->resetTransform();
    painter->setClipping(false);
    painter->setOpacity(1);
    painter->setPen(HeadColour);
    painter->setFont(font);
    const QString number =
        QCoreApplication::translate("FormPrinter", "Page %1 of %2").arg(page).arg(pages);
    const QFontMetricsF metrics(font, this);
    const double left = width - metrics.horizontalAdvance(number + "  ");
    painter->drawText(line, Qt::AlignRight | Qt::AlignTop, number);
    painter->drawText(line, Qt::AlignLeft | Qt::AlignTop,
                      metrics.elidedText(name, Qt::ElideRight, left));
    painter->restore();
}
