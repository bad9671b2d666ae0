#include "SasTable_p.h"

#include "PlanLists_p.h"
#include "ProgramText_p.h"
#include "SasLines_p.h"
#include "SasTexts_p.h"

#include <algorithm>

namespace vanlayout
{

namespace
{

constexpr int maxInformatDigits = 32; // that an informat reads

QByteArray declaration(const QByteArray &text)
{
    return "  " + text + ";\n";
}

QByteArray statement(const QByteArray &text)
{
    return "    " + text + ";\n";
}

QByteArray lengthOfText(const QByteArray &name, int bytes)
{
    return declaration("length " + name + " $ " + number(bytes));
}

} // namespace

SasTable::SasTable(const LoadPlan &loadPlan, const SasLines &linesOfProgram, const QVector<SasFormat> &formatsOfCodes,
                   int tableIndex)
    : plan(loadPlan)
    , lines(linesOfProgram)
    , formats(formatsOfCodes)
    , table(loadPlan.tables.at(tableIndex))
    , index(tableIndex)
    , p(linesOfProgram.prefix())
{
}

QByteArray SasTable::steps() const
{
    QByteArray text = "data " + lines.dataSet(index) + ";\n" + lengths() + lines.read();
    text += "  if " + isRecord() + " then do;\n" + columns(ColumnRole::Id) + statement(p + "number = _n_");
    text += table.isItemTable() ? occurrences() : QByteArray(columns(ColumnRole::Item) + statement("output"));
    text += "  end;\n" + counts() + "  keep" + kept() + ";\n" + labels() + "  return;\n" + lines.readLabel()
        + numberLabel() + "run;\n";
    if (table.hasOccurrence)
        text += table.isItemTable() ? recordNumbers() : occurrenceNumbers();
    return text + rows();
}

QByteArray SasTable::lengths() const
{
    QByteArray text;
    int longest = std::max(table.length, 1);
    for (const PlannedColumn &column : table.columns) {
        const bool isText = column.type == CellType::Text;
        const QByteArray name = column.name.toLatin1();
        text += isText ? lengthOfText(name, lines.divided().bytesOf(column.length))
                       : declaration("length " + name + " 8");
        longest = std::max(longest, column.length);
    }
    if (table.isItemTable() && !lines.divided().countCharacters())
        text += lengthOfText(p + "part", LinePieces::length);
    return text + lengthOfText(p + "text", lines.divided().bytesOf(longest));
}

QByteArray SasTable::isRecord() const
{
    QByteArray text = "not (" + lines.isBlank() + ") and " + lines.first() + " ne '~'";
    if (plan.recordType)
        text += "\n    and " + lines.recordType() + " = " + sasQuoted(table.mark);
    return text;
}

// A field, or its place in an occurrence: in the line, or in the piece of it that holds the occurrence.
QByteArray SasTable::fieldOf(int start, int length, bool isShifted) const
{
    if (!isShifted)
        return lines.field(start, length);
    if (lines.divided().countCharacters())
        return "ksubstr(" + lines.pieces().at(0) + ", " + number(start) + " + (item_occ - 1) * " + number(table.step)
            + ", " + number(length) + ')';
    return "substr(" + p + "part, " + p + "first + " + number(start - table.start) + ", " + number(length) + ')';
}

QByteArray SasTable::fieldOf(const PlannedColumn &column) const
{
    return fieldOf(column.start, column.length, table.isOfOccurrence(column));
}

// The piece of the line that holds an occurrence, and where it begins there.
QByteArray SasTable::partOfOccurrence() const
{
    if (lines.divided().countCharacters())
        return QByteArray();
    QByteArray text = statement(p + "first = " + number(table.start) + " + (item_occ - 1) * " + number(table.step))
        + statement(p + "piece = floor((" + p + "first - 1) / " + number(LinePieces::step) + ')');
    for (int i = 0; i < lines.pieces().size(); ++i)
        text += statement("if " + p + "piece = " + number(i) + " then " + p + "part = " + lines.pieces().at(i));
    return text + statement(p + "first = " + p + "first - " + p + "piece * " + number(LinePieces::step));
}

QByteArray SasTable::columns(ColumnRole role) const
{
    QByteArray text;
    for (int i = 0; i < table.columns.size(); ++i) {
        const PlannedColumn &column = table.columns.at(i);
        if (column.role == role)
            text += column.isNumber() ? numberColumn(i) : textColumn(column);
    }
    return text;
}

QByteArray SasTable::textColumn(const PlannedColumn &column) const
{
    return statement(column.name.toLatin1() + " = " + fieldOf(column));
}

// A name is no operand of an expression: it may be a word of the language, such as NOT.
QByteArray SasTable::numberColumn(int column) const
{
    const PlannedColumn &planned = table.columns.at(column);
    const QByteArray name = planned.name.toLatin1();
    QByteArray text = statement(p + "text = " + fieldOf(planned));
    text += statement(p + "decimals = " + number(planned.decimals));
    text += statement("link " + p + "parse");
    if (table.counts(planned))
        text += statement(p + "wrong" + number(column + 1) + " + " + p + "wrong");
    if (planned.codes >= 0)
        text += sasSpecials(p + "value", plan.codes.at(planned.codes));
    text += statement(name + " = " + p + "value");
    if (needsKeys() && planned.role == ColumnRole::Id)
        text += statement(p + "key" + number(column + 1) + " = " + p + "value + 0");
    return text;
}

// The ids that make a case. Missing values with different reasons are the same value.
QVector<QByteArray> SasTable::keyNames() const
{
    QVector<QByteArray> names;
    for (int i = 0; i < table.columns.size(); ++i) {
        const PlannedColumn &column = table.columns.at(i);
        if (column.role == ColumnRole::Id)
            names.append(column.isNumber() ? QByteArray(p + "key" + number(i + 1)) : column.name.toLatin1());
    }
    return names;
}

QByteArray SasTable::occurrences() const
{
    return "    do item_occ = 1 to " + number(table.occurrences) + ";\n" + partOfOccurrence()
        + statement(p + "text = " + fieldOf(table.start, table.length, true)) + "    if " + p + "text ne ' ' then do;\n"
        + columns(ColumnRole::Item) + statement("output") + "    end;\n    end;\n";
}

QByteArray SasTable::counts() const
{
    QByteArray text;
    for (int i = 0; i < table.columns.size(); ++i) {
        if (!table.counts(table.columns.at(i)))
            continue;
        const QByteArray count = p + "wrong" + number(i + 1);
        text += statement("if " + count + " > 0 then put '" + table.name.toLatin1() + '.'
                          + table.columns.at(i).name.toLatin1() + ": ' " + count + " 'values are no numbers'");
    }
    if (text.isEmpty())
        return text;
    return "  if " + p + "last then do;\n" + text + "  end;\n";
}

QByteArray SasTable::kept() const
{
    QByteArray text;
    const QStringList names = columnNames(table) + QStringList(QString::fromLatin1(p) + QLatin1String("number"));
    for (const QString &name : names) {
        text += "\n    ";
        text += name.toLatin1();
    }
    if (needsKeys()) {
        const QVector<QByteArray> keys = keyNames();
        for (const QByteArray &key : keys)
            text += key.startsWith(p) ? QByteArray(' ' + key) : QByteArray();
    }
    return text;
}

QByteArray SasTable::labels() const
{
    QByteArray text;
    for (const PlannedColumn &column : table.columns) {
        const QByteArray name = column.name.toLatin1();
        if (!column.label.isEmpty())
            text += declaration("label " + name + " = " + sasQuoted(column.label));
        if (column.codes >= 0 && !formats.at(column.codes).name.isEmpty())
            text += declaration("format " + name + ' ' + formats.at(column.codes).name + '.');
    }
    return text;
}

QByteArray SasTable::numberLabel() const
{
    const auto isLong
        = [](const PlannedColumn &column) { return column.isNumber() && column.length > maxInformatDigits; };
    const bool hasLong = std::any_of(table.columns.begin(), table.columns.end(), isLong);
    return programPart(hasLong ? "sas/long-number.sas" : "sas/number.sas", { { "p", p } });
}

QByteArray SasTable::occurrenceNumbers() const
{
    QByteArray list;
    const QVector<QByteArray> names = keyNames();
    for (const QByteArray &key : names)
        list += key + ' ';
    QByteArray by;
    if (!names.isEmpty())
        by = "  by " + list + ";\n  if first." + names.constLast() + " then " + p + "occ = 0;\n";
    return programPart("sas/occ.sas",
                       { { "table", lines.dataSet(index) }, { "keys", list }, { "by", by }, { "p", p } });
}

// An item table has `occ` from its record.
QByteArray SasTable::recordNumbers() const
{
    return "\ndata " + lines.dataSet(index) + ";\n  merge " + lines.dataSet(index) + " (in=" + p + "own) "
        + lines.dataSet(table.recordTable) + " (keep=" + p + "number occ rename=(occ=" + p + "occ));\n  by " + p
        + "number;\n  if " + p + "own;\n  occ = " + p + "occ;\n  drop " + p + "occ;\nrun;\n";
}

QByteArray SasTable::rows() const
{
    return "data _null_;\n  if 0 then set " + lines.dataSet(index) + " nobs=" + p + "rows;\n  put '"
        + table.name.toLatin1() + ": ' " + p + "rows 'rows';\n  stop;\nrun;\n";
}

} // namespace vanlayout
