#include "read/CSProDatabaseGuard_p.h"

#include <sqlite3.h>

#include <QTest>

#include <memory>

using namespace vanlayout;

namespace
{

struct Close {
    void operator()(sqlite3 *connection) const { sqlite3_close(connection); }
    void operator()(sqlite3_stmt *statement) const { sqlite3_finalize(statement); }
};
using Connection = std::unique_ptr<sqlite3, Close>;

constexpr int rowCount = 1000;

void runUnrestricted(sqlite3 *connection, const char *statements)
{
    if (sqlite3_exec(connection, statements, nullptr, nullptr, nullptr) != SQLITE_OK)
        qFatal("%s: %s", statements, sqlite3_errmsg(connection));
}

// A database in memory with the table of CSPro, which has some rows, and with other elements.
Connection openDatabase()
{
    sqlite3 *opened = nullptr;
    if (sqlite3_open(":memory:", &opened) != SQLITE_OK)
        qFatal("cannot open a database in memory");
    Connection connection(opened);
    runUnrestricted(opened,
                    "CREATE TABLE meta (dictionary TEXT);"
                    "CREATE TABLE cases (id TEXT);"
                    "CREATE TRIGGER added AFTER INSERT ON meta BEGIN INSERT INTO cases VALUES ('x'); END;"
                    "CREATE VIEW seen AS SELECT dictionary FROM meta;");
    for (int row = 0; row < rowCount; ++row)
        runUnrestricted(opened, "INSERT INTO meta VALUES ('d')");
    return connection;
}

// The result code of SQLite for a statement that is run to its end: SQLITE_DONE, or the code of its failure.
int run(sqlite3 *connection, const char *text)
{
    sqlite3_stmt *prepared = nullptr;
    int result = sqlite3_prepare_v2(connection, text, -1, &prepared, nullptr);
    const std::unique_ptr<sqlite3_stmt, Close> statement(prepared);
    if (result != SQLITE_OK)
        return result;
    do {
        result = sqlite3_step(prepared);
    } while (result == SQLITE_ROW);
    return result;
}

bool isSet(sqlite3 *connection, int setting)
{
    int value = 0;
    sqlite3_db_config(connection, setting, -1, &value);
    return value != 0;
}

} // namespace

/// Tests each restriction on a CSPro data file while its dictionary is searched.
class CSProDatabaseGuardTest : public QObject
{
    Q_OBJECT

private slots:
    void theTableOfTheDictionaryCanBeRead_data();
    void theTableOfTheDictionaryCanBeRead();
    void allElseIsRefused_data();
    void allElseIsRefused();
    void whatAViewReadsIsRefusedWhereViewsAreOn();
    void triggersDoNotRun();
    void aStatementEndsAfterTheStepsThatItHas();
    void settingsAreThoseForForeignFiles();
};

void CSProDatabaseGuardTest::theTableOfTheDictionaryCanBeRead_data()
{
    QTest::addColumn<QByteArray>("statement");
    QTest::newRow("number of a row") << QByteArray("SELECT rowid FROM main.meta NOT INDEXED LIMIT 1");
    QTest::newRow("column") << QByteArray("SELECT dictionary FROM meta");
    QTest::newRow("in another case") << QByteArray("SELECT DICTIONARY FROM META");
}

void CSProDatabaseGuardTest::theTableOfTheDictionaryCanBeRead()
{
    QFETCH(QByteArray, statement);
    const Connection connection = openDatabase();
    csprodatabase::restrict(connection.get());
    QCOMPARE(run(connection.get(), statement.constData()), SQLITE_DONE);
}

void CSProDatabaseGuardTest::allElseIsRefused_data()
{
    QTest::addColumn<QByteArray>("statement");
    const auto add = [](const char *name, const char *statement) { QTest::newRow(name) << QByteArray(statement); };
    add("another table", "SELECT id FROM cases");
    add("another table next to it", "SELECT dictionary FROM meta, cases");
    add("another table in a condition", "SELECT dictionary FROM meta WHERE dictionary IN (SELECT id FROM cases)");
    add("schema", "SELECT sql FROM sqlite_schema");
    add("view", "SELECT dictionary FROM seen");
    add("function", "SELECT upper(dictionary) FROM meta");
    add("function that counts", "SELECT count(*) FROM meta");
    add("function that loads", "SELECT load_extension('x')");
    add("recursion", "WITH RECURSIVE n (i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM n) SELECT i FROM n LIMIT 1");
    add("pragma", "PRAGMA journal_mode = DELETE");
    add("pragma that reads", "PRAGMA schema_version");
    add("attached database", "ATTACH ':memory:' AS other");
    add("added row", "INSERT INTO meta VALUES ('x')");
    add("changed row", "UPDATE meta SET dictionary = 'x'");
    add("deleted row", "DELETE FROM meta");
    add("new table", "CREATE TABLE other (x)");
    add("new table for a while", "CREATE TEMP TABLE other (x)");
    add("new view", "CREATE VIEW other AS SELECT dictionary FROM meta");
    add("dropped table", "DROP TABLE cases");
    add("transaction", "BEGIN");
    add("statistics", "ANALYZE");
}

void CSProDatabaseGuardTest::allElseIsRefused()
{
    QFETCH(QByteArray, statement);
    const Connection connection = openDatabase();
    csprodatabase::restrict(connection.get());
    QVERIFY(run(connection.get(), statement.constData()) != SQLITE_DONE);
    const QByteArray message = sqlite3_errmsg(connection.get());
    QVERIFY2(message.contains("not authorized") || message.contains("prohibited"), message.constData());
}

// The view has the name of the table, so reading the view itself is allowed.
void CSProDatabaseGuardTest::whatAViewReadsIsRefusedWhereViewsAreOn()
{
    const Connection connection = openDatabase();
    runUnrestricted(connection.get(), "CREATE TEMP VIEW meta AS SELECT dictionary FROM main.meta");
    csprodatabase::restrict(connection.get());
    sqlite3_db_config(connection.get(), SQLITE_DBCONFIG_ENABLE_VIEW, 1, nullptr);
    QCOMPARE(run(connection.get(), "SELECT dictionary FROM temp.meta"), SQLITE_AUTH);
}

void CSProDatabaseGuardTest::triggersDoNotRun()
{
    const Connection connection = openDatabase();
    csprodatabase::restrict(connection.get());
    sqlite3_set_authorizer(connection.get(), nullptr, nullptr);
    QCOMPARE(run(connection.get(), "INSERT INTO meta VALUES ('x')"), SQLITE_DONE);
    QCOMPARE(sqlite3_total_changes(connection.get()), 2 * rowCount + 1);
}

// A join of three copies of the table takes thousands of times as many steps as are allowed; the table alone takes few.
void CSProDatabaseGuardTest::aStatementEndsAfterTheStepsThatItHas()
{
    const Connection connection = openDatabase();
    csprodatabase::restrict(connection.get());
    QCOMPARE(run(connection.get(), "SELECT 1 FROM meta a WHERE a.rowid < 0 OR a.dictionary = 'x'"), SQLITE_DONE);
    QCOMPARE(run(connection.get(),
                 "SELECT 1 FROM meta a, meta b, meta c WHERE a.dictionary || b.dictionary || c.dictionary = 'x'"),
             SQLITE_INTERRUPT);
    QCOMPARE(run(connection.get(), "SELECT 1 FROM meta a"), SQLITE_DONE);
}

void CSProDatabaseGuardTest::settingsAreThoseForForeignFiles()
{
    const Connection connection = openDatabase();
    sqlite3_db_config(connection.get(), SQLITE_DBCONFIG_ENABLE_LOAD_EXTENSION, 1, nullptr);
    sqlite3_db_config(connection.get(), SQLITE_DBCONFIG_TRUSTED_SCHEMA, 1, nullptr);
    csprodatabase::restrict(connection.get());
    for (const int unwanted : { SQLITE_DBCONFIG_ENABLE_LOAD_EXTENSION, SQLITE_DBCONFIG_TRUSTED_SCHEMA,
                                SQLITE_DBCONFIG_ENABLE_VIEW, SQLITE_DBCONFIG_ENABLE_TRIGGER })
        QVERIFY2(!isSet(connection.get(), unwanted), qPrintable(QString::number(unwanted)));
    QVERIFY(isSet(connection.get(), SQLITE_DBCONFIG_DEFENSIVE));
    QCOMPARE(sqlite3_limit(connection.get(), SQLITE_LIMIT_LENGTH, -1), 256 << 20);
    QCOMPARE(sqlite3_limit(connection.get(), SQLITE_LIMIT_ATTACHED, -1), 0);
    QCOMPARE(sqlite3_limit(connection.get(), SQLITE_LIMIT_WORKER_THREADS, -1), 0);
}

QTEST_APPLESS_MAIN(CSProDatabaseGuardTest)
#include "CSProDatabaseGuardTest.moc"
