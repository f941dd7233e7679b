#include "support/supportfiles.h"

#include "support/log.h"

#include <QCoreApplication>
#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QStandardPaths>

namespace
{

void setModificationTime(const QString &path, const QDateTime &time)
{
    QFile file(path);
    file.setPermissions(file.permissions() | QFile::WriteUser);
    if (file.open(QIODevice::ReadWrite | QIODevice::ExistingOnly))
        file.setFileTime(time, QFileDevice::FileModificationTime);
}

} // namespace

void copyIfNeeded(QString source, QString destination)
{
    const QFileInfo from(source);
    const QFileInfo to(destination);
    qCDebug(supportLog) << "Copy if needed" << destination << "exists?" << to.exists()
                        << from.size() << to.size();
    if (to.exists() && from.size() == to.size() && from.lastModified() == to.lastModified())
        return;
    qCDebug(supportLog) << "Updating" << destination;
    // Under a name of its own at first: nobody meets half a file, and a missing source costs
    // the former copy nothing.
    const QString unfinished = destination + ".new";
    QFile::remove(unfinished);
    if (!QFile::copy(source, unfinished))
        return;
    // A help collection rewrites itself when its parts have another time than the registered.
    setModificationTime(unfinished, from.lastModified());
    QFile::remove(destination);
    QFile::rename(unfinished, destination);
}

bool makePrivateFolder(const QString &path)
{
    return QDir().mkpath(path) &&
           QFile::setPermissions(path, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
}

bool copySupportFiles()
{
    const QString folder = QStandardPaths::writableLocation(QStandardPaths::AppDataLocation);
    makePrivateFolder(folder);
    makePrivateFolder(folder + "/templates");
    const QString own = QCoreApplication::applicationDirPath();
    const QStringList names = {"/formdata.qhc", "/formdata.qch", "/helpcollection2.qhc",
                               "/examinerhelp2.qch", "/templates/quickstart2.epf"};
    for (const QString &name : names)
        copyIfNeeded(own + name, folder + name);
    return QFileInfo(folder).isDir() && QFileInfo(folder).isWritable();
}
