#include "testing/testmain.h"

#include <QDirIterator>
#include <QImageReader>
#include <QProcess>

/// The command-line tool as a process of its own, on the sample that the build makes.
class TestExportTool : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void writes_data();
    void writes();
    void sheetOfAFactor();
    void pictureIsTheWholeChart();
    void leavesNoTrace();
    void refusals_data();
    void refusals();
    void formerTargetSurvivesAFailure();
    void help();

private:
    struct Result {
        int status;
        QString output;
        QString errors;
    };

    Result run(const QStringList &arguments) const;
    QString path(const QString &name) const { return folder->filePath(name); }

    std::unique_ptr<QTemporaryDir> folder;
};

namespace
{

QByteArray read(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

QStringList listFiles(const QString &folder)
{
    QStringList files;
    QDirIterator walk(folder, QDir::Files | QDir::Hidden, QDirIterator::Subdirectories);
    while (walk.hasNext()) {
        const QString file = walk.next();
        if (!file.contains("/cache/")) // of fonts
            files.append(file);
    }
    return files;
}

} // namespace

void TestExportTool::init()
{
    folder = std::make_unique<QTemporaryDir>();
    const QString sample = QCoreApplication::applicationDirPath() + "/sample.epf";
    QVERIFY(QFile::copy(sample, path("a plant.epf")));
}

TestExportTool::Result TestExportTool::run(const QStringList &arguments) const
{
    QProcess process;
    process.setWorkingDirectory(folder->path());
    process.start(QCoreApplication::applicationDirPath() + "/examiner-export", arguments);
    process.waitForFinished(60000);
    return {process.exitCode(), QString::fromUtf8(process.readAllStandardOutput()),
            QString::fromUtf8(process.readAllStandardError())};
}

void TestExportTool::writes_data()
{
    QTest::addColumn<QString>("target");
    QTest::addColumn<QByteArray>("start");

    QTest::newRow("document") << "x.pdf" << QByteArray("%PDF");
    QTest::newRow("picture in capitals") << "x.PNG" << QByteArray("\x89PNG");
    QTest::newRow("report") << "x.doc" << QByteArray("<?xml");
    QTest::newRow("unicode") << QString::fromUtf8("Brücke 橋.pdf") << QByteArray("%PDF");
}

void TestExportTool::writes()
{
    QFETCH(QString, target);
    QFETCH(QByteArray, start);
    const Result result = run({"a plant.epf", target});
    QCOMPARE(result.errors, QString());
    QCOMPARE(result.status, 0);
    QVERIFY(read(path(target)).startsWith(start));
}

void TestExportTool::sheetOfAFactor()
{
    QCOMPARE(run({"--sheet", "1", "a plant.epf", "one.pdf"}).status, 0);
    QCOMPARE(run({"a plant.epf", "all.pdf"}).status, 0);
    const int pages = read(path("one.pdf")).count("/Type /Page\n");
    QVERIFY(pages >= 1);
    QVERIFY(read(path("all.pdf")).count("/Type /Page\n") > pages);
}

void TestExportTool::pictureIsTheWholeChart()
{
    QCOMPARE(run({"a plant.epf", "x.png"}).status, 0);
    const QSize size = QImageReader(path("x.png")).size();
    // Whole pages of the default paper, and the margin.
    QCOMPARE((size.width() - 20) % 1606, 0);
    QCOMPARE((size.height() - 20) % 1030, 0);
}

void TestExportTool::leavesNoTrace()
{
    const QStringList before = listFiles(QDir::homePath());
    const QByteArray project = read(path("a plant.epf"));
    QVERIFY(!project.isEmpty());
    QCOMPARE(run({"a plant.epf", "x.pdf"}).status, 0);
    QCOMPARE(run({"a plant.epf", "x.doc"}).status, 0);
    QCOMPARE(read(path("a plant.epf")), project);
    QCOMPARE(QDir(folder->path()).entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot),
             QStringList({"a plant.epf", "x.doc", "x.pdf"}));
    QCOMPARE(listFiles(QDir::homePath()), before);
}

void TestExportTool::refusals_data()
{
    QTest::addColumn<QStringList>("arguments");
    QTest::addColumn<int>("status");
    QTest::addColumn<QString>("reason");

    QTest::newRow("nothing to do") << QStringList() << 2 << "Name a project";
    QTest::newRow("unknown format")
        << QStringList({"a plant.epf", "x.svg"}) << 2 << "must end in .pdf, .png or .doc";
    QTest::newRow("unknown option")
        << QStringList({"--fast", "a plant.epf", "x.pdf"}) << 2 << "fast";
    QTest::newRow("sheet without number")
        << QStringList({"--sheet", "x", "a plant.epf", "x.pdf"}) << 2 << "--sheet takes";
    QTest::newRow("no such sheet")
        << QStringList({"--sheet", "98", "a plant.epf", "x.pdf"}) << 1 << "No causal factor";
    QTest::newRow("no such project")
        << QStringList({"none.epf", "x.pdf"}) << 1 << "There is no project none.epf";
    QTest::newRow("a folder") << QStringList({".", "x.pdf"}) << 1 << "There is no project";
    QTest::newRow("no project") << QStringList({"text.epf", "x.pdf"}) << 1
                                << "text.epf is no valid project";
    QTest::newRow("unwritable document")
        << QStringList({"a plant.epf", "missing/x.pdf"}) << 1 << "missing/x.pdf";
    QTest::newRow("unwritable picture")
        << QStringList({"a plant.epf", "missing/x.png"}) << 1 << "missing/x.png";
    QTest::newRow("unwritable report")
        << QStringList({"a plant.epf", "missing/x.doc"}) << 1 << "missing/x.doc";
}

void TestExportTool::refusals()
{
    QFETCH(QStringList, arguments);
    QFETCH(int, status);
    QFETCH(QString, reason);
    QFile text(path("text.epf"));
    QVERIFY(text.open(QIODevice::WriteOnly) && text.write("no project") > 0);
    text.close();
    const Result result = run(arguments);
    QCOMPARE(result.status, status);
    QVERIFY2(result.errors.contains(reason), qPrintable(result.errors));
    QVERIFY(!QFile::exists(path("x.pdf")));
}

void TestExportTool::formerTargetSurvivesAFailure()
{
    QVERIFY(QFile::copy(path("a plant.epf"), path("x.pdf")));
    QCOMPARE(run({"--sheet", "98", "a plant.epf", "x.pdf"}).status, 1);
    QCOMPARE(read(path("x.pdf")), read(path("a plant.epf")));
    QCOMPARE(run({"a plant.epf", "x.pdf"}).status, 0);
    QVERIFY(read(path("x.pdf")).startsWith("%PDF"));
}

void TestExportTool::help()
{
    const Result result = run({"--help"});
    QCOMPARE(result.status, 0);
    QVERIFY(result.output.contains("PROJECT.epf"));
    QVERIFY(result.output.contains("--sheet"));
}

EXAMINER_TEST_MAIN(TestExportTool)
#include "testexporttool.moc"
