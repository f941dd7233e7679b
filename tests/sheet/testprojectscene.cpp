#include "project/projectfile.h"
#include "sheet/footeritem.h"
#include "sheet/headeritem.h"
#include "sheet/infoitem.h"
#include "testing/sheet.h"

#include <QGraphicsProxyWidget>
#include <QLabel>
#include <QPainter>

class TestProjectScene : public QObject
{
    Q_OBJECT

private slots:
    void init();

    void nearestGridPoint_data();
    void nearestGridPoint();
    void startsWithOnePage();
    void pagesFollowTheItems_data();
    void pagesFollowTheItems();
    void everyKindOfItemCounts();
    void shrinksAtTheNextCheck();
    void growsAndShrinksUnderADrag();
    void shrinksWithTheNextItem();
    void checksWhileAnItemMoves();
    void pageSizeChanges();
    void absurdPagesAreBounded();
    void pageAtPoint();
    void pageWithItems();
    void gridDots();
    void gridOff();
    void backgroundForPrinting();
    void footersDressEachPage();
    void headerOnTheMainSheetOnly();
    void lookUpByGuid();
    void noteAtPoint();
    void lossAndLossOfControl();
    void firstUnusedNumber();
    void viewZoom();
    void clearMakesNew();
    void clearWhileThingsAreUnderWay();
    void newsOfTheDeadIsDropped();
    void sheetMayOutliveItsGroup();
    void changesReachTheProject();
};

static const QSize Page(400, 300);

void TestProjectScene::init()
{
    QSettings().clear();
}

void TestProjectScene::nearestGridPoint_data()
{
    QTest::addColumn<QPointF>("point");
    QTest::addColumn<QPointF>("expected");

    QTest::newRow("half a step goes up") << QPointF(10, 30) << QPointF(20, 40);
    QTest::newRow("below half goes down") << QPointF(9.9, 29.9) << QPointF(0, 20);
    QTest::newRow("left of the sheet") << QPointF(-5, 30) << QPointF(0, 40);
    QTest::newRow("above the sheet") << QPointF(100, -400) << QPointF(100, 0);
}

void TestProjectScene::nearestGridPoint()
{
    QFETCH(QPointF, point);
    QFETCH(QPointF, expected);

    QCOMPARE(ProjectScene::getNearestGridPoint(point), expected);
}

void TestProjectScene::startsWithOnePage()
{
    const Sheet sheet(Page);

    QCOMPARE(sheet.scene.sceneRect(), QRectF(0, 0, 420, 320));
    QCOMPARE(sheet.scene.getNumHorizontalPages(), 1);
    QCOMPARE(sheet.scene.getNumVerticalPages(), 1);
    QCOMPARE(sheet.scene.projectItemsBoundingRect(), QRectF(0, 0, 0, 0));
}

void TestProjectScene::pagesFollowTheItems_data()
{
    QTest::addColumn<QRectF>("note");
    QTest::addColumn<int>("columns");
    QTest::addColumn<int>("rows");

    QTest::newRow("inside") << QRectF(20, 20, 120, 80) << 1 << 1;
    QTest::newRow("up to the page's edges") << QRectF(280, 220, 120, 80) << 1 << 1;
    QTest::newRow("one unit across") << QRectF(281, 20, 120, 80) << 2 << 1;
    QTest::newRow("one unit below") << QRectF(20, 221, 120, 80) << 1 << 2;
    QTest::newRow("on the third page") << QRectF(900, 20, 120, 80) << 3 << 1;
    QTest::newRow("far away") << QRectF(4000, 3100, 80, 80) << 11 << 11;
    QTest::newRow("left of the sheet") << QRectF(-500, -500, 80, 80) << 1 << 1;
}

void TestProjectScene::pagesFollowTheItems()
{
    QFETCH(QRectF, note);
    QFETCH(int, columns);
    QFETCH(int, rows);
    Sheet sheet(Page);
    sheet.addNote(note);

    QCOMPARE(sheet.scene.getNumHorizontalPages(), columns);
    QCOMPARE(sheet.scene.getNumVerticalPages(), rows);
    QCOMPARE(sheet.scene.sceneRect(), QRectF(0, 0, columns * 400 + 20, rows * 300 + 20));
}

void TestProjectScene::everyKindOfItemCounts()
{
    Sheet sheet(Page);
    sheet.addLine(QPointF(100, 100), QPointF(500, 100));
    QCOMPARE(sheet.scene.getNumHorizontalPages(), 2);
    sheet.addBarrier(QPointF(100, 300));
    QCOMPARE(sheet.scene.getNumVerticalPages(), 2);

    auto *info = new InfoItem;
    info->setPos(2000, 2000);
    sheet.scene.addItem(info);
    sheet.scene.checkCanvasSize();
    QCOMPARE(sheet.scene.sceneRect(), QRectF(0, 0, 820, 620));
}

void TestProjectScene::shrinksAtTheNextCheck()
{
    Sheet sheet(Page);
    Sticky *note = sheet.addNote(QRectF(500, 20, 120, 80));
    note->setPos(20, 20);
    QCoreApplication::processEvents();
    QCOMPARE(sheet.scene.getNumHorizontalPages(), 2);

    sheet.scene.checkCanvasSize();
    QCOMPARE(sheet.scene.getNumHorizontalPages(), 1);
}

void TestProjectScene::growsAndShrinksUnderADrag()
{
    Sheet sheet(Page);
    QVERIFY(sheet.show());
    sheet.addNote(QRectF(20, 320, 120, 80)); // rests on the second row of pages
    Sticky *note = sheet.addNote(QRectF(20, 20, 120, 80));
    Line *line = sheet.addLine(QPointF(140, 60), QPointF(300, 60));
    line->setStartConnection({note, Sticky::RightSide});

    sheet.press(QPointF(60, 40));
    sheet.move(QPointF(360, 40)); // with the start of the line beyond the page
    QTRY_COMPARE(sheet.scene.getNumHorizontalPages(), 2);
    QCOMPARE(sheet.scene.getNumVerticalPages(), 2);

    sheet.move(QPointF(60, 340));
    QTRY_COMPARE(sheet.scene.getNumHorizontalPages(), 1);
    sheet.move(QPointF(60, 640));
    QTRY_COMPARE(sheet.scene.getNumVerticalPages(), 3);
    sheet.release(QPointF(60, 640));
}

void TestProjectScene::shrinksWithTheNextItem()
{
    Sheet sheet(Page);
    Sticky *note = sheet.addNote(QRectF(500, 20, 120, 80));
    note->setPos(20, 20);
    sheet.addNote(QRectF(20, 120, 120, 80));
    QCOMPARE(sheet.scene.getNumHorizontalPages(), 1);

    Sticky *other = sheet.addNote(QRectF(500, 120, 120, 80));
    sheet.scene.removeItem(other);
    sheet.addNote(QRectF(20, 420, 120, 80));
    QCOMPARE(sheet.scene.sceneRect(), QRectF(0, 0, 420, 620));
}

void TestProjectScene::checksWhileAnItemMoves()
{
    Sheet sheet(Page);
    Sticky *note = sheet.addNote(QRectF(20, 20, 120, 80));
    emit note->moveStarted();
    note->setPos(500, 20);
    QCOMPARE(sheet.scene.getNumHorizontalPages(), 1);
    QTRY_COMPARE(sheet.scene.getNumHorizontalPages(), 2);

    // The end of a move makes no last check.
    const QRectF old = note->getGeometry();
    note->setPos(20, 20);
    sheet.scene.onItemMoveFinished(note, old);
    QTest::qWait(300);
    QCOMPARE(sheet.scene.getNumHorizontalPages(), 2);
}

void TestProjectScene::pageSizeChanges()
{
    Sheet sheet(Page);
    sheet.addNote(QRectF(500, 20, 120, 80));
    sheet.scene.setPageSize(QSize(1000, 700));
    QCOMPARE(sheet.scene.sceneRect(), QRectF(0, 0, 1020, 720));

    sheet.scene.setPageSize(QSize(200, 100));
    QCOMPARE(sheet.scene.sceneRect(), QRectF(0, 0, 4 * 200 + 20, 120));
}

void TestProjectScene::absurdPagesAreBounded()
{
    Sheet sheet(QSize(0, -5));
    QVERIFY(sheet.scene.getNumHorizontalPages() == 1 && sheet.scene.getNumVerticalPages() == 1);
    sheet.scene.setPageSize(QSize(0, 0));
    QVERIFY(!sheet.scene.getPageSize().isEmpty());

    sheet.scene.setPageSize(Page);
    sheet.addNote(QRectF(1e9, 20, 120, 80));
    QCOMPARE(sheet.scene.getNumHorizontalPages(), ProjectScene::MaximumPages);
}

void TestProjectScene::pageAtPoint()
{
    const Sheet sheet(Page);

    QCOMPARE(sheet.scene.getPageBoundsAtPoint(QPointF(10, 10)), QRectF(0, 0, 400, 300));
    QCOMPARE(sheet.scene.getPageBoundsAtPoint(QPointF(400, 299)), QRectF(400, 0, 400, 300));
    QCOMPARE(sheet.scene.getPageBoundsAtPoint(QPointF(999, 999)), QRectF(800, 900, 400, 300));
    // Truncated, not floored.
    QCOMPARE(sheet.scene.getPageBoundsAtPoint(QPointF(-399, -1)), QRectF(0, 0, 400, 300));
}

void TestProjectScene::pageWithItems()
{
    Sheet sheet(Page);
    sheet.addNote(QRectF(420, 20, 120, 80));
    const QRectF first(0, 0, 400, 300);
    const QRectF second(400, 0, 400, 300);

    QVERIFY(!sheet.scene.pageContainsItems(first)); // header, footer and legend don't count
    QVERIFY(sheet.scene.pageContainsItems(second));
    QVERIFY(!sheet.scene.pageContainsItems(QRectF(0, 100, 800, 200)));
    sheet.addBarrier(QPointF(390, 20));
    QVERIFY(sheet.scene.pageContainsItems(first));
}

static QImage drawSheet(ProjectScene &scene, const QRectF &area)
{
    QImage image(area.size().toSize(), QImage::Format_RGB32);
    image.fill(Qt::red);
    QPainter painter(&image);
    painter.setRenderHint(QPainter::Antialiasing);
    scene.render(&painter, image.rect(), area);
    return image;
}

void TestProjectScene::gridDots()
{
    QSettings().setValue("showHeader", false);
    QSettings().setValue("showLegend", false);
    QSettings().setValue("showPageNumbers", false);
    Sheet sheet(QSize(390, 290));
    const QImage image = drawSheet(sheet.scene, QRectF(0, 0, 410, 310));

    const QColor dot(192, 192, 192);
    QCOMPARE(image.pixelColor(20, 20), dot);
    QCOMPARE(image.pixelColor(380, 280), dot);
    QCOMPARE(image.pixelColor(21, 20), QColor(Qt::white));
    QCOMPARE(image.pixelColor(30, 30), QColor(Qt::white));
    QCOMPARE(image.pixelColor(400, 20), QColor(Qt::white)); // beyond the page
    QCOMPARE(image.pixelColor(20, 300), QColor(Qt::white));
    QCOMPARE(image.pixelColor(390, 100), QColor(Qt::black)); // the frame
    QCOMPARE(image.pixelColor(100, 290), QColor(Qt::black));
    QCOMPARE(image.pixelColor(0, 20), QColor(Qt::black));

    // A part of the sheet shows the same dots, wherever it begins.
    const QImage part = drawSheet(sheet.scene, QRectF(33, 47, 100, 100));
    QCOMPARE(part.pixelColor(7, 13), dot);
    QCOMPARE(part.pixelColor(0, 0), QColor(Qt::white));
}

void TestProjectScene::gridOff()
{
    QSettings().setValue("showHeader", false);
    Sheet sheet(Page);
    sheet.program.gridEnabled = false;
    const QImage image = drawSheet(sheet.scene, QRectF(0, 0, 420, 320));

    QCOMPARE(image.pixelColor(20, 280), QColor(Qt::white));
    QCOMPARE(image.pixelColor(400, 250), QColor(Qt::black));
}

static HeaderItem *getHeader(const ProjectScene &scene)
{
    for (QGraphicsItem *item : scene.items()) {
        if (auto *header = qobject_cast<HeaderItem *>(item->toGraphicsObject()))
            return header;
    }
    return nullptr;
}

static QList<FooterItem *> getFooters(const ProjectScene &scene)
{
    QList<FooterItem *> footers;
    for (QGraphicsItem *item : scene.items(Qt::AscendingOrder)) {
        if (item->type() == ProjectItem::FooterType)
            footers.append(static_cast<FooterItem *>(item));
    }
    return footers;
}

void TestProjectScene::backgroundForPrinting()
{
    Sheet sheet(Page);
    auto *info = new InfoItem;
    sheet.scene.addItem(info);

    sheet.scene.setRenderBackground(false, true, true);
    QVERIFY(!info->isVisible());
    QVERIFY(!getHeader(sheet.scene)->isVisible());
    QVERIFY(!getFooters(sheet.scene).first()->isVisible());
    const QImage image = drawSheet(sheet.scene, QRectF(0, 0, 420, 320));
    QCOMPARE(image.pixelColor(20, 280), QColor(Qt::white));
    QCOMPARE(image.pixelColor(400, 250), QColor(Qt::white));

    sheet.scene.setRenderBackground(true, true, true);
    QVERIFY(info->isVisible());
    QVERIFY(getHeader(sheet.scene)->isVisible());
    QVERIFY(getFooters(sheet.scene).first()->isVisible());

    sheet.scene.setRenderBackground(true, false, false);
    QVERIFY(info->isVisible());
    QVERIFY(!getHeader(sheet.scene)->isVisible());
    QVERIFY(!getFooters(sheet.scene).first()->isVisible());
}

void TestProjectScene::footersDressEachPage()
{
    Sheet sheet(Page);
    sheet.addNote(QRectF(420, 320, 120, 80));
    QList<FooterItem *> footers = getFooters(sheet.scene);
    QCOMPARE(footers.size(), 4);
    for (FooterItem *footer : qAsConst(footers)) {
        const QPointF corner = footer->geometry().bottomRight() + QPointF(1, 1);
        QVERIFY(QList<QPointF>({{400, 300}, {800, 300}, {400, 600}, {800, 600}}).contains(corner));
    }
    QVERIFY(footers.first()->childItems().size() > 2); // with the legend
    QCOMPARE(footers.last()->childItems().size(), 1);

    QSettings().setValue("showLegend", false);
    QSettings().setValue("showPageNumbers", false);
    sheet.scene.updatePageNumberItems();
    footers = getFooters(sheet.scene);
    QCOMPARE(footers.size(), 4);
    for (FooterItem *footer : qAsConst(footers))
        QVERIFY(footer->childItems().isEmpty());
}

void TestProjectScene::headerOnTheMainSheetOnly()
{
    Sheet sheet(Page);
    QVERIFY(getHeader(sheet.scene));
    QCOMPARE(sheet.scene.getOwnerGUID(), QString());
    QSettings().setValue("showHeader", false);
    sheet.scene.updatePageNumberItems();
    QVERIFY(!getHeader(sheet.scene)->isVisible());

    Sticky *owner = sheet.addFactor(1);
    const ProjectScene secondary(&sheet.program, &sheet.group, nullptr, nullptr, Page, owner);
    QVERIFY(!getHeader(secondary));
    QCOMPARE(secondary.getOwnerGUID(), owner->getGUID());
    QCOMPARE(getFooters(secondary).size(), 1);
}

void TestProjectScene::lookUpByGuid()
{
    Sheet sheet(Page);
    Sticky *first = sheet.addNote(QRectF(20, 20, 120, 80));
    CanvasItemInfo info = first->getCanvasItemInfo();
    info.startPoint = QPointF(200, 20);
    ProjectItem *second = sheet.scene.loadCanvasItem(info);
    const QString guid = first->getGUID();

    QCOMPARE(second->getGUID(), guid);
    QCOMPARE(sheet.scene.getItemWithGUID(guid), second);
    sheet.scene.removeItem(second);
    QCOMPARE(sheet.scene.getItemWithGUID(guid), first);
    sheet.scene.removeItem(first);
    QCOMPARE(sheet.scene.getItemWithGUID(guid), nullptr);
    sheet.scene.addItem(first);
    QCOMPARE(sheet.scene.getItemWithGUID(guid), first);
    QCOMPARE(sheet.scene.getItemWithGUID(QString()), nullptr);
}

void TestProjectScene::noteAtPoint()
{
    Sheet sheet(Page);
    Sticky *below = sheet.addNote(QRectF(20, 20, 120, 80));
    Sticky *above = sheet.addNote(QRectF(80, 40, 120, 80));
    sheet.addBarrier(QPointF(90, 20));

    QCOMPARE(sheet.scene.getNoteAt(QPointF(30, 30)), below);
    QCOMPARE(sheet.scene.getNoteAt(QPointF(100, 60)), above);
    QCOMPARE(sheet.scene.getNoteAt(QPointF(300, 200)), nullptr);
}

void TestProjectScene::lossAndLossOfControl()
{
    Sheet sheet(Page);
    QVERIFY(!sheet.scene.getLossAndLoCNotes().first && !sheet.scene.getLossAndLoCNotes().second);
    Sticky *control = sheet.addNote(QRectF(20, 20, 120, 80), "Loss_Of_Control");
    Sticky *loss = sheet.addNote(QRectF(220, 20, 120, 120), "Loss");

    QCOMPARE(sheet.scene.getLossAndLoCNotes(), qMakePair(loss, control));
}

void TestProjectScene::firstUnusedNumber()
{
    Sheet sheet(Page);
    QCOMPARE(sheet.scene.getFirstUnusedCFNumber(), 1);
    for (int number : {4, 2, 1})
        sheet.addFactor(number);
    QCOMPARE(sheet.scene.getFirstUnusedCFNumber(), 3);
    QCOMPARE(sheet.scene.getAllCausalFactors().size(), 3);
}

void TestProjectScene::viewZoom()
{
    Sheet sheet(Page);
    sheet.view.scale(0.75, 0.75);
    QCOMPARE(sheet.scene.getViewZoom(), 75);
    sheet.view.setScene(nullptr);
    QCOMPARE(sheet.scene.getViewZoom(), 0);
}

void TestProjectScene::clearMakesNew()
{
    Sheet sheet(Page);
    sheet.scene.setItemsFont(QFont("Arial", 20));
    QList<QPointer<Sticky>> notes;
    for (int i = 0; i < 4; ++i)
        notes.append(sheet.addNote(QRectF(150 * i, 20, 120, 80)));
    sheet.scene.createItemAt(QPointF(100, 400), EventTool);
    sheet.scene.getUndoStack()->undo(); // its note waits for a redo
    notes.first()->setSelected(true);
    sheet.scene.deleteSelectedItems();
    sheet.scene.setPrintEnabled(false);

    sheet.scene.clear();
    for (const auto &note : notes)
        QVERIFY(!note);
    QCOMPARE(sheet.scene.sceneRect(), QRectF(0, 0, 420, 320));
    QCOMPARE(sheet.getSteps(), 0);
    QCOMPARE(getFooters(sheet.scene).size(), 1);
    QVERIFY(getHeader(sheet.scene));
    QVERIFY(sheet.scene.isPrintEnabled());
    QCOMPARE(sheet.scene.getDefaultFont().pointSize(), 20);
    sheet.addNote(QRectF(20, 20, 120, 80));
    QCOMPARE(sheet.scene.getProjectItems().size(), 1);
}

void TestProjectScene::clearWhileThingsAreUnderWay()
{
    Sheet sheet;
    QVERIFY(sheet.show());
    sheet.addNote(QRectF(20, 220, 120, 80));
    QSignalSpy editing(&sheet.scene, &ProjectScene::textEditingChanged);
    sheet.doubleClick(QPointF(60, 260));
    QCOMPARE(editing.count(), 1);
    sheet.scene.clear();
    QCOMPARE(editing.takeLast().first().toBool(), false);

    sheet.program.tool = ConnectorTool;
    sheet.press(QPointF(100, 300));
    sheet.move(QPointF(200, 400));
    sheet.scene.clear();
    sheet.move(QPointF(250, 400));
    sheet.release(QPointF(250, 400));
    QCOMPARE(sheet.scene.getProjectItems().size(), 0);
    QCOMPARE(sheet.getSteps(), 0);
}

void TestProjectScene::newsOfTheDeadIsDropped()
{
    Sheet sheet;
    Sticky *note = sheet.addNote(QRectF(20, 20, 120, 80));
    QSignalSpy added(&sheet.scene, &ProjectScene::causalFactorAdded);
    emit note->moveStarted();
    emit note->causalFactorAdded(note);
    emit note->moveFinished(note, QRectF());
    sheet.scene.clear();
    QCoreApplication::processEvents();

    QCOMPARE(added.count(), 0);
    QCOMPARE(sheet.getSteps(), 0);
}

void TestProjectScene::sheetMayOutliveItsGroup()
{
    FakeProgram program;
    auto group = std::make_unique<QUndoGroup>();
    auto scene = std::make_unique<ProjectScene>(&program, group.get(), nullptr, nullptr, Page);
    scene->createItemAt(QPointF(100, 100), EventTool);
    QCOMPARE(group->stacks().size(), 1);
    scene.reset();
    QCOMPARE(group->stacks().size(), 0);

    scene = std::make_unique<ProjectScene>(&program, group.get(), nullptr, nullptr, Page);
    scene->createItemAt(QPointF(100, 100), EventTool);
    group.reset();
    scene.reset();
}

void TestProjectScene::changesReachTheProject()
{
    FakeProgram program;
    QUndoGroup group;
    ProjectFile file(&program);
    ProjectScene scene(&program, &group, &file, nullptr, Page);
    auto other = std::make_unique<ProjectScene>(&program, &group, &file, nullptr, Page);
    other->createItemAt(QPointF(100, 100), EventTool);
    QVERIFY(file.isDirty());

    // With the sheet its steps go, but what was done stays done.
    other.reset();
    QVERIFY(file.isDirty());

    auto *label = qobject_cast<QLabel *>(
        static_cast<QGraphicsProxyWidget *>(getFooters(scene).first()->childItems().last())
            ->widget());
    QCOMPARE(label->text(), file.getOpenProjectName() + " - A1");
}

EXAMINER_TEST_MAIN(TestProjectScene)
#include "testprojectscene.moc"
