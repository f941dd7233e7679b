#include "testing/project.h"
#include "testing/rows.h"
#include "testing/testmain.h"

#include <QRegularExpression>
#include <QSignalSpy>
#include <QTimer>

#include <csignal>
#include <sys/resource.h>

/// What stands in a file after a save, and what keeps work from being lost: dirty mark, auto-save
/// clock, and the kept copies of files that were replaced. Nothing goes without its copy.
class TestSaving : public ProjectTest
{
    Q_OBJECT

    const QString data = makeDataFolder() + '/';
    const QString kept = data + "kept";
    const QString autoSave = data + "untitled.autosave";

    static QTimer *getClock(const ProjectFile &file) { return file.findChild<QTimer *>(); }

    QStringList getKept() const
    {
        return QDir(kept).entryList(QDir::Files | QDir::Hidden, QDir::Name);
    }
    /// The one copy with the ending; empty when there are none or several.
    QString getKeptPath(const QString &ending) const
    {
        const QStringList names = getKept().filter(QRegularExpression(ending + '$'));
        return names.size() == 1 ? kept + '/' + names.first() : QString();
    }
    static bool isPrivate(const QString &path) { return (QFile::permissions(path) & 0xff) == 0; }
    /// Then no copy can be kept.
    void setBlocked(bool blocked)
    {
        QVERIFY(QFile::remove(kept) || QDir(kept).removeRecursively());
        if (blocked)
            writeBytes(kept, "a file in its place");
    }

    /// All rows but the project's own, whose values stand in the settings.
    static QStringList readAll(const QString &file)
    {
        return runSql(file, {"SELECT *, typeof(x), typeof(role), typeof(image) FROM items",
                             "SELECT * FROM properties WHERE guid <> 'project'",
                             "SELECT * FROM connections", "SELECT * FROM formdata"});
    }

private slots:
    void init()
    {
        setBlocked(false);
        QFile::remove(autoSave);
        QVERIFY(QDir(folder.path()).removeRecursively() && QDir().mkdir(folder.path()));
    }

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
        const QPair<QString, QString> rows[] = {{"a.epf.b.EPF", "a.b"},
                                                {"b.epf.autosave", "b.epf.autosave"},
                                                {"b.AUTOSAVE", "b.AUTOSAVE"}};
        for (const auto &row : rows) {
            TestProject project(folder.filePath(row.first));
            QCOMPARE(project.file.getOpenProjectName(), row.second);
            QCOMPARE(project.file.getAutoSaveNameForOpenFile(), data + row.first + ".autosave");
            QCOMPARE(project.file.requiresFilenamePrompt(), row.first.endsWith(".autosave"));
        }
    }

    void anAutoSaveLeavesTheStateAloneAndGoesWithASave()
    {
        TestProject project(makeFile());
        const QByteArray before = readBytes(path);
        const QString autoSave = data + "project.epf.autosave";
        project.file.setDirty();
        QSignalSpy changed(&project.file, &ProjectFile::dirtyChanged);
        QVERIFY(project.save("any name.autosave"));
        QVERIFY(QFile::exists(autoSave) && !QFile::exists("any name.autosave"));
        QVERIFY(changed.isEmpty() && project.file.getOpenFilename() == path);
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
        QVERIFY(project.open(autoSave) && project.file.isDirty() && !QFile::exists(autoSave));
        QCOMPARE(project.file.getOpenFilename(), QString("bridge.epf.autosave"));
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
            QVERIFY(requested.isEmpty() && !project.save(path) && !project.open(path));
        });
        QVERIFY(project.save(project.file.getAutoSaveNameForOpenFile()));
        clock->stop(); // only the request that had to wait is left
        QTRY_COMPARE(requested.count(), 1);
        requested.clear();
        clock->start();
        QVERIFY(project.file.isDirty() && project.save(path)); // clean now: nothing to come back to
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

    void keptCopies()
    {
        KeptCopies copies(kept);
        const QString name = folder.filePath(QString(60, 'x') + "\n\u6a4b.epf.autosave");
        QVERIFY(copies.keepCopy(name)); // not there
        writeBytes(name, "");
        QVERIFY(copies.keepCopy(name) && copies.keepCopy(folder.path()) && getKept().isEmpty());
        writeBytes(name, "theirs");
        QVERIFY(copies.keepCopy(name) && copies.keepCopy(name) && getKept().size() == 1);
        QCOMPARE(readBytes(getKeptPath("x_\u6a4b.epf.autosave.epf")), QByteArray("theirs"));

        // Of more than twenty the newest stay.
        writeBytes(path + "-wal", "log");
        for (int i = 0; i < 25; ++i) {
            writeBytes(path, QByteArray::number(i));
            QVERIFY(copies.keepCopy(path));
        }
        writeBytes(kept + "/mine.epf", "put there by the user");
        QVERIFY(copies.keepCopy(path) && QFile::remove(path + "-wal"));
        const QStringList names = getKept();
        QVERIFY(names.size() == 41 && names.last() == "mine.epf");
        QCOMPARE(readBytes(kept + '/' + names.first()), QByteArray("6"));
    }

    void whatBelongsToItComesAlong()
    {
        for (const QString part : {"", "-journal", "-wal"})
            writeBytes(path + part, "part" + part.toUtf8());
        const QString link = folder.filePath("link.epf");
        QVERIFY(QFile::link(path, link) && QFile::setPermissions(path, QFile::Permissions(0x6666)));
        KeptCopies copies(kept);
        QVERIFY(copies.keepCopy(link) && QFile::remove(link) && copies.takeAway(path));
        QVERIFY(QDir(folder.path()).isEmpty() && isPrivate(kept));
        for (const QString name : {" link.epf", " project.epf"}) {
            for (const QString part : {"", "-journal", "-wal"}) {
                QCOMPARE(readBytes(getKeptPath(name + part)), "part" + part.toUtf8());
                QVERIFY(isPrivate(getKeptPath(name + part)) || !part.isEmpty());
            }
        }
    }

    void aFirstSaveKeepsTheFormerFile()
    {
        TestProject project(makeFile());
        const QByteArray before = readBytes(path);
        QVERIFY(project.save(path) && project.save(path) && !project.file.hasChangedOnDisk());
        QCOMPARE(readBytes(getKeptPath(" project.epf")), before);
        setBlocked(true);
        runSql(path, {"UPDATE items SET text='EVENT' WHERE guid='{e}'"}); // same size
        QVERIFY(project.file.hasChangedOnDisk());
        QVERIFY(!project.save(path)); // no way to keep what others wrote
        QVERIFY(project.open(path) && project.save(path));
        setBlocked(false);
        runSql(path, {"DELETE FROM properties"}); // by others, and older now
        QVERIFY(project.open(path) && project.save(path));
        QCOMPARE(getKept().size(), 1);
        QVERIFY(QFile::remove(path) && !project.file.hasChangedOnDisk());
    }

    void aNewFileTakesThePlaceOfAnother()
    {
        const QByteArray before = readBytes(makeFile());
        TestProject project;
        setBlocked(true);
        QVERIFY(!project.saveNew(path) && project.file.getOpenFilename() == "untitled");
        setBlocked(false);
        std::signal(SIGXFSZ, SIG_IGN);
        const rlimit none = {0, RLIM_INFINITY}, any = {RLIM_INFINITY, RLIM_INFINITY};
        QCOMPARE(setrlimit(RLIMIT_FSIZE, &none), 0); // as on a full disk
        const bool saved = project.saveNew(path) || project.save(autoSave);
        QCOMPARE(setrlimit(RLIMIT_FSIZE, &any), 0);
        QVERIFY(!saved && !QFile::exists(autoSave));
        QCOMPARE(readBytes(path), before);
        writeBytes(path + "-journal", "half a save");
        QVERIFY(project.saveNew(path) && read("SELECT * FROM items").isEmpty());
        QCOMPARE(readBytes(getKeptPath(" project.epf")), before);
        QCOMPARE(readBytes(getKeptPath(" project.epf-journal")), QByteArray("half a save"));
        const QDir::Filters all = QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot;
        QCOMPARE(QDir(folder.path()).entryList(all).join(' '),
                 QString(".project.epf.lock project.epf"));
    }

    void twoWindowsOnOneFile()
    {
        const QString lock = folder.filePath(".project.epf.lock");
        writeBytes(lock, ""); // left half written
        TestProject first(makeFile());
        const QString link = folder.filePath("link.epf");
        QVERIFY(QFile::link(path, link) && first.file.getOtherPlace().isEmpty());
        {
            TestProject second(link);
            QCOMPARE(second.file.getOtherPlace(), QString("in another window"));
            first.file.resetOpenFilename();
            QVERIFY(second.save(link) && second.file.getOtherPlace().isEmpty());
        }
        QVERIFY(!QFile::exists(lock));
        writeBytes(lock, "1\nexaminer\nfar-away\n");
        QVERIFY(first.open(path));
        QCOMPARE(first.file.getOtherPlace(), QString("on far-away"));
    }

    void foreignAutoSavesAreKept()
    {
        const QPair<const char *, std::function<void()>> rows[] = {
            {"restored", [&] { TestProject project(autoSave); }},
            {"discarded", [] { TestProject().file.discardAutoSaveFile(); }},
            {"beside a save", [&] { QVERIFY(TestProject().save(path)); }},
            {"beside an auto-save", [&] { TestProject().save(autoSave); }},
        };
        for (const auto &row : rows) {
            const Row in(row.first);
            init();
            runSql(autoSave, sampleProject());
            const QByteArray before = readBytes(autoSave);
            setBlocked(true);
            row.second();
            QCOMPARE(readBytes(autoSave), before);
            setBlocked(false);
            row.second();
            QCOMPARE(readBytes(getKeptPath(" untitled.autosave.epf")), before);
            QVERIFY(readBytes(autoSave) != before);
        }
    }

    void ownAutoSavesAreNot()
    {
        const QString target = folder.filePath("precious");
        writeBytes(target, "precious");
        TestProject project;
        QVERIFY(QFile::link(target, autoSave) && !project.open(autoSave)); // not to be followed
        QVERIFY(project.save(autoSave) && project.save(autoSave) && isPrivate(autoSave));
        project.file.discardAutoSaveFile();
        QVERIFY(project.save(autoSave) && project.save(path));
        QVERIFY(!QFile::exists(autoSave) && getKept().isEmpty());
        QCOMPARE(readBytes(target), QByteArray("precious"));
    }

    void snapshots()
    {
        TestProject project(makeFile());
        const QByteArray before = readBytes(path);
        project.file.setDirty();
        project.find("{e}")->setPos(5, 6);
        setBlocked(true);
        QVERIFY(!project.file.keepSnapshot(project.items, project.formValues));
        setBlocked(false);
        QVERIFY(project.file.keepSnapshot(project.items, project.formValues));
        QVERIFY(project.file.isDirty() && !project.file.hasChangedOnDisk());
        QCOMPARE(readBytes(path), before);
        TestProject reopened(getKeptPath(" project.epf"));
        QVERIFY(isPrivate(reopened.file.getOpenFilename()) && reopened.formValues.size() == 2);
        QCOMPARE(reopened.find("{e}")->pos(), QPointF(5, 6));
    }

    void anUnchangedProjectGivesTheSameRows()
    {
        TestProject project(makeFile());
        const QStringList before = readAll(path);
        for (const QString &target : {path, path, folder.filePath("copy.epf")}) {
            QVERIFY(project.save(target) && project.file.getOpenFilename() == target);
            QCOMPARE(readAll(target), before);
        }
    }

    void changesReachTheirRows()
    {
        TestProject project(
            makeFile(sampleProject({"INSERT INTO properties VALUES('{f}','oddity','1')",
                                    "INSERT INTO formdata VALUES('loss','a second row',NULL)"})));
        project.find<Sticky>("{f}")->setNotRelevant(false);
        project.find<Sticky>("{f}")->setBorderLineWidth(0);
        project.find("{l}")->setBorderLineWidth(0);
        project.find<Line>("{l}")->disconnectStartPoint();
        project.find<Line>("{m}")->disconnectEndPoint();
        project.formValues = {{"loss", {"changed", QImage()}}, {"new", {QString(), QImage()}}};
        QVERIFY(project.save(path));
        QCOMPARE(read("SELECT name FROM properties WHERE guid='{f}'"),
                 QStringList({"backgroundColor", "causalFactorNumber", "sibling", "textAlignment",
                              "textColor"}));
        QCOMPARE(read("SELECT value FROM properties WHERE guid='{l}' AND name='borderLineWidth'"),
                 QStringList("3")); // a line keeps the row of a width that it lost
        QCOMPARE(read("SELECT * FROM connections"), QStringList("{l}|NULL|{f}|0|1"));
        QCOMPARE(read("SELECT * FROM formdata"),
                 QStringList({"loss|changed|NULL", "loss|changed|NULL", "new||NULL"}));
        delete project.items.takeAt(3); // {l}
        delete project.items.takeAt(2); // {b}
        QVERIFY(project.save(path));
        QCOMPARE(read("SELECT guid FROM items"), QStringList({"{e}", "{f}", "{m}", "{n}"}));
        QVERIFY(read("SELECT * FROM properties WHERE guid='{l}'").isEmpty());
        QCOMPARE(read("SELECT lineguid FROM connections"), QStringList("{l}"));
    }

    void whatLiesOnTopComesLast()
    {
        TestProject project(makeFile());
        project.items.move(0, 3); // {f} has left the sheet and come back
        project.add(noteInfo("{new}", QRectF(0, 0, 160, 80)));
        for (int i = 0; i < 2; ++i) {
            QVERIFY(project.save(path));
            QCOMPARE(read("SELECT group_concat(guid, '') FROM items"),
                     QStringList("{n}{m}{e}{b}{l}{f}{new}"));
        }
    }

    void onlyANewPictureIsWritten()
    {
        CanvasItemInfo info;
        info.type = ImageTool;
        info.guid = "{p}";
        info.image = QPixmap(20, 10);
        info.image.fill(Qt::blue);
        TestProject project;
        project.add(info);
        project.formValues.insert("titleImageFile", {"a.png", info.image.toImage()});
        QVERIFY(project.save(makeFile(emptyProject())));
        TestProject reopened(path);
        QCOMPARE(reopened.formValues.value("titleImageFile").image.size(), QSize(20, 10));
        QCOMPARE(reopened.records.first().image.size(), QSize(20, 10));
        runSql(path, {"UPDATE items SET image=X'00', type=3"});
        QVERIFY(project.save(path));
        QCOMPARE(read("SELECT type, hex(image) FROM items"), QStringList("3|00"));
        runSql(path, {"UPDATE items SET type=4", "UPDATE formdata SET image=X'00'"});
        TestProject unreadable(path);
        QVERIFY(unreadable.saveNew(path));
        QCOMPARE(read("SELECT type, hex(items.image), hex(formdata.image) FROM items, formdata"),
                 QStringList("4|00|00"));
    }

    void itemsThatShareAGuid()
    {
        TestProject project;
        CanvasItemInfo info = noteInfo("{twin}", QRectF(0, 0, 160, 80));
        info.textColor = Qt::red;
        project.add(info);
        info.textColor = QColor();
        auto *note = qobject_cast<Sticky *>(project.add(info));
        info.guid = "{line}";
        info.type = ConnectorTool;
        for (int i = 0; i < 2; ++i)
            qobject_cast<Line *>(project.add(info))->setStartConnection({note, Sticky::LeftSide});
        const char twins[] = "SELECT name FROM properties WHERE guid='{twin}'";
        QVERIFY(project.save(makeFile(emptyProject())));
        QCOMPARE(read(twins), QStringList({"textAlignment", "textColor"}));
        // Known now: the second one deletes what the first one wrote.
        QVERIFY(project.save(path));
        QCOMPARE(read(twins), QStringList("textAlignment"));
        QCOMPARE(read("SELECT * FROM connections"), QStringList("{line}|{twin}|NULL|1|0"));
    }

    void deletionShrinksTheFileOnlyOnASave()
    {
        TestProject project(makeFile());
        project.add(noteInfo("{long}", QRectF(0, 0, 160, 80), QString(200000, 'x')));
        const QString autoSave = project.file.getAutoSaveNameForOpenFile();
        QVERIFY(project.save(path) && project.save(autoSave));
        const qint64 full = QFileInfo(autoSave).size();
        delete project.items.takeLast();
        QVERIFY(project.save(autoSave));
        QCOMPARE(QFileInfo(autoSave).size(), full);
        QVERIFY(project.save(path) && QFileInfo(path).size() < full / 4);
    }

    /// Each write in its turn fails, until all of them come about.
    void failuresRollBack()
    {
        TestProject project(makeFile());
        QStringList fuses = {"CREATE TABLE fuse (writes INTEGER)", "INSERT INTO fuse VALUES(0)"};
        for (const QString table : {"items", "properties", "connections", "formdata"}) {
            for (const QString step : {"INSERT", "UPDATE", "DELETE"})
                fuses << "CREATE TRIGGER " + step + table + " BEFORE " + step + " ON " + table +
                             " BEGIN UPDATE fuse SET writes=writes-1;"
                             " SELECT RAISE(ABORT,'no') FROM fuse WHERE writes<0; END";
        }
        runSql(path, fuses);
        delete project.items.takeAt(1); // {e}
        CanvasItemInfo info;
        info.customFont = true;
        for (const int type : {NoteItemType, int(ConnectorTool), int(NewBarrierTool)}) {
            info.type = type;
            info.guid = QString("{new %1}").arg(type);
            project.add(info, "{f}");
        }
        project.items.append(nullptr);
        project.formValues = {{"loss", {"new text", QImage()}}, {"new", {"field", QImage()}}};
        const QStringList before = readAll(path);
        QSet<QString> errors;
        project.file.setDirty(true);
        for (int writes = 1; !project.save(path); ++writes) {
            QVERIFY(project.file.isDirty() && !project.file.isBusy());
            QCOMPARE(readAll(path), before);
            errors << project.file.getLastError();
            runSql(path, {"UPDATE fuse SET writes=" + QString::number(writes)});
        }
        QCOMPARE(errors.size(), 31); // each kind of write has a text of its own
        QVERIFY(!project.file.isDirty());
        QCOMPARE(read("SELECT guid, parent FROM items WHERE guid LIKE '{new%'"),
                 QStringList({"{new 128}|{f}", "{new 3}|{f}", "{new 8}|{f}"}));
    }

    void filesThatCannotBeWritten()
    {
        TestProject project(makeFile());
        damageHiddenPages();
        for (const char *error :
             {"The file would be damaged.", "Couldn't create the items table"}) {
            const QByteArray before = readBytes(path);
            QVERIFY(!project.save(path));
            QCOMPARE(project.file.getLastError(), QString(error));
            QCOMPARE(readBytes(path), before);
            writeBytes(path, QByteArray(4000, 'x'));
        }
        for (const QString &target : {folder.filePath("no/folder.epf"), folder.path()})
            QVERIFY(!project.save(target) && !project.saveNew(target) && !project.open(target));
    }

    void aFailedCommitLeavesAsAnException()
    {
        TestProject project(makeFile());
        project.find("{e}")->setPos(1, 1);
        project.file.setDirty(true);
        const QStringList before = readAll(path);
        QSqlDatabase::database(QSqlDatabase::defaultConnection, false)
            .setConnectOptions("QSQLITE_BUSY_TIMEOUT=50");
        {
            // A reader that doesn't end keeps the commit from taking the file for itself.
            QSqlDatabase reader = QSqlDatabase::addDatabase("QSQLITE", "reader");
            reader.setDatabaseName(path);
            QVERIFY(reader.open());
            QSqlQuery query("SELECT * FROM items", reader);
            QVERIFY(query.next());
            bool failed = false;
            try {
                project.save(path);
            } catch (const QString &) {
                failed = true;
            }
            QVERIFY(failed);
        }
        QSqlDatabase::removeDatabase("reader");
        QVERIFY(project.file.isDirty() && !project.file.isBusy());
        project.file.abandonSave();
        QCOMPARE(readAll(path), before);
        QVERIFY(project.save(path));
        QCOMPARE(read("SELECT x, y FROM items WHERE guid='{e}'"), QStringList("1|1"));
    }
};

EXAMINER_TEST_MAIN(TestSaving)
#include "testsaving.moc"
