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
        start = sheet->addNote(QRectF(200, 200, 120, 80), "Event", "start");
        end = sheet->addNote(QRectF(500, 240, 120, 80), "Event", "end");
        line = sheet->addLine(QPointF(320, 240), QPointF(500, 280));
        line->setStartConnection({start, Sticky::RightSide});
        line->setEndConnection({end, Sticky::AutoSide});
    }

    void groupKeepsItsConnections()
    {
        QVERIFY(!paste());
        const QString before = describe(*scene);
        copy({line, start, end});
        copy({}); // the earlier content stays
        auto *pasted = paste<Line>();
        QCOMPARE(sheet->getSteps(), 3); // each is a step of its own
        QCOMPARE(pasted->getStartConnection().item->getText(), QString("start"));
        QCOMPARE(pasted->getEndConnection().item->getText(), QString("end"));
        QCOMPARE(pasted->getPoints(), line->getPoints().translated(-100, -100));
        copy({line, end});
        QVERIFY(!paste<Line>()->getStartConnection().item);
        while (sheet->getStack()->canUndo())
            sheet->getStack()->undo();
        QCOMPARE(describe(*scene), before);
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
        const ProjectItem *item = paste();
        const QString guid = item->getGUID();
        QVERIFY(!guid.isEmpty() && guid != "{old}");
        QCOMPARE(describe(item->getRecord()).replace(guid, "{old}"),
                 describe(original).remove("loss+{other}"));
    }

    void causalFactorTakesAFreeNumber()
    {
        Sticky *first = sheet->addFactor(1);
        sheet->addFactor(3);
        copy({first});
        QCOMPARE(paste<Sticky>()->getCausalFactorNumber(), 2);
        QCOMPARE(paste<Sticky>()->getCausalFactorNumber(), 4);
    }

    void landsInTheVisiblePart()
    {
        copy({sheet->addLine(QPointF(900, 700), QPointF(600, 400))}); // it runs backwards
        QCOMPARE(paste<Line>()->getEnds().startPoint, QPointF(400, 400));
        ProjectItem *barrier = sheet->addBarrier(QPointF(200, 200));
        barrier->setPos(833, 647);
        copy({barrier});
        QVERIFY(sheet->show());
        sheet->view.scale(0.5, 0.5);
        sheet->view.setSceneRect(0, 0, 6000, 4000);
        sheet->view.horizontalScrollBar()->setValue(405);
        sheet->view.verticalScrollBar()->setValue(203);
        QCOMPARE(paste<BoxItem>()->pos(), QPointF(1020, 600));
    }

    void anotherSheetAndNoOriginals()
    {
        copy({start, end, line});
        scene->clear();
        Sheet other;
        scene = &other.scene;
        QVERIFY(paste<Line>()->getStartConnection().item);
        const QList<ProjectItem *> before = scene->getProjectItems();
        QVERIFY(!before.contains(paste<Line>()->getStartConnection().item));
        scene = nullptr;
        clipBoard.onCopyTriggered();
        clipBoard.onPasteTriggered();
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

    std::unique_ptr<Sheet> sheet;
    ProjectScene *scene = nullptr;
    ClipBoard clipBoard{&scene, nullptr};
    Sticky *start = nullptr;
    Sticky *end = nullptr;
    Line *line = nullptr;
};

EXAMINER_TEST_MAIN(TestClipboard)
#include "testclipboard.moc"
