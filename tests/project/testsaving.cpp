#include "testing/project.h"
#include "testing/testmain.h"

/// What stands in a file after a save.
class TestSaving : public ProjectTest
{
    Q_OBJECT

    /// All rows but the project's own, whose values stand in the settings.
    static QStringList readAll(const QString &file)
    {
        return runSql(file, {"SELECT *, typeof(x), typeof(role), typeof(image) FROM items",
                             "SELECT * FROM properties WHERE guid <> 'project'",
                             "SELECT * FROM connections", "SELECT * FROM formdata"});
    }

private slots:
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
