#include "chart/line.h"

#include "chart/toolid.h"
#include "testing/dialogs.h"
#include "testing/fakes.h"
#include "testing/testmain.h"

#include <QGraphicsSceneContextMenuEvent>
#include <QSignalSpy>

class TestLine : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void kinds_data();
    void kinds();
    void widthGoesToTheCallersRecord_data();
    void widthGoesToTheCallersRecord();
    void startFollowsAtOnceAndEndLater();
    void autoSideTurnsWithTheOtherEnd();
    void originIsNoAnswer();
    void connectedTwiceFollowsOnce();
    void disconnecting();
    void lateMoveOfAFormerNote();
    void draggedOntoANote();
    void draggedOntoTheNoteOfTheOtherEnd();
    void draggedOffItsNote();
    void draggedFromNoteToNote();
    void outlivesItsNotes();
    void noteLeavesTheSheet();
    void bothEndsOnOneNote();
    void selectionMarksTheEdges();
    void handles_data();
    void handles();
    void outlineFollowsTheRoute();
    void arrowHead();
    void grabs_data();
    void grabs();
    void otherButtonsGrabNothing();
    void contextMenuSelects();
    void colors();
    void strangeNumbersOfAFile();

private:
    Line *addLine(const QPointF &start, const QPointF &end, int type = ConnectorTool,
                  int arrowStyle = 0);
    void sendToLine(Line *line, QEvent::Type type, const QPointF &p,
                    Qt::MouseButton button = Qt::LeftButton);
    bool isMarked(const Sticky *note) const;

    std::unique_ptr<FakeHost> host;
    std::unique_ptr<FakeSheet> sheet;
    Sticky *left = nullptr;
    Sticky *right = nullptr;
};

void TestLine::init()
{
    host = std::make_unique<FakeHost>();
    sheet = std::make_unique<FakeSheet>(host.get());
    left = sheet->addNote(noteInfo("{left}", QRectF(100, 100, 80, 60)));
    right = sheet->addNote(noteInfo("{right}", QRectF(400, 200, 80, 60)));
}

void TestLine::cleanup()
{
    sheet.reset();
    host.reset();
}

Line *TestLine::addLine(const QPointF &start, const QPointF &end, int type, int arrowStyle)
{
    CanvasItemInfo info;
    info.type = type;
    info.guid = "{line}";
    info.startPoint = start;
    info.endPoint = end;
    info.arrowStyle = arrowStyle;
    auto *line = new Line(sheet.get(), info);
    sheet->addItem(line);
    return line;
}

void TestLine::sendToLine(Line *line, QEvent::Type type, const QPointF &p, Qt::MouseButton button)
{
    QGraphicsSceneMouseEvent event(type);
    event.setPos(p);
    event.setScenePos(p);
    event.setButton(button);
    event.setButtons(button);
    sheet->sendEvent(line, &event);
}

/// Whether the note shows the mark of a left or right edge.
bool TestLine::isMarked(const Sticky *note) const
{
    const QRectF geometry = note->getGeometry();
    const QPointF inside(5, -5);
    const QPointF middle(geometry.left(), geometry.center().y());
    const QPointF other(geometry.right(), geometry.center().y());
    return colorAt(sheet.get(), middle + inside) == Qt::red ||
           colorAt(sheet.get(), other + QPointF(-5, -5)) == Qt::red;
}

void TestLine::kinds_data()
{
    QTest::addColumn<int>("type");
    QTest::addColumn<int>("points");

    QTest::newRow("a connector is routed") << int(ConnectorTool) << 4;
    QTest::newRow("an arrow or a straight line runs straight") << int(ArrowTool) << 2;
}

void TestLine::kinds()
{
    QFETCH(int, type);
    QFETCH(int, points);

    Line *line = addLine(QPointF(10, 20), QPointF(40, 60), type);
    QCOMPARE(line->getPoints().size(), points);
    QCOMPARE(line->pos(), QPointF(0, 0));
    QCOMPARE(line->zValue(), 1.0);
    QCOMPARE(line->length(), 50.0);
    QCOMPARE(line->type(), QGraphicsItem::UserType + 5);
    QCOMPARE(line->getCanvasItemInfo().size, QSizeF(30, 40));
    QCOMPARE(line->getCustomBackgroundColor(), QColor(Qt::black));
    QVERIFY(!line->getStartConnection().item);
    QVERIFY(!line->getEndConnection().item);
}

void TestLine::widthGoesToTheCallersRecord_data()
{
    QTest::addColumn<int>("width");
    QTest::addColumn<int>("told");

    QTest::newRow("none") << 0 << 2;
    QTest::newRow("within the bounds") << 5 << 5;
    QTest::newRow("wide") << 12 << 10;
}

void TestLine::widthGoesToTheCallersRecord()
{
    QFETCH(int, width);
    QFETCH(int, told);

    CanvasItemInfo info;
    info.type = ArrowTool;
    info.startPoint = QPointF(200, 400);
    info.endPoint = QPointF(300, 400);
    info.borderLineWidth = width;
    auto *line = new Line(sheet.get(), info);
    sheet->addItem(line);
    QCOMPARE(info.borderLineWidth, told);
    QCOMPARE(line->getBorderLineWidth(), width);
    QCOMPARE(line->boundingRect().top(), 400 - 3 - width / 2.0);

    // The line paints with its own width.
    QCOMPARE(colorAt(sheet.get(), QPointF(250, 405)), width == 12 ? Qt::black : Qt::white);
}

void TestLine::startFollowsAtOnceAndEndLater()
{
    Line *line = addLine(QPointF(180, 130), QPointF(400, 230));
    line->setStartConnection({left, Sticky::RightSide});
    line->setEndConnection({right, Sticky::LeftSide});

    left->setPos(100, 300);
    QCOMPARE(line->getPoints().first(), QPointF(180, 330));
    right->setPos(500, 200);
    QCOMPARE(line->getPoints().last(), QPointF(400, 230));
    QApplication::processEvents();
    QCOMPARE(line->getPoints().last(), QPointF(500, 230));

    left->setSize(QSizeF(120, 80));
    QCOMPARE(line->getPoints().first(), QPointF(220, 340));
}

void TestLine::autoSideTurnsWithTheOtherEnd()
{
    Line *line = addLine(QPointF(180, 130), QPointF(400, 230));
    line->setStartConnection({left, Sticky::RightSide});
    line->setEndConnection({right, Sticky::AutoSide});

    left->setPos(700, 200); // now on the other side of the right note
    QCOMPARE(line->getPoints().first(), QPointF(780, 230));
    QCOMPARE(line->getPoints().last(), QPointF(480, 230));
    QCOMPARE(line->getPoints().at(line->getPoints().size() - 2), QPointF(500, 230));
    QCOMPARE(line->getEndConnection().side, Sticky::AutoSide);
}

void TestLine::originIsNoAnswer()
{
    Line *line = addLine(QPointF(180, 130), QPointF(400, 230));
    line->setStartConnection({left, Sticky::LeftSide});
    left->setPos(0, -30); // the middle of the left side is at the origin
    QCOMPARE(line->getPoints().first(), QPointF(180, 130));
    left->setPos(0, -31);
    QCOMPARE(line->getPoints().first(), QPointF(0, -1));
}

void TestLine::connectedTwiceFollowsOnce()
{
    Line *line = addLine(QPointF(180, 130), QPointF(400, 230));
    line->connectStartPoint(left, Sticky::RightSide);
    line->connectStartPoint(left, Sticky::TopSide);
    left->setPos(200, 100);
    QCOMPARE(line->getPoints().first(), QPointF(240, 100));
    QCOMPARE(line->getStartConnection().side, Sticky::TopSide);

    line->connectStartPoint(nullptr, Sticky::BottomSide);
    QCOMPARE(line->getStartConnection().item, left);
    QCOMPARE(line->getStartConnection().side, Sticky::BottomSide);
}

void TestLine::disconnecting()
{
    Line *line = addLine(QPointF(180, 130), QPointF(400, 230));
    line->connectStartPoint(left, Sticky::NoSide);
    line->disconnectStartPoint();
    QCOMPARE(line->getStartConnection().item, left);

    line->connectStartPoint(left, Sticky::RightSide);
    line->connectEndPoint(right, Sticky::LeftSide);
    line->disconnectStartPoint();
    QVERIFY(!line->getStartConnection().item);
    QCOMPARE(line->getStartConnection().side, Sticky::NoSide);
    left->setPos(0, 0);
    QCOMPARE(line->getPoints().first(), QPointF(180, 130));

    line->disconnectEndPoint();
    QVERIFY(!line->getEndConnection().item);
    line->disconnectEndPoint();
}

void TestLine::lateMoveOfAFormerNote()
{
    Line *line = addLine(QPointF(180, 130), QPointF(400, 230));
    line->connectEndPoint(right, Sticky::LeftSide);
    right->setPos(500, 200);
    line->disconnectEndPoint();
    QTest::ignoreMessage(QtDebugMsg, "Warning: got signal from unconnected note");
    QApplication::processEvents();
    QCOMPARE(line->getPoints().last(), QPointF(400, 230));
}

void TestLine::draggedOntoANote()
{
    Line *line = addLine(QPointF(300, 400), QPointF(300, 500));
    line->handleLineMoving(QPointF(175, 130), Line::Start);
    QCOMPARE(line->getStartConnection().item, left);
    QCOMPARE(line->getStartConnection().side, Sticky::RightSide);
    QCOMPARE(line->getPoints().first(), QPointF(180, 130));
    QVERIFY(isMarked(left));

    // Further in the note as a whole is meant, and the end meets its closest edge.
    line->handleLineMoving(QPointF(440, 230), Line::End);
    QCOMPARE(line->getEndConnection().side, Sticky::AutoSide);
    QCOMPARE(line->getPoints().last(), QPointF(400, 230));

    // The end turns to whatever the start comes from.
    line->handleLineMoving(QPointF(440, 500), Line::Start);
    QCOMPARE(line->getPoints().last(), QPointF(440, 260));
}

void TestLine::draggedOntoTheNoteOfTheOtherEnd()
{
    Line *line = addLine(QPointF(180, 130), QPointF(400, 230));
    line->setStartConnection({left, Sticky::RightSide});
    line->setEndConnection({right, Sticky::LeftSide});
    const QPolygonF before = line->getPoints();

    line->handleLineMoving(QPointF(475, 230), Line::Start);
    QCOMPARE(line->getPoints(), before);
    QCOMPARE(line->getStartConnection().item, left);
    QCOMPARE(line->getStartConnection().side, Sticky::RightSide);
}

void TestLine::draggedOffItsNote()
{
    Line *line = addLine(QPointF(180, 130), QPointF(400, 230));
    line->setStartConnection({left, Sticky::RightSide});
    line->setEndConnection({right, Sticky::LeftSide});
    line->handleLineMoving(QPointF(300, 600), Line::End);
    QVERIFY(!line->getEndConnection().item);
    QCOMPARE(line->getPoints().last(), QPointF(300, 600));
    QCOMPARE(line->getStartConnection().item, left);
}

void TestLine::draggedFromNoteToNote()
{
    Line *line = addLine(QPointF(300, 400), QPointF(300, 500));
    line->handleLineMoving(QPointF(175, 130), Line::Start);
    line->handleLineMoving(QPointF(405, 230), Line::Start);
    QCOMPARE(line->getStartConnection().item, right);
    QVERIFY(!isMarked(left));
    left->setPos(0, 0);
    QCOMPARE(line->getPoints().first(), QPointF(400, 230));
}

void TestLine::outlivesItsNotes()
{
    Line *line = addLine(QPointF(180, 130), QPointF(400, 230));
    line->setStartConnection({left, Sticky::RightSide});
    line->setEndConnection({right, Sticky::NoSide});
    delete left;
    delete right;
    QVERIFY(!line->getStartConnection().item);
    QVERIFY(!line->getEndConnection().item);
    QCOMPARE(line->getPoints().first(), QPointF(180, 130));
    QCOMPARE(line->getPoints().last(), QPointF(400, 230));
    line->setSelected(true);
    line->setSelected(false);
}

void TestLine::noteLeavesTheSheet()
{
    Line *line = addLine(QPointF(180, 130), QPointF(400, 230));
    line->setEndConnection({right, Sticky::LeftSide});
    QCOMPARE(line->getPoints().size(), 5);
    right->notifySceneRemoval();
    QVERIFY(!line->getEndConnection().item);
    QCOMPARE(line->getPoints().size(), 4); // the stub went too
}

void TestLine::bothEndsOnOneNote()
{
    Line *line = addLine(QPointF(180, 130), QPointF(100, 130));
    line->setStartConnection({left, Sticky::RightSide});
    line->setEndConnection({left, Sticky::LeftSide});
    line->disconnectStartPoint();
    left->setPos(200, 100);
    QApplication::processEvents();
    QCOMPARE(line->getPoints().last(), QPointF(200, 130));

    line->setStartConnection({left, Sticky::RightSide});
    delete left;
    QVERIFY(!line->getStartConnection().item);
    QVERIFY(!line->getEndConnection().item);
}

void TestLine::selectionMarksTheEdges()
{
    Line *line = addLine(QPointF(180, 130), QPointF(400, 230));
    line->setStartConnection({left, Sticky::RightSide});
    line->setEndConnection({right, Sticky::LeftSide});
    QSignalSpy changed(line, &Line::selectionChanged);

    line->setSelected(true);
    QCOMPARE(line->zValue(), 5.0);
    QVERIFY(isMarked(left));
    QVERIFY(isMarked(right));
    QCOMPARE(colorAt(sheet.get(), QPointF(290, 180)), QColor(Qt::red));

    line->setSelected(false);
    QCOMPARE(line->zValue(), 1.0);
    QVERIFY(!isMarked(left));
    QVERIFY(!isMarked(right));
    QCOMPARE(changed.size(), 2);

    line->setSelected(true);
    sheet->removeItem(line);
    QVERIFY(!isMarked(left));
    QVERIFY(!isMarked(right));
    sheet->addItem(line);
    QVERIFY(isMarked(left));
}

void TestLine::handles_data()
{
    QTest::addColumn<bool>("connected");
    QTest::addColumn<bool>("selected");
    QTest::addColumn<int>("arrowStyle");
    QTest::addColumn<bool>("startHandle");
    QTest::addColumn<bool>("endHandle");

    QTest::newRow("free") << false << false << 0 << true << true;
    QTest::newRow("connected") << true << false << 0 << false << false;
    QTest::newRow("connected and selected") << true << true << 0 << true << true;
    QTest::newRow("an arrow hides the end's") << false << true << 1 << true << false;
}

void TestLine::handles()
{
    QFETCH(bool, connected);
    QFETCH(bool, selected);
    QFETCH(int, arrowStyle);
    QFETCH(bool, startHandle);
    QFETCH(bool, endHandle);

    Line *line = addLine(QPointF(180, 130), QPointF(400, 230), ConnectorTool, arrowStyle);
    if (connected) {
        line->setStartConnection({left, Sticky::RightSide});
        line->setEndConnection({right, Sticky::LeftSide});
    }
    line->setSelected(selected);
    QCOMPARE(line->shape().contains(QPointF(178, 128)), startHandle);
    QCOMPARE(line->shape().contains(QPointF(402, 232)), endHandle);
}

void TestLine::outlineFollowsTheRoute()
{
    Line *line = addLine(QPointF(180, 130), QPointF(400, 230));
    line->setStartConnection({left, Sticky::RightSide});
    line->setEndConnection({right, Sticky::LeftSide});
    line->setBorderLineWidth(6);
    QCOMPARE(line->boundingRect(), QRectF(180, 130, 220, 100).adjusted(-3, -3, 3, 3));
    QVERIFY(line->shape().intersects(QRectF(288, 170, 4, 4)));
    QVERIFY(!line->shape().intersects(QRectF(200, 200, 80, 40))); // beneath the route
    QVERIFY(!line->shape().intersects(QRectF(300, 140, 80, 60))); // above it
}

void TestLine::arrowHead()
{
    Line *line = addLine(QPointF(100, 400), QPointF(300, 400), ArrowTool);
    const QPointF inHead(292, 397);
    QVERIFY(!line->shape().contains(inHead));
    line->setArrowStyle(Line::ArrowAtEnd);
    QVERIFY(line->shape().contains(inHead));
    QCOMPARE(line->getCanvasItemInfo().arrowStyle, 1);
    QCOMPARE(colorAt(sheet.get(), inHead), QColor(Qt::black));

    line->setEndPoint(QPointF(100, 400));
    QCOMPARE(line->getPoints(), QPolygonF() << QPointF(100, 400) << QPointF(100, 400));
    QVERIFY(line->shape().boundingRect().width() <= 6);
}

void TestLine::grabs_data()
{
    QTest::addColumn<int>("arrowStyle");
    QTest::addColumn<QPointF>("press");
    QTest::addColumn<QPointF>("start");
    QTest::addColumn<QPointF>("end");

    const QPointF start(100, 400);
    const QPointF end(300, 400);
    const QPointF target(220, 500);
    QTest::newRow("start handle") << 0 << start + QPointF(-3, 3) << target << end;
    QTest::newRow("beside the start handle") << 0 << start + QPointF(4, 0) << start << end;
    QTest::newRow("end handle") << 0 << end + QPointF(3, -3) << start << target;
    QTest::newRow("beside the end handle") << 0 << end - QPointF(4, 0) << start << end;
    QTest::newRow("the middle") << 0 << QPointF(200, 400) << start << end;
    QTest::newRow("18 from an arrow's tip") << 1 << end + QPointF(-10, 8) << start << target;
    QTest::newRow("19 from an arrow's tip") << 1 << end + QPointF(-10, 9) << start << end;
    QTest::newRow("an arrow's start") << 1 << start + QPointF(4, 0) << start << end;
}

void TestLine::grabs()
{
    QFETCH(int, arrowStyle);
    QFETCH(QPointF, press);
    QFETCH(QPointF, start);
    QFETCH(QPointF, end);

    Line *line = addLine(QPointF(100, 400), QPointF(300, 400), ArrowTool, arrowStyle);
    sendToLine(line, QEvent::GraphicsSceneMousePress, press);
    sendToLine(line, QEvent::GraphicsSceneMouseMove, QPointF(220, 500));
    sendToLine(line, QEvent::GraphicsSceneMouseRelease, QPointF(220, 500));
    QCOMPARE(line->getPoints().first(), start);
    QCOMPARE(line->getPoints().last(), end);

    // Released, it follows the mouse no more.
    sendToLine(line, QEvent::GraphicsSceneMouseMove, QPointF(600, 600));
    QCOMPARE(line->getPoints().first(), start);
    QCOMPARE(line->getPoints().last(), end);
}

void TestLine::otherButtonsGrabNothing()
{
    Line *line = addLine(QPointF(100, 400), QPointF(300, 400));
    sendToLine(line, QEvent::GraphicsSceneMousePress, QPointF(100, 400), Qt::RightButton);
    sendToLine(line, QEvent::GraphicsSceneMouseMove, QPointF(220, 500), Qt::RightButton);
    QCOMPARE(line->getPoints().first(), QPointF(100, 400));
}

void TestLine::contextMenuSelects()
{
    Line *line = addLine(QPointF(100, 400), QPointF(300, 400));
    host->lineMenu.addAction("Properties");
    const DialogAnswer answer([this](QWidget *widget) {
        if (widget != &host->lineMenu)
            return false;
        widget->close();
        return true;
    });
    QGraphicsSceneContextMenuEvent event(QEvent::GraphicsSceneContextMenu);
    event.setAccepted(false);
    sheet->sendEvent(line, &event);
    QVERIFY(answer.wasAsked());
    QVERIFY(line->isSelected());
    QVERIFY(event.isAccepted());
}

void TestLine::colors()
{
    Line *line = addLine(QPointF(100, 400), QPointF(300, 400), ArrowTool);
    line->setBorderLineWidth(4);
    const QPointF middle(200, 400);
    QCOMPARE(colorAt(sheet.get(), middle), QColor(Qt::black));
    line->setCustomBackgroundColor(Qt::blue);
    QCOMPARE(colorAt(sheet.get(), middle), QColor(Qt::blue));
    line->setSelected(true);
    QCOMPARE(colorAt(sheet.get(), middle), QColor(Qt::red));
    line->setSelected(false);
    line->setCustomBackgroundColor(QColor());
    QCOMPARE(colorAt(sheet.get(), middle), QColor(Qt::black));

    line->setLineStyle(Qt::NoPen);
    QCOMPARE(colorAt(sheet.get(), middle), QColor(Qt::white));
    QCOMPARE(colorAt(sheet.get(), QPointF(100, 400)), QColor(Qt::black)); // the handle
}

void TestLine::strangeNumbersOfAFile()
{
    CanvasItemInfo info;
    info.type = ConnectorTool;
    info.startPoint = QPointF(100, 400);
    info.endPoint = QPointF(300, 400);
    info.lineStyle = 999;
    info.arrowStyle = -7;
    auto *line = new Line(sheet.get(), info);
    sheet->addItem(line);
    QCOMPARE(line->getLineStyle(), Qt::SolidLine);
    QCOMPARE(line->getArrowStyle(), Line::NoArrows);
    QCOMPARE(line->getCanvasItemInfo().lineStyle, 999);
    QCOMPARE(colorAt(sheet.get(), QPointF(200, 400)), QColor(Qt::black));
}

EXAMINER_TEST_MAIN(TestLine)
#include "testline.moc"
