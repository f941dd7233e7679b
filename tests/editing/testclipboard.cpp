#include "sheet/clipboard.h"

#include "testing/sheet.h"

#include <QClipboard>
#include <QScrollBar>
#include <QUndoStack>

class TestClipboard : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void nothingToCopyOrPaste();
    void groupKeepsItsConnections();
    void lineAloneComesFree();
    void lineWithOneNote();
    void recordsAreFresh();
    void causalFactorTakesAFreeNumber();
    void landsInTheVisiblePart();
    void secondPasteLiesOnTheFirst();
    void lineMayRunBackwards();
    void movedBarrierLandsWhereItShould();
    void anotherSheetAndNoOriginals();
    void pictureForOtherPrograms();
    void pictureOfAFarSpreadSelection();

private:
    void copy(const QList<ProjectItem *> &items);
    QList<ProjectItem *> paste();
    template<typename Item> QList<Item *> pasted(const QList<ProjectItem *> &items) const
    {
        QList<Item *> picked;
        for (ProjectItem *item : items) {
            if (auto *match = qobject_cast<Item *>(item))
                picked << match;
        }
        return picked;
    }
    Line *connectNotes(Sticky *start, Sticky *end);

    std::unique_ptr<Sheet> sheet;
    ProjectScene *activeScene = nullptr;
    std::unique_ptr<ClipBoard> clipBoard;
};

void TestClipboard::init()
{
    sheet = std::make_unique<Sheet>();
    activeScene = &sheet->scene;
    clipBoard = std::make_unique<ClipBoard>(&activeScene, nullptr);
}

void TestClipboard::cleanup()
{
    clipBoard.reset();
    sheet.reset();
}

void TestClipboard::copy(const QList<ProjectItem *> &items)
{
    activeScene->clearSelection();
    for (ProjectItem *item : items)
        item->setSelected(true);
    clipBoard->onCopyTriggered();
}

QList<ProjectItem *> TestClipboard::paste()
{
    clipBoard->onPasteTriggered();
    QApplication::processEvents();
    return activeScene->getSelectedProjectItems();
}

Line *TestClipboard::connectNotes(Sticky *start, Sticky *end)
{
    Line *line = sheet->addLine(start->mapToScene(start->getEdgeMidPoint(Sticky::RightSide)),
                                end->mapToScene(end->getEdgeMidPoint(Sticky::LeftSide)));
    line->setStartConnection({start, Sticky::RightSide});
    line->setEndConnection({end, Sticky::AutoSide});
    return line;
}

void TestClipboard::nothingToCopyOrPaste()
{
    QVERIFY(paste().isEmpty());
    copy({});
    QCOMPARE(sheet->getSteps(), 0);

    copy({sheet->addNote(QRectF(20, 20, 120, 80), "Event", "kept")});
    copy({});
    const auto notes = pasted<Sticky>(paste());
    QCOMPARE(notes.size(), 1);
    QCOMPARE(notes.first()->getText(), QString("kept"));

    activeScene = nullptr;
    clipBoard->onCopyTriggered();
    clipBoard->onPasteTriggered();
}

void TestClipboard::groupKeepsItsConnections()
{
    Sticky *start = sheet->addNote(QRectF(200, 200, 120, 80), "Event", "start");
    Sticky *end = sheet->addNote(QRectF(500, 240, 120, 80), "Event", "end");
    Line *line = connectNotes(start, end);
    copy({line, start, end});
    QCOMPARE(activeScene->getSelectedProjectItems().size(), 3);

    const QList<ProjectItem *> items = paste();
    QCOMPARE(items.size(), 3);
    QCOMPARE(sheet->getSteps(), 3); // each is a step of its own
    const Line *newLine = pasted<Line>(items).value(0);
    QVERIFY(newLine && newLine != line);
    const ConnectionInfo newStart = newLine->getStartConnection();
    const ConnectionInfo newEnd = newLine->getEndConnection();
    QVERIFY(newStart.item && newStart.item != start);
    QVERIFY(newEnd.item && newEnd.item != end);
    QCOMPARE(newStart.item->getText(), QString("start"));
    QCOMPARE(newEnd.item->getText(), QString("end"));
    QCOMPARE(newStart.side, Sticky::RightSide);
    QCOMPARE(newEnd.side, Sticky::AutoSide);
    QCOMPARE(newLine->getPoints(),
             line->getPoints().translated(newStart.item->pos() - start->pos()));

    // Only the pasted notes lead the pasted line.
    start->setPos(200, 600);
    QCOMPARE(newLine->getPoints().first(), QPointF(220, 140));
    newStart.item->setPos(100, 400);
    QCOMPARE(newLine->getPoints().first(), QPointF(220, 440));

    while (sheet->getSteps() > 0 && sheet->scene.getUndoStack()->canUndo())
        sheet->scene.getUndoStack()->undo();
    QCOMPARE(activeScene->getProjectItems().size(), 3);
}

void TestClipboard::lineAloneComesFree()
{
    Sticky *start = sheet->addNote(QRectF(200, 200, 120, 80));
    Sticky *end = sheet->addNote(QRectF(500, 240, 120, 80));
    Line *line = connectNotes(start, end);
    copy({line});
    const auto lines = pasted<Line>(paste());
    QCOMPARE(lines.size(), 1);
    QVERIFY(!lines.first()->getStartConnection().item);
    QVERIFY(!lines.first()->getEndConnection().item);
    QCOMPARE(lines.first()->length(), line->length());
}

void TestClipboard::lineWithOneNote()
{
    Sticky *start = sheet->addNote(QRectF(200, 200, 120, 80));
    Sticky *end = sheet->addNote(QRectF(500, 240, 120, 80));
    Line *line = connectNotes(start, end);
    copy({line, end});
    const QList<ProjectItem *> items = paste();
    const Line *newLine = pasted<Line>(items).value(0);
    QVERIFY(newLine);
    QVERIFY(!newLine->getStartConnection().item);
    QCOMPARE(newLine->getEndConnection().item, pasted<Sticky>(items).value(0));
}

void TestClipboard::recordsAreFresh()
{
    CanvasItemInfo info;
    info.type = ImageTool;
    info.size = QSizeF(160, 140);
    info.text = "seen";
    info.image = QPixmap(30, 20);
    info.image.fill(Qt::green);
    info.siblings = QStringList({"loss", "{other}"});
    info.backgroundColor = Qt::yellow;
    info.notRelevant = true;
    ProjectItem *original = activeScene->loadCanvasItem(info);
    copy({original});

    const ProjectItem *item = paste().value(0);
    QVERIFY(item && item != original);
    const CanvasItemInfo &record = item->getRecord();
    QVERIFY(!record.guid.isEmpty() && record.guid != original->getGUID());
    QVERIFY(record.siblings.isEmpty());
    QCOMPARE(record.image.size(), QSize(30, 20));
    QCOMPARE(record.text, QString("seen"));
    QCOMPARE(record.backgroundColor, QColor(Qt::yellow));
    QVERIFY(record.notRelevant);
    QCOMPARE(original->getRecord().siblings.size(), 2);
}

void TestClipboard::causalFactorTakesAFreeNumber()
{
    Sticky *first = sheet->addFactor(1);
    sheet->addFactor(3);
    QSignalSpy added(activeScene, &ProjectScene::causalFactorAdded);
    copy({first});
    QCOMPARE(pasted<Sticky>(paste()).value(0)->getCausalFactorNumber(), 2);
    QCOMPARE(pasted<Sticky>(paste()).value(0)->getCausalFactorNumber(), 4);
    QCOMPARE(added.size(), 2);
}

void TestClipboard::landsInTheVisiblePart()
{
    copy({sheet->addNote(QRectF(33, 47, 120, 80))});
    QCOMPARE(paste().value(0)->pos(), QPointF(100, 100));

    QVERIFY(sheet->show());
    sheet->view.scale(0.5, 0.5);
    sheet->view.setSceneRect(0, 0, 6000, 4000);
    sheet->view.horizontalScrollBar()->setValue(405);
    sheet->view.verticalScrollBar()->setValue(203);
    // (100 + 405) * 2 and (100 + 203) * 2, on the grid
    QCOMPARE(paste().value(0)->pos(), QPointF(1020, 600));
}

void TestClipboard::secondPasteLiesOnTheFirst()
{
    Sticky *one = sheet->addNote(QRectF(400, 300, 120, 80));
    Sticky *other = sheet->addNote(QRectF(700, 340, 120, 80));
    copy({one, other});
    const auto places = [](const QList<ProjectItem *> &items) {
        QList<QPair<qreal, qreal>> all;
        for (ProjectItem *item : items)
            all << qMakePair(item->x(), item->y());
        std::sort(all.begin(), all.end());
        return all;
    };
    const QList<QPair<qreal, qreal>> expected = {{100, 100}, {400, 140}};
    QCOMPARE(places(paste()), expected);
    QCOMPARE(places(paste()), expected);
}

void TestClipboard::lineMayRunBackwards()
{
    copy({sheet->addLine(QPointF(900, 700), QPointF(600, 400))});
    const Line *line = pasted<Line>(paste()).value(0);
    QVERIFY(line);
    QCOMPARE(line->getPoints().first(), QPointF(400, 400));
    QCOMPARE(line->getPoints().last(), QPointF(100, 100));
}

void TestClipboard::movedBarrierLandsWhereItShould()
{
    ProjectItem *barrier = sheet->addBarrier(QPointF(200, 200));
    barrier->setPos(800, 600);
    copy({barrier});
    QCOMPARE(paste().value(0)->pos(), QPointF(100, 100));
}

void TestClipboard::anotherSheetAndNoOriginals()
{
    Sticky *start = sheet->addNote(QRectF(200, 200, 120, 80));
    Sticky *end = sheet->addNote(QRectF(500, 240, 120, 80));
    copy({start, end, connectNotes(start, end)});
    sheet->scene.clear();

    Sheet other;
    activeScene = &other.scene;
    const QList<ProjectItem *> items = paste();
    QCOMPARE(items.size(), 3);
    QVERIFY(pasted<Line>(items).value(0)->getEndConnection().item);
    QVERIFY(sheet->scene.getProjectItems().isEmpty());

    // A second paste joins its own items only.
    const auto before = other.scene.getProjectItems();
    const Line *line = pasted<Line>(paste()).value(0);
    QVERIFY(!before.contains(line->getStartConnection().item));
    activeScene = &sheet->scene;
}

void TestClipboard::pictureForOtherPrograms()
{
    Sticky *note = sheet->addNote(QRectF(200, 200, 120, 80));
    note->setCustomBackgroundColor(Qt::yellow);
    copy({note});
    QVERIFY(note->isSelected());

    const QImage picture = QApplication::clipboard()->image();
    QCOMPARE(picture.size(), note->boundingRect().size().toSize() + QSize(4, 4));
    QCOMPARE(picture.pixelColor(0, 0), QColor(Qt::white));
    QCOMPARE(picture.pixelColor(12, 12), QColor(Qt::yellow));
    for (int x = 0; x < picture.width(); ++x)
        QVERIFY(picture.pixelColor(x, 2) != QColor(Qt::red)); // the border of a selected note
}

void TestClipboard::pictureOfAFarSpreadSelection()
{
    Sticky *near = sheet->addNote(QRectF(0, 0, 120, 80));
    Sticky *far = sheet->addNote(QRectF(90000, 60000, 120, 80));
    copy({near, far});
    const QSize size = QApplication::clipboard()->pixmap().size();
    QVERIFY(!size.isEmpty());
    QVERIFY(qint64(size.width()) * size.height() <= 33000000);
    QCOMPARE(qRound(100.0 * size.width() / size.height()), 150);
    QCOMPARE(paste().size(), 2);
}

EXAMINER_TEST_MAIN(TestClipboard)
#include "testclipboard.moc"
