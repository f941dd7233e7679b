#include "project/projectreader.h"
#include "support/images.h"
#include "testing/project.h"
#include "testing/records.h"
#include "testing/rows.h"
#include "testing/testmain.h"

#include <QBuffer>

/// What comes out of a file of the current version.
class TestOpening : public QObject
{
    Q_OBJECT

    std::unique_ptr<QTemporaryDir> folder;

    QString makeFile(const QStringList &statements)
    {
        const QString path = folder->filePath("project.epf");
        QFile::remove(path);
        runSql(path, statements);
        return path;
    }
    static QByteArray encodePng(const QImage &image)
    {
        QByteArray bytes;
        QBuffer buffer(&bytes);
        buffer.open(QIODevice::WriteOnly);
        image.save(&buffer, "PNG");
        return bytes;
    }
    static QString toBlob(const QByteArray &bytes) { return "X'" + bytes.toHex() + "'"; }

private slots:
    void init()
    {
        folder = std::make_unique<QTemporaryDir>();
        QSettings().clear();
    }

    void itemsComeMainSheetFirst()
    {
        TestProject project(makeFile(sampleProject()));
        QStringList guids;
        for (const CanvasItemInfo &info : project.records)
            guids << info.guid;
        QCOMPARE(guids, QStringList({"{f}", "{e}", "{b}", "{l}", "{n}", "{m}"}));
        QVERIFY(!project.file.isDirty() && !project.file.isBusy());
        QVERIFY(!QSqlDatabase::database(QSqlDatabase::defaultConnection, false).isOpen());
        QCOMPARE(
            describe(project.getRecord("{f}")),
            QString("3 Causal_Factor {f} at 240,200 to 400,280 size 160,80 \"cause\" font %1 0 "
                    "text #1f4e9e fill #fff2cc align 33 line 1 border 4 factor 2 of  siblings "
                    "causalFactor_text_2+{x} arrow 0 image 0 not relevant")
                .arg(QFont().toString()));
        QCOMPARE(project.getRecord("{e}").font.toString(), QString("Arial,12,-1,5,75,0,0,0,0,0"));
        QCOMPARE(describe(project.getRecord("{e}").endPoint), QString("180.25,280.5"));
        const CanvasItemInfo line = project.getRecord("{m}");
        QCOMPARE(describe(line.endPoint) + line.parent + line.backgroundColor.name(),
                 QString("4.5,27.25{f}#808080"));
        QVERIFY(line.arrowStyle == 1 && project.getRecord("{l}").lineStyle == 2);
    }

    void connectionsHangOnTheirOwnSheet()
    {
        TestProject project(makeFile(sampleProject({
            "INSERT INTO items VALUES('{o}',8,'#000000',0,0,9,9,0,0,0,NULL)",
            "INSERT INTO connections VALUES('{o}','{n}','{e}',2,4)", // {n} is on the other sheet
            "INSERT INTO connections VALUES('{gone}','{e}','{f}',3,1)",
            "INSERT INTO connections VALUES('{e}','{f}',NULL,3,0)", // a note in place of a line
            "INSERT INTO connections VALUES(NULL,'{e}',NULL,99,0)",
        })));
        const auto ends = [&project](const char *guid) {
            const auto *line = project.find<Line>(guid);
            return describe(line->getStartConnection()) + ", " + describe(line->getEndConnection());
        };
        QCOMPARE(ends("{l}"), QString("{e} side 3, {f} side 1"));
        QCOMPARE(ends("{m}"), QString("free, {n} side 2"));
        QCOMPARE(ends("{o}"), QString("free, {e} side 4"));
    }

    void strangeProperties()
    {
        const char plain[] = "0 0 1  132 relevant";
        const struct {
            const char *name;
            const char *value;
            const char *expected; // number, border, style, siblings, alignment, relevance
        } rows[] = {
            {"textAlignment", "", plain},
            {"borderLineWidth", "2000000000", "0 1000 1  132 relevant"},
            {"borderLineWidth", "-4", plain},
            {"lineStyle", "77", plain},
            {"sibling", ",loss", "0 0 1 loss 132 relevant"},
            {"textAlignment", "AlignRight alignleft", "0 0 1  0 relevant"},
        };
        for (const auto &row : rows) {
            const Row in(row.value);
            TestProject project;
            const QString property = "INSERT INTO properties VALUES('{e}','%1','%2')";
            QVERIFY(project.open(makeFile(
                emptyProject({"INSERT INTO items VALUES('{e}',3,'Event',0,0,9,9,'','',NULL,NULL)",
                              property.arg(row.name, row.value)}))));
            const CanvasItemInfo info = project.getRecord("{e}");
            QCOMPARE(QString("%1 %2 %3 %4 %5 %6")
                         .arg(info.causalFactorNumber)
                         .arg(info.borderLineWidth)
                         .arg(info.lineStyle)
                         .arg(info.siblings.join('+'))
                         .arg(int(info.textAlignment))
                         .arg(info.notRelevant ? "crossed out" : "relevant"),
                     QString(row.expected));
        }
    }

    void picturesAreRaster()
    {
        QImage image(7, 5, QImage::Format_RGB32);
        image.fill(Qt::red);
        const QByteArray drawing = "<svg xmlns='http://www.w3.org/2000/svg' width='9' height='9'/>";
        const QString png = toBlob(encodePng(image));
        const QString svg = toBlob(drawing);
        TestProject project(makeFile(emptyProject({
            "INSERT INTO items VALUES('{p}',4,'Event',0,0,9,9,'',''," + png + ",NULL)",
            "INSERT INTO items VALUES('{q}',4,'Event',0,0,9,9,'',''," + svg + ",NULL)",
            "INSERT INTO items VALUES('{r}',3,'Event',0,0,9,9,'',''," + png + ",NULL)",
            "INSERT INTO formdata VALUES('late','early',NULL), ('late','b'," + png + ")",
            "INSERT INTO formdata VALUES('drawing','a.png'," + svg + ")",
        })));
        QCOMPARE(project.getRecord("{p}").image.size(), QSize(7, 5));
        QVERIFY(project.getRecord("{q}").image.isNull());
        QVERIFY(project.getRecord("{r}").image.isNull());
        QCOMPARE(project.formValues.value("late").image.pixelColor(3, 3), QColor(Qt::red));
        QVERIFY(project.formValues.value("drawing").image.isNull());
        writeBytes(folder->filePath("a.png"), drawing);
        QVERIFY(readImageFile(folder->filePath("a.png")).isNull());
    }

    void picturesPastTheLimitStayAway()
    {
        const QByteArray png = encodePng(QImage(8000, 8000, QImage::Format_Mono));
        QStringList rows;
        for (int i = 0; i < 9; ++i)
            rows << QString("INSERT INTO formdata VALUES('%1','',%2)").arg(i).arg(toBlob(png));
        TestProject project(makeFile(emptyProject(rows)));
        QCOMPARE(project.formValues.size(), 9);
        QVERIFY(!project.formValues.value("0").image.isNull());
        QVERIFY(project.formValues.value("8").image.isNull());
    }

    void missingColumnsAndTables()
    {
        for (const QString column : {"font", "parent", "text"}) {
            const Row in(qPrintable(column));
            TestProject project(
                makeFile(sampleProject({"ALTER TABLE items DROP COLUMN " + column})));
            const CanvasItemInfo note = project.getRecord("{n}");
            QCOMPARE(note.parent, column == "parent" ? QString() : QString("{f}"));
            QCOMPARE(note.text, column == "text" ? QString() : QString("on the sheet"));
            QVERIFY(project.getRecord("{e}").customFont); // by its property
        }
        TestProject project(makeFile(sampleProject({"DROP TABLE connections"})));
        QVERIFY(project.file.getLastError().contains("connections"));
        QCOMPARE(project.formValues.size(), 2);
        QVERIFY(project.open(makeFile(sampleProject({"DROP TABLE formdata"}))));
        QCOMPARE(project.file.getLastError(), QString("Cannot open form data table"));
        QVERIFY(project.formValues.isEmpty());
        QVERIFY(!project.open(makeFile(emptyProject({"DROP TABLE items"}))));
        QCOMPARE(project.file.getLastError(), QString("Failed to get item count from file."));
    }

    void projectPropertiesReachTheSettings()
    {
        const auto read = [this](const QStringList &properties) {
            QStringList rows;
            for (const QString &property : properties)
                rows << "INSERT INTO properties VALUES('project'," + property + ")";
            TestProject project(makeFile(emptyProject(rows)));
        };
        const QSettings settings;
        read({"'paperSize','A4'", "'font','no,such,font'", "'showHeader',''", "'colour','red'",
              "'font','Arial,90000,-1,5,50,0,0,0,0,0'"});
        QCOMPARE(settings.allKeys(), QStringList());
        read({"'margins','1,2,3,4'", "'paperSize','4'", "'font','Arial,9,-1,5,50,0,0,0,0,0'",
              "'showLegend','TRUE'", "'showHeader','true'", "'showPageNumbers','false'"});
        QStringList values;
        for (const QString &key : settings.allKeys())
            values << key + '=' + settings.value(key).toString();
        QCOMPARE(values,
                 QStringList({"font=Arial,9,-1,5,50,0,0,0,0,0", "margins=1,2,3,4", "pageSize=4",
                              "showHeader=true", "showLegend=false", "showPageNumbers=false"}));
    }

    void placesAreBounded()
    {
        const double far = ProjectReader::MaximumCoordinate;
        const struct {
            const char *place; // x, y, width, height
            QRectF expected;
        } rows[] = {
            {"1.25, -2.5, 140.75, -79.125", QRectF(1.25, -2.5, 140.75, -79.125)},
            {"1e300, -1e300, 10, 10", QRectF(far, -far, 0, 10)},
            {"9e999, 0, -9e999, 10", QRectF(0, 0, 0, 10)},
            {"'nan', 'inf', 'x', 10", QRectF(0, 0, 0, 10)},
            {"100, 0, 1e9, 10", QRectF(100, 0, far - 100, 10)},
        };
        for (const auto &row : rows) {
            const Row in(row.place);
            TestProject project;
            const QString item = "INSERT INTO items VALUES('{e}',16,'#000000',%1,'','',NULL,NULL)";
            QVERIFY(project.open(makeFile(emptyProject({item.arg(row.place)}))));
            const CanvasItemInfo info = project.getRecord("{e}");
            QCOMPARE(QRectF(info.startPoint, info.size), row.expected);
            QCOMPARE(info.endPoint, row.expected.bottomRight());
        }
    }

    void aMissingFileOpensAsAnEmptyProject()
    {
        const QString path = folder->filePath("new.epf");
        TestProject project(path);
        QCOMPARE(readRows(path, "SELECT * FROM properties"), QStringList("project|dbVersion|1"));
        QVERIFY(!project.open(folder->filePath("no/such/folder.epf")));
        QVERIFY(!project.open(folder->path()));
        QVERIFY(!project.file.isBusy());
    }

    void afterARefusalTheProjectHasNoName()
    {
        TestProject project;
        project.file.setDirty();
        const QString path =
            makeFile(sampleProject({"UPDATE properties SET value='2' WHERE name='dbVersion'"}));
        QVERIFY(!project.open(path));
        QVERIFY(project.file.getLastError().startsWith(
            "This file was created with a newer version of this software.\n"));
        QVERIFY(project.records.empty());
        QCOMPARE(project.file.getOpenFilename(), QString("untitled"));
        QVERIFY(project.file.requiresFilenamePrompt() && !project.file.isDirty());
    }
};

EXAMINER_TEST_MAIN(TestOpening)
#include "testopening.moc"
