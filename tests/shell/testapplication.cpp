#include "shell/application.h"
#include "support/supportfiles.h"
#include "testing/testmain.h"

#include <QSignalSpy>

#include <stdexcept>

/// The application object, and the files that the start brings along.
class TestApplication : public QObject
{
    Q_OBJECT

private slots:
    void identity();
    void failuresOfHandlers_data();
    void failuresOfHandlers();
    void copyKeepsTheTime();
    void copyIsSkipped();
    void otherTimeIsReplaced_data();
    void otherTimeIsReplaced();
    void missingSource();
    void supportFilesArrive();
};

namespace
{

class Thrower : public QObject
{
public:
    explicit Thrower(bool standard) : standard(standard) {}

    bool event(QEvent *event) override
    {
        if (event->type() != QEvent::User)
            return QObject::event(event);
        if (standard)
            throw std::runtime_error("no memory");
        throw QString("database is locked");
    }

private:
    bool standard;
};

void write(const QString &path, const QByteArray &content, const QDateTime &time)
{
    QFile file(path);
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write(content);
    file.flush();
    QVERIFY(file.setFileTime(time, QFileDevice::FileModificationTime));
}

QByteArray read(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

const QDateTime Noon(QDate(2020, 5, 1), QTime(12, 0));

} // namespace

void TestApplication::identity()
{
    QCOMPARE(QCoreApplication::organizationName(), QString("Tarn Ledger Consulting"));
    QCOMPARE(QCoreApplication::organizationDomain(), QString("none"));
    QCOMPARE(QCoreApplication::applicationName(), QString("Examiner"));
    QCOMPARE(QCoreApplication::applicationVersion(), QString("2.01"));
}

void TestApplication::failuresOfHandlers_data()
{
    QTest::addColumn<bool>("standard");
    QTest::addColumn<QString>("message");

    QTest::newRow("of a save") << false << "database is locked";
    QTest::newRow("of the library") << true << "no memory";
}

void TestApplication::failuresOfHandlers()
{
    QFETCH(bool, standard);
    QFETCH(QString, message);
    Thrower thrower(standard);
    QSignalSpy spy(qobject_cast<Application *>(qApp), &Application::handlerFailed);
    QCoreApplication::postEvent(&thrower, new QEvent(QEvent::User));
    QTRY_COMPARE(spy.count(), 1);
    QCOMPARE(spy.first().first().toString(), message);
}

void TestApplication::copyKeepsTheTime()
{
    QTemporaryDir folder;
    write(folder.filePath("a"), "new", Noon);
    QFile::setPermissions(folder.filePath("a"), QFile::ReadOwner);
    copyIfNeeded(folder.filePath("a"), folder.filePath("b"));
    QCOMPARE(read(folder.filePath("b")), QByteArray("new"));
    QCOMPARE(QFileInfo(folder.filePath("b")).lastModified(), Noon);
    QVERIFY(QFileInfo(folder.filePath("b")).isWritable());
    QCOMPARE(QDir(folder.path()).entryList(QDir::Files), QStringList({"a", "b"}));
}

void TestApplication::copyIsSkipped()
{
    QTemporaryDir folder;
    write(folder.filePath("a"), "new", Noon);
    write(folder.filePath("b"), "old", Noon);
    copyIfNeeded(folder.filePath("a"), folder.filePath("b"));
    QCOMPARE(read(folder.filePath("b")), QByteArray("old"));
}

void TestApplication::otherTimeIsReplaced_data()
{
    QTest::addColumn<int>("seconds");

    QTest::newRow("an older copy") << -1;
    QTest::newRow("a newer copy") << 1;
}

void TestApplication::otherTimeIsReplaced()
{
    QFETCH(int, seconds);
    QTemporaryDir folder;
    write(folder.filePath("a"), "new", Noon);
    write(folder.filePath("b"), "old", Noon.addSecs(seconds));
    copyIfNeeded(folder.filePath("a"), folder.filePath("b"));
    QCOMPARE(read(folder.filePath("b")), QByteArray("new"));
}

void TestApplication::missingSource()
{
    QTemporaryDir folder;
    copyIfNeeded(folder.filePath("a"), folder.filePath("b"));
    QVERIFY(QDir(folder.path()).isEmpty());
}

void TestApplication::supportFilesArrive()
{
    const QString folder = makeDataFolder();
    QVERIFY(QDir(folder).removeRecursively());
    copySupportFiles();
    for (const char *name : {"/formdata.qhc", "/formdata.qch", "/helpcollection2.qhc",
                             "/examinerhelp2.qch", "/templates/quickstart2.epf"}) {
        const QFileInfo source(QCoreApplication::applicationDirPath() + name);
        QVERIFY2(QFile::exists(folder + name), name);
        QCOMPARE(QFileInfo(folder + name).lastModified(), source.lastModified());
    }
}

int main(int argc, char **argv)
{
    TestHome home;
    Application application(argc, argv);
    TestApplication test;
    return QTest::qExec(&test, argc, argv);
}
#include "testapplication.moc"
