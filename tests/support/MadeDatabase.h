#ifndef SUPPORT_MADEDATABASE_H
#define SUPPORT_MADEDATABASE_H

#include <QByteArray>
#include <QString>
#include <QtTest>

#include <memory>

#include <sqlite3.h>

/// Makes a CSPro data file (.csdb) with a dictionary, without cases. The test has to link SQLite.
inline void makeDatabase(const QString &path, const QByteArray &dictionary)
{
    sqlite3 *opened = nullptr;
    QCOMPARE(sqlite3_open(path.toUtf8().constData(), &opened), SQLITE_OK);
    const std::unique_ptr<sqlite3, int (*)(sqlite3 *)> database(opened, sqlite3_close);
    const QByteArray statements = "drop table if exists meta; create table meta(dictionary text); "
                                  "insert into meta values(char(65279) || '"
        + QByteArray(dictionary).replace("'", "''") + "');";
    QCOMPARE(sqlite3_exec(opened, statements.constData(), nullptr, nullptr, nullptr), SQLITE_OK);
}

#endif
