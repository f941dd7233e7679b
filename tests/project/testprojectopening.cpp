#include "project/projectfile.h"
#include "project/projectreader.h"
#include "testing/project.h"
#include "testing/testmain.h"

#include <QBuffer>
#include <QSignalSpy>

/// What comes out of a file of the current version.
class TestProjectOpening : public QObject
{
    Q_OBJECT

private slots:
    void init();

    void itemsComeMainSheetFirst();
    void recordHoldsRowAndProperties();
    void connectionsHangOnTheirOwnSheet();
    void strangeProperties_data();
    void strangeProperties();
    void itemTypesReadTheirOwnColumns();
    void picturesOfAnyFormat();
    void missingColumns_data();
    void missingColumns();
    void missingTables();
    void laterFormRowWins();
    void projectPropertiesReachTheSettings();
    void strangeProjectPropertiesAreDropped();
    void placesAreBounded_data();
    void placesAreBounded();
    void aMissingFileOpensAsAnEmptyProject();
    void newerVersionIsRefused();
    void aFolderIsRefused();
    void encodings();

private:
    QString makeFile(const QStringList &statements);

    std::unique_ptr<QTemporaryDir> folder;
};

void TestProjectOpening::init()
{
    folder = std::make_unique<QTemporaryDir>();
    QSettings().clear();
}

QString TestProjectOpening::makeFile(const QStringList &statements)
{
    const QString path = folder->filePath("project.epf");
    QFile::remove(path);
    runSql(path, statements);
    return path;
}

void TestProjectOpening::itemsComeMainSheetFirst()
{
    TestProject project;
    QSignalSpy renamed(&project.file, &ProjectFile::projectNameChanged);
    QVERIFY(project.open(makeFile(getSampleStatements())));

    QStringList guids;
    for (const CanvasItemInfo &info : project.records)
        guids << info.guid;
    QCOMPARE(guids, QStringList({"{f}", "{e}", "{b}", "{l}", "{n}", "{m}"}));
    QCOMPARE(renamed.count(), 1);
    QVERIFY(!project.file.isDirty());
    QVERIFY(!project.file.isBusy());
    QCOMPARE(project.file.getOpenProjectName(), QString("project"));
    QVERIFY(!QSqlDatabase::database(QSqlDatabase::defaultConnection, false).isOpen());
}

void TestProjectOpening::recordHoldsRowAndProperties()
{
    TestProject project;
    QVERIFY(project.open(makeFile(getSampleStatements())));

    const CanvasItemInfo &factor = *project.getRecord("{f}");
    QCOMPARE(factor.role.getTypeName(), QString("Causal_Factor"));
    QCOMPARE(factor.text, QString("cause"));
    QCOMPARE(factor.causalFactorNumber, 2);
    QCOMPARE(factor.siblings, QStringList({"causalFactor_text_2", "{x}"}));
    QCOMPARE(factor.textAlignment, Qt::AlignLeft | Qt::AlignTop);
    QCOMPARE(factor.backgroundColor, QColor("#fff2cc"));
    QCOMPARE(factor.textColor, QColor("#1f4e9e"));
    QCOMPARE(factor.borderLineWidth, 4);
    QVERIFY(factor.notRelevant);
    QVERIFY(!factor.customFont);

    const CanvasItemInfo &event = *project.getRecord("{e}");
    QCOMPARE(event.startPoint, QPointF(20.25, 200.5));
    QCOMPARE(event.endPoint, QPointF(180.25, 280.5));
    QVERIFY(event.customFont);
    QCOMPARE(event.font.pointSize(), 12);
    QVERIFY(event.font.bold());

    const CanvasItemInfo &line = *project.getRecord("{m}");
    QCOMPARE(line.parent, QString("{f}"));
    QCOMPARE(line.endPoint, QPointF(4.5, 27.25));
    QCOMPARE(line.backgroundColor, QColor("#808080"));
    QCOMPARE(line.arrowStyle, 1);
    QCOMPARE(project.getRecord("{l}")->lineStyle, 2);
}

void TestProjectOpening::connectionsHangOnTheirOwnSheet()
{
    TestProject project;
    QVERIFY(project.open(makeFile(
        getSampleStatements() +
        QStringList{
            "INSERT INTO items VALUES('{o}',8,'#000000',0,0,9,9,0,0,0,NULL)",
            "INSERT INTO connections VALUES('{o}','{n}','{e}',2,4)", // {n} is on the other sheet
            "INSERT INTO connections VALUES('{gone}','{e}','{f}',3,1)",
            "INSERT INTO connections VALUES('{e}','{f}',NULL,3,0)", // a note in place of a line
            "INSERT INTO connections VALUES(NULL,'{e}',NULL,99,0)",
        })));

    const auto *line = qobject_cast<Line *>(project.find("{l}"));
    QCOMPARE(line->getStartConnection().item, project.find("{e}"));
    QCOMPARE(line->getStartConnection().side, Sticky::RightSide);
    QCOMPARE(line->getEndConnection().item, project.find("{f}"));
    QCOMPARE(line->getEndConnection().side, Sticky::LeftSide);
    const auto *onSheet = qobject_cast<Line *>(project.find("{m}"));
    QVERIFY(!onSheet->getStartConnection().item);
    QCOMPARE(onSheet->getEndConnection().item, project.find("{n}"));
    const auto *across = qobject_cast<Line *>(project.find("{o}"));
    QVERIFY(!across->getStartConnection().item);
    QCOMPARE(across->getEndConnection().item, project.find("{e}"));
}

void TestProjectOpening::strangeProperties_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("value");
    QTest::addColumn<QString>("expected"); // number, border, style, siblings, alignment, relevance

    const QString plain = "0 0 1  132 relevant";
    QTest::newRow("empty values are skipped") << "textAlignment"
                                              << "" << plain;
    QTest::newRow("a number with a fraction") << "causalFactorNumber"
                                              << "1.5" << plain;
    QTest::newRow("a width with a unit") << "borderLineWidth"
                                         << "3px" << plain;
    QTest::newRow("a width over what can be chosen") << "borderLineWidth"
                                                     << "25"
                                                     << "0 25 1  132 relevant";
    QTest::newRow("a width beyond all bounds") << "borderLineWidth"
                                               << "2000000000"
                                               << "0 1000 1  132 relevant";
    QTest::newRow("a width below 0") << "borderLineWidth"
                                     << "-4" << plain;
    QTest::newRow("no pen style") << "lineStyle"
                                  << "77" << plain;
    QTest::newRow("commas only") << "sibling"
                                 << ",,," << plain;
    QTest::newRow("a leading comma") << "sibling"
                                     << ",loss"
                                     << "0 0 1 loss 132 relevant";
    QTest::newRow("alignment words of none") << "textAlignment"
                                             << "AlignRight alignleft"
                                             << "0 0 1  0 relevant";
    QTest::newRow("alignment with blanks") << "textAlignment"
                                           << "  AlignTop   AlignLeft "
                                           << "0 0 1  33 relevant";
    QTest::newRow("TRUE in capitals") << "notRelevant"
                                      << "TRUE" << plain;
    QTest::newRow("an unknown name") << "shadowColor"
                                     << "#ff0000" << plain;
}

void TestProjectOpening::strangeProperties()
{
    QFETCH(QString, name);
    QFETCH(QString, value);
    QFETCH(QString, expected);

    TestProject project;
    QVERIFY(project.open(makeFile(
        getTableStatements() +
        QStringList{"INSERT INTO items VALUES('{e}',3,'Event',0,0,9,9,'','',NULL,NULL)",
                    QString("INSERT INTO properties VALUES('{e}','%1','%2')").arg(name, value)})));
    const CanvasItemInfo &info = *project.getRecord("{e}");
    QCOMPARE(QString("%1 %2 %3 %4 %5 %6")
                 .arg(info.causalFactorNumber)
                 .arg(info.borderLineWidth)
                 .arg(info.lineStyle)
                 .arg(info.siblings.join('+'))
                 .arg(int(info.textAlignment))
                 .arg(info.notRelevant ? "crossed out" : "relevant"),
             expected);
}

void TestProjectOpening::itemTypesReadTheirOwnColumns()
{
    TestProject project;
    QVERIFY(project.open(makeFile(
        getTableStatements() +
        QStringList{
            "INSERT INTO items VALUES('{1}',1,'Event',0,0,9,9,'text','Arial,9',NULL,NULL)",
            "INSERT INTO items VALUES('{8}',8,'navy',0,0,9,9,'0','0',0,NULL)",
            "INSERT INTO items VALUES('{16}',16,'Event',0,0,9,9,'0','0',0,NULL)",
            "INSERT INTO items VALUES('{777}',777,'Event',0,0,9,9,'text','',NULL,NULL)",
            "INSERT INTO items VALUES('{3}',3,'condition',0,0,9,9,'t','no,such,font',NULL,'')",
        })));

    QCOMPARE(project.getRecord("{1}")->text, QString());
    QVERIFY(!project.getRecord("{1}")->customFont);
    QCOMPARE(project.getRecord("{8}")->backgroundColor, QColor("navy"));
    QVERIFY(!project.getRecord("{16}")->backgroundColor.isValid());
    QCOMPARE(project.getRecord("{777}")->type, 777);
    QCOMPARE(project.getRecord("{3}")->role.getTypeName(), QString("Event"));
    QVERIFY(project.getRecord("{3}")->customFont);
    QCOMPARE(project.getRecord("{3}")->font, QFont());
}

void TestProjectOpening::picturesOfAnyFormat()
{
    QByteArray png;
    QBuffer buffer(&png);
    buffer.open(QIODevice::WriteOnly);
    QImage image(7, 5, QImage::Format_RGB32);
    image.fill(Qt::red);
    QVERIFY(image.save(&buffer, "PNG"));
    const QString blob = "X'" + png.toHex() + "'";
    TestProject project;
    QVERIFY(project.open(
        makeFile(getTableStatements() +
                 QStringList{
                     "INSERT INTO items VALUES('{p}',4,'Event',0,0,9,9,'',''," + blob + ",NULL)",
                     "INSERT INTO items VALUES('{q}',4,'Event',0,0,9,9,'','',X'0102',NULL)",
                     "INSERT INTO items VALUES('{r}',3,'Event',0,0,9,9,'',''," + blob + ",NULL)",
                     "INSERT INTO formdata VALUES('titleImageFile','a.png'," + blob + ")",
                 })));

    QCOMPARE(project.getRecord("{p}")->image.size(), QSize(7, 5));
    QVERIFY(project.getRecord("{q}")->image.isNull());
    QVERIFY(project.getRecord("{r}")->image.isNull());
    QCOMPARE(project.formValues.value("titleImageFile").image.pixelColor(3, 3), QColor(Qt::red));
}

void TestProjectOpening::missingColumns_data()
{
    QTest::addColumn<QString>("column");

    QTest::newRow("font") << "font";
    QTest::newRow("parent") << "parent";
    QTest::newRow("image") << "image";
    QTest::newRow("text") << "text";
}

void TestProjectOpening::missingColumns()
{
    QFETCH(QString, column);

    TestProject project;
    QVERIFY(project.open(
        makeFile(getSampleStatements() + QStringList{"ALTER TABLE items DROP COLUMN " + column})));

    QCOMPARE(int(project.records.size()), 6);
    const CanvasItemInfo &note = *project.getRecord("{n}");
    QCOMPARE(note.parent, column == "parent" ? QString() : QString("{f}"));
    QCOMPARE(note.text, column == "text" ? QString() : QString("on the sheet"));
    QVERIFY(project.getRecord("{e}")->customFont); // by its property
}

void TestProjectOpening::missingTables()
{
    TestProject project;
    QVERIFY(project.open(makeFile(getSampleStatements() + QStringList{"DROP TABLE connections"})));
    QVERIFY(project.file.getLastError().contains("connections"));
    QCOMPARE(project.formValues.size(), 2);

    TestProject other;
    bool emitted = false;
    connect(&other.file, &ProjectFile::loadedFormData, this, [&] { emitted = true; });
    QVERIFY(other.open(makeFile(getSampleStatements() + QStringList{"DROP TABLE formdata"})));
    QCOMPARE(other.file.getLastError(), QString("Cannot open form data table"));
    QVERIFY(emitted);
    QCOMPARE(int(other.records.size()), 6);

    TestProject third;
    QVERIFY(!third.open(makeFile(getTableStatements() + QStringList{"DROP TABLE items"})));
    QCOMPARE(third.file.getLastError(), QString("Failed to get item count from file."));
}

void TestProjectOpening::laterFormRowWins()
{
    TestProject project;
    QVERIFY(project.open(makeFile(getTableStatements() +
                                  QStringList{"INSERT INTO formdata VALUES('a','early',NULL)",
                                              "INSERT INTO formdata VALUES('a','late',NULL)"})));
    QCOMPARE(project.formValues.size(), 1);
    QCOMPARE(project.formValues.value("a").value, QString("late"));
}

void TestProjectOpening::projectPropertiesReachTheSettings()
{
    TestProject project;
    QVERIFY(project.open(makeFile(
        getTableStatements() +
        QStringList{"INSERT INTO properties VALUES('project','margins','1,2,3,4')",
                    "INSERT INTO properties VALUES('project','paperSize','4')",
                    "INSERT INTO properties VALUES('project','font','Arial,9,-1,5,50,0,0,0,0,0')",
                    "INSERT INTO properties VALUES('project','showLegend','TRUE')",
                    "INSERT INTO properties VALUES('project','showHeader','true')",
                    "INSERT INTO properties VALUES('project','showPageNumbers','false')"})));
    const QSettings settings;
    QCOMPARE(settings.value("margins").toString(), QString("1,2,3,4"));
    QCOMPARE(settings.value("pageSize").toInt(), 4);
    QCOMPARE(settings.value("font").toString(), QString("Arial,9,-1,5,50,0,0,0,0,0"));
    QCOMPARE(settings.value("showLegend").toBool(), false);
    QCOMPARE(settings.value("showHeader").toBool(), true);
    QCOMPARE(settings.value("showPageNumbers").toBool(), false);
}

void TestProjectOpening::strangeProjectPropertiesAreDropped()
{
    QSettings().setValue("showHeader", false);
    TestProject project;
    QVERIFY(project.open(makeFile(
        getTableStatements() +
        QStringList{
            "INSERT INTO properties VALUES('project','paperSize','A4')",
            "INSERT INTO properties VALUES('project','font','no,such,font')",
            "INSERT INTO properties VALUES('project','font','Arial,90000,-1,5,50,0,0,0,0,0')",
            "INSERT INTO properties VALUES('project','showHeader','')",
            "INSERT INTO properties VALUES('project','colour','red')"})));
    const QSettings settings;
    QVERIFY(!settings.contains("pageSize"));
    QVERIFY(!settings.contains("font"));
    QCOMPARE(settings.value("showHeader").toBool(), false);
    QCOMPARE(settings.allKeys(), QStringList({"showHeader"}));
}

void TestProjectOpening::placesAreBounded_data()
{
    QTest::addColumn<QString>("place"); // x, y, width, height
    QTest::addColumn<QRectF>("expected");

    const double far = ProjectReader::MaximumCoordinate;
    QTest::newRow("fractions stay")
        << "1.25, -2.5, 140.75, -79.125" << QRectF(1.25, -2.5, 140.75, -79.125);
    QTest::newRow("far away") << "1e300, -1e300, 10, 10" << QRectF(far, -far, 0, 10);
    QTest::newRow("infinite") << "9e999, 0, -9e999, 10" << QRectF(0, 0, 0, 10);
    QTest::newRow("words for no number") << "'nan', 'inf', 'x', 10" << QRectF(0, 0, 0, 10);
    QTest::newRow("an end far away") << "100, 0, 1e9, 10" << QRectF(100, 0, far - 100, 10);
    QTest::newRow("nothing at all") << "NULL, NULL, NULL, NULL" << QRectF(0, 0, 0, 0);
}

void TestProjectOpening::placesAreBounded()
{
    QFETCH(QString, place);
    QFETCH(QRectF, expected);

    TestProject project;
    QVERIFY(project.open(
        makeFile(getTableStatements() + QStringList{"INSERT INTO items VALUES('{e}',16,'#000000'," +
                                                    place + ",'','',NULL,NULL)"})));
    const CanvasItemInfo &info = *project.getRecord("{e}");
    QCOMPARE(QRectF(info.startPoint, info.size), expected);
    QCOMPARE(info.endPoint, expected.bottomRight());
}

void TestProjectOpening::aMissingFileOpensAsAnEmptyProject()
{
    const QString path = folder->filePath("new.epf");
    TestProject project;
    QVERIFY(project.open(path));
    QVERIFY(project.items.isEmpty());
    QCOMPARE(readRows(path, "SELECT * FROM properties"), QStringList("project|dbVersion|1"));

    QVERIFY(!project.open(folder->filePath("no/such/folder.epf")));
    QVERIFY(!project.file.getLastError().isEmpty());
}

void TestProjectOpening::newerVersionIsRefused()
{
    const QString path =
        makeFile(getSampleStatements() + QStringList{"UPDATE properties SET value='2' WHERE "
                                                     "name='dbVersion'"});
    const QByteArray before = readBytes(path);
    TestProject project;
    QVERIFY(!project.open(path));
    QVERIFY(project.file.getLastError().startsWith(
        "This file was created with a newer version of this software.\n"));
    QVERIFY(project.records.empty());
    QCOMPARE(project.file.getOpenFilename(), path);
    QCOMPARE(readBytes(path), before);
}

void TestProjectOpening::aFolderIsRefused()
{
    TestProject project;
    QVERIFY(!project.open(folder->path()));
    QVERIFY(!project.file.isBusy());
}

void TestProjectOpening::encodings()
{
    QCOMPARE(ProjectFile::alignmentToString(Qt::AlignHCenter | Qt::AlignLeft | Qt::AlignTop),
             QString("AlignHCenter AlignTop"));
    QCOMPARE(ProjectFile::alignmentToString(Qt::AlignJustify), QString("AlignJustify"));
    QCOMPARE(ProjectFile::alignmentToString(Qt::AlignRight | Qt::AlignBottom), QString());
    QCOMPARE(ProjectFile::stringToAlignment("AlignJustify nonsense AlignVCenter"),
             Qt::AlignJustify | Qt::AlignVCenter);
    QVERIFY(ProjectFile::stringToBool("true"));
    QVERIFY(!ProjectFile::stringToBool("True"));
    QCOMPARE(ProjectFile::boolToString(false), QString("false"));
}

EXAMINER_TEST_MAIN(TestProjectOpening)
#include "testprojectopening.moc"
