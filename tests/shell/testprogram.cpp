#include "shell/application.h"
#include "support/supportfiles.h"
#include "testing/rows.h"
#include "testing/testmain.h"

#include <QDirIterator>
#include <QImageReader>
#include <QRegularExpression>
#include <QSignalSpy>

#include <stdexcept>

/// The application object, the files that come with it, and the pictures inside.
class TestProgram : public QObject
{
    Q_OBJECT

    static void write(const QString &path, const QByteArray &content, const QDateTime &time)
    {
        QFile file(path);
        QVERIFY(file.open(QIODevice::WriteOnly) && file.write(content) > 0 && file.flush());
        QVERIFY(file.setFileTime(time, QFileDevice::FileModificationTime));
    }
    static QByteArray read(const QString &path)
    {
        QFile file(path);
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    }

    bool event(QEvent *event) override
    {
        if (event->type() == QEvent::User)
            throw QString("database is locked");
        if (event->type() == QEvent::User + 1)
            throw std::runtime_error("no memory");
        return QObject::event(event);
    }

private slots:
    void failuresOfHandlersAreTold()
    {
        QSignalSpy failed(qobject_cast<Application *>(qApp), &Application::handlerFailed);
        for (int type : {int(QEvent::User), QEvent::User + 1})
            QCoreApplication::postEvent(this, new QEvent(QEvent::Type(type)));
        QTRY_COMPARE(failed.count(), 2);
        QCOMPARE(failed.at(0).at(0).toString(), QString("database is locked"));
        QCOMPARE(failed.at(1).at(0).toString(), QString("no memory"));
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
            QCOMPARE(read(copy), QByteArray(seconds ? "new" : "old"));
            QCOMPARE(QFileInfo(copy).lastModified(), noon);
            QVERIFY(QFileInfo(copy).isWritable());
        }
        QCOMPARE(QDir(folder.path()).entryList(QDir::Files), QStringList({"a", "b"}));
    }

    void compiledInPicturesDecode()
    {
        int pictures = 0;
        QDirIterator walk(":/images", QDir::Files, QDirIterator::Subdirectories);
        for (; walk.hasNext(); ++pictures) {
            const QString path = walk.next();
            const QImage image(path);
            QVERIFY2(!image.isNull(), qPrintable(path));
            const QRegularExpressionMatch folder =
                QRegularExpression("/images/(\\d+)/[^@]*$").match(path);
            if (folder.hasMatch())
                QCOMPARE(image.width(), folder.captured(1).toInt());
        }
        QVERIFY(pictures > 100);
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
