#include "project/rowindex.h"

#include <QSqlError>
#include <QSqlQuery>
#include <QSqlRecord>
#include <QVariant>

RowIndex::RowIndex(const QSqlDatabase &db, const QString &table, const QString &columns)
    : db(db), statement("SELECT rowid, " + columns + " FROM " + table)
{
}

bool RowIndex::load()
{
    if (loaded)
        return true;
    QSqlQuery query(db);
    query.setForwardOnly(true);
    if (!query.exec(statement))
        return false;
    const bool named = query.record().count() > 2;
    while (query.next()) {
        const QString key = query.value(1).toString();
        if (!key.isNull())
            rows[key].append(
                {query.value(0).toLongLong(), named ? query.value(2).toString() : QString()});
    }
    loaded = !query.lastError().isValid();
    return loaded;
}

void RowIndex::add(const QString &key, const Row &row)
{
    if (loaded)
        rows[key].append(row);
}
