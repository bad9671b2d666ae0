#include "PostgresqlProgram_p.h"

#include "Head_p.h"
#include "ProgramText_p.h"
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

QByteArray occurrencesOf(const PlannedTable &table)
{
    return " CROSS JOIN generate_series(1, " + QByteArray::number(table.occurrences) + ") AS item_occ";
}

QByteArray isOfTable(const PlannedTable &table)
{
    return "mark = " + sqlText(table.mark);
}

/// Writes the statements of one table.
class TableWriter
{
public:
    TableWriter(const LoadPlan &loadPlan, const PlannedTable &planned)
        : plan(loadPlan)
        , table(planned)
        , lineNumber(freeColumn(planned, QStringLiteral("line_no")))
        , lineText(freeColumn(planned, QStringLiteral("line_text")))
    {
    }

    QByteArray text() const
    {
        return "\n-- " + comment({ table.label.isEmpty() ? table.name : table.label }, sqlComment()).mid(3) + create()
            + comments() + insert() + countRows() + countNoNumbers();
    }

private:
    QByteArray create() const
    {
        QByteArrayList columns;
        for (const PlannedColumn &column : table.columns)
            columns.append(sqlName(column.name) + ' ' + typeOf(column));
        return "DROP TABLE IF EXISTS " + tableName(table.name) + ";\nCREATE TABLE " + tableName(table.name) + " (\n"
            + sqlList(columns, 2) + "\n);\n";
    }

    QByteArray comments() const
    {
        QByteArray statements = commentStatement("TABLE " + tableName(table.name), table.label);
        for (const PlannedColumn &column : table.columns) {
            const QByteArray name = tableName(table.name) + '.' + sqlName(column.name);
            statements += commentStatement("COLUMN " + name, column.label);
        }
        return statements;
    }

    QByteArray insert() const
    {
        return "INSERT INTO " + tableName(table.name) + "\nWITH ids AS (\n" + ids() + "), cases AS (\n" + cases()
            + "), fields AS (\n" + fields() + ")\n" + cells();
    }

    // The id fields of each line.
    QByteArray ids() const
    {
        QByteArrayList columns = { "line AS " + lineNumber, "text AS " + lineText };
        for (const PlannedColumn &column : table.columns) {
            if (column.role == ColumnRole::Id)
                columns.append(cellOf(column, sqlField(table, column, "text")) + " AS " + sqlName(column.name));
        }
        return "  SELECT\n" + sqlList(columns, 4) + "\n  FROM pg_temp.lines WHERE " + isOfTable(table) + " OFFSET 0\n";
    }

    // The ids without special codes, and the number of each record within its case.
    QByteArray cases() const
    {
        QByteArrayList columns = { lineNumber, lineText };
        QByteArrayList keys;
        for (const PlannedColumn &column : table.columns) {
            if (column.role != ColumnRole::Id)
                continue;
            keys.append(sqlWithoutSpecials(plan, column, { sqlName(column.name), {}, 0 }));
            columns.append(keys.constLast() + " AS " + sqlName(column.name));
        }
        const QByteArray partition = keys.isEmpty() ? QByteArray() : "PARTITION BY " + keys.join(", ") + ' ';
        if (table.hasOccurrence)
            columns.append("row_number() OVER (" + partition + "ORDER BY " + lineNumber + ") AS occ");
        return "  SELECT\n" + sqlList(columns, 4) + "\n  FROM ids\n";
    }

    QByteArray fields() const
    {
        QByteArrayList columns = { lineNumber };
        for (const PlannedColumn &column : table.columns) {
            const QByteArray name = sqlName(column.name);
            const bool isItem = column.role == ColumnRole::Item;
            columns.append(isItem ? cellOf(column, sqlField(table, column, lineText)) + " AS " + name : name);
        }
        QByteArray query = "  SELECT\n" + sqlList(columns, 4) + "\n  FROM cases";
        if (table.isItemTable())
            query += occurrencesOf(table) + "\n  WHERE rtrim(" + occurrence() + ", ' ') <> ''";
        return query + " OFFSET 0\n";
    }

    // The characters of one occurrence of the item of the table.
    QByteArray occurrence() const
    {
        return "substr(" + lineText + ", " + QByteArray::number(table.start) + " + (item_occ - 1) * "
            + QByteArray::number(table.step) + ", " + QByteArray::number(table.length) + ')';
    }

    // The cells without special codes.
    QByteArray cells() const
    {
        QByteArrayList columns;
        for (const PlannedColumn &column : table.columns) {
            const QByteArray name = sqlName(column.name);
            columns.append(column.role == ColumnRole::Item ? sqlWithoutSpecials(plan, column, { name, {}, 0 }) : name);
        }
        return "SELECT\n" + sqlList(columns, 2) + "\nFROM fields ORDER BY " + lineNumber
            + (table.isItemTable() ? ", item_occ;\n" : ";\n");
    }

    QByteArray countRows() const
    {
        return "INSERT INTO pg_temp.counts (text)\nSELECT " + sqlText(table.name)
            + " || ': ' || count(*) || ' rows' FROM " + tableName(table.name) + ";\n";
    }

    // Ids are counted in the table of the record only.
    QByteArray countNoNumbers() const
    {
        QByteArrayList names;
        QByteArrayList counts;
        for (const PlannedColumn &column : table.columns) {
            if (!column.isNumber() || (column.role == ColumnRole::Id && table.isItemTable()))
                continue;
            names.append(sqlText(table.name + QLatin1Char('.') + column.name));
            counts.append("count(*) FILTER (WHERE " + isNoNumber(column, sqlField(table, column, "text")) + ')');
        }
        if (names.isEmpty())
            return QByteArray();
        return "INSERT INTO pg_temp.counts (text)\nSELECT name || ': ' || number || ' values are no numbers'\nFROM (\n"
               "  SELECT ARRAY[\n"
            + sqlList(counts, 4) + "\n  ] AS numbers\n  FROM pg_temp.lines"
            + (table.isItemTable() ? occurrencesOf(table) : QByteArray()) + " WHERE " + isOfTable(table)
            + "\n) AS counted, unnest(ARRAY[\n" + sqlList(names, 4)
            + "\n  ], numbers) WITH ORDINALITY AS each_column(name, number, position)\n"
              "WHERE number > 0 ORDER BY position;\n";
    }

    const LoadPlan &plan;
    const PlannedTable &table;
    QByteArray lineNumber;
    QByteArray lineText;
};

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

QByteArray head(const LoadPlan &plan)
{
    const QString file = plan.name + QLatin1String(".sql");
    return programHead(
        plan, sqlComment(),
        { QStringLiteral("PostgreSQL"),
          { QStringLiteral("psql -d DATABASE -v data=FILE -f ") + file },
          { QStringLiteral(
              "It needs psql and PostgreSQL 13 or later, a database in UTF8, and the right to create tables; no "
              "superuser. During the run the whole data file is on the server, as a large object and as a "
              "temporary table. Tables of an earlier run are replaced; after an error they are as before, and "
              "the status is 3.") },
          { QStringLiteral(
              "Without -v data=FILE it reads the data file named above, from the working directory. The tables "
              "are created in the first schema of search_path.") } });
}

QByteArray codes(const LoadPlan &plan)
{
    const QByteArray table = tableName(plan.codesName);
    return "\n-- The codes of all columns. The table may hold those of other programs as well.\nCREATE TABLE IF NOT "
           "EXISTS "
        + table + " (" + sqlCodeColumns() + ");\nDELETE FROM " + table + " WHERE table_name IN " + sqlTableNames(plan)
        + ";\n" + sqlInsertCodes(plan, table);
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
        text += TableWriter(plan, table).text();
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
