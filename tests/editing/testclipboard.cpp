#include "sheet/clipboard.h"

#include "testing/records.h"
#include "testing/sheet.h"

#include <QClipboard>
#include <QScrollBar>
#include <QUndoStack>

class TestClipboard : public QObject
{
    Q_OBJECT

private slots:
    void init()
    {
        sheet = std::make_unique<Sheet>();
        scene = &sheet->scene;
        clipBoard = std::make_unique<ClipBoard>(&scene, nullptr);
        start = sheet->addNote(QRectF(200, 200, 120, 80), "Event", "start");
        end = sheet->addNote(QRectF(500, 240, 120, 80), "Event", "end");
        line = sheet->addLine(QPointF(320, 240), QPointF(500, 280));
        line->setStartConnection({start, Sticky::RightSide});
        line->setEndConnection({end, Sticky::AutoSide});
    }

    void cleanup()
    {
        clipBoard.reset();
        sheet.reset();
    }

    void groupKeepsItsConnections()
    {
        QVERIFY(paste().isEmpty());
        const QString before = describe(*scene);
        copy({line, start, end});
        copy({}); // the earlier content stays
        const QList<ProjectItem *> items = paste();
        QCOMPARE(sheet->getSteps(), 3); // each is a step of its own
        auto *pasted = find<Line>(items);
        QString ends = describe(pasted).section(" from ", 1);
        for (ProjectItem *item : items)
            ends.replace(item->getGUID(), item->getRecord().text);
        QCOMPARE(ends, QString("start side 3 to end side 5"));
        QCOMPARE(pasted->getPoints(), line->getPoints().translated(-100, -100));
        while (sheet->getStack()->canUndo())
            sheet->getStack()->undo();
        QCOMPARE(describe(*scene), before);
    }

    void endWithoutItsNoteComesFree()
    {
        copy({line, end});
        const QList<ProjectItem *> items = paste();
        QVERIFY(!find<Line>(items)->getStartConnection().item);
        QCOMPARE(find<Line>(items)->getEndConnection().item, find<Sticky>(items));
    }

    void recordsAreFresh()
    {
        CanvasItemInfo info = noteInfo("{old}", QRectF(100, 100, 120, 80), "seen");
        info.image = QPixmap(30, 20);
        info.backgroundColor = Qt::yellow;
        info.notRelevant = true;
        info.siblings = QStringList({"loss", "{other}"});
        ProjectItem *original = sheet->add(info);
        copy({original});
        const ProjectItem *item = paste().value(0);
        const QString guid = item->getGUID();
        QVERIFY(!guid.isEmpty() && guid != "{old}");
        QCOMPARE(describe(item->getRecord()).replace(guid, "{old}"),
                 describe(original).remove("loss+{other}"));
    }

    void causalFactorTakesAFreeNumber()
    {
        Sticky *first = sheet->addFactor(1);
        sheet->addFactor(3);
        const QSignalSpy added(scene, &ProjectScene::causalFactorAdded);
        copy({first});
        QCOMPARE(find<Sticky>(paste())->getCausalFactorNumber(), 2);
        QCOMPARE(find<Sticky>(paste())->getCausalFactorNumber(), 4);
        QCOMPARE(added.size(), 2);
    }

    void landsInTheVisiblePart()
    {
        copy({sheet->addLine(QPointF(900, 700), QPointF(600, 400))}); // it runs backwards
        QCOMPARE(find<Line>(paste())->getEnds().startPoint, QPointF(400, 400));
        ProjectItem *barrier = sheet->addBarrier(QPointF(200, 200));
        barrier->setPos(833, 647);
        copy({barrier});
        QVERIFY(sheet->show());
        sheet->view.scale(0.5, 0.5);
        sheet->view.setSceneRect(0, 0, 6000, 4000);
        sheet->view.horizontalScrollBar()->setValue(405);
        sheet->view.verticalScrollBar()->setValue(203);
        for (int time = 0; time < 2; ++time) // the second lies on the first
            QCOMPARE(find<BoxItem>(paste())->pos(), QPointF(1020, 600));
    }

    void anotherSheetAndNoOriginals()
    {
        copy({start, end, line});
        scene->clear();
        Sheet other;
        scene = &other.scene;
        QCOMPARE(paste().size(), 3);
        const QList<ProjectItem *> before = scene->getProjectItems();
        Sticky *joined = find<Line>(paste())->getStartConnection().item;
        QVERIFY(joined && !before.contains(joined));
        scene = nullptr;
        clipBoard->onCopyTriggered();
        clipBoard->onPasteTriggered();
    }

    void pictureForOtherPrograms()
    {
        start->setCustomBackgroundColor(Qt::yellow);
        copy({start});
        QVERIFY(start->isSelected());
        const QImage picture = QApplication::clipboard()->image();
        QCOMPARE(picture.size(), start->boundingRect().size().toSize() + QSize(4, 4));
        QCOMPARE(picture.pixelColor(0, 0), QColor(Qt::white));
        QCOMPARE(picture.pixelColor(12, 12), QColor(Qt::yellow));
        for (int x = 0; x < picture.width(); ++x)
            QVERIFY(picture.pixelColor(x, 2) != QColor(Qt::red)); // the border of a selected note
        end->setPos(90000, 60000);                                // together they take 20 GB
        copy({start, end});
        const int width = QApplication::clipboard()->pixmap().width();
        QVERIFY(width > 1000 && width < 32000);
    }

private:
    void copy(const QList<ProjectItem *> &items)
    {
        scene->clearSelection();
        for (ProjectItem *item : items)
            item->setSelected(true);
        clipBoard->onCopyTriggered();
    }

    QList<ProjectItem *> paste()
    {
        clipBoard->onPasteTriggered();
        QApplication::processEvents();
        return scene->getSelectedProjectItems();
    }

    /// The first of its kind.
    template<typename Item> static Item *find(const QList<ProjectItem *> &items)
    {
        for (ProjectItem *item : items) {
            if (auto *match = qobject_cast<Item *>(item))
                return match;
        }
        qFatal("None was pasted");
    }

    std::unique_ptr<Sheet> sheet;
    ProjectScene *scene = nullptr;
    std::unique_ptr<ClipBoard> clipBoard;
    Sticky *start = nullptr;
    Sticky *end = nullptr;
    Line *line = nullptr;
};

EXAMINER_TEST_MAIN(TestClipboard)
#include "testclipboard.moc"
