#include "chart/resizegrip.h"
#include "testing/fakes.h"
#include "testing/testmain.h"

#include <QSignalSpy>

/// A bare box, to count what the base classes call.
class TestBox : public BoxItem
{
public:
    TestBox(ChartSheet *sheet, CanvasItemInfo &info) : BoxItem(sheet, info)
    {
        setPos(info.startPoint);
        setSize(info.size);
        resizeGrip = std::make_unique<ResizeGrip>(this);
    }

    void startResize(int handle) { resizeHandleInUse = handle; }
    int handleAt(const QPointF &scenePos) const { return resizeGrip->contains(scenePos); }
    void showGrip(bool visible) { resizeGrip->setVisible(visible); }

    using ProjectItem::relayout;
    void relayout(bool) override { ++relayouts; }
    void setCustomBackgroundColor(const QColor &color) override { info.backgroundColor = color; }
    void setSize(QSizeF size) override { rect.setSize(size); }
    QRectF boundingRect() const override { return rect; }
    void paint(QPainter *, const QStyleOptionGraphicsItem *, QWidget *) override {}

    int relayouts = 0;
};

class TestProjectItem : public QObject
{
    Q_OBJECT

private slots:
    void freshRecord();
    void borderWidth_data();
    void borderWidth();
    void propertiesAndLabels();
    void enteringAndLeavingTheSheet();
    void resize_data();
    void resize();
    void cornerStopsAtBothEdges();
    void handles_data();
    void handles();
    void handlesAreMadeWhenShown();

private:
    FakeHost host;
    FakeSheet sheet{&host};
    CanvasItemInfo record = noteInfo("{box}", QRectF(100, 100, 80, 60));
};

void TestProjectItem::freshRecord()
{
    CanvasItemInfo info = noteInfo("{a}", QRectF(1, 2, 3, 4), "text", "Loss");
    info.notRelevant = true;
    info.siblings = QStringList("{b}");
    info.clear();
    QCOMPARE(info.type, 0);
    QCOMPARE(info.role.getTypeName(), QString("Event"));
    QCOMPARE(info.size, QSizeF(-1, -1));
    QCOMPARE(info.textAlignment, Qt::AlignHCenter | Qt::AlignVCenter);
    QCOMPARE(info.lineStyle, 1);
    QVERIFY(!info.textColor.isValid());
    QVERIFY(!info.notRelevant);
    QVERIFY(info.siblings.isEmpty());
    QVERIFY(info.guid.isEmpty());
}

void TestProjectItem::borderWidth_data()
{
    QTest::addColumn<int>("width");
    QTest::addColumn<bool>("taken");

    QTest::newRow("widest") << 20 << true;
    QTest::newRow("the role's") << 0 << true;
    QTest::newRow("too wide") << 21 << false;
    QTest::newRow("negative") << -1 << false;
}

void TestProjectItem::borderWidth()
{
    QFETCH(int, width);
    QFETCH(bool, taken);

    TestBox box(&sheet, record);
    box.setBorderLineWidth(5);
    box.relayouts = 0;
    box.setBorderLineWidth(width);
    QCOMPARE(box.getBorderLineWidth(), taken ? width : 5);
    QCOMPARE(box.relayouts, taken ? 1 : 0);
}

void TestProjectItem::propertiesAndLabels()
{
    TestBox box(&sheet, record);
    QVERIFY(box.setProperty(ProjectItem::PROPERTY_BACKGROUND_COLOR, QColor(Qt::red)));
    QVERIFY(box.setProperty(ProjectItem::PROPERTY_LINE_WIDTH, 7));
    QCOMPARE(box.getCanvasItemInfo().backgroundColor, QColor(Qt::red));
    QCOMPARE(box.getCanvasItemInfo().borderLineWidth, 7);
    QCOMPARE(box.getPropertyLabel("customBackgroundColor"), QString("change background color"));
    QCOMPARE(box.getPropertyLabel("borderLineWidth"), QString("change line thickness"));
    QVERIFY(box.getPropertyLabel("textColor").isEmpty());
}

void TestProjectItem::enteringAndLeavingTheSheet()
{
    auto *box = new TestBox(&sheet, record);
    QVERIFY(sheet.entered.isEmpty());
    sheet.addItem(box);
    QCOMPARE(sheet.entered, QList<ProjectItem *>({box}));
    sheet.removeItem(box);
    QVERIFY(sheet.entered.isEmpty());
    sheet.addItem(box);
    delete box;
    QVERIFY(sheet.entered.isEmpty());
}

void TestProjectItem::resize_data()
{
    QTest::addColumn<int>("handle");
    QTest::addColumn<QPointF>("to"); // in the item
    QTest::addColumn<QRectF>("expected");

    // The box stands at (100,100), 80 by 60.
    QTest::newRow("top left") << 1 << QPointF(-10, 5) << QRectF(90, 105, 90, 55);
    QTest::newRow("top") << 2 << QPointF(-10, 5) << QRectF(100, 105, 80, 55);
    QTest::newRow("top right") << 3 << QPointF(70, -10) << QRectF(100, 90, 70, 70);
    QTest::newRow("right") << 4 << QPointF(95, 5) << QRectF(100, 100, 95, 60);
    QTest::newRow("bottom right") << 5 << QPointF(95, 75) << QRectF(100, 100, 95, 75);
    QTest::newRow("bottom") << 6 << QPointF(95, 75) << QRectF(100, 100, 80, 75);
    QTest::newRow("bottom left") << 7 << QPointF(10, 75) << QRectF(110, 100, 70, 75);
    QTest::newRow("left") << 8 << QPointF(10, 75) << QRectF(110, 100, 70, 60);
    QTest::newRow("left edge refuses") << 8 << QPointF(60, 0) << QRectF(100, 100, 80, 60);
    QTest::newRow("left edge just before") << 8 << QPointF(59, 0) << QRectF(159, 100, 21, 60);
    QTest::newRow("top edge refuses") << 2 << QPointF(0, 500) << QRectF(100, 100, 80, 60);
    QTest::newRow("right edge clamps") << 4 << QPointF(-500, 0) << QRectF(100, 100, 20, 60);
    QTest::newRow("bottom edge clamps") << 6 << QPointF(0, 3) << QRectF(100, 100, 80, 20);
}

void TestProjectItem::resize()
{
    QFETCH(int, handle);
    QFETCH(QPointF, to);
    QFETCH(QRectF, expected);

    TestBox box(&sheet, record);
    box.startResize(handle);
    QGraphicsSceneMouseEvent event(QEvent::GraphicsSceneMouseMove);
    event.setPos(to);
    event.setScenePos(box.mapToScene(to));
    event.ignore();
    box.handleResizeEvent(&event);
    QCOMPARE(box.getGeometry(), expected);
    QCOMPARE(box.getRect().topLeft(), QPointF());
    QVERIFY(event.isAccepted());
}

void TestProjectItem::cornerStopsAtBothEdges()
{
    CanvasItemInfo small = noteInfo("{small}", QRectF(100, 100, 25, 25));
    TestBox box(&sheet, small);
    box.startResize(7);
    QGraphicsSceneMouseEvent event(QEvent::GraphicsSceneMouseMove);
    event.setPos(QPointF(300, -300));
    event.setScenePos(QPointF(400, -200));
    box.handleResizeEvent(&event);
    QCOMPARE(box.getGeometry(), QRectF(100, 100, 25, 20));
}

void TestProjectItem::handles_data()
{
    QTest::addColumn<QPointF>("scenePos");
    QTest::addColumn<int>("handle");

    // The frame runs from (97,97) to (183,163).
    QTest::newRow("top left") << QPointF(99, 99) << 1;
    QTest::newRow("one unit out to the left") << QPointF(96, 99) << 1;
    QTest::newRow("two units out") << QPointF(95, 99) << 0;
    QTest::newRow("top") << QPointF(140, 98) << 2;
    QTest::newRow("top right") << QPointF(182, 98) << 3;
    QTest::newRow("right") << QPointF(182, 130) << 4;
    QTest::newRow("no unit out to the right") << QPointF(183.5, 130) << 0;
    QTest::newRow("bottom right") << QPointF(183, 163) << 5;
    QTest::newRow("bottom") << QPointF(138, 162) << 6;
    QTest::newRow("bottom left") << QPointF(99, 160) << 7;
    QTest::newRow("left") << QPointF(98, 132) << 8;
    QTest::newRow("middle") << QPointF(140, 130) << 0;
}

void TestProjectItem::handles()
{
    QFETCH(QPointF, scenePos);
    QFETCH(int, handle);

    TestBox box(&sheet, record);
    QCOMPARE(box.handleAt(scenePos), handle);
    box.showGrip(true);
    QCOMPARE(box.handleAt(scenePos), handle);
}

void TestProjectItem::handlesAreMadeWhenShown()
{
    TestBox box(&sheet, record);
    box.showGrip(false);
    QVERIFY(box.childItems().isEmpty());
    box.showGrip(true);
    QCOMPARE(box.childItems().size(), 8);
    for (QGraphicsItem *handle : box.childItems())
        QVERIFY(handle->isVisible());
    QCOMPARE(box.childItems().at(4)->pos(), QPointF(78, 58));
    QCOMPARE(box.childItems().at(4)->cursor().shape(), Qt::SizeFDiagCursor);
    box.showGrip(false);
    QVERIFY(!box.childItems().first()->isVisible());
}

EXAMINER_TEST_MAIN(TestProjectItem)
#include "testprojectitem.moc"
