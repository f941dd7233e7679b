#include "benchmark.h"
#include "benchsheet.h"

#include "chart/sticky.h"

#include <QGraphicsPathItem>

// A moved end lays its connector out anew; the floor gives a bare path as many points.

namespace
{

constexpr int Routes = 20000;

struct Ends {
    Sticky::Side start;
    Sticky::Side end;
};

/// Round about the crossing, the corner and the way around a note.
constexpr Ends kinds[] = {
    {Sticky::RightSide, Sticky::LeftSide},
    {Sticky::RightSide, Sticky::TopSide},
    {Sticky::LeftSide, Sticky::RightSide},
    {Sticky::AutoSide, Sticky::AutoSide},
};

double route(BenchSheet &sheet)
{
    Line *line = sheet.lines.front();
    return timed([&] {
        for (int i = 0; i < Routes; ++i) {
            if (i % (Routes / 4) == 0) {
                const Ends &ends = kinds[i / (Routes / 4)];
                line->setStartConnection({sheet.notes[0], ends.start});
                line->setEndConnection({sheet.notes[1], ends.end});
            }
            line->setEndPoint(QPointF(300 + i % 100, 200 + i % 70));
        }
    });
}

double setPaths(QGraphicsScene &scene)
{
    QGraphicsPathItem *item = scene.addPath(QPainterPath());
    return timed([&] {
        for (int i = 0; i < Routes; ++i) {
            QPainterPath path;
            for (int k = 0; k < 6; ++k)
                path.lineTo(300 + i % 100, 30 * k + i % 70);
            item->setPath(path);
        }
    });
}

} // namespace

void benchRoute()
{
    BenchTable table(QString("route: %1 routes of a connector").arg(Routes));
    BenchSheet sheet(BenchChart(2));
    QGraphicsScene bare;
    table.add(Routes, measure(
                          5, [&] { return route(sheet); }, [&] { return setPaths(bare); }));
}
