#include "project/projectfile.h"

#include "chart/chartsheet.h"
#include "chart/sheethost.h"
#include "project/saveprogressdialog.h"
#include "support/log.h"

#include <QFile>
#include <QFileInfo>
#include <QSqlDatabase>
#include <QStandardPaths>

namespace
{

constexpr int AutoSaveInterval = 3 * 60 * 1000; // milliseconds, like the next
constexpr int SnapshotInterval = 10 * 60 * 1000;

QString getDataFolder()
{
    return QStandardPaths::writableLocation(QStandardPaths::AppDataLocation);
}

} // namespace

ProjectFile::ProjectFile(SheetHost *host)
    : host(host), autoSaveTimer(new QTimer(this)), autoSavePath(getDataFolder() + '/'),
      keptCopies(getDataFolder() + "/kept")
{
    if (!QSqlDatabase::contains())
        QSqlDatabase::addDatabase("QSQLITE");
    autoSaveTimer->setInterval(AutoSaveInterval);
    connect(autoSaveTimer, &QTimer::timeout, this, &ProjectFile::onAutoSaveTimeout);
    snapshotTimer.setInterval(SnapshotInterval);
    connect(&snapshotTimer, &QTimer::timeout, this, &ProjectFile::onSnapshotTimeout);
}

ProjectFile::~ProjectFile()
{
    QSqlDatabase::database(QSqlDatabase::defaultConnection, false).close();
}

QString ProjectFile::getOpenProjectName() const
{
    if (!openFilename.contains('/'))
        return openFilename == "untitled" ? tr("untitled") : openFilename;
    QString name = openFilename.mid(openFilename.lastIndexOf('/') + 1);
    return name.remove(".epf", Qt::CaseInsensitive);
}

bool ProjectFile::requiresFilenamePrompt() const
{
    return isCopy || openFilename == "untitled" || openFilename.isEmpty() ||
           isAutoSaveName(openFilename) || keptCopies.holds(openFilename);
}

bool ProjectFile::isAutoSaveName(const QString &filename)
{
    return filename.endsWith(".autosave");
}

QString ProjectFile::getAutoSaveNameForOpenFile() const
{
    if (openFilename.isEmpty())
        return QString();
    const bool exists = QFile::exists(openFilename);
    return autoSavePath + (exists ? QFileInfo(openFilename).fileName() : openFilename) +
           ".autosave";
}

bool ProjectFile::hasChangedOnDisk() const
{
    const QByteArray stamp = getFileStamp(openFilename);
    return !stamp.isEmpty() && !openStamp.isEmpty() && stamp != openStamp;
}

void ProjectFile::abandonSave()
{
    QSqlDatabase db = QSqlDatabase::database(QSqlDatabase::defaultConnection, false);
    db.rollback();
    db.close();
}

void ProjectFile::resetOpenFilename()
{
    openFilename = "untitled";
    isCopy = false;
    openStamp.clear();
    lock.release();
    setDirty(false);
    emit projectNameChanged();
}

void ProjectFile::discardAutoSaveFile()
{
    const QString name = getAutoSaveNameForOpenFile();
    const bool exists = QFile::exists(name);
    qCDebug(projectLog) << "Discard auto save file.  Exists? " << exists;
    if (!exists)
        return;
    const bool gone = keptCopies.takeAway(name);
    qCDebug(projectLog) << "Trying to discard auto save file:" << gone;
}

void ProjectFile::setLastError(const QString &message)
{
    qCDebug(projectLog) << "ERROR:" << message;
    lastError = message;
}

bool ProjectFile::keepCopy(const QString &path)
{
    return keptCopies.keepCopy(path);
}

void ProjectFile::setDirty(bool d)
{
    if (d)
        autoSaveTimer->start();
    else
        autoSaveTimer->stop();
    if (!d)
        snapshotTimer.stop();
    else if (!snapshotTimer.isActive())
        snapshotTimer.start();
    dirty = d;
    emit dirtyChanged(d);
}

void ProjectFile::setClean(bool clean)
{
    setDirty(!clean);
}

void ProjectFile::onAutoSaveTimeout()
{
    if (busy)
        autoSaveWaits = true;
    else
        emit requestAutoSave();
}

void ProjectFile::onSnapshotTimeout()
{
    if (!busy)
        emit requestSnapshot();
}

void ProjectFile::restartSnapshotClock()
{
    if (snapshotTimer.isActive())
        snapshotTimer.start();
}

ProjectFile::BusyGuard::BusyGuard(ProjectFile *file) : file(file)
{
    file->busy = true;
}

ProjectFile::BusyGuard::~BusyGuard()
{
    file->busy = false;
    if (file->autoSaveWaits && file->dirty)
        QMetaObject::invokeMethod(file, &ProjectFile::requestAutoSave, Qt::QueuedConnection);
    file->autoSaveWaits = false;
}

bool ProjectFile::refuseWhenBusy()
{
    if (busy)
        setLastError(tr("A project is just being opened or saved."));
    return busy;
}
