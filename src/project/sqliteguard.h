#pragma once

#include <QtGlobal>

class QSqlDatabase;

/// Prepares an open database for a file that may come from anywhere: its schema may call
/// nothing, no value may be longer than 256 MiB, and every step of the database's machine
/// takes one from `stepsLeft`; below 0 each statement fails. The number outlives the
/// connection.
void guardDatabase(const QSqlDatabase &db, qint64 *stepsLeft);

/// Whether all of the file can be read, as far as the database can tell within its steps.
bool isSound(const QSqlDatabase &db);
