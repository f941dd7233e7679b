#include "chart/line.h"

#include "chart/toolid.h"
#include "testing/records.h"
#include "testing/rows.h"
#include "testing/sheet.h"

#include <QPrinter>
#include <QUndoStack>

class TestLine : public QObject
{
    Q_OBJECT

private slots:
    void init()
    {
        sheet = std::make_unique<Sheet>();
        QVERIFY(sheet->show());
        left = qobject_cast<Sticky *>(sheet->add(noteInfo("{left}", QRectF(100, 100, 80, 60))));
        right = qobject_cast<Sticky *>(sheet->add(noteInfo("{right}", QRectF(400, 200, 80, 60))));
        line = sheet->addLine(QPointF(180, 130), QPointF(400, 230), ConnectorTool);
    }

    void startFollowsAtOnceAndEndLater()
    {
        hang(Sticky::RightSide, Sticky::LeftSide);
        left->setPos(100, 300);
        right->setPos(500, 200);
        QCOMPARE(ends(), "180,330 to 400,230");
        QApplication::processEvents();
        QCOMPARE(ends(), "180,330 to 500,230");
        line->connectStartPoint(nullptr, Sticky::LeftSide);
        left->setSize(QSizeF(120, 80));
        QCOMPARE(ends(), "100,340 to 500,230");
        left->setPos(0, -40); // the middle of its left side is at the origin: no answer
        QCOMPARE(ends(), "100,340 to 500,230");
    }

    void automaticSidesTurn()
    {
        hang(Sticky::RightSide, Sticky::AutoSide);
        left->setPos(700, 200); // now on the other side of the right note
        QCOMPARE(tied(), "780,230 to 480,230 from {left} side 3 to {right} side 5");
        QCOMPARE(line->getPoints().at(line->getPoints().size() - 2), QPointF(500, 230));

        // Two of them stand alike, wherever the notes come from.
        hang(Sticky::AutoSide, Sticky::AutoSide);
        for (const QPointF &from : {QPointF(280, 80), QPointF(100, 100)}) {
            left->setPos(from);
            right->setPos(320, 360);
            QApplication::processEvents();
            left->setPos(240, 300);
            right->setPos(320, 200);
            QApplication::processEvents();
            QCOMPARE(ends(), "280,300 to 320,230");
        }
    }

    void draggedEnds()
    {
        sheet->add(noteInfo("{flat}", QRectF(600, 100, 120, 20)));
        hang(Sticky::RightSide, Sticky::LeftSide);
        const std::tuple<const char *, Line::LineSide, QPointF, const char *> rows[] = {
            // clang-format off
            {"off its note", Line::End, {300, 600}, "180,130 to 300,600 from {left} side 3 to free"},
            {"to an edge", Line::End, {475, 230}, "180,130 to 480,230 from {left} side 3 to {right} side 3"},
            {"into a note", Line::End, {440, 230}, "180,130 to 400,230 from {left} side 3 to {right} side 5"},
            {"the other end turns", Line::Start, {440, 500}, "440,500 to 440,260 from free to {right} side 5"},
            {"to the other end's note", Line::Start, {475, 230}, "440,500 to 440,260 from free to {right} side 5"},
            {"note to note", Line::End, {140, 130}, "440,500 to 180,130 from free to {left} side 5"},
            {"into a flat note", Line::End, {660, 110}, "440,500 to 600,110 from free to {flat} side 5"},
            // clang-format on
        };
        for (const auto &[name, side, to, then] : rows) {
            const Row in(name);
            line->handleLineMoving(to, side);
            QCOMPARE(tied(), then);
        }
        right->setPos(0, 0); // a former note leads no more
        QApplication::processEvents();
        QCOMPARE(tied(), std::get<3>(rows[6]));
    }

    void outlivesItsNotes()
    {
        hang(Sticky::RightSide, Sticky::LeftSide);
        right->notifySceneRemoval();
        QCOMPARE(line->getPoints().size(), 5);            // the stub went too
        line->setEndConnection({left, Sticky::LeftSide}); // as a file may hang it
        line->disconnectStartPoint();
        left->setPos(200, 100);
        QApplication::processEvents();
        QCOMPARE(ends(), "180,130 to 200,130");
        line->setStartConnection({left, Sticky::RightSide});
        delete left;
        QCOMPARE(tied(), "180,130 to 200,130 from free to free");
    }

    void selectionMarksTheEdges()
    {
        hang(Sticky::RightSide, Sticky::LeftSide);
        for (const bool selected : {true, false, true}) {
            line->setSelected(selected);
            QCOMPARE(line->zValue(), selected ? 5.0 : 1.0);
            QVERIFY(isMarked(left) == selected && isMarked(right) == selected);
            QCOMPARE(line->shape().contains(QPointF(178, 128)), selected); // the handle
        }
        sheet->scene.removeItem(line); // an undone line leaves no marks behind
        QVERIFY(!isMarked(left));
        sheet->scene.addItem(line);
        QVERIFY(isMarked(left));
    }

    void draggedEndIsAStep()
    {
        const std::tuple<Line::ArrowType, qreal, const char *> rows[] = {
            {Line::NoArrows, 103, "400,230 to 300,400 from {right} side 5 to free"},
            {Line::NoArrows, 104, "100,400 to 300,400 from free to free"},
            {Line::NoArrows, 296, "100,400 to 300,400 from free to free"},
            {Line::ArrowAtEnd, 282, "100,400 to 400,230 from free to {right} side 5"},
            {Line::ArrowAtEnd, 281, "100,400 to 300,400 from free to free"},
        };
        line = sheet->addLine(QPointF(100, 400), QPointF(300, 400));
        sheet->program.tool = ConnectorTool; // the sheet leaves the release to what is dragged
        for (const auto &[arrow, x, then] : rows) {
            line->setArrowStyle(arrow);
            const QString before = describe(sheet->scene);
            sheet->drag(QPointF(x, 400), QPointF(440, 230));
            QCOMPARE(tied(), then);
            sheet->getStack()->undo(); // nothing where no end was grabbed
            QCOMPARE(describe(sheet->scene), before);
        }
        sheet->press(QPointF(100, 400));
        sheet->move(QPointF(200, 500));
        sheet->scene.removeItem(line); // takes the mouse from it: nothing has been dragged
        QCOMPARE(ends(), "100,400 to 300,400");
        sheet->scene.addItem(line);
    }

    void lineUnderWayIsGivenUp()
    {
        const QString before = describe(sheet->scene);
        sheet->program.tool = ConnectorTool;
        sheet->press(QPointF(175, 130));
        sheet->move(QPointF(300, 500));
        sheet->scene.giveUpLine();
        QCOMPARE(describe(sheet->scene), before);
        sheet->move(QPointF(475, 230), Qt::NoButton);
        QVERIFY(isMarked(right));
        sheet->scene.clearEdgeMarks();
        QVERIFY(!isMarked(left) && !isMarked(right));
    }

    void pressBesideALineTakesIt()
    {
        line = sheet->addLine(QPointF(180, 165), QPointF(180, 400));
        sheet->view.scale(2, 2);
        for (const int pixels : {-4, -3, 2, 3}) {
            sheet->click(QPointF(180 + pixels / 2.0, 250));
            QVERIFY2(line->isSelected() == (pixels > -4 && pixels < 3),
                     qPrintable(QString::number(pixels)));
        }
        sheet->click(QPointF(178, 159)); // on the note's corner
        QVERIFY(left->isSelected());
    }

    void jointsShowNoDots()
    {
        hang(Sticky::RightSide, Sticky::LeftSide);
        QImage image(800, 600, QImage::Format_RGB32);
        image.fill(Qt::white);
        QPainter painter(&image);
        painter.setRenderHint(QPainter::Antialiasing);
        painter.scale(1.3, 1.3);
        line->paint(&painter, nullptr, nullptr);
        QSet<QRgb> colors;
        for (int i = 0; i < image.width() * image.height(); ++i)
            colors.insert(image.pixel(i % image.width(), i / image.width()));
        QCOMPARE(colors, QSet<QRgb>({qRgb(0, 0, 0), qRgb(255, 255, 255)}));
    }

    void thinnestLineShowsOnPaper()
    {
        QPrinter printer;
        printer.setOutputFileName(QDir::homePath() + "/line.pdf");
        QPainter painter(&printer);
        line->paint(&painter, nullptr, nullptr);
        QCOMPARE(painter.pen().widthF(), 1.0);
    }

private:
    void hang(Sticky::Side start, Sticky::Side end)
    {
        line->setStartConnection({left, start});
        line->setEndConnection({right, end});
    }

    QByteArray ends() const
    {
        const LineEnds now = line->getEnds();
        return (describe(now.startPoint) + " to " + describe(now.endPoint)).toUtf8();
    }

    QByteArray tied() const
    {
        return ends() + describe(line).section(" from ", 1).prepend(" from ").toUtf8();
    }

    /// Whether the note shows the mark of its left or right edge.
    bool isMarked(const Sticky *note)
    {
        const QPointF middle = note->getGeometry().center() - QPointF(0, 5);
        return colorAt(&sheet->scene, middle - QPointF(35, 0)) == Qt::red ||
               colorAt(&sheet->scene, middle + QPointF(35, 0)) == Qt::red;
    }

    std::unique_ptr<Sheet> sheet;
    Sticky *left = nullptr;
    Sticky *right = nullptr;
    Line *line = nullptr;
};

EXAMINER_TEST_MAIN(TestLine)
#include "testline.moc"
