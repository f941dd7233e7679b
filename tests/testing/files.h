#pragma once

#include <QFile>
#include <QSqlDatabase>
#include <QSqlError>
#include <QSqlQuery>
#include <QSqlRecord>
#include <QTest>

inline QByteArray readBytes(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

inline void writeBytes(const QString &path, const QByteArray &bytes)
{
    QFile file(path);
    QVERIFY(file.open(QIODevice::WriteOnly));
    QCOMPARE(file.write(bytes), qint64(bytes.size()));
}

/// Runs the statements on the file in one transaction, by a connection of their own.
inline void runSql(const QString &path, const QStringList &statements)
{
    {
        QSqlDatabase db = QSqlDatabase::addDatabase("QSQLITE", "testing");
        db.setDatabaseName(path);
        QVERIFY(db.open());
        db.transaction();
        for (const QString &statement : statements) {
            QSqlQuery query(db);
            QVERIFY2(query.exec(statement), qPrintable(statement + query.lastError().text()));
        }
        QVERIFY(db.commit());
    }
    QSqlDatabase::removeDatabase("testing");
}

/// The rows of the query, sorted, their values joined by "|"; NULL as a word.
inline QStringList readRows(const QString &path, const QString &statement)
{
    QStringList rows;
    {
        QSqlDatabase db = QSqlDatabase::addDatabase("QSQLITE", "testing");
        db.setDatabaseName(path);
        db.open();
        QSqlQuery query(statement, db);
        while (query.next()) {
            QStringList values;
            for (int i = 0; i < query.record().count(); ++i)
                values << (query.isNull(i) ? "NULL" : query.value(i).toString());
            rows << values.join('|');
        }
    }
    QSqlDatabase::removeDatabase("testing");
    rows.sort();
    return rows;
}
