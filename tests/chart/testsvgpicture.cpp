#include "chart/svgpicture.h"
#include "testing/fakes.h"
#include "testing/testmain.h"

#include <QSignalSpy>

const QString NewBarrier = ":/images/newBarrier.svg";

class TestSVGPicture : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void size_data();
    void size();
    void record();
    void drawings_data();
    void drawings();
    void largeBarriersShowWhole();
    void missingDrawing();
    void colourHasNoEffect();
    void selection();
    void moveStaysOffTheGrid();
    void resize();
    void snapsWithASelectedNote();

private:
    SVGPicture *addBarrier(const QSizeF &size = QSizeF(), const QString &resource = NewBarrier)
    {
        CanvasItemInfo info = noteInfo("{barrier}", QRectF(QPointF(100, 100), size));
        info.type = NewBarrierTool;
        auto *barrier = new SVGPicture(resource, sheet.get(), info);
        sheet->addItem(barrier);
        return barrier;
    }

    std::unique_ptr<FakeHost> host;
    std::unique_ptr<FakeSheet> sheet;
};

void TestSVGPicture::init()
{
    host = std::make_unique<FakeHost>();
    sheet = std::make_unique<FakeSheet>(host.get());
}

void TestSVGPicture::cleanup()
{
    sheet.reset();
}

void TestSVGPicture::size_data()
{
    QTest::addColumn<QSizeF>("given");
    QTest::addColumn<QSizeF>("taken");

    QTest::newRow("unknown") << QSizeF(-1, -1) << QSizeF(17, 82);
    QTest::newRow("half known") << QSizeF(40, -1) << QSizeF(17, 82);
    QTest::newRow("known") << QSizeF(40.5, 60) << QSizeF(40.5, 60);
    QTest::newRow("nothing to draw on") << QSizeF(0, 0) << QSizeF(0, 0);
}

void TestSVGPicture::size()
{
    QFETCH(QSizeF, given);
    QFETCH(QSizeF, taken);

    QCOMPARE(addBarrier(given)->getRect(), QRectF(QPointF(), taken));
    colorAt(sheet.get(), QPointF(100, 100));
}

void TestSVGPicture::record()
{
    sheet->owner = "{owner}";
    SVGPicture *barrier = addBarrier();
    barrier->setPos(33, 44);
    barrier->setSize(QSizeF(50, 60));
    const CanvasItemInfo info = barrier->getCanvasItemInfo();
    QCOMPARE(info.type, int(NewBarrierTool));
    QCOMPARE(info.guid, QString("{barrier}"));
    QCOMPARE(info.startPoint, QPointF(33, 44));
    QCOMPARE(info.size, QSizeF(50, 60));
    QCOMPARE(info.parent, QString("{owner}"));
    QCOMPARE(barrier->type(), int(ProjectItem::SVGPictureType));
    QCOMPARE(barrier->zValue(), 100.0);
}

void TestSVGPicture::drawings_data()
{
    QTest::addColumn<QString>("resource");
    QTest::addColumn<QColor>("color");

    QTest::newRow("failed") << ":/images/failedBarrier.svg" << QColor("#EB2627");
    QTest::newRow("improved") << ":/images/improvedBarrier.svg" << QColor("#45B649");
    QTest::newRow("new") << NewBarrier << QColor("#374B9D");
}

void TestSVGPicture::drawings()
{
    QFETCH(QString, resource);
    QFETCH(QColor, color);

    addBarrier(QSizeF(60, 200), resource);
    bool found = false;
    for (int y = 104; y < 300 && !found; y += 8)
        found = colorAt(sheet.get(), QPointF(130, y)) == color;
    QVERIFY(found);
    QCOMPARE(colorAt(sheet.get(), QPointF(170, 200)), QColor(Qt::white));
}

void TestSVGPicture::largeBarriersShowWhole()
{
    sheet->setSceneRect(0, 0, 1000, 800);
    addBarrier(QSizeF(800, 600));
    QCOMPARE(colorAt(sheet.get(), QPointF(500, 150)), QColor("#374B9D"));
    QCOMPARE(colorAt(sheet.get(), QPointF(500, 650)), QColor("#374B9D"));
    QCOMPARE(colorAt(sheet.get(), QPointF(950, 650)), QColor(Qt::white));
}

void TestSVGPicture::missingDrawing()
{
    addBarrier(QSizeF(60, 200), ":/images/none.svg");
    QCOMPARE(colorAt(sheet.get(), QPointF(130, 200)), QColor(Qt::white));
}

void TestSVGPicture::colourHasNoEffect()
{
    SVGPicture *barrier = addBarrier(QSizeF(60, 200));
    const QColor before = colorAt(sheet.get(), QPointF(130, 200));
    QVERIFY(barrier->setProperty(ProjectItem::PROPERTY_BACKGROUND_COLOR, QColor(Qt::red)));
    QVERIFY(!barrier->getCanvasItemInfo().backgroundColor.isValid());
    QCOMPARE(colorAt(sheet.get(), QPointF(130, 200)), before);
}

void TestSVGPicture::selection()
{
    SVGPicture *barrier = addBarrier();
    QSignalSpy changed(barrier, &ProjectItem::selectionChanged);
    barrier->setSelected(true);
    QCOMPARE(barrier->childItems().size(), 8);
    QCOMPARE(barrier->zValue(), 100.0);
    barrier->setSelected(false);
    QVERIFY(!barrier->childItems().first()->isVisible());
    QCOMPARE(changed.size(), 2);
}

void TestSVGPicture::moveStaysOffTheGrid()
{
    SVGPicture *barrier = addBarrier();
    QSignalSpy moved(barrier, &BoxItem::moved);
    QSignalSpy started(barrier, &BoxItem::moveStarted);
    QSignalSpy finished(barrier, &BoxItem::moveFinished);
    drag(sheet.get(), QPointF(108, 140), QPointF(115, 151));
    QCOMPARE(barrier->pos(), QPointF(107, 111));
    QCOMPARE(moved.size(), 0);
    QCOMPARE(started.size(), 0);
    QCOMPARE(finished.size(), 1);
    QCOMPARE(finished.first().at(1).toRectF(), QRectF(100, 100, 17, 82));
}

void TestSVGPicture::resize()
{
    SVGPicture *barrier = addBarrier(QSizeF(60, 200));
    QSignalSpy finished(barrier, &BoxItem::moveFinished);
    drag(sheet.get(), QPointF(159, 299), QPointF(173, 309));
    QCOMPARE(barrier->getGeometry(), QRectF(100, 100, 73, 209));
    QCOMPARE(finished.size(), 1);
    QVERIFY(colorAt(sheet.get(), QPointF(136, 305)) != QColor(Qt::white));
}

void TestSVGPicture::snapsWithASelectedNote()
{
    SVGPicture *barrier = addBarrier();
    Sticky *note = sheet->addNote(noteInfo("{a}", QRectF(300, 100, 80, 60)));
    barrier->setSelected(true);
    note->setSelected(true);
    drag(sheet.get(), QPointF(340, 150), QPointF(349, 161));
    QCOMPARE(note->pos(), QPointF(300, 120));
    QCOMPARE(barrier->pos(), QPointF(100, 120));
}

EXAMINER_TEST_MAIN(TestSVGPicture)
#include "testsvgpicture.moc"
