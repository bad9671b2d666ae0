#include "SqlTable_p.h"

#include "SqlText_p.h"

namespace vanlayout
{

SqlTable::SqlTable(const LoadPlan &loadPlan, const PlannedTable &planned, const SqlDialect &sqlDialect)
    : plan(loadPlan)
    , table(planned)
    , dialect(sqlDialect)
    , lineNumber(freeColumn(planned, QStringLiteral("line_no")))
    , lineText(freeColumn(planned, QStringLiteral("line_text")))
{
}

QByteArray SqlTable::rows() const
{
    return "WITH ids AS (\n" + ids() + "), cases AS (\n" + cases() + "), fields AS (\n" + fields() + ")\n" + cells();
}

QByteArray SqlTable::source() const
{
    return dialect.lines + (table.isItemTable() ? occurrences() : QByteArray())
        + " WHERE mark = " + sqlText(table.mark);
}

QByteArrayList SqlTable::countedNames() const
{
    QByteArrayList names;
    for (const PlannedColumn &column : table.columns) {
        if (table.counts(column))
            names.append(sqlText(table.name + QLatin1Char('.') + column.name));
    }
    return names;
}

QByteArrayList SqlTable::counts() const
{
    QByteArrayList counts;
    for (const PlannedColumn &column : table.columns) {
        if (table.counts(column))
            counts.append("count(*) FILTER (WHERE " + dialect.isNoNumber(column, sqlField(table, column, "text"))
                          + ')');
    }
    return counts;
}

QByteArray SqlTable::isOccurrence(const QByteArray &line) const
{
    return "rtrim(substr(" + line + ", " + QByteArray::number(table.start) + " + (item_occ - 1) * "
        + QByteArray::number(table.step) + ", " + QByteArray::number(table.length) + "), ' ') <> ''";
}

QByteArray SqlTable::occurrences() const
{
    return " CROSS JOIN generate_series(1, " + QByteArray::number(table.occurrences) + ") AS series(item_occ)";
}

// The id fields of each line.
QByteArray SqlTable::ids() const
{
    QByteArrayList columns = { dialect.lineNumber + " AS " + lineNumber, "text AS " + lineText };
    for (const PlannedColumn &column : table.columns) {
        if (column.role == ColumnRole::Id)
            columns.append(dialect.cell(column, sqlField(table, column, "text")) + " AS " + sqlName(column.name));
    }
    return "  SELECT\n" + sqlList(columns, 4) + "\n  FROM " + dialect.lines + " WHERE mark = " + sqlText(table.mark)
        + dialect.fence + '\n';
}

// The ids without special codes, and the number of each record within its case.
QByteArray SqlTable::cases() const
{
    QByteArrayList columns = { lineNumber, lineText };
    QByteArrayList keys;
    for (const PlannedColumn &column : table.columns) {
        if (column.role != ColumnRole::Id)
            continue;
        keys.append(sqlWithoutSpecials(plan, column, { sqlName(column.name), {}, 0, dialect.codeEnd(column) }));
        columns.append(keys.constLast() + " AS " + sqlName(column.name));
    }
    const QByteArray partition = keys.isEmpty() ? QByteArray() : "PARTITION BY " + keys.join(", ") + ' ';
    if (table.hasOccurrence)
        columns.append("CAST(row_number() OVER (" + partition + "ORDER BY " + lineNumber + ") AS integer) AS occ");
    return "  SELECT\n" + sqlList(columns, 4) + "\n  FROM ids"
        + (dialect.ordersCases && table.hasOccurrence ? " ORDER BY " + lineNumber : QByteArray()) + '\n';
}

QByteArray SqlTable::fields() const
{
    QByteArrayList columns = { lineNumber };
    for (const PlannedColumn &column : table.columns) {
        const QByteArray name = sqlName(column.name);
        const bool isItem = column.role == ColumnRole::Item;
        columns.append(isItem ? dialect.cell(column, sqlField(table, column, lineText)) + " AS " + name : name);
    }
    QByteArray query = "  SELECT\n" + sqlList(columns, 4) + "\n  FROM cases";
    if (table.isItemTable())
        query += occurrences() + "\n  WHERE " + isOccurrence(lineText);
    return query + dialect.fence + '\n';
}

// The cells without special codes.
QByteArray SqlTable::cells() const
{
    QByteArrayList columns;
    for (const PlannedColumn &column : table.columns) {
        const QByteArray name = sqlName(column.name);
        const bool isItem = column.role == ColumnRole::Item;
        columns.append(
            isItem ? sqlWithoutSpecials(plan, column, { name, {}, 0, dialect.codeEnd(column) }) + " AS " + name : name);
    }
    QByteArray query = "SELECT\n" + sqlList(columns, 2) + "\nFROM fields";
    if (table.isItemTable() || !dialect.ordersCases)
        query += " ORDER BY " + lineNumber + (table.isItemTable() ? ", item_occ" : "");
    return query;
}

} // namespace vanlayout
