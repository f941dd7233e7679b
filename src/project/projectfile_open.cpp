#include "project/projectfile.h"

#include "chart/chartsheet.h"
#include "chart/line.h"
#include "chart/sheethost.h"
#include "project/databasefile.h"
#include "project/projectreader.h"
#include "project/saveprogressdialog.h"
#include "project/sqliteguard.h"
#include "support/log.h"

#include <QCoreApplication>
#include <QFileInfo>
#include <QSqlDatabase>
#include <QSqlError>
#include <QSqlQuery>
#include <QTemporaryDir>
#include <QtEndian>

namespace
{

// A byte of a healthy file is worth three steps of one walk over its rows at most; a file
// that leads round in circles runs out.
constexpr qint64 StepsPerByte = 32;
constexpr qint64 StepsForSmallFile = 10 * 1000 * 1000;
// The upgrade looks through whole tables for each causal factor.
constexpr qint64 StepsForUpgrade = 500 * 1000 * 1000;

constexpr int DatabaseHeaderSize = 100; // bytes
constexpr char DamagedText[] = QT_TRANSLATE_NOOP("ProjectFile", "This file is damaged.");
constexpr char NoItems[] = QT_TRANSLATE_NOOP("ProjectFile", "Failed to get item count from file.");

/// The database takes a scrap of a file for an empty one, and fills up a page that is cut
/// short. With a journal or a log beside it the file may be made whole from there.
bool isCutShort(const QString &filename)
{
    QFile file(filename);
    if (hasJournal(filename) || !file.open(QIODevice::ReadOnly) || file.size() == 0)
        return false;
    const QByteArray header = file.read(DatabaseHeaderSize);
    if (header.size() < DatabaseHeaderSize || !header.startsWith("SQLite format 3"))
        return true;
    const auto get = [&header](int place) {
        return qint64(qFromBigEndian<quint32>(header.constData() + place));
    };
    const int pageSize = qFromBigEndian<quint16>(header.constData() + 16);
    const bool knowsPageCount = get(24) == get(92); // else an old library wrote it last
    return knowsPageCount && file.size() < get(28) * (pageSize == 1 ? 65536 : pageSize);
}

/// A number that names no side leaves the end without one.
Sticky::Side toSide(int number)
{
    return number >= Sticky::NoSide && number <= Sticky::AutoSide ? Sticky::Side(number)
                                                                  : Sticky::NoSide;
}

} // namespace

bool ProjectFile::openFile(const QString &filename)
{
    if (refuseWhenBusy())
        return false;
    const BusyGuard guard(this);
    const bool opened = readFile(filename);
    if (!opened)
        resetOpenFilename(); // what is refused must not be saved over
    return opened;
}

bool ProjectFile::readFile(const QString &filename)
{
    const bool fromAutoSave = isAutoSaveName(filename);
    const QFileInfo file(filename);
    // A name without its folder is that of a project without a file.
    openFilename = fromAutoSave ? file.fileName() : file.absoluteFilePath();
    openStamp.clear();
    lock.release();
    isCopy = false;

    QSqlDatabase db = QSqlDatabase::database(QSqlDatabase::defaultConnection, false);
    const QTemporaryDir folderForCopy;
    int version = 0;
    int itemCount = 0;
    if (!openDatabase(db, filename) || !readVersion(db, version))
        return false;
    if (version != Version &&
        !upgradeOpenedFile(db, filename, version, folderForCopy.filePath("copy.epf")))
        return false;
    if (ProjectReader(db).readItemCount(itemCount) != ProjectReader::Done)
        return refuse(db, tr(NoItems));
    SaveProgressDialog progress(tr("Opening file..."), itemCount, host->getDialogParent());
    if (host->getDialogParent()) { // without a window nobody looks
        progress.show();
        QCoreApplication::processEvents();
    }
    ProjectContent content;
    if (!readContent(db, content, progress))
        return false;
    if (version == 0 && db.commit() && !isCopy)
        keptCopies.noteWritten(filename);
    db.close();

    deliver(content, progress);
    finishOpening(filename, fromAutoSave);
    return true;
}

bool ProjectFile::openDatabase(QSqlDatabase &db, const QString &filename)
{
    if (!isSafeFile(filename))
        return false;
    if (isCutShort(filename)) {
        setLastError(tr(NoItems));
        return false;
    }
    db.setDatabaseName(filename);
    if (!db.open()) {
        setLastError(db.lastError().text());
        return false;
    }
    readingBudget = StepsForSmallFile + StepsPerByte * QFileInfo(filename).size();
    guardDatabase(db, &readingBudget);
    return true;
}

/// What may be opened without harm to other files.
bool ProjectFile::isSafeFile(const QString &filename)
{
    const QFileInfo file(filename);
    const bool isOwnFile = file.isFile() && !(isAutoSaveName(filename) && file.isSymLink());
    if ((file.exists() || file.isSymLink()) && !isOwnFile)
        setLastError(tr("This is not a file."));
    else if (!hasSafeJournals(filename))
        setLastError(tr("The journal beside this file leads to other files."));
    else
        return true;
    return false;
}

/// Reads the project's own properties and refuses what this program can't read.
bool ProjectFile::readVersion(QSqlDatabase &db, int &version)
{
    ProjectReader reader(db);
    const ProjectReader::Result tables = reader.checkTables();
    if (tables == ProjectReader::Damaged)
        return refuse(db, tr("The tables of this file are not those of a project."));
    if (tables == ProjectReader::Missing)
        return refuse(db, tr(NoItems));
    if (!isSound(db))
        return refuse(db, tr(DamagedText));
    if (reader.readProjectProperties(version) == ProjectReader::Damaged)
        return refuse(db, tr(NoItems));
    if (version > Version)
        return refuse(db,
                      tr("This file was created with a newer version of this software.\n"
                         "Please visit https://www.tarnledger.example to get the latest version."));
    return true;
}

/// Brings it up to date. A file that can't be written stays as it is and is read from a copy in
/// its newer form. False when the copy can't be read.
bool ProjectFile::upgradeOpenedFile(QSqlDatabase &db, const QString &filename, int version,
                                    const QString &copy)
{
    qCDebug(projectLog) << "Older version of file, upgrading...";
    if (version != 0)
        return true;
    keepCopy(filename);
    if (upgradeInTransaction(db) || !copyDatabase(filename, copy))
        return true;
    db.close();
    isCopy = true;
    if (!openDatabase(db, copy))
        return false;
    upgradeInTransaction(db);
    return true;
}

/// The transaction ends when all of the file has been read: a file that is refused after all
/// stays as it was. Of a failed upgrade nothing stays, so that it is tried again next time.
bool ProjectFile::upgradeInTransaction(QSqlDatabase &db)
{
    // Else each statement would wait by itself for a file that can't be written.
    if (!QSqlQuery(db).exec("BEGIN IMMEDIATE"))
        return false;
    const qint64 forReading = readingBudget;
    readingBudget = StepsForUpgrade;
    const bool upgraded = upgradeFileDatabase(db, 0);
    readingBudget = forReading;
    if (!upgraded)
        QSqlQuery(db).exec("ROLLBACK");
    return upgraded;
}

bool ProjectFile::refuse(QSqlDatabase &db, const QString &message)
{
    setLastError(message);
    db.rollback();
    return false;
}

bool ProjectFile::readContent(QSqlDatabase &db, ProjectContent &content,
                              SaveProgressDialog &progress)
{
    ProjectReader reader(db, [&progress] { progress.keepAlive(); });
    if (reader.readItems(content.items) != ProjectReader::Done)
        return refuse(db, tr(NoItems));
    const ProjectReader::Result connections = reader.readConnections(content.connections);
    if (connections == ProjectReader::Damaged)
        return refuse(db, reader.getErrorText());
    if (connections == ProjectReader::Missing)
        setLastError(reader.getErrorText());
    const ProjectReader::Result formData = reader.readFormData(content.formValues);
    if (formData == ProjectReader::Damaged)
        return refuse(db, tr("Cannot open form data table"));
    if (formData == ProjectReader::Missing)
        setLastError(tr("Cannot open form data table"));
    return true;
}

/// The main sheet comes first, so that each factor's sheet stands before what belongs on it.
void ProjectFile::deliver(ProjectContent &content, SaveProgressDialog &progress)
{
    for (const bool onMainSheet : {true, false}) {
        for (CanvasItemInfo &info : content.items) {
            if (info.parent.isEmpty() != onMainSheet)
                continue;
            emit loadedItem(info);
            progress.incrementProgress();
        }
    }
    connectLines(content, progress);
    emit loadedFormData(content.formValues);
}

void ProjectFile::connectLines(const ProjectContent &content, SaveProgressDialog &progress)
{
    QHash<QString, QString> parents;
    for (const CanvasItemInfo &info : content.items)
        parents.insert(info.guid, info.parent);
    for (const ConnectionRow &row : content.connections) {
        const ChartSheet *sheet = host->getSceneForParent(parents.value(row.line));
        auto *line = qobject_cast<Line *>(sheet->getItemWithGUID(row.line));
        auto *start = qobject_cast<Sticky *>(sheet->getItemWithGUID(row.startNote));
        auto *end = qobject_cast<Sticky *>(sheet->getItemWithGUID(row.endNote));
        if (!line)
            qCDebug(projectLog) << "ERROR:  Can't find line with guid" << row.line;
        if (line && start)
            line->setStartConnection({start, toSide(row.startSide)});
        if (line && end)
            line->setEndConnection({end, toSide(row.endSide)});
        progress.keepAlive();
    }
}

void ProjectFile::finishOpening(const QString &filename, bool fromAutoSave)
{
    if (fromAutoSave) {
        setDirty(true);
        const bool gone = keptCopies.takeAway(filename);
        qCDebug(projectLog) << "Trying to delete auto save file:" << gone;
        // The work must not live in memory alone.
        QMetaObject::invokeMethod(this, &ProjectFile::requestAutoSave, Qt::QueuedConnection);
    } else {
        openStamp = getFileStamp(filename);
        lock.hold(filename);
        setDirty(false);
    }
    emit projectNameChanged();
    if (isCopy)
        emit openedAsCopy();
}
