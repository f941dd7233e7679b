#include "project/statement.h"

Statement::Statement(const QSqlDatabase &db, const QString &sql) : query(db), sql(sql) {}

bool Statement::run(std::initializer_list<QVariant> values)
{
    if (!prepared && !query.prepare(sql))
        return false;
    prepared = true;
    int position = 0;
    for (const QVariant &value : values)
        query.bindValue(position++, value);
    return query.exec();
}
