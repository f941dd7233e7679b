#include "testing/rows.h"
#include "testing/testmain.h"

#include <QDirIterator>
#include <QProcess>
#include <QRegularExpression>
#include <QSqlDatabase>
#include <QSqlQuery>

#include <memory>
#include <unistd.h>

/// The command-line tool as a process of its own, on the sample that the build makes.
class TestExportTool : public QObject
{
    Q_OBJECT

private slots:
    void init()
    {
        qunsetenv("TMPDIR");
        folder = std::make_unique<QTemporaryDir>();
        QVERIFY(QDir(folder->path()).mkpath("temporary"));
        qputenv("TMPDIR", QFile::encodeName(path("temporary")));
        const QString sample = QCoreApplication::applicationDirPath() + "/sample.epf";
        QVERIFY(QFile::copy(sample, path("a plant.epf")));
    }

    void writesAndLeavesNoTrace()
    {
        QImage logo(31, 17, QImage::Format_RGB32);
        logo.fill(Qt::red);
        QVERIFY(logo.save(makeDataFolder() + "/companylogo.png"));
        const QString before = list();
        const QByteArray project = read("a plant.epf");
        const QPair<QString, QByteArray> rows[] = {
            {"x.pdf", "%PDF"}, {"x.PNG", "\x89PNG"}, {QString::fromUtf8("Brücke.doc"), "<?xml"}};
        for (const auto &row : rows) {
            QCOMPARE(run({"a plant.epf", row.first}), QString("0 "));
            QVERIFY(read(row.first).startsWith(row.second));
            if (row.first.endsWith("doc")) {
                const QRegularExpression slot("03000004\\.png[^>]*>([^<]*)<");
                const QString picture = slot.match(read(row.first)).captured(1);
                QCOMPARE(QImage::fromData(QByteArray::fromBase64(picture.toLatin1())).size(),
                         logo.size());
            }
            QVERIFY(QFile::remove(path(row.first)));
        }
        QCOMPARE(list(), before);
        QCOMPARE(read("a plant.epf"), project);
    }

    void oneSheetHasLessPagesThanAll()
    {
        QCOMPARE(run({"--sheet", "1", "a plant.epf", "one.pdf"}), QString("0 "));
        QCOMPARE(run({"a plant.epf", "all.pdf"}), QString("0 "));
        const int pages = read("one.pdf").count("/Type /Page\n");
        QVERIFY(pages >= 1 && read("all.pdf").count("/Type /Page\n") > pages);
    }

    void answersAndRefusals()
    {
        QVERIFY(QFile::link("a plant.epf", path("link.doc")));
        QCOMPARE(link(encoded("a plant.epf"), encoded("hard.pdf")), 0);
        QVERIFY(QFile::link("/dev/null", path("device.png")));
        QVERIFY(QFile::link("round.png", path("round.png")));
        QVERIFY(QDir(folder->path()).mkdir("folder.pdf"));
        QFile text(path("text.epf"));
        QVERIFY(text.open(QIODevice::WriteOnly) && text.write("no project") > 0);
        text.close();
        const QString before = list();
        const QByteArray project = read("a plant.epf");
        const struct {
            const char *name;
            QStringList arguments;
            const char *told;
        } rows[] = {
            {"help", {"--help"}, "0 [^$]*PROJECT.epf"},
            {"version", {"--version"}, "0 examiner-export [0-9.]+\n"},
            {"nothing to do", {}, "2 .*Name a project"},
            {"unknown format", {"a plant.epf", "x.svg"}, "2 .*must end in .pdf, .png or .doc"},
            {"unknown option", {"--fast", "a plant.epf", "x.pdf"}, "2 .*fast"},
            {"no number", {"--sheet", "x", "a plant.epf", "x.pdf"}, "2 .*--sheet takes"},
            {"sheet of a report", {"--sheet", "1", "a plant.epf", "x.doc"}, "2 .*no sheets"},
            {"no such sheet", {"--sheet", "98", "a plant.epf", "x.pdf"}, "1 .*No causal factor"},
            {"no such project", {"none.epf", "x.pdf"}, "1 .*no project none.epf"},
            {"no project", {"text.epf", "x.pdf"}, "1 .*text.epf is no valid project"},
            {"no such folder", {"a plant.epf", "no/x.png"}, "1 .*no/x.png .*: No such file"},
            {"report nowhere", {"a plant.epf", "no/x.doc"}, "1 .*no/x.doc .*: No such file"},
            {"a link to the project", {"a plant.epf", "link.doc"}, "1 .*the project itself"},
            {"the project's other name", {"a plant.epf", "hard.pdf"}, "1 .*the project itself"},
            {"a device", {"a plant.epf", "device.png"}, "1 .*no regular file"},
            {"a link to itself", {"a plant.epf", "round.png"}, "1 .*no regular file"},
            {"a folder", {"a plant.epf", "folder.pdf"}, "1 .*no regular file"},
        };
        for (const auto &row : rows) {
            const Row in(row.name);
            const QString result = run(row.arguments);
            QVERIFY2(result.contains(QRegularExpression(row.told)), qPrintable(result));
            QCOMPARE(list(), before);
        }
        QCOMPARE(read("a plant.epf"), project);
    }

    void formerTargetKeepsModeAndLink()
    {
        QVERIFY(QFile::copy(path("a plant.epf"), path("former.pdf")));
        QVERIFY(QFile::setPermissions(path("former.pdf"), QFile::ReadOwner | QFile::ReadGroup));
        QVERIFY(QFile::link("former.pdf", path("x.pdf")));
        const auto mode = QFile::permissions(path("former.pdf"));
        QVERIFY(run({"--sheet", "98", "a plant.epf", "x.pdf"}).startsWith("1 "));
        QCOMPARE(read("x.pdf"), read("a plant.epf"));
        QCOMPARE(run({"a plant.epf", "x.pdf"}), QString("0 "));
        QVERIFY(read("former.pdf").startsWith("%PDF"));
        QCOMPARE(QFile::permissions(path("former.pdf")), mode);
        QVERIFY(QFileInfo(path("x.pdf")).isSymLink());
    }

    /// What another program has written and not yet brought into the file belongs to it.
    void theLogBesideTheProjectCounts()
    {
        QSqlDatabase database = QSqlDatabase::addDatabase("QSQLITE");
        database.setDatabaseName(path("a plant.epf"));
        QVERIFY(database.open());
        database.exec("PRAGMA journal_mode=WAL");
        database.exec("UPDATE formdata SET value='from the log' WHERE id='incidentTitle'");
        QVERIFY(!read("a plant.epf-wal").isEmpty());
        QCOMPARE(run({"a plant.epf", "x.doc"}), QString("0 "));
        QVERIFY(read("x.doc").contains("from the log"));
    }

    void limitsAndSignalsLeaveNoTrace()
    {
        const QString before = list();
        const QString limited = "ulimit -f 140; exec '%1' 'a plant.epf' x.png";
        const QString result = run({"-c", limited.arg(getTool())}, "sh");
        QVERIFY2(result.contains(QRegularExpression("1 .*File too large")), qPrintable(result));
        QCOMPARE(list(), before);

        QProcess process;
        process.setWorkingDirectory(folder->path());
        process.start(getTool(), {"a plant.epf", "x.png"});
        QTRY_VERIFY(!QDir(path("temporary")).entryList({"examiner-*"}).isEmpty());
        process.terminate();
        QVERIFY(process.waitForFinished());
        QFile::remove(path("x.png")); // if it was quicker
        QCOMPARE(list(), before);
    }

private:
    static QString getTool() { return QCoreApplication::applicationDirPath() + "/examiner-export"; }
    QString path(const QString &name) const { return folder->filePath(name); }
    QByteArray encoded(const QString &name) const { return QFile::encodeName(path(name)); }

    QByteArray read(const QString &name) const
    {
        QFile file(path(name));
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    }

    /// Exit status and all that was said; a crash has the status "-".
    QString run(const QStringList &arguments, const QString &program = getTool()) const
    {
        QProcess process;
        process.setWorkingDirectory(folder->path());
        process.setProcessChannelMode(QProcess::MergedChannels);
        process.start(program, arguments);
        process.waitForFinished(60000);
        const bool ended = process.exitStatus() == QProcess::NormalExit;
        return (ended ? QString::number(process.exitCode()) : QString("-")) + ' ' +
               QString::fromUtf8(process.readAll());
    }

    /// Everything in the folder and at home but what the toolkit puts there.
    QString list() const
    {
        QStringList files;
        for (const QString &place : {folder->path(), QDir::homePath()}) {
            QDirIterator walk(place, QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot,
                              QDirIterator::Subdirectories);
            while (walk.hasNext())
                files.append(walk.next());
        }
        files = files.filter(QRegularExpression("^((?!/cache|/runtime-).)*$"));
        files.sort();
        return files.join('\n');
    }

    std::unique_ptr<QTemporaryDir> folder;
};

EXAMINER_TEST_MAIN(TestExportTool)
#include "testexporttool.moc"
