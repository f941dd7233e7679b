#include "testing/project.h"
#include "testing/rows.h"
#include "testing/testmain.h"

#include <QSignalSpy>

/// What stands in a file after a save.
class TestSaving : public QObject
{
    Q_OBJECT

    std::unique_ptr<QTemporaryDir> folder;
    QString path; // of the sample

    /// All rows but the project's own, whose values stand in the settings.
    static QStringList readAll(const QString &file)
    {
        return readRows(file, "SELECT *, typeof(x), typeof(role), typeof(image) FROM items") +
               readRows(file, "SELECT * FROM properties WHERE guid <> 'project'") +
               readRows(file, "SELECT * FROM connections") +
               readRows(file, "SELECT * FROM formdata");
    }
    QStringList read(const char *statement) const { return readRows(path, statement); }

private slots:
    void init()
    {
        folder = std::make_unique<QTemporaryDir>();
        QSettings().clear();
        path = folder->filePath("project.epf");
        runSql(path, sampleProject());
    }

    void anUnchangedProjectGivesTheSameRows()
    {
        const QStringList before = readAll(path);
        const char schema[] = "SELECT name, sql FROM sqlite_master";
        const QString copy = folder->filePath("copy.epf");
        TestProject project(path);
        for (const QString &target : {path, path, copy}) {
            QVERIFY(project.save(target));
            QCOMPARE(readAll(target), before);
        }
        QCOMPARE(readRows(copy, schema), read(schema));
        QCOMPARE(project.file.getOpenFilename(), copy);
    }

    void projectPropertiesComeFromTheSettings()
    {
        QSettings settings;
        settings.setValue("margins", QStringList({"1.25", "2", "0.333333333", "1"}));
        settings.setValue("showLegend", false);
        settings.setValue("pageSize", 4);
        runSql(path, {"INSERT INTO properties VALUES('project','colour','red')"});
        TestProject project;
        const char own[] = "SELECT name, value FROM properties WHERE guid='project'";
        QVERIFY(project.save(path));
        QCOMPARE(read(own),
                 QStringList({"dbVersion|1", "font|Arial,8,-1,5,50,0,0,0,0,0",
                              "margins|1.25,2,0.333333,1", "paperSize|4", "showHeader|true",
                              "showLegend|false", "showPageNumbers|true"}));
    }

    void changesReachTheirRows()
    {
        const char factor[] = "SELECT name FROM properties WHERE guid='{f}'";
        runSql(path, {"INSERT INTO properties VALUES('{f}','oddity','1')"});
        TestProject project(path);
        project.find<Sticky>("{f}")->setNotRelevant(false);
        project.find<Sticky>("{f}")->setBorderLineWidth(0);
        project.find("{l}")->setBorderLineWidth(0);
        project.find<Line>("{l}")->disconnectStartPoint();
        QVERIFY(project.save(path));
        QCOMPARE(read(factor), QStringList({"backgroundColor", "causalFactorNumber", "sibling",
                                            "textAlignment", "textColor"}));
        QCOMPARE(read("SELECT value FROM properties WHERE guid='{l}' AND name='borderLineWidth'"),
                 QStringList("3")); // a line keeps the row of a width that it lost
        QCOMPARE(read("SELECT * FROM connections"),
                 QStringList({"{l}|NULL|{f}|0|1", "{m}|NULL|{n}|0|2"}));
        project.find<Line>("{l}")->disconnectEndPoint();
        QVERIFY(project.save(path));
        QCOMPARE(read("SELECT lineguid FROM connections"), QStringList("{m}"));
    }

    void goneItemsAndFieldsLoseTheirRows()
    {
        runSql(path, {"INSERT INTO formdata VALUES('loss','a second row',NULL)"});
        TestProject project(path);
        project.remove("{l}");
        project.remove("{b}");
        project.formValues = {{"loss", {"changed", QImage()}}, {"new", {QString(), QImage()}}};
        QVERIFY(project.save(path));
        QCOMPARE(read("SELECT guid FROM items"), QStringList({"{e}", "{f}", "{m}", "{n}"}));
        QVERIFY(read("SELECT * FROM properties WHERE guid='{l}'").isEmpty());
        QVERIFY(read("SELECT * FROM connections").contains("{l}|{e}|{f}|3|1"));
        QCOMPARE(read("SELECT * FROM formdata"),
                 QStringList({"loss|changed|NULL", "loss|changed|NULL", "new||NULL"}));
    }

    void onlyANewPictureIsWritten()
    {
        CanvasItemInfo info;
        info.type = ImageTool;
        info.guid = "{p}";
        info.size = QSizeF(160, 140);
        info.image = QPixmap(20, 10);
        info.image.fill(Qt::blue);
        TestProject project;
        project.add(info);
        project.formValues.insert("titleImageFile", {"a.png", info.image.toImage()});
        QVERIFY(project.save(path));
        TestProject reopened(path);
        QCOMPARE(reopened.formValues.value("titleImageFile").image.size(), QSize(20, 10));
        QCOMPARE(reopened.getRecord("{p}").image.size(), QSize(20, 10));

        runSql(path, {"UPDATE items SET image=X'00', type=3"});
        QVERIFY(project.save(path));
        QCOMPARE(read("SELECT type, hex(image) FROM items"), QStringList("3|00"));
    }

    void itemsThatShareAGuid()
    {
        TestProject project;
        CanvasItemInfo info = noteInfo("{twin}", QRectF(0, 0, 160, 80));
        info.textColor = Qt::red;
        auto *note = project.add(info);
        info.textColor = QColor();
        project.add(info);
        info.guid = "{line}";
        info.type = ConnectorTool;
        for (int i = 0; i < 2; ++i) {
            auto *line = qobject_cast<Line *>(project.add(info));
            line->setStartConnection({static_cast<Sticky *>(note), Sticky::LeftSide});
        }
        const char twins[] = "SELECT name, value FROM properties WHERE guid='{twin}'";
        QVERIFY(project.save(path));
        QCOMPARE(read(twins),
                 QStringList({"textAlignment|AlignHCenter AlignVCenter", "textColor|#ff0000"}));
        // Known now: the second one deletes what the first one wrote.
        QVERIFY(project.save(path));
        QCOMPARE(read(twins), QStringList("textAlignment|AlignHCenter AlignVCenter"));
        QCOMPARE(read("SELECT * FROM connections WHERE lineguid='{line}'"),
                 QStringList("{line}|{twin}|NULL|1|0"));
    }

    void aSecondSheetNamesItsOwner()
    {
        TestProject project(path);
        CanvasItemInfo info;
        info.guid = "{new line}";
        info.type = ConnectorTool;
        project.add(info, "{f}");
        info.guid = "{new barrier}";
        info.type = NewBarrierTool;
        project.add(info, "{f}");
        project.items.append(nullptr);
        QSignalSpy saved(&project.file, &ProjectFile::itemSaved);
        QVERIFY(project.save(path));
        QCOMPARE(read("SELECT guid, parent FROM items WHERE guid LIKE '{new%'"),
                 QStringList({"{new barrier}|{f}", "{new line}|{f}"}));
        QCOMPARE(saved.count(), 9);
    }

    void deletionShrinksTheFileOnlyOnASave()
    {
        TestProject project;
        project.add(noteInfo(QString(), QRectF(0, 0, 160, 80), QString(200000, 'x')));
        project.add(noteInfo(QString(), QRectF(0, 0, 160, 80), "short"));
        QVERIFY(project.save(path));
        const QString autoSave = project.file.getAutoSaveNameForOpenFile();
        QVERIFY(project.save(autoSave));
        const qint64 full = QFileInfo(autoSave).size();
        project.remove("{item-0}");
        QVERIFY(project.save(autoSave));
        QCOMPARE(QFileInfo(autoSave).size(), full);
        QVERIFY(project.save(path));
        QVERIFY(QFileInfo(path).size() < full / 4);
    }

    void failuresRollBack()
    {
        // Step, when it happens and the failure that it is told as.
        const QString rows = R"(DELETE items|1|Failed to delete item
DELETE properties|OLD.guid='{e}'|Failed to remove deleted item properties
DELETE properties|OLD.guid='project'|Failed to delete project properties
INSERT properties|margins|Couldn't write margins project property
INSERT properties|paperSize|Couldn't write paper size project property
INSERT properties|font|Couldn't write font project property
INSERT properties|showPageNumbers|Couldn't write page numbers project property
INSERT properties|showLegend|Couldn't write legend project property
INSERT properties|showHeader|Couldn't write header project property
INSERT properties|dbVersion|Couldn't write DB version project property
INSERT items|NEW.type=3|Couldn't write note entry
UPDATE items|NEW.type=3|Couldn't update note entry
DELETE properties|OLD.guid='{f}'|Failed to delete properties for item
INSERT properties|backgroundColor|Couldn't write color property entry
INSERT properties|textColor|Couldn't write text color property entry
INSERT properties|NEW.name='font' AND NEW.guid='{new note}'|Couldn't write font property entry
INSERT properties|causalFactorNumber|Couldn't write causal factor number property entry
INSERT properties|sibling|Couldn't write sibling UID property entry
INSERT properties|textAlignment|Couldn't write text alignment property entry
INSERT properties|notRelevant|Couldn't write relevancy property entry
INSERT properties|borderLineWidth|Couldn't write line width property entry
UPDATE properties|borderLineWidth|Couldn't write line width property entry
INSERT items|NEW.type=128|Couldn't write SVG picture entry
UPDATE items|NEW.type=128|Couldn't update svg picture entry
INSERT items|NEW.type=8|Couldn't write line entry
UPDATE items|NEW.type=8|Couldn't update line entry
DELETE connections|1|Failed to delete connections for item
UPDATE properties|arrowStyle|Couldn't write arrow style property entry
INSERT properties|lineStyle|Couldn't write line style property entry
INSERT connections|1|Couldn't write line connection entry
DELETE formdata|1|Failed to delete form item
UPDATE formdata|1|Couldn't insert form value
INSERT formdata|1|Couldn't insert form value)";
        const QStringList before = readAll(path);
        TestProject project(path);
        project.remove("{e}");
        CanvasItemInfo info = noteInfo("{new note}", QRectF(0, 0, 9, 9));
        info.customFont = true;
        project.add(info);
        for (const int type : {ConnectorTool, NewBarrierTool}) {
            info.guid = QString("{new %1}").arg(type);
            info.type = type;
            project.add(info);
        }
        project.formValues = {{"loss", {"new text", QImage()}}, {"new", {"field", QImage()}}};
        for (const QString &row : rows.split('\n')) {
            const Row in(qPrintable(row));
            const QStringList parts = row.split('|');
            const QString when = parts[1].contains('=') || parts[1] == "1"
                                     ? parts[1]
                                     : "NEW.name='" + parts[1] + "'";
            runSql(path, {"CREATE TRIGGER stop BEFORE " + QString(parts[0]).replace(" ", " ON ") +
                          " WHEN " + when + " BEGIN SELECT RAISE(ABORT,'no'); END"});
            project.file.setDirty(true);
            QVERIFY(!project.save(path));
            QCOMPARE(project.file.getLastError(), parts[2]);
            QVERIFY(project.file.isDirty() && !project.file.isBusy());
            QVERIFY(!QSqlDatabase::database(QSqlDatabase::defaultConnection, false).isOpen());
            runSql(path, {"DROP TRIGGER stop"});
            QCOMPARE(readAll(path), before);
        }
        QVERIFY2(project.save(path), qPrintable(project.file.getLastError()));
        QVERIFY(!project.file.isDirty());
    }

    void filesThatCannotBeWritten()
    {
        TestProject project(path);
        writeBytes(path, QByteArray(4000, 'x'));
        QVERIFY(!project.save(path));
        QCOMPARE(project.file.getLastError(), QString("Couldn't create the items table"));
        QCOMPARE(readBytes(path), QByteArray(4000, 'x'));
        for (const QString &target : {folder->filePath("no/folder.epf"), folder->path()})
            QVERIFY(!project.save(target) && !project.saveNew(target));
    }

    void aSaveThatWouldLeaveADamagedFileRollsBack()
    {
        TestProject project(path);
        damageHiddenPages(path);
        const QByteArray before = readBytes(path);
        QVERIFY(!project.save(path));
        QCOMPARE(project.file.getLastError(), QString("The file would be damaged."));
        QCOMPARE(readBytes(path), before);
    }

    void aFailedCommitLeavesAsAnException()
    {
        TestProject project(path);
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
            QVERIFY_EXCEPTION_THROWN(project.save(path), QString);
        }
        QSqlDatabase::removeDatabase("reader");
        QVERIFY(project.file.isDirty() && !project.file.isBusy());
        project.file.abandonSave();
        QCOMPARE(readAll(path), before);
        QVERIFY(project.save(path));
        QCOMPARE(read("SELECT x, y FROM items WHERE guid='{e}'"), QStringList("1|1"));
    }

    void aSaveWithinASaveDoesNothing()
    {
        TestProject project(path);
        int refused = 0;
        connect(&project.file, &ProjectFile::itemSaved, this, [&] {
            refused += !project.save(folder->filePath("inner.epf")) + !project.open(path);
        });
        QVERIFY(project.save(path));
        QCOMPARE(refused, 12);
        QCOMPARE(project.file.getOpenFilename(), path);
    }
};

EXAMINER_TEST_MAIN(TestSaving)
#include "testsaving.moc"
