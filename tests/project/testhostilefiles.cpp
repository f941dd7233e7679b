#include "testing/project.h"
#include "testing/rows.h"
#include "testing/testmain.h"

#include <QtEndian>

#include <numeric>
#include <random>
#include <sys/stat.h>

/// Files that nobody should open, and damaged ones: refused or read, but never a crash, and
/// what is refused stays as it was.
class TestHostileFiles : public ProjectTest
{
    Q_OBJECT

    /// Opens what is there; a refusal must leave it alone and deliver nothing.
    bool open()
    {
        const QByteArray before = readBytes(path);
        TestProject project;
        project.formValues = {{"untouched", {}}};
        const bool opened = project.open(path);
        if (!opened && (readBytes(path) != before || !project.records.isEmpty() ||
                        !project.formValues.contains("untouched") ||
                        project.file.getOpenFilename() != "untitled"))
            QTest::qFail("A refused file was changed or delivered", __FILE__, __LINE__);
        QCoreApplication::processEvents();
        return opened;
    }
    /// The current version and one about to be upgraded.
    QList<QByteArray> getWholeFiles() const
    {
        const QByteArray current = readBytes(makeFile());
        runSql(path, {"DELETE FROM properties WHERE guid='project'"});
        return {current, readBytes(path)};
    }

private slots:
    void unusualTables()
    {
        const QString create = emptyProject().first().chopped(1);
        struct {
            bool opens;
            QString statements;
        } rows[] = {
            {false, "ALTER TABLE items RENAME TO i|CREATE VIEW items AS SELECT * FROM i"},
            {false, "DROP TABLE formdata|CREATE VIEW formData AS WITH RECURSIVE n(id) AS (SELECT 1 "
                    "UNION ALL SELECT id+1 FROM n) SELECT * FROM n"},
            {false, "DROP TABLE connections|CREATE VIRTUAL TABLE connections USING fts3(a)"},
            {false, "ALTER TABLE items ADD COLUMN more TEXT AS (hex(zeroblob(1000000)))"},
            {false, "DROP TABLE items|%1, more TEXT AS (upper(guid)) STORED)"},
            {false, "CREATE TRIGGER t AFTER INSERT ON properties BEGIN DELETE FROM items; END"},
            {false, "DROP TABLE items|%1, PRIMARY KEY (guid)) WITHOUT ROWID"},
            {false, "ALTER TABLE items ADD COLUMN RowId TEXT"},
            {false, "DROP TABLE items|ALTER TABLE properties RENAME COLUMN guid TO a"},
            {false, "UPDATE properties SET value='2' WHERE name='dbVersion'"},
            {true, "CREATE INDEX i ON items(guid)|CREATE VIEW v AS SELECT * FROM items"},
            {true, "ALTER TABLE items RENAME TO i|ALTER TABLE i RENAME TO ITEMS"},
        };
        for (auto &row : rows) {
            const Row in(qPrintable(row.statements));
            makeFile(sampleProject(row.statements.replace("%1", create).split('|')));
            QCOMPARE(open(), row.opens);
        }
        makeFile();
        damageHiddenPages();
        QVERIFY(!open());
    }

    void anyCutOfAFile()
    {
        QList<QByteArray> files = getWholeFiles();
        runSql(path, {"COMMIT", "PRAGMA page_size=65536", "VACUUM", "BEGIN"});
        QVERIFY(open());
        files << readBytes(path);
        for (const QByteArray &whole : files) {
            for (int left = whole.size() - 9; left > 0;
                 left -= left < 110 ? 9 : whole.size() / 50) {
                writeBytes(path, whole.left(left));
                QVERIFY2(!open(), qPrintable(QString::number(left)));
            }
        }
    }

    void anyFlippedByte()
    {
        std::mt19937 random(1);
        int opened = 0;
        for (const QByteArray &whole : getWholeFiles()) {
            for (int i = 0; i < 60; ++i) {
                QByteArray damaged = whole;
                // The tables' own pages are what counts, and their first bytes most of all.
                const int page = random() % 5 * 4096, reach = random() % 2 ? 120 : 4096;
                for (int flips = random() % 4; flips >= 0; --flips)
                    damaged[int((page + random() % reach) % whole.size())] = char(random());
                writeBytes(path, damaged);
                opened += open();
            }
        }
        QVERIFY(opened > 0 && opened < 120);
    }

    void extremeValues()
    {
        TestProject project(makeFile(sampleProject({
            R"(INSERT INTO items VALUES
            ('{1}',3,'Event',9e999,-9e999,1e300,1e300,hex(zeroblob(1000000)),'',NULL,NULL),
            ('{2}',8,'Event',-9e18,9e18,'nan','inf',0,0,0,NULL),
            ('{3}',99999999999,X'00ff',X'00',X'00',X'00',X'00',X'00',X'00',X'00',X'00'),
            ('{4}',3,'Event',0,0,9,9,'','Arial,1e9',NULL,'{4}'))",
            R"(INSERT INTO properties VALUES('{2}','lineStyle','-7'),
            ('{1}','sibling','{1},{1},,{2}'), ('{1}','font','Arial,inf,-1,5,50,0,0,0,0,0'))",
            "INSERT INTO connections VALUES('{2}','{1}','{1}',-5,2147483647)",
            "INSERT INTO formdata VALUES(NULL,NULL,X'ffd8ffe0')",
        })));
        QCoreApplication::processEvents();
        for (const CanvasItemInfo &info : project.records)
            QVERIFY(info.font.pointSizeF() < 1001 && info.endPoint.manhattanLength() <= 200000);
        QVERIFY(project.save(folder.filePath("saved.epf")));
    }

    void aJournalMayNotLeadElsewhere()
    {
        const QString victim = folder.filePath("precious"), link = path + ".epf", pipe = link + "2";
        const QByteArray name = victim.toUtf8();
        writeBytes(victim, "precious");
        char numbers[8];
        qToBigEndian<quint32>(name.size(), numbers);
        qToBigEndian<quint32>(std::accumulate(name.begin(), name.end(), 0), numbers + 4);
        QVERIFY(QFile::link(makeFile(), link));
        writeBytes(path + "-journal", "none" + name + QByteArray(numbers, 8) +
                                          QByteArray::fromHex("d9d505f920a163d7"));
        TestProject project;
        QVERIFY(!project.open(link) && !project.save(link) && !open() && !project.save(path));
        for (const QString ending : {"-journal", "-wal", "-shm"}) {
            QFile::remove(path + "-journal");
            QVERIFY(QFile::link(victim, path + ending) && !open() && QFile::remove(path + ending));
        }
        QCOMPARE(readBytes(victim), QByteArray("precious"));
        QVERIFY(open());
        QCOMPARE(mkfifo(QFile::encodeName(pipe).constData(), 0600), 0);
        QVERIFY(!project.open(pipe) && !project.save(pipe)); // nor to a wait
    }
};

EXAMINER_TEST_MAIN(TestHostileFiles)
#include "testhostilefiles.moc"
