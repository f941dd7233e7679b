#include "project/databasefile.h"

#include <QFileInfo>
#include <QSaveFile>

#ifdef Q_OS_UNIX
#include <unistd.h>
#endif

namespace
{

constexpr const char *Journals[] = {"-journal", "-wal"};
constexpr char Index[] = "-shm"; // of a log; made anew from it

constexpr int BlockSize = 1 << 20; // bytes, like the next
constexpr int JournalTail = 16;
const QByteArray JournalMagic = QByteArray::fromHex("d9d505f920a163d7");

QFile::Permissions getPrivatePart(QFile::Permissions permissions)
{
    return permissions & (QFile::ReadOwner | QFile::WriteOwner);
}

bool copyFile(const QString &source, const QString &target)
{
    QFile from(source);
    QSaveFile to(target);
    if (!from.open(QIODevice::ReadOnly) || !to.open(QIODevice::WriteOnly))
        return false;
    to.setPermissions(getPrivatePart(from.permissions()));
    while (!from.atEnd()) {
        const QByteArray block = from.read(BlockSize);
        if (block.isEmpty() || to.write(block) != block.size())
            return false;
    }
    return from.error() == QFile::NoError && to.commit();
}

bool linkFile(const QString &source, const QString &target)
{
#ifdef Q_OS_UNIX
    return ::link(QFile::encodeName(source).constData(), QFile::encodeName(target).constData()) ==
           0;
#else
    return false;
#endif
}

/// The journal comes first: without it the copy of an interrupted save is a torn file.
template<typename Place>
bool placeAll(const QString &source, const QString &target, const Place &place)
{
    const QString database = QFileInfo(source).canonicalFilePath();
    bool placed = !database.isEmpty() && hasSafeJournals(database);
    for (const char *journal : Journals) {
        if (QFile::exists(database + journal))
            placed = placed && place(database + journal, target + journal);
    }
    placed = placed && place(database, target);
    if (!placed)
        removeDatabase(target);
    return placed;
}

/// It would be deleted as soon as the database is opened.
bool namesFurtherFile(const QString &journal)
{
    QFile file(journal);
    if (!file.open(QIODevice::ReadOnly) || file.size() < JournalTail)
        return false;
    file.seek(file.size() - JournalTail);
    return file.read(JournalTail).endsWith(JournalMagic);
}

bool isSafe(const QString &path)
{
    const QFileInfo file(path);
    return !file.isSymLink() && (!file.exists() || file.isFile());
}

} // namespace

bool copyDatabase(const QString &source, const QString &target)
{
    return placeAll(source, target, copyFile);
}

bool linkDatabase(const QString &source, const QString &target)
{
    return placeAll(source, target, linkFile);
}

bool moveDatabase(const QString &source, const QString &target)
{
    bool moved = true;
    for (const char *journal : Journals) {
        if (QFile::exists(source + journal))
            moved = moved && QFile::rename(source + journal, target + journal);
    }
    moved = moved && QFile::rename(source, target);
    for (const char *journal : Journals) {
        if (!moved && QFile::exists(target + journal))
            QFile::rename(target + journal, source + journal);
    }
    return moved;
}

bool removeDatabase(const QString &path)
{
    const bool removed = QFile::remove(path) || !QFile::exists(path);
    removeJournals(path);
    return removed;
}

void removeJournals(const QString &path)
{
    for (const char *journal : Journals)
        QFile::remove(path + journal);
    QFile::remove(path + Index);
}

bool hasJournal(const QString &path)
{
    const QString database = QFileInfo(path).canonicalFilePath();
    return QFile::exists(database + Journals[0]) || QFile::exists(database + Journals[1]);
}

bool hasSafeJournals(const QString &path)
{
    // A file that is yet to be made has no canonical path.
    const QFileInfo file(path);
    const QString database = file.exists() ? file.canonicalFilePath() : file.absoluteFilePath();
    for (const char *journal : Journals) {
        if (!isSafe(database + journal))
            return false;
    }
    return isSafe(database + Index) && !namesFurtherFile(database + Journals[0]);
}

void makePrivate(const QString &path)
{
    QFile::setPermissions(path, getPrivatePart(QFile::permissions(path)));
}

bool makePrivateFile(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadWrite) &&
           file.setPermissions(getPrivatePart(file.permissions()));
}
