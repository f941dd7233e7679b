#include "chart/svgpicture.h"
#include "testing/sheet.h"

#include <QGraphicsEffect>
#include <QSvgRenderer>
#include <QUndoStack>

/// What notes and barriers have in common: dragging, resizing, being drawn sharply.
class TestItems : public QObject
{
    Q_OBJECT

private slots:
    void init()
    {
        sheet = std::make_unique<Sheet>();
        scene = &sheet->scene;
    }
    void cleanup() { sheet.reset(); }

    void handles()
    {
        // The box stands at (100,100), 80 by 60; the frame of its handles is 3 wider.
        const std::tuple<const char *, QPointF, QPointF, QRectF> rows[] = {
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
        auto *barrier = qobject_cast<BoxItem *>(sheet->addBarrier(QPointF(100, 100)));
        QCOMPARE(barrier->getGeometry(), QRectF(100, 100, 17, 82));
        QVERIFY(barrier->childItems().isEmpty());
        barrier->setSelected(true);
        for (const auto &[name, from, to, expected] : rows) {
            const Row in(name);
            barrier->setPos(100, 100);
            barrier->setSize(QSizeF(80, 60));
            sheet->press(from);
            sheet->move(to);
            sheet->release(to);
            QCOMPARE(barrier->getGeometry(), expected);
        }
    }

    /// Every box has its own way: off the grid, stopped by the edge, snapped back.
    void movesAreUndoneExactly()
    {
        // The step counts the boxes that it has changed.
        const std::tuple<const char *, QPointF, QPointF, int, QPointF, QPointF> rows[] = {
            {"stopped by the edge", {140, 150}, {40, 150}, 4, {0, 100}, {0, 200}},
            {"back where it was", {140, 150}, {143, 148}, 2, {100, 100}, {40, 200}},
            {"click", {140, 150}, {140, 150}, 2, {100, 100}, {40, 200}},
            {"by the barrier", {43, 230}, {20, 236}, 4, {80, 100}, {12, 211}},
            {"barrier alone", {43, 230}, {47, 237}, 1, {100, 100}, {39, 212}},
            {"barrier at the edge", {43, 230}, {-20, -5}, 1, {100, 100}, {0, 0}},
        };
        for (const auto &[name, from, to, count, notePlace, barrierPlace] : rows) {
            const Row in(name);
            const QList<ProjectItem *> boxes = {
                sheet->addNote(QRectF(100, 100, 80, 60)), sheet->addNote(QRectF(311, 309, 80, 60)),
                sheet->addNote(QRectF(20, 400, 80, 60)), sheet->addBarrier(QPointF(35, 205))};
            for (ProjectItem *box : boxes)
                box->setSelected(count > 1);
            const QString before = describe(*scene);
            sheet->drag(from, to);
            QCoreApplication::processEvents();
            const QString after = describe(*scene);
            QVERIFY(sheet->getStack()->undoText().startsWith(QString("move %1 item").arg(count)));
            QCOMPARE(boxes.first()->pos(), notePlace);
            QCOMPARE(boxes.last()->pos(), barrierPlace);
            sheet->getStack()->undo();
            QCOMPARE(describe(*scene), before);
            sheet->getStack()->redo();
            QCOMPARE(describe(*scene), after);
            for (ProjectItem *box : boxes)
                scene->removeItem(box);
        }
    }

    /// The sheet finds an item under the bounds that it was filed under, its shadow's included.
    void whatIsGoneIsNotFound()
    {
        const auto find = [this] { return scene->items(QRectF(100, 150, 400, 400)); };
        const int background = find().size();
        for (bool underTheMouse : {false, true}) {
            Sticky *note = sheet->addNote(QRectF(160, 200, 80, 60));
            QVERIFY(find().contains(note));
            sheet->press(QPointF(200, 250));
            sheet->move(QPointF(220, 270));
            QVERIFY(find().contains(note));
            QVERIFY(note->graphicsEffect()->isEnabled());
            if (!underTheMouse) {
                sheet->release(QPointF(220, 270));
                QVERIFY(find().contains(note));
            }
            scene->removeItem(note);
            QCOMPARE(find().size(), background);
            QVERIFY(!note->graphicsEffect()->isEnabled());
            // A drag that was cut short has moved nothing.
            QCOMPARE(note->pos(), underTheMouse ? QPointF(160, 200) : QPointF(180, 220));
        }
    }

    void enlargedViewsAreSharp()
    {
        FakeSheet plain(&sheet->program);
        CanvasItemInfo info;
        plain.addItem(new SVGPicture(":/images/newBarrier.svg", &plain, info));
        QImage drawing(34, 164, QImage::Format_ARGB32_Premultiplied);
        drawing.fill(Qt::white);
        QPainter painter(&drawing);
        QSvgRenderer(QString(":/images/newBarrier.svg")).render(&painter, drawing.rect());
        painter.end();
        QCOMPARE(drawTwice(&plain, QRectF(0, 0, 17, 82)), drawing);

        QImage stripes(196, 100, QImage::Format_ARGB32_Premultiplied);
        for (int x = 0; x < stripes.width(); ++x) {
            for (int y = 0; y < stripes.height(); ++y)
                stripes.setPixelColor(x, y, x % 2 ? Qt::red : Qt::blue);
        }
        info = noteInfo("{image}", QRectF(100, 100, 102, 100), "x");
        info.image = QPixmap::fromImage(stripes);
        plain.addNote(info)->relayout();
        QCOMPARE(drawTwice(&plain, QRectF(102, 102, 98, 50)), stripes);
    }

private:
    /// At 200 %.
    static QImage drawTwice(QGraphicsScene *drawn, const QRectF &area)
    {
        QImage image((area.size() * 2).toSize(), QImage::Format_ARGB32_Premultiplied);
        image.fill(Qt::white);
        QPainter painter(&image);
        drawn->render(&painter, image.rect(), area);
        return image;
    }

    std::unique_ptr<Sheet> sheet;
    ProjectScene *scene = nullptr;
};

EXAMINER_TEST_MAIN(TestItems)
#include "testitems.moc"
