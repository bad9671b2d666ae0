#include "SqliteCells_p.h"

#include "SqlText_p.h"

#include <iterator>
#include <map>

namespace vanlayout
{

namespace
{

constexpr int maxIntegerDigits = 18;

// The places of a line that a decimal mark may have.
enum class Place { Digit, Mark };
using Places = std::map<int, Place>;

bool hasWrittenMark(const PlannedColumn &column)
{
    return column.type == CellType::Decimal && column.item->decimalMark && column.decimals + 1 < column.length;
}

// Whether the blanks of the column are too many for a literal.
bool isLong(const PlannedColumn &column)
{
    constexpr int longestBlanks = 100;
    return column.length > longestBlanks;
}

// The literal of a blank cell.
QByteArray blanksOf(const PlannedColumn &column)
{
    return '\'' + (isLong(column) ? QByteArray() : QByteArray(column.length, ' ')) + '\'';
}

// Characters of the line from a 1-based column of the first occurrence.
QByteArray part(const PlannedTable &table, int start, int length)
{
    QByteArray place = QByteArray::number(start);
    if (table.isItemTable())
        place += " + (k - 1) * " + QByteArray::number(table.step);
    return "substr(l, " + place + ", " + QByteArray::number(length) + ')';
}

QByteArray whole(const PlannedTable &table, const PlannedColumn &column)
{
    return part(table, column.start, column.length);
}

QByteArray textCell(const PlannedTable &table, const PlannedColumn &column)
{
    return "rtrim(" + whole(table, column) + ", ' ')";
}

// The digits around a mark at its usual place; a text that is examined later if the mark is not there.
QByteArray markedCell(const PlannedTable &table, const PlannedColumn &column)
{
    const int mark = column.start + column.length - column.decimals - 1;
    return "CASE\n      WHEN " + part(table, mark, column.decimals + 1) + " GLOB '[.,]"
        + QByteArray("[0-9]").repeated(column.decimals) + "'\n        THEN "
        + part(table, column.start, mark - column.start) + " || " + part(table, mark + 1, column.decimals)
        + "\n      WHEN trim(" + whole(table, column) + ", ' ') <> '' THEN '=' || " + whole(table, column) + " END";
}

Places placesOf(const QVector<PlannedColumn> &columns)
{
    Places places;
    for (const PlannedColumn &column : columns) {
        const int mark = hasWrittenMark(column) ? column.start + column.length - column.decimals - 1 : 0;
        for (int i = 0; column.isNumber() && i < column.length; ++i) {
            const Place place = column.start + i == mark ? Place::Mark : Place::Digit;
            // A place that is a mark of one number and a digit of another counts as a digit.
            const auto [known, isNew] = places.emplace(column.start + i, place);
            if (!isNew && place == Place::Digit)
                known->second = Place::Digit;
        }
    }
    return places;
}

// The characters of the line that belong to numbers, without decimal marks.
QByteArray charactersOfNumbers(const PlannedTable &table, const Places &places)
{
    QByteArrayList parts;
    for (Places::const_iterator first = places.begin(); first != places.end();) {
        Places::const_iterator end = first;
        int length = 0;
        while (end != places.end() && end->first == first->first + length && end->second == Place::Digit) {
            ++end;
            ++length;
        }
        if (length > 0)
            parts.append(part(table, first->first, length));
        first = length > 0 ? end : std::next(first);
    }
    return sqliteJoined(parts, "\n      || ");
}

// True for a line in which all points are decimal marks at their usual places, with `OR` before it.
QByteArray hasUsualMarks(const PlannedTable &table, const Places &places)
{
    QByteArrayList conditions;
    QByteArray points = QByteArrayLiteral("*.*");
    for (const auto &[start, place] : places) {
        if (place == Place::Mark) {
            conditions.append(part(table, start, 1) + " = '.'");
            points += ".*";
        }
    }
    constexpr int maxMarks = 20; // a row with more is not likely to have them all
    if (conditions.isEmpty() || conditions.size() > maxMarks)
        return {};
    return "\n      OR (" + conditions.join("\n      AND ") + "\n      AND l NOT GLOB '" + points + "')";
}

} // namespace

QByteArray sqliteTypeOfCells(const PlannedColumn &column)
{
    if (!column.isNumber())
        return QByteArrayLiteral("TEXT");
    return column.length > maxIntegerDigits ? QByteArrayLiteral("REAL") : QByteArrayLiteral("INTEGER");
}

QByteArray sqlitePlainCell(const PlannedTable &table, const PlannedColumn &column)
{
    if (!column.isNumber())
        return textCell(table, column);
    if (hasWrittenMark(column))
        return markedCell(table, column);
    return isLong(column) ? "trim(" + whole(table, column) + ", ' ')" : whole(table, column);
}

QByteArray sqliteIsText(const PlannedColumn &column, const QByteArray &cell)
{
    return cell + " > " + blanksOf(column);
}

QByteArray sqliteIsNumberOrBlank(const PlannedColumn &column, const QByteArray &cell)
{
    return '(' + cell + " < '' OR " + cell + " IN (" + blanksOf(column) + ", ''))";
}

QByteArray sqliteOtherCell(const PlannedTable &table, const PlannedColumn &column)
{
    if (!column.isNumber())
        return textCell(table, column);
    const QByteArray text = whole(table, column);
    const QByteArray digits
        = hasWrittenMark(column) ? QByteArray() : "\n      WHEN " + text + " NOT GLOB '*[^-+0-9 ]*' THEN " + text;
    return "CASE\n      WHEN trim(" + text + ", ' ') = '' THEN NULL" + digits + "\n      ELSE '=' || " + text + " END";
}

QByteArray sqliteIsPlain(const PlannedTable &table, const QVector<PlannedColumn> &columns)
{
    const Places places = placesOf(columns);
    const QByteArray characters = charactersOfNumbers(table, places);
    QByteArrayList conditions
        = { "(l NOT GLOB '*.*'" + hasUsualMarks(table, places) + "\n      OR " + characters + " NOT GLOB '*.*')" };
    for (const char exponent : { 'e', 'E' })
        conditions.append(QByteArray("(l NOT GLOB '*") + exponent + "[-+0-9.,]*'\n      OR " + characters
                          + " NOT GLOB '*" + exponent + "*')");
    for (const char *code : { "9", "11", "12", "13" })
        conditions.append(QByteArray("l NOT GLOB '*' || char(") + code + ") || '*'");
    return conditions.join("\n    AND ");
}

QByteArray sqliteJoined(const QByteArrayList &terms, const char *separator)
{
    constexpr int maxTerms = 100;
    if (terms.size() <= maxTerms)
        return terms.join(separator);
    QByteArrayList groups;
    for (int i = 0; i < terms.size(); i += maxTerms)
        groups.append('(' + terms.mid(i, maxTerms).join(separator) + ')');
    return sqliteJoined(groups, separator);
}

} // namespace vanlayout
