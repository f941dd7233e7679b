#include "testing/project.h"
#include "testing/rows.h"
#include "testing/testmain.h"

#include <QSignalSpy>

namespace
{

QString noteRow(const char *guid, const char *role, const char *text, const char *parent = "NULL")
{
    return QString("INSERT INTO items VALUES('%1',3,'%2',0,0,160,80,'%3','',NULL,%4)")
        .arg(guid, role, text, parent);
}

QString propertyRow(const char *guid, const char *name, const char *value)
{
    return QString("INSERT INTO properties VALUES('%1','%2','%3')").arg(guid, name, value);
}

} // namespace

/// What opening makes of a file from before the form was stored in it.
class TestUpgrade : public QObject
{
    Q_OBJECT

    std::unique_ptr<QTemporaryDir> folder;
    QString path;

    void makeFile(const QStringList &statements)
    {
        QFile::remove(path);
        runSql(path, emptyProject({"DROP TABLE formdata", "DELETE FROM properties"}) + statements);
    }
    QStringList read(const char *statement) const { return readRows(path, statement); }

private slots:
    void init()
    {
        folder = std::make_unique<QTemporaryDir>();
        path = folder->filePath("old.epf");
    }

    void notesFillTheForm()
    {
        const struct {
            const char *name;
            QStringList rows;
            QStringList formData;
            QStringList siblings;
        } rows[] = {
            {"nothing to mirror", {noteRow("{1}", "Event", "event")}, {}, {}},
            {"first loss only",
             {noteRow("{1}", "Loss", "first"), noteRow("{2}", "Loss", "second"),
              propertyRow("{1}", "sibling", "{9}")},
             {"loss|first"},
             {"{1}|{9},loss"}},
            {"loss of control without siblings",
             {noteRow("{1}", "Loss_Of_Control", "tilt")},
             {"lossOfControl|tilt"},
             {"{1}|,lossOfControl"}},
            {"a loss on another sheet", {noteRow("{1}", "Loss", "elsewhere", "'{f}'")}, {}, {}},
            {"factors overwrite the loss of control",
             {noteRow("{1}", "Loss_Of_Control", "tilt"), noteRow("{a}", "Causal_Factor", "brake"),
              noteRow("{b}", "Causal_Factor", "switch"),
              propertyRow("{a}", "causalFactorNumber", "1"),
              propertyRow("{b}", "causalFactorNumber", "2"),
              propertyRow("{b}", "sibling", "causalFactor_text_2")},
             {"causalFactor_guid_1|{a}", "causalFactor_guid_2|{b}", "causalFactor_text_1|brake",
              "causalFactor_text_2|switch", "lossOfControl|tilt"},
             {"{1}|causalFactor_text_2,causalFactor_text_2", "{b}|causalFactor_text_2"}},
        };
        for (const auto &row : rows) {
            const Row in(row.name);
            makeFile(row.rows);
            TestProject project(path);
            QCOMPARE(read("SELECT id, value FROM formdata"), row.formData);
            QCOMPARE(read("SELECT guid, value FROM properties WHERE name='sibling'"), row.siblings);
            QCOMPARE(read("SELECT value FROM properties WHERE name='dbVersion'"), QStringList("1"));
            QCOMPARE(project.formValues.size(), row.formData.size());
            QVERIFY(!project.file.isDirty() && !project.file.requiresFilenamePrompt());
            const QByteArray upgraded = readBytes(path);
            QVERIFY(project.open(path));
            QCOMPARE(readBytes(path), upgraded);
        }
    }

    void aNegativeVersionIsLeftAlone()
    {
        makeFile({noteRow("{1}", "Loss", "loss"), propertyRow("project", "dbVersion", "-1")});
        const QByteArray before = readBytes(path);
        TestProject project(path);
        QCOMPARE(readBytes(path), before);
    }

    void aFileThatCannotBeWrittenIsReadAsACopy()
    {
        makeFile({noteRow("{1}", "Loss", "loss")});
        const QByteArray before = readBytes(path);
        QSqlDatabase::database(QSqlDatabase::defaultConnection, false)
            .setConnectOptions("QSQLITE_BUSY_TIMEOUT=50");
        TestProject project;
        QSignalSpy told(&project.file, &ProjectFile::openedAsCopy);
        {
            QSqlDatabase other = QSqlDatabase::addDatabase("QSQLITE", "other");
            other.setDatabaseName(path);
            QVERIFY(other.open());
            QVERIFY(QSqlQuery(other).exec("BEGIN IMMEDIATE"));
            QVERIFY(project.open(path));
        }
        QSqlDatabase::removeDatabase("other");
        QCOMPARE(project.formValues.value("loss").value, QString("loss"));
        QCOMPARE(project.file.getOpenProjectName(), QString("old"));
        QVERIFY(told.count() == 1 && project.file.requiresFilenamePrompt());
        QCOMPARE(readBytes(path), before);
        QVERIFY(project.save(folder->filePath("new.epf")));
        QVERIFY(!project.file.requiresFilenamePrompt());
    }

    void ofAFailedUpgradeNothingStays()
    {
        makeFile({noteRow("{1}", "Loss", "loss"), "DROP TABLE properties",
                  "CREATE TABLE properties (guid TEXT,name TEXT,value TEXT CHECK(value<>'1'))"});
        const QByteArray before = readBytes(path);
        TestProject project(path);
        QCOMPARE(int(project.records.size()), 1);
        QCOMPARE(readBytes(path), before);
    }
};

EXAMINER_TEST_MAIN(TestUpgrade)
#include "testupgrade.moc"
