#include "DuckdbProgram_p.h"

#include "Head_p.h"
#include "PlanLists_p.h"
#include "ProgramText_p.h"
#include "SqlTable_p.h"
#include "SqlText_p.h"

namespace vanlayout
{

namespace
{

constexpr int maxIntegerDigits = 9;
constexpr int maxBigintDigits = 18;
constexpr int maxExactPower = 22; // of ten, in a double

QByteArray typeOf(const PlannedColumn &column)
{
    if (column.length <= maxIntegerDigits)
        return QByteArrayLiteral("INTEGER");
    return column.length <= maxBigintDigits ? QByteArrayLiteral("BIGINT") : QByteArrayLiteral("DOUBLE");
}

QByteArray decimalOf(const PlannedColumn &column, const QByteArray &field)
{
    if (column.length > maxExactDigits || column.decimals > maxExactPower)
        return "load_long_decimal(" + field + ", 'e-" + QByteArray::number(column.decimals) + "')";
    return "load_decimal(" + field + ", 1" + QByteArray(column.decimals, '0') + ".0)";
}

bool isDouble(const PlannedColumn &column)
{
    return column.type == CellType::Decimal || (column.type == CellType::Integer && column.length > maxBigintDigits);
}

QByteArray cellOf(const PlannedColumn &column, const QByteArray &field)
{
    // 0.0 is added because -0 is 0.
    if (column.type == CellType::Integer)
        return "CAST(load_whole(" + field + ") AS " + typeOf(column) + (isDouble(column) ? ") + 0.0" : ")");
    return column.type == CellType::Decimal ? decimalOf(column, field) : "rtrim(" + field + ", ' ')";
}

QByteArray isNoNumber(const PlannedColumn &column, const QByteArray &field)
{
    return (column.type == CellType::Integer ? "load_is_no_whole(" : "load_is_no_decimal(") + field + ')';
}

// DuckDB takes a number without an exponent for a decimal, and turns a long one into a double that is not the nearest.
QByteArray codeEnd(const PlannedColumn &column)
{
    return isDouble(column) ? QByteArrayLiteral("e0") : QByteArray();
}

const SqlDialect &dialect()
{
    static const SqlDialect sql = { cellOf, isNoNumber, "temp.\"load lines\"", "rowid", QByteArray(), codeEnd, true };
    return sql;
}

QByteArray comments(const PlannedTable &table)
{
    const QByteArray name = sqlName(table.name);
    QByteArray statements;
    if (!table.label.isEmpty())
        statements += "COMMENT ON TABLE " + name + " IS " + sqlText(table.label, "") + ";\n";
    for (const PlannedColumn &column : table.columns) {
        if (!column.label.isEmpty())
            statements += "COMMENT ON COLUMN " + name + '.' + sqlName(column.name) + " IS " + sqlText(column.label, "")
                + ";\n";
    }
    return statements;
}

// Writes a file if the variable is set. A copy of no rows writes nothing, except if an empty file is wanted.
QByteArray copyStatement(const QByteArray &query, const QString &file)
{
    return "COPY (" + query + ")\n  TO (coalesce(getvariable('parquet'), '.') || "
        + sqlText(QLatin1Char('/') + file + QLatin1String(".parquet"))
        + ") (FORMAT parquet, WRITE_EMPTY_FILE (getvariable('parquet') IS NOT NULL));\n";
}

// A line for each column with text that is no number.
QByteArray countNoNumbers(const SqlTable &query)
{
    const QByteArrayList names = query.countedNames();
    if (names.isEmpty())
        return QByteArray();
    return "INSERT INTO temp.\"load counts\"\nSELECT name || ': ' || number || ' values are no numbers'\nFROM (\n"
           "  SELECT unnest([\n"
        + sqlList(names, 4) + "\n  ]) AS name, unnest([\n" + sqlList(query.counts(), 4) + "\n  ]) AS number\n  FROM "
        + query.source() + "\n) WHERE number > 0;\n";
}

QByteArray statements(const LoadPlan &plan, const PlannedTable &table)
{
    const SqlTable query(plan, table, dialect());
    return '\n' + sqlTitle(table) + "CREATE OR REPLACE TEMPORARY VIEW \"load rows\" AS\n" + query.rows()
        + ";\nCREATE OR REPLACE TABLE " + sqlName(table.name)
        + " AS SELECT * FROM temp.\"load rows\" WHERE getvariable('parquet') IS NULL;\n"
        + copyStatement("SELECT * FROM temp.\"load rows\" WHERE getvariable('parquet') IS NOT NULL", table.file)
        + comments(table) + "INSERT INTO temp.\"load counts\"\nSELECT " + sqlText(table.name)
        + " || ': ' || count(*) || ' rows' FROM " + query.source()
        + (table.isItemTable() ? "\n  AND " + query.isOccurrence() : QByteArray()) + ";\n" + countNoNumbers(query);
}

QByteArray markExpression(const LoadPlan &plan)
{
    if (!plan.recordType)
        return QByteArrayLiteral("''");
    const QByteArray length = QByteArray::number(plan.recordType->length);
    return "rpad(substr(text, " + QByteArray::number(plan.recordType->start) + ", " + length + "), " + length
        + ", ' ')";
}

QByteArray codes(const LoadPlan &plan)
{
    const QByteArray table = sqlName(plan.codesName);
    return sqlReplaceCodes(plan, table)
        + copyStatement("SELECT * FROM " + table + " WHERE table_name IN " + sqlTableNames(plan)
                            + "\n  AND getvariable('parquet') IS NOT NULL",
                        plan.codesName);
}

QByteArray closing(const LoadPlan &plan)
{
    return "\nINSERT INTO temp.\"load counts\"\nSELECT count(*) || ' lines of no known record type' FROM temp.\"load "
           "lines\"\nWHERE (mark IS NULL AND rtrim(text, ' ') <> '') OR mark NOT IN "
        + sqlKnownMarks(plan)
        + "\nHAVING count(*) > 0;\nINSERT INTO temp.\"load counts\"\nSELECT count(*) || ' blank lines' FROM "
          "temp.\"load "
          "lines\"\nWHERE rtrim(text, ' ') = '' HAVING count(*) > 0;\nDROP VIEW temp.\"load rows\";\nDROP TABLE "
          "temp.\"load "
          "lines\";\nCOMMIT;\n\nSET schema = getvariable('load_home');\nDETACH load_scratch;\n"
          "SELECT text AS counts FROM temp.\"load counts\" ORDER BY rowid;\n";
}

QByteArray head(const LoadPlan &plan)
{
    const QString file = plan.name + QLatin1String(".sql");
    QStringList needs = { QStringLiteral("It needs DuckDB 1.4 or later. Lines that do not fit into memory go to the "
                                         "disk. Tables and files of an earlier "
                                         "run are replaced; after an error the tables are as before.") };
    if (plan.options.encoding == DataEncoding::Windows1252)
        needs.append(
            QStringLiteral("A file in windows-1252 is in memory as a whole, and has at most 1 GB. A larger one has "
                           "to be turned into UTF-8 first, and loaded with a program for UTF-8."));
    needs += longCodeRemarks(plan, maxBigintDigits, maxExactDigits);
    return programHead(
        plan, sqlComment(),
        { QStringLiteral("DuckDB"),
          { QStringLiteral("duckdb NAME.db < ") + file, QStringLiteral("or the statements in any client of DuckDB") },
          needs,
          {} });
}

} // namespace

QVector<LoadFile> duckdbProgram(const LoadPlan &plan)
{
    const bool isUtf8 = plan.options.encoding == DataEncoding::Utf8;
    const QByteArray lines = programPart(isUtf8 ? "duckdb/utf-8.sql" : "duckdb/windows-1252.sql");
    QByteArray text = head(plan)
        + programPart("duckdb/read.sql",
                      { { "data", sqlText(safePath(plan.options.data)) },
                        { "check", isUtf8 ? QByteArray() : programPart("duckdb/windows-1252-check.sql") },
                        { "mark", markExpression(plan) },
                        { "lines", lines.trimmed().prepend("  ") } });
    if (isUtf8)
        text += programPart("duckdb/utf-8-check.sql");
    for (const PlannedTable &table : plan.tables)
        text += statements(plan, table);
    text += codes(plan) + closing(plan);
    return { { plan.name + QLatin1String(".sql"), text } };
}

} // namespace vanlayout
