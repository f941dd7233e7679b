#include "testing/project.h"
#include "testing/rows.h"
#include "testing/testmain.h"

#include <QRegularExpression>
#include <csignal>
#include <sys/resource.h>

/// What lies among the kept copies after files were replaced, and that nothing goes without it.
class TestKeptCopies : public QObject
{
    Q_OBJECT

    std::unique_ptr<QTemporaryDir> folder;
    QString kept; // the program's own folder of copies

    QStringList getKept() const
    {
        return QDir(kept).entryList(QDir::Files | QDir::Hidden, QDir::Name);
    }
    /// The one copy with the ending; empty when there are none or several.
    QString getKeptPath(const QString &ending) const
    {
        const QStringList names = getKept().filter(QRegularExpression(ending + '$'));
        return names.size() == 1 ? kept + '/' + names.first() : QString();
    }
    QString makeFile(const QString &path, const QStringList &more = {})
    {
        runSql(path, sampleProject(more));
        return path;
    }
    static QString getMode(const QString &path)
    {
        return QString::number(QFile::permissions(path) & ~0xf00, 16);
    }

private slots:
    void init()
    {
        folder = std::make_unique<QTemporaryDir>();
        kept = makeDataFolder() + "/kept";
        QFile::remove(kept);
        QDir(kept).removeRecursively();
        QFile::remove(makeDataFolder() + "/untitled.autosave");
    }

    void keepsWhatItDidNotWrite()
    {
        KeptCopies copies(kept);
        const QString path = folder->filePath("a.epf");
        QVERIFY(copies.keepCopy(path)); // not there
        writeBytes(path, "");
        QVERIFY(copies.keepCopy(path)); // empty
        QVERIFY(copies.keepCopy(folder->path()));
        QVERIFY(getKept().isEmpty());
        writeBytes(path, "theirs");
        QVERIFY(copies.keepCopy(path));
        QCOMPARE(readBytes(getKeptPath(" a.epf")), QByteArray("theirs"));
        const QString odd = folder->filePath(QString(60, 'x') + "\n\u6a4b.epf.autosave");
        writeBytes(odd, "odd");
        QVERIFY(copies.keepCopy(odd) && QFile::remove(odd));
        QVERIFY(getKept().last().endsWith("x_\u6a4b.epf.autosave.epf"));
        writeBytes(path, "ours!!");
        copies.noteWritten(path);
        QVERIFY(copies.keepCopy(path));
        QCOMPARE(getKept().size(), 2);
        writeBytes(path, "again theirs");
        QVERIFY(copies.keepCopy(path));
        QCOMPARE(getKept().size(), 3);
    }

    void theNewestStay()
    {
        KeptCopies copies(kept);
        const QString path = folder->filePath("a.epf");
        writeBytes(path + "-wal", "log");
        for (int i = 0; i < 25; ++i) {
            writeBytes(path, QByteArray::number(i));
            QVERIFY(copies.keepCopy(path));
        }
        writeBytes(kept + "/mine.epf", "put there by the user");
        QVERIFY(copies.keepCopy(path));
        QStringList names = getKept();
        QVERIFY(names.removeOne("mine.epf"));
        QCOMPARE(names.size(), 40);
        QCOMPARE(readBytes(kept + '/' + names.first()), QByteArray("6"));
        QCOMPARE(readBytes(kept + '/' + names.at(38)), QByteArray("24"));
    }

    void whatBelongsToItComesAlong()
    {
        const QString path = folder->filePath("a.epf");
        for (const QString part : {"", "-journal", "-wal"})
            writeBytes(path + part, "part" + part.toUtf8());
        QVERIFY(QFile::link(path, folder->filePath("link.epf")));
        QFile::setPermissions(path, QFile::Permissions(0x6666));
        KeptCopies copies(kept);
        QVERIFY(copies.keepCopy(folder->filePath("link.epf")));
        for (const QString part : {"", "-journal", "-wal"}) {
            QCOMPARE(readBytes(getKeptPath(" link.epf" + part)), "part" + part.toUtf8());
            QCOMPARE(getMode(getKeptPath(" link.epf" + part)), QString("6000"));
        }
        QCOMPARE(getMode(kept), QString("7000"));
        QVERIFY(copies.takeAway(path));
        QVERIFY(QDir(folder->path()).entryList(QDir::Files).isEmpty());
        QCOMPARE(readBytes(getKeptPath(" a.epf-wal")), QByteArray("part-wal"));
        QCOMPARE(getMode(getKeptPath(" a.epf")), QString("6000"));
    }

    void aFirstSaveKeepsTheFormerFile()
    {
        const QString path = makeFile(folder->filePath("project.epf"));
        const QByteArray before = readBytes(path);
        TestProject project(path);
        QVERIFY(getKept().isEmpty());
        QVERIFY(project.save(path));
        QVERIFY(project.save(path));
        QCOMPARE(readBytes(getKeptPath(" project.epf")), before);
        QDir(kept).removeRecursively();
        writeBytes(kept, "a file in its place");
        runSql(path, {"DELETE FROM connections"});
        QVERIFY(!project.save(path)); // no way to keep what others wrote
        QVERIFY(project.open(path) && project.save(path) && QFile::remove(kept));
        runSql(path, {"DELETE FROM properties"}); // by others, and older now
        QVERIFY(project.open(path));
        QVERIFY(project.save(path));
        QCOMPARE(getKept().size(), 1);
    }

    void aNewFileTakesThePlaceOfAnother()
    {
        const QString path = makeFile(folder->filePath("a.epf"));
        const QByteArray before = readBytes(path);
        TestProject project;
        writeBytes(kept, "a file in its place");
        QVERIFY(!project.saveNew(path));
        QCOMPARE(readBytes(path), before);
        QCOMPARE(project.file.getOpenFilename(), QString("untitled"));
        QVERIFY(QFile::remove(kept));
        writeBytes(path + "-journal", "half a save");
        QVERIFY(project.saveNew(path));
        QVERIFY(readRows(path, "SELECT * FROM items").isEmpty());
        QCOMPARE(readBytes(getKeptPath(" a.epf")), before);
        QCOMPARE(readBytes(getKeptPath(" a.epf-journal")), QByteArray("half a save"));
        QCOMPARE(
            QDir(folder->path()).entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot),
            QStringList("a.epf"));
    }

    void foreignAutoSavesAreKept()
    {
        const QString path = makeDataFolder() + "/untitled.autosave";
        const auto restore = [path] { TestProject project(path); };
        const auto discard = [] { TestProject().file.discardAutoSaveFile(); };
        const auto saveBeside = [this] {
            TestProject project;
            QVERIFY(project.save(folder->filePath("a.epf")));
        };
        const auto autoSave = [path] {
            TestProject project;
            QCOMPARE(project.save(path), getKeptFolder().isDir());
        };
        const struct {
            const char *name;
            std::function<void()> use;
        } rows[] = {{"restored", restore},
                    {"discarded", discard},
                    {"beside a save", saveBeside},
                    {"beside an auto-save", autoSave}};
        for (const auto &row : rows) {
            const Row in(row.name);
            init();
            makeFile(path);
            const QByteArray before = readBytes(path);
            writeBytes(kept, "a file in its place");
            row.use();
            QCOMPARE(readBytes(path), before); // no way to keep it
            QVERIFY(QFile::remove(kept) && QDir().mkdir(kept));
            row.use();
            QCOMPARE(readBytes(getKeptPath(" untitled.autosave.epf")), before);
            QVERIFY(readBytes(path) != before);
        }
    }

    void ownAutoSavesAreNot()
    {
        const QString target = folder->filePath("precious");
        writeBytes(target, "precious");
        TestProject project;
        const QString path = project.file.getAutoSaveNameForOpenFile();
        QVERIFY(QFile::link(target, path)); // not to be followed
        QVERIFY(!project.open(path));
        for (int i = 0; i < 3; ++i)
            QVERIFY(project.save(path));
        QCOMPARE(getMode(path), QString("6000"));
        project.file.discardAutoSaveFile();
        QVERIFY(project.save(path));
        QVERIFY(project.save(folder->filePath("a.epf")));
        QVERIFY(!QFile::exists(path));
        QVERIFY(getKept().isEmpty());
        QCOMPARE(readBytes(target), QByteArray("precious"));
    }

    void nothingGoesWhereThereIsNoRoom()
    {
        const QString path = makeFile(folder->filePath("a.epf"));
        const QByteArray before = readBytes(path);
        TestProject project;
        std::signal(SIGXFSZ, SIG_IGN);
        const rlimit none = {0, RLIM_INFINITY};
        const rlimit any = {RLIM_INFINITY, RLIM_INFINITY};
        QCOMPARE(setrlimit(RLIMIT_FSIZE, &none), 0);
        QVERIFY(!project.saveNew(path));
        QVERIFY(!project.save(project.file.getAutoSaveNameForOpenFile()));
        QCOMPARE(setrlimit(RLIMIT_FSIZE, &any), 0);
        QCOMPARE(readBytes(path), before);
        QVERIFY(!QFile::exists(project.file.getAutoSaveNameForOpenFile()));
        QVERIFY(project.saveNew(path));
    }

    void snapshots()
    {
        const QString path = makeFile(folder->filePath("bridge.epf"));
        TestProject project(path);
        const QByteArray before = readBytes(path);
        project.file.setDirty();
        project.find("{e}")->setPos(5, 6);
        writeBytes(kept, "a file in its place");
        QVERIFY(!project.file.keepSnapshot(project.items, project.formValues));
        QVERIFY(QFile::remove(kept));
        for (int i = 0; i < 2; ++i)
            QVERIFY(project.file.keepSnapshot(project.items, project.formValues));
        QCOMPARE(getKept().size(), 2);
        const QString snapshot = kept + '/' + getKept().last();
        QVERIFY(snapshot.endsWith(" bridge.epf"));
        QCOMPARE(getMode(snapshot), QString("6000"));
        QVERIFY(project.file.isDirty() && !project.file.hasChangedOnDisk());
        QCOMPARE(readBytes(path), before);
        TestProject reopened(snapshot);
        QCOMPARE(reopened.find("{e}")->pos(), QPointF(5, 6));
        QCOMPARE(reopened.formValues.size(), 2);
    }

private:
    static QFileInfo getKeptFolder() { return QFileInfo(makeDataFolder() + "/kept"); }
};

EXAMINER_TEST_MAIN(TestKeptCopies)
#include "testkeptcopies.moc"
