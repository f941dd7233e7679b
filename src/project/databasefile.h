#pragma once

#include <QFile>

/// The files of a database: itself and, after a crash, its journal or its log beside it. Where
/// the path is a link, they lie beside what it leads to.

/// Copies all that is there, for the eyes of the user alone. False, with nothing left at the
/// target, when a part can't be copied.
bool copyDatabase(const QString &source, const QString &target);
/// The same by second names, where the file system gives some: takes no room, and what is later
/// written into one is in the other. For files that are about to be replaced.
bool linkDatabase(const QString &source, const QString &target);
/// Under the new name, which nobody must bear. False when the database itself can't be moved.
bool moveDatabase(const QString &source, const QString &target);
/// False when something is left.
bool removeDatabase(const QString &path);
/// Removes what stands beside the database alone.
void removeJournals(const QString &path);

bool hasJournal(const QString &path);
/// Whether what stands beside it may be used: a link, a pipe or a journal that names a further
/// file would have the database write, wait or delete elsewhere.
bool hasSafeJournals(const QString &path);
/// Takes all rights from others than the owner.
void makePrivate(const QString &path);
/// An empty file for the owner alone, unless one stands there already; false when that fails.
bool makePrivateFile(const QString &path);
