#include "support/supportfiles.h"

#include "support/log.h"

#include <QCoreApplication>
#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QLocale>
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

void copyFiles(const QString &from, const QString &to, const QStringList &names)
{
    for (const QString &name : names)
        copyIfNeeded(from + name, to + name);
}

/// Where the help lies in the first of the user's languages that it is written in.
QString getHelpFolder()
{
    const QString own = QCoreApplication::applicationDirPath();
    for (const QString &language : QLocale::system().uiLanguages()) {
        const QString region = QString(language).replace('-', '_');
        for (const QString &name : {region, region.section('_', 0, 0)}) {
            const QString folder = own + "/translations/" + name;
            if (QFileInfo::exists(folder + "/helpcollection2.qhc"))
                return folder;
        }
        if (language.startsWith("en"))
            break;
    }
    return own;
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
    copyFiles(own, folder, {"/formdata.qhc", "/formdata.qch", "/templates/quickstart2.epf"});
    copyFiles(getHelpFolder(), folder, {"/helpcollection2.qhc", "/examinerhelp2.qch"});
    return QFileInfo(folder).isDir() && QFileInfo(folder).isWritable();
}
