#include "acceptance/windowuser.h"
#include "shell/zoomwidget.h"
#include "support/supportfiles.h"
#include "testing/testmain.h"

#include <QScrollBar>
#include <QUndoStack>

/// Somebody new to the program draws a lane of events with mouse and keyboard.
class TestDrawChart : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void cleanupTestCase();

    void notesAreDraggedFromThePalette();
    void textsAreTyped();
    void notesAreResizedAndMoved();
    void rolesAreChosen();
    void linesAreDrawn();
    void aMenuOpensOnALine();
    void aBarrierIsPlaced();
    void everyStepIsUndoneAndRedone();
    void theFileHoldsTheSame();
    void theViewFollowsTheHand();

private:
    MainWindow *window = nullptr;
    std::unique_ptr<WindowUser> user;
    ProjectScene *scene = nullptr;
    GraphWidget *view = nullptr;
    QStringList drawn;
    int steps = 0;
};

void TestDrawChart::initTestCase()
{
    copySupportFiles();
    window = new MainWindow(nullptr);
    window->newProject();
    QVERIFY(QTest::qWaitForWindowActive(window, 20000));
    QTest::qWait(500); // the window manager maximizes
    scene = window->getMainScene();
    user = std::make_unique<WindowUser>(window);
    user->openTab("ECS Chart");
    view = user->view();
    QVERIFY(view);
    XUser::takeShot("draw-1-empty");
}

void TestDrawChart::cleanupTestCase()
{
    delete window;
}

void TestDrawChart::notesAreDraggedFromThePalette()
{
    user->drop("Event", {100, 400});
    user->drop("Event", {340, 400});
    user->drop("Event", {580, 400});
    user->drop("Event", {820, 400});
    user->drop("Condition", {580, 220});
    user->drop("Sequence Marker", {100, 360});
    QCOMPARE(scene->getAllNotes().size(), 6);
    for (const QPointF &p : {QPointF(100, 400), QPointF(340, 400), QPointF(580, 400),
                             QPointF(820, 400), QPointF(580, 220), QPointF(100, 360)})
        QCOMPARE(user->noteAt(p + QPointF(10, 10))->pos(), p);
    XUser::takeShot("draw-2-notes");
}

void TestDrawChart::textsAreTyped()
{
    user->typeInto({160, 440}, "State asks for money");
    user->typeInto({400, 440}, "Open girders planned");
    user->typeInto({640, 440}, "Cheaper plan adopted");
    user->typeInto({880, 440}, "The deck is hung");
    user->typeInto({640, 260}, "Wind taken as steady");
    user->typeInto({160, 370}, "1937 and 1938");
    XUser::takeShot("draw-3-texts");
}

void TestDrawChart::notesAreResizedAndMoved()
{
    for (const QPointF &topLeft : {QPointF(100, 400), QPointF(340, 400), QPointF(580, 400)}) {
        Sticky *note = user->noteAt(topLeft + QPointF(60, 40));
        XUser::click(user->at(topLeft + QPointF(60, 40)));
        QTRY_VERIFY(note->isSelected());
        XUser::drag(user->at(topLeft + QPointF(121, 40)), user->at(topLeft + QPointF(158, 40)));
        QTRY_COMPARE(note->getRect().size(), QSizeF(160, 80));
    }
    Sticky *last = user->noteAt({880, 440});
    XUser::drag(user->at({880, 440}), user->at({915, 478}));
    QTRY_COMPARE(last->pos(), QPointF(860, 440));
    XUser::press("Up");
    XUser::press("Up");
    QTRY_COMPARE(last->pos(), QPointF(860, 400));
}

void TestDrawChart::rolesAreChosen()
{
    user->chooseRole({180, 440}, "Starting Event");
    user->chooseRole({880, 420}, "Loss Of Control");
    user->drop("Event", {1060, 400});
    user->typeInto({1120, 440}, "The span falls");
    user->chooseRole({1120, 440}, "Loss");
    QCOMPARE(user->noteAt({1120, 440})->getRect().size(), QSizeF(120, 120));
    user->chooseRole({660, 440}, "Causal Factor");
    QTRY_COMPARE(user->tabTitles(),
                 QStringList({"Investigation Form", "ECS Chart", "Causal Factor 1"}));
    XUser::takeShot("draw-4-roles");
}

void TestDrawChart::linesAreDrawn()
{
    user->drawLine("Connector", {258, 440}, {342, 440});
    user->drawLine("Connector", {498, 440}, {582, 440});
    user->drawLine("Connector", {738, 440}, {862, 440});
    user->drawLine("Connector", {660, 298}, {660, 402});
    user->drawLine("Arrow", {978, 440}, {1062, 460});
    user->drawLine("Connector", {160, 378}, {160, 402});
    for (ProjectItem *item : scene->getProjectItems()) {
        if (auto *line = qobject_cast<Line *>(item)) {
            QVERIFY(line->getStartConnection().item);
            QVERIFY(line->getEndConnection().item);
        }
    }
    XUser::takeShot("draw-5-lines");
}

void TestDrawChart::aMenuOpensOnALine()
{
    const int before = scene->getProjectItems().size();
    XUser::click(user->at({1300, 700}));
    QTRY_VERIFY(scene->selectedItems().isEmpty());
    XUser::answerNextMenu("Delete item(s)", "draw-5a-menu");
    XUser::click(user->at({800, 440}), 3);
    QTRY_COMPARE(scene->getProjectItems().size(), before - 1);
    XUser::press("ctrl+z");
    QTRY_COMPARE(scene->getProjectItems().size(), before);
}

void TestDrawChart::aBarrierIsPlaced()
{
    user->drop("Failed Barrier", {800, 400});
    XUser::click(user->at({1300, 700}));
    QTRY_VERIFY(scene->selectedItems().isEmpty());
    XUser::takeShot("draw-6-barrier");
}

void TestDrawChart::everyStepIsUndoneAndRedone()
{
    drawn = user->describeSheet(scene);
    steps = scene->getUndoStack()->count();
    XUser::press(QVector<QString>(steps, "ctrl+z").toList());
    QTRY_COMPARE(scene->getUndoStack()->index(), 0);
    QCOMPARE(scene->getProjectItems().size(), 0);
    QTRY_COMPARE(user->tabs()->count(), 2);
    QVERIFY(!window->isWindowModified());
    XUser::takeShot("draw-7-undone");

    XUser::press(QVector<QString>(steps, "ctrl+shift+z").toList());
    QTRY_COMPARE(scene->getUndoStack()->index(), steps);
    QTRY_COMPARE(user->tabs()->count(), 3);
    QCOMPARE(user->describeSheet(scene), drawn);
    XUser::takeShot("draw-8-redone");
}

void TestDrawChart::theFileHoldsTheSame()
{
    QTemporaryDir folder;
    const QString path = folder.filePath("lane.epf");
    XUser::answerNextDialog(path);
    XUser::press("ctrl+s");
    QTRY_VERIFY(!window->isWindowModified());
    QVERIFY(QFile::exists(path));

    window->openProject(path, false);
    QCOMPARE(user->describeSheet(scene), drawn);
}

void TestDrawChart::theViewFollowsTheHand()
{
    auto *zoom = window->findChild<ZoomWidget *>();
    const QPointF pointer(660, 440);
    zoom->setZoom(150); // larger than the window, so that it can be kept in place
    view->centerOn(700, 480);
    const QPoint place = user->at(pointer);
    XUser::turnWheel(place, 3, "ctrl");
    QTRY_COMPARE(zoom->getZoom(), 180);
    QVERIFY((user->at(pointer) - place).manhattanLength() < 6);
    XUser::takeShot("draw-9-zoomed");

    const int before = view->verticalScrollBar()->value();
    XUser::turnWheel(user->at({660, 440}), -2);
    QTRY_VERIFY(view->verticalScrollBar()->value() > before);

    XUser::click(XUser::centreOf(user->buttonOf("Hand")));
    QTRY_COMPARE(window->selectedTool(), int(HandTool));
    const QPoint middle = XUser::centreOf(view->viewport());
    const QPointF grabbed = view->mapToScene(view->viewport()->mapFromGlobal(middle));
    XUser::drag(middle, middle - QPoint(120, 60));
    const QPointF moved =
        view->mapToScene(view->viewport()->mapFromGlobal(middle - QPoint(120, 60)));
    QVERIFY((moved - grabbed).manhattanLength() < 6);
    XUser::press("Escape");

    // A rubber band from empty ground takes what it covers.
    zoom->setZoom(50);
    XUser::drag(user->at({40, 180}), user->at({1240, 560}));
    QTRY_COMPARE(scene->getSelectedNotes().size(), 7);
    XUser::takeShot("draw-10-selected");

    // A drag held at the edge scrolls on.
    zoom->setZoom(100);
    view->horizontalScrollBar()->setValue(0);
    zoom->setZoom(200);
    view->centerOn(300, 300);
    const int left = view->horizontalScrollBar()->value();
    const QPoint start = XUser::centreOf(view->viewport());
    const QPoint edge(view->viewport()->mapToGlobal(QPoint(view->viewport()->width() - 4, 0)).x(),
                      start.y() + 40);
    XUser::drag(start, edge);
    QVERIFY(view->horizontalScrollBar()->value() > left);
}

EXAMINER_TEST_MAIN(TestDrawChart)

#include "testdrawchart.moc"
