#include "shell/introscreen.h"
#include "shell/toolstoolbar.h"
#include "shell/zoomwidget.h"
#include "support/helpbrowser.h"
#include "testing/window.h"

#include <QUndoGroup>

/// The window as a whole. All tests but the first share one window.
class TestMainWindow : public QObject
{
    Q_OBJECT

private slots:
    void beforeTheInterface();
    void interfaceComes();
    void titles();
    void sheetForParent();
    void noteWithGuid();
    void tabsSwitchStacksAndPalette();
    void leavingASheetClearsItsSelection();
    void eachSheetKeepsItsZoom();
    void zoomOnTheFormTabChangesNoSheet();
    void headerLeadsToTheForm();
    void clearTakesSheetsAway();
    void clearBehindTheForm();
    void clearTwiceInOneTurn();
    void helpOpensEachTime();
    void cleanupTestCase();

private:
    TestWindow &get();
    QUndoGroup *group() { return get().window.findChild<QUndoGroup *>(); }

    std::unique_ptr<TestWindow> shared;
};

/// Made by the first test that needs it, and emptied for each.
TestWindow &TestMainWindow::get()
{
    if (!shared)
        shared = std::make_unique<TestWindow>();
    return *shared;
}

void TestMainWindow::cleanupTestCase()
{
    shared.reset();
}

void TestMainWindow::beforeTheInterface()
{
    auto *screen = new IntroScreen(nullptr);
    QPointer<IntroScreen> guard(screen);
    MainWindow window(screen);

    QCOMPARE(window.windowTitle(), QString("TRAC/Ex Examiner"));
    QCOMPARE(window.size(), QSize(800, 600));
    QVERIFY(!window.windowIcon().isNull());
    QVERIFY(!window.isVisible());
    QCOMPARE(window.checkSave(), 1);
    QVERIFY(window.close());

    // The screen stays until the interface comes.
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    QVERIFY(guard);
    copySupportFiles();
    window.newProject();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    QVERIFY(!guard);
    QCOMPARE(window.windowTitle(), QString("untitled[*] - TRAC/Ex Examiner"));
    QVERIFY(window.isMaximized());
}

void TestMainWindow::interfaceComes()
{
    TestWindow &tw = get();
    QCOMPARE(tw.tabTexts(), QStringList({"Investigation Form", "ECS Chart"}));
    QCOMPARE(tw.tabs->currentIndex(), 0);
    QCOMPARE(tw.tabs->widget(0), tw.form);
    QCOMPARE(tw.window.getCurrentScene(), tw.chart());
    QVERIFY(!tw.chart()->getParentNote());
    tw.window.loadFullInterface();
    QCOMPARE(tw.tabs->count(), 2);
}

void TestMainWindow::titles()
{
    TestWindow &tw = get();
    tw.empty();
    QVERIFY(!tw.window.isWindowModified());
    tw.makeDirty();
    QVERIFY(tw.window.isWindowModified());
    tw.chart()->getUndoStack()->undo();
    QVERIFY(!tw.window.isWindowModified());
}

void TestMainWindow::sheetForParent()
{
    TestWindow &tw = get();
    tw.empty();
    Sticky *note = tw.addNote("Event", QPointF(200, 200));
    tw.makeFactor(note);

    QCOMPARE(tw.window.getSceneForParent(QString()), tw.chart());
    QCOMPARE(tw.window.getSceneForParent("{unknown}"), tw.chart());
    QCOMPARE(tw.window.getSceneForParent(note->getGUID())->getParentNote(), note);
}

void TestMainWindow::noteWithGuid()
{
    TestWindow &tw = get();
    tw.empty();
    Sticky *note = tw.addNote("Event", QPointF(200, 200));
    Line *line = tw.addLine(QPointF(400, 400), QPointF(600, 400));
    tw.makeFactor(note);
    Sticky *clone = tw.window.getFactorScenes().first()->getAllNotes().first();

    QCOMPARE(tw.window.getNoteWithGUID(note->getGUID()), note);
    QCOMPARE(tw.window.getNoteWithGUID(clone->getGUID()), clone);
    QVERIFY(!tw.window.getNoteWithGUID(line->getGUID()));
    QVERIFY(!tw.window.getNoteWithGUID("causalFactor_text_1"));
}

void TestMainWindow::tabsSwitchStacksAndPalette()
{
    TestWindow &tw = get();
    tw.empty();
    tw.makeFactor(tw.addNote("Event", QPointF(200, 200)));
    auto *palette = tw.window.findChild<ToolsToolBar *>();
    QAction *exportForm = tw.action("Export Form");
    ProjectScene *sheet = tw.window.getFactorScenes().first();

    tw.tabs->setCurrentIndex(2);
    QTRY_COMPARE(tw.window.getCurrentScene(), sheet);
    QCOMPARE(group()->activeStack(), sheet->getUndoStack());
    tw.tabs->setCurrentIndex(0);
    QTRY_COMPARE(group()->activeStack(), tw.form->getUndoStack());
    QCOMPARE(tw.window.getCurrentScene(), sheet);
    QVERIFY(exportForm->isVisible());
    tw.tabs->setCurrentIndex(1);
    QTRY_COMPARE(group()->activeStack(), tw.chart()->getUndoStack());
    QVERIFY(!exportForm->isVisible());
    QVERIFY(palette->isEnabled());
}

void TestMainWindow::leavingASheetClearsItsSelection()
{
    TestWindow &tw = get();
    tw.empty();
    tw.addNote("Event", QPointF(200, 200))->setSelected(true);
    tw.tabs->setCurrentIndex(0);
    QTRY_VERIFY(tw.chart()->selectedItems().isEmpty());
    QTRY_VERIFY(!tw.action("Delete item(s)")->isEnabled());
}

void TestMainWindow::eachSheetKeepsItsZoom()
{
    TestWindow &tw = get();
    tw.empty();
    tw.makeFactor(tw.addNote("Event", QPointF(200, 200)));
    auto *zoom = tw.window.findChild<ZoomWidget *>();
    auto *view = qobject_cast<GraphWidget *>(tw.tabs->widget(1));
    auto *sheetView = qobject_cast<GraphWidget *>(tw.tabs->widget(2));

    zoom->setZoom(150);
    QCOMPARE(view->transform().m11(), 1.5);
    tw.tabs->setCurrentIndex(2);
    QTRY_COMPARE(zoom->getZoom(), 100);
    QCOMPARE(sheetView->transform(), QTransform());
    emit sheetView->doZoom(false);
    QCOMPARE(sheetView->getZoom(), 90);
    tw.tabs->setCurrentIndex(0);
    QCoreApplication::processEvents();
    tw.tabs->setCurrentIndex(1);
    QTRY_COMPARE(zoom->getZoom(), 150);
    zoom->setZoom(100);
}

void TestMainWindow::zoomOnTheFormTabChangesNoSheet()
{
    TestWindow &tw = get();
    tw.empty();
    auto *zoom = tw.window.findChild<ZoomWidget *>();
    auto *view = qobject_cast<GraphWidget *>(tw.tabs->widget(1));
    tw.tabs->setCurrentIndex(0);
    QCoreApplication::processEvents();
    zoom->setZoom(50);
    QCOMPARE(zoom->getZoom(), 50);
    QCOMPARE(view->getZoom(), 100);
}

void TestMainWindow::headerLeadsToTheForm()
{
    TestWindow &tw = get();
    tw.empty();
    emit tw.chart()->headerEditRequested();
    QCOMPARE(tw.tabs->currentIndex(), 0);
}

void TestMainWindow::clearTakesSheetsAway()
{
    TestWindow &tw = get();
    tw.empty();
    tw.makeFactor(tw.addNote("Event", QPointF(200, 200)));
    tw.makeFactor(tw.addNote("Event", QPointF(400, 200)));
    tw.tabs->setCurrentIndex(3);
    QCoreApplication::processEvents();
    tw.window.clearInterface();
    QCoreApplication::processEvents();

    QCOMPARE(tw.tabTexts(), QStringList({"Investigation Form", "ECS Chart"}));
    QVERIFY(tw.window.getFactorScenes().isEmpty());
    QVERIFY(tw.chart()->getProjectItems().isEmpty());
    QCOMPARE(tw.window.getSceneForParent("{any}"), tw.chart());
    QVERIFY(!tw.file->isDirty());
}

/// What is pasted or exported next must not go to a sheet that nobody sees.
void TestMainWindow::clearBehindTheForm()
{
    TestWindow &tw = get();
    tw.empty();
    tw.makeFactor(tw.addNote("Event", QPointF(200, 200)));
    tw.tabs->setCurrentIndex(2);
    QCoreApplication::processEvents();
    tw.tabs->setCurrentIndex(0);
    QCoreApplication::processEvents();
    QVERIFY(tw.window.getCurrentScene() != tw.chart());
    tw.window.clearInterface();
    QCoreApplication::processEvents();
    QCOMPARE(tw.window.getCurrentScene(), tw.chart());
}

void TestMainWindow::clearTwiceInOneTurn()
{
    TestWindow &tw = get();
    tw.empty();
    tw.makeFactor(tw.addNote("Event", QPointF(200, 200)));
    tw.window.clearInterface();
    tw.window.clearInterface();
    QCoreApplication::processEvents();
    QCOMPARE(tw.tabs->count(), 2);
}

void TestMainWindow::helpOpensEachTime()
{
    TestWindow &tw = get();
    tw.action("Help Contents")->trigger();
    tw.action("Help Contents")->trigger();
    const QList<HelpBrowser *> windows = tw.window.findChildren<HelpBrowser *>();
    QCOMPARE(windows.size(), 2);
    for (HelpBrowser *help : windows) {
        QVERIFY(help->isVisible());
        QVERIFY(!help->isModal());
        help->close();
    }
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    QVERIFY(!tw.window.findChild<HelpBrowser *>());
}

EXAMINER_TEST_MAIN(TestMainWindow)
#include "testmainwindow.moc"
