#include "testing/dialogs.h"
#include "testing/window.h"

#include <QFileOpenEvent>
#include <QSqlDatabase>
#include <QSqlQuery>

/// A project between window and disk. All tests share one window, emptied before each.
class TestLifecycle : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void init();
    void cleanupTestCase();

    void newAsksAboutChanges();
    void openRefusedByTheUser();
    void openDialogCancelled();
    void openedProject();
    void failedOpen_data();
    void failedOpen();
    void openThroughTheDialog();
    void quickStart();
    void quickStartRefusedByTheUser();
    void recentFiles();

    void saveAsksForAName_data();
    void saveAsksForAName();
    void cancelledSaveLeavesTheActionOff();
    void saveAsReplacesAndKeepsTheFormer();
    void saveAndOpenAgain();
    void oddNames_data();
    void oddNames();
    void failedSave();
    void failedCommit();
    void saveAfterAnotherProgramWrote();
    void saveOfAFileThatIsGone();

    void autoSave();
    void restoredAutoSaveIsWrittenAgain();
    void autoSaveOfACrashIsKept();
    void closingAsks();
    void closingKeepsWhatCouldNotBeSaved();
    void closingLeavesTheAutoSaveThatAloneHoldsTheWork();
    void closingKeepsWhatNobodyAskedAbout();
    void undoneWorkIsNotKept();
    void longEditingIsKept();

    void openRequestOfThePlatform();
    void nothingReenters();

private:
    QString path(const QString &name) const { return folder->filePath(name); }
    QString dataFile(const QString &name) const { return makeDataFolder() + "/" + name; }
    QString sample() const { return QCoreApplication::applicationDirPath() + "/sample.epf"; }
    QString copySample(const QString &name) const;
    QStringList keptCopies() const;
    void saveTo(const QString &name);

    std::unique_ptr<QTemporaryDir> folder;
    std::unique_ptr<TestWindow> tw;
};

namespace
{

const char Untitled[] = "untitled[*] - TRAC/Ex Examiner";
const char Question[] = "The project contains unsaved changes\nDo you want to save the changes?";

} // namespace

void TestLifecycle::initTestCase()
{
    tw = std::make_unique<TestWindow>();
}

void TestLifecycle::init()
{
    folder = std::make_unique<QTemporaryDir>();
    QSettings().clear();
    QDir(dataFile("kept")).removeRecursively();
    tw->empty();
    tw->action("&Save")->setEnabled(true);
}

void TestLifecycle::cleanupTestCase()
{
    tw.reset();
}

QString TestLifecycle::copySample(const QString &name) const
{
    QFile::copy(sample(), path(name));
    return path(name);
}

QStringList TestLifecycle::keptCopies() const
{
    return QDir(dataFile("kept")).entryList(QDir::Files);
}

void TestLifecycle::saveTo(const QString &name)
{
    DialogAnswer answer(fileChoice(name));
    tw->window.saveProjectAs();
    QVERIFY(answer.wasAsked());
}

void TestLifecycle::newAsksAboutChanges()
{
    tw->makeDirty();
    BoxAnswer cancel(QMessageBox::Cancel);
    tw->window.newProject();
    QVERIFY(cancel.wasAsked());
    QCOMPARE(cancel.title, QString("TRAC/Ex Examiner"));
    QCOMPARE(cancel.text, QString(Question));
    QCOMPARE(cancel.icon, QMessageBox::Question);
    QCOMPARE(cancel.buttons, QMessageBox::Save | QMessageBox::Discard | QMessageBox::Cancel);
    QCOMPARE(cancel.defaultButton, QString("Save"));
    QCOMPARE(tw->chart()->getProjectItems().size(), 1);

    BoxAnswer discard(QMessageBox::Discard);
    tw->window.newProject();
    QVERIFY(discard.wasAsked());
    QVERIFY(tw->chart()->getProjectItems().isEmpty());
    QVERIFY(!tw->window.isWindowModified());
    QCOMPARE(tw->window.windowTitle(), QString(Untitled));
    QVERIFY(keptCopies().isEmpty());
}

void TestLifecycle::openRefusedByTheUser()
{
    tw->makeDirty();
    BoxAnswer cancel(QMessageBox::Cancel);
    tw->window.openProject();
    QVERIFY(cancel.wasAsked());
    QCOMPARE(tw->chart()->getProjectItems().size(), 1);
    QVERIFY(tw->file->isDirty());
}

void TestLifecycle::openDialogCancelled()
{
    tw->addNote("Event", QPointF(200, 200));
    QString caption;
    DialogAnswer cancelled([&](QWidget *widget) {
        caption = widget->windowTitle();
        return cancellation()(widget);
    });
    tw->window.openProject();
    QVERIFY(cancelled.wasAsked());
    QCOMPARE(caption, QString("Open project file..."));
    QCOMPARE(tw->chart()->getProjectItems().size(), 1);
}

void TestLifecycle::openedProject()
{
    const QString name = copySample("a plant.epf");
    tw->window.openProject(name);
    QCOMPARE(tw->window.windowTitle(), name + "[*] - TRAC/Ex Examiner");
    QVERIFY(!tw->window.isWindowModified());
    QVERIFY(!tw->chart()->getAllNotes().isEmpty());
    QCOMPARE(tw->tabs->count(), 2 + tw->chart()->getAllCausalFactors().size());
    QCOMPARE(QSettings().value("recentFiles").toStringList(), QStringList(name));
    QCOMPARE(QSettings().value("lastOpenPath").toString(), folder->path());
    QCOMPARE(tw->view()->viewportUpdateMode(), QGraphicsView::MinimalViewportUpdate);
}

void TestLifecycle::failedOpen_data()
{
    QTest::addColumn<QByteArray>("content");

    QTest::newRow("no database") << QByteArray(5000, 'x');
    QTest::newRow("torn database") << QByteArray("SQLite format 3\0", 16);
}

void TestLifecycle::failedOpen()
{
    QFETCH(QByteArray, content);
    tw->window.openProject(copySample("good.epf"));
    QFile file(path("bad.epf"));
    QVERIFY(file.open(QIODevice::WriteOnly) && file.write(content) == content.size());
    file.close();

    BoxAnswer box(QMessageBox::Ok);
    tw->window.openProject(path("bad.epf"));
    QVERIFY(box.wasAsked());
    QCOMPARE(box.title, QString("Open failed"));
    QCOMPARE(box.text, QString("Opening failed, this does not seem to be a valid project file."));
    QCOMPARE(box.icon, QMessageBox::Critical);
    QCOMPARE(tw->window.windowTitle(), QString(Untitled));
    QCOMPARE(tw->tabs->count(), 2);
    QVERIFY(tw->chart()->getProjectItems().isEmpty());
    QCOMPARE(QSettings().value("recentFiles").toStringList(), QStringList(path("good.epf")));
    QCOMPARE(tw->view()->viewportUpdateMode(), QGraphicsView::MinimalViewportUpdate);
    QVERIFY(file.open(QIODevice::ReadOnly));
    QCOMPARE(file.readAll(), content);
}

void TestLifecycle::openThroughTheDialog()
{
    const QString name = copySample("x.epf");
    QSettings().setValue("lastOpenPath", folder->path());
    QString start;
    DialogAnswer answer([&](QWidget *widget) {
        if (auto *dialog = qobject_cast<QFileDialog *>(widget)) {
            start = dialog->directory().path();
            // The separator before "Project" is part of the filter.
            if (dialog->nameFilters() != QStringList("TRAC/Ex Examiner Project (*.epf)"))
                return false;
        }
        return fileChoice(name)(widget);
    });
    tw->action("&Open Project...")->trigger();
    QVERIFY(answer.wasAsked());
    QCOMPARE(start, folder->path());
    QCOMPARE(tw->file->getOpenFilename(), name);
}

void TestLifecycle::quickStart()
{
    tw->action("Quick Start &Template")->trigger();
    QVERIFY(!tw->chart()->getAllNotes().isEmpty());
    QCOMPARE(tw->window.windowTitle(), QString(Untitled));
    QVERIFY(tw->file->requiresFilenamePrompt());
    QVERIFY(!tw->file->isDirty());
    QVERIFY(QSettings().value("recentFiles").toStringList().isEmpty());

    DialogAnswer answer(fileChoice(path("started.epf")));
    tw->action("&Save")->trigger();
    QVERIFY(answer.wasAsked());
    QVERIFY(QFile::exists(path("started.epf")));
}

void TestLifecycle::quickStartRefusedByTheUser()
{
    tw->window.openProject(copySample("x.epf"));
    tw->makeDirty();
    BoxAnswer cancel(QMessageBox::Cancel);
    tw->window.openQuickStart();
    QVERIFY(cancel.wasAsked());
    // The project stays, but its name and its mark are gone.
    QVERIFY(tw->chart()->getProjectItems().size() > 1);
    QCOMPARE(tw->window.windowTitle(), QString(Untitled));
    QVERIFY(!tw->window.isWindowModified());
    // So nobody will ask about it: it is kept.
    tw->window.newProject();
    QCOMPARE(keptCopies().size(), 1);
}

void TestLifecycle::recentFiles()
{
    for (const char *name : {"1", "2", "3", "4"})
        tw->window.addRecentFile(name);
    tw->window.addRecentFile("2");
    QCOMPARE(QSettings().value("recentFiles").toStringList(), QStringList({"4", "3", "2", "1"}));
    tw->window.addRecentFile("5");
    QCOMPARE(QSettings().value("recentFiles").toStringList(), QStringList({"5", "4", "3", "2"}));
}

void TestLifecycle::saveAsksForAName_data()
{
    QTest::addColumn<QString>("typed");
    QTest::addColumn<QString>("written");

    QTest::newRow("with its ending") << "plant.epf"
                                     << "plant.epf";
    QTest::newRow("without ending") << "plant"
                                    << "plant.epf";
    QTest::newRow("capital ending") << "plant.EPF"
                                    << "plant.EPF.epf";
}

void TestLifecycle::saveAsksForAName()
{
    QFETCH(QString, typed);
    QFETCH(QString, written);
    tw->makeDirty();
    DialogAnswer answer(fileChoice(path(typed)));
    tw->action("&Save")->trigger();
    QVERIFY(answer.wasAsked());
    QVERIFY(QFile::exists(path(written)));
    QCOMPARE(tw->window.windowTitle(), path(written) + "[*] - TRAC/Ex Examiner");
    QVERIFY(!tw->window.isWindowModified());
    QCOMPARE(QSettings().value("recentFiles").toStringList(), QStringList(path(written)));
    QCOMPARE(QSettings().value("lastSavePath").toString(), folder->path());
    QVERIFY(tw->action("&Save")->isEnabled());
}

void TestLifecycle::cancelledSaveLeavesTheActionOff()
{
    tw->makeDirty();
    DialogAnswer cancelled(cancellation());
    tw->action("&Save")->trigger();
    QVERIFY(cancelled.wasAsked());
    QVERIFY(!tw->action("&Save")->isEnabled());
    QVERIFY(tw->file->isDirty());
    saveTo(path("x.epf"));
    QVERIFY(tw->action("&Save")->isEnabled());
}

void TestLifecycle::saveAsReplacesAndKeepsTheFormer()
{
    const QString name = copySample("other.epf");
    QFile former(name);
    QVERIFY(former.open(QIODevice::ReadOnly));
    const QByteArray content = former.readAll();
    former.close();
    tw->addNote("Event", QPointF(200, 200));
    DialogAnswer answer(fileChoice(name));
    BoxAnswer overwrite(QMessageBox::Yes);
    tw->window.saveProjectAs();

    QCOMPARE(keptCopies().size(), 1);
    QFile kept(dataFile("kept/") + keptCopies().first());
    QVERIFY(kept.open(QIODevice::ReadOnly));
    QCOMPARE(kept.readAll(), content);
    tw->empty();
    tw->window.openProject(name);
    QCOMPARE(tw->chart()->getProjectItems().size(), 1);
}

void TestLifecycle::saveAndOpenAgain()
{
    tw->window.openProject(copySample("x.epf"));
    const int notes = tw->chart()->getAllNotes().size();
    const QStringList tabs = tw->tabTexts();
    const FormValues values = tw->form->getAllFieldValues();
    tw->makeDirty();
    tw->action("&Save")->trigger();
    QVERIFY(!tw->file->isDirty());
    tw->window.newProject();
    QCOMPARE(tw->tabs->count(), 2);
    tw->window.openProject(path("x.epf"));

    QCOMPARE(tw->chart()->getAllNotes().size(), notes + 1);
    QStringList reopened = tw->tabTexts();
    reopened.sort();
    QStringList expected = tabs;
    expected.sort();
    QCOMPARE(reopened, expected);
    tw->waitForForm();
    const FormValues again = tw->form->getAllFieldValues();
    for (auto value = values.cbegin(); value != values.cend(); ++value)
        QCOMPARE(again.value(value.key()).value, value->value);
}

void TestLifecycle::oddNames_data()
{
    QTest::addColumn<QString>("name");

    QTest::newRow("unicode") << QString::fromUtf8("Brücke 橋 🌉.epf");
    QTest::newRow("line break") << "two\nlines.epf";
    QTest::newRow("quotes and signs") << "it's \"100%\" #1 [*] &c.epf";
}

void TestLifecycle::oddNames()
{
    QFETCH(QString, name);
    tw->addNote("Event", QPointF(200, 200));
    // As the dialog would give it; typing into its field can't make every name.
    QVERIFY(tw->file->saveFile(path(name), tw->chart()->getProjectItems(), {}));
    tw->makeDirty();
    tw->window.onAutoSaveRequested();
    QVERIFY(QFile::exists(dataFile(name + ".autosave")));
    tw->action("&Save")->trigger();
    QVERIFY(!QFile::exists(dataFile(name + ".autosave")));
    tw->empty();
    tw->window.openProject(path(name));
    QCOMPARE(tw->chart()->getProjectItems().size(), 2);
    QCOMPARE(QSettings().value("recentFiles").toStringList(), QStringList(path(name)));
}

void TestLifecycle::failedSave()
{
    tw->makeDirty();
    QDir(folder->path()).mkdir("folder.epf");
    const QString title = tw->window.windowTitle();
    QVERIFY(QFile(path("file")).open(QIODevice::WriteOnly));
    QTemporaryDir gone;
    QVERIFY(tw->file->saveFile(gone.filePath("x.epf"), {}, {}));
    QVERIFY(gone.remove());
    tw->makeDirty();

    BoxAnswer box(QMessageBox::Ok);
    tw->action("&Save")->trigger();
    QVERIFY(box.wasAsked());
    QCOMPARE(box.title, QString("Save failed"));
    QCOMPARE(box.text, "Saving failed.\nThe error message is: " + tw->file->getLastError());
    QCOMPARE(box.icon, QMessageBox::Critical);
    QVERIFY(tw->file->isDirty());
    QCOMPARE(tw->window.windowTitle(), title);
    QVERIFY(tw->action("&Save")->isEnabled());
    QVERIFY(!QApplication::activeModalWidget());
}

/// The driver waits five seconds for the reader before it gives up.
void TestLifecycle::failedCommit()
{
    tw->makeDirty();
    saveTo(path("x.epf"));
    tw->makeDirty();
    {
        QSqlDatabase reader = QSqlDatabase::addDatabase("QSQLITE", "reader");
        reader.setDatabaseName(path("x.epf"));
        QVERIFY(reader.open());
        QSqlQuery query(reader);
        QVERIFY(query.exec("SELECT * FROM properties") && query.next());
        QVERIFY_EXCEPTION_THROWN(tw->window.saveProject(), QString);
        QVERIFY(!QApplication::activeModalWidget());
        BoxAnswer box(QMessageBox::Ok);
        tw->window.onHandlerFailed("database is locked");
        QCOMPARE(box.text, QString("Saving failed.\nThe error message is: database is locked"));
        reader.close();
    }
    QSqlDatabase::removeDatabase("reader");
    QVERIFY(tw->file->isDirty());
    QVERIFY(tw->action("&Save")->isEnabled());
    tw->action("&Save")->trigger();
    QVERIFY(!tw->file->isDirty());
}

void TestLifecycle::saveAfterAnotherProgramWrote()
{
    tw->window.openProject(copySample("x.epf"));
    tw->makeDirty();
    tw->action("&Save")->trigger();
    const int kept = keptCopies().size();
    QVERIFY(QFile::remove(path("x.epf")));
    QVERIFY(QFile::copy(sample(), path("x.epf")));
    tw->makeDirty();
    tw->action("&Save")->trigger();

    QCOMPARE(keptCopies().size(), kept + 1);
    QVERIFY(tw->window.statusBar()->currentMessage().contains("Another program"));
    QVERIFY(!tw->file->isDirty());
}

void TestLifecycle::saveOfAFileThatIsGone()
{
    tw->window.openProject(copySample("x.epf"));
    const int items = tw->chart()->getProjectItems().size();
    QVERIFY(QFile::remove(path("x.epf")));
    tw->makeDirty();
    tw->action("&Save")->trigger();
    tw->empty();
    tw->window.openProject(path("x.epf"));
    QCOMPARE(tw->chart()->getProjectItems().size(), items + 1);
}

void TestLifecycle::autoSave()
{
    tw->window.openProject(copySample("x.epf"));
    tw->makeDirty();
    const QString title = tw->window.windowTitle();
    tw->window.onAutoSaveRequested();

    QVERIFY(QFile::exists(dataFile("x.epf.autosave")));
    QVERIFY(tw->file->isDirty());
    QCOMPARE(tw->window.windowTitle(), title);
    QVERIFY(tw->window.statusBar()->currentMessage().isEmpty());
    QVERIFY(tw->action("&Save")->isEnabled());
    tw->action("&Save")->trigger();
    QVERIFY(!QFile::exists(dataFile("x.epf.autosave")));
}

void TestLifecycle::restoredAutoSaveIsWrittenAgain()
{
    QFile::copy(sample(), dataFile("plant.epf.autosave"));
    tw->window.openProject(dataFile("plant.epf.autosave"), false);
    QCOMPARE(tw->window.windowTitle(), QString("plant.epf.autosave[*] - TRAC/Ex Examiner"));
    QVERIFY(tw->window.isWindowModified());
    QVERIFY(QSettings().value("recentFiles").toStringList().isEmpty());
    QVERIFY(!QFile::exists(dataFile("plant.epf.autosave")));
    const QString again = dataFile("plant.epf.autosave.autosave");
    QTRY_VERIFY(QFile::exists(again));

    DialogAnswer answer(fileChoice(path("plant.epf")));
    tw->action("&Save")->trigger();
    QVERIFY(answer.wasAsked());
    QVERIFY(!QFile::exists(again));
}

void TestLifecycle::autoSaveOfACrashIsKept()
{
    const QString left = dataFile("untitled.autosave");
    QFile::copy(sample(), left);
    tw->window.openProject(copySample("x.epf"));
    QVERIFY(!QFile::exists(left));
    QCOMPARE(keptCopies().size(), 1);
    QVERIFY(!keptCopies().first().endsWith(".autosave"));
}

void TestLifecycle::closingAsks()
{
    tw->makeDirty();
    tw->window.onAutoSaveRequested();
    BoxAnswer cancel(QMessageBox::Cancel);
    QVERIFY(!tw->window.close());
    QVERIFY(cancel.wasAsked());
    QVERIFY(tw->window.isVisible());
    QVERIFY(QFile::exists(dataFile("untitled.autosave")));

    BoxAnswer discard(QMessageBox::Discard);
    QVERIFY(tw->window.close());
    QVERIFY(discard.wasAsked());
    QVERIFY(!QFile::exists(dataFile("untitled.autosave")));
    QVERIFY(keptCopies().isEmpty());
    tw->window.show();
}

void TestLifecycle::closingKeepsWhatCouldNotBeSaved()
{
    tw->makeDirty();
    BoxAnswer save(QMessageBox::Save);
    DialogAnswer cancelled([](QWidget *widget) {
        return qobject_cast<QFileDialog *>(widget) && cancellation()(widget);
    });
    // The save counts as done, whatever became of it.
    QVERIFY(tw->window.close());
    QVERIFY(save.wasAsked() && cancelled.wasAsked());
    QCOMPARE(keptCopies().size(), 1);
    tw->window.show();
}

void TestLifecycle::closingLeavesTheAutoSaveThatAloneHoldsTheWork()
{
    QFile inTheWay(dataFile("kept"));
    QVERIFY(QDir(dataFile("kept")).removeRecursively() && inTheWay.open(QIODevice::WriteOnly));
    tw->makeDirty();
    tw->window.onAutoSaveRequested();
    BoxAnswer save(QMessageBox::Save);
    DialogAnswer cancelled([](QWidget *widget) {
        return qobject_cast<QFileDialog *>(widget) && cancellation()(widget);
    });
    QVERIFY(tw->window.close());
    QVERIFY(save.wasAsked() && cancelled.wasAsked());
    QVERIFY(QFile::remove(dataFile("untitled.autosave")));
    QVERIFY(inTheWay.remove());
    tw->window.show();
}

void TestLifecycle::closingKeepsWhatNobodyAskedAbout()
{
    tw->makeFactor(tw->addNote("Event", QPointF(200, 200)));
    ProjectScene *sheet = tw->window.getFactorScenes().first();
    saveTo(path("x.epf"));
    sheet->createItemAt(QPointF(600, 600), EventTool);
    tw->makeDirty();
    tw->chart()->getUndoStack()->undo();
    QVERIFY(!tw->window.isWindowModified());

    QVERIFY(tw->window.close());
    const QStringList kept = keptCopies();
    QCOMPARE(kept.size(), 1);
    tw->empty();
    tw->window.openProject(dataFile("kept/") + kept.first());
    QCOMPARE(tw->window.getFactorScenes().first()->getProjectItems().size(), 2);
    tw->window.show();
}

void TestLifecycle::undoneWorkIsNotKept()
{
    tw->makeDirty();
    tw->chart()->getUndoStack()->undo();
    tw->window.newProject();
    QVERIFY(keptCopies().isEmpty());
}

void TestLifecycle::longEditingIsKept()
{
    tw->makeDirty();
    emit tw->file->requestSnapshot();
    QCOMPARE(keptCopies().size(), 1);
    QVERIFY(tw->file->isDirty());
    QCOMPARE(tw->window.windowTitle(), QString(Untitled));
}

void TestLifecycle::openRequestOfThePlatform()
{
    QFileOpenEvent event(copySample("x.epf"));
    QVERIFY(tw->window.eventFilter(qApp, &event));
    QCOMPARE(tw->file->getOpenFilename(), path("x.epf"));
    QCOMPARE(QSettings().value("recentFiles").toStringList(), QStringList(path("x.epf")));
    QEvent other(QEvent::User);
    QVERIFY(!tw->window.eventFilter(qApp, &other));
}

void TestLifecycle::nothingReenters()
{
    copySample("other.epf");
    tw->makeDirty();
    saveTo(path("x.epf"));
    tw->makeDirty();
    int calls = 0;
    const auto connection = connect(tw->file, &ProjectFile::itemSaved, this, [&] {
        ++calls;
        tw->window.saveProject();
        tw->window.onAutoSaveRequested();
        tw->window.newProject();
        tw->window.openProject(path("other.epf"));
        QVERIFY(!tw->window.close());
    });
    tw->action("&Save")->trigger();
    disconnect(connection);
    QCOMPARE(calls, 2);
    QCOMPARE(tw->file->getOpenFilename(), path("x.epf"));
    QVERIFY(!tw->file->isDirty());
    // The one that waited comes when the save has ended.
    QTRY_COMPARE(tw->file->getOpenFilename(), path("other.epf"));
}

EXAMINER_TEST_MAIN(TestLifecycle)
#include "testlifecycle.moc"
