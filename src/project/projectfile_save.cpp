#include "project/projectfile.h"

#include "project/databasefile.h"
#include "project/projectwriter.h"
#include "project/sqliteguard.h"
#include "support/log.h"

#include <QFileInfo>
#include <QSqlDatabase>
#include <QSqlError>
#include <QSqlQuery>
#include <QTemporaryDir>

namespace
{

constexpr char SnapshotConnection[] = "snapshot";

} // namespace

bool ProjectFile::saveFile(const QString &filename, const QList<ProjectItem *> &items,
                           const QHash<QString, FormValue> &formValues)
{
    return save(filename, items, formValues, &ProjectFile::writeInto);
}

bool ProjectFile::saveNewFile(const QString &filename, const QList<ProjectItem *> &items,
                              const QHash<QString, FormValue> &formValues)
{
    return save(filename, items, formValues, &ProjectFile::writeInPlaceOf);
}

bool ProjectFile::save(const QString &filename, const QList<ProjectItem *> &items,
                       const QHash<QString, FormValue> &formValues, Write write)
{
    if (refuseWhenBusy())
        return false;
    const QMutexLocker lock(&saveMutex);
    const BusyGuard guard(this);
    const bool isAutoSave = isAutoSaveName(filename);
    const QString autoSaveName = getAutoSaveNameForOpenFile();
    const QString target = isAutoSave ? autoSaveName : filename;
    if (!(this->*write)(target, items, formValues)) {
        if (isAutoSave && QFileInfo(target).size() == 0)
            QFile::remove(target); // nothing to offer after a crash
        return false;
    }
    keptCopies.noteWritten(target);

    if (isAutoSave)
        restartSnapshotClock();
    else
        finishSaving(filename, autoSaveName);
    return true;
}

bool ProjectFile::writeInto(const QString &target, const QList<ProjectItem *> &items,
                            const QHash<QString, FormValue> &formValues)
{
    QSqlDatabase db = QSqlDatabase::database(QSqlDatabase::defaultConnection, false);
    if (!openForWriting(db, target) || !createTables(db))
        return false;
    bool deletedItems = false;
    if (!writeProject(
            db, items, formValues, [this] { emit itemSaved(); }, deletedItems))
        return false;
    if (deletedItems && !isAutoSaveName(target))
        shrink(db);
    db.close();
    return true;
}

/// The former file goes when the new one is whole and the former is kept.
bool ProjectFile::writeInPlaceOf(const QString &target, const QList<ProjectItem *> &items,
                                 const QHash<QString, FormValue> &formValues)
{
    if (!isSafeFile(target))
        return false;
    const QTemporaryDir folder(QFileInfo(target).absolutePath() + "/.examiner-XXXXXX");
    const QString unfinished = folder.filePath("project.epf");
    if (!folder.isValid()) {
        setLastError(folder.errorString());
        return false;
    }
    if (!writeInto(unfinished, items, formValues))
        return false;
    if (QFile::exists(target))
        QFile::setPermissions(unfinished,
                              QFile::permissions(target) | QFile::ReadOwner | QFile::WriteOwner);
    if (keptCopies.replace(target, unfinished))
        return true;
    setLastError(tr("The former file of this name can't be kept, so it was not replaced."));
    return false;
}

bool ProjectFile::openForWriting(QSqlDatabase &db, const QString &filename)
{
    if (isAutoSaveName(filename)) {
        if (!keptCopies.isOwn(filename) && !keptCopies.takeAway(filename)) {
            setLastError(tr("A former file of this name can't be kept."));
            return false;
        }
        makePrivateFile(filename);
    }
    if (!isSafeFile(filename))
        return false;
    const bool isAsRead = filename == openFilename && !hasChangedOnDisk();
    if (!keepCopy(filename) && !isAsRead) {
        setLastError(tr("What another program wrote into this file can't be kept."));
        return false;
    }
    db.setDatabaseName(filename);
    if (!db.open())
        setLastError(db.lastError().text());
    return db.isOpen();
}

bool ProjectFile::writeProject(QSqlDatabase &db, const QList<ProjectItem *> &items,
                               const QHash<QString, FormValue> &formValues,
                               const std::function<void()> &onItem, bool &deletedItems)
{
    db.transaction();
    try {
        ProjectWriter writer(db, onItem);
        writer.write(items, formValues);
        deletedItems = writer.hasDeletedItems();
        if (!isSound(db))
            throw SaveError{tr("The file would be damaged.")};
    } catch (const SaveError &error) {
        db.rollback();
        setLastError(error.text);
        db.close();
        return false;
    }
    if (!db.commit())
        throw db.lastError().text();
    return true;
}

void ProjectFile::shrink(QSqlDatabase &db)
{
    QSqlQuery query(db);
    if (!query.exec("VACUUM"))
        throw query.lastError().text();
}

void ProjectFile::finishSaving(const QString &filename, const QString &autoSaveName)
{
    if (!autoSaveName.isEmpty() && QFile::exists(autoSaveName)) {
        qCDebug(projectLog) << "Deleting the auto save file" << autoSaveName;
        if (!keptCopies.takeAway(autoSaveName))
            qCDebug(projectLog) << "Failed to delete the auto save file";
    }
    openFilename = filename;
    isCopy = false;
    openStamp = getFileStamp(filename);
    lock.hold(filename);
    setDirty(false);
    emit projectNameChanged();
}

bool ProjectFile::keepSnapshot(const QList<ProjectItem *> &items,
                               const QHash<QString, FormValue> &formValues)
{
    if (refuseWhenBusy())
        return false;
    const BusyGuard guard(this);
    const QString path = keptCopies.getTemporaryPath();
    const bool written = !path.isEmpty() && writeSnapshot(path, items, formValues);
    QSqlDatabase::removeDatabase(SnapshotConnection);
    QString name = QFileInfo(openFilename).fileName();
    return written && keptCopies.adopt(path, name.remove(".autosave"));
}

bool ProjectFile::writeSnapshot(const QString &path, const QList<ProjectItem *> &items,
                                const QHash<QString, FormValue> &formValues)
{
    QSqlDatabase db = QSqlDatabase::addDatabase("QSQLITE", SnapshotConnection);
    bool deletedItems = false;
    try {
        const bool written = openForWriting(db, path) && createTables(db) &&
                             writeProject(
                                 db, items, formValues, [] {}, deletedItems);
        db.close();
        return written;
    } catch (const QString &error) {
        setLastError(error);
        return false;
    }
}
