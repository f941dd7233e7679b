#include "support/filereplacement.h"

#include <QCoreApplication>
#include <QFile>
#include <QFileInfo>
#include <QMutex>
#include <QMutexLocker>
#include <QTemporaryFile>

#include <cstdio>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace
{

constexpr int MostLinks = 40;
constexpr int ProbeSize = 65536; // bytes

QMutex unfinishedLock;
QByteArray unfinishedPath; // empty between two replacements

QString followLinks(QString path)
{
    for (int i = 0; i < MostLinks && QFileInfo(path).isSymLink(); ++i)
        path = QFileInfo(path).symLinkTarget();
    return path;
}

/// Of a former file, or of one that is new.
mode_t getMode(const QByteArray &path)
{
    struct stat former = {};
    if (stat(path.constData(), &former) == 0)
        return former.st_mode & 07777;
    const mode_t mask = umask(0);
    umask(mask);
    return 0666 & ~mask;
}

bool isOnDisk(const QByteArray &path)
{
    const int file = open(path.constData(), O_RDONLY | O_CLOEXEC);
    if (file < 0)
        return false;
    const bool synced = fsync(file) == 0;
    return close(file) == 0 && synced;
}

/// Printers don't tell why they fail: what does the system say to writing on?
QString getWriteError(const QString &path)
{
    QFile file(path);
    if (!file.open(QIODevice::Append | QIODevice::Unbuffered))
        return file.errorString();
    const bool written = file.write(QByteArray(ProbeSize, '\0')) == ProbeSize;
    return written && isOnDisk(QFile::encodeName(path)) ? QString() : file.errorString();
}

/// A file that goes unless it has taken another's place.
class UnfinishedFile
{
public:
    explicit UnfinishedFile(const QString &target)
        : target(QFile::encodeName(target)),
          file(QFileInfo(target).absolutePath() + "/.examiner-XXXXXX")
    {
        const QMutexLocker locker(&unfinishedLock);
        if (file.open())
            unfinishedPath = QFile::encodeName(file.fileName());
        file.close();
    }

    ~UnfinishedFile()
    {
        const QMutexLocker locker(&unfinishedLock);
        unfinishedPath.clear();
        file.remove();
    }

    QString getPath() const { return file.fileName(); }
    QString getError() const { return file.errorString(); }

    bool replaceTarget()
    {
        const QMutexLocker locker(&unfinishedLock);
        if (!isOnDisk(unfinishedPath) || chmod(unfinishedPath.constData(), getMode(target)) != 0 ||
            std::rename(unfinishedPath.constData(), target.constData()) != 0)
            return false;
        file.setAutoRemove(false);
        return true;
    }

private:
    Q_DISABLE_COPY(UnfinishedFile)

    QByteArray target;
    QTemporaryFile file;
};

QString makeText(const QString &target, const QString &reason)
{
    if (reason.isEmpty())
        return QCoreApplication::translate("replaceFile", "The file %1 could not be written.")
            .arg(target);
    return QCoreApplication::translate("replaceFile", "The file %1 could not be written: %2.")
        .arg(target, reason);
}

} // namespace

QString replaceFile(const QString &target, const std::function<bool(const QString &)> &write)
{
    const QString path = followLinks(target);
    const QFileInfo former(path);
    if (former.isSymLink() || (former.exists() && !former.isFile()))
        return makeText(target,
                        QCoreApplication::translate("replaceFile", "It is no regular file"));
    QFile file(path); // its folder alone would let it be replaced
    if (former.exists() && !file.open(QIODevice::Append))
        return makeText(target, file.errorString());
    file.close();
    UnfinishedFile unfinished(path);
    if (unfinished.getPath().isEmpty())
        return makeText(target, unfinished.getError());
    if (!write(unfinished.getPath()) || !unfinished.replaceTarget())
        return makeText(target, getWriteError(unfinished.getPath()));
    return QString();
}

void abandonReplacement()
{
    unfinishedLock.lock(); // for good
    if (!unfinishedPath.isEmpty())
        std::remove(unfinishedPath.constData());
}
