#include "chart/line.h"

#include "chart/routing.h"
#include "chart/toolid.h"
#include "sheet/clipboard.h"
#include "testing/records.h"
#include "testing/rows.h"
#include "testing/sheet.h"

#include <QClipboard>
#include <QPrinter>
#include <QScrollBar>
#include <QUndoStack>

/// Lines: their routes and ends, by the mouse and in a pasted group.
class TestLine : public QObject
{
    Q_OBJECT

private slots:
    void init()
    {
        sheet = std::make_unique<Sheet>();
        scene = &sheet->scene;
        QVERIFY(sheet->show());
        sheet->view.centerOn(0, 0);
        sheet->add(noteInfo("{left}", QRectF(100, 100, 80, 60), "start"));
        sheet->add(noteInfo("{right}", QRectF(400, 200, 80, 60), "end"));
        left = sheet->program.getNoteWithGUID("{left}");
        right = sheet->program.getNoteWithGUID("{right}");
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
        left->setPos(100, 320);
        left->setPos(0, -40); // the middle of its left side is at the origin: no answer
        QCOMPARE(ends(), "100,360 to 500,230");
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
        const std::tuple<Line::LineSide, QPointF, const char *> rows[] = {
            // clang-format off
            {Line::End, {300, 600}, "180,130 to 300,600 from {left} side 3 to free"},
            {Line::End, {475, 230}, "180,130 to 480,230 from {left} side 3 to {right} side 3"},
            {Line::End, {440, 230}, "180,130 to 400,230 from {left} side 3 to {right} side 5"},
            {Line::Start, {440, 500}, "440,500 to 440,260 from free to {right} side 5"},
            {Line::End, {140, 130}, "440,500 to 180,130 from free to {left} side 5"},
            {Line::End, {660, 110}, "440,500 to 600,110 from free to {flat} side 5"},
            // clang-format on
        };
        for (const auto &[side, to, then] : rows) {
            line->handleLineMoving(to, side);
            QCOMPARE(tied(), then);
        }
        right->setPos(0, 0); // a former note leads no more
        QApplication::processEvents();
        QCOMPARE(tied(), std::get<2>(rows[5]));
    }

    void outlivesItsNotes()
    {
        hang(Sticky::RightSide, Sticky::LeftSide);
        right->notifySceneRemoval();
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
        sheet->press(QPointF(175, 130));
        sheet->move(QPointF(300, 500));
        sheet->move(QPointF(310, 500), Qt::NoButton); // a menu had the release
        sheet->getStack()->undo();
        QCOMPARE(describe(sheet->scene), before);
        for (const bool leavesTheSheet : {false, true}) { // or the note
            sheet->move(QPointF(475, 230), Qt::NoButton);
            QVERIFY(isMarked(right));
            leavesTheSheet ? scene->clearEdgeMarks() : sheet->move({300, 500}, Qt::NoButton);
            QVERIFY(!isMarked(left) && !isMarked(right));
        }
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
    }

    void lookOfALine()
    {
        // No dots where smoothed parts would meet.
        hang(Sticky::RightSide, Sticky::LeftSide);
        QImage image(800, 600, QImage::Format_RGB32);
        image.fill(Qt::white);
        QPainter painter(&image);
        painter.setRenderHint(QPainter::Antialiasing);
        painter.scale(1.3, 1.3);
        line->paint(&painter, nullptr, nullptr);
        QSet<QRgb> colors;
        for (int i = 0; i < 800 * 600; ++i)
            colors.insert(image.pixel(i % 800, i / 800));
        QCOMPARE(colors, QSet<QRgb>({qRgb(0, 0, 0), qRgb(255, 255, 255)}));

        QPrinter printer;
        printer.setOutputFileName(QDir::homePath() + "/line.pdf");
        QPainter paper(&printer);
        line->paint(&paper, nullptr, nullptr);
        QCOMPARE(paper.pen().widthF(), 1.0); // no hairline
    }

    void route()
    {
        constexpr auto free = Sticky::NoSide, left = Sticky::LeftSide, top = Sticky::TopSide,
                       right = Sticky::RightSide, bottom = Sticky::BottomSide;
        const std::tuple<const char *, QPointF, Sticky::Side, QPointF, Sticky::Side,
                         QVector<QPointF>>
            rows[] = {
                // clang-format off
            {"40 runs straight", {0, 0}, free, {20, 20}, free, {}},
            {"41 is routed", {0, 0}, free, {20, 21}, free, {{0, 10.5}, {20, 10.5}}},
            {"41 counts after rounding", {0, 0}, free, {20.75, 20.25}, free, {{10.375, 0}, {10.375, 20.25}}},
            {"a half rounds up", {0.5, 0}, free, {41, 0}, free, {}},

            {"free and wide bends halfway across", {0, 0}, free, {100, 40}, free, {{50, 0}, {50, 40}}},
            {"the halfway point has single precision", {0, 0}, free, {100.1, 300.3}, free, {{0, 150.149993896484375}, {100.1, 150.149993896484375}}},
            {"a tie in single precision is a tie", {0, 0}, free, {100.000001, 100}, free, {{0, 50}, {100.000001, 50}}},

            {"a free end has no stub", {80, 30}, right, {200, 130}, free, {{100, 30}, {150, 30}, {150, 130}}},
            {"a free start has no stub", {0, 0}, free, {30, 100}, top, {{0, 40}, {30, 40}, {30, 80}}},
            {"the axis follows the ends, not the stubs", {80, 30}, right, {190, 130}, free, {{100, 30}, {145, 30}, {145, 130}}},
            {"a stub may point away from the free end", {200, 30}, right, {100, 80}, free, {{220, 30}, {160, 30}, {160, 80}}},

            {"facing at one height", {80, 30}, right, {200, 30}, left, {{100, 30}, {180, 30}}},
            {"facing above each other", {100, 100}, bottom, {200, 300}, top, {{100, 120}, {100, 200}, {200, 200}, {200, 280}}},
            {"facing at different heights", {80, 30}, right, {200, 130}, left, {{100, 30}, {140, 30}, {140, 130}, {180, 130}}},
            {"the target lies behind", {400, 30}, right, {100, 130}, left, {{420, 30}, {420, 80}, {80, 80}, {80, 130}}},
            {"the target lies straight behind", {300, 30}, right, {100, 30}, left, {{320, 30}, {320, 30}, {80, 30}, {80, 30}}},
            {"a right angle between the stubs is obtuse", {80, 30}, right, {120, 130}, left, {{100, 30}, {100, 30}, {100, 130}, {100, 130}}},

            {"across the corner", {80, 30}, right, {240, 200}, top, {{100, 30}, {240, 30}, {240, 180}}},
            {"the other corner avoids doubling back", {80, 30}, right, {240, 200}, bottom, {{100, 30}, {100, 220}, {240, 220}}},
            {"a tie takes the corner beside the first stub", {80, 30}, right, {80, 230}, right, {{100, 30}, {100, 30}, {100, 230}}},
                // clang-format on
            };
        for (const auto &[name, from, fromSide, to, toSide, between] : rows) {
            const Row in(name);
            QCOMPARE(routeLine({from, fromSide}, {to, toSide}, false),
                     QPolygonF(QVector<QPointF>{from} + between + QVector<QPointF>{to}));
            QCOMPARE(routeLine({from, fromSide}, {to, toSide}, true),
                     QPolygonF(QVector<QPointF>{from, to}));
        }
    }

    void placesOnARoute()
    {
        const QPolygonF route(QVector<QPointF>{{0, 0}, {100, 0}, {100, 0}, {100, 100}});
        QCOMPARE(getClosestPoint(route, {98, 60}), QPointF(100, 60));
        QCOMPARE(getClosestPoint(route, {-4, -3}), QPointF(0, 0));
        QCOMPARE(getArrowHead({0, 0, 30, 40}, 9), QPolygonF({{28.2, 30.1}, {21, 35.5}, {30, 40}}));
        QCOMPARE(getArrowHead({0, 0, 3, 0}, 9),
                 QPolygonF({{-6, -4.5}, {-6, 4.5}, {3, 0}})); // not clipped
        QCOMPARE(getArrowHead({5, 5, 5, 5}, 9), QPolygonF());
    }

    // The clipboard.

    void pastedGroupKeepsItsConnections()
    {
        hang(Sticky::RightSide, Sticky::AutoSide);
        left->setPos(200, 140);
        QApplication::processEvents();
        QVERIFY(!paste());
        const QString before = describe(*scene);
        copy({line, left, right});
        copy({}); // the earlier content stays
        auto *pasted = paste<Line>();
        QCOMPARE(sheet->getSteps(), 3); // each is a step of its own
        QCOMPARE(pasted->getStartConnection().item->getText(), QString("start"));
        QCOMPARE(pasted->getEndConnection().item->getText(), QString("end"));
        QCOMPARE(pasted->getPoints(), line->getPoints().translated(-100, -40));
        copy({line, right});
        QVERIFY(!paste<Line>()->getStartConnection().item);
        sheet->getStack()->setIndex(0);
        QCOMPARE(describe(*scene), before);
    }

    void pastedRecordsAreFresh()
    {
        left->setCustomBackgroundColor(Qt::yellow);
        left->setNotRelevant(true);
        left->addSibling("loss");
        copy({left});
        const ProjectItem *item = paste();
        const QString guid = item->getGUID();
        QVERIFY(!guid.isEmpty() && guid != "{left}");
        QCOMPARE(describe(item->getRecord()).replace(guid, "{left}"),
                 describe(left).remove("loss"));

        Sticky *first = sheet->addFactor(1);
        sheet->addFactor(3);
        copy({first});
        QCOMPARE(paste<Sticky>()->getCausalFactorNumber(), 2);
        QCOMPARE(paste<Sticky>()->getCausalFactorNumber(), 4);
    }

    void pasteLandsInTheVisiblePart()
    {
        copy({sheet->addLine(QPointF(900, 700), QPointF(600, 400))}); // it runs backwards
        QCOMPARE(paste<Line>()->getEnds().startPoint, QPointF(400, 400));
        ProjectItem *barrier = sheet->addBarrier(QPointF(200, 200));
        barrier->setPos(833, 647);
        copy({barrier});
        sheet->view.scale(0.5, 0.5);
        sheet->view.setSceneRect(0, 0, 6000, 4000);
        sheet->view.horizontalScrollBar()->setValue(405);
        sheet->view.verticalScrollBar()->setValue(203);
        QCOMPARE(paste<BoxItem>()->pos(), QPointF(1020, 600));
    }

    void pasteOnAnotherSheetWithoutOriginals()
    {
        hang(Sticky::RightSide, Sticky::AutoSide);
        copy({left, right, line});
        scene->clear();
        Sheet other;
        scene = &other.scene;
        const ProjectItem *former = paste<Line>()->getStartConnection().item;
        QVERIFY(former && paste<Line>()->getStartConnection().item != former);
        scene = nullptr;
        clipBoard.onCopyTriggered();
        clipBoard.onPasteTriggered();
    }

    void pictureForOtherPrograms()
    {
        left->setCustomBackgroundColor(Qt::yellow);
        copy({left});
        const QImage picture = QApplication::clipboard()->image();
        QCOMPARE(picture.size(), left->boundingRect().size().toSize() + QSize(4, 4));
        QCOMPARE(picture.pixelColor(0, 0), QColor(Qt::white));
        QCOMPARE(picture.pixelColor(12, 12), QColor(Qt::yellow));
        for (int x = 0; x < picture.width(); ++x)
            QVERIFY(picture.pixelColor(x, 2) != QColor(Qt::red)); // the border of a selected note
        right->setPos(90000, 60000);                              // together they take 20 GB
        copy({left, right});
        const int width = QApplication::clipboard()->pixmap().width();
        QVERIFY(width > 1000 && width < 32000);
    }

private:
    void copy(const QList<ProjectItem *> &items)
    {
        scene->clearSelection();
        for (ProjectItem *item : items)
            item->setSelected(true);
        clipBoard.onCopyTriggered();
    }

    /// The first pasted item of its kind; null without one.
    template<typename Item = ProjectItem> Item *paste()
    {
        clipBoard.onPasteTriggered();
        QApplication::processEvents();
        for (ProjectItem *item : scene->getSelectedProjectItems()) {
            if (auto *match = qobject_cast<Item *>(item))
                return match;
        }
        return nullptr;
    }

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
    ProjectScene *scene = nullptr;
    ClipBoard clipBoard{&scene, nullptr};
    Sticky *left = nullptr;
    Sticky *right = nullptr;
    Line *line = nullptr;
};

EXAMINER_TEST_MAIN(TestLine)
#include "testline.moc"
