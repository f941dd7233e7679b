#include "project/projectfile.h"
#include "sheet/footeritem.h"
#include "sheet/headeritem.h"
#include "sheet/infoitem.h"
#include "testing/sheet.h"

#include <QGraphicsProxyWidget>
#include <QLabel>

class TestPages : public QObject
{
    Q_OBJECT

    const QSize Page = QSize(400, 300);

    static QList<QGraphicsItem *> getItems(const ProjectScene &scene, int type)
    {
        QList<QGraphicsItem *> found = scene.items(Qt::AscendingOrder);
        const auto isOther = [type](const QGraphicsItem *item) { return item->type() != type; };
        found.erase(std::remove_if(found.begin(), found.end(), isOther), found.end());
        return found;
    }

    static QString getPages(const ProjectScene &scene)
    {
        return QString("%1x%2").arg(scene.getNumHorizontalPages()).arg(scene.getNumVerticalPages());
    }

private slots:
    void init() { QSettings().clear(); }

    void pagesFollowTheItems()
    {
        const std::tuple<const char *, QRectF, QString> rows[] = {
            {"up to the page's edges", {280, 220, 120, 80}, "1x1"},
            {"one unit further", {281, 221, 120, 80}, "2x2"},
            {"far away", {4000, 3100, 80, 80}, "11x11"},
            {"left of the sheet", {-500, -500, 80, 80}, "1x1"},
        };
        Sheet sheet(Page);
        for (const auto &[name, note, pages] : rows) {
            const Row in(name);
            sheet.addNote(note);
            QCOMPARE(getPages(sheet.scene), pages);
            sheet.scene.clear();
            QCOMPARE(sheet.scene.sceneRect(), QRectF(0, 0, 420, 320));
        }
        sheet.addLine(QPointF(100, 100), QPointF(500, 100));
        sheet.addBarrier(QPointF(100, 300));
        auto *info = new InfoItem; // no reason for a page
        info->setPos(2000, 2000);
        sheet.scene.addItem(info);
        sheet.scene.checkCanvasSize();
        QCOMPARE(sheet.scene.sceneRect(), QRectF(0, 0, 820, 620));
        sheet.scene.setPageSize(QSize(200, 100));
        QCOMPARE(getPages(sheet.scene), QString("3x4"));
        QVERIFY(sheet.scene.pageContainsItems(QRectF(0, 300, 200, 100)));
        QVERIFY(!sheet.scene.pageContainsItems(QRectF(0, 200, 200, 100)));
        // Truncated, and not clamped.
        QCOMPARE(sheet.scene.getPageBoundsAtPoint(QPointF(-199, 999)), QRectF(0, 900, 200, 100));
    }

    void growsAndShrinksUnderADrag()
    {
        Sheet sheet(Page);
        QVERIFY(sheet.show());
        sheet.addNote(QRectF(20, 320, 120, 80)); // rests on the second row of pages
        Sticky *note = sheet.addNote(QRectF(20, 20, 120, 80));
        Line *line = sheet.addLine(QPointF(300, 60), QPointF(140, 60));
        line->setEndConnection({note, Sticky::RightSide});

        sheet.press(QPointF(60, 40));
        sheet.move(QPointF(360, 40)); // with the end of the line beyond the page
        QTRY_COMPARE(getPages(sheet.scene), QString("2x2"));
        sheet.move(QPointF(60, 640));
        QTRY_COMPARE(getPages(sheet.scene), QString("1x3"));
        sheet.move(QPointF(60, 340));
        sheet.release(QPointF(60, 340));
        QCoreApplication::processEvents();
        QCOMPARE(getPages(sheet.scene), QString("1x3")); // the end of a move makes no check
        sheet.getStack()->undo();
        QTRY_COMPARE(getPages(sheet.scene), QString("1x2"));
    }

    void shrinksWithTheNextItem()
    {
        Sheet sheet(Page);
        sheet.scene.removeItem(sheet.addNote(QRectF(500, 20, 120, 80)));
        QCOMPARE(getPages(sheet.scene), QString("2x1"));
        sheet.addNote(QRectF(20, 420, 120, 80));
        QCOMPARE(getPages(sheet.scene), QString("1x2"));
    }

    void nothingGetsOutOfReach()
    {
        Sheet sheet(Page);
        sheet.scene.createItemAt(QPointF(500, 100), EventTool);
        sheet.getStack()->undo();
        QCOMPARE(getPages(sheet.scene), QString("1x1"));
        sheet.getStack()->redo();
        QCOMPARE(getPages(sheet.scene), QString("2x1"));
        sheet.addNote(QRectF(280, 220, 120, 80))->setSelected(true);
        sheet.pressKey(Qt::Key_Down);
        QCOMPARE(getPages(sheet.scene), QString("2x2"));
    }

    void dressOfASheet()
    {
        Sheet sheet(QSize(390, 290));
        auto *box = new InfoItem;
        sheet.scene.addItem(box);
        QGraphicsItem *header = getItems(sheet.scene, HeaderItem::Type).value(0);
        sheet.addNote(QRectF(420, 320, 120, 80));
        QList<QGraphicsItem *> footers = getItems(sheet.scene, ProjectItem::FooterType);
        QCOMPARE(footers.size(), 4);
        QVERIFY(footers.first()->childItems().size() > 2); // with the legend
        QCOMPARE(footers.last()->childItems().size(), 1);
        for (bool dressed : {false, true}) {
            sheet.scene.setRenderBackground(dressed, true, true);
            for (const QGraphicsItem *item :
                 {static_cast<QGraphicsItem *>(box), header, footers[0]})
                QCOMPARE(item->isVisible(), dressed);
            QCOMPARE(colorAt(&sheet.scene, QPointF(360, 560)) == QColor(192, 192, 192), dressed);
            QCOMPARE(colorAt(&sheet.scene, QPointF(390, 560)) == QColor(Qt::black), dressed);
        }

        // Printing must not bring back what the settings hide.
        for (const char *key : {"showHeader", "showLegend", "showPageNumbers"})
            QSettings().setValue(key, false);
        sheet.scene.updatePageNumberItems();
        sheet.scene.setRenderBackground(true, true, true);
        QVERIFY(!header->isVisible());
        footers = getItems(sheet.scene, ProjectItem::FooterType);
        QVERIFY(footers.size() == 4 && footers.first()->childItems().isEmpty());
    }

    void lookUpByGuid()
    {
        Sheet sheet(Page);
        ProjectItem *first = sheet.add(noteInfo("twin", QRectF(20, 20, 120, 80)));
        ProjectItem *second = sheet.add(noteInfo("twin", QRectF(200, 20, 120, 80)));
        QCOMPARE(sheet.scene.getItemWithGUID("twin"), second);
        sheet.scene.removeItem(second);
        QCOMPARE(sheet.scene.getItemWithGUID("twin"), first);
    }

    void clearMakesNew()
    {
        Sheet sheet;
        QVERIFY(sheet.show());
        const QPointer<Sticky> note = sheet.addNote(QRectF(20, 220, 120, 80));
        const QPointer<Sticky> deleted = sheet.addNote(QRectF(5000, 20, 120, 80));
        deleted->setSelected(true);
        sheet.scene.deleteSelectedItems();
        sheet.scene.setPrintEnabled(false);
        QSignalSpy editing(&sheet.scene, &ProjectScene::textEditingChanged);
        QSignalSpy added(&sheet.scene, &ProjectScene::causalFactorAdded);
        sheet.doubleClick(QPointF(60, 260));
        QCOMPARE(editing.takeLast().first().toBool(), true);
        emit note->moveStarted(); // news that wait in the queue
        emit note->causalFactorAdded(note);
        emit note->moveFinished(note, QRectF());
        sheet.scene.clear();
        QCOMPARE(editing.takeLast().first().toBool(), false);
        QCoreApplication::processEvents();
        QCOMPARE(added.count(), 0);
        QVERIFY(!note && !deleted && sheet.scene.isPrintEnabled());

        sheet.program.tool = ConnectorTool;
        sheet.press(QPointF(100, 300));
        sheet.move(QPointF(200, 400));
        sheet.scene.clear();
        sheet.release(QPointF(250, 400));
        QCOMPARE(sheet.getSteps(), 0);
        QCOMPARE(getPages(sheet.scene), QString("1x1"));
        QCOMPARE(getItems(sheet.scene, HeaderItem::Type).size(), 1);
    }

    void changesReachTheProject()
    {
        FakeHost program;
        auto group = std::make_unique<QUndoGroup>();
        ProjectFile file(&program);
        ProjectScene scene(&program, group.get(), &file, nullptr, Page);
        auto other = std::make_unique<ProjectScene>(&program, group.get(), &file, nullptr, Page);
        other->createItemAt(QPointF(100, 100), EventTool);
        QVERIFY(file.isDirty());
        other.reset(); // its steps go, but what was done stays done
        QVERIFY(file.isDirty());
        QCOMPARE(group->stacks().size(), 1);

        QGraphicsItem *name = getItems(scene, ProjectItem::FooterType).first()->childItems().last();
        auto *label = qobject_cast<QLabel *>(static_cast<QGraphicsProxyWidget *>(name)->widget());
        QCOMPARE(label->text(), file.getOpenProjectName() + " - A1");
        group.reset(); // a sheet may outlive it
    }
};

EXAMINER_TEST_MAIN(TestPages)
#include "testpages.moc"
