#include "shell/application.h"
#include "support/supportfiles.h"
#include "testing/files.h"
#include "testing/rows.h"
#include "testing/testmain.h"

#include <QDirIterator>
#include <QImage>
#include <QSignalSpy>

#include <stdexcept>

/// The application object, the files that come with it, and the pictures inside.
class TestProgram : public QObject
{
    Q_OBJECT

    static void write(const QString &path, const QByteArray &content, const QDateTime &time)
    {
        writeBytes(path, content);
        QFile file(path);
        QVERIFY(file.open(QIODevice::Append) &&
                file.setFileTime(time, QFileDevice::FileModificationTime));
    }

    bool event(QEvent *event) override
    {
        if (event->type() == QEvent::User)
            throw std::runtime_error("no memory");
        return QObject::event(event);
    }

private slots:
    void failuresOfHandlersAreTold()
    {
        QSignalSpy failed(qobject_cast<Application *>(qApp), &Application::handlerFailed);
        QCoreApplication::postEvent(this, new QEvent(QEvent::User));
        QTRY_COMPARE(failed.count(), 1);
        QCOMPARE(failed.at(0).at(0).toString(), QString("no memory"));
    }

    void copyKeepsTheTime()
    {
        const QDateTime noon(QDate(2020, 5, 1), QTime(12, 0));
        QTemporaryDir folder;
        const QString source = folder.filePath("a"), copy = folder.filePath("b");
        copyIfNeeded(source, copy); // nothing to copy
        QVERIFY(!QFile::exists(copy));
        write(source, "new", noon);
        QVERIFY(QFile::setPermissions(source, QFile::ReadOwner));
        for (int seconds : {-1, 1, 0}) { // an older one, a newer one, and one of the same time
            const Row in(qPrintable(QString::number(seconds)));
            QFile::setPermissions(copy, QFile::ReadOwner | QFile::WriteOwner);
            write(copy, "old", noon.addSecs(seconds));
            copyIfNeeded(source, copy);
            QCOMPARE(readBytes(copy), QByteArray(seconds ? "new" : "old"));
            QCOMPARE(QFileInfo(copy).lastModified(), noon);
            QVERIFY(QFileInfo(copy).isWritable());
        }
        QCOMPARE(QDir(folder.path()).entryList(QDir::Files), QStringList({"a", "b"}));
    }

    void compiledInPicturesDecode()
    {
        QDirIterator walk(":/images", QDir::Files, QDirIterator::Subdirectories);
        QVERIFY(walk.hasNext());
        while (walk.hasNext())
            QVERIFY2(!QImage(walk.next()).isNull(), qPrintable(walk.filePath()));
    }
};

int main(int argc, char **argv)
{
    TestHome home;
    Application application(argc, argv);
    TestProgram test;
    return QTest::qExec(&test, argc, argv);
}
#include "testprogram.moc"
