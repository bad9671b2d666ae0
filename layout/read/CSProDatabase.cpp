#include "read/CSProDatabaseGuard_p.h"
#include "read/Decoding_p.h"
#include "read/Formats_p.h"

#include <sqlite3.h>

#include <QBuffer>
#include <QFile>
#include <QFileInfo>

#include <memory>

namespace vanlayout
{

using csprodatabase::maxDictionarySize;
using csprodatabase::table;

namespace
{

// The dictionary of a CSPro data file is the value of one column in the first row of one table. The database may be
// untrusted, so nothing in it is executed: a query reads only the number of the row, and the value is read through
// SQLite's interface for single values, which refuses views, virtual tables and generated columns.
const char query[] = "SELECT rowid FROM main.meta NOT INDEXED LIMIT 1";
const char database[] = "main";
const char column[] = "dictionary";

struct Close {
    void operator()(sqlite3 *connection) const { sqlite3_close(connection); }
    void operator()(sqlite3_stmt *statement) const { sqlite3_finalize(statement); }
    void operator()(sqlite3_blob *value) const { sqlite3_blob_close(value); }
};
using Connection = std::unique_ptr<sqlite3, Close>;
using Statement = std::unique_ptr<sqlite3_stmt, Close>;
using StoredValue = std::unique_ptr<sqlite3_blob, Close>;

// These operations return the result code of SQLite.

int open(const QByteArray &uri, Connection &connection)
{
    sqlite3 *opened = nullptr;
    const int result = sqlite3_open_v2(
        uri.constData(), &opened,
        SQLITE_OPEN_READONLY | SQLITE_OPEN_URI | SQLITE_OPEN_NOMUTEX | SQLITE_OPEN_PRIVATECACHE, nullptr);
    connection.reset(opened);
    return result;
}

// Immutable: SQLite neither locks the file nor looks for a journal file. `?`, `#`, `%` and all characters that are not
// ASCII are escaped in the URI.
int openFile(const QString &path, Connection &connection)
{
    const QByteArray name = QFile::encodeName(QFileInfo(path).absoluteFilePath());
    return open("file://" + name.toPercentEncoding("/") + "?mode=ro&immutable=1", connection);
}

// \a bytes are in use until the connection is closed.
int openBytes(QByteArray &bytes, Connection &connection)
{
    // A database in memory cannot have a write-ahead log. These two bytes state whether there is one.
    constexpr int writeVersion = 18;
    constexpr int readVersion = 19;
    for (const int version : { writeVersion, readVersion })
        if (bytes.size() > version && bytes.at(version) == 2)
            bytes[version] = 1;
    const int result = open("file::memory:", connection);
    if (result != SQLITE_OK)
        return result;
    return sqlite3_deserialize(connection.get(), database, reinterpret_cast<uchar *>(bytes.data()), bytes.size(),
                               bytes.size(), SQLITE_DESERIALIZE_READONLY);
}

// Reads the dictionary of one database.
class Extraction
{
public:
    explicit Extraction(Diagnostics &list)
        : diagnostics(list)
    {
    }

    // Returns false and reports the problem if there is no dictionary.
    bool read(Input &input)
    {
        if (input.path.isEmpty()) {
            QString problem;
            bytes = readAllOf(input.device, problem);
            if (!problem.isEmpty())
                return fail("cannot-read", problem);
        }
        const int opened = input.path.isEmpty() ? openBytes(bytes, connection) : openFile(input.path, connection);
        if (opened != SQLITE_OK)
            return fail(opened, "");
        csprodatabase::restrict(connection.get());
        return findTable() && findRow();
    }

    QByteArray dictionary;

private:
    bool findTable()
    {
        const int found = sqlite3_table_column_metadata(connection.get(), database, table, column, nullptr, nullptr,
                                                        nullptr, nullptr, nullptr);
        return found == SQLITE_OK || fail(found, "it has no table \"meta\" with a column \"dictionary\"");
    }

    bool findRow()
    {
        sqlite3_stmt *prepared = nullptr;
        const int result = sqlite3_prepare_v2(connection.get(), query, -1, &prepared, nullptr);
        const Statement statement(prepared);
        if (result != SQLITE_OK)
            return fail(result, "its table \"meta\" is not that of CSPro");
        const int step = sqlite3_step(prepared);
        if (step != SQLITE_ROW)
            return fail(step == SQLITE_DONE ? SQLITE_ERROR : step, "its table \"meta\" is empty");
        return readValue(sqlite3_column_int64(prepared, 0));
    }

    bool readValue(sqlite3_int64 row)
    {
        sqlite3_blob *opened = nullptr;
        int result = sqlite3_blob_open(connection.get(), database, table, column, row, 0, &opened);
        const StoredValue value(opened);
        if (result != SQLITE_OK)
            return fail(result, "the column \"dictionary\" of its table \"meta\" holds no text");
        const int size = sqlite3_blob_bytes(opened);
        if (size > maxDictionarySize)
            return fail(SQLITE_TOOBIG, "");
        dictionary = QByteArray(size, Qt::Uninitialized);
        result = sqlite3_blob_read(opened, dictionary.data(), size, 0);
        return result == SQLITE_OK || fail(result, "");
    }

    // \a reason is the message for SQLITE_ERROR: the database is intact, but is not of CSPro. For any other code the
    // message is that of SQLite.
    bool fail(int code, const char *reason)
    {
        if (code == SQLITE_ERROR)
            return fail("no-dictionary",
                        QStringLiteral("the file is an SQLite database, but not a CSPro data file: %1")
                            .arg(QLatin1String(reason)));
        if (code == SQLITE_NOTADB)
            return fail("damaged-database",
                        QStringLiteral("the file begins like an SQLite database, but is encrypted or damaged"));
        return fail(
            "damaged-database",
            QStringLiteral("the SQLite database cannot be read: %1").arg(QString::fromUtf8(sqlite3_errstr(code))));
    }
    bool fail(const char *id, const QString &message)
    {
        diagnostics.fail(id, message);
        return false;
    }

    Diagnostics &diagnostics;
    QByteArray bytes; // content of a database without a path
    Connection connection;
};

// The text is in UTF-16 if that is the encoding of the database. Both forms of a dictionary begin with an ASCII
// character.
QByteArray utf8Of(const QByteArray &bytes)
{
    if (bytes.size() < 2 || (bytes.at(0) != '\0' && bytes.at(1) != '\0'))
        return bytes;
    const auto decode = bytes.at(0) == '\0' ? decoding::fromUtf16BE : decoding::fromUtf16LE;
    return decode(bytes.constData(), bytes.size(), nullptr).toUtf8();
}

void readDictionary(const QByteArray &bytes, Layout &layout, Diagnostics &diagnostics)
{
    QBuffer buffer;
    buffer.setData(bytes);
    buffer.open(QIODevice::ReadOnly);
    bool isAll = false;
    const QByteArray head = headOf(buffer, isAll);
    if (isCSProText(head) && !isCSProJson(head))
        readCSProText(bytes, layout, diagnostics);
    else
        readCSProJson(bytes, layout, diagnostics);
    if (const Problem *error = layout.error()) {
        const QString message = QStringLiteral("the dictionary in the database cannot be read: %1").arg(error->message);
        diagnostics.fail("damaged-dictionary", message, error->line);
        return;
    }
    layout.container = QStringLiteral("csdb");
    layout.encoding = QStringLiteral("utf-8");
}

} // namespace

bool isCSProDatabase(const QByteArray &head)
{
    constexpr int magicSize = 16;
    return head.startsWith(QByteArray::fromRawData("SQLite format 3", magicSize));
}

void readCSProDatabase(Input &input, Layout &layout, Diagnostics &diagnostics)
{
    Extraction extraction(diagnostics);
    if (extraction.read(input))
        readDictionary(utf8Of(extraction.dictionary), layout, diagnostics);
}

} // namespace vanlayout
