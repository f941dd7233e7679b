#include "testing/project.h"
#include "testing/rows.h"
#include "testing/testmain.h"

#include <QSignalSpy>

/// Dirty mark, auto-save clock, and the names of auto-saves.
class TestDirtyState : public ProjectTest
{
    Q_OBJECT

    const QString data = makeDataFolder() + '/';

    static QTimer *getClock(const ProjectFile &file) { return file.findChild<QTimer *>(); }

private slots:
    void eachChangeRestartsTheClock()
    {
        TestProject project;
        QTimer *clock = getClock(project.file);
        QSignalSpy changed(&project.file, &ProjectFile::dirtyChanged);
        QVERIFY(clock->interval() == 180000 && !clock->isSingleShot() && !clock->isActive());
        project.file.setDirty();
        QVERIFY(project.file.isDirty() && clock->isActive());
        clock->setTimerType(Qt::PreciseTimer);
        QTRY_VERIFY(clock->remainingTime() < 180000 - 100);
        const int left = clock->remainingTime();
        project.file.setClean(false);
        QVERIFY(clock->remainingTime() > left);
        project.file.setClean(true);
        QVERIFY(!project.file.isDirty() && !clock->isActive());
        project.file.setDirty(false);
        QCOMPARE(changed, QList<QVariantList>({{true}, {true}, {false}, {false}}));
    }

    void names()
    {
        const struct {
            const char *file, *name;
            bool asksForName;
        } rows[] = {{"a.epf.b.EPF", "a.b", false},
                    {"b.epf.autosave", "b.epf.autosave", true},
                    {"b.AUTOSAVE", "b.AUTOSAVE", false}};
        for (const auto &row : rows) {
            const Row in(row.name);
            TestProject project(folder.filePath(row.file));
            QCOMPARE(project.file.getOpenProjectName(), QString(row.name));
            QCOMPARE(project.file.getAutoSaveNameForOpenFile(), data + row.file + ".autosave");
            QCOMPARE(project.file.requiresFilenamePrompt(), row.asksForName);
        }
    }

    void anAutoSaveLeavesTheStateAloneAndGoesWithASave()
    {
        TestProject project(makeFile());
        const QByteArray before = readBytes(path);
        const QString autoSave = data + "project.epf.autosave";
        project.file.setDirty();
        QSignalSpy changed(&project.file, &ProjectFile::dirtyChanged);
        QSignalSpy renamed(&project.file, &ProjectFile::projectNameChanged);
        QVERIFY(project.save("any name.autosave"));
        QVERIFY(QFile::exists(autoSave) && !QFile::exists("any name.autosave"));
        QVERIFY(changed.isEmpty() && renamed.isEmpty() && getClock(project.file)->isActive());
        QCOMPARE(project.file.getOpenFilename(), path);
        QCOMPARE(readBytes(path), before);
        QVERIFY(project.save(folder.filePath("other.epf")));
        QVERIFY(!QFile::exists(autoSave) && !getClock(project.file)->isActive());
    }

    void restoringWritesAgainAtOnce()
    {
        const QString autoSave = data + "bridge.epf.autosave";
        runSql(autoSave, sampleProject());
        TestProject project;
        connect(&project.file, &ProjectFile::requestAutoSave, &project,
                [&] { QVERIFY(project.save(project.file.getAutoSaveNameForOpenFile())); });
        QVERIFY(project.open(autoSave));
        QCOMPARE(project.file.getOpenFilename(), QString("bridge.epf.autosave"));
        QVERIFY(project.file.isDirty() && !QFile::exists(autoSave));
        QTRY_VERIFY(QFile::exists(autoSave + ".autosave"));
        QCOMPARE(runSql(autoSave + ".autosave", {"SELECT guid FROM items"}).size(), 6);
    }

    void theClockRestsDuringASave()
    {
        TestProject project(makeFile());
        project.file.setDirty();
        QTimer *clock = getClock(project.file);
        clock->setInterval(1);
        QSignalSpy requested(&project.file, &ProjectFile::requestAutoSave);
        QSignalSpy struck(clock, &QTimer::timeout);
        connect(&project.file, &ProjectFile::itemSaved, &project, [&] {
            const int before = struck.count();
            QTRY_VERIFY(struck.count() > before);
            QVERIFY(requested.isEmpty());
        });
        QVERIFY(project.save(project.file.getAutoSaveNameForOpenFile()));
        clock->stop(); // only the request that had to wait is left
        QTRY_COMPARE(requested.count(), 1);
        requested.clear();
        clock->start();
        QVERIFY(project.save(path)); // clean now: nothing to come back to
        QCoreApplication::processEvents();
        QVERIFY(requested.isEmpty());
    }

    void anEndlessEditAsksForASnapshot()
    {
        TestProject project;
        QSignalSpy requested(&project.file, &ProjectFile::requestSnapshot);
        project.file.setSnapshotInterval(100);
        QTimer editing;
        connect(&editing, &QTimer::timeout, this, [&project] { project.file.setDirty(); });
        editing.start(1);
        QTRY_VERIFY(requested.count() >= 1);
    }

    void changesByOthersAreSeen()
    {
        TestProject project(makeFile());
        QVERIFY(!project.file.hasChangedOnDisk());
        runSql(path, {"UPDATE items SET text='EVENT' WHERE guid='{e}'"}); // same size
        QVERIFY(project.file.hasChangedOnDisk());
        QVERIFY(project.save(path) && !project.file.hasChangedOnDisk());
        QVERIFY(QFile::remove(path) && !project.file.hasChangedOnDisk());
    }
};

EXAMINER_TEST_MAIN(TestDirtyState)
#include "testdirtystate.moc"
