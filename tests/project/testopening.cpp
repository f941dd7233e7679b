#include "testing/project.h"
#include "testing/records.h"
#include "testing/rows.h"
#include "testing/testmain.h"

#include <QBuffer>
#include <QSignalSpy>
#include <QtEndian>

#include <numeric>
#include <random>
#include <sys/stat.h>

/// What comes out of a file, and what opening makes of one from before the form was stored in it.
/// Files that nobody should open, and damaged ones: refused or read, but never a crash, and what
/// is refused stays as it was.
class TestOpening : public ProjectTest
{
    Q_OBJECT

    static constexpr char OldLoss[] = "'Loss','{1}','loss',NULL";

    static QString encodePng(const QImage &image)
    {
        QBuffer buffer;
        image.save(&buffer, "PNG");
        return "X'" + buffer.data().toHex() + "'";
    }
    /// A file of the former version; of each note role, GUID, text and owner, and of each
    /// property GUID, name and value.
    QString makeOldFile(const QStringList &notes, const QStringList &properties = {},
                        const QStringList &more = {}) const
    {
        QStringList rows = {"DROP TABLE formdata", "DELETE FROM properties"};
        for (const QString &note : notes)
            rows
                << QString("INSERT INTO items (type,role,guid,text,parent) VALUES(3,%1)").arg(note);
        for (const QString &property : properties)
            rows << "INSERT INTO properties VALUES(" + property + ")";
        return makeFile(emptyProject(rows + more));
    }

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
    void itemsComeMainSheetFirst()
    {
        TestProject project(makeFile());
        QString guids;
        for (const ProjectItem *item : project.items)
            guids += item->getGUID();
        QCOMPARE(guids, QString("{f}{e}{b}{l}{n}{m}"));
        QVERIFY(!project.file.isDirty() && !project.file.isBusy());
        QVERIFY(!QSqlDatabase::database(QSqlDatabase::defaultConnection, false).isOpen());
        QCOMPARE(
            describe(project.records["{f}"]),
            QString("3 Causal_Factor {f} at 240,200 to 400,280 size 160,80 \"cause\" font %1 0 "
                    "text #1f4e9e fill #fff2cc align 33 line 1 border 4 factor 2 of  siblings "
                    "causalFactor_text_2+{x} arrow 0 image 0 not relevant")
                .arg(QFont().toString()));
    }

    void connectionsHangOnTheirOwnSheet()
    {
        TestProject project(makeFile(sampleProject({
            "INSERT INTO items VALUES('{o}',8,'#000000',0,0,9,9,0,0,0,NULL)",
            "INSERT INTO connections VALUES('{o}','{n}','{e}',2,4), ('{gone}','{e}','{f}',3,1), "
            "('{e}','{f}',NULL,3,0), (NULL,'{e}',NULL,99,0)", // {n} is on the other sheet
        })));
        QStringList ends;
        for (const char *guid : {"{l}", "{m}", "{o}"})
            ends << describe(project.find(guid)).section(" from ", 1);
        QCOMPARE(ends, QStringList({"{e} side 3 to {f} side 1", "free to {n} side 2",
                                    "free to {e} side 4"}));
    }

    void strangeValuesAreBounded()
    {
        TestProject project(makeFile(emptyProject({
            R"(INSERT INTO items VALUES('1',16,'',1.25,-2.5,140.75,-79.125,'','',NULL,NULL),
            ('2',16,'',1e300,-1e300,10,10,'','',NULL,NULL), ('5',16,'',0,0,9,9,'','',NULL,NULL),
            ('3',16,'',9e999,0,-9e999,10,'','',NULL,NULL), ('6',16,'',0,0,9,9,'','',NULL,NULL),
            ('4',16,'','nan','inf','x',10,'','',NULL,NULL),
            ('7',16,'',100,0,1e9,10,'','Arial,1e9',NULL,'7'),
            ('8',99999999999,X'00ff',X'00',X'00',X'00',X'00',X'00',X'00',X'00',X'00'),
            ('9',3,'Event',0,0,9e999,1e300,hex(zeroblob(1000000)),'',NULL,NULL))",
            R"(INSERT INTO properties VALUES('1','textAlignment',''), ('2','sibling',',loss'),
            ('3','borderLineWidth','2000000000'), ('4','borderLineWidth','-4'),
            ('5','textAlignment','AlignRight alignleft'), ('6','lineStyle','77'),
            ('9','font','Arial,inf,-1,5,50,0,0,0,0,0'), ('9','sibling','9,9'))",
            "INSERT INTO connections VALUES('2','9','9',-5,2147483647)",
            "INSERT INTO formdata VALUES(NULL,NULL,X'ffd8ffe0')",
        })));
        QCoreApplication::processEvents();
        QStringList values;
        for (const CanvasItemInfo &info : project.records) {
            QVERIFY(info.font.pointSizeF() < 1001);
            values << describe(info.startPoint) + " to " + describe(info.endPoint) + ' ' +
                          info.siblings.join('+') +
                          QString(" align %1 border %2 line %3")
                              .arg(int(info.textAlignment))
                              .arg(info.borderLineWidth)
                              .arg(info.lineStyle);
        }
        QCOMPARE(values, QString(R"(1.25,-2.5 to 142,-81.625  align 132 border 0 line 1
100000,-100000 to 100000,-99990 loss align 132 border 0 line 1
0,0 to 0,10  align 132 border 1000 line 1
0,0 to 0,10  align 132 border 0 line 1
0,0 to 9,9  align 0 border 0 line 1
0,0 to 9,9  align 132 border 0 line 1
100,0 to 100000,10  align 132 border 0 line 1
0,0 to 0,0  align 132 border 0 line 1
0,0 to 0,100000 9+9 align 132 border 0 line 1)")
                             .split('\n'));
        QVERIFY(project.save(folder.filePath("saved.epf")));
    }

    void picturesAreRasterAndBounded()
    {
        QImage image(7, 5, QImage::Format_RGB32);
        image.fill(Qt::red);
        const QString png = encodePng(image);
        const QString svg =
            "'<svg xmlns=\"http://www.w3.org/2000/svg\" width=\"9\" height=\"9\"/>'";
        const QString large = encodePng(QImage(8000, 8000, QImage::Format_Mono));
        QStringList rows = {
            "INSERT INTO items (guid,type,image) VALUES('{p}',4," + png + "), ('{q}',4," + svg +
                "), ('{r}',3," + png + ")",
            "INSERT INTO formdata VALUES('late','early',NULL), ('late','b'," + png +
                "), ('drawing','a.png'," + svg + ")",
        };
        for (int i = 0; i < 5; ++i)
            rows << QString("INSERT INTO formdata VALUES('%1','',%2)").arg(i).arg(large);
        TestProject project(makeFile(emptyProject(rows)));
        QCOMPARE(project.records["{p}"].image.size(), QSize(7, 5));
        QVERIFY(project.records["{q}"].image.isNull() && project.records["{r}"].image.isNull());
        QCOMPARE(project.formValues["late"].image.pixelColor(3, 3), QColor(Qt::red));
        QVERIFY(project.formValues["drawing"].image.isNull());
        QCOMPARE(project.formValues["3"].image.width(), 8000);
        QCOMPARE(project.formValues["4"].image.size(), QSize(1000, 1000));
    }

    void missingColumnsAndTables()
    {
        for (const QString column : {"font", "parent", "text"}) {
            const Row in(qPrintable(column));
            TestProject project(
                makeFile(sampleProject({"ALTER TABLE items DROP COLUMN " + column})));
            const CanvasItemInfo note = project.records["{n}"];
            QCOMPARE(note.parent + note.text, (column == "parent" ? QString() : "{f}") +
                                                  (column == "text" ? QString() : "on the sheet"));
            QVERIFY(project.records["{e}"].customFont); // by its property
        }
        for (const char *table : {"connections", "formdata"}) {
            TestProject project(makeFile(sampleProject({QString("DROP TABLE ") + table})));
            QVERIFY(!project.file.getLastError().isEmpty() && project.items.size() == 6);
        }
        QVERIFY(!TestProject().open(makeFile(emptyProject({"DROP TABLE items"}))));
    }

    void projectPropertiesAreSettings()
    {
        TestProject project(makeFile(emptyProject({R"(INSERT INTO properties VALUES
            ('project','margins','1,2,3,4'), ('project','paperSize','4'),
            ('project','paperSize','A4'), ('project','font','Arial,9,-1,5,50,0,0,0,0,0'),
            ('project','font','no,such,font'), ('project','showHeader',''), ('project','more','1'),
            ('project','font','Arial,90000,-1,5,50,0,0,0,0,0'), ('project','showLegend','TRUE'))"})));
        QSettings settings;
        QStringList values;
        for (const QString &key : settings.allKeys())
            values << key + '=' + settings.value(key).toString();
        QCOMPARE(values, QStringList({"font=Arial,9,-1,5,50,0,0,0,0,0", "margins=1,2,3,4",
                                      "pageSize=4", "showLegend=false"}));
        settings.setValue("margins", QStringList({"1.25", "2", "0.333333333", "1"}));
        QVERIFY(project.save(path));
        QCOMPARE(read("SELECT name, value FROM properties"),
                 QStringList({"dbVersion|1", "font|Arial,9,-1,5,50,0,0,0,0,0",
                              "margins|1.25,2,0.333333,1", "paperSize|4", "showHeader|true",
                              "showLegend|false", "showPageNumbers|true"}));
        settings.clear();
    }

    void oldNotesFillTheForm()
    {
        const struct {
            QStringList notes, properties, written;
        } rows[] = {
            {{"'Event','{1}','event',NULL"}, {}, {}},
            {{"'Loss','{1}','first',NULL", "'Loss','{2}','second',NULL"},
             {"'{1}','sibling','{9}'"},
             {"loss|first", "{1}|{9},loss"}},
            {{"'Loss','{1}','elsewhere','{f}'"}, {}, {}},
            // The factors overwrite what the loss of control had.
            {{"'Loss_Of_Control','{1}','tilt',NULL", "'Causal_Factor','{a}','brake',NULL",
              "'Causal_Factor','{b}','switch',NULL"},
             {"'{a}','causalFactorNumber','1'", "'{b}','causalFactorNumber','2'",
              "'{b}','sibling','causalFactor_text_2'"},
             {"causalFactor_guid_1|{a}", "causalFactor_guid_2|{b}", "causalFactor_text_1|brake",
              "causalFactor_text_2|switch", "lossOfControl|tilt",
              "{1}|causalFactor_text_2,causalFactor_text_2", "{b}|causalFactor_text_2"}},
        };
        for (const auto &row : rows) {
            const Row in(qPrintable(row.notes.last()));
            TestProject project(makeOldFile(row.notes, row.properties));
            QCOMPARE(read("SELECT id, value FROM formdata UNION ALL "
                          "SELECT guid, value FROM properties WHERE name='sibling'"),
                     row.written);
            QVERIFY(!project.file.isDirty() && !project.file.requiresFilenamePrompt());
            const QByteArray upgraded = readBytes(path);
            QVERIFY(project.open(path));
            QCOMPARE(readBytes(path), upgraded);
        }
    }

    void anOldFileMayStayAsItIs()
    {
        const QStringList reasons[] = {
            {"INSERT INTO properties VALUES('project','dbVersion','-1')"}, // older than any
            {"DROP TABLE properties", // and half an upgrade fails
             "CREATE TABLE properties (guid TEXT,name TEXT,value TEXT CHECK(value<>'1'))"}};
        for (const QStringList &reason : reasons) {
            const QByteArray before = readBytes(makeOldFile({OldLoss}, {}, reason));
            TestProject project(path);
            QCOMPARE(project.items.size(), 1);
            QCOMPARE(readBytes(path), before);
        }
    }

    void anOldFileThatCannotBeWrittenIsReadAsACopy()
    {
        const QByteArray before = readBytes(makeOldFile({OldLoss}));
        QSqlDatabase::database(QSqlDatabase::defaultConnection, false)
            .setConnectOptions("QSQLITE_BUSY_TIMEOUT=50");
        TestProject project;
        QSignalSpy told(&project.file, &ProjectFile::openedAsCopy);
        {
            QSqlDatabase other = QSqlDatabase::addDatabase("QSQLITE", "other");
            other.setDatabaseName(path);
            QVERIFY(other.open() && QSqlQuery(other).exec("BEGIN IMMEDIATE"));
            QVERIFY(project.open(path));
        }
        QSqlDatabase::removeDatabase("other");
        QCOMPARE(project.formValues["loss"].value, QString("loss"));
        QVERIFY(told.count() == 1 && project.file.requiresFilenamePrompt());
        QCOMPARE(readBytes(path), before);
        QVERIFY(project.save(folder.filePath("new.epf")) && !project.file.requiresFilenamePrompt());
    }

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

EXAMINER_TEST_MAIN(TestOpening)
#include "testopening.moc"
