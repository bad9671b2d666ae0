#include "SpssFields_p.h"

#include "PlanLists_p.h"
#include "ProgramText_p.h"
#include "SpssLines_p.h"
#include "SpssMissing_p.h"

#include <algorithm>

namespace vanlayout
{

namespace
{

constexpr int maxNumberWidth = 40; // of the format F

QStringList namesOf(const QVector<const PlannedColumn *> &columns)
{
    QStringList names;
    for (const PlannedColumn *column : columns)
        names.append(column->name);
    return names;
}

} // namespace

QByteArray SpssFields::declarations() const
{
    int longest = 1;
    for (const PlannedColumn &column : table.columns)
        longest = column.isNumber() ? std::max(longest, column.length) : longest;
    QByteArray text
        = "STRING #message (A200).\nSTRING #text (A" + QByteArray::number(lines.divided().bytesOf(longest)) + ").\n";
    text += "STRING #digit (A1).\n";
    const Columns constant = columnsOf(Place::Constant, true);
    const Columns shifted = columnsOf(Place::Shifted, true);
    if (!constant.isEmpty())
        text += "VECTOR #wrong(" + QByteArray::number(constant.size()) + ").\n";
    if (!shifted.isEmpty())
        text += "VECTOR #bad(" + QByteArray::number(shifted.size()) + ").\n";
    if (table.isItemTable() && !lines.findsCharacters())
        text += "STRING #part (A" + QByteArray::number(LinePieces::length) + ").\n";
    return text + lines.positions(lastColumnOf(table) + 1);
}

SpssFields::Columns SpssFields::columnsOf(Place place, bool areNumbers) const
{
    const bool isShifted = place == Place::Shifted;
    Columns columns;
    for (const PlannedColumn &column : table.columns) {
        if (!column.isMade() && table.isOfOccurrence(column) == isShifted && column.isNumber() == areNumbers)
            columns.append(&column);
    }
    // Adjacent if they are in the same piece of the line.
    std::stable_sort(columns.begin(), columns.end(), [&](const PlannedColumn *left, const PlannedColumn *right) {
        return !isShifted && lines.pieceAt(left->start) < lines.pieceAt(right->start);
    });
    return columns;
}

QByteArray SpssFields::constantColumns() const
{
    return cells(Place::Constant);
}

QByteArray SpssFields::occurrenceColumns() const
{
    return cells(Place::Shifted);
}

QByteArray SpssFields::cells(Place place) const
{
    return cellsOf(columnsOf(place, false), place) + cellsOf(columnsOf(place, true), place);
}

// The columns in each piece of the line have statements of their own.
QByteArray SpssFields::cellsOf(const Columns &columns, Place place) const
{
    QByteArray text;
    for (int first = 0; first < columns.size();) {
        const QString piece = lines.pieceAt(columns.at(first)->start);
        int end = first + 1;
        while (end < columns.size() && (place == Place::Shifted || lines.pieceAt(columns.at(end)->start) == piece))
            ++end;
        const Columns part = columns.mid(first, end - first);
        text += part.constFirst()->isNumber() ? numbers(part, place, first) : texts(part, place);
        first = end;
    }
    return text;
}

QByteArray SpssFields::texts(const Columns &columns, Place place) const
{
    return repeat(columns, place) + ".\n" + position(place) + "COMPUTE @item=" + field(columns, place)
        + ".\nEND REPEAT.\n";
}

QByteArray SpssFields::numbers(const Columns &columns, Place place, int first) const
{
    const bool isLong = std::any_of(columns.begin(), columns.end(),
                                    [](const PlannedColumn *column) { return column->length > maxNumberWidth; });
    QStringList decimals;
    for (const PlannedColumn *column : columns)
        decimals.append(QString::number(column->decimals));
    const QByteArray vector = place == Place::Constant ? "#wrong" : "#bad";
    const QByteArray counts
        = vector + QByteArray::number(first + 1) + " TO " + vector + QByteArray::number(first + columns.size());
    return repeat(columns, place) + "\n  /@decimals=" + wordLines(decimals) + "\n  /@wrong=" + counts + ".\n"
        + position(place) + "COMPUTE #text=LTRIM(" + field(columns, place) + ").\n"
        + programPart(isLong ? "spss/long-number.sps" : "spss/number.sps");
}

// The variables, and their columns: characters of the line, or bytes of a piece of it or of an occurrence.
QByteArray SpssFields::repeat(const Columns &columns, Place place) const
{
    QStringList starts;
    QStringList ends;
    const bool areBytes = !lines.findsCharacters();
    for (const PlannedColumn *column : columns) {
        const bool isPart = areBytes && place == Place::Shifted;
        const int start = isPart ? column->start - table.start + 1 : lines.divided().columnInPiece(column->start);
        starts.append(QString::number(start));
        const int bytes = isPart ? column->length : lines.divided().lengthInPiece(column->start, column->length);
        ends.append(QString::number(areBytes ? bytes : start + column->length));
    }
    const QByteArray text = "\nDO REPEAT @item=" + wordLines(namesOf(columns)) + "\n  /@start=" + wordLines(starts);
    return text + (areBytes ? "\n  /@size=" : "\n  /@after=") + wordLines(ends);
}

QByteArray SpssFields::position(Place place) const
{
    if (!lines.findsCharacters())
        return place == Place::Constant ? QByteArray() : QByteArray("COMPUTE #from=#before+@start.\n");
    if (place == Place::Constant)
        return "COMPUTE #from=#at(@start).\nCOMPUTE #size=#at(@after)-#from.\n";
    return "COMPUTE #from=#at(@start+#shift).\nCOMPUTE #size=#at(@after+#shift)-#from.\n";
}

QByteArray SpssFields::field(const Columns &columns, Place place) const
{
    if (lines.findsCharacters())
        return "SUBSTR(@line,#from,#size)";
    if (place == Place::Shifted)
        return "SUBSTR(#part,#from,@size)";
    return "SUBSTR(" + lines.pieceAt(columns.constFirst()->start).toLatin1() + ",@start,@size)";
}

QByteArray SpssFields::occurrence() const
{
    const QByteArray shift = "COMPUTE #shift=(item_occ-1)*" + QByteArray::number(table.step) + ".\n";
    const QByteArray start = QByteArray::number(table.start);
    if (lines.findsCharacters())
        return shift + "COMPUTE #from=#at(" + start + "+#shift).\nCOMPUTE #size=#at("
            + QByteArray::number(table.start + table.length) + "+#shift)-#from.\n";
    QStringList numbers;
    for (int i = 0; i < lines.allPieces().size(); ++i)
        numbers.append(QString::number(i));
    const QByteArray step = QByteArray::number(LinePieces::step);
    return shift + "COMPUTE #piece=TRUNC((" + start + "-1+#shift)/" + step
        + ").\nDO REPEAT @piece=" + wordLines(lines.allPieces()) + " /@number=" + wordLines(numbers)
        + ".\nIF #piece EQ @number #part=@piece.\nEND REPEAT.\nCOMPUTE #before=" + start + "-1+#shift-#piece*" + step
        + ".\nCOMPUTE #from=#before+1.\nCOMPUTE #size=" + QByteArray::number(table.length) + ".\n";
}

QByteArray SpssFields::occurrenceSource() const
{
    return lines.findsCharacters() ? "@line" : "#part";
}

QByteArray SpssFields::wrongCounts(const Columns &columns, const QByteArray &vector) const
{
    if (columns.isEmpty())
        return QByteArray();
    QStringList names;
    for (const PlannedColumn *column : columns)
        names.append(spssQuoted(table.name + QLatin1Char('.') + column->name + QLatin1String(": ")));
    return "DO REPEAT @name=" + wordLines(names) + "\n  /@wrong=" + vector + "1 TO " + vector
        + QByteArray::number(columns.size()) + ".\n" + spssCount("@wrong", "@name,", "values are no numbers")
        + "END REPEAT.\n";
}

QByteArray SpssFields::counts(const QByteArray &rows) const
{
    const QByteArray wrong = table.isItemTable() ? wrongCounts(columnsOf(Place::Shifted, true), "#bad")
                                                 : wrongCounts(columnsOf(Place::Constant, true), "#wrong");
    const QByteArray name = spssQuoted(table.name + QLatin1String(": ")).toUtf8();
    return "\nDO IF @end EQ 1.\nCOMPUTE #message=CONCAT(" + name + ",LTRIM(STRING(" + rows
        + ",F20)),' rows').\nPRINT / #message.\n" + wrong + "END IF.\n";
}

} // namespace vanlayout
