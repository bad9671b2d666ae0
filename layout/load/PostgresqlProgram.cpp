#include "PostgresqlProgram_p.h"

#include "Head_p.h"
#include "ProgramText_p.h"
#include "SqlTable_p.h"
#include "SqlText_p.h"

#include <algorithm>

namespace vanlayout
{

namespace
{

constexpr int maxIntegerDigits = 9;
constexpr int maxBigintDigits = 18;

// An argument of a psql command in single quotes.
QByteArray psqlArgument(QString text)
{
    text.replace(QLatin1Char('\\'), QLatin1String("\\\\")).replace(QLatin1Char('\''), QLatin1String("\\'"));
    text.replace(QLatin1Char('\n'), QLatin1String("\\n")).replace(QLatin1Char('\r'), QLatin1String("\\r"));
    return '\'' + text.toUtf8() + '\'';
}

// Tables are created in the first schema of search_path, and looked for nowhere else.
QByteArray tableName(const QString &name)
{
    return ":\"schema\"." + sqlName(name);
}

// The literals of COMMENT ON cannot be joined by an operator.
QByteArray commentStatement(const QByteArray &object, const QString &label)
{
    return label.isEmpty() ? QByteArray() : "COMMENT ON " + object + " IS " + sqlText(label, "") + ";\n";
}

QByteArray typeOf(const PlannedColumn &column)
{
    if (column.type == CellType::Text && !column.isMade())
        return QByteArrayLiteral("text");
    if (column.isMade() || (column.type == CellType::Integer && column.length <= maxIntegerDigits))
        return QByteArrayLiteral("integer");
    const bool isBigint = column.type == CellType::Integer && column.length <= maxBigintDigits;
    return isBigint ? QByteArrayLiteral("bigint") : QByteArrayLiteral("numeric");
}

// 0.01 for two decimals.
QByteArray unitOf(const PlannedColumn &column)
{
    return "0." + QByteArray(column.decimals - 1, '0') + '1';
}

QByteArray cellOf(const PlannedColumn &column, const QByteArray &field)
{
    if (column.type == CellType::Integer)
        return "pg_temp.whole_number(" + field + ')';
    if (column.type == CellType::Decimal)
        return "pg_temp.decimal_number(" + field + ", " + unitOf(column) + ')';
    return "rtrim(" + field + ", ' ')";
}

QByteArray isNoNumber(const PlannedColumn &column, const QByteArray &field)
{
    const char *function = column.type == CellType::Integer ? "is_no_whole_number" : "is_no_decimal_number";
    return QByteArrayLiteral("pg_temp.") + function + '(' + field + ')';
}

QByteArray codeEnd(const PlannedColumn & /*column*/)
{
    return QByteArray();
}

const SqlDialect &dialect()
{
    // OFFSET 0 keeps PostgreSQL from reading a field once for each use of its column.
    static const SqlDialect sql = { cellOf, isNoNumber, "pg_temp.lines", "line", " OFFSET 0", codeEnd, false };
    return sql;
}

QByteArray create(const PlannedTable &table)
{
    QByteArrayList columns;
    for (const PlannedColumn &column : table.columns)
        columns.append(sqlName(column.name) + ' ' + typeOf(column));
    return "DROP TABLE IF EXISTS " + tableName(table.name) + ";\nCREATE TABLE " + tableName(table.name) + " (\n"
        + sqlList(columns, 2) + "\n);\n";
}

QByteArray comments(const PlannedTable &table)
{
    QByteArray statements = commentStatement("TABLE " + tableName(table.name), table.label);
    for (const PlannedColumn &column : table.columns)
        statements += commentStatement("COLUMN " + tableName(table.name) + '.' + sqlName(column.name), column.label);
    return statements;
}

// A line for each column with text that is no number.
QByteArray countNoNumbers(const SqlTable &query)
{
    const QByteArrayList names = query.countedNames();
    if (names.isEmpty())
        return QByteArray();
    return "INSERT INTO pg_temp.counts (text)\nSELECT name || ': ' || number || ' values are no numbers'\nFROM (\n"
           "  SELECT ARRAY[\n"
        + sqlList(query.counts(), 4) + "\n  ] AS numbers\n  FROM " + query.source() + "\n) AS counted, unnest(ARRAY[\n"
        + sqlList(names, 4)
        + "\n  ], numbers) WITH ORDINALITY AS each_column(name, number, position)\n"
          "WHERE number > 0 ORDER BY position;\n";
}

QByteArray statements(const LoadPlan &plan, const PlannedTable &table)
{
    const SqlTable query(plan, table, dialect());
    return '\n' + sqlTitle(table) + create(table) + comments(table) + "INSERT INTO " + tableName(table.name) + '\n'
        + query.rows() + ";\nINSERT INTO pg_temp.counts (text)\nSELECT " + sqlText(table.name)
        + " || ': ' || count(*) || ' rows' FROM " + tableName(table.name) + ";\n" + countNoNumbers(query);
}

// The record type of a line; NULL for a line of no record: blank, or erased.
QByteArray markExpression(const LoadPlan &plan)
{
    QByteArray mark = "''";
    if (plan.recordType) {
        const QByteArray length = QByteArray::number(plan.recordType->length);
        mark = "rpad(substr(text, " + QByteArray::number(plan.recordType->start) + ", " + length + "), " + length + ')';
    }
    return "CASE WHEN left(text, 1) <> '~' AND rtrim(text, ' ') <> '' THEN " + mark + " END";
}

// windows-1252 is read as Latin-1; these are the characters that differ. The five free bytes are unchanged.
QByteArray decoding(DataEncoding encoding)
{
    QByteArray decoded = "convert_from(bytes, 'UTF8')";
    if (encoding == DataEncoding::Windows1252)
        decoded
            = "translate(convert_from(bytes, 'LATIN1'),\n"
              "    U&'\\0080\\0082\\0083\\0084\\0085\\0086\\0087\\0088\\0089\\008A\\008B\\008C\\008E\\0091\\0092\\0093"
              "\\0094\\0095\\0096\\0097\\0098\\0099\\009A\\009B\\009C\\009E\\009F',\n"
              "    '€‚ƒ„…†‡ˆ‰Š‹ŒŽ‘’“”•–—˜™š›œžŸ')";
    return decoded;
}

// The bytes of a row in which all columns have a value. Of a long text, the row has a reference.
int bytesOfRow(const PlannedTable &table)
{
    constexpr int header = 24;
    constexpr int reference = 18;
    int bytes = header + table.columns.size() / 8;
    for (const PlannedColumn &column : table.columns) {
        const QByteArray type = typeOf(column);
        bytes += type == "integer" ? 4 : type == "bigint" ? 8 : std::min(column.length + 1, reference);
    }
    return bytes;
}

QStringList remarks(const LoadPlan &plan)
{
    constexpr int maxBytes = 8160;
    QStringList lines;
    for (const PlannedTable &table : plan.tables) {
        if (bytesOfRow(table) > maxBytes)
            lines.append(QStringLiteral("A row of %1 has at most %2 bytes in PostgreSQL, not counting long texts. A "
                                        "record in which nearly all columns have a value may have more: the program "
                                        "then stops with \"row is too big\". Make it with --occurrences long, or "
                                        "without this record by --records.")
                             .arg(table.name)
                             .arg(maxBytes));
    }
    return lines;
}

QByteArray head(const LoadPlan &plan)
{
    const QString file = plan.name + QLatin1String(".sql");
    return programHead(
        plan, sqlComment(),
        { QStringLiteral("PostgreSQL"),
          { QStringLiteral("psql -d DATABASE -v data=FILE -f ") + file },
          QStringList{ QStringLiteral(
              "It needs psql and PostgreSQL 13 or later, a database in UTF8, and the right to create tables; no "
              "superuser. During the run the whole data file is on the server, as a large object and as a "
              "temporary table. Tables of an earlier run are replaced; after an error they are as before, and "
              "the status is 3.") }
              + remarks(plan),
          { QStringLiteral(
              "Without -v data=FILE it reads the data file named above, from the working directory. The tables "
              "are created in the first schema of search_path.") } });
}

QByteArray codes(const LoadPlan &plan)
{
    return sqlReplaceCodes(plan, tableName(plan.codesName));
}

QByteArray closing(const LoadPlan &plan)
{
    return "\nINSERT INTO pg_temp.counts (text)\nSELECT count(*) || ' lines of no known record type' FROM "
           "pg_temp.lines\n"
           "WHERE (mark IS NULL AND rtrim(text, ' ') <> '') OR mark NOT IN "
        + sqlKnownMarks(plan)
        + " HAVING count(*) > 0;\n"
          "INSERT INTO pg_temp.counts (text)\nSELECT count(*) || ' blank lines' FROM pg_temp.lines\n"
          "WHERE rtrim(text, ' ') = '' HAVING count(*) > 0;\n"
          "SELECT lo_unlink(:file) AS ignored \\gset\n"
          "SELECT text FROM pg_temp.counts ORDER BY number \\g (format=unaligned tuples_only=on)\nCOMMIT;\n";
}

} // namespace

QVector<LoadFile> postgresqlProgram(const LoadPlan &plan)
{
    QByteArray text = head(plan)
        + programPart("postgresql/read.sql",
                      { { "data", psqlArgument(safePath(plan.options.data)) },
                        { "mark", markExpression(plan) },
                        { "decoding", decoding(plan.options.encoding) } });
    for (const PlannedTable &table : plan.tables)
        text += statements(plan, table);
    text += codes(plan) + closing(plan);
    return { { plan.name + QLatin1String(".sql"), text } };
}

bool isReservedInPostgresql(const QString &name)
{
    static const QStringList names = { QStringLiteral("tableoid"), QStringLiteral("xmin"), QStringLiteral("cmin"),
                                       QStringLiteral("xmax"),     QStringLiteral("cmax"), QStringLiteral("ctid") };
    return names.contains(name);
}

} // namespace vanlayout
