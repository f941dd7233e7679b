#include "project/keptcopies.h"

#include <QDebug>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QRegularExpression>
#include <QSaveFile>

namespace
{

constexpr int DatabaseHeaderSize = 100; // bytes
constexpr int LongestName = 60;         // characters, of what stands behind the time
const char Journal[] = "-journal";      // what a database needs beside it after a crash

bool copyFile(const QString &source, const QString &target)
{
    QFile from(source);
    QSaveFile to(target);
    if (!from.open(QIODevice::ReadOnly) || !to.open(QIODevice::WriteOnly))
        return false;
    while (!from.atEnd()) {
        const QByteArray block = from.read(1 << 20);
        if (block.isEmpty() || to.write(block) != block.size())
            return false;
    }
    return from.error() == QFile::NoError && to.commit();
}

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
    if (!file.isFile() || file.size() == 0 || isOwn(path))
        return true;
    QDir().mkpath(folder);
    const QString target = makeTarget(file.fileName());
    // The journal comes first: without it the copy of an interrupted save is a torn file.
    const bool whole = !QFile::exists(path + Journal) || copyFile(path + Journal, target + Journal);
    const bool kept = whole && copyFile(path, target);
    if (!kept) {
        qDebug() << "Failed to keep a copy of" << path;
        QFile::remove(target + Journal);
    }
    prune();
    return kept;
}

QString KeptCopies::getTemporaryPath()
{
    if (!QDir().mkpath(folder))
        return QString();
    const QString path = folder + "/unfinished";
    QFile::remove(path + Journal);
    QFile::remove(path);
    return path;
}

bool KeptCopies::adopt(const QString &temporaryPath, const QString &projectName)
{
    const bool moved = QFile::rename(temporaryPath, makeTarget(projectName));
    if (!moved)
        qDebug() << "Failed to keep a snapshot of" << projectName;
    prune();
    return moved;
}

QString KeptCopies::makeTarget(const QString &name) const
{
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
    for (int i = 0; i < names.size() - MaximumCount; ++i) {
        QFile::remove(folder + '/' + names.at(i));
        QFile::remove(folder + '/' + names.at(i) + Journal);
    }
}
