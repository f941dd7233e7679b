#include "project/keptcopies.h"
#include "testing/project.h"
#include "testing/testmain.h"

/// What lies among the kept copies after files were replaced.
class TestKeptCopies : public QObject
{
    Q_OBJECT

private slots:
    void init();

    void keepsWhatItDidNotWrite();
    void namesOpenAsProjects_data();
    void namesOpenAsProjects();
    void theNewestStay();
    void theJournalComesAlong();
    void aFolderThatCannotBeMade();

    void aFirstSaveKeepsTheFormerFile();
    void aChangeByOthersIsKept();
    void aRefusedFileIsKeptBeforeASaveOverIt();
    void anUpgradeKeepsTheOldFile();
    void foreignAutoSavesAreKept();
    void ownAutoSavesAreNot();
    void aFailingCopyStopsNothing();
    void snapshots();
    void aFailedSnapshot();

private:
    QStringList getKept() const;
    QString getKeptPath(const QString &ending) const;
    void write(const QString &path, const QByteArray &bytes);

    std::unique_ptr<QTemporaryDir> folder;
    QString kept; // the program's own folder of copies
};

void TestKeptCopies::init()
{
    folder = std::make_unique<QTemporaryDir>();
    kept = makeDataFolder() + "/kept";
    QFile::remove(kept);
    QDir(kept).removeRecursively();
}

QStringList TestKeptCopies::getKept() const
{
    return QDir(kept).entryList(QDir::Files | QDir::Hidden, QDir::Name);
}

/// The one copy with the ending; empty when there are none or several.
QString TestKeptCopies::getKeptPath(const QString &ending) const
{
    const QStringList names = QDir(kept).entryList({"*" + ending}, QDir::Files);
    return names.size() == 1 ? kept + '/' + names.first() : QString();
}

void TestKeptCopies::write(const QString &path, const QByteArray &bytes)
{
    QFile file(path);
    QVERIFY(file.open(QIODevice::WriteOnly));
    QCOMPARE(file.write(bytes), qint64(bytes.size()));
}

void TestKeptCopies::keepsWhatItDidNotWrite()
{
    KeptCopies copies(kept);
    const QString path = folder->filePath("a.epf");
    QVERIFY(copies.keepCopy(path)); // not there
    write(path, "");
    QVERIFY(copies.keepCopy(path)); // empty
    QVERIFY(copies.keepCopy(folder->path()));
    QVERIFY(getKept().isEmpty());

    write(path, "theirs");
    QVERIFY(copies.keepCopy(path));
    QCOMPARE(getKept().size(), 1);
    QCOMPARE(readBytes(getKeptPath(" a.epf")), QByteArray("theirs"));

    write(path, "ours!!");
    copies.noteWritten(path);
    QVERIFY(copies.isOwn(path));
    QVERIFY(copies.keepCopy(path));
    QCOMPARE(getKept().size(), 1);
    write(path, "again theirs");
    QVERIFY(!copies.isOwn(path));
    QVERIFY(copies.keepCopy(path));
    QCOMPARE(getKept().size(), 2);
}

void TestKeptCopies::namesOpenAsProjects_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("ending");

    QTest::newRow("a project") << "bridge.epf"
                               << " bridge.epf";
    QTest::newRow("an auto-save") << "bridge.epf.autosave"
                                  << " bridge.epf.autosave.epf";
    QTest::newRow("capitals") << "BRIDGE.EPF"
                              << " BRIDGE.EPF.epf";
    QTest::newRow("unicode and a line break")
        << QString("br\u00fccke\n\u6a4b") << QString(" br\u00fccke_\u6a4b.epf");
    QTest::newRow("long") << QString(240, 'x') + ".epf"
                          << " " + QString(56, 'x') + ".epf";
}

void TestKeptCopies::namesOpenAsProjects()
{
    QFETCH(QString, name);
    QFETCH(QString, ending);

    const QString path = folder->filePath(name);
    write(path, "content");
    QVERIFY(KeptCopies(kept).keepCopy(path));
    QCOMPARE(getKept().size(), 1);
    QVERIFY2(getKept().first().endsWith(ending), qPrintable(getKept().first()));
}

void TestKeptCopies::theNewestStay()
{
    KeptCopies copies(kept);
    const QString path = folder->filePath("a.epf");
    for (int i = 0; i < 25; ++i) {
        write(path, QByteArray::number(i));
        QVERIFY(copies.keepCopy(path));
    }
    write(kept + "/mine.epf", "put there by the user");
    write(path, "last");
    QVERIFY(copies.keepCopy(path));

    QStringList names = getKept();
    QVERIFY(names.removeOne("mine.epf"));
    QCOMPARE(names.size(), 20);
    QCOMPARE(readBytes(kept + '/' + names.first()), QByteArray("6"));
    QCOMPARE(readBytes(kept + '/' + names.last()), QByteArray("last"));
}

void TestKeptCopies::theJournalComesAlong()
{
    const QString path = folder->filePath("a.epf");
    write(path, "half written");
    write(path + "-journal", "the other half");
    QVERIFY(KeptCopies(kept).keepCopy(path));
    QCOMPARE(readBytes(getKeptPath(" a.epf")), QByteArray("half written"));
    QCOMPARE(readBytes(getKeptPath(" a.epf-journal")), QByteArray("the other half"));
}

void TestKeptCopies::aFolderThatCannotBeMade()
{
    write(kept, "a file in its place");
    KeptCopies copies(kept);
    const QString path = folder->filePath("a.epf");
    write(path, "content");
    QVERIFY(!copies.keepCopy(path));
    QVERIFY(copies.getTemporaryPath().isNull());
}

void TestKeptCopies::aFirstSaveKeepsTheFormerFile()
{
    const QString path = folder->filePath("project.epf");
    runSql(path, getSampleStatements());
    const QByteArray before = readBytes(path);
    TestProject project;
    QVERIFY(project.open(path));
    QVERIFY(getKept().isEmpty());
    QVERIFY(project.save(path));
    QCOMPARE(readBytes(getKeptPath(" project.epf")), before);
    QVERIFY(project.save(path));
    QCOMPARE(getKept().size(), 1);
}

void TestKeptCopies::aChangeByOthersIsKept()
{
    const QString path = folder->filePath("project.epf");
    TestProject project;
    QVERIFY(project.save(path));
    runSql(path, {"INSERT INTO items VALUES('{theirs}',3,'Event',0,0,9,9,'','',NULL,NULL)"});
    QVERIFY(project.save(path));
    QVERIFY(readRows(path, "SELECT guid FROM items").isEmpty());
    QCOMPARE(readRows(getKeptPath(" project.epf"), "SELECT guid FROM items"),
             QStringList("{theirs}"));
}

void TestKeptCopies::aRefusedFileIsKeptBeforeASaveOverIt()
{
    const QString path = folder->filePath("newer.epf");
    runSql(path, getSampleStatements() + QStringList{"UPDATE properties SET value='2' WHERE "
                                                     "name='dbVersion'"});
    const QByteArray before = readBytes(path);
    TestProject project;
    QVERIFY(!project.open(path));
    QVERIFY(project.save(project.file.getOpenFilename()));
    QCOMPARE(readBytes(getKeptPath(" newer.epf")), before);

    const QString text = folder->filePath("text.epf");
    write(text, QByteArray(3000, 'x'));
    QVERIFY(!project.open(text));
    QVERIFY(!project.save(text));
    QCOMPARE(readBytes(getKeptPath(" text.epf")), QByteArray(3000, 'x'));
}

void TestKeptCopies::anUpgradeKeepsTheOldFile()
{
    const QString path = folder->filePath("old.epf");
    runSql(path,
           getSampleStatements() + QStringList{"DELETE FROM properties", "DROP TABLE formdata"});
    const QByteArray before = readBytes(path);
    TestProject project;
    QVERIFY(project.open(path));
    QVERIFY(readBytes(path) != before);
    QCOMPARE(readBytes(getKeptPath(" old.epf")), before);
    QVERIFY(project.save(path)); // ours since the upgrade
    QCOMPARE(getKept().size(), 1);
}

void TestKeptCopies::foreignAutoSavesAreKept()
{
    const QString path = makeDataFolder() + "/untitled.autosave";
    runSql(path, getSampleStatements());
    TestProject project;
    QVERIFY(project.open(path));
    QVERIFY(!QFile::exists(path));
    QCOMPARE(readRows(getKeptPath(" untitled.autosave.epf"), "SELECT count(*) FROM items"),
             QStringList("6"));

    QDir(kept).removeRecursively();
    runSql(path, getSampleStatements());
    project.file.resetOpenFilename();
    project.file.discardAutoSaveFile();
    QVERIFY(!QFile::exists(path));
    QVERIFY(!getKeptPath(" untitled.autosave.epf").isEmpty());

    QDir(kept).removeRecursively();
    runSql(path, getSampleStatements());
    TestProject other;
    QVERIFY(other.save(other.file.getAutoSaveNameForOpenFile()));
    QVERIFY(readRows(path, "SELECT * FROM items").isEmpty());
    QCOMPARE(readRows(getKeptPath(" untitled.autosave.epf"), "SELECT count(*) FROM items"),
             QStringList("6"));
    other.file.discardAutoSaveFile();
}

void TestKeptCopies::ownAutoSavesAreNot()
{
    TestProject project;
    const QString path = project.file.getAutoSaveNameForOpenFile();
    for (int i = 0; i < 3; ++i)
        QVERIFY(project.save(path));
    project.file.discardAutoSaveFile();
    QVERIFY(project.save(path));
    QVERIFY(project.save(folder->filePath("a.epf")));
    QVERIFY(!QFile::exists(path));
    QVERIFY(getKept().isEmpty());
}

void TestKeptCopies::aFailingCopyStopsNothing()
{
    write(kept, "a file in its place");
    const QString path = folder->filePath("old.epf");
    runSql(path, getSampleStatements() + QStringList{"DELETE FROM properties"});
    TestProject project;
    QVERIFY(project.open(path));
    runSql(path, {"DELETE FROM formdata"});
    QVERIFY(project.save(path));
    const QString autoSave = makeDataFolder() + "/other.autosave";
    runSql(autoSave, getSampleStatements());
    QVERIFY(project.open(autoSave));
    QVERIFY(!QFile::exists(autoSave));
}

void TestKeptCopies::snapshots()
{
    const QString path = folder->filePath("bridge.epf");
    runSql(path, getSampleStatements());
    TestProject project;
    QVERIFY(project.open(path));
    const QByteArray before = readBytes(path);
    project.file.setDirty();
    project.find("{e}")->setPos(5, 6);
    QVERIFY(project.file.keepSnapshot(project.items, project.formValues));
    QVERIFY(project.file.keepSnapshot(project.items, project.formValues));

    QCOMPARE(getKept().size(), 2);
    const QString snapshot = kept + '/' + getKept().last();
    QVERIFY(snapshot.endsWith(" bridge.epf"));
    QCOMPARE(readRows(snapshot, "SELECT x, y FROM items WHERE guid='{e}'"), QStringList("5|6"));
    QVERIFY(project.file.isDirty());
    QCOMPARE(project.file.getOpenFilename(), path);
    QVERIFY(!project.file.hasChangedOnDisk());
    QCOMPARE(readBytes(path), before);

    TestProject reopened;
    QVERIFY(reopened.open(snapshot));
    QCOMPARE(reopened.items.size(), 6);
    QCOMPARE(reopened.formValues.size(), 2);
}

void TestKeptCopies::aFailedSnapshot()
{
    write(kept, "a file in its place");
    TestProject project;
    QVERIFY(!project.file.keepSnapshot(project.items, project.formValues));
    QVERIFY(!project.file.isBusy());
    QVERIFY(QFile::remove(kept));
    QVERIFY(project.file.keepSnapshot(project.items, project.formValues));
    QVERIFY(getKept().first().endsWith(" untitled.epf"));
}

EXAMINER_TEST_MAIN(TestKeptCopies)
#include "testkeptcopies.moc"
