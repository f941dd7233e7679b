#include "project/projectfile.h"
#include "testing/project.h"
#include "testing/testmain.h"

namespace
{

const char FormData[] = "SELECT id, value FROM formdata";
const char Siblings[] = "SELECT guid, value FROM properties WHERE name='sibling'";
const char Version[] = "SELECT value FROM properties WHERE guid='project' AND name='dbVersion'";

QString noteRow(const char *guid, const char *role, const char *text, const char *parent = nullptr)
{
    const QString owner = parent ? QString("'%1'").arg(parent) : QString("NULL");
    return QString("INSERT INTO items VALUES('%1',3,'%2',0,0,160,80,'%3','',NULL,%4)")
        .arg(guid, role, text, owner);
}

QString propertyRow(const char *guid, const char *name, const char *value)
{
    return QString("INSERT INTO properties VALUES('%1','%2','%3')").arg(guid, name, value);
}

} // namespace

/// What opening makes of a file from before the form was stored in it.
class TestProjectUpgrade : public QObject
{
    Q_OBJECT

private slots:
    void init();

    void notesFillTheForm_data();
    void notesFillTheForm();
    void nothingToMirror();
    void aSecondOpeningChangesNothing();
    void otherVersionsAreLeftAlone_data();
    void otherVersionsAreLeftAlone();
    void aFileWithoutSheetsStaysWithoutForm();
    void aLockedFileOpensAsItIs();

private:
    QString makeFile(const QStringList &statements);

    std::unique_ptr<QTemporaryDir> folder;
};

void TestProjectUpgrade::init()
{
    folder = std::make_unique<QTemporaryDir>();
}

QString TestProjectUpgrade::makeFile(const QStringList &statements)
{
    const QString path = folder->filePath("old.epf");
    QFile::remove(path);
    runSql(path, getTableStatements() +
                     QStringList{"DROP TABLE formdata", "DELETE FROM properties"} + statements);
    return path;
}

void TestProjectUpgrade::notesFillTheForm_data()
{
    QTest::addColumn<QStringList>("rows");
    QTest::addColumn<QStringList>("formData");
    QTest::addColumn<QStringList>("siblings");

    QTest::newRow("first loss only")
        << QStringList{noteRow("{1}", "Loss", "first"), noteRow("{2}", "Loss", "second"),
                       propertyRow("{1}", "sibling", "{9}")}
        << QStringList{"loss|first"} << QStringList{"{1}|{9},loss"};
    QTest::newRow("loss of control without siblings")
        << QStringList{noteRow("{1}", "Loss_Of_Control", "tilt")}
        << QStringList{"lossOfControl|tilt"} << QStringList{"{1}|,lossOfControl"};
    QTest::newRow("loss of control that has its field")
        << QStringList{noteRow("{1}", "Loss_Of_Control", "tilt"),
                       propertyRow("{1}", "sibling", "lossOfControl,{9}")}
        << QStringList{"lossOfControl|tilt"} << QStringList{"{1}|lossOfControl,{9}"};
    QTest::newRow("a loss on another sheet")
        << QStringList{noteRow("{1}", "Loss", "elsewhere", "{f}")} << QStringList()
        << QStringList();
    QTest::newRow("factors overwrite the loss of control")
        << QStringList{noteRow("{1}", "Loss_Of_Control", "tilt"),
                       noteRow("{a}", "Causal_Factor", "brake"),
                       noteRow("{b}", "Causal_Factor", "switch"),
                       propertyRow("{a}", "causalFactorNumber", "1"),
                       propertyRow("{b}", "causalFactorNumber", "2"),
                       propertyRow("{b}", "sibling", "causalFactor_text_2")}
        << QStringList{"causalFactor_guid_1|{a}", "causalFactor_guid_2|{b}",
                       "causalFactor_text_1|brake", "causalFactor_text_2|switch",
                       "lossOfControl|tilt"}
        << QStringList{"{1}|causalFactor_text_2,causalFactor_text_2", "{b}|causalFactor_text_2"};
    QTest::newRow("two factors without a number, no loss of control")
        << QStringList{noteRow("{a}", "Causal_Factor", "brake"),
                       noteRow("{b}", "Causal_Factor", "switch")}
        << QStringList{"causalFactor_guid_0|{b}", "causalFactor_text_0|switch"} << QStringList{"|"};
}

void TestProjectUpgrade::notesFillTheForm()
{
    QFETCH(QStringList, rows);
    QFETCH(QStringList, formData);
    QFETCH(QStringList, siblings);

    const QString path = makeFile(rows);
    TestProject project;
    QVERIFY(project.open(path));
    QCOMPARE(readRows(path, FormData), formData);
    QCOMPARE(readRows(path, Siblings), siblings);
    QCOMPARE(readRows(path, Version), QStringList("1"));
    QCOMPARE(project.formValues.size(), formData.size());
    QVERIFY(!project.file.isDirty());
}

void TestProjectUpgrade::nothingToMirror()
{
    const QString path = makeFile({noteRow("{1}", "Event", "event")});
    TestProject project;
    QVERIFY(project.open(path));
    QCOMPARE(readRows(path, "SELECT count(*) FROM formdata"), QStringList("0"));
    QCOMPARE(readRows(path, "SELECT * FROM properties"), QStringList("project|dbVersion|1"));
}

void TestProjectUpgrade::aSecondOpeningChangesNothing()
{
    const QString path = makeFile({noteRow("{1}", "Loss", "loss")});
    TestProject project;
    QVERIFY(project.open(path));
    const QByteArray upgraded = readBytes(path);
    QVERIFY(project.open(path));
    QCOMPARE(readBytes(path), upgraded);
}

void TestProjectUpgrade::otherVersionsAreLeftAlone_data()
{
    QTest::addColumn<int>("version");

    QTest::newRow("current") << 1;
    QTest::newRow("negative") << -1;
}

void TestProjectUpgrade::otherVersionsAreLeftAlone()
{
    QFETCH(int, version);

    const QString path =
        makeFile({noteRow("{1}", "Loss", "loss"),
                  propertyRow("project", "dbVersion", qPrintable(QString::number(version)))});
    const QByteArray before = readBytes(path);
    TestProject project;
    QVERIFY(project.open(path));
    QCOMPARE(project.file.getLastError(), QString("Cannot open form data table"));
    QCOMPARE(readBytes(path), before);
}

void TestProjectUpgrade::aFileWithoutSheetsStaysWithoutForm()
{
    // Without the column that names the sheet no note counts as standing on the main one.
    const QString path =
        makeFile({noteRow("{1}", "Loss", "loss"), "ALTER TABLE items DROP COLUMN parent"});
    TestProject project;
    QVERIFY(project.open(path));
    QCOMPARE(int(project.records.size()), 1);
    QVERIFY(readRows(path, FormData).isEmpty());
    QCOMPARE(readRows(path, Version), QStringList("1"));
}

void TestProjectUpgrade::aLockedFileOpensAsItIs()
{
    const QString path = makeFile({noteRow("{1}", "Loss", "loss")});
    {
        QSqlDatabase other = QSqlDatabase::addDatabase("QSQLITE", "other");
        other.setDatabaseName(path);
        QVERIFY(other.open());
        QVERIFY(QSqlQuery(other).exec("BEGIN IMMEDIATE"));
        TestProject project;
        QVERIFY(project.open(path));
        QCOMPARE(int(project.records.size()), 1);
        QVERIFY(QSqlQuery(other).exec("ROLLBACK"));
    }
    QSqlDatabase::removeDatabase("other");
    QVERIFY(readRows(path, Version).isEmpty());
}

EXAMINER_TEST_MAIN(TestProjectUpgrade)
#include "testprojectupgrade.moc"
