#include "testing/project.h"
#include "testing/rows.h"
#include "testing/testmain.h"

#include <QProcess>
#include <QtEndian>

#include <numeric>
#include <random>

/// Files that nobody should open, and damaged ones: refused or read, but never a crash, and
/// what is refused stays as it was.
class TestHostileFiles : public QObject
{
    Q_OBJECT

    std::unique_ptr<QTemporaryDir> folder;
    QString path;

    void makeFile(const QStringList &statements)
    {
        QFile::remove(path);
        runSql(path, statements);
    }
    /// Opens what is there; a refusal must leave it alone and deliver nothing.
    bool open()
    {
        const QByteArray before = readBytes(path);
        TestProject project;
        bool formEmitted = false;
        connect(&project.file, &ProjectFile::loadedFormData, this, [&] { formEmitted = true; });
        const bool opened = project.open(path);
        if (!opened && (readBytes(path) != before || !project.records.empty() || formEmitted))
            QTest::qFail("A refused file was changed or delivered", __FILE__, __LINE__);
        QCoreApplication::processEvents();
        return opened;
    }
    /// The current version and one about to be upgraded.
    QList<QByteArray> getWholeFiles()
    {
        makeFile(sampleProject());
        const QByteArray current = readBytes(path);
        runSql(path, {"DELETE FROM properties WHERE guid='project'"});
        return {current, readBytes(path)};
    }

private slots:
    void init()
    {
        folder = std::make_unique<QTemporaryDir>();
        path = folder->filePath("hostile.epf");
    }

    void unusualTables()
    {
        const QString create = emptyProject().first().chopped(1);
        const struct {
            bool opens;
            QStringList statements;
        } rows[] = {
            {false,
             {"ALTER TABLE items RENAME TO hidden", "CREATE VIEW items AS SELECT * FROM hidden"}},
            {false,
             {"DROP TABLE formdata", "CREATE VIEW formData AS WITH RECURSIVE n(id) AS (SELECT 1 "
                                     "UNION ALL SELECT id+1 FROM n) SELECT * FROM n"}},
            {false, {"DROP TABLE connections", "CREATE VIRTUAL TABLE connections USING fts3(a)"}},
            {false, {"ALTER TABLE items ADD COLUMN more TEXT AS (hex(zeroblob(1000000)))"}},
            {false, {"DROP TABLE items", create + ", more TEXT AS (upper(guid)) STORED)"}},
            {false, {"CREATE TRIGGER t AFTER INSERT ON properties BEGIN DELETE FROM items; END"}},
            {false, {"DROP TABLE items", create + ", PRIMARY KEY (guid)) WITHOUT ROWID"}},
            {false, {"ALTER TABLE items ADD COLUMN RowId TEXT"}},
            {false, {"DROP TABLE items", "ALTER TABLE properties RENAME COLUMN guid TO a"}},
            {true, {"CREATE INDEX i ON items(guid)"}},
            {true, {"CREATE TABLE notes (text TEXT)", "CREATE VIEW v AS SELECT * FROM items"}},
            {true, {"ALTER TABLE items RENAME TO i", "ALTER TABLE i RENAME TO ITEMS"}},
        };
        for (const auto &row : rows) {
            const Row in(qPrintable(row.statements.last()));
            makeFile(sampleProject(row.statements));
            QCOMPARE(open(), row.opens);
        }
    }

    void anyCutOfAFile()
    {
        for (const QByteArray &whole : getWholeFiles()) {
            for (int size = 1; size < whole.size(); size += size < 110 ? 9 : 487) {
                writeBytes(path, whole.left(size));
                QVERIFY2(!open(), qPrintable(QString::number(size)));
            }
        }
        makeFile(sampleProject());
        runSql(path, {"COMMIT", "PRAGMA page_size=65536", "VACUUM", "BEGIN"});
        const QByteArray whole = readBytes(path);
        QVERIFY(open() && whole.size() >= 4 * 65536);
        writeBytes(path, whole.chopped(100));
        QVERIFY(!open());
    }

    void anyFlippedByte()
    {
        std::mt19937 random(1);
        int opened = 0;
        for (const QByteArray &whole : getWholeFiles()) {
            for (int i = 0; i < 60; ++i) {
                QByteArray damaged = whole;
                // The tables' own pages are what counts, and their first bytes most of all.
                const int page = random() % 5 * 4096;
                for (int flips = random() % 4; flips >= 0; --flips) {
                    const int reach = random() % 2 ? 120 : 4096;
                    damaged[int((page + random() % reach) % whole.size())] = char(random());
                }
                writeBytes(path, damaged);
                opened += open();
            }
        }
        QVERIFY(opened > 0 && opened < 120);
    }

    void damageInUnreadPagesOpensNothing()
    {
        makeFile(sampleProject());
        damageHiddenPages(path);
        QVERIFY(!open());
    }

    void extremeValues()
    {
        makeFile(sampleProject({
            "INSERT INTO items VALUES('{1}',3,'Event',9e999,-9e999,1e300,1e300,hex(zeroblob(1000000"
            ")),'',NULL,NULL)",
            "INSERT INTO items VALUES('{2}',8,'Event',-9e18,9e18,'nan','inf',0,0,0,NULL)",
            "INSERT INTO items VALUES('{3}',99999999999,X'00ff',X'00',X'00',X'00',X'00',X'00',"
            "X'00',X'00',X'00')",
            "INSERT INTO items VALUES('{4}',3,'Event',0,0,9,9,'','Arial,1e9',NULL,'{4}')",
            "INSERT INTO properties VALUES('{2}','lineStyle','-7')",
            "INSERT INTO properties VALUES('{1}','sibling','{1},{1},,{2}')",
            "INSERT INTO properties VALUES('{1}','font','Arial,inf,-1,5,50,0,0,0,0,0')",
            "INSERT INTO connections VALUES('{2}','{1}','{1}',-5,2147483647)",
            "INSERT INTO formdata VALUES(NULL,NULL,X'ffd8ffe0')",
        }));
        TestProject project(path);
        QCoreApplication::processEvents();
        for (const CanvasItemInfo &info : project.records) {
            QVERIFY(info.font.pointSizeF() < 1001);
            QVERIFY(qAbs(info.endPoint.x()) <= 100000 && qAbs(info.endPoint.y()) <= 100000);
        }
        QVERIFY(project.save(folder->filePath("saved.epf")));
    }

    void aJournalMayNotLeadElsewhere()
    {
        makeFile(sampleProject());
        const QString victim = folder->filePath("precious");
        const QByteArray name = victim.toUtf8();
        writeBytes(victim, "precious");
        char numbers[8];
        qToBigEndian<quint32>(name.size(), numbers);
        qToBigEndian<quint32>(std::accumulate(name.begin(), name.end(), 0), numbers + 4);
        const QByteArray journal =
            "none" + name + QByteArray(numbers, 8) + QByteArray::fromHex("d9d505f920a163d7");
        for (const QString &file : {path, folder->filePath("link.epf")}) {
            writeBytes(path + "-journal", journal);
            QFile::link(path, folder->filePath("link.epf"));
            TestProject project;
            QVERIFY(!project.open(file));
            QVERIFY(!project.save(file));
        }
        for (const QString ending : {"-journal", "-wal", "-shm"}) {
            QFile::remove(path + "-journal");
            QVERIFY(QFile::link(victim, path + ending));
            QVERIFY(!open());
            QVERIFY(QFile::remove(path + ending));
        }
        QCOMPARE(readBytes(victim), QByteArray("precious"));
        QVERIFY(open());
    }

    void pipesAreNotWaitedFor()
    {
        QCOMPARE(QProcess::execute("mkfifo", {path}), 0);
        TestProject project;
        QVERIFY(!project.open(path));
        QVERIFY(!project.save(path));
    }
};

EXAMINER_TEST_MAIN(TestHostileFiles)
#include "testhostilefiles.moc"
