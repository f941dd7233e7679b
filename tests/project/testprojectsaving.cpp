#include "project/projectfile.h"
#include "testing/project.h"
#include "testing/testmain.h"

#include <QSignalSpy>

namespace
{

const char AllItems[] = "SELECT guid, type, role, x, y, width, height, text, font, image, parent "
                        "FROM items";
const char AllProperties[] = "SELECT guid, name, value FROM properties";
const char AllConnections[] = "SELECT * FROM connections";
const char AllFormData[] = "SELECT id, value, image FROM formdata";

/// Of notes and lines alone: what stands in the settings is another matter.
const char ItemProperties[] = "SELECT guid, name, value FROM properties WHERE guid <> 'project'";

} // namespace

/// What stands in a file after a save.
class TestProjectSaving : public QObject
{
    Q_OBJECT

private slots:
    void init();

    void anUnchangedProjectGivesTheSameRows();
    void aNewFileHoldsEachKindOfRow();
    void projectPropertiesComeFromTheSettings();
    void clearedPropertiesLoseTheirRows();
    void aThinnedLineKeepsItsWidthRow();
    void aFreedLineLosesItsConnection();
    void aDeletedItemLeavesItsConnection();
    void goneFormFieldsLoseTheirRows();
    void onlyANewPictureIsWritten();
    void rowsThatShareAGuidAreWrittenAlike();
    void itemsThatShareAGuid();
    void aSecondSheetNamesItsOwner();
    void itemSavedCountsEveryEntry();
    void deletionShrinksTheFileOnlyOnASave();
    void failuresRollBack_data();
    void failuresRollBack();
    void oddTablesFail_data();
    void oddTablesFail();
    void aFileThatCannotBeWritten();
    void aFailedCommitLeavesAsAnException();
    void aSaveWithinASaveDoesNothing();

private:
    QString makeFile(const QStringList &statements = getSampleStatements());

    std::unique_ptr<QTemporaryDir> folder;
    QString path;
};

void TestProjectSaving::init()
{
    folder = std::make_unique<QTemporaryDir>();
    QSettings().clear();
    path = folder->filePath("project.epf");
}

QString TestProjectSaving::makeFile(const QStringList &statements)
{
    runSql(path, statements);
    return path;
}

void TestProjectSaving::anUnchangedProjectGivesTheSameRows()
{
    makeFile();
    const QStringList items = readRows(path, AllItems);
    const QStringList properties = readRows(path, ItemProperties);
    const QStringList connections = readRows(path, AllConnections);
    const QStringList formData = readRows(path, AllFormData);
    TestProject project;
    QVERIFY(project.open(path));
    for (int i = 0; i < 2; ++i) {
        QVERIFY(project.save(path));
        QCOMPARE(readRows(path, AllItems), items);
        QCOMPARE(readRows(path, ItemProperties), properties);
        QCOMPARE(readRows(path, AllConnections), connections);
        QCOMPARE(readRows(path, AllFormData), formData);
    }
    QCOMPARE(readRows(path, "PRAGMA integrity_check"), QStringList("ok"));
}

void TestProjectSaving::aNewFileHoldsEachKindOfRow()
{
    makeFile();
    TestProject project;
    QVERIFY(project.open(path));
    const QString copy = folder->filePath("copy.epf");
    QVERIFY(project.save(copy));

    QCOMPARE(readRows(copy, AllItems), readRows(path, AllItems));
    QCOMPARE(readRows(copy, ItemProperties), readRows(path, ItemProperties));
    QCOMPARE(readRows(copy, AllConnections), readRows(path, AllConnections));
    QCOMPARE(readRows(copy, "SELECT name, sql FROM sqlite_master"),
             readRows(path, "SELECT name, sql FROM sqlite_master"));
    QCOMPARE(readRows(copy, "SELECT typeof(x), typeof(y), typeof(width), typeof(role), "
                            "typeof(image), typeof(parent) FROM items WHERE guid='{b}'"),
             QStringList("integer|integer|integer|text|integer|null"));
    QCOMPARE(readRows(copy, "SELECT typeof(x), typeof(image), typeof(font) FROM items "
                            "WHERE guid='{e}'"),
             QStringList("real|null|text"));
    QCOMPARE(project.file.getOpenFilename(), copy);
}

void TestProjectSaving::projectPropertiesComeFromTheSettings()
{
    QSettings settings;
    settings.setValue("margins", QStringList({"1.25", "2", "0.333333333", "1"}));
    settings.setValue("showLegend", false);
    TestProject project;
    QVERIFY(project.save(path));
    QCOMPARE(readRows(path, AllProperties),
             QStringList({"project|dbVersion|1", "project|font|Arial,8,-1,5,50,0,0,0,0,0",
                          "project|margins|1.25,2,0.333333,1", "project|paperSize|29",
                          "project|showHeader|true", "project|showLegend|false",
                          "project|showPageNumbers|true"}));

    settings.setValue("pageSize", 4);
    settings.setValue("font", "Arial,9,-1,5,75,0,0,0,0,0");
    runSql(path, {"INSERT INTO properties VALUES('project','colour','red')"});
    QVERIFY(project.save(path));
    QCOMPARE(readRows(path, "SELECT value FROM properties WHERE name IN('paperSize','font')"),
             QStringList({"4", "Arial,9,-1,5,75,0,0,0,0,0"}));
    QCOMPARE(readRows(path, AllProperties).size(), 7);
}

void TestProjectSaving::clearedPropertiesLoseTheirRows()
{
    makeFile();
    runSql(path, {"INSERT INTO properties VALUES('{f}','oddity','1')"});
    TestProject project;
    QVERIFY(project.open(path));
    auto *note = qobject_cast<Sticky *>(project.find("{f}"));
    note->setNotRelevant(false);
    note->setBorderLineWidth(0);
    QVERIFY(project.save(path));
    QCOMPARE(readRows(path, "SELECT name FROM properties WHERE guid='{f}'"),
             QStringList({"backgroundColor", "causalFactorNumber", "sibling", "textAlignment",
                          "textColor"}));
}

void TestProjectSaving::aThinnedLineKeepsItsWidthRow()
{
    makeFile();
    TestProject project;
    QVERIFY(project.open(path));
    project.find("{l}")->setBorderLineWidth(0);
    QVERIFY(project.save(path));
    QCOMPARE(readRows(path, "SELECT value FROM properties WHERE guid='{l}' AND "
                            "name='borderLineWidth'"),
             QStringList("3"));
}

void TestProjectSaving::aFreedLineLosesItsConnection()
{
    makeFile();
    TestProject project;
    QVERIFY(project.open(path));
    auto *line = qobject_cast<Line *>(project.find("{l}"));
    line->disconnectStartPoint();
    QVERIFY(project.save(path));
    QVERIFY(readRows(path, AllConnections).contains("{l}|NULL|{f}|0|1"));
    line->disconnectEndPoint();
    QVERIFY(project.save(path));
    QCOMPARE(readRows(path, AllConnections), QStringList("{m}|NULL|{n}|0|2"));
}

void TestProjectSaving::aDeletedItemLeavesItsConnection()
{
    makeFile();
    TestProject project;
    QVERIFY(project.open(path));
    project.remove("{l}");
    project.remove("{b}");
    QVERIFY(project.save(path));
    QCOMPARE(readRows(path, "SELECT guid FROM items"), QStringList({"{e}", "{f}", "{m}", "{n}"}));
    QVERIFY(readRows(path, "SELECT * FROM properties WHERE guid='{l}'").isEmpty());
    QVERIFY(readRows(path, AllConnections).contains("{l}|{e}|{f}|3|1"));
}

void TestProjectSaving::goneFormFieldsLoseTheirRows()
{
    makeFile();
    runSql(path, {"INSERT INTO formdata VALUES('loss','a second row',NULL)"});
    TestProject project;
    QVERIFY(project.open(path));
    project.formValues = {{"loss", {"changed", QImage()}}, {"new", {QString(), QImage()}}};
    QVERIFY(project.save(path));
    QCOMPARE(readRows(path, AllFormData),
             QStringList({"loss|changed|NULL", "loss|changed|NULL", "new||NULL"}));
    project.formValues.clear();
    QVERIFY(project.save(path));
    QVERIFY(readRows(path, AllFormData).isEmpty());
}

void TestProjectSaving::onlyANewPictureIsWritten()
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

    TestProject reopened;
    QVERIFY(reopened.open(path));
    QCOMPARE(reopened.getRecord("{p}")->image.size(), QSize(20, 10));
    QCOMPARE(reopened.formValues.value("titleImageFile").image.size(), QSize(20, 10));

    runSql(path, {"UPDATE items SET image=X'00', type=3"});
    QVERIFY(project.save(path));
    QCOMPARE(readRows(path, "SELECT type, hex(image) FROM items"), QStringList("3|00"));
}

void TestProjectSaving::rowsThatShareAGuidAreWrittenAlike()
{
    makeFile();
    runSql(path, {"INSERT INTO items SELECT * FROM items WHERE guid IN('{e}','{l}')",
                  "INSERT INTO properties SELECT * FROM properties WHERE guid='{l}'",
                  "INSERT INTO items VALUES(NULL,3,'Event',1,2,3,4,'no guid','',NULL,NULL)",
                  "INSERT INTO properties VALUES(NULL,'textColor','red')"});
    TestProject project;
    QVERIFY(project.open(path));
    project.items = {project.find("{e}"), project.find("{l}")};
    project.items.first()->setPos(7, 8);
    QVERIFY(project.save(path));
    QCOMPARE(readRows(path, "SELECT guid, x, y FROM items"),
             QStringList({"NULL|1|2", "{e}|7|8", "{e}|7|8", "{l}|180|240", "{l}|180|240"}));
    QCOMPARE(readRows(path, "SELECT name, count(*) FROM properties WHERE guid='{l}' GROUP BY 1"),
             QStringList({"arrowStyle|2", "borderLineWidth|2", "lineStyle|2"}));
    QCOMPARE(readRows(path, "SELECT count(*) FROM properties WHERE guid IS NULL"),
             QStringList("1"));
}

void TestProjectSaving::itemsThatShareAGuid()
{
    TestProject project;
    CanvasItemInfo info;
    info.type = NoteItemType;
    info.guid = "{twin}";
    info.textColor = Qt::red;
    project.add(info);
    info.textColor = QColor();
    project.add(info);
    QVERIFY(project.save(path));
    const QString twins = "SELECT name, value FROM properties WHERE guid='{twin}'";
    QCOMPARE(readRows(path, "SELECT guid FROM items"), QStringList({"{twin}", "{twin}"}));
    QCOMPARE(readRows(path, twins),
             QStringList({"textAlignment|AlignHCenter AlignVCenter", "textColor|#ff0000"}));
    // Known now: the second one deletes what the first one wrote.
    QVERIFY(project.save(path));
    QCOMPARE(readRows(path, twins), QStringList("textAlignment|AlignHCenter AlignVCenter"));
}

void TestProjectSaving::aSecondSheetNamesItsOwner()
{
    makeFile();
    TestProject project;
    QVERIFY(project.open(path));
    CanvasItemInfo info;
    info.guid = "{new line}";
    info.type = ConnectorTool;
    project.add(info, project.factorSheets.front().get());
    info.guid = "{new barrier}";
    info.type = NewBarrierTool;
    project.add(info, project.factorSheets.front().get());
    QVERIFY(project.save(path));
    QCOMPARE(readRows(path, "SELECT guid, parent FROM items WHERE guid LIKE '{new%'"),
             QStringList({"{new barrier}|{f}", "{new line}|{f}"}));
}

void TestProjectSaving::itemSavedCountsEveryEntry()
{
    makeFile();
    TestProject project;
    QVERIFY(project.open(path));
    project.items.append(nullptr);
    QSignalSpy saved(&project.file, &ProjectFile::itemSaved);
    QVERIFY(project.save(path));
    QCOMPARE(saved.count(), 7);
}

void TestProjectSaving::deletionShrinksTheFileOnlyOnASave()
{
    TestProject project;
    CanvasItemInfo info;
    info.type = NoteItemType;
    info.text = QString(200000, 'x');
    project.add(info);
    info.text = "short";
    project.add(info);
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

void TestProjectSaving::failuresRollBack_data()
{
    QTest::addColumn<QString>("when"); // a trigger refuses it
    QTest::addColumn<QString>("failure");

    const auto property = [](const char *name, const char *guid) {
        return QString("INSERT ON properties WHEN NEW.name='%1' AND NEW.guid='%2'").arg(name, guid);
    };
    const auto row = [](const QString &when, const char *failure) {
        QTest::newRow(qPrintable(QString(failure) + ", " + when)) << when << QString(failure);
    };
    row("DELETE ON items", "Failed to delete item");
    row("DELETE ON properties WHEN OLD.guid='{gone}'", "Failed to remove deleted item properties");
    row("DELETE ON properties WHEN OLD.guid='project'", "Failed to delete project properties");
    row(property("margins", "project"), "Couldn't write margins project property");
    row(property("paperSize", "project"), "Couldn't write paper size project property");
    row(property("font", "project"), "Couldn't write font project property");
    row(property("showPageNumbers", "project"), "Couldn't write page numbers project property");
    row(property("showLegend", "project"), "Couldn't write legend project property");
    row(property("showHeader", "project"), "Couldn't write header project property");
    row(property("dbVersion", "project"), "Couldn't write DB version project property");
    row("INSERT ON items WHEN NEW.type=3", "Couldn't write note entry");
    row("UPDATE ON items WHEN NEW.type=3", "Couldn't update note entry");
    row("DELETE ON properties WHEN OLD.guid='{f}'", "Failed to delete properties for item");
    row(property("backgroundColor", "{f}"), "Couldn't write color property entry");
    row(property("textColor", "{f}"), "Couldn't write text color property entry");
    row(property("font", "{e}"), "Couldn't write font property entry");
    row(property("causalFactorNumber", "{f}"),
        "Couldn't write causal factor number property entry");
    row(property("sibling", "{f}"), "Couldn't write sibling UID property entry");
    row(property("textAlignment", "{f}"), "Couldn't write text alignment property entry");
    row(property("notRelevant", "{f}"), "Couldn't write relevancy property entry");
    row(property("borderLineWidth", "{f}"), "Couldn't write line width property entry");
    row("UPDATE ON properties WHEN NEW.guid='{l}' AND NEW.name='borderLineWidth'",
        "Couldn't write line width property entry");
    row("INSERT ON items WHEN NEW.type=128", "Couldn't write SVG picture entry");
    row("UPDATE ON items WHEN NEW.type=128", "Couldn't update svg picture entry");
    row("INSERT ON items WHEN NEW.type=8", "Couldn't write line entry");
    row("UPDATE ON items WHEN NEW.type=8", "Couldn't update line entry");
    row("DELETE ON connections WHEN OLD.lineguid='{l}'", "Failed to delete connections for item");
    row("UPDATE ON properties WHEN NEW.guid='{m}' AND NEW.name='arrowStyle'",
        "Couldn't write arrow style property entry");
    row(property("lineStyle", "{new line}"), "Couldn't write line style property entry");
    row("INSERT ON connections WHEN NEW.lineguid='{m}'", "Couldn't write line connection entry");
    row("DELETE ON formdata", "Failed to delete form item");
    row("UPDATE ON formdata", "Couldn't insert form value");
    row("INSERT ON formdata", "Couldn't insert form value");
}

void TestProjectSaving::failuresRollBack()
{
    QFETCH(QString, when);
    QFETCH(QString, failure);

    makeFile();
    TestProject project;
    QVERIFY(project.open(path));
    CanvasItemInfo info;
    for (const auto &[guid, type] : {std::pair<const char *, int>("{new line}", ConnectorTool),
                                     {"{new note}", NoteItemType},
                                     {"{new barrier}", NewBarrierTool}}) {
        info.guid = guid;
        info.type = type;
        project.add(info);
    }
    project.formValues = {{"loss", {"new text", QImage()}}, {"new", {"field", QImage()}}};
    project.find("{e}")->setPos(0, 0);
    project.file.setDirty(true);
    runSql(path, {"INSERT INTO items VALUES('{gone}',3,'Event',0,0,9,9,'','',NULL,NULL)",
                  "INSERT INTO properties VALUES('{gone}','notRelevant','true')",
                  "CREATE TRIGGER stop BEFORE " + when + " BEGIN SELECT RAISE(ABORT,'no'); END"});
    const auto readAll = [this] {
        return readRows(path, AllItems) + readRows(path, AllProperties) +
               readRows(path, AllConnections) + readRows(path, AllFormData);
    };
    const QStringList before = readAll();

    QVERIFY(!project.save(path));
    QCOMPARE(project.file.getLastError(), failure);
    QVERIFY(project.file.isDirty());
    QVERIFY(!project.file.isBusy());
    QVERIFY(!QSqlDatabase::database(QSqlDatabase::defaultConnection, false).isOpen());
    QCOMPARE(readAll(), before);

    runSql(path, {"DROP TRIGGER stop"});
    QVERIFY2(project.save(path), qPrintable(project.file.getLastError()));
    QVERIFY(!project.file.isDirty());
}

void TestProjectSaving::oddTablesFail_data()
{
    QTest::addColumn<QString>("change");
    QTest::addColumn<QString>("failure");

    QTest::newRow("items without font") << "ALTER TABLE items DROP COLUMN font"
                                        << "Couldn't update note entry";
    QTest::newRow("items without parent") << "ALTER TABLE items DROP COLUMN parent"
                                          << "Couldn't write SVG picture entry";
    QTest::newRow("items without guid") << "ALTER TABLE items DROP COLUMN guid"
                                        << "Failed to get previous items";
    QTest::newRow("properties without guid") << "ALTER TABLE properties DROP COLUMN guid"
                                             << "Failed to delete project properties";
    QTest::newRow("properties without name") << "ALTER TABLE properties DROP COLUMN name"
                                             << "Couldn't write margins project property";
    QTest::newRow("connections without line") << "ALTER TABLE connections DROP COLUMN lineguid"
                                              << "Failed to delete connections for item";
    QTest::newRow("form data without id") << "ALTER TABLE formdata DROP COLUMN id"
                                          << "Failed to get previous form data";
    QTest::newRow("a column too many") << "ALTER TABLE formdata ADD COLUMN more TEXT"
                                       << "Couldn't insert form value";
}

void TestProjectSaving::oddTablesFail()
{
    QFETCH(QString, change);
    QFETCH(QString, failure);

    makeFile();
    TestProject project;
    QVERIFY(project.open(path));
    CanvasItemInfo info;
    info.type = NewBarrierTool;
    project.add(info);
    project.formValues.insert("new", {"field", QImage()});
    runSql(path, {change});
    const QByteArray before = readBytes(path);

    QVERIFY(!project.save(path));
    QCOMPARE(project.file.getLastError(), failure);
    QCOMPARE(readBytes(path), before);
}

void TestProjectSaving::aFileThatCannotBeWritten()
{
    TestProject project;
    QFile file(path);
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write(QByteArray(4000, 'x'));
    file.close();
    const QByteArray before = readBytes(path);
    QVERIFY(!project.save(path));
    QCOMPARE(project.file.getLastError(), QString("Couldn't create the items table"));
    QCOMPARE(readBytes(path), before);

    QVERIFY(!project.save(folder->filePath("no/such/folder.epf")));
    QVERIFY(!project.file.getLastError().isEmpty());
    QVERIFY(!project.save(folder->path()));
    QCOMPARE(project.file.getOpenFilename(), QString("untitled"));
}

void TestProjectSaving::aFailedCommitLeavesAsAnException()
{
    makeFile();
    TestProject project;
    QVERIFY(project.open(path));
    project.find("{e}")->setPos(1, 1);
    project.file.setDirty(true);
    const QStringList before = readRows(path, AllItems);
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
    QVERIFY(!project.file.isBusy());
    QVERIFY(project.file.isDirty());
    project.file.abandonSave();
    QVERIFY(!QSqlDatabase::database(QSqlDatabase::defaultConnection, false).isOpen());
    QCOMPARE(readRows(path, AllItems), before);

    QVERIFY(project.save(path));
    QVERIFY(!project.file.isDirty());
    QVERIFY(readRows(path, "SELECT x, y FROM items WHERE guid='{e}'") == QStringList("1|1"));
}

void TestProjectSaving::aSaveWithinASaveDoesNothing()
{
    makeFile();
    TestProject project;
    QVERIFY(project.open(path));
    int refused = 0;
    connect(&project.file, &ProjectFile::itemSaved, this, [&] {
        QVERIFY(project.file.isBusy());
        refused += !project.save(folder->filePath("inner.epf")) + !project.open(path);
    });
    QVERIFY(project.save(path));
    QCOMPARE(refused, 12);
    QVERIFY(!QFile::exists(folder->filePath("inner.epf")));
}

EXAMINER_TEST_MAIN(TestProjectSaving)
#include "testprojectsaving.moc"
