#include "StataVariables_p.h"

#include "PlanLists_p.h"
#include "ProgramText_p.h"

#include <algorithm>

namespace vanlayout
{

QByteArray StataVariable::declaration() const
{
    return "str " + name + ' ' + number(start) + '-' + number(start + length - 1);
}

QByteArray StataVariable::firstLine(const QByteArray &condition) const
{
    return "        replace " + name + " = substr(scalar(van_first), " + number(start) + ", " + number(length) + ") "
        + condition + '\n';
}

int stataPieces(int length)
{
    return (length - 1) / maxStataText + 1;
}

StataVariable stataPiece(const QByteArray &name, int start, int length, int piece)
{
    const int skipped = piece * maxStataText;
    return { name, start + skipped, std::min(maxStataText, length - skipped) };
}

StataVariables::StataVariables(const LoadPlan &loadPlan, const PlannedTable &plannedTable)
    : plan(loadPlan)
    , table(plannedTable)
    , prefix(freePrefix(columnNames(plannedTable), Qt::CaseSensitive))
{
    raw.reserve(table.columns.size() + 1);
    raw.append({ own("start"), 1, 1 });
    const int typeLength = plan.recordType ? plan.recordType->length : 0;
    for (int i = 0; i < typeLength; ++i)
        raw.append({ own("type") + number(i + 1), plan.recordType->start + i, 1 });
    if (table.mark.trimmed().isEmpty())
        addWholeLine();
    addLine();
    for (int i = 0; i < table.columns.size(); ++i)
        addColumn(i);
    if (table.isItemTable() && !occurrencesAreInLine())
        addOccurrences();
}

QByteArray StataVariables::dictionary() const
{
    QByteArray text = "infix dictionary {\n";
    for (const StataVariable &variable : raw)
        text += "    " + variable.declaration() + '\n';
    return text + "}\n";
}

QByteArray StataVariables::own(const char *name) const
{
    return prefix + name;
}

// The whole line, for records that lines of blanks look like.
void StataVariables::addWholeLine()
{
    int last = 1;
    for (const PlannedColumn &column : table.columns)
        last = std::max(last, column.start - 1 + column.length);
    for (int piece = 0; piece < stataPieces(last); ++piece)
        raw.append(stataPiece(own("all") + number(piece + 1), 1, last, piece));
}

QVector<QByteArray> StataVariables::namesOfWholeLine() const
{
    QVector<QByteArray> names;
    const QByteArray beginning = own("all");
    for (const StataVariable &variable : raw) {
        if (variable.name.startsWith(beginning))
            names.append(variable.name);
    }
    return names;
}

// The line from the record type to the last text that is a part of it.
void StataVariables::addLine()
{
    int end = table.isItemTable() && occurrencesAreInLine() ? endOfOccurrences() : 0;
    for (const PlannedColumn &column : table.columns)
        end = std::max(end, isInLine(column) ? endOf(column) : 0);
    if (end > 0)
        raw.append({ own("line"), plan.recordType->start, end - plan.recordType->start });
}

void StataVariables::addColumn(int index)
{
    const PlannedColumn &column = table.columns.at(index);
    if (column.isMade() || isInLine(column))
        return;
    if (!table.isOfOccurrence(column)) {
        addField(index, QByteArray(), column.start);
        return;
    }
    for (int k = 0; k < table.occurrences; ++k)
        addField(index, '_' + number(k + 1), column.start + k * table.step);
}

void StataVariables::addField(int index, const QByteArray &occurrence, int start)
{
    const int length = table.columns.at(index).length;
    for (int piece = 0; piece < stataPieces(length); ++piece)
        raw.append(stataPiece(nameOf(index, piece) + occurrence, start, length, piece));
}

void StataVariables::addOccurrences()
{
    for (int piece = 0; piece < stataPieces(table.length); ++piece) {
        for (int k = 0; k < table.occurrences; ++k)
            raw.append(
                stataPiece(nameOfOccurrence(piece) + number(k + 1), table.start + k * table.step, table.length, piece));
    }
}

// infix may remove blanks at the beginning of a text. A variable that begins at the record type has none, so texts are
// parts of one, if the record type precedes them.
bool StataVariables::isInLine(int start, int length) const
{
    if (!plan.recordType || table.mark.startsWith(QLatin1Char(' ')))
        return false;
    const int type = plan.recordType->start;
    return type < start && start + length - type <= maxStataText;
}

bool StataVariables::isInLine(const PlannedColumn &column) const
{
    const bool isRead = column.isNumber() && !table.isOfOccurrence(column);
    return !column.isMade() && !isRead && isInLine(column.start, endOf(column) - column.start);
}

bool StataVariables::occurrencesAreInLine() const
{
    return isInLine(table.start, endOfOccurrences() - table.start);
}

// The column after the last occurrence of a field.
int StataVariables::endOf(const PlannedColumn &column) const
{
    return column.start + column.length + (table.isOfOccurrence(column) ? (table.occurrences - 1) * table.step : 0);
}

int StataVariables::endOfOccurrences() const
{
    return table.start + (table.occurrences - 1) * table.step + table.length;
}

QByteArray StataVariables::partOfLine(int start, int length, bool isShifted) const
{
    const QByteArray first = number(start - plan.recordType->start + 1);
    const QByteArray place = isShifted ? first + " + (item_occ - 1) * " + number(table.step) : first;
    return "substr(" + own("line") + ", " + place + ", " + number(length) + ')';
}

// In the dictionary a column of a record has its own name.
QByteArray StataVariables::nameOf(int column, int piece) const
{
    const PlannedColumn &planned = table.columns.at(column);
    if (!table.isOfOccurrence(planned) && planned.length <= maxStataText)
        return planned.name.toLatin1();
    return own("raw") + number(column + 1) + 'p' + number(piece + 1);
}

QByteArray StataVariables::nameOfOccurrence(int piece) const
{
    return own("part") + number(piece + 1) + '_';
}

} // namespace vanlayout
