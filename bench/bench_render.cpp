#include "benchmark.h"
#include "benchsheet.h"

#include <QApplication>
#include <QImage>
#include <QPainter>

// The whole chart in one picture.

namespace
{

double render(QGraphicsScene &scene, const QRectF &bound)
{
    QImage image(1600, 1000, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::white);
    QPainter painter(&image);
    painter.setRenderHint(QPainter::Antialiasing);
    return timed([&] { scene.render(&painter, image.rect(), bound); });
}

} // namespace

void benchRender()
{
    BenchTable table("render: the whole chart into one picture of 1600 by 1000");
    for (int size : BenchSizes) {
        const BenchChart chart(size);
        BenchSheet sheet(chart);
        BareSheet bare(chart);
        QApplication::processEvents(); // notes lay themselves out
        const QRectF bound = sheet.scene.sceneRect();
        table.add(size, measure(
                            3, [&] { return render(sheet.scene, bound); },
                            [&] { return render(bare.scene, bound); }));
    }
}
