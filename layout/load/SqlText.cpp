#include "SqlText_p.h"

#include "write/Wording_p.h"

#include <algorithm>

namespace vanlayout
{

namespace
{

constexpr int longestPart = 200;     // characters of one literal, with at most four bytes each
constexpr int longestLine = 500;     // bytes
constexpr int rowsOfStatement = 500; // of an INSERT

// The end of a part of a long text, never within a character.
int endOfPart(const QString &text, int start)
{
    const int end = std::min(start + longestPart, int(text.size()));
    return end < text.size() && text.at(end).isLowSurrogate() ? end - 1 : end;
}

QByteArray literal(QString part)
{
    const auto isOdd = [](QChar character) { return character.isNull() || character == QLatin1Char('\''); };
    if (std::any_of(part.cbegin(), part.cend(), isOdd))
        part.replace(QChar(), QLatin1Char(' ')).replace(QLatin1Char('\''), QLatin1String("''"));
    return '\'' + part.toUtf8() + '\'';
}

// A number times a power of ten, exactly.
QByteArray shifted(const QString &number, int places)
{
    QByteArray digits = number.toUtf8();
    int mark = digits.indexOf('.');
    if (mark < 0)
        mark = digits.size();
    else
        digits.remove(mark, 1);
    while (digits.size() < mark + places)
        digits += '0';
    return mark + places < digits.size() ? digits.insert(mark + places, '.') : digits;
}

// The condition for one rule of whole numbers. A code with decimals is compared by its whole part, because an engine
// may turn a whole number into the type of the code, which may have too few digits for it.
QByteArray wholeCondition(const SpecialRule &rule, const QByteArray &value)
{
    const auto wholePart = [](const QString &code) { return code.section(QLatin1Char('.'), 0, 0).toUtf8(); };
    const auto hasDecimals = [](const QString &code) { return code.contains(QLatin1Char('.')); };
    const bool isAboveLow = hasDecimals(rule.low) && !rule.low.startsWith(QLatin1Char('-'));
    const bool isBelowHigh = hasDecimals(rule.high) && rule.high.startsWith(QLatin1Char('-'));
    return value + (isAboveLow ? " > " : " >= ") + wholePart(rule.low) + " AND " + value
        + (isBelowHigh ? " < " : " <= ") + wholePart(rule.high);
}

bool isShortWhole(const QString &code)
{
    constexpr int maxDigits = 18;
    return !code.contains(QLatin1Char('.')) && code.size() <= maxDigits;
}

// The condition for one rule.
QByteArray condition(const SpecialRule &rule, const PlannedColumn &column, const SqlCell &cell)
{
    if (!column.isNumber())
        return cell.value + " = " + sqlText(rule.low);
    const bool isWhole = column.type == CellType::Integer && cell.codeEnd.isEmpty();
    if (isWhole && !(isShortWhole(rule.low) && isShortWhole(rule.high)))
        return wholeCondition(rule, cell.value);
    const QByteArray low = shifted(rule.low, cell.shift) + cell.codeEnd;
    if (rule.low == rule.high)
        return cell.value + " = " + low;
    return cell.value + " BETWEEN " + low + " AND " + shifted(rule.high, cell.shift) + cell.codeEnd;
}

QByteArray orNull(const QString &text)
{
    return text.isNull() ? QByteArrayLiteral("NULL") : sqlText(text);
}

QByteArray namesOf(const PlannedTable &table, const PlannedColumn &column)
{
    const QByteArray tableName = sqlText(table.name);
    const QByteArray columnName = sqlText(column.name);
    const bool isShort = tableName.size() + columnName.size() < longestLine / 2;
    return tableName + (isShort ? ", " : ",\n    ") + columnName;
}

// \a names is the beginning of all rows of the column.
QByteArray codeTuple(const QByteArray &names, const CodeRow &row)
{
    const QString special = wordOf(row.special);
    const QByteArrayList cells = { sqlText(row.from), orNull(row.to), sqlText(row.label),
                                   special.isEmpty() ? QByteArrayLiteral("NULL") : sqlText(special) };
    const QByteArray line = cells.join(", ");
    if (names.size() + line.size() < longestLine)
        return '(' + names + ", " + line + ')';
    return '(' + names + ",\n    " + cells.join(",\n    ") + ')';
}

QByteArray insertStatement(const QByteArray &table, const QByteArrayList &tuples)
{
    return "INSERT INTO " + table + " (table_name, column_name, code_from, code_to, label, special) VALUES\n"
        + sqlList(tuples, 2) + ";\n";
}

} // namespace

CommentStyle sqlComment()
{
    return { "-- ", "", "" };
}

QByteArray sqlTitle(const PlannedTable &table)
{
    return comment({ table.label.isEmpty() ? table.name : table.label }, sqlComment());
}

QByteArray sqlName(const QString &name)
{
    QString quoted = name;
    return '"' + quoted.replace(QLatin1Char('"'), QLatin1String("\"\"")).toUtf8() + '"';
}

QByteArray sqlText(const QString &text, const char *between)
{
    if (text.size() <= longestPart)
        return literal(text);
    QByteArrayList parts;
    int start = 0;
    do {
        const int end = endOfPart(text, start);
        parts.append(literal(text.mid(start, end - start)));
        start = end;
    } while (start < text.size());
    return parts.join(between + QByteArrayLiteral("\n    "));
}

QByteArray sqlTexts(const QStringList &texts)
{
    QByteArrayList parts;
    std::transform(texts.begin(), texts.end(), std::back_inserter(parts),
                   [](const QString &text) { return sqlText(text); });
    const QByteArray line = parts.join(", ");
    return '(' + (line.size() < longestLine ? line : parts.join(",\n    ")) + ')';
}

QByteArray sqlList(const QByteArrayList &parts, int indent)
{
    const QByteArray blanks(indent, ' ');
    return blanks + parts.join(",\n" + blanks);
}

QByteArray freeColumn(const PlannedTable &table, const QString &wanted)
{
    QString name = wanted;
    const auto isName
        = [&](const PlannedColumn &column) { return column.name.compare(name, Qt::CaseInsensitive) == 0; };
    while (std::any_of(table.columns.begin(), table.columns.end(), isName))
        name += QLatin1Char('_');
    return name.toUtf8();
}

QByteArray sqlField(const PlannedTable &table, const PlannedColumn &column, const QByteArray &line)
{
    QByteArray start = QByteArray::number(column.start);
    if (table.isOfOccurrence(column))
        start += " + (item_occ - 1) * " + QByteArray::number(table.step);
    return "substr(" + line + ", " + start + ", " + QByteArray::number(column.length) + ')';
}

QByteArray sqlWithoutSpecials(const LoadPlan &plan, const PlannedColumn &column, const SqlCell &cell)
{
    QByteArray result = cell.result.isEmpty() ? cell.value : cell.result;
    if (column.codes < 0 || plan.codes.at(column.codes).specials.isEmpty())
        return result;
    QByteArray cases = "CASE";
    for (const SpecialRule &rule : plan.codes.at(column.codes).specials) {
        const bool isMissing = rule.outcome != CellOutcome::Value;
        cases += "\n      WHEN " + condition(rule, column, cell) + " THEN " + (isMissing ? "NULL" : result);
    }
    return cases + "\n      ELSE " + result + " END";
}

QByteArray sqlReplaceCodes(const LoadPlan &plan, const QByteArray &table)
{
    QByteArray statements = "\n-- The codes of all columns. The table may hold those of other programs as well.\n"
                            "CREATE TABLE IF NOT EXISTS "
        + table
        + " (table_name text, column_name text, code_from text, code_to text, label text, special text);\nDELETE FROM "
        + table + " WHERE table_name IN " + sqlTableNames(plan) + ";\n";
    QByteArrayList tuples;
    for (const PlannedTable &planned : plan.tables) {
        for (const PlannedColumn &column : planned.columns) {
            if (column.codes < 0)
                continue;
            const QByteArray names = namesOf(planned, column);
            for (const CodeRow &row : plan.codes.at(column.codes).rows) {
                tuples.append(codeTuple(names, row));
                if (tuples.size() < rowsOfStatement)
                    continue;
                statements += insertStatement(table, tuples);
                tuples.clear();
            }
        }
    }
    return tuples.isEmpty() ? statements : statements + insertStatement(table, tuples);
}

QByteArray sqlTableNames(const LoadPlan &plan)
{
    QStringList names;
    for (const PlannedTable &table : plan.tables)
        names.append(table.name);
    return sqlTexts(names);
}

QByteArray sqlKnownMarks(const LoadPlan &plan)
{
    return plan.knownMarks.isEmpty() ? QByteArrayLiteral("('')") : sqlTexts(plan.knownMarks);
}

} // namespace vanlayout
