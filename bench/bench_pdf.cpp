#include "benchmark.h"
#include "benchsheet.h"

#include "output/sheetprinter.h"
#include "support/pageinfo.h"

#include <QApplication>
#include <QPainter>
#include <QPrinter>
#include <QTemporaryDir>

// All pages of the chart in one file.

namespace
{

void setUp(QPrinter &printer, const QString &path)
{
    printer.setOutputFormat(QPrinter::PdfFormat);
    printer.setOutputFileName(path);
    SheetPrinter::setUpPage(printer);
}

double print(ProjectScene &scene, const QString &path)
{
    return timed([&] {
        QPrinter printer;
        setUp(printer, path);
        SheetPrinter::paint(printer, &scene, {});
    });
}

double printBare(QGraphicsScene &scene, const QString &path)
{
    const QSize page = PageInfo().getPrintableArea().size();
    const QRectF bound = scene.itemsBoundingRect();
    return timed([&] {
        QPrinter printer;
        setUp(printer, path);
        QPainter painter(&printer);
        for (int y = 0; y < bound.bottom(); y += page.height()) {
            for (int x = 0; x < bound.right(); x += page.width()) {
                if (x > 0 || y > 0)
                    printer.newPage();
                scene.render(&painter, QRectF(), QRectF(QPoint(x, y), page));
            }
        }
    });
}

} // namespace

void benchPdf()
{
    BenchTable table("pdf: all pages into one file");
    const QTemporaryDir folder;
    for (int size : BenchSizes) {
        const BenchChart chart(size);
        BenchSheet sheet(chart);
        BareSheet bare(chart);
        QApplication::processEvents(); // notes lay themselves out
        const QString path = folder.filePath("chart.pdf");
        table.add(size, measure(
                            3, [&] { return print(sheet.scene, path); },
                            [&] { return printBare(bare.scene, path); }));
    }
}
