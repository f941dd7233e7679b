#include "project/sqliteguard.h"

#include <QSqlDatabase>
#include <QSqlDriver>
#include <QSqlQuery>
#include <QVariant>

#include <sqlite3.h>

namespace
{

// No picture that is taken in is longer: 64 megapixels of 4 bytes.
constexpr int MaximumValueLength = 256 << 20;
constexpr int StepsBetweenLooks = 1000;

/// Null when the driver carries a library of its own, which must not be called from here.
sqlite3 *getHandle(const QSqlDatabase &db)
{
    QSqlQuery query("SELECT sqlite_source_id()", db);
    if (!query.next() || query.value(0).toString() != sqlite3_sourceid())
        return nullptr;
    const QVariant handle = db.driver()->handle();
    if (qstrcmp(handle.typeName(), "sqlite3*") != 0)
        return nullptr;
    return *static_cast<sqlite3 *const *>(handle.constData());
}

int takeSteps(void *stepsLeft)
{
    qint64 &left = *static_cast<qint64 *>(stepsLeft);
    left -= StepsBetweenLooks;
    return left < 0;
}

} // namespace

void guardDatabase(const QSqlDatabase &db, qint64 *stepsLeft)
{
    QSqlQuery query(db);
    query.exec("PRAGMA trusted_schema=OFF");
    query.exec("PRAGMA cell_size_check=ON");
    if (sqlite3 *handle = getHandle(db)) {
        sqlite3_limit(handle, SQLITE_LIMIT_LENGTH, MaximumValueLength);
        sqlite3_progress_handler(handle, StepsBetweenLooks, takeSteps, stepsLeft);
    }
}

bool isSound(const QSqlDatabase &db)
{
    QSqlQuery query(db);
    return query.exec("PRAGMA quick_check(1)") && query.next() && query.value(0).toString() == "ok";
}
