#include "SqliteProgram_p.h"

#include "Head_p.h"
#include "PlanLists_p.h"
#include "ProgramText_p.h"
#include "SqlText_p.h"
#include "SqliteCells_p.h"

#include <algorithm>

namespace vanlayout
{

namespace
{

// An argument of a command of the sqlite3 program in double quotes.
QByteArray shellArgument(QString text)
{
    text.replace(QLatin1Char('\\'), QLatin1String("\\\\")).replace(QLatin1Char('"'), QLatin1String("\\\""));
    text.replace(QLatin1Char('\n'), QLatin1String("\\n")).replace(QLatin1Char('\r'), QLatin1String("\\r"));
    return '"' + text.toUtf8() + '"';
}

// Tables are made in the opened database, also if a temporary table has the same name.
QByteArray mainTable(const QString &name)
{
    return "main." + sqlName(name);
}

QByteArray typeOf(const PlannedColumn &column)
{
    if (column.isMade())
        return QByteArrayLiteral("INTEGER");
    return column.type == CellType::Decimal ? QByteArrayLiteral("REAL") : sqliteTypeOfCells(column);
}

QByteArray blankLine(const QByteArray &line)
{
    return "trim(" + line + ", ' ') = ''";
}

// Whether an erased line, which begins with `~`, can have the type of a record.
bool canBeErased(const LoadPlan &plan)
{
    const auto isErased = [](const QString &mark) { return mark.startsWith(QLatin1Char('~')); };
    return !plan.recordType || plan.recordType->start != 1
        || std::any_of(plan.knownMarks.begin(), plan.knownMarks.end(), isErased);
}

QByteArray wholeMarkField(const LoadPlan &plan)
{
    return "substr(l, " + QByteArray::number(plan.recordType->start) + ", "
        + QByteArray::number(plan.recordType->length) + ')';
}

QString withoutBlanks(QString mark)
{
    while (mark.endsWith(QLatin1Char(' ')))
        mark.chop(1);
    return mark;
}

// The characters of the record type; blanks behind them are taken off where one of the marks, which have none, is
// shorter.
QByteArray markField(const LoadPlan &plan, const QStringList &marks)
{
    const auto isWhole = [&plan](const QString &mark) { return mark.size() == plan.recordType->length; };
    const QByteArray field = wholeMarkField(plan);
    return std::all_of(marks.begin(), marks.end(), isWhole) ? field : "rtrim(" + field + ", ' ')";
}

// True for the lines of a table. CSPro begins an erased line with `~`.
QByteArray isOfTable(const LoadPlan &plan, const PlannedTable &table)
{
    QByteArrayList conditions;
    const QString mark = withoutBlanks(table.mark);
    if (plan.recordType)
        conditions.append(markField(plan, { mark }) + " = " + sqlText(mark));
    if (mark.isEmpty())
        conditions.append("NOT " + blankLine("l"));
    if (canBeErased(plan))
        conditions.append("substr(l, 1, 1) <> '~'");
    return conditions.join(" AND ");
}

/// Writes the statements of one table.
class TableWriter
{
public:
    TableWriter(const LoadPlan &loadPlan, int index)
        : plan(loadPlan)
        , table(loadPlan.tables.at(index))
        , number(index)
        , recordNumber(table.isItemTable() ? table.recordTable : index)
    {
        for (const PlannedColumn &column : table.columns) {
            const bool isCut = !column.isMade() && (!table.isItemTable() || column.role == ColumnRole::Item);
            if (isCut)
                cut.append(column);
        }
    }

    QByteArray text() const
    {
        QByteArray statements = "\n" + sqlTitle(table);
        statements += stage();
        statements += fill();
        if (table.hasOccurrence && !table.isItemTable())
            statements += occurrences();
        statements += create();
        statements += insert();
        return statements += messages();
    }

    QByteArray dropped() const
    {
        return "DROP TABLE IF EXISTS temp." + rows() + ";\n"
            + (hasNumbers() ? "DROP TABLE IF EXISTS temp." + otherRows() + ";\n" : QByteArray())
            + (table.hasOccurrence && !table.isItemTable() ? "DROP TABLE IF EXISTS temp." + occ() + ";\n"
                                                           : QByteArray());
    }

private:
    QByteArray rows() const { return "load_rows_" + QByteArray::number(number + 1); }
    QByteArray otherRows() const { return "load_other_rows_" + QByteArray::number(number + 1); }
    QByteArray occ() const { return "load_occ_" + QByteArray::number(recordNumber + 1); }
    static QByteArray cell(int index) { return 'c' + QByteArray::number(index + 1); }

    bool hasNumbers() const
    {
        return std::any_of(cut.begin(), cut.end(), [](const PlannedColumn &column) { return column.isNumber(); });
    }

    QByteArrayList cellColumns() const
    {
        QByteArrayList columns = { "row INTEGER PRIMARY KEY" };
        for (int i = 0; i < cut.size(); ++i)
            columns.append(cell(i) + ' ' + sqliteTypeOfCells(cut.at(i)));
        return columns;
    }

    // The checks keep out lines with other texts than numbers in columns of numbers.
    QByteArray checks() const
    {
        QByteArrayList conditions;
        for (int i = 0; i < cut.size(); ++i) {
            if (cut.at(i).isNumber())
                conditions.append(sqliteIsNumberOrBlank(cut.at(i), cell(i)));
        }
        return "CHECK (" + sqliteJoined(conditions, "\n    AND ") + ')';
    }

    // The rows with the cells as they are cut from the lines.
    QByteArray stage() const
    {
        QByteArrayList columns = cellColumns();
        QByteArray other;
        if (hasNumbers()) {
            other = "CREATE TEMP TABLE " + otherRows() + " (\n" + sqlList(columns, 2) + ");\n";
            columns.append(checks());
        }
        return dropped() + "CREATE TEMP TABLE " + rows() + " (\n" + sqlList(columns, 2) + ");\n" + other;
    }

    QByteArray source() const
    {
        const QByteArray lines = "  FROM temp.load_lines";
        if (!table.isItemTable())
            return lines + " WHERE " + isOfTable(plan, table);
        const QByteArray times = QByteArray::number(table.occurrences);
        return lines + " CROSS JOIN temp.load_occurrences WHERE k <= " + times + " AND " + isOfTable(plan, table)
            + "\n    AND NOT "
            + blankLine("substr(l, " + QByteArray::number(table.start) + " + (k - 1) * "
                        + QByteArray::number(table.step) + ", " + QByteArray::number(table.length) + ')');
    }

    QByteArray rowNumber() const
    {
        if (!table.isItemTable())
            return QByteArrayLiteral("load_lines.rowid");
        return "load_lines.rowid * " + QByteArray::number(table.occurrences) + " + k - 1";
    }

    QByteArrayList cells(QByteArray (*cellOf)(const PlannedTable &, const PlannedColumn &)) const
    {
        QByteArrayList expressions = { rowNumber() };
        for (const PlannedColumn &column : cut)
            expressions.append(cellOf(table, column));
        return expressions;
    }

    QByteArray fill() const
    {
        const QByteArray others = " SELECT\n" + sqlList(cells(sqliteOtherCell), 4) + '\n' + source();
        if (!hasNumbers())
            return "INSERT INTO temp." + rows() + others + ";\n";
        return "-- Lines with nothing but numbers and blanks in the columns of numbers, then all others. SQLite would "
               "take\n"
               "-- texts like 1E2 and 5. for numbers, and white space other than blanks for a part of them.\n"
               "INSERT OR IGNORE INTO temp."
            + rows() + " SELECT\n" + sqlList(cells(sqlitePlainCell), 4) + '\n' + source() + "\n    AND "
            + sqliteIsPlain(table, cut) + ";\nINSERT INTO temp." + otherRows() + others + "\n    AND " + rowNumber()
            + " NOT IN (SELECT row FROM temp." + rows() + ");\n" + texts() + moveOtherRows();
    }

    // Reads the texts that were not simply numbers.
    QByteArray texts() const
    {
        QByteArrayList columns;
        QByteArrayList parts;
        for (int i = 0; i < cut.size(); ++i) {
            if (!cut.at(i).isNumber())
                continue;
            const QByteArray id = QByteArray::number(i + 1);
            columns.append('(' + id + ", " + sqlText(cut.at(i).name) + ", " + QByteArray::number(cut.at(i).decimals)
                           + ')');
            parts.append("SELECT " + id + ", row, " + cell(i) + ", NULL FROM temp." + otherRows() + " WHERE "
                         + sqliteIsText(cut.at(i), cell(i)));
        }
        return "-- Texts in columns of numbers, which are greater than any number, get a second look.\nDELETE FROM "
               "temp.load_columns;\nINSERT INTO temp.load_columns VALUES\n"
            + sqlList(columns, 2) + ";\nDELETE FROM temp.load_texts;\n" + collectParts(parts)
            + programPart("sqlite/numbers.sql").mid(1);
    }

    // SQLite limits the number of queries in one statement.
    static QByteArray collectParts(const QByteArrayList &parts)
    {
        constexpr int maxQueries = 400;
        QByteArray statements;
        for (int i = 0; i < parts.size(); i += maxQueries)
            statements += "INSERT INTO temp.load_texts\n  " + parts.mid(i, maxQueries).join("\n  UNION ALL ") + ";\n";
        return statements;
    }

    QByteArray moveOtherRows() const
    {
        QByteArrayList moved = { QByteArrayLiteral("row") };
        for (int i = 0; i < cut.size(); ++i) {
            const QByteArray name = cell(i);
            moved.append(!cut.at(i).isNumber() ? name
                                               : "CASE WHEN " + sqliteIsText(cut.at(i), name)
                                 + " THEN (SELECT number FROM temp.load_texts t WHERE t.column = "
                                 + QByteArray::number(i + 1) + " AND t.row = o.row) ELSE " + name + " END");
        }
        return "INSERT INTO temp." + rows() + " SELECT\n" + sqlList(moved, 4) + "\n  FROM temp." + otherRows()
            + " o;\n";
    }

    // The number of each record within its case, wherever its lines are.
    QByteArray occurrences() const
    {
        QByteArrayList ids;
        for (int i = 0; i < cut.size(); ++i) {
            if (cut.at(i).role == ColumnRole::Id)
                ids.append(finalCell(cut.at(i), "r." + cell(i)));
        }
        const QByteArray partition = ids.isEmpty() ? QByteArray() : "PARTITION BY\n" + sqlList(ids, 4) + "\n    ";
        return "CREATE TEMP TABLE " + occ() + " (row INTEGER PRIMARY KEY, occ INTEGER);\nINSERT INTO temp." + occ()
            + "\n  SELECT row, row_number() OVER (" + partition + "ORDER BY row) FROM temp." + rows() + " r;\n";
    }

    QByteArray create() const
    {
        QByteArray columns;
        for (int i = 0; i < table.columns.size(); ++i) {
            const PlannedColumn &column = table.columns.at(i);
            if (!column.label.isEmpty())
                columns += comment({ column.label }, { "  -- ", "", "" });
            columns
                += "  " + sqlName(column.name) + ' ' + typeOf(column) + (i + 1 < table.columns.size() ? ",\n" : "\n");
        }
        return "DROP TABLE IF EXISTS " + mainTable(table.name) + ";\nCREATE TABLE " + mainTable(table.name) + " (\n"
            + columns + ");\n";
    }

    // The value of a cell: decimals are divided out. Codes that mean missing are NULL, and so are blanks, which are not
    // less than the empty text, as each number is.
    QByteArray finalCell(const PlannedColumn &column, const QByteArray &value) const
    {
        SqlCell result{ value, {}, 0, {} };
        if (column.isNumber()) {
            QByteArray scaled = value;
            if (column.type == CellType::Decimal)
                scaled += " / 1e" + QByteArray::number(column.decimals);
            else if (sqliteTypeOfCells(column) == "REAL")
                scaled += " + 0.0"; // no negative zero
            result.result = "CASE WHEN " + value + " < '' THEN " + scaled + " END";
            result.shift = column.decimals;
        }
        return sqlWithoutSpecials(plan, column, result);
    }

    // The cells of a row of the table; in an item table, the ids are those of the row of the record.
    QByteArrayList finalCells() const
    {
        QByteArrayList cells;
        int next = 0;
        int nextId = 0;
        for (const PlannedColumn &column : table.columns) {
            if (column.role == ColumnRole::Occurrence)
                cells.append(QByteArrayLiteral("o.occ"));
            else if (column.role == ColumnRole::ItemOccurrence)
                cells.append("t.row % " + QByteArray::number(table.occurrences) + " + 1");
            else if (table.isItemTable() && column.role == ColumnRole::Id)
                cells.append(finalCell(column, "r." + cell(nextId++)));
            else
                cells.append(finalCell(column, "t." + cell(next++)));
        }
        return cells;
    }

    QByteArray insert() const
    {
        QByteArray from = "  FROM temp." + rows() + " t";
        QByteArray record = QByteArrayLiteral("t.row");
        if (table.isItemTable()) {
            record = "t.row / " + QByteArray::number(table.occurrences);
            from += " CROSS JOIN temp.load_rows_" + QByteArray::number(recordNumber + 1) + " r ON r.row = " + record;
        }
        if (table.hasOccurrence)
            from += " CROSS JOIN temp." + occ() + " o ON o.row = " + record;
        return "-- A number is less than any text, so that blanks become NULL.\nINSERT INTO " + mainTable(table.name)
            + " SELECT\n" + sqlList(finalCells(), 4) + '\n' + from + " ORDER BY t.row;\n";
    }

    QByteArray messages() const
    {
        QByteArray statements = "INSERT INTO temp.load_messages\n  SELECT " + sqlText(table.name + QLatin1String(": "))
            + " || count(*) || ' rows' FROM " + mainTable(table.name) + ";\n";
        if (hasNumbers())
            statements += "INSERT INTO temp.load_messages\n  SELECT " + sqlText(table.name + QLatin1Char('.'))
                + " || c.name || ': ' || count(*) || ' values are no numbers'\n"
                  "  FROM temp.load_texts t JOIN temp.load_columns c USING (column)\n"
                  "  WHERE t.number IS NULL GROUP BY c.column ORDER BY c.column;\n";
        return statements;
    }

    const LoadPlan &plan;
    const PlannedTable &table;
    int number;
    int recordNumber;
    QVector<PlannedColumn> cut; ///< columns whose cells are cut from lines for this table
};

QByteArray head(const LoadPlan &plan)
{
    constexpr int maxIntegerDigits = 18;
    HeadTexts texts;
    texts.target = QStringLiteral("SQLite");
    texts.run = QStringList{ QStringLiteral("sqlite3 %1.db < %1.sql").arg(plan.name) };
    texts.change = QStringList{ QStringLiteral(
        "The path of the data file is in the line that begins with .import; change it there for another file.") };
    texts.needs = QStringList{
        QStringLiteral(
            "Needs sqlite3 3.34 or later. A second run replaces the tables; a run that fails changes nothing."),
        QStringLiteral("Blank lines have no rows, and are not counted."),
    };
    texts.needs += longCodeRemarks(plan, maxIntegerDigits, maxIntegerDigits);
    return programHead(plan, sqlComment(), texts);
}

QByteArray read(const LoadPlan &plan)
{
    // A byte that UTF-8 does not have, or one of the few that windows-1252 does not have.
    const bool isUtf8 = plan.options.encoding == DataEncoding::Utf8;
    return programPart("sqlite/read.sql",
                       { { "separator", isUtf8 ? "376" : "201" },
                         { "path", shellArgument(safePath(plan.options.data)) },
                         { "place", sqlText(safePath(plan.options.data)) } })
        + programPart(isUtf8 ? "sqlite/utf-8.sql" : "sqlite/windows-1252.sql") + programPart("sqlite/line-ends.sql");
}

QByteArray workingTables(const LoadPlan &plan)
{
    int occurrences = 1;
    for (const PlannedTable &table : plan.tables)
        occurrences = std::max(occurrences, table.occurrences);
    return programPart("sqlite/working-tables.sql", { { "occurrences", QByteArray::number(occurrences) } });
}

QByteArray codes(const LoadPlan &plan)
{
    return sqlReplaceCodes(plan, mainTable(plan.codesName));
}

QByteArray unknownLines(const LoadPlan &plan)
{
    QStringList marks;
    for (const QString &mark : plan.knownMarks)
        marks.append(withoutBlanks(mark));
    QByteArrayList conditions;
    if (plan.recordType)
        conditions.append(markField(plan, marks) + " NOT IN " + sqlTexts(marks));
    if (canBeErased(plan))
        conditions.append(QByteArrayLiteral("substr(l, 1, 1) = '~'"));
    return "\n-- Lines of no record type; CSPro begins erased lines with ~.\nINSERT INTO temp.load_messages\n"
           "  SELECT n || ' lines of no known record type' FROM (SELECT count(*) AS n FROM temp.load_lines\n    WHERE ("
        + conditions.join(" OR ") + ") AND NOT " + blankLine("l") + ") WHERE n > 0;\n";
}

} // namespace

QVector<LoadFile> sqliteProgram(const LoadPlan &plan)
{
    QByteArray text
        = head(plan) + read(plan) + workingTables(plan) + "\n-- Either all tables are replaced, or none.\nBEGIN;\n";
    QByteArray dropped;
    for (int i = 0; i < plan.tables.size(); ++i) {
        const TableWriter table(plan, i);
        text += table.text();
        dropped += table.dropped();
    }
    text += codes(plan) + unknownLines(plan) + "COMMIT;\n\nSELECT message FROM temp.load_messages ORDER BY rowid;\n\n"
        + dropped + programPart("sqlite/end.sql");
    return { { plan.name + QLatin1String(".sql"), text } };
}

bool isReservedInSqlite(const QString &name)
{
    return name.startsWith(QLatin1String("sqlite_"), Qt::CaseInsensitive);
}

} // namespace vanlayout
