#include "project/keptcopies.h"

#include "project/databasefile.h"
#include "support/log.h"
#include "support/supportfiles.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QRegularExpression>

#include <cstdio>

namespace
{

constexpr int DatabaseHeaderSize = 100; // bytes
constexpr int LongestName = 60;         // characters, of what stands behind the time

/// A name that opens as a project and is never taken for an auto-save.
QString makeFileName(QString name)
{
    name.replace(QRegularExpression("[[:cntrl:]/\\\\:]"), "_");
    name = name.right(LongestName);
    return name.endsWith(".epf") ? name : name + ".epf";
}

} // namespace

QByteArray getFileStamp(const QString &path)
{
    QFile file(path);
    if (!QFileInfo(path).isFile() || !file.open(QIODevice::ReadOnly))
        return QByteArray();
    const qint64 time = QFileInfo(path).lastModified().toMSecsSinceEpoch();
    return QByteArray::number(file.size()) + '/' + QByteArray::number(time) + '/' +
           file.read(DatabaseHeaderSize);
}

KeptCopies::KeptCopies(const QString &folder) : folder(folder) {}

bool KeptCopies::holds(const QString &path) const
{
    return QFileInfo(QFileInfo(path).path()) == QFileInfo(folder);
}

bool KeptCopies::isOwn(const QString &path) const
{
    const QByteArray stamp = ownFiles.value(QFileInfo(path).canonicalFilePath());
    return !stamp.isEmpty() && stamp == getFileStamp(path);
}

void KeptCopies::noteWritten(const QString &path)
{
    ownFiles.insert(QFileInfo(path).canonicalFilePath(), getFileStamp(path));
}

bool KeptCopies::keepCopy(const QString &path)
{
    const QFileInfo file(path);
    if (!file.isFile() || file.size() == 0 || isOwn(path) || isKept(path))
        return true;
    const QString target = makeTarget(file.fileName());
    const bool kept = !target.isNull() && copyDatabase(path, target);
    if (kept)
        latestCopies.insert(file.canonicalFilePath(), {getFileStamp(path), target});
    else
        qCDebug(projectLog) << "Failed to keep a copy of" << path;
    prune();
    return kept;
}

bool KeptCopies::isKept(const QString &path) const
{
    const auto &[stamp, copy] = latestCopies.value(QFileInfo(path).canonicalFilePath());
    return QFile::exists(copy) && stamp == getFileStamp(path) && !hasJournal(path);
}

bool KeptCopies::takeAway(const QString &path)
{
    const QFileInfo file(path);
    if (file.isSymLink() || isOwn(path) || file.size() == 0)
        return removeDatabase(path);
    const QString target = makeTarget(file.fileName());
    bool taken = !target.isNull() && moveDatabase(path, target);
    if (taken)
        makePrivate(target);
    else // from another file system, perhaps
        taken = keepCopy(path) && removeDatabase(path);
    prune();
    return taken;
}

bool KeptCopies::replace(const QString &path, const QString &finishedPath)
{
    if (!keepForReplacing(path))
        return false;
    // The former file's journal would be played into the new one.
    removeJournals(path);
    return std::rename(QFile::encodeName(finishedPath).constData(),
                       QFile::encodeName(path).constData()) == 0;
}

bool KeptCopies::keepForReplacing(const QString &path)
{
    const QFileInfo file(path);
    if (file.isSymLink() || !file.isFile() || file.size() == 0 || isOwn(path))
        return true;
    const QString target = makeTarget(file.fileName());
    const bool linked = !target.isNull() && linkDatabase(path, target);
    if (linked)
        makePrivate(target);
    prune();
    return linked || keepCopy(path);
}

QString KeptCopies::getTemporaryPath()
{
    if (!makePrivateFolder(folder))
        return QString();
    const QString path = folder + "/unfinished";
    return removeDatabase(path) && makePrivateFile(path) ? path : QString();
}

bool KeptCopies::adopt(const QString &temporaryPath, const QString &projectName)
{
    const QString target = makeTarget(projectName);
    const bool moved = !target.isNull() && QFile::rename(temporaryPath, target);
    if (!moved)
        qCDebug(projectLog) << "Failed to keep a snapshot of" << projectName;
    prune();
    return moved;
}

QString KeptCopies::makeTarget(const QString &name) const
{
    if (!makePrivateFolder(folder))
        return QString();
    QDateTime time = QDateTime::currentDateTimeUtc();
    QString target;
    do {
        target = folder + '/' + time.toString("yyyyMMdd-HHmmss-zzz ") + makeFileName(name);
        time = time.addMSecs(1);
    } while (QFile::exists(target));
    return target;
}

void KeptCopies::prune()
{
    static const QRegularExpression ours("^\\d{8}-\\d{6}-\\d{3} .*\\.epf$",
                                         QRegularExpression::DotMatchesEverythingOption);
    const QStringList names = QDir(folder).entryList(QDir::Files, QDir::Name).filter(ours);
    for (int i = 0; i < names.size() - MaximumCount; ++i)
        removeDatabase(folder + '/' + names.at(i));
}
