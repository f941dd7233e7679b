#pragma once

#include <QSqlQuery>
#include <QVariant>

#include <initializer_list>

/// A statement that writes, prepared when it first runs and kept for the next time.
class Statement
{
public:
    Statement(const QSqlDatabase &db, const QString &sql);

    /// Binds the values in the order of the placeholders.
    bool run(std::initializer_list<QVariant> values);
    /// The row that the last run inserted.
    qint64 getLastRow() const { return query.lastInsertId().toLongLong(); }

private:
    QSqlQuery query;
    QString sql;
    bool prepared = false;
};
