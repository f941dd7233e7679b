#include "testing/files.h"
#include "testing/rows.h"
#include "testing/testmain.h"

#include <QProcess>
#include <QRegularExpression>

/// The command-line tool as a process of its own, on the sample that the build makes.
class TestExportTool : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase()
    {
        QVERIFY(QDir(folder.path()).mkdir("temporary"));
        qputenv("TMPDIR", QFile::encodeName(path("temporary")));
        QVERIFY(QFile::copy(QCoreApplication::applicationDirPath() + "/sample.epf", project));
        QVERIFY(QFile::link(project, path("link.doc")));
        writeBytes(path("text.epf"), "no project");
    }

    void writesAndLeavesNoTrace()
    {
        const QString logo = makeDataFolder() + "/companylogo.png";
        QVERIFY(QImage(":/images/why.png").save(logo));
        // What another program has written and not yet brought into the file belongs to it.
        QSqlDatabase database = QSqlDatabase::addDatabase("QSQLITE");
        database.setDatabaseName(project);
        QVERIFY(database.open());
        database.exec("PRAGMA journal_mode=WAL");
        database.exec("UPDATE formdata SET value='from the log' WHERE id='incidentTitle'");
        QVERIFY(QFileInfo(project + "-wal").size() > 0);
        const QString before = list();
        for (const char *name : {"all.pdf", "x.PNG", "Brücke.doc", "one.pdf --sheet 1"})
            QCOMPARE(run("'a plant.epf' " + QString::fromUtf8(name)), QString("0 "));
        const int pages = take("one.pdf").count("/Type /Page >>");
        const QByteArray document = take("all.pdf");
        QVERIFY(pages >= 1 && document.count("/Type /Page >>") > pages);
        QByteArray title = "/Title <feff"; // then two bytes a character
        for (char letter : QByteArray("from the log"))
            title += "00" + QByteArray(1, letter).toHex();
        QVERIFY(document.contains(title + '>'));
        QVERIFY(take("x.PNG").startsWith("\x89PNG"));
        const QByteArray report = take(QString::fromUtf8("Brücke.doc"));
        QVERIFY(report.startsWith("<?xml") && report.contains("from the log"));
        QVERIFY(report.contains(readBytes(logo).toBase64()));
        QCOMPARE(list(), before);
    }

    void refusals()
    {
        const std::pair<const char *, const char *> rows[] = {
            {"--help", "0 [^$]*PROJECT.epf"},
            {"", "2 .*Name a project"},
            {"'a plant.epf' x.svg", "2 .*must end in .pdf, .png or .doc"},
            {"--sheet x 'a plant.epf' x.pdf", "2 .*--sheet takes"},
            {"--sheet 1 'a plant.epf' x.doc", "2 .*no sheets"},
            {"--sheet 98 'a plant.epf' x.pdf", "1 .*No causal factor"},
            {"none.epf x.pdf", "1 .*no project none.epf"},
            {"text.epf x.pdf", "1 .*text.epf is no valid project"},
            {"'a plant.epf' no/x.png", "1 .*no/x.png .*: No such file"},
            {"'a plant.epf' link.doc", "1 .*the project itself"},
        };
        const QString before = list();
        for (const auto &[arguments, told] : rows) {
            const Row in(arguments);
            const QString result = run(arguments);
            QVERIFY2(result.contains(QRegularExpression(told)), qPrintable(result));
            QCOMPARE(list(), before);
        }
    }

    void limitsAndSignalsLeaveNoTrace()
    {
        const QString before = list();
        const QString result = runShell("ulimit -f 140; " + tool + " 'a plant.epf' x.png");
        QVERIFY2(result.contains(QRegularExpression("1 .*File too large")), qPrintable(result));
        QCOMPARE(list(), before);

        QProcess process;
        process.setWorkingDirectory(folder.path());
        process.start("sh", {"-c", "exec " + tool + " 'a plant.epf' x.png"});
        QTRY_VERIFY(!QDir(path("temporary")).entryList({"examiner-*"}).isEmpty() ||
                    process.state() == QProcess::NotRunning);
        process.terminate();
        QVERIFY(process.state() == QProcess::NotRunning || process.waitForFinished());
        QFile::remove(path("x.png")); // if it was quicker
        QCOMPARE(list(), before);
    }

private:
    QString path(const QString &name) const { return folder.filePath(name); }

    QByteArray take(const QString &name) const
    {
        const QByteArray bytes = readBytes(path(name));
        return QFile::remove(path(name)) ? bytes : QByteArray();
    }

    /// Exit status and all that was said; a crash has a status above 128.
    QString runShell(const QString &command) const
    {
        QProcess process;
        process.setWorkingDirectory(folder.path());
        process.setProcessChannelMode(QProcess::MergedChannels);
        process.start("sh", {"-c", command});
        process.waitForFinished(60000);
        return QString("%1 ").arg(process.exitCode()) + QString::fromUtf8(process.readAll());
    }

    QString run(const QString &arguments) const { return runShell(tool + ' ' + arguments); }

    /// The project's sum, and every file here and at home but what the toolkit puts there.
    QString list() const
    {
        return runShell("cksum *.epf && find . ~ ! -path '*/cache*' ! -path '*/runtime-*' | sort");
    }

    QTemporaryDir folder;
    const QString project = path("a plant.epf");
    const QString tool = '"' + QCoreApplication::applicationDirPath() + "/examiner-export\"";
};

EXAMINER_TEST_MAIN(TestExportTool)
#include "testexporttool.moc"
