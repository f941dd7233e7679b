#include "project/projectfile.h"
#include "project/saveprogressdialog.h"
#include "testing/project.h"
#include "testing/testmain.h"

#include <QSignalSpy>

/// Dirty mark, auto-save clock, and the names of auto-saves.
class TestDirtyState : public QObject
{
    Q_OBJECT

private slots:
    void init();

    void eachChangeRestartsTheClock();
    void displayNames_data();
    void displayNames();
    void autoSaveNames();
    void anAutoSaveLeavesTheStateAlone();
    void aSaveRemovesTheAutoSave();
    void aSaveUnderANewNameRemovesTheOldAutoSave();
    void discardingRemovesTheAutoSave();
    void restoringWritesAgainAtOnce();
    void theClockRestsDuringASave();
    void aRemovedProjectCannotBeAutoSaved();
    void anEndlessEditAsksForASnapshot();
    void changesByOthersAreSeen();
    void progressCannotBeDismissed();

private:
    static QTimer *getClock(const ProjectFile &file) { return file.findChild<QTimer *>(); }
    QString makeFile();

    std::unique_ptr<QTemporaryDir> folder;
};

void TestDirtyState::init()
{
    folder = std::make_unique<QTemporaryDir>();
    QDir data(makeDataFolder());
    const QStringList old = data.entryList({"*.autosave"}, QDir::Files);
    for (const QString &name : old)
        data.remove(name);
}

QString TestDirtyState::makeFile()
{
    const QString path = folder->filePath("project.epf");
    runSql(path, getSampleStatements());
    return path;
}

void TestDirtyState::eachChangeRestartsTheClock()
{
    TestProject project;
    QTimer *clock = getClock(project.file);
    QSignalSpy changed(&project.file, &ProjectFile::dirtyChanged);
    QCOMPARE(clock->interval(), 180000);
    QVERIFY(!clock->isSingleShot());
    QVERIFY(!clock->isActive());

    project.file.setDirty();
    QVERIFY(project.file.isDirty() && clock->isActive());
    QSignalSpy requested(&project.file, &ProjectFile::requestAutoSave);
    clock->setInterval(500);
    for (int i = 0; i < 12; ++i) {
        QTest::qWait(50);
        project.file.setClean(false);
    }
    QVERIFY(requested.isEmpty());
    QTRY_VERIFY(requested.count() >= 2);
    changed.clear();
    project.file.setDirty();
    project.file.setClean(true);
    QVERIFY(!project.file.isDirty() && !clock->isActive());
    project.file.setDirty(false);
    QCOMPARE(changed, QList<QVariantList>({{true}, {false}, {false}}));
}

void TestDirtyState::displayNames_data()
{
    QTest::addColumn<QString>("filename");
    QTest::addColumn<QString>("name");
    QTest::addColumn<bool>("asksForName");

    QTest::newRow("a path") << "a folder/bridge.epf"
                            << "bridge" << false;
    QTest::newRow("the ending in capitals") << "f/bridge.EPF"
                                            << "bridge" << false;
    QTest::newRow("the ending twice") << "f/a.epf.b.epf"
                                      << "a.b" << false;
    QTest::newRow("an auto-save") << "f/bridge.epf.autosave"
                                  << "bridge.epf.autosave" << true;
    QTest::newRow("capitals are no auto-save") << "f/b.AUTOSAVE"
                                               << "b.AUTOSAVE" << false;
}

void TestDirtyState::displayNames()
{
    QFETCH(QString, filename);
    QFETCH(QString, name);
    QFETCH(bool, asksForName);

    const QString path = folder->filePath(filename);
    QDir().mkpath(QFileInfo(path).path());
    TestProject project;
    QCOMPARE(project.file.getOpenProjectName(), QString("untitled"));
    QVERIFY(project.file.requiresFilenamePrompt());
    QVERIFY(project.open(path));
    QCOMPARE(project.file.getOpenProjectName(), name);
    QCOMPARE(project.file.requiresFilenamePrompt(), asksForName);
    project.file.resetOpenFilename();
    QCOMPARE(project.file.getOpenFilename(), QString("untitled"));
}

void TestDirtyState::autoSaveNames()
{
    TestProject project;
    const QString data = makeDataFolder();
    QCOMPARE(project.file.getAutoSaveNameForOpenFile(), data + "/untitled.autosave");
    const QString path = makeFile();
    QVERIFY(project.open(path));
    QCOMPARE(project.file.getAutoSaveNameForOpenFile(), data + "/project.epf.autosave");
    QVERIFY(QFile::remove(path));
    QCOMPARE(project.file.getAutoSaveNameForOpenFile(), data + "/" + path + ".autosave");
}

void TestDirtyState::anAutoSaveLeavesTheStateAlone()
{
    const QString path = makeFile();
    TestProject project;
    QVERIFY(project.open(path));
    const QByteArray before = readBytes(path);
    project.file.setDirty();
    QSignalSpy changed(&project.file, &ProjectFile::dirtyChanged);
    QSignalSpy renamed(&project.file, &ProjectFile::projectNameChanged);

    QVERIFY(project.save("any name.autosave"));
    QVERIFY(QFile::exists(makeDataFolder() + "/project.epf.autosave"));
    QVERIFY(!QFile::exists("any name.autosave"));
    QVERIFY(project.file.isDirty() && getClock(project.file)->isActive());
    QCOMPARE(project.file.getOpenFilename(), path);
    QVERIFY(changed.isEmpty() && renamed.isEmpty());
    QCOMPARE(readBytes(path), before);
}

void TestDirtyState::aSaveRemovesTheAutoSave()
{
    const QString path = makeFile();
    TestProject project;
    QVERIFY(project.open(path));
    const QString autoSave = project.file.getAutoSaveNameForOpenFile();
    project.file.setDirty();
    QVERIFY(project.save(autoSave));
    QVERIFY(QFile::exists(autoSave));
    QVERIFY(project.save(path));
    QVERIFY(!QFile::exists(autoSave));
    QVERIFY(!project.file.isDirty() && !getClock(project.file)->isActive());
}

void TestDirtyState::aSaveUnderANewNameRemovesTheOldAutoSave()
{
    TestProject project;
    QVERIFY(project.save("x.autosave"));
    const QString autoSave = makeDataFolder() + "/untitled.autosave";
    QVERIFY(QFile::exists(autoSave));
    QVERIFY(project.save(folder->filePath("named.epf")));
    QVERIFY(!QFile::exists(autoSave));
    QCOMPARE(project.file.getOpenProjectName(), QString("named"));
}

void TestDirtyState::discardingRemovesTheAutoSave()
{
    TestProject project;
    project.file.discardAutoSaveFile(); // none there
    QVERIFY(project.save("x.autosave"));
    project.file.discardAutoSaveFile();
    QVERIFY(!QFile::exists(makeDataFolder() + "/untitled.autosave"));
}

void TestDirtyState::restoringWritesAgainAtOnce()
{
    const QString path = makeDataFolder() + "/bridge.epf.autosave";
    runSql(path, getSampleStatements());
    TestProject project;
    QSignalSpy requested(&project.file, &ProjectFile::requestAutoSave);
    connect(&project.file, &ProjectFile::requestAutoSave, &project,
            [&project] { QVERIFY(project.save(project.file.getAutoSaveNameForOpenFile())); });

    QVERIFY(project.open(path));
    QCOMPARE(project.file.getOpenFilename(), QString("bridge.epf.autosave"));
    QVERIFY(project.file.requiresFilenamePrompt());
    QVERIFY(project.file.isDirty() && getClock(project.file)->isActive());
    QVERIFY(!QFile::exists(path));
    QTRY_COMPARE(requested.count(), 1);
    QVERIFY(QFile::exists(path + ".autosave"));
    QCOMPARE(readRows(path + ".autosave", "SELECT guid FROM items"),
             QStringList({"{b}", "{e}", "{f}", "{l}", "{m}", "{n}"}));
}

void TestDirtyState::theClockRestsDuringASave()
{
    const QString path = makeFile();
    TestProject project;
    QVERIFY(project.open(path));
    project.file.setDirty();
    getClock(project.file)->setInterval(1);
    QSignalSpy requested(&project.file, &ProjectFile::requestAutoSave);
    int expected = 0;
    connect(&project.file, &ProjectFile::itemSaved, &project, [&] {
        QTest::qWait(10);
        QCOMPARE(requested.count(), expected);
    });
    QVERIFY(project.save(project.file.getAutoSaveNameForOpenFile()));
    getClock(project.file)->stop(); // only the request that had to wait is left
    expected = 1;
    QTRY_COMPARE(requested.count(), expected);

    getClock(project.file)->start();
    QVERIFY(project.save(path)); // clean now: nothing to come back to
    QTest::qWait(20);
    QCOMPARE(requested.count(), 1);
}

void TestDirtyState::aRemovedProjectCannotBeAutoSaved()
{
    const QString path = makeFile();
    TestProject project;
    QVERIFY(project.open(path));
    QVERIFY(QFile::remove(path));
    QVERIFY(!project.save(project.file.getAutoSaveNameForOpenFile()));
    QVERIFY(!project.file.getLastError().isEmpty());
    QVERIFY(project.save(path));
    QVERIFY(!project.file.hasChangedOnDisk());
}

void TestDirtyState::anEndlessEditAsksForASnapshot()
{
    TestProject project;
    QSignalSpy requested(&project.file, &ProjectFile::requestSnapshot);
    project.file.setSnapshotInterval(60);
    for (int i = 0; i < 8; ++i) {
        project.file.setDirty();
        QTest::qWait(10);
    }
    QTRY_VERIFY(requested.count() >= 1);
    project.file.setDirty(false);
    const int count = requested.count();
    QTest::qWait(100);
    QCOMPARE(requested.count(), count);
}

void TestDirtyState::changesByOthersAreSeen()
{
    const QString path = makeFile();
    TestProject project;
    QVERIFY(project.open(path));
    QVERIFY(!project.file.hasChangedOnDisk());
    runSql(path, {"UPDATE items SET text='EVENT' WHERE guid='{e}'"}); // same size
    QVERIFY(project.file.hasChangedOnDisk());
    QVERIFY(project.save(path));
    QVERIFY(!project.file.hasChangedOnDisk());
    QVERIFY(QFile::remove(path));
    QVERIFY(!project.file.hasChangedOnDisk());
}

void TestDirtyState::progressCannotBeDismissed()
{
    SaveProgressDialog dialog("Saving...", 3, nullptr);
    dialog.show();
    dialog.incrementProgress();
    QCOMPARE(dialog.value(), 1);
    QTest::keyClick(&dialog, Qt::Key_Escape);
    dialog.close();
    QVERIFY(dialog.isVisible());
    QVERIFY(!dialog.wasCanceled());
    dialog.incrementProgress();
    dialog.incrementProgress();
    QCOMPARE(dialog.value(), 3);
}

EXAMINER_TEST_MAIN(TestDirtyState)
#include "testdirtystate.moc"
