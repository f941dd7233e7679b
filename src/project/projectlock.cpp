#include "project/projectlock.h"

#include <QCoreApplication>
#include <QFileInfo>
#include <QLockFile>
#include <QSysInfo>

namespace
{

/// Two roads to a file that lead over links meet at one lock.
QString getLockPath(const QString &project)
{
    const QFileInfo file(QFileInfo(project).canonicalFilePath());
    return file.isFile() ? file.path() + "/." + file.fileName() + ".lock" : QString();
}

/// A pipe in its place would have us wait for ever.
bool canBeLock(const QString &path)
{
    const QFileInfo file(path);
    return !file.isSymLink() && (!file.exists() || file.isFile());
}

bool isHeldElsewhere(QLockFile &file)
{
    return !file.isLocked() && !file.tryLock() && file.error() == QLockFile::LockFailedError;
}

QString describeHolder(const QLockFile &file)
{
    qint64 process = 0;
    QString host, program;
    const bool known = file.getLockInfo(&process, &host, &program);
    return known && host != QSysInfo::machineHostName()
               ? QCoreApplication::translate("ProjectLock", "on %1").arg(host)
               : QCoreApplication::translate("ProjectLock", "in another window");
}

} // namespace

ProjectLock::ProjectLock() = default;

ProjectLock::~ProjectLock() = default;

void ProjectLock::hold(const QString &project)
{
    const QString wanted = getLockPath(project);
    if (wanted.isEmpty() || !canBeLock(wanted))
        return release();
    if (wanted != path) {
        release();
        path = wanted;
        file = std::make_unique<QLockFile>(path);
        file->setStaleLockTime(0); // projects stay open for days; a crash shows by its process
    }
    otherPlace.clear();
    // What says nothing was left half written: it goes, unless somebody holds it.
    qint64 process = 0;
    QString host, program;
    if (isHeldElsewhere(*file) && !file->getLockInfo(&process, &host, &program))
        file->removeStaleLockFile();
    if (isHeldElsewhere(*file))
        otherPlace = describeHolder(*file);
}

void ProjectLock::release()
{
    file.reset();
    path.clear();
    otherPlace.clear();
}
