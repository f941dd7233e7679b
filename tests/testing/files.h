#pragma once

#include <QFile>
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
    QVERIFY(file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size());
}

/// Runs the statements on the file in one transaction, by a connection of their own. Gives the
/// rows that they read, sorted, their values joined by "|"; NULL as a word.
inline QStringList runSql(const QString &path, const QStringList &statements)
{
    QStringList rows;
    {
        QSqlDatabase db = QSqlDatabase::addDatabase("QSQLITE", "testing");
        db.setDatabaseName(path);
        QTest::qVerify(db.open() && db.transaction(), qPrintable(path), "", __FILE__, __LINE__);
        for (const QString &statement : statements) {
            QSqlQuery query(statement, db);
            if (query.lastError().isValid())
                QTest::qFail(qPrintable(statement + query.lastError().text()), __FILE__, __LINE__);
            while (query.next()) {
                QStringList values;
                for (int i = 0; i < query.record().count(); ++i)
                    values << (query.isNull(i) ? "NULL" : query.value(i).toString());
                rows << values.join('|');
            }
        }
        QTest::qVerify(db.commit(), "commit", "", __FILE__, __LINE__);
    }
    QSqlDatabase::removeDatabase("testing");
    rows.sort();
    return rows;
}
