#pragma once

#include <QHash>
#include <QSqlDatabase>
#include <QString>
#include <QVector>

/// Where the rows of a table stand. The tables of a project have no indexes, so reaching a
/// row through a WHERE on its text would read the whole table each time.
class RowIndex
{
public:
    struct Row {
        qint64 id;
        QString name; ///< empty in a table without names
    };
    using Rows = QVector<Row>;

    /// `columns` are the key and, where a key has several named rows, the name.
    RowIndex(const QSqlDatabase &db, const QString &table, const QString &columns);

    /// Reads the table once; false when that fails. All else wants it to have come true.
    bool load();

    QStringList getKeys() const { return rows.keys(); }
    bool contains(const QString &key) const { return rows.contains(key); }
    Rows getRows(const QString &key) const { return rows.value(key); }

    /// Before the load there is nothing to remember: it will find the row.
    void add(const QString &key, const Row &row);
    /// Gives the rows of the key and forgets them.
    Rows take(const QString &key) { return rows.take(key); }

private:
    QSqlDatabase db;
    QString statement;
    QHash<QString, Rows> rows; // rows without a key are never found by one
    bool loaded = false;
};
