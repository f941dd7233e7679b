#include "project/projectfile.h"
#include "testing/project.h"
#include "testing/testmain.h"

#include <QElapsedTimer>
#include <QProcess>
#include <QtEndian>

#include <random>

namespace
{

const char CreateItems[] = "CREATE TABLE items (guid TEXT,type INTEGER,role TEXT,x INTEGER,"
                           "y INTEGER,width INTEGER,height INTEGER,text TEXT,font TEXT,image BLOB,"
                           "parent TEXT";

} // namespace

/// Files that nobody should open, and damaged ones: refused or read, but never a crash, and
/// what is refused stays as it was.
class TestHostileFiles : public QObject
{
    Q_OBJECT

private slots:
    void init();

    void unusualTables_data();
    void unusualTables();
    void foreignDatabasesAreLeftAlone();
    void anyCutOfAFile_data();
    void anyCutOfAFile();
    void anyFlippedByte_data();
    void anyFlippedByte();
    void damageInTheLastRowsOpensNothing();
    void aTreeThatLeadsRoundInCircles();
    void extremeValues();
    void pipesAreNotWaitedFor();

private:
    QString makeFile(const QStringList &statements);
    void write(const QByteArray &bytes);
    /// Opens what is there; a refusal must leave it alone and deliver nothing.
    bool open();

    std::unique_ptr<QTemporaryDir> folder;
    QString path;
};

void TestHostileFiles::init()
{
    folder = std::make_unique<QTemporaryDir>();
    path = folder->filePath("hostile.epf");
}

QString TestHostileFiles::makeFile(const QStringList &statements)
{
    runSql(path, statements);
    return path;
}

void TestHostileFiles::write(const QByteArray &bytes)
{
    QFile::remove(path + "-journal");
    QFile file(path);
    QVERIFY(file.open(QIODevice::WriteOnly));
    QCOMPARE(file.write(bytes), qint64(bytes.size()));
}

bool TestHostileFiles::open()
{
    const QByteArray before = readBytes(path);
    TestProject project;
    bool formEmitted = false;
    connect(&project.file, &ProjectFile::loadedFormData, this, [&] { formEmitted = true; });
    const bool opened = project.open(path);
    if (!opened) {
        [&] {
            QCOMPARE(readBytes(path), before);
            QVERIFY(project.records.empty());
            QVERIFY(!formEmitted);
            QVERIFY(!project.file.getLastError().isEmpty());
        }();
    }
    QCoreApplication::processEvents();
    return opened;
}

void TestHostileFiles::unusualTables_data()
{
    QTest::addColumn<QStringList>("statements");
    QTest::addColumn<bool>("opens");

    const QString create = CreateItems;
    const auto row = [](const char *name, const QStringList &statements, bool opens = false) {
        QTest::newRow(name) << statements << opens;
    };
    row("a view for items",
        {"ALTER TABLE items RENAME TO hidden", "CREATE VIEW items AS SELECT * FROM hidden"});
    row("a view for form data",
        {"DROP TABLE formdata",
         "CREATE VIEW formData AS WITH RECURSIVE n(id) AS (SELECT 1 UNION ALL SELECT id+1 FROM n) "
         "SELECT id, '' AS value, NULL AS image FROM n"});
    row("a view for properties",
        {"DROP TABLE properties", "CREATE VIEW properties AS SELECT 'project' AS guid, "
                                  "'dbVersion' AS name, '1' AS value"});
    row("a virtual table",
        {"DROP TABLE connections", "CREATE VIRTUAL TABLE connections USING fts3(lineguid)"});
    row("a generated column",
        {"ALTER TABLE items ADD COLUMN more TEXT AS (hex(zeroblob(1000000)))"});
    row("a stored generated column",
        {"DROP TABLE items", create + ", more TEXT AS (upper(guid)) STORED)"});
    row("a trigger", {"CREATE TRIGGER t AFTER INSERT ON properties BEGIN DELETE FROM items; END"});
    row("a trigger in capitals",
        {"CREATE TRIGGER t AFTER UPDATE ON ITEMS BEGIN DELETE FROM items; END"});
    row("no row ids", {"DROP TABLE items", create + ", PRIMARY KEY (guid)) WITHOUT ROWID"});
    row("a column in place of the row ids", {"ALTER TABLE items ADD COLUMN RowId TEXT"});
    row("an index", {"CREATE INDEX i ON items(guid)"}, true);
    row("one more column", {"ALTER TABLE items ADD COLUMN more TEXT DEFAULT 'x'"}, true);
    row("one more table", {"CREATE TABLE notes (text TEXT)"}, true);
    row("a view of another name", {"CREATE VIEW v AS SELECT * FROM items"}, true);
    row("names in capitals", {"ALTER TABLE items RENAME TO i", "ALTER TABLE i RENAME TO ITEMS"},
        true);
}

void TestHostileFiles::unusualTables()
{
    QFETCH(QStringList, statements);
    QFETCH(bool, opens);

    makeFile(getSampleStatements() + statements);
    QCOMPARE(open(), opens);
}

void TestHostileFiles::foreignDatabasesAreLeftAlone()
{
    makeFile({"CREATE TABLE bookmarks (url TEXT)", "CREATE TABLE properties (a TEXT)"});
    QVERIFY(!open());
}

void TestHostileFiles::anyCutOfAFile_data()
{
    QTest::addColumn<bool>("isOld");

    QTest::newRow("current") << false;
    QTest::newRow("about to be upgraded") << true;
}

void TestHostileFiles::anyCutOfAFile()
{
    QFETCH(bool, isOld);

    makeFile(getSampleStatements());
    if (isOld)
        runSql(path, {"DELETE FROM properties WHERE guid='project'"});
    const QByteArray whole = readBytes(path);
    QVERIFY(whole.size() > 15000);
    for (int size = 1; size < whole.size(); size += size < 110 ? 9 : 487) {
        write(whole.left(size));
        QVERIFY2(!open(), qPrintable(QString::number(size)));
    }
}

void TestHostileFiles::anyFlippedByte_data()
{
    anyCutOfAFile_data();
}

void TestHostileFiles::anyFlippedByte()
{
    QFETCH(bool, isOld);

    makeFile(getSampleStatements());
    if (isOld)
        runSql(path, {"DELETE FROM properties WHERE guid='project'"});
    const QByteArray whole = readBytes(path);
    std::mt19937 random(isOld ? 1 : 2);
    int opened = 0;
    constexpr int rounds = 120;
    for (int i = 0; i < rounds; ++i) {
        QByteArray damaged = whole;
        // The tables' own pages are what counts, and their first bytes most of all.
        const int page = random() % 5 * 4096;
        for (int flips = random() % 4; flips >= 0; --flips) {
            const int reach = random() % 2 ? 120 : 4096;
            damaged[int((page + random() % reach) % whole.size())] = char(random());
        }
        write(damaged);
        opened += open();
    }
    QVERIFY(opened > 0 && opened < rounds);
}

void TestHostileFiles::damageInTheLastRowsOpensNothing()
{
    makeFile(getTableStatements());
    QStringList rows;
    for (int i = 0; i < 2000; ++i)
        rows << QString("INSERT INTO items VALUES('{%1}',3,'Event',0,0,9,9,'x','',NULL,NULL)")
                    .arg(i);
    runSql(path, rows);
    QByteArray bytes = readBytes(path);
    // The last page belongs to the last items.
    bytes.replace(bytes.size() - 4096, 200, QByteArray(200, '\xff'));
    write(bytes);
    QVERIFY(!open());
}

void TestHostileFiles::aTreeThatLeadsRoundInCircles()
{
    constexpr int pageSize = 512;
    {
        QSqlDatabase db = QSqlDatabase::addDatabase("QSQLITE", "testing");
        db.setDatabaseName(path);
        QVERIFY(db.open());
        QVERIFY(QSqlQuery(db).exec(QString("PRAGMA page_size=%1").arg(pageSize)));
        QVERIFY(QSqlQuery(db).exec("CREATE TABLE first (a)"));
    }
    QSqlDatabase::removeDatabase("testing");
    QStringList rows = getTableStatements();
    for (int i = 0; i < 8000; ++i)
        rows
            << QString("INSERT INTO items VALUES('{%1}',3,'Event',0,0,9,9,'','',NULL,NULL)").arg(i);
    runSql(path, rows);
    const int root =
        readRows(path, "SELECT rootpage FROM sqlite_master WHERE name='items'").first().toInt();

    // Inner pages that have inner pages or leaves below them: each level is made to lead to the
    // next one only, over and over, so that a few pages stand for billions of rows.
    QByteArray bytes = readBytes(path);
    const auto at = [&bytes](int page) { return bytes.data() + (page - 1) * pageSize; };
    const auto isInner = [&](int page) { return at(page)[0] == 5; };
    const auto leadTo = [&](int page, int child) {
        const int cells = qFromBigEndian<quint16>(at(page) + 3);
        for (int i = 0; i < cells; ++i) {
            const int cell = qFromBigEndian<quint16>(at(page) + 12 + 2 * i);
            qToBigEndian<quint32>(child, at(page) + cell);
        }
        qToBigEndian<quint32>(child, at(page) + 8);
    };
    QList<int> levels = {root};
    int leaf = 0;
    for (int page = 2; page <= bytes.size() / pageSize; ++page) {
        if (isInner(page) && page != root && levels.size() < 8)
            levels << page;
        else if (at(page)[0] == 13)
            leaf = page;
    }
    QCOMPARE(levels.size(), 8);
    QVERIFY(leaf);
    for (int i = 0; i < levels.size(); ++i)
        leadTo(levels.at(i), i + 1 < levels.size() ? levels.at(i + 1) : leaf);
    write(bytes);

    QElapsedTimer timer;
    timer.start();
    QVERIFY(!open());
    QVERIFY2(timer.elapsed() < 20000, qPrintable(QString::number(timer.elapsed())));
}

void TestHostileFiles::extremeValues()
{
    const QString huge = "'" + QString(2000000, 'x') + "'";
    makeFile(getSampleStatements() +
             QStringList{
                 "INSERT INTO items VALUES('{1}',3,'Event',9e999,-9e999,1e300,1e300," + huge +
                     ",'',NULL,NULL)",
                 "INSERT INTO items VALUES('{2}',8,'Event',-9e18,9e18,'nan','inf',0,0,0,NULL)",
                 "INSERT INTO items VALUES('{3}',99999999999,X'00ff',X'00',X'00',X'00',X'00',X'00',"
                 "X'00',X'00',X'00')",
                 "INSERT INTO items VALUES(X'00ff41',3,NULL,0,0,9,9,X'ff00fe','',NULL,X'41')",
                 "INSERT INTO items VALUES('{4}',3,'Event',0,0,9,9,'','Arial,1e9',NULL,'{4}')",
                 "INSERT INTO properties VALUES('{1}','borderLineWidth','2147483647')",
                 "INSERT INTO properties VALUES('{1}','causalFactorNumber','-2147483648')",
                 "INSERT INTO properties VALUES('{2}','lineStyle','-7')",
                 "INSERT INTO properties VALUES('{2}','arrowStyle','12345678')",
                 "INSERT INTO properties VALUES('{1}','sibling','{1},{1},,{2}')",
                 "INSERT INTO properties VALUES('{1}','font','Arial,inf,-1,5,50,0,0,0,0,0')",
                 "INSERT INTO connections VALUES('{2}','{1}','{1}',-5,2147483647)",
                 "INSERT INTO connections VALUES('{l}','{1}','{1}',9e18,'x')",
                 "INSERT INTO formdata VALUES(NULL,NULL,X'ffd8ffe0')",
             });
    TestProject project;
    QVERIFY(project.open(path));
    QCoreApplication::processEvents();
    for (const CanvasItemInfo &info : project.records) {
        QVERIFY(info.font.pointSizeF() < 1001);
        QVERIFY(qAbs(info.endPoint.x()) <= 100000 && qAbs(info.endPoint.y()) <= 100000);
    }
    QVERIFY(project.save(folder->filePath("saved.epf")));
}

void TestHostileFiles::pipesAreNotWaitedFor()
{
#ifdef Q_OS_UNIX
    QCOMPARE(QProcess::execute("mkfifo", {path}), 0);
    TestProject project;
    QVERIFY(!project.open(path));
    QVERIFY(!project.save(path));
#endif
}

EXAMINER_TEST_MAIN(TestHostileFiles)
#include "testhostilefiles.moc"
