#include "support/supportfiles.h"
#include "testing/files.h"
#include "testing/testmain.h"

#include <QDirIterator>
#include <QHelpEngineCore>
#include <QImage>
#include <QRegularExpression>
#include <QSignalSpy>

#include <stdexcept>

/// The application object, the files that come with it, and the pictures inside.
class TestProgram : public QObject
{
    Q_OBJECT

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
        const auto write = [](const QString &path, const QByteArray &bytes, const QDateTime &time) {
            writeBytes(path, bytes);
            QFile file(path);
            QVERIFY(file.open(QIODevice::Append) &&
                    file.setFileTime(time, QFileDevice::FileModificationTime));
        };
        write(source, "new", noon);
        QVERIFY(QFile::setPermissions(source, QFile::ReadOwner));
        for (int seconds : {-1, 1, 0}) { // an older one, a newer one, and one of the same time
            QFile::setPermissions(copy, QFile::ReadOwner | QFile::WriteOwner);
            write(copy, "old", noon.addSecs(seconds));
            copyIfNeeded(source, copy);
            QCOMPARE(readBytes(copy), QByteArray(seconds ? "new" : "old"));
            QVERIFY(QFileInfo(copy).lastModified() == noon && QFileInfo(copy).isWritable());
        }
        QCOMPARE(QDir(folder.path()).entryList(QDir::Files), QStringList({"a", "b"}));
    }

    void theManualIsWhole()
    {
        copySupportFiles();
        QHelpEngineCore engine(makeDataFolder() + "/helpcollection2.qhc");
        const QRegularExpression link("(?:href|src)=\"([^\"]+)\"");
        QVERIFY(engine.files("examiner.help", QString(), "html").size() > 10);
        for (const QUrl &page : engine.files("examiner.help", QString(), "html")) {
            auto links = link.globalMatch(QString::fromUtf8(engine.fileData(page)));
            while (links.hasNext()) {
                const QUrl target = page.resolved(QUrl(links.next().captured(1)));
                QVERIFY2(!engine.fileData(target).isEmpty(), qPrintable(target.toString()));
            }
        }
    }

    void compiledInPicturesDecode()
    {
        QDirIterator walk(":/images", QDir::Files, QDirIterator::Subdirectories);
        QVERIFY(walk.hasNext());
        while (walk.hasNext())
            QVERIFY2(!QImage(walk.next()).isNull(), qPrintable(walk.filePath()));
    }
};

EXAMINER_TEST_MAIN(TestProgram)
#include "testprogram.moc"
