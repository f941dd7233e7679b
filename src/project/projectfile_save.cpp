#include "project/projectfile.h"

#include "project/projectwriter.h"

#include <QDebug>
#include <QFileInfo>
#include <QSqlDatabase>
#include <QSqlError>
#include <QSqlQuery>

namespace
{

const char SnapshotConnection[] = "snapshot";

} // namespace

bool ProjectFile::saveFile(const QString &filename, const QList<ProjectItem *> &items,
                           const QHash<QString, FormValue> &formValues)
{
    if (refuseWhenBusy())
        return false;
    const QMutexLocker lock(&saveMutex);
    const BusyGuard guard(this);
    const bool isAutoSave = isAutoSaveName(filename);
    const QString autoSaveName = getAutoSaveNameForOpenFile();
    const QString target = isAutoSave ? autoSaveName : filename;

    QSqlDatabase db = QSqlDatabase::database(QSqlDatabase::defaultConnection, false);
    if (!openForWriting(db, target) || !createTables(db))
        return false;
    bool deletedItems = false;
    if (!writeProject(
            db, items, formValues, [this] { emit itemSaved(); }, deletedItems))
        return false;
    if (deletedItems && !isAutoSave)
        shrink(db);
    db.close();
    keptCopies.noteWritten(target);

    if (isAutoSave)
        restartSnapshotClock();
    else
        finishSaving(filename, autoSaveName);
    return true;
}

bool ProjectFile::openForWriting(QSqlDatabase &db, const QString &filename)
{
    const QFileInfo file(filename);
    if (file.exists() && !file.isFile()) {
        setLastError("This is not a file.");
        return false;
    }
    keepCopy(filename);
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
        qDebug() << "Deleting the auto save file" << autoSaveName;
        keepCopy(autoSaveName);
        if (!QFile::remove(autoSaveName))
            qDebug() << "Failed to delete the auto save file";
    }
    openFilename = filename;
    openStamp = getFileStamp(filename);
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
