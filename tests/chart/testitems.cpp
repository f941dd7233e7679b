#include "chart/svgpicture.h"
#include "editing/commands.h"
#include "testing/fakes.h"
#include "testing/records.h"
#include "testing/rows.h"
#include "testing/testmain.h"

#include <QGraphicsEffect>
#include <QGraphicsPixmapItem>
#include <QGraphicsView>
#include <QSvgRenderer>
#include <QUndoStack>

/// What notes and barriers have in common: dragging, resizing, being drawn sharply.
class TestItems : public QObject
{
    Q_OBJECT

private slots:
    void init()
    {
        host = std::make_unique<FakeHost>();
        sheet = std::make_unique<FakeSheet>(host.get());
    }
    void cleanup() { sheet.reset(); }

    void records()
    {
        sheet->owner = "{owner}";
        CanvasItemInfo info = noteInfo("{barrier}", QRectF(33, 44, 50, 60));
        info.type = NewBarrierTool;
        CanvasItemInfo expected = info;
        expected.parent = "{owner}";
        QCOMPARE(describe(addBarrier(info.startPoint, info.size)->getCanvasItemInfo()),
                 describe(expected));
        SVGPicture *barrier = addBarrier({}, QSizeF(40, -1));
        QCOMPARE(barrier->getRect(), QRectF(0, 0, 17, 82));
        barrier->setBorderLineWidth(20);
        barrier->setBorderLineWidth(21);
        barrier->setBorderLineWidth(-1);
        QCOMPARE(barrier->getBorderLineWidth(), 20);
        QCOMPARE(Role("Unknown").getTypeName(), QString("Event"));
    }

    void handles()
    {
        // The box stands at (100,100), 80 by 60; the frame of its handles is 3 wider.
        const struct {
            const char *name;
            QPointF press, to;
            QRectF expected;
        } rows[] = {
            {"top left", {99, 99}, {90, 105}, {90, 105, 90, 55}},
            {"top", {140, 98}, {90, 105}, {100, 105, 80, 55}},
            {"top right", {182, 98}, {170, 90}, {100, 90, 70, 70}},
            {"right", {182, 130}, {195, 105}, {100, 100, 95, 60}},
            {"bottom right", {181, 161}, {195, 175}, {100, 100, 95, 75}},
            {"bottom", {138, 162}, {195, 175}, {100, 100, 80, 75}},
            {"bottom left", {99, 161}, {110, 175}, {110, 100, 70, 75}},
            {"left", {98, 132}, {110, 175}, {110, 100, 70, 60}},
            {"left edge refuses", {98, 132}, {160, 100}, {100, 100, 80, 60}},
            {"right edge clamps", {182, 130}, {-400, 100}, {100, 100, 20, 60}},
            {"bottom edge clamps", {138, 162}, {100, 103}, {100, 100, 80, 20}},
            {"corner stops at both edges", {99, 161}, {400, 50}, {100, 100, 80, 20}},
            {"corner stops at the sheet's", {99, 99}, {-10, -10}, {0, 0, 180, 160}},
        };
        for (const auto &row : rows) {
            const Row in(row.name);
            SVGPicture *barrier = addBarrier(QPointF(100, 100), QSizeF(80, 60));
            QVERIFY(barrier->childItems().isEmpty());
            barrier->setSelected(true);
            drag(sheet.get(), row.press, row.to);
            QCOMPARE(barrier->getGeometry(), row.expected);
            delete barrier;
        }
    }

    void barriersRestOnTheSheet()
    {
        SVGPicture *barrier = addBarrier(QPointF(100, 100));
        drag(sheet.get(), QPointF(108, 140), QPointF(115, 151));
        QCOMPARE(barrier->pos(), QPointF(107, 111)); // off the grid
        drag(sheet.get(), QPointF(115, 151), QPointF(-30, 35));
        QCOMPARE(barrier->pos(), QPointF(0, 0));
    }

    /// Every box has its own way: off the grid, stopped by the edge, snapped back.
    void groupMovesAreUndoneExactly()
    {
        const struct {
            const char *name;
            QPointF from, to;
            int count; // of boxes changed
            QPointF note, barrier;
        } rows[] = {
            {"note, stopped by the edge", {140, 150}, {40, 150}, 4, {0, 100}, {0, 200}},
            {"note that ends where it began", {140, 150}, {143, 148}, 2, {100, 100}, {40, 200}},
            {"click", {140, 150}, {140, 150}, 2, {100, 100}, {40, 200}},
            {"barrier", {43, 230}, {20, 236}, 4, {80, 100}, {12, 211}},
        };
        for (const auto &row : rows) {
            const Row in(row.name);
            Sticky *note = sheet->addNote(noteInfo("{a}", QRectF(100, 100, 80, 60)));
            Sticky *other = sheet->addNote(noteInfo("{b}", QRectF(311, 309, 80, 60)));
            Sticky *third = sheet->addNote(noteInfo("{c}", QRectF(20, 400, 80, 60)));
            SVGPicture *barrier = addBarrier(QPointF(35, 205));
            QUndoStack stack;
            for (BoxItem *box : QList<BoxItem *>{note, other, third, barrier}) {
                box->setSelected(true);
                connect(box, &BoxItem::dragged, &stack, [&stack](const BoxGeometries &before) {
                    stack.push(new GeometryChangeCommand(before));
                });
            }
            const QString before = describe(*sheet);
            drag(sheet.get(), row.from, row.to);
            const QString after = describe(*sheet);
            QCOMPARE(stack.undoText(), QString("move %1 items").arg(row.count));
            QCOMPARE(note->pos(), row.note);
            QCOMPARE(barrier->pos(), row.barrier);
            stack.undo();
            QCOMPARE(describe(*sheet), before);
            stack.redo();
            QCOMPARE(describe(*sheet), after);
            sheet->clear();
        }
    }

    /// The sheet finds an item under the bounds that it was filed under, its shadow's included.
    void whatIsGoneIsNotFound()
    {
        QGraphicsView view(sheet.get());
        for (bool underTheMouse : {false, true}) {
            Sticky *note = sheet->addNote(noteInfo("{a}", QRectF(60, 100, 80, 60)));
            QVERIFY(!sheet->items(QRectF(0, 0, 400, 400)).isEmpty());
            press(sheet.get(), QPointF(100, 150));
            moveTo(sheet.get(), QPointF(120, 170));
            QVERIFY(sheet->items(QRectF(0, 0, 400, 400)).contains(note));
            QVERIFY(note->graphicsEffect()->isEnabled());
            if (!underTheMouse) {
                release(sheet.get(), QPointF(120, 170));
                QVERIFY(sheet->items(QRectF(0, 0, 400, 400)).contains(note));
            }
            sheet->removeItem(note);
            QCOMPARE(sheet->items(QRectF(0, 0, 400, 400)).size(), 0);
            QVERIFY(!note->graphicsEffect()->isEnabled());
            // A drag that was cut short has moved nothing.
            QCOMPARE(note->pos(), underTheMouse ? QPointF(60, 100) : QPointF(80, 120));
            delete note;
        }
    }

    void enlargedViewsAreSharp()
    {
        addBarrier(QPointF(0, 0));
        QImage drawing(34, 164, QImage::Format_ARGB32_Premultiplied);
        drawing.fill(Qt::white);
        QPainter painter(&drawing);
        QSvgRenderer(QString(":/images/newBarrier.svg")).render(&painter, drawing.rect());
        painter.end();
        QCOMPARE(drawTwice(QRectF(0, 0, 17, 82)), drawing);

        QImage stripes(196, 100, QImage::Format_ARGB32_Premultiplied);
        for (int x = 0; x < stripes.width(); ++x) {
            for (int y = 0; y < stripes.height(); ++y)
                stripes.setPixelColor(x, y, x % 2 ? Qt::red : Qt::blue);
        }
        CanvasItemInfo info = noteInfo("{image}", QRectF(100, 100, 102, 100), "x");
        info.image = QPixmap::fromImage(stripes);
        sheet->addNote(info)->relayout();
        QCOMPARE(drawTwice(QRectF(102, 102, 98, 50)), stripes);
    }

private:
    SVGPicture *addBarrier(const QPointF &at, const QSizeF &size = QSizeF())
    {
        CanvasItemInfo info = noteInfo("{barrier}", QRectF(at, size));
        info.type = NewBarrierTool;
        auto *barrier = new SVGPicture(":/images/newBarrier.svg", sheet.get(), info);
        sheet->addItem(barrier);
        return barrier;
    }

    /// At 200 %.
    QImage drawTwice(const QRectF &area)
    {
        QImage image((area.size() * 2).toSize(), QImage::Format_ARGB32_Premultiplied);
        image.fill(Qt::white);
        QPainter painter(&image);
        sheet->render(&painter, image.rect(), area);
        return image;
    }

    std::unique_ptr<FakeHost> host;
    std::unique_ptr<FakeSheet> sheet;
};

EXAMINER_TEST_MAIN(TestItems)
#include "testitems.moc"
