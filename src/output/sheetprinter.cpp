#include "output/sheetprinter.h"

#include "output/pngwriter.h"
#include "sheet/projectscene.h"
#include "support/pageinfo.h"

#include <QPainter>
#include <QPrinter>
#include <QScopeGuard>

namespace
{

constexpr double CentimetresPerInch = 2.54;
constexpr int BandHeight = 512; // pixels of a picture that stand in memory at once

int toDevice(double centimetres, const QPrinter &printer)
{
    return int(centimetres / CentimetresPerInch * printer.resolution());
}

/// Where a page of a sheet lies on the paper, in device units.
QRectF getTarget(const QPrinter &printer)
{
    const PageInfo page;
    const QRect paper = printer.pageLayout().fullRectPixels(printer.resolution());
    const int left = toDevice(page.leftMargin, printer);
    const int right = toDevice(page.rightMargin, printer);
    const int top = toDevice(page.topMargin, printer);
    const int bottom = toDevice(page.bottomMargin, printer);
    // The right margin stands in for the top one, as in the printable area of a sheet.
    return QRectF(left, right, paper.width() - left - right, paper.height() - top - bottom);
}

QImage renderBand(ProjectScene *scene, const QRectF &source, const QSize &size)
{
    QImage image(size, QImage::Format_RGB32);
    image.fill(Qt::white);
    QPainter painter(&image);
    painter.setRenderHint(QPainter::Antialiasing);
    scene->render(&painter, image.rect(), source, Qt::KeepAspectRatio);
    return image;
}

} // namespace

void SheetPrinter::setUpPage(QPrinter &printer)
{
    PageInfo page;
    page.getPrintableArea(); // takes the paper of the sheets, also where the setting names none
    printer.setPageSize(QPageSize(QPageSize::PageSizeId(page.pageSize)));
    printer.setPageOrientation(QPageLayout::Landscape);
}

bool SheetPrinter::paint(QPrinter &printer, ProjectScene *mainScene,
                         const QList<ProjectScene *> &factorScenes)
{
    const int horizontalPages = mainScene->getNumHorizontalPages();
    const int verticalPages = mainScene->getNumVerticalPages();
    printer.setFullPage(true);
    QPainter painter;
    if (!painter.begin(&printer))
        return false;
    paintScene(mainScene, painter, printer, verticalPages, horizontalPages);
    for (ProjectScene *scene : factorScenes) {
        if (!scene->isPrintEnabled())
            continue;
        printer.newPage();
        paintScene(scene, painter, printer, verticalPages, horizontalPages);
    }
    return painter.end();
}

void SheetPrinter::paintScene(ProjectScene *scene, QPainter &painter, QPrinter &printer,
                              int verticalPages, int horizontalPages)
{
    if (!scene->isPrintEnabled())
        return;
    scene->clearSelection();
    scene->setRenderBackground(false, true, true);
    const auto restore = qScopeGuard([scene] { scene->setRenderBackground(true, true, true); });
    const QRectF target = getTarget(printer);
    for (int row = 0; row < verticalPages; ++row) {
        for (int column = 0; column < horizontalPages; ++column) {
            const QRectF source(QPointF(column * target.width(), row * target.height()),
                                target.size());
            if (!scene->pageContainsItems(source))
                continue;
            scene->render(&painter, target, source, Qt::KeepAspectRatio);
            if (row < verticalPages - 1 || column < horizontalPages - 1)
                printer.newPage();
        }
    }
}

bool SheetPrinter::writePNG(ProjectScene *scene, const QRectF &bound, const QString &path)
{
    const QSize size(qRound(bound.width()), qRound(bound.height()));
    PngWriter writer(path);
    if (!writer.begin(size))
        return false;
    scene->clearSelection();
    scene->setRenderBackground(false, true, true);
    const auto restore = qScopeGuard([scene] { scene->setRenderBackground(true, true, true); });
    const double scale =
        qMin(size.width() / bound.width(), size.height() / bound.height()); // near 1
    for (int top = 0; top < size.height(); top += BandHeight) {
        const QSize band(size.width(), qMin(BandHeight, size.height() - top));
        const QRectF source(bound.x(), bound.y() + top / scale, bound.width(),
                            band.height() / scale);
        if (!writer.writeRows(renderBand(scene, source, band)))
            return false;
    }
    return writer.end();
}
