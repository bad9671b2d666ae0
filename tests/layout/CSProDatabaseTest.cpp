#include "read/Reader.h"

#include <sqlite3.h>

#include <QBuffer>
#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QTemporaryDir>
#include <QTest>

#include <memory>

using namespace vanlayout;

/// Tests reading of the dictionary within a CSPro data file. The databases, including hostile ones, are made here.
class CSProDatabaseTest : public QObject
{
    Q_OBJECT

private slots:
    void dictionaryIsReadInBothFormsAsTextAndAsBlob_data();
    void dictionaryIsReadInBothFormsAsTextAndAsBlob();
    void dictionaryIsReadFromADeviceToo();
    void firstRowCounts();
    void rowNumbersNeedNotBeginWithOne();
    void textInUtf16IsRead_data();
    void textInUtf16IsRead();
    void databaseWithAWriteAheadLogIsRead();
    void nothingIsWrittenNextToTheFile();
    void writeProtectedFileIsRead();
    void fileNameMayHoldAnyCharacter_data();
    void fileNameMayHoldAnyCharacter();
    void relativePathIsRead();
    void longDictionaryIsReadOverManyPages();
    void databaseWithoutADictionaryIsNamed_data();
    void databaseWithoutADictionaryIsNamed();
    void dictionaryThatCannotBeReadIsNamed_data();
    void dictionaryThatCannotBeReadIsNamed();
    void damageIsReported_data();
    void damageIsReported();
    void schemaInAnotherEncodingThanStatedIsDamage();
    void everyCutDatabaseEnds();
    void everyFlippedByteEnds();
    void computedValueThatIsStoredIsAValue();
    void nothingOfTheDatabaseIsRun_data();
    void nothingOfTheDatabaseIsRun();
};

namespace
{

const QByteArray jsonForm
    = R"({"name":"D","labels":[{"text":"Größe"}],"relativePositions":true,"recordType":{"start":0,"length":0},
"levels":[{"name":"L","labels":[{"text":"L"}],"ids":{"items":[{"name":"I","labels":[{"text":"I"}],"contentType":"alpha","length":1}]}}]})";
const QByteArray textForm
    = "[Dictionary]\r\nVersion=CSPro 7.7\r\nLabel=Größe\r\nName=D\r\nRecordTypeStart=0\r\nRecordTypeLen=0\r\n"
      "Positions=Relative\r\n[Level]\r\nName=L\r\n[IdItems]\r\n[Item]\r\nName=I\r\nStart=1\r\nLen=1\r\n";

// A database that SQLite writes. Statements and values come from a test, so a failure is an error in the test.
class Database
{
public:
    explicit Database(const QString &path)
    {
        sqlite3 *opened = nullptr;
        if (sqlite3_open(path.toUtf8().constData(), &opened) != SQLITE_OK)
            qFatal("cannot make %s", qPrintable(path));
        connection.reset(opened);
    }

    void run(const QByteArray &statements)
    {
        char *message = nullptr;
        if (sqlite3_exec(connection.get(), statements.constData(), nullptr, nullptr, &message) != SQLITE_OK)
            qFatal("%s: %s", statements.constData(), message);
    }

    void insert(const QByteArray &dictionary, bool isBlob = false)
    {
        sqlite3_stmt *statement = nullptr;
        sqlite3_prepare_v2(connection.get(), "INSERT INTO meta (dictionary) VALUES (?)", -1, &statement, nullptr);
        if (isBlob)
            sqlite3_bind_blob(statement, 1, dictionary.constData(), dictionary.size(), SQLITE_TRANSIENT);
        else
            sqlite3_bind_text(statement, 1, dictionary.constData(), dictionary.size(), SQLITE_TRANSIENT);
        if (sqlite3_step(statement) != SQLITE_DONE)
            qFatal("cannot insert: %s", sqlite3_errmsg(connection.get()));
        sqlite3_finalize(statement);
    }

private:
    struct Close {
        void operator()(sqlite3 *opened) const { sqlite3_close(opened); }
    };
    std::unique_ptr<sqlite3, Close> connection;
};

const char usualTables[] = "CREATE TABLE meta (cspro_version TEXT, dictionary TEXT);"
                           "CREATE TABLE cases (id TEXT PRIMARY KEY, data TEXT CHECK (length(data) < 100));";

QString makeUsual(const QTemporaryDir &directory, const QByteArray &dictionary = jsonForm,
                  const QString &name = QStringLiteral("usual.csdb"))
{
    const QString path = directory.filePath(name);
    Database database(path);
    database.run(usualTables);
    database.insert(dictionary);
    return path;
}

QByteArray bytesOf(const QString &path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        qFatal("cannot read %s", qPrintable(path));
    return file.readAll();
}

Layout layoutOf(QByteArray bytes)
{
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::ReadOnly);
    return readLayout(buffer, "name");
}

QString messageOf(const Layout &layout)
{
    return layout.error() ? layout.error()->message : QString();
}

} // namespace

void CSProDatabaseTest::dictionaryIsReadInBothFormsAsTextAndAsBlob_data()
{
    QTest::addColumn<QByteArray>("dictionary");
    QTest::addColumn<bool>("isBlob");
    QTest::addColumn<QString>("formatVersion");
    QTest::newRow("JSON, TEXT") << jsonForm << false << "";
    QTest::newRow("JSON, BLOB") << jsonForm << true << "";
    QTest::newRow("text, TEXT") << textForm << false << "7.7";
    QTest::newRow("text, BLOB") << textForm << true << "7.7";
    QTest::newRow("text with a mark") << "\xef\xbb\xbf" + textForm << false << "7.7";
    QTest::newRow("JSON with a mark") << "\xef\xbb\xbf" + jsonForm << false << "";
    QTest::newRow("text after many lines") << QByteArray(3000, '\n') + textForm << false << "7.7";
}

void CSProDatabaseTest::dictionaryIsReadInBothFormsAsTextAndAsBlob()
{
    QFETCH(QByteArray, dictionary);
    QFETCH(bool, isBlob);
    QTemporaryDir directory;
    const QString path = directory.filePath("a.csdb");
    {
        Database database(path);
        database.run(usualTables);
        database.insert(dictionary, isBlob);
    }
    const Layout layout = readLayout(path);
    QVERIFY2(layout.isRead(), qPrintable(messageOf(layout)));
    QCOMPARE(layout.file, path);
    QCOMPARE(layout.container, QString("csdb"));
    QCOMPARE(layout.encoding, QString("utf-8"));
    QCOMPARE(layout.format, dictionary.contains('{') ? Format::CSProJson : Format::CSProText);
    QTEST(layout.formatVersion, "formatVersion");
    QCOMPARE(layout.labels.primary(), QString::fromUtf8("Größe"));
    QCOMPARE(layout.levels.at(0).ids.at(0).name, QString("I"));
}

void CSProDatabaseTest::dictionaryIsReadFromADeviceToo()
{
    QTemporaryDir directory;
    const QString path = makeUsual(directory);
    Layout fromFile = readLayout(path);
    Layout fromDevice = layoutOf(bytesOf(path));
    QVERIFY(fromDevice.isRead());
    fromFile.file.clear();
    fromDevice.file.clear();
    QVERIFY(fromDevice == fromFile);
}

void CSProDatabaseTest::firstRowCounts()
{
    QTemporaryDir directory;
    const QString path = makeUsual(directory);
    Database(path).insert("{}");
    QVERIFY(readLayout(path).isRead());
}

void CSProDatabaseTest::rowNumbersNeedNotBeginWithOne()
{
    QTemporaryDir directory;
    const QString path = makeUsual(directory, "{}");
    Database database(path);
    database.insert(jsonForm);
    database.run("DELETE FROM meta WHERE rowid = 1; UPDATE meta SET rowid = -5000000000");
    QVERIFY(readLayout(path).isRead());
}

void CSProDatabaseTest::textInUtf16IsRead_data()
{
    QTest::addColumn<QByteArray>("encoding");
    QTest::addColumn<QByteArray>("dictionary");
    for (const char *encoding : { "UTF-16le", "UTF-16be" }) {
        QTest::addRow("%s, JSON", encoding) << QByteArray(encoding) << jsonForm;
        QTest::addRow("%s, text", encoding) << QByteArray(encoding) << textForm;
    }
}

void CSProDatabaseTest::textInUtf16IsRead()
{
    QFETCH(QByteArray, encoding);
    QFETCH(QByteArray, dictionary);
    QTemporaryDir directory;
    const QString path = directory.filePath("a.csdb");
    {
        Database database(path);
        database.run("PRAGMA encoding = '" + encoding + "';" + usualTables);
        database.insert(dictionary);
    }
    const Layout layout = readLayout(path);
    QVERIFY2(layout.isRead(), qPrintable(messageOf(layout)));
    QCOMPARE(layout.labels.primary(), QString::fromUtf8("Größe"));
    QCOMPARE(layout.encoding, QString("utf-8"));
}

void CSProDatabaseTest::databaseWithAWriteAheadLogIsRead()
{
    QTemporaryDir directory;
    const QString path = makeUsual(directory);
    Database(path).run("PRAGMA journal_mode = WAL; CREATE TABLE more (x)");
    QCOMPARE(bytesOf(path).at(18), '\x02');
    QVERIFY(readLayout(path).isRead());
    const Layout layout = layoutOf(bytesOf(path));
    QVERIFY2(layout.isRead(), qPrintable(messageOf(layout)));
}

void CSProDatabaseTest::nothingIsWrittenNextToTheFile()
{
    QTemporaryDir directory;
    const QString path = makeUsual(directory);
    Database(path).run("PRAGMA journal_mode = WAL; CREATE TABLE more (x)");
    const QByteArray before = bytesOf(path);
    QVERIFY(readLayout(path).isRead());
    QCOMPARE(QDir(directory.path()).entryList(QDir::Files), QStringList{ "usual.csdb" });
    QCOMPARE(bytesOf(path), before);
}

void CSProDatabaseTest::writeProtectedFileIsRead()
{
    QTemporaryDir directory;
    const QString path = makeUsual(directory);
    QVERIFY(QFile::setPermissions(path, QFile::ReadOwner));
    QVERIFY(readLayout(path).isRead());
}

void CSProDatabaseTest::fileNameMayHoldAnyCharacter_data()
{
    QTest::addColumn<QString>("name");
    QTest::newRow("blank") << "a b.csdb";
    QTest::newRow("question mark") << "a?mode=memory&b.csdb";
    QTest::newRow("hash") << "a#b.csdb";
    QTest::newRow("percent") << "a%41%b.csdb";
    QTest::newRow("not ASCII") << QString::fromUtf8("Größe ዕድሜ 年齢.csdb");
    QTest::newRow("URI") << "file:a.csdb";
    QTest::newRow("quotation marks") << "a'b\"c\\d;--.csdb";
    QTest::newRow("line feed") << "a\nb.csdb";
}

void CSProDatabaseTest::fileNameMayHoldAnyCharacter()
{
    QFETCH(QString, name);
    QTemporaryDir directory;
    QVERIFY(QFile::rename(makeUsual(directory), directory.filePath(name)));
    const Layout layout = readLayout(directory.filePath(name));
    QVERIFY2(layout.isRead(), qPrintable(messageOf(layout)));
    QCOMPARE(layout.container, QString("csdb"));
}

void CSProDatabaseTest::relativePathIsRead()
{
    QTemporaryDir directory;
    makeUsual(directory);
    const QString before = QDir::currentPath();
    QVERIFY(QDir::setCurrent(directory.path()));
    const Layout layout = readLayout("usual.csdb");
    QDir::setCurrent(before);
    QVERIFY2(layout.isRead(), qPrintable(messageOf(layout)));
    QCOMPARE(layout.file, QString("usual.csdb"));
}

void CSProDatabaseTest::longDictionaryIsReadOverManyPages()
{
    QTemporaryDir directory;
    const QByteArray note(3'000'000, 'n');
    QByteArray dictionary = jsonForm;
    dictionary.insert(1, "\"note\":\"" + note + "\",");
    const Layout layout = readLayout(makeUsual(directory, dictionary));
    QCOMPARE(layout.note, QString::fromLatin1(note));
}

void CSProDatabaseTest::databaseWithoutADictionaryIsNamed_data()
{
    QTest::addColumn<QByteArray>("statements");
    QTest::addColumn<QString>("part");
    const auto add = [](const char *name, const char *statements, const char *part) {
        QTest::newRow(name) << QByteArray(statements) << part;
    };
    add("foreign tables", "CREATE TABLE other (x); INSERT INTO other VALUES ('x')", "no table \"meta\"");
    add("no column", "CREATE TABLE meta (x TEXT); INSERT INTO meta VALUES ('x')", "with a column \"dictionary\"");
    add("no row", "CREATE TABLE meta (dictionary TEXT)", "is empty");
    add("NULL", "CREATE TABLE meta (dictionary TEXT); INSERT INTO meta VALUES (NULL)", "holds no text");
    add("integer", "CREATE TABLE meta (dictionary); INSERT INTO meta VALUES (7)", "holds no text");
    add("real number", "CREATE TABLE meta (dictionary); INSERT INTO meta VALUES (7.5)", "holds no text");
    add("without row numbers",
        "CREATE TABLE meta (dictionary TEXT PRIMARY KEY) WITHOUT ROWID; INSERT INTO meta VALUES ('{}')",
        "not that of CSPro");
    add("index named meta", "CREATE TABLE other (dictionary); CREATE INDEX meta ON other (dictionary)",
        "no table \"meta\"");
    add("column in capitals holds a number", "CREATE TABLE META (DICTIONARY); INSERT INTO META VALUES (1)",
        "holds no text");
}

void CSProDatabaseTest::databaseWithoutADictionaryIsNamed()
{
    QFETCH(QByteArray, statements);
    QFETCH(QString, part);
    QTemporaryDir directory;
    const QString path = directory.filePath("a.csdb");
    Database(path).run(statements);
    for (const Layout &layout : { readLayout(path), layoutOf(bytesOf(path)) }) {
        QVERIFY(!layout.isRead());
        QCOMPARE(layout.problems.size(), 1);
        QCOMPARE(layout.error()->id, QString("no-dictionary"));
        QVERIFY2(messageOf(layout).startsWith("the file is an SQLite database, but not a CSPro data file: "),
                 qPrintable(messageOf(layout)));
        QVERIFY2(messageOf(layout).contains(part), qPrintable(messageOf(layout)));
        QVERIFY(!messageOf(layout).contains('\n'));
    }
}

void CSProDatabaseTest::dictionaryThatCannotBeReadIsNamed_data()
{
    QTest::addColumn<QByteArray>("dictionary");
    QTest::addColumn<QString>("reason");
    QTest::addColumn<int>("line");
    QTest::newRow("damaged JSON") << QByteArray("{\n\"levels\":\n") << "damaged JSON at byte 12: invalid value" << 3;
    QTest::newRow("empty") << QByteArray("") << "damaged JSON at byte 0: the document is empty" << 1;
    QTest::newRow("no dictionary") << QByteArray("{}") << "none of the keys" << 0;
    QTest::newRow("text form without section") << QByteArray("[Other]\n") << "[Dictionary]" << 1;
}

void CSProDatabaseTest::dictionaryThatCannotBeReadIsNamed()
{
    QFETCH(QByteArray, dictionary);
    QFETCH(QString, reason);
    QTemporaryDir directory;
    const Layout layout = readLayout(makeUsual(directory, dictionary));
    QVERIFY(!layout.isRead());
    QCOMPARE(layout.error()->id, QString("damaged-dictionary"));
    QVERIFY2(messageOf(layout).startsWith("the dictionary in the database cannot be read: "),
             qPrintable(messageOf(layout)));
    QVERIFY2(messageOf(layout).contains(reason), qPrintable(messageOf(layout)));
    QTEST(layout.error()->line, "line");
}

void CSProDatabaseTest::damageIsReported_data()
{
    QTest::addColumn<int>("from");
    QTest::addColumn<int>("size");
    QTest::addColumn<QString>("message");
    QTest::newRow("all but the first bytes, as after encryption")
        << 16 << -1 << "the file begins like an SQLite database, but is encrypted or damaged";
    QTest::newRow("first page after the header")
        << 100 << 3996 << "the SQLite database cannot be read: database disk image is malformed";
}

void CSProDatabaseTest::damageIsReported()
{
    QFETCH(int, from);
    QFETCH(int, size);
    QTemporaryDir directory;
    const QString path = makeUsual(directory);
    QByteArray bytes = bytesOf(path);
    for (int index = from; index < (size < 0 ? bytes.size() : from + size); ++index)
        bytes[index] = char(bytes.at(index) ^ (37 + 11 * index));
    QFile file(path);
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write(bytes);
    file.close();
    for (const Layout &layout : { readLayout(path), layoutOf(bytes) }) {
        QCOMPARE(layout.error()->id, QString("damaged-database"));
        QTEST(messageOf(layout), "message");
    }
}

// SQLite reports this as a lack of memory, which is wrong.
void CSProDatabaseTest::schemaInAnotherEncodingThanStatedIsDamage()
{
    constexpr int size = 808;
    const QByteArray header = QByteArray::fromHex(
        "020001010040202000000002000000020000000000000000000000010000000400000000000000000000000200000000"
        "0000000000000000000000000000000000000000000000000000000000000002002e63010d00000001016d00016d0000"
        "000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000"
        "000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000"
        "000000000000000000000000000000000000000000000000000000000000000000010000010000000000000000000000"
        "000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000"
        "000000000000000022ffffffffffffffffffffffffffffffffffffffffffffffffffffffffffffffffffffffffffffff"
        "ffffffffffffffffffffffffffffffffffffffffffffffffffff7265636f726473223a00000000000000000000000000"
        "0000000000000000000000000500000000000000000000000000000000000000000000000000000081100107211d1d01"
        "81697400610062006c0065006d006500740061006d006500740061000243005200450041005400450020005400410042"
        "004c00450020006d006500740061002000280063007300700072006f005f00760065007200730069006f006e00200054"
        "004500580054002c002000640069006300740069006f006e006100720079002000540045005800540029000d00000001"
        "008100008100000000000000000000000000000000000000000000000000000000000000000000000000000000000000"
        "000000000000000000000000000000000000000000000000000000000000000000000000220069006400730022003a00"
        "7b0022006900740065006d00730022003a005b007b0022006e0061006d00650022003a002200490022002c0022006300"
        "6f006e00740065006e007400540079007000650022003a00220061006c0070006800610022002c0022006c0065006e00"
        "67007400680022003a0030007d005d007d007d005d007d");
    const Layout layout = layoutOf((QByteArray("SQLite format 3", 16) + header).leftJustified(size, '\0'));
    QVERIFY(!layout.isRead());
    QCOMPARE(layout.error()->id, QString("damaged-database"));
}

void CSProDatabaseTest::everyCutDatabaseEnds()
{
    QTemporaryDir directory;
    const QByteArray whole = bytesOf(makeUsual(directory));
    for (int size = 16; size < whole.size(); size += 7) {
        const Layout layout = layoutOf(whole.left(size));
        QVERIFY(layout.isRead() || !messageOf(layout).isEmpty());
    }
}

void CSProDatabaseTest::everyFlippedByteEnds()
{
    QTemporaryDir directory;
    const QByteArray whole = bytesOf(makeUsual(directory));
    for (int index = 16; index < whole.size(); index += index < 200 ? 1 : 13) {
        QByteArray bytes = whole;
        bytes[index] = char(~bytes.at(index));
        const Layout layout = layoutOf(bytes);
        QVERIFY(layout.isRead() || !messageOf(layout).isEmpty());
    }
}

void CSProDatabaseTest::computedValueThatIsStoredIsAValue()
{
    QTemporaryDir directory;
    const QString path = directory.filePath("a.csdb");
    Database(path).run("CREATE TABLE meta (a TEXT, dictionary TEXT GENERATED ALWAYS AS (a) STORED);"
                       "INSERT INTO meta (a) VALUES ('"
                       + jsonForm + "')");
    QVERIFY(readLayout(path).isRead());
}

void CSProDatabaseTest::nothingOfTheDatabaseIsRun_data()
{
    QTest::addColumn<QByteArray>("statements");
    const auto add = [](const char *name, const QByteArray &statements) { QTest::newRow(name) << statements; };
    const QByteArray dictionary = '\'' + QByteArray(jsonForm).replace('\'', "''") + '\'';
    const QByteArray endless = "WITH RECURSIVE n (i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM n) ";
    add("view with the dictionary", "CREATE VIEW meta AS SELECT " + dictionary + " AS dictionary");
    add("view of another table",
        "CREATE TABLE t (dictionary TEXT); INSERT INTO t VALUES (" + dictionary
            + "); CREATE VIEW meta AS SELECT dictionary FROM t");
    add("view without end", "CREATE VIEW meta AS " + endless + "SELECT i AS dictionary FROM n WHERE i < 0");
    add("generated column",
        "CREATE TABLE meta (a TEXT, dictionary TEXT GENERATED ALWAYS AS (a)); INSERT INTO meta (a) VALUES ("
            + dictionary + ')');
    // Only the schema is changed, because SQLite would compute the column when it writes the row.
    add("generated column with costly functions",
        "CREATE TABLE meta (a INTEGER); INSERT INTO meta (a) VALUES (100000000); PRAGMA writable_schema = ON;"
        "UPDATE sqlite_schema SET sql = 'CREATE TABLE meta (a INTEGER, dictionary TEXT GENERATED ALWAYS AS "
        "(instr(hex(zeroblob(a)), hex(zeroblob(a / 2)) || ''x'')))'");
    add("virtual table",
        "CREATE VIRTUAL TABLE meta USING fts3 (dictionary); INSERT INTO meta VALUES (" + dictionary + ')');
}

void CSProDatabaseTest::nothingOfTheDatabaseIsRun()
{
    QFETCH(QByteArray, statements);
    QTemporaryDir directory;
    const QString path = directory.filePath("a.csdb");
    Database(path).run(statements);
    for (const Layout &layout : { readLayout(path), layoutOf(bytesOf(path)) }) {
        QVERIFY(!layout.isRead());
        QVERIFY2(messageOf(layout).contains("SQLite database"), qPrintable(messageOf(layout)));
        QVERIFY(!messageOf(layout).contains('\n'));
    }
}

QTEST_APPLESS_MAIN(CSProDatabaseTest)
#include "CSProDatabaseTest.moc"
