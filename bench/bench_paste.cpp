#include "benchmark.h"
#include "benchsheet.h"

#include "chart/sticky.h"
#include "sheet/clipboard.h"

#include <QApplication>
#include <QUndoStack>

// 250 notes with as many connectors, pasted onto a sheet of each size.

namespace
{

constexpr int PastedNotes = 250;

double paste(BenchSheet &sheet)
{
    ProjectScene *scene = &sheet.scene;
    ClipBoard clipBoard(&scene, nullptr);
    scene->clearSelection();
    for (int i = 0; i < PastedNotes; ++i) {
        sheet.notes[i]->setSelected(true);
        sheet.lines[i]->setSelected(true);
    }
    clipBoard.onCopyTriggered();
    QApplication::processEvents();
    const double time = timed([&] {
        clipBoard.onPasteTriggered();
        QApplication::processEvents();
    });
    while (scene->getUndoStack()->canUndo())
        scene->getUndoStack()->undo();
    return time;
}

double addItems(const BenchChart &chart)
{
    QGraphicsScene scene;
    return timed([&] {
        for (int i = 0; i < PastedNotes; ++i) {
            addBareNote(scene, chart.notes[i]);
            scene.addPath(QPainterPath(chart.lines[i].startPoint));
        }
        QApplication::processEvents();
    });
}

} // namespace

void benchPaste()
{
    BenchTable table("paste: 500 items onto a sheet of that many notes");
    for (int size : BenchSizes) {
        const BenchChart chart(size);
        BenchSheet sheet(chart);
        table.add(size, measure(
                            3, [&] { return paste(sheet); }, [&] { return addItems(chart); }));
    }
}
